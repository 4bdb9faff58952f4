// Configuration messages applied to the stores, and what they say to the database.
#include "unit/profile/profile_fixture.h"

namespace aaadom {
namespace {

const Seg kSeg{7, "seven", 700};
// Every operation but 1 deletes; the record gets it as it was given.
const uint16_t kDeletions[] = {0, 2, 3, 0xFFFF};

template <typename Store>
class ProfileChangeTest : public ProfileTest<Store> {
  protected:
    static Changed Of(const DomDbUpdateReq& change) { return Store::ChangeOf(change); }
};
TYPED_TEST_SUITE(ProfileChangeTest, BothKinds, KindNames);

// --- profiles ---

TYPED_TEST(ProfileChangeTest, AdditionAddsAndRecordsTheName) {
    DomDbUpdateReq change{};
    EXPECT_EQ(this->ApplyProfile("Gold", kAdd, &change), kOk);
    EXPECT_EQ(this->ProfileNames(), Names({"Gold"}));
    EXPECT_EQ(this->Of(change), (Changed{TypeParam::kProfileChange, 1, "Gold", "", {}}));
}

TYPED_TEST(ProfileChangeTest, AdditionGivesTheNameBack) {
    char name[32] = "x";
    EXPECT_EQ(this->ApplyProfile("Gold", kAdd, nullptr, name), kOk);
    EXPECT_STREQ(name, "Gold");
}

TYPED_TEST(ProfileChangeTest, ExistingProfileGivesItsStoredNameBack) {
    this->Add("Gold");
    char name[32] = "x";
    DomDbUpdateReq change = this->Filled();
    EXPECT_EQ(this->ApplyProfile("gOLD", kAdd, &change, name), TypeParam::kExists);
    EXPECT_STREQ(name, "Gold");
    EXPECT_TRUE(this->IsFilled(change));
    EXPECT_EQ(this->ProfileNames(), Names({"Gold"}));
}

// The duplicate is told before the limit.
TYPED_TEST(ProfileChangeTest, ExistingProfileOfAFullStoreExists) {
    this->AddProfiles(16);
    EXPECT_EQ(this->ApplyProfile("p0", kAdd), TypeParam::kExists);
}

TYPED_TEST(ProfileChangeTest, RefusedAdditionStillGivesTheNameBack) {
    this->AddProfiles(16);
    char name[32] = "x";
    DomDbUpdateReq change = this->Filled();
    EXPECT_EQ(this->ApplyProfile("Gold", kAdd, &change, name), TypeParam::kStoreFull);
    EXPECT_STREQ(name, "Gold");
    EXPECT_TRUE(this->IsFilled(change));
}

TYPED_TEST(ProfileChangeTest, AdditionWithoutMemoryGivesTheNameBack) {
    char name[32] = "x";
    DomDbUpdateReq change = this->Filled();
    const TlvPtr msg = this->ProfileMsg("Gold");
    fake::FailAllocation(1);
    EXPECT_EQ(TypeParam::ApplyProfile(msg.get(), kAdd, name, &change), kFailed);
    EXPECT_TRUE(fake::Tripped());
    EXPECT_STREQ(name, "Gold");
    EXPECT_TRUE(this->IsFilled(change));
    EXPECT_EQ(this->ProfileNames(), Names());
}

TYPED_TEST(ProfileChangeTest, DeletionDeletesAndRecordsTheStoredName) {
    for (const uint16_t operation : kDeletions) {
        this->AddVpns(this->Add("Gold"), 3);
        DomDbUpdateReq change{};
        EXPECT_EQ(this->ApplyProfile("gOLD", operation, &change), kOk);
        EXPECT_EQ(this->Of(change),
                  (Changed{TypeParam::kProfileChange, operation, "Gold", "", {}}));
        EXPECT_EQ(this->ProfileNames(), Names());
    }
}

TYPED_TEST(ProfileChangeTest, DeletionLeavesTheNameBufferAlone) {
    this->Add("Gold");
    char name[32] = "x";
    EXPECT_EQ(this->ApplyProfile("gold", kDelete, nullptr, name), kOk);
    EXPECT_EQ(this->ApplyProfile("gold", kDelete, nullptr, name), TypeParam::kMissing);
    EXPECT_STREQ(name, "x");
}

TYPED_TEST(ProfileChangeTest, DeletionOfAMissingProfileRecordsNothing) {
    DomDbUpdateReq change = this->Filled();
    EXPECT_EQ(this->ApplyProfile("Gold", kDelete, &change), TypeParam::kMissing);
    EXPECT_TRUE(this->IsFilled(change));
}

TYPED_TEST(ProfileChangeTest, ProfileMessageWithoutANameFails) {
    char name[32] = "x";
    DomDbUpdateReq change = this->Filled();
    const TlvPtr msg = Fields().Number(DOM_TLV_MSG_CODE, TypeParam::kProfileCode).Take();
    EXPECT_EQ(TypeParam::ApplyProfile(msg.get(), kAdd, name, &change), kFailed);
    EXPECT_EQ(TypeParam::ApplyProfile(msg.get(), kDelete, name, &change), kFailed);
    EXPECT_STREQ(name, "x");
    EXPECT_TRUE(this->IsFilled(change));
    EXPECT_EQ(this->ProfileNames(), Names());
}

TYPED_TEST(ProfileChangeTest, ProfileMessageWithALongNameFails) {
    EXPECT_EQ(this->ApplyProfile(std::string(32, 'n'), kAdd), kFailed);
    EXPECT_EQ(this->ApplyProfile(std::string(31, 'n'), kAdd), kOk);
}

// --- VPNs ---

TYPED_TEST(ProfileChangeTest, VpnIsSetAndRecorded) {
    this->Add("Gold");
    DomDbUpdateReq change{};
    EXPECT_EQ(this->ApplyVpn("Gold", "red", kSeg, kAdd, &change), kOk);
    const auto* vpn = this->FindVpn(TypeParam::Find("Gold"), "red");
    ASSERT_NE(vpn, nullptr);
    EXPECT_EQ(TypeParam::Unpack(vpn->segment), TypeParam::Kept(kSeg));
    EXPECT_EQ(this->Of(change),
              (Changed{TypeParam::kVpnChange, 1, "Gold", "red", TypeParam::Kept(kSeg)}));
}

// The database's key is made of the name, case and all.
TYPED_TEST(ProfileChangeTest, ChangesRecordTheStoredSpellingOfTheProfile) {
    this->Add("Gold");
    DomDbUpdateReq change{};
    EXPECT_EQ(this->ApplyVpn("gOLD", "red", kSeg, kAdd, &change), kOk);
    EXPECT_EQ(this->Of(change).profile, "Gold");
    change = {};
    EXPECT_EQ(this->ApplyVpn("GOLD", "red", kSeg, kDelete, &change), kOk);
    EXPECT_EQ(this->Of(change).profile, "Gold");
    change = {};
    EXPECT_EQ(this->ApplyDefault("gOLD", kSeg, kAdd, &change), kOk);
    EXPECT_EQ(this->Of(change).profile, "Gold");
}

TYPED_TEST(ProfileChangeTest, ExistingVpnTakesTheNewSegment) {
    this->AddVpn(this->Add("Gold"), "red", {1, "one"});
    EXPECT_EQ(this->ApplyVpn("Gold", "red", kSeg, kAdd), kOk);
    const auto* vpn = this->FindVpn(TypeParam::Find("Gold"), "red");
    EXPECT_EQ(TypeParam::Unpack(vpn->segment), TypeParam::Kept(kSeg));
}

TYPED_TEST(ProfileChangeTest, VpnIsDeletedAndRecordedWithTheMessagesSegment) {
    for (const uint16_t operation : kDeletions) {
        if (TypeParam::Find("Gold") == nullptr) this->Add("Gold");
        this->AddVpn(TypeParam::Find("Gold"), "red", {1, "one"});
        DomDbUpdateReq change{};
        EXPECT_EQ(this->ApplyVpn("Gold", "red", kSeg, operation, &change), kOk);
        EXPECT_EQ(this->FindVpn(TypeParam::Find("Gold"), "red"), nullptr);
        EXPECT_EQ(this->Of(change), (Changed{TypeParam::kVpnChange, operation, "Gold", "red",
                                             TypeParam::Kept(kSeg)}));
    }
}

TYPED_TEST(ProfileChangeTest, DeletionOfAVpnNeedsNoId) {
    this->AddVpn(this->Add("Gold"), "red");
    EXPECT_EQ(this->ApplyVpn("Gold", "red", {0, ""}, kDelete), kOk);
    EXPECT_EQ(this->FindVpn(TypeParam::Find("Gold"), "red"), nullptr);
}

TYPED_TEST(ProfileChangeTest, DeletionOfAMissingVpnIsNoError) {
    this->Add("Gold");
    DomDbUpdateReq change{};
    EXPECT_EQ(this->ApplyVpn("Gold", "red", {}, kDelete, &change), kOk);
    EXPECT_EQ(this->Of(change), (Changed{TypeParam::kVpnChange, 0, "Gold", "red", {}}));
}

TYPED_TEST(ProfileChangeTest, VpnWithoutIdIsNotSet) {
    this->Add("Gold");
    DomDbUpdateReq change = this->Filled();
    EXPECT_EQ(this->ApplyVpn("Gold", "red", {0, "none"}, kAdd, &change), kFailed);
    EXPECT_TRUE(this->IsFilled(change));
    EXPECT_EQ(this->FindVpn(TypeParam::Find("Gold"), "red"), nullptr);
}

TYPED_TEST(ProfileChangeTest, VpnOfAMissingProfileFails) {
    DomDbUpdateReq change = this->Filled();
    EXPECT_EQ(this->ApplyVpn("Gold", "red", kSeg, kAdd, &change), kFailed);
    EXPECT_EQ(this->ApplyVpn("Gold", "red", kSeg, kDelete, &change), kFailed);
    EXPECT_TRUE(this->IsFilled(change));
}

TYPED_TEST(ProfileChangeTest, FullProfileRefusesTheVpn) {
    this->AddVpns(this->Add("Gold"), 128);
    DomDbUpdateReq change = this->Filled();
    EXPECT_EQ(this->ApplyVpn("Gold", "red", kSeg, kAdd, &change), TypeParam::kVpnsFull);
    EXPECT_TRUE(this->IsFilled(change));
    EXPECT_EQ(this->ApplyVpn("Gold", "v5", kSeg, kAdd, &change), kOk);
}

TYPED_TEST(ProfileChangeTest, VpnWithoutMemoryFails) {
    this->Add("Gold");
    const TlvPtr msg = this->VpnMsg("Gold", "red", kSeg);
    for (const fake::Event event : {fake::Event::kAllocation, fake::Event::kHashCreate}) {
        DomDbUpdateReq change = this->Filled();
        fake::Fail(event, 1);
        EXPECT_EQ(TypeParam::ApplyVpn(msg.get(), kAdd, &change), kFailed);
        EXPECT_TRUE(fake::Tripped());
        EXPECT_TRUE(this->IsFilled(change));
        EXPECT_EQ(this->VpnNames(TypeParam::Find("Gold")), Names());
    }
}

TYPED_TEST(ProfileChangeTest, MissingVpnNameIsAnEmptyOne) {
    this->Add("Gold");
    const TlvPtr msg = this->DefaultMsg("Gold", kSeg);  // a VPN message but for the VPN's name
    DomDbUpdateReq change{};
    strcpy(change.entry_name, "before");
    EXPECT_EQ(TypeParam::ApplyVpn(msg.get(), kAdd, &change), kOk);
    EXPECT_NE(this->FindVpn(TypeParam::Find("Gold"), ""), nullptr);
    EXPECT_EQ(this->Of(change).vpn, "");
}

TYPED_TEST(ProfileChangeTest, VpnMessageInReverseOrderIsTheSame) {
    this->Add("Gold");
    Fields fields;
    fields.Text(TypeParam::kVpnNameTlv, "red").Text(TypeParam::kProfileNameTlv, "Gold");
    TypeParam::AppendSegment(fields, kSeg);
    fields.Number(DOM_TLV_MSG_CODE, TypeParam::kVpnCode);
    EXPECT_EQ(TypeParam::ApplyVpn(fields.Take().get(), kAdd, nullptr), kOk);
    const auto* vpn = this->FindVpn(TypeParam::Find("Gold"), "red");
    ASSERT_NE(vpn, nullptr);
    EXPECT_EQ(TypeParam::Unpack(vpn->segment), TypeParam::Kept(kSeg));
}

TYPED_TEST(ProfileChangeTest, UnreadableVpnMessageFails) {
    this->Add("Gold");
    DomDbUpdateReq change = this->Filled();
    EXPECT_EQ(this->ApplyVpn("Gold", std::string(32, 'v'), kSeg, kAdd, &change), kFailed);
    EXPECT_EQ(this->ApplyVpn(std::string(32, 'p'), "red", kSeg, kDelete, &change), kFailed);
    EXPECT_TRUE(this->IsFilled(change));
}

// --- default segments ---

TYPED_TEST(ProfileChangeTest, DefaultIsSetAndRecorded) {
    auto* profile = this->Add("Gold");
    DomDbUpdateReq change{};
    strcpy(change.entry_name, "before");
    EXPECT_EQ(this->ApplyDefault("Gold", kSeg, kAdd, &change), kOk);
    EXPECT_EQ(TypeParam::Unpack(profile->default_segment), TypeParam::Kept(kSeg));
    EXPECT_EQ(this->Of(change),
              (Changed{TypeParam::kSegmentChange, 1, "Gold", "", TypeParam::Kept(kSeg)}));
}

TYPED_TEST(ProfileChangeTest, DefaultIsClearedByADeletionWithId0) {
    auto* profile = this->Add("Gold");
    for (const uint16_t operation : kDeletions) {
        this->SetDefault(profile, kSeg);
        DomDbUpdateReq change{};
        EXPECT_EQ(this->ApplyDefault("Gold", {}, operation, &change), kOk);
        EXPECT_EQ(TypeParam::Unpack(profile->default_segment), Seg());
        EXPECT_EQ(this->Of(change),
                  (Changed{TypeParam::kSegmentChange, operation, "Gold", "", {}}));
    }
}

// The profile takes what the message carries whatever the operation, while the database goes by the
// operation: who deletes carries ID 0.
TYPED_TEST(ProfileChangeTest, DeletionOfADefaultThatCarriesAnIdSetsIt) {
    auto* profile = this->Add("Gold");
    DomDbUpdateReq change{};
    EXPECT_EQ(this->ApplyDefault("Gold", kSeg, kDelete, &change), kOk);
    EXPECT_EQ(TypeParam::Unpack(profile->default_segment), TypeParam::Kept(kSeg));
    EXPECT_EQ(this->Of(change),
              (Changed{TypeParam::kSegmentChange, 0, "Gold", "", TypeParam::Kept(kSeg)}));
}

TYPED_TEST(ProfileChangeTest, DefaultWithoutIdIsNotSet) {
    auto* profile = this->Add("Gold");
    this->SetDefault(profile, kSeg);
    DomDbUpdateReq change = this->Filled();
    EXPECT_EQ(this->ApplyDefault("Gold", {0, "none"}, kAdd, &change), kFailed);
    EXPECT_TRUE(this->IsFilled(change));
    EXPECT_EQ(TypeParam::Unpack(profile->default_segment), TypeParam::Kept(kSeg));
}

TYPED_TEST(ProfileChangeTest, DefaultOfAMissingProfileFails) {
    DomDbUpdateReq change = this->Filled();
    EXPECT_EQ(this->ApplyDefault("Gold", kSeg, kAdd, &change), kFailed);
    EXPECT_EQ(this->ApplyDefault("Gold", {}, kDelete, &change), kFailed);
    EXPECT_TRUE(this->IsFilled(change));
}

TYPED_TEST(ProfileChangeTest, UnreadableDefaultMessageFails) {
    this->Add("Gold");
    DomDbUpdateReq change = this->Filled();
    EXPECT_EQ(this->ApplyDefault("Gold", {1, std::string(32, 's')}, kAdd, &change), kFailed)
        << "a segment name of 32 characters";
    EXPECT_TRUE(this->IsFilled(change));
}

// --- all three ---

TYPED_TEST(ProfileChangeTest, FieldsOfOtherObjectsStay) {
    DomDbUpdateReq change = this->Filled();
    EXPECT_EQ(this->ApplyProfile("Gold", kAdd, &change), kOk);
    EXPECT_EQ(this->ApplyVpn("Gold", "red", kSeg, kAdd, &change), kOk);
    const DomDbUpdateReq filled = this->Filled();
    EXPECT_EQ(memcmp(change.object_name, filled.object_name, sizeof change.object_name), 0);
    EXPECT_EQ(memcmp(change.ita_policy_name, filled.ita_policy_name, 32), 0);
    EXPECT_EQ(memcmp(change.nas_id_profile_name, filled.nas_id_profile_name, 32), 0);
    EXPECT_EQ(memcmp(change.nas_id, filled.nas_id, 32), 0);
    EXPECT_EQ(change.vlan_id, filled.vlan_id);
    EXPECT_EQ(change.rec_policy_index, filled.rec_policy_index);
}

TYPED_TEST(ProfileChangeTest, ProfileChangeLeavesTheSegmentFieldsAlone) {
    DomDbUpdateReq change = this->Filled();
    const DomDbUpdateReq filled = this->Filled();
    EXPECT_EQ(this->ApplyProfile("Gold", kAdd, &change), kOk);
    EXPECT_EQ(memcmp(change.entry_name, filled.entry_name, 32), 0);
    EXPECT_EQ(change.author_number, filled.author_number);
    EXPECT_EQ(change.critical_number, filled.critical_number);
    EXPECT_EQ(change.critical_number16, filled.critical_number16);
    EXPECT_EQ(memcmp(change.author_text, filled.author_text, 32), 0);
    EXPECT_EQ(memcmp(change.critical_text, filled.critical_text, 32), 0);
}

TYPED_TEST(ProfileChangeTest, WorksWithoutRecordAndNameBuffer) {
    EXPECT_EQ(this->ApplyProfile("Gold", kAdd), kOk);
    EXPECT_EQ(this->ApplyVpn("Gold", "red", kSeg, kAdd), kOk);
    EXPECT_EQ(this->ApplyDefault("Gold", kSeg, kAdd), kOk);
    EXPECT_EQ(this->ApplyVpn("Gold", "red", kSeg, kDelete), kOk);
    EXPECT_EQ(this->ApplyProfile("Gold", kAdd), TypeParam::kExists);
    EXPECT_EQ(this->ApplyProfile("Gold", kDelete), kOk);
}

TYPED_TEST(ProfileChangeTest, NullMessageFails) {
    DomDbUpdateReq change = this->Filled();
    EXPECT_EQ(TypeParam::ApplyProfile(nullptr, kAdd, nullptr, &change), kFailed);
    EXPECT_EQ(TypeParam::ApplyVpn(nullptr, kAdd, &change), kFailed);
    EXPECT_EQ(TypeParam::ApplyDefault(nullptr, kAdd, &change), kFailed);
    EXPECT_TRUE(this->IsFilled(change));
}

TYPED_TEST(ProfileChangeTest, CallingRolesStoreIsChanged) {
    this->InConfig([this] {
        EXPECT_EQ(this->ApplyProfile("Gold", kAdd), kOk);
        EXPECT_EQ(this->ApplyVpn("Gold", "red", kSeg, kAdd), kOk);
        EXPECT_EQ(this->ProfileNames(), Names({"Gold"}));
        return 0;
    });
    EXPECT_EQ(this->ProfileNames(), Names());
    EXPECT_EQ(this->ApplyVpn("Gold", "red", kSeg, kAdd), kFailed);
}

TYPED_TEST(ProfileChangeTest, NothingIsLogged) {
    this->ApplyProfile("Gold", kDelete);
    this->ApplyVpn("Gold", "red", {}, kAdd);
    this->ApplyDefault("Gold", {}, kAdd);
    EXPECT_TRUE(fake::LogLines().empty());
}

// --- values that a message cannot carry within its bounds ---

// A name that fills its 32 bytes without a terminator, one of no bytes, one with bytes behind it.
TYPED_TEST(ProfileChangeTest, NamesOfOddLengthsStayInsideTheirBuffers) {
    const char full[33] = "nnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnn";
    for (const uint32_t length : {0u, 1u, 31u, 32u}) {
        const TlvPtr msg = Fields().Take();
        ASSERT_EQ(TLV_Append_Data(msg.get(), TypeParam::kProfileNameTlv, length, full), DOM_OK);
        char name[33];
        memset(name, 0x5A, sizeof name);
        const uint32_t result = TypeParam::ApplyProfile(msg.get(), kAdd, name, nullptr);
        EXPECT_EQ(name[32], 0x5A);
        if (result == kOk) {
            EXPECT_LT(strnlen(name, 32), 32u);
        }
    }
    for (const std::string& name : this->ProfileNames()) EXPECT_LE(name.size(), 31u);
}

}  // namespace
}  // namespace aaadom
