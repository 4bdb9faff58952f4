/* Accounting and recording policies: the stores' life cycle. */
#ifndef AAADOM_POLICY_H
#define AAADOM_POLICY_H

#include <aaadom/types.h>
#include <platform/hash.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/** Accounting-policy tables: of the configuration thread, and of the other role. */
extern HASH_TABLE* g_pstDomainItaPolicyThrTable;
extern HASH_TABLE* g_pstDomainItaPolicyTable;
extern pthread_mutex_t g_stDomainItaPolicyTableMutexLock;
extern pthread_mutex_t g_stRecPolicyTypeMutexLock;

uint32_t DOM_ita_policy_Init(void);
void DOM_ita_policy_Fini(void);
uint32_t DOM_ita_policy_GetMethodList(const char* policy_name, MethodList* list_out);
uint32_t DOM_Rec_policy_Init(void);
void DOM_Rec_policy_Fini(void);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
