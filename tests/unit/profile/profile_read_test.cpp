// Management reads: one object, and the object that follows a name.
#include "unit/profile/profile_fixture.h"

namespace aaadom {
namespace {

const Seg kSeg{7, "seven", 700};

template <typename Store>
class ProfileReadTest : public ProfileTest<Store> {
  protected:
    /// "profile/vpn" of a VPN message, "" for none; `vpn` is the walk's in-out buffer.
    static std::string NextVpn(const std::string& profile, char (&vpn)[32]) {
        const TlvPtr msg(Store::GetVpnBulk(profile.c_str(), vpn));
        if (!msg) return "";
        EXPECT_EQ(FindTlv(msg.get(), DOM_TLV_MSG_CODE).U32(), Store::kVpnCode);
        char profile_name[32] = "", vpn_name[32] = "";
        EXPECT_EQ(FindTlv(msg.get(), Store::kProfileNameTlv).Text(profile_name, 32), DOM_OK);
        EXPECT_EQ(FindTlv(msg.get(), Store::kVpnNameTlv).Text(vpn_name, 32), DOM_OK);
        return std::string(profile_name) + "/" + vpn_name;
    }
    static std::string NextVpn(const std::string& profile, const std::string& vpn) {
        char buffer[32];
        strcpy(buffer, vpn.c_str());
        return NextVpn(profile, buffer);
    }
    static std::string NextProfile(const std::string& name) {
        const TlvPtr msg(Store::GetBulk(name.c_str()));
        if (!msg) return "";
        EXPECT_EQ(FindTlv(msg.get(), DOM_TLV_MSG_CODE).U32(), Store::kDefaultCode);
        char profile_name[32] = "";
        EXPECT_EQ(FindTlv(msg.get(), Store::kProfileNameTlv).Text(profile_name, 32), DOM_OK);
        return profile_name;
    }
};
TYPED_TEST_SUITE(ProfileReadTest, BothKinds, KindNames);

TYPED_TEST(ProfileReadTest, ProfileIsItsDefaultSegment) {
    this->SetDefault(this->Add("Gold"), kSeg);
    uint16_t flag = 99;
    this->ExpectSame(TlvPtr(TypeParam::Get("gOLD", &flag)), this->DefaultMsg("Gold", kSeg));
    EXPECT_EQ(flag, 99u);
}

TYPED_TEST(ProfileReadTest, ProfileWithoutDefaultIsReadAlike) {
    this->Add("Gold");
    this->ExpectSame(TlvPtr(TypeParam::Get("Gold", nullptr)), this->DefaultMsg("Gold", {}));
}

// Reply kind 4: the body is a result, not data.
TYPED_TEST(ProfileReadTest, MissingProfileEndsWithTheResultAlone) {
    uint16_t flag = 99;
    this->ExpectSame(TlvPtr(TypeParam::Get("Gold", &flag)), this->EndMsg(TypeParam::kMissing));
    EXPECT_EQ(flag, 4u);
    this->ExpectSame(TlvPtr(TypeParam::Get("Gold", nullptr)), this->EndMsg(TypeParam::kMissing));
    flag = 99;
    this->ExpectSame(TlvPtr(TypeParam::Get(nullptr, &flag)), this->EndMsg(TypeParam::kMissing));
    EXPECT_EQ(flag, 4u);
}

TYPED_TEST(ProfileReadTest, ProfileThatCannotBeEncodedIsNoMessageAndNoResult) {
    this->Add("Gold");
    for (const fake::Event event : {fake::Event::kMessage, fake::Event::kAppend}) {
        uint16_t flag = 99;
        fake::Fail(event, 1);
        EXPECT_EQ(TypeParam::Get("Gold", &flag), nullptr);
        EXPECT_TRUE(fake::Tripped());
        EXPECT_EQ(flag, 99u);
    }
}

TYPED_TEST(ProfileReadTest, EndMessageThatCannotBeBuiltIsNone) {
    uint16_t flag = 99;
    fake::FailMessage(1);
    EXPECT_EQ(TypeParam::Get("Gold", &flag), nullptr);
    EXPECT_EQ(flag, 4u);
}

TYPED_TEST(ProfileReadTest, VpnIsItsSegment) {
    this->AddVpn(this->Add("Gold"), "red", kSeg);
    uint16_t flag = 99;
    this->ExpectSame(TlvPtr(TypeParam::GetVpn("gOLD", "red", &flag)),
                     this->VpnMsg("Gold", "red", kSeg));
    EXPECT_EQ(flag, 99u);
}

TYPED_TEST(ProfileReadTest, MissingVpnOrProfileEndsWithTheResultAlone) {
    this->AddVpn(this->Add("Gold"), "red");
    this->Add("without VPNs");
    const std::pair<const char*, const char*> kMissing[] = {{"Gold", "RED"},   {"Gold", ""},
                                                            {"Silver", "red"}, {"without VPNs", ""},
                                                            {"Gold", nullptr}, {nullptr, "red"}};
    for (const auto& [profile, vpn] : kMissing) {
        uint16_t flag = 99;
        this->ExpectSame(TlvPtr(TypeParam::GetVpn(profile, vpn, &flag)),
                         this->EndMsg(TypeParam::kMissing));
        EXPECT_EQ(flag, 4u);
        this->ExpectSame(TlvPtr(TypeParam::GetVpn(profile, vpn, nullptr)),
                         this->EndMsg(TypeParam::kMissing));
    }
}

// Unlike a profile's: the VPN's end message stands in for its own one.
TYPED_TEST(ProfileReadTest, VpnThatCannotBeEncodedEndsWithTheResult) {
    this->AddVpn(this->Add("Gold"), "red");
    for (const fake::Event event : {fake::Event::kMessage, fake::Event::kAppend}) {
        uint16_t flag = 99;
        fake::Fail(event, 1);
        const TlvPtr msg(TypeParam::GetVpn("Gold", "red", &flag));
        EXPECT_TRUE(fake::Tripped());
        this->ExpectSame(msg, this->EndMsg(TypeParam::kMissing));
        EXPECT_EQ(flag, 4u);
    }
}

TYPED_TEST(ProfileReadTest, ProfilesFollowInListOrder) {
    EXPECT_EQ(this->NextProfile(""), "");
    for (const char* name : {"c", "a", "b"}) this->Add(name);
    EXPECT_EQ(this->NextProfile(""), "a");
    EXPECT_EQ(this->NextProfile("a"), "b");
    EXPECT_EQ(this->NextProfile("b"), "c");
    EXPECT_EQ(this->NextProfile("c"), "");
    EXPECT_EQ(TypeParam::GetBulk(nullptr), nullptr);
}

TYPED_TEST(ProfileReadTest, FollowingProfileIsItsDefaultSegmentSetOrNot) {
    this->SetDefault(this->Add("a"), kSeg);
    this->Add("b");
    this->ExpectSame(TlvPtr(TypeParam::GetBulk("")), this->DefaultMsg("a", kSeg));
    this->ExpectSame(TlvPtr(TypeParam::GetBulk("a")), this->DefaultMsg("b", {}));
}

TYPED_TEST(ProfileReadTest, FollowingProfileThatCannotBeEncodedIsNone) {
    this->Add("a");
    fake::FailMessage(1);
    EXPECT_EQ(TypeParam::GetBulk(""), nullptr);
}

TYPED_TEST(ProfileReadTest, VpnsOfAProfileFollowInListOrder) {
    auto* profile = this->Add("p");
    for (const char* vpn : {"c", "a", "b"}) this->AddVpn(profile, vpn);
    EXPECT_EQ(this->NextVpn("p", ""), "p/a");
    EXPECT_EQ(this->NextVpn("P", "a"), "p/b");
    EXPECT_EQ(this->NextVpn("p", "b"), "p/c");
    EXPECT_EQ(this->NextVpn("p", "c"), "");
}

TYPED_TEST(ProfileReadTest, AbsentVpnIsFollowedByTheNextBigger) {
    auto* profile = this->Add("p");
    for (const char* vpn : {"b", "d"}) this->AddVpn(profile, vpn);
    EXPECT_EQ(this->NextVpn("p", "a"), "p/b");
    EXPECT_EQ(this->NextVpn("p", "c"), "p/d");
    EXPECT_EQ(this->NextVpn("p", "e"), "");
}

TYPED_TEST(ProfileReadTest, FollowingVpnIsItsSegment) {
    this->AddVpn(this->Add("Gold"), "red", kSeg);
    char vpn[32] = "";
    this->ExpectSame(TlvPtr(TypeParam::GetVpnBulk("gold", vpn)), this->VpnMsg("Gold", "red", kSeg));
}

TYPED_TEST(ProfileReadTest, VpnWalkWithoutAProfileStartsAtTheFirst) {
    this->AddVpn(this->Add("a"), "v");
    this->AddVpn(this->Add("b"), "w");
    EXPECT_EQ(this->NextVpn("", ""), "a/v");
    EXPECT_EQ(this->NextVpn("", "v"), "b/w");
}

TYPED_TEST(ProfileReadTest, VpnWalkOfAnEmptyStoreIsOver) {
    EXPECT_EQ(this->NextVpn("", ""), "");
    EXPECT_EQ(this->NextVpn("p", "v"), "");
}

TYPED_TEST(ProfileReadTest, VpnWalkFromAnAbsentProfileStartsInTheNextBigger) {
    this->AddVpn(this->Add("b"), "v");
    EXPECT_EQ(this->NextVpn("a", ""), "b/v");
    EXPECT_EQ(this->NextVpn("c", ""), "");
}

// The VPN's name counts in the profile in which the walk starts, whichever that is.
TYPED_TEST(ProfileReadTest, VpnNameCountsInTheProfileThatFollowsAnAbsentOne) {
    auto* profile = this->Add("b");
    for (const char* vpn : {"u", "v", "w"}) this->AddVpn(profile, vpn);
    char vpn[32] = "v";
    EXPECT_EQ(this->NextVpn("a", vpn), "b/w");
    EXPECT_STREQ(vpn, "v");
}

TYPED_TEST(ProfileReadTest, VpnWalkGoesOnToTheNextProfileAndClearsTheName) {
    this->AddVpn(this->Add("a"), "v");
    this->AddVpn(this->Add("b"), "a VPN that goes before v");
    char vpn[32] = "v";
    EXPECT_EQ(this->NextVpn("a", vpn), "b/a VPN that goes before v");
    EXPECT_STREQ(vpn, "");
}

TYPED_TEST(ProfileReadTest, VpnNameStaysWhileTheWalkIsInTheProfile) {
    auto* profile = this->Add("a");
    for (const char* vpn : {"v", "w"}) this->AddVpn(profile, vpn);
    char vpn[32] = "v";
    EXPECT_EQ(this->NextVpn("a", vpn), "a/w");
    EXPECT_STREQ(vpn, "v");
}

TYPED_TEST(ProfileReadTest, ProfilesWithoutVpnsAreSkipped) {
    this->AddVpn(this->Add("a"), "v");
    this->Add("b");
    this->AddVpn(this->Add("c"), "gone");
    TypeParam::DeleteVpn("gone", TypeParam::Find("c"));
    this->AddVpn(this->Add("d"), "w");
    char vpn[32] = "v";
    EXPECT_EQ(this->NextVpn("a", vpn), "d/w");
    EXPECT_STREQ(vpn, "");
    EXPECT_EQ(this->NextVpn("b", "zzz"), "d/w");
}

TYPED_TEST(ProfileReadTest, VpnWalkEndsBehindProfilesWithoutVpns) {
    this->AddVpn(this->Add("a"), "v");
    EXPECT_EQ(this->NextVpn("a", "v"), "");
    this->Add("b");
    EXPECT_EQ(this->NextVpn("a", "v"), "");
}

TYPED_TEST(ProfileReadTest, VpnNameStaysAtTheEndOfTheWalk) {
    this->AddVpn(this->Add("a"), "v");
    char vpn[32] = "v";
    EXPECT_EQ(this->NextVpn("a", vpn), "");
    EXPECT_STREQ(vpn, "v");
}

TYPED_TEST(ProfileReadTest, WholeWalkMeetsEveryVpnOnce) {
    for (const char* name : {"a", "b", "c"}) this->Add(name);
    this->AddVpns(TypeParam::Find("a"), 40);
    this->AddVpns(TypeParam::Find("c"), 40);
    Names expected, met;
    for (const char* profile : {"a", "c"}) {
        for (const std::string& vpn : this->VpnNames(TypeParam::Find(profile))) {
            expected.push_back(std::string(profile) + "/" + vpn);
        }
    }
    std::string profile, vpn;
    for (std::string at; !(at = this->NextVpn(profile, vpn)).empty() && met.size() < 100;) {
        met.push_back(at);
        profile = at.substr(0, 1);
        vpn = at.substr(2);
    }
    EXPECT_EQ(met, expected);
}

// A message can name a profile with an empty text; the walk must not begin again behind it.
TYPED_TEST(ProfileReadTest, VpnWalkGetsPastAProfileWithoutAName) {
    ASSERT_EQ(this->ApplyProfile("", kAdd), kOk);
    EXPECT_EQ(this->NextVpn("", ""), "");
    this->AddVpn(this->Add("p"), "v");
    EXPECT_EQ(this->NextVpn("", ""), "p/v");
}

// The walk goes on by name: a second profile of the same one cannot be addressed by a client
// anyway.
TYPED_TEST(ProfileReadTest, VpnWalkGoesOnToABiggerNameNotToAnEqualOne) {
    auto* first = this->Add("a");
    this->Add("a");
    this->AddVpn(first->next, "of the second a");
    this->AddVpn(this->Add("b"), "v");
    EXPECT_EQ(this->NextVpn("a", ""), "b/v");
}

TYPED_TEST(ProfileReadTest, VpnWalkWithoutNamesIsOver) {
    this->AddVpn(this->Add("a"), "v");
    char vpn[32] = "";
    EXPECT_EQ(TypeParam::GetVpnBulk(nullptr, vpn), nullptr);
    EXPECT_EQ(TypeParam::GetVpnBulk("a", nullptr), nullptr);
}

TYPED_TEST(ProfileReadTest, FollowingVpnThatCannotBeEncodedIsNone) {
    this->AddVpn(this->Add("a"), "v");
    fake::FailMessage(1);
    EXPECT_EQ(this->NextVpn("a", ""), "");
}

TYPED_TEST(ProfileReadTest, CallingRolesStoreIsRead) {
    this->AddVpn(this->Add("a"), "v");
    this->InConfig([this] {
        EXPECT_EQ(this->NextProfile(""), "");
        EXPECT_EQ(this->NextVpn("", ""), "");
        uint16_t flag = 99;
        this->ExpectSame(TlvPtr(TypeParam::Get("a", &flag)), this->EndMsg(TypeParam::kMissing));
        EXPECT_EQ(flag, 4u);
        return 0;
    });
}

}  // namespace
}  // namespace aaadom
