#include <aaadom/results.h>
#include <aaadom/service.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

#include "base/message.h"
#include "base/role.h"
#include "fakes/fake_platform.h"
#include "fakes/role.h"

namespace {

using aaadom::CurrentRole;
using aaadom::MessageBuilder;
using aaadom::Role;

struct Calls {
    std::vector<uint64_t> arguments;
    TLV_MSG* msg = nullptr;
    int64_t live_messages = 0;  // while slot 14 runs
    uint32_t result = 0;
    uint32_t role = 0;
} calls;

class Service : public testing::Test {
  protected:
    Service() {
        fake::Reset();
        calls = Calls{};
        DOM_ResetAAADService();
    }
    ~Service() override {
        DOM_ResetAAADService();
        EXPECT_EQ(fake::LiveMessages(), 0);
    }

    static AAADService Table() {
        AAADService table{};
        table.real_sync_msg = [](TLV_MSG* msg) {
            calls.arguments = {0};
            calls.msg = msg;
            return calls.result;
        };
        table.cfg_real_sync_to_slave = [](TLV_MSG* msg) {
            calls.arguments = {10};
            calls.msg = msg;
            return calls.result;
        };
        table.sync_msg_to_cfg_thr = [](uint32_t kind, uint32_t four, TLV_MSG* msg) {
            calls.arguments = {12, kind, four};
            calls.msg = msg;
            return calls.result;
        };
        table.is_cfg_thread = [] { return calls.role; };
        table.cfg_thr_msg_to_pam = [](uint32_t channel, TLV_MSG* msg) {
            calls.arguments = {14, channel};
            calls.msg = msg;
            calls.live_messages = fake::LiveMessages();
            return calls.result;
        };
        table.record_thread_init = [] {
            calls.arguments = {19};
            return calls.result;
        };
        return table;
    }
    static void Install() {
        AAADService table = Table();
        DOM_SetAAADService(&table);
        table = AAADService{};  // the library has its own copy
    }
    static TLV_MSG* Message() { return MessageBuilder(1).Build(); }
};

TEST_F(Service, TableIsTwentyOneSlotsInOrder) {
    EXPECT_EQ(sizeof(AAADService), 21 * sizeof(void*));
    EXPECT_EQ(offsetof(AAADService, cfg_real_sync_to_slave), 10 * sizeof(void*));
    EXPECT_EQ(offsetof(AAADService, sync_msg_to_cfg_thr), 12 * sizeof(void*));
    EXPECT_EQ(offsetof(AAADService, is_cfg_thread), 13 * sizeof(void*));
    EXPECT_EQ(offsetof(AAADService, cfg_thr_msg_to_pam), 14 * sizeof(void*));
    EXPECT_EQ(offsetof(AAADService, record_thread_init), 19 * sizeof(void*));
}

TEST_F(Service, WithoutATableEveryThreadIsOfTheWorkingRole) {
    EXPECT_EQ(DOM_IsCfgThread(), 0u);
    EXPECT_EQ(CurrentRole(), Role::kWorking);
}

TEST_F(Service, RoleAnswerIsPassedOnWhole) {
    Install();
    calls.role = 0xABCD0002;
    EXPECT_EQ(DOM_IsCfgThread(), 0xABCD0002u);
}

TEST_F(Service, OnlyTheLowSixteenBitsMakeTheRole) {
    Install();
    calls.role = 0x10001;
    EXPECT_EQ(CurrentRole(), Role::kConfig);
    calls.role = 0x10000;
    EXPECT_EQ(CurrentRole(), Role::kWorking);
    calls.role = 2;
    EXPECT_EQ(CurrentRole(), Role::kWorking);
}

TEST_F(Service, InstallingAgainOverwrites) {
    Install();
    AAADService empty{};
    DOM_SetAAADService(&empty);
    calls.role = 1;
    EXPECT_EQ(DOM_IsCfgThread(), 0u);
}

TEST_F(Service, NullTableChangesNothing) {
    Install();
    calls.role = 1;
    DOM_SetAAADService(nullptr);
    EXPECT_EQ(DOM_IsCfgThread(), 1u);
}

TEST_F(Service, RealSyncWithoutSlotKeepsTheMessage) {
    TLV_MSG* msg = Message();
    EXPECT_EQ(DOM_SendRealSyncMsg(msg), DOM_ERR_FAILED);
    EXPECT_EQ(fake::LiveMessages(), 1);
    TLV_Destroy(msg);
}

TEST_F(Service, RealSyncPassesMessageAndResult) {
    Install();
    TLV_MSG* msg = Message();
    calls.result = 77;
    EXPECT_EQ(DOM_SendRealSyncMsg(msg), 77u);
    EXPECT_EQ(calls.arguments, (std::vector<uint64_t>{0}));
    EXPECT_EQ(calls.msg, msg);
    EXPECT_EQ(fake::LiveMessages(), 1);
    TLV_Destroy(msg);
}

TEST_F(Service, RealSyncFailsAfterReset) {
    Install();
    DOM_ResetAAADService();
    TLV_MSG* msg = Message();
    EXPECT_EQ(DOM_SendRealSyncMsg(msg), DOM_ERR_FAILED);
    TLV_Destroy(msg);
}

TEST_F(Service, ResetEmptiesEverySlot) {
    Install();
    calls.role = 1;
    DOM_ResetAAADService();
    EXPECT_EQ(DOM_IsCfgThread(), 0u);
    TLV_MSG* msg = Message();
    EXPECT_EQ(DOM_CfgRealSyncToSlave(msg), DOM_ERR_FAILED);
    TLV_Destroy(msg);
    EXPECT_EQ(DOM_SendSyncMSgToCfgThr(1, Message()), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_CfgThrSendMsgToPam(1, Message()), DOM_ERR_FAILED);
    EXPECT_TRUE(calls.arguments.empty());
}

TEST_F(Service, NullMessagesDoNotCrashWithoutSlots) {
    EXPECT_EQ(DOM_SendRealSyncMsg(nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_CfgRealSyncToSlave(nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_SendSyncMSgToCfgThr(1, nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_CfgThrSendMsgToPam(1, nullptr), DOM_ERR_FAILED);
}

TEST_F(Service, ToSlaveWithoutSlotKeepsTheMessage) {
    TLV_MSG* msg = Message();
    EXPECT_EQ(DOM_CfgRealSyncToSlave(msg), DOM_ERR_FAILED);
    EXPECT_EQ(fake::LiveMessages(), 1);
    TLV_Destroy(msg);
}

TEST_F(Service, ToSlaveLeavesTheMessageToTheCaller) {
    Install();
    TLV_MSG* msg = Message();
    calls.result = 5;
    EXPECT_EQ(DOM_CfgRealSyncToSlave(msg), 5u);
    EXPECT_EQ(calls.arguments, (std::vector<uint64_t>{10}));
    EXPECT_EQ(fake::LiveMessages(), 1);
    TLV_Destroy(msg);
}

TEST_F(Service, ToCfgThreadWithoutSlotDestroysTheMessage) {
    EXPECT_EQ(DOM_SendSyncMSgToCfgThr(7, Message()), DOM_ERR_FAILED);
    EXPECT_EQ(fake::LiveMessages(), 0);
}

TEST_F(Service, ToCfgThreadHandsTheMessageOverWithTheConstantFour) {
    Install();
    TLV_MSG* msg = Message();
    calls.result = 9;
    EXPECT_EQ(DOM_SendSyncMSgToCfgThr(7, msg), 9u);
    EXPECT_EQ(calls.arguments, (std::vector<uint64_t>{12, 7, 4}));
    EXPECT_EQ(calls.msg, msg);
    EXPECT_EQ(fake::LiveMessages(), 1);  // the slot's now
    TLV_Destroy(msg);
}

TEST_F(Service, ToPamWithoutSlotDestroysTheMessage) {
    EXPECT_EQ(DOM_CfgThrSendMsgToPam(3, Message()), DOM_ERR_FAILED);
    EXPECT_EQ(fake::LiveMessages(), 0);
}

TEST_F(Service, ToPamDestroysTheMessageAfterTheSlot) {
    Install();
    calls.result = 8;
    TLV_MSG* msg = Message();
    EXPECT_EQ(DOM_CfgThrSendMsgToPam(3, msg), 8u);
    EXPECT_EQ(calls.arguments, (std::vector<uint64_t>{14, 3}));
    EXPECT_EQ(calls.msg, msg);
    EXPECT_EQ(calls.live_messages, 1);
    EXPECT_EQ(fake::LiveMessages(), 0);
}

TEST_F(Service, RecordThreadPassesTheResult) {
    Install();
    calls.result = 3;
    EXPECT_EQ(DOM_RecordThreadInit(), 3u);
    EXPECT_EQ(calls.arguments, (std::vector<uint64_t>{19}));
}

// Starting the record thread without a daemon must show at once; a test of the slot would hide it.
TEST_F(Service, RecordThreadWithoutSlotIsNotTested) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_DEATH(DOM_RecordThreadInit(), "");
}

TEST_F(Service, BatchWithNegativeDescriptorGoesToTheCfgThreadFromEveryRole) {
    Install();
    for (uint32_t role : {0u, 1u}) {
        calls.role = role;
        calls.result = 21;
        TLV_MSG* msg = Message();
        EXPECT_EQ(DOM_BatchSyncCfgType(msg, -1), 21u);
        EXPECT_EQ(calls.arguments, (std::vector<uint64_t>{12, 5, 4}));
        EXPECT_EQ(calls.msg, msg);
        TLV_Destroy(msg);
    }
}

TEST_F(Service, BatchOnTheCfgThreadGoesToPam) {
    Install();
    calls.role = 1;
    calls.result = 22;
    EXPECT_EQ(DOM_BatchSyncCfgType(Message(), 6), 22u);
    EXPECT_EQ(calls.arguments, (std::vector<uint64_t>{14, 6}));
    EXPECT_EQ(fake::LiveMessages(), 0);
}

TEST_F(Service, BatchOnAWorkingThreadIsWrittenToTheDescriptor) {
    Install();
    fake::SetFlushResult(1);
    EXPECT_EQ(DOM_BatchSyncCfgType(Message(), 6), DOM_OK);
    auto flushes = fake::FlushCalls();
    ASSERT_EQ(flushes.size(), 1u);
    EXPECT_EQ(flushes[0].fd, 6);
    EXPECT_EQ(flushes[0].wait, 0xEA60u);
    EXPECT_EQ(fake::LiveMessages(), 0);
}

TEST_F(Service, BatchDescriptorZeroIsADescriptor) {
    Install();
    EXPECT_EQ(DOM_BatchSyncCfgType(Message(), 0), DOM_OK);
    ASSERT_EQ(fake::FlushCalls().size(), 1u);
    EXPECT_EQ(fake::FlushCalls()[0].fd, 0);
    EXPECT_TRUE(calls.arguments.empty());
}

TEST_F(Service, BatchWriteSucceedsByTheLowSixteenBits) {
    fake::SetFlushResult(0x20001);
    EXPECT_EQ(DOM_BatchSyncCfgType(Message(), 6), DOM_OK);
    fake::SetFlushResult(0x20000);
    EXPECT_EQ(DOM_BatchSyncCfgType(Message(), 6), DOM_ERR_FAILED);
    EXPECT_EQ(fake::LiveMessages(), 0);
}

TEST_F(Service, BatchWithoutMessageFails) {
    EXPECT_EQ(DOM_BatchSyncCfgType(nullptr, 6), DOM_ERR_FAILED);
    EXPECT_TRUE(fake::FlushCalls().empty());
}

}  // namespace
