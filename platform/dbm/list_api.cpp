/* Sorted lists, AVL lists, cursors. */
#include <platform/dbm.h>

#include "dbm/list_cursor.h"
#include "dbm/lists.h"
#include "dbm/seam.h"

using namespace aaadom::dbm;

namespace {

constexpr uint32_t kMaxEntry = 65535;

uint32_t Create(DBM_HANDLE handle, const void* key, uint32_t key_len, uint8_t kind,
                const uint32_t attributes[4], uint32_t count, uint32_t value_type) noexcept {
    /* count: one sort key, the only form there is. */
    if (attributes == nullptr || count != 1) return Code(false);
    return ChangeKey(handle, key, key_len, [&](OpenTable& table, const Key& name) {
        return CreateList(table, name, kind, attributes, value_type);
    });
}

int32_t Step(DBM_CURSOR* cursor, uint32_t buf_size, void* buf,
             int32_t (DBM_CURSOR::*step)(uint32_t, void*)) noexcept {
    if (cursor == nullptr || (buf == nullptr && buf_size != 0)) return -1;
    return Guarded(-1, [&] { return (cursor->*step)(buf_size, buf); });
}

}  // namespace

extern "C" {

uint32_t DBM_CreateSortList(DBM_HANDLE handle, const void* key, uint32_t key_len,
                            const uint32_t attributes[4], uint32_t count,
                            uint32_t value_type) noexcept {
    return Create(handle, key, key_len, DBM_KIND_SORTED, attributes, count, value_type);
}

int32_t DBM_GetSortList(DBM_HANDLE handle, const void* key, uint32_t key_len, uint32_t entry_size,
                        void* entry) noexcept {
    if (entry == nullptr) return -1;
    return WithKey(handle, key, key_len, -1, [&](OpenTable& table, const Key& name) {
        return GetSorted(table, name, entry_size, entry);
    });
}

uint32_t DBM_InsertSortList(DBM_HANDLE handle, const void* key, uint32_t key_len,
                            uint32_t entry_size, const void* entry, uint32_t value_type) noexcept {
    if (entry == nullptr || entry_size > kMaxEntry) return Code(false);
    return ChangeKey(handle, key, key_len, [&](OpenTable& table, const Key& name) {
        return InsertSorted(table, name, entry_size, entry, value_type);
    });
}

uint32_t DBM_RemoveSortList(DBM_HANDLE handle, const void* key, uint32_t key_len,
                            uint32_t entry_size, const void* entry) noexcept {
    if (entry == nullptr) return Code(false);
    return ChangeKey(handle, key, key_len, [&](OpenTable& table, const Key& name) {
        return RemoveSorted(table, name, entry_size, entry);
    });
}

uint32_t DBM_CreateAvlList(DBM_HANDLE handle, const void* key, uint32_t key_len,
                           const uint32_t attributes[4], uint32_t count,
                           uint32_t value_type) noexcept {
    return Create(handle, key, key_len, DBM_KIND_AVL, attributes, count, value_type);
}

uint32_t DBM_InsertAvlList(DBM_HANDLE handle, const void* key, uint32_t key_len, uint32_t entry_len,
                           const void* entry) noexcept {
    if (entry == nullptr || entry_len > kMaxEntry) return Code(false);
    return ChangeKey(handle, key, key_len, [&](OpenTable& table, const Key& name) {
        return InsertAvl(table, name, entry_len, entry);
    });
}

uint32_t DBM_RemoveAvlList(DBM_HANDLE handle, const void* key, uint32_t key_len, uint32_t entry_len,
                           const void* entry) noexcept {
    if (entry == nullptr) return Code(false);
    return ChangeKey(handle, key, key_len, [&](OpenTable& table, const Key& name) {
        return RemoveAvl(table, name, entry_len, entry);
    });
}

uint32_t DBM_ClearAvlList(DBM_HANDLE handle, const void* key, uint32_t key_len) noexcept {
    return ChangeKey(handle, key, key_len,
                     [](OpenTable& table, const Key& name) { return ClearAvl(table, name); });
}

uint32_t DBM_CursorOpen(DBM_HANDLE handle, const void* key, uint32_t key_len,
                        DBM_CURSOR** cursor) noexcept {
    if (cursor == nullptr) return Code(false);
    DBM_CURSOR* made =
        WithKey(handle, key, key_len, static_cast<DBM_CURSOR*>(nullptr),
                [&](OpenTable& table, const Key& name) { return OpenCursor(handle, table, name); });
    *cursor = made;
    return Code(made != nullptr);
}

int32_t DBM_CursorFirst(DBM_CURSOR* cursor, uint32_t buf_size, void* buf) noexcept {
    return Step(cursor, buf_size, buf, &DBM_CURSOR::First);
}

int32_t DBM_CursorNext(DBM_CURSOR* cursor, uint32_t buf_size, void* buf) noexcept {
    return Step(cursor, buf_size, buf, &DBM_CURSOR::Next);
}

int32_t DBM_CursorLast(DBM_CURSOR* cursor, uint32_t buf_size, void* buf) noexcept {
    return Step(cursor, buf_size, buf, &DBM_CURSOR::Last);
}

int32_t DBM_CursorPrev(DBM_CURSOR* cursor, uint32_t buf_size, void* buf) noexcept {
    return Step(cursor, buf_size, buf, &DBM_CURSOR::Prev);
}

int32_t DBM_CursorSeek(DBM_CURSOR* cursor, const void* sort_key, uint32_t buf_size,
                       void* buf) noexcept {
    if (cursor == nullptr || sort_key == nullptr || (buf == nullptr && buf_size != 0)) return -1;
    return Guarded(-1, [&] { return cursor->Seek(sort_key, buf_size, buf); });
}

void DBM_CursorClose(DBM_CURSOR* cursor) noexcept {
    delete cursor;
}

uint32_t DBM_GetEntryNum(DBM_HANDLE handle, const void* key, uint32_t key_len) noexcept {
    return WithKey(handle, key, key_len, uint32_t{0},
                   [](OpenTable& table, const Key& name) { return GetEntryNum(table, name); });
}

}  // extern "C"
