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

/**
 * Writes the text of a policy type: "connection" for type 0.
 * @param type    any number; nothing is written for one other than 0, so callers clear the buffer.
 * @param size    capacity of `buffer` with the terminator; a longer text is cut.
 * @param buffer  null is skipped.
 * @thread any; takes no lock.
 */
void DOM_Rec_GetPolicyStrByPolicyType(uint32_t type, uint32_t size, char* buffer) AAADOM_NOEXCEPT;

/**
 * Writes the mode string of a policy type, which with its terminator is also its database key:
 * "connection-recording-policy" for type 0, "-recording-policy" for any other number.
 * @param type      any number.
 * @param mode_out  49 bytes; null is skipped.
 * @thread any; takes no lock.
 */
void DOM_Rec_GetPolicyMode(uint32_t type, char mode_out[DOM_REC_MODE_SIZE]) AAADOM_NOEXCEPT;

/* The store holds one policy a role. On the working role the calls below take
 * g_stRecPolicyTypeMutexLock, on the configuration thread none unless they say so; the caller holds
 * no lock. */

/**
 * Empties the calling role's slot without freeing what it held. Part of DOM_DomainInfoTableInit.
 * @return 0; in the working role DOM_ERR_FAILED when the mutex cannot be made (emptied all the
 * same).
 * @thread once on each role.
 */
uint32_t DOM_Rec_policy_Init(void) AAADOM_NOEXCEPT;

/**
 * Frees the calling role's recording policy; in the working role also the mutex. Part of
 * DOM_DomainInfoTableFini.
 * @thread the role's own, when nothing uses the policy any more.
 */
void DOM_Rec_policy_Fini(void) AAADOM_NOEXCEPT;

/**
 * Gives the calling role a policy without methods. One that was there is replaced and not freed:
 * callers look first. Carried by code 32, stored as database type 9.
 * @param type  0.
 * @return 0; DOM_ERR_NO_MEMORY, and the slot unchanged; DOM_ERR_FAILED for another type.
 * @thread any.
 */
uint32_t DOM_Rec_CreatePolicy(uint32_t type) AAADOM_NOEXCEPT;

/**
 * Frees the working role's policy, whatever role calls. Carried by code 32.
 * @param type  nothing happens for another number than 0.
 * @thread any; takes g_stRecPolicyTypeMutexLock in both roles.
 */
void DOM_Rec_DestroyPolicy(uint32_t type) AAADOM_NOEXCEPT;

/**
 * Frees the configuration thread's policy, whatever role calls. Carried by code 32.
 * @param type  nothing happens for another number than 0.
 * @thread the configuration thread, or when it does not use its policy; takes no lock.
 */
void DOM_Rec_DestroyThrPolicy(uint32_t type) AAADOM_NOEXCEPT;

/**
 * Finds the calling role's policy.
 * @param type  0; any other number is absent.
 * @return owned by the library, valid as long as the caller's lock is held; null when absent.
 * @thread any; takes no lock. On the working role the caller holds g_stRecPolicyTypeMutexLock for
 *         the call and for all use of the record.
 */
RecPolicy* DOM_Rec_GetPolicyByType(uint32_t type) AAADOM_NOEXCEPT;

/**
 * Copies the calling role's policy.
 * @param type        0; any other number is absent.
 * @param policy_out  untouched on failure.
 * @return 0; DOM_ERR_NOT_FOUND when absent; DOM_ERR_FAILED for a null output.
 * @thread any.
 */
uint32_t DOM_Rec_GetPolicy(uint32_t type, RecPolicy* policy_out) AAADOM_NOEXCEPT;

/**
 * @param type  0; any other number is absent.
 * @return 1 when the calling role has the policy, else 0.
 * @thread any.
 */
uint32_t DOM_Rec_IsPolicyExist(uint32_t type) AAADOM_NOEXCEPT;

/**
 * Sets the accounting scheme of the calling role's policy. Carried by codes 31 and 33.
 * @param type     0; any other number is absent.
 * @param methods  borrowed; six items, copied whole.
 * @return 0; DOM_ERR_NOT_FOUND when absent; DOM_ERR_FAILED for null methods.
 * @thread any.
 */
uint32_t DOM_Rec_policy_SetAcctScheme(uint32_t type,
                                      const MethodEntry methods[DOM_METHODS]) AAADOM_NOEXCEPT;

/**
 * Clears the accounting scheme of the calling role's policy: no item is left, unlike in an
 * accounting policy. Carried by code 33.
 * @param type  0; any other number is absent.
 * @return 0; DOM_ERR_NOT_FOUND when absent.
 * @thread any.
 */
uint32_t DOM_Rec_policy_UnSetAcctScheme(uint32_t type) AAADOM_NOEXCEPT;

