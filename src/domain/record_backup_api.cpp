#include <aaadom/record_switches.h>
#include <aaadom/results.h>

#include "base/lock.h"
#include "domain/tables.h"

using namespace aaadom;

namespace {

constexpr uint16_t kOn = 1;
constexpr uint32_t kLargestBackupMethod = 7;  // three flags, bits 0 to 2
/// Records of a list that this device does not know are backed up: better twice than not at all.
constexpr uint32_t kFlagOfUnknownType = 1;

// Plain word of the process, set by the daemon before it starts its threads.
constinit uint32_t backup_method_default = 0;

uint16_t FlagOfBit(uint32_t packed, uint32_t bit) noexcept {
    return static_cast<uint16_t>((packed >> bit) & 1u);
}

BackupMethods ReadMethods() noexcept {
    RecordBackupInfo& backup = BackupOf(CurrentRole());
    ReadGuard lock(backup.lock);
    return backup.methods;
}

uint32_t Pack(const BackupMethods& methods) noexcept {
    return (methods.online_fail == kOn ? 1u : 0u) | (methods.abnormal_offline == kOn ? 2u : 0u) |
           (methods.normal_offline == kOn ? 4u : 0u);
}

}  // namespace

extern "C" {

void DOM_SetUserRecordBackupMethodDefault(uint32_t value) noexcept {
    backup_method_default = value > kLargestBackupMethod ? 0 : value;
}

uint32_t DOM_GetUserRecordBackupMethodDefault(void) noexcept {
    return backup_method_default;
}

// Initialisation owns the flags alone, and the lock is not usable before it ends.
AAADOM_NO_TSA uint32_t DOM_InitRecordBackupInfo(void) noexcept {
    RecordBackupInfo& backup = BackupOf(CurrentRole());
    if (backup.lock.Init() != 0) return DOM_ERR_FAILED;
    const uint32_t packed = backup_method_default;
    backup.methods = {FlagOfBit(packed, 0), FlagOfBit(packed, 1), FlagOfBit(packed, 2)};
    return DOM_OK;
}

AAADOM_NO_TSA uint32_t DOM_FiniRecordBackupInfo(void) noexcept {
    RecordBackupInfo& backup = BackupOf(CurrentRole());
    const int result = backup.lock.Destroy();
    backup.methods = BackupMethods{};
    return static_cast<uint32_t>(result);
}

void DOM_SetAAAUserRecordBackupMethod(const BackupMethods* methods) noexcept {
    if (methods == nullptr) return;
    RecordBackupInfo& backup = BackupOf(CurrentRole());
    WriteGuard lock(backup.lock);
    backup.methods = *methods;
}

void DOM_GetAAAUserRecordBackupMethod(BackupMethods* methods_out) noexcept {
    const BackupMethods methods = ReadMethods();
    if (methods_out != nullptr) *methods_out = methods;
}

uint32_t DOM_GetAAAUserRecordBackupMethodByType(uint32_t type) noexcept {
    const BackupMethods methods = ReadMethods();
    switch (type) {
        case DOM_RECORD_ONLINE_FAIL:
            return methods.online_fail;
        case DOM_RECORD_ABNORMAL_OFFLINE:
            return methods.abnormal_offline;
        case DOM_RECORD_NORMAL_OFFLINE:
            return methods.normal_offline;
        default:
            return kFlagOfUnknownType;
    }
}

uint32_t DOM_GetAllRecordBackupMethodToUint(void) noexcept {
    return Pack(ReadMethods());
}

uint32_t DOM_IsDefaultUserRecordBackupMethod(void) noexcept {
    return backup_method_default == Pack(ReadMethods()) ? 1 : 0;
}

}  // extern "C"
