// The recording-policy store: one slot a role for each policy type, of which there is one.
#pragma once

#include <aaadom/recording_policy.h>

#include <cstdint>

#include "base/role.h"

namespace aaadom {

/// Empties the role's slot without freeing what it held. DOM_ERR_FAILED when the mutex cannot be
/// made; the slot is emptied all the same.
uint32_t InitRecPolicies(Role role) noexcept;
void FiniRecPolicies(Role role) noexcept;
/// The slot of a policy type: `type` for the configuration role, the one after it for the other.
RecPolicy*& RecPolicySlot(Role role, uint32_t type) noexcept;

}  // namespace aaadom