/**
 * Copies the accounting scheme of the calling role's policy.
 * @param type      0; any other number is absent.
 * @param list_out  gets the six methods; its type and service stay. Untouched on failure.
 * @return 0; DOM_ERR_FAILED when the policy is absent, its first item is empty, or `list_out` is
 *         null.
 * @thread any; takes g_stRecPolicyTypeMutexLock in both roles.
 */
uint32_t DOM_Rec_policy_GetMethodList(uint32_t type, MethodList* list_out) AAADOM_NOEXCEPT;

/**
 * Makes a complete record the working role's policy, whatever role calls, and frees the former one.
 * @param policy  consumed always: freed when its type is not 0. Null is ignored. It may be the
 *                record that is there already.
 * @thread any; takes g_stRecPolicyTypeMutexLock in both roles.
 */
void DOM_Rec_SetPolicy(RecPolicy* policy) AAADOM_NOEXCEPT;

/* Messages. No decoder looks at the code of the message. */

/**
 * Encodes a whole policy: code 31, TLV 82, then a TLV 10 for each method up to the first empty one.
 * @param policy  borrowed.
 * @return returned, destroy with TLV_Destroy; null for null and when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_Rec_tlv_EncodePolicy(const RecPolicy* policy) AAADOM_NOEXCEPT;

/**
 * Encodes the request to create or delete a policy: code 32, TLV 82.
 * @param type  any number, sent unchanged.
 * @return returned, destroy with TLV_Destroy; null when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_Rec_tlv_EncodePolicyType(uint32_t type) AAADOM_NOEXCEPT;

/**
 * Reads the policy type: the first TLV 82.
 * @param msg  borrowed.
 * @return the type, not a result code: 0 also when the message has none. Only type 0 exists, so
 *         callers refuse any other number. DOM_ERR_FAILED for null.
 * @thread any; takes no lock.
 */
uint32_t DOM_Rec_tlv_DecodePolicyType(TLV_MSG* msg) AAADOM_NOEXCEPT;

/**
 * Encodes the request to set or unset the accounting scheme: code 33, otherwise as code 31.
 * @param type     any number, sent unchanged.
 * @param methods  borrowed; six items.
 * @return returned, destroy with TLV_Destroy; null for null methods and when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_Rec_tlv_EncodeAcctScheme(uint32_t type,
                                      const MethodEntry methods[DOM_METHODS]) AAADOM_NOEXCEPT;

/**
 * Reads type and methods of codes 31 and 33.
 * @param msg          borrowed.
 * @param size         bytes of `methods_out`; 264 for all six items, a shorter one gets what fits.
 * @param methods_out  cleared, then the items at the positions they carry; a message without items
 *                     leaves it cleared, reading ends at one that is malformed. Null is
 *                     skipped.
 * @return the type, as DOM_Rec_tlv_DecodePolicyType; DOM_ERR_FAILED, which is no type, when memory
 *         is short: `methods_out` is cleared then.
 * @thread any; takes no lock.
 */
uint32_t DOM_Rec_tlv_DecodeAcctScheme(TLV_MSG* msg, uint32_t size,
                                      void* methods_out) AAADOM_NOEXCEPT;

/* Processors: apply a message to the calling role's policy. The operation is 1 to add or set,
 * anything else deletes or unsets. They refuse a message of another type than 0 with
 * DOM_ERR_FAILED and leave `change` as it was; after that `change` names database type 9 and the
 * policy type, whatever becomes of the message. */

/**
 * Creates or deletes the policy (code 32).
 * @param msg        borrowed.
 * @param operation  copied into `change` as it is.
 * @param change     borrowed; other fields stay; null is skipped.
 * @return 0; DOM_ERR_EXISTS; DOM_ERR_NOT_FOUND when there is none to delete; DOM_ERR_NO_MEMORY;
 *         DOM_ERR_FAILED for another type and for null.
 * @thread any; changes of the policy come from one thread a role.
 */
uint32_t DOM_Rec_PolicyProc(TLV_MSG* msg, uint16_t operation,
                            DomDbUpdateReq* change) AAADOM_NOEXCEPT;

/**
 * Sets or unsets the accounting scheme (code 33).
 * @param msg        borrowed; without items the scheme becomes empty.
 * @param operation  1 sets, any other number unsets.
 * @param change     borrowed; gets operation 1 also on unset, because the policy still exists.
 * @return 0; DOM_ERR_NOT_FOUND when there is no policy; DOM_ERR_FAILED for another type and for
 *         null.
 * @thread any; changes of the policy come from one thread a role.
 */
