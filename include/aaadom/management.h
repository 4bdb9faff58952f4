/* Management requests: one operation, one message to the configuration thread.
 *
 * Each function runs in the caller's process, touches no table, takes no lock and may be called by
 * any thread. It encodes one request, sends it over the channel of channel.h (which blocks) and
 * destroys what it made. Unless a function says otherwise:
 *
 * - op: the operation that is sent, DOM_OP_SET, DOM_OP_DELETE, DOM_OP_GET ..., passed unchanged.
 *
 * - texts are borrowed; a null text makes the request unencodable.
 *
 * - result receives the result TLV of the reply, 1 when it has none; untouched when no reply came.
 *   May be null.
 *
 * The return value is DOM_ERR_FAILED when the request could not be encoded, else it depends on the
 * kind of request:
 *
 * - judged: 0 for result 0; DOM_ERR_FAILED for any other result and without a reply.
 *
 * - reported: 0 when a reply came, also for a refusal, which stands in *result; DOM_ERR_FAILED when
 *   none came.
 *
 * - result only: always 0, with or without a reply. Preset *result and look at it alone.
 *
 * - blind: always 0; nothing tells what became of the request.
 *
 * - plain read: 0 when the reply carries the data asked for; DOM_ERR_FAILED without a reply, for a
 *   refusal and for any other reply.
 *
 * - refusable read: as a plain read, but a refusal (reply kind 4) stores its result in *result and
 *   returns 0 with the other outputs untouched.
 */
#ifndef AAADOM_MANAGEMENT_H
#define AAADOM_MANAGEMENT_H

#include <aaadom/domain_codec.h>
#include <aaadom/types.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/**
 * Creates (op 0) or deletes (op 1) a domain; code 3. Judged.
 * @param name  at most 255 characters; the daemon cuts longer ones.
 * @return as every judged request, but MOR_ERR_ENCODE when the request could not be encoded.
 */
uint32_t MOR_SetDomainName(const char* name, uint32_t op, uint32_t* result) AAADOM_NOEXCEPT;

/**
 * Sets (op 0) or clears (op 1) the unknown domain; code 18. Judged.
 * @param name  at most 255 characters.
 * @return as every judged request, but MOR_ERR_ENCODE when the request could not be encoded.
 */
uint32_t MOR_SetUnknownDomain(const char* name, uint32_t op, uint32_t* result) AAADOM_NOEXCEPT;

/**
 * Creates, changes (op 0, by row status) or resets (op 1) one row of the scheme table; code 15.
 * Reported.
 * @param flags  which fields the row carries, TLV 32.
 * @param domain  at most 255 characters.
 * @param row_status  4 = create and go, 1 = active.
 * @param aaa_type  0, 4 or 5.
 * @param scheme_index  row index, from 1 upward.
 * @param method_type  method kind.
 * @param scheme_name  at most 32 characters.
 */
uint32_t MOR_SetSchemeTable(uint64_t flags, const char* domain, uint32_t row_status,
                            uint32_t aaa_type, uint32_t scheme_index, uint32_t method_type,
                            const char* scheme_name, uint32_t op, uint32_t* result) AAADOM_NOEXCEPT;

/**
 * Creates one row of the domain table; code 14 with operation 0. Reported.
 * @param name  at most 255 characters.
 * @param state  state of the domain.
 * @param row_status  4 = create and go.
 */
uint32_t MOR_CreateDomainInfoTable(const char* name, uint32_t state, uint32_t row_status,
                                   uint32_t* result) AAADOM_NOEXCEPT;

/**
 * Deletes a domain; code 3 with operation 1. Reported.
 * @param name  at most 255 characters.
 */
uint32_t MOR_DestroyDomainName(const char* name, uint32_t* result) AAADOM_NOEXCEPT;

/**
 * Changes one row of the domain table; code 14 with operation 0. Reported.
 * @param flags  which fields to change, TLV 32: bit 0 = state.
 * @param name  at most 255 characters.
 * @param state  new state.
 * @param row_status  1 = active.
 */
uint32_t MOR_SetDomainInfoTable(uint64_t flags, const char* name, uint32_t state,
                                uint32_t row_status, uint32_t* result) AAADOM_NOEXCEPT;

/**
 * Sets (op 0) the default domain or makes it "system" (op 1); code 1. Result only.
 * @param name  at most 255 characters.
 * @param value_18  carried in TLV 18, not interpreted.
 */
