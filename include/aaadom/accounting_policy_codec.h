/* Accounting policies in messages, in the database and on the way to a peer. */
#ifndef AAADOM_ACCOUNTING_POLICY_CODEC_H
#define AAADOM_ACCOUNTING_POLICY_CODEC_H

#include <aaadom/accounting_policy.h>
#include <aaadom/types.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* Messages. Policy names are sent whole, readers keep 31 characters. No decoder looks at the code
 * of the message. */

/**
 * Encodes a whole policy: code 22, TLVs 52; 7 with a TLV 10 for each method up to the first empty
 * one; 57; 58; 59; 60; 56 with one TLV 55 for each of the eight level entries, free ones included.
 * @param policy  borrowed; only the record itself is read, not the table it may be in.
 * @return returned, destroy with TLV_Destroy; null for null and when memory is short.
 * @thread any; takes no lock: the caller keeps the record from changing.
 */
TLV_MSG* DOM_ita_tlv_EncodePolicy(const ItaPolicy* policy) AAADOM_NOEXCEPT;

/**
 * Reads a whole policy (code 22). Nothing has a default: what the message lacks is zero, but a pair
 * value that a level lacks is 0xFFFFFFFF. Levels fill the entries as they come, from the ninth on
 * they are ignored.
 * @param msg         borrowed.
 * @param policy_out  overwritten; its name is cut to 31 characters, its links are null. Undefined
 *                    after a failure.
 * @return 0; DOM_ERR_FAILED without a policy name or with an empty one, when TLV 7 carries no
 *         method, when a nested message is malformed, for null, and when memory is short.
 * @thread any; takes no lock.
 */
uint32_t DOM_ita_tlv_DecodePolicy(TLV_MSG* msg, ItaPolicy* policy_out) AAADOM_NOEXCEPT;

/**
 * Encodes the request to create or delete a policy: code 23, TLV 52. Stored as database type 8.
 * @param name  borrowed.
 * @return returned, destroy with TLV_Destroy; null for null and when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_ita_tlv_EncodePolicyName(const char* name) AAADOM_NOEXCEPT;

/**
 * Reads the policy name of a message: the first TLV 52.
 * @param msg       borrowed.
 * @param capacity  size of name in bytes with the terminator, 32 for every name; a longer one is
 *                  cut.
 * @param name      empty when the name is missing; null is skipped.
 * @return 0; DOM_ERR_FAILED for a null message, a message without TLV 52, and capacity 0.
 * @thread any; takes no lock.
 */
uint32_t DOM_ita_tlv_DecodePolicyName(TLV_MSG* msg, uint32_t capacity, char* name) AAADOM_NOEXCEPT;

/**
 * Encodes the request to set or unset a policy's accounting scheme: code 24, TLVs 52 and a TLV 10
 * for each method up to the first empty one. Without a method the message is refused by its
 * readers, also to unset.
 * @param name     borrowed.
 * @param methods  six items, borrowed.
 * @return returned, destroy with TLV_Destroy; null for null and when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_ita_tlv_EncodeAcctScheme(const char* name,
                                      const MethodEntry methods[DOM_METHODS]) AAADOM_NOEXCEPT;

/**
 * Reads an accounting scheme (code 24).
 * @param msg          borrowed.
 * @param capacity     size of name in bytes with the terminator.
 * @param name         empty when missing, which is no failure; read whatever becomes of the
 *                     methods. Null is skipped.
 * @param methods_out  six items, cleared first.
 * @return 0; DOM_ERR_FAILED without a method, for a malformed one, for null, and when memory is
 *         short.
 * @thread any; takes no lock.
 */
uint32_t DOM_ita_tlv_DecodeAcctScheme(TLV_MSG* msg, uint32_t capacity, char* name,
                                      MethodEntry methods_out[DOM_METHODS]) AAADOM_NOEXCEPT;

/**
 * Encodes the request to account together or not: code 25, TLV 52. The operation of the request is
 * the state.
 * @param name  borrowed.
 * @return returned, destroy with TLV_Destroy; null for null and when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_ita_tlv_EncodeAcctTogether(const char* name) AAADOM_NOEXCEPT;

/**
 * Reads what code 25 carries, exactly as DOM_ita_tlv_DecodePolicyName does.
 * @param msg       borrowed.
 * @param capacity  size of name in bytes with the terminator.
 * @param name      empty when the name is missing; null is skipped.
 * @return as DOM_ita_tlv_DecodePolicyName.
 * @thread any; takes no lock.
 */
