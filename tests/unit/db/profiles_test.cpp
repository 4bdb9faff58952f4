// Saved critical and authorization profiles. What the families have in common is tested for both;
// keys, sizes and offsets are written out here, so that a changed registry does not change the
// tests.
#include <cstdlib>
#include <vector>

#include "unit/db/config_db_fixture.h"

namespace aaadom {
namespace {

using Calls = std::vector<std::string>;
using Names = std::vector<std::string>;

struct Author {
    static constexpr uint32_t kProfile = 33, kEntry = 34, kSegment = 35;
    static constexpr uint32_t kSize = 68, kTextOffset = 4, kVpnOffset = 36;
    static constexpr const char* kListPrefix = "authorprofilename_";
    static constexpr const char* kSegmentPrefix = "authormicrosegmentname_";
    static constexpr auto IsSaved = DOM_IsExistAuthorProfileName;
    static constexpr auto All = DOM_GetAllAuthorProfileMode;
    static constexpr auto SegmentKey = DOM_GetDBkeyFromAuthorMicroSegMent;
    static uint32_t ListKey(const char* name, char* key) {
        return DOM_GetDBkeyFromAuthorProfileName(name, 129, key);
    }
    static void Fill(DomDbUpdateReq& request, const char* profile, uint32_t id, const char* text) {
        CopyText(request.author_profile_name, profile);
        CopyText(request.author_text, text);
        request.author_number = id;
        // The other family's members, which must not get into the record.
        CopyText(request.critical_profile_name, "wrong");
        CopyText(request.critical_text, "wrong");
        request.critical_number = 0xEEEEEEEE;
        request.critical_number16 = 0xEEEE;
    }
    static void FillToTheBrim(DomDbUpdateReq& request) {
        memset(request.author_profile_name, 'p', 32);
        memset(request.author_text, 's', 32);
    }
    static std::string Head(uint32_t id) {
        return {static_cast<char>(id >> 24), static_cast<char>(id >> 16),
                static_cast<char>(id >> 8), static_cast<char>(id)};
    }
};

struct Critical {
    static constexpr uint32_t kProfile = 23, kEntry = 24, kSegment = 25;
    static constexpr uint32_t kSize = 72, kTextOffset = 8, kVpnOffset = 40;
    static constexpr const char* kListPrefix = "criticalprofilename_";
    static constexpr const char* kSegmentPrefix = "criticalmicrosegmentname_";
    static constexpr auto IsSaved = DOM_IsExistCriticalProfileName;
    static constexpr auto All = DOM_GetAllCriticalProfileMode;
    static constexpr auto SegmentKey = DOM_GetDBkeyFromCriticalMicroSegMent;
    static constexpr auto ListKey = DOM_GetDBkeyFromCriticalProfileName;
    static void Fill(DomDbUpdateReq& request, const char* profile, uint32_t id, const char* text) {
        CopyText(request.critical_profile_name, profile);
        CopyText(request.critical_text, text);
        request.critical_number = id;
        request.critical_number16 = 0xABCD;
        CopyText(request.author_profile_name, "wrong");
        CopyText(request.author_text, "wrong");
        request.author_number = 0xEEEEEEEE;
    }
    static void FillToTheBrim(DomDbUpdateReq& request) {
        memset(request.critical_profile_name, 'p', 32);
        memset(request.critical_text, 's', 32);
        request.critical_number16 = 0xABCD;
    }
    static std::string Head(uint32_t id) {
        return Author::Head(id) + std::string("\xAB\xCD\0\0", 4);
    }
};

template <typename Family>
class SavedProfiles : public ConfigDbTest {
  protected:
    static constexpr uint32_t kId = 0x01020384;