uint32_t MOR_SetDefaultDomain(const char* name, uint32_t value_18, uint32_t op,
                              uint32_t* result) AAADOM_NOEXCEPT;

/**
 * Sets the limit of one session class; code 8 with operation 0. Result only.
 * @param session_class  19 to 23; any other class means 20.
 * @param limit  number of sessions.
 */
uint32_t MOR_SetSessionLimit(uint32_t session_class, uint32_t limit,
                             uint32_t* result) AAADOM_NOEXCEPT;

/**
 * Sets the device identifier; code 20 with operation 0. Result only.
 * @param device_id  the identifier.
 */
uint32_t MOR_SetDeviceID(uint32_t device_id, uint32_t* result) AAADOM_NOEXCEPT;

/**
 * Sets the domain for users that fail authentication; code 132 with operation 0. Result only.
 * @param name  the domain to change, at most 255 characters.
 * @param fail_domain  at most 255 characters; empty clears.
 * @param value_18  carried in TLV 18, not interpreted.
 * @param kind  stored with the name.
 */
uint32_t MOR_SetAuthFailDomain(const char* name, const char* fail_domain, uint32_t value_18,
                               uint16_t kind, uint32_t* result) AAADOM_NOEXCEPT;

/**
 * Sets (op 0) or clears (op 1) the domain that is permitted while the servers fail; code 143.
 * @param name  the domain to change, at most 255 characters.
 * @param permit_domain  at most 255 characters.
 * @param value_18  carried in TLV 18, not interpreted.
 * @return the daemon's result; 1 without a reply, which cannot be told from a refusal;
 * DOM_ERR_FAILED when the request could not be encoded.
 */
uint32_t MOR_SetAuthRdFailPermitDomain(const char* name, const char* permit_domain,
                                       uint32_t value_18, uint32_t op) AAADOM_NOEXCEPT;

/**
 * Sets (op 0) or clears (op 1) what happens to users when the servers are back; code 144.
 * @param name  the domain to change, at most 255 characters.
 * @param setting  stored as it is.
 * @param escape_domain  at most 255 characters.
 * @param second_setting  stored as it is.
 * @param value_18  carried in TLV 18, not interpreted.
 * @return the daemon's result; DOM_ERR_FAILED without a reply or when the request could not be
 *         encoded.
 */
uint32_t MOR_SetAuthenEscapeRecover(const char* name, uint16_t setting, const char* escape_domain,
                                    uint16_t second_setting, uint32_t value_18,
                                    uint32_t op) AAADOM_NOEXCEPT;

/**
 * Sets a domain's state; code 7 with operation 0. Blind.
 * @param name  at most 255 characters.
 * @param state  new state.
 */
uint32_t MOR_SetState(const char* name, uint16_t state) AAADOM_NOEXCEPT;

/**
 * Sets a domain's session time; code 19 with operation 0. Blind.
 * @param name  at most 255 characters.
 * @param session_time  new session time.
 */
uint32_t MOR_SetSessionTime(const char* name, uint16_t session_time) AAADOM_NOEXCEPT;

/**
 * Replaces (op 0) or resets (op 1) one method list; code 4. Blind.
 * @param name  at most 255 characters.
 * @param list  borrowed; its type and service choose the list.
 * @param extra  borrowed; the service's extra method, null for none.
 */
uint32_t MOR_SetMethodList(const char* name, const MethodList* list, const MethodEntry* extra,
                           uint32_t op) AAADOM_NOEXCEPT;

/**
 * Sets (op 0) or resets (op 1) one kind of authorization attribute; code 11. Blind.
 * @param kind  0 to 26.
 * @param name  at most 255 characters.
 * @param attr  borrowed; holds the values.
 */
uint32_t MOR_SetAuthorAttr(uint32_t kind, const char* name, const AuthorAttr* attr,
                           uint32_t op) AAADOM_NOEXCEPT;

/**
 * Switches redirection on (op 0) or off (op 1); code 130. Blind.
 * @param name  at most 255 characters.
 */
uint32_t MOR_SetRedirectMoveTemporarily(const char* name, uint32_t op) AAADOM_NOEXCEPT;

/**
 * Sets a domain's user address type; code 21 with operation 0. Blind.
 * @param name  at most 255 characters.
 * @param user_addr_type  new type.
 */
uint32_t MOR_SetUserAddrType(const char* name, uint32_t user_addr_type) AAADOM_NOEXCEPT;

