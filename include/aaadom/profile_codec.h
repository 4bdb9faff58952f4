/* Authorization and critical profiles in messages.
 *
 * A name is a text of at most 31 characters and the terminator. Encoders read fixed fields and
 * given texts to their end and no further, also when a field lacks its terminator; they give null
 * for a null argument and when memory is short. Decoders look at no message code: they take the
 * TLVs of their list in any order, the last of several of one type, and skip the others. A text
 * whose TLV is longer than its buffer, or that leaves no room for a terminator, is refused, not
 * cut: a cut name would name another profile.
 * What a message leaves out reads as 0 or as an empty text. */
#ifndef AAADOM_PROFILE_CODEC_H
#define AAADOM_PROFILE_CODEC_H

#include <aaadom/profile.h>
#include <aaadom/types.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/**
 * Encodes an authorization profile: code 156, TLV 430. Stored as database type 33.
 * @param profile_name  borrowed; sent whole, a receiver refuses more than 31 characters.
 * @return returned, destroy with TLV_Destroy; null for a null name and when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_author_tlv_EncodeAuthorProfile(const char* profile_name) AAADOM_NOEXCEPT;

/**
 * Encodes a profile's default segment: code 158, TLVs 431, 432, 430. Stored as database type 35.
 * @param request  borrowed; its VPN name is not sent.
 * @return returned, destroy with TLV_Destroy; null for null and when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_author_tlv_EncodeDefaultAuthor(const AuthorProfileMsg* request) AAADOM_NOEXCEPT;

/**
 * Encodes a stored profile's default segment: the same message as
 * DOM_author_tlv_EncodeDefaultAuthor gives. A segment that is not set goes out as ID 0.
 * @param profile  borrowed.
 * @return returned, destroy with TLV_Destroy; null for null and when memory is short.
 * @thread the role that owns the profile; takes no lock.
 */
TLV_MSG* DOM_author_tlv_EncodeDefaultAuthorByProfile(const AuthorProfile* profile) AAADOM_NOEXCEPT;

/**
 * Encodes the segment of one VPN: code 157, TLVs 431, 432, 430, 433. Stored as database type 34.
 * @param request  borrowed.
 * @return returned, destroy with TLV_Destroy; null for null and when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_author_tlv_EncodeAuthorVpn(const AuthorProfileMsg* request) AAADOM_NOEXCEPT;

/**
 * Encodes the segment of a stored VPN: the same message as DOM_author_tlv_EncodeAuthorVpn gives.
 * @param vpn           borrowed.
 * @param profile_name  borrowed; the profile that the VPN belongs to; at most 31 characters, cut
 *                      like the names of stored profiles.
 * @return returned, destroy with TLV_Destroy; null for a null argument and when memory is short.
 * @thread the role that owns the VPN; takes no lock.
 */
TLV_MSG* DOM_author_tlv_EncodeAuthorVpnByProfile(const AuthorVpn* vpn,
                                                 const char* profile_name) AAADOM_NOEXCEPT;

/**
 * Encodes the question for one VPN: code 157, TLVs 430, 433. Only the operation, DOM_OP_GET, tells
 * it from a message that sets one.
 * @param profile_name,vpn_name  borrowed; sent whole.
 * @return returned, destroy with TLV_Destroy; null for a null name and when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_author_tlv_EncodeGetAuthorVpn(const char* profile_name,
                                           const char* vpn_name) AAADOM_NOEXCEPT;

/**
 * Encodes the answer to a read that found nothing: TLV 16 alone, without a message code.
 * @param result  21 = no such profile or VPN.
 * @return returned, destroy with TLV_Destroy; null when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_author_tlv_EncodeEndMsg(uint32_t result) AAADOM_NOEXCEPT;

/**
 * Reads a default segment (code 158): TLVs 430, 431, 432.
 * @param msg     borrowed.
 * @param record  receives the message; cleared first.
 * @return 0; DOM_ERR_FAILED for a text that does not fit or cannot be read, what was read before it
 *         stays; DOM_ERR_FAILED for a null argument.
 * @thread any; takes no lock.
 */
uint32_t DOM_author_tlv_DecodeDefaultAuthor(TLV_MSG* msg, AuthorProfileMsg* record) AAADOM_NOEXCEPT;

/**
 * Reads the segment of one VPN (code 157): TLVs 430 to 433.
 * @param msg     borrowed.
 * @param record  receives the message; cleared first.
 * @return as DOM_author_tlv_DecodeDefaultAuthor.
 * @thread any; takes no lock.
 */
uint32_t DOM_author_tlv_DecodeAuthorVpn(TLV_MSG* msg, AuthorProfileMsg* record) AAADOM_NOEXCEPT;

/**
 * Reads the question for one VPN (code 157): TLVs 430 and 433.
 * @param msg           borrowed.
 * @param profile_name  32 bytes; cleared first; null is skipped.
 * @param vpn_name      32 bytes; cleared first; null is skipped.
 * @return as DOM_author_tlv_DecodeDefaultAuthor.
 * @thread any; takes no lock.
 */
uint32_t DOM_author_tlv_DecodeGetAuthorVpn(TLV_MSG* msg, char profile_name[32],
                                           char vpn_name[32]) AAADOM_NOEXCEPT;

/**
 * Reads the profile that a message is about: the first TLV 430.
 * @param msg           borrowed.
 * @param capacity      size of `profile_name` in bytes, terminator included.
 * @param profile_name  receives the name; undefined on failure, but terminated if it was.
 * @return 0; DOM_ERR_FAILED when there is no TLV 430 or its text does not fit, and for a null
 *         argument.
 * @thread any; takes no lock.
 */
