// Codes 54 to 57 and 173: records of the run database are cleared, stored and removed.
#include <aaadom/record_codec.h>
#include <aaadom/record_switches.h>
#include <aaadom/service.h>
#include <aaadom/user_record.h>

#include <map>
#include <vector>

#include "tests/golden/sample_record.h"
#include "unit/codec/restore_fixture.h"
#include "unit/codec/run_database.h"

namespace aaadom {
namespace {

using Serials = std::vector<uint64_t>;

class RestoreUserRecordsTest : public RestoreTest {
  protected:
    void SetUp() override {
        RestoreTest::SetUp();
        run_db::Open();
        fake::ClearDbmCalls();
    }
    void TearDown() override {
        DOM_DestroyRecordRunDB();
        RestoreTest::TearDown();
    }

    /// One record in each list; the serial number is the list's.
    static void StoreOneInEach() {
        for (const uint32_t kind : run_db::kLists) run_db::Store(kind, kind);
    }
    /// The lists that still have their record: online failures, abnormal, normal.
    static std::string Kept() {
        std::string kept;
        for (const uint32_t kind : run_db::kLists)
            kept += run_db::Serials(kind).empty() ? '-' : static_cast<char>('0' + kind);
        return kept;
    }
    static UserRecord Record(uint64_t serial) {
        UserRecord record = golden::SampleRecord();
        record.serial = serial;
        return record;
    }
    /// Records, code, list: as a batch is sent.
    static TLV_MSG* Batch(uint32_t kind, std::initializer_list<uint64_t> serials) {
        TLV_MSG* body = TLV_Create();
        for (const uint64_t serial : serials) {
            const UserRecord record = Record(serial);
            EXPECT_EQ(DOM_userrecord_tlv_EncodeRecordVerbose(body, &record), DOM_OK);
        }
        EXPECT_EQ(AAA_AppendUINTTlvData(body, DOM_TLV_MSG_CODE, DOM_MSG_USER_RECORD), 0u);
        EXPECT_EQ(AAA_AppendUINTTlvData(body, DOM_TLV_RECORD_KIND, kind), 0u);
        return body;
    }
};

struct ResetCase {
    uint32_t code;
    const char* kept;
};
class ResetCode : public RestoreUserRecordsTest, public ::testing::WithParamInterface<ResetCase> {};

TEST_P(ResetCode, ClearsItsListsByEveryOperation) {
    for (const uint32_t op : {6u, 0u, 1u, 2u}) {
        StoreOneInEach();
        EXPECT_EQ(Restore(DOM_userrecord_tlv_EncodeResetRecord(GetParam().code), op, 0), DOM_OK);
        EXPECT_EQ(Kept(), GetParam().kept) << op;
        (void)DOM_ClearAllRecordInfoFromRunDB(7);
    }
    EXPECT_STREQ(name1_, "untouched");
}

TEST_P(ResetCode, ClearsEmptyLists) {
    EXPECT_EQ(Set(DOM_userrecord_tlv_EncodeResetRecord(GetParam().code)), DOM_OK);
}

TEST_P(ResetCode, FailsWithAClosedDatabase) {
    DOM_DestroyRecordRunDB();
    EXPECT_EQ(Set(DOM_userrecord_tlv_EncodeResetRecord(GetParam().code)), DOM_ERR_FAILED);
}

TEST_P(ResetCode, FailsWhenTheDatabaseDoes) {
    StoreOneInEach();
    fake::FailAllDbmCalls(true);
    EXPECT_EQ(Set(DOM_userrecord_tlv_EncodeResetRecord(GetParam().code)), DOM_ERR_FAILED);
    fake::FailAllDbmCalls(false);
    EXPECT_EQ(Kept(), "134");
}

TEST_P(ResetCode, HasNoSavedForm) {
    StoreOneInEach();
    EXPECT_EQ(Set(DOM_userrecord_tlv_EncodeResetRecord(GetParam().code), 1), DOM_ERR_FAILED);
    EXPECT_EQ(Kept(), GetParam().kept);
    EXPECT_EQ(Writes(), 0u);
}

INSTANTIATE_TEST_SUITE_P(Codes, ResetCode,
                         ::testing::Values(ResetCase{54, "-34"}, ResetCase{55, "1--"},
                                           ResetCase{56, "13-"}, ResetCase{57, "1-4"}));

// Clears in the order abnormal, normal, and the last one decides.
TEST_F(RestoreUserRecordsTest, ResetOfBothOfflineListsFailsOnlyWithTheSecond) {
    StoreOneInEach();
    fake::FailDbmCall(1);
    EXPECT_EQ(Set(DOM_userrecord_tlv_EncodeResetRecord(55)), DOM_OK);
    EXPECT_EQ(Kept(), "13-");
    fake::FailDbmCall(2);
    EXPECT_EQ(Set(DOM_userrecord_tlv_EncodeResetRecord(55)), DOM_ERR_FAILED);
}

TEST_F(RestoreUserRecordsTest, RecordsOfEachListAreStored) {
    for (const uint32_t kind : run_db::kLists) {
        EXPECT_EQ(Set(Batch(kind, {kind, kind + 20u})), DOM_OK);
    }
    for (const uint32_t kind : run_db::kLists) {
        EXPECT_EQ(run_db::Serials(kind), (Serials{kind, kind + 20u}));
    }
    EXPECT_STREQ(name1_, "untouched");
}

TEST_F(RestoreUserRecordsTest, SingleRecordsAreStored) {
    const UserRecord record = Record(9);
    EXPECT_EQ(Set(DOM_EncodeOnlineFailRecord(&record)), DOM_OK);
    EXPECT_EQ(run_db::Serials(1), Serials{9});
    EXPECT_EQ(Set(DOM_EncodOfflineRecord(0, &record)), DOM_OK);
    EXPECT_EQ(run_db::Serials(3), Serials{9});
    EXPECT_EQ(Set(DOM_EncodOfflineRecord(1, &record)), DOM_OK);
    EXPECT_EQ(run_db::Serials(4), Serials{9});
}

TEST_F(RestoreUserRecordsTest, RecordsOfAnUnknownListAreRefused) {
    for (const uint32_t kind : {0u, 2u, 5u, 7u, 0xFFFFFFFFu}) {
        EXPECT_EQ(Set(Batch(kind, {1})), DOM_ERR_FAILED) << kind;
    }
    EXPECT_EQ(Kept(), "---");
}

TEST_F(RestoreUserRecordsTest, RecordsWithoutAListAreRefused) {
    TLV_MSG* body = CodeAlone(DOM_MSG_USER_RECORD);
    const UserRecord record = Record(1);
    ASSERT_EQ(DOM_userrecord_tlv_EncodeRecordVerbose(body, &record), DOM_OK);
    EXPECT_EQ(Set(body), DOM_ERR_FAILED);
    EXPECT_EQ(Kept(), "---");
}

TEST_F(RestoreUserRecordsTest, BatchWithoutRecordsIsDone) {
    EXPECT_EQ(Set(Batch(3, {})), DOM_OK);
    EXPECT_EQ(Kept(), "---");
}

TEST_F(RestoreUserRecordsTest, UnreadableRecordFailsAndEarlierOnesStay) {
    TLV_MSG* body = Batch(3, {1});
    ASSERT_EQ(TLV_Append_Data(body, DOM_TLV_USER_RECORD, 3, "bad"), 0u);
    EXPECT_EQ(Set(body), DOM_ERR_FAILED);
    EXPECT_EQ(run_db::Serials(3), Serials{1});
}

TEST_F(RestoreUserRecordsTest, RecordsHaveNoSavedForm) {
    EXPECT_EQ(Set(Batch(3, {1}), 1), DOM_ERR_FAILED);
    EXPECT_EQ(run_db::Serials(3), Serials{1});
    EXPECT_EQ(Writes(), 0u);
}

class DeletedKind : public RestoreUserRecordsTest,
                    public ::testing::WithParamInterface<std::pair<uint32_t, const char*>> {};

TEST_P(DeletedKind, RecordIsRemovedFromItsListOnly) {
    const auto [kind, kept] = GetParam();
    for (const uint32_t op : {1u, 2u, 6u, 0xFFFFFFFFu}) {
        (void)DOM_ClearAllRecordInfoFromRunDB(7);
        for (const uint32_t list : run_db::kLists) run_db::Store(list, 77);
        EXPECT_EQ(Restore(DOM_EncodeDelUserRecord(kind, 77), op, 0), DOM_OK);
        EXPECT_EQ(Kept(), kept) << op;
    }
}

TEST_P(DeletedKind, SerialThatIsNotStoredFails) {
    const uint32_t kind = GetParam().first;
    run_db::Store(kind, 77);
    EXPECT_EQ(Delete(DOM_EncodeDelUserRecord(kind, 78)), DOM_ERR_FAILED);
    EXPECT_EQ(run_db::Serials(kind), Serials{77});
}

INSTANTIATE_TEST_SUITE_P(Lists, DeletedKind,
                         ::testing::Values(std::pair{1u, "-34"}, std::pair{3u, "1-4"},
                                           std::pair{4u, "13-"}));

TEST_F(RestoreUserRecordsTest, DeletionFromAnUnknownListSucceedsWithoutAction) {
    StoreOneInEach();
    for (const uint32_t kind : {0u, 2u, 5u, 0xFFFFFFFFu}) {
        EXPECT_EQ(Delete(DOM_EncodeDelUserRecord(kind, kind)), DOM_OK) << kind;
    }
    EXPECT_EQ(Delete(CodeAlone(DOM_MSG_USER_RECORD)), DOM_OK);
    EXPECT_EQ(Kept(), "134");
}

TEST_F(RestoreUserRecordsTest, BothRolesHaveTheSameRecords) {
    EXPECT_EQ(Set(Batch(3, {1})), DOM_OK);
    fake::InRole(fake::kWorkingRole, [this] {
        EXPECT_EQ(run_db::Serials(3), Serials{1});
        return Delete(DOM_EncodeDelUserRecord(3, 1));
    });
    EXPECT_EQ(run_db::Serials(3), Serials{});
}

/// Active and standby board one after the other: what slot 10 gets is applied to an empty database.
class RecordReceiver : public RestoreUserRecordsTest {
  protected:
    void SetUp() override {
        RestoreUserRecordsTest::SetUp();
        sent.clear();
        AAADService service{};
        service.cfg_real_sync_to_slave = [](TLV_MSG* msg) {
            sent.push_back(fake::ImageOf(msg));
            return 0u;
        };
        DOM_SetAAADService(&service);
    }
    void TearDown() override {
        DOM_ResetAAADService();
        RestoreUserRecordsTest::TearDown();
    }

