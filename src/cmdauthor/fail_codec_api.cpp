#include <aaadom/cmd_author_fail.h>
#include <aaadom/codes.h>
#include <aaadom/results.h>

#include "cmdauthor/fail_message.h"

using namespace aaadom;

extern "C" {

uint32_t DOM_Rec_EncodeCmdAuthorFailItem(TLV_MSG* parent, uint16_t type,
                                         const CmdAuthorFailItem* item) noexcept {
    if (parent == nullptr || item == nullptr) return DOM_ERR_FAILED;
    const TlvPtr nested(TLV_Create());
    if (!nested) return DOM_ERR_FAILED;
    Appender append(nested.get());
    AppendFailItem(append, *item);
    return append.Failed() ? DOM_ERR_FAILED : AAA_AppendSubTlv(parent, type, nested.get());
}

TLV_MSG* DOM_Rec_EncodeCmdAuthorFailEndMsg(uint32_t value) noexcept {
    TlvPtr msg(TLV_Create());
    if (!msg) return nullptr;
    const uint32_t result = AAA_AppendUINTTlvData(msg.get(), DOM_TLV_CMD_FAIL_END, value);
    return result == DOM_OK ? msg.release() : nullptr;
}

uint32_t DOM_Rec_tlv_EncodeCmdAuthorFailMsg(TLV_MSG* msg) noexcept {
    return AAA_AppendUINTTlvData(msg, DOM_TLV_MSG_CODE, DOM_MSG_CMD_AUTHOR_FAIL);
}

uint32_t DOM_Rec_DecodeCmdAuthorFailItem(TLV_MSG* msg, CmdAuthorFailItem* item) noexcept {
    return msg == nullptr || item == nullptr ? DOM_ERR_FAILED : ReadFailItem(msg, *item);
}

uint32_t DOM_Rec_tlv_DecodeCmdAuthorFailMsg(TLV_MSG* msg, CmdAuthorFailRec* list) noexcept {
    return msg == nullptr || list == nullptr ? DOM_ERR_FAILED : ReadFailReply(msg, *list);
}

}  // extern "C"
