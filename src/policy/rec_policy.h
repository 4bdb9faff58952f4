// The recording-policy store: one slot a role for the one policy type. Every other type counts as
// absent here, because the slots of a second type would overlap those of the first.
#pragma once

#include <aaadom/recording_policy.h>

#include <cstdint>
#include <cstdlib>
#include <memory>

#include "base/role.h"
#include "policy/change_guard.h"

namespace aaadom {

struct RecPolicyDestroyer {
    void operator()(RecPolicy* policy) const noexcept { free(policy); }
};
using RecPolicyPtr = std::unique_ptr<RecPolicy, RecPolicyDestroyer>;

inline bool IsRecPolicyType(uint32_t type) noexcept {
    return type == DOM_REC_POLICY_CONNECTION;
}

/// A policy of that type without methods; null when memory is short.
[[nodiscard]] RecPolicyPtr NewRecPolicy(uint32_t type) noexcept;

/// The mutex of the working role's policy.
inline constexpr ExportedMutex rec_policies_mutex(g_stRecPolicyTypeMutexLock);

/// The role's policy, null when it has none.
RecPolicy*& RecPolicySlot(Role role) noexcept AAADOM_REQUIRES(rec_policies_mutex);

/// Empties the role's slot without freeing what it held. DOM_ERR_FAILED when the mutex cannot be
/// made; the slot is emptied all the same.
uint32_t InitRecPolicies(Role role) noexcept;
void FiniRecPolicies(Role role) noexcept;

/// Puts `policy` into the working role's slot and frees what was there. A policy of another type
/// is freed.
void SetWorkingRecPolicy(RecPolicyPtr policy) noexcept;
/// Frees the role's policy; nothing for another type.
void DestroyRecPolicy(Role role, uint32_t type) noexcept;

/// The result of `visit(RecPolicy&)`, run under the guard of the calling role, or `absent`.
template <typename Visit>
uint32_t WithRecPolicy(uint32_t type, uint32_t absent, Visit&& visit) noexcept {
    if (!IsRecPolicyType(type)) return absent;
    const Role role = CurrentRole();
    const ChangeGuard guard(role, rec_policies_mutex);
    RecPolicy* policy = RecPolicySlot(role);
    return policy == nullptr ? absent : visit(*policy);
}

}  // namespace aaadom
