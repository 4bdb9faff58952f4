// One accounting policy: its defaults and its record's life.
#pragma once

#include <aaadom/accounting_policy.h>

#include <cstdint>
#include <cstdlib>
#include <memory>

#include "base/text.h"

namespace aaadom {

struct ItaPolicyDestroyer {
    void operator()(ItaPolicy* policy) const noexcept { free(policy); }
};
using ItaPolicyPtr = std::unique_ptr<ItaPolicy, ItaPolicyDestroyer>;

/// A policy name as the store keeps it. Arguments are cut before anything is hashed or compared, so
/// that an overlong name finds the policy that it created.
struct ItaPolicyName {
    explicit ItaPolicyName(const char* name) noexcept { CopyText(text, name); }
    char text[DOM_ITA_NAME_SIZE];
};

/// A policy of that name with the settings of a new one; null when memory is short.
[[nodiscard]] ItaPolicyPtr NewItaPolicy(const ItaPolicyName& name) noexcept;

/// One item of kind 5 alone: what a policy has until a scheme is set. Peers drop a policy whose
/// scheme is all empty, because its message then carries no item.
void SetDefaultScheme(ItaPolicy& policy) noexcept;

}  // namespace aaadom
