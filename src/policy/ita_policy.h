// The accounting-policy store: a 128-bucket table a role, looked up by exact name.
#pragma once

#include <aaadom/accounting_policy.h>

#include <cstdint>

#include "base/role.h"

namespace aaadom {

constexpr uint32_t kItaPolicyBuckets = 128;
/// Bucket of a policy name: case counts.
uint32_t ItaPolicyBucket(const void* name) noexcept;

/// DOM_OK, or DOM_ERR_FAILED. A role that is not the configuration role fails when it has a table.
uint32_t InitItaPolicies(Role role) noexcept;
void FiniItaPolicies(Role role) noexcept;

/// Copies the methods of a policy's accounting scheme under the mutex, whatever the role.
uint32_t CopyItaMethods(Role role, const char* policy_name,
                        MethodEntry (&methods)[DOM_METHODS]) noexcept;

}  // namespace aaadom