    static void StoreAndRemember(uint32_t kind, uint32_t count) {
        for (uint32_t i = 0; i < count; ++i) {
            UserRecord record = Record(1000 * kind + i);
            record.second_number = i;
            std::string detail(1 + i % 700, 'd');
            record.detail = i % 3 == 0 ? nullptr : detail.data();
            record.detail_len = i % 3 == 0 ? 0 : static_cast<uint32_t>(detail.size()) + 1;
            ASSERT_EQ(DOM_SetSingeRecordInfoToRunDB(kind, &record), DOM_OK);
        }
    }
    /// As the active board sends a whole list.
    static void SendList(uint32_t kind) {
        const TlvPtr batch(TLV_Create());
        const TlvPtr scratch(TLV_Create());
        for (const std::string& entry : run_db::Entries(kind)) {
            UserRecord record{};
            DOM_userrecord_tlv_DecodeUserRecordStlv(entry.data(),
                                                    static_cast<uint32_t>(entry.size()), &record);
            EXPECT_EQ(DOM_EncodeUserRecordAll(kind, &record, batch.get(), scratch.get()), DOM_OK);
            free(record.detail);
        }
        EXPECT_EQ(DOM_EncodeRecordTypeAndSend(batch.get(), kind), DOM_OK);
    }
    static std::map<uint32_t, std::vector<std::string>> AllEntries() {
        std::map<uint32_t, std::vector<std::string>> all;
        for (const uint32_t kind : run_db::kLists) all[kind] = run_db::Entries(kind);
        return all;
    }
    static void EmptyDatabase() {
        for (const uint32_t kind : run_db::kLists)
            ASSERT_EQ(DOM_ClearAllRecordInfoFromRunDB(kind == 3 ? 2 : kind), 0u);
        for (const uint32_t kind : run_db::kLists) ASSERT_TRUE(run_db::Entries(kind).empty());
    }