uint32_t DOM_ita_tlv_DecodeAcctTogether(TLV_MSG* msg, uint32_t capacity,
                                        char* name) AAADOM_NOEXCEPT;

/**
 * Encodes the request to set or unset an accounting level: code 26, TLVs 52, 53, 54, 77 when flags
 * is not 0, and of 78, 79, 80, 81 those whose value is below 0xFFFFFFFF.
 * @param name           borrowed.
 * @param level_id       1 upward; 0 with the deleting operation unsets all levels.
 * @param level_value    0 leaves the value of an existing level.
 * @param flags          bit 0 stores the first pair, bit 1 the second one.
 * @param first_pair_a   pair values, 0xFFFFFFFF for none.
 * @param first_pair_b
 * @param second_pair_a
 * @param second_pair_b
 * @return returned, destroy with TLV_Destroy; null for a null name and when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_ita_tlv_EncodeAcctLevel(const char* name, uint32_t level_id, uint32_t level_value,
                                     uint32_t flags, uint32_t first_pair_a, uint32_t first_pair_b,
                                     uint32_t second_pair_a,
                                     uint32_t second_pair_b) AAADOM_NOEXCEPT;

/**
 * Reads an accounting level (code 26).
 * @param msg        borrowed.
 * @param capacity   size of name in bytes with the terminator.
 * @param name       empty when missing, which is no failure; null is skipped.
 * @param level_out  ID and value are 0 and pair values 0xFFFFFFFF where the message has none; null
 *                   is skipped.
 * @param flags_out  0 when the message has none; null is skipped.
 * @return 0; DOM_ERR_FAILED for a null message and when the name cannot be read.
 * @thread any; takes no lock.
 */
uint32_t DOM_ita_tlv_DecodeAcctLevel(TLV_MSG* msg, uint32_t capacity, char* name,
                                     ItaAcctLevel* level_out, uint32_t* flags_out) AAADOM_NOEXCEPT;

/**
 * Encodes the request to separate traffic or not: code 27, TLV 52. The operation of the request is
 * the state.
 * @param name  borrowed.
 * @return returned, destroy with TLV_Destroy; null for null and when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_ita_tlv_EncodeTrafSeprate(const char* name) AAADOM_NOEXCEPT;

/**
 * Reads what code 27 carries, as DOM_ita_tlv_DecodePolicyName does. Front ends link to it under
 * this name.
 * @param msg       borrowed.
 * @param capacity  size of name in bytes with the terminator.
 * @param name      empty when the name is missing; null is skipped.
 * @return as DOM_ita_tlv_DecodePolicyName.
 * @thread any; takes no lock.
 */
uint32_t DOM_ita_ita_DecodeTrafSeprate(TLV_MSG* msg, uint32_t capacity, char* name) AAADOM_NOEXCEPT;

/**
 * Encodes the quota-out state: code 28, TLVs 52, 60.
 * @param name   borrowed.
 * @param state  any 16-bit number, sent as UINT32.
 * @return returned, destroy with TLV_Destroy; null for a null name and when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_ita_tlv_EncodeTrafQuotaOut(const char* name, uint16_t state) AAADOM_NOEXCEPT;

/**
 * Reads the quota-out state (code 28).
 * @param msg        borrowed.
 * @param capacity   size of name in bytes with the terminator.
 * @param name       empty when missing, which is no failure; null is skipped.
 * @param state_out  1 when the message has none; null is skipped.
 * @return 0; DOM_ERR_FAILED for a null message and when the name cannot be read.
 * @thread any; takes no lock.
 */
uint32_t DOM_ita_tlv_DecodeTrafQuotaOut(TLV_MSG* msg, uint32_t capacity, char* name,
                                        uint16_t* state_out) AAADOM_NOEXCEPT;

/* The database. Keys carry their terminator; a name is cut to 31 characters. */

/** Handle of the table that accounting policies are written to and deleted from; -1 means none.
 *  Set with DOM_ita_db_SetGlobalHandle. */
