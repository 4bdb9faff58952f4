#include "codec/method_network.h"

#include <aaadom/codes.h>
#include <aaadom/results.h>
#include <arpa/inet.h>

#include "base/message.h"
#include "base/text.h"

namespace aaadom {
namespace {
constexpr uint32_t kNoPosition = DOM_METHODS;
}

uint32_t EncodeNetworkItem(uint32_t position, const MethodEntry& item, TLV_MSG* msg) noexcept {
    uint32_t sum = TLV_Append_UINT(msg, DOM_ITEM_TLV_POSITION, htonl(position));
    sum += TLV_Append_UINT(msg, DOM_ITEM_TLV_TYPE, htonl(item.method_kind));
    sum += TLV_Append_UINT(msg, DOM_ITEM_TLV_INDEX, htonl(item.scheme_index));
    const size_t length = BoundedLength(item.scheme_name, sizeof item.scheme_name);
    if (length != 0) {
        sum += TLV_Append_Data(msg, DOM_ITEM_TLV_NAME, static_cast<uint32_t>(length),
                               item.scheme_name);
    }
    return sum;
}

uint32_t DecodeNetworkItem(TLV_MSG* msg, MethodEntry* items) noexcept {
    uint32_t position = kNoPosition;
    uint32_t method_kind = 0;
    uint32_t scheme_index = 0;
    char name[DOM_SCHEME_NAME_SIZE + 1] = {};  // one byte more: the name comes without terminator
    uint32_t result = DOM_OK;
    for (TlvItem tlv : TlvWalk(msg)) {
        switch (tlv.Type()) {
            case DOM_ITEM_TLV_POSITION:
                position = ntohl(tlv.U32());
                break;
            case DOM_ITEM_TLV_TYPE:
                method_kind = ntohl(tlv.U32());
                break;
            case DOM_ITEM_TLV_INDEX:
                scheme_index = ntohl(tlv.U32());
                break;
            case DOM_ITEM_TLV_NAME:
                if (tlv.Length() <= DOM_SCHEME_NAME_SIZE) {
                    memset(name, 0, sizeof name);
                    result |= tlv.Raw(name, DOM_SCHEME_NAME_SIZE);
                } else {
                    result = DOM_ERR_FAILED;  // stays, whatever follows
                }
                break;
            default:
                break;
        }
    }
    if (position >= DOM_METHODS) return DOM_ERR_FAILED;
    if (result != DOM_OK) return result;
    MethodEntry& item = items[position];
    item.method_kind = method_kind;
    item.scheme_index = scheme_index;
    CopyText(item.scheme_name, name);
    return DOM_OK;
}

}  // namespace aaadom
