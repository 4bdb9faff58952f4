#include <aaadom/record_switches.h>
#include <aaadom/user_record.h>

#include "unit/codec/restore_fixture.h"

namespace aaadom {
namespace {

class RestoreRecordsTest : public RestoreTest {
  protected:
    static std::string Switches() {
        return std::to_string(DOM_GetOnlineFailRecordEnableInfo()) +
               std::to_string(DOM_GetOfflineAllRecordEnableInfo()) +
               std::to_string(DOM_GetOfflineNormalRecordEnableInfo()) +
               std::to_string(DOM_GetOfflineAbnormalRecordEnableInfo());
    }
    static std::string Methods() {
        BackupMethods methods{};
        DOM_GetAAAUserRecordBackupMethod(&methods);
        return std::to_string(methods.online_fail) + std::to_string(methods.abnormal_offline) +
               std::to_string(methods.normal_offline);
    }
    static void SetMethods(uint16_t a, uint16_t b, uint16_t c) {
        const BackupMethods methods{a, b, c};
        DOM_SetAAAUserRecordBackupMethod(&methods);
    }
};

struct SwitchCode {
    uint32_t code;
    const char* on;
};
class RecordSwitchCode : public RestoreRecordsTest,
                         public ::testing::WithParamInterface<SwitchCode> {};

TEST_P(RecordSwitchCode, SwitchesOnAndOff) {
    EXPECT_EQ(Set(CodeAlone(GetParam().code)), DOM_OK);
    EXPECT_EQ(Switches(), GetParam().on);
    EXPECT_EQ(Delete(CodeAlone(GetParam().code)), DOM_OK);
    EXPECT_EQ(Switches(), "0000");
    EXPECT_TRUE(fake::DbmCalls().empty());
}

TEST_P(RecordSwitchCode, BothOperationsAreSavedAsTheSwitches) {
    EXPECT_EQ(Set(CodeAlone(GetParam().code), 1), DOM_OK);
    RecordSwitches saved{};
    EXPECT_EQ(DOM_GetRecordEnableInfoFromDB(handle_, &saved), DOM_OK);
    EXPECT_EQ(saved.online_fail + saved.offline_all + saved.offline_normal + saved.offline_abnormal,
              1);
    EXPECT_EQ(Delete(CodeAlone(GetParam().code), 1), DOM_OK);
    EXPECT_EQ(DOM_GetRecordEnableInfoFromDB(handle_, &saved), DOM_OK);
    EXPECT_EQ(saved.online_fail + saved.offline_all + saved.offline_normal + saved.offline_abnormal,
              0);
    const auto calls = fake::DbmCalls("DBM_SetBinary");
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_EQ(calls[1].value_type, 11u);
    EXPECT_STREQ(name1_, "untouched");
}

INSTANTIATE_TEST_SUITE_P(Codes, RecordSwitchCode,
                         ::testing::Values(SwitchCode{77, "1000"}, SwitchCode{78, "0100"},
                                           SwitchCode{79, "0010"}, SwitchCode{80, "0001"}));

TEST_F(RestoreRecordsTest, AllSwitchesAreTakenFromTheMessageByBothOperations) {
    const RecordSwitches switches{1, 0, 1, 0};
    EXPECT_EQ(Set(DOM_userrecord_tlv_EncodeRecordEnableInfo(&switches)), DOM_OK);
    EXPECT_EQ(Switches(), "1010");
    const RecordSwitches others{0, 1, 0, 1};
    EXPECT_EQ(Delete(DOM_userrecord_tlv_EncodeRecordEnableInfo(&others)), DOM_OK);
    EXPECT_EQ(Switches(), "0101");
}

TEST_F(RestoreRecordsTest, SwitchMissingFromTheMessageIsOff) {
    const RecordSwitches switches{1, 1, 1, 1};
    DOM_SetRecordEnableInfoAll(&switches);
    TLV_MSG* body = CodeAlone(DOM_MSG_REC_ENABLE_INFO);
    AAA_AppendUSHORTTlvData(body, DOM_TLV_SWITCH_OFFLINE_NORMAL, 1);
    EXPECT_EQ(Set(body), DOM_OK);
    EXPECT_EQ(Switches(), "0010");
}

TEST_F(RestoreRecordsTest, UndecodableSwitchesChangeNothing) {
    const RecordSwitches switches{1, 1, 1, 1};
    DOM_SetRecordEnableInfoAll(&switches);
    TLV_MSG* body = CodeAlone(DOM_MSG_REC_ENABLE_INFO);
    const char too_short = 0;
    TLV_Append_Data(body, DOM_TLV_SWITCH_OFFLINE_NORMAL, 1, &too_short);
    EXPECT_EQ(Set(body), DOM_ERR_FAILED);
    EXPECT_EQ(Switches(), "1111");
}

TEST_F(RestoreRecordsTest, AllSwitchesHaveNoSavedForm) {
    const RecordSwitches switches{1, 0, 1, 0};
    EXPECT_EQ(Set(DOM_userrecord_tlv_EncodeRecordEnableInfo(&switches), 1), DOM_ERR_FAILED);
    EXPECT_EQ(Switches(), "1010");
    EXPECT_TRUE(fake::DbmCalls().empty());
}

TEST_F(RestoreRecordsTest, MarkedBackupFlagsAreSetTheOthersStay) {
    SetMethods(1, 0, 0);
    EXPECT_EQ(Set(DOM_userrecord_tlv_EncodeBackupMethod(2)), DOM_OK);
    EXPECT_EQ(Methods(), "110");
    EXPECT_EQ(Set(DOM_userrecord_tlv_EncodeBackupMethod(4)), DOM_OK);
    EXPECT_EQ(Methods(), "111");
}

TEST_F(RestoreRecordsTest, MarkedBackupFlagsAreClearedTheOthersStay) {
    SetMethods(1, 1, 1);
    EXPECT_EQ(Delete(DOM_userrecord_tlv_EncodeBackupMethod(2)), DOM_OK);
    EXPECT_EQ(Methods(), "101");
    EXPECT_EQ(Delete(DOM_userrecord_tlv_EncodeBackupMethod(7)), DOM_OK);
    EXPECT_EQ(Methods(), "000");
}

TEST_F(RestoreRecordsTest, FlagThatIsNotMarkedKeepsEvenAnOddValue) {
    SetMethods(7, 1, 1);
    EXPECT_EQ(Set(DOM_userrecord_tlv_EncodeBackupMethod(6)), DOM_OK);
    EXPECT_EQ(Methods(), "711");
}

TEST_F(RestoreRecordsTest, BackupMethodsWithoutMarksChangeNothing) {
    SetMethods(1, 0, 1);
    EXPECT_EQ(Set(CodeAlone(DOM_MSG_BACKUP_METHOD)), DOM_OK);
    EXPECT_EQ(Delete(DOM_userrecord_tlv_EncodeBackupMethod(0)), DOM_OK);
    EXPECT_EQ(Methods(), "101");
}

TEST_F(RestoreRecordsTest, BackupMethodsAreSavedByBothOperations) {
    EXPECT_EQ(Set(DOM_userrecord_tlv_EncodeBackupMethod(5), 1), DOM_OK);
    BackupMethods saved{};
    EXPECT_EQ(DOM_GetRecordBackupInfoFromDBStruct(handle_, &saved), DOM_OK);
    EXPECT_EQ(saved.online_fail, 1);
    EXPECT_EQ(saved.abnormal_offline, 0);
    EXPECT_EQ(saved.normal_offline, 1);
    EXPECT_EQ(Delete(DOM_userrecord_tlv_EncodeBackupMethod(1), 1), DOM_OK);
    saved = {};
    EXPECT_EQ(DOM_GetRecordBackupInfoFromDBStruct(handle_, &saved), DOM_OK);
    EXPECT_EQ(saved.online_fail, 0);
    EXPECT_EQ(saved.normal_offline, 1);
    const auto calls = fake::DbmCalls("DBM_SetBinary");
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_EQ(calls[0].value_type, 38u);
    EXPECT_STREQ(name1_, "untouched");
}

TEST_F(RestoreRecordsTest, DatabaseFailureIsTheResult) {
    fake::FailAllDbmCalls(true);
    EXPECT_EQ(Set(CodeAlone(DOM_MSG_REC_EN_ONLINE_FAIL), 1), DOM_ERR_FAILED);
    EXPECT_EQ(Switches(), "1000");
    EXPECT_EQ(Set(DOM_userrecord_tlv_EncodeBackupMethod(2), 1), DOM_ERR_FAILED);
    EXPECT_EQ(Methods(), "010");
}

TEST_F(RestoreRecordsTest, SwitchesOfTheOtherRoleStay) {
    EXPECT_EQ(Set(CodeAlone(DOM_MSG_REC_EN_ONLINE_FAIL)), DOM_OK);
    EXPECT_EQ(Set(DOM_userrecord_tlv_EncodeBackupMethod(7)), DOM_OK);
    EXPECT_EQ(fake::InRole(fake::kWorkingRole, [] { return Switches(); }), "0000");
    EXPECT_EQ(fake::InRole(fake::kWorkingRole, [] { return Methods(); }), "000");
}

}  // namespace
}  // namespace aaadom
