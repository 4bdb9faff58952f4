// The saved recording policy against its bytes.
#include <aaadom/database.h>
#include <aaadom/recording_policy.h>
#include <aaadom/results.h>

#include <cstring>
#include <string>

#include "tests/golden/hex_file.h"
#include "tests/golden/sample_policy.h"
#include "tests/golden/temporary_database.h"

namespace {

const std::string kKey("connection-recording-policy\0", 28);

class RecPolicyDbGolden : public golden::TemporaryDatabase {
  protected:
    void SetUp() override {
        TemporaryDatabase::SetUp();
        if (HasFatalFailure()) return;
        ASSERT_EQ(DOM_Rec_policy_Init(), DOM_OK);
        DOM_Rec_db_SetGlobalHandle(handle_);
    }
    void TearDown() override {
        DOM_Rec_db_SetGlobalHandle(DBM_INVALID_HANDLE);
        DOM_Rec_policy_Fini();
        TemporaryDatabase::TearDown();
    }
    static void SaveSample() {
        ASSERT_EQ(DOM_Rec_CreatePolicy(0), DOM_OK);
        ASSERT_EQ(DOM_Rec_policy_SetAcctScheme(0, golden::SamplePolicy().acct_scheme), DOM_OK);
        ASSERT_EQ(DOM_Rec_db_SetPolicy(0, 1), DOM_OK);
    }
};

TEST_F(RecPolicyDbGolden, SavingWritesTheFile) {
    SaveSample();
    std::string value(DOM_DB_VALUE_MAX, '\0');
    const int32_t length = DBM_GetBinary(handle_, kKey.data(), static_cast<uint32_t>(kKey.size()),
                                         0, DOM_DB_VALUE_MAX, value.data());
    ASSERT_GT(length, 0);
    value.resize(static_cast<size_t>(length));
    EXPECT_EQ(golden::ToHex(value), golden::ToHex(golden::ReadHexFile("db_rec_policy")));
}

TEST_F(RecPolicyDbGolden, KeyKindAndValueTypeAreTheRecords) {
    SaveSample();
    ASSERT_EQ(DBM_GetKeyNumByValueType(handle_, 9), 1u);
    void* iterator = nullptr;
    DBM_KEY_SLOT slot{};
    ASSERT_EQ(DBM_GetKeysByValueType(handle_, 1, 9, &iterator, &slot), 1u);
    DBM_FreeIterator(iterator);
    EXPECT_EQ(std::string(slot.key, slot.key_length), kKey);
    EXPECT_EQ(slot.kind, uint32_t{DBM_KIND_BINARY});
}

TEST_F(RecPolicyDbGolden, ReadingTheFileGivesThePolicy) {
    const std::string value = golden::ReadHexFile("db_rec_policy");
    ASSERT_FALSE(value.empty());
    ASSERT_EQ(DBM_SetBinary(handle_, kKey.data(), static_cast<uint32_t>(kKey.size()), -1,
                            static_cast<uint32_t>(value.size()), value.data(), 9),
              0u);
    RecPolicy* policy = DOM_Rec_db_GetPolicyFromDBByType(handle_, 0);
    ASSERT_NE(policy, nullptr);
    EXPECT_EQ(policy->policy_type, 0u);
    EXPECT_EQ(
        memcmp(policy->acct_scheme, golden::SamplePolicy().acct_scheme, sizeof policy->acct_scheme),
        0);
    free(policy);
}

}  // namespace
