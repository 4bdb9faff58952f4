// The accounting-policy store: a 128-bucket table a role, looked up by exact name. The working
// role's table has a mutex; the configuration thread alone uses its own, without locking.
#pragma once

#include <cstdint>

#include "base/lock.h"
#include "base/role.h"
#include "policy/change_guard.h"
#include "policy/ita_policy.h"

namespace aaadom {

constexpr uint32_t kItaPolicyBuckets = 128;

/// Bucket of a policy name: case counts.
uint32_t ItaPolicyBucket(const void* name) noexcept;

/// The mutex of the working role's policies.
inline constexpr ExportedMutex ita_policies_mutex(g_stDomainItaPolicyTableMutexLock);

/// The role's table, null before Init and after Fini.
HASH_TABLE*& ItaPolicies(Role role) noexcept AAADOM_REQUIRES(ita_policies_mutex);

/// DOM_OK, or DOM_ERR_FAILED. A role that is not the configuration role fails when it has a table.
uint32_t InitItaPolicies(Role role) noexcept;
void FiniItaPolicies(Role role) noexcept;

/// Null also without a table.
ItaPolicy* FindItaPolicy(Role role, const ItaPolicyName& name) noexcept
    AAADOM_REQUIRES(ita_policies_mutex);

/// Adds a policy with the settings of a new one unless there is one of that name, which then stays
/// as it is and where it is. DOM_OK or DOM_ERR_FAILED.
uint32_t CreateItaPolicy(Role role, const ItaPolicyName& name) noexcept;
/// DOM_OK or DOM_ERR_NOT_FOUND.
uint32_t DeleteItaPolicy(Role role, const ItaPolicyName& name) noexcept;
/// Puts `policy` at the head of its bucket, in place of the one of that name. Without a table it is
/// freed.
void AddItaPolicy(Role role, ItaPolicyPtr policy) noexcept;

/// The result of `change(ItaPolicy&)`, run under the guard, or `absent`. A null name is absent.
template <typename Change>
uint32_t ChangeItaPolicy(const char* name, uint32_t absent, Change&& change) noexcept {
    if (name == nullptr) return absent;
    const ItaPolicyName key(name);
    const Role role = CurrentRole();
    const ChangeGuard guard(role, ita_policies_mutex);
    ItaPolicy* policy = FindItaPolicy(role, key);
    return policy == nullptr ? absent : change(*policy);
}

/// The result of `read(const ItaPolicy&)`, run under the mutex in every role, or `absent`. A null
/// name is absent.
template <typename Read>
uint32_t ReadItaPolicy(const char* name, uint32_t absent, Read&& read) noexcept {
    if (name == nullptr) return absent;
    const ItaPolicyName key(name);
    const Role role = CurrentRole();
    ExportedMutexGuard lock(ita_policies_mutex);
    const ItaPolicy* policy = FindItaPolicy(role, key);
    return policy == nullptr ? absent : read(*policy);
}

}  // namespace aaadom
