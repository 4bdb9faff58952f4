#include "dbm/values.h"

#include <limits.h>

namespace aaadom::dbm {

namespace {

/* The one value under a stored key of a known kind; absent is an empty value. */
bool FetchValue(OpenTable& table, const ReadAccess& read, const Key& key, uint8_t kind,
                StoredKey& stored, MDB_val* value) {
    static char nothing[1] = "";
    *value = {0, nothing};
    if (!read.Ok()) return false;
    MDB_val name = stored.Value();
    const int code = GuardedGet(read.Txn(), table.table.data, &name, value);
    if (code == 0) return true;
    if (code != MDB_NOTFOUND) {
        table.environment().Report("read", code);
        return false;
    }
    /* Only now the kind matters: the tag in the stored key already tells kinds apart. */
    *value = {0, nothing};
    Meta meta;
    switch (LoadMeta(table.environment(), read.Txn(), table.table, key, &meta)) {
        case Lookup::kFound:
            return meta.kind == kind;
        case Lookup::kAbsent:
            return true;
        default:
            return false;
    }
}

bool PutValue(OpenTable& table, const Key& key, StoredKey& stored, uint8_t kind, uint32_t value_len,
              const void* value, uint32_t value_type) {
    WriteAccess write(table.environment());
    if (!write.Ok() ||
        !PrepareWrite(table.environment(), write, table.table, key, kind, value_type))
        return false;
    MDB_val name = stored.Value();
    char nothing[1] = "";
    MDB_val data{value_len, value_len != 0 ? const_cast<void*>(value) : nothing};
    return write.Check(GuardedPut(write.Txn(), table.table.data, &name, &data, 0)) &&
           write.Commit();
}

}  // namespace

bool SetArrayElement(OpenTable& table, const Key& key, uint32_t index, uint32_t value_len,
                     const void* value, uint32_t value_type) {
    StoredKey stored(DBM_KIND_ARRAY, key.bytes, key.length);
    stored.SetIndex(index);
    return PutValue(table, key, stored, DBM_KIND_ARRAY, value_len, value, value_type);
}

bool RemoveArrayElement(OpenTable& table, const Key& key, uint32_t index) {
    WriteAccess write(table.environment());
    if (!write.Ok()) return false;
    Meta meta;
    switch (LoadMeta(table.environment(), write.Txn(), table.table, key, &meta)) {
        case Lookup::kFailed:
            return false;
        case Lookup::kAbsent:
            return true;
        case Lookup::kFound:
            break;
    }
    if (meta.kind != DBM_KIND_ARRAY) return false;
    StoredKey stored(DBM_KIND_ARRAY, key.bytes, key.length);
    stored.SetIndex(index);
    MDB_val name = stored.Value();
    const int code = GuardedDelete(write.Txn(), table.table.data, &name);
    if (code == MDB_NOTFOUND) return true; /* nothing changed: nothing to commit */
    return write.Check(code) && write.Commit();
}

int32_t GetArrayElement(OpenTable& table, const Key& key, uint32_t index, uint32_t buf_size,
                        void* buf) {
    StoredKey stored(DBM_KIND_ARRAY, key.bytes, key.length);
    stored.SetIndex(index);
    const ReadAccess read(table.environment());
    MDB_val value;
    return FetchValue(table, read, key, DBM_KIND_ARRAY, stored, &value)
               ? CopyOut(value, buf_size, buf)
               : -1;
}

int32_t GetNextArrayIndex(OpenTable& table, const Key& key, int32_t after) {
    if (after == INT32_MAX) return -1;
    const ReadAccess read(table.environment());
    if (!read.Ok()) return -1;
    StoredKey stored(DBM_KIND_ARRAY, key.bytes, key.length);
    stored.SetIndex(after < 0 ? 0 : static_cast<uint32_t>(after) + 1);
    TableCursor cursor(read.Txn(), table.table.data);
    MDB_val name = stored.Value();
    MDB_val value;
    const int code = cursor.Get(&name, &value, MDB_SET_RANGE);
    if (code != 0 && code != MDB_NOTFOUND) table.environment().Report("read", code);
    if (code != 0 || !stored.Owns(name) || name.mv_size != stored.PrefixLength() + 4) return -1;
    const uint32_t index =
        GetBigEndian32(static_cast<const uint8_t*>(name.mv_data) + stored.PrefixLength());
    return index <= INT32_MAX ? static_cast<int32_t>(index) : -1;
}

bool SetBinary(OpenTable& table, const Key& key, uint32_t value_len, const void* value,
               uint32_t value_type) {
    StoredKey stored(DBM_KIND_BINARY, key.bytes, key.length);
    return PutValue(table, key, stored, DBM_KIND_BINARY, value_len, value, value_type);
}

int32_t GetBinary(OpenTable& table, const Key& key, uint32_t buf_size, void* buf,
                  bool length_only) {
    StoredKey stored(DBM_KIND_BINARY, key.bytes, key.length);
    const ReadAccess read(table.environment());
    MDB_val value;
    if (!FetchValue(table, read, key, DBM_KIND_BINARY, stored, &value)) return -1;
    return length_only ? static_cast<int32_t>(value.mv_size) : CopyOut(value, buf_size, buf);
}

}  // namespace aaadom::dbm