uint32_t DOM_Rec_AcctSchemeProc(TLV_MSG* msg, uint16_t operation,
                                DomDbUpdateReq* change) AAADOM_NOEXCEPT;

/**
 * Takes over a whole policy (code 31): creates it when there is none and sets the scheme, whatever
 * the operation.
 * @param msg        borrowed.
 * @param operation  copied into `change` as it is.
 * @param change     borrowed; other fields stay; null is skipped.
 * @return 0; DOM_ERR_NO_MEMORY; DOM_ERR_FAILED for another type and for null.
 * @thread any; changes of the policy come from one thread a role.
 */
uint32_t DOM_Rec_PolicyDataProc(TLV_MSG* msg, uint16_t operation,
                                DomDbUpdateReq* change) AAADOM_NOEXCEPT;

/* Saved form: database type 9, docs/formats/config_db.md. */

/**
 * Installs the handle for writes and deletes.
 * @param handle  borrowed: whoever opened it closes it, after installing another.
 * @thread none may be writing; takes no lock.
 */
void DOM_Rec_db_SetGlobalHandle(DBM_HANDLE handle) AAADOM_NOEXCEPT;

/**
 * Writes the calling role's policy, or deletes the saved one, through g_hDomRecDBHandle.
 * @param type       0; any other number fails.
 * @param operation  1 writes, any other number deletes.
 * @return writing: 0; DOM_ERR_FAILED when there is no policy, memory is short or the database
 *         refused. Deleting: the database's result, not 0 when nothing is saved.
 * @thread any; on the working role takes g_stRecPolicyTypeMutexLock while it copies the policy; the
 *         database is called without it.
 */
uint32_t DOM_Rec_db_SetPolicy(uint32_t type, uint16_t operation) AAADOM_NOEXCEPT;

/**
 * Reads a saved policy. Of the methods the last one decides: an earlier one that cannot be read is
 * left out.
 * @param handle      borrowed; need not be the installed one.
 * @param key         borrowed; `key_length` bytes.
 * @param key_length  with the terminator, 28 for type 0.
 * @return returned, destroy with free or give it to DOM_Rec_SetPolicy; its type is what is stored,
 *         whatever that is, its scheme is empty where nothing is stored. Null: nothing saved, no
 *         message of at most 65535 bytes, the last method undecodable, no memory, a database
 *         failure, a null key.
 * @thread any; takes no lock.
 */
RecPolicy* DOM_Rec_db_GetPolicyByDBKey(DBM_HANDLE handle, const char* key,
                                       uint32_t key_length) AAADOM_NOEXCEPT;

/**
 * The same under the key of a type.
 * @param handle  borrowed.
 * @param type    0; null for any other number.
 * @return as DOM_Rec_db_GetPolicyByDBKey.
 * @thread any; takes no lock.
 */
RecPolicy* DOM_Rec_db_GetPolicyFromDBByType(DBM_HANDLE handle, uint32_t type) AAADOM_NOEXCEPT;

/**
 * @param handle  borrowed.
 * @param type    0; any other number is absent.
 * @return 1 when a policy is saved, whatever its value holds, else 0.
 * @thread any; takes no lock.
 */
uint32_t DOM_Rec_PolicyIsExist(DBM_HANDLE handle, uint32_t type) AAADOM_NOEXCEPT;

/**
 * Names the policy in a change record: database type 9, the operation, the policy type.
 * @param type       any number, kept as it is.
 * @param operation  1 = the policy exists after the change; kept as it is.
 * @param change     borrowed; other fields stay; null is skipped.
 * @thread any; takes no lock.
 */
void DOM_Rec_db_SetDbChangeInfo(uint32_t type, uint16_t operation,
                                DomDbUpdateReq* change) AAADOM_NOEXCEPT;

/**
 * Sends the calling role's policy as code 31 with operation 0 inside the daemon's head (5, 4). In
 * both roles and to any target: DOM_BatchSyncCfgType routes it.
 * @param type    0; any other number is absent.
 * @param target  descriptor, channel, or negative for the configuration thread.
 * @return 0, also when there is no policy and nothing is sent; DOM_ERR_FAILED when the message
 *         cannot be built; else what DOM_BatchSyncCfgType returned.
 * @thread any; on the working role takes g_stRecPolicyTypeMutexLock while it copies the policy,
 *         none while it sends.
 */
uint32_t DOM_Rec_tlv_SendBthPolicy(uint32_t type, int32_t target) AAADOM_NOEXCEPT;

/**
 * DOM_Rec_tlv_SendBthPolicy of the one policy type.
 * @param target  as there.
 * @return as there.
 * @thread as there.
 */
uint32_t DOM_Rec_bthsyn_SendPolicys(int32_t target) AAADOM_NOEXCEPT;

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
