/* NAS-ID profiles and bindings in messages. */
#ifndef AAADOM_NAS_ID_CODEC_H
#define AAADOM_NAS_ID_CODEC_H

#include <aaadom/nas_id.h>
#include <aaadom/types.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/**
 * Encodes a NAS-ID profile: code 16, TLV 34. Stored as database type 4.
 * @param profile_name  borrowed; sent whole, readers keep 31 characters.
 * @return returned, destroy with TLV_Destroy; null for a null text and when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_EncodeNasIdProfile(const char* profile_name) AAADOM_NOEXCEPT;

/**
 * Reads a NAS-ID profile (code 16; the code itself is not looked at): the first TLV 34.
 * @param msg           borrowed.
 * @param profile_name  32 bytes; receives the name, empty when missing; a longer name is cut; null
 *                      is skipped.
 * @return 0; DOM_ERR_FAILED for a null message and a message without the name.
 * @thread any; takes no lock.
 */
uint32_t DOM_DecodeNasIdProfile(TLV_MSG* msg, char* profile_name) AAADOM_NOEXCEPT;

/**
 * Encodes a NAS-ID binding: code 17, TLVs 34, 35, 36. Stored as database type 5.
 * @param profile_name  borrowed; sent whole, readers keep 31 characters.
 * @param nas_id        borrowed; sent whole, readers keep 31 characters.
 * @param vlan_id       any 16-bit number; sent as 16 bits.
 * @return returned, destroy with TLV_Destroy; null for a null text and when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_EncodeNasidBindVlanId(const char* profile_name, const char* nas_id,
                                   uint16_t vlan_id) AAADOM_NOEXCEPT;

/**
 * Reads a NAS-ID binding (code 17; the code itself is not looked at). The last of the three TLVs
 * decides alone: a message that has only some of them may succeed, and outputs whose TLV is
 * missing stay as they were, so callers clear them first.
 * @param msg           borrowed.
 * @param profile_name  32 bytes; a longer name is cut; null is skipped.
 * @param nas_id        32 bytes; a longer NAS-ID is cut; null is skipped.
 * @param vlan_id       Receives the VLAN; unchanged by a TLV shorter than 16 bits; null is skipped.
 * @return the result of the last TLV 34, 35 or 36; DOM_ERR_FAILED when there is none and for a null
 *         message.
 * @thread any; takes no lock.
 */
uint32_t DOM_DecodeNasIdBindVlanId(TLV_MSG* msg, char* profile_name, char* nas_id,
                                   uint16_t* vlan_id) AAADOM_NOEXCEPT;

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