extern DBM_HANDLE g_hDomItaDBHandle;

/**
 * Installs the handle for every write and delete. Call before the first policy is saved or read:
 * reading migrates policies of former releases.
 * @param handle  borrowed: whoever opened it closes it, after installing another.
 * @thread none may be writing; takes no lock.
 */
void DOM_ita_db_SetGlobalHandle(DBM_HANDLE handle) AAADOM_NOEXCEPT;

/**
 * Saves a policy of the calling role's table, or deletes its record. Value type 8; a record of a
 * former release is left alone.
 * @param name       borrowed; compared exactly.
 * @param operation  1 saves, anything else deletes.
 * @return saving: 0; DOM_ERR_FAILED when there is no such policy, memory is short or the database
 *         refused. Deleting: DOM_ERR_FAILED always, the deletion that worked included. Callers know
 *         that and look for the key (DOM_ita_db_IsPolicyExist) when they need the truth.
 * @thread any; takes g_stDomainItaPolicyTableMutexLock while it copies the policy, not while the
 *         database works. The caller does not hold it.
 */
uint32_t DOM_ita_db_SetPolicy(const char* name, uint16_t operation) AAADOM_NOEXCEPT;

/**
 * Reads a saved policy. One that only a former release saved is migrated: written in the current
 * form, then its old key is deleted, both through g_hDomItaDBHandle; when the write fails the old
 * key stays. A record that is none is refused with one line in the system log that names its key;
 * the old one takes its place. One that cannot be read for the moment, because memory is short or
 * the database refuses, gives null and stays: no policy comes back in part or as it once was.
 * @param handle  borrowed; need not be the installed one.
 * @param name    compared exactly.
 * @return returned, insert with DOM_ita_policy_AddPolicy or destroy with
 *         DOM_ita_policy_DestroyPolicy; its name is the given one. Null: nothing is saved, what is
 *         saved is no policy, memory is short, the database refused, null name.
 * @thread any; takes no lock.
 */
ItaPolicy* DOM_ita_db_GetMemPolicyFromDBByName(DBM_HANDLE handle, const char* name) AAADOM_NOEXCEPT;

/**
 * Tells whether a policy is saved in the current form; one of a former release does not count.
 * @param handle  borrowed.
 * @param name    compared exactly.
 * @return 1 or 0.
 * @thread any; takes no lock.
 */
uint32_t DOM_ita_db_IsPolicyExist(DBM_HANDLE handle, const char* name) AAADOM_NOEXCEPT;

/**
 * Fills a change record: object type 8, operation, policy name. Other members stay.
 * @param name       borrowed; at most 31 characters are kept, null reads as empty.
 * @param operation  stored unchanged.
 * @param change     null is ignored.
 * @thread any; takes no lock.
 */
void DOM_ita_db_SetDbChangeInfo(const char* name, uint16_t operation,
                                DomDbUpdateReq* change) AAADOM_NOEXCEPT;

/* Processors: each applies one message to the calling role's policies. All are refused on the
 * configuration thread, where no accounting policies live. Once the message is decoded the change
 * record is filled, whatever the store answers. */

/**
 * Creates or deletes the policy that a message of code 23 names.
 * @param msg        borrowed.
 * @param operation  1 creates, anything else deletes.
 * @param change     gets object type 8, this operation and the name; untouched when refused or
 *                   undecodable. Null is skipped.
 * @return the result of DOM_ita_policy_Create or DOM_ita_policy_Delete; DOM_ERR_FAILED on the
 *         configuration thread and for a message that cannot be decoded.
 * @thread working role; takes g_stDomainItaPolicyTableMutexLock, the caller does not hold it.
 */
uint32_t DOM_ita_cfg_ProcPolicy(TLV_MSG* msg, uint16_t operation,
                                DomDbUpdateReq* change) AAADOM_NOEXCEPT;

