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

/**
 * Makes the calling role's accounting-policy table. Part of DOM_DomainInfoTableInit.
 * @return 0, in the configuration role also when it has a table. DOM_ERR_FAILED when the table, or
 * in the working role the mutex, cannot be made, and in the working role when it has a table
 * already: the table stays as it is.
 * @thread once on each role; the caller holds no lock.
 */
uint32_t DOM_ita_policy_Init(void) AAADOM_NOEXCEPT;

/**
 * Frees the calling role's accounting policies and their table; in the working role also the mutex.
 * Part of DOM_DomainInfoTableFini.
 * @thread the role's own, when nothing uses the policies any more; the working role takes the
 *         mutex.
 */
void DOM_ita_policy_Fini(void) AAADOM_NOEXCEPT;

/**
 * @return the calling role's table, owned by the library, valid until that role's
 *         DOM_ita_policy_Fini; null before DOM_ita_policy_Init. Its nodes are ItaPolicy records.
 * @thread any; takes no lock. The working role's table is walked under
 *         g_stDomainItaPolicyTableMutexLock.
 */
HASH_TABLE* DOM_GetItaPolicyGlobalVarByThr(void) AAADOM_NOEXCEPT;

/**
 * @return the working role's table, whatever role calls; otherwise as
 *         DOM_GetItaPolicyGlobalVarByThr.
 * @thread any; takes no lock.
 */
HASH_TABLE* DOM_ita_policy_GetHashTable(void) AAADOM_NOEXCEPT;

/* Policy names below: compared exactly, letter case included; at most 31 characters and the
 * terminator, longer input is cut before it is compared. A null name is an absent policy. "The
 * policy" is one of the calling role's table; no table is an empty one. */

/**
 * Makes a policy that is in no table: default scheme, no levels, together and separation 0,
 * quota-out 1.
 * @param name  borrowed; need not be free.
 * @return returned, destroy with DOM_ita_policy_DestroyPolicy or give it to
 *         DOM_ita_policy_AddPolicy; null for a null name and when memory is short.
 * @thread any; takes no lock.
 */
ItaPolicy* DOM_ita_CreatePolicy(const char* name) AAADOM_NOEXCEPT;

/**
 * Frees a policy that is in no table.
 * @param policy  consumed always; null is ignored.
 * @thread any; takes no lock.
 */
void DOM_ita_policy_DestroyPolicy(ItaPolicy* policy) AAADOM_NOEXCEPT;

/**
 * Finds a policy.
 * @param name  borrowed.
 * @return owned by the library, valid as long as the caller's lock is held; null when absent.
 * @thread any; takes no lock. On the working role the caller holds
 *         g_stDomainItaPolicyTableMutexLock for the call and for all use of the record.
 */
ItaPolicy* DOM_ita_policy_GetDomPolicyByName(const char* name) AAADOM_NOEXCEPT;

/* Changes. On the working role each takes g_stDomainItaPolicyTableMutexLock for the look-up and the
 * change, on the configuration thread none; the caller holds no lock. */

/**
 * Adds a policy with the settings of DOM_ita_CreatePolicy, at the head of its bucket. One that
 * exists stays as it is, settings and place. Carried by code 23, stored as database type 8.
 * @param name  borrowed.
 * @return 0, also when it exists; DOM_ERR_FAILED when memory is short, before DOM_ita_policy_Init
 *         and for a null name.
 * @thread any.
 */
uint32_t DOM_ita_policy_Create(const char* name) AAADOM_NOEXCEPT;

/**
 * Frees a policy. Carried by code 23.
 * @param name  borrowed.
 * @return 0; DOM_ERR_NOT_FOUND when it is absent.
 * @thread any.
 */
uint32_t DOM_ita_policy_Delete(const char* name) AAADOM_NOEXCEPT;

/**
 * Puts a complete policy at the head of its bucket and frees the one of the same name. Carried by
 * code 22.
 * @param policy  consumed always; freed when there is no table. Null is ignored. It may be the
 *                record that the table has under this name, none that it has under another. The
 *                last byte of its name is made a terminator; its links are overwritten.
 * @thread any.
 */
void DOM_ita_policy_AddPolicy(ItaPolicy* policy) AAADOM_NOEXCEPT;

/**
 * Sets the accounting scheme. Carried by code 24.
 * @param name     borrowed.
 * @param methods  borrowed; six items, copied whole.
 * @return 0; DOM_ERR_NOT_FOUND when the policy is absent; DOM_ERR_FAILED for null methods.
 * @thread any.
 */
