#include "mgmt/request.h"

#include <aaadom/domain_codec.h>

namespace aaadom {

uint32_t SetJudged(TlvPtr request, uint32_t op, uint32_t* result, uint32_t if_unencoded) noexcept {
    return request ? Judge(request.get(), op, result) : if_unencoded;
}

uint32_t Judge(TLV_MSG* request, uint32_t op, uint32_t* result) noexcept {
    uint32_t verdict = DOM_RESULT_MISSING;
    if (DOM_lipc_CfgMsgProc(request, op, &verdict) != DOM_OK) return DOM_ERR_FAILED;
    if (result != nullptr) *result = verdict;
    return verdict == DOM_OK ? DOM_OK : DOM_ERR_FAILED;
}

uint32_t SetReported(TlvPtr request, uint32_t op, uint32_t* result) noexcept {
    return DOM_lipc_CfgMsgProc(request.get(), op, result);
}

uint32_t SetReportedInResultOnly(TlvPtr request, uint32_t op, uint32_t* result) noexcept {
    if (!request) return DOM_ERR_FAILED;
    (void)DOM_lipc_CfgMsgProc(request.get(), op, result);  // callers look at *result alone
    return DOM_OK;
}

uint32_t SetReturningResult(TlvPtr request, uint32_t op, uint32_t if_no_reply) noexcept {
    if (!request) return DOM_ERR_FAILED;
    uint32_t result = if_no_reply;
    (void)DOM_lipc_CfgMsgProc(request.get(), op, &result);  // without a reply the preset stays
    return result;
}

uint32_t SetBlindly(TlvPtr request, uint32_t op) noexcept {
    if (!request) return DOM_ERR_FAILED;
    (void)DOM_lipc_CfgMsgProc(request.get(), op, nullptr);  // nobody asks what became of it
    return DOM_OK;
}

ProfileAnswer SetProfile(TlvPtr request, uint32_t op, uint16_t name_tlv, char* name_out) noexcept {
    constexpr uint32_t kProfileNameSize = 32;
    ProfileAnswer answer;
    const TlvPtr reply(DOM_lipc_SendCfgMsg(request.get(), op, nullptr));
    answer.has_reply = reply != nullptr;
    for (const TlvItem item : TlvWalk(reply.get())) {
        if (item.Type() == DOM_TLV_RESULT) {
            answer.result = item.U32();
            answer.has_result = true;
        } else if (item.Type() == name_tlv && name_out != nullptr) {
            (void)item.Text(name_out, kProfileNameSize);  // cuts and terminates
        }
    }
    return answer;
}

Answer Ask(TlvPtr request, uint32_t op) noexcept {
    Answer answer;
    answer.reply.reset(DOM_lipc_SendCfgMsg(request.get(), op, &answer.kind));
    return answer;
}

DomainInfo* GetDomain(TlvPtr request, uint32_t op, uint32_t* result) noexcept {
    const Answer answer = Ask(std::move(request), op);
    if (!answer.reply) return nullptr;
    if (!answer.Refused()) return DOM_DecodeDomain(answer.reply.get());
    (void)DOM_lipc_ReplyMsgProc(answer.reply.get(), result);  // always 0
    return nullptr;
}

}  // namespace aaadom
