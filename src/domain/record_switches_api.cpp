#include <aaadom/record_switches.h>
#include <aaadom/results.h>

#include "base/lock.h"
#include "domain/tables.h"

namespace {

constexpr uint32_t kLargestBackupMethod = 7;  // three flags, bits 0 to 2

// Plain words of the process, set by the daemon before it starts its threads.
constinit uint32_t record_enable_default = 0;
constinit uint32_t backup_method_default = 0;

uint16_t FlagOfBit(uint32_t packed, uint32_t bit) noexcept {
    return static_cast<uint16_t>((packed >> bit) & 1u);
}

}  // namespace

extern "C" {

void DOM_SetUserRecordEnableDefault(uint32_t value) noexcept {
    record_enable_default = value;
}

uint32_t DOM_GetUserRecordEnableDefault(void) noexcept {
    return record_enable_default;
}

void DOM_SetUserRecordBackupMethodDefault(uint32_t value) noexcept {
    backup_method_default = value > kLargestBackupMethod ? 0 : value;
}

uint32_t DOM_GetUserRecordBackupMethodDefault(void) noexcept {
    return backup_method_default;
}

uint32_t DOM_InitRecordBackupInfo(void) noexcept {
    aaadom::RecordBackupInfo& backup = aaadom::BackupOf(aaadom::CurrentRole());
    if (pthread_rwlock_init(&backup.lock, nullptr) != 0) return DOM_ERR_FAILED;
    uint32_t packed = backup_method_default;
    backup.methods = {FlagOfBit(packed, 0), FlagOfBit(packed, 1), FlagOfBit(packed, 2)};
    return DOM_OK;
}

uint32_t DOM_FiniRecordBackupInfo(void) noexcept {
    aaadom::RecordBackupInfo& backup = aaadom::BackupOf(aaadom::CurrentRole());
    int result = aaadom::DestroyToInitial(backup.lock);
    backup.methods = BackupMethods{};
    return static_cast<uint32_t>(result);
}

}  // extern "C"
