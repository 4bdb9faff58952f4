/* Arrays, binary values, keys, keys by value type. */
#include <limits.h>
#include <platform/dbm.h>
#include <stdlib.h>

#include "dbm/seam.h"
#include "dbm/value_types.h"
#include "dbm/values.h"

using namespace aaadom::dbm;

namespace {

/* The index arguments that mean "the whole value". */
bool IsWholeValue(int32_t index) {
    return index == -1 || index == 0;
}

bool ValueIsUsable(uint32_t value_len, const void* value) {
    return value_len <= INT32_MAX && (value_len == 0 || value != nullptr);
}

/* What DBM_FreeIterator frees; the key texts belong to the handle, not to it. */
struct Iterator {
    uint32_t filled;
};

}  // namespace

extern "C" {

int32_t DBM_SetArray(DBM_HANDLE handle, const void* key, uint32_t key_len, uint32_t index,
                     uint32_t value_len, const void* value, uint32_t value_type) noexcept {
    const bool done = ValueIsUsable(value_len, value) &&
                      WithKey(handle, key, key_len, false, [&](OpenTable& table, const Key& name) {
                          return value_len == 0 ? RemoveArrayElement(table, name, index)
                                                : SetArrayElement(table, name, index, value_len,
                                                                  value, value_type);
                      });
    return done ? 0 : -1;
}

int32_t DBM_GetArray(DBM_HANDLE handle, const void* key, uint32_t key_len, uint32_t index,
                     uint32_t buf_size, void* buf) noexcept {
    if (buf == nullptr && buf_size != 0) return -1;
    return WithKey(handle, key, key_len, -1, [&](OpenTable& table, const Key& name) {
        return GetArrayElement(table, name, index, buf_size, buf);
    });
}

int32_t DBM_GetNextArrayIndex(DBM_HANDLE handle, const void* key, uint32_t key_len,
                              int32_t after) noexcept {
    return WithKey(handle, key, key_len, -1, [&](OpenTable& table, const Key& name) {
        return GetNextArrayIndex(table, name, after);
    });
}

uint32_t DBM_SetBinary(DBM_HANDLE handle, const void* key, uint32_t key_len, int32_t index,
                       uint32_t value_len, const void* value, uint32_t value_type) noexcept {
    if (!IsWholeValue(index) || !ValueIsUsable(value_len, value)) return Code(false);
    return ChangeKey(handle, key, key_len, [&](OpenTable& table, const Key& name) {
        return SetBinary(table, name, value_len, value, value_type);
    });
}

int32_t DBM_GetBinary(DBM_HANDLE handle, const void* key, uint32_t key_len, int32_t index,
                      uint32_t buf_size, void* buf) noexcept {
    if (!IsWholeValue(index) || (buf == nullptr && buf_size != 0)) return -1;
    return WithKey(handle, key, key_len, -1, [&](OpenTable& table, const Key& name) {
        return GetBinary(table, name, buf_size, buf, false);
    });
}

int32_t DBM_GetBinaryLen(DBM_HANDLE handle, const void* key, uint32_t key_len) noexcept {
    return WithKey(handle, key, key_len, -1, [&](OpenTable& table, const Key& name) {
        return GetBinary(table, name, 0, nullptr, true);
    });
}

uint32_t DBM_IsKeyExist(DBM_HANDLE handle, const void* key, uint32_t key_len) noexcept {
    return WithKey(handle, key, key_len, uint32_t{0},
                   [](OpenTable& table, const Key& name) { return IsKeyExist(table, name); });
}

uint32_t DBM_DeleteKey(DBM_HANDLE handle, const void* key, uint32_t key_len) noexcept {
    return ChangeKey(handle, key, key_len,
                     [](OpenTable& table, const Key& name) { return DeleteKey(table, name); });
}

uint32_t DBM_GetKeyNumByValueType(DBM_HANDLE handle, uint32_t value_type) noexcept {
    return Guarded(uint32_t{0}, [&] {
        const OpenTablePtr table = FindHandle(handle);
        return table != nullptr ? CountKeys(*table, value_type) : 0;
    });
}

uint32_t DBM_GetKeysByValueType(DBM_HANDLE handle, uint32_t count, uint32_t value_type,
                                void** iterator, DBM_KEY_SLOT* slots) noexcept {
    if (iterator != nullptr) *iterator = nullptr;
    if (slots == nullptr) return 0;
    return Guarded(uint32_t{0}, [&]() -> uint32_t {
        const OpenTablePtr table = FindHandle(handle);
        if (table == nullptr) return 0;
        const uint32_t filled = ListKeys(*table, value_type, count, slots);
        if (filled == 0 || iterator == nullptr) return filled;
        auto* made = static_cast<Iterator*>(calloc(1, sizeof(Iterator)));
        if (made == nullptr) return 0;
        made->filled = filled;
        *iterator = made;
        return filled;
    });
}

void DBM_FreeIterator(void* iterator) noexcept {
    free(iterator);
}

}  // extern "C"
