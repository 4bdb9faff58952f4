// The checker is able to fail: each lie about a sound daemon, and each damage behind its back, is
// found.
#include "verdict.h"

#include <aaadom/db_layout.h>

#include <filesystem>

#include "daemon/record_list_keys.h"
#include "domain_facts.h"
#include "golden/sample_policy.h"
#include "integration/record_reports.h"
#include "integration/stopped_database.h"

using namespace daemon_test;
using crash::Expectation;
using crash::Facts;
using crash::Judge;
using crash::Outcome;
using crash::Snapshot;

namespace {

bool Mentions(const std::vector<std::string>& lines, const std::string& text) {
    for (const std::string& line : lines)
        if (line.find(text) != std::string::npos) return true;
    return false;
}

// Without a daemon: what the judge makes of facts.
class Verdict : public ::testing::Test {
  protected:
    Verdict() {
        expected_.owner = "c1";
        expected_.known = {{"c1/domain/c1-a", ""}, {"c1/domain/c1-a/time", "5"}};
        snapshot_.database = expected_.known;
        snapshot_.database["?/domain/system"] = "";
        snapshot_.configuration = snapshot_.working = snapshot_.database;
    }
    std::vector<std::string> JudgeIt() { return Judge(snapshot_, {&expected_}, &outcomes_); }
    void Everywhere(const std::string& key, const std::string& value) {
        for (Facts* facts : {&snapshot_.configuration, &snapshot_.working, &snapshot_.database}) {
            (*facts)[key] = value;
        }
    }
    void InFlight(const Facts& changes) {
        expected_.after = expected_.known;
        for (const auto& [key, value] : changes) (*expected_.after)[key] = value;
        expected_.in_flight = "the change";
    }