    static uint32_t Save(uint32_t type, const char* profile, uint16_t operation = 1,
                         const char* vpn = "", uint32_t id = kId, const char* text = "segment") {
        DomDbUpdateReq request = Request(type, "", operation);
        Family::Fill(request, profile, id, text);
        CopyText(request.entry_name, vpn);
        return DOM_SetDataToDB(&request);
    }
    static uint32_t SaveProfile(const char* name, uint16_t operation = 1) {
        return Save(Family::kProfile, name, operation);
    }
    static uint32_t SaveVpn(const char* profile, const char* vpn, uint32_t id = kId,
                            uint16_t operation = 1) {
        return Save(Family::kEntry, profile, operation, vpn, id);
    }
    static uint32_t SaveSegment(const char* profile, uint32_t id = kId, uint16_t operation = 1) {
        return Save(Family::kSegment, profile, operation, "not stored", id);
    }
    /// A profile with one VPN and a default segment; the calls that made it are forgotten.
    static void Prepare() {
        ASSERT_EQ(SaveProfile("profile"), DOM_OK);
        ASSERT_EQ(SaveVpn("profile", "vpn-a"), DOM_OK);
        ASSERT_EQ(SaveSegment("profile"), DOM_OK);
        fake::ClearDbmCalls();
    }
    static std::string ListKey(const std::string& name) {
        return Family::kListPrefix + name + '\0';
    }
    static std::string SegmentKey(const std::string& name) {
        return Family::kSegmentPrefix + name + '\0';
    }
    static std::string Value(uint32_t id, std::string text, const std::string& vpn) {
        text.resize(32, '\0');
        std::string value = Family::Head(id) + text + vpn;
        value.resize(Family::kSize, '\0');
        return value;
    }
    std::string StoredVpn(const std::string& vpn) {
        std::string entry = Value(0, "", vpn);
        const std::string key = ListKey("profile");
        const int32_t length = DBM_GetSortList(
            handle_, key.data(), static_cast<uint32_t>(key.size()), Family::kSize, entry.data());
        return length < 0 ? "(none)" : entry;
    }
    std::string StoredSegment() {
        const std::string key = SegmentKey("profile");
        std::string value(200, '\0');
        const int32_t length = DBM_GetBinary(handle_, key.data(), static_cast<uint32_t>(key.size()),
                                             0, 200, value.data());
        if (length <= 0) return "(none)";
        value.resize(static_cast<size_t>(length));
        return value;
    }
    bool IsSaved(const char* name) { return Family::IsSaved(handle_, name) == 1; }
    static Calls CallNames() {
        Calls names;
        for (const fake::DbmCall& call : fake::DbmCalls()) names.push_back(call.call);
        return names;
    }
};
using Families = testing::Types<Author, Critical>;
class FamilyNames {
  public:
    template <typename Family>
    static std::string GetName(int) {
        return std::is_same_v<Family, Author> ? "Author" : "Critical";
    }
};
TYPED_TEST_SUITE(SavedProfiles, Families, FamilyNames);

// --- profiles

TYPED_TEST(SavedProfiles, ProfileIsASortedListOfTheValueTypeOfItsEntries) {
    EXPECT_EQ(this->SaveProfile("profile"), DOM_OK);
    const auto calls = fake::DbmCalls("DBM_CreateSortList");
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].key, this->ListKey("profile"));
    EXPECT_EQ(calls[0].key_length, strlen(TypeParam::kListPrefix) + 8);
    EXPECT_EQ(calls[0].index, 1) << "count of attribute sets";
    EXPECT_EQ(calls[0].value_type, TypeParam::kEntry);
    const uint32_t attributes[4] = {TypeParam::kVpnOffset, 32, 5, 0};
    EXPECT_EQ(calls[0].value,
              std::string(reinterpret_cast<const char*>(attributes), sizeof attributes));
}

TYPED_TEST(SavedProfiles, SavingAnExistingProfileLeavesItAlone) {
    this->Prepare();
    EXPECT_EQ(this->SaveProfile("profile"), DOM_OK);
    EXPECT_EQ(this->CallNames(), (Calls{"DBM_IsKeyExist"}));
    EXPECT_EQ(this->StoredVpn("vpn-a"), this->Value(this->kId, "segment", "vpn-a"));
}

