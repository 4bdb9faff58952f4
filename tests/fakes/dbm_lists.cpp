// Sorted lists, AVL lists and their cursors.
#include <platform/dbm.h>

#include <atomic>
#include <cstring>

#include "fakes/database.h"

using fake::DbmScope;
using fake::kFailed;
using fake::Record;

struct DBM_CURSOR {
    DBM_HANDLE handle;
    std::string key;
    enum { kBeforeFirst, kOnEntry, kBehindLast } position;
    fake::SortKey at;
};

namespace {

std::atomic<int> open_cursors{0};

bool AreUsable(const uint32_t* attributes) {
    if (attributes == nullptr) return false;
    const uint32_t length = attributes[DBM_ATTR_KEY_LENGTH];
    switch (attributes[DBM_ATTR_KEY_KIND]) {
        case DBM_KEY_KIND_U16:
            return length == 2;
        case DBM_KEY_KIND_U64:
            return length == 8;
        case DBM_KEY_KIND_TEXT:
            return length > 0 && length <= 400;
        default:
            return false;
    }
}

uint32_t CreateList(const char* name, uint32_t kind, DBM_HANDLE handle, const void* key,
                    uint32_t key_len, const uint32_t attributes[4], uint32_t count,
                    uint32_t value_type) {
    DbmScope call(name, handle, DbmScope::kWrite, key, key_len);
    call.Index(count).Value(16, attributes).Type(value_type);
    if (!call.Usable() || !AreUsable(attributes) || call.Find() != nullptr) {
        return call.Return(kFailed);
    }
    Record& record = call.Create();
    record.kind = kind;
    record.value_type = value_type;
    std::memcpy(record.attributes, attributes, sizeof record.attributes);
    return call.Return(0u);
}

bool FitsSize(const Record& list, uint32_t size) {
    return size <= 65535 && (list.entry_size == 0 || list.entry_size == size);
}

const Record* ListOf(const DbmScope& call) {
    const Record* record = call.Usable() ? call.Find() : nullptr;
    if (record == nullptr) return nullptr;
    return fake::IsList(*record) ? record : nullptr;
}

enum class Move { kFirst, kNext, kLast, kPrevious, kSeek };

int32_t MoveCursor(const char* name, DBM_CURSOR* cursor, Move move, const void* sort_key,
                   uint32_t buf_size, void* buf) {
    if (cursor == nullptr) return -1;
    DbmScope call(name, cursor->handle, DbmScope::kRead, cursor->key.data(),
                  static_cast<uint32_t>(cursor->key.size()));
    const Record* list = ListOf(call);
    if (list == nullptr || (move == Move::kSeek && sort_key == nullptr)) return call.Return(-1);
    if (buf == nullptr && buf_size != 0) return call.Return(-1);
    const auto& entries = list->entries;
    auto next = entries.end();      // for the forward steps
    auto behind = entries.begin();  // for the backward steps: the entry behind the wanted one
    switch (move) {
        case Move::kFirst:
            next = entries.begin();
            break;
        case Move::kNext:
            if (cursor->position == DBM_CURSOR::kBeforeFirst) next = entries.begin();
            if (cursor->position == DBM_CURSOR::kOnEntry) next = entries.upper_bound(cursor->at);
            break;
        case Move::kSeek:
            next = entries.lower_bound(*fake::KeyFrom(*list, sort_key));
            break;
        case Move::kLast:
            behind = entries.end();
            break;
        case Move::kPrevious:
            if (cursor->position == DBM_CURSOR::kBehindLast) behind = entries.end();
            if (cursor->position == DBM_CURSOR::kOnEntry) behind = entries.lower_bound(cursor->at);
            break;
    }
    const bool backward = move == Move::kLast || move == Move::kPrevious;
    if (backward ? behind == entries.begin() : next == entries.end()) {
        cursor->position = backward ? DBM_CURSOR::kBeforeFirst : DBM_CURSOR::kBehindLast;
        return call.Return(0);
    }
    const auto found = backward ? std::prev(behind) : next;
    cursor->position = DBM_CURSOR::kOnEntry;
    cursor->at = found->first;
    return call.Return(fake::CopyOut(found->second, buf_size, buf));
}

}  // namespace

