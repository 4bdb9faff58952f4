/* Accounting policies: named sets of accounting settings that domains refer to. */
#ifndef AAADOM_ACCOUNTING_POLICY_H
#define AAADOM_ACCOUNTING_POLICY_H

#include <aaadom/types.h>
#include <platform/hash.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

#define DOM_ITA_NAME_SIZE 32 /* policy names: 31 characters and the terminator */
#define DOM_ITA_LEVELS 8
#define DOM_ITA_PAIR_UNSET 0xFFFFFFFFu
/* which pairs DOM_ita_policy_SetAcctLevel stores */
#define DOM_ITA_FLAG_FIRST_PAIR 1u
#define DOM_ITA_FLAG_SECOND_PAIR 2u

/** One traffic accounting level. The value and the pairs are carried, not interpreted. */
typedef struct ItaAcctLevel {
    uint32_t level_id; /* 0 = free entry */
    uint32_t level_value;
    uint32_t first_pair[2]; /* DOM_ITA_PAIR_UNSET until they are set */
    uint32_t second_pair[2];
} ItaAcctLevel; /* 24 bytes */

/** One accounting policy. From the name on it is copied whole; the bucket links stand first, so
 * that the hash table's node is the record. */
typedef struct ItaPolicy {
    HASH_NODE hash_links;
    char name[DOM_ITA_NAME_SIZE];
    MethodEntry acct_scheme[DOM_METHODS]; /* new and after an unset: one item of METHOD_LAST_5 */
    /* Counts the levels that were set and unset, not the used entries: 0xFFFFFFFF is possible, so
     * it is no bound for a loop over `levels`. */
    uint32_t level_count;
    ItaAcctLevel levels[DOM_ITA_LEVELS]; /* packed from the first on, ascending level_id */
    uint16_t together_state;             /* new: 0 */
    uint16_t separation_state;           /* new: 0 */
    uint16_t quota_out_state;            /* new: 1 */
} ItaPolicy;

/** What a service reads of a policy. */
typedef struct ItaServicePolicy {
    uint32_t level_count; /* as in ItaPolicy */
    ItaAcctLevel levels[DOM_ITA_LEVELS];
    uint16_t together_state;
    uint16_t separation_state;
    uint16_t quota_out_state;
} ItaServicePolicy; /* 204 bytes */

AAADOM_ASSERT_LAYOUT(sizeof(ItaAcctLevel) == 24);
AAADOM_ASSERT_LAYOUT(offsetof(ItaPolicy, hash_links) == 0);
AAADOM_ASSERT_LAYOUT(sizeof(ItaServicePolicy) == 204);
AAADOM_ASSERT_LAYOUT(offsetof(ItaServicePolicy, levels) == 4);
AAADOM_ASSERT_LAYOUT(offsetof(ItaServicePolicy, together_state) == 196);
AAADOM_ASSERT_LAYOUT(offsetof(ItaServicePolicy, separation_state) == 198);
AAADOM_ASSERT_LAYOUT(offsetof(ItaServicePolicy, quota_out_state) == 200);
#if UINTPTR_MAX == UINT64_MAX
AAADOM_ASSERT_LAYOUT(offsetof(ItaPolicy, name) == 16);
AAADOM_ASSERT_LAYOUT(offsetof(ItaPolicy, acct_scheme) == 48);
AAADOM_ASSERT_LAYOUT(offsetof(ItaPolicy, level_count) == 312);
AAADOM_ASSERT_LAYOUT(offsetof(ItaPolicy, levels) == 316);
AAADOM_ASSERT_LAYOUT(offsetof(ItaPolicy, together_state) == 508);
AAADOM_ASSERT_LAYOUT(offsetof(ItaPolicy, separation_state) == 510);
AAADOM_ASSERT_LAYOUT(offsetof(ItaPolicy, quota_out_state) == 512);
AAADOM_ASSERT_LAYOUT(sizeof(ItaPolicy) == 520);
#endif

/** Accounting policies of the configuration thread, which alone uses them. Owned by the library,
 *  null before DOM_ita_policy_Init and after DOM_ita_policy_Fini. */
extern HASH_TABLE* g_pstDomainItaPolicyThrTable;
/** Accounting policies of the working role, used under g_stDomainItaPolicyTableMutexLock. Owned by
 *  the library, null before DOM_ita_policy_Init and after DOM_ita_policy_Fini. */
extern HASH_TABLE* g_pstDomainItaPolicyTable;
/** Usable from load on; made new by the working role's DOM_ita_policy_Init. */
extern pthread_mutex_t g_stDomainItaPolicyTableMutexLock;

uint32_t DOM_ita_policy_Init(void) AAADOM_NOEXCEPT;
void DOM_ita_policy_Fini(void) AAADOM_NOEXCEPT;
HASH_TABLE* DOM_GetItaPolicyGlobalVarByThr(void) AAADOM_NOEXCEPT;
HASH_TABLE* DOM_ita_policy_GetHashTable(void) AAADOM_NOEXCEPT;
ItaPolicy* DOM_ita_CreatePolicy(const char* name) AAADOM_NOEXCEPT;
void DOM_ita_policy_DestroyPolicy(ItaPolicy* policy) AAADOM_NOEXCEPT;
ItaPolicy* DOM_ita_policy_GetDomPolicyByName(const char* name) AAADOM_NOEXCEPT;
uint32_t DOM_ita_policy_Create(const char* name) AAADOM_NOEXCEPT;
uint32_t DOM_ita_policy_Delete(const char* name) AAADOM_NOEXCEPT;
void DOM_ita_policy_AddPolicy(ItaPolicy* policy) AAADOM_NOEXCEPT;
uint32_t DOM_ita_policy_SetAcctScheme(const char* name,
                                      const MethodEntry methods[DOM_METHODS]) AAADOM_NOEXCEPT;
uint32_t DOM_ita_policy_UnSetAcctScheme(const char* name) AAADOM_NOEXCEPT;
uint32_t DOM_ita_policy_SetTogetherState(const char* name, uint16_t state) AAADOM_NOEXCEPT;
uint32_t DOM_ita_policy_SetSeprateState(const char* name, uint16_t state) AAADOM_NOEXCEPT;
uint32_t DOM_ita_policy_SetQuotaState(const char* name, uint16_t state) AAADOM_NOEXCEPT;
uint32_t DOM_ita_policy_SetAcctLevel(const char* name, uint32_t level_id, uint32_t level_value,
                                     uint32_t first_pair_1, uint32_t first_pair_2,
                                     uint32_t second_pair_1, uint32_t second_pair_2,
                                     uint32_t flags) AAADOM_NOEXCEPT;
uint32_t DOM_ita_policy_UnSetOneAcctLevel(const char* name, uint32_t level_id) AAADOM_NOEXCEPT;
uint32_t DOM_ita_policy_UnSetAllAcctLevel(const char* name) AAADOM_NOEXCEPT;
uint32_t DOM_ita_policy_GetMethodList(const char* policy_name,
                                      MethodList* list_out) AAADOM_NOEXCEPT;
uint32_t DOM_ita_policy_GetServicePolicyByName(const char* name,
                                               ItaServicePolicy* policy_out) AAADOM_NOEXCEPT;
uint32_t DOM_ita_IsPolicyExist(const char* name) AAADOM_NOEXCEPT;

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
