// Records that cannot be read are told as such: nobody takes a damaged database for an empty one.
#include <fcntl.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <string_view>

#include "ctl_process.h"
#include "daemon_log.h"
#include "record_query_client.h"

using namespace daemon_test;

namespace {

constexpr uint32_t kRecords = 60;
constexpr size_t kPageSize = 4096;
constexpr size_t kFirstDataPage = 2;
constexpr size_t kPageKindAt = 10;
const std::string kMarked = "marked-for-damage";

class DaemonRecordDamage : public DaemonTestWithLog {
  protected:
    explicit DaemonRecordDamage(uint64_t marked = kRecords) : marked_(marked) {}
    void SetUp() override {
        DaemonTestWithLog::SetUp();
        daemon_.Kill();
        FillRecords(daemon_, DOM_RECORD_ONLINE_FAIL, 1, kRecords, [&](UserRecord& record) {
            record.first_number = static_cast<uint32_t>(record.serial);
            const bool marked = record.serial == marked_;
            strcpy(record.second_name, marked ? kMarked.c_str() : "user");
        });
    }
    /// Takes the kind off each page of the run database that holds the text, as lost writes do.
    void Damage(std::string_view text) {
        const std::string path = daemon_.RunDir() + "/" DOM_RUN_DB_DATABASE "/data.mdb";
        const int file = open(path.c_str(), O_RDWR | O_CLOEXEC);
        ASSERT_GE(file, 0) << path;
        char page[kPageSize];
        int damaged = 0;
        for (off_t at = kFirstDataPage * kPageSize; pread(file, page, kPageSize, at) == kPageSize;
             at += kPageSize) {
            if (std::string_view(page, kPageSize).find(text) == std::string_view::npos) continue;
            const uint16_t no_kind = 0;
            EXPECT_EQ(pwrite(file, &no_kind, sizeof no_kind, at + kPageKindAt), 2);
            ++damaged;
        }
        close(file);
        EXPECT_GT(damaged, 0);
    }
    static Query OnlineFailures(uint32_t code) {
        return std::move(Query(code).List(DOM_RECORD_ONLINE_FAIL));
    }
    static void ExpectRefused(const RecordPage& page) {
        EXPECT_EQ(page.kind, DOM_REPLY_KIND_RESULT);
        EXPECT_EQ(page.result, DOM_ERR_FAILED);
    }

  private:
    const uint64_t marked_;
};

TEST_F(DaemonRecordDamage, EveryQueryIsRefused) {
    ASSERT_TRUE(daemon_.Start());
    Damage("");
    ExpectRefused(AskPage(OnlineFailures(DOM_MSG_RECORD_NUMBER)));
    ExpectRefused(AskPage(OnlineFailures(DOM_MSG_RECORD_ALL)));
    ExpectRefused(AskPage(OnlineFailures(DOM_MSG_RECORD_BY_TIME)));
    ExpectRefused(AskPage(OnlineFailures(DOM_MSG_RECORD_BY_CONDITIONS)));
    ExpectRefused(AskPage(
        std::move(OnlineFailures(DOM_MSG_RECORD_BY_REASON).Number32(DOM_TLV_QUERY_REASON, 0))));
    ExpectRefused(
        AskPage(std::move(OnlineFailures(DOM_MSG_RECORD_TOP).Number32(DOM_TLV_RECORD_TOP_BY, 0))));
    EXPECT_TRUE(daemon_.IsRunning());
}

TEST_F(DaemonRecordDamage, OperatorIsToldSo) {
    ASSERT_TRUE(daemon_.Start());
    Damage("");
    for (const char* const command : {"record list", "record count", "record reset online-fail"}) {
        const CtlAnswer answer = RunCtl(daemon_, command);
        EXPECT_EQ(answer.status, 1) << command;
        EXPECT_NE(answer.text.find("the daemon cannot read them"), std::string::npos)
            << answer.text;
    }
}

class DaemonRecordDamageInside : public DaemonRecordDamage {
  protected:
    DaemonRecordDamageInside() : DaemonRecordDamage(kRecords / 2) {}
};

TEST_F(DaemonRecordDamageInside, WalkThatGoesOnInTheDamageIsRefusedAndDoesNotEnd) {
    ASSERT_TRUE(daemon_.Start());
    Damage(kMarked);
    const RecordPage newest = AskPage(std::move(OnlineFailures(DOM_MSG_RECORD_ALL).PageOf(10)));
    EXPECT_EQ(newest.records.size(), 10u);
    ExpectRefused(AskPage(std::move(
        OnlineFailures(DOM_MSG_RECORD_ALL).Position(DOM_RECORD_ONLINE_FAIL, kRecords / 2))));
    EXPECT_TRUE(daemon_.IsRunning());
}

// A list that seemed empty would give its new records numbers that are in use.
TEST_F(DaemonRecordDamage, ListThatCannotBeReadAtTheStartIsMovedAway) {
    Damage(kMarked);
    ASSERT_TRUE(StartWithLog());
    EXPECT_TRUE(std::filesystem::exists(daemon_.RunDir() + "/" DOM_RUN_DB_DATABASE ".unreadable"));
    EXPECT_EQ(LinesWith("it cannot be opened or read"), 1);
    EXPECT_TRUE(AskPage(OnlineFailures(DOM_MSG_RECORD_ALL)).NoRecord());
}

}  // namespace
