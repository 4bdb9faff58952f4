// Records that access modules report: how they are numbered, kept, dropped and cleared.
#include <fcntl.h>
#include <platform/aaa_tlv.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <thread>

#include "daemon_log.h"
#include "record_reports.h"

using namespace daemon_test;

namespace {

constexpr uint32_t kFail = DOM_RECORD_ONLINE_FAIL;
constexpr uint32_t kAbnormal = DOM_RECORD_ABNORMAL_OFFLINE;
constexpr uint32_t kNormal = DOM_RECORD_NORMAL_OFFLINE;
using Serials = std::vector<uint64_t>;

class DaemonRecordStore : public DaemonTestWithLog {
  protected:
    void SetUp() override {
        DaemonTestWithLog::SetUp();
        KeepAllRecords();
    }
    void Send(uint32_t list, int number) {
        for (int i = 0; i < number; ++i) {
            const std::string user = "user" + std::to_string(i);
            ASSERT_EQ(SendRecord(list, SampleRecord(user)).result, DOM_OK);
        }
    }
    Serials In(uint32_t list) const { return StoredSerials(daemon_, list); }
};

TEST_F(DaemonRecordStore, ReportedRecordIsStoredWithAllItsFields) {
    const UserRecordSource sent = SampleRecord("alice", 27, 1699999999);
    ASSERT_EQ(SendRecord(kFail, sent).result, DOM_OK);
    const std::vector<StoredRecord> stored = StoredRecords(daemon_, kFail);
    ASSERT_EQ(stored.size(), 1u);
    const UserRecord& record = stored[0].record;
    EXPECT_EQ(record.serial, 1u);
    EXPECT_EQ(record.first_number, 1699999999u);
    EXPECT_EQ(record.second_number, 27u);
    EXPECT_EQ(record.third_number, 3600u);
    EXPECT_EQ(record.fourth_number, 5u);
    EXPECT_EQ(record.number16[0], 100);
    EXPECT_EQ(record.number16[1], 200);
    EXPECT_EQ(record.number16[2], 3);
    EXPECT_EQ(memcmp(record.ipv4, sent.ipv4, sizeof sent.ipv4), 0);
    EXPECT_EQ(memcmp(record.ipv6, sent.ipv6, sizeof sent.ipv6), 0);
    EXPECT_EQ(memcmp(record.mac, sent.mac, sizeof sent.mac), 0);
    EXPECT_STREQ(record.first_name, "isp");
    EXPECT_STREQ(record.second_name, "alice");
    EXPECT_STREQ(record.interface_name, "lo");
    EXPECT_EQ(stored[0].detail, "what happened");
}

TEST_F(DaemonRecordStore, EachListHasItsOwnNumbers) {
    EXPECT_EQ(SendRecord(kFail, SampleRecord("a")).serial, 1u);
    EXPECT_EQ(SendRecord(kFail, SampleRecord("b")).serial, 2u);
    EXPECT_EQ(SendRecord(kAbnormal, SampleRecord("c")).serial, 1u);
    EXPECT_EQ(SendRecord(kNormal, SampleRecord("d")).serial, 1u);
    EXPECT_EQ(In(kFail), (Serials{1, 2}));
    EXPECT_EQ(In(kAbnormal), (Serials{1}));
    EXPECT_EQ(In(kNormal), (Serials{1}));
}

TEST_F(DaemonRecordStore, NumbersGoOnAfterSigkill) {
    Send(kFail, 3);
    Send(kNormal, 1);
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(SendRecord(kFail, SampleRecord("next")).serial, 4u);
    EXPECT_EQ(SendRecord(kNormal, SampleRecord("next")).serial, 2u);
    EXPECT_EQ(SendRecord(kAbnormal, SampleRecord("first")).serial, 1u);
    EXPECT_EQ(In(kFail), (Serials{1, 2, 3, 4}));
}

TEST_F(DaemonRecordStore, NumberOfTheSenderDoesNotCount) {
    TLV_MSG* report = TLV_Create();
    ASSERT_EQ(AAA_AppendUINTTlvData(report, DOM_TLV_RECORD_KIND, kFail), 0u);
    UserRecord record{};
    record.serial = 4711;
    ASSERT_EQ(DOM_userrecord_tlv_EncodeRecordVerbose(report, &record), DOM_OK);
    EXPECT_EQ(SendReport(report).serial, 1u);
    EXPECT_EQ(In(kFail), (Serials{1}));
}

class DaemonRecordSwitches : public DaemonTest {
  protected:
    uint32_t Switch(uint32_t code, uint32_t operation = DOM_OP_SET) {
        return Change(DOM_userrecord_tlv_EncodeRecordEnable(code), operation);
    }
    /// Which lists keep a record now, as decimal digits.
    std::string Keeping() {
        std::string lists;
        for (const uint32_t list : {kFail, kAbnormal, kNormal}) {
            const ReportAnswer answer = SendRecord(list, SampleRecord("u"));
            EXPECT_EQ(answer.result, DOM_OK) << list;
            if (answer.serial != 0) lists += std::to_string(list);
        }
        return lists;
    }
};

TEST_F(DaemonRecordSwitches, SwitchedOffRecordIsAnsweredAndNotStored) {
    EXPECT_EQ(Keeping(), "");
    for (const uint32_t list : {kFail, kAbnormal, kNormal}) {
        EXPECT_EQ(StoredSerials(daemon_, list), Serials{}) << list;
    }
}

TEST_F(DaemonRecordSwitches, OnlineFailuresHaveASwitchOfTheirOwn) {
    ASSERT_EQ(Switch(DOM_MSG_REC_EN_ONLINE_FAIL), DOM_OK);
    EXPECT_EQ(Keeping(), "1");
}

TEST_F(DaemonRecordSwitches, OfflineSwitchKeepsBothKinds) {
    ASSERT_EQ(Switch(DOM_MSG_REC_EN_OFFLINE_ALL), DOM_OK);
    EXPECT_EQ(Keeping(), "34");
}

TEST_F(DaemonRecordSwitches, NormalSwitchKeepsListFour) {
    ASSERT_EQ(Switch(DOM_MSG_REC_EN_OFFLINE_NORMAL), DOM_OK);
    EXPECT_EQ(Keeping(), "4");
}

TEST_F(DaemonRecordSwitches, AbnormalSwitchKeepsListThree) {
    ASSERT_EQ(Switch(DOM_MSG_REC_EN_OFFLINE_ABNORMAL), DOM_OK);
    EXPECT_EQ(Keeping(), "3");
}

TEST_F(DaemonRecordSwitches, CountFromTheirAnswerOnAndAfterARestart) {
    ASSERT_EQ(Switch(DOM_MSG_REC_EN_ONLINE_FAIL), DOM_OK);
    EXPECT_EQ(Keeping(), "1");
    ASSERT_EQ(Switch(DOM_MSG_REC_EN_ONLINE_FAIL, DOM_OP_DELETE), DOM_OK);
    EXPECT_EQ(Keeping(), "");
    ASSERT_EQ(Switch(DOM_MSG_REC_EN_OFFLINE_NORMAL), DOM_OK);
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(Keeping(), "4");
}

// The change is taken back, in memory too, and so is what records are kept by.
TEST_F(DaemonRecordSwitches, SwitchThatCouldNotBeSavedDoesNotCount) {
    ASSERT_EQ(Switch(DOM_MSG_REC_EN_OFFLINE_NORMAL), DOM_OK);
    rlimit old_limit{};
    const rlimit no_room{4096, RLIM_INFINITY};
    ASSERT_EQ(prlimit(daemon_.Pid(), RLIMIT_FSIZE, &no_room, &old_limit), 0);
    EXPECT_EQ(Switch(DOM_MSG_REC_EN_ONLINE_FAIL), AAAD_ERR_NOT_SAVED);
    ASSERT_EQ(prlimit(daemon_.Pid(), RLIMIT_FSIZE, &old_limit, nullptr), 0);
    EXPECT_EQ(Keeping(), "4");
}

TEST_F(DaemonRecordStore, FullListDropsItsOldest) {
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start({"--max-records", "3"}));
    Send(kFail, 5);
    Send(kNormal, 2);
    EXPECT_EQ(In(kFail), (Serials{3, 4, 5}));
    EXPECT_EQ(In(kNormal), (Serials{1, 2}));
}

