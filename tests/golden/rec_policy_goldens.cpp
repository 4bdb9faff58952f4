#include <aaadom/recording_policy.h>
#include <gtest/gtest.h>

#include <cstring>

#include "tests/golden/record_goldens.h"
#include "tests/golden/sample_policy.h"

namespace golden {
namespace {

/// The recording policy of the golden files has the methods of the accounting policy.
RecPolicy SampleRecPolicy() {
    RecPolicy policy{};
    memcpy(policy.acct_scheme, SamplePolicy().acct_scheme, sizeof policy.acct_scheme);
    return policy;
}

void CheckScheme(TLV_MSG* msg) {
    MethodEntry methods[DOM_METHODS];
    EXPECT_EQ(DOM_Rec_tlv_DecodeAcctScheme(msg, sizeof methods, methods), 0u);
    EXPECT_EQ(memcmp(methods, SampleRecPolicy().acct_scheme, sizeof methods), 0);
}

}  // namespace

std::vector<GoldenMessage> RecPolicyGoldens() {
    return {
        {"msg_031_rec_policy", DOM_MSG_REC_POLICY,
         [] {
             const RecPolicy policy = SampleRecPolicy();
             return DOM_Rec_tlv_EncodePolicy(&policy);
         },
         CheckScheme},
        {"msg_032_rec_policy_type", DOM_MSG_REC_POLICY_TYPE,
         [] { return DOM_Rec_tlv_EncodePolicyType(0); },
         [](TLV_MSG* msg) { EXPECT_EQ(DOM_Rec_tlv_DecodePolicyType(msg), 0u); }},
        {"msg_033_rec_acct_scheme", DOM_MSG_REC_ACCT_SCHEME,
         [] { return DOM_Rec_tlv_EncodeAcctScheme(0, SampleRecPolicy().acct_scheme); },
         CheckScheme},
    };
}

}  // namespace golden