TYPED_TEST(SavedProfiles, DeletingAProfileTakesItsVpnsAndItsSegmentAlong) {
    for (const uint16_t operation : {0, 2, 0xFFFF}) {
        this->Prepare();
        EXPECT_EQ(this->SaveProfile("profile", operation), DOM_OK) << operation;
        EXPECT_EQ(this->CallNames(), (Calls{"DBM_IsKeyExist", "DBM_Begin", "DBM_DeleteKey",
                                            "DBM_DeleteKey", "DBM_Commit"}));
        const auto deleted = fake::DbmCalls("DBM_DeleteKey");
        EXPECT_EQ(deleted[0].key, this->ListKey("profile"));
        EXPECT_EQ(deleted[1].key, this->SegmentKey("profile"));
        EXPECT_FALSE(this->IsSaved("profile"));
        EXPECT_EQ(this->StoredVpn("vpn-a"), "(none)");
        EXPECT_EQ(this->StoredSegment(), "(none)");
    }
}

TYPED_TEST(SavedProfiles, ProfileWithoutADefaultSegmentIsDeletedAsWell) {
    ASSERT_EQ(this->SaveProfile("profile"), DOM_OK);
    EXPECT_EQ(this->SaveProfile("profile", 0), DOM_OK);
    EXPECT_FALSE(this->IsSaved("profile"));
}

TYPED_TEST(SavedProfiles, DeletingAMissingProfileFailsAndLeavesASegmentOfItsNameAlone) {
    ASSERT_EQ(this->SaveSegment("profile"), DOM_OK);
    EXPECT_EQ(this->SaveProfile("profile", 0), DOM_ERR_FAILED);
    EXPECT_TRUE(fake::DbmCalls("DBM_DeleteKey").empty());
    EXPECT_NE(this->StoredSegment(), "(none)");
}

// Calls of a deletion: is it there, begin, list, segment, commit.
TYPED_TEST(SavedProfiles, FailedDeletionOfTheListIsTheResultAndTheSegmentGoesAllTheSame) {
    this->Prepare();
    fake::FailedWritesSpoilScopes(false);
    fake::FailDbmCall(3);
    EXPECT_EQ(this->SaveProfile("profile", 0), DOM_ERR_FAILED);
    EXPECT_TRUE(fake::Tripped());
    EXPECT_TRUE(this->IsSaved("profile"));
    EXPECT_EQ(this->StoredSegment(), "(none)");
}

TYPED_TEST(SavedProfiles, ResultOfDeletingTheSegmentDoesNotCount) {
    this->Prepare();
    fake::FailedWritesSpoilScopes(false);
    fake::FailDbmCall(4);
    EXPECT_EQ(this->SaveProfile("profile", 0), DOM_OK);
    EXPECT_TRUE(fake::Tripped());
    EXPECT_FALSE(this->IsSaved("profile"));
}

// A storage error takes back the whole deletion, whichever key met it.
TYPED_TEST(SavedProfiles, DeletionThatMeetsAStorageErrorKeepsBothKeys) {
    this->Prepare();
    for (const int call : {3, 4}) {
        fake::FailDbmCall(call);
        EXPECT_EQ(this->SaveProfile("profile", 0), DOM_ERR_FAILED);
        EXPECT_TRUE(fake::Tripped());
        EXPECT_TRUE(this->IsSaved("profile"));
        EXPECT_NE(this->StoredSegment(), "(none)");
    }
}

