// Batch synchronisation of NAS-ID objects.
#pragma once

#include <cstdint>

#include "base/role.h"

namespace aaadom {

void SendNasIdProfiles(Role role, int32_t fd) noexcept;
void SendNasIdBindings(Role role, int32_t fd) noexcept;

}  // namespace aaadom
