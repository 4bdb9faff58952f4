// The run database of user records, call by call.
#include <aaadom/db_layout.h>
#include <aaadom/record_run_db.h>
#include <aaadom/results.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "db/record_lists.h"
#include "fakes/fake_platform.h"

namespace aaadom {
namespace {

constexpr char kAbnormal[] = "AaaUserRecordAbnormalOffline";
constexpr char kNormal[] = "AaaUserRecordNormalOffline";
constexpr char kOnlineFail[] = "AaaUserRecordOnlineFail";

template <size_t N>
std::string WithNul(const char (&key)[N]) {
    return std::string(key, N);
}

class RunDbTest : public ::testing::Test {
  protected:
    void SetUp() override {
        fake::Reset();
        live_before_ = fake::LiveMessages();
        DOM_SetRecordRunDBHandle(DOM_CreateRecordRunDB());
        ASSERT_NE(DOM_GetRecordRunDBHandle(), DBM_INVALID_HANDLE);
        ASSERT_EQ(DOM_CreateAllRecordDBAvlList(), DOM_OK);
        fake::ClearDbmCalls();
    }
    void TearDown() override {
        fake::DisarmFailures();
        fake::FailAllDbmCalls(false);
        (void)DOM_DestroyRecordRunDB();
        EXPECT_EQ(fake::OpenDatabaseHandles(), 0);
        EXPECT_EQ(fake::LiveMessages(), live_before_);
        EXPECT_TRUE(fake::Misuses().empty());
    }

    static UserRecord Record(uint64_t serial) {
        UserRecord record{};
        record.serial = serial;
        record.second_number = 11;
        memcpy(record.second_name, "alice", 6);
        return record;
    }
    static std::string Stored(const UserRecord& record) {
        std::string bytes(65535, '\0');
        bytes.resize(DOM_userrecord_tlv_EncodeUserRecordStlv(&record, 65535, bytes.data()));
        return bytes;
    }
    template <size_t N>
    static uint32_t Count(const char (&key)[N]) {
        return DBM_GetEntryNum(DOM_GetRecordRunDBHandle(), key, N);
    }
    static std::vector<uint32_t> Counts() {
        return {Count(kAbnormal), Count(kNormal), Count(kOnlineFail)};
    }
    static void OneRecordInEachList() {
        const UserRecord record = Record(1);
        for (uint32_t type : {1u, 3u, 4u})
            ASSERT_EQ(DOM_SetSingeRecordInfoToRunDB(type, &record), DOM_OK);
    }
    /// Drops the buffer that was kept and opens anew, so the next call must allocate.
    static void ForgetBuffer() {
        (void)DOM_DestroyRecordRunDB();
        DOM_SetRecordRunDBHandle(DOM_CreateRecordRunDB());
    }

  private:
    int64_t live_before_ = 0;
};

using Numbers = std::vector<uint32_t>;

TEST_F(RunDbTest, CreateOpensTheTableAsRunTimeDatabase) {
    const DBM_HANDLE handle = DOM_CreateRecordRunDB();
    ASSERT_NE(handle, DBM_INVALID_HANDLE);
    const auto calls = fake::DbmCalls("DBM_Open");
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].key, "gRECORD/isp-domain");
    EXPECT_EQ(calls[0].index, 7);
    std::string attributes(32, '\0');
    attributes[16] = '1';
    EXPECT_EQ(calls[0].value, attributes);
    DBM_Close(handle);
}

TEST_F(RunDbTest, CreateDoesNotInstallTheHandle) {
    const DBM_HANDLE installed = DOM_GetRecordRunDBHandle();
    const DBM_HANDLE handle = DOM_CreateRecordRunDB();
    EXPECT_NE(handle, installed);
    EXPECT_EQ(DOM_GetRecordRunDBHandle(), installed);
    DBM_Close(handle);
}

TEST_F(RunDbTest, FailedCreateGivesNoHandle) {
    fake::FailAllDbmCalls(true);
    EXPECT_EQ(DOM_CreateRecordRunDB(), -1);
}

// Before main: the tests leave the handle uninstalled.
const DBM_HANDLE handle_at_the_start = DOM_GetRecordRunDBHandle();

