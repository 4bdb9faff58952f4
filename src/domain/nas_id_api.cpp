#include <aaadom/db_layout.h>
#include <aaadom/nas_id.h>
#include <aaadom/results.h>

#include "base/text.h"
#include "domain/nas_id_binding.h"
#include "domain/nas_id_change.h"
#include "domain/nas_id_profile.h"
#include "domain/nas_id_sync.h"

using namespace aaadom;

namespace {

constexpr uint16_t kAdd = 1;  // the operation that adds; every other one deletes

void RecordProfile(DomDbUpdateReq* change, uint16_t operation, const char* name) noexcept {
    if (change == nullptr) return;
    change->object_type = DOM_DB_NASID_PROFILE;
    change->operation = operation;
    CopyText(change->nas_id_profile_name, name);
}

bool MaySend(Role role, int32_t fd) noexcept {
    return fd >= 0 && role == Role::kWorking;
}

}  // namespace

extern "C" {

uint32_t DOM_AddNasIdProfile(const char* name) noexcept {
    return AddNasIdProfile(CurrentRole(), name) ? DOM_NASID_OK : DOM_NASID_FAILED;
}

uint32_t DOM_AddNasIdBindVlanId(const char* profile_name, const char* nas_id,
                                uint16_t vlan_id) noexcept {
    if (profile_name == nullptr || nas_id == nullptr) return DOM_NASID_FAILED;
    return BindNasId(CurrentRole(), profile_name, nas_id, vlan_id);
}

uint32_t DOM_GetNasIdByProfileAndVlanId(const char* profile_name, uint16_t vlan_id,
                                        char* nas_id_out) noexcept {
    const NasIdBindTable& searched = NasIdBindings(CurrentRole());
    // The working role's mutex for either role's table: the PAM side asks from working threads, and
    // the configuration thread, whose table nobody else touches, must not ask while they change
    // theirs.
    MutexGuard lock(NasIdBindings(Role::kWorking).mutex);
    const auto find = [&]() AAADOM_NO_TSA {
        return FindNasIdBinding(searched, profile_name, vlan_id);
    };
    const NasIdBinding* binding = find();
    if (binding == nullptr) return DOM_ERR_FAILED;
    CopyText(nas_id_out, DOM_NASID_NAME_SIZE, binding->nas_id);
    return DOM_OK;
}

uint32_t DOM_ProcNasIdProfileCfg(const char* name, uint16_t operation, char* name_out,
                                 DomDbUpdateReq* change) noexcept {
    if (name == nullptr) return DOM_NASID_FAILED;
    const Role role = CurrentRole();
    if (operation != kAdd) {
        char stored_name[DOM_NASID_NAME_SIZE];
        const uint32_t result = DeleteNasIdProfile(role, name, stored_name);
        if (result == DOM_NASID_OK) RecordProfile(change, operation, stored_name);
        return result;
    }
    if (const NasIdProfile* profile = FindNasIdProfile(role, name)) {
        CopyText(name_out, DOM_NASID_NAME_SIZE, profile->name);
        return DOM_NASID_UNCHANGED;
    }
    const uint32_t result = DOM_AddNasIdProfile(name);
    CopyText(name_out, DOM_NASID_NAME_SIZE, name);
    if (result == DOM_NASID_OK) RecordProfile(change, operation, name);
    return result;
}

uint32_t DOM_ProcNasIdBindVlanIdCfg(const char* nas_id, uint16_t vlan_id, uint16_t operation,
                                    const char* profile_name, DomDbUpdateReq* change) noexcept {
    const Role role = CurrentRole();
    if (nas_id == nullptr || FindNasIdProfile(role, profile_name) == nullptr) {
        return DOM_NASID_FAILED;
    }
    const uint32_t result = operation == kAdd ? BindNasId(role, profile_name, nas_id, vlan_id)
                                              : UnbindNasId(role, profile_name, nas_id, vlan_id);
    if (result != DOM_NASID_OK || change == nullptr) return result;
    change->object_type = DOM_DB_NASID_VLAN;
    change->operation = operation;
    change->vlan_id = vlan_id;
    // As given: the profile's own spelling is the caller's to choose before he saves.
    CopyText(change->nas_id_profile_name, profile_name);
    CopyText(change->nas_id, nas_id);
    return result;
}

void DOM_SyncAllNasIdProfile(int32_t fd) noexcept {
    const Role role = CurrentRole();
    if (MaySend(role, fd)) SendNasIdProfiles(role, fd);
}

void DOM_SyncAllNasIdBindVlanId(int32_t fd) noexcept {
    const Role role = CurrentRole();
    if (MaySend(role, fd)) SendNasIdBindings(role, fd);
}

}  // extern "C"
