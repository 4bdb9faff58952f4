// Rows of management.h.
#include <aaadom/codes.h>
#include <aaadom/domain.h>
#include <aaadom/management.h>

#include "base/text.h"
#include "fault/sweep.h"

namespace fault {
namespace {

constexpr char kName[] = "isp-a.example";

/// Success is not told from a request that was not sent, but one that could not be encoded is.
Row ResultOnly(std::string name, Call call) {
    return Requests(std::move(name), std::move(call))
        .Fails({DOM_ERR_FAILED, DOM_OK})
        .On(Event::kSocket, {DOM_OK})
        .Partial("the result is untouched when no reply came");
}
/// The same: nothing tells what became of the request.
Row Blind(std::string name, Call call) {
    return ResultOnly(std::move(name), std::move(call));
}

/// What `send(&result)` returns; the result of the reply is the output.
template <typename Send>
Outcome Replied(Send&& send) {
    uint32_t result = 99;
    const uint32_t outcome = send(&result);
    return {outcome, BytesOf(result)};
}
template <typename Record, typename Ask>
Outcome Read(Ask&& read) {
    Record record{};
    const uint32_t outcome = read(&record);
    return {outcome, BytesOf(record)};
}

CriticalProfileMsg CriticalSegmentOf() {
    CriticalProfileMsg segment{};
    aaadom::CopyText(segment.profile_name, kCriticalProfile);
    aaadom::CopyText(segment.vpn_name, "vpn-a");
    segment.segment_id = 48;
    return segment;
}
AuthorProfileMsg AuthorSegmentOf() {
    AuthorProfileMsg segment{};
    aaadom::CopyText(segment.profile_name, kAuthorProfile);
    aaadom::CopyText(segment.vpn_name, "vpn-a");
    segment.segment_id = 57;
    return segment;
}

const Rows judged{
    Requests("MOR_SetDomainName",
             [](Scene&) {
                 return Replied(
                     [](uint32_t* result) { return MOR_SetDomainName(kName, DOM_OP_SET, result); });
             })
        .Fails({DOM_ERR_FAILED, MOR_ERR_ENCODE})
        .On(Event::kAppend, {MOR_ERR_ENCODE})
        .On(Event::kSocket, {DOM_ERR_FAILED}),
    Requests("MOR_SetUnknownDomain",
             [](Scene&) {
                 return Replied([](uint32_t* result) {
                     return MOR_SetUnknownDomain(kName, DOM_OP_SET, result);
                 });
             })
        .Fails({DOM_ERR_FAILED, MOR_ERR_ENCODE})
        .On(Event::kAppend, {MOR_ERR_ENCODE})
        .On(Event::kSocket, {DOM_ERR_FAILED}),
    Requests("MOR_AuthorSegMsgProc",
             [](Scene& scene) {
                 return Replied([&](uint32_t* result) {
                     return MOR_AuthorSegMsgProc(scene.message, DOM_OP_SET, result);
                 });
             })
        .After([](Scene& scene) { scene.message = scene.Golden("msg_158_author_segment"); }),
    Requests("MOR_SetVpnCriticalSeg",
             [](Scene&) {
                 return Replied([](uint32_t* result) {
                     const CriticalProfileMsg segment = CriticalSegmentOf();
                     return MOR_SetVpnCriticalSeg(&segment, DOM_OP_SET, result);
                 });
             }),
    Requests("MOR_SetVpnAuthorSeg",
             [](Scene&) {
                 return Replied([](uint32_t* result) {
                     const AuthorProfileMsg segment = AuthorSegmentOf();
                     return MOR_SetVpnAuthorSeg(&segment, DOM_OP_SET, result);
                 });
             }),
    Requests("MOR_SetDefaultCriticalSeg",
             [](Scene&) {
                 return Replied([](uint32_t* result) {
                     const CriticalProfileMsg segment = CriticalSegmentOf();
                     return MOR_SetDefaultCriticalSeg(&segment, DOM_OP_SET, result);
                 });
             }),
    Requests("MOR_SetDefaultAuthorSeg",
             [](Scene&) {
                 return Replied([](uint32_t* result) {
                     const AuthorProfileMsg segment = AuthorSegmentOf();
                     return MOR_SetDefaultAuthorSeg(&segment, DOM_OP_SET, result);
                 });
             }),
};

const Rows reported{
    Requests("MOR_SetSchemeTable",
             [](Scene&) {
                 return Replied([](uint32_t* result) {
                     return MOR_SetSchemeTable(1, kName, 4, 0, 1, 2, "radius-a", DOM_OP_SET,
                                               result);
                 });
             }),
    Requests("MOR_CreateDomainInfoTable",
             [](Scene&) {
                 return Replied([](uint32_t* result) {
                     return MOR_CreateDomainInfoTable(kName, 1, 4, result);
                 });
             }),
    Requests("MOR_DestroyDomainName",
             [](Scene&) {
                 return Replied(
                     [](uint32_t* result) { return MOR_DestroyDomainName(kName, result); });
             }),
    Requests("MOR_SetDomainInfoTable",
             [](Scene&) {
                 return Replied([](uint32_t* result) {
                     return MOR_SetDomainInfoTable(1, kName, 0, 1, result);
                 });
             }),
    Requests("MOR_SetAaaNasIdProfile",
             [](Scene&) {
                 return Replied([](uint32_t* result) {
                     return MOR_SetAaaNasIdProfile(kNasIdProfile, DOM_OP_SET, result, nullptr);
                 });
             }),
    Requests("MOR_SetNasIdBindVlanId",
             [](Scene&) { return MOR_SetNasIdBindVlanId(kNasIdProfile, "nas-1", 7, DOM_OP_SET); }),
    Requests("MOR_SetAaaCriticalProfile",
             [](Scene&) {
                 return Replied([](uint32_t* result) {
                     return MOR_SetAaaCriticalProfile(kCriticalProfile, DOM_OP_SET, result,
                                                      nullptr);
                 });
             }),
    Requests("MOR_SetAaaAuthorProfile",
             [](Scene&) {
                 return Replied([](uint32_t* result) {
                     return MOR_SetAaaAuthorProfile(kAuthorProfile, DOM_OP_SET, result, nullptr);
                 });
             }),
    // Without a reply the result is 1, which cannot be told from a refusal.
    Requests("MOR_SetAuthRdFailPermitDomain",
             [](Scene&) {
                 return MOR_SetAuthRdFailPermitDomain(kName, "permit.example", 0, DOM_OP_SET);
             })
        .Fails({DOM_ERR_FAILED, 1})
        .On(Event::kSocket, {1}),
    Requests("MOR_SetAuthenEscapeRecover",
             [](Scene&) {
                 return MOR_SetAuthenEscapeRecover(kName, 1, "escape.example", 2, 0, DOM_OP_SET);
             }),
};

const Rows result_only{
    ResultOnly("MOR_SetDefaultDomain",
               [](Scene&) {
                   return Replied([](uint32_t* result) {
                       return MOR_SetDefaultDomain(kName, 0, DOM_OP_SET, result);
                   });
               }),
    ResultOnly("MOR_SetSessionLimit",
               [](Scene&) {
                   return Replied([](uint32_t* result) {
                       return MOR_SetSessionLimit(SESSION_CLASS_19, 5, result);
                   });
               }),
    ResultOnly("MOR_SetDeviceID",
               [](Scene&) {
                   return Replied([](uint32_t* result) { return MOR_SetDeviceID(5, result); });
               }),
    ResultOnly("MOR_SetAuthFailDomain",
               [](Scene&) {
                   return Replied([](uint32_t* result) {
                       return MOR_SetAuthFailDomain(kName, "fail.example", 0, 1, result);
                   });
               }),
};

const Rows blind{
    Blind("MOR_SetState", [](Scene&) { return MOR_SetState(kName, 1); }),
    Blind("MOR_SetSessionTime", [](Scene&) { return MOR_SetSessionTime(kName, 1); }),
    Blind("MOR_SetMethodList",
          [](Scene&) {
              MethodList list{};
              list.service = DOM_DEFAULT_SERVICE;
              list.methods[0].method_kind = METHOD_DEFAULT_4;
              return MOR_SetMethodList(kName, &list, nullptr, DOM_OP_SET);
          }),
    Blind("MOR_SetAuthorAttr",
          [](Scene&) {
              AuthorAttr attributes{};
              aaadom::CopyText(attributes.kind7_text, "seven");
              return MOR_SetAuthorAttr(7, kName, &attributes, DOM_OP_SET);
          }),
    Blind("MOR_SetRedirectMoveTemporarily",
          [](Scene&) { return MOR_SetRedirectMoveTemporarily(kName, DOM_OP_SET); }),
    Blind("MOR_SetUserAddrType", [](Scene&) { return MOR_SetUserAddrType(kName, 3); }),
    Blind("MOR_SetAcctDualStackMode", [](Scene&) { return MOR_SetAcctDualStackMode(kName, 2); }),
    Blind("MOR_SetAAADebugFlag", [](Scene&) { return MOR_SetAAADebugFlag(1, DOM_OP_SET); }),
};

const Rows reads{
    Asks("MOR_GetDefaultDomain", "msg_001_default_domain",
         [](Scene&) -> Outcome {
             char name[DOM_NAME_SIZE] = "";
             uint32_t value = 0;
             const uint32_t outcome = MOR_GetDefaultDomain(sizeof name, name, &value);
             return {outcome, name};
         }),
    Asks("MOR_GetGlobalDomain", "msg_029_global_domain",
         [](Scene&) -> Outcome {
             char known[DOM_NAME_SIZE] = "", unknown[DOM_NAME_SIZE] = "";
             uint32_t device_id = 0, value = 0;
             const uint32_t outcome = MOR_GetGlobalDomain(sizeof known, known, sizeof unknown,
                                                          unknown, &device_id, &value);
             return {outcome, std::string(known) + unknown + BytesOf(device_id)};
         }),
    Asks("MOR_GetDomain", "msg_000_domain",
         [](Scene&) { return Made(MOR_GetDomain(kName, DOM_OP_GET, nullptr)); })
        .Good(kSomething)
        .Fails({kNothing}),
    Asks("MOR_GetNextDomain", "msg_000_domain",
         [](Scene&) { return Made(MOR_GetNextDomain(kName, DOM_OP_GET_NEXT, nullptr)); })
        .Good(kSomething)
        .Fails({kNothing}),
    Asks("MOR_GetDomainCount", "msg_002_domain_count",
         [](Scene&) { return Read<uint32_t>(MOR_GetDomainCount); }),
    Asks("MOR_GetXmlSessionLimit", "msg_010_all_session_limit",
         [](Scene&) { return Read<SessionLimits>(MOR_GetXmlSessionLimit); }),
    Asks("MOR_GetAAADebugFlag", "msg_145_debug_flag",
         [](Scene&) { return Read<uint32_t>(MOR_GetAAADebugFlag); }),
    Asks("MOR_GetDomainInfoTable/the row", "msg_014_domain_row",
         [](Scene&) {
             return Read<DomainMibRow>([](DomainMibRow* row) {
                 return MOR_GetDomainInfoTable(kName, 13, DOM_OP_GET, row, nullptr);
             });
         }),
    Asks("MOR_GetDomainInfoTable/the next row", "msg_014_domain_row",
         [](Scene&) {
             return Read<DomainMibRow>([](DomainMibRow* row) {
                 return MOR_GetDomainInfoTable(kName, 13, DOM_OP_GET_NEXT, row, nullptr);
             });
         }),
    Asks("MOR_GetMibSchemeTable", "msg_015_scheme_row_reply",
         [](Scene&) {
             return Read<MibSchemeRow>([](MibSchemeRow* row) {
                 return MOR_GetMibSchemeTable(kName, 13, 1, DOM_OP_GET, row, nullptr);
             });
         }),
    Asks("MOR_GetAAAAuthorProfileNum", "msg_160_author_profile_num",
         [](Scene&) { return MOR_GetAAAAuthorProfileNum(DOM_OP_GET, nullptr); })
        .Good(12),
    Asks("MOR_GetAAAAuthorProfile", "msg_159_author_profile",
         [](Scene&) {
             return Read<AAAAuthorProfile>([](AAAAuthorProfile* profile) {
                 return MOR_GetAAAAuthorProfile("profile-1", DOM_OP_GET, profile, nullptr);
             });
         }),
    Asks("MOR_GetCriticalPrfInfo", "msg_149_critical_segment",
         [](Scene&) {
             return Read<CriticalProfileMsg>([](CriticalProfileMsg* profile) {
                 return MOR_GetCriticalPrfInfo(kCriticalProfile, DOM_OP_GET, profile, nullptr);
             });
         }),
    Asks("MOR_GetAuthorPrfInfo", "msg_158_author_segment",
         [](Scene&) {
             return Read<AuthorProfileMsg>([](AuthorProfileMsg* profile) {
                 return MOR_GetAuthorPrfInfo(kAuthorProfile, DOM_OP_GET, profile, nullptr);
             });
         }),
    Asks("MOR_GetCriticalVPNInfo", "msg_148_critical_vpn",
         [](Scene&) {
             return Read<CriticalProfileMsg>([](CriticalProfileMsg* vpn) {
                 return MOR_GetCriticalVPNInfo(kCriticalProfile, "vpn-a", DOM_OP_GET, vpn, nullptr);
             });
         }),
    Asks("MOR_GetAuthorVPNInfo", "msg_157_author_vpn",
         [](Scene&) {
             return Read<AuthorProfileMsg>([](AuthorProfileMsg* vpn) {
                 return MOR_GetAuthorVPNInfo(kAuthorProfile, "vpn-b", DOM_OP_GET, vpn, nullptr);
             });
         }),
};

}  // namespace
}  // namespace fault