TEST_F(DaemonRecordStore, LowerLimitAppliesAtTheStart) {
    Send(kAbnormal, 6);
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start({"--max-records", "2"}));
    EXPECT_EQ(In(kAbnormal), (Serials{5, 6}));
    EXPECT_EQ(SendRecord(kAbnormal, SampleRecord("next")).serial, 7u);
    EXPECT_EQ(In(kAbnormal), (Serials{6, 7}));
}

TEST_F(DaemonRecordStore, LimitOfZeroIsWrongUsage) {
    std::string error;
    EXPECT_EQ(daemon_.RunToEnd({"--max-records", "0"}, error), 2);
    EXPECT_NE(error.find("--max-records"), std::string::npos) << error;
}

TEST_F(DaemonRecordStore, EachResetClearsItsLists) {
    struct Row {
        uint32_t code;
        uint32_t removed;
        std::vector<size_t> left;
    };
    const Row rows[] = {{DOM_MSG_RESET_ONLINE_FAIL, 1, {0, 2, 3}},
                        {DOM_MSG_RESET_OFFLINE_ABNORMAL, 2, {1, 0, 3}},
                        {DOM_MSG_RESET_OFFLINE_NORMAL, 3, {1, 2, 0}},
                        {DOM_MSG_RESET_OFFLINE_ALL, 5, {1, 0, 0}}};
    for (const Row& row : rows) {
        Send(kFail, 1);
        Send(kAbnormal, 2);
        Send(kNormal, 3);
        const Answer answer = Ask(CodeAlone(row.code), DOM_OP_CLEAR_RECORDS);
        EXPECT_EQ(ResultOf(answer), DOM_OK) << row.code;
        TLV_ITER* count = TLV_GetIteratorByType(answer.body.get(), DOM_TLV_RECORD_COUNT);
        EXPECT_EQ(AAA_GetUINTTlvValue(answer.body.get(), count), row.removed) << row.code;
        EXPECT_EQ((std::vector<size_t>{In(kFail).size(), In(kAbnormal).size(), In(kNormal).size()}),
                  row.left)
            << row.code;
        for (const uint32_t code : {DOM_MSG_RESET_ONLINE_FAIL, DOM_MSG_RESET_OFFLINE_ALL}) {
            ASSERT_EQ(Change(CodeAlone(code), DOM_OP_CLEAR_RECORDS), DOM_OK);
        }
    }
}

