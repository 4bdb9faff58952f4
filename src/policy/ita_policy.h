// The accounting-policy store: a 128-bucket table a role, looked up by exact name.
#pragma once

#include <aaadom/types.h>
#include <platform/hash.h>

#include <cstdint>

#include "base/role.h"

namespace aaadom {

constexpr uint32_t kItaPolicyBuckets = 128;
constexpr uint32_t kItaPolicyNameSize = 32;
constexpr uint32_t kItaLevels = 8;

struct ItaAcctLevel {
    uint32_t level_id;  // 0 = free entry
    uint32_t level_value;
    uint32_t first_pair[2];
    uint32_t second_pair[2];
};

/// One accounting policy. The bucket links stand first, so that the hash table's node is the
/// record.
struct ItaPolicy {
    HASH_NODE hash_links;
    char name[kItaPolicyNameSize];
    MethodList acct_scheme;
    uint32_t level_count;
    ItaAcctLevel levels[kItaLevels];
    uint16_t together_state;
    uint16_t separation_state;
    uint16_t quota_state;
};

/// Bucket of a policy name: case counts.
uint32_t ItaPolicyBucket(const void* name) noexcept;

/// DOM_OK, or DOM_ERR_FAILED. A role that is not the configuration role fails when it has a table.
uint32_t InitItaPolicies(Role role) noexcept;
void FiniItaPolicies(Role role) noexcept;

/// Copies the methods of a policy's accounting scheme under the mutex, whatever the role.
uint32_t CopyItaMethods(Role role, const char* policy_name,
                        MethodEntry (&methods)[DOM_METHODS]) noexcept;

}  // namespace aaadom
