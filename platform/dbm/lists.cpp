#include "dbm/lists.h"

namespace aaadom::dbm {

namespace {

/* A list of the wanted kind, and an entry or probe that holds a sort key. */
bool LoadList(Environment& environment, MDB_txn* txn, const Table& table, const Key& key,
              uint8_t kind, uint32_t entry_size, Meta* meta) {
    return LoadMeta(environment, txn, table, key, meta) == Lookup::kFound && meta->kind == kind &&
           entry_size >= SortKeyEnd(*meta);
}

void SetSortKey(StoredKey& stored, const Meta& meta, const void* entry) {
    const SortKey sort_key = MakeSortKey(
        meta, static_cast<const uint8_t*>(entry) + meta.attributes[DBM_ATTR_KEY_OFFSET]);
    stored.SetElement(sort_key.bytes, sort_key.length);
}

}  // namespace

bool CreateList(OpenTable& table, const Key& key, uint8_t kind, const uint32_t attributes[4],
                uint32_t value_type) {
    if (!AttributesAreUsable(kind, attributes, key.length)) return false;
    WriteAccess write(table.environment());
    Meta meta;
    if (!write.Ok() ||
        LoadMeta(table.environment(), write.Txn(), table.table, key, &meta) != Lookup::kAbsent)
        return false;
    meta = Meta{};
    meta.kind = kind;
    meta.value_type = value_type;
    for (int i = 0; i < 4; ++i) meta.attributes[i] = attributes[i];
    return CreateKey(write, table.table, key, meta) && write.Commit();
}

bool InsertSorted(OpenTable& table, const Key& key, uint32_t entry_size, const void* entry,
                  uint32_t value_type) {
    WriteAccess write(table.environment());
    Meta meta;
    if (!write.Ok() || !LoadList(table.environment(), write.Txn(), table.table, key,
                                 DBM_KIND_SORTED, entry_size, &meta))
        return false;
    if (meta.entry_size != 0 && meta.entry_size != entry_size) return false;
    StoredKey stored(DBM_KIND_SORTED, key.bytes, key.length);
    SetSortKey(stored, meta, entry);
    MDB_val name = stored.Value();
    MDB_val data{entry_size, const_cast<void*>(entry)};
    int code = GuardedPut(write.Txn(), table.table.data, &name, &data, MDB_NOOVERWRITE);
    bool meta_changed = code == 0;
    if (code == MDB_KEYEXIST) {
        data = {entry_size, const_cast<void*>(entry)};
        code = GuardedPut(write.Txn(), table.table.data, &name, &data, 0);
    } else {
        meta.entry_size = entry_size;
        ++meta.entry_count;
    }
    if (!write.Check(code)) return false;
    if (meta.value_type != value_type) {
        if (!MoveToType(write, table.table, key, value_type, &meta)) return false;
        meta_changed = true;
    }
    if (meta_changed && !SaveMeta(write, table.table, key, meta)) return false;
    return write.Commit();
}

int32_t GetSorted(OpenTable& table, const Key& key, uint32_t entry_size, void* entry) {
    const ReadAccess read(table.environment());
    Meta meta;
    if (!read.Ok() || !LoadList(table.environment(), read.Txn(), table.table, key, DBM_KIND_SORTED,
                                entry_size, &meta))
        return -1;
    if (meta.entry_size != 0 && meta.entry_size != entry_size) return -1;
    StoredKey stored(DBM_KIND_SORTED, key.bytes, key.length);
    SetSortKey(stored, meta, entry);
    MDB_val name = stored.Value();
    MDB_val value;
    const int code = GuardedGet(read.Txn(), table.table.data, &name, &value);
    if (code != 0 && code != MDB_NOTFOUND) table.environment().Report("read", code);
    return code == 0 ? CopyOut(value, entry_size, entry) : -1;
}

namespace {

/* Opens the list, unless this transaction or the one before it worked on it. */
bool OpenAvl(OpenTable& table, const Key& key, WriteAccess& write, AvlList& list) {
    const MDB_dbi dbi = table.table.data;
    if (list.IsOpenFor(dbi, key.bytes, key.length)) return true;
    if (!write.Check(list.Settle())) return false;
    if (list.Resume(write.Txn(), dbi, key.bytes, key.length)) return true;
    Meta meta;
    return LoadMeta(table.environment(), write.Txn(), table.table, key, &meta) == Lookup::kFound &&
           meta.kind == DBM_KIND_AVL &&
           write.Check(list.Open(write.Txn(), dbi, key.bytes, key.length, meta));
}

/* Runs change(list) on an AVL list; `refusal` is an answer, not an error: nothing changed. */
template <class Change>
bool ChangeAvl(OpenTable& table, const Key& key, uint32_t size, int refusal, Change change) {
    WriteAccess write(table.environment(), WriteAccess::kGoesOn);
    if (!write.Ok()) return false;
    AvlList& list = write.List();
    if (!OpenAvl(table, key, write, list) || !list.Takes(size)) return false;
    const int code = change(list);
    if (code == refusal || !write.Check(code)) return false;
    return write.InScope() || (write.Check(list.Settle()) && write.Commit());
}

}  // namespace

bool InsertAvl(OpenTable& table, const Key& key, uint32_t entry_len, const void* entry) {
    return ChangeAvl(table, key, entry_len, MDB_KEYEXIST,
                     [&](AvlList& list) { return list.Insert(entry_len, entry); });
}

bool RemoveAvl(OpenTable& table, const Key& key, uint32_t probe_size, const void* probe) {
    return ChangeAvl(table, key, probe_size, MDB_NOTFOUND,
                     [&](AvlList& list) { return list.Remove(probe); });
}

bool RemoveSorted(OpenTable& table, const Key& key, uint32_t entry_size, const void* probe) {
    WriteAccess write(table.environment());
    Meta meta;
    if (!write.Ok() || !LoadList(table.environment(), write.Txn(), table.table, key,
                                 DBM_KIND_SORTED, entry_size, &meta))
        return false;
    if (meta.entry_size != 0 && meta.entry_size != entry_size) return false;
    StoredKey stored(DBM_KIND_SORTED, key.bytes, key.length);
    SetSortKey(stored, meta, probe);
    MDB_val name = stored.Value();
    const int code = GuardedDelete(write.Txn(), table.table.data, &name);
    if (code == MDB_NOTFOUND) return false;
    if (meta.entry_count > 0) --meta.entry_count;
    return write.Check(code) && SaveMeta(write, table.table, key, meta) && write.Commit();
}

bool ClearAvl(OpenTable& table, const Key& key) {
    WriteAccess write(table.environment());
    Meta meta;
    if (!write.Ok() ||
        LoadMeta(table.environment(), write.Txn(), table.table, key, &meta) != Lookup::kFound ||
        meta.kind != DBM_KIND_AVL)
        return false;
    StoredKey prefix(DBM_KIND_AVL, key.bytes, key.length);
    /* The count row lies under the prefix too. */
    return RemoveEntries(write, table.table, prefix) && write.Commit();
}

}  // namespace aaadom::dbm
