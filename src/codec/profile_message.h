// Messages of authorization and critical profiles. The two families have the same shapes: each
// message is one list of fields that one routine interprets in both directions.
#pragma once

#include <aaadom/codes.h>
#include <aaadom/profile.h>
#include <aaadom/types.h>
#include <platform/aaa_tlv.h>

#include <cstddef>
#include <cstdint>

#include "base/message.h"

namespace aaadom {

/// A message of a segment: its code, and its fields in sending order.
template <size_t N>
struct SegmentMessage {
    uint32_t code;
    AAA_FIELD fields[N];
};

#define WORD_AT(record, member) AAA_FIELD_WORD, offsetof(record, member), 0
#define HALF_AT(record, member) AAA_FIELD_HALF, offsetof(record, member), 0
#define TEXT_AT(record, member) AAA_FIELD_TEXT, offsetof(record, member), sizeof(record::member)

inline constexpr SegmentMessage<4> kAuthorVpnMessage = {
    DOM_MSG_AUTHOR_VPN,
    {{DOM_TLV_AUTHOR_SEGMENT_NAME, TEXT_AT(AuthorProfileMsg, segment_name)},
     {DOM_TLV_AUTHOR_SEGMENT_ID, WORD_AT(AuthorProfileMsg, segment_id)},
     {DOM_TLV_AUTHOR_PROFILE_NAME, TEXT_AT(AuthorProfileMsg, profile_name)},
     {DOM_TLV_AUTHOR_VPN_NAME, TEXT_AT(AuthorProfileMsg, vpn_name)}}};
inline constexpr SegmentMessage<3> kAuthorSegmentMessage = {
    DOM_MSG_AUTHOR_SEGMENT,
    {{DOM_TLV_AUTHOR_SEGMENT_NAME, TEXT_AT(AuthorProfileMsg, segment_name)},
     {DOM_TLV_AUTHOR_SEGMENT_ID, WORD_AT(AuthorProfileMsg, segment_id)},
     {DOM_TLV_AUTHOR_PROFILE_NAME, TEXT_AT(AuthorProfileMsg, profile_name)}}};
/// Read only: a question is sent from texts of any length.
inline constexpr SegmentMessage<2> kAuthorVpnNames = {
    DOM_MSG_AUTHOR_VPN,
    {{DOM_TLV_AUTHOR_PROFILE_NAME, TEXT_AT(AuthorProfileMsg, profile_name)},
     {DOM_TLV_AUTHOR_VPN_NAME, TEXT_AT(AuthorProfileMsg, vpn_name)}}};

inline constexpr SegmentMessage<5> kCriticalVpnMessage = {
    DOM_MSG_CRITICAL_VPN,
    {{DOM_TLV_CRITICAL_SEGMENT_NAME, TEXT_AT(CriticalProfileMsg, segment_name)},
     {DOM_TLV_CRITICAL_VALUE_16, HALF_AT(CriticalProfileMsg, value16)},
     {DOM_TLV_CRITICAL_SEGMENT_ID, WORD_AT(CriticalProfileMsg, segment_id)},
     {DOM_TLV_CRITICAL_PROFILE_NAME, TEXT_AT(CriticalProfileMsg, profile_name)},
     {DOM_TLV_CRITICAL_VPN_NAME, TEXT_AT(CriticalProfileMsg, vpn_name)}}};
inline constexpr SegmentMessage<4> kCriticalSegmentMessage = {
    DOM_MSG_CRITICAL_SEGMENT,
    {{DOM_TLV_CRITICAL_SEGMENT_NAME, TEXT_AT(CriticalProfileMsg, segment_name)},
     {DOM_TLV_CRITICAL_VALUE_16, HALF_AT(CriticalProfileMsg, value16)},
     {DOM_TLV_CRITICAL_SEGMENT_ID, WORD_AT(CriticalProfileMsg, segment_id)},
     {DOM_TLV_CRITICAL_PROFILE_NAME, TEXT_AT(CriticalProfileMsg, profile_name)}}};
inline constexpr SegmentMessage<2> kCriticalVpnNames = {
    DOM_MSG_CRITICAL_VPN,
    {{DOM_TLV_CRITICAL_PROFILE_NAME, TEXT_AT(CriticalProfileMsg, profile_name)},
     {DOM_TLV_CRITICAL_VPN_NAME, TEXT_AT(CriticalProfileMsg, vpn_name)}}};

#undef WORD_AT
#undef HALF_AT
#undef TEXT_AT

/// The message with its code and every field of `record`; null when memory is short.
template <size_t N, typename Record>
TLV_MSG* EncodeSegment(const SegmentMessage<N>& message, const Record& record) noexcept {
    return MessageBuilder(message.code).Build([&](Appender& append) {
        append.Fields(message.fields, N, &record);
    });
}

/// The answer to a read that found nothing: a result without a message code; null when memory is
/// short.
TLV_MSG* EncodeEnd(uint32_t result) noexcept;

/// Reads a text that must fit `capacity` bytes with its terminator. On failure `text` is empty or
/// unchanged.
[[nodiscard]] uint32_t ReadWholeText(const TlvItem& item, uint32_t capacity, char* text) noexcept;

/// Reads the first TLV of a type as a text; DOM_ERR_FAILED without one.
[[nodiscard]] uint32_t DecodeProfileName(TLV_MSG* msg, uint16_t type, uint32_t capacity,
                                         char* name) noexcept;

[[nodiscard]] uint32_t DecodeSegmentFields(TLV_MSG* msg, const AAA_FIELD* fields, size_t count,
                                           void* record) noexcept;

/// Clears `record` and stores every field of the list; a text that does not fit ends the walk. The
/// message's code is not looked at.
template <size_t N, typename Record>
[[nodiscard]] uint32_t DecodeSegment(const SegmentMessage<N>& message, TLV_MSG* msg,
                                     Record& record) noexcept {
    record = Record{};
    return DecodeSegmentFields(msg, message.fields, N, &record);
}

/// What is sent of a stored profile.
AuthorProfileMsg DefaultSegmentOf(const AuthorProfile& profile) noexcept;
CriticalProfileMsg DefaultSegmentOf(const CriticalProfile& profile) noexcept;
/// What is sent of one of its VPNs.
AuthorProfileMsg VpnSegmentOf(const AuthorVpn& vpn, const char* profile_name) noexcept;
CriticalProfileMsg VpnSegmentOf(const CriticalVpn& vpn, const char* profile_name) noexcept;

}  // namespace aaadom
