#include <aaadom/accounting_policy_codec.h>

#include <cstring>

#include "golden/sample_policy.h"
#include "unit/codec/restore_fixture.h"

namespace aaadom {
namespace {

/// Accounting policies live in the working role only.
class RestoreItaPolicies : public RestoreTest {
  protected:
    void SetUp() override {
        RestoreTest::SetUp();
        fake::role_of_this_thread = fake::kWorkingRole;
        DOM_ita_db_SetGlobalHandle(handle_);
    }
    void TearDown() override {
        DOM_ita_db_SetGlobalHandle(DBM_INVALID_HANDLE);
        RestoreTest::TearDown();
    }
    static TLV_MSG* Whole() {
        const ItaPolicy sample = golden::SamplePolicy();
        return DOM_ita_tlv_EncodePolicy(&sample);
    }
    static TLV_MSG* Name() { return DOM_ita_tlv_EncodePolicyName("gold"); }
    static TLV_MSG* Scheme() {
        return DOM_ita_tlv_EncodeAcctScheme("gold", golden::SamplePolicy().acct_scheme);
    }
    static TLV_MSG* Level() { return DOM_ita_tlv_EncodeAcctLevel("gold", 30, 300, 3, 1, 2, 3, 4); }
    static const ItaPolicy& Policy() {
        static const ItaPolicy none{};
        const ItaPolicy* policy = DOM_ita_policy_GetDomPolicyByName("gold");
        EXPECT_NE(policy, nullptr);
        return policy == nullptr ? none : *policy;
    }
    bool Saved() const { return DOM_ita_db_IsPolicyExist(handle_, "gold") == 1; }
    /// Whether what is saved is what is in the table.
    void ExpectSavedAsItIs() const {
        ItaPolicy* saved = DOM_ita_db_GetMemPolicyFromDBByName(handle_, "gold");
        ASSERT_NE(saved, nullptr);
        EXPECT_EQ(memcmp(saved->name, Policy().name, sizeof *saved - offsetof(ItaPolicy, name)), 0);
        DOM_ita_policy_DestroyPolicy(saved);
    }
};

TEST_F(RestoreItaPolicies, TheWireOperationZeroAddsAndEveryOtherDeletes) {
    EXPECT_EQ(Set(Name()), DOM_OK);
    EXPECT_EQ(DOM_ita_IsPolicyExist("gold"), 1u);
    EXPECT_EQ(Restore(Name(), 2, 0), DOM_OK);
    EXPECT_EQ(DOM_ita_IsPolicyExist("gold"), 0u);
    EXPECT_EQ(Set(Name()), DOM_OK);
    EXPECT_EQ(Delete(Name()), DOM_OK);
    EXPECT_EQ(Delete(Name()), DOM_ERR_NOT_FOUND);
}

TEST_F(RestoreItaPolicies, AWholePolicyIsTakenOverWhateverTheOperation) {
    for (const uint32_t op : {0u, 1u, 2u}) {
        EXPECT_EQ(Restore(Whole(), op, 1), DOM_OK);
        EXPECT_EQ(Policy().quota_out_state, 0x0304);
        ExpectSavedAsItIs();
        DOM_ita_policy_Delete("gold");
        (void)DOM_ita_db_SetPolicy("gold", 0);
    }
}

TEST_F(RestoreItaPolicies, EverySettingIsAppliedUndoneAndSaved) {
    ASSERT_EQ(Set(Name(), 1), DOM_OK);
    ExpectSavedAsItIs();
    EXPECT_EQ(Set(Scheme(), 1), DOM_OK);
    EXPECT_EQ(Policy().acct_scheme[0].method_kind, 2u);
    ExpectSavedAsItIs();
    EXPECT_EQ(Delete(Scheme(), 1), DOM_OK);
    EXPECT_EQ(Policy().acct_scheme[0].method_kind, 5u);
    ExpectSavedAsItIs();
    EXPECT_EQ(Set(DOM_ita_tlv_EncodeAcctTogether("gold"), 1), DOM_OK);
    EXPECT_EQ(Policy().together_state, 1);
    ExpectSavedAsItIs();
    EXPECT_EQ(Delete(DOM_ita_tlv_EncodeAcctTogether("gold"), 1), DOM_OK);
    EXPECT_EQ(Policy().together_state, 0);
    ExpectSavedAsItIs();
    EXPECT_EQ(Set(Level(), 1), DOM_OK);
    EXPECT_EQ(Policy().levels[0].level_value, 300u);
    ExpectSavedAsItIs();
    EXPECT_EQ(Delete(Level(), 1), DOM_OK);
    EXPECT_EQ(Policy().levels[0].level_id, 0u);
    ExpectSavedAsItIs();
    EXPECT_EQ(Set(DOM_ita_tlv_EncodeTrafSeprate("gold"), 1), DOM_OK);
    EXPECT_EQ(Policy().separation_state, 1);
    ExpectSavedAsItIs();
    EXPECT_EQ(Delete(DOM_ita_tlv_EncodeTrafSeprate("gold"), 1), DOM_OK);
    EXPECT_EQ(Policy().separation_state, 0);
    ExpectSavedAsItIs();
}

TEST_F(RestoreItaPolicies, TheQuotaOutStateComesFromTheMessageAlone) {
    ASSERT_EQ(Set(Name()), DOM_OK);
    EXPECT_EQ(Delete(DOM_ita_tlv_EncodeTrafQuotaOut("gold", 9), 1), DOM_OK);
    EXPECT_EQ(Policy().quota_out_state, 9);
    ExpectSavedAsItIs();
    EXPECT_EQ(Set(DOM_ita_tlv_EncodeTrafQuotaOut("gold", 0), 1), DOM_OK);
    EXPECT_EQ(Policy().quota_out_state, 0);
}

// The answer to every deletion of a saved accounting policy; the daemon looks for the key.
TEST_F(RestoreItaPolicies, DeletingASavedPolicyWorksAndReportsFailure) {
    ASSERT_EQ(Set(Name(), 1), DOM_OK);
    ASSERT_TRUE(Saved());
    EXPECT_EQ(Delete(Name(), 1), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_ita_IsPolicyExist("gold"), 0u);
    EXPECT_FALSE(Saved());
}

TEST_F(RestoreItaPolicies, NothingIsSavedUnlessAskedFor) {
    EXPECT_EQ(Set(Whole()), DOM_OK);
    EXPECT_TRUE(fake::DbmCalls().empty());
}

TEST_F(RestoreItaPolicies, ThePolicyNameIsHandedOutAlsoWhenTheStoreRefuses) {
    EXPECT_EQ(Set(DOM_ita_tlv_EncodeAcctTogether("gold"), 1), DOM_ERR_NOT_FOUND);
    EXPECT_STREQ(name2_, "gold");
    EXPECT_STREQ(name1_, "untouched");
    EXPECT_FALSE(Saved());
}

TEST_F(RestoreItaPolicies, ThePolicyNameOfASchemeWithoutMethodsIsHandedOut) {
    const TlvPtr scheme(MessageBuilder(DOM_MSG_ITA_ACCT_SCHEME).Build([](Appender& append) {
        append.Text(DOM_TLV_ITA_POLICY_NAME, "gold");
    }));
    const TlvPtr msg(AAA_AddOpHead(DOM_OP_SET, scheme.get()));
    EXPECT_EQ(DOM_RestoreData(msg.get(), 1, sizeof name1_, sizeof name2_, name1_, name2_),
              DOM_ERR_FAILED);
    EXPECT_STREQ(name2_, "gold");
}

TEST_F(RestoreItaPolicies, TheConfigurationThreadRefusesAll) {
    fake::role_of_this_thread = fake::kConfigRole;
    TLV_MSG* const messages[] = {Whole(),
                                 Name(),
                                 Scheme(),
                                 DOM_ita_tlv_EncodeAcctTogether("gold"),
                                 Level(),
                                 DOM_ita_tlv_EncodeTrafSeprate("gold"),
                                 DOM_ita_tlv_EncodeTrafQuotaOut("gold", 1)};
    for (TLV_MSG* msg : messages) {
        EXPECT_EQ(Set(msg, 1), DOM_ERR_FAILED);
        EXPECT_STREQ(name2_, "untouched");
    }
    EXPECT_EQ(DOM_ita_policy_GetDomPolicyByName("gold"), nullptr);
    EXPECT_TRUE(fake::DbmCalls().empty());
    fake::role_of_this_thread = fake::kWorkingRole;
}

}  // namespace
}  // namespace aaadom