TYPED_TEST(SavedProfiles, DeletionThatIsNotCommittedKeepsBothKeys) {
    for (const int n : {2, 5}) {
        this->Prepare();
        fake::FailDbmCall(n);
        EXPECT_EQ(this->SaveProfile("profile", 0), DOM_ERR_FAILED) << n;
        EXPECT_TRUE(fake::Tripped()) << n;
        fake::DisarmFailures();
        EXPECT_TRUE(this->IsSaved("profile")) << n;
        EXPECT_NE(this->StoredSegment(), "(none)") << n;
        EXPECT_EQ(DBM_Commit(this->handle_), DOM_ERR_FAILED) << n << ": the transaction is over";
    }
}

TYPED_TEST(SavedProfiles, DeletionJoinsTheTransactionOfItsCaller) {
    this->Prepare();
    ASSERT_EQ(DBM_Begin(this->handle_), 0u);
    EXPECT_EQ(this->SaveProfile("profile", 0), DOM_OK);
    ASSERT_EQ(DBM_Abort(this->handle_), 0u);
    EXPECT_TRUE(this->IsSaved("profile"));
    EXPECT_NE(this->StoredSegment(), "(none)");
}

// --- VPNs

TYPED_TEST(SavedProfiles, VpnIsOneEntry) {
    ASSERT_EQ(this->SaveProfile("profile"), DOM_OK);
    fake::ClearDbmCalls();
    EXPECT_EQ(this->SaveVpn("profile", "vpn-a"), DOM_OK);
    EXPECT_EQ(this->CallNames(), (Calls{"DBM_InsertSortList"}));
    const auto calls = fake::DbmCalls("DBM_InsertSortList");
    EXPECT_EQ(calls[0].key, this->ListKey("profile"));
    EXPECT_EQ(calls[0].value_length, TypeParam::kSize);
    EXPECT_EQ(calls[0].value, this->Value(this->kId, "segment", "vpn-a"));
    EXPECT_EQ(calls[0].value.substr(TypeParam::kTextOffset, 7), "segment");
    EXPECT_EQ(calls[0].value.substr(TypeParam::kVpnOffset, 5), "vpn-a");
    EXPECT_EQ(calls[0].value_type, TypeParam::kEntry);
}

TYPED_TEST(SavedProfiles, AnotherSegmentOfTheVpnReplacesTheEntry) {
    this->Prepare();
    EXPECT_EQ(this->SaveVpn("profile", "vpn-a", 99), DOM_OK);
    EXPECT_EQ(this->StoredVpn("vpn-a"), this->Value(99, "segment", "vpn-a"));
    const std::string key = this->ListKey("profile");
    EXPECT_EQ(DBM_GetEntryNum(this->handle_, key.data(), static_cast<uint32_t>(key.size())), 1u);
}

TYPED_TEST(SavedProfiles, ReplacementThatFailsKeepsTheOldEntry) {
    this->Prepare();
    fake::FailDbmCall(1);
    EXPECT_EQ(this->SaveVpn("profile", "vpn-a", 99), DOM_ERR_FAILED);
    EXPECT_EQ(this->StoredVpn("vpn-a"), this->Value(this->kId, "segment", "vpn-a"));
}

TYPED_TEST(SavedProfiles, VpnsThatDifferInCaseAreDifferent) {
    this->Prepare();
    EXPECT_EQ(this->SaveVpn("profile", "VPN-A", 99), DOM_OK);
    EXPECT_EQ(this->StoredVpn("vpn-a"), this->Value(this->kId, "segment", "vpn-a"));
    EXPECT_EQ(this->StoredVpn("VPN-A"), this->Value(99, "segment", "VPN-A"));
}

TYPED_TEST(SavedProfiles, VpnOfAProfileThatIsNotSavedFails) {
    EXPECT_EQ(this->SaveVpn("nobody", "vpn-a"), DOM_ERR_FAILED);
    EXPECT_FALSE(this->IsSaved("nobody"));
}

