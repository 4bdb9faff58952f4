// Changes of NAS-ID profiles and bindings as messages ask for them.
#pragma once

#include <aaadom/nas_id.h>

#include "base/role.h"

namespace aaadom {

/// Texts must not be null. Results are the DOM_NASID_* numbers.
uint32_t BindNasId(Role role, const char* profile_name, const char* nas_id,
                   uint16_t vlan_id) noexcept;
uint32_t UnbindNasId(Role role, const char* profile_name, const char* nas_id,
                     uint16_t vlan_id) noexcept;
/// Deletes a profile with the bindings that carry its name exactly as it is stored; the stored name
/// goes to `stored_name`, untouched when there is no such profile.
uint32_t DeleteNasIdProfile(Role role, const char* name,
                            char (&stored_name)[DOM_NASID_NAME_SIZE]) noexcept;

}  // namespace aaadom
