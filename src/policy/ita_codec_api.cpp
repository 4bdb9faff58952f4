#include <aaadom/accounting_policy_codec.h>
#include <aaadom/codes.h>
#include <aaadom/method_codec.h>
#include <aaadom/results.h>

#include <cstring>

#include "base/message.h"
#include "policy/ita_policy_message.h"

using namespace aaadom;

namespace {

/// A message of `code` that carries the policy name and then what `values(Appender&)` appends.
template <typename Values>
TLV_MSG* EncodeNamed(uint32_t code, const char* name, Values&& values) noexcept {
    if (name == nullptr) return nullptr;
    return MessageBuilder(code).Build([&](Appender& append) {
        append.Text(DOM_TLV_ITA_POLICY_NAME, name);
        values(append);
    });
}

TLV_MSG* EncodeName(uint32_t code, const char* name) noexcept {
    return EncodeNamed(code, name, [](Appender&) {});
}

enum class Missing { kFails, kReadsEmpty };

/// The first policy name of a message that is not null; a null output is skipped.
uint32_t ReadName(TLV_MSG* msg, uint32_t capacity, char* name, Missing missing) noexcept {
    if (name != nullptr && capacity != 0) name[0] = '\0';
    const TlvItem tlv = FindTlv(msg, DOM_TLV_ITA_POLICY_NAME);
    if (!tlv) return missing == Missing::kFails ? DOM_ERR_FAILED : DOM_OK;
    return name == nullptr ? DOM_OK : tlv.Text(name, capacity);
}

/// The number of a type, `preset` when the message has none.
uint32_t ReadWord(TLV_MSG* msg, uint16_t type, uint32_t preset) noexcept {
    const TlvItem tlv = FindTlv(msg, type);
    return tlv ? tlv.U32() : preset;
}

void AppendPairValue(Appender& append, uint16_t type, uint32_t value) noexcept {
    if (value != DOM_ITA_PAIR_UNSET) append.U32(type, value);
}

}  // namespace

