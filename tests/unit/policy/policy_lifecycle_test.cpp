#include <aaadom/results.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

#include "fakes/fake_platform.h"
#include "fakes/role.h"
#include "policy/ita_store.h"
#include "policy/rec_policy.h"

namespace aaadom {
namespace {

class PolicyLifecycle : public testing::Test {
  protected:
    PolicyLifecycle() { fake::Reset(); }
    ~PolicyLifecycle() override {
        DOM_ResetAAADService();
        EXPECT_EQ(fake::LiveHashTables(), 0);
        EXPECT_EQ(fake::HeldLocks(), 0);
    }
    /// Links a policy at the head of its bucket.
    static void Put(HASH_TABLE* table, const char* name, const char* scheme) {
        auto* policy = static_cast<ItaPolicy*>(calloc(1, sizeof(ItaPolicy)));
        strcpy(policy->name, name);
        policy->acct_scheme[0].method_kind = 1;
        strcpy(policy->acct_scheme[0].scheme_name, scheme);
        HASH_NODE** head = &table->buckets[ItaPolicyBucket(name)];
        policy->hash_links.next = *head;
        policy->hash_links.prev_link = head;
        if (*head != nullptr) (*head)->prev_link = &policy->hash_links.next;
        *head = &policy->hash_links;
    }
    const fake::ScopedRole working_{fake::kWorkingRole};
};

TEST_F(PolicyLifecycle, EachRoleHasATableOf128Buckets) {
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
TEST_F(PolicyLifecycle, SecondInitOfTheWorkingRoleFails) {
    EXPECT_EQ(DOM_ita_policy_Init(), DOM_OK);
    HASH_TABLE* table = g_pstDomainItaPolicyTable;
    EXPECT_EQ(DOM_ita_policy_Init(), DOM_ERR_FAILED);
    EXPECT_EQ(g_pstDomainItaPolicyTable, table);
    DOM_ita_policy_Fini();
}

TEST_F(PolicyLifecycle, SecondInitOfTheConfigurationRoleSucceeds) {
    const fake::ScopedRole config(fake::kConfigRole);
    EXPECT_EQ(DOM_ita_policy_Init(), DOM_OK);
    EXPECT_EQ(DOM_ita_policy_Init(), DOM_OK);
    EXPECT_EQ(fake::LiveHashTables(), 1);
    DOM_ita_policy_Fini();
}

TEST_F(PolicyLifecycle, TableThatCannotBeMadeFailsInEachRole) {
    for (uint32_t role : {fake::kWorkingRole, fake::kConfigRole}) {
        const fake::ScopedRole scoped(role);
        fake::FailHashCreate(1);
        EXPECT_EQ(DOM_ita_policy_Init(), DOM_ERR_FAILED);
        EXPECT_EQ(DOM_ita_policy_Init(), DOM_OK);
        DOM_ita_policy_Fini();
    }
}

TEST_F(PolicyLifecycle, MutexThatCannotBeMadeFailsTheWorkingRole) {
    fake::FailLockInit(1);
    EXPECT_EQ(DOM_ita_policy_Init(), DOM_ERR_FAILED);
    EXPECT_EQ(g_pstDomainItaPolicyTable, nullptr);
}

TEST_F(PolicyLifecycle, ConfigurationRoleTakesNoLock) {
    const fake::ScopedRole config(fake::kConfigRole);
    DOM_ita_policy_Init();
    DOM_Rec_policy_Init();
    DOM_Rec_policy_Fini();
    DOM_ita_policy_Fini();
    EXPECT_EQ(fake::Count(fake::Event::kLock), 0u);
    EXPECT_EQ(fake::Count(fake::Event::kLockInit), 0u);
}

TEST_F(PolicyLifecycle, WorkingRoleChangesItsStoresUnderTheirMutexes) {
    DOM_ita_policy_Init();
    EXPECT_EQ(fake::Count(fake::Event::kLock), 0u);
    DOM_Rec_policy_Init();
    EXPECT_EQ(fake::Count(fake::Event::kLock), 1u);
    DOM_Rec_policy_Fini();
    EXPECT_EQ(fake::Count(fake::Event::kLock), 2u);
    DOM_ita_policy_Fini();
    EXPECT_EQ(fake::Count(fake::Event::kLock), 3u);
}

TEST_F(PolicyLifecycle, MethodsOfAnAbsentPolicyFail) {
    MethodList list;
    memset(&list, 0x5A, sizeof list);
    MethodList before = list;
    EXPECT_EQ(DOM_ita_policy_GetMethodList("acct", &list), DOM_ERR_FAILED);  // no table
    DOM_ita_policy_Init();
    EXPECT_EQ(DOM_ita_policy_GetMethodList("acct", &list), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_ita_policy_GetMethodList("", &list), DOM_ERR_FAILED);
    EXPECT_EQ(memcmp(&list, &before, sizeof list), 0);
    DOM_ita_policy_Fini();
}

TEST_F(PolicyLifecycle, MethodsAreCopiedWithoutTypeAndService) {
    DOM_ita_policy_Init();
    Put(g_pstDomainItaPolicyTable, "acct", "scheme");
    MethodList list{};
    list.aaa_type = 77;
    list.service = 78;
    EXPECT_EQ(DOM_ita_policy_GetMethodList("acct", &list), DOM_OK);
    EXPECT_EQ(list.aaa_type, 77u);
    EXPECT_EQ(list.service, 78u);
    EXPECT_EQ(list.methods[0].method_kind, 1u);
    EXPECT_STREQ(list.methods[0].scheme_name, "scheme");
    DOM_ita_policy_Fini();
}

TEST_F(PolicyLifecycle, PolicyNamesAreComparedExactly) {
    DOM_ita_policy_Init();
    Put(g_pstDomainItaPolicyTable, "acct", "scheme");
    MethodList list{};
    EXPECT_EQ(DOM_ita_policy_GetMethodList("Acct", &list), DOM_ERR_FAILED);
    DOM_ita_policy_Fini();
}

TEST_F(PolicyLifecycle, MethodsAreReadUnderTheMutexInBothRoles) {
    fake::InRole(fake::kConfigRole, [] { return DOM_ita_policy_Init(); });
    Put(g_pstDomainItaPolicyThrTable, "acct", "config");
    MethodList list{};
    uint64_t locks = fake::Count(fake::Event::kLock);
    EXPECT_EQ(DOM_ita_policy_GetMethodList("acct", &list), DOM_ERR_FAILED);
    EXPECT_EQ(fake::InRole(fake::kConfigRole,
                           [&] { return DOM_ita_policy_GetMethodList("acct", &list); }),
              DOM_OK);
    EXPECT_STREQ(list.methods[0].scheme_name, "config");
    EXPECT_EQ(fake::Count(fake::Event::kLock), locks + 2);
    fake::InRole(fake::kConfigRole, [] { return DOM_ita_policy_Fini(), 0; });
}

TEST_F(PolicyLifecycle, NullArgumentsFail) {
    MethodList list{};
    EXPECT_EQ(DOM_ita_policy_GetMethodList(nullptr, &list), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_ita_policy_GetMethodList("acct", nullptr), DOM_ERR_FAILED);
}

TEST_F(PolicyLifecycle, RecordingPolicyHasASlotForEachRole) {
    EXPECT_NE(&RecPolicySlot(Role::kConfig, 0), &RecPolicySlot(Role::kWorking, 0));
    EXPECT_EQ(&RecPolicySlot(Role::kConfig, 0) + 1, &RecPolicySlot(Role::kWorking, 0));
}

TEST_F(PolicyLifecycle, RecordingInitForgetsAndFiniFrees) {
    for (uint32_t role : {fake::kWorkingRole, fake::kConfigRole}) {
        const fake::ScopedRole scoped(role);
        RecPolicy*& slot = RecPolicySlot(CurrentRole(), DOM_REC_POLICY_CONNECTION);
        RecPolicy former{};
        slot = &former;
        EXPECT_EQ(DOM_Rec_policy_Init(), DOM_OK);
        EXPECT_EQ(slot, nullptr);
        slot = static_cast<RecPolicy*>(calloc(1, sizeof(RecPolicy)));
        DOM_Rec_policy_Fini();
        EXPECT_EQ(slot, nullptr);
    }
}

TEST_F(PolicyLifecycle, RecordingInitEmptiesTheSlotAlsoWithoutAMutex) {
    RecPolicy former{};
    RecPolicySlot(Role::kWorking, 0) = &former;
    fake::FailLockInit(1);
    EXPECT_EQ(DOM_Rec_policy_Init(), DOM_ERR_FAILED);
    EXPECT_EQ(RecPolicySlot(Role::kWorking, 0), nullptr);
}

}  // namespace
}  // namespace aaadom
