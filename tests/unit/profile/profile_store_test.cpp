// Profiles themselves: look-up, addition, deletion, limits.
#include "unit/profile/profile_fixture.h"

namespace aaadom {
namespace {

template <typename Store>
class ProfileStoreTest : public ProfileTest<Store> {};
TYPED_TEST_SUITE(ProfileStoreTest, BothKinds, KindNames);

TYPED_TEST(ProfileStoreTest, NewProfileIsEmptyWithoutATable) {
    const auto* profile = this->Add("p");
    ASSERT_NE(profile, nullptr);
    EXPECT_EQ(profile->vpn_table, nullptr);
    EXPECT_EQ(profile->vpn_count, 0u);
    EXPECT_EQ(this->VpnNames(profile), Names());
    EXPECT_EQ(TypeParam::Unpack(profile->default_segment), Seg());
    EXPECT_EQ(fake::Count(fake::Event::kHashCreate), 0u);
}

TYPED_TEST(ProfileStoreTest, LookUpIgnoresCase) {
    const auto* profile = this->Add("abc");
    EXPECT_EQ(TypeParam::Find("ABC"), profile);
    EXPECT_EQ(TypeParam::Find("aBc"), profile);
    EXPECT_STREQ(profile->name, "abc");
}

TYPED_TEST(ProfileStoreTest, LookUpFindsWholeNamesOnly) {
    this->Add("abc");
    EXPECT_EQ(TypeParam::Find("ab"), nullptr);
    EXPECT_EQ(TypeParam::Find("abcd"), nullptr);
    EXPECT_EQ(TypeParam::Find(""), nullptr);
    EXPECT_EQ(TypeParam::Find(nullptr), nullptr);
}

TYPED_TEST(ProfileStoreTest, LongNameIsCutTo31Characters) {
    ASSERT_EQ(TypeParam::Add(std::string(40, 'k').c_str()), kOk);
    EXPECT_EQ(this->ProfileNames(), Names({std::string(31, 'k')}));
}

// Only VPN names are cut before they are looked for.
TYPED_TEST(ProfileStoreTest, LongNameDoesNotFindTheProfileItMade) {
    ASSERT_EQ(TypeParam::Add(std::string(40, 'k').c_str()), kOk);
    EXPECT_EQ(TypeParam::Find(std::string(40, 'k').c_str()), nullptr);
    EXPECT_NE(TypeParam::Find(std::string(31, 'k').c_str()), nullptr);
}

TYPED_TEST(ProfileStoreTest, AdditionDoesNotLookForDuplicates) {
    auto* first = this->Add("abc");
    EXPECT_EQ(TypeParam::Add("abc"), kOk);
    EXPECT_EQ(this->ProfileNames(), Names({"abc", "abc"}));
    EXPECT_EQ(TypeParam::Find("abc"), first) << "the new one goes behind the equal one";
}

TYPED_TEST(ProfileStoreTest, SeventeenthProfileIsRefused) {
    this->AddProfiles(16);
    const Names before = this->ProfileNames();
    EXPECT_EQ(TypeParam::Add("one more"), TypeParam::kStoreFull);
    EXPECT_EQ(this->ProfileNames(), before);
}

// The limit is looked at before anything else.
TYPED_TEST(ProfileStoreTest, FullStoreRefusesExistingNamesAlike) {
    this->AddProfiles(16);
    EXPECT_EQ(TypeParam::Add("p0"), TypeParam::kStoreFull);
    fake::FailAllocation(1);
    EXPECT_EQ(TypeParam::Add("one more"), TypeParam::kStoreFull);
    EXPECT_FALSE(fake::Tripped());
}

TYPED_TEST(ProfileStoreTest, LimitCountsEachRoleByItself) {
    this->AddProfiles(16);
    EXPECT_EQ(this->InConfig([] { return TypeParam::Add("p"); }), kOk);
}

TYPED_TEST(ProfileStoreTest, AdditionWithoutMemoryChangesNothing) {
    this->Add("a");
    fake::FailAllocation(1);
    EXPECT_EQ(TypeParam::Add("b"), kFailed);
    EXPECT_TRUE(fake::Tripped());
    EXPECT_EQ(this->ProfileNames(), Names({"a"}));
}

TYPED_TEST(ProfileStoreTest, NullNameIsRefused) {
    EXPECT_EQ(TypeParam::Add(nullptr), kFailed);
    EXPECT_EQ(this->ProfileNames(), Names());
}

TYPED_TEST(ProfileStoreTest, DeletionKeepsTheOthersLinked) {
    for (const char* name : {"a", "b", "c", "d"}) this->Add(name);
    TypeParam::Delete(TypeParam::Find("b"));
    EXPECT_EQ(this->ProfileNames(), Names({"a", "c", "d"}));
    TypeParam::Delete(TypeParam::Find("d"));
    EXPECT_EQ(this->ProfileNames(), Names({"a", "c"}));
    TypeParam::Delete(TypeParam::Find("a"));
    EXPECT_EQ(this->ProfileNames(), Names({"c"}));
    TypeParam::Delete(TypeParam::Find("c"));
    EXPECT_EQ(this->ProfileNames(), Names());
}

TYPED_TEST(ProfileStoreTest, DeletionFreesTheVpns) {
    auto* profile = this->Add("p");
    this->AddVpns(profile, 128);
    TypeParam::Delete(profile);
    EXPECT_EQ(fake::LiveHashTables(), 0);
    EXPECT_EQ(TypeParam::Find("p"), nullptr);
}

TYPED_TEST(ProfileStoreTest, DeletedProfilesKeepNoMemory) {
    const auto round = [this] {
        auto* profile = this->Add("p");
        this->AddVpn(profile, "v");
        this->AddVpn(profile, "w");
        TypeParam::Delete(profile);
    };
    EXPECT_LT(HeapGrowth(500, round), kHeapNoise);
}

TYPED_TEST(ProfileStoreTest, DeletionMakesRoomForAnother) {
    this->AddProfiles(16);
    TypeParam::Delete(TypeParam::Find("p3"));
    EXPECT_EQ(TypeParam::Add("q"), kOk);
}

TYPED_TEST(ProfileStoreTest, DeletionOfNullIsIgnored) {
    this->Add("p");
    TypeParam::Delete(nullptr);
    EXPECT_EQ(this->ProfileNames(), Names({"p"}));
}

TYPED_TEST(ProfileStoreTest, NextBiggerNeedNotExistItself) {
    this->Add("b");
    this->Add("d");
    EXPECT_STREQ(TypeParam::FindBigger(TypeParam::Head(), "a")->name, "b");
    EXPECT_STREQ(TypeParam::FindBigger(TypeParam::Head(), "b")->name, "d");
    EXPECT_STREQ(TypeParam::FindBigger(TypeParam::Head(), "c")->name, "d");
    EXPECT_EQ(TypeParam::FindBigger(TypeParam::Head(), "d"), nullptr);
    EXPECT_EQ(TypeParam::FindBigger(TypeParam::Head(), "e"), nullptr);
}

TYPED_TEST(ProfileStoreTest, NextBiggerOfAnEmptyListOrOfNothingIsNone) {
    EXPECT_EQ(TypeParam::FindBigger(TypeParam::Head(), "a"), nullptr);
    this->Add("b");
    EXPECT_EQ(TypeParam::FindBigger(nullptr, "a"), nullptr);
    EXPECT_EQ(TypeParam::FindBigger(TypeParam::Head(), nullptr), nullptr);
}

// Bytes above 127 sort behind ASCII: they are unsigned.
TYPED_TEST(ProfileStoreTest, HighBytesSortAsUnsigned) {
    for (const char* name : {"\xC3", "z", "\x80"}) this->Add(name);
    EXPECT_EQ(this->ProfileNames(), Names({"z", "\x80", "\xC3"}));
    EXPECT_NE(TypeParam::Find("\xC3"), nullptr);
}

class AuthorProfileWalk : public ProfileTest<Author> {};

TEST_F(AuthorProfileWalk, NumberAndFirstProfileAreTheCallingRoles) {
    EXPECT_EQ(DOM_author_GetProfileNum(), 0u);
    EXPECT_EQ(DOM_author_GetFirstProfile(), nullptr);
    Add("b");
    Add("a");
    EXPECT_EQ(DOM_author_GetProfileNum(), 2u);
    EXPECT_STREQ(DOM_author_GetFirstProfile()->name, "a");
    EXPECT_EQ(InConfig([] { return DOM_author_GetProfileNum(); }), 0u);
    EXPECT_EQ(InConfig([] { return DOM_author_GetFirstProfile(); }), nullptr);
}

TEST_F(AuthorProfileWalk, NextProfileIsTheSuccessorOfTheNamedOne) {
    for (const char* name : {"a", "b", "c"}) Add(name);
    EXPECT_STREQ(DOM_author_GetNextProfile("a")->name, "b");
    EXPECT_STREQ(DOM_author_GetNextProfile("B")->name, "c");
    EXPECT_EQ(DOM_author_GetNextProfile("c"), nullptr);
    EXPECT_EQ(DOM_author_GetNextProfile("aa"), nullptr) << "absent, though others follow";
    EXPECT_EQ(DOM_author_GetNextProfile(""), nullptr);
    EXPECT_EQ(DOM_author_GetNextProfile(nullptr), nullptr);
}

// The one goes by the list, the other by the bytes of the name: "b" finds B, before which a stands
// in no order of bytes.
TEST_F(AuthorProfileWalk, NextProfileAndNextBiggerDifferInLetterCase) {
    Add("B");
    Add("a");
    EXPECT_STREQ(DOM_author_GetNextProfile("b")->name, "a");
    EXPECT_EQ(DOM_author_FindBiggerProfile(DOM_author_GetProfileHead(), "b"), nullptr);
    EXPECT_EQ(DOM_author_ProcProfileGetBulk("b"), nullptr);
}

}  // namespace
}  // namespace aaadom
