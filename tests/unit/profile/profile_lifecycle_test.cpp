#include <aaadom/domain_table.h>

#include "unit/profile/profile_fixture.h"

namespace aaadom {
namespace {

template <typename Store>
class ProfileLifecycle : public ProfileTest<Store> {};
TYPED_TEST_SUITE(ProfileLifecycle, BothKinds, KindNames);

TYPED_TEST(ProfileLifecycle, InitGivesTheEmptyHeadOfTheCallingRole) {
    auto* working = TypeParam::Init();
    auto* config = this->InConfig([] { return TypeParam::Init(); });
    EXPECT_NE(working, config);
    EXPECT_EQ(TypeParam::Init(), working);
    EXPECT_EQ(working->profile_count, 0u);
    EXPECT_EQ(working->first_profile, nullptr);
}

TYPED_TEST(ProfileLifecycle, InitFreesNothing) {
    auto* profile = this->Add("p");
    ASSERT_EQ(this->AddVpn(profile, "v"), kOk);
    auto* head = TypeParam::Init();
    EXPECT_EQ(head->profile_count, 0u);
    EXPECT_EQ(head->first_profile, nullptr);
    EXPECT_STREQ(profile->name, "p");
    EXPECT_NE(this->FindVpn(profile, "v"), nullptr);
    TypeParam::Delete(profile);
    TypeParam::Init();
}

TYPED_TEST(ProfileLifecycle, AccessorsGiveTheCallingRolesInstance) {
    auto* working = TypeParam::Info();
    EXPECT_EQ(TypeParam::Head(), &working->first_profile);
    this->InConfig([working] {
        EXPECT_NE(TypeParam::Info(), working);
        EXPECT_EQ(TypeParam::Head(), &TypeParam::Info()->first_profile);
        return 0;
    });
}

TYPED_TEST(ProfileLifecycle, RoleIsTheLow16BitsOfTheAnswer) {
    auto* working = TypeParam::Info();
    auto* config = this->InConfig([] { return TypeParam::Info(); });
    EXPECT_EQ(fake::InRole(0x10001u, [] { return TypeParam::Info(); }), config);
    EXPECT_EQ(fake::InRole(0x20000u, [] { return TypeParam::Info(); }), working);
    EXPECT_EQ(fake::InRole(2u, [] { return TypeParam::Info(); }), working);
}

TYPED_TEST(ProfileLifecycle, RolesDoNotSeeEachOthersProfiles) {
    this->Add("p");
    this->InConfig([] {
        EXPECT_EQ(TypeParam::Find("p"), nullptr);
        EXPECT_EQ(TypeParam::Add("q"), kOk);
        return 0;
    });
    EXPECT_EQ(this->ProfileNames(), Names({"p"}));
}

TYPED_TEST(ProfileLifecycle, FiniFreesTheCallingRolesProfilesWithTheirVpns) {
    this->AddVpns(this->Add("p"), 20);
    this->AddVpns(this->Add("q"), 20);
    this->Add("without VPNs");
    this->InConfig([this] { return this->AddVpn(this->Add("r"), "v"); });
    EXPECT_EQ(fake::LiveHashTables(), 3);
    TypeParam::Fini();
    EXPECT_EQ(this->ProfileNames(), Names());
    EXPECT_EQ(fake::LiveHashTables(), 1);
    this->InConfig([this] {
        EXPECT_EQ(this->ProfileNames(), Names({"r"}));
        return 0;
    });
}

TYPED_TEST(ProfileLifecycle, FiniKeepsNoMemory) {
    const auto round = [this] {
        this->AddVpn(this->Add("p"), "v");
        this->AddVpn(this->Add("q"), "w");
        TypeParam::Fini();
    };
    EXPECT_LT(HeapGrowth(500, round), kHeapNoise);
}

TYPED_TEST(ProfileLifecycle, StoreWorksAgainAfterFini) {
    this->AddProfiles(16);
    TypeParam::Fini();
    this->AddProfiles(16);
    EXPECT_EQ(this->ProfileNames().size(), 16u);
}

TYPED_TEST(ProfileLifecycle, FiniOfAnEmptyStoreDoesNothing) {
    TypeParam::Fini();
    TypeParam::Fini();
    EXPECT_EQ(this->ProfileNames(), Names());
}

/// The store comes and goes with the domain tables of its role.
template <typename Store>
void ExpectStoreOfTheDomainTables() {
    ASSERT_EQ(Store::Add("from before"), kOk);
    auto* older = Store::Find("from before");
    ASSERT_EQ(DOM_DomainInfoTableInit(), DOM_OK);
    EXPECT_EQ(Store::Find("from before"), nullptr);
    Store::Delete(older);
    Store::Init();
    const int tables = fake::LiveHashTables();
    ASSERT_EQ(Store::Add("p"), kOk);
    const auto segment = Store::Pack({1, "s"});
    ASSERT_EQ(Store::AddVpn("v", Store::Find("p"), &segment), kOk);
    EXPECT_EQ(fake::LiveHashTables(), tables + 1);
    EXPECT_EQ(DOM_DomainInfoTableFini(), DOM_OK);
    EXPECT_EQ(Store::Find("p"), nullptr);
    EXPECT_EQ(Store::Info()->profile_count, 0u);
    EXPECT_EQ(fake::LiveHashTables(), 0);
}

TEST(ProfileStores, ComeAndGoWithTheDomainTablesOfTheRole) {
    fake::Reset();
    const AAADService service = fake::RoleService();
    DOM_SetAAADService(&service);
    for (const uint32_t role : {fake::kWorkingRole, fake::kConfigRole}) {
        fake::InRole(role, [] {
            ExpectStoreOfTheDomainTables<Author>();
            ExpectStoreOfTheDomainTables<Critical>();
            return 0;
        });
    }
    DOM_ResetAAADService();
}

TEST(ProfileStores, AuthorizationAndCriticalProfilesAreSeparate) {
    DOM_ResetAAADService();
    DOM_author_InitData();
    DOM_critical_InitData();
    EXPECT_EQ(DOM_author_AddProfile("p"), kOk);
    EXPECT_EQ(DOM_critical_FindProfile("p"), nullptr);
    DOM_author_Fini();
}

}  // namespace
}  // namespace aaadom