TEST_F(DaemonRecordStore, LibraryResetWorks) {
    Send(kFail, 2);
    EXPECT_EQ(DOM_userrecord_mor_ResetRecord(DOM_MSG_RESET_ONLINE_FAIL), DOM_OK);
    EXPECT_EQ(In(kFail), Serials{});
}

// The applier clears with every operation; a client that asks for something else has erred.
TEST_F(DaemonRecordStore, OtherOperationsClearNothing) {
    Send(kFail, 1);
    for (const uint32_t operation : {0u, 1u, 2u, 3u, 5u, 7u}) {
        EXPECT_EQ(Change(CodeAlone(DOM_MSG_RESET_ONLINE_FAIL), operation), AAAD_ERR_MALFORMED);
    }
    EXPECT_EQ(In(kFail), (Serials{1}));
}

TEST_F(DaemonRecordStore, NumbersGoOnAfterAReset) {
    Send(kFail, 2);
    ASSERT_EQ(Change(CodeAlone(DOM_MSG_RESET_ONLINE_FAIL), DOM_OP_CLEAR_RECORDS), DOM_OK);
    EXPECT_EQ(SendRecord(kFail, SampleRecord("next")).serial, 3u);
    EXPECT_EQ(In(kFail), (Serials{3}));
}

TEST_F(DaemonRecordStore, NumbersOfAClearedListGoOnAfterARestart) {
    Send(kFail, 2);
    Send(kNormal, 1);
    ASSERT_EQ(Change(CodeAlone(DOM_MSG_RESET_ONLINE_FAIL), DOM_OP_CLEAR_RECORDS), DOM_OK);
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(In(kFail), Serials{});
    EXPECT_EQ(SendRecord(kFail, SampleRecord("next")).serial, 3u);
    EXPECT_EQ(SendRecord(kNormal, SampleRecord("next")).serial, 2u);
    EXPECT_EQ(SendRecord(kAbnormal, SampleRecord("first")).serial, 1u);
}

TLV_MSG* FromActiveBoard(uint32_t list, const Serials& serials) {
    TLV_MSG* message = TLV_Create();
    EXPECT_EQ(AAA_AppendUINTTlvData(message, DOM_TLV_MSG_CODE, DOM_MSG_USER_RECORD), 0u);
    EXPECT_EQ(AAA_AppendUINTTlvData(message, DOM_TLV_RECORD_KIND, list), 0u);
    for (const uint64_t serial : serials) {
        UserRecord record{};
        record.serial = serial;
        EXPECT_EQ(DOM_userrecord_tlv_EncodeRecordVerbose(message, &record), DOM_OK);
    }
    return message;
}

