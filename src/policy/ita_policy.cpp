#include "policy/ita_policy.h"

#include <cstring>

namespace aaadom {
namespace {
constexpr uint16_t kQuotaOutByDefault = 1;
}

ItaPolicyPtr NewItaPolicy(const ItaPolicyName& name) noexcept {
    ItaPolicyPtr policy(static_cast<ItaPolicy*>(calloc(1, sizeof(ItaPolicy))));
    if (!policy) return nullptr;
    CopyField(policy->name, name.text);
    SetDefaultScheme(*policy);
    policy->quota_out_state = kQuotaOutByDefault;
    return policy;
}

void SetDefaultScheme(ItaPolicy& policy) noexcept {
    memset(policy.acct_scheme, 0, sizeof policy.acct_scheme);
    policy.acct_scheme[0].method_kind = METHOD_LAST_5;
}

}  // namespace aaadom
