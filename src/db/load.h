// Reads the saved configuration back. Every reader takes the handle, so that it can be one that the
// reader opened for itself.
#pragma once

#include <aaadom/types.h>

#include <cstdint>

namespace aaadom {

/// A saved limit that was never stored reads as this number.
constexpr uint32_t kPresetSessionLimit = 32;

/// The record in one array element, or null for an empty or undecodable one.
[[nodiscard]] DomainInfo* LoadDomain(DBM_HANDLE handle, uint32_t index) noexcept;
/// The record of exactly this name at the lowest index, or null.
[[nodiscard]] DomainInfo* LoadDomain(DBM_HANDLE handle, const char* name) noexcept;
/// `name` has DOM_NAME_SIZE bytes.
[[nodiscard]] uint32_t LoadDefaultDomain(DBM_HANDLE handle, char* name) noexcept;
[[nodiscard]] uint32_t LoadUnknownDomain(DBM_HANDLE handle, char* name) noexcept;
/// Presets each limit; a stored value that is too short leaves the preset in the rest.
[[nodiscard]] uint32_t LoadSessionLimits(DBM_HANDLE handle, SessionLimits& limits) noexcept;
[[nodiscard]] uint32_t LoadDeviceId(DBM_HANDLE handle, uint32_t& device_id) noexcept;
/// Leaves what the saved message does not carry.
[[nodiscard]] uint32_t LoadRecordSwitches(DBM_HANDLE handle, RecordSwitches& switches) noexcept;
/// Sets the flags that are saved as on and leaves the others.
[[nodiscard]] uint32_t LoadBackupMethods(DBM_HANDLE handle, BackupMethods& methods) noexcept;

}  // namespace aaadom
