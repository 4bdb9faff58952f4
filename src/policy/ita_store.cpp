#include "policy/ita_store.h"

#include <aaadom/results.h>

#include <cstring>
#include <utility>

#include "base/lookup2.h"

HASH_TABLE* g_pstDomainItaPolicyThrTable = nullptr;
HASH_TABLE* g_pstDomainItaPolicyTable = nullptr;
pthread_mutex_t g_stDomainItaPolicyTableMutexLock = PTHREAD_MUTEX_INITIALIZER;

namespace aaadom {
namespace {

ItaPolicy* AsPolicy(HASH_NODE* node) noexcept {
    return reinterpret_cast<ItaPolicy*>(node);  // the links stand first
}

int CompareName(const void* name, const HASH_NODE* node) {
    return strcmp(static_cast<const char*>(name), reinterpret_cast<const ItaPolicy*>(node)->name);
}

void FreePolicy(HASH_NODE* node) {
    free(AsPolicy(node));
}

/// A record that its owner has taken out of the table.
ItaPolicyPtr TakeOut(ItaPolicy* policy) noexcept {
    HASH_Unlink(&policy->hash_links);
    return ItaPolicyPtr(policy);
}

void PutAtHead(HASH_TABLE& table, ItaPolicyPtr policy) noexcept {
    HASH_NODE** bucket = &table.buckets[ItaPolicyBucket(policy->name)];
    HASH_LinkAtHead(bucket, &policy.release()->hash_links);
}

uint32_t CreateTable(HASH_TABLE*& table) noexcept {
    table = HASH_Create(kItaPolicyBuckets, ItaPolicyBucket);
    return table == nullptr ? DOM_ERR_FAILED : DOM_OK;
}

void DestroyTable(HASH_TABLE*& table) noexcept {
    if (table != nullptr) HASH_Destroy(table, FreePolicy);
    table = nullptr;
}

}  // namespace

uint32_t ItaPolicyBucket(const void* name) noexcept {
    return Lookup2(name, strlen(static_cast<const char*>(name)), 0) & (kItaPolicyBuckets - 1);
}

HASH_TABLE*& ItaPolicies(Role role) noexcept {
    return role == Role::kConfig ? g_pstDomainItaPolicyThrTable : g_pstDomainItaPolicyTable;
}

// Initialisation owns the role's table alone, and the mutex is not usable before it ends.
AAADOM_NO_TSA uint32_t InitItaPolicies(Role role) noexcept {
    HASH_TABLE*& table = ItaPolicies(role);
    if (role == Role::kConfig) return table != nullptr ? DOM_OK : CreateTable(table);
    // A second initialisation here fails: the daemon learns from it that it starts a role twice,
    // and the table's initialisation tears the role down. The mutex may be in use, so it stays.
    if (table != nullptr) return DOM_ERR_FAILED;
    if (pthread_mutex_init(&g_stDomainItaPolicyTableMutexLock, nullptr) != 0) {
        return DOM_ERR_FAILED;
    }
    return CreateTable(table);
}

void FiniItaPolicies(Role role) noexcept {
    {
        const ChangeGuard guard(role, ita_policies_mutex);
        DestroyTable(ItaPolicies(role));
    }
    if (role == Role::kWorking) (void)DestroyToInitial(g_stDomainItaPolicyTableMutexLock);
}

ItaPolicy* FindItaPolicy(Role role, const ItaPolicyName& name) noexcept {
    HASH_TABLE* table = ItaPolicies(role);
    return table == nullptr ? nullptr : AsPolicy(HASH_Find(table, name.text, CompareName));
}

uint32_t CreateItaPolicy(Role role, const ItaPolicyName& name) noexcept {
    const ChangeGuard guard(role, ita_policies_mutex);
    HASH_TABLE* table = ItaPolicies(role);
    if (table == nullptr) return DOM_ERR_FAILED;
    if (FindItaPolicy(role, name) != nullptr) return DOM_OK;
    ItaPolicyPtr policy = NewItaPolicy(name);
    if (!policy) return DOM_ERR_FAILED;
    PutAtHead(*table, std::move(policy));
    return DOM_OK;
}

uint32_t DeleteItaPolicy(Role role, const ItaPolicyName& name) noexcept {
    const ChangeGuard guard(role, ita_policies_mutex);
    ItaPolicy* policy = FindItaPolicy(role, name);
    if (policy == nullptr) return DOM_ERR_NOT_FOUND;
    TakeOut(policy).reset();
    return DOM_OK;
}

void AddItaPolicy(Role role, ItaPolicyPtr policy) noexcept {
    policy->name[sizeof policy->name - 1] = '\0';
    const ItaPolicyName name(policy->name);
    const ChangeGuard guard(role, ita_policies_mutex);
    HASH_TABLE* table = ItaPolicies(role);
    if (table == nullptr) return;
    if (ItaPolicy* former = FindItaPolicy(role, name)) {
        ItaPolicyPtr taken = TakeOut(former);
        if (former == policy.get()) (void)taken.release();  // the same record again: it moves
    }
    PutAtHead(*table, std::move(policy));
}

}  // namespace aaadom
