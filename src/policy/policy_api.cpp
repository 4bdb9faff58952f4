#include <aaadom/accounting_policy.h>
#include <aaadom/recording_policy.h>
#include <aaadom/results.h>

#include "policy/ita_policy.h"
#include "policy/rec_policy.h"

using namespace aaadom;

extern "C" {

uint32_t DOM_ita_policy_Init(void) noexcept {
    return InitItaPolicies(CurrentRole());
}

void DOM_ita_policy_Fini(void) noexcept {
    FiniItaPolicies(CurrentRole());
}

uint32_t DOM_ita_policy_GetMethodList(const char* policy_name, MethodList* list_out) noexcept {
    if (policy_name == nullptr || list_out == nullptr) return DOM_ERR_FAILED;
    return CopyItaMethods(CurrentRole(), policy_name, list_out->methods);
}

uint32_t DOM_Rec_policy_Init(void) noexcept {
    return InitRecPolicies(CurrentRole());
}

void DOM_Rec_policy_Fini(void) noexcept {
    FiniRecPolicies(CurrentRole());
}

}  // extern "C"