TYPED_TEST(SavedProfiles, DeletingAVpnRemovesItsEntryWhateverTheSegment) {
    for (const uint16_t operation : {0, 2, 0xFFFF}) {
        this->Prepare();
        EXPECT_EQ(this->SaveVpn("profile", "vpn-a", 0, operation), DOM_OK) << operation;
        EXPECT_EQ(this->CallNames(), (Calls{"DBM_RemoveSortList"}));
        EXPECT_EQ(this->StoredVpn("vpn-a"), "(none)");
        EXPECT_TRUE(this->IsSaved("profile")) << "the empty profile stays";
    }
}

// The store takes the deletion of a VPN that is not there for a success as well.
TYPED_TEST(SavedProfiles, DeletingAVpnAlwaysSucceeds) {
    this->Prepare();
    EXPECT_EQ(this->SaveVpn("profile", "other", 0, 0), DOM_OK);
    EXPECT_EQ(this->SaveVpn("nobody", "vpn-a", 0, 0), DOM_OK);
    fake::FailAllDbmCalls(true);
    EXPECT_EQ(this->SaveVpn("profile", "vpn-a", 0, 0), DOM_OK);
}

// --- default segments

TYPED_TEST(SavedProfiles, DefaultSegmentIsABinaryWithoutAVpnName) {
    EXPECT_EQ(this->SaveSegment("profile"), DOM_OK);
    EXPECT_EQ(this->CallNames(), (Calls{"DBM_SetBinary"}));
    const auto calls = fake::DbmCalls("DBM_SetBinary");
    EXPECT_EQ(calls[0].key, this->SegmentKey("profile"));
    EXPECT_EQ(calls[0].key_length, strlen(TypeParam::kSegmentPrefix) + 8);
    EXPECT_EQ(calls[0].index, 0) << "the one value with this index";
    EXPECT_EQ(calls[0].value_length, TypeParam::kSize);
    EXPECT_EQ(calls[0].value, this->Value(this->kId, "segment", ""));
    EXPECT_EQ(calls[0].value_type, TypeParam::kSegment);
}

TYPED_TEST(SavedProfiles, DefaultSegmentIsOverwritten) {
    this->Prepare();
    EXPECT_EQ(this->SaveSegment("profile", 99), DOM_OK);
    EXPECT_EQ(this->StoredSegment(), this->Value(99, "segment", ""));
}

TYPED_TEST(SavedProfiles, DeletingADefaultSegmentRemovesItsKey) {
    for (const uint16_t operation : {0, 2, 0xFFFF}) {
        this->Prepare();
        EXPECT_EQ(this->SaveSegment("profile", 0, operation), DOM_OK) << operation;
        EXPECT_EQ(this->CallNames(), (Calls{"DBM_DeleteKey"}));
        EXPECT_EQ(this->StoredSegment(), "(none)");
        EXPECT_EQ(this->StoredVpn("vpn-a"), this->Value(this->kId, "segment", "vpn-a"));
    }
}

TYPED_TEST(SavedProfiles, DeletingAMissingDefaultSegmentSucceeds) {
    EXPECT_EQ(this->SaveSegment("profile", 0, 0), DOM_OK);
}

// The requester hears of the segment that is in force, not of its copy on the disk.
TYPED_TEST(SavedProfiles, DefaultSegmentSucceedsAlsoWhenTheDatabaseFails) {
    this->Prepare();
    fake::FailAllDbmCalls(true);
    EXPECT_EQ(this->SaveSegment("profile", 99), DOM_OK);
    EXPECT_EQ(this->SaveSegment("profile", 0, 0), DOM_OK);
    fake::FailAllDbmCalls(false);
    EXPECT_EQ(this->StoredSegment(), this->Value(this->kId, "segment", ""));
}

// --- all of them

TYPED_TEST(SavedProfiles, KeysAreFoundByTheirExactBytes) {
    this->Prepare();
    EXPECT_EQ(this->SaveVpn("PROFILE", "vpn-a"), DOM_ERR_FAILED);
    EXPECT_EQ(this->SaveProfile("PROFILE", 0), DOM_ERR_FAILED);
    EXPECT_FALSE(this->IsSaved("PROFILE"));
    EXPECT_TRUE(this->IsSaved("profile"));
}