/**
 * Sets a domain's accounting dual-stack mode; code 30 with operation 0. Blind.
 * @param name  at most 255 characters.
 * @param mode  new mode.
 */
uint32_t MOR_SetAcctDualStackMode(const char* name, uint32_t mode) AAADOM_NOEXCEPT;

/**
 * Sets (op 0) or clears (op 1) debug flags; code 145. Blind.
 * @param flag  mask: bit 0 error messages, bit 1 event messages.
 */
uint32_t MOR_SetAAADebugFlag(uint32_t flag, uint32_t op) AAADOM_NOEXCEPT;

/**
 * Reads the default domain; code 1 with operation 2. Plain read.
 * @param size  capacity of name, terminator included; a longer name is cut.
 * @param name  receives the name.
 * @param value_18  receives TLV 18.
 */
uint32_t MOR_GetDefaultDomain(uint32_t size, char* name, uint32_t* value_18) AAADOM_NOEXCEPT;

/**
 * Reads default domain, unknown domain and device identifier; code 29, followed by a second TLV 0
 * of value 20, with operation 2. Plain read.
 * @param default_size,unknown_size  capacities, terminator included; longer names are cut.
 * @param default_name,unknown_name  receive the names.
 * @param device_id  receives the identifier.
 * @param value_18  receives TLV 18.
 */
uint32_t MOR_GetGlobalDomain(uint32_t default_size, char* default_name, uint32_t unknown_size,
                             char* unknown_name, uint32_t* device_id,
                             uint32_t* value_18) AAADOM_NOEXCEPT;

/**
 * Reads one domain; code 3 with the caller's operation, 2: the operations 0 and 1 would create or
 * delete it.
 * @param name  at most 255 characters.
 * @param op  DOM_OP_GET.
 * @param result  receives the daemon's result of a refused read, else untouched. May be null.
 * @return the domain, returned, destroy with DOM_DestroyDomain; null: not encoded, no reply,
 * refused, or no domain in the reply.
 */
DomainInfo* MOR_GetDomain(const char* name, uint32_t op, uint32_t* result) AAADOM_NOEXCEPT;

/**
 * Reads the domain after the named one in strcmp order; code 165 with the caller's operation.
 * @param name  at most 255 characters; empty asks for the first domain.
 * @param op  any but 0 and 1.
 * @param result  as for MOR_GetDomain.
 * @return as MOR_GetDomain.
 */
DomainInfo* MOR_GetNextDomain(const char* name, uint32_t op, uint32_t* result) AAADOM_NOEXCEPT;

/**
 * Reads the number of domains; code 2 with operation 2. Plain read.
 * @param count  receives the number.
 */
uint32_t MOR_GetDomainCount(uint32_t* count) AAADOM_NOEXCEPT;

/**
 * Reads the five session limits; code 8 alone with operation 2, answered with code 10. Plain read.
 * @param limits  receives the limits; a class that is missing from the reply keeps what the caller
 *               put there.
 */
uint32_t MOR_GetXmlSessionLimit(SessionLimits* limits) AAADOM_NOEXCEPT;

/**
 * Reads the debug flags; code 145 alone with operation 2. Plain read.
 * @param flag  receives the flag word.
 */
uint32_t MOR_GetAAADebugFlag(uint32_t* flag) AAADOM_NOEXCEPT;

/**
 * Reads one row of the domain table (op 2, code 3) or the row after it in management order (other
 * op, code 12). Refusable read.
 * @param name  at most 255 characters.
 * @param name_length  length of the name, 0 asks for the first row; sent with code 12 only.
 * @param op  DOM_OP_GET or DOM_OP_GET_NEXT.
 * @param row  receives the row.
 * @param result  cleared to 0 first, also when no reply comes.
 */
uint32_t MOR_GetDomainInfoTable(const char* name, uint32_t name_length, uint32_t op,
                                DomainMibRow* row, uint32_t* result) AAADOM_NOEXCEPT;

/**
 * Reads one row of the scheme table (op 2) or the row after it; code 13. Refusable read.
 * @param domain  at most 255 characters.
 * @param name_length  length of the name, 0 asks for the first row.
 * @param scheme_index  row index.
 * @param op  DOM_OP_GET or DOM_OP_GET_NEXT.
 * @param row  receives the row; what the reply leaves out reads as method kind 4, row status 1,
 *            service 5, else 0.
 */
