#include <aaadom/accounting_policy.h>
#include <aaadom/results.h>

#include <cstring>

#include "policy/ita_level.h"
#include "policy/ita_store.h"

using namespace aaadom;

extern "C" {

uint32_t DOM_ita_policy_Init(void) noexcept {
    return InitItaPolicies(CurrentRole());
}

void DOM_ita_policy_Fini(void) noexcept {
    FiniItaPolicies(CurrentRole());
}

// These three hand out what the caller uses under the mutex, or on the configuration thread.
AAADOM_NO_TSA HASH_TABLE* DOM_GetItaPolicyGlobalVarByThr(void) noexcept {
    return ItaPolicies(CurrentRole());
}

AAADOM_NO_TSA HASH_TABLE* DOM_ita_policy_GetHashTable(void) noexcept {
    return ItaPolicies(Role::kWorking);
}

AAADOM_NO_TSA ItaPolicy* DOM_ita_policy_GetDomPolicyByName(const char* name) noexcept {
    return name == nullptr ? nullptr : FindItaPolicy(CurrentRole(), ItaPolicyName(name));
}

ItaPolicy* DOM_ita_CreatePolicy(const char* name) noexcept {
    return name == nullptr ? nullptr : NewItaPolicy(ItaPolicyName(name)).release();
}

void DOM_ita_policy_DestroyPolicy(ItaPolicy* policy) noexcept {
    ItaPolicyPtr(policy).reset();
}

uint32_t DOM_ita_policy_Create(const char* name) noexcept {
    return name == nullptr ? DOM_ERR_FAILED : CreateItaPolicy(CurrentRole(), ItaPolicyName(name));
}

uint32_t DOM_ita_policy_Delete(const char* name) noexcept {
    return name == nullptr ? DOM_ERR_NOT_FOUND
                           : DeleteItaPolicy(CurrentRole(), ItaPolicyName(name));
}

void DOM_ita_policy_AddPolicy(ItaPolicy* policy) noexcept {
    if (policy != nullptr) AddItaPolicy(CurrentRole(), ItaPolicyPtr(policy));
}

uint32_t DOM_ita_policy_SetAcctScheme(const char* name,
                                      const MethodEntry methods[DOM_METHODS]) noexcept {
    if (methods == nullptr) return DOM_ERR_FAILED;
    return ChangeItaPolicy(name, DOM_ERR_NOT_FOUND, [methods](ItaPolicy& policy) {
        memcpy(policy.acct_scheme, methods, sizeof policy.acct_scheme);
        return DOM_OK;
    });
}

uint32_t DOM_ita_policy_UnSetAcctScheme(const char* name) noexcept {
    return ChangeItaPolicy(name, DOM_ERR_NOT_FOUND, [](ItaPolicy& policy) {
        SetDefaultScheme(policy);
        return DOM_OK;
    });
}

uint32_t DOM_ita_policy_SetTogetherState(const char* name, uint16_t state) noexcept {
    return ChangeItaPolicy(name, DOM_ERR_NOT_FOUND, [state](ItaPolicy& policy) {
        policy.together_state = state;
        return DOM_OK;
    });
}

uint32_t DOM_ita_policy_SetSeprateState(const char* name, uint16_t state) noexcept {
    return ChangeItaPolicy(name, DOM_ERR_NOT_FOUND, [state](ItaPolicy& policy) {
        policy.separation_state = state;
        return DOM_OK;
    });
}

uint32_t DOM_ita_policy_SetQuotaState(const char* name, uint16_t state) noexcept {
    return ChangeItaPolicy(name, DOM_ERR_NOT_FOUND, [state](ItaPolicy& policy) {
        policy.quota_out_state = state;
        return DOM_OK;
    });
}

uint32_t DOM_ita_policy_SetAcctLevel(const char* name, uint32_t level_id, uint32_t level_value,
                                     uint32_t first_pair_1, uint32_t first_pair_2,
                                     uint32_t second_pair_1, uint32_t second_pair_2,
                                     uint32_t flags) noexcept {
    const ItaLevelChange change = {
        level_id, level_value, {first_pair_1, first_pair_2}, {second_pair_1, second_pair_2}, flags};
    // Unlike the other setters this one has a single failure code: front ends tell an absent policy
    // from a full one by asking DOM_ita_IsPolicyExist.
    return ChangeItaPolicy(name, DOM_ERR_FAILED,
                           [&change](ItaPolicy& policy) { return SetItaLevel(policy, change); });
}

uint32_t DOM_ita_policy_UnSetOneAcctLevel(const char* name, uint32_t level_id) noexcept {
    return ChangeItaPolicy(name, DOM_ERR_NOT_FOUND, [level_id](ItaPolicy& policy) {
        return UnsetItaLevel(policy, level_id);
    });
}

uint32_t DOM_ita_policy_UnSetAllAcctLevel(const char* name) noexcept {
    return ChangeItaPolicy(name, DOM_ERR_NOT_FOUND, [](ItaPolicy& policy) {
        UnsetAllItaLevels(policy);
        return DOM_OK;
    });
}

uint32_t DOM_ita_policy_GetMethodList(const char* policy_name, MethodList* list_out) noexcept {
    if (list_out == nullptr) return DOM_ERR_FAILED;
    return ReadItaPolicy(policy_name, DOM_ERR_FAILED, [list_out](const ItaPolicy& policy) {
        memcpy(list_out->methods, policy.acct_scheme, sizeof list_out->methods);
        return DOM_OK;
    });
}

uint32_t DOM_ita_policy_GetServicePolicyByName(const char* name,
                                               ItaServicePolicy* policy_out) noexcept {
    if (policy_out == nullptr) return DOM_ERR_FAILED;
    return ReadItaPolicy(name, DOM_ERR_FAILED, [policy_out](const ItaPolicy& policy) {
        policy_out->level_count = policy.level_count;
        memcpy(policy_out->levels, policy.levels, sizeof policy_out->levels);
        policy_out->together_state = policy.together_state;
        policy_out->separation_state = policy.separation_state;
        policy_out->quota_out_state = policy.quota_out_state;
        return DOM_OK;
    });
}

uint32_t DOM_ita_IsPolicyExist(const char* name) noexcept {
    return ReadItaPolicy(name, 0u, [](const ItaPolicy&) { return 1u; });
}

}  // extern "C"
