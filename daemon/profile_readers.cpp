#include "profile_readers.h"

#include <aaadom/aaad_results.h>
#include <aaadom/codes.h>
#include <aaadom/domain_codec.h>
#include <aaadom/profile.h>
#include <platform/aaa_tlv.h>

#include <cstring>

#include "short_text.h"

namespace aaad {
namespace {

/// What one kind of profiles differs in from the other.
struct Kind {
    uint16_t profile_type;
    uint16_t vpn_type;
    uint32_t missing;
    TLV_MSG* (*get)(const char* profile, uint16_t* reply_kind);
    TLV_MSG* (*get_vpn)(const char* profile, const char* vpn, uint16_t* reply_kind);
    /// Both give nothing at the end and when a single allocation fails. So they are asked once
    /// more: who takes a want of memory for the end loses profiles.
    TLV_MSG* (*get_next)(const char* profile);
    TLV_MSG* (*get_next_vpn)(const char* profile, char* vpn);
};

constexpr Kind kCritical{DOM_TLV_CRITICAL_PROFILE_NAME,     DOM_TLV_CRITICAL_VPN_NAME,
                         DOM_CRITICAL_PROFILE_NOT_EXIST,    DOM_critical_ProcProfileGet,
                         DOM_critical_ProcProfileVpnGet,    DOM_critical_ProcProfileGetBulk,
                         DOM_critical_ProcProfileVpnGetBulk};

constexpr Kind kAuthor{DOM_TLV_AUTHOR_PROFILE_NAME,     DOM_TLV_AUTHOR_VPN_NAME,
                       DOM_AUTHOR_PROFILE_NOT_EXIST,    DOM_author_ProcProfileGet,
                       DOM_author_ProcProfileVpnGet,    DOM_author_ProcProfileGetBulk,
                       DOM_author_ProcProfileVpnGetBulk};

/// A get answers with data or, as a reply of another kind, with the reason.
Message GetData(TLV_MSG* encoded, uint16_t reply_kind, uint32_t& refusal) {
    Message reply(encoded);
    if (reply && reply_kind == DOM_REPLY_KIND_DATA) return reply;
    refusal = DOM_ERR_FAILED;
    if (reply) {
        TLV_ITER* result = TLV_GetIteratorByType(reply.get(), DOM_TLV_RESULT);
        if (result != nullptr) refusal = AAA_GetUINTTlvValue(reply.get(), result);
    }
    return nullptr;
}

Message ReadProfile(const Kind& kind, const Question& question, uint32_t& refusal) {
    ShortText profile;
    if (ReadShortText(question.body, kind.profile_type, profile) != ShortTextState::kWhole) {
        refusal = AAAD_ERR_MALFORMED;
        return nullptr;
    }
    if (question.operation == DOM_OP_GET) {
        uint16_t reply_kind = DOM_REPLY_KIND_DATA;
        TLV_MSG* reply = kind.get(profile, &reply_kind);
        return GetData(reply, reply_kind, refusal);
    }
    refusal = kind.missing;
    Message reply(kind.get_next(profile));
    if (!reply) reply.reset(kind.get_next(profile));
    return reply;
}

Message ReadVpn(const Kind& kind, const Question& question, uint32_t& refusal) {
    ShortText profile;
    ShortText vpn;
    if (ReadShortText(question.body, kind.profile_type, profile) != ShortTextState::kWhole ||
        ReadShortText(question.body, kind.vpn_type, vpn) != ShortTextState::kWhole) {
        refusal = AAAD_ERR_MALFORMED;
        return nullptr;
    }
    if (question.operation == DOM_OP_GET) {
        uint16_t reply_kind = DOM_REPLY_KIND_DATA;
        TLV_MSG* reply = kind.get_vpn(profile, vpn, &reply_kind);
        return GetData(reply, reply_kind, refusal);
    }
    refusal = kind.missing;
    ShortText start;
    memcpy(start, vpn, sizeof start);
    Message reply(kind.get_next_vpn(profile, vpn));
    if (!reply) reply.reset(kind.get_next_vpn(profile, start));
    return reply;
}

void FillReport(const AuthorProfile& profile, AAAAuthorProfile& report) {
    static_assert(DOM_PROFILE_VPN_MAX <= DOM_AUTHOR_ENTRY_MAX);
    memcpy(report.profile_name, profile.name, sizeof report.profile_name);
    report.value_434 = profile.vpn_count;
    memcpy(report.segment_name, profile.default_segment.segment_name, sizeof report.segment_name);
    report.segment_id = profile.default_segment.segment_id;
    for (const AuthorVpnLink* link = profile.vpn_list.next;
         link != &profile.vpn_list && report.entry_count < DOM_AUTHOR_ENTRY_MAX;
         link = link->next) {
        const auto* vpn = reinterpret_cast<const AuthorVpn*>(link);  // its first member
        AAAAuthorEntry& entry = report.entries[report.entry_count++];
        entry.number = vpn->segment.segment_id;
        memcpy(entry.text1, vpn->segment.segment_name, sizeof entry.text1);
        memcpy(entry.text2, vpn->vpn_name, sizeof entry.text2);
    }
}

}  // namespace

Message ReadCriticalProfile(const Question& question, uint32_t& refusal) {
    return ReadProfile(kCritical, question, refusal);
}

Message ReadCriticalVpn(const Question& question, uint32_t& refusal) {
    return ReadVpn(kCritical, question, refusal);
}

Message ReadAuthorProfile(const Question& question, uint32_t& refusal) {
    return ReadProfile(kAuthor, question, refusal);
}

Message ReadAuthorVpn(const Question& question, uint32_t& refusal) {
    return ReadVpn(kAuthor, question, refusal);
}

Message ReadAuthorProfileReport(const Question& question, uint32_t& refusal) {
    ShortText name;
    if (ReadShortText(question.body, DOM_TLV_AUTHOR_PROFILE_NAME, name) != ShortTextState::kWhole) {
        refusal = AAAD_ERR_MALFORMED;
        return nullptr;
    }
    const AuthorProfile* profile = DOM_author_FindProfile(name);
    if (profile == nullptr) {
        refusal = DOM_AUTHOR_PROFILE_NOT_EXIST;
        return nullptr;
    }
    AAAAuthorProfile report{};
    FillReport(*profile, report);
    Message reply(DOM_EncodeAAAAuthorProfile(&report));
    if (!reply) refusal = DOM_ERR_FAILED;
    return reply;
}

Message ReadAuthorProfileCount(const Question&, uint32_t& refusal) {
    Message reply(DOM_EncodeAAAAuthorProfileNum(DOM_author_GetProfileNum()));
    if (!reply) refusal = DOM_ERR_FAILED;
    return reply;
}

}  // namespace aaad