uint32_t MOR_GetMibSchemeTable(const char* domain, uint32_t name_length, uint32_t scheme_index,
                               uint32_t op, MibSchemeRow* row, uint32_t* result) AAADOM_NOEXCEPT;

/**
 * Creates (op DOM_OP_SET) or deletes (op DOM_OP_DELETE) a NAS-ID profile; code 16. Walks the reply
 * to its end, so the name may stand on either side of the result.
 * @param profile_name  at most 31 characters.
 * @param result  receives the result of the reply as it is: 0, 1 no memory, 2 no such profile, 15
 *                exists already. Untouched when the reply carries none.
 * @param name_out  32 bytes: at most 31 characters and the terminator; receives the name that the
 *                  reply carries, in its stored spelling. Untouched when it carries none; may be
 *                  null.
 * @return 0 when the reply carries a result, whatever its value; DOM_ERR_FAILED for a reply without
 *         one and without a reply.
 */
uint32_t MOR_SetAaaNasIdProfile(const char* profile_name, uint32_t op, uint32_t* result,
                                char* name_out) AAADOM_NOEXCEPT;

/**
 * Binds (op DOM_OP_SET) a VLAN of a NAS-ID profile to a NAS-ID, or removes the binding (op
 * DOM_OP_DELETE); code 17.
 * @param profile_name  at most 31 characters, in any letter case.
 * @param nas_id  at most 31 characters; a delete must name the NAS-ID that is bound.
 * @param vlan_id  VLAN identifier.
 * @return the daemon's result: 0, 1 no such profile or no memory, 2 no such binding, 15 bound
 * already; DOM_ERR_FAILED without a reply.
 */
uint32_t MOR_SetNasIdBindVlanId(const char* profile_name, const char* nas_id, uint16_t vlan_id,
                                uint32_t op) AAADOM_NOEXCEPT;

/**
 * Creates (op DOM_OP_SET) or deletes (op DOM_OP_DELETE) a critical profile; code 147. Walks the
 * reply to its end, so the name may stand on either side of the result.
 * @param profile_name  at most 31 characters, deleted in any letter case.
 * @param result  receives the result of the reply as it is: 0, 1 no memory or malformed, 10 all
 *                profiles in use, 12 no such profile, 13 exists already; 1 for a reply without one.
 * @param name_out  32 bytes: at most 31 characters and the terminator; receives the name that the
 *                  reply carries, in its stored spelling. Untouched when it carries none; may be
 *                  null.
 * @return 0 for the results 0, 12 and 13, after which the device is as it was asked to be; 1 for
 *         any other; DOM_ERR_FAILED without a reply or when the request could not be encoded.
 */
uint32_t MOR_SetAaaCriticalProfile(const char* profile_name, uint32_t op, uint32_t* result,
                                   char* name_out) AAADOM_NOEXCEPT;

/**
 * Creates or deletes an authorization profile; code 156. As MOR_SetAaaCriticalProfile, with the
 * results of authorization profiles: 0, 1, 19 exists already, 20 all profiles in use, 21 no such
 * profile.
 * @param profile_name  at most 31 characters, deleted in any letter case.
 * @param result  receives the result of the reply as it is; 1 for a reply without one.
 * @param name_out  32 bytes; as for MOR_SetAaaCriticalProfile.
 * @return 0 for the results 0 and 19; 1 for any other, 21 included: unlike a critical profile, an
 *         authorization profile that is not there cannot be deleted; DOM_ERR_FAILED without a reply
 *         or when the request could not be encoded.
 */
uint32_t MOR_SetAaaAuthorProfile(const char* profile_name, uint32_t op, uint32_t* result,
                                 char* name_out) AAADOM_NOEXCEPT;

/**
 * Sends a request that changes a segment of an authorization profile. Judged.
 * @param request  borrowed; built by the caller. Null fails.
 */
uint32_t MOR_AuthorSegMsgProc(TLV_MSG* request, uint32_t op, uint32_t* result) AAADOM_NOEXCEPT;

/**
 * Sets (op DOM_OP_SET) or deletes (op DOM_OP_DELETE) the segment of one VPN of a critical profile;
 * code 148. Judged.
 * @param segment  borrowed; profile and VPN name tell which; a set needs an ID other than 0.
 * @param result  0; 1 no such profile, ID 0, malformed or no memory; 11 the profile has its 128
 *                VPNs. Deleting a VPN that is not there is 0.
 */