int fake::OpenCursors() {
    return open_cursors;
}

extern "C" uint32_t DBM_CreateSortList(DBM_HANDLE handle, const void* key, uint32_t key_len,
                                       const uint32_t attributes[4], uint32_t count,
                                       uint32_t value_type) noexcept {
    return CreateList("DBM_CreateSortList", DBM_KIND_SORTED, handle, key, key_len, attributes,
                      count, value_type);
}

extern "C" int32_t DBM_GetSortList(DBM_HANDLE handle, const void* key, uint32_t key_len,
                                   uint32_t entry_size, void* entry) noexcept {
    DbmScope call("DBM_GetSortList", handle, DbmScope::kRead, key, key_len);
    call.Value(entry_size, entry);
    const Record* list = call.Usable() ? call.Find(DBM_KIND_SORTED) : nullptr;
    if (list == nullptr) return call.Return(-1);
    const auto sort_key = fake::KeyOf(*list, entry_size, entry);
    if (!sort_key || !FitsSize(*list, entry_size)) return call.Return(-1);
    const auto found = list->entries.find(*sort_key);
    if (found == list->entries.end()) return call.Return(-1);
    return call.Return(fake::CopyOut(found->second, entry_size, entry));
}

extern "C" uint32_t DBM_InsertSortList(DBM_HANDLE handle, const void* key, uint32_t key_len,
                                       uint32_t entry_size, const void* entry,
                                       uint32_t value_type) noexcept {
    DbmScope call("DBM_InsertSortList", handle, DbmScope::kWrite, key, key_len);
    call.Value(entry_size, entry).Type(value_type);
    Record* list = call.Usable() ? call.Find(DBM_KIND_SORTED) : nullptr;
    if (list == nullptr) return call.Return(kFailed);
    const auto sort_key = fake::KeyOf(*list, entry_size, entry);
    if (!sort_key || !FitsSize(*list, entry_size)) return call.Return(kFailed);
    list->entries[*sort_key].assign(static_cast<const char*>(entry), entry_size);
    list->entry_size = entry_size;
    list->value_type = value_type;
    return call.Return(0u);
}

extern "C" uint32_t DBM_RemoveSortList(DBM_HANDLE handle, const void* key, uint32_t key_len,
                                       uint32_t entry_size, const void* entry) noexcept {
    DbmScope call("DBM_RemoveSortList", handle, DbmScope::kWrite, key, key_len);
    call.Value(entry_size, entry);
    Record* list = call.Usable() ? call.Find(DBM_KIND_SORTED) : nullptr;
    if (list == nullptr) return call.Return(kFailed);
    const auto sort_key = fake::KeyOf(*list, entry_size, entry);
    if (!sort_key || !FitsSize(*list, entry_size)) return call.Return(kFailed);
    return call.Return(list->entries.erase(*sort_key) != 0 ? 0u : kFailed);
}

extern "C" uint32_t DBM_CreateAvlList(DBM_HANDLE handle, const void* key, uint32_t key_len,
                                      const uint32_t attributes[4], uint32_t count,
                                      uint32_t value_type) noexcept {
    return CreateList("DBM_CreateAvlList", DBM_KIND_AVL, handle, key, key_len, attributes, count,
                      value_type);
}

extern "C" uint32_t DBM_InsertAvlList(DBM_HANDLE handle, const void* key, uint32_t key_len,
                                      uint32_t entry_len, const void* entry) noexcept {
    DbmScope call("DBM_InsertAvlList", handle, DbmScope::kWrite, key, key_len);
    call.Value(entry_len, entry);
    Record* list = call.Usable() ? call.Find(DBM_KIND_AVL) : nullptr;
    if (list == nullptr || entry_len > 65535) return call.Return(kFailed);
    const auto sort_key = fake::KeyOf(*list, entry_len, entry);
    if (!sort_key || list->entries.count(*sort_key) != 0) return call.Return(kFailed);
    list->entries[*sort_key].assign(static_cast<const char*>(entry), entry_len);
    return call.Return(0u);
}

