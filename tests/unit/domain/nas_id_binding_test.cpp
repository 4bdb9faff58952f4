#include "unit/domain/nas_id_fixture.h"

namespace aaadom {
namespace {

class NasIdBindingTable : public NasIdTest {
  protected:
    NasIdBindingTable() { AddProfile("Office"); }

    static int ChangeEverything() {
        AddProfile("p1");
        EXPECT_EQ(Bind("p1", "n", 1), 0u);
        EXPECT_EQ(Unbind("p1", "n", 1), 0u);
        EXPECT_EQ(DeleteProfile("p1"), 0u);
        return 0;
    }
};

TEST_F(NasIdBindingTable, NewBindingIsFoundAndKeepsTheNameAsGiven) {
    EXPECT_EQ(Bind("oFFice", "nas-1", 100), 0u);
    EXPECT_EQ(Lookup("oFFice", 100), "nas-1");
    EXPECT_EQ(Bindings(Role::kWorking), Names({"100/oFFice/nas-1"}));
}

TEST_F(NasIdBindingTable, LookupIgnoresLetterCase) {
    Bind("Office", "nas-1", 100);
    EXPECT_EQ(Lookup("OFFICE", 100), "nas-1");
    EXPECT_EQ(Lookup("office", 100), "nas-1");
}

TEST_F(NasIdBindingTable, LookupNeedsTheVlanAndTheProfile) {
    Bind("Office", "nas-1", 100);
    EXPECT_EQ(Lookup("Office", 101), "-");
    EXPECT_EQ(Lookup("Offic", 100), "-");
    EXPECT_EQ(Lookup("Office2", 100), "-");
}

TEST_F(NasIdBindingTable, SameNasIdTwiceReportsUnchanged) {
    EXPECT_EQ(Bind("Office", "nas-1", 100), 0u);
    EXPECT_EQ(Bind("OFFICE", "nas-1", 100), 15u);
    EXPECT_EQ(Bindings(Role::kWorking), Names({"100/Office/nas-1"}));
}

TEST_F(NasIdBindingTable, AnotherNasIdReplacesAndKeepsTheSpelling) {
    Bind("Office", "nas-1", 100);
    EXPECT_EQ(Bind("OFFICE", "nas-2", 100), 0u);
    EXPECT_EQ(Bindings(Role::kWorking), Names({"100/Office/nas-2"}));
}

TEST_F(NasIdBindingTable, NasIdsAreComparedWithTheirLetterCase) {
    Bind("Office", "nas-1", 100);
    EXPECT_EQ(Bind("Office", "NAS-1", 100), 0u);
    EXPECT_EQ(Lookup("Office", 100), "NAS-1");
}

// {100, "abc"} and {100, "ABC"} are one key, so both are found in the bucket of the small letters.
TEST_F(NasIdBindingTable, BucketIsThatOfTheSmallLetters) {
    Bind("ABC", "n", 100);
    const HASH_NODE* head = NasIdBindings(Role::kWorking).hash->buckets[5];
    ASSERT_NE(head, nullptr);
    EXPECT_STREQ(AsNasIdBinding(head)->profile_name, "ABC");
}

TEST_F(NasIdBindingTable, NewBindingIsTheHeadOfItsBucket) {
    // find three VLANs of one bucket
    std::vector<uint16_t> vlans;
    NasIdBindKey key{};
    strcpy(key.profile_name, "p");
    for (uint32_t vlan = 0; vlans.size() < 3; ++vlan) {
        ASSERT_LT(vlan, 65536u);
        key.vlan_id = static_cast<uint16_t>(vlan);
        if (NasIdBindBucket(&key) == 77) vlans.push_back(key.vlan_id);
    }
    Names want;
    for (const uint16_t vlan : vlans) {
        EXPECT_EQ(Bind("p", "n", vlan), 0u);
        want.insert(want.begin(), std::to_string(vlan) + "/p/n");
    }
    EXPECT_EQ(Bindings(Role::kWorking), want);
}

TEST_F(NasIdBindingTable, EveryVlanNumberIsKept) {
    for (const uint16_t vlan : {0, 1, 4094, 4095, 0xFFFF}) {
        EXPECT_EQ(Bind("Office", "n" + std::to_string(vlan), vlan), 0u);
    }
    for (const uint16_t vlan : {0, 1, 4094, 4095, 0xFFFF}) {
        EXPECT_EQ(Lookup("Office", vlan), "n" + std::to_string(vlan));
    }
}

TEST_F(NasIdBindingTable, AdditionDoesNotNeedTheProfile) {
    EXPECT_EQ(Bind("nowhere", "nas-1", 1), 0u);
    EXPECT_EQ(Lookup("nowhere", 1), "nas-1");
}

TEST_F(NasIdBindingTable, TextsAreCutTo31Characters) {
    EXPECT_EQ(Bind(std::string(31, 'p'), std::string(40, 'n'), 1), 0u);
    EXPECT_EQ(Lookup(std::string(31, 'p'), 1), std::string(31, 'n'));
    EXPECT_EQ(Bind(std::string(40, 'q'), "n", 2), 0u);
    EXPECT_EQ(Lookup(std::string(31, 'q'), 2), "n");
    EXPECT_EQ(Lookup(std::string(40, 'q'), 2), "-") << "compared whole with what was kept";
}

// An overlong NAS-ID differs from what was kept of it.
TEST_F(NasIdBindingTable, OverlongNasIdReplacesItselfAndCannotUnbind) {
    const std::string nas_id(40, 'n');
    EXPECT_EQ(Bind("Office", nas_id, 1), 0u);
    EXPECT_EQ(Bind("Office", nas_id, 1), 0u);
    EXPECT_EQ(Unbind("Office", nas_id, 1), 2u);
    EXPECT_EQ(Unbind("Office", std::string(31, 'n'), 1), 0u);
}

TEST_F(NasIdBindingTable, WithoutMemoryIs1) {
    fake::FailAllocation(1);
    EXPECT_EQ(Bind("Office", "nas-1", 100), 1u);
    fake::DisarmFailures();
    EXPECT_TRUE(Bindings(Role::kWorking).empty());
    EXPECT_EQ(fake::HeldLocks(), 0);
}

TEST_F(NasIdBindingTable, NullTextsAreRefusedAndANullOutputIsSkipped) {
    DomDbUpdateReq change = Filled();
    EXPECT_EQ(DOM_AddNasIdBindVlanId(nullptr, "n", 1), 1u);
    EXPECT_EQ(DOM_AddNasIdBindVlanId("Office", nullptr, 1), 1u);
    EXPECT_EQ(DOM_ProcNasIdBindVlanIdCfg(nullptr, 1, 1, "Office", &change), 1u);
    EXPECT_EQ(DOM_ProcNasIdBindVlanIdCfg("n", 1, 1, nullptr, &change), 1u);
    EXPECT_TRUE(Same(change, Filled()));
    EXPECT_EQ(DOM_GetNasIdByProfileAndVlanId(nullptr, 1, nullptr), DOM_ERR_FAILED);
    Bind("Office", "n", 1);
    EXPECT_EQ(DOM_GetNasIdByProfileAndVlanId("Office", 1, nullptr), DOM_OK);
}

TEST_F(NasIdBindingTable, TablesOfTheRolesAreSeparate) {
    InConfig([] { return Bind("Office", "config", 1); });
    EXPECT_EQ(Lookup("Office", 1), "-");
    EXPECT_EQ(InConfig([] { return Lookup("Office", 1); }), "config");
}

// Two tests: one that held each role's mutex in turn would show the thread sanitizer two orders.
TEST_F(NasIdBindingTable, ConfigurationRoleChangesWithoutTheWorkingRolesMutex) {
    MutexGuard working(NasIdBindings(Role::kWorking).mutex);
    InConfig([] { return ChangeEverything(); });  // hangs when it takes the working role's
    EXPECT_EQ(fake::HeldLocks(), 1);
}

TEST_F(NasIdBindingTable, WorkingRoleChangesWithoutTheConfigurationRolesMutex) {
    MutexGuard config(NasIdBindings(Role::kConfig).mutex);
    ChangeEverything();
    EXPECT_EQ(fake::HeldLocks(), 1);
}

// The working role's mutex whichever role asks: with the configuration role's held, both roles
// still get their answers, and each takes exactly one lock.
TEST_F(NasIdBindingTable, LookupLocksTheWorkingRolesMutexFromBothRoles) {
    InConfig([] { return Bind("Office", "config", 1); });
    MutexGuard config(NasIdBindings(Role::kConfig).mutex);
    const uint64_t before = fake::Count(fake::Event::kLock);
    EXPECT_EQ(InConfig([] { return Lookup("Office", 1); }), "config");
    EXPECT_EQ(fake::Count(fake::Event::kLock), before + 1);
    EXPECT_EQ(Lookup("Office", 1), "-");
    EXPECT_EQ(fake::Count(fake::Event::kLock), before + 2);
    EXPECT_EQ(fake::HeldLocks(), 1);
}

TEST_F(NasIdBindingTable, MessageBindsAndFillsTheChange) {
    DomDbUpdateReq change = Filled();
    EXPECT_EQ(DOM_ProcNasIdBindVlanIdCfg("nas-1", 100, 1, "oFFICE", &change), 0u);
    EXPECT_EQ(Bindings(Role::kWorking), Names({"100/oFFICE/nas-1"}));
    EXPECT_EQ(change.object_type, uint32_t{DOM_DB_NASID_VLAN});
    EXPECT_EQ(change.operation, 1);
    EXPECT_EQ(change.vlan_id, 100);
    EXPECT_STREQ(change.nas_id_profile_name, "oFFICE") << "as given, not as the profile has it";
    EXPECT_STREQ(change.nas_id, "nas-1");
}

TEST_F(NasIdBindingTable, ChangeKeepsTheFieldsThatAreNotABindings) {
    DomDbUpdateReq change = Filled();
    EXPECT_EQ(DOM_ProcNasIdBindVlanIdCfg("nas-1", 100, 1, "Office", &change), 0u);
    const DomDbUpdateReq filled = Filled();
    change.object_type = filled.object_type;
    change.operation = filled.operation;
    change.vlan_id = filled.vlan_id;
    memset(change.nas_id_profile_name, 0x5A, sizeof change.nas_id_profile_name);
    memset(change.nas_id, 0x5A, sizeof change.nas_id);
    EXPECT_TRUE(Same(change, filled));
}

TEST_F(NasIdBindingTable, MessageOfAnUnknownProfileIs1ForBothOperations) {
    Bind("nowhere", "nas-1", 1);
    DomDbUpdateReq change = Filled();
    EXPECT_EQ(DOM_ProcNasIdBindVlanIdCfg("nas-1", 1, 1, "nowhere", &change), 1u);
    EXPECT_EQ(DOM_ProcNasIdBindVlanIdCfg("nas-1", 1, 0, "nowhere", &change), 1u);
    EXPECT_EQ(Lookup("nowhere", 1), "nas-1");
    EXPECT_TRUE(Same(change, Filled()));
}

TEST_F(NasIdBindingTable, MessageThatChangesNothingIs15AndNoChange) {
    Bind("Office", "nas-1", 1);
    DomDbUpdateReq change = Filled();
    EXPECT_EQ(DOM_ProcNasIdBindVlanIdCfg("nas-1", 1, 1, "Office", &change), 15u);
    EXPECT_TRUE(Same(change, Filled()));
}

TEST_F(NasIdBindingTable, MessageThatReplacesIsAChange) {
    Bind("Office", "nas-1", 1);
    DomDbUpdateReq change = Filled();
    EXPECT_EQ(DOM_ProcNasIdBindVlanIdCfg("nas-2", 1, 1, "Office", &change), 0u);
    EXPECT_STREQ(change.nas_id, "nas-2");
}

TEST_F(NasIdBindingTable, MessageWithoutMemoryIs1AndNoChange) {
    DomDbUpdateReq change = Filled();
    fake::FailAllocation(1);
    EXPECT_EQ(DOM_ProcNasIdBindVlanIdCfg("nas-1", 1, 1, "Office", &change), 1u);
    fake::DisarmFailures();
    EXPECT_TRUE(Same(change, Filled()));
}

TEST_F(NasIdBindingTable, UnbindingWithTheNasIdRemovesAndFillsTheChange) {
    Bind("Office", "nas-1", 100);
    Bind("Office", "nas-1", 101);
    DomDbUpdateReq change = Filled();
    EXPECT_EQ(DOM_ProcNasIdBindVlanIdCfg("nas-1", 100, 0, "office", &change), 0u);
    EXPECT_EQ(Bindings(Role::kWorking), Names({"101/Office/nas-1"}));
    EXPECT_EQ(change.object_type, uint32_t{DOM_DB_NASID_VLAN});
    EXPECT_EQ(change.operation, 0);
    EXPECT_EQ(change.vlan_id, 100);
    EXPECT_STREQ(change.nas_id_profile_name, "office");
    EXPECT_STREQ(change.nas_id, "nas-1");
}

TEST_F(NasIdBindingTable, UnbindingWithAnotherNasIdIs2AndKeepsIt) {
    Bind("Office", "nas-1", 100);
    DomDbUpdateReq change = Filled();
    EXPECT_EQ(DOM_ProcNasIdBindVlanIdCfg("nas-2", 100, 0, "Office", &change), 2u);
    EXPECT_EQ(DOM_ProcNasIdBindVlanIdCfg("NAS-1", 100, 0, "Office", &change), 2u);
    EXPECT_EQ(Lookup("Office", 100), "nas-1");
    EXPECT_TRUE(Same(change, Filled()));
}

TEST_F(NasIdBindingTable, UnbindingWhatIsNotBoundIs2) {
    DomDbUpdateReq change = Filled();
    EXPECT_EQ(DOM_ProcNasIdBindVlanIdCfg("nas-1", 100, 0, "Office", &change), 2u);
    EXPECT_TRUE(Same(change, Filled()));
}

TEST_F(NasIdBindingTable, AnyOperationOtherThan1Unbinds) {
    for (const uint16_t operation : {0, 2, 0xFFFF}) {
        Bind("Office", "n", 1);
        DomDbUpdateReq change = Filled();
        EXPECT_EQ(DOM_ProcNasIdBindVlanIdCfg("n", 1, operation, "Office", &change), 0u);
        EXPECT_EQ(change.operation, operation);
        EXPECT_EQ(Lookup("Office", 1), "-");
    }
}

TEST(NasIdBindingWithoutTable, AdditionIs1AndNothingIsFound) {
    fake::Reset();
    DOM_ResetAAADService();
    char nas_id[DOM_NASID_NAME_SIZE] = "?";
    EXPECT_EQ(DOM_AddNasIdBindVlanId("p", "n", 1), 1u);
    EXPECT_EQ(DOM_GetNasIdByProfileAndVlanId("p", 1, nas_id), DOM_ERR_FAILED);
    EXPECT_STREQ(nas_id, "?");
    EXPECT_EQ(DOM_ProcNasIdBindVlanIdCfg("n", 1, 1, "p", nullptr), 1u);
}

}  // namespace
}  // namespace aaadom
