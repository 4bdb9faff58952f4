#include <aaadom/accounting_policy.h>

#include "policy/rec_policy.h"
#include "unit/policy/rec_fixture.h"
#include "unit/policy/store_probe.h"

namespace aaadom {
namespace {

using RecStore = RecTest;

TEST_F(RecStore, OnlyTypeZeroHasAText) {
    char text[16] = "old";
    DOM_Rec_GetPolicyStrByPolicyType(1, sizeof text, text);
    EXPECT_STREQ(text, "old");
    DOM_Rec_GetPolicyStrByPolicyType(0xFFFFFFFF, sizeof text, text);
    EXPECT_STREQ(text, "old");
    DOM_Rec_GetPolicyStrByPolicyType(0, sizeof text, text);
    EXPECT_STREQ(text, "connection");
    DOM_Rec_GetPolicyStrByPolicyType(0, 5, text);
    EXPECT_STREQ(text, "conn");
    DOM_Rec_GetPolicyStrByPolicyType(0, 0, text);
    EXPECT_STREQ(text, "conn");
    DOM_Rec_GetPolicyStrByPolicyType(0, 8, nullptr);
}

TEST_F(RecStore, ModeIsTheTextAndTheSuffix) {
    char mode[49];
    memset(mode, 'x', sizeof mode);
    DOM_Rec_GetPolicyMode(0, mode);
    EXPECT_STREQ(mode, "connection-recording-policy");
    EXPECT_EQ(strlen(mode), 27u);
    DOM_Rec_GetPolicyMode(1, mode);
    EXPECT_STREQ(mode, "-recording-policy");
    DOM_Rec_GetPolicyMode(0, nullptr);
}

TEST_F(RecStore, EachRoleHasItsOwnPolicy) {
    CreateSample();
    EXPECT_EQ(Stored(), std::string("0: ") + kSampleMethods);
    fake::InRole(fake::kConfigRole, [] {
        EXPECT_EQ(Stored(), "-");
        EXPECT_EQ(DOM_Rec_IsPolicyExist(0), 0u);
        EXPECT_EQ(DOM_Rec_CreatePolicy(0), DOM_OK);
        EXPECT_EQ(Stored(), std::string("0: ") + kNoMethods);
        return 0;
    });
    EXPECT_EQ(Stored(), std::string("0: ") + kSampleMethods);
}

TEST_F(RecStore, HighBitsOfTheRoleDoNotCount) {
    fake::InRole(0x10001, [] { return DOM_Rec_CreatePolicy(0); });
    EXPECT_EQ(fake::InRole(fake::kConfigRole, [] { return DOM_Rec_IsPolicyExist(0); }), 1u);
    EXPECT_EQ(fake::InRole(0x20000, [] { return DOM_Rec_IsPolicyExist(0); }), 0u);
}

TEST_F(RecStore, CreationWithoutMemoryKeepsTheFormerPolicy) {
    CreateSample();
    fake::FailAllocation(1);
    EXPECT_EQ(DOM_Rec_CreatePolicy(0), DOM_ERR_NO_MEMORY);
    EXPECT_EQ(Stored(), std::string("0: ") + kSampleMethods);
}

// Whoever got the former record may still use it, so it is not freed.
TEST_F(RecStore, CreationReplacesWithoutFreeing) {
    InBothRoles([] {
        CreateSample();
        RecPolicy* former = DOM_Rec_GetPolicyByType(0);
        EXPECT_EQ(DOM_Rec_CreatePolicy(0), DOM_OK);
        EXPECT_NE(DOM_Rec_GetPolicyByType(0), former);
        EXPECT_EQ(ShowMethods(former->acct_scheme), kSampleMethods);
        EXPECT_EQ(Stored(), std::string("0: ") + kNoMethods);
        free(former);
    });
}

TEST_F(RecStore, InitForgetsWithoutFreeing) {
    InBothRoles([] {
        CreateSample();
        RecPolicy* former = DOM_Rec_GetPolicyByType(0);
        EXPECT_EQ(DOM_Rec_policy_Init(), DOM_OK);
        EXPECT_EQ(DOM_Rec_GetPolicyByType(0), nullptr);
        EXPECT_EQ(ShowMethods(former->acct_scheme), kSampleMethods);
        free(former);
    });
}

TEST_F(RecStore, InitWithoutAMutexFailsAndForgetsAllTheSame) {
    CreateSample();
    RecPolicy* former = DOM_Rec_GetPolicyByType(0);
    fake::FailLockInit(1);
    EXPECT_EQ(DOM_Rec_policy_Init(), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_Rec_GetPolicyByType(0), nullptr);
    free(former);
}

TEST_F(RecStore, InitAndFiniLockTheWorkingRoleOnly) {
    EXPECT_EQ(LocksOf([] { DOM_Rec_policy_Init(); }), 1u);
    EXPECT_EQ(LocksOf([] { DOM_Rec_policy_Fini(); }), 1u);
    fake::InRole(fake::kConfigRole, [] {
        const uint64_t made = fake::Count(fake::Event::kLockInit);
        EXPECT_EQ(LocksOf([] { DOM_Rec_policy_Init(); }), 0u);
        EXPECT_EQ(LocksOf([] { DOM_Rec_policy_Fini(); }), 0u);
        EXPECT_EQ(fake::Count(fake::Event::kLockInit), made);
        return 0;
    });
}

TEST_F(RecStore, FiniFreesTheCallersPolicyOnly) {
    InBothRoles([] { CreateSample(); });
    DOM_Rec_policy_Fini();
    EXPECT_EQ(Stored(), "-");
    fake::InRole(fake::kConfigRole, [] {
        EXPECT_NE(Stored(), "-");
        DOM_Rec_policy_Fini();
        EXPECT_EQ(Stored(), "-");
        return 0;
    });
}

TEST_F(RecStore, CallsAfterFiniFindAValidMutex) {
    DOM_Rec_policy_Fini();
    MethodList list{};
    EXPECT_EQ(DOM_Rec_policy_GetMethodList(0, &list), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_Rec_IsPolicyExist(0), 0u);
    EXPECT_EQ(pthread_mutex_trylock(&g_stRecPolicyTypeMutexLock), 0);
    pthread_mutex_unlock(&g_stRecPolicyTypeMutexLock);
}

// Each destroyer has its role, whoever calls it.
TEST_F(RecStore, DestroyersFreeTheirRolesPolicyInEitherRole) {
    for (const uint32_t caller : {fake::kWorkingRole, fake::kConfigRole}) {
        InBothRoles([] { CreateSample(); });
        const auto exists = [](uint32_t role) {
            return fake::InRole(role, [] { return DOM_Rec_IsPolicyExist(0); });
        };
        fake::InRole(caller, [] {
            EXPECT_EQ(LocksOf([] { DOM_Rec_DestroyPolicy(0); }), 1u);
            return 0;
        });
        EXPECT_EQ(exists(fake::kWorkingRole), 0u);
        EXPECT_EQ(exists(fake::kConfigRole), 1u);
        fake::InRole(caller, [] {
            EXPECT_EQ(LocksOf([] { DOM_Rec_DestroyThrPolicy(0); }), 0u);
            return 0;
        });
        EXPECT_EQ(exists(fake::kConfigRole), 0u);
        DOM_Rec_DestroyPolicy(0);
        DOM_Rec_DestroyThrPolicy(0);
    }
}

TEST_F(RecStore, AbsentPolicyIsNotFound) {
    const RecSample sample;
    InBothRoles([&] {
        RecPolicy policy;
        memset(&policy, 0x5A, sizeof policy);
        const RecPolicy before = policy;
        EXPECT_EQ(DOM_Rec_GetPolicy(0, &policy), DOM_ERR_NOT_FOUND);
        EXPECT_EQ(memcmp(&policy, &before, sizeof policy), 0);
        EXPECT_EQ(DOM_Rec_GetPolicyByType(0), nullptr);
        EXPECT_EQ(DOM_Rec_policy_SetAcctScheme(0, sample.methods), DOM_ERR_NOT_FOUND);
        EXPECT_EQ(DOM_Rec_policy_UnSetAcctScheme(0), DOM_ERR_NOT_FOUND);
        MethodList list{};
        EXPECT_EQ(DOM_Rec_policy_GetMethodList(0, &list), DOM_ERR_FAILED);
    });
}

// The slots of a second type would be those of the other role.
TEST_F(RecStore, EveryOtherTypeIsAbsent) {
    const RecSample sample;
    InBothRoles([] { CreateSample(); });
    for (const uint32_t type : {1u, 2u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
        InBothRoles([&] {
            RecPolicy policy;
            MethodList list{};
            EXPECT_EQ(DOM_Rec_CreatePolicy(type), DOM_ERR_FAILED);
            DOM_Rec_DestroyPolicy(type);
            DOM_Rec_DestroyThrPolicy(type);
            DOM_Rec_SetPolicy(NewRecord(type));  // freed, the leak checker says
            EXPECT_EQ(DOM_Rec_GetPolicyByType(type), nullptr);
            EXPECT_EQ(DOM_Rec_GetPolicy(type, &policy), DOM_ERR_NOT_FOUND);
            EXPECT_EQ(DOM_Rec_IsPolicyExist(type), 0u);
            EXPECT_EQ(DOM_Rec_policy_SetAcctScheme(type, sample.methods), DOM_ERR_NOT_FOUND);
            EXPECT_EQ(DOM_Rec_policy_UnSetAcctScheme(type), DOM_ERR_NOT_FOUND);
            EXPECT_EQ(DOM_Rec_policy_GetMethodList(type, &list), DOM_ERR_FAILED);
            EXPECT_EQ(Stored(), std::string("0: ") + kSampleMethods);
        });
    }
}

TEST_F(RecStore, MethodListIsCopiedWithoutTypeAndService) {
    InBothRoles([] {
        CreateSample();
        MethodList list{};
        list.aaa_type = 77;
        list.service = 78;
        EXPECT_EQ(LocksOf([&] { EXPECT_EQ(DOM_Rec_policy_GetMethodList(0, &list), DOM_OK); }), 1u);
        EXPECT_EQ(list.aaa_type, 77u);
        EXPECT_EQ(list.service, 78u);
        EXPECT_EQ(ShowMethods(list.methods), kSampleMethods);
    });
}

TEST_F(RecStore, PolicyWhoseFirstMethodIsEmptyHasNoList) {
    CreateSample();
    EXPECT_EQ(DOM_Rec_policy_UnSetAcctScheme(0), DOM_OK);
    EXPECT_EQ(Stored(), std::string("0: ") + kNoMethods);
    MethodList list{};
    list.methods[0].method_kind = 99;
    EXPECT_EQ(DOM_Rec_policy_GetMethodList(0, &list), DOM_ERR_FAILED);
    EXPECT_EQ(list.methods[0].method_kind, 99u);
    RecSample sample;
    sample.methods[0].method_kind = 0;
    EXPECT_EQ(DOM_Rec_policy_SetAcctScheme(0, sample.methods), DOM_OK);
    EXPECT_EQ(DOM_Rec_policy_GetMethodList(0, &list), DOM_ERR_FAILED);
}

TEST_F(RecStore, NullArgumentsFail) {
    CreateSample();
    EXPECT_EQ(DOM_Rec_GetPolicy(0, nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_Rec_policy_SetAcctScheme(0, nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_Rec_policy_GetMethodList(0, nullptr), DOM_ERR_FAILED);
    DOM_Rec_SetPolicy(nullptr);
    EXPECT_EQ(Stored(), std::string("0: ") + kSampleMethods);
}

TEST_F(RecStore, SetPolicyFillsTheWorkingSlotInEitherRole) {
    for (const uint32_t caller : {fake::kWorkingRole, fake::kConfigRole}) {
        RecPolicy* policy = NewRecord(0, 3);
        fake::InRole(caller, [&] {
            EXPECT_EQ(LocksOf([&] { DOM_Rec_SetPolicy(policy); }), 1u);
            return 0;
        });
        EXPECT_EQ(DOM_Rec_GetPolicyByType(0), policy);  // the former one is freed
        EXPECT_EQ(fake::InRole(fake::kConfigRole, [] { return DOM_Rec_IsPolicyExist(0); }), 0u);
    }
}

TEST_F(RecStore, RecordThatIsInTheSlotMayBeSetAgain) {
    CreateSample();
    RecPolicy* policy = DOM_Rec_GetPolicyByType(0);
    DOM_Rec_SetPolicy(policy);
    EXPECT_EQ(DOM_Rec_GetPolicyByType(0), policy);
    EXPECT_EQ(Stored(), std::string("0: ") + kSampleMethods);
}

TEST_F(RecStore, WorkingRoleLocksOnceAndConfigurationRoleNever) {
    const RecSample sample;
    const auto calls = [&](uint64_t locks) {
        RecPolicy policy;
        EXPECT_EQ(LocksOf([] { DOM_Rec_CreatePolicy(0); }), locks);
        EXPECT_EQ(LocksOf([&] { DOM_Rec_GetPolicy(0, &policy); }), locks);
        EXPECT_EQ(LocksOf([] { DOM_Rec_IsPolicyExist(0); }), locks);
        EXPECT_EQ(LocksOf([&] { DOM_Rec_policy_SetAcctScheme(0, sample.methods); }), locks);
        EXPECT_EQ(LocksOf([] { DOM_Rec_policy_UnSetAcctScheme(0); }), locks);
        EXPECT_EQ(LocksOf([] { (void)DOM_Rec_GetPolicyByType(0); }), 0u);
    };
    calls(1);
    fake::InRole(fake::kConfigRole, [&] { return calls(0), 0; });
}

TEST_F(RecStore, RecordIsUsedUnderTheMutex) {
    const auto held = [](const RecPolicy&) { return static_cast<uint32_t>(fake::HeldLocks()); };
    InBothRoles([] { DOM_Rec_CreatePolicy(0); });
    EXPECT_EQ(WithRecPolicy(0, 99, held), 1u);
    EXPECT_EQ(fake::InRole(fake::kConfigRole, [&] { return WithRecPolicy(0, 99, held); }), 0u);
}

// What was there before the mutex was free may be gone by then.
TEST_F(RecStore, PolicyThatGoesWhileTheMutexIsAwaitedIsAbsent) {
    const std::pair<uint32_t (*)(), uint32_t> kCalls[] = {
        {[] { return DOM_Rec_policy_UnSetAcctScheme(0); }, DOM_ERR_NOT_FOUND},
        {[] {
             MethodList list{};
             return DOM_Rec_policy_GetMethodList(0, &list);
         },
         DOM_ERR_FAILED},
        {[] { return DOM_Rec_DestroyPolicy(0), DOM_OK; }, DOM_OK},
        {[] { return DOM_Rec_SetPolicy(NewRecord()), DOM_OK; }, DOM_OK},
        {[] { return DOM_Rec_CreatePolicy(0); }, DOM_OK},
    };
    for (const auto& [call, result] : kCalls) {
        CreateSample();
        RecPolicy* policy = DOM_Rec_GetPolicyByType(0);
        const auto meanwhile = [policy] {
            EXPECT_EQ(RecPolicySlot(Role::kWorking), policy);
            RecPolicySlot(Role::kWorking) = nullptr;
        };
        EXPECT_EQ(ResultBehindMutex(g_stRecPolicyTypeMutexLock, call, meanwhile), result);
        EXPECT_EQ(ShowMethods(policy->acct_scheme), kSampleMethods);
        free(policy);
        DOM_Rec_DestroyPolicy(0);
    }
}

TEST_F(RecStore, ConfigurationRolesMethodListWaitsForTheWorkingRolesMutex) {
    const auto read = [] {
        return fake::InRole(fake::kConfigRole, [] {
            MethodList list{};
            return DOM_Rec_policy_GetMethodList(0, &list);
        });
    };
    const auto meanwhile = [] { EXPECT_EQ(fake::HeldLocks(), 0); };
    EXPECT_EQ(ResultBehindMutex(g_stRecPolicyTypeMutexLock, read, meanwhile), DOM_ERR_FAILED);
}

TEST_F(RecStore, WorkingRoleMakesTheMutexNewAtBothEnds) {
    ExpectNewAtBothEnds(g_stRecPolicyTypeMutexLock, DOM_Rec_policy_Init, DOM_Rec_policy_Fini);
}

TEST_F(RecStore, NoPolicyIsLeftBehind) {
    InBothRoles([] {
        EXPECT_FALSE(LeavesMemory([] {
            DOM_Rec_CreatePolicy(0);
            DOM_Rec_policy_Fini();
        })) << "with its role";
    });
    EXPECT_FALSE(LeavesMemory([] { DOM_Rec_SetPolicy(NewRecord()); })) << "replaced";
    EXPECT_FALSE(LeavesMemory([] { DOM_Rec_SetPolicy(NewRecord(1)); })) << "of another type";
}

// The domain table's initialisation and teardown take both policy stores along.
TEST_F(RecStore, DomainTablesBeginAndEndWithBothPolicyStores) {
    InBothRoles([] {
        CreateSample();
        EXPECT_EQ(DOM_ita_policy_Create("p"), DOM_OK);
        (void)DOM_DomainInfoTableFini();
        EXPECT_EQ(DOM_Rec_IsPolicyExist(0), 0u);
        EXPECT_EQ(DOM_GetItaPolicyGlobalVarByThr(), nullptr);
        CreateSample();
        RecPolicy* forgotten = DOM_Rec_GetPolicyByType(0);
        EXPECT_EQ(DOM_DomainInfoTableInit(), DOM_OK);
        EXPECT_EQ(DOM_Rec_IsPolicyExist(0), 0u);
        EXPECT_EQ(DOM_ita_IsPolicyExist("p"), 0u);
        free(forgotten);
    });
}

}  // namespace
}  // namespace aaadom
