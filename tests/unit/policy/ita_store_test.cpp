#include <aaadom/domain.h>
#include <aaadom/method_list.h>

#include <cstdlib>

#include "policy/ita_store.h"
#include "unit/policy/ita_data_fixture.h"
#include "unit/policy/store_probe.h"

namespace aaadom {
namespace {

const std::string kNewPolicy = [] {
    ItaPolicy policy{};
    policy.acct_scheme[0].method_kind = 5;
    policy.quota_out_state = 1;
    return Dump(policy);
}();

class ItaStore : public ItaDataTest {};

TEST_F(ItaStore, NewPolicyHasTheDefaults) {
    ItaPolicy* policy = DOM_ita_CreatePolicy("gold");
    ASSERT_NE(policy, nullptr);
    EXPECT_EQ(Dump(*policy), "gold" + kNewPolicy);
    EXPECT_EQ(policy->hash_links.next, nullptr);
    EXPECT_EQ(policy->hash_links.prev_link, nullptr);
    EXPECT_EQ(DOM_ita_IsPolicyExist("gold"), 0u);
    DOM_ita_policy_DestroyPolicy(policy);
}

TEST_F(ItaStore, NewPolicyWithoutMemoryOrNameIsNull) {
    EXPECT_EQ(DOM_ita_CreatePolicy(nullptr), nullptr);
    fake::FailAllocation(1);
    EXPECT_EQ(DOM_ita_CreatePolicy("gold"), nullptr);
    DOM_ita_policy_DestroyPolicy(nullptr);
}

TEST_F(ItaStore, CreatedPolicyIsFoundInTheCallersRoleOnly) {
    EXPECT_EQ(DOM_ita_policy_Create("gold"), DOM_OK);
    EXPECT_EQ(Stored("gold"), "gold" + kNewPolicy);
    EXPECT_EQ(DOM_ita_IsPolicyExist("gold"), 1u);
    fake::InRole(fake::kConfigRole, [] {
        EXPECT_EQ(DOM_ita_IsPolicyExist("gold"), 0u);
        EXPECT_EQ(DOM_ita_policy_GetDomPolicyByName("gold"), nullptr);
        return 0;
    });
}

TEST_F(ItaStore, CreatingAnExistingPolicyKeepsItAndItsPlace) {
    AddSample("p2");
    DOM_ita_policy_Create("p82");
    const std::vector<std::string> before = DumpAll();
    EXPECT_EQ(DOM_ita_policy_Create("p2"), DOM_OK);
    EXPECT_EQ(DumpAll(), before);
}

TEST_F(ItaStore, CreationWithoutMemoryFailsAndAddsNothing) {
    fake::FailAllocation(1);
    EXPECT_EQ(DOM_ita_policy_Create("gold"), DOM_ERR_FAILED);
    EXPECT_EQ(DumpAll().size(), 0u);
}

TEST_F(ItaStore, NamesAreComparedWithTheirCase) {
    DOM_ita_policy_Create("acct");
    EXPECT_EQ(DOM_ita_IsPolicyExist("Acct"), 0u);
    EXPECT_EQ(DOM_ita_policy_GetDomPolicyByName("Acct"), nullptr);
    EXPECT_EQ(DOM_ita_policy_Delete("Acct"), DOM_ERR_NOT_FOUND);
    EXPECT_EQ(DOM_ita_policy_Create("Acct"), DOM_OK);
    EXPECT_EQ(DumpAll().size(), 2u);
}

TEST_F(ItaStore, OverlongNamesAreCutBeforeTheyAreCompared) {
    const std::string prefix(31, 'n');
    const std::string longer = prefix + "one";
    EXPECT_EQ(DOM_ita_policy_Create(longer.c_str()), DOM_OK);
    EXPECT_EQ(DOM_ita_policy_Create((prefix + "other").c_str()), DOM_OK);
    EXPECT_EQ(AllNames(), std::vector<std::string>{prefix});
    EXPECT_EQ(DOM_ita_IsPolicyExist(prefix.c_str()), 1u);
    EXPECT_EQ(DOM_ita_policy_SetQuotaState(longer.c_str(), 9), DOM_OK);
    EXPECT_EQ(DOM_ita_policy_GetDomPolicyByName(longer.c_str())->quota_out_state, 9);
    EXPECT_EQ(DOM_ita_policy_Delete(longer.c_str()), DOM_OK);
    EXPECT_EQ(DOM_ita_IsPolicyExist(prefix.c_str()), 0u);
}

TEST_F(ItaStore, DeletedPolicyIsGoneAndItsNeighboursStay) {
    for (const char* name : {"p2", "p82", "p228"}) DOM_ita_policy_Create(name);
    EXPECT_EQ(DOM_ita_policy_Delete("p82"), DOM_OK);
    EXPECT_EQ(AllNames(), (std::vector<std::string>{"p228", "p2"}));
    EXPECT_EQ(DOM_ita_policy_Delete("p82"), DOM_ERR_NOT_FOUND);
    EXPECT_EQ(DOM_ita_policy_Delete("p228"), DOM_OK);
    EXPECT_EQ(DOM_ita_policy_Delete("p2"), DOM_OK);
    EXPECT_TRUE(AllNames().empty());
}

TEST_F(ItaStore, NewestPolicyIsTheFirstOfItsBucket) {
    for (const char* name : {"p2", "p82", "p228", "p3"}) DOM_ita_policy_Create(name);
    EXPECT_EQ(AllNames(), (std::vector<std::string>{"p228", "p82", "p2", "p3"}));
}

TEST_F(ItaStore, AddedPolicyReplacesAndMovesToTheHead) {
    for (const char* name : {"p2", "p82", "p228"}) DOM_ita_policy_Create(name);
    DOM_ita_policy_AddPolicy(NewSample("p2"));
    EXPECT_EQ(AllNames(), (std::vector<std::string>{"p2", "p228", "p82"}));
    EXPECT_EQ(Stored("p2"), Dump(golden::SamplePolicy("p2")));
}

TEST_F(ItaStore, AddedPolicyKeepsWhatItHas) {
    auto* bare = static_cast<ItaPolicy*>(calloc(1, sizeof(ItaPolicy)));
    strcpy(bare->name, "bare");
    DOM_ita_policy_AddPolicy(bare);
    ItaPolicy zeros{};
    strcpy(zeros.name, "bare");
    EXPECT_EQ(Stored("bare"), Dump(zeros));
}

TEST_F(ItaStore, RecordThatIsInTheTableMayBeAddedAgain) {
    for (const char* name : {"p2", "p82"}) DOM_ita_policy_Create(name);
    ItaPolicy* policy = DOM_ita_policy_GetDomPolicyByName("p2");
    policy->quota_out_state = 77;
    DOM_ita_policy_AddPolicy(policy);
    EXPECT_EQ(DOM_ita_policy_GetDomPolicyByName("p2"), policy);
    EXPECT_EQ(policy->quota_out_state, 77);
    EXPECT_EQ(AllNames(), (std::vector<std::string>{"p2", "p82"}));
}

TEST_F(ItaStore, AddedNameWithoutTerminatorGetsOne) {
    ItaPolicy* policy = DOM_ita_CreatePolicy("x");
    memset(policy->name, 'n', sizeof policy->name);
    DOM_ita_policy_AddPolicy(policy);
    DOM_ita_policy_AddPolicy(nullptr);
    EXPECT_EQ(AllNames(), std::vector<std::string>{std::string(31, 'n')});
}

TEST_F(ItaStore, SchemeIsCopiedWhole) {
    DOM_ita_policy_Create("gold");
    MethodEntry methods[DOM_METHODS];
    memset(methods, 0x5A, sizeof methods);
    EXPECT_EQ(DOM_ita_policy_SetAcctScheme("gold", methods), DOM_OK);
    EXPECT_EQ(
        memcmp(DOM_ita_policy_GetDomPolicyByName("gold")->acct_scheme, methods, sizeof methods), 0);
}

TEST_F(ItaStore, UnsetSchemeIsThatOfANewPolicy) {
    AddSample("gold");
    EXPECT_EQ(DOM_ita_policy_UnSetAcctScheme("gold"), DOM_OK);
    MethodEntry methods[DOM_METHODS] = {};
    methods[0].method_kind = 5;
    EXPECT_EQ(
        memcmp(DOM_ita_policy_GetDomPolicyByName("gold")->acct_scheme, methods, sizeof methods), 0);
}

TEST_F(ItaStore, StatesAreStoredAsTheyAre) {
    DOM_ita_policy_Create("gold");
    EXPECT_EQ(DOM_ita_policy_SetTogetherState("gold", 0xFFFF), DOM_OK);
    EXPECT_EQ(DOM_ita_policy_SetSeprateState("gold", 2), DOM_OK);
    EXPECT_EQ(DOM_ita_policy_SetQuotaState("gold", 0), DOM_OK);
    const ItaPolicy* policy = DOM_ita_policy_GetDomPolicyByName("gold");
    EXPECT_EQ(policy->together_state, 0xFFFF);
    EXPECT_EQ(policy->separation_state, 2);
    EXPECT_EQ(policy->quota_out_state, 0);
}

// Setters, level setter, getters and creation answer the absent policy differently on purpose.
TEST_F(ItaStore, AbsentPolicyHasTheResultOfItsOperation) {
    const MethodEntry methods[DOM_METHODS] = {};
    for (const char* name : {static_cast<const char*>(nullptr), "", "gold"}) {
        MethodList list{};
        ItaServicePolicy service{};
        EXPECT_EQ(DOM_ita_policy_Delete(name), DOM_ERR_NOT_FOUND);
        EXPECT_EQ(DOM_ita_policy_SetAcctScheme(name, methods), DOM_ERR_NOT_FOUND);
        EXPECT_EQ(DOM_ita_policy_UnSetAcctScheme(name), DOM_ERR_NOT_FOUND);
        EXPECT_EQ(DOM_ita_policy_SetTogetherState(name, 1), DOM_ERR_NOT_FOUND);
        EXPECT_EQ(DOM_ita_policy_SetSeprateState(name, 1), DOM_ERR_NOT_FOUND);
        EXPECT_EQ(DOM_ita_policy_SetQuotaState(name, 1), DOM_ERR_NOT_FOUND);
        EXPECT_EQ(DOM_ita_policy_UnSetOneAcctLevel(name, 1), DOM_ERR_NOT_FOUND);
        EXPECT_EQ(DOM_ita_policy_UnSetAllAcctLevel(name), DOM_ERR_NOT_FOUND);
        EXPECT_EQ(DOM_ita_policy_SetAcctLevel(name, 1, 1, 1, 1, 1, 1, 3), DOM_ERR_FAILED);
        EXPECT_EQ(DOM_ita_policy_GetMethodList(name, &list), DOM_ERR_FAILED);
        EXPECT_EQ(DOM_ita_policy_GetServicePolicyByName(name, &service), DOM_ERR_FAILED);
        EXPECT_EQ(DOM_ita_IsPolicyExist(name), 0u);
        EXPECT_EQ(DOM_ita_policy_GetDomPolicyByName(name), nullptr);
    }
    EXPECT_EQ(DOM_ita_policy_Create(nullptr), DOM_ERR_FAILED);
    EXPECT_TRUE(AllNames().empty());
}

TEST_F(ItaStore, NullArgumentsFail) {
    DOM_ita_policy_Create("gold");
    EXPECT_EQ(DOM_ita_policy_SetAcctScheme("gold", nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_ita_policy_GetMethodList("gold", nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_ita_policy_GetServicePolicyByName("gold", nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(Stored("gold"), "gold" + kNewPolicy);
}

TEST_F(ItaStore, MethodListIsCopiedWithoutTypeAndService) {
    AddSample("gold");
    MethodList list{};
    list.aaa_type = 77;
    list.service = 78;
    EXPECT_EQ(DOM_ita_policy_GetMethodList("gold", &list), DOM_OK);
    EXPECT_EQ(list.aaa_type, 77u);
    EXPECT_EQ(list.service, 78u);
    EXPECT_EQ(memcmp(list.methods, golden::SamplePolicy().acct_scheme, sizeof list.methods), 0);
}

// The empty name is a name: no domain can tell such a policy from none.
TEST_F(ItaStore, DomainThatNamesNoPolicyGetsThatOfTheEmptyName) {
    MethodList list{};
    ASSERT_EQ(DOM_AddDomainByName("a"), DOM_ADD_OK);
    EXPECT_EQ(DOM_GetItaMethodList("a", &list), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_ita_policy_Create(""), DOM_OK);
    EXPECT_EQ(DOM_GetItaMethodList("a", &list), DOM_OK);
    EXPECT_EQ(list.methods[0].method_kind, 5u);
    EXPECT_EQ(DOM_IsItaEnabled("a"), 0u);
}

TEST_F(ItaStore, ServicePolicyIsCountLevelsAndStates) {
    AddSample("gold");
    ItaServicePolicy service{};
    EXPECT_EQ(DOM_ita_policy_GetServicePolicyByName("gold", &service), DOM_OK);
    const ItaPolicy sample = golden::SamplePolicy();
    EXPECT_EQ(service.level_count, sample.level_count);
    EXPECT_EQ(memcmp(service.levels, sample.levels, sizeof service.levels), 0);
    EXPECT_EQ(service.together_state, sample.together_state);
    EXPECT_EQ(service.separation_state, sample.separation_state);
    EXPECT_EQ(service.quota_out_state, sample.quota_out_state);
}

TEST_F(ItaStore, FailedReadersLeaveTheirOutput) {
    MethodList list, list_before;
    memset(&list, 0x5A, sizeof list);
    list_before = list;
    ItaServicePolicy service, service_before;
    memset(&service, 0x5A, sizeof service);
    memcpy(&service_before, &service, sizeof service);
    (void)DOM_ita_policy_GetMethodList("gold", &list);
    (void)DOM_ita_policy_GetServicePolicyByName("gold", &service);
    EXPECT_EQ(memcmp(&list, &list_before, sizeof list), 0);
    EXPECT_EQ(memcmp(&service, &service_before, sizeof service), 0);
}

TEST_F(ItaStore, ReadersUseTheCallersTable) {
    AddSample("gold");
    fake::InRole(fake::kConfigRole, [] {
        MethodList list{};
        EXPECT_EQ(DOM_ita_policy_GetMethodList("gold", &list), DOM_ERR_FAILED);
        DOM_ita_policy_Create("gold");
        EXPECT_EQ(DOM_ita_policy_GetMethodList("gold", &list), DOM_OK);
        EXPECT_EQ(list.methods[0].method_kind, 5u);
        return 0;
    });
}

TEST_F(ItaStore, ChangesLockTheWorkingRoleOnce) {
    const MethodEntry methods[DOM_METHODS] = {};
    const auto changes = [&](uint64_t locks) {
        EXPECT_EQ(LocksOf([] { DOM_ita_policy_Create("p"); }), locks);
        EXPECT_EQ(LocksOf([] { DOM_ita_policy_AddPolicy(DOM_ita_CreatePolicy("p")); }), locks);
        EXPECT_EQ(LocksOf([&] { DOM_ita_policy_SetAcctScheme("p", methods); }), locks);
        EXPECT_EQ(LocksOf([] { DOM_ita_policy_UnSetAcctScheme("p"); }), locks);
        EXPECT_EQ(LocksOf([] { DOM_ita_policy_SetTogetherState("p", 1); }), locks);
        EXPECT_EQ(LocksOf([] { DOM_ita_policy_SetSeprateState("p", 1); }), locks);
        EXPECT_EQ(LocksOf([] { DOM_ita_policy_SetQuotaState("p", 1); }), locks);
        EXPECT_EQ(LocksOf([] { DOM_ita_policy_SetAcctLevel("p", 1, 1, 1, 1, 1, 1, 3); }), locks);
        EXPECT_EQ(LocksOf([] { DOM_ita_policy_UnSetOneAcctLevel("p", 1); }), locks);
        EXPECT_EQ(LocksOf([] { DOM_ita_policy_UnSetAllAcctLevel("p"); }), locks);
        EXPECT_EQ(LocksOf([] { DOM_ita_policy_Delete("p"); }), locks);
        EXPECT_EQ(LocksOf([] { (void)DOM_ita_policy_GetDomPolicyByName("p"); }), 0u);
    };
    changes(1);
    fake::InRole(fake::kConfigRole, [&] { return changes(0), 0; });
}

TEST_F(ItaStore, ReadersLockInBothRoles) {
    const auto reads = [] {
        MethodList list{};
        ItaServicePolicy service{};
        EXPECT_EQ(LocksOf([&] { (void)DOM_ita_policy_GetMethodList("p", &list); }), 1u);
        EXPECT_EQ(LocksOf([&] { (void)DOM_ita_policy_GetServicePolicyByName("p", &service); }), 1u);
        EXPECT_EQ(LocksOf([] { (void)DOM_ita_IsPolicyExist("p"); }), 1u);
        return 0;
    };
    reads();
    fake::InRole(fake::kConfigRole, reads);
}

TEST_F(ItaStore, ConfigurationRoleReadsWaitForTheWorkingRolesMutex) {
    const auto exists = [] {
        return fake::InRole(fake::kConfigRole, [] { return DOM_ita_IsPolicyExist("p"); });
    };
    const auto meanwhile = [] { EXPECT_EQ(fake::HeldLocks(), 0); };
    EXPECT_EQ(ResultBehindMutex(g_stDomainItaPolicyTableMutexLock, exists, meanwhile), 0u);
}

TEST_F(ItaStore, RecordsAreUsedUnderTheMutexThatTheyWereFoundUnder) {
    const auto held = [](const ItaPolicy&) { return static_cast<uint32_t>(fake::HeldLocks()); };
    DOM_ita_policy_Create("p");
    EXPECT_EQ(ChangeItaPolicy("p", 99, held), 1u);
    EXPECT_EQ(ReadItaPolicy("p", 99, held), 1u);
    fake::InRole(fake::kConfigRole, [&] {
        DOM_ita_policy_Create("p");
        EXPECT_EQ(ChangeItaPolicy("p", 99, held), 0u);
        EXPECT_EQ(ReadItaPolicy("p", 99, held), 1u);
        return 0;
    });
}

// What was found before the mutex was free may be gone by then.
TEST_F(ItaStore, PolicyThatGoesWhileTheMutexIsAwaitedIsAbsent) {
    const std::pair<uint32_t (*)(), uint32_t> kCalls[] = {
        {[] { return DOM_ita_policy_Delete("p"); }, DOM_ERR_NOT_FOUND},
        {[] { return DOM_ita_policy_SetQuotaState("p", 9); }, DOM_ERR_NOT_FOUND},
        {[] { return DOM_ita_IsPolicyExist("p"); }, 0},
    };
    for (const auto& [call, absent] : kCalls) {
        DOM_ita_policy_Create("p");
        ItaPolicy* policy = DOM_ita_policy_GetDomPolicyByName("p");
        const auto meanwhile = [policy] { HASH_Unlink(&policy->hash_links); };
        EXPECT_EQ(ResultBehindMutex(g_stDomainItaPolicyTableMutexLock, call, meanwhile), absent);
        EXPECT_EQ(policy->quota_out_state, 1);
        DOM_ita_policy_DestroyPolicy(policy);
    }
}

TEST_F(ItaStore, PolicyThatComesWhileTheMutexIsAwaitedIsThere) {
    uint32_t (*const kCalls[])() = {
        [] { return DOM_ita_policy_Create("p"); },
        [] { return DOM_ita_policy_AddPolicy(DOM_ita_CreatePolicy("p")), DOM_OK; },
    };
    for (const auto& call : kCalls) {
        ItaPolicy* policy = DOM_ita_CreatePolicy("p");
        const auto meanwhile = [policy] {
            EXPECT_TRUE(AllNames().empty());
            HASH_LinkAtHead(&g_pstDomainItaPolicyTable->buckets[ItaPolicyBucket("p")],
                            &policy->hash_links);
        };
        EXPECT_EQ(ResultBehindMutex(g_stDomainItaPolicyTableMutexLock, call, meanwhile), DOM_OK);
        EXPECT_EQ(AllNames(), std::vector<std::string>{"p"});
        DOM_ita_policy_Delete("p");
    }
}

TEST_F(ItaStore, NoPolicyIsLeftBehind) {
    EXPECT_FALSE(LeavesMemory([] {
        DOM_ita_policy_Create("p");
        DOM_ita_policy_Delete("p");
    })) << "deleted";
    EXPECT_FALSE(LeavesMemory([] { DOM_ita_policy_AddPolicy(DOM_ita_CreatePolicy("p")); }))
        << "replaced";
    EXPECT_FALSE(LeavesMemory([] { DOM_ita_policy_DestroyPolicy(DOM_ita_CreatePolicy("p")); }))
        << "destroyed";
    DOM_ita_policy_Fini();
    EXPECT_FALSE(LeavesMemory([] { DOM_ita_policy_AddPolicy(DOM_ita_CreatePolicy("p")); }))
        << "given to no table";
    EXPECT_FALSE(LeavesMemory([] {
        DOM_ita_policy_Init();
        DOM_ita_policy_Create("p");
        DOM_ita_policy_Fini();
    })) << "with its table";
    EXPECT_EQ(DOM_ita_policy_Init(), DOM_OK);
}

// Bytes above 127 count as unsigned, the length excludes the terminator, and byte 8 of the last
// block goes above the length byte.
TEST(ItaBucket, BucketsAreTheReferenceValues) {
    const std::pair<std::string, uint32_t> kReference[] = {
        {"", 13},
        {"a", 24},
        {"acct", 87},
        {"Acct", 79},
        {"gold", 94},
        {"policy-1", 67},
        {"abcdefgh", 94},
        {"abcdefghi", 95},
        {"abcdefghij", 66},
        {"abcdefghijk", 76},
        {"abcdefghijkl", 37},  // one whole block, empty tail
        {"abcdefghijklm", 49},
        {"abcdefghijklmnopqrst", 79},
        {"abcdefghijklmnopqrstuvw", 33},
        {"abcdefghijklmnopqrstuvwx", 120},
        {std::string(31, 'a'), 7},
        {"\xE4\xF6\xFC", 8},
        {std::string(9, '\x80'), 36},
        {std::string(31, '\xFF'), 71},
    };
    for (const auto& [name, bucket] : kReference)
        EXPECT_EQ(ItaPolicyBucket(name.c_str()), bucket) << name;
}

TEST_F(ItaStore, PolicyLiesInTheBucketOfItsName) {
    DOM_ita_policy_Create("\xE4\xF6\xFC");
    EXPECT_NE(g_pstDomainItaPolicyTable->buckets[8], nullptr);
    DOM_ita_policy_AddPolicy(DOM_ita_CreatePolicy("gold"));
    EXPECT_NE(g_pstDomainItaPolicyTable->buckets[94], nullptr);
}

}  // namespace
}  // namespace aaadom
