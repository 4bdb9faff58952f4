// Saved numbers that the record switches and backup flags start as.
#pragma once

#include <platform/dbm.h>

#include <cstdint>

namespace aaadom {

/// Where one of the defaults is saved.
struct SavedDefault {
    const char* key;
    uint32_t key_length;
    uint32_t value_type;
};
extern const SavedDefault kRecordEnableDefault;
extern const SavedDefault kRecordBackupDefault;

/// Through g_hDomDbmHandle.
[[nodiscard]] uint32_t StoreDefault(const SavedDefault& where, uint32_t value) noexcept;
/// 0 when none is saved.
[[nodiscard]] uint32_t LoadDefault(DBM_HANDLE handle, const SavedDefault& where) noexcept;

}  // namespace aaadom
