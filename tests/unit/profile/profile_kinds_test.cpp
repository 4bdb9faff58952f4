// What authorization and critical profiles do differently, point by point: numbers, orders, counts
// and memory. Each pair of tests holds one point.
#include "unit/profile/profile_fixture.h"

namespace aaadom {
namespace {

class AuthorKind : public ProfileTest<Author> {};
class CriticalKind : public ProfileTest<Critical> {};

TEST_F(AuthorKind, FullStoreIsResult20) {
    AddProfiles(16);
    EXPECT_EQ(DOM_author_AddProfile("q"), 20u);
}
TEST_F(CriticalKind, FullStoreIsResult10) {
    AddProfiles(16);
    EXPECT_EQ(DOM_critical_AddProfile("q"), 10u);
}

TEST_F(AuthorKind, FullProfileIsResult22) {
    AuthorProfile* profile = Add("p");
    AddVpns(profile, 128);
    EXPECT_EQ(AddVpn(profile, "w"), 22u);
}
TEST_F(CriticalKind, FullProfileIsResult11) {
    CriticalProfile* profile = Add("p");
    AddVpns(profile, 128);
    EXPECT_EQ(AddVpn(profile, "w"), 11u);
}

TEST_F(AuthorKind, ExistingProfileIsResult19AndMissingOne21) {
    Add("p");
    EXPECT_EQ(ApplyProfile("p", kAdd), 19u);
    EXPECT_EQ(ApplyProfile("q", kDelete), 21u);
}
TEST_F(CriticalKind, ExistingProfileIsResult13AndMissingOne12) {
    Add("p");
    EXPECT_EQ(ApplyProfile("p", kAdd), 13u);
    EXPECT_EQ(ApplyProfile("q", kDelete), 12u);
}

TEST_F(AuthorKind, FailedReadEndsWithResult21) {
    ExpectSame(TlvPtr(DOM_author_ProcProfileGet("q", nullptr)), EndMsg(21));
}
TEST_F(CriticalKind, FailedReadEndsWithResult12) {
    ExpectSame(TlvPtr(DOM_critical_ProcProfileGet("q", nullptr)), EndMsg(12));
}

TEST_F(AuthorKind, ChangesAreOfKinds33To35) {
    DomDbUpdateReq change{};
    EXPECT_EQ(ApplyProfile("p", kAdd, &change), kOk);
    EXPECT_EQ(change.object_type, 33u);
    EXPECT_EQ(ApplyVpn("p", "v", {1, "s"}, kAdd, &change), kOk);
    EXPECT_EQ(change.object_type, 34u);
    EXPECT_EQ(ApplyDefault("p", {1, "s"}, kAdd, &change), kOk);
    EXPECT_EQ(change.object_type, 35u);
}
TEST_F(CriticalKind, ChangesAreOfKinds23To25) {
    DomDbUpdateReq change{};
    EXPECT_EQ(ApplyProfile("p", kAdd, &change), kOk);
    EXPECT_EQ(change.object_type, 23u);
    EXPECT_EQ(ApplyVpn("p", "v", {1, "s"}, kAdd, &change), kOk);
    EXPECT_EQ(change.object_type, 24u);
    EXPECT_EQ(ApplyDefault("p", {1, "s"}, kAdd, &change), kOk);
    EXPECT_EQ(change.object_type, 25u);
}

// Byte order, although look-ups ignore case: whoever sorts ignoring case puts a before B.
TEST_F(AuthorKind, ProfilesAreInByteOrder) {
    for (const char* name : {"aaa", "b", "zz", "B", "a"}) Add(name);
    EXPECT_EQ(ProfileNames(), Names({"B", "a", "aaa", "b", "zz"}));
}
TEST_F(CriticalKind, ShorterProfilesGoFirst) {
    for (const char* name : {"aaa", "zz", "b", "C"}) Add(name);
    EXPECT_EQ(ProfileNames(), Names({"b", "C", "zz", "aaa"}));
}

// As strcasecmp has it: letters count as lower-case ones, so that the underscore (95) goes before
// them; counted as upper-case ones they would go before it.
TEST_F(CriticalKind, ProfilesOfOneLengthGoByTheirLowerCaseLetters) {
    for (const char* name : {"xA1", "x_1", "Xb1", "XB0"}) Add(name);
    EXPECT_EQ(ProfileNames(), Names({"x_1", "xA1", "XB0", "Xb1"}));
}

// What is sorted is the kept name: 31 characters, whatever was given.
TEST_F(CriticalKind, LongNameIsSortedByTheLengthThatIsKept) {
    Add(std::string(31, 'm'));
    ASSERT_EQ(DOM_critical_AddProfile(std::string(40, 'k').c_str()), kOk);
    EXPECT_EQ(ProfileNames(), Names({std::string(31, 'k'), std::string(31, 'm')}));
}
TEST_F(CriticalKind, LongVpnNameIsSortedByTheLengthThatIsKept) {
    CriticalProfile* profile = Add("p");
    AddVpn(profile, std::string(31, 'm'));
    AddVpn(profile, std::string(40, 'k'));
    EXPECT_EQ(VpnNames(profile), Names({std::string(31, 'k'), std::string(31, 'm')}));
}

TEST_F(AuthorKind, VpnsAreInByteOrder) {
    AuthorProfile* profile = Add("p");
    for (const char* name : {"aaa", "b", "zz", "B", "a"}) AddVpn(profile, name);
    EXPECT_EQ(VpnNames(profile), Names({"B", "a", "aaa", "b", "zz"}));
}
TEST_F(CriticalKind, ShorterVpnsGoFirstThoseOfOneLengthInByteOrder) {
    CriticalProfile* profile = Add("p");
    for (const char* name : {"aaa", "zz", "b", "C", "a"}) AddVpn(profile, name);
    EXPECT_EQ(VpnNames(profile), Names({"C", "a", "b", "zz", "aaa"}));
}

TEST_F(AuthorKind, VpnListIsCircularThroughItsSentinel) {
    AuthorProfile* profile = Add("p");
    EXPECT_EQ(profile->vpn_list.next, &profile->vpn_list);
    EXPECT_EQ(profile->vpn_list.prev, &profile->vpn_list);
    AddVpn(profile, "v");
    AuthorVpnLink* link = &FindVpn(profile, "v")->list;
    EXPECT_EQ(profile->vpn_list.next, link);
    EXPECT_EQ(profile->vpn_list.prev, link);
    EXPECT_EQ(link->next, &profile->vpn_list);
}
TEST_F(CriticalKind, VpnListEndsWithNull) {
    CriticalProfile* profile = Add("p");
    EXPECT_EQ(profile->first_vpn, nullptr);
    AddVpn(profile, "v");
    EXPECT_EQ(profile->first_vpn, FindVpn(profile, "v"));
    EXPECT_EQ(profile->first_vpn->next, nullptr);
}

TEST_F(AuthorKind, NextBiggerIsByByteOrder) {
    for (const char* name : {"B", "a"}) Add(name);
    AuthorProfile* const* head = DOM_author_GetProfileHead();
    EXPECT_STREQ(DOM_author_FindBiggerProfile(head, "A")->name, "B");
    EXPECT_STREQ(DOM_author_FindBiggerProfile(head, "Zzz")->name, "a");
    EXPECT_EQ(DOM_author_FindBiggerProfile(head, "b"), nullptr);
    AuthorProfile* profile = Add("p");
    for (const char* name : {"B", "a"}) AddVpn(profile, name);
    EXPECT_STREQ(DOM_author_FindBiggerVpn(&profile->vpn_list, "Zzz")->vpn_name, "a");
}
TEST_F(CriticalKind, NextBiggerIsByLengthFirst) {
    for (const char* name : {"zz", "aaa"}) Add(name);
    CriticalProfile* const* head = DOM_critical_GetProfileHead();
    EXPECT_STREQ(DOM_critical_FindBiggerProfile(head, "z")->name, "zz");
    EXPECT_STREQ(DOM_critical_FindBiggerProfile(head, "ZA")->name, "zz")
        << "letter case is nothing";
    EXPECT_STREQ(DOM_critical_FindBiggerProfile(head, "ZZ")->name, "aaa");
    EXPECT_EQ(DOM_critical_FindBiggerProfile(head, "aaaa"), nullptr);
    CriticalProfile* profile = Add("p");
    for (const char* name : {"zz", "aaa"}) AddVpn(profile, name);
    EXPECT_STREQ(DOM_critical_FindBiggerVpn(&profile->first_vpn, "ZZ")->vpn_name, "zz");
    EXPECT_STREQ(DOM_critical_FindBiggerVpn(&profile->first_vpn, "zz")->vpn_name, "aaa");
}

TEST_F(AuthorKind, ReadsFollowByByteOrder) {
    for (const char* name : {"b", "aaa"}) AddVpn(Add(name), "v");
    ExpectSame(TlvPtr(DOM_author_ProcProfileGetBulk("aaa")), DefaultMsg("b", {}));
    EXPECT_EQ(DOM_author_ProcProfileGetBulk("b"), nullptr);
    char vpn[32] = "v";
    ExpectSame(TlvPtr(DOM_author_ProcProfileVpnGetBulk("aaa", vpn)), VpnMsg("b", "v", {1, "s"}));
}
TEST_F(CriticalKind, ReadsFollowByLengthFirst) {
    for (const char* name : {"b", "aaa"}) AddVpn(Add(name), "v");
    ExpectSame(TlvPtr(DOM_critical_ProcProfileGetBulk("b")), DefaultMsg("aaa", {}));
    EXPECT_EQ(DOM_critical_ProcProfileGetBulk("aaa"), nullptr);
    char vpn[32] = "v";
    ExpectSame(TlvPtr(DOM_critical_ProcProfileVpnGetBulk("b", vpn)), VpnMsg("aaa", "v", {1, "s"}));
}

// A profile that was in the list before the store was initialised again.
TEST_F(AuthorKind, CountStaysAt0) {
    AuthorProfile* older = Add("p");
    DOM_author_InitData();
    dom_author_DelProfile(older);
    EXPECT_EQ(DOM_author_GetProfileNum(), 0u);
    EXPECT_EQ(DOM_author_AddProfile("q"), kOk);
}
TEST_F(CriticalKind, CountGoesBelow0AndClosesTheStoreUntilInit) {
    CriticalProfile* older = Add("p");
    DOM_critical_InitData();
    dom_critical_DelProfile(older);
    EXPECT_EQ(DOM_critical_GetCriticalProfileInfo()->profile_count, UINT32_MAX);
    EXPECT_EQ(DOM_critical_AddProfile("q"), 10u);
    DOM_critical_InitData();
    EXPECT_EQ(DOM_critical_AddProfile("q"), kOk);
}
TEST_F(AuthorKind, VpnCountStaysAt0) {
    AuthorProfile* profile = Add("p");
    AddVpn(profile, "v");
    profile->vpn_count = 0;
    dom_author_DelVpn("v", profile);
    EXPECT_EQ(profile->vpn_count, 0u);
}
TEST_F(CriticalKind, VpnCountGoesBelow0) {
    CriticalProfile* profile = Add("p");
    AddVpn(profile, "v");
    profile->vpn_count = 0;
    dom_critical_DelVpn("v", profile);
    EXPECT_EQ(profile->vpn_count, UINT32_MAX);
}

// The list of profiles that the store holds now must not take up what an older one links to.
TEST_F(AuthorKind, ProfileFromBeforeInitDoesNotComeBackThroughItsLinks) {
    AuthorProfile* first = Add("a");
    AuthorProfile* second = Add("b");
    DOM_author_InitData();
    dom_author_DelProfile(first);
    EXPECT_EQ(DOM_author_GetFirstProfile(), nullptr);
    dom_author_DelProfile(second);
    EXPECT_EQ(DOM_author_GetFirstProfile(), nullptr);
}

// Nodes that are in the list but in no table go with the list of an authorization profile.
TEST_F(AuthorKind, DeletionWalksTheListBehindTheTable) {
    const auto round = [] {
        AuthorProfile* profile = Add("p");
        AddVpns(profile, 3);
        HASH_Unlink(&FindVpn(profile, "v1")->hash);
        dom_author_DelProfile(profile);
        EXPECT_EQ(ProfileNames(), Names());
    };
    EXPECT_LT(HeapGrowth(500, round), kHeapNoise);
}
// The table of a critical profile frees whole nodes by the address of their links.
TEST_F(CriticalKind, TableLinksAreTheNode) {
    CriticalProfile* profile = Add("p");
    AddVpn(profile, "v");
    EXPECT_EQ(static_cast<void*>(&FindVpn(profile, "v")->hash),
              static_cast<void*>(FindVpn(profile, "v")));
}

TEST_F(AuthorKind, NameBufferIsAsLongAsItsCallerSays) {
    Add("stored");
    const TlvPtr msg = ProfileMsg("STORED");
    char name[8];
    memset(name, 'x', sizeof name);
    EXPECT_EQ(DOM_author_ProcProfile(msg.get(), kAdd, name, 4, nullptr), 19u);
    EXPECT_EQ(std::string(name, 8), std::string("sto\0xxxx", 8));
    EXPECT_EQ(DOM_author_ProcProfile(msg.get(), kAdd, name, 1, nullptr), 19u);
    EXPECT_EQ(std::string(name, 2), std::string("\0t", 2));
}
TEST_F(AuthorKind, NameBufferOfNoBytesIsNotWritten) {
    char name = 'x';
    EXPECT_EQ(DOM_author_ProcProfile(ProfileMsg("p").get(), kAdd, &name, 0, nullptr), kOk);
    EXPECT_EQ(DOM_author_ProcProfile(ProfileMsg("p").get(), kAdd, &name, 0, nullptr), 19u);
    EXPECT_EQ(name, 'x');
}
TEST_F(CriticalKind, NameBufferIsAlways32Bytes) {
    const std::string name(31, 'n');
    char out[33];
    memset(out, 'x', sizeof out);
    EXPECT_EQ(DOM_critical_ProcProfile(ProfileMsg(name).get(), kAdd, out, nullptr), kOk);
    EXPECT_STREQ(out, name.c_str());
    EXPECT_EQ(out[32], 'x');
}

TEST_F(AuthorKind, MessagesAreOfCodes156To158) {
    EXPECT_EQ(uint32_t{DOM_MSG_AUTHOR_PROFILE}, 156u);
    EXPECT_EQ(uint32_t{DOM_MSG_AUTHOR_VPN}, 157u);
    EXPECT_EQ(uint32_t{DOM_MSG_AUTHOR_SEGMENT}, 158u);
    SetDefault(Add("p"), {5, "five"});
    ExpectSame(TlvPtr(DOM_author_ProcProfileGet("p", nullptr)),
               Fields().Number(0, 158).Text(431, "five").Number(432, 5).Text(430, "p").Take());
}
// The 16-bit number travels as a 32-bit one, before the ID.
TEST_F(CriticalKind, MessagesAreOfCodes147To149AndCarryTheNumber) {
    EXPECT_EQ(uint32_t{DOM_MSG_CRITICAL_PROFILE}, 147u);
    EXPECT_EQ(uint32_t{DOM_MSG_CRITICAL_VPN}, 148u);
    EXPECT_EQ(uint32_t{DOM_MSG_CRITICAL_SEGMENT}, 149u);
    SetDefault(Add("p"), {5, "five", 0xFEDC});
    ExpectSame(TlvPtr(DOM_critical_ProcProfileGet("p", nullptr)), Fields()
                                                                      .Number(0, 149)
                                                                      .Text(390, "five")
                                                                      .Number(391, 0xFEDC)
                                                                      .Number(392, 5)
                                                                      .Text(389, "p")
                                                                      .Take());
}

TEST_F(CriticalKind, NumberIsCarriedUnchanged) {
    DomDbUpdateReq change{};
    Add("p");
    ASSERT_EQ(ApplyVpn("p", "v", {1, "s", 0xFFFF}, kAdd, &change), kOk);
    EXPECT_EQ(change.critical_number16, 0xFFFFu);
    CriticalSegment segment{};
    ASSERT_EQ(AAA_GetCriticalData("p", "v", &segment), DOM_OK);
    EXPECT_EQ(segment.value16, 0xFFFFu);
    EXPECT_EQ(segment.segment_id, 1u);
}

}  // namespace
}  // namespace aaadom
