#include "policy/ita_policy.h"

#include <aaadom/results.h>

#include <cstdlib>
#include <cstring>

#include "base/lock.h"
#include "base/lookup2.h"

HASH_TABLE* g_pstDomainItaPolicyThrTable = nullptr;
HASH_TABLE* g_pstDomainItaPolicyTable = nullptr;
pthread_mutex_t g_stDomainItaPolicyTableMutexLock = PTHREAD_MUTEX_INITIALIZER;

namespace aaadom {
namespace {

HASH_TABLE*& TableOf(Role role) noexcept {
    return role == Role::kConfig ? g_pstDomainItaPolicyThrTable : g_pstDomainItaPolicyTable;
}

int CompareName(const void* name, const HASH_NODE* node) {
    return strcmp(static_cast<const char*>(name), reinterpret_cast<const ItaPolicy*>(node)->name);
}

void FreePolicy(HASH_NODE* node) {
    free(node);
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

uint32_t InitItaPolicies(Role role) noexcept {
    HASH_TABLE*& table = TableOf(role);
    if (role == Role::kConfig) return table != nullptr ? DOM_OK : CreateTable(table);
    if (pthread_mutex_init(&g_stDomainItaPolicyTableMutexLock, nullptr) != 0) {
        return DOM_ERR_FAILED;
    }
    // A second initialisation here fails: the daemon learns from it that it starts a role twice,
    // and the table's initialisation tears the role down.
    return table != nullptr ? DOM_ERR_FAILED : CreateTable(table);
}

void FiniItaPolicies(Role role) noexcept {
    if (role == Role::kConfig) {
        DestroyTable(TableOf(role));  // used by the configuration thread alone
        return;
    }
    {
        ExportedMutexGuard lock(g_stDomainItaPolicyTableMutexLock);
        DestroyTable(TableOf(role));
    }
    (void)DestroyToInitial(g_stDomainItaPolicyTableMutexLock);
}

uint32_t CopyItaMethods(Role role, const char* policy_name,
                        MethodEntry (&methods)[DOM_METHODS]) noexcept {
    ExportedMutexGuard lock(g_stDomainItaPolicyTableMutexLock);
    HASH_TABLE* table = TableOf(role);
    if (table == nullptr) return DOM_ERR_FAILED;
    HASH_NODE* found = HASH_Find(table, policy_name, CompareName);
    if (found == nullptr) return DOM_ERR_FAILED;
    memcpy(methods, reinterpret_cast<ItaPolicy*>(found)->acct_scheme, sizeof methods);
    return DOM_OK;
}

}  // namespace aaadom
