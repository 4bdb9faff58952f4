#include <aaadom/nas_id.h>
#include <aaadom/nas_id_codec.h>

#include "unit/codec/restore_fixture.h"

namespace aaadom {
namespace {

/// Works in the working role, the only one that has NAS-ID profiles.
class RestoreNasIdTest : public RestoreTest {
  protected:
    void SetUp() override {
        RestoreTest::SetUp();
        fake::role_of_this_thread = fake::kWorkingRole;
    }

    uint32_t SetProfile(const char* name, uint16_t save = 0) {
        return Set(DOM_EncodeNasIdProfile(name), save);
    }
    uint32_t Bind(const char* profile, const char* nas_id, uint16_t vlan, uint16_t save = 0) {
        return Set(DOM_EncodeNasidBindVlanId(profile, nas_id, vlan), save);
    }
    uint32_t Unbind(const char* profile, const char* nas_id, uint16_t vlan, uint16_t save = 0) {
        return Delete(DOM_EncodeNasidBindVlanId(profile, nas_id, vlan), save);
    }
    static std::string Bound(const char* profile, uint16_t vlan) {
        char nas_id[32] = "";
        const uint32_t result = DOM_GetNasIdByProfileAndVlanId(profile, vlan, nas_id);
        return result == DOM_OK ? nas_id : "(none)";
    }
    static bool HasProfile(const char* name) {
        // A binding to a missing profile is refused with 1, an unbound one with 2.
        return DOM_ProcNasIdBindVlanIdCfg("-", 4095, 0, name, nullptr) == 2;
    }
    /// The saved NAS-ID of a VLAN, empty when none is saved.
    std::string Saved(const char* profile, uint16_t vlan) {
        char key[129] = {};
        const uint32_t length = DOM_GetDBkeyFromProfileName(profile, key);
        char entry[34] = {};
        memcpy(entry, &vlan, sizeof vlan);
        return DBM_GetSortList(handle_, key, length, sizeof entry, entry) < 0 ? "" : entry + 2;
    }
};

TEST_F(RestoreNasIdTest, ProfileIsAddedAndSaved) {
    EXPECT_EQ(SetProfile("Profile", 1), DOM_OK);
    EXPECT_TRUE(HasProfile("profile"));
    EXPECT_EQ(DOM_IsExistProfileName(handle_, "Profile"), 1u);
    EXPECT_STREQ(name1_, "untouched") << "a profile is no object name";
    EXPECT_STREQ(name2_, "untouched");
}

TEST_F(RestoreNasIdTest, ProfileIsDeletedUnderItsStoredName) {
    ASSERT_EQ(SetProfile("Profile", 1), DOM_OK);
    EXPECT_EQ(Delete(DOM_EncodeNasIdProfile("PROFILE"), 1), DOM_OK);
    EXPECT_FALSE(HasProfile("Profile"));
    EXPECT_EQ(DOM_IsExistProfileName(handle_, "Profile"), 0u);
}

TEST_F(RestoreNasIdTest, RefusedProfileFailsAndSavesNothing) {
    ASSERT_EQ(SetProfile("Profile"), DOM_OK);
    EXPECT_EQ(SetProfile("profile", 1), DOM_ERR_FAILED);
    EXPECT_EQ(Delete(DOM_EncodeNasIdProfile("nobody"), 1), DOM_ERR_FAILED);
    EXPECT_EQ(Set(CodeAlone(DOM_MSG_NASID_PROFILE), 1), DOM_ERR_FAILED);
    EXPECT_TRUE(fake::DbmCalls().empty());
}

TEST_F(RestoreNasIdTest, BindingIsAddedReplacedAndSaved) {
    ASSERT_EQ(SetProfile("profile", 1), DOM_OK);
    EXPECT_EQ(Bind("profile", "nas-a", 100, 1), DOM_OK);
    EXPECT_EQ(Bound("profile", 100), "nas-a");
    EXPECT_EQ(Saved("profile", 100), "nas-a");
    EXPECT_EQ(Bind("profile", "nas-b", 100, 1), DOM_OK);
    EXPECT_EQ(Bound("profile", 100), "nas-b");
    EXPECT_EQ(Saved("profile", 100), "nas-b");
}

TEST_F(RestoreNasIdTest, BindingIsRemovedAndItsSavedFormToo) {
    ASSERT_EQ(SetProfile("profile", 1), DOM_OK);
    ASSERT_EQ(Bind("profile", "nas-a", 100, 1), DOM_OK);
    EXPECT_EQ(Unbind("profile", "nas-a", 100, 1), DOM_OK);
    EXPECT_EQ(Bound("profile", 100), "(none)");
    EXPECT_EQ(Saved("profile", 100), "");
}

// Keys of the database are found by their exact bytes; the table finds the profile in any case.
TEST_F(RestoreNasIdTest, BindingIsSavedUnderTheStoredNameOfItsProfile) {
    ASSERT_EQ(SetProfile("Profile", 1), DOM_OK);
    EXPECT_EQ(Bind("pROFILE", "nas-a", 100, 1), DOM_OK);
    EXPECT_EQ(Saved("Profile", 100), "nas-a");
    EXPECT_EQ(DOM_IsExistProfileName(handle_, "pROFILE"), 0u);
    EXPECT_EQ(Unbind("PROFILE", "nas-a", 100, 1), DOM_OK);
    EXPECT_EQ(Saved("Profile", 100), "");
}

TEST_F(RestoreNasIdTest, RefusedBindingFailsAndSavesNothing) {
    EXPECT_EQ(Bind("nobody", "nas-a", 100, 1), DOM_ERR_FAILED);
    EXPECT_FALSE(HasProfile("nobody")) << "looking for the stored name adds nothing";
    ASSERT_EQ(SetProfile("profile"), DOM_OK);
    ASSERT_EQ(Bind("profile", "nas-a", 100), DOM_OK);
    EXPECT_EQ(Bind("profile", "nas-a", 100, 1), DOM_ERR_FAILED);
    EXPECT_EQ(Unbind("profile", "other", 100, 1), DOM_ERR_FAILED);
    EXPECT_EQ(Unbind("profile", "nas-a", 101, 1), DOM_ERR_FAILED);
    EXPECT_EQ(Set(CodeAlone(DOM_MSG_NASID_BIND), 1), DOM_ERR_FAILED);
    EXPECT_TRUE(fake::DbmCalls().empty());
    EXPECT_EQ(Bound("profile", 100), "nas-a");
}

// What the message leaves out reads as an empty text and VLAN 0, never as an older message's.
TEST_F(RestoreNasIdTest, BindingThatLeavesFieldsOut) {
    ASSERT_EQ(SetProfile("profile", 1), DOM_OK);
    ASSERT_EQ(Bind("profile", "nas-a", 100, 1), DOM_OK);
    const auto message = [](auto&& fields) {
        return MessageBuilder(DOM_MSG_NASID_BIND).Build(fields);
    };
    const auto vlan_alone = [](Appender& append) { append.U16(DOM_TLV_VLAN_ID, 100); };
    EXPECT_EQ(Set(message(vlan_alone), 1), DOM_ERR_FAILED) << "no profile";
    EXPECT_EQ(Delete(message(vlan_alone), 1), DOM_ERR_FAILED) << "no profile";
    const auto no_nas_id = [](Appender& append) {
        append.Text(DOM_TLV_NASID_PROFILE, "profile").U16(DOM_TLV_VLAN_ID, 100);
    };
    EXPECT_EQ(Delete(message(no_nas_id), 1), DOM_ERR_FAILED) << "another NAS-ID";
    EXPECT_EQ(Bound("profile", 100), "nas-a");
    EXPECT_EQ(Saved("profile", 100), "nas-a");
    const auto no_vlan = [](Appender& append) {
        append.Text(DOM_TLV_NASID_PROFILE, "profile").Text(DOM_TLV_NASID, "nas-z");
    };
    EXPECT_EQ(Set(message(no_vlan), 1), DOM_OK);
    EXPECT_EQ(Bound("profile", 0), "nas-z");
    EXPECT_EQ(Saved("profile", 0), "nas-z");
}

// Both are cut to 31 characters when the message is read, so the same texts find them again.
TEST_F(RestoreNasIdTest, TextsOfAnyLengthAreCut) {
    const std::string profile(5000, 'p');
    const std::string nas_id(5000, 'n');
    const std::string cut = profile.substr(0, 31);
    EXPECT_EQ(SetProfile(profile.c_str(), 1), DOM_OK);
    EXPECT_EQ(SetProfile(profile.c_str(), 1), DOM_ERR_FAILED) << "exists";
    EXPECT_EQ(DOM_IsExistProfileName(handle_, cut.c_str()), 1u);
    EXPECT_EQ(Bind(profile.c_str(), nas_id.c_str(), 100, 1), DOM_OK);
    EXPECT_EQ(Bound(cut.c_str(), 100), nas_id.substr(0, 31));
    EXPECT_EQ(Saved(cut.c_str(), 100), nas_id.substr(0, 31));
    EXPECT_EQ(Unbind(profile.c_str(), nas_id.c_str(), 100, 1), DOM_OK);
    EXPECT_EQ(Delete(DOM_EncodeNasIdProfile(profile.c_str()), 1), DOM_OK);
    EXPECT_FALSE(HasProfile(cut.c_str()));
}

// The change stands in the working role and the requester hears that it was not saved.
TEST_F(RestoreNasIdTest, DatabaseFailureIsTheResult) {
    fake::FailAllDbmCalls(true);
    EXPECT_EQ(SetProfile("profile", 1), DOM_ERR_FAILED);
    EXPECT_TRUE(HasProfile("profile"));
    EXPECT_EQ(Bind("profile", "nas-a", 100, 1), DOM_ERR_FAILED);
    EXPECT_EQ(Bound("profile", 100), "nas-a");
}

TEST_F(RestoreNasIdTest, EveryOperationButZeroDeletes) {
    for (uint32_t op : {1u, 2u, 3u, 6u}) {
        ASSERT_EQ(SetProfile("profile"), DOM_OK);
        EXPECT_EQ(Restore(DOM_EncodeNasIdProfile("profile"), op, 0), DOM_OK);
        EXPECT_FALSE(HasProfile("profile")) << op;
    }
}

TEST_F(RestoreNasIdTest, ConfigurationThreadIsRefused) {
    ASSERT_EQ(SetProfile("profile"), DOM_OK);
    ASSERT_EQ(Bind("profile", "nas-a", 100), DOM_OK);
    fake::role_of_this_thread = fake::kConfigRole;
    // As a direct call the change is possible there, so the refusal is the applier's own.
    ASSERT_EQ(DOM_ProcNasIdProfileCfg("profile", 1, nullptr, nullptr), DOM_NASID_OK);
    EXPECT_EQ(SetProfile("other", 1), DOM_ERR_FAILED);
    EXPECT_FALSE(HasProfile("other"));
    EXPECT_EQ(Delete(DOM_EncodeNasIdProfile("profile"), 1), DOM_ERR_FAILED);
    EXPECT_TRUE(HasProfile("profile"));
    EXPECT_EQ(Bind("profile", "nas-b", 100, 1), DOM_ERR_FAILED);
    EXPECT_EQ(Bound("profile", 100), "(none)");
    EXPECT_TRUE(fake::DbmCalls().empty());
    EXPECT_STREQ(name1_, "untouched");
}

}  // namespace
}  // namespace aaadom
