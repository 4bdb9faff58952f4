/* NAS-ID profiles: which NAS-ID is reported for users of a VLAN. */
#ifndef AAADOM_NAS_ID_H
#define AAADOM_NAS_ID_H

#include <aaadom/types.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

#define DOM_NASID_NAME_SIZE 32 /* profile names and NAS-IDs: 31 characters and the terminator */

/* Results of changes of profiles and bindings; answered to the requester unchanged. */
#define DOM_NASID_OK 0u
#define DOM_NASID_FAILED 1u    /* no memory, no table, or a binding's profile does not exist */
#define DOM_NASID_NOT_FOUND 2u /* nothing to delete */
#define DOM_NASID_UNCHANGED 15u

/**
 * Adds a NAS-ID profile to the calling role's table, at the head of its bucket, without looking for
 * one of the same name: callers look first. Carried by code 16, stored as database type 4.
 * @param name  borrowed; at most 31 characters and the terminator are kept, longer input is cut.
 * @return 0; 1 when memory is short, before DOM_DomainInfoTableInit and for a null name.
 * @thread takes no lock; the profile table has none, its callers serialise changes to it.
 */
uint32_t DOM_AddNasIdProfile(const char* name) AAADOM_NOEXCEPT;

/**
 * Binds a NAS-ID to a VLAN of a profile in the calling role's table. A binding that the profile
 * (any letter case) has for the VLAN takes the new NAS-ID and keeps its spelling of the profile;
 * else a binding is made at the head of its bucket. Whether the profile exists is not looked at.
 * Carried by code 17, stored as database type 5.
 * @param profile_name  borrowed; compared whole, stored as given, cut to 31 characters.
 * @param nas_id        borrowed; compared whole, cut to 31 characters when kept.
 * @param vlan_id       any 16-bit number.
 * @return 0; 15 when the binding has this NAS-ID already; 1 when memory is short, before
 *         DOM_DomainInfoTableInit and for a null text.
 * @thread any; takes the role's binding mutex.
 */
uint32_t DOM_AddNasIdBindVlanId(const char* profile_name, const char* nas_id,
                                uint16_t vlan_id) AAADOM_NOEXCEPT;

/**
 * Finds the NAS-ID of a VLAN of a profile in the calling role's table.
 * @param profile_name  borrowed; any letter case.
 * @param vlan_id       any 16-bit number.
 * @param nas_id_out    32 bytes; receives the NAS-ID, untouched when there is none; null is
 *                      skipped.
 * @return 0; DOM_ERR_FAILED when there is no such binding, before DOM_DomainInfoTableInit and for a
 *         null name.
 * @thread any; takes the binding mutex of the working role, whichever role calls. On the
 *         configuration thread that is not the mutex of the table that is searched: that table is
 *         changed by the configuration thread only.
 */
uint32_t DOM_GetNasIdByProfileAndVlanId(const char* profile_name, uint16_t vlan_id,
                                        char* nas_id_out) AAADOM_NOEXCEPT;

/**
 * Applies a profile message (code 16): adds the profile, or deletes it with every binding that
 * carries its name exactly as the profile has it. Bindings made with another spelling stay.
 * @param name       borrowed; any letter case; stored as given, cut to 31 characters.
 * @param operation  1 adds, any other number deletes.
 * @param name_out   32 bytes, or null; on add receives the name as stored, or as given when the
 *                   profile is new (whatever becomes of it); untouched on delete.
 * @param change     borrowed; on success gets type 4, the operation and the profile name, other
 *                   fields stay; untouched otherwise; null is skipped.
 * @return 0; 1 when memory is short, before DOM_DomainInfoTableInit and for a null name; 2 when the
 *         profile to delete does not exist; 15 when the profile to add does.
 * @thread callers serialise changes of profiles; a delete takes the role's binding mutex.
 */
uint32_t DOM_ProcNasIdProfileCfg(const char* name, uint16_t operation, char* name_out,
                                 DomDbUpdateReq* change) AAADOM_NOEXCEPT;

/**
 * Applies a binding message (code 17) to the calling role's table. A binding is deleted only
 * together with the NAS-ID that it has.
 * @param nas_id        borrowed; at most 31 characters and the terminator are kept.
 * @param vlan_id       any 16-bit number.
 * @param operation     1 binds (DOM_AddNasIdBindVlanId), any other number unbinds.
 * @param profile_name  borrowed; any letter case; a new binding stores it as given.
 * @param change        borrowed; on success gets type 5, the operation, the VLAN, the profile name
 *                      and the NAS-ID as given, other fields stay; untouched otherwise; null is
 *                      skipped.
 * @return 0; 1 when there is no such profile, memory is short or a text is null; 2 when there is no
 *         such binding or it has another NAS-ID; 15 when the binding exists unchanged.
 * @thread callers serialise changes of profiles; takes the role's binding mutex.
 */
uint32_t DOM_ProcNasIdBindVlanIdCfg(const char* nas_id, uint16_t vlan_id, uint16_t operation,
                                    const char* profile_name,
                                    DomDbUpdateReq* change) AAADOM_NOEXCEPT;

/**
 * Sends every NAS-ID profile to a descriptor: bucket by bucket, each from its head, as code 16 with
 * operation 0 inside the daemon's head (5, 4). A profile whose message cannot be built is left out.
 * @param fd  descriptor of the peer; nothing is sent for a negative one.
 * @thread of the working role, nothing is sent on the configuration thread; takes no lock, the
 *         caller holds none; callers serialise changes of profiles. Waits at most 60 s a message.
 */
void DOM_SyncAllNasIdProfile(int32_t fd) AAADOM_NOEXCEPT;

/**
 * Sends every NAS-ID binding to a descriptor: bucket by bucket, each from its head, as code 17 with
 * operation 0 inside the daemon's head (5, 4). A binding whose message cannot be built is left out.
 * @param fd  descriptor of the peer; nothing is sent for a negative one.
 * @thread of the working role, nothing is sent on the configuration thread; takes the binding mutex
 *         while it builds the messages, none while it sends them. The caller holds none. Waits at
 *         most 60 s a message.
 */
void DOM_SyncAllNasIdBindVlanId(int32_t fd) AAADOM_NOEXCEPT;

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