uint32_t DOM_author_tlv_DecodeProfileName(TLV_MSG* msg, uint32_t capacity,
                                          char* profile_name) AAADOM_NOEXCEPT;

/**
 * Encodes a critical profile: code 147, TLV 389. Stored as database type 23. The first word of the
 * name is spelt as programs link it.
 * @param profile_name  borrowed; sent whole, a receiver refuses more than 31 characters.
 * @return returned, destroy with TLV_Destroy; null for a null name and when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_clitical_tlv_EncodeCriticalProfile(const char* profile_name) AAADOM_NOEXCEPT;

/**
 * Encodes a profile's default segment: code 149, TLVs 390, 391, 392, 389. The 16-bit value goes as
 * 32 bits, before the segment ID. Stored as database type 25.
 * @param request  borrowed; its VPN name is not sent.
 * @return returned, destroy with TLV_Destroy; null for null and when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_critical_tlv_EncodeDefaultCritical(const CriticalProfileMsg* request) AAADOM_NOEXCEPT;

/**
 * Encodes a stored profile's default segment: the same message as
 * DOM_critical_tlv_EncodeDefaultCritical gives. A segment that is not set goes out as ID 0.
 * @param profile  borrowed.
 * @return returned, destroy with TLV_Destroy; null for null and when memory is short.
 * @thread the role that owns the profile; takes no lock.
 */
TLV_MSG* DOM_critical_tlv_EncodeDefaultCriticalByProfile(const CriticalProfile* profile)
    AAADOM_NOEXCEPT;

/**
 * Encodes the segment of one VPN: code 148, TLVs 390, 391, 392, 389, 393. Stored as database type
 * 24.
 * @param request  borrowed.
 * @return returned, destroy with TLV_Destroy; null for null and when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_critical_tlv_EncodeCriticalVpn(const CriticalProfileMsg* request) AAADOM_NOEXCEPT;

/**
 * Encodes the segment of a stored VPN: the same message as DOM_critical_tlv_EncodeCriticalVpn
 * gives.
 * @param vpn           borrowed.
 * @param profile_name  borrowed; the profile that the VPN belongs to; at most 31 characters, cut
 *                      like the names of stored profiles.
 * @return returned, destroy with TLV_Destroy; null for a null argument and when memory is short.
 * @thread the role that owns the VPN; takes no lock.
 */
TLV_MSG* DOM_critical_tlv_EncodeCriticalVpnByProfile(const CriticalVpn* vpn,
                                                     const char* profile_name) AAADOM_NOEXCEPT;

/**
 * Encodes the question for one VPN: code 148, TLVs 389, 393. Only the operation, DOM_OP_GET, tells
 * it from a message that sets one.
 * @param profile_name,vpn_name  borrowed; sent whole.
 * @return returned, destroy with TLV_Destroy; null for a null name and when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_critical_tlv_EncodeGetCriticalVpn(const char* profile_name,
                                               const char* vpn_name) AAADOM_NOEXCEPT;

/**
 * Encodes the answer to a read that found nothing: TLV 16 alone, without a message code.
 * @param result  12 = no such profile or VPN.
 * @return returned, destroy with TLV_Destroy; null when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_critical_tlv_EncodeEndMsg(uint32_t result) AAADOM_NOEXCEPT;

/**
 * Reads a default segment (code 149): TLVs 389 to 392.
 * @param msg     borrowed.
 * @param record  receives the message; cleared first. Of TLV 391 the low 16 bits are kept.
 * @return 0; DOM_ERR_FAILED for a text that does not fit or cannot be read, what was read before it
 *         stays; DOM_ERR_FAILED for a null argument.
 * @thread any; takes no lock.
 */
uint32_t DOM_critical_tlv_DecodeDefaultCritical(TLV_MSG* msg,
                                                CriticalProfileMsg* record) AAADOM_NOEXCEPT;

/**
 * Reads the segment of one VPN (code 148): TLVs 389 to 393.
 * @param msg     borrowed.
 * @param record  receives the message; cleared first. Of TLV 391 the low 16 bits are kept.
 * @return as DOM_critical_tlv_DecodeDefaultCritical.
 * @thread any; takes no lock.
 */
uint32_t DOM_critical_tlv_DecodeCriticalVpn(TLV_MSG* msg,
                                            CriticalProfileMsg* record) AAADOM_NOEXCEPT;

/**
 * Reads the question for one VPN (code 148): TLVs 389 and 393.
 * @param msg           borrowed.
 * @param profile_name  32 bytes; cleared first; null is skipped.
 * @param vpn_name      32 bytes; cleared first; null is skipped.
 * @return as DOM_critical_tlv_DecodeDefaultCritical.
 * @thread any; takes no lock.
 */
uint32_t DOM_critical_tlv_DecodeGetCriticalVpn(TLV_MSG* msg, char profile_name[32],
                                               char vpn_name[32]) AAADOM_NOEXCEPT;

/**
 * Reads the profile that a message is about: the first TLV 389.
 * @param msg           borrowed.
 * @param profile_name  32 bytes; receives the name; undefined on failure, but terminated if it was.
 * @return 0; DOM_ERR_FAILED when there is no TLV 389 or its text does not fit, and for a null
 *         argument.
 * @thread any; takes no lock.
 */
uint32_t DOM_critical_tlv_DecodeProfileName(TLV_MSG* msg, char profile_name[32]) AAADOM_NOEXCEPT;

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