TEST_F(DaemonRecordStore, RecordsOfTheActiveBoardKeepTheirNumbers) {
    EXPECT_EQ(Change(FromActiveBoard(kAbnormal, {7, 9})), DOM_OK);
    EXPECT_EQ(In(kAbnormal), (Serials{7, 9}));
    EXPECT_EQ(SendRecord(kAbnormal, SampleRecord("own")).serial, 10u);
    EXPECT_EQ(Change(DOM_EncodeDelUserRecord(kAbnormal, 7), DOM_OP_DELETE), DOM_OK);
    EXPECT_EQ(In(kAbnormal), (Serials{9, 10}));
}

// The active board sends all of them again when it lost sight of this one.
TEST_F(DaemonRecordStore, NumberOfADeletedRecordIsNotGivenAgainAfterARestart) {
    ASSERT_EQ(Change(FromActiveBoard(kAbnormal, {7, 9})), DOM_OK);
    ASSERT_EQ(Change(DOM_EncodeDelUserRecord(kAbnormal, 9), DOM_OP_DELETE), DOM_OK);
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(SendRecord(kAbnormal, SampleRecord("own")).serial, 10u);
}

TEST_F(DaemonRecordStore, RecordThatTheActiveBoardSendsAgainStaysAsItIs) {
    ASSERT_EQ(SendRecord(kFail, SampleRecord("mine")).serial, 1u);
    EXPECT_EQ(Change(FromActiveBoard(kFail, {5, 1, 6})), DOM_OK);
    EXPECT_EQ(In(kFail), (Serials{1, 5, 6}));
    EXPECT_STREQ(StoredRecords(daemon_, kFail)[0].record.second_name, "mine");
}

TEST_F(DaemonRecordStore, UndecodableMessageOfTheActiveBoardChangesNothing) {
    Send(kFail, 1);
    TLV_MSG* message = FromActiveBoard(kFail, {5, 6});
    const uint8_t garbage[] = {1, 2, 3};
    ASSERT_EQ(TLV_Append_Data(message, DOM_TLV_USER_RECORD, sizeof garbage, garbage), 0u);
    EXPECT_EQ(Change(message), DOM_ERR_FAILED);
    EXPECT_EQ(In(kFail), (Serials{1}));
    EXPECT_EQ(SendRecord(kFail, SampleRecord("next")).serial, 2u);
}

TEST_F(DaemonRecordStore, RecordsOfTheActiveBoardDropTheOldestToo) {
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start({"--max-records", "2"}));
    EXPECT_EQ(Change(FromActiveBoard(kNormal, {4, 2, 3})), DOM_OK);
    EXPECT_EQ(In(kNormal), (Serials{3, 4}));
}

TEST_F(DaemonRecordStore, GreatestNumberLeavesNoneUntilTheListIsCleared) {
    ASSERT_EQ(Change(FromActiveBoard(kFail, {UINT64_MAX})), DOM_OK);
    EXPECT_EQ(SendRecord(kFail, SampleRecord("none left")).result, DOM_ERR_FAILED);
    EXPECT_EQ(SendRecord(kNormal, SampleRecord("other list")).result, DOM_OK);
    ASSERT_EQ(Change(CodeAlone(DOM_MSG_RESET_ONLINE_FAIL), DOM_OP_CLEAR_RECORDS), DOM_OK);
    EXPECT_EQ(SendRecord(kFail, SampleRecord("anew")).serial, 1u);
}

TEST_F(DaemonRecordStore, RecordThatTheDatabaseRefusesUsesUpNoNumber) {
    Send(kFail, 1);
    rlimit old_limit{};
    const rlimit no_room{4096, RLIM_INFINITY};
    ASSERT_EQ(prlimit(daemon_.Pid(), RLIMIT_FSIZE, &no_room, &old_limit), 0);
    EXPECT_EQ(SendRecord(kFail, SampleRecord("lost")).result, AAAD_ERR_NOT_SAVED);
    EXPECT_EQ(Change(CodeAlone(DOM_MSG_RESET_ONLINE_FAIL), DOM_OP_CLEAR_RECORDS),
              AAAD_ERR_NOT_SAVED);
    EXPECT_EQ(Change(FromActiveBoard(kFail, {8})), AAAD_ERR_NOT_SAVED);
    ASSERT_EQ(prlimit(daemon_.Pid(), RLIMIT_FSIZE, &old_limit, nullptr), 0);
    EXPECT_EQ(SendRecord(kFail, SampleRecord("kept")).serial, 2u);
    EXPECT_EQ(In(kFail), (Serials{1, 2}));
}

