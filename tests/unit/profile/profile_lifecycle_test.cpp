#include <aaadom/profile.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "fakes/fake_platform.h"
#include "fakes/role.h"
#include "profile/profile_store.h"

namespace {

uint32_t FirstBucket(const void*) {
    return 0;
}

/// A profile with one VPN at the head of the list.
template <typename Head, typename Segment>
void Put(Head* head) {
    using Profile = std::remove_pointer_t<decltype(head->first_profile)>;
    auto* profile = static_cast<Profile*>(calloc(1, sizeof(Profile)));
    profile->next = head->first_profile;
    profile->vpn_table = HASH_Create(128, FirstBucket);
    using Vpn = aaadom::ProfileVpn<Segment>;
    auto* vpn = static_cast<Vpn*>(calloc(1, sizeof(Vpn)));
    vpn->hash_links.prev_link = &profile->vpn_table->buckets[0];
    profile->vpn_table->buckets[0] = &vpn->hash_links;
    head->first_profile = profile;
    ++head->profile_count;
}

class ProfileLifecycle : public testing::Test {
  protected:
    ProfileLifecycle() { fake::Reset(); }
    ~ProfileLifecycle() override {
        DOM_ResetAAADService();
        EXPECT_EQ(fake::LiveHashTables(), 0);
    }
    const fake::ScopedRole working_{fake::kWorkingRole};
};

TEST_F(ProfileLifecycle, InitGivesTheEmptyHeadOfTheCallingRole) {
    AuthorProfileInfo* working = DOM_author_InitData();
    AuthorProfileInfo* config =
        fake::InRole(fake::kConfigRole, [] { return DOM_author_InitData(); });
    EXPECT_NE(working, config);
    EXPECT_EQ(DOM_author_InitData(), working);
    EXPECT_EQ(working->profile_count, 0u);
    EXPECT_EQ(working->first_profile, nullptr);
}

TEST_F(ProfileLifecycle, CriticalHeadsAreTheirOwn) {
    CriticalProfileInfo* working = DOM_critical_InitData();
    CriticalProfileInfo* config =
        fake::InRole(fake::kConfigRole, [] { return DOM_critical_InitData(); });
    EXPECT_NE(working, config);
    EXPECT_EQ(working->profile_count, 0u);
    EXPECT_EQ(working->first_profile, nullptr);
}

TEST_F(ProfileLifecycle, FiniFreesTheCallingRolesProfilesWithTheirVpns) {
    AuthorProfileInfo* working = DOM_author_InitData();
    AuthorProfileInfo* config =
        fake::InRole(fake::kConfigRole, [] { return DOM_author_InitData(); });
    Put<AuthorProfileInfo, aaadom::AuthorSegment>(working);
    Put<AuthorProfileInfo, aaadom::AuthorSegment>(working);
    Put<AuthorProfileInfo, aaadom::AuthorSegment>(config);
    DOM_author_Fini();
    EXPECT_EQ(working->profile_count, 0u);
    EXPECT_EQ(working->first_profile, nullptr);
    EXPECT_EQ(config->profile_count, 1u);
    EXPECT_EQ(fake::LiveHashTables(), 1);
    fake::InRole(fake::kConfigRole, [] { return DOM_author_Fini(), 0; });
}

TEST_F(ProfileLifecycle, CriticalFiniFreesProfilesWithTheirVpns) {
    CriticalProfileInfo* head = DOM_critical_InitData();
    Put<CriticalProfileInfo, aaadom::CriticalSegment>(head);
    DOM_critical_Fini();
    EXPECT_EQ(head->profile_count, 0u);
    EXPECT_EQ(head->first_profile, nullptr);
}

}  // namespace
