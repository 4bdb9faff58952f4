// Critical and authorization profiles through the applier. The stores have tests of their own: here
// it counts which processor a code reaches, with what, and what becomes of its result.
#include <aaadom/profile.h>
#include <aaadom/profile_codec.h>

#include <cstring>

#include "unit/codec/restore_fixture.h"

namespace aaadom {
namespace {

struct Author {
    using Msg = AuthorProfileMsg;
    using Segment = AuthorSegment;
    static constexpr uint32_t kExists = 19, kFull = 20, kMissing = 21, kVpnFull = 22;
    static constexpr uint32_t kSize = 68;
    static constexpr uint32_t kSortOffset = 36;
    static constexpr auto Profile = DOM_author_tlv_EncodeAuthorProfile;
    static constexpr auto Vpn = DOM_author_tlv_EncodeAuthorVpn;
    static constexpr auto Default = DOM_author_tlv_EncodeDefaultAuthor;
    static constexpr auto Query = AAA_GetAuthorProfileData;
    static constexpr auto IsSaved = DOM_IsExistAuthorProfileName;
    static constexpr auto SegmentKey = DOM_GetDBkeyFromAuthorMicroSegMent;
    static uint32_t ListKey(const char* name, char* key) {
        return DOM_GetDBkeyFromAuthorProfileName(name, 129, key);
    }
    static bool Has(const char* name) { return DOM_author_FindProfile(name) != nullptr; }
};

struct Critical {
    using Msg = CriticalProfileMsg;
    using Segment = CriticalSegment;
    static constexpr uint32_t kExists = 13, kFull = 10, kMissing = 12, kVpnFull = 11;
    static constexpr uint32_t kSize = 72;
    static constexpr uint32_t kSortOffset = 40;
    static constexpr auto Profile = DOM_clitical_tlv_EncodeCriticalProfile;
    static constexpr auto Vpn = DOM_critical_tlv_EncodeCriticalVpn;
    static constexpr auto Default = DOM_critical_tlv_EncodeDefaultCritical;
    static constexpr auto Query = AAA_GetCriticalData;
    static constexpr auto IsSaved = DOM_IsExistCriticalProfileName;
    static constexpr auto SegmentKey = DOM_GetDBkeyFromCriticalMicroSegMent;
    static constexpr auto ListKey = DOM_GetDBkeyFromCriticalProfileName;
    static bool Has(const char* name) { return DOM_critical_FindProfile(name) != nullptr; }
};

template <typename Family>
class RestoreProfiles : public RestoreTest {
  protected:
    using Msg = typename Family::Msg;