TEST(RunDbHandle, IsNotOpenAtTheStart) {
    EXPECT_EQ(handle_at_the_start, -1);
}

TEST_F(RunDbTest, SetInstallsTheHandle) {
    const DBM_HANDLE before = DOM_GetRecordRunDBHandle();
    DOM_SetRecordRunDBHandle(0x123456789A);
    EXPECT_EQ(g_hRecordDbmRunDb, 0x123456789A);
    EXPECT_EQ(DOM_GetRecordRunDBHandle(), 0x123456789A);
    DOM_SetRecordRunDBHandle(before);
}

TEST_F(RunDbTest, DestroyClosesOnceAndGivesTheHandleOfNothingOpen) {
    EXPECT_EQ(DOM_DestroyRecordRunDB(), -1);
    EXPECT_EQ(g_hRecordDbmRunDb, -1);
    EXPECT_EQ(DOM_DestroyRecordRunDB(), -1);
    EXPECT_EQ(fake::DbmCalls("DBM_Close").size(), 1u);
}

TEST_F(RunDbTest, DestroyUninstallsAlsoWhenClosingFails) {
    fake::FailAllDbmCalls(true);
    EXPECT_EQ(DOM_DestroyRecordRunDB(), -1);
    EXPECT_EQ(g_hRecordDbmRunDb, -1);
}

TEST_F(RunDbTest, ListsAreMadeInOrderWithTheirAttributes) {
    fake::DropDatabases();
    DOM_SetRecordRunDBHandle(DOM_CreateRecordRunDB());
    fake::ClearDbmCalls();
    EXPECT_EQ(DOM_CreateAllRecordDBAvlList(), DOM_OK);
    const auto calls = fake::DbmCalls("DBM_CreateAvlList");
    ASSERT_EQ(calls.size(), 3u);
    const std::string keys[] = {WithNul(kAbnormal), WithNul(kNormal), WithNul(kOnlineFail)};
    const uint32_t lengths[] = {29, 27, 24};
    const uint32_t types[] = {41, 42, 43};
    const uint32_t attributes[] = {4, 8, 20, 0};
    for (size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(calls[i].key, keys[i]);
        EXPECT_EQ(calls[i].key_length, lengths[i]);
        EXPECT_EQ(calls[i].value_type, types[i]);
        EXPECT_EQ(calls[i].index, 1);
        EXPECT_EQ(memcmp(calls[i].value.data(), attributes, sizeof attributes), 0);
    }
}

TEST_F(RunDbTest, ListsThatExistAreKept) {
    OneRecordInEachList();
    EXPECT_EQ(DOM_CreateAllRecordDBAvlList(), DOM_OK);
    EXPECT_TRUE(fake::DbmCalls("DBM_CreateAvlList").empty());
    EXPECT_EQ(Counts(), (Numbers{1, 1, 1}));
}

TEST_F(RunDbTest, AListThatCannotBeMadeDoesNotStopTheOthers) {
    for (int failing : {2, 4, 6}) {  // each list asks first, then creates
        fake::DropDatabases();
        DOM_SetRecordRunDBHandle(DOM_CreateRecordRunDB());
        fake::ClearDbmCalls();
        fake::FailDbmCall(failing);
        EXPECT_EQ(DOM_CreateAllRecordDBAvlList(), DOM_ERR_FAILED);
        EXPECT_EQ(fake::DbmCalls("DBM_CreateAvlList").size(), 3u);
        fake::DisarmFailures();
        EXPECT_EQ(DBM_GetKeyNumByValueType(DOM_GetRecordRunDBHandle(), 41) +
                      DBM_GetKeyNumByValueType(DOM_GetRecordRunDBHandle(), 42) +
                      DBM_GetKeyNumByValueType(DOM_GetRecordRunDBHandle(), 43),
                  2u);
    }
}

TEST_F(RunDbTest, ListsOfAClosedDatabaseFail) {
    (void)DOM_DestroyRecordRunDB();
    EXPECT_EQ(DOM_CreateAllRecordDBAvlList(), DOM_ERR_FAILED);
}

