#include <cstdlib>
#include <vector>

#include "unit/db/config_db_fixture.h"

namespace aaadom {
namespace {

// --- keys
// ---------------------------------------------------------------------------------------

TEST(ProfileKey, IsPrefixAndNameWithTheTerminator) {
    char key[129];
    EXPECT_EQ(DOM_GetDBkeyFromProfileName("abc", key), 16u);
    EXPECT_STREQ(key, "profilename_abc");
    EXPECT_EQ(DOM_GetDBkeyFromProfileName("", key), 13u);
    EXPECT_STREQ(key, "profilename_");
}

TEST(ProfileKey, IsCutTo128Characters) {
    char key[129 + 1];
    key[129] = '#';
    EXPECT_EQ(DOM_GetDBkeyFromProfileName(std::string(116, 'n').c_str(), key), 129u);
    EXPECT_EQ(std::string(key), "profilename_" + std::string(116, 'n'));
    EXPECT_EQ(DOM_GetDBkeyFromProfileName(std::string(117, 'n').c_str(), key), 129u);
    EXPECT_EQ(std::string(key), "profilename_" + std::string(116, 'n'));
    EXPECT_EQ(DOM_GetDBkeyFromProfileName(std::string(5000, 'n').c_str(), key), 129u);
    EXPECT_EQ(key[129], '#');
}

TEST(ProfileKey, NullTexts) {
    char key[129];
    EXPECT_EQ(DOM_GetDBkeyFromProfileName(nullptr, key), 13u);
    EXPECT_EQ(DOM_GetDBkeyFromProfileName("abc", nullptr), 0u);
}

// --- walks
// --------------------------------------------------------------------------------------

/// A list that its owner frees.
struct NameList {
    ~NameList() {
        while (list.head != nullptr) {
            DomProfileNameNode* next = list.head->next;
            free(list.head);
            list.head = next;
        }
    }
    std::vector<std::string> Names() const {
        std::vector<std::string> names;
        const DomProfileNameNode* last = nullptr;
        for (const DomProfileNameNode* node = list.head; node != nullptr; node = node->next) {
            names.push_back(node->name);
            last = node;
        }
        EXPECT_EQ(list.tail, last);
        return names;
    }
    DomProfileNameList list{};
};
using Names = std::vector<std::string>;

class ProfileNames : public ConfigDbTest {
  protected:
    static void SaveProfile(const std::string& name) {
        DomDbUpdateReq request = Request(DOM_DB_NASID_PROFILE);
        CopyText(request.nas_id_profile_name, name.c_str());
        ASSERT_EQ(DOM_SetDataToDB(&request), DOM_OK);
    }
    void PutList(const std::string& key) {
        const uint32_t attributes[4] = {0, 2, 2, 0};
        ASSERT_EQ(DBM_CreateSortList(handle_, key.data(), static_cast<uint32_t>(key.size()),
                                     attributes, 1, 5),
                  0u);
    }
};

TEST_F(ProfileNames, NoProfileIsNotFound) {
    NameList names;
    EXPECT_EQ(DOM_GetAllNasIdProfileMode(handle_, &names.list), 0x40010005u);
    EXPECT_EQ(names.list.head, nullptr);
}

TEST_F(ProfileNames, AllNamesInTheOrderOfTheirKeys) {
    SaveProfile("beta");
    SaveProfile("alpha");
    SaveProfile(std::string(31, 'z'));
    NameList names;
    EXPECT_EQ(DOM_GetAllNasIdProfileMode(handle_, &names.list), DOM_OK);
    EXPECT_EQ(names.Names(), (Names{"alpha", "beta", std::string(31, 'z')}));
}

TEST_F(ProfileNames, ListIsAppendedTo) {
    SaveProfile("alpha");
    NameList names;
    EXPECT_EQ(DOM_GetAllNasIdProfileMode(handle_, &names.list), DOM_OK);
    EXPECT_EQ(DOM_GetAllNasIdProfileMode(handle_, &names.list), DOM_OK);
    EXPECT_EQ(names.Names(), (Names{"alpha", "alpha"}));
}

TEST_F(ProfileNames, NodesBeginZeroed) {
    SaveProfile("alpha");
    NameList names;
    ASSERT_EQ(DOM_GetAllNasIdProfileMode(handle_, &names.list), DOM_OK);
    for (size_t i = 5; i < sizeof names.list.head->name; ++i)
        EXPECT_EQ(names.list.head->name[i], 0) << i;
}

TEST_F(ProfileNames, OtherValueTypesAreNotWalked) {
    ASSERT_EQ(DOM_SetDataToDB(nullptr), DOM_ERR_FAILED);
    ASSERT_EQ(Save(DOM_DB_DEVICE_ID), DOM_OK);
    NameList names;
    EXPECT_EQ(DOM_GetAllNasIdProfileMode(handle_, &names.list), 0x40010005u);
}

// Whatever a foreign writer stored, only the bytes of the key are read.
TEST_F(ProfileNames, StrangeKeysAreReadWithinTheirBytes) {
    PutList("profilename_" + std::string(90, 'l') + '\0');
    PutList("profilename_unterminated");
    PutList("short");
    PutList(std::string("otherprefix_name\0", 17));
    NameList names;
    EXPECT_EQ(DOM_GetAllNasIdProfileMode(handle_, &names.list), DOM_OK);
    EXPECT_EQ(names.Names(), (Names{std::string(31, 'l'), "unterminated"}));
}

TEST_F(ProfileNames, NoMemoryForTheKeysFails) {
    SaveProfile("alpha");
    NameList names;
    fake::FailAllocation(1);
    EXPECT_EQ(DOM_GetAllNasIdProfileMode(handle_, &names.list), DOM_ERR_FAILED);
    EXPECT_EQ(names.list.head, nullptr);
}

// Start-up goes on with the profiles it got; a failure would make it go on with none.
TEST_F(ProfileNames, NoMemoryForANameIsASuccessWithTheNamesSoFar) {
    for (const char* name : {"alpha", "beta", "gamma"}) SaveProfile(name);
    for (int n = 2; n <= 4; ++n) {
        NameList names;
        fake::FailAllocation(n);
        EXPECT_EQ(DOM_GetAllNasIdProfileMode(handle_, &names.list), DOM_OK) << n;
        EXPECT_TRUE(fake::Tripped()) << n;
        EXPECT_EQ(names.Names().size(), static_cast<size_t>(n - 2));
        fake::DisarmFailures();
    }
}

TEST_F(ProfileNames, ClosedDatabaseHasNoNames) {
    SaveProfile("alpha");
    NameList names;
    EXPECT_EQ(DOM_GetAllNasIdProfileMode(DBM_INVALID_HANDLE, &names.list), 0x40010005u);
    EXPECT_EQ(DOM_IsExistProfileName(DBM_INVALID_HANDLE, "alpha"), 0u);
}

// The count was right when it was asked for; another process deleted the keys since.
TEST_F(ProfileNames, KeysThatAreGoneByThenAppendNothing) {
    SaveProfile("alpha");
    NameList names;
    fake::FailDbmCall(2);
    EXPECT_EQ(DOM_GetAllNasIdProfileMode(handle_, &names.list), DOM_OK);
    EXPECT_TRUE(fake::Tripped());
    EXPECT_EQ(names.list.head, nullptr);
}

TEST_F(ProfileNames, NullListFails) {
    SaveProfile("alpha");
    EXPECT_EQ(DOM_GetAllNasIdProfileMode(handle_, nullptr), DOM_ERR_FAILED);
}

}  // namespace
}  // namespace aaadom
