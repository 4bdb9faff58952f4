#include <aaadom/accounting_policy_codec.h>

#include "golden/sample_policy.h"
#include "unit/db/config_db_fixture.h"

namespace aaadom {
namespace {

class SaveItaPolicies : public ConfigDbTest {
  protected:
    void SetUp() override {
        ConfigDbTest::SetUp();
        fake::role_of_this_thread = fake::kWorkingRole;
        DOM_ita_db_SetGlobalHandle(handle_);
    }
    void TearDown() override {
        DOM_ita_db_SetGlobalHandle(DBM_INVALID_HANDLE);
        ConfigDbTest::TearDown();
    }
    static uint32_t Change(const char* name, uint16_t operation) {
        DomDbUpdateReq request{};
        DOM_ita_db_SetDbChangeInfo(name, operation, &request);
        return DOM_SetDataToDB(&request);
    }
};

TEST_F(SaveItaPolicies, SavesThePolicyThatTheRecordNames) {
    DOM_ita_policy_Create("gold");
    EXPECT_EQ(Change("gold", 1), DOM_OK);
    EXPECT_EQ(DOM_ita_db_IsPolicyExist(handle_, "gold"), 1u);
    EXPECT_EQ(fake::DbmCalls("DBM_SetBinary")[0].value_type, 8u);
}

TEST_F(SaveItaPolicies, APolicyThatDoesNotExistIsNotSaved) {
    EXPECT_EQ(Change("gold", 1), DOM_ERR_FAILED);
    EXPECT_TRUE(fake::DbmCalls("DBM_SetBinary").empty());
}

// The result is that of the policy's own function, which answers every deletion so.
TEST_F(SaveItaPolicies, DeletingReportsFailureAlsoWhenItWorked) {
    DOM_ita_policy_Create("gold");
    ASSERT_EQ(Change("gold", 1), DOM_OK);
    EXPECT_EQ(Change("gold", 0), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_ita_db_IsPolicyExist(handle_, "gold"), 0u);
}

TEST_F(SaveItaPolicies, GoesThroughThePoliciesOwnHandle) {
    DOM_ita_policy_Create("gold");
    DOM_SetDomainDBMHandle(DBM_INVALID_HANDLE);
    EXPECT_EQ(Change("gold", 1), DOM_OK);
    DOM_SetDomainDBMHandle(handle_);
    DOM_ita_db_SetGlobalHandle(DBM_INVALID_HANDLE);
    EXPECT_EQ(Change("gold", 1), DOM_ERR_FAILED);
}

TEST_F(SaveItaPolicies, ANameThatFillsItsFieldIsCut) {
    DomDbUpdateReq request{};
    request.object_type = DOM_DB_ITA_POLICY;
    request.operation = DOM_PRESENT;
    memset(request.ita_policy_name, 'n', sizeof request.ita_policy_name);
    const std::string longest(31, 'n');
    DOM_ita_policy_Create(longest.c_str());
    EXPECT_EQ(DOM_SetDataToDB(&request), DOM_OK);
    EXPECT_EQ(DOM_ita_db_IsPolicyExist(handle_, longest.c_str()), 1u);
}

}  // namespace
}  // namespace aaadom
