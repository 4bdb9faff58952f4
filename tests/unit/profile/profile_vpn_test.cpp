// The VPNs of a profile: look-up, addition, deletion, limits, table and list.
#include "base/text.h"
#include "unit/profile/profile_fixture.h"

namespace aaadom {
namespace {

template <typename Store>
class ProfileVpnTest : public ProfileTest<Store> {
  protected:
    Seg SegmentOf(const std::string& vpn) {
        return Store::Unpack(this->FindVpn(profile_, vpn)->segment);
    }
    typename Store::Kind::Profile* const profile_ = this->Add("p");
};
TYPED_TEST_SUITE(ProfileVpnTest, BothKinds, KindNames);

TYPED_TEST(ProfileVpnTest, AddedVpnHasItsSegment) {
    const Seg seg{7, "seven", 700};
    ASSERT_EQ(this->AddVpn(this->profile_, "v", seg), kOk);
    EXPECT_EQ(this->SegmentOf("v"), TypeParam::Kept(seg));
    EXPECT_EQ(this->VpnNames(this->profile_), Names({"v"}));
}

TYPED_TEST(ProfileVpnTest, ProfileWithoutTableFindsNothing) {
    EXPECT_EQ(this->FindVpn(this->profile_, "v"), nullptr);
    EXPECT_EQ(this->profile_->vpn_table, nullptr);
}

TYPED_TEST(ProfileVpnTest, LookUpMindsTheCase) {
    this->AddVpn(this->profile_, "abc");
    EXPECT_EQ(this->FindVpn(this->profile_, "ABC"), nullptr);
    ASSERT_EQ(this->AddVpn(this->profile_, "ABC"), kOk);
    EXPECT_EQ(this->profile_->vpn_count, 2u);
}

// Names of different buckets differ whatever the comparison; these two share bucket 33.
TYPED_TEST(ProfileVpnTest, LookUpMindsTheCaseWithinABucket) {
    this->AddVpn(this->profile_, "vpn65");
    EXPECT_EQ(this->FindVpn(this->profile_, "VPN65"), nullptr);
    ASSERT_EQ(this->AddVpn(this->profile_, "VPN65", {2, "two"}), kOk);
    EXPECT_EQ(this->profile_->vpn_table->buckets[33]->next,
              &this->FindVpn(this->profile_, "vpn65")->hash);
    EXPECT_EQ(this->SegmentOf("vpn65").id, 1u);
    EXPECT_EQ(this->SegmentOf("VPN65").id, 2u);
}

TYPED_TEST(ProfileVpnTest, LookUpFindsWholeNamesOnly) {
    this->AddVpn(this->profile_, "abc");
    EXPECT_EQ(this->FindVpn(this->profile_, "ab"), nullptr);
    EXPECT_EQ(this->FindVpn(this->profile_, "abcd"), nullptr);
}

TYPED_TEST(ProfileVpnTest, LongNameIsCutAndMatchesItsFirst31Characters) {
    const std::string kept(31, 'v');
    ASSERT_EQ(this->AddVpn(this->profile_, kept + "wxyz"), kOk);
    EXPECT_EQ(this->VpnNames(this->profile_), Names({kept}));
    for (const std::string& name : {kept, kept + "1", kept + std::string(300, '2')}) {
        EXPECT_NE(this->FindVpn(this->profile_, name), nullptr) << name;
    }
    EXPECT_EQ(this->FindVpn(this->profile_, std::string(30, 'v')), nullptr);
    ASSERT_EQ(this->AddVpn(this->profile_, kept + "other", {9, "nine"}), kOk);
    EXPECT_EQ(this->profile_->vpn_count, 1u);
    EXPECT_EQ(this->SegmentOf(kept), Seg({9, "nine"}));
}

// The hash covers 32 bytes: whatever stands behind the name in the caller's buffer must not count.
TYPED_TEST(ProfileVpnTest, BytesBehindTheCallersNameDoNotCount) {
    char first[32], second[32];
    memset(first, 'x', sizeof first);
    memset(second, 'y', sizeof second);
    strcpy(first, "vpn1");
    strcpy(second, "vpn1");
    const auto segment = TypeParam::Pack({1, "s"});
    ASSERT_EQ(TypeParam::AddVpn(first, this->profile_, &segment), kOk);
    EXPECT_NE(TypeParam::FindVpn(second, this->profile_), nullptr);
}

TYPED_TEST(ProfileVpnTest, StoredNameIsPaddedWithZeros) {
    ASSERT_EQ(this->AddVpn(this->profile_, "vpn1"), kOk);
    const char padded[32] = "vpn1";
    EXPECT_EQ(memcmp(this->FindVpn(this->profile_, "vpn1")->vpn_name, padded, 32), 0);
}

TYPED_TEST(ProfileVpnTest, EmptyNameIsAName) {
    ASSERT_EQ(this->AddVpn(this->profile_, ""), kOk);
    EXPECT_NE(this->FindVpn(this->profile_, ""), nullptr);
}

TYPED_TEST(ProfileVpnTest, ExistingVpnTakesTheNewSegmentAndKeepsItsPlace) {
    for (const char* name : {"a", "b", "c"}) this->AddVpn(this->profile_, name);
    const Names chains = this->ChainNames(this->profile_);
    const auto* vpn = this->FindVpn(this->profile_, "b");
    ASSERT_EQ(this->AddVpn(this->profile_, "b", {8, "eight", 80}), kOk);
    EXPECT_EQ(this->FindVpn(this->profile_, "b"), vpn);
    EXPECT_EQ(this->SegmentOf("b"), TypeParam::Kept({8, "eight", 80}));
    EXPECT_EQ(this->VpnNames(this->profile_), Names({"a", "b", "c"}));
    EXPECT_EQ(this->ChainNames(this->profile_), chains);
}

TYPED_TEST(ProfileVpnTest, OverwritingTakesNoMemory) {
    this->AddVpn(this->profile_, "v");
    fake::FailAny(1);
    EXPECT_EQ(this->AddVpn(this->profile_, "v", {2, "t"}), kOk);
    EXPECT_FALSE(fake::Tripped());
}

TYPED_TEST(ProfileVpnTest, VpnNumber129IsRefused) {
    this->AddVpns(this->profile_, 128);
    const Names before = this->VpnNames(this->profile_);
    EXPECT_EQ(before.size(), 128u);
    EXPECT_EQ(this->AddVpn(this->profile_, "one more"), TypeParam::kVpnsFull);
    EXPECT_EQ(this->VpnNames(this->profile_), before);
    EXPECT_EQ(this->ChainNames(this->profile_).size(), 128u);
}

TYPED_TEST(ProfileVpnTest, FullProfileStillTakesNewSegmentsOfItsVpns) {
    this->AddVpns(this->profile_, 128);
    EXPECT_EQ(this->AddVpn(this->profile_, "v64", {5, "five"}), kOk);
    EXPECT_EQ(this->SegmentOf("v64"), Seg({5, "five"}));
    EXPECT_EQ(this->profile_->vpn_count, 128u);
}

TYPED_TEST(ProfileVpnTest, LimitCountsEachProfileByItself) {
    this->AddVpns(this->profile_, 128);
    EXPECT_EQ(this->AddVpn(this->Add("q"), "v"), kOk);
}

TYPED_TEST(ProfileVpnTest, TableHas128BucketsAndIsMadeWithTheFirstVpn) {
    EXPECT_EQ(fake::Count(fake::Event::kHashCreate), 0u);
    this->AddVpn(this->profile_, "a");
    this->AddVpn(this->profile_, "b");
    EXPECT_EQ(fake::Count(fake::Event::kHashCreate), 1u);
    EXPECT_EQ(this->profile_->vpn_table->bucket_count, 128u);
}

TYPED_TEST(ProfileVpnTest, TableStaysWhenTheLastVpnGoes) {
    this->AddVpn(this->profile_, "v");
    const auto* table = this->profile_->vpn_table;
    TypeParam::DeleteVpn("v", this->profile_);
    EXPECT_EQ(this->profile_->vpn_table, table);
    EXPECT_EQ(this->VpnNames(this->profile_), Names());
    this->AddVpn(this->profile_, "w");
    EXPECT_EQ(fake::Count(fake::Event::kHashCreate), 1u);
}

TYPED_TEST(ProfileVpnTest, AdditionWithoutMemoryChangesNothing) {
    for (const char* name : {"first", "second"}) {
        const Names before = this->VpnNames(this->profile_);
        fake::FailAllocation(1);
        EXPECT_EQ(this->AddVpn(this->profile_, name), kFailed);
        EXPECT_TRUE(fake::Tripped());
        EXPECT_EQ(this->VpnNames(this->profile_), before);
        ASSERT_EQ(this->AddVpn(this->profile_, name), kOk);
    }
}

TYPED_TEST(ProfileVpnTest, VpnIsAllocatedBeforeTheTable) {
    fake::FailAllocation(1);
    EXPECT_EQ(this->AddVpn(this->profile_, "v"), kFailed);
    EXPECT_EQ(fake::Count(fake::Event::kHashCreate), 0u);
    EXPECT_EQ(this->profile_->vpn_table, nullptr);
}

TYPED_TEST(ProfileVpnTest, AdditionWithoutATableChangesNothing) {
    fake::FailHashCreate(1);
    EXPECT_EQ(this->AddVpn(this->profile_, "v"), kFailed);
    EXPECT_EQ(this->profile_->vpn_table, nullptr);
    EXPECT_EQ(this->VpnNames(this->profile_), Names());
    EXPECT_EQ(this->AddVpn(this->profile_, "v"), kOk);
}

TYPED_TEST(ProfileVpnTest, RefusedAdditionsKeepNoMemory) {
    const auto refused = [this] {
        fake::FailHashCreate(1);
        EXPECT_EQ(this->AddVpn(this->profile_, "v"), kFailed);
    };
    EXPECT_LT(HeapGrowth(1000, refused), kHeapNoise);
}

TYPED_TEST(ProfileVpnTest, DeletedVpnsKeepNoMemory) {
    const auto round = [this] {
        EXPECT_EQ(this->AddVpn(this->profile_, "v"), kOk);
        TypeParam::DeleteVpn("v", this->profile_);
    };
    EXPECT_LT(HeapGrowth(1000, round), kHeapNoise);
}

TYPED_TEST(ProfileVpnTest, DeletionKeepsListAndChains) {
    this->AddVpns(this->profile_, 128);
    for (int i = 127; i >= 0; i -= 3) {
        const std::string name = "v" + std::to_string(i);
        const uint32_t count = this->profile_->vpn_count;
        TypeParam::DeleteVpn(name.c_str(), this->profile_);
        EXPECT_EQ(this->FindVpn(this->profile_, name), nullptr);
        EXPECT_EQ(this->VpnNames(this->profile_).size(), count - 1);
        EXPECT_EQ(this->ChainNames(this->profile_).size(), count - 1);
    }
    EXPECT_NE(this->FindVpn(this->profile_, "v0"), nullptr);
}

TYPED_TEST(ProfileVpnTest, DeletionOfAnAbsentVpnDoesNothing) {
    TypeParam::DeleteVpn("v", this->profile_);
    this->AddVpn(this->profile_, "v");
    TypeParam::DeleteVpn("V", this->profile_);
    EXPECT_EQ(this->VpnNames(this->profile_), Names({"v"}));
}

TYPED_TEST(ProfileVpnTest, NullArgumentsFindAndChangeNothing) {
    const auto segment = TypeParam::Pack({1, "s"});
    this->AddVpn(this->profile_, "v");
    EXPECT_EQ(TypeParam::AddVpn(nullptr, this->profile_, &segment), kFailed);
    EXPECT_EQ(TypeParam::AddVpn("w", nullptr, &segment), kFailed);
    EXPECT_EQ(TypeParam::AddVpn("w", this->profile_, nullptr), kFailed);
    EXPECT_EQ(TypeParam::FindVpn(nullptr, this->profile_), nullptr);
    EXPECT_EQ(TypeParam::FindVpn("v", nullptr), nullptr);
    TypeParam::DeleteVpn(nullptr, this->profile_);
    TypeParam::DeleteVpn("v", nullptr);
    EXPECT_EQ(TypeParam::FindBiggerVpn(this->profile_, nullptr), nullptr);
    EXPECT_EQ(this->VpnNames(this->profile_), Names({"v"}));
}

TYPED_TEST(ProfileVpnTest, NextBiggerNeedNotExistItself) {
    EXPECT_EQ(TypeParam::FindBiggerVpn(this->profile_, "a"), nullptr);
    this->AddVpn(this->profile_, "b");
    this->AddVpn(this->profile_, "d");
    EXPECT_STREQ(TypeParam::FindBiggerVpn(this->profile_, "a")->vpn_name, "b");
    EXPECT_STREQ(TypeParam::FindBiggerVpn(this->profile_, "b")->vpn_name, "d");
    EXPECT_STREQ(TypeParam::FindBiggerVpn(this->profile_, "c")->vpn_name, "d");
    EXPECT_EQ(TypeParam::FindBiggerVpn(this->profile_, "d"), nullptr);
}

// Reference values, worked out from the hash's definition by other means.
TYPED_TEST(ProfileVpnTest, HashKeysAreTheReferenceValues) {
    const std::pair<std::string, uint32_t> kReference[] = {
        {"", 12},
        {"a", 85},
        {"abc", 113},
        {"ABC", 35},
        {"vpn1", 118},
        {"vpn2", 125},
        {"vpn-red", 50},
        {"abcdefghi", 98},
        {"abcdefghijkl", 30},
        {std::string(24, 'x'), 126},
        {std::string(31, 'k'), 40},
        {std::string(40, 'k'), 40},
        {"\xE9\xFF\x80", 48},
        {"\xC3\xA4\xC3\xB6", 73},
    };
    for (const auto& [name, bucket] : kReference) {
        char padded[32] = {};
        CopyText(padded, name.c_str());
        EXPECT_EQ(TypeParam::HashKey(padded), bucket) << name;
    }
}

TYPED_TEST(ProfileVpnTest, VpnsStandInTheBucketsOfTheirKeys) {
    this->AddVpn(this->profile_, "vpn1");
    this->AddVpn(this->profile_, "\xE9\xFF\x80");
    HASH_TABLE* table = this->profile_->vpn_table;
    EXPECT_EQ(TypeParam::Kind::OfHashNode(table->buckets[118]),
              this->FindVpn(this->profile_, "vpn1"));
    EXPECT_EQ(TypeParam::Kind::OfHashNode(table->buckets[48]),
              this->FindVpn(this->profile_, "\xE9\xFF\x80"));
}

// v0, v4, v139 and v153 share bucket 14.
TYPED_TEST(ProfileVpnTest, NewestVpnIsTheHeadOfItsBucket) {
    for (const char* name : {"v4", "v0", "v153", "v139"}) this->AddVpn(this->profile_, name);
    EXPECT_EQ(this->ChainNames(this->profile_), Names({"v139", "v153", "v0", "v4"}));
}

class AuthorVpnCallbacks : public ProfileTest<Author> {};

TEST_F(AuthorVpnCallbacks, FreedVpnLeavesListAndTable) {
    AuthorProfile* profile = Add("p");
    AddVpns(profile, 3);
    DOM_author_FreeAuthorProfileVpnNode(FindVpn(profile, "v1"));
    EXPECT_EQ(Author::VpnNames(*profile), Names({"v0", "v2"}));
    DOM_author_DestroyHashNode(&FindVpn(profile, "v0")->hash);
    EXPECT_EQ(Author::VpnNames(*profile), Names({"v2"}));
    dom_author_FreeAllVpnNode(FindVpn(profile, "v2"));
    EXPECT_EQ(Author::VpnNames(*profile), Names());
    EXPECT_EQ(ChainNames(profile), Names());
    EXPECT_EQ(profile->vpn_count, 3u) << "the count is its owner's";
}

TEST_F(AuthorVpnCallbacks, FreedProfileLeavesTheListOnly) {
    Add("a");
    AddVpns(Add("b"), 3);
    Add("c");
    dom_author_FreeAllProfileNode(DOM_author_FindProfile("b"));
    EXPECT_EQ(DOM_author_FindProfile("b"), nullptr);
    EXPECT_STREQ(DOM_author_GetNextProfile("a")->name, "c");
    EXPECT_EQ(DOM_author_GetProfileNum(), 3u) << "the count is its owner's";
}

TEST_F(AuthorVpnCallbacks, NullIsIgnored) {
    DOM_author_FreeAuthorProfileVpnNode(nullptr);
    DOM_author_DestroyHashNode(nullptr);
    dom_author_FreeAllVpnNode(nullptr);
    dom_author_FreeAllProfileNode(nullptr);
}

// A profile of a caller's own, never added to a store.
TEST_F(AuthorVpnCallbacks, LinksThatNobodyInitialisedAreAnEmptyList) {
    AuthorProfile profile{};
    EXPECT_EQ(DOM_author_FindBiggerVpn(&profile.vpn_list, ""), nullptr);
    EXPECT_EQ(DOM_author_FindBiggerVpn(nullptr, ""), nullptr);
    ASSERT_EQ(AddVpn(&profile, "v"), kOk);
    EXPECT_EQ(VpnNames(&profile), Names({"v"}));
    HASH_Destroy(profile.vpn_table, DOM_author_DestroyHashNode);
}

TEST(CriticalVpns, NullListHeadFindsNothing) {
    EXPECT_EQ(DOM_critical_FindBiggerVpn(nullptr, "v"), nullptr);
}

}  // namespace
}  // namespace aaadom
