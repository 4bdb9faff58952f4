// The segment of a user.
#include "unit/profile/profile_fixture.h"

namespace aaadom {
namespace {

const Seg kDefault{10, "default", 100};
const Seg kOwn{20, "own", 200};

template <typename Store>
class ProfileQuery : public ProfileTest<Store> {
  protected:
    ProfileQuery() {
        this->SetDefault(this->Add("p"), kDefault);
        EXPECT_EQ(this->AddVpn(Store::Find("p"), "v", kOwn), kOk);
    }
    /// The segment, or a zero one with the failure checked.
    static Seg Query(const char* profile, const char* vpn) {
        auto segment = Store::Pack({});
        const uint32_t result = Store::Query(profile, vpn, &segment);
        const Seg seg = Store::Unpack(segment);
        EXPECT_EQ(result, seg == Seg() ? DOM_ERR_FAILED : DOM_OK);
        return seg;
    }
};
TYPED_TEST_SUITE(ProfileQuery, BothKinds, KindNames);

TYPED_TEST(ProfileQuery, VpnHasItsOwnSegment) {
    EXPECT_EQ(this->Query("p", "v"), TypeParam::Kept(kOwn));
}

TYPED_TEST(ProfileQuery, ProfileIsFoundInAnyCase) {
    EXPECT_EQ(this->Query("P", "v"), TypeParam::Kept(kOwn));
}

TYPED_TEST(ProfileQuery, NoVpnHasTheDefault) {
    EXPECT_EQ(this->Query("p", nullptr), TypeParam::Kept(kDefault));
}

TYPED_TEST(ProfileQuery, UnknownVpnFallsBackToTheDefault) {
    for (const char* vpn : {"w", "V", ""}) {
        EXPECT_EQ(this->Query("p", vpn), TypeParam::Kept(kDefault)) << vpn;
    }
}

TYPED_TEST(ProfileQuery, EmptyVpnNameIsLookedForLikeAnyOther) {
    this->AddVpn(TypeParam::Find("p"), "", {30, "empty"});
    EXPECT_EQ(this->Query("p", ""), Seg({30, "empty"}));
    EXPECT_EQ(this->Query("p", nullptr), TypeParam::Kept(kDefault));
}

TYPED_TEST(ProfileQuery, DefaultWithoutIdIsNone) {
    this->SetDefault(TypeParam::Find("p"), {0, "name alone"});
    auto segment = TypeParam::Pack(kOwn);
    EXPECT_EQ(TypeParam::Query("p", nullptr, &segment), DOM_ERR_FAILED);
    EXPECT_EQ(TypeParam::Query("p", "w", &segment), DOM_ERR_FAILED);
    EXPECT_EQ(TypeParam::Unpack(segment), TypeParam::Kept(kOwn)) << "untouched";
    EXPECT_EQ(this->Query("p", "v"), TypeParam::Kept(kOwn));
}

// The VPN's own entry shuts the default out, whatever its ID.
TYPED_TEST(ProfileQuery, VpnWithoutIdDoesNotFallBack) {
    ASSERT_EQ(this->AddVpn(TypeParam::Find("p"), "v", {0, "none"}), kOk);
    auto segment = TypeParam::Pack(kOwn);
    EXPECT_EQ(TypeParam::Query("p", "v", &segment), DOM_OK);
    EXPECT_EQ(TypeParam::Unpack(segment), Seg({0, "none"}));
}

TYPED_TEST(ProfileQuery, LongVpnNameMatchesItsFirst31Characters) {
    const std::string kept(31, 'v');
    this->AddVpn(TypeParam::Find("p"), kept, {31, "cut"});
    EXPECT_EQ(this->Query("p", (kept + "and more").c_str()), Seg({31, "cut"}));
}

TYPED_TEST(ProfileQuery, UnknownProfileFails) {
    auto segment = TypeParam::Pack(kOwn);
    EXPECT_EQ(TypeParam::Query("q", "v", &segment), DOM_ERR_FAILED);
    EXPECT_EQ(TypeParam::Unpack(segment), TypeParam::Kept(kOwn)) << "untouched";
}

TYPED_TEST(ProfileQuery, NullNameOrOutputFails) {
    auto segment = TypeParam::Pack({});
    EXPECT_EQ(TypeParam::Query(nullptr, "v", &segment), DOM_ERR_FAILED);
    EXPECT_EQ(TypeParam::Query("p", "v", nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(TypeParam::Query("p", nullptr, nullptr), DOM_ERR_FAILED);
}

TYPED_TEST(ProfileQuery, CallingRolesProfilesAreAsked) {
    this->InConfig([this] {
        EXPECT_EQ(this->Query("p", "v"), Seg());
        this->SetDefault(this->Add("p"), {40, "config"});
        EXPECT_EQ(this->Query("p", "v"), Seg({40, "config"}));
        return 0;
    });
    EXPECT_EQ(this->Query("p", "v"), TypeParam::Kept(kOwn));
}

}  // namespace
}  // namespace aaadom
