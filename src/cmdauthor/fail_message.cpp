#include "cmdauthor/fail_message.h"

#include <aaadom/codes.h>
#include <aaadom/results.h>
#include <stdlib.h>

#include "cmdauthor/fail_list.h"

namespace aaadom {
namespace {

uint32_t ReadFailField(const TlvItem& tlv, CmdAuthorFailItem& item) noexcept {
    switch (tlv.Type()) {
        case DOM_TLV_CMD_FAIL_FIRST_TEXT:
            return tlv.Text(item.first_text, sizeof item.first_text);
        case DOM_TLV_CMD_FAIL_SECOND_TEXT:
            return tlv.Text(item.second_text, sizeof item.second_text);
        case DOM_TLV_CMD_FAIL_THIRD_TEXT:
            return tlv.Text(item.third_text, sizeof item.third_text);
        case DOM_TLV_CMD_FAIL_NUMBER64:
            item.number64 = tlv.U64();
            return DOM_OK;
        case DOM_TLV_CMD_FAIL_NUMBER32:
            item.number32 = tlv.U32();
            return DOM_OK;
        default:
            return DOM_OK;
    }
}

uint32_t ReadNestedFailure(const TlvItem& tlv, FailList& list) noexcept {
    const TlvPtr nested = tlv.Sub();
    if (!nested) return DOM_ERR_FAILED;
    CmdAuthorFailItem item{};
    const uint32_t result = ReadFailItem(nested.get(), item);
    if (result != DOM_OK) return result;
    if (CmdAuthorFailNode* node = NewFailNode(item)) list.PushOldest(node);
    return DOM_OK;
}

}  // namespace

CmdAuthorFailNode* NewFailNode(const CmdAuthorFailItem& item) noexcept {
    auto* node = static_cast<CmdAuthorFailNode*>(calloc(1, sizeof(CmdAuthorFailNode)));
    if (node != nullptr) node->item = item;
    return node;
}

void AppendFailItem(Appender& append, const CmdAuthorFailItem& item) noexcept {
    append.Field(DOM_TLV_CMD_FAIL_FIRST_TEXT, item.first_text)
        .Field(DOM_TLV_CMD_FAIL_SECOND_TEXT, item.second_text)
        .Field(DOM_TLV_CMD_FAIL_THIRD_TEXT, item.third_text)
        .U64(DOM_TLV_CMD_FAIL_NUMBER64, item.number64)
        .U32(DOM_TLV_CMD_FAIL_NUMBER32, item.number32);
}

uint32_t ReadFailItem(TLV_MSG* msg, CmdAuthorFailItem& item) noexcept {
    uint32_t result = DOM_OK;
    for (TlvItem tlv : TlvWalk(msg)) result |= ReadFailField(tlv, item);
    return result;
}

uint32_t ReadFailReply(TLV_MSG* msg, CmdAuthorFailRec& list) noexcept {
    FailList nodes(list);
    uint32_t result = DOM_OK;
    for (TlvItem tlv : TlvWalk(msg)) {
        if (tlv.Type() == DOM_TLV_CMD_FAIL_ITEM) {
            result |= ReadNestedFailure(tlv, nodes);
            ++list.count;  // of the sender's items, not of the nodes: readers see that some are
                           // lost
        } else if (tlv.Type() == DOM_TLV_CMD_FAIL_END) {
            // Replaces what was gathered: readers that collect several replies stop at exactly
            // this result, whatever an item before it was like.
            result = DOM_ERR_NOT_FOUND;
        }
    }
    return result;
}

}  // namespace aaadom
