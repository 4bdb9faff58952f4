// Rows of accounting_policy.h.
#include <aaadom/accounting_policy.h>

#include <cstddef>

#include "fault/sweep.h"
#include "golden/sample_policy.h"

namespace fault {
namespace {

constexpr char kNewPolicy[] = "silver";
constexpr uint32_t kLevel = 3;  ///< of kPolicy
constexpr uint32_t kBothPairs = DOM_ITA_FLAG_FIRST_PAIR | DOM_ITA_FLAG_SECOND_PAIR;

Outcome Contents(const ItaPolicy* policy) {
    if (policy == nullptr) return kNothing;
    return {kSomething, BytesOf(*policy).substr(offsetof(ItaPolicy, name))};
}
ItaPolicy* NewPolicy(const char* name) {
    return Quietly([name] {
        ItaPolicy* policy = DOM_ita_CreatePolicy(name);
        policy->together_state = 1;
        return policy;
    });
}

const Rows tables{
    Changes("DOM_ita_policy_Init", [](Scene&) { return DOM_ita_policy_Init(); }).On(ServiceAlone),
    Changes("DOM_ita_policy_Init/working role", [](Scene&) { return DOM_ita_policy_Init(); })
        .On(ServiceAlone)
        .In(fake::kWorkingRole),
    Changes("DOM_ita_policy_Fini", [](Scene&) { return DOM_ita_policy_Fini(), 0; }).NeverFails(),
    Changes("DOM_ita_policy_Fini/working role", [](Scene&) { return DOM_ita_policy_Fini(), 0; })
        .In(fake::kWorkingRole)
        .NeverFails(),
    Reads("DOM_GetItaPolicyGlobalVarByThr",
          [](Scene&) { return DOM_GetItaPolicyGlobalVarByThr() == g_pstDomainItaPolicyThrTable; })
        .Good(1),
    Reads("DOM_ita_policy_GetHashTable",
          [](Scene&) { return DOM_ita_policy_GetHashTable() == g_pstDomainItaPolicyTable; })
        .Good(1),
};

const Rows policies{
    Reads("DOM_ita_CreatePolicy",
          [](Scene&) -> Outcome {
              ItaPolicy* policy = DOM_ita_CreatePolicy(kNewPolicy);
              const Outcome outcome = Contents(policy);
              DOM_ita_policy_DestroyPolicy(policy);
              return outcome;
          })
        .Good(kSomething)
        .Fails({kNothing}),
    Reads("DOM_ita_policy_DestroyPolicy",
          [](Scene&) { return DOM_ita_policy_DestroyPolicy(NewPolicy(kNewPolicy)), 0; }),
    Reads("DOM_ita_policy_GetDomPolicyByName",
          [](Scene&) { return Contents(DOM_ita_policy_GetDomPolicyByName(kPolicy)); })
        .Good(kSomething),
    Changes("DOM_ita_policy_Create", [](Scene&) { return DOM_ita_policy_Create(kNewPolicy); }),
    Changes("DOM_ita_policy_Create/working role",
            [](Scene&) { return DOM_ita_policy_Create(kNewPolicy); })
        .In(fake::kWorkingRole),
    Changes("DOM_ita_policy_Create/policy that exists",
            [](Scene&) { return DOM_ita_policy_Create(kPolicy); })
        .NeverFails(),
    Changes("DOM_ita_policy_Delete", [](Scene&) { return DOM_ita_policy_Delete(kPolicy); })
        .In(fake::kWorkingRole)
        .NeverFails(),
    Changes("DOM_ita_policy_AddPolicy",
            [](Scene&) { return DOM_ita_policy_AddPolicy(NewPolicy(kNewPolicy)), 0; })
        .In(fake::kWorkingRole)
        .NeverFails(),
    Changes("DOM_ita_policy_AddPolicy/policy that exists",
            [](Scene&) { return DOM_ita_policy_AddPolicy(NewPolicy(kPolicy)), 0; })
        .In(fake::kWorkingRole)
        .NeverFails(),
    Reads("DOM_ita_policy_AddPolicy/no table",
          [](Scene&) { return DOM_ita_policy_AddPolicy(NewPolicy(kPolicy)), 0; })
        .On(ServiceAlone),
};

/// Sets something of kPolicy, which nothing can keep it from.
Row Sets(std::string name, uint32_t (*set)()) {
    return Changes(std::move(name), [set](Scene&) { return set(); })
        .In(fake::kWorkingRole)
        .NeverFails();
}
uint32_t SetScheme() {
    return DOM_ita_policy_SetAcctScheme(kPolicy, golden::SamplePolicy().acct_scheme);
}
uint32_t SetLevel(uint32_t level) {
    return DOM_ita_policy_SetAcctLevel(kPolicy, level, 41, 42, 43, 44, 45, kBothPairs);
}

const Rows settings{
    Sets("DOM_ita_policy_SetAcctScheme", SetScheme),
    Sets("DOM_ita_policy_UnSetAcctScheme", [] { return DOM_ita_policy_UnSetAcctScheme(kPolicy); })
        .After([](Scene&) { fake::InRole(fake::kWorkingRole, [] { return SetScheme(); }); }),
    Sets("DOM_ita_policy_SetTogetherState",
         [] { return DOM_ita_policy_SetTogetherState(kPolicy, 1); }),
    Sets("DOM_ita_policy_SetSeprateState",
         [] { return DOM_ita_policy_SetSeprateState(kPolicy, 1); }),
    Sets("DOM_ita_policy_SetQuotaState", [] { return DOM_ita_policy_SetQuotaState(kPolicy, 0); }),
    Sets("DOM_ita_policy_SetAcctLevel/new level", [] { return SetLevel(kLevel + 1); }),
    Sets("DOM_ita_policy_SetAcctLevel/level that exists", [] { return SetLevel(kLevel); }),
    Sets("DOM_ita_policy_UnSetOneAcctLevel",
         [] { return DOM_ita_policy_UnSetOneAcctLevel(kPolicy, kLevel); }),
    Sets("DOM_ita_policy_UnSetAllAcctLevel",
         [] { return DOM_ita_policy_UnSetAllAcctLevel(kPolicy); }),
};

const Rows readers{
    Reads("DOM_ita_policy_GetMethodList",
          [](Scene&) -> Outcome {
              MethodList list{};
              const uint32_t result = DOM_ita_policy_GetMethodList(kPolicy, &list);
              return {result, BytesOf(list)};
          }),
    Reads("DOM_ita_policy_GetServicePolicyByName",
          [](Scene&) -> Outcome {
              ItaServicePolicy policy{};
              const uint32_t result = DOM_ita_policy_GetServicePolicyByName(kPolicy, &policy);
              return {result, BytesOf(policy)};
          }),
    Reads("DOM_ita_IsPolicyExist", [](Scene&) { return DOM_ita_IsPolicyExist(kPolicy); }).Good(1),
};

}  // namespace
}  // namespace fault
