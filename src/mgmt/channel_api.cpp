#include <aaadom/channel.h>
#include <aaadom/codes.h>
#include <aaadom/results.h>

#include "base/message.h"
#include "mgmt/connection.h"

using namespace aaadom;

extern "C" {

TLV_MSG* DOM_lipc_SendCfgMsg(TLV_MSG* msg, uint32_t opcode, uint16_t* kind_out) noexcept {
    const TlvPtr outer = Exchange(msg, opcode);
    const TlvItem first(outer.get(), outer ? TLV_GetFirst(outer.get()) : nullptr);
    if (!first) return nullptr;
    if (kind_out != nullptr) *kind_out = first.Type();
    return first.Sub().release();
}

uint32_t DOM_lipc_ReplyMsgProc(TLV_MSG* reply, uint32_t* result_out) noexcept {
    if (result_out == nullptr) return DOM_OK;
    const TlvItem result = FindTlv(reply, DOM_TLV_RESULT);
    *result_out = result ? result.U32() : DOM_RESULT_MISSING;
    return DOM_OK;
}

uint32_t DOM_lipc_CfgMsgProc(TLV_MSG* msg, uint32_t opcode, uint32_t* result_out) noexcept {
    const TlvPtr reply(DOM_lipc_SendCfgMsg(msg, opcode, nullptr));
    return reply ? DOM_lipc_ReplyMsgProc(reply.get(), result_out) : DOM_ERR_FAILED;
}

}  // extern "C"