    static Msg Message(const char* profile, const char* vpn, uint32_t id,
                       const char* segment = "segment") {
        Msg msg{};
        msg.segment_id = id;
        CopyText(msg.profile_name, profile);
        CopyText(msg.segment_name, segment);
        CopyText(msg.vpn_name, vpn);
        return msg;
    }
    uint32_t SetProfile(const char* name, uint16_t save = 0) {
        return Set(Family::Profile(name), save);
    }
    uint32_t DeleteProfile(const char* name, uint16_t save = 0) {
        return Delete(Family::Profile(name), save);
    }
    uint32_t SetVpn(const Msg& msg, uint16_t save = 0) { return Set(Family::Vpn(&msg), save); }
    uint32_t SetDefault(const Msg& msg, uint16_t save = 0) {
        return Set(Family::Default(&msg), save);
    }
    /// The segment ID in force; 0 when there is none.
    static uint32_t InForce(const char* profile, const char* vpn) {
        typename Family::Segment segment{};
        return Family::Query(profile, vpn, &segment) == DOM_OK ? segment.segment_id : 0;
    }
    static uint32_t IdIn(const char* bytes) {
        const auto* b = reinterpret_cast<const unsigned char*>(bytes);
        return uint32_t{b[0]} << 24 | uint32_t{b[1]} << 16 | uint32_t{b[2]} << 8 | b[3];
    }
    /// The saved segment ID of a VPN; 0 when none is saved.
    uint32_t SavedVpn(const char* profile, const char* vpn) {
        char key[129];
        const uint32_t length = Family::ListKey(profile, key);
        char entry[Family::kSize] = {};
        memcpy(entry + Family::kSortOffset, vpn, strlen(vpn));
        return DBM_GetSortList(handle_, key, length, sizeof entry, entry) < 0 ? 0 : IdIn(entry);
    }
    uint32_t SavedDefault(const char* profile) {
        char key[129];
        const uint32_t length = Family::SegmentKey(profile, key);
        char value[Family::kSize] = {};
        return DBM_GetBinary(handle_, key, length, 0, sizeof value, value) <= 0 ? 0 : IdIn(value);
    }
    bool IsSaved(const char* name) { return Family::IsSaved(handle_, name) == 1; }
};

using Families = testing::Types<Author, Critical>;
class FamilyNames {
  public:
    template <typename Family>
    static std::string GetName(int) {
        return std::is_same_v<Family, Author> ? "Author" : "Critical";
    }
};
TYPED_TEST_SUITE(RestoreProfiles, Families, FamilyNames);

TYPED_TEST(RestoreProfiles, ProfileIsAddedAndSaved) {
    EXPECT_EQ(this->SetProfile("Profile", 1), 0u);
    EXPECT_TRUE(TypeParam::Has("profile"));
    EXPECT_TRUE(this->IsSaved("Profile"));
    EXPECT_STREQ(this->name1_, "Profile");
    EXPECT_STREQ(this->name2_, "untouched");
}

TYPED_TEST(RestoreProfiles, NothingIsSavedUnlessAskedFor) {
    EXPECT_EQ(this->SetProfile("Profile"), 0u);
    EXPECT_EQ(this->SetVpn(this->Message("Profile", "vpn", 7)), 0u);
    EXPECT_EQ(this->SetDefault(this->Message("Profile", "", 8)), 0u);
    EXPECT_TRUE(fake::DbmCalls().empty());
    EXPECT_EQ(this->InForce("Profile", "vpn"), 7u);
    EXPECT_EQ(this->InForce("Profile", nullptr), 8u);
}

// The requester learns the spelling that the device uses; a refusal is the store's own number.
TYPED_TEST(RestoreProfiles, ExistingProfileIsRefusedWithItsStoredName) {
    ASSERT_EQ(this->SetProfile("Profile"), 0u);
    EXPECT_EQ(this->SetProfile("PROFILE", 1), TypeParam::kExists);
    EXPECT_STREQ(this->name1_, "Profile");
    EXPECT_TRUE(fake::DbmCalls().empty());
}

TYPED_TEST(RestoreProfiles, NameIsCutToTheRoomOfTheRequester) {
    const TlvPtr inner(TypeParam::Profile("Profile"));
    const TlvPtr msg(AAA_AddOpHead(DOM_OP_SET, inner.get()));
    char name[8] = "???????";
    EXPECT_EQ(DOM_RestoreData(msg.get(), 0, 4, 0, name, nullptr), 0u);
    EXPECT_STREQ(name, "Pro");
    EXPECT_EQ(name[4], '?');
    EXPECT_EQ(DOM_RestoreData(msg.get(), 0, 4, 0, nullptr, nullptr), TypeParam::kExists);
}

TYPED_TEST(RestoreProfiles, ProfileIsDeletedUnderItsStoredNameWithAllThatIsSaved) {
    ASSERT_EQ(this->SetProfile("Profile", 1), 0u);
    ASSERT_EQ(this->SetVpn(this->Message("Profile", "vpn", 7), 1), 0u);
    ASSERT_EQ(this->SetDefault(this->Message("Profile", "", 8), 1), 0u);
    strcpy(this->name1_, "untouched");
    EXPECT_EQ(this->DeleteProfile("PROFILE", 1), 0u);
    EXPECT_FALSE(TypeParam::Has("Profile"));
    EXPECT_FALSE(this->IsSaved("Profile"));
    EXPECT_EQ(this->SavedVpn("Profile", "vpn"), 0u);
    EXPECT_EQ(this->SavedDefault("Profile"), 0u);
    EXPECT_STREQ(this->name1_, "untouched") << "a deletion hands out no name";
}

TYPED_TEST(RestoreProfiles, MissingProfileIsRefusedWithItsOwnNumber) {
    EXPECT_EQ(this->DeleteProfile("nobody", 1), TypeParam::kMissing);
    EXPECT_TRUE(fake::DbmCalls().empty());
    EXPECT_STREQ(this->name1_, "untouched");
}

TYPED_TEST(RestoreProfiles, FullStoreIsRefusedWithItsOwnNumber) {
    for (int i = 0; i < 16; ++i) ASSERT_EQ(this->SetProfile(std::to_string(i).c_str()), 0u);
    EXPECT_EQ(this->SetProfile("one more", 1), TypeParam::kFull);
    EXPECT_TRUE(fake::DbmCalls().empty());
}

TYPED_TEST(RestoreProfiles, FullProfileIsRefusedWithItsOwnNumber) {
    ASSERT_EQ(this->SetProfile("profile"), 0u);
    for (int i = 0; i < 128; ++i)
        ASSERT_EQ(this->SetVpn(this->Message("profile", std::to_string(i).c_str(), 1)), 0u);
    EXPECT_EQ(this->SetVpn(this->Message("profile", "one more", 1), 1), TypeParam::kVpnFull);
    EXPECT_TRUE(fake::DbmCalls().empty());
}

TYPED_TEST(RestoreProfiles, EveryOperationButZeroDeletes) {
    for (const uint32_t op : {1u, 2u, 3u, 6u, 0xFFFFFFFFu}) {
        ASSERT_EQ(this->SetProfile("profile"), 0u);
        EXPECT_EQ(this->Restore(TypeParam::Profile("profile"), op, 0), 0u) << op;
        EXPECT_FALSE(TypeParam::Has("profile")) << op;
    }
}

TYPED_TEST(RestoreProfiles, VpnIsSetOverwrittenAndDeletedInBothPlaces) {
    ASSERT_EQ(this->SetProfile("profile", 1), 0u);
    EXPECT_EQ(this->SetVpn(this->Message("profile", "vpn", 7), 1), 0u);
    EXPECT_EQ(this->SavedVpn("profile", "vpn"), 7u);
    EXPECT_EQ(this->SetVpn(this->Message("profile", "vpn", 9), 1), 0u);
    EXPECT_EQ(this->InForce("profile", "vpn"), 9u);
    EXPECT_EQ(this->SavedVpn("profile", "vpn"), 9u);
    const auto gone = this->Message("profile", "vpn", 0);
    EXPECT_EQ(this->Delete(TypeParam::Vpn(&gone), 1), 0u);
    EXPECT_EQ(this->InForce("profile", "vpn"), 0u);
    EXPECT_EQ(this->SavedVpn("profile", "vpn"), 0u);
}

TYPED_TEST(RestoreProfiles, DefaultSegmentIsSetAndClearedInBothPlaces) {
    ASSERT_EQ(this->SetProfile("profile", 1), 0u);
    EXPECT_EQ(this->SetDefault(this->Message("profile", "", 8), 1), 0u);
    EXPECT_EQ(this->InForce("profile", nullptr), 8u);
    EXPECT_EQ(this->SavedDefault("profile"), 8u);
    const auto cleared = this->Message("profile", "", 0, "");
    EXPECT_EQ(this->Delete(TypeParam::Default(&cleared), 1), 0u);
    EXPECT_EQ(this->InForce("profile", nullptr), 0u);
    EXPECT_EQ(this->SavedDefault("profile"), 0u);
}

// The store keeps what a deletion carries, the database deletes by the operation: senders clear a
// segment with ID 0.
TYPED_TEST(RestoreProfiles, DeletionOfADefaultSegmentWithAnIdLeavesTheIdInTheStore) {
    ASSERT_EQ(this->SetProfile("profile", 1), 0u);
    ASSERT_EQ(this->SetDefault(this->Message("profile", "", 8), 1), 0u);
    const auto deletion = this->Message("profile", "", 9);
    EXPECT_EQ(this->Delete(TypeParam::Default(&deletion), 1), 0u);
    EXPECT_EQ(this->InForce("profile", nullptr), 9u);
    EXPECT_EQ(this->SavedDefault("profile"), 0u);
}

// Keys of the database are found by their exact bytes; the store finds the profile in any case.
TYPED_TEST(RestoreProfiles, SegmentsAreSavedUnderTheStoredNameOfTheirProfile) {
    ASSERT_EQ(this->SetProfile("Profile", 1), 0u);
    EXPECT_EQ(this->SetVpn(this->Message("pROFILE", "vpn", 7), 1), 0u);
    EXPECT_EQ(this->SetDefault(this->Message("PROFILE", "", 8), 1), 0u);
    EXPECT_EQ(this->SavedVpn("Profile", "vpn"), 7u);
    EXPECT_EQ(this->SavedDefault("Profile"), 8u);
    EXPECT_EQ(this->SavedDefault("PROFILE"), 0u);
}

TYPED_TEST(RestoreProfiles, RefusedSegmentsSaveNothing) {
    ASSERT_EQ(this->SetProfile("profile"), 0u);
    strcpy(this->name1_, "untouched");
    EXPECT_EQ(this->SetVpn(this->Message("profile", "vpn", 0), 1), 1u) << "no segment ID";
    EXPECT_EQ(this->SetVpn(this->Message("nobody", "vpn", 7), 1), 1u);
    EXPECT_EQ(this->SetDefault(this->Message("profile", "", 0), 1), 1u);
    EXPECT_EQ(this->SetDefault(this->Message("nobody", "", 7), 1), 1u);
    EXPECT_TRUE(fake::DbmCalls().empty());
    EXPECT_STREQ(this->name1_, "untouched");
}

TYPED_TEST(RestoreProfiles, MalformedMessagesAreRefused) {
    const std::string long_name(32, 'n');
    EXPECT_EQ(this->SetProfile(long_name.c_str(), 1), 1u);
    EXPECT_EQ(this->DeleteProfile(long_name.c_str(), 1), 1u);
    const uint32_t codes[] = {DOM_MSG_CRITICAL_PROFILE, DOM_MSG_CRITICAL_VPN,
                              DOM_MSG_CRITICAL_SEGMENT, DOM_MSG_AUTHOR_PROFILE,
                              DOM_MSG_AUTHOR_VPN,       DOM_MSG_AUTHOR_SEGMENT};
    for (const uint32_t code : codes) EXPECT_EQ(this->Set(this->CodeAlone(code), 1), 1u) << code;
    EXPECT_TRUE(fake::DbmCalls().empty());
}

// A profile that could not be saved stands in the role, and the requester hears of the failure. A
// default segment that could not be saved is a success: the segment is in force.
TYPED_TEST(RestoreProfiles, DatabaseFailureIsTheResultOfProfilesAndVpns) {
    ASSERT_EQ(this->SetProfile("other"), 0u);
    fake::FailAllDbmCalls(true);
    EXPECT_EQ(this->SetProfile("profile", 1), DOM_ERR_FAILED);
    EXPECT_TRUE(TypeParam::Has("profile"));
    EXPECT_STREQ(this->name1_, "profile");
    EXPECT_EQ(this->SetVpn(this->Message("profile", "vpn", 7), 1), DOM_ERR_FAILED);
    EXPECT_EQ(this->InForce("profile", "vpn"), 7u);
    EXPECT_EQ(this->SetDefault(this->Message("profile", "", 8), 1), DOM_OK);
    EXPECT_EQ(this->DeleteProfile("profile", 1), DOM_ERR_FAILED);
}

TYPED_TEST(RestoreProfiles, BothRolesHaveProfilesOfTheirOwn) {
    ASSERT_EQ(this->SetProfile("config"), 0u);
    fake::role_of_this_thread = fake::kWorkingRole;
    EXPECT_FALSE(TypeParam::Has("config"));
    EXPECT_EQ(this->SetProfile("working"), 0u);
    EXPECT_TRUE(TypeParam::Has("working"));
    fake::role_of_this_thread = fake::kConfigRole;
    EXPECT_FALSE(TypeParam::Has("working"));
}

// --- the families apart
// --------------------------------------------------------------------------

using RestoreBothFamilies = RestoreProfiles<Author>;

TEST_F(RestoreBothFamilies, FamiliesShareNoProfile) {
    ASSERT_EQ(Set(Author::Profile("profile"), 1), 0u);
    EXPECT_EQ(Delete(Critical::Profile("profile"), 1), 12u);
    EXPECT_TRUE(Author::Has("profile"));
    EXPECT_FALSE(Critical::Has("profile"));
    EXPECT_EQ(Critical::IsSaved(handle_, "profile"), 0u);
}

TEST_F(RestoreBothFamilies, SixteenBitValueOfACriticalSegmentIsAppliedAndSaved) {
    ASSERT_EQ(Set(Critical::Profile("profile"), 1), 0u);
    CriticalProfileMsg msg{};
    CopyText(msg.profile_name, "profile");
    CopyText(msg.vpn_name, "vpn");
    msg.segment_id = 7;
    msg.value16 = 0xABCD;
    ASSERT_EQ(Set(Critical::Vpn(&msg), 1), 0u);
    CriticalSegment segment{};
    ASSERT_EQ(AAA_GetCriticalData("profile", "vpn", &segment), DOM_OK);
    EXPECT_EQ(segment.value16, 0xABCD);
    const auto calls = fake::DbmCalls("DBM_InsertSortList");
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].value.substr(4, 2), "\xAB\xCD");
}

}  // namespace
}  // namespace aaadom