uint32_t DOM_ita_policy_SetAcctScheme(const char* name,
                                      const MethodEntry methods[DOM_METHODS]) AAADOM_NOEXCEPT;

/**
 * Gives a policy the scheme of a new one: one item of METHOD_LAST_5. Carried by code 24.
 * @param name  borrowed.
 * @return 0; DOM_ERR_NOT_FOUND when the policy is absent.
 * @thread any.
 */
uint32_t DOM_ita_policy_UnSetAcctScheme(const char* name) AAADOM_NOEXCEPT;

/**
 * Set one switch of a policy. Carried by codes 25, 27 and 28.
 * @param name   borrowed.
 * @param state  any 16-bit number.
 * @return 0; DOM_ERR_NOT_FOUND when the policy is absent.
 * @thread any.
 */
uint32_t DOM_ita_policy_SetTogetherState(const char* name, uint16_t state) AAADOM_NOEXCEPT;
uint32_t DOM_ita_policy_SetSeprateState(const char* name, uint16_t state) AAADOM_NOEXCEPT;
uint32_t DOM_ita_policy_SetQuotaState(const char* name, uint16_t state) AAADOM_NOEXCEPT;

/**
 * Sets a level. A level that the policy lacks takes the first free entry, is counted, starts with
 * all pair values DOM_ITA_PAIR_UNSET and is moved to its place. Carried by code 26.
 * @param name         borrowed.
 * @param level_id     any number. 0 is no level: it is counted each time and its entry stays free,
 *                     so the value and the pairs given with it are found by the next new level.
 * @param level_value  0 keeps the entry's value.
 * @param first_pair_1,first_pair_2    stored when `flags` has DOM_ITA_FLAG_FIRST_PAIR.
 * @param second_pair_1,second_pair_2  stored when `flags` has DOM_ITA_FLAG_SECOND_PAIR.
 * @param flags        DOM_ITA_FLAG_*; other bits are ignored.
 * @return 0; DOM_ERR_FAILED when the policy is absent, unlike in the other setters, or has eight
 *         other levels.
 * @thread any.
 */
uint32_t DOM_ita_policy_SetAcctLevel(const char* name, uint32_t level_id, uint32_t level_value,
                                     uint32_t first_pair_1, uint32_t first_pair_2,
                                     uint32_t second_pair_1, uint32_t second_pair_2,
                                     uint32_t flags) AAADOM_NOEXCEPT;

/**
 * Removes a level and closes the gap. Carried by code 26.
 * @param name      borrowed.
 * @param level_id  0 matches the first free entry and only lowers the count, from 0 to 0xFFFFFFFF.
 * @return 0; DOM_ERR_NOT_FOUND when the policy or the level is absent, for level 0 when all entries
 *         are used.
 * @thread any.
 */
uint32_t DOM_ita_policy_UnSetOneAcctLevel(const char* name, uint32_t level_id) AAADOM_NOEXCEPT;

/**
 * Clears the level count and every entry. Carried by code 26 with level 0.
 * @param name  borrowed.
 * @return 0; DOM_ERR_NOT_FOUND when the policy is absent.
 * @thread any.
 */
uint32_t DOM_ita_policy_UnSetAllAcctLevel(const char* name) AAADOM_NOEXCEPT;

/* Readers. They take g_stDomainItaPolicyTableMutexLock in both roles, though it does not guard the
 * configuration thread's table, which that thread alone changes; the caller does not hold it. */

/**
 * Copies the accounting scheme of a policy.
 * @param policy_name  borrowed.
 * @param list_out     gets the six methods; its type and service stay. Untouched on failure.
 * @return 0; DOM_ERR_FAILED when the policy is absent or `list_out` is null.
 * @thread any.
 */
uint32_t DOM_ita_policy_GetMethodList(const char* policy_name,
                                      MethodList* list_out) AAADOM_NOEXCEPT;

/**
 * Copies level count, levels and switches of a policy.
 * @param name        borrowed.
 * @param policy_out  untouched on failure.
 * @return 0; DOM_ERR_FAILED when the policy is absent or `policy_out` is null.
 * @thread any.
 */
uint32_t DOM_ita_policy_GetServicePolicyByName(const char* name,
                                               ItaServicePolicy* policy_out) AAADOM_NOEXCEPT;

/**
 * @param name  borrowed.
 * @return 1 when there is such a policy, else 0.
 * @thread any.
 */
uint32_t DOM_ita_IsPolicyExist(const char* name) AAADOM_NOEXCEPT;

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
