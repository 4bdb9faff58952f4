#include "policy/rec_policy.h"

#include <aaadom/results.h>

#include <cstdlib>

#include "base/lock.h"

pthread_mutex_t g_stRecPolicyTypeMutexLock = PTHREAD_MUTEX_INITIALIZER;

namespace aaadom {
namespace {

constinit RecPolicy* slots[2] = {};

void Destroy(RecPolicy*& slot) noexcept {
    free(slot);
    slot = nullptr;
}

}  // namespace

RecPolicy*& RecPolicySlot(Role role, uint32_t type) noexcept {
    return slots[role == Role::kConfig ? type : type + 1];
}

uint32_t InitRecPolicies(Role role) noexcept {
    RecPolicy*& slot = RecPolicySlot(role, DOM_REC_POLICY_CONNECTION);
    if (role == Role::kConfig) {
        slot = nullptr;
        return DOM_OK;
    }
    int failed = pthread_mutex_init(&g_stRecPolicyTypeMutexLock, nullptr);
    ExportedMutexGuard lock(g_stRecPolicyTypeMutexLock);
    slot = nullptr;
    return failed != 0 ? DOM_ERR_FAILED : DOM_OK;
}

void FiniRecPolicies(Role role) noexcept {
    RecPolicy*& slot = RecPolicySlot(role, DOM_REC_POLICY_CONNECTION);
    if (role == Role::kConfig) {
        Destroy(slot);  // used by the configuration thread alone
        return;
    }
    {
        ExportedMutexGuard lock(g_stRecPolicyTypeMutexLock);
        Destroy(slot);
    }
    (void)DestroyToInitial(g_stRecPolicyTypeMutexLock);
}

}  // namespace aaadom
