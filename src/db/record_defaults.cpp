#include "db/record_defaults.h"

#include <aaadom/db_layout.h>

#include "db/binary_value.h"

namespace aaadom {

const SavedDefault kRecordEnableDefault = {DOM_DB_KEY_RECORD_ENABLE_DEFAULT,
                                           DOM_DB_KEY_RECORD_ENABLE_DEFAULT_LEN,
                                           DOM_DB_RECORD_ENABLE_DEFAULT};
const SavedDefault kRecordBackupDefault = {DOM_DB_KEY_RECORD_BACKUP_DEFAULT,
                                           DOM_DB_KEY_RECORD_BACKUP_DEFAULT_LEN,
                                           DOM_DB_RECORD_BACKUP_DEFAULT};

// Both are stored big-endian, unlike the other numbers of the configuration.

uint32_t StoreDefault(const SavedDefault& where, uint32_t value) noexcept {
    const uint8_t bytes[4] = {static_cast<uint8_t>(value >> 24), static_cast<uint8_t>(value >> 16),
                              static_cast<uint8_t>(value >> 8), static_cast<uint8_t>(value)};
    return StoreBinary(where.key, where.key_length, sizeof bytes, bytes, where.value_type);
}

uint32_t LoadDefault(DBM_HANDLE handle, const SavedDefault& where) noexcept {
    uint8_t bytes[4] = {};
    const int32_t length = LoadBinary(handle, where.key, where.key_length, sizeof bytes, bytes);
    if (length != static_cast<int32_t>(sizeof bytes)) return 0;  // missing or cut off
    return uint32_t{bytes[0]} << 24 | uint32_t{bytes[1]} << 16 | uint32_t{bytes[2]} << 8 | bytes[3];
}

}  // namespace aaadom
