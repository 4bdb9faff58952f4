#include <aaadom/method_codec.h>
#include <aaadom/results.h>

#include "codec/method_item.h"
#include "codec/method_network.h"

using namespace aaadom;

extern "C" {

uint32_t DOM_ClearTlv(TLV_MSG* msg) noexcept {
    if (msg == nullptr) return DOM_ERR_FAILED;
    uint32_t result = DOM_OK;
    while (TLV_ITER* first = TLV_GetFirst(msg)) {
        result = TLV_Delete_Data(msg, first);
        if (result != DOM_OK) break;
    }
    return result;
}

uint32_t DOM_EncodeMultiMethods(TLV_MSG* msg, const MethodEntry items[DOM_METHODS]) noexcept {
    if (msg == nullptr || items == nullptr) return DOM_ERR_FAILED;
    return EncodeMethodItems(items, msg);
}

uint32_t DOM_DecodeMultiMethods(TLV_MSG* msg, MethodEntry items[DOM_METHODS]) noexcept {
    if (msg == nullptr || items == nullptr) return DOM_ERR_FAILED;
    return DecodeMethodItems(msg, items);
}

uint32_t DOM_EncapMethodToTLVItem(uint32_t position, const MethodEntry* item,
                                  TLV_MSG* msg) noexcept {
    if (msg == nullptr || item == nullptr) return DOM_ERR_FAILED;
    return EncodeNetworkItem(position, *item, msg);
}

uint32_t DOM_DecapTLVItemToMethod(TLV_MSG* msg, MethodEntry items[DOM_METHODS]) noexcept {
    if (msg == nullptr || items == nullptr) return DOM_ERR_FAILED;
    return DecodeNetworkItem(msg, items);
}

}  // extern "C"