TYPED_TEST(SavedProfiles, TextsThatFillTheirFieldsAreReadWithinThem) {
    DomDbUpdateReq request = this->Request(TypeParam::kProfile);
    TypeParam::FillToTheBrim(request);
    memset(request.entry_name, 'v', 32);
    EXPECT_EQ(DOM_SetDataToDB(&request), DOM_OK);
    EXPECT_TRUE(this->IsSaved(std::string(31, 'p').c_str()));
    request.object_type = TypeParam::kEntry;
    EXPECT_EQ(DOM_SetDataToDB(&request), DOM_OK);
    EXPECT_EQ(fake::DbmCalls("DBM_InsertSortList")[0].value,
              this->Value(0, std::string(31, 's'), std::string(31, 'v')));
    request.object_type = TypeParam::kSegment;
    EXPECT_EQ(DOM_SetDataToDB(&request), DOM_OK);
    EXPECT_EQ(fake::DbmCalls("DBM_SetBinary")[0].value, this->Value(0, std::string(31, 's'), ""));
}

TYPED_TEST(SavedProfiles, ProfileFailsWhenTheDatabaseDoes) {
    this->Prepare();
    fake::FailAllDbmCalls(true);
    EXPECT_EQ(this->SaveProfile("other"), DOM_ERR_FAILED);
    EXPECT_EQ(this->SaveProfile("profile", 0), DOM_ERR_FAILED);
    EXPECT_EQ(this->SaveVpn("profile", "vpn-a"), DOM_ERR_FAILED);
}

// --- keys

TYPED_TEST(SavedProfiles, KeyIsPrefixAndNameWithTheTerminator) {
    char key[129];
    EXPECT_EQ(TypeParam::ListKey("abc", key), strlen(TypeParam::kListPrefix) + 4);
    EXPECT_EQ(key, TypeParam::kListPrefix + std::string("abc"));
    EXPECT_EQ(TypeParam::SegmentKey("abc", key), strlen(TypeParam::kSegmentPrefix) + 4);
    EXPECT_EQ(key, TypeParam::kSegmentPrefix + std::string("abc"));
    EXPECT_EQ(TypeParam::ListKey("", key), strlen(TypeParam::kListPrefix) + 1);
    EXPECT_EQ(TypeParam::SegmentKey(nullptr, key), strlen(TypeParam::kSegmentPrefix) + 1);
}

TYPED_TEST(SavedProfiles, KeyIsCutTo128Characters) {
    char key[129 + 1];
    key[129] = '#';
    for (const size_t length : {128u, 5000u}) {
        const std::string name(length, 'n');
        EXPECT_EQ(TypeParam::ListKey(name.c_str(), key), 129u);
        EXPECT_EQ(key, (TypeParam::kListPrefix + name).substr(0, 128));
        EXPECT_EQ(TypeParam::SegmentKey(name.c_str(), key), 129u);
        EXPECT_EQ(key, (TypeParam::kSegmentPrefix + name).substr(0, 128));
        EXPECT_EQ(key[129], '#');
    }
    EXPECT_EQ(TypeParam::ListKey("abc", nullptr), 0u);
    EXPECT_EQ(TypeParam::SegmentKey("abc", nullptr), 0u);
}

TEST(AuthorProfileKey, IsCutToTheCallersSize) {
    char key[40];
    memset(key, '#', sizeof key);
    EXPECT_EQ(DOM_GetDBkeyFromAuthorProfileName("abc", 21, key), 21u);
    EXPECT_STREQ(key, "authorprofilename_ab");
    EXPECT_EQ(key[21], '#');
    EXPECT_EQ(DOM_GetDBkeyFromAuthorProfileName("abc", 10, key), 10u);
    EXPECT_STREQ(key, "authorpro");
    EXPECT_EQ(DOM_GetDBkeyFromAuthorProfileName("abc", 1, key), 1u);
    EXPECT_STREQ(key, "");
    key[0] = '#';
    EXPECT_EQ(DOM_GetDBkeyFromAuthorProfileName("abc", 0, key), 0u);
    EXPECT_EQ(key[0], '#');
}

