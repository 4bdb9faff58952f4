#include "policy/ita_policy_message.h"

#include <aaadom/codes.h>
#include <aaadom/method_codec.h>
#include <aaadom/results.h>

#include "base/message.h"

namespace aaadom {
namespace {

constexpr AAA_FIELD Word(uint16_t type, size_t offset) noexcept {
    return {type, AAA_FIELD_WORD, static_cast<uint16_t>(offset), 0};
}

constexpr size_t kPairSecond = sizeof(uint32_t);

constexpr AAA_FIELD kLevelFields[] = {
    Word(DOM_TLV_ITA_LEVEL_ID, offsetof(ItaAcctLevel, level_id)),
    Word(DOM_TLV_ITA_LEVEL_VALUE, offsetof(ItaAcctLevel, level_value)),
    Word(DOM_TLV_ITA_FIRST_PAIR_A, offsetof(ItaAcctLevel, first_pair)),
    Word(DOM_TLV_ITA_FIRST_PAIR_B, offsetof(ItaAcctLevel, first_pair) + kPairSecond),
    Word(DOM_TLV_ITA_SECOND_PAIR_A, offsetof(ItaAcctLevel, second_pair)),
    Word(DOM_TLV_ITA_SECOND_PAIR_B, offsetof(ItaAcctLevel, second_pair) + kPairSecond),
};
constexpr uint32_t kLevelFieldCount = sizeof kLevelFields / sizeof *kLevelFields;

/// The methods alone: a scheme has no AAA type, service or extra item, unlike a domain's list in a
/// TLV of the same type.
void AppendScheme(Appender& list, const ItaPolicy& policy) noexcept {
    list.Fold(DOM_EncodeMultiMethods(list.Message(), policy.acct_scheme));
}

void AppendLevels(Appender& levels, const ItaPolicy& policy) noexcept {
    levels.Fold(AAA_AppendRecords(levels.Message(), DOM_TLV_ITA_LEVEL, kLevelFields,
                                  kLevelFieldCount, policy.levels, sizeof *policy.levels,
                                  DOM_ITA_LEVELS));
}

uint32_t ReadScheme(const TlvItem& nested, ItaPolicy& policy) noexcept {
    const TlvPtr list = nested.Sub();
    return list ? DOM_DecodeMultiMethods(list.get(), policy.acct_scheme) : DOM_ERR_FAILED;
}

/// Fills the entries from `next` on, which moves along; a surplus is not looked at.
uint32_t ReadLevels(const TlvItem& nested, ItaPolicy& policy, uint32_t& next) noexcept {
    const TlvPtr levels = nested.Sub();
    if (!levels) return DOM_ERR_FAILED;
    for (const TlvItem item : TlvWalk(levels.get())) {
        if (item.Type() != DOM_TLV_ITA_LEVEL || next == DOM_ITA_LEVELS) continue;
        constexpr uint32_t kUnset = DOM_ITA_PAIR_UNSET;
        ItaAcctLevel& level = policy.levels[next++];
        level = {0, 0, {kUnset, kUnset}, {kUnset, kUnset}};
        const uint32_t result = item.SubFields(kLevelFields, kLevelFieldCount, &level, nullptr);
        if (result != DOM_OK) return result;
    }
    return DOM_OK;
}

uint32_t ReadField(const TlvItem& item, ItaPolicy& policy, uint32_t& next_level) noexcept {
    switch (item.Type()) {
        case DOM_TLV_ITA_POLICY_NAME:
            return item.Text(policy.name, sizeof policy.name);
        case DOM_TLV_METHOD_LIST:
            return ReadScheme(item, policy);
        case DOM_TLV_ITA_LEVELS:
            return ReadLevels(item, policy, next_level);
        case DOM_TLV_ITA_LEVEL_COUNT:
            policy.level_count = item.U32();
            return DOM_OK;
        case DOM_TLV_ITA_TOGETHER_STATE:
            policy.together_state = static_cast<uint16_t>(item.U32());
            return DOM_OK;
        case DOM_TLV_ITA_SEPARATION_STATE:
            policy.separation_state = static_cast<uint16_t>(item.U32());
            return DOM_OK;
        case DOM_TLV_ITA_QUOTA_OUT_STATE:
            policy.quota_out_state = static_cast<uint16_t>(item.U32());
            return DOM_OK;
        default:
            return DOM_OK;
    }
}

}  // namespace

TLV_MSG* EncodeItaPolicy(const ItaPolicy& policy) noexcept {
    return MessageBuilder(DOM_MSG_ITA_POLICY).Build([&](Appender& append) {
        append.Field(DOM_TLV_ITA_POLICY_NAME, policy.name)
            .Nested(DOM_TLV_METHOD_LIST, [&](Appender& list) { AppendScheme(list, policy); })
            .U32(DOM_TLV_ITA_LEVEL_COUNT, policy.level_count)
            .U32(DOM_TLV_ITA_TOGETHER_STATE, policy.together_state)
            .U32(DOM_TLV_ITA_SEPARATION_STATE, policy.separation_state)
            .U32(DOM_TLV_ITA_QUOTA_OUT_STATE, policy.quota_out_state)
            .Nested(DOM_TLV_ITA_LEVELS, [&](Appender& levels) { AppendLevels(levels, policy); });
    });
}

uint32_t DecodeItaPolicy(TLV_MSG* msg, ItaPolicy& policy) noexcept {
    policy = ItaPolicy{};
    uint32_t next_level = 0;
    uint32_t result = DOM_OK;
    for (const TlvItem item : TlvWalk(msg)) result |= ReadField(item, policy, next_level);
    // A policy without a name would get the settings of every request that lacks one.
    return policy.name[0] == '\0' ? DOM_ERR_FAILED : result;
}

}  // namespace aaadom
