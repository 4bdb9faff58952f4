/* Accounting and recording policies: the stores' life cycle. */
#ifndef AAADOM_POLICY_H
#define AAADOM_POLICY_H

#include <aaadom/types.h>
#include <platform/hash.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/** Accounting policies of the configuration thread, which alone uses them. Owned by the library,
 *  null before DOM_ita_policy_Init and after DOM_ita_policy_Fini. */
extern HASH_TABLE* g_pstDomainItaPolicyThrTable;
/** Accounting policies of the working role, used under g_stDomainItaPolicyTableMutexLock. Owned by
 *  the library, null before DOM_ita_policy_Init and after DOM_ita_policy_Fini. */
extern HASH_TABLE* g_pstDomainItaPolicyTable;
/** Usable from load on; made new by the working role's DOM_ita_policy_Init. */
extern pthread_mutex_t g_stDomainItaPolicyTableMutexLock;
/** Guards the working role's recording policy. Usable from load on; made new by the working role's
 *  DOM_Rec_policy_Init. */
extern pthread_mutex_t g_stRecPolicyTypeMutexLock;

/**
 * Makes the calling role's accounting-policy table. Part of DOM_DomainInfoTableInit.
 * @return 0, in the configuration role also when it has a table. DOM_ERR_FAILED when the table, or
 * in the working role the mutex, cannot be made, and in the working role when it has a table
 * already.
 * @thread once on each role; the caller holds no lock.
 */
uint32_t DOM_ita_policy_Init(void) AAADOM_NOEXCEPT;

/**
 * Frees the calling role's accounting policies and their table; in the working role also the mutex.
 * Part of DOM_DomainInfoTableFini.
 * @thread the role's own, when nothing uses the policies any more.
 */
void DOM_ita_policy_Fini(void) AAADOM_NOEXCEPT;

/**
 * Copies the accounting scheme of a policy of the calling role.
 * @param policy_name  compared exactly, case included.
 * @param list_out     gets the six methods; its type and service stay. Untouched on failure.
 * @return 0; DOM_ERR_FAILED when there is no such policy or table, or an argument is null.
 * @thread any; takes g_stDomainItaPolicyTableMutexLock in both roles.
 */
uint32_t DOM_ita_policy_GetMethodList(const char* policy_name,
                                      MethodList* list_out) AAADOM_NOEXCEPT;

/**
 * Empties the calling role's recording policy without freeing it. Part of DOM_DomainInfoTableInit.
 * @return 0; in the working role DOM_ERR_FAILED when the mutex cannot be made (emptied all the
 * same).
 * @thread once on each role; the caller holds no lock.
 */
uint32_t DOM_Rec_policy_Init(void) AAADOM_NOEXCEPT;

/**
 * Frees the calling role's recording policy; in the working role also the mutex. Part of
 * DOM_DomainInfoTableFini.
 * @thread the role's own, when nothing uses the policy any more.
 */
void DOM_Rec_policy_Fini(void) AAADOM_NOEXCEPT;

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
