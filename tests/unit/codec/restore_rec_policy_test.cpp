#include <aaadom/method_codec.h>
#include <aaadom/recording_policy.h>

#include "unit/codec/restore_fixture.h"

namespace aaadom {
namespace {

/// The store has a handle of its own.
class RestoreRecPolicyTest : public RestoreTest {
  protected:
    void SetUp() override {
        RestoreTest::SetUp();
        DOM_Rec_db_SetGlobalHandle(handle_);
        methods_[0].method_kind = 2;
    }
    void TearDown() override {
        DOM_Rec_db_SetGlobalHandle(DBM_INVALID_HANDLE);
        RestoreTest::TearDown();
    }
    bool IsSaved() const { return DOM_Rec_PolicyIsExist(handle_, 0) == 1; }
    TLV_MSG* Type(uint32_t type = 0) const { return DOM_Rec_tlv_EncodePolicyType(type); }
    TLV_MSG* Scheme(uint32_t type = 0) const {
        return DOM_Rec_tlv_EncodeAcctScheme(type, methods_);
    }
    TLV_MSG* Whole() const {
        RecPolicy policy{};
        policy.acct_scheme[0] = methods_[0];
        return DOM_Rec_tlv_EncodePolicy(&policy);
    }
    /// Kind of the first method of the caller's policy, 99 without a policy.
    static uint32_t FirstKind() {
        RecPolicy policy;
        return DOM_Rec_GetPolicy(0, &policy) == DOM_OK ? policy.acct_scheme[0].method_kind : 99;
    }
    /// Kind of the first saved method, 99 when nothing is saved.
    uint32_t SavedKind() const {
        RecPolicy* policy = DOM_Rec_db_GetPolicyFromDBByType(handle_, 0);
        const uint32_t kind = policy == nullptr ? 99 : policy->acct_scheme[0].method_kind;
        free(policy);
        return kind;
    }

    MethodEntry methods_[DOM_METHODS] = {};
};

TEST_F(RestoreRecPolicyTest, OperationZeroCreatesAndSaves) {
    for (const uint32_t role : {fake::kConfigRole, fake::kWorkingRole}) {
        fake::role_of_this_thread = role;
        EXPECT_EQ(Set(Type(), 1), DOM_OK);
        EXPECT_EQ(FirstKind(), 0u);
        EXPECT_EQ(SavedKind(), 0u);
        EXPECT_EQ(Set(Type(), 1), DOM_ERR_EXISTS);
    }
}

TEST_F(RestoreRecPolicyTest, OtherOperationsDeleteFromStoreAndDatabase) {
    for (const uint32_t op : {1u, 2u, 7u}) {
        EXPECT_EQ(Set(Type(), 1), DOM_OK);
        EXPECT_EQ(Restore(Type(), op, 1), DOM_OK);
        EXPECT_EQ(FirstKind(), 99u);
        EXPECT_FALSE(IsSaved());
        EXPECT_EQ(Restore(Type(), op, 1), DOM_ERR_NOT_FOUND);
    }
}

TEST_F(RestoreRecPolicyTest, DeletionOfWhatIsNotSavedFailsAfterTheStore) {
    EXPECT_EQ(Set(Type(), 0), DOM_OK);
    EXPECT_NE(Delete(Type(), 1), DOM_OK);
    EXPECT_EQ(FirstKind(), 99u);
}

TEST_F(RestoreRecPolicyTest, WithoutSaveTheDatabaseStays) {
    EXPECT_EQ(Set(Type()), DOM_OK);
    EXPECT_EQ(Set(Scheme()), DOM_OK);
    EXPECT_EQ(Delete(Type()), DOM_OK);
    EXPECT_TRUE(fake::DbmCalls().empty());
}

TEST_F(RestoreRecPolicyTest, SchemeIsSetAndUnsetAndSavedBothTimes) {
    EXPECT_EQ(Set(Scheme(), 1), DOM_ERR_NOT_FOUND);
    EXPECT_EQ(Set(Type(), 1), DOM_OK);
    EXPECT_EQ(Set(Scheme(), 1), DOM_OK);
    EXPECT_EQ(FirstKind(), 2u);
    EXPECT_EQ(SavedKind(), 2u);
    EXPECT_EQ(Delete(Scheme(), 1), DOM_OK);
    EXPECT_EQ(FirstKind(), 0u);
    EXPECT_EQ(SavedKind(), 0u);
}

TEST_F(RestoreRecPolicyTest, WholePolicyIsCreatedAndSaved) {
    EXPECT_EQ(Set(Whole(), 1), DOM_OK);
    EXPECT_EQ(FirstKind(), 2u);
    EXPECT_EQ(SavedKind(), 2u);
    EXPECT_EQ(Set(Whole(), 1), DOM_OK);
}

TEST_F(RestoreRecPolicyTest, OtherTypesAreRefused) {
    EXPECT_EQ(Set(Type(1), 1), DOM_ERR_FAILED);
    EXPECT_EQ(Set(Scheme(1), 1), DOM_ERR_FAILED);
    EXPECT_TRUE(fake::DbmCalls().empty());
}

TEST_F(RestoreRecPolicyTest, NamesStayUntouched) {
    EXPECT_EQ(Set(Type(), 1), DOM_OK);
    EXPECT_STREQ(name1_, "untouched");
    EXPECT_STREQ(name2_, "untouched");
}

}  // namespace
}  // namespace aaadom
