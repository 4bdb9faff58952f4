#include <aaadom/profile_codec.h>
#include <aaadom/results.h>

#include "base/text.h"
#include "codec/profile_message.h"
#include "codec/value_messages.h"

using namespace aaadom;

namespace {

constexpr uint32_t kNameSize = DOM_PROFILE_NAME_SIZE;

template <size_t N, typename Record>
TLV_MSG* EncodeRequest(const SegmentMessage<N>& message, const Record* request) noexcept {
    return request == nullptr ? nullptr : EncodeSegment(message, *request);
}

template <size_t N, typename Profile>
TLV_MSG* EncodeDefault(const SegmentMessage<N>& message, const Profile* profile) noexcept {
    return profile == nullptr ? nullptr : EncodeSegment(message, DefaultSegmentOf(*profile));
}

template <size_t N, typename Vpn>
TLV_MSG* EncodeVpn(const SegmentMessage<N>& message, const Vpn* vpn,
                   const char* profile_name) noexcept {
    if (vpn == nullptr || profile_name == nullptr) return nullptr;
    return EncodeSegment(message, VpnSegmentOf(*vpn, profile_name));
}

template <size_t N, typename Record>
uint32_t DecodeInto(const SegmentMessage<N>& message, TLV_MSG* msg, Record* record) noexcept {
    return record == nullptr ? DOM_ERR_FAILED : DecodeSegment(message, msg, *record);
}

template <typename Record, size_t N>
uint32_t DecodeNames(const SegmentMessage<N>& message, TLV_MSG* msg, char* profile_name,
                     char* vpn_name) noexcept {
    Record record;
    const uint32_t result = DecodeSegment(message, msg, record);
    CopyText(profile_name, kNameSize, record.profile_name);
    CopyText(vpn_name, kNameSize, record.vpn_name);
    return result;
}

}  // namespace

extern "C" {

TLV_MSG* DOM_author_tlv_EncodeAuthorProfile(const char* profile_name) noexcept {
    return Encode(kAuthorProfileMessage, {profile_name});
}

TLV_MSG* DOM_author_tlv_EncodeDefaultAuthor(const AuthorProfileMsg* request) noexcept {
    return EncodeRequest(kAuthorSegmentMessage, request);
}

TLV_MSG* DOM_author_tlv_EncodeDefaultAuthorByProfile(const AuthorProfile* profile) noexcept {
    return EncodeDefault(kAuthorSegmentMessage, profile);
}

TLV_MSG* DOM_author_tlv_EncodeAuthorVpn(const AuthorProfileMsg* request) noexcept {
    return EncodeRequest(kAuthorVpnMessage, request);
}

TLV_MSG* DOM_author_tlv_EncodeAuthorVpnByProfile(const AuthorVpn* vpn,
                                                 const char* profile_name) noexcept {
    return EncodeVpn(kAuthorVpnMessage, vpn, profile_name);
}

TLV_MSG* DOM_author_tlv_EncodeGetAuthorVpn(const char* profile_name,
                                           const char* vpn_name) noexcept {
    return Encode(kAuthorVpnQuestion, {profile_name, vpn_name});
}

TLV_MSG* DOM_author_tlv_EncodeEndMsg(uint32_t result) noexcept {
    return EncodeEnd(result);
}

uint32_t DOM_author_tlv_DecodeDefaultAuthor(TLV_MSG* msg, AuthorProfileMsg* record) noexcept {
    return DecodeInto(kAuthorSegmentMessage, msg, record);
}

uint32_t DOM_author_tlv_DecodeAuthorVpn(TLV_MSG* msg, AuthorProfileMsg* record) noexcept {
    return DecodeInto(kAuthorVpnMessage, msg, record);
}

uint32_t DOM_author_tlv_DecodeGetAuthorVpn(TLV_MSG* msg, char profile_name[32],
                                           char vpn_name[32]) noexcept {
    return DecodeNames<AuthorProfileMsg>(kAuthorVpnNames, msg, profile_name, vpn_name);
}

uint32_t DOM_author_tlv_DecodeProfileName(TLV_MSG* msg, uint32_t capacity,
                                          char* profile_name) noexcept {
    return DecodeProfileName(msg, DOM_TLV_AUTHOR_PROFILE_NAME, capacity, profile_name);
}

TLV_MSG* DOM_clitical_tlv_EncodeCriticalProfile(const char* profile_name) noexcept {
    return Encode(kCriticalProfileMessage, {profile_name});
}

TLV_MSG* DOM_critical_tlv_EncodeDefaultCritical(const CriticalProfileMsg* request) noexcept {
    return EncodeRequest(kCriticalSegmentMessage, request);
}

TLV_MSG* DOM_critical_tlv_EncodeDefaultCriticalByProfile(const CriticalProfile* profile) noexcept {
    return EncodeDefault(kCriticalSegmentMessage, profile);
}

TLV_MSG* DOM_critical_tlv_EncodeCriticalVpn(const CriticalProfileMsg* request) noexcept {
    return EncodeRequest(kCriticalVpnMessage, request);
}

TLV_MSG* DOM_critical_tlv_EncodeCriticalVpnByProfile(const CriticalVpn* vpn,
                                                     const char* profile_name) noexcept {
    return EncodeVpn(kCriticalVpnMessage, vpn, profile_name);
}

TLV_MSG* DOM_critical_tlv_EncodeGetCriticalVpn(const char* profile_name,
                                               const char* vpn_name) noexcept {
    return Encode(kCriticalVpnQuestion, {profile_name, vpn_name});
}

TLV_MSG* DOM_critical_tlv_EncodeEndMsg(uint32_t result) noexcept {
    return EncodeEnd(result);
}

uint32_t DOM_critical_tlv_DecodeDefaultCritical(TLV_MSG* msg, CriticalProfileMsg* record) noexcept {
    return DecodeInto(kCriticalSegmentMessage, msg, record);
}

uint32_t DOM_critical_tlv_DecodeCriticalVpn(TLV_MSG* msg, CriticalProfileMsg* record) noexcept {
    return DecodeInto(kCriticalVpnMessage, msg, record);
}

uint32_t DOM_critical_tlv_DecodeGetCriticalVpn(TLV_MSG* msg, char profile_name[32],
                                               char vpn_name[32]) noexcept {
    return DecodeNames<CriticalProfileMsg>(kCriticalVpnNames, msg, profile_name, vpn_name);
}

uint32_t DOM_critical_tlv_DecodeProfileName(TLV_MSG* msg, char profile_name[32]) noexcept {
    return DecodeProfileName(msg, DOM_TLV_CRITICAL_PROFILE_NAME, kNameSize, profile_name);
}

}  // extern "C"
