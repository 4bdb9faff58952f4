// Keys of the configuration table and binary values: one whole value a key.
#pragma once

#include <aaadom/database.h>
#include <aaadom/results.h>

#include <cstdint>

namespace aaadom {

constexpr int32_t kWriteWhole = -1;
constexpr int32_t kReadWhole = 0;

/// Writes through g_hDomDbmHandle; 0 or DOM_ERR_FAILED.
[[nodiscard]] inline uint32_t StoreBinary(const char* key, uint32_t key_length, uint32_t length,
                                          const void* value, uint32_t value_type) noexcept {
    return DBM_SetBinary(g_hDomDbmHandle, key, key_length, kWriteWhole, length, value,
                         value_type) == 0
               ? DOM_OK
               : DOM_ERR_FAILED;
}

/// Leaves the key with an empty value, which reads as missing.
[[nodiscard]] inline uint32_t StoreEmpty(const char* key, uint32_t key_length,
                                         uint32_t value_type) noexcept {
    return StoreBinary(key, key_length, 0, nullptr, value_type);
}

/// Bytes read, 0 or less when there are none.
inline int32_t LoadBinary(DBM_HANDLE handle, const char* key, uint32_t key_length,
                          uint32_t capacity, void* value) noexcept {
    return DBM_GetBinary(handle, key, key_length, kReadWhole, capacity, value);
}

/// Whether there is a key, of whatever kind. Only the low 16 bits of the database's answer count.
inline bool IsKeySaved(DBM_HANDLE handle, const char* key, uint32_t length) noexcept {
    return static_cast<uint16_t>(DBM_IsKeyExist(handle, key, length)) == 1;
}

}  // namespace aaadom
