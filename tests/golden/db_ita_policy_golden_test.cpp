// Saved accounting policies against their bytes: the current form in both directions, the form of
// former releases as it is read.
#include <aaadom/accounting_policy_codec.h>
#include <aaadom/database.h>
#include <aaadom/results.h>

#include <cstring>
#include <string>

#include "tests/golden/hex_file.h"
#include "tests/golden/sample_policy.h"
#include "tests/golden/temporary_database.h"

namespace {

const std::string kCurrentKey("dom-tlv-ita-policy-gold\0", 24);
const std::string kOldKey("dom-ita-policy-gold\0", 20);

class ItaPolicyDbGolden : public golden::TemporaryDatabase {
  protected:
    void SetUp() override {
        TemporaryDatabase::SetUp();
        if (HasFatalFailure()) return;
        ASSERT_EQ(DOM_ita_policy_Init(), DOM_OK);
        DOM_ita_db_SetGlobalHandle(handle_);
    }
    void TearDown() override {
        DOM_ita_db_SetGlobalHandle(DBM_INVALID_HANDLE);
        DOM_ita_policy_Fini();
        TemporaryDatabase::TearDown();
    }
    std::string Get(const std::string& key) const {
        std::string value(DOM_DB_VALUE_MAX, '\0');
        const int32_t length = DBM_GetBinary(handle_, key.data(), static_cast<uint32_t>(key.size()),
                                             0, DOM_DB_VALUE_MAX, value.data());
        value.resize(length < 0 ? 0 : static_cast<size_t>(length));
        return value;
    }
    void Put(const std::string& key, const char* file) const {
        const std::string value = golden::ReadHexFile(file);
        ASSERT_FALSE(value.empty());
        ASSERT_EQ(DBM_SetBinary(handle_, key.data(), static_cast<uint32_t>(key.size()), -1,
                                static_cast<uint32_t>(value.size()), value.data(), 8),
                  0u);
    }
    void ExpectSample() const {
        ItaPolicy* policy = DOM_ita_db_GetMemPolicyFromDBByName(handle_, "gold");
        ASSERT_NE(policy, nullptr);
        const ItaPolicy want = golden::SamplePolicy();
        EXPECT_STREQ(policy->name, want.name);
        EXPECT_EQ(memcmp(policy->acct_scheme, want.acct_scheme, sizeof want.acct_scheme), 0);
        EXPECT_EQ(policy->level_count, want.level_count);
        EXPECT_EQ(memcmp(policy->levels, want.levels, sizeof want.levels), 0);
        EXPECT_EQ(policy->together_state, want.together_state);
        EXPECT_EQ(policy->separation_state, want.separation_state);
        EXPECT_EQ(policy->quota_out_state, want.quota_out_state);
        DOM_ita_policy_DestroyPolicy(policy);
    }
};

TEST_F(ItaPolicyDbGolden, SavingWritesTheFile) {
    ItaPolicy* policy = DOM_ita_CreatePolicy("gold");
    ASSERT_NE(policy, nullptr);
    *policy = golden::SamplePolicy();
    DOM_ita_policy_AddPolicy(policy);
    ASSERT_EQ(DOM_ita_db_SetPolicy("gold", 1), DOM_OK);
    EXPECT_EQ(golden::ToHex(Get(kCurrentKey)), golden::ToHex(golden::ReadHexFile("db_ita_policy")));
}

TEST_F(ItaPolicyDbGolden, KeyKindAndValueTypeAreTheRecords) {
    DOM_ita_policy_Create("gold");
    ASSERT_EQ(DOM_ita_db_SetPolicy("gold", 1), DOM_OK);
    ASSERT_EQ(DBM_GetKeyNumByValueType(handle_, 8), 1u);
    void* iterator = nullptr;
    DBM_KEY_SLOT slot{};
    ASSERT_EQ(DBM_GetKeysByValueType(handle_, 1, 8, &iterator, &slot), 1u);
    DBM_FreeIterator(iterator);
    EXPECT_EQ(std::string(slot.key, slot.key_length), kCurrentKey);
    EXPECT_EQ(slot.kind, uint32_t{DBM_KIND_BINARY});
}

TEST_F(ItaPolicyDbGolden, ReadingTheFileGivesThePolicy) {
    Put(kCurrentKey, "db_ita_policy");
    ExpectSample();
}

TEST_F(ItaPolicyDbGolden, ReadingTheOldFileGivesThePolicyAndWritesTheCurrentOne) {
    Put(kOldKey, "db_ita_policy_old");
    ExpectSample();
    EXPECT_EQ(golden::ToHex(Get(kCurrentKey)), golden::ToHex(golden::ReadHexFile("db_ita_policy")));
    EXPECT_EQ(DBM_IsKeyExist(handle_, kOldKey.data(), static_cast<uint32_t>(kOldKey.size())), 0u);
}

// What tests put into databases is what former releases stored.
TEST_F(ItaPolicyDbGolden, TheWriterOfOldPoliciesWritesTheOldFile) {
    EXPECT_EQ(golden::ToHex(golden::OldBlock(golden::SamplePolicy())),
              golden::ToHex(golden::ReadHexFile("db_ita_policy_old")));
    EXPECT_EQ(golden::OldKey("gold"), kOldKey);
    EXPECT_EQ(golden::CurrentKey("gold"), kCurrentKey);
}

}  // namespace
