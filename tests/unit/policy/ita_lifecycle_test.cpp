#include <aaadom/accounting_policy.h>
#include <aaadom/results.h>
#include <gtest/gtest.h>

#include "fakes/fake_platform.h"
#include "fakes/role.h"
#include "unit/policy/store_probe.h"

namespace aaadom {
namespace {

class ItaLifecycle : public testing::Test {
  protected:
    ItaLifecycle() { fake::Reset(); }
    ~ItaLifecycle() override {
        DOM_ResetAAADService();
        EXPECT_EQ(fake::LiveHashTables(), 0);
        EXPECT_EQ(fake::HeldLocks(), 0);
    }
    const fake::ScopedRole working_{fake::kWorkingRole};
};

TEST_F(ItaLifecycle, EachRoleHasATableOf128Buckets) {
    EXPECT_EQ(DOM_ita_policy_Init(), DOM_OK);
    EXPECT_EQ(g_pstDomainItaPolicyThrTable, nullptr);
    EXPECT_EQ(g_pstDomainItaPolicyTable->bucket_count, 128u);
    fake::InRole(fake::kConfigRole, [] { return DOM_ita_policy_Init(); });
    EXPECT_EQ(g_pstDomainItaPolicyThrTable->bucket_count, 128u);
    fake::InRole(fake::kConfigRole, [] { return DOM_ita_policy_Fini(), 0; });
    EXPECT_EQ(g_pstDomainItaPolicyThrTable, nullptr);
    EXPECT_NE(g_pstDomainItaPolicyTable, nullptr);
    DOM_ita_policy_Fini();
    EXPECT_EQ(g_pstDomainItaPolicyTable, nullptr);
}

// The daemon learns from it that it starts the working role twice.
TEST_F(ItaLifecycle, SecondInitOfTheWorkingRoleFails) {
    EXPECT_EQ(DOM_ita_policy_Init(), DOM_OK);
    HASH_TABLE* table = g_pstDomainItaPolicyTable;
    EXPECT_EQ(DOM_ita_policy_Init(), DOM_ERR_FAILED);
    EXPECT_EQ(g_pstDomainItaPolicyTable, table);
    DOM_ita_policy_Fini();
}

TEST_F(ItaLifecycle, SecondInitOfTheConfigurationRoleSucceeds) {
    const fake::ScopedRole config(fake::kConfigRole);
    EXPECT_EQ(DOM_ita_policy_Init(), DOM_OK);
    EXPECT_EQ(DOM_ita_policy_Init(), DOM_OK);
    EXPECT_EQ(fake::LiveHashTables(), 1);
    DOM_ita_policy_Fini();
}

TEST_F(ItaLifecycle, TableThatCannotBeMadeFailsInEachRole) {
    for (uint32_t role : {fake::kWorkingRole, fake::kConfigRole}) {
        const fake::ScopedRole scoped(role);
        fake::FailHashCreate(1);
        EXPECT_EQ(DOM_ita_policy_Init(), DOM_ERR_FAILED);
        EXPECT_EQ(DOM_ita_policy_Init(), DOM_OK);
        DOM_ita_policy_Fini();
    }
}

TEST_F(ItaLifecycle, MutexThatCannotBeMadeFailsTheWorkingRole) {
    fake::FailLockInit(1);
    EXPECT_EQ(DOM_ita_policy_Init(), DOM_ERR_FAILED);
    EXPECT_EQ(g_pstDomainItaPolicyTable, nullptr);
}

TEST_F(ItaLifecycle, ConfigurationRoleTakesNoLock) {
    const fake::ScopedRole config(fake::kConfigRole);
    DOM_ita_policy_Init();
    DOM_ita_policy_Fini();
    EXPECT_EQ(fake::Count(fake::Event::kLock), 0u);
    EXPECT_EQ(fake::Count(fake::Event::kLockInit), 0u);
}

TEST_F(ItaLifecycle, WorkingRoleDestroysItsTableUnderTheMutex) {
    DOM_ita_policy_Init();
    EXPECT_EQ(fake::Count(fake::Event::kLock), 0u);
    DOM_ita_policy_Fini();
    EXPECT_EQ(fake::Count(fake::Event::kLock), 1u);
}

// The mutex may be in use by then.
TEST_F(ItaLifecycle, SecondInitOfTheWorkingRoleLeavesTheMutexAlone) {
    EXPECT_EQ(DOM_ita_policy_Init(), DOM_OK);
    EXPECT_EQ(fake::Count(fake::Event::kLockInit), 1u);
    EXPECT_EQ(DOM_ita_policy_Init(), DOM_ERR_FAILED);
    EXPECT_EQ(fake::Count(fake::Event::kLockInit), 1u);
    DOM_ita_policy_Fini();
}

TEST_F(ItaLifecycle, WorkingRoleMakesTheMutexNewAtBothEnds) {
    ExpectNewAtBothEnds(g_stDomainItaPolicyTableMutexLock, DOM_ita_policy_Init,
                        DOM_ita_policy_Fini);
}

TEST_F(ItaLifecycle, FiniFreesTheRolesPoliciesOnly) {
    DOM_ita_policy_Init();
    fake::InRole(fake::kConfigRole, [] { return DOM_ita_policy_Init(); });
    for (const char* name : {"p2", "p82", "p3"}) DOM_ita_policy_Create(name);
    fake::InRole(fake::kConfigRole, [] { return DOM_ita_policy_Create("p2"); });
    DOM_ita_policy_Fini();
    EXPECT_EQ(DOM_ita_IsPolicyExist("p2"), 0u);
    EXPECT_EQ(fake::InRole(fake::kConfigRole, [] { return DOM_ita_IsPolicyExist("p2"); }), 1u);
    fake::InRole(fake::kConfigRole, [] { return DOM_ita_policy_Fini(), 0; });
}

TEST_F(ItaLifecycle, TableGettersTellTheRolesTableAndTheWorkingOne) {
    EXPECT_EQ(DOM_GetItaPolicyGlobalVarByThr(), nullptr);
    EXPECT_EQ(DOM_ita_policy_GetHashTable(), nullptr);
    DOM_ita_policy_Init();
    fake::InRole(fake::kConfigRole, [] { return DOM_ita_policy_Init(); });
    EXPECT_EQ(DOM_GetItaPolicyGlobalVarByThr(), g_pstDomainItaPolicyTable);
    EXPECT_EQ(DOM_ita_policy_GetHashTable(), g_pstDomainItaPolicyTable);
    fake::InRole(fake::kConfigRole, [] {
        EXPECT_EQ(DOM_GetItaPolicyGlobalVarByThr(), g_pstDomainItaPolicyThrTable);
        EXPECT_EQ(DOM_ita_policy_GetHashTable(), g_pstDomainItaPolicyTable);
        return DOM_ita_policy_Fini(), 0;
    });
    DOM_ita_policy_Fini();
}

// Only the low 16 bits of the daemon's answer tell the role.
TEST_F(ItaLifecycle, HighBitsOfTheRoleDoNotCount) {
    fake::InRole(0x10001, [] { return DOM_ita_policy_Init(); });
    EXPECT_NE(g_pstDomainItaPolicyThrTable, nullptr);
    EXPECT_EQ(g_pstDomainItaPolicyTable, nullptr);
    fake::InRole(0x20000, [] { return DOM_ita_policy_Init(); });
    EXPECT_NE(g_pstDomainItaPolicyTable, nullptr);
    fake::InRole(0x10001, [] { return DOM_ita_policy_Fini(), 0; });
    DOM_ita_policy_Fini();
}

/// Every call on a policy in a role that has no table.
void ExpectAllAbsent() {
    const MethodEntry methods[DOM_METHODS] = {};
    MethodList list{};
    ItaServicePolicy service{};
    EXPECT_EQ(DOM_ita_policy_GetDomPolicyByName("p"), nullptr);
    EXPECT_EQ(DOM_ita_policy_Create("p"), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_ita_policy_Delete("p"), DOM_ERR_NOT_FOUND);
    EXPECT_EQ(DOM_ita_policy_SetAcctScheme("p", methods), DOM_ERR_NOT_FOUND);
    EXPECT_EQ(DOM_ita_policy_UnSetAcctScheme("p"), DOM_ERR_NOT_FOUND);
    EXPECT_EQ(DOM_ita_policy_SetTogetherState("p", 1), DOM_ERR_NOT_FOUND);
    EXPECT_EQ(DOM_ita_policy_SetSeprateState("p", 1), DOM_ERR_NOT_FOUND);
    EXPECT_EQ(DOM_ita_policy_SetQuotaState("p", 1), DOM_ERR_NOT_FOUND);
    EXPECT_EQ(DOM_ita_policy_SetAcctLevel("p", 1, 1, 1, 1, 1, 1, 3), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_ita_policy_UnSetOneAcctLevel("p", 1), DOM_ERR_NOT_FOUND);
    EXPECT_EQ(DOM_ita_policy_UnSetAllAcctLevel("p"), DOM_ERR_NOT_FOUND);
    EXPECT_EQ(DOM_ita_policy_GetMethodList("p", &list), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_ita_policy_GetServicePolicyByName("p", &service), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_ita_IsPolicyExist("p"), 0u);
    DOM_ita_policy_AddPolicy(DOM_ita_CreatePolicy("p"));  // freed, the leak checker says
    EXPECT_EQ(DOM_ita_IsPolicyExist("p"), 0u);
}

TEST_F(ItaLifecycle, BeforeInitAndAfterFiniEveryPolicyIsAbsent) {
    for (uint32_t role : {fake::kWorkingRole, fake::kConfigRole}) {
        const fake::ScopedRole scoped(role);
        ExpectAllAbsent();
        EXPECT_EQ(DOM_ita_policy_Init(), DOM_OK);
        DOM_ita_policy_Create("p");
        DOM_ita_policy_Fini();
        ExpectAllAbsent();
    }
}

}  // namespace
}  // namespace aaadom
