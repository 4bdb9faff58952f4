// Profiles: changes of a profile answer with its stored name, changes of a segment are judged.
#include <aaadom/domain_codec.h>
#include <aaadom/management.h>
#include <aaadom/profile.h>
#include <aaadom/profile_codec.h>

#include <algorithm>

#include "mgmt/request.h"

using namespace aaadom;

namespace {

/// What a front end is told of a profile that was not taken. Not DOM_ERR_FAILED, which says that
/// the daemon gave no answer.
constexpr uint32_t kNotTaken = 1;

/// Results that mean the profile was taken. The families differ: deleting a critical profile that
/// is not there counts as taken, deleting an authorization profile that is not there does not.
/// Front ends roll back what they configured when the profile was not taken.
constexpr uint32_t kCriticalTaken[] = {DOM_CRITICAL_OK, DOM_CRITICAL_PROFILE_NOT_EXIST,
                                       DOM_CRITICAL_PROFILE_EXISTS};
constexpr uint32_t kAuthorTaken[] = {DOM_AUTHOR_OK, DOM_AUTHOR_PROFILE_EXISTS};

template <size_t N>
uint32_t Change(TlvPtr request, uint32_t op, uint16_t name_tlv, const uint32_t (&taken)[N],
                uint32_t* result, char* name_out) noexcept {
    const ProfileAnswer answer = SetProfile(std::move(request), op, name_tlv, name_out);
    if (!answer.has_reply) return DOM_ERR_FAILED;
    if (result != nullptr) *result = answer.result;
    return std::find(taken, taken + N, answer.result) != taken + N ? DOM_OK : kNotTaken;
}

/// A refusal fails, unlike those of other reads: the front ends that list profiles end their walk
/// by the return value.
template <typename Decode>
uint32_t GetProfile(TlvPtr request, uint32_t op, uint32_t* result, Decode&& decode) noexcept {
    const Answer answer = Ask(std::move(request), op);
    if (!answer.reply) return DOM_ERR_FAILED;
    if (!answer.Refused()) return decode(answer.reply.get());
    (void)DOM_lipc_ReplyMsgProc(answer.reply.get(), result);  // always 0
    return DOM_ERR_FAILED;
}

}  // namespace

extern "C" {

uint32_t MOR_SetAaaCriticalProfile(const char* profile_name, uint32_t op, uint32_t* result,
                                   char* name_out) noexcept {
    return Change(TlvPtr(DOM_clitical_tlv_EncodeCriticalProfile(profile_name)), op,
                  DOM_TLV_CRITICAL_PROFILE_NAME, kCriticalTaken, result, name_out);
}

uint32_t MOR_SetAaaAuthorProfile(const char* profile_name, uint32_t op, uint32_t* result,
                                 char* name_out) noexcept {
    return Change(TlvPtr(DOM_author_tlv_EncodeAuthorProfile(profile_name)), op,
                  DOM_TLV_AUTHOR_PROFILE_NAME, kAuthorTaken, result, name_out);
}

uint32_t MOR_AuthorSegMsgProc(TLV_MSG* request, uint32_t op, uint32_t* result) noexcept {
    return Judge(request, op, result);
}

uint32_t MOR_SetVpnCriticalSeg(const CriticalProfileMsg* segment, uint32_t op,
                               uint32_t* result) noexcept {
    return SetJudged(TlvPtr(DOM_critical_tlv_EncodeCriticalVpn(segment)), op, result);
}

uint32_t MOR_SetVpnAuthorSeg(const AuthorProfileMsg* segment, uint32_t op,
                             uint32_t* result) noexcept {
    const TlvPtr request(DOM_author_tlv_EncodeAuthorVpn(segment));
    return MOR_AuthorSegMsgProc(request.get(), op, result);
}

uint32_t MOR_SetDefaultCriticalSeg(const CriticalProfileMsg* segment, uint32_t op,
                                   uint32_t* result) noexcept {
    return SetJudged(TlvPtr(DOM_critical_tlv_EncodeDefaultCritical(segment)), op, result);
}

uint32_t MOR_SetDefaultAuthorSeg(const AuthorProfileMsg* segment, uint32_t op,
                                 uint32_t* result) noexcept {
    const TlvPtr request(DOM_author_tlv_EncodeDefaultAuthor(segment));
    return MOR_AuthorSegMsgProc(request.get(), op, result);
}

uint32_t MOR_GetAAAAuthorProfileNum(uint32_t op, uint32_t* result) noexcept {
    return GetOrRefusal(TlvPtr(DOM_EncodeAAAAuthorProfileNumRequest()), op, result,
                        DOM_DecodeAAAAuthorProfileNum);
}

uint32_t MOR_GetAAAAuthorProfile(const char* profile_name, uint32_t op, AAAAuthorProfile* profile,
                                 uint32_t* result) noexcept {
    return GetOrRefusal(TlvPtr(DOM_EncodeAAAAuthorProfileName(profile_name)), op, result,
                        [=](TLV_MSG* reply) { return DOM_DecodeAAAAuthorProfile(reply, profile); });
}

uint32_t MOR_GetCriticalPrfInfo(const char* profile_name, uint32_t op, CriticalProfileMsg* out,
                                uint32_t* result) noexcept {
    return GetProfile(
        TlvPtr(DOM_clitical_tlv_EncodeCriticalProfile(profile_name)), op, result,
        [=](TLV_MSG* reply) { return DOM_critical_tlv_DecodeDefaultCritical(reply, out); });
}

uint32_t MOR_GetAuthorPrfInfo(const char* profile_name, uint32_t op, AuthorProfileMsg* out,
                              uint32_t* result) noexcept {
    return GetProfile(
        TlvPtr(DOM_author_tlv_EncodeAuthorProfile(profile_name)), op, result,
        [=](TLV_MSG* reply) { return DOM_author_tlv_DecodeDefaultAuthor(reply, out); });
}

uint32_t MOR_GetCriticalVPNInfo(const char* profile_name, const char* vpn_name, uint32_t op,
                                CriticalProfileMsg* out, uint32_t* result) noexcept {
    return GetOrRefusal(
        TlvPtr(DOM_critical_tlv_EncodeGetCriticalVpn(profile_name, vpn_name)), op, result,
        [=](TLV_MSG* reply) { return DOM_critical_tlv_DecodeCriticalVpn(reply, out); });
}

uint32_t MOR_GetAuthorVPNInfo(const char* profile_name, const char* vpn_name, uint32_t op,
                              AuthorProfileMsg* out, uint32_t* result) noexcept {
    return GetOrRefusal(TlvPtr(DOM_author_tlv_EncodeGetAuthorVpn(profile_name, vpn_name)), op,
                        result,
                        [=](TLV_MSG* reply) { return DOM_author_tlv_DecodeAuthorVpn(reply, out); });
}

}  // extern "C"
