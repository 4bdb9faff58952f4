#include "policy/rec_policy.h"

#include <aaadom/results.h>

pthread_mutex_t g_stRecPolicyTypeMutexLock = PTHREAD_MUTEX_INITIALIZER;

namespace aaadom {
namespace {
constinit PerRole<RecPolicy*> slots;
}

RecPolicyPtr NewRecPolicy(uint32_t type) noexcept {
    RecPolicyPtr policy(static_cast<RecPolicy*>(calloc(1, sizeof(RecPolicy))));
    if (policy) policy->policy_type = type;
    return policy;
}

RecPolicy*& RecPolicySlot(Role role) noexcept {
    return slots.Of(role);
}

uint32_t InitRecPolicies(Role role) noexcept {
    int failed = 0;
    if (role == Role::kWorking) failed = pthread_mutex_init(&g_stRecPolicyTypeMutexLock, nullptr);
    const ChangeGuard guard(role, rec_policies_mutex);
    RecPolicySlot(role) = nullptr;
    return failed != 0 ? DOM_ERR_FAILED : DOM_OK;
}

void FiniRecPolicies(Role role) noexcept {
    DestroyRecPolicy(role, DOM_REC_POLICY_CONNECTION);
    if (role == Role::kWorking) (void)DestroyToInitial(g_stRecPolicyTypeMutexLock);
}

void SetWorkingRecPolicy(RecPolicyPtr policy) noexcept {
    if (!IsRecPolicyType(policy->policy_type)) return;
    ExportedMutexGuard lock(rec_policies_mutex);
    RecPolicy*& slot = RecPolicySlot(Role::kWorking);
    RecPolicyPtr former(slot);
    slot = policy.release();
    if (former.get() == slot) (void)former.release();  // it was there already
}

void DestroyRecPolicy(Role role, uint32_t type) noexcept {
    if (!IsRecPolicyType(type)) return;
    const ChangeGuard guard(role, rec_policies_mutex);
    RecPolicyPtr former(RecPolicySlot(role));
    RecPolicySlot(role) = nullptr;
}

}  // namespace aaadom