    Expectation expected_;
    Snapshot snapshot_;
    std::vector<Outcome> outcomes_;
};

TEST_F(Verdict, EqualFactsAreRight) {
    EXPECT_TRUE(JudgeIt().empty());
    EXPECT_EQ(outcomes_, std::vector{Outcome::kNothingInFlight});
}

TEST_F(Verdict, AnsweredChangeThatIsMissingIsWrong) {
    expected_.known["c1/domain/c1-a/time"] = "6";
    EXPECT_TRUE(Mentions(JudgeIt(), "c1/domain/c1-a/time: answered \"6\", found \"5\""));
}

TEST_F(Verdict, AnsweredObjectThatIsMissingIsWrong) {
    expected_.known["c1/nas/c1-n0"] = "";
    EXPECT_TRUE(Mentions(JudgeIt(), "c1/nas/c1-n0: answered \"\", found nothing"));
}

TEST_F(Verdict, DeletedObjectThatCameBackIsWrong) {
    Everywhere("c1/domain/c1-b", "");
    EXPECT_TRUE(Mentions(JudgeIt(), "c1/domain/c1-b: answered nothing, found \"\""));
}

TEST_F(Verdict, ChangeInFlightMayBeDone) {
    InFlight({{"c1/domain/c1-a/time", "6"}});
    Everywhere("c1/domain/c1-a/time", "6");
    EXPECT_TRUE(JudgeIt().empty());
    EXPECT_EQ(outcomes_, std::vector{Outcome::kDone});
    EXPECT_EQ(expected_.known.at("c1/domain/c1-a/time"), "6");
    EXPECT_FALSE(expected_.after.has_value());
}

TEST_F(Verdict, ChangeInFlightMayBeNotDone) {
    InFlight({{"c1/domain/c1-a/time", "6"}});
    EXPECT_TRUE(JudgeIt().empty());
    EXPECT_EQ(outcomes_, std::vector{Outcome::kUndone});
    EXPECT_EQ(expected_.known.at("c1/domain/c1-a/time"), "5");
}

TEST_F(Verdict, HalfOfAChangeInFlightIsWrong) {
    InFlight({{"c1/domain/c1-b", ""}, {"c1/domain/c1-b/time", "0"}});
    Everywhere("c1/domain/c1-b", "");
    EXPECT_TRUE(Mentions(JudgeIt(), "c1 had in flight: the change"));
}

TEST_F(Verdict, SomethingElseThanTheChangeInFlightIsWrong) {
    InFlight({{"c1/domain/c1-a/time", "6"}});
    Everywhere("c1/domain/c1-a/time", "7");
    EXPECT_FALSE(JudgeIt().empty());
}

TEST_F(Verdict, RoleThatDiffersFromTheDatabaseIsWrong) {
    snapshot_.working["c1/domain/c1-a/time"] = "6";
    EXPECT_TRUE(Mentions(JudgeIt(), "working role \"6\", database \"5\""));
    snapshot_.working = snapshot_.database;
    snapshot_.configuration.erase("c1/domain/c1-a");
    EXPECT_TRUE(Mentions(JudgeIt(), "configuration role nothing, database \"\""));
}

TEST_F(Verdict, SlotThatDiffersIsWrongThoughNoClientKnowsIt) {
    Everywhere("c1/domain/c1-a/~slot", "3");
    EXPECT_TRUE(JudgeIt().empty());
    snapshot_.configuration["c1/domain/c1-a/~slot"] = "4";
    EXPECT_TRUE(Mentions(JudgeIt(), "~slot"));
}

TEST_F(Verdict, ObjectThatNobodyMadeIsWrong) {
    Everywhere("c7/domain/c7-x", "");
    EXPECT_TRUE(Mentions(JudgeIt(), "c7/domain/c7-x: nobody made it"));
}

TEST_F(Verdict, MissingSystemDomainIsWrong) {
    snapshot_.database.erase("?/domain/system");
    EXPECT_TRUE(Mentions(JudgeIt(), "\"system\" is missing"));
}

// With a daemon: damage behind its back shows in the snapshot.
class VerdictOnDaemon : public DaemonTest {
  protected:
    void SetUp() override {
        DaemonTest::SetUp();
        KeepAllRecords();
        ASSERT_EQ(CreateDomain("c0-a"), DOM_OK);
        ASSERT_EQ(CreateDomain("c0-b"), DOM_OK);
        ASSERT_EQ(Change(DOM_EncodeSessionLimit(SESSION_CLASS_21, 9)), DOM_OK);
        ASSERT_EQ(Change(DOM_author_tlv_EncodeAuthorProfile("c0-p")), DOM_OK);
        AuthorProfileMsg vpn{};
        snprintf(vpn.profile_name, sizeof vpn.profile_name, "c0-p");
        snprintf(vpn.vpn_name, sizeof vpn.vpn_name, "vpn");
        vpn.segment_id = 7;
        ASSERT_EQ(Change(DOM_author_tlv_EncodeAuthorVpn(&vpn)), DOM_OK);
        ASSERT_EQ(Change(DOM_EncodeNasIdProfile("c0-n")), DOM_OK);
        ASSERT_EQ(Change(DOM_EncodeNasidBindVlanId("c0-n", "nas", 1)), DOM_OK);
        ASSERT_EQ(Change(DOM_ita_tlv_EncodePolicyName("c0-i"), 1), DOM_OK);
        RecPolicy recording{};
        recording.acct_scheme[0].method_kind = METHOD_DEFAULT_4;
        ASSERT_EQ(Change(DOM_Rec_tlv_EncodePolicy(&recording)), DOM_OK);
        ASSERT_EQ(SendRecord(DOM_RECORD_ONLINE_FAIL, SampleRecord("user")).result, DOM_OK);
        expected_.owner = "c0";
        expected_.known = crash::Known(crash::ReadDatabase(daemon_), "c0");
        ASSERT_GT(expected_.known.size(), 20u);
        ASSERT_EQ(JudgeIt(), std::vector<std::string>());
    }
    std::vector<std::string> JudgeIt() { return Judge(crash::TakeSnapshot(daemon_), {&expected_}); }
    static std::string KeyOf(const char* prefix, const std::string& name) {
        return (prefix + name).append(1, '\0');
    }
    void DeleteKey(const std::string& key) {
        const StoppedDatabase database(daemon_);
        ASSERT_EQ(DBM_DeleteKey(database.Handle(), key.data(), static_cast<uint32_t>(key.size())),
                  0u);
    }
    std::string Element(uint32_t index) {
        const StoppedDatabase database(daemon_);
        std::string bytes(65536, '\0');
        const int32_t length =
            DBM_GetArray(database.Handle(), DOM_DB_KEY_DOMAINS, DOM_DB_KEY_DOMAINS_LEN, index,
                         static_cast<uint32_t>(bytes.size()), bytes.data());
        bytes.resize(length > 0 ? static_cast<size_t>(length) : 0);
        return bytes;
    }
    void PutElement(uint32_t index, const std::string& bytes) {
        const StoppedDatabase database(daemon_);
        EXPECT_NE(DBM_SetArray(database.Handle(), DOM_DB_KEY_DOMAINS, DOM_DB_KEY_DOMAINS_LEN, index,
                               static_cast<uint32_t>(bytes.size()), bytes.data(), DOM_DB_DOMAIN),
                  -1);
    }

