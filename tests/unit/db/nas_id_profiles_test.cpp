#include <cstdlib>
#include <vector>

#include "unit/db/config_db_fixture.h"

namespace aaadom {
namespace {

class SavedNasIdTest : public ConfigDbTest {
  protected:
    static uint32_t SaveProfile(const char* name, uint16_t operation = 1) {
        DomDbUpdateReq request = Request(DOM_DB_NASID_PROFILE, "", operation);
        CopyText(request.nas_id_profile_name, name);
        return DOM_SetDataToDB(&request);
    }
    static uint32_t SaveBinding(const char* name, uint16_t vlan, const char* nas_id,
                                uint16_t operation = 1) {
        DomDbUpdateReq request = Request(DOM_DB_NASID_VLAN, "", operation);
        CopyText(request.nas_id_profile_name, name);
        CopyText(request.nas_id, nas_id);
        request.vlan_id = vlan;
        return DOM_SetDataToDB(&request);
    }
    /// A profile with one binding; the calls that made it are forgotten.
    static void Prepare() {
        ASSERT_EQ(SaveProfile("profile"), DOM_OK);
        ASSERT_EQ(SaveBinding("profile", 100, "nas-a"), DOM_OK);
        fake::ClearDbmCalls();
    }
    static std::string KeyOf(const std::string& name) { return "profilename_" + name + '\0'; }
    static std::string EntryOf(uint16_t vlan, const std::string& nas_id) {
        std::string entry(reinterpret_cast<const char*>(&vlan), sizeof vlan);
        entry += nas_id;
        entry.resize(34, '\0');
        return entry;
    }
    std::string Stored(uint16_t vlan) {
        std::string entry = EntryOf(vlan, "");
        const std::string key = KeyOf("profile");
        const int32_t length = DBM_GetSortList(handle_, key.data(),
                                               static_cast<uint32_t>(key.size()), 34, entry.data());
        return length == 34 ? entry.c_str() + 2 : "(none)";
    }
    static std::vector<std::string> CallNames() {
        std::vector<std::string> names;
        for (const fake::DbmCall& call : fake::DbmCalls()) names.push_back(call.call);
        return names;
    }
};
using Calls = std::vector<std::string>;

TEST_F(SavedNasIdTest, ProfileIsASortedListOfValueType5) {
    EXPECT_EQ(SaveProfile("profile"), DOM_OK);
    const auto calls = fake::DbmCalls("DBM_CreateSortList");
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].key, KeyOf("profile"));
    EXPECT_EQ(calls[0].key_length, 20u);
    EXPECT_EQ(calls[0].index, 1) << "count of attribute sets";
    EXPECT_EQ(calls[0].value_type, 5u);
    const uint32_t attributes[4] = {0, 2, 2, 0};
    EXPECT_EQ(calls[0].value,
              std::string(reinterpret_cast<const char*>(attributes), sizeof attributes));
}

TEST_F(SavedNasIdTest, SavingAnExistingProfileLeavesItAlone) {
    Prepare();
    EXPECT_EQ(SaveProfile("profile"), DOM_OK);
    EXPECT_EQ(CallNames(), (Calls{"DBM_IsKeyExist"}));
    EXPECT_EQ(Stored(100), "nas-a");
}

TEST_F(SavedNasIdTest, DeletingAProfileRemovesItsKey) {
    for (uint16_t operation : {0, 2, 0xFFFF}) {
        Prepare();
        EXPECT_EQ(SaveProfile("profile", operation), DOM_OK) << operation;
        EXPECT_EQ(CallNames(), (Calls{"DBM_IsKeyExist", "DBM_DeleteKey"}));
        EXPECT_EQ(DOM_IsExistProfileName(handle_, "profile"), 0u);
    }
}

TEST_F(SavedNasIdTest, DeletingAMissingProfileFails) {
    EXPECT_EQ(SaveProfile("profile", 0), DOM_ERR_FAILED);
    EXPECT_TRUE(fake::DbmCalls("DBM_DeleteKey").empty());
}

TEST_F(SavedNasIdTest, DatabaseFailureOfAProfileFails) {
    Prepare();
    fake::FailDbmCall(2);
    EXPECT_EQ(SaveProfile("profile", 0), DOM_ERR_FAILED);
    fake::FailAllDbmCalls(true);
    EXPECT_EQ(SaveProfile("other"), DOM_ERR_FAILED);
}

TEST_F(SavedNasIdTest, BindingIsAnEntryOf34Bytes) {
    ASSERT_EQ(SaveProfile("profile"), DOM_OK);
    fake::ClearDbmCalls();
    EXPECT_EQ(SaveBinding("profile", 0x0102, "nas-a"), DOM_OK);
    EXPECT_EQ(CallNames(), (Calls{"DBM_GetSortList", "DBM_InsertSortList"}));
    const auto calls = fake::DbmCalls("DBM_InsertSortList");
    EXPECT_EQ(calls[0].key, KeyOf("profile"));
    EXPECT_EQ(calls[0].value_length, 34u);
    EXPECT_EQ(calls[0].value, EntryOf(0x0102, "nas-a"));
    EXPECT_EQ(calls[0].value_type, 5u);
}

TEST_F(SavedNasIdTest, SameBindingAgainWritesNothing) {
    Prepare();
    EXPECT_EQ(SaveBinding("profile", 100, "nas-a"), DOM_OK);
    EXPECT_EQ(CallNames(), (Calls{"DBM_GetSortList"}));
}