TEST_F(DaemonRecordStore, DamagedDatabaseIsMovedAwayAndTheDaemonStarts) {
    Send(kFail, 2);
    daemon_.Kill();
    const std::string path = daemon_.RunDir() + "/" DOM_RUN_DB_DATABASE;
    for (const auto& entry : std::filesystem::directory_iterator(path)) {
        const int fd = open(entry.path().c_str(), O_WRONLY | O_CLOEXEC);
        const std::string garbage(8192, 'x');
        EXPECT_EQ(pwrite(fd, garbage.data(), garbage.size(), 0),
                  static_cast<ssize_t>(garbage.size()));
        close(fd);
    }
    ASSERT_TRUE(StartWithLog());
    EXPECT_EQ(LinesWith("records begin anew"), 1);
    EXPECT_TRUE(std::filesystem::exists(path + ".unreadable"));
    EXPECT_EQ(SendRecord(kFail, SampleRecord("first")).serial, 1u);
}

TEST_F(DaemonRecordStore, StopTellsWhatBecameOfTheRecords) {
    daemon_.Kill();
    ASSERT_TRUE(StartWithLog());
    ASSERT_EQ(
        Change(DOM_userrecord_tlv_EncodeRecordEnable(DOM_MSG_REC_EN_ONLINE_FAIL), DOM_OP_DELETE),
        DOM_OK);
    Send(kFail, 3);
    Send(kNormal, 2);
    ASSERT_EQ(daemon_.Terminate(), 0);
    EXPECT_EQ(LinesWith("2 records stored, 3 not kept because their switch is off, 0 oldest"), 1);
}

TEST_F(DaemonRecordStore, RecordsOfManySendersEachGetANumber) {
    constexpr int kSenders = 6;
    constexpr int kEach = 40;
    std::vector<std::vector<uint64_t>> given(kSenders);
    std::vector<std::thread> senders;
    for (int sender = 0; sender < kSenders; ++sender) {
        senders.emplace_back([&given, sender] {
            for (int i = 0; i < kEach; ++i) {
                given[sender].push_back(SendRecord(kFail, SampleRecord("crowd")).serial);
            }
        });
    }
    for (std::thread& sender : senders) sender.join();
    Serials all;
    for (const auto& serials : given) {
        EXPECT_TRUE(std::is_sorted(serials.begin(), serials.end()));
        all.insert(all.end(), serials.begin(), serials.end());
    }
    std::sort(all.begin(), all.end());
    EXPECT_EQ(all, In(kFail));
    EXPECT_EQ(all.size(), static_cast<size_t>(kSenders * kEach));
    EXPECT_EQ(all.back(), static_cast<uint64_t>(kSenders * kEach));
}

TEST_F(DaemonRecordStore, ChangesResetsAndRecordsAtTheSameTime) {
    constexpr int kEach = 40;
    int refused_records = 0;
    int refused_changes = 0;
    int refused_resets = 0;
    std::thread sender([&] {
        for (int i = 0; i < 2 * kEach; ++i) {
            refused_records += SendRecord(kFail, SampleRecord("busy")).serial == 0;
        }
    });
    std::thread clearer([&] {
        for (int i = 0; i < kEach; ++i) {
            refused_resets +=
                Change(CodeAlone(DOM_MSG_RESET_ONLINE_FAIL), DOM_OP_CLEAR_RECORDS) != DOM_OK;
            refused_resets +=
                Change(FromActiveBoard(kNormal, {static_cast<uint64_t>(i) + 1})) != DOM_OK;
        }
    });
    for (int i = 0; i < kEach; ++i) {
        refused_changes += CreateDomain("domain" + std::to_string(i)) != DOM_OK;
    }
    sender.join();
    clearer.join();
    EXPECT_EQ(refused_records, 0);
    EXPECT_EQ(refused_changes, 0);
    EXPECT_EQ(refused_resets, 0);
    EXPECT_EQ(CountDomains(), static_cast<uint32_t>(kEach + 1));
    EXPECT_EQ(In(kNormal).size(), static_cast<size_t>(kEach));
    EXPECT_EQ(SendRecord(kFail, SampleRecord("last")).serial, static_cast<uint64_t>(2 * kEach + 1));
}

}  // namespace
