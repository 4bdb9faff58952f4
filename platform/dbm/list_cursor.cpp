#include "dbm/list_cursor.h"

#include <string.h>

#include <memory>

using aaadom::dbm::CopyOut;
using aaadom::dbm::Key;
using aaadom::dbm::LoadMeta;
using aaadom::dbm::Lookup;
using aaadom::dbm::MakeSortKey;
using aaadom::dbm::Meta;
using aaadom::dbm::OpenTablePtr;
using aaadom::dbm::ReadAccess;
using aaadom::dbm::SortKey;
using aaadom::dbm::StoredKey;
using aaadom::dbm::TableCursor;

namespace {

/* Steps to the stored key before *name, wherever that belongs. */
int StepBefore(TableCursor& cursor, MDB_val* name, MDB_val* value) {
    const int code = cursor.Get(name, value, MDB_SET_RANGE);
    if (code == MDB_NOTFOUND) return cursor.Get(name, value, MDB_LAST);
    return code == 0 ? cursor.Get(name, value, MDB_PREV) : code;
}

/* The last entry under the prefix: the one before the smallest key behind them all. */
int StepToLast(TableCursor& cursor, StoredKey& prefix, MDB_val* name, MDB_val* value) {
    const MDB_val range = prefix.Prefix();
    std::string behind(static_cast<const char*>(range.mv_data), range.mv_size);
    for (size_t i = behind.size(); i-- > 0;) {
        behind[i] = static_cast<char>(static_cast<uint8_t>(behind[i]) + 1);
        if (behind[i] != 0) break; /* the tag in front is small: the carry ends */
    }
    *name = {behind.size(), behind.data()};
    return StepBefore(cursor, name, value);
}

bool IsCount(const DBM_CURSOR& cursor, const StoredKey& stored, const MDB_val& name) {
    return cursor.kind == DBM_KIND_AVL && stored.Owns(name) &&
           aaadom::dbm::IsCountRow(static_cast<const char*>(name.mv_data) + stored.PrefixLength(),
                                   name.mv_size - stored.PrefixLength(), cursor.sort_key_length);
}

}  // namespace

template <class Find>
int32_t DBM_CURSOR::Move(Position when_none, uint32_t buf_size, void* buf, Find find) {
    const OpenTablePtr table = aaadom::dbm::FindHandle(handle);
    if (table == nullptr) return -1;
    const ReadAccess read(table->environment());
    if (!read.Ok()) return -1;
    StoredKey stored(kind, key.data(), static_cast<uint32_t>(key.size()));
    TableCursor cursor(read.Txn(), table->table.data);
    MDB_val name{};
    MDB_val value{};
    const int code = find(*table, read, cursor, stored, &name, &value);
    if (code != 0 && code != MDB_NOTFOUND) {
        table->environment().Report("read", code);
        return -1;
    }
    if (code == MDB_NOTFOUND || !stored.Owns(name) || IsCount(*this, stored, name)) {
        position = when_none;
        return 0;
    }
    element.assign(static_cast<const char*>(name.mv_data) + stored.PrefixLength(),
                   name.mv_size - stored.PrefixLength());
    position = Position::kAt;
    return CopyOut(value, buf_size, buf);
}

int32_t DBM_CURSOR::First(uint32_t buf_size, void* buf) {
    return Move(
        Position::kAfter, buf_size, buf,
        [](auto&, auto&, TableCursor& cursor, StoredKey& stored, MDB_val* name, MDB_val* value) {
            *name = stored.Prefix();
            return cursor.Get(name, value, MDB_SET_RANGE);
        });
}

int32_t DBM_CURSOR::Last(uint32_t buf_size, void* buf) {
    return Move(
        Position::kBefore, buf_size, buf,
        [&](auto&, auto&, TableCursor& cursor, StoredKey& stored, MDB_val* name, MDB_val* value) {
            const int code = StepToLast(cursor, stored, name, value);
            const bool at_count = code == 0 && IsCount(*this, stored, *name);
            return at_count ? cursor.Get(name, value, MDB_PREV) : code;
        });
}

int32_t DBM_CURSOR::Next(uint32_t buf_size, void* buf) {
    if (position == Position::kBefore) return First(buf_size, buf);
    const bool at = position == Position::kAt;
    return Move(
        Position::kAfter, buf_size, buf,
        [&](auto&, auto&, TableCursor& cursor, StoredKey& stored, MDB_val* name, MDB_val* value) {
            if (!at) return MDB_NOTFOUND;
            stored.SetElement(element.data(), element.size());
            *name = stored.Value();
            const int code = cursor.Get(name, value, MDB_SET_RANGE);
            /* The entry itself may be gone; then this is its successor already. */
            const bool still_there =
                code == 0 && stored.Owns(*name) && name->mv_size == stored.Value().mv_size &&
                memcmp(name->mv_data, stored.Value().mv_data, name->mv_size) == 0;
            return still_there ? cursor.Get(name, value, MDB_NEXT) : code;
        });
}

int32_t DBM_CURSOR::Prev(uint32_t buf_size, void* buf) {
    if (position == Position::kAfter) return Last(buf_size, buf);
    const bool at = position == Position::kAt;
    return Move(
        Position::kBefore, buf_size, buf,
        [&](auto&, auto&, TableCursor& cursor, StoredKey& stored, MDB_val* name, MDB_val* value) {
            if (!at) return MDB_NOTFOUND;
            stored.SetElement(element.data(), element.size());
            *name = stored.Value();
            return StepBefore(cursor, name, value);
        });
}

int32_t DBM_CURSOR::Seek(const void* sort_key, uint32_t buf_size, void* buf) {
    bool is_list = true;
    const int32_t length = Move(Position::kAfter, buf_size, buf,
                                [&](auto& table, const ReadAccess& read, TableCursor& cursor,
                                    StoredKey& stored, MDB_val* name, MDB_val* value) {
                                    Meta meta;
                                    is_list =
                                        LoadMeta(table.environment(), read.Txn(), table.table,
                                                 Key{key.data(), static_cast<uint32_t>(key.size())},
                                                 &meta) == Lookup::kFound &&
                                        meta.kind == kind;
                                    if (!is_list) return MDB_NOTFOUND;
                                    const SortKey wanted = MakeSortKey(meta, sort_key);
                                    stored.SetElement(wanted.bytes, wanted.length);
                                    *name = stored.Value();
                                    return cursor.Get(name, value, MDB_SET_RANGE);
                                });
    return is_list ? length : -1;
}

namespace aaadom::dbm {

DBM_CURSOR* OpenCursor(DBM_HANDLE handle, OpenTable& table, const Key& key) {
    const ReadAccess read(table.environment());
    Meta meta;
    if (!read.Ok() ||
        LoadMeta(table.environment(), read.Txn(), table.table, key, &meta) != Lookup::kFound ||
        (meta.kind != DBM_KIND_SORTED && meta.kind != DBM_KIND_AVL))
        return nullptr;
    auto cursor = std::make_unique<DBM_CURSOR>();
    cursor->handle = handle;
    cursor->key.assign(static_cast<const char*>(key.bytes), key.length);
    cursor->kind = meta.kind;
    cursor->sort_key_length = meta.attributes[DBM_ATTR_KEY_LENGTH];
    return cursor.release();
}

}  // namespace aaadom::dbm