extern "C" {

TLV_MSG* DOM_ita_tlv_EncodePolicy(const ItaPolicy* policy) noexcept {
    return policy == nullptr ? nullptr : EncodeItaPolicy(*policy);
}

uint32_t DOM_ita_tlv_DecodePolicy(TLV_MSG* msg, ItaPolicy* policy_out) noexcept {
    if (msg == nullptr || policy_out == nullptr) return DOM_ERR_FAILED;
    return DecodeItaPolicy(msg, *policy_out);
}

TLV_MSG* DOM_ita_tlv_EncodePolicyName(const char* name) noexcept {
    return EncodeName(DOM_MSG_ITA_POLICY_NAME, name);
}

uint32_t DOM_ita_tlv_DecodePolicyName(TLV_MSG* msg, uint32_t capacity, char* name) noexcept {
    return ReadName(msg, capacity, name, Missing::kFails);
}

TLV_MSG* DOM_ita_tlv_EncodeAcctScheme(const char* name,
                                      const MethodEntry methods[DOM_METHODS]) noexcept {
    return EncodeNamed(DOM_MSG_ITA_ACCT_SCHEME, name, [&](Appender& append) {
        append.Fold(DOM_EncodeMultiMethods(append.Message(), methods));
    });
}

uint32_t DOM_ita_tlv_DecodeAcctScheme(TLV_MSG* msg, uint32_t capacity, char* name,
                                      MethodEntry methods_out[DOM_METHODS]) noexcept {
    // The name comes first: it is recorded even when the methods turn out to be unreadable.
    const uint32_t named = ReadName(msg, capacity, name, Missing::kReadsEmpty);
    if (methods_out == nullptr) return DOM_ERR_FAILED;
    memset(methods_out, 0, DOM_METHODS * sizeof *methods_out);
    return named | DOM_DecodeMultiMethods(msg, methods_out);
}

TLV_MSG* DOM_ita_tlv_EncodeAcctTogether(const char* name) noexcept {
    return EncodeName(DOM_MSG_ITA_ACCT_TOGETHER, name);
}

uint32_t DOM_ita_tlv_DecodeAcctTogether(TLV_MSG* msg, uint32_t capacity, char* name) noexcept {
    return ReadName(msg, capacity, name, Missing::kFails);
}

TLV_MSG* DOM_ita_tlv_EncodeAcctLevel(const char* name, uint32_t level_id, uint32_t level_value,
                                     uint32_t flags, uint32_t first_pair_a, uint32_t first_pair_b,
                                     uint32_t second_pair_a, uint32_t second_pair_b) noexcept {
    return EncodeNamed(DOM_MSG_ITA_ACCT_LEVEL, name, [&](Appender& append) {
        append.U32(DOM_TLV_ITA_LEVEL_ID, level_id).U32(DOM_TLV_ITA_LEVEL_VALUE, level_value);
        if (flags != 0) append.U32(DOM_TLV_ITA_LEVEL_FLAGS, flags);
        AppendPairValue(append, DOM_TLV_ITA_FIRST_PAIR_A, first_pair_a);
        AppendPairValue(append, DOM_TLV_ITA_FIRST_PAIR_B, first_pair_b);
        AppendPairValue(append, DOM_TLV_ITA_SECOND_PAIR_A, second_pair_a);
        AppendPairValue(append, DOM_TLV_ITA_SECOND_PAIR_B, second_pair_b);
    });
}

uint32_t DOM_ita_tlv_DecodeAcctLevel(TLV_MSG* msg, uint32_t capacity, char* name,
                                     ItaAcctLevel* level_out, uint32_t* flags_out) noexcept {
    const uint32_t named = ReadName(msg, capacity, name, Missing::kReadsEmpty);
    if (level_out != nullptr) {
        constexpr uint32_t kUnset = DOM_ITA_PAIR_UNSET;
        level_out->level_id = ReadWord(msg, DOM_TLV_ITA_LEVEL_ID, 0);
        level_out->level_value = ReadWord(msg, DOM_TLV_ITA_LEVEL_VALUE, 0);
        level_out->first_pair[0] = ReadWord(msg, DOM_TLV_ITA_FIRST_PAIR_A, kUnset);
        level_out->first_pair[1] = ReadWord(msg, DOM_TLV_ITA_FIRST_PAIR_B, kUnset);
        level_out->second_pair[0] = ReadWord(msg, DOM_TLV_ITA_SECOND_PAIR_A, kUnset);
        level_out->second_pair[1] = ReadWord(msg, DOM_TLV_ITA_SECOND_PAIR_B, kUnset);
    }
    if (flags_out != nullptr) *flags_out = ReadWord(msg, DOM_TLV_ITA_LEVEL_FLAGS, 0);
    return msg == nullptr ? DOM_ERR_FAILED : named;
}

TLV_MSG* DOM_ita_tlv_EncodeTrafSeprate(const char* name) noexcept {
    return EncodeName(DOM_MSG_ITA_TRAF_SEPRATE, name);
}

uint32_t DOM_ita_ita_DecodeTrafSeprate(TLV_MSG* msg, uint32_t capacity, char* name) noexcept {
    return ReadName(msg, capacity, name, Missing::kFails);
}

TLV_MSG* DOM_ita_tlv_EncodeTrafQuotaOut(const char* name, uint16_t state) noexcept {
    return EncodeNamed(DOM_MSG_ITA_TRAF_QUOTA_OUT, name,
                       [&](Appender& append) { append.U32(DOM_TLV_ITA_QUOTA_OUT_STATE, state); });
}

uint32_t DOM_ita_tlv_DecodeTrafQuotaOut(TLV_MSG* msg, uint32_t capacity, char* name,
                                        uint16_t* state_out) noexcept {
    // Quota-out is on unless a message says otherwise, as in a new policy.
    constexpr uint32_t kPresetState = 1;
    const uint32_t named = ReadName(msg, capacity, name, Missing::kReadsEmpty);
    if (state_out != nullptr) {
        *state_out =
            static_cast<uint16_t>(ReadWord(msg, DOM_TLV_ITA_QUOTA_OUT_STATE, kPresetState));
    }
    return msg == nullptr ? DOM_ERR_FAILED : named;
}

}  // extern "C"