TEST_F(SavedNasIdTest, AnotherNasIdReplacesTheEntryInOneTransaction) {
    Prepare();
    EXPECT_EQ(SaveBinding("profile", 100, "nas-b"), DOM_OK);
    EXPECT_EQ(CallNames(), (Calls{"DBM_GetSortList", "DBM_Begin", "DBM_RemoveSortList",
                                  "DBM_InsertSortList", "DBM_Commit"}));
    EXPECT_EQ(Stored(100), "nas-b");
}

TEST_F(SavedNasIdTest, NasIdsThatDifferInCaseAreDifferent) {
    Prepare();
    EXPECT_EQ(SaveBinding("profile", 100, "NAS-A"), DOM_OK);
    EXPECT_EQ(Stored(100), "NAS-A");
}

TEST_F(SavedNasIdTest, ReplacementThatFailsKeepsTheOldEntry) {
    Prepare();
    // Calls: the look-up, begin, remove, insert, commit.
    for (int n = 2; n <= 5; ++n) {
        fake::FailDbmCall(n);
        EXPECT_EQ(SaveBinding("profile", 100, "nas-b"), DOM_ERR_FAILED) << n;
        EXPECT_TRUE(fake::Tripped()) << n;
        fake::DisarmFailures();
        EXPECT_EQ(Stored(100), "nas-a") << n;
        EXPECT_EQ(DBM_Commit(handle_), DOM_ERR_FAILED) << n << ": the transaction is over";
    }
}

TEST_F(SavedNasIdTest, ReplacementJoinsTheTransactionOfItsCaller) {
    Prepare();
    ASSERT_EQ(DBM_Begin(handle_), 0u);
    EXPECT_EQ(SaveBinding("profile", 100, "nas-b"), DOM_OK);
    EXPECT_EQ(Stored(100), "nas-b");
    ASSERT_EQ(DBM_Abort(handle_), 0u);
    EXPECT_EQ(Stored(100), "nas-a");
}

TEST_F(SavedNasIdTest, DeletingABindingRemovesItsEntryWhateverTheNasId) {
    for (uint16_t operation : {0, 2, 0xFFFF}) {
        Prepare();
        EXPECT_EQ(SaveBinding("profile", 100, "other", operation), DOM_OK) << operation;
        EXPECT_EQ(CallNames(), (Calls{"DBM_GetSortList", "DBM_RemoveSortList"}));
        EXPECT_EQ(Stored(100), "(none)");
        EXPECT_EQ(DOM_IsExistProfileName(handle_, "profile"), 1u) << "the empty profile stays";
    }
}

TEST_F(SavedNasIdTest, DeletingAMissingBindingFails) {
    Prepare();
    EXPECT_EQ(SaveBinding("profile", 101, "nas-a", 0), DOM_ERR_FAILED);
    EXPECT_EQ(SaveBinding("nobody", 100, "nas-a", 0), DOM_ERR_FAILED);
    EXPECT_EQ(Stored(100), "nas-a");
}

TEST_F(SavedNasIdTest, FailedRemovalIsTheResultOfTheDelete) {
    Prepare();
    fake::FailDbmCall(2);
    EXPECT_EQ(SaveBinding("profile", 100, "nas-a", 0), DOM_ERR_FAILED);
}

TEST_F(SavedNasIdTest, BindingOfAProfileThatIsNotSavedFails) {
    EXPECT_EQ(SaveBinding("nobody", 100, "nas-a"), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_IsExistProfileName(handle_, "nobody"), 0u);
}

TEST_F(SavedNasIdTest, KeysAreFoundByTheirExactBytes) {
    Prepare();
    EXPECT_EQ(SaveBinding("PROFILE", 100, "nas-b"), DOM_ERR_FAILED);
    EXPECT_EQ(SaveProfile("PROFILE", 0), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_IsExistProfileName(handle_, "PROFILE"), 0u);
    EXPECT_EQ(DOM_IsExistProfileName(handle_, "profile"), 1u);
}

TEST_F(SavedNasIdTest, TextsThatFillTheirFieldsAreReadWithinThem) {
    DomDbUpdateReq request = Request(DOM_DB_NASID_PROFILE);
    memset(request.nas_id_profile_name, 'p', sizeof request.nas_id_profile_name);
    memset(request.nas_id, 'n', sizeof request.nas_id);
    EXPECT_EQ(DOM_SetDataToDB(&request), DOM_OK);
    EXPECT_EQ(DOM_IsExistProfileName(handle_, std::string(31, 'p').c_str()), 1u);
    request.object_type = DOM_DB_NASID_VLAN;
    EXPECT_EQ(DOM_SetDataToDB(&request), DOM_OK);
    EXPECT_EQ(fake::DbmCalls("DBM_InsertSortList")[0].value, EntryOf(0, std::string(31, 'n')));
}

TEST_F(SavedNasIdTest, EverythingFailsWhenTheDatabaseDoes) {
    Prepare();
    fake::FailAllDbmCalls(true);
    EXPECT_EQ(SaveProfile("profile"), DOM_ERR_FAILED);
    EXPECT_EQ(SaveProfile("profile", 0), DOM_ERR_FAILED);
    EXPECT_EQ(SaveBinding("profile", 100, "nas-b"), DOM_ERR_FAILED);
    EXPECT_EQ(SaveBinding("profile", 100, "nas-a", 0), DOM_ERR_FAILED);
}

}  // namespace
}  // namespace aaadom
