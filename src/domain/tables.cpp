#include "domain/tables.h"

#include <aaadom/domain.h>

#include "base/lookup2.h"
#include "base/text.h"

namespace aaadom {
namespace {

constinit PerRole<DomainTable> domains;
constinit PerRole<SessionLimits> limits;
constinit PerRole<NasIdBindTable> nas_id_bindings;
constinit PerRole<HASH_TABLE*> nas_id_profiles;
constinit PerRole<RecordSwitchInfo> switches;
constinit PerRole<RecordBackupInfo> backup;
constinit PerRole<uint32_t> device_id;

}  // namespace

DomainTable& Domains(Role role) noexcept {
    return domains.Of(role);
}
SessionLimits& Limits(Role role) noexcept {
    return limits.Of(role);
}
NasIdBindTable& NasIdBindings(Role role) noexcept {
    return nas_id_bindings.Of(role);
}
HASH_TABLE*& NasIdProfiles(Role role) noexcept {
    return nas_id_profiles.Of(role);
}
RecordSwitchInfo& SwitchesOf(Role role) noexcept {
    return switches.Of(role);
}
RecordBackupInfo& BackupOf(Role role) noexcept {
    return backup.Of(role);
}
uint32_t& DeviceIdOf(Role role) noexcept {
    return device_id.Of(role);
}

// The working role changes its lists from its own thread only; readers of any role rely on that.
AAADOM_NO_TSA const ZorvDomain* WorkingMibHead() noexcept {
    return domains.Working().mib_head;
}
AAADOM_NO_TSA const NetConfDomain* WorkingNetConfSentinel() noexcept {
    return &domains.Working().netconf;
}

void DomainTable::SetSlot(uint32_t slot, DomainInfo* record) noexcept {
    if (slots[slot] != nullptr) names.Remove(slot);
    record->slot = slot;
    record->name[DOM_NAME_SIZE - 1] = '\0';
    slots[slot] = record;
    names.Add(slot, record->name);
}

void DomainTable::ClearSlot(uint32_t slot) noexcept {
    if (slots[slot] != nullptr) names.Remove(slot);
    slots[slot] = nullptr;
}

uint32_t NasIdProfileBucket(const void* name) noexcept {
    char lower_case[kNasIdNameSize];
    CopyText(lower_case, static_cast<const char*>(name));
    DOM_ToLowerCaseStr(lower_case);
    return Lookup2(lower_case, strlen(lower_case), 0) & (kNasIdProfileBuckets - 1);
}

uint32_t NasIdBindBucket(const void* key) noexcept {
    return Lookup2(key, sizeof(NasIdBindKey), 0) & (kNasIdBindBuckets - 1);
}

}  // namespace aaadom