extern "C" uint32_t DBM_RemoveAvlList(DBM_HANDLE handle, const void* key, uint32_t key_len,
                                      uint32_t entry_len, const void* entry) noexcept {
    DbmScope call("DBM_RemoveAvlList", handle, DbmScope::kWrite, key, key_len);
    call.Value(entry_len, entry);
    Record* list = call.Usable() ? call.Find(DBM_KIND_AVL) : nullptr;
    if (list == nullptr) return call.Return(kFailed);
    const auto sort_key = fake::KeyOf(*list, entry_len, entry);
    if (!sort_key) return call.Return(kFailed);
    return call.Return(list->entries.erase(*sort_key) != 0 ? 0u : kFailed);
}

extern "C" uint32_t DBM_ClearAvlList(DBM_HANDLE handle, const void* key,
                                     uint32_t key_len) noexcept {
    DbmScope call("DBM_ClearAvlList", handle, DbmScope::kWrite, key, key_len);
    Record* list = call.Usable() ? call.Find(DBM_KIND_AVL) : nullptr;
    if (list == nullptr) return call.Return(kFailed);
    list->entries.clear();
    return call.Return(0u);
}

extern "C" uint32_t DBM_CursorOpen(DBM_HANDLE handle, const void* key, uint32_t key_len,
                                   DBM_CURSOR** cursor) noexcept {
    DbmScope call("DBM_CursorOpen", handle, DbmScope::kRead, key, key_len);
    if (cursor != nullptr) *cursor = nullptr;
    if (cursor == nullptr || ListOf(call) == nullptr) return call.Return(kFailed);
    *cursor = new DBM_CURSOR{handle, call.key(), DBM_CURSOR::kBeforeFirst, {}};
    ++open_cursors;
    return call.Return(0u);
}

extern "C" int32_t DBM_CursorFirst(DBM_CURSOR* cursor, uint32_t buf_size, void* buf) noexcept {
    return MoveCursor("DBM_CursorFirst", cursor, Move::kFirst, nullptr, buf_size, buf);
}
extern "C" int32_t DBM_CursorNext(DBM_CURSOR* cursor, uint32_t buf_size, void* buf) noexcept {
    return MoveCursor("DBM_CursorNext", cursor, Move::kNext, nullptr, buf_size, buf);
}
extern "C" int32_t DBM_CursorLast(DBM_CURSOR* cursor, uint32_t buf_size, void* buf) noexcept {
    return MoveCursor("DBM_CursorLast", cursor, Move::kLast, nullptr, buf_size, buf);
}
extern "C" int32_t DBM_CursorPrev(DBM_CURSOR* cursor, uint32_t buf_size, void* buf) noexcept {
    return MoveCursor("DBM_CursorPrev", cursor, Move::kPrevious, nullptr, buf_size, buf);
}
extern "C" int32_t DBM_CursorSeek(DBM_CURSOR* cursor, const void* sort_key, uint32_t buf_size,
                                  void* buf) noexcept {
    return MoveCursor("DBM_CursorSeek", cursor, Move::kSeek, sort_key, buf_size, buf);
}
extern "C" void DBM_CursorClose(DBM_CURSOR* cursor) noexcept {
    if (cursor == nullptr) return;
    fake::Quiet quiet;
    delete cursor;
    --open_cursors;
}

extern "C" uint32_t DBM_GetEntryNum(DBM_HANDLE handle, const void* key, uint32_t key_len) noexcept {
    DbmScope call("DBM_GetEntryNum", handle, DbmScope::kRead, key, key_len);
    const Record* record = call.Usable() ? call.Find() : nullptr;
    if (record == nullptr) return call.Return(0u);
    if (record->kind == DBM_KIND_BINARY) return call.Return(1u);
    const size_t count =
        record->kind == DBM_KIND_ARRAY ? record->elements.size() : record->entries.size();
    return call.Return(static_cast<uint32_t>(count));
}
