// Message codes of NAS-ID profiles and their bindings, which the configuration thread refuses: the
// objects exist in the working role only.
#include <aaadom/nas_id.h>
#include <aaadom/nas_id_codec.h>
#include <aaadom/results.h>

#include "base/role.h"
#include "codec/restore.h"

namespace aaadom {
namespace {

bool IsRefusedHere() noexcept {
    return CurrentRole() == Role::kConfig;
}

/// The name under which an existing profile is stored. Asking to add it tells, and adds nothing.
void ReadStoredName(const char* name, char* stored_name) noexcept {
    (void)DOM_ProcNasIdProfileCfg(name, DOM_PRESENT, stored_name, nullptr);
}

}  // namespace

uint32_t RestoreNasIdProfile(Restore& restore) {
    if (IsRefusedHere()) return DOM_ERR_FAILED;
    char name[DOM_NASID_NAME_SIZE] = {};
    if (DOM_DecodeNasIdProfile(restore.msg, name) != DOM_OK) return DOM_ERR_FAILED;
    const uint32_t result =
        DOM_ProcNasIdProfileCfg(name, restore.present, nullptr, &restore.change);
    return result == DOM_NASID_OK ? DOM_OK : DOM_ERR_FAILED;
}

uint32_t RestoreNasIdBinding(Restore& restore) {
    if (IsRefusedHere()) return DOM_ERR_FAILED;
    char profile[DOM_NASID_NAME_SIZE] = {};
    char nas_id[DOM_NASID_NAME_SIZE] = {};
    uint16_t vlan_id = 0;
    if (DOM_DecodeNasIdBindVlanId(restore.msg, profile, nas_id, &vlan_id) != DOM_OK)
        return DOM_ERR_FAILED;
    if (DOM_ProcNasIdBindVlanIdCfg(nas_id, vlan_id, restore.present, profile, &restore.change) !=
        DOM_NASID_OK)
        return DOM_ERR_FAILED;
    // The profile was found ignoring case; its database key is found by its exact bytes only.
    ReadStoredName(profile, restore.change.nas_id_profile_name);
    return DOM_OK;
}

}  // namespace aaadom
