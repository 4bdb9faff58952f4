#include <aaadom/db_layout.h>
#include <aaadom/recording_policy.h>
#include <aaadom/results.h>

#include <cstdio>
#include <cstring>

#include "base/text.h"
#include "policy/rec_policy.h"

using namespace aaadom;

namespace {
constexpr char kConnection[] = "connection";
}

extern "C" {

void DOM_Rec_GetPolicyStrByPolicyType(uint32_t type, uint32_t size, char* buffer) noexcept {
    if (type == DOM_REC_POLICY_CONNECTION) CopyText(buffer, size, kConnection);
}

void DOM_Rec_GetPolicyMode(uint32_t type, char mode_out[DOM_REC_MODE_SIZE]) noexcept {
    if (mode_out == nullptr) return;
    char text[DOM_REC_MODE_SIZE - sizeof DOM_DB_REC_POLICY_SUFFIX + 1] = "";
    DOM_Rec_GetPolicyStrByPolicyType(type, sizeof text, text);
    snprintf(mode_out, DOM_REC_MODE_SIZE, "%s" DOM_DB_REC_POLICY_SUFFIX, text);
}

uint32_t DOM_Rec_policy_Init(void) noexcept {
    return InitRecPolicies(CurrentRole());
}

void DOM_Rec_policy_Fini(void) noexcept {
    FiniRecPolicies(CurrentRole());
}

uint32_t DOM_Rec_CreatePolicy(uint32_t type) noexcept {
    if (!IsRecPolicyType(type)) return DOM_ERR_FAILED;
    RecPolicyPtr policy = NewRecPolicy(type);
    if (!policy) return DOM_ERR_NO_MEMORY;
    const Role role = CurrentRole();
    const ChangeGuard guard(role, rec_policies_mutex);
    // What was there is not freed: whoever got it from DOM_Rec_GetPolicyByType may still use it.
    RecPolicySlot(role) = policy.release();
    return DOM_OK;
}

void DOM_Rec_DestroyPolicy(uint32_t type) noexcept {
    DestroyRecPolicy(Role::kWorking, type);
}

void DOM_Rec_DestroyThrPolicy(uint32_t type) noexcept {
    DestroyRecPolicy(Role::kConfig, type);
}

// Whoever uses the record holds the mutex, or is the configuration thread.
AAADOM_NO_TSA RecPolicy* DOM_Rec_GetPolicyByType(uint32_t type) noexcept {
    return IsRecPolicyType(type) ? RecPolicySlot(CurrentRole()) : nullptr;
}

uint32_t DOM_Rec_GetPolicy(uint32_t type, RecPolicy* policy_out) noexcept {
    return WithRecPolicy(type, DOM_ERR_NOT_FOUND, [policy_out](const RecPolicy& policy) {
        if (policy_out == nullptr) return DOM_ERR_FAILED;
        *policy_out = policy;
        return DOM_OK;
    });
}

uint32_t DOM_Rec_IsPolicyExist(uint32_t type) noexcept {
    return WithRecPolicy(type, 0u, [](const RecPolicy&) { return 1u; });
}

uint32_t DOM_Rec_policy_SetAcctScheme(uint32_t type,
                                      const MethodEntry methods[DOM_METHODS]) noexcept {
    return WithRecPolicy(type, DOM_ERR_NOT_FOUND, [methods](RecPolicy& policy) {
        if (methods == nullptr) return DOM_ERR_FAILED;
        memcpy(policy.acct_scheme, methods, sizeof policy.acct_scheme);
        return DOM_OK;
    });
}

uint32_t DOM_Rec_policy_UnSetAcctScheme(uint32_t type) noexcept {
    return WithRecPolicy(type, DOM_ERR_NOT_FOUND, [](RecPolicy& policy) {
        memset(policy.acct_scheme, 0, sizeof policy.acct_scheme);
        return DOM_OK;
    });
}

uint32_t DOM_Rec_policy_GetMethodList(uint32_t type, MethodList* list_out) noexcept {
    if (list_out == nullptr || !IsRecPolicyType(type)) return DOM_ERR_FAILED;
    const Role role = CurrentRole();
    ExportedMutexGuard lock(rec_policies_mutex);
    const RecPolicy* policy = RecPolicySlot(role);
    if (policy == nullptr || policy->acct_scheme[0].method_kind == METHOD_EMPTY) {
        return DOM_ERR_FAILED;
    }
    memcpy(list_out->methods, policy->acct_scheme, sizeof list_out->methods);
    return DOM_OK;
}

void DOM_Rec_SetPolicy(RecPolicy* policy) noexcept {
    if (policy != nullptr) SetWorkingRecPolicy(RecPolicyPtr(policy));
}

}  // extern "C"