// The upper half of the answer is not part of it.
TEST(RunDbLists, AnswerOfExistenceHas16Bits) {
    EXPECT_TRUE(SaysKeyExists(1));
    EXPECT_TRUE(SaysKeyExists(0x40010001));
    EXPECT_FALSE(SaysKeyExists(0));
    EXPECT_FALSE(SaysKeyExists(0x10000));
    EXPECT_FALSE(SaysKeyExists(2));
}

TEST_F(RunDbTest, ARecordGoesIntoItsListInItsStoredForm) {
    const UserRecord record = Record(0x0102030405060708);
    const struct {
        uint32_t (*set)(const UserRecord*);
        std::string key;
    } lists[] = {{DOM_SetAbnormalOfflineRecordInfoToRunDB, WithNul(kAbnormal)},
                 {DOM_SetNormalOfflineRecordInfoToRunDB, WithNul(kNormal)},
                 {DOM_SetOnlineFailedRecordInfoToRunDB, WithNul(kOnlineFail)}};
    for (const auto& list : lists) {
        fake::ClearDbmCalls();
        EXPECT_EQ(list.set(&record), DOM_OK);
        const auto calls = fake::DbmCalls();
        ASSERT_EQ(calls.size(), 1u);
        EXPECT_EQ(calls[0].call, "DBM_InsertAvlList");
        EXPECT_EQ(calls[0].key, list.key);
        EXPECT_EQ(calls[0].value, Stored(record));
        EXPECT_EQ(calls[0].value_length, 672u);
    }
}

TEST_F(RunDbTest, TheRecordTypeChoosesTheList) {
    const UserRecord record = Record(1);
    EXPECT_EQ(DOM_SetSingeRecordInfoToRunDB(3, &record), DOM_OK);
    EXPECT_EQ(Counts(), (Numbers{1, 0, 0}));
    EXPECT_EQ(DOM_SetSingeRecordInfoToRunDB(4, &record), DOM_OK);
    EXPECT_EQ(Counts(), (Numbers{1, 1, 0}));
    EXPECT_EQ(DOM_SetSingeRecordInfoToRunDB(1, &record), DOM_OK);
    EXPECT_EQ(Counts(), (Numbers{1, 1, 1}));
}

TEST_F(RunDbTest, AnyOtherRecordTypeTouchesNoList) {
    const UserRecord record = Record(1);
    for (uint32_t type : {0u, 2u, 5u, 0x10001u, UINT32_MAX})
        EXPECT_EQ(DOM_SetSingeRecordInfoToRunDB(type, &record), DOM_ERR_FAILED) << type;
    EXPECT_TRUE(fake::DbmCalls().empty());
}

TEST_F(RunDbTest, ASerialNumberIsStoredOnce) {
    UserRecord record = Record(7);
    EXPECT_EQ(DOM_SetOnlineFailedRecordInfoToRunDB(&record), DOM_OK);
    record.second_number = 12;
    EXPECT_EQ(DOM_SetOnlineFailedRecordInfoToRunDB(&record), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_SetNormalOfflineRecordInfoToRunDB(&record), DOM_OK);
    EXPECT_EQ(Counts(), (Numbers{0, 1, 1}));
}

TEST_F(RunDbTest, StoringIntoAClosedDatabaseFailsWithoutACall) {
    (void)DOM_DestroyRecordRunDB();
    fake::ClearDbmCalls();
    const UserRecord record = Record(1);
    EXPECT_EQ(DOM_SetAbnormalOfflineRecordInfoToRunDB(&record), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_SetNormalOfflineRecordInfoToRunDB(&record), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_SetOnlineFailedRecordInfoToRunDB(&record), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_SetSingeRecordInfoToRunDB(1, &record), DOM_ERR_FAILED);
    EXPECT_TRUE(fake::DbmCalls().empty());
}

