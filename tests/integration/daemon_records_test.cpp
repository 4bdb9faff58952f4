// Record switches and backup methods through the daemon.
#include "daemon_process.h"

using namespace daemon_test;

namespace {

using DaemonRecords = DaemonTest;

std::vector<int> Switches() {
    const Answer answer = Ask(CodeAlone(DOM_MSG_REC_ENABLE_INFO), DOM_OP_GET);
    RecordSwitches switches{9, 9, 9, 9};
    if (answer.kind != DOM_REPLY_KIND_DATA ||
        DOM_userrecord_tlv_DecodeRecordEnableInfo(answer.body.get(), &switches) != DOM_OK) {
        return {};
    }
    return {switches.online_fail, switches.offline_all, switches.offline_normal,
            switches.offline_abnormal};
}

uint32_t BackupBits() {
    const Answer answer = Ask(CodeAlone(DOM_MSG_BACKUP_METHOD), DOM_OP_GET);
    uint32_t bits = kNoReply;
    if (answer.kind != DOM_REPLY_KIND_DATA) return kNoReply;
    (void)DOM_userrecord_tlv_DecodeBackupMethod(answer.body.get(), &bits);
    return bits;
}

uint32_t Switch(uint32_t code, uint32_t operation) {
    return Change(DOM_userrecord_tlv_EncodeRecordEnable(code), operation);
}

uint32_t Backup(uint32_t bits, uint32_t operation) {
    return Change(DOM_userrecord_tlv_EncodeBackupMethod(bits), operation);
}

TEST_F(DaemonRecords, EachCodeHasItsSwitch) {
    EXPECT_EQ(Switches(), (std::vector<int>{0, 0, 0, 0}));
    EXPECT_EQ(Switch(DOM_MSG_REC_EN_ONLINE_FAIL, DOM_OP_SET), DOM_OK);
    EXPECT_EQ(Switches(), (std::vector<int>{1, 0, 0, 0}));
    EXPECT_EQ(Switch(DOM_MSG_REC_EN_OFFLINE_ALL, DOM_OP_SET), DOM_OK);
    EXPECT_EQ(Switches(), (std::vector<int>{1, 1, 0, 0}));
    EXPECT_EQ(Switch(DOM_MSG_REC_EN_OFFLINE_NORMAL, DOM_OP_SET), DOM_OK);
    EXPECT_EQ(Switch(DOM_MSG_REC_EN_OFFLINE_ABNORMAL, DOM_OP_SET), DOM_OK);
    EXPECT_EQ(Switch(DOM_MSG_REC_EN_ONLINE_FAIL, DOM_OP_DELETE), DOM_OK);
    EXPECT_EQ(Switches(), (std::vector<int>{0, 1, 1, 1}));
}

// Applied like this it would not be saved, and gone after a restart.
TEST_F(DaemonRecords, AllSwitchesTogetherAreOnlyRead) {
    const RecordSwitches switches{1, 1, 1, 1};
    EXPECT_EQ(Change(DOM_userrecord_tlv_EncodeRecordEnableInfo(&switches)), AAAD_ERR_MALFORMED);
    EXPECT_EQ(Switches(), (std::vector<int>{0, 0, 0, 0}));
}

TEST_F(DaemonRecords, BackupMessageMarksWhatTheOperationSwitches) {
    EXPECT_EQ(BackupBits(), 0u);
    EXPECT_EQ(Backup(5, DOM_OP_SET), DOM_OK);
    EXPECT_EQ(BackupBits(), 5u);
    EXPECT_EQ(Backup(2, DOM_OP_SET), DOM_OK);
    EXPECT_EQ(BackupBits(), 7u);
    EXPECT_EQ(Backup(4, DOM_OP_DELETE), DOM_OK);
    EXPECT_EQ(BackupBits(), 3u);
}

TEST_F(DaemonRecords, BothSurviveSigkill) {
    ASSERT_EQ(Switch(DOM_MSG_REC_EN_OFFLINE_NORMAL, DOM_OP_SET), DOM_OK);
    ASSERT_EQ(Backup(6, DOM_OP_SET), DOM_OK);
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(Switches(), (std::vector<int>{0, 0, 1, 0}));
    EXPECT_EQ(BackupBits(), 6u);
    ASSERT_EQ(Switch(DOM_MSG_REC_EN_OFFLINE_NORMAL, DOM_OP_DELETE), DOM_OK);
    ASSERT_EQ(Backup(7, DOM_OP_DELETE), DOM_OK);
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(Switches(), (std::vector<int>{0, 0, 0, 0}));
    EXPECT_EQ(BackupBits(), 0u);
}

class DefaultsInDatabase {
  public:
    DefaultsInDatabase(const DaemonProcess& daemon, uint32_t enable, uint32_t backup) {
        EXPECT_EQ(DBM_SetRoot(daemon.StateDir().c_str(), daemon.RunDir().c_str()), 0u);
        const DBM_HANDLE handle = DOM_OpenDomainDBM();
        EXPECT_NE(handle, DBM_INVALID_HANDLE);
        DOM_SetDomainDBMHandle(handle);
        DOM_SetUserRecordEnableDefault(enable);
        DOM_SetUserRecordBackupMethodDefault(backup);
        EXPECT_EQ(DOM_SetRecordEnableSwitchOnToDB(), DOM_OK);
        EXPECT_EQ(DOM_SetRecordBackupMethodDefaultToDB(), DOM_OK);
        DOM_SetDomainDBMHandle(DBM_INVALID_HANDLE);
        EXPECT_EQ(DBM_Close(handle), 0u);
        DOM_SetUserRecordEnableDefault(0);
        DOM_SetUserRecordBackupMethodDefault(0);
    }
};

TEST_F(DaemonRecords, SavedDefaultsCountUntilAValueIsSaved) {
    ASSERT_EQ(daemon_.Terminate(), 0);
    const DefaultsInDatabase defaults(daemon_, 1, 3);
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(Switches(), (std::vector<int>{1, 1, 1, 1}));
    EXPECT_EQ(BackupBits(), 3u);
    ASSERT_EQ(Switch(DOM_MSG_REC_EN_OFFLINE_ALL, DOM_OP_DELETE), DOM_OK);
    ASSERT_EQ(Backup(1, DOM_OP_DELETE), DOM_OK);
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(Switches(), (std::vector<int>{1, 0, 1, 1}));
    EXPECT_EQ(BackupBits(), 2u);
}

}  // namespace
