#include "dbm/value_types.h"

#include <string.h>

#include <string_view>

namespace aaadom::dbm {

namespace {

constexpr size_t kRowHeader = 4; /* the value type in front of the key */

/* Calls visit(key) for each key of the type until it returns false. */
template <class Visit>
void WalkType(OpenTable& table, MDB_txn* txn, uint32_t value_type, Visit visit) {
    TypeRow first(value_type, nullptr, 0);
    const MDB_val wanted = first.Value();
    TableCursor cursor(txn, table.table.types);
    MDB_val name = wanted;
    MDB_val value;
    int code = cursor.Get(&name, &value, MDB_SET_RANGE);
    for (; code == 0; code = cursor.Get(&name, &value, MDB_NEXT)) {
        if (name.mv_size <= kRowHeader || name.mv_size > kRowHeader + kMaxKeyLength ||
            memcmp(name.mv_data, wanted.mv_data, kRowHeader) != 0)
            return;
        const Key key{static_cast<const uint8_t*>(name.mv_data) + kRowHeader,
                      static_cast<uint32_t>(name.mv_size - kRowHeader)};
        if (!visit(key)) return;
    }
    if (code != MDB_NOTFOUND) table.environment().Report("read", code);
}

/* The handle's own copy of a key's text; the same address for the same key. */
const char* Intern(OpenTable& table, const Key& key) {
    const std::string_view text(static_cast<const char*>(key.bytes), key.length);
    const std::lock_guard<std::mutex> guard(table.names_mutex);
    const auto known = table.names.find(text);
    return known != table.names.end() ? known->c_str() : table.names.emplace(text).first->c_str();
}

uint32_t ValueLength(OpenTable& table, MDB_txn* txn, const Key& key, const Meta& meta) {
    if (meta.kind != DBM_KIND_BINARY) return CountEntries(txn, table.table, key, meta);
    StoredKey stored(DBM_KIND_BINARY, key.bytes, key.length);
    MDB_val name = stored.Value();
    MDB_val value;
    return GuardedGet(txn, table.table.data, &name, &value) == 0
               ? static_cast<uint32_t>(value.mv_size)
               : 0;
}

}  // namespace

uint32_t CountKeys(OpenTable& table, uint32_t value_type) {
    const ReadAccess read(table.environment());
    uint32_t count = 0;
    if (read.Ok())
        WalkType(table, read.Txn(), value_type, [&](const Key&) {
            ++count;
            return true;
        });
    return count;
}

uint32_t ListKeys(OpenTable& table, uint32_t value_type, uint32_t count, DBM_KEY_SLOT* slots) {
    const ReadAccess read(table.environment());
    uint32_t filled = 0;
    if (!read.Ok() || count == 0) return 0;
    WalkType(table, read.Txn(), value_type, [&](const Key& key) {
        Meta meta;
        if (LoadMeta(table.environment(), read.Txn(), table.table, key, &meta) != Lookup::kFound)
            return true;
        DBM_KEY_SLOT& slot = slots[filled++];
        slot.key = Intern(table, key);
        slot.key_length = key.length;
        slot.value_type = meta.value_type;
        slot.kind = meta.kind;
        slot.value_length = ValueLength(table, read.Txn(), key, meta);
        slot.reserved = 0;
        return filled < count;
    });
    return filled;
}

}  // namespace aaadom::dbm