/**
 * Sets or unsets the accounting scheme of a policy: code 24.
 * @param msg        borrowed.
 * @param operation  1 sets, anything else unsets. A message without a method is refused in both
 *                   cases.
 * @param change     gets object type 8, operation 1 and the name that was decoded, also when the
 *                   message could not be decoded; untouched on the configuration thread. Null is
 *                   skipped.
 * @return the result of DOM_ita_policy_SetAcctScheme or DOM_ita_policy_UnSetAcctScheme;
 *         DOM_ERR_FAILED on the configuration thread and for a message that cannot be decoded.
 * @thread working role; takes g_stDomainItaPolicyTableMutexLock, the caller does not hold it.
 */
uint32_t DOM_ita_cfg_ProcAcctScheme(TLV_MSG* msg, uint16_t operation,
                                    DomDbUpdateReq* change) AAADOM_NOEXCEPT;

/**
 * Switches accounting together: code 25.
 * @param msg        borrowed.
 * @param operation  1 stores state 1, anything else state 0.
 * @param change     gets object type 8, operation 1 and the name; untouched when refused or
 *                   undecodable. Null is skipped.
 * @return the result of DOM_ita_policy_SetTogetherState; DOM_ERR_FAILED on the configuration thread
 *         and for a message that cannot be decoded.
 * @thread working role; takes g_stDomainItaPolicyTableMutexLock, the caller does not hold it.
 */
uint32_t DOM_ita_cfg_ProcAcctTogether(TLV_MSG* msg, uint16_t operation,
                                      DomDbUpdateReq* change) AAADOM_NOEXCEPT;

/**
 * Sets or unsets accounting levels: code 26.
 * @param msg        borrowed.
 * @param operation  1 sets the level; anything else unsets it, level ID 0 all levels.
 * @param change     gets object type 8, operation 1 and the name; untouched when refused or
 *                   undecodable. Null is skipped.
 * @return the result of DOM_ita_policy_SetAcctLevel, DOM_ita_policy_UnSetOneAcctLevel or
 *         DOM_ita_policy_UnSetAllAcctLevel; DOM_ERR_FAILED on the configuration thread and for a
 *         message that cannot be decoded.
 * @thread working role; takes g_stDomainItaPolicyTableMutexLock, the caller does not hold it.
 */
uint32_t DOM_ita_cfg_ProcAcctLevel(TLV_MSG* msg, uint16_t operation,
                                   DomDbUpdateReq* change) AAADOM_NOEXCEPT;

/**
 * Switches traffic separation: code 27.
 * @param msg        borrowed.
 * @param operation  1 stores state 1, anything else state 0.
 * @param change     gets object type 8, operation 1 and the name; untouched when refused or
 *                   undecodable. Null is skipped.
 * @return the result of DOM_ita_policy_SetSeprateState; DOM_ERR_FAILED on the configuration thread
 *         and for a message that cannot be decoded.
 * @thread working role; takes g_stDomainItaPolicyTableMutexLock, the caller does not hold it.
 */
uint32_t DOM_ita_cfg_ProcTrafSeprate(TLV_MSG* msg, uint16_t operation,
                                     DomDbUpdateReq* change) AAADOM_NOEXCEPT;

/**
 * Stores the quota-out state of a message of code 28, 1 when it has none.
 * @param msg     borrowed.
 * @param change  gets object type 8, operation 1 and the name; untouched when refused or
 *                undecodable. Null is skipped.
 * @return the result of DOM_ita_policy_SetQuotaState; DOM_ERR_FAILED on the configuration thread
 *         and for a message that cannot be decoded.
 * @thread working role; takes g_stDomainItaPolicyTableMutexLock, the caller does not hold it.
 */
uint32_t DOM_ita_cfg_ProcTrafQuotaOut(TLV_MSG* msg, DomDbUpdateReq* change) AAADOM_NOEXCEPT;

/* Management setters. Each sends one request with its operation reduced to 0 or 1 and returns what
 * DOM_lipc_CfgMsgProc returned: 0 once a reply came, whatever the reply says. A non-zero operation,
 * which goes out as 1, means add or set to the daemon's endpoint for the codes 23 to 27; the
 * operation of code 28 has no meaning. */

/**
 * Creates or deletes a policy: code 23.
 * @param operation  non-zero creates, 0 deletes.
 * @param name       borrowed.
 * @return 0; DOM_ERR_FAILED when no reply came, for null and when memory is short.
 * @thread as DOM_lipc_SendCfgMsg.
 */
