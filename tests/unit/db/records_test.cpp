#include <aaadom/record_switches.h>
#include <aaadom/user_record.h>

#include "unit/db/config_db_fixture.h"

namespace aaadom {
namespace {

class SavedRecordsTest : public ConfigDbTest {
  protected:
    void TearDown() override {
        DOM_SetUserRecordEnableDefault(0);
        DOM_SetUserRecordBackupMethodDefault(0);
        ConfigDbTest::TearDown();
    }
    static fake::DbmCall OnlyCall() {
        const auto calls = fake::DbmCalls();
        EXPECT_EQ(calls.size(), 1u);
        return calls.empty() ? fake::DbmCall{} : calls[0];
    }
};

TEST_F(SavedRecordsTest, SwitchesAreStoredAsTheirMessage) {
    const RecordSwitches switches{1, 0, 1, 0};
    DOM_SetRecordEnableInfoAll(&switches);
    for (uint16_t operation : {1, 0}) {
        fake::ClearDbmCalls();
        EXPECT_EQ(Save(DOM_DB_RECORD_ENABLE, "", operation), DOM_OK);
        const fake::DbmCall call = OnlyCall();
        EXPECT_EQ(call.call, "DBM_SetBinary");
        EXPECT_EQ(call.key, std::string("AaaUserRecord\0", 14));
        EXPECT_EQ(call.key_length, 14u);
        EXPECT_EQ(call.index, -1);
        EXPECT_EQ(call.value_type, 11u);
        const TlvPtr expected(DOM_userrecord_tlv_EncodeRecordEnableInfo(&switches));
        EXPECT_EQ(call.value, fake::ImageOf(expected.get()));
    }
}

TEST_F(SavedRecordsTest, SwitchesAreReadBack) {
    const RecordSwitches switches{1, 0, 0, 1};
    DOM_SetRecordEnableInfoAll(&switches);
    ASSERT_EQ(Save(DOM_DB_RECORD_ENABLE), DOM_OK);
    RecordSwitches saved{};
    EXPECT_EQ(DOM_GetRecordEnableInfoFromDB(handle_, &saved), DOM_OK);
    EXPECT_EQ(memcmp(&saved, &switches, sizeof saved), 0);
    EXPECT_EQ(DOM_GetRecordEnableInfoFromDB(handle_, nullptr), DOM_ERR_FAILED);
}

TEST_F(SavedRecordsTest, SwitchesThatWereNeverSavedFail) {
    RecordSwitches saved{7, 7, 7, 7};
    EXPECT_EQ(DOM_GetRecordEnableInfoFromDB(handle_, &saved), DOM_ERR_FAILED);
    PutBinary("AaaUserRecord", 14, "", 11);
    EXPECT_EQ(DOM_GetRecordEnableInfoFromDB(handle_, &saved), DOM_ERR_FAILED);
    PutBinary("AaaUserRecord", 14, "no message", 11);
    EXPECT_EQ(DOM_GetRecordEnableInfoFromDB(handle_, &saved), DOM_ERR_FAILED);
    EXPECT_EQ(saved.online_fail, 7);
}

TEST_F(SavedRecordsTest, BackupMethodsAreStoredAsTheirMessage) {
    const BackupMethods methods{1, 0, 1};
    DOM_SetAAAUserRecordBackupMethod(&methods);
    for (uint16_t operation : {1, 0}) {
        fake::ClearDbmCalls();
        EXPECT_EQ(Save(DOM_DB_RECORD_BACKUP, "", operation), DOM_OK);
        const fake::DbmCall call = OnlyCall();
        EXPECT_EQ(call.call, "DBM_SetBinary");
        EXPECT_EQ(call.key, std::string("AaaUserRecordBackup\0", 20));
        EXPECT_EQ(call.key_length, 20u);
        EXPECT_EQ(call.index, -1);
        EXPECT_EQ(call.value_type, 38u);
        const TlvPtr expected(DOM_userrecord_tlv_EncodeBackupMethod(5));
        EXPECT_EQ(call.value, fake::ImageOf(expected.get()));
    }
}

TEST_F(SavedRecordsTest, BackupMethodsSetTheSavedFlagsAndLeaveTheOthers) {
    const BackupMethods methods{0, 1, 0};
    DOM_SetAAAUserRecordBackupMethod(&methods);
    ASSERT_EQ(Save(DOM_DB_RECORD_BACKUP), DOM_OK);
    BackupMethods saved{};
    EXPECT_EQ(DOM_GetRecordBackupInfoFromDBStruct(handle_, &saved), DOM_OK);
    EXPECT_EQ(memcmp(&saved, &methods, sizeof saved), 0);
    saved = {7, 7, 7};
    EXPECT_EQ(DOM_GetRecordBackupInfoFromDBStruct(handle_, &saved), DOM_OK);
    EXPECT_EQ(saved.online_fail, 7);
    EXPECT_EQ(saved.abnormal_offline, 1);
    EXPECT_EQ(saved.normal_offline, 7);
}

TEST_F(SavedRecordsTest, BackupMethodsThatWereNeverSavedFail) {
    BackupMethods saved{7, 7, 7};
    EXPECT_EQ(DOM_GetRecordBackupInfoFromDBStruct(handle_, &saved), DOM_ERR_FAILED);
    EXPECT_TRUE(fake::DbmCalls("DBM_GetBinary").empty()) << "the key is asked for first";
    PutBinary("AaaUserRecordBackup", 20, "", 38);
    EXPECT_EQ(DOM_GetRecordBackupInfoFromDBStruct(handle_, &saved), DOM_ERR_FAILED);
    PutBinary("AaaUserRecordBackup", 20, "no message", 38);
    EXPECT_EQ(DOM_GetRecordBackupInfoFromDBStruct(handle_, &saved), DOM_ERR_FAILED);
    EXPECT_EQ(saved.online_fail, 7);
    fake::ClearDbmCalls();
    EXPECT_EQ(DOM_GetRecordBackupInfoFromDBStruct(handle_, nullptr), DOM_ERR_FAILED);
    EXPECT_TRUE(fake::DbmCalls().empty());
}

TEST_F(SavedRecordsTest, EmptyFlushIsNeverStored) {
    for (uint32_t type : {DOM_DB_RECORD_ENABLE, DOM_DB_RECORD_BACKUP}) {
        fake::FailFlush();
        EXPECT_EQ(Save(type), DOM_ERR_FAILED);
        fake::FailAppend(1);
        EXPECT_EQ(Save(type), DOM_ERR_FAILED) << "no message";
        fake::FailAllocation(1);
        EXPECT_EQ(Save(type), DOM_ERR_FAILED);
        EXPECT_TRUE(fake::DbmCalls().empty());
        fake::DisarmFailures();
    }
}

TEST_F(SavedRecordsTest, DatabaseFailureFails) {
    fake::FailAllDbmCalls(true);
    EXPECT_EQ(Save(DOM_DB_RECORD_ENABLE), DOM_ERR_FAILED);
    EXPECT_EQ(Save(DOM_DB_RECORD_BACKUP), DOM_ERR_FAILED);
}

struct Default {
    const char* title;
    const char* key;
    uint32_t key_length;
    uint32_t value_type;
    void (*set)(uint32_t value);
    uint32_t (*save)();
    uint32_t (*load)(DBM_HANDLE handle);
};
class SavedDefault : public SavedRecordsTest, public ::testing::WithParamInterface<Default> {};

TEST_P(SavedDefault, IsStoredBigEndian) {
    GetParam().set(6);
    EXPECT_EQ(GetParam().save(), DOM_OK);
    const fake::DbmCall call = OnlyCall();
    EXPECT_EQ(call.call, "DBM_SetBinary");
    EXPECT_EQ(call.key, std::string(GetParam().key, GetParam().key_length));
    EXPECT_EQ(call.key[GetParam().key_length - 1], '\0');
    EXPECT_EQ(call.index, -1);
    EXPECT_EQ(call.value, std::string("\0\0\0\6", 4));
    EXPECT_EQ(call.value_type, GetParam().value_type);
    EXPECT_EQ(GetParam().load(handle_), 6u);
}

TEST_P(SavedDefault, IsReadBigEndian) {
    PutBinary(GetParam().key, GetParam().key_length, "\x01\x02\x03\x84", GetParam().value_type);
    EXPECT_EQ(GetParam().load(handle_), 0x01020384u);
}

TEST_P(SavedDefault, MissingOrShortIsZero) {
    EXPECT_EQ(GetParam().load(handle_), 0u);
    PutBinary(GetParam().key, GetParam().key_length, "\x01\x02\x03", GetParam().value_type);
    EXPECT_EQ(GetParam().load(handle_), 0u);
    EXPECT_EQ(GetParam().load(DBM_INVALID_HANDLE), 0u);
}

TEST_P(SavedDefault, DatabaseFailureFails) {
    fake::FailAllDbmCalls(true);
    EXPECT_EQ(GetParam().save(), DOM_ERR_FAILED);
}

// Value types of their own, but no objects: DOM_SetDataToDB refuses them.
TEST_P(SavedDefault, IsNoObjectOfAChange) {
    EXPECT_EQ(Save(GetParam().value_type), DOM_ERR_FAILED);
    EXPECT_TRUE(fake::DbmCalls().empty());
}

INSTANTIATE_TEST_SUITE_P(Defaults, SavedDefault,
                         ::testing::Values(Default{"Enable", "AaaUserRecordSwitchOn", 22, 12,
                                                   DOM_SetUserRecordEnableDefault,
                                                   DOM_SetRecordEnableSwitchOnToDB,
                                                   DOM_GetUserRecordEnableDefaultFromDB},
                                           Default{"Backup", "AaaUserRecordBackupDefault", 27, 39,
                                                   DOM_SetUserRecordBackupMethodDefault,
                                                   DOM_SetRecordBackupMethodDefaultToDB,
                                                   DOM_GetRecordBackupMethodDefaultFromDB}),
                         [](const auto& info) { return info.param.title; });

}  // namespace
}  // namespace aaadom