    Expectation expected_;
};

TEST_F(VerdictOnDaemon, SavedDomainInAnotherPlaceIsFound) {
    const std::string bytes = Element(1);
    ASSERT_FALSE(bytes.empty());
    PutElement(9, bytes);
    EXPECT_TRUE(Mentions(JudgeIt(), "/misplaced"));
}

TEST_F(VerdictOnDaemon, SavedDomainThatIsNoneIsFound) {
    PutElement(1, "no domain");
    EXPECT_TRUE(Mentions(JudgeIt(), "element1: nobody made it"));
}

TEST_F(VerdictOnDaemon, LostProfileIsFound) {
    DeleteKey(KeyOf(DOM_DB_PREFIX_AUTHOR_PROFILE, "c0-p"));
    EXPECT_TRUE(Mentions(JudgeIt(), "c0/author/c0-p/vpn"));
}

TEST_F(VerdictOnDaemon, LostNasIdBindingIsFound) {
    DeleteKey(KeyOf(DOM_DB_PREFIX_NASID_PROFILE, "c0-n"));
    EXPECT_TRUE(Mentions(JudgeIt(), "c0/nas/c0-n/1: answered"));
}

TEST_F(VerdictOnDaemon, LostPolicyIsFound) {
    DeleteKey(KeyOf(DOM_DB_PREFIX_ITA_POLICY, "c0-i"));
    EXPECT_TRUE(Mentions(JudgeIt(), "c0/policy/c0-i"));
}

TEST_F(VerdictOnDaemon, RecordingPolicyThatDiffersFromTheSavedOneIsFound) {
    const std::string key = KeyOf("", "connection-recording-policy");
    DeleteKey(key);
    EXPECT_TRUE(Mentions(JudgeIt(), "c0/recording/c0-device"));
}

TEST_F(VerdictOnDaemon, FormerPolicyThatWasLeftOverIsFound) {
    {
        const StoppedDatabase database(daemon_);
        ASSERT_TRUE(golden::PutOldBlock(database.Handle(), "c0-i",
                                        golden::OldBlock(golden::SamplePolicy("c0-i"))));
    }
    EXPECT_TRUE(Mentions(JudgeIt(), "c0/former-policy/c0-i"));
}

TEST_F(VerdictOnDaemon, LostRecordIsFound) {
    DBM_HANDLE handle = DBM_INVALID_HANDLE;
    ASSERT_EQ(DBM_Open(DOM_RUN_DB_DATABASE, DOM_RUN_DB_TABLE, DBM_MODE_OPEN, nullptr, &handle), 0u);
    const aaad::RecordListKey* list = aaad::FindRecordListKey(DOM_RECORD_ONLINE_FAIL);
    EXPECT_EQ(DBM_ClearAvlList(handle, list->text, list->length), 0u);
    DBM_Close(handle);
    EXPECT_TRUE(Mentions(JudgeIt(), "c0/record/c0-list1/1: answered"));
}

// A database that goes back in time is what a commit without a sync leaves.
TEST_F(VerdictOnDaemon, DatabaseThatLostTheLastChangesIsFound) {
    namespace fs = std::filesystem;
    daemon_.Kill();
    const std::string state = daemon_.StateDir() + "/DOM_DB";
    fs::copy(state, daemon_.StateDir() + "/earlier", fs::copy_options::recursive);
    ASSERT_TRUE(daemon_.Start());
    ASSERT_EQ(Change(DOM_EncodeSessionTime("c0-a", 77)), DOM_OK);
    expected_.known["c0/domain/c0-a/time"] = "77";
    ASSERT_EQ(JudgeIt(), std::vector<std::string>());
    daemon_.Kill();
    fs::remove_all(state);
    fs::rename(daemon_.StateDir() + "/earlier", state);
    ASSERT_TRUE(daemon_.Start());
    EXPECT_TRUE(Mentions(JudgeIt(), "c0/domain/c0-a/time: answered \"77\""));
}

}  // namespace
