#include <aaadom/codes.h>
#include <aaadom/method_codec.h>
#include <aaadom/recording_policy.h>
#include <aaadom/results.h>

#include <algorithm>
#include <cstring>

#include "base/message.h"

using namespace aaadom;

namespace {

TLV_MSG* EncodeScheme(uint32_t code, uint32_t type, const MethodEntry* methods) noexcept {
    return MessageBuilder(code).Build([&](Appender& append) {
        append.U32(DOM_TLV_REC_POLICY_TYPE, type)
            .Fold(DOM_EncodeMultiMethods(append.Message(), methods));
    });
}

/// Whether every item of a message is one, so that one which was not read was refused for want of
/// memory: there is nothing else that an item can be refused for. A platform that reads nested
/// messages in place refuses none; one that copies them may.
bool HasOnlyItemsThatCanBeRead(TLV_MSG* msg) noexcept {
    bool any = false;
    for (const TlvItem item : TlvWalk(msg)) {
        if (item.Type() != DOM_TLV_METHOD_ITEM) continue;
        if (!item.IsMessage()) return false;
        any = true;
    }
    return any;
}

}  // namespace

extern "C" {

TLV_MSG* DOM_Rec_tlv_EncodePolicy(const RecPolicy* policy) noexcept {
    if (policy == nullptr) return nullptr;
    return EncodeScheme(DOM_MSG_REC_POLICY, policy->policy_type, policy->acct_scheme);
}

TLV_MSG* DOM_Rec_tlv_EncodePolicyType(uint32_t type) noexcept {
    return MessageBuilder(DOM_MSG_REC_POLICY_TYPE).Build([type](Appender& append) {
        append.U32(DOM_TLV_REC_POLICY_TYPE, type);
    });
}

uint32_t DOM_Rec_tlv_DecodePolicyType(TLV_MSG* msg) noexcept {
    // Callers take any type but 0 for a failure, so this refuses what is no message at all.
    return msg == nullptr ? DOM_ERR_FAILED : FindTlv(msg, DOM_TLV_REC_POLICY_TYPE).U32();
}

TLV_MSG* DOM_Rec_tlv_EncodeAcctScheme(uint32_t type,
                                      const MethodEntry methods[DOM_METHODS]) noexcept {
    return EncodeScheme(DOM_MSG_REC_ACCT_SCHEME, type, methods);
}

uint32_t DOM_Rec_tlv_DecodeAcctScheme(TLV_MSG* msg, uint32_t size, void* methods_out) noexcept {
    if (methods_out != nullptr) {
        memset(methods_out, 0, size);
        // The items say their positions themselves, so they are read where there is room for all.
        // A message without items is an empty scheme, and a broken item ends it; but a scheme that
        // is short because memory was must not be taken for the one that was sent.
        MethodEntry methods[DOM_METHODS] = {};
        if (DOM_DecodeMultiMethods(msg, methods) != DOM_OK && HasOnlyItemsThatCanBeRead(msg)) {
            return DOM_ERR_FAILED;
        }
        memcpy(methods_out, methods, std::min<size_t>(size, sizeof methods));
    }
    return DOM_Rec_tlv_DecodePolicyType(msg);
}

}  // extern "C"
