/* Recording policies: the accounting scheme by which one kind of user activity is recorded. The
 * only type is 0, "connection". */
#ifndef AAADOM_RECORDING_POLICY_H
#define AAADOM_RECORDING_POLICY_H

#include <aaadom/types.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

#define DOM_REC_POLICY_CONNECTION 0u /* the only policy type; any other counts as absent */
#define DOM_REC_MODE_SIZE 49

/** One recording policy. */
typedef struct RecPolicy {
    uint32_t policy_type;
    MethodEntry acct_scheme[DOM_METHODS];
} RecPolicy; /* 268 bytes */

AAADOM_ASSERT_LAYOUT(sizeof(RecPolicy) == 268);
AAADOM_ASSERT_LAYOUT(offsetof(RecPolicy, acct_scheme) == 4);

/** Guards the working role's recording policy. Usable from load on; made new by the working role's
 *  DOM_Rec_policy_Init. */
extern pthread_mutex_t g_stRecPolicyTypeMutexLock;
/** Handle through which recording policies are written and deleted; -1 means none. Set with
 *  DOM_Rec_db_SetGlobalHandle. */
extern DBM_HANDLE g_hDomRecDBHandle;

void DOM_Rec_GetPolicyStrByPolicyType(uint32_t type, uint32_t size, char* buffer) AAADOM_NOEXCEPT;
void DOM_Rec_GetPolicyMode(uint32_t type, char mode_out[DOM_REC_MODE_SIZE]) AAADOM_NOEXCEPT;

uint32_t DOM_Rec_policy_Init(void) AAADOM_NOEXCEPT;
void DOM_Rec_policy_Fini(void) AAADOM_NOEXCEPT;
uint32_t DOM_Rec_CreatePolicy(uint32_t type) AAADOM_NOEXCEPT;
void DOM_Rec_DestroyPolicy(uint32_t type) AAADOM_NOEXCEPT;
void DOM_Rec_DestroyThrPolicy(uint32_t type) AAADOM_NOEXCEPT;
RecPolicy* DOM_Rec_GetPolicyByType(uint32_t type) AAADOM_NOEXCEPT;
uint32_t DOM_Rec_GetPolicy(uint32_t type, RecPolicy* policy_out) AAADOM_NOEXCEPT;
uint32_t DOM_Rec_IsPolicyExist(uint32_t type) AAADOM_NOEXCEPT;
uint32_t DOM_Rec_policy_SetAcctScheme(uint32_t type,
                                      const MethodEntry methods[DOM_METHODS]) AAADOM_NOEXCEPT;
uint32_t DOM_Rec_policy_UnSetAcctScheme(uint32_t type) AAADOM_NOEXCEPT;
uint32_t DOM_Rec_policy_GetMethodList(uint32_t type, MethodList* list_out) AAADOM_NOEXCEPT;
void DOM_Rec_SetPolicy(RecPolicy* policy) AAADOM_NOEXCEPT;

TLV_MSG* DOM_Rec_tlv_EncodePolicy(const RecPolicy* policy) AAADOM_NOEXCEPT;
TLV_MSG* DOM_Rec_tlv_EncodePolicyType(uint32_t type) AAADOM_NOEXCEPT;
uint32_t DOM_Rec_tlv_DecodePolicyType(TLV_MSG* msg) AAADOM_NOEXCEPT;
TLV_MSG* DOM_Rec_tlv_EncodeAcctScheme(uint32_t type,
                                      const MethodEntry methods[DOM_METHODS]) AAADOM_NOEXCEPT;
uint32_t DOM_Rec_tlv_DecodeAcctScheme(TLV_MSG* msg, uint32_t size,
                                      void* methods_out) AAADOM_NOEXCEPT;

uint32_t DOM_Rec_PolicyProc(TLV_MSG* msg, uint16_t operation,
                            DomDbUpdateReq* change) AAADOM_NOEXCEPT;
uint32_t DOM_Rec_AcctSchemeProc(TLV_MSG* msg, uint16_t operation,
                                DomDbUpdateReq* change) AAADOM_NOEXCEPT;
uint32_t DOM_Rec_PolicyDataProc(TLV_MSG* msg, uint16_t operation,
                                DomDbUpdateReq* change) AAADOM_NOEXCEPT;

void DOM_Rec_db_SetGlobalHandle(DBM_HANDLE handle) AAADOM_NOEXCEPT;
uint32_t DOM_Rec_db_SetPolicy(uint32_t type, uint16_t operation) AAADOM_NOEXCEPT;
RecPolicy* DOM_Rec_db_GetPolicyByDBKey(DBM_HANDLE handle, const char* key,
                                       uint32_t key_length) AAADOM_NOEXCEPT;
RecPolicy* DOM_Rec_db_GetPolicyFromDBByType(DBM_HANDLE handle, uint32_t type) AAADOM_NOEXCEPT;
uint32_t DOM_Rec_PolicyIsExist(DBM_HANDLE handle, uint32_t type) AAADOM_NOEXCEPT;
void DOM_Rec_db_SetDbChangeInfo(uint32_t type, uint16_t operation,
                                DomDbUpdateReq* change) AAADOM_NOEXCEPT;

uint32_t DOM_Rec_tlv_SendBthPolicy(uint32_t type, int32_t target) AAADOM_NOEXCEPT;
uint32_t DOM_Rec_bthsyn_SendPolicys(int32_t target) AAADOM_NOEXCEPT;

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