TEST_F(RunDbTest, NoRecordIsAFailure) {
    EXPECT_EQ(DOM_SetAbnormalOfflineRecordInfoToRunDB(nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_SetNormalOfflineRecordInfoToRunDB(nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_SetOnlineFailedRecordInfoToRunDB(nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_SetSingeRecordInfoToRunDB(4, nullptr), DOM_ERR_FAILED);
    EXPECT_TRUE(fake::DbmCalls().empty());
}

TEST_F(RunDbTest, ARefusingDatabaseIsAFailure) {
    const UserRecord record = Record(1);
    fake::FailAllDbmCalls(true);
    EXPECT_EQ(DOM_SetOnlineFailedRecordInfoToRunDB(&record), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_DelOnlineFailedRecordInfoToRunDB(1), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_ClearAllRecordInfoFromRunDB(1), DOM_ERR_FAILED);
}

TEST_F(RunDbTest, WithoutMemoryNothingIsStoredOrRemoved) {
    const UserRecord record = Record(1);
    ForgetBuffer();
    fake::FailAllocation(1);
    EXPECT_EQ(DOM_SetOnlineFailedRecordInfoToRunDB(&record), DOM_ERR_FAILED);
    EXPECT_TRUE(fake::Tripped());
    fake::DisarmFailures();
    EXPECT_EQ(DOM_SetOnlineFailedRecordInfoToRunDB(&record), DOM_OK);
    ForgetBuffer();
    fake::FailAllocation(1);
    EXPECT_EQ(DOM_DelOnlineFailedRecordInfoToRunDB(1), DOM_ERR_FAILED);
    EXPECT_TRUE(fake::Tripped());
    EXPECT_EQ(Counts(), (Numbers{0, 0, 1}));
}

TEST_F(RunDbTest, ADetailTextIsStoredWithItsRecord) {
    char detail[] = "pool exhausted";
    UserRecord record = Record(1);
    record.detail = detail;
    record.detail_len = sizeof detail;
    EXPECT_EQ(DOM_SetOnlineFailedRecordInfoToRunDB(&record), DOM_OK);
    EXPECT_EQ(fake::DbmCalls("DBM_InsertAvlList")[0].value, Stored(record));
}

TEST_F(RunDbTest, ADetailTextThatDoesNotFitIsLeftOut) {
    std::string detail(64900, 'd');
    UserRecord record = Record(1);
    record.detail = detail.data();
    record.detail_len = static_cast<uint32_t>(detail.size());
    EXPECT_EQ(DOM_SetOnlineFailedRecordInfoToRunDB(&record), DOM_OK);
    EXPECT_EQ(fake::DbmCalls("DBM_InsertAvlList")[0].value_length, 680u);
    // The greatest text that fits: 672 bytes of fields, 8 of its length, 4 of its header.
    record.serial = 2;
    record.detail_len = 65535 - 684;
    EXPECT_EQ(DOM_SetOnlineFailedRecordInfoToRunDB(&record), DOM_OK);
    EXPECT_EQ(fake::DbmCalls("DBM_InsertAvlList")[1].value_length, 65535u);
}

TEST_F(RunDbTest, RemovingTakesTheRecordOutOfItsList) {
    OneRecordInEachList();
    EXPECT_EQ(DOM_DelAbnormalOfflineRecordInfoToRunDB(1), DOM_OK);
    EXPECT_EQ(Counts(), (Numbers{0, 1, 1}));
    EXPECT_EQ(DOM_DelNormalOfflineRecordInfoToRunDB(1), DOM_OK);
    EXPECT_EQ(Counts(), (Numbers{0, 0, 1}));
    EXPECT_EQ(DOM_DelOnlineFailedRecordInfoToRunDB(1), DOM_OK);
    EXPECT_EQ(Counts(), (Numbers{0, 0, 0}));
}

TEST_F(RunDbTest, RemovingASerialNumberThatIsNotStoredFails) {
    OneRecordInEachList();
    EXPECT_EQ(DOM_DelAbnormalOfflineRecordInfoToRunDB(2), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_DelNormalOfflineRecordInfoToRunDB(2), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_DelOnlineFailedRecordInfoToRunDB(2), DOM_ERR_FAILED);
    EXPECT_EQ(Counts(), (Numbers{1, 1, 1}));
}

// The probe counts with the size of its buffer, not with the 12 bytes that are written.
TEST_F(RunDbTest, TheProbeIsAWholeZeroedBufferWithTheSerialNumber) {
    UserRecord record = Record(1);
    std::string detail(500, 'd');
    record.detail = detail.data();
    record.detail_len = static_cast<uint32_t>(detail.size());
    EXPECT_EQ(DOM_SetNormalOfflineRecordInfoToRunDB(&record), DOM_OK);
    EXPECT_EQ(DOM_DelNormalOfflineRecordInfoToRunDB(1), DOM_OK);
    const auto calls = fake::DbmCalls("DBM_RemoveAvlList");
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].key, WithNul(kNormal));
    EXPECT_EQ(calls[0].value_length, 65535u);
    std::string probe(65535, '\0');
    EXPECT_EQ(DOM_userrecord_tlv_EncodeUserRecordSerialNumberStlv(1, 65535, probe.data()), 12u);
    EXPECT_EQ(calls[0].value, probe);
}

// Unlike storing, removing asks the database also without a handle.
TEST_F(RunDbTest, RemovingFromAClosedDatabaseIsTheDatabasesFailure) {
    (void)DOM_DestroyRecordRunDB();
    fake::ClearDbmCalls();
    EXPECT_EQ(DOM_DelAbnormalOfflineRecordInfoToRunDB(1), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_DelNormalOfflineRecordInfoToRunDB(1), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_DelOnlineFailedRecordInfoToRunDB(1), DOM_ERR_FAILED);
    EXPECT_EQ(fake::DbmCalls("DBM_RemoveAvlList").size(), 3u);
}

TEST_F(RunDbTest, EachMaskBitClearsItsList) {
    const struct {
        uint32_t mask;
        Numbers left;
    } cases[] = {{1, {1, 1, 0}}, {2, {0, 1, 1}}, {4, {1, 0, 1}}, {6, {0, 0, 1}}, {7, {0, 0, 0}}};
    for (const auto& test : cases) {
        fake::DropDatabases();
        DOM_SetRecordRunDBHandle(DOM_CreateRecordRunDB());
        ASSERT_EQ(DOM_CreateAllRecordDBAvlList(), DOM_OK);
        OneRecordInEachList();
        EXPECT_EQ(DOM_ClearAllRecordInfoFromRunDB(test.mask), DOM_OK) << test.mask;
        EXPECT_EQ(Counts(), test.left) << test.mask;
    }
}

TEST_F(RunDbTest, ListsAreClearedInOrder) {
    EXPECT_EQ(DOM_ClearAllRecordInfoFromRunDB(7), DOM_OK);
    const auto calls = fake::DbmCalls();
    ASSERT_EQ(calls.size(), 3u);
    EXPECT_EQ(calls[0].key, WithNul(kAbnormal));
    EXPECT_EQ(calls[1].key, WithNul(kNormal));
    EXPECT_EQ(calls[2].key, WithNul(kOnlineFail));
}

TEST_F(RunDbTest, OnlyTheLastClearCounts) {
    for (int failing : {1, 2}) {
        fake::FailDbmCall(failing);
        EXPECT_EQ(DOM_ClearAllRecordInfoFromRunDB(7), DOM_OK) << failing;
    }
    fake::FailDbmCall(3);
    EXPECT_EQ(DOM_ClearAllRecordInfoFromRunDB(7), DOM_ERR_FAILED);
    fake::FailDbmCall(2);
    EXPECT_EQ(DOM_ClearAllRecordInfoFromRunDB(6), DOM_ERR_FAILED);
}

// Callers hand the mask on as their result: clearing nothing has no failure code.
TEST_F(RunDbTest, ClearingAClosedDatabaseGivesTheMask) {
    (void)DOM_DestroyRecordRunDB();
    fake::ClearDbmCalls();
    for (uint32_t mask : {0u, 1u, 7u, 8u, UINT32_MAX})
        EXPECT_EQ(DOM_ClearAllRecordInfoFromRunDB(mask), mask);
    EXPECT_TRUE(fake::DbmCalls().empty());
}

TEST_F(RunDbTest, AMaskWithoutAListGivesTheMask) {
    for (uint32_t mask : {0u, 8u, 0xFFFFFFF8u})
        EXPECT_EQ(DOM_ClearAllRecordInfoFromRunDB(mask), mask);
    EXPECT_TRUE(fake::DbmCalls().empty());
}

}  // namespace
}  // namespace aaadom
