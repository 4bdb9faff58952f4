// Rows of domain_codec.h.
#include <aaadom/domain.h>
#include <aaadom/domain_codec.h>
#include <aaadom/method_list.h>

#include "base/text.h"
#include "fault/outputs.h"
#include "fault/sweep.h"

namespace fault {
namespace {

constexpr uint32_t kNameLength = sizeof kDomain - 1;
constexpr uint32_t kContradiction = ~0u;  ///< a message without its status, or the reverse

/// Status of a step of a walk, with the message.
template <typename Encode>
Outcome Step(Encode&& encode) {
    uint32_t status = kContradiction;
    const Outcome made = Made(encode(&status));
    const bool says_message = status == DOM_WALK_OK;
    return {says_message == (made.result == kSomething) ? status : kContradiction, made.outputs};
}
Row Walks(std::string name, Call call) {
    return Reads(std::move(name), std::move(call)).Good(DOM_WALK_OK).Fails({DOM_WALK_NO_MESSAGE});
}

const Rows domains{
    Encodes("DOM_EncodeDomain", [](Scene&) { return DOM_EncodeDomain(kDomain); }),
    Decodes("DOM_DecodeDomain", "msg_000_domain",
            [](Scene&, TLV_MSG* msg) { return Made(DOM_DecodeDomain(msg)); })
        .Good(kSomething)
        .Fails({kNothing}),
    Reads("DOM_EncodeNextDomain",
          [](Scene&) -> Outcome {
              char next[DOM_NAME_SIZE] = "untouched";
              const Outcome made = Made(DOM_EncodeNextDomain(kDomain, next));
              const bool touched = std::string(next) != "untouched";
              return {touched == (made.result == kSomething) ? made.result : kContradiction,
                      made.outputs + next};
          })
        .Good(kSomething)
        .Fails({kNothing}),
    Walks("DOM_EncodeMIBNextDomain",
          [](Scene&) {
              return Step([](uint32_t* status) {
                  return DOM_EncodeMIBNextDomain(kDomain, kNameLength, status);
              });
          }),
    Walks("DOM_EncodeNetConfNextDomain",
          [](Scene&) {
              return Step(
                  [](uint32_t* status) { return DOM_EncodeNetConfNextDomain(kDomain, status); });
          }),
    Encodes("DOM_EncodeDomainInfo", [](Scene&) { return DOM_EncodeDomainInfo(kDomain, 1, 4); }),
    Encodes("DOM_EncodeDomainInfoFlag",
            [](Scene&) { return DOM_EncodeDomainInfoFlag(1, kDomain, 1, 4); }),
    Decodes("DOM_DecodeDomainInfoTable", "msg_014_domain_row_flags",
            Into(DOM_DecodeDomainInfoTable)),
    Encodes("DOM_EncodeDomainCount", [](Scene&) { return DOM_EncodeDomainCount(3); }),
    Decodes("DOM_DecodeDomainCount", "msg_002_domain_count", Into(DOM_DecodeDomainCount)),
};

const Rows schemes{
    Encodes("DOM_EncodeDomainSchemeFlag",
            [](Scene&) {
                return DOM_EncodeDomainSchemeFlag(3, kDomain, 4, AAA_TYPE_4, 1, METHOD_SCHEME_2,
                                                  "radius-a");
            }),
    Walks("DOM_EncodeMibSchemeTable", [](Scene&) { return Step(DOM_EncodeMibSchemeTable); }),
    Walks("DOM_EncodeMibNextSchemeTable",
          [](Scene&) {
              return Step([](uint32_t* status) {
                  return DOM_EncodeMibNextSchemeTable(kDomain, kNameLength, 1, status);
              });
          }),
    Decodes("DOM_DecodeMibSchemeTable", "msg_015_scheme_row", Into(DOM_DecodeMibSchemeTable)),
    Encodes("DOM_EncodeSchemeIndex",
            [](Scene&) { return DOM_EncodeSchemeIndex(kDomain, kNameLength, 1); }),
    Decodes("DOM_DecodeSchemeIndex", "msg_013_scheme_index", Into(DOM_DecodeSchemeIndex)),
    Encodes("DOM_EncodeMethList",
            [](Scene&) {
                MethodList list{};
                MethodEntry extra{};
                Quietly([&] {
                    return DOM_GetMethodList(kDomain, AAA_TYPE_0, DOM_DEFAULT_SERVICE, &list,
                                             &extra);
                });
                return DOM_EncodeMethList(kDomain, &list, &extra);
            }),
    Decodes("DOM_DecodeMethList", "msg_004_method_list",
            [](Scene&, TLV_MSG* msg) -> Outcome {
                char name[DOM_NAME_SIZE] = "";
                MethodList list{};
                MethodEntry extra{};
                const uint32_t result = DOM_DecodeMethList(msg, sizeof name, name, &list, &extra);
                const std::string outputs = BytesOf(list) + BytesOf(extra);
                const bool touched = outputs != BytesOf(MethodList{}) + BytesOf(MethodEntry{});
                return {touched == (result == DOM_OK) ? result : kContradiction, name + outputs};
            }),
};

const Rows names{
    Encodes("DOM_EncodeDomainName", [](Scene&) { return DOM_EncodeDomainName(kDomain); }),
    Decodes("DOM_DecodeDomainName", "msg_003_domain_name", Into(DOM_DecodeDomainName)),
    Encodes("DOM_EncodeDomainNameInfo", [](Scene&) { return DOM_EncodeDomainNameInfo(kDomain); }),
    Decodes("DOM_DecodeDomainNameInfo", "msg_165_domain_name_info", Into(DOM_DecodeDomainNameInfo)),
    Encodes("DOM_EncodeDomainNameAndLen",
            [](Scene&) { return DOM_EncodeDomainNameAndLen(kDomain, kNameLength); }),
    Decodes("DOM_DecodeDomainNameAndLen", "msg_012_domain_name_len",
            Into(DOM_DecodeDomainNameAndLen)),
    Encodes("DOM_EncodeDefaultDomain", [](Scene&) { return DOM_EncodeDefaultDomain(kDomain, 0); }),
    Decodes("DOM_DecodeDefaultDomain", "msg_001_default_domain", Into(DOM_DecodeDefaultDomain)),
    Encodes("DOM_EncodeUnknownDomain", [](Scene&) { return DOM_EncodeUnknownDomain(kDomain); }),
    Decodes("DOM_DecodeUnknownDomain", "msg_018_unknown_domain", Into(DOM_DecodeUnknownDomain)),
    Encodes("DOM_EncodeGlobalDomain",
            [](Scene&) { return DOM_EncodeGlobalDomain(kDomain, kOtherDomain, 20, 0); }),
    Decodes("DOM_DecodeGlobalDomain", "msg_029_global_domain", Into(DOM_DecodeGlobalDomain)),
    Encodes("DOM_EncodeRedirectMoveTemporarily",
            [](Scene&) { return DOM_EncodeRedirectMoveTemporarily(kDomain); }),
    Decodes("DOM_DecodeRedirectMoveTemporarily", "msg_130_redirect",
            Into(DOM_DecodeRedirectMoveTemporarily)),
};

const Rows settings{
    Encodes("DOM_EncodeState", [](Scene&) { return DOM_EncodeState(kDomain, 1); }),
    Decodes("DOM_DecodeState", "msg_007_state", Into(DOM_DecodeState)),
    Encodes("DOM_EncodeSessionTime", [](Scene&) { return DOM_EncodeSessionTime(kDomain, 5); }),
    Decodes("DOM_DecodeSessionTime", "msg_019_session_time", Into(DOM_DecodeSessionTime)),
    Encodes("DOM_EncodeSessionLimit",
            [](Scene&) { return DOM_EncodeSessionLimit(SESSION_CLASS_21, 9); }),
    Decodes("DOM_DecodeSessionLimit", "msg_008_session_limit", Into(DOM_DecodeSessionLimit)),
    Encodes("DOM_EncodeSessionCount",
            [](Scene&) { return DOM_EncodeSessionCount(SESSION_CLASS_21, 9); }),
    Decodes("DOM_DecodeSessionCount", "msg_009_session_count", Into(DOM_DecodeSessionCount)),
    Encodes("DOM_EncodeAllSessionLimit",
            [](Scene&) {
                const SessionLimits limits{1, 2, 3, 4, 5};
                return DOM_EncodeAllSessionLimit(&limits);
            }),
    Decodes("DOM_DecodeAllSessionLimit", "msg_010_all_session_limit",
            Into(DOM_DecodeAllSessionLimit)),
    Encodes("DOM_EncodeAuthorAttr",
            [](Scene&) {
                AuthorAttr attributes{};
                aaadom::CopyText(attributes.ita_policy_name, kPolicy);
                return DOM_EncodeAuthorAttr(12, kDomain, &attributes);
            }),
    Decodes("DOM_DecodeAuthorAttr", "msg_011_author_attr",
            [](Scene&, TLV_MSG* msg) -> Outcome {
                uint32_t kind = 0;
                char name[DOM_NAME_SIZE] = "";
                AuthorAttr attributes{};
                const uint32_t result =
                    DOM_DecodeAuthorAttr(msg, &kind, sizeof name, name, &attributes);
                return {result, name + BytesOf(kind) + BytesOf(attributes)};
            }),
};

/// An authorization profile with one entry.
AAAAuthorProfile Report() {
    AAAAuthorProfile profile{};
    aaadom::CopyText(profile.profile_name, kAuthorProfile);
    aaadom::CopyText(profile.segment_name, "offices");
    profile.segment_id = 57;
    profile.entry_count = 1;
    profile.entries[0] = {57, "offices", "vpn-0"};
    return profile;
}

const Rows reports{
    Encodes("DOM_EncodeAAAAuthorProfileNum",
            [](Scene&) { return DOM_EncodeAAAAuthorProfileNum(1); }),
    Encodes("DOM_EncodeAAAAuthorProfileNumRequest",
            [](Scene&) { return DOM_EncodeAAAAuthorProfileNumRequest(); }),
    Decodes("DOM_DecodeAAAAuthorProfileNum", "msg_160_author_profile_num",
            [](Scene&, TLV_MSG* msg) { return DOM_DecodeAAAAuthorProfileNum(msg) != 0; })
        .Good(1)
        .Fails({0}),
    Encodes("DOM_EncodeAAAAuthorProfileName",
            [](Scene&) { return DOM_EncodeAAAAuthorProfileName(kAuthorProfile); }),
    Decodes("DOM_DecodeAAAAuthorProfileName", "msg_159_author_profile_name",
            Into(DOM_DecodeAAAAuthorProfileName)),
    Encodes("DOM_EncodeAAAAuthorProfile",
            [](Scene&) {
                const AAAAuthorProfile profile = Report();
                return DOM_EncodeAAAAuthorProfile(&profile);
            }),
    Decodes("DOM_DecodeAAAAuthorProfile", "msg_159_author_profile",
            Into(DOM_DecodeAAAAuthorProfile)),
};

}  // namespace
}  // namespace fault
