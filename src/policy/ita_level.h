// The traffic accounting levels of a policy. Callers guard the policy.
#pragma once

#include <aaadom/accounting_policy.h>

#include <cstdint>

namespace aaadom {

/// What a level is set to.
struct ItaLevelChange {
    uint32_t level_id;
    uint32_t level_value;  // 0 keeps the value
    uint32_t first_pair[2];
    uint32_t second_pair[2];
    uint32_t flags;  // DOM_ITA_FLAG_*: the pairs to store
};

/// DOM_OK, or DOM_ERR_FAILED when eight other levels are set.
[[nodiscard]] uint32_t SetItaLevel(ItaPolicy& policy, const ItaLevelChange& change) noexcept;
/// DOM_OK or DOM_ERR_NOT_FOUND.
[[nodiscard]] uint32_t UnsetItaLevel(ItaPolicy& policy, uint32_t level_id) noexcept;
void UnsetAllItaLevels(ItaPolicy& policy) noexcept;

}  // namespace aaadom