// --- walks

/// A list that its owner frees.
struct NameList {
    ~NameList() {
        while (list.head != nullptr) {
            DomProfileNameNode* next = list.head->next;
            free(list.head);
            list.head = next;
        }
    }
    Names All() const {
        Names names;
        for (const DomProfileNameNode* node = list.head; node != nullptr; node = node->next)
            names.push_back(node->name);
        return names;
    }
    DomProfileNameList list{};
};

TYPED_TEST(SavedProfiles, NoProfileIsNotFound) {
    NameList names;
    EXPECT_EQ(TypeParam::All(this->handle_, &names.list), 0x40010005u);
    ASSERT_EQ(this->SaveSegment("orphan"), DOM_OK);
    EXPECT_EQ(TypeParam::All(this->handle_, &names.list), 0x40010005u);
}

TYPED_TEST(SavedProfiles, AllNamesInTheOrderOfTheirKeysWithOrWithoutVpns) {
    this->Prepare();
    for (const char* name : {"zz", "Alpha"}) ASSERT_EQ(this->SaveProfile(name), DOM_OK);
    NameList names;
    EXPECT_EQ(TypeParam::All(this->handle_, &names.list), DOM_OK);
    EXPECT_EQ(names.All(), (Names{"Alpha", "profile", "zz"}));
    EXPECT_EQ(TypeParam::All(this->handle_, &names.list), DOM_OK);
    EXPECT_EQ(names.All().size(), 6u) << "appended";
}

// Start-up must not take some of the profiles for all of them, as it may with NAS-ID profiles.
TYPED_TEST(SavedProfiles, NoMemoryForANameFailsWithTheNamesSoFar) {
    for (const char* name : {"alpha", "beta", "gamma"}) ASSERT_EQ(this->SaveProfile(name), DOM_OK);
    for (int n = 1; n <= 4; ++n) {
        NameList names;
        fake::FailAllocation(n);
        EXPECT_EQ(TypeParam::All(this->handle_, &names.list), DOM_ERR_FAILED) << n;
        EXPECT_TRUE(fake::Tripped()) << n;
        EXPECT_EQ(names.All().size(), static_cast<size_t>(n < 2 ? 0 : n - 2));
        fake::DisarmFailures();
    }
}

TYPED_TEST(SavedProfiles, StrangeKeysAreReadWithinTheirBytes) {
    const uint32_t attributes[4] = {TypeParam::kVpnOffset, 32, 5, 0};
    for (const std::string& key :
         {TypeParam::kListPrefix + std::string(90, 'l') + '\0', std::string("short"),
          std::string("otherprefix_that_is_long_enough\0", 32)}) {
        ASSERT_EQ(DBM_CreateSortList(this->handle_, key.data(), static_cast<uint32_t>(key.size()),
                                     attributes, 1, TypeParam::kEntry),
                  0u);
    }
    NameList names;
    EXPECT_EQ(TypeParam::All(this->handle_, &names.list), DOM_OK);
    EXPECT_EQ(names.All(), (Names{std::string(31, 'l')}));
}

TYPED_TEST(SavedProfiles, NullListAndClosedDatabase) {
    this->Prepare();
    NameList names;
    EXPECT_EQ(TypeParam::All(this->handle_, nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(TypeParam::All(DBM_INVALID_HANDLE, &names.list), 0x40010005u);
    EXPECT_EQ(TypeParam::IsSaved(DBM_INVALID_HANDLE, "profile"), 0u);
}

}  // namespace
}  // namespace aaadom
