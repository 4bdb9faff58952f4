// The shapes of a management request. Each consumes the encoded request and says what the front end
// is told when the request could not be encoded (null), when no reply came and when the daemon
// refused; the shapes differ in exactly that, and front ends rely on each one's answer.
#pragma once

#include <aaadom/channel.h>
#include <aaadom/codes.h>
#include <aaadom/results.h>
#include <aaadom/types.h>

#include <cstdint>
#include <utility>

#include "base/message.h"

namespace aaadom {

/// The return value carries the daemon's verdict: DOM_ERR_FAILED without a reply or for a non-zero
/// result, `if_unencoded` without a request.
uint32_t SetJudged(TlvPtr request, uint32_t op, uint32_t* result,
                   uint32_t if_unencoded = DOM_ERR_FAILED) noexcept;
/// The same for a request that stays its builder's; null fails.
uint32_t Judge(TLV_MSG* request, uint32_t op, uint32_t* result) noexcept;

/// The return value tells whether a reply came, `*result` what the daemon answered.
uint32_t SetReported(TlvPtr request, uint32_t op, uint32_t* result) noexcept;

/// 0 once the request was encoded, with or without a daemon; the answer is in `*result`, which
/// stays as the caller preset it when none came.
uint32_t SetReportedInResultOnly(TlvPtr request, uint32_t op, uint32_t* result) noexcept;

/// The daemon's result itself; `if_no_reply` when none came.
uint32_t SetReturningResult(TlvPtr request, uint32_t op, uint32_t if_no_reply) noexcept;

/// 0 once the request was encoded, whatever becomes of it.
uint32_t SetBlindly(TlvPtr request, uint32_t op) noexcept;

/// What the daemon answered to a change of a profile.
struct ProfileAnswer {
    bool has_reply = false;
    bool has_result = false;  // false without a reply, too
    uint32_t result = DOM_RESULT_MISSING;
};
/// Walks the whole reply: the daemon sends the profile's name before the result, other daemons may
/// send it behind. `name_out` has 32 bytes, may be null and is untouched when no name came.
ProfileAnswer SetProfile(TlvPtr request, uint32_t op, uint16_t name_tlv, char* name_out) noexcept;

/// Reads with operation 2 and has no result output. `decode(TLV_MSG*)` must fail for a refusal, a
/// reply with nothing but a result, whatever that result is.
template <typename Decode>
uint32_t Get(TlvPtr request, Decode&& decode) noexcept {
    const TlvPtr reply(DOM_lipc_SendCfgMsg(request.get(), DOM_OP_GET, nullptr));
    return reply ? std::forward<Decode>(decode)(reply.get()) : DOM_ERR_FAILED;
}

/// What came back for a read whose caller can be refused.
struct Answer {
    TlvPtr reply;  // null: no request or no reply
    uint16_t kind = 0;

    bool Refused() const noexcept { return kind == DOM_REPLY_KIND_RESULT; }
};
Answer Ask(TlvPtr request, uint32_t op) noexcept;

/// Reads with the caller's operation. A refusal goes to `*result` and gives 0: the outputs are as
/// they were, and callers tell the two apart by a result that they preset.
template <typename Decode>
uint32_t GetOrRefusal(TlvPtr request, uint32_t op, uint32_t* result, Decode&& decode) noexcept {
    const Answer answer = Ask(std::move(request), op);
    if (!answer.reply) return DOM_ERR_FAILED;
    if (answer.Refused()) return DOM_lipc_ReplyMsgProc(answer.reply.get(), result);
    return std::forward<Decode>(decode)(answer.reply.get());
}

/// Reads one domain with the caller's operation: null without a reply, for a refusal (which goes to
/// `*result`) and for a reply that is no domain.
DomainInfo* GetDomain(TlvPtr request, uint32_t op, uint32_t* result) noexcept;

}  // namespace aaadom
