#include "dbm/keys.h"

#include <limits.h>
#include <string.h>

#include <algorithm>

#include "dbm/report.h"

namespace aaadom::dbm {

Lookup LoadMeta(Environment& environment, MDB_txn* txn, const Table& table, const Key& key,
                Meta* meta) {
    StoredKey stored(kMetaTag, key.bytes, key.length);
    MDB_val name = stored.Value();
    MDB_val value;
    const int code = GuardedGet(txn, table.data, &name, &value);
    if (code == MDB_NOTFOUND) return Lookup::kAbsent;
    if (code == 0 && DecodeMeta(value, key.length, meta)) return Lookup::kFound;
    environment.Report("read", code != 0 ? code : kDamagedFile);
    return Lookup::kFailed;
}

bool SaveMeta(WriteAccess& write, const Table& table, const Key& key, const Meta& meta) {
    StoredKey stored(kMetaTag, key.bytes, key.length);
    uint8_t bytes[kMetaSize];
    EncodeMeta(meta, bytes);
    MDB_val name = stored.Value();
    MDB_val value{kMetaSize, bytes};
    return write.Check(GuardedPut(write.Txn(), table.data, &name, &value, 0));
}

namespace {

bool PutTypeRow(WriteAccess& write, const Table& table, const Key& key, uint32_t value_type) {
    TypeRow row(value_type, key.bytes, key.length);
    char nothing[1] = "";
    MDB_val name = row.Value();
    MDB_val value{0, nothing};
    return write.Check(GuardedPut(write.Txn(), table.types, &name, &value, 0));
}

bool RemoveTypeRow(WriteAccess& write, const Table& table, const Key& key, uint32_t value_type) {
    TypeRow row(value_type, key.bytes, key.length);
    MDB_val name = row.Value();
    const int code = GuardedDelete(write.Txn(), table.types, &name);
    return code == MDB_NOTFOUND || write.Check(code);
}

}  // namespace

bool CreateKey(WriteAccess& write, const Table& table, const Key& key, const Meta& meta) {
    return SaveMeta(write, table, key, meta) && PutTypeRow(write, table, key, meta.value_type);
}

bool MoveToType(WriteAccess& write, const Table& table, const Key& key, uint32_t value_type,
                Meta* meta) {
    if (!RemoveTypeRow(write, table, key, meta->value_type) ||
        !PutTypeRow(write, table, key, value_type))
        return false;
    meta->value_type = value_type;
    return true;
}

bool PrepareWrite(Environment& environment, WriteAccess& write, const Table& table, const Key& key,
                  uint8_t kind, uint32_t value_type) {
    Meta meta;
    switch (LoadMeta(environment, write.Txn(), table, key, &meta)) {
        case Lookup::kFailed:
            return false;
        case Lookup::kAbsent:
            meta.kind = kind;
            meta.value_type = value_type;
            return CreateKey(write, table, key, meta);
        case Lookup::kFound:
            break;
    }
    if (meta.kind != kind) return false;
    if (meta.value_type == value_type) return true;
    return MoveToType(write, table, key, value_type, &meta) && SaveMeta(write, table, key, meta);
}

bool RemoveEntries(WriteAccess& write, const Table& table, StoredKey& prefix) {
    /* Seeking anew each time keeps clear of a cursor's state after a deletion. */
    for (;;) {
        MDB_val name = prefix.Prefix();
        MDB_val value;
        uint8_t bytes[kMaxStoredKeyLength];
        {
            TableCursor cursor(write.Txn(), table.data);
            const int code = cursor.Get(&name, &value, MDB_SET_RANGE);
            if (code == MDB_NOTFOUND || (code == 0 && !prefix.Owns(name))) return true;
            if (code != 0 || name.mv_size > sizeof bytes)
                return write.Check(code != 0 ? code : kDamagedFile);
        }
        /* The name lies in a page that the deletion changes. */
        memcpy(bytes, name.mv_data, name.mv_size);
        name.mv_data = bytes;
        if (!write.Check(GuardedDelete(write.Txn(), table.data, &name))) return false;
    }
}

uint32_t CountEntries(MDB_txn* txn, const Table& table, const Key& key, const Meta& meta) {
    switch (meta.kind) {
        case DBM_KIND_BINARY:
            return 1;
        case DBM_KIND_ARRAY:
            break;
        case DBM_KIND_AVL: {
            uint32_t count = 0;
            (void)ReadAvlCount(txn, table.data, key.bytes, key.length, meta, &count);
            return count;
        }
        default:
            return meta.entry_count;
    }
    StoredKey prefix(DBM_KIND_ARRAY, key.bytes, key.length);
    TableCursor cursor(txn, table.data);
    MDB_val name = prefix.Prefix();
    MDB_val value;
    uint32_t count = 0;
    for (int code = cursor.Get(&name, &value, MDB_SET_RANGE); code == 0 && prefix.Owns(name);
         code = cursor.Get(&name, &value, MDB_NEXT))
        ++count;
    return count;
}

int32_t CopyOut(const MDB_val& value, uint32_t buf_size, void* buf) noexcept {
    if (buf == nullptr) return 0;
    const size_t length = std::min({value.mv_size, size_t{buf_size}, size_t{INT_MAX}});
    const auto copy = [&] {
        if (length != 0) memcpy(buf, value.mv_data, length);
        return 0;
    };
    return RunGuarded(copy) == 0 ? static_cast<int32_t>(length) : -1;
}

uint32_t IsKeyExist(OpenTable& table, const Key& key) {
    const ReadAccess read(table.environment());
    Meta meta;
    return read.Ok() && LoadMeta(table.environment(), read.Txn(), table.table, key, &meta) ==
                            Lookup::kFound
               ? 1
               : 0;
}

bool DeleteKey(OpenTable& table, const Key& key) {
    WriteAccess write(table.environment());
    Meta meta;
    if (!write.Ok() ||
        LoadMeta(table.environment(), write.Txn(), table.table, key, &meta) != Lookup::kFound)
        return false;
    StoredKey stored(meta.kind, key.bytes, key.length);
    if (!RemoveEntries(write, table.table, stored)) return false;
    stored.SetTag(kMetaTag);
    MDB_val name = stored.Prefix();
    return write.Check(GuardedDelete(write.Txn(), table.table.data, &name)) &&
           RemoveTypeRow(write, table.table, key, meta.value_type) && write.Commit();
}

uint32_t GetEntryNum(OpenTable& table, const Key& key) {
    const ReadAccess read(table.environment());
    Meta meta;
    if (!read.Ok() ||
        LoadMeta(table.environment(), read.Txn(), table.table, key, &meta) != Lookup::kFound)
        return 0;
    return CountEntries(read.Txn(), table.table, key, meta);
}

}  // namespace aaadom::dbm
