// Rows of profile_codec.h.
#include <aaadom/profile.h>
#include <aaadom/profile_codec.h>

#include "base/text.h"
#include "fault/outputs.h"
#include "fault/sweep.h"

namespace fault {
namespace {

constexpr char kVpn[] = "vpn-0";
constexpr uint32_t kNotFound = 21;

AuthorProfileMsg AuthorRequest() {
    AuthorProfileMsg request{};
    request.segment_id = 57;
    aaadom::CopyText(request.profile_name, kAuthorProfile);
    aaadom::CopyText(request.segment_name, "offices");
    aaadom::CopyText(request.vpn_name, kVpn);
    return request;
}

const Rows authorization{
    Encodes("DOM_author_tlv_EncodeAuthorProfile",
            [](Scene&) { return DOM_author_tlv_EncodeAuthorProfile(kAuthorProfile); }),
    Encodes("DOM_author_tlv_EncodeDefaultAuthor",
            [](Scene&) {
                const AuthorProfileMsg request = AuthorRequest();
                return DOM_author_tlv_EncodeDefaultAuthor(&request);
            }),
    Encodes("DOM_author_tlv_EncodeDefaultAuthorByProfile",
            [](Scene&) {
                return DOM_author_tlv_EncodeDefaultAuthorByProfile(
                    DOM_author_FindProfile(kAuthorProfile));
            }),
    Encodes("DOM_author_tlv_EncodeAuthorVpn",
            [](Scene&) {
                const AuthorProfileMsg request = AuthorRequest();
                return DOM_author_tlv_EncodeAuthorVpn(&request);
            }),
    Encodes("DOM_author_tlv_EncodeAuthorVpnByProfile",
            [](Scene&) {
                const AuthorVpnLink* vpn = DOM_author_FindProfile(kAuthorProfile)->vpn_list.next;
                return DOM_author_tlv_EncodeAuthorVpnByProfile(
                    reinterpret_cast<const AuthorVpn*>(vpn), kAuthorProfile);
            }),
    Encodes("DOM_author_tlv_EncodeGetAuthorVpn",
            [](Scene&) { return DOM_author_tlv_EncodeGetAuthorVpn(kAuthorProfile, kVpn); }),
    Encodes("DOM_author_tlv_EncodeEndMsg",
            [](Scene&) { return DOM_author_tlv_EncodeEndMsg(kNotFound); }),
    Decodes("DOM_author_tlv_DecodeDefaultAuthor", "msg_158_author_segment",
            Into(DOM_author_tlv_DecodeDefaultAuthor)),
    Decodes("DOM_author_tlv_DecodeAuthorVpn", "msg_157_author_vpn",
            Into(DOM_author_tlv_DecodeAuthorVpn)),
    Decodes("DOM_author_tlv_DecodeGetAuthorVpn", "msg_157_author_vpn_request",
            Into(DOM_author_tlv_DecodeGetAuthorVpn)),
    Decodes("DOM_author_tlv_DecodeProfileName", "msg_156_author_profile",
            Into(DOM_author_tlv_DecodeProfileName)),
};

CriticalProfileMsg CriticalRequest() {
    CriticalProfileMsg request{};
    request.segment_id = 48;
    request.value16 = 4;
    aaadom::CopyText(request.profile_name, kCriticalProfile);
    aaadom::CopyText(request.segment_name, "restricted");
    aaadom::CopyText(request.vpn_name, kVpn);
    return request;
}

const Rows critical{
    Encodes("DOM_clitical_tlv_EncodeCriticalProfile",
            [](Scene&) { return DOM_clitical_tlv_EncodeCriticalProfile(kCriticalProfile); }),
    Encodes("DOM_critical_tlv_EncodeDefaultCritical",
            [](Scene&) {
                const CriticalProfileMsg request = CriticalRequest();
                return DOM_critical_tlv_EncodeDefaultCritical(&request);
            }),
    Encodes("DOM_critical_tlv_EncodeDefaultCriticalByProfile",
            [](Scene&) {
                return DOM_critical_tlv_EncodeDefaultCriticalByProfile(
                    DOM_critical_FindProfile(kCriticalProfile));
            }),
    Encodes("DOM_critical_tlv_EncodeCriticalVpn",
            [](Scene&) {
                const CriticalProfileMsg request = CriticalRequest();
                return DOM_critical_tlv_EncodeCriticalVpn(&request);
            }),
    Encodes("DOM_critical_tlv_EncodeCriticalVpnByProfile",
            [](Scene&) {
                return DOM_critical_tlv_EncodeCriticalVpnByProfile(
                    DOM_critical_FindProfile(kCriticalProfile)->first_vpn, kCriticalProfile);
            }),
    Encodes("DOM_critical_tlv_EncodeGetCriticalVpn",
            [](Scene&) { return DOM_critical_tlv_EncodeGetCriticalVpn(kCriticalProfile, kVpn); }),
    Encodes("DOM_critical_tlv_EncodeEndMsg",
            [](Scene&) { return DOM_critical_tlv_EncodeEndMsg(kNotFound); }),
    Decodes("DOM_critical_tlv_DecodeDefaultCritical", "msg_149_critical_segment",
            Into(DOM_critical_tlv_DecodeDefaultCritical)),
    Decodes("DOM_critical_tlv_DecodeCriticalVpn", "msg_148_critical_vpn",
            Into(DOM_critical_tlv_DecodeCriticalVpn)),
    Decodes("DOM_critical_tlv_DecodeGetCriticalVpn", "msg_148_critical_vpn_request",
            Into(DOM_critical_tlv_DecodeGetCriticalVpn)),
    Decodes("DOM_critical_tlv_DecodeProfileName", "msg_147_critical_profile",
            Into(DOM_critical_tlv_DecodeProfileName)),
};

}  // namespace
}  // namespace fault