uint32_t MOR_SetVpnCriticalSeg(const CriticalProfileMsg* segment, uint32_t op,
                               uint32_t* result) AAADOM_NOEXCEPT;

/**
 * Sets or deletes the segment of one VPN of an authorization profile; code 157. Judged.
 * @param segment  borrowed; as for MOR_SetVpnCriticalSeg.
 * @param result  as for MOR_SetVpnCriticalSeg, but 22 for 11.
 */
uint32_t MOR_SetVpnAuthorSeg(const AuthorProfileMsg* segment, uint32_t op,
                             uint32_t* result) AAADOM_NOEXCEPT;

/**
 * Sets (op DOM_OP_SET) or clears (op DOM_OP_DELETE) the default segment of a critical profile; code
 * 149. Judged.
 * @param segment  borrowed; the VPN name is not sent. A set needs an ID other than 0, a deletion
 *                 carries ID 0: the profile takes the ID and the name that are sent.
 * @param result  0; 1 no such profile, ID 0 that is to be set, or malformed.
 */
uint32_t MOR_SetDefaultCriticalSeg(const CriticalProfileMsg* segment, uint32_t op,
                                   uint32_t* result) AAADOM_NOEXCEPT;

/**
 * Sets or clears the default segment of an authorization profile; code 158. Judged.
 * @param segment,result  as for MOR_SetDefaultCriticalSeg.
 */
uint32_t MOR_SetDefaultAuthorSeg(const AuthorProfileMsg* segment, uint32_t op,
                                 uint32_t* result) AAADOM_NOEXCEPT;

/**
 * Reads the number of authorization profiles; code 160 with the caller's operation.
 * @param op  DOM_OP_GET.
 * @param result  receives the daemon's result of a refused read, else untouched. May be null.
 * @return the number itself; 0 also for a refusal and for a reply without a number; DOM_ERR_FAILED
 *         without a reply.
 */
uint32_t MOR_GetAAAAuthorProfileNum(uint32_t op, uint32_t* result) AAADOM_NOEXCEPT;

/**
 * Reads one authorization profile with its VPNs; code 159. Refusable read.
 * @param profile_name  at most 31 characters, in any letter case.
 * @param op  DOM_OP_GET.
 * @param profile  receives the profile; null fails.
 */
uint32_t MOR_GetAAAAuthorProfile(const char* profile_name, uint32_t op, AAAAuthorProfile* profile,
                                 uint32_t* result) AAADOM_NOEXCEPT;

/**
 * Read a profile and its default segment: of critical profiles with code 147, of authorization
 * profiles with code 156.
 * @param profile_name  at most 31 characters: the profile in any letter case (op DOM_OP_GET), or
 *                      the one before (op DOM_OP_GET_NEXT, empty for the first).
 * @param out  receives the profile, segment ID 0 when it has no default segment; null fails.
 * @param result  receives the daemon's result of a refused read, 12 (critical) or 21 for no such
 *                profile; else untouched. May be null.
 * @return 0; DOM_ERR_FAILED without a reply, for a refusal, which leaves `out` as it was, and for a
 *         reply with a name that does not fit.
 */
uint32_t MOR_GetCriticalPrfInfo(const char* profile_name, uint32_t op, CriticalProfileMsg* out,
                                uint32_t* result) AAADOM_NOEXCEPT;
uint32_t MOR_GetAuthorPrfInfo(const char* profile_name, uint32_t op, AuthorProfileMsg* out,
                              uint32_t* result) AAADOM_NOEXCEPT;

/**
 * Read the segment of one VPN of a profile: of critical profiles with code 148, of authorization
 * profiles with code 157. Refusable reads.
 * @param profile_name,vpn_name  at most 31 characters: the VPN itself (op DOM_OP_GET), or the one
 *                               before (op DOM_OP_GET_NEXT, empty names for the first).
 * @param out  receives the VPN; null fails.
 */
uint32_t MOR_GetCriticalVPNInfo(const char* profile_name, const char* vpn_name, uint32_t op,
                                CriticalProfileMsg* out, uint32_t* result) AAADOM_NOEXCEPT;
uint32_t MOR_GetAuthorVPNInfo(const char* profile_name, const char* vpn_name, uint32_t op,
                              AuthorProfileMsg* out, uint32_t* result) AAADOM_NOEXCEPT;

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
