#include "unit/domain/nas_id_fixture.h"

namespace aaadom {
namespace {

class NasIdProfileTable : public NasIdTest {};

TEST_F(NasIdProfileTable, AddedProfileIsTheCallingRoles) {
    EXPECT_EQ(DOM_AddNasIdProfile("office"), 0u);
    EXPECT_EQ(Profiles(Role::kWorking), Names({"office"}));
    EXPECT_TRUE(Profiles(Role::kConfig).empty());
    InConfig([] { return DOM_AddNasIdProfile("lab"); });
    EXPECT_EQ(Profiles(Role::kConfig), Names({"lab"}));
    EXPECT_EQ(Profiles(Role::kWorking), Names({"office"}));
}

// "p2", "p82" and "p124" share bucket 5.
TEST_F(NasIdProfileTable, NewProfileIsTheHeadOfItsBucket) {
    for (const char* name : {"p2", "p82", "p124"}) EXPECT_EQ(DOM_AddNasIdProfile(name), 0u);
    EXPECT_EQ(Profiles(Role::kWorking), Names({"p124", "p82", "p2"}));
}

TEST_F(NasIdProfileTable, AdditionDoesNotLookForTheSameName) {
    EXPECT_EQ(DOM_AddNasIdProfile("p1"), 0u);
    EXPECT_EQ(DOM_AddNasIdProfile("P1"), 0u);
    EXPECT_EQ(Profiles(Role::kWorking), Names({"P1", "p1"}));
}

TEST_F(NasIdProfileTable, AdditionTakesNoLock) {
    const uint64_t before = fake::Count(fake::Event::kLock);
    DOM_AddNasIdProfile("p1");
    EXPECT_EQ(fake::Count(fake::Event::kLock), before);
}

TEST_F(NasIdProfileTable, NameIsCutTo31Characters) {
    EXPECT_EQ(DOM_AddNasIdProfile(std::string(31, 'a').c_str()), 0u);
    EXPECT_EQ(DOM_AddNasIdProfile(std::string(40, 'b').c_str()), 0u);
    EXPECT_EQ(Profiles(Role::kWorking).size(), 2u);
    for (const std::string& name : Profiles(Role::kWorking)) EXPECT_EQ(name.size(), 31u);
}

TEST_F(NasIdProfileTable, AdditionWithoutMemoryIs1) {
    fake::FailAllocation(1);
    EXPECT_EQ(DOM_AddNasIdProfile("p1"), 1u);
    fake::DisarmFailures();
    EXPECT_TRUE(Profiles(Role::kWorking).empty());
}

TEST_F(NasIdProfileTable, NullNamesAreRefused) {
    DomDbUpdateReq change = Filled();
    EXPECT_EQ(DOM_AddNasIdProfile(nullptr), 1u);
    EXPECT_EQ(DOM_ProcNasIdProfileCfg(nullptr, 1, nullptr, &change), 1u);
    EXPECT_EQ(DOM_ProcNasIdProfileCfg(nullptr, 0, nullptr, &change), 1u);
    EXPECT_TRUE(Same(change, Filled()));
}

TEST_F(NasIdProfileTable, NewProfileAnswersTheGivenNameAndFillsTheChange) {
    char name_out[DOM_NASID_NAME_SIZE];
    DomDbUpdateReq change = Filled();
    EXPECT_EQ(DOM_ProcNasIdProfileCfg("Office", 1, name_out, &change), 0u);
    EXPECT_STREQ(name_out, "Office");
    EXPECT_EQ(change.object_type, uint32_t{DOM_DB_NASID_PROFILE});
    EXPECT_EQ(change.operation, 1);
    EXPECT_STREQ(change.nas_id_profile_name, "Office");
    EXPECT_EQ(Profiles(Role::kWorking), Names({"Office"}));
}

TEST_F(NasIdProfileTable, ChangeKeepsTheFieldsThatAreNotAProfiles) {
    DomDbUpdateReq change = Filled();
    AddProfile("old");
    for (const uint16_t operation : {1, 0}) {
        ASSERT_EQ(
            DOM_ProcNasIdProfileCfg(operation == 1 ? "new" : "old", operation, nullptr, &change),
            0u);
        change.object_type = Filled().object_type;
        change.operation = Filled().operation;
        memset(change.nas_id_profile_name, 0x5A, sizeof change.nas_id_profile_name);
        EXPECT_TRUE(Same(change, Filled()));
    }
}

TEST_F(NasIdProfileTable, KnownProfileIs15WithTheStoredNameInAnyLetterCase) {
    AddProfile("Office");
    char name_out[DOM_NASID_NAME_SIZE] = "";
    DomDbUpdateReq change = Filled();
    EXPECT_EQ(DOM_ProcNasIdProfileCfg("oFFICE", 1, name_out, &change), 15u);
    EXPECT_STREQ(name_out, "Office");
    EXPECT_TRUE(Same(change, Filled())) << "nothing to save";
    EXPECT_EQ(Profiles(Role::kWorking), Names({"Office"}));
    EXPECT_EQ(DOM_ProcNasIdProfileCfg("oFFICE", 1, nullptr, nullptr), 15u);
}

TEST_F(NasIdProfileTable, FailedAdditionAnswersTheGivenNameAndNoChange) {
    char name_out[DOM_NASID_NAME_SIZE] = "";
    DomDbUpdateReq change = Filled();
    fake::FailAllocation(1);
    EXPECT_EQ(DOM_ProcNasIdProfileCfg("office", 1, name_out, &change), 1u);
    fake::DisarmFailures();
    EXPECT_STREQ(name_out, "office");
    EXPECT_TRUE(Same(change, Filled()));
}

TEST_F(NasIdProfileTable, AnyOperationOtherThan1Deletes) {
    for (const uint16_t operation : {0, 2, 0xFFFF}) {
        AddProfile("p1");
        DomDbUpdateReq change = Filled();
        EXPECT_EQ(DOM_ProcNasIdProfileCfg("p1", operation, nullptr, &change), 0u);
        EXPECT_EQ(change.operation, operation);
        EXPECT_TRUE(Profiles(Role::kWorking).empty());
    }
}

TEST_F(NasIdProfileTable, DeletionRecordsTheStoredName) {
    AddProfile("Office");
    char name_out[DOM_NASID_NAME_SIZE] = "?";
    DomDbUpdateReq change = Filled();
    EXPECT_EQ(DOM_ProcNasIdProfileCfg("oFFICE", 0, name_out, &change), 0u);
    EXPECT_EQ(change.object_type, uint32_t{DOM_DB_NASID_PROFILE});
    EXPECT_EQ(change.operation, 0);
    EXPECT_STREQ(change.nas_id_profile_name, "Office");
    EXPECT_STREQ(name_out, "?") << "a deletion answers no name";
}

TEST_F(NasIdProfileTable, DeletionOfAnUnknownProfileIs2) {
    AddProfile("p1");
    char name_out[DOM_NASID_NAME_SIZE] = "?";
    DomDbUpdateReq change = Filled();
    EXPECT_EQ(DOM_ProcNasIdProfileCfg("p2", 0, name_out, &change), 2u);
    EXPECT_STREQ(name_out, "?");
    EXPECT_TRUE(Same(change, Filled()));
}

TEST_F(NasIdProfileTable, DeletionInTheMiddleOfABucketKeepsItsNeighbours) {
    for (const char* name : {"p2", "p82", "p124"}) AddProfile(name);
    EXPECT_EQ(DeleteProfile("p82"), 0u);
    EXPECT_EQ(Profiles(Role::kWorking), Names({"p124", "p2"}));
    EXPECT_EQ(DeleteProfile("p124"), 0u);
    EXPECT_EQ(DeleteProfile("p2"), 0u);
    EXPECT_TRUE(Profiles(Role::kWorking).empty());
}

TEST_F(NasIdProfileTable, DeletionRemovesItsBindingsOnEveryVlan) {
    AddProfile("p1");
    AddProfile("p2");
    for (uint32_t vlan = 1; vlan <= 4094; vlan += 7) Bind("p1", "n", static_cast<uint16_t>(vlan));
    Bind("p1", "n", 0xFFFF);
    Bind("p2", "n", 8);
    EXPECT_EQ(DeleteProfile("p1"), 0u);
    EXPECT_EQ(Bindings(Role::kWorking), Names({"8/p2/n"}));
}

TEST_F(NasIdProfileTable, DeletionLeavesTheOtherRolesProfileAndBindings) {
    const auto fill = [] { return AddProfile("p1") | Bind("p1", "n", 1); };
    ASSERT_EQ(fill(), 0u);
    ASSERT_EQ(InConfig(fill), 0u);
    EXPECT_EQ(InConfig([] { return DeleteProfile("p1"); }), 0u);
    EXPECT_TRUE(Profiles(Role::kConfig).empty());
    EXPECT_TRUE(Bindings(Role::kConfig).empty());
    EXPECT_EQ(Profiles(Role::kWorking), Names({"p1"}));
    EXPECT_EQ(Bindings(Role::kWorking), Names({"1/p1/n"}));
}

// Bindings are matched by the exact spelling: one that a client made with other letters stays.
TEST_F(NasIdProfileTable, DeletionKeepsBindingsOfAnotherSpelling) {
    AddProfile("p1");
    Bind("p1", "gone", 1);
    Bind("P1", "kept", 2);
    EXPECT_EQ(DeleteProfile("P1"), 0u);
    EXPECT_EQ(Bindings(Role::kWorking), Names({"2/P1/kept"}));
    EXPECT_EQ(Lookup("p1", 2), "kept");
}

TEST_F(NasIdProfileTable, DeletionTakesTheBindingMutexOnce) {
    AddProfile("p1");
    const uint64_t before = fake::Count(fake::Event::kLock);
    DeleteProfile("p1");
    EXPECT_EQ(fake::Count(fake::Event::kLock), before + 1);
    EXPECT_EQ(fake::HeldLocks(), 0);
}

// A name too long to be kept is never found again: it is compared whole with what was kept.
TEST_F(NasIdProfileTable, OverlongNameIsAddedAgainAndNotFoundForDeletion) {
    const std::string name(40, 'a');
    EXPECT_EQ(AddProfile(name), 0u);
    EXPECT_EQ(AddProfile(name), 0u);
    EXPECT_EQ(Profiles(Role::kWorking).size(), 2u);
    EXPECT_EQ(DeleteProfile(name), 2u);
    EXPECT_EQ(DeleteProfile(std::string(31, 'a')), 0u);
}

TEST_F(NasIdProfileTable, OverlongAnswerAndChangeAreCut) {
    char name_out[DOM_NASID_NAME_SIZE];
    DomDbUpdateReq change = Filled();
    EXPECT_EQ(DOM_ProcNasIdProfileCfg(std::string(40, 'a').c_str(), 1, name_out, &change), 0u);
    EXPECT_EQ(name_out, std::string(31, 'a'));
    EXPECT_EQ(change.nas_id_profile_name, std::string(31, 'a'));
}

TEST(NasIdProfileWithoutTable, NothingIsFoundAndAdditionIs1) {
    fake::Reset();
    DOM_ResetAAADService();
    EXPECT_EQ(DOM_AddNasIdProfile("p1"), 1u);
    EXPECT_EQ(DOM_ProcNasIdProfileCfg("p1", 1, nullptr, nullptr), 1u);
    EXPECT_EQ(DOM_ProcNasIdProfileCfg("p1", 0, nullptr, nullptr), 2u);
}

}  // namespace
}  // namespace aaadom
