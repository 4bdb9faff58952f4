#include <aaadom/accounting_policy_codec.h>
#include <aaadom/results.h>
#include <gtest/gtest.h>

#include <cstring>

#include "tests/golden/record_goldens.h"
#include "tests/golden/sample_policy.h"

namespace golden {
namespace {

const char* const kName = "gold";

/// Checks of the messages that are a policy name and nothing else.
std::function<void(TLV_MSG*)> ExpectName(uint32_t (*decode)(TLV_MSG*, uint32_t, char*)) {
    return [=](TLV_MSG* msg) {
        char name[DOM_ITA_NAME_SIZE] = "?";
        EXPECT_EQ(decode(msg, sizeof name, name), DOM_OK);
        EXPECT_STREQ(name, kName);
    };
}

std::function<void(TLV_MSG*)> ExpectLevel(const ItaAcctLevel& want, uint32_t want_flags) {
    return [=](TLV_MSG* msg) {
        char name[DOM_ITA_NAME_SIZE] = "?";
        ItaAcctLevel level{};
        uint32_t flags = 99;
        EXPECT_EQ(DOM_ita_tlv_DecodeAcctLevel(msg, sizeof name, name, &level, &flags), DOM_OK);
        EXPECT_STREQ(name, kName);
        EXPECT_EQ(memcmp(&level, &want, sizeof want), 0);
        EXPECT_EQ(flags, want_flags);
    };
}

void CheckPolicy(TLV_MSG* msg) {
    ItaPolicy policy;
    EXPECT_EQ(DOM_ita_tlv_DecodePolicy(msg, &policy), DOM_OK);
    const ItaPolicy want = SamplePolicy();
    EXPECT_STREQ(policy.name, want.name);
    EXPECT_EQ(memcmp(policy.acct_scheme, want.acct_scheme, sizeof want.acct_scheme), 0);
    EXPECT_EQ(policy.level_count, want.level_count);
    EXPECT_EQ(memcmp(policy.levels, want.levels, sizeof want.levels), 0);
    EXPECT_EQ(policy.together_state, want.together_state);
    EXPECT_EQ(policy.separation_state, want.separation_state);
    EXPECT_EQ(policy.quota_out_state, want.quota_out_state);
}

void CheckScheme(TLV_MSG* msg) {
    char name[DOM_ITA_NAME_SIZE] = "?";
    MethodEntry methods[DOM_METHODS];
    EXPECT_EQ(DOM_ita_tlv_DecodeAcctScheme(msg, sizeof name, name, methods), DOM_OK);
    EXPECT_STREQ(name, kName);
    EXPECT_EQ(memcmp(methods, SamplePolicy().acct_scheme, sizeof methods), 0);
}

void CheckQuotaOut(TLV_MSG* msg) {
    char name[DOM_ITA_NAME_SIZE] = "?";
    uint16_t state = 0;
    EXPECT_EQ(DOM_ita_tlv_DecodeTrafQuotaOut(msg, sizeof name, name, &state), DOM_OK);
    EXPECT_STREQ(name, kName);
    EXPECT_EQ(state, 0x0304);
}

}  // namespace

std::vector<GoldenMessage> ItaPolicyGoldens() {
    constexpr uint32_t kUnset = DOM_ITA_PAIR_UNSET;
    return {
        {"msg_022_ita_policy", DOM_MSG_ITA_POLICY,
         [] {
             const ItaPolicy policy = SamplePolicy();
             return DOM_ita_tlv_EncodePolicy(&policy);
         },
         CheckPolicy},
        {"msg_023_ita_policy_name", DOM_MSG_ITA_POLICY_NAME,
         [] { return DOM_ita_tlv_EncodePolicyName(kName); },
         ExpectName(DOM_ita_tlv_DecodePolicyName)},
        {"msg_024_ita_acct_scheme", DOM_MSG_ITA_ACCT_SCHEME,
         [] { return DOM_ita_tlv_EncodeAcctScheme(kName, SamplePolicy().acct_scheme); },
         CheckScheme},
        {"msg_025_ita_acct_together", DOM_MSG_ITA_ACCT_TOGETHER,
         [] { return DOM_ita_tlv_EncodeAcctTogether(kName); },
         ExpectName(DOM_ita_tlv_DecodeAcctTogether)},
        {"msg_026_ita_acct_level", DOM_MSG_ITA_ACCT_LEVEL,
         [] { return DOM_ita_tlv_EncodeAcctLevel(kName, 30, 300, 3, 1, 2, 3, 4); },
         ExpectLevel({30, 300, {1, 2}, {3, 4}}, 3)},
        {"msg_026_ita_acct_level_bare", DOM_MSG_ITA_ACCT_LEVEL,
         [] {
             return DOM_ita_tlv_EncodeAcctLevel(kName, 30, 0, 0, kUnset, kUnset, kUnset, kUnset);
         },
         ExpectLevel({30, 0, {kUnset, kUnset}, {kUnset, kUnset}}, 0)},
        {"msg_027_ita_traf_seprate", DOM_MSG_ITA_TRAF_SEPRATE,
         [] { return DOM_ita_tlv_EncodeTrafSeprate(kName); },
         ExpectName(DOM_ita_ita_DecodeTrafSeprate)},
        {"msg_028_ita_traf_quota_out", DOM_MSG_ITA_TRAF_QUOTA_OUT,
         [] { return DOM_ita_tlv_EncodeTrafQuotaOut(kName, 0x0304); }, CheckQuotaOut},
    };
}

}  // namespace golden
