#include "domain/nas_id_change.h"

#include <cstring>

#include "base/text.h"
#include "domain/nas_id_binding.h"
#include "domain/nas_id_profile.h"

namespace aaadom {

static_assert(DOM_NASID_NAME_SIZE == kNasIdNameSize);

uint32_t BindNasId(Role role, const char* profile_name, const char* nas_id,
                   uint16_t vlan_id) noexcept {
    NasIdBindTable& table = NasIdBindings(role);
    MutexGuard lock(table.mutex);
    NasIdBinding* binding = FindNasIdBinding(table, profile_name, vlan_id);
    if (binding == nullptr) {
        const bool added = AddNasIdBinding(table, profile_name, nas_id, vlan_id);
        return added ? DOM_NASID_OK : DOM_NASID_FAILED;
    }
    if (strcmp(binding->nas_id, nas_id) == 0) return DOM_NASID_UNCHANGED;
    CopyText(binding->nas_id, nas_id);
    return DOM_NASID_OK;
}

uint32_t UnbindNasId(Role role, const char* profile_name, const char* nas_id,
                     uint16_t vlan_id) noexcept {
    NasIdBindTable& table = NasIdBindings(role);
    MutexGuard lock(table.mutex);
    NasIdBinding* binding = FindNasIdBinding(table, profile_name, vlan_id);
    // Whoever unbinds names the NAS-ID too: a client that has not seen the latest change of the
    // binding must not remove it.
    if (binding == nullptr || strcmp(binding->nas_id, nas_id) != 0) return DOM_NASID_NOT_FOUND;
    RemoveNasIdBinding(binding);
    return DOM_NASID_OK;
}

uint32_t DeleteNasIdProfile(Role role, const char* name,
                            char (&stored_name)[DOM_NASID_NAME_SIZE]) noexcept {
    NasIdProfile* profile = FindNasIdProfile(role, name);
    if (profile == nullptr) return DOM_NASID_NOT_FOUND;
    CopyField(stored_name, profile->name);
    {
        NasIdBindTable& table = NasIdBindings(role);
        MutexGuard lock(table.mutex);
        RemoveNasIdBindingsOf(table, profile->name);
    }
    RemoveNasIdProfile(profile);
    return DOM_NASID_OK;
}

}  // namespace aaadom