uint32_t DOM_ita_mor_SetPolicy(uint32_t operation, const char* name) AAADOM_NOEXCEPT;

/**
 * Sets or unsets the accounting scheme of a policy: code 24.
 * @param operation  non-zero sets, 0 unsets.
 * @param name       borrowed.
 * @param methods    six items, borrowed; at least one is used, also to unset: the daemon refuses a
 *                   message without a method.
 * @return as DOM_ita_mor_SetPolicy.
 * @thread as DOM_lipc_SendCfgMsg.
 */
uint32_t DOM_ita_mor_SetAcctScheme(uint32_t operation, const char* name,
                                   const MethodEntry methods[DOM_METHODS]) AAADOM_NOEXCEPT;

/**
 * Switches accounting together: code 25.
 * @param operation  non-zero switches it on, 0 off.
 * @param name       borrowed.
 * @return as DOM_ita_mor_SetPolicy.
 * @thread as DOM_lipc_SendCfgMsg.
 */
uint32_t DOM_ita_mor_SetAcctTogether(uint32_t operation, const char* name) AAADOM_NOEXCEPT;

/**
 * Sets or unsets an accounting level: code 26.
 * @param operation      non-zero sets, 0 unsets.
 * @param name           borrowed.
 * @param level_id       parameters as of DOM_ita_tlv_EncodeAcctLevel.
 * @param level_value
 * @param flags
 * @param first_pair_a
 * @param first_pair_b
 * @param second_pair_a
 * @param second_pair_b
 * @return as DOM_ita_mor_SetPolicy.
 * @thread as DOM_lipc_SendCfgMsg.
 */
uint32_t DOM_ita_mor_SetTrafLevel(uint32_t operation, const char* name, uint32_t level_id,
                                  uint32_t level_value, uint32_t flags, uint32_t first_pair_a,
                                  uint32_t first_pair_b, uint32_t second_pair_a,
                                  uint32_t second_pair_b) AAADOM_NOEXCEPT;

/**
 * Switches traffic separation: code 27.
 * @param operation  non-zero switches it on, 0 off.
 * @param name       borrowed.
 * @return as DOM_ita_mor_SetPolicy.
 * @thread as DOM_lipc_SendCfgMsg.
 */
uint32_t DOM_ita_mor_SetTrafSeprate(uint32_t operation, const char* name) AAADOM_NOEXCEPT;

/**
 * Sets the quota-out state: code 28.
 * @param operation  goes out like the others' and is looked at by nobody.
 * @param name       borrowed.
 * @param state      any 16-bit number.
 * @return as DOM_ita_mor_SetPolicy.
 * @thread as DOM_lipc_SendCfgMsg.
 */
uint32_t DOM_ita_mor_SetAcctTrafQuotaOut(uint32_t operation, const char* name,
                                         uint16_t state) AAADOM_NOEXCEPT;

/* Batch synchronisation. */

/**
 * Sends every policy of the calling role to a peer, one batch record (code 22) each, bucket by
 * bucket, each bucket from its head. The first step that fails, building, wrapping or sending, ends
 * the walk silently; what was built before a policy that cannot be built is still sent.
 * @param target  descriptor; nothing is sent for a negative one and on the configuration thread.
 * @thread working role; takes g_stDomainItaPolicyTableMutexLock while it encodes, and sends without
 *         it. The caller does not hold it.
 */
void DOM_ita_bthsyn_SendPolicys(int32_t target) AAADOM_NOEXCEPT;

/**
 * Takes over a policy of a batch: code 22. A policy of that name is replaced.
 * @param msg      borrowed, without its heads.
 * @param ignored  not looked at: a batch only adds.
 * @param change   gets object type 8, operation 1 and the name; untouched on failure. Null is
 *                 skipped.
 * @return 0; DOM_ERR_FAILED on the configuration thread, without memory, and for a message that
 *         DOM_ita_tlv_DecodePolicy refuses.
 * @thread working role; takes g_stDomainItaPolicyTableMutexLock, the caller does not hold it.
 */
uint32_t DOM_ita_bthsyn_RecvOnePolicy(TLV_MSG* msg, uint16_t ignored,
                                      DomDbUpdateReq* change) AAADOM_NOEXCEPT;

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