    static inline std::vector<std::string> sent;
};

TEST_F(RecordReceiver, ListsArriveByteForByte) {
    StoreAndRemember(1, 300);
    StoreAndRemember(3, 1);
    StoreAndRemember(4, 120);
    const auto before = AllEntries();
    for (const uint32_t kind : run_db::kLists) SendList(kind);
    EXPECT_GT(sent.size(), 3u) << "the longest list needs several messages";
    EmptyDatabase();
    for (const std::string& image : sent) {
        const TlvPtr msg(fake::Parse(image));
        const TlvPtr request(AAA_DelAaadHead(msg.get()));
        EXPECT_EQ(DOM_RestoreData(request.get(), 0, 0, 0, nullptr, nullptr), DOM_OK);
    }
    EXPECT_EQ(AllEntries(), before);
}

TEST_F(RecordReceiver, ListThatArrivesTwiceIsStoredOnce) {
    StoreAndRemember(3, 50);
    const auto before = AllEntries();
    SendList(3);
    for (const std::string& image : sent) {
        const TlvPtr msg(fake::Parse(image));
        EXPECT_EQ(DOM_UpdateCfgData(msg.get(), 0, 0, nullptr, nullptr), DOM_OK);
    }
    EXPECT_EQ(AllEntries(), before);
}

TEST_F(RecordReceiver, SingleChangesAndResetsArrive) {
    const UserRecord record = Record(5);
    DOM_SyncOnlineFailRecord(DOM_OP_SET, &record);
    DOM_SyncOfflineRecord(DOM_OP_SET, 1, &record);
    DOM_SyncOfflineRecord(DOM_OP_SET, 0, &record);
    DOM_SyncOnlineFailRecord(DOM_OP_DELETE, &record);
    Dom_SyncClearUserRecord(4);
    ASSERT_EQ(sent.size(), 5u);
    const char* const kept[] = {"1--", "1-4", "134", "-34", "-3-"};
    for (size_t i = 0; i < sent.size(); ++i) {
        const TlvPtr msg(fake::Parse(sent[i]));
        EXPECT_EQ(DOM_UpdateCfgData(msg.get(), 0, 0, nullptr, nullptr), DOM_OK);
        EXPECT_EQ(Kept(), kept[i]);
    }
}

}  // namespace
}  // namespace aaadom
