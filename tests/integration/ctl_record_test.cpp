// aaactl record on lists of more records than a page holds.
#include <algorithm>

#include "integration/ctl_process.h"
#include "integration/record_query_client.h"
#include "integration/record_reports.h"
#include "integration/stopped_database.h"

using namespace daemon_test;

namespace {

constexpr uint64_t kMany = 1203;

size_t Lines(const std::string& text) {
    return static_cast<size_t>(std::count(text.begin(), text.end(), '\n'));
}

class CtlRecords : public DaemonTest {
  protected:
    void SetUp() override {
        DaemonTest::SetUp();
        if (HasFatalFailure()) return;
        KeepAllRecords();
        ASSERT_EQ(daemon_.Terminate(), 0);
        FillRecords(daemon_, DOM_RECORD_NORMAL_OFFLINE, 1, kMany,
                    [](UserRecord& record) { record.first_number = 1772360400; });
        ASSERT_TRUE(daemon_.Start());
    }
    std::string Answer(const std::string& arguments) {
        const CtlAnswer answer = RunCtl(daemon_, arguments);
        EXPECT_EQ(answer.status, 0) << answer.text;
        return answer.text;
    }
};

TEST_F(CtlRecords, ListShowsFiftyUnlessTold) {
    const std::string text = Answer("record list");
    EXPECT_EQ(Lines(text), 1 + 50 + 1u);  // titles, records, how to go on
    EXPECT_NE(text.find("--continue normal:1154"), std::string::npos) << text;
}

TEST_F(CtlRecords, LimitGoesBeyondOnePage) {
    const std::string text = Answer("record list --limit 1000");
    EXPECT_EQ(Lines(text), 1 + 1000 + 1u);
}

TEST_F(CtlRecords, AllShowsEachRecordOnce) {
    const std::string text = Answer("record list --all");
    EXPECT_EQ(Lines(text), 1 + kMany);
    EXPECT_EQ(text.find("--continue"), std::string::npos);
}

TEST_F(CtlRecords, ContinueGoesOnBehindTheFormerAnswer) {
    const std::string text = Answer("record list --continue normal:3");
    EXPECT_EQ(Lines(text), 1 + 2u);
    EXPECT_NE(text.find("normal 2 "), std::string::npos) << text;
    EXPECT_NE(text.find("normal 1 "), std::string::npos) << text;
}

TEST_F(CtlRecords, ResetTellsHowManyWent) {
    EXPECT_EQ(Answer("record reset normal"), "normal: 1203 records are deleted\n");
    EXPECT_EQ(Answer("record count --list normal"), "normal  0\n");
}

TEST_F(CtlRecords, CountSearchesWholeLists) {
    EXPECT_EQ(Answer("record count --list normal --since 1970-01-01T00:00:00Z"), "normal  1203\n");
}

/// Relative times count back from now.
TEST_F(CtlRecords, TimesSoLongAgo) {
    (void)Answer("record report --user early --time 2h");
    (void)Answer("record report --user late --time 10m");
    EXPECT_EQ(Answer("record count --list online-fail --since 1h"), "online-fail  1\n");
    EXPECT_EQ(Answer("record count --list online-fail --until 1h"), "online-fail  1\n");
    EXPECT_EQ(Answer("record count --list online-fail --since 1d"), "online-fail  2\n");
    EXPECT_EQ(Answer("record top --list online-fail --last 1h"), "1  0  N/A\n");
}

/// Names are the users' own bytes and never reach the terminal as they are.
TEST_F(CtlRecords, ControlCharactersAreEscaped) {
    (void)Answer("record report --user \"$(printf 'a\\033[2Jb')\" --detail \"$(printf 'x\\ny')\"");
    const std::string text = Answer("record show online-fail 1");
    EXPECT_NE(text.find("a\\x1b[2Jb"), std::string::npos) << text;
    EXPECT_NE(text.find("x\\x0ay"), std::string::npos) << text;
    (void)Answer("record report --domain \"$(printf 'c\\033[2Jd')\"");
    const std::string top = Answer("record top --by domain --list online-fail");
    EXPECT_NE(top.find("c\\x1b[2Jd"), std::string::npos) << top;
}

TEST_F(CtlRecords, LongestDetailIsStoredAndALongerOneRefused) {
    const std::string longest(64850, 'd');
    (void)Answer("record report --detail " + longest);
    EXPECT_NE(Answer("record show online-fail 1").find(longest), std::string::npos);
    const CtlAnswer answer = RunCtl(daemon_, "record report --detail " + longest + "d");
    EXPECT_EQ(answer.status, 2);
    EXPECT_NE(answer.text.find("64850 fit"), std::string::npos) << answer.text.substr(0, 200);
}

TEST_F(CtlRecords, ListGoesOnAtOnePlaceOnly) {
    const CtlAnswer answer = RunCtl(daemon_, "record list --continue normal:9 normal:5");
    EXPECT_EQ(answer.status, 2);
    EXPECT_NE(answer.text.find("\"normal:5\""), std::string::npos) << answer.text;
}

TEST_F(CtlRecords, TopOfNoLinesIsWrongUsage) {
    EXPECT_EQ(RunCtl(daemon_, "record top --limit 0").status, 2);
}

TEST_F(CtlRecords, ShowWantsANumber) {
    const CtlAnswer answer = RunCtl(daemon_, "record show normal newest");
    EXPECT_EQ(answer.status, 2);
    EXPECT_NE(answer.text.find("record number \"newest\""), std::string::npos) << answer.text;
}

// The saved default comes from another program of the device; nothing is configured over it.
TEST_F(CtlRecords, BackupShowsWhatAppliesWhileNothingIsSet) {
    ASSERT_EQ(daemon_.Terminate(), 0);
    {
        StoppedDatabase database(daemon_);
        DOM_SetDomainDBMHandle(database.Handle());
        DOM_SetUserRecordBackupMethodDefault(5);
        EXPECT_EQ(DOM_SetRecordBackupMethodDefaultToDB(), DOM_OK);
        DOM_SetDomainDBMHandle(DBM_INVALID_HANDLE);
    }
    ASSERT_TRUE(daemon_.Start());
    (void)Answer("record backup set online-fail off");
    EXPECT_EQ(Answer("record backup show"),
              "online-fail  off  default on\n"
              "abnormal-offline  off  default off\n"
              "normal-offline  on  default on\n");
    EXPECT_EQ(Answer("record backup show --json"),
              R"({
  "ok": true,
  "result": {
    "online_fail": false,
    "abnormal_offline": false,
    "normal_offline": true,
    "default": {
      "online_fail": true,
      "abnormal_offline": false,
      "normal_offline": true
    }
  }
}
)");
}

TEST_F(CtlRecords, ReportWithoutDaemonSaysSo) {
    daemon_.Kill();
    const CtlAnswer answer = RunCtl(daemon_, "record report --user alice");
    EXPECT_EQ(answer.status, 3);
    EXPECT_NE(answer.text.find("record socket"), std::string::npos) << answer.text;
}

}  // namespace
