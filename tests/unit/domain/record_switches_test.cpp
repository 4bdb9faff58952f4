#include <aaadom/codes.h>
#include <aaadom/record_switches.h>

#include <array>
#include <optional>

#include "base/message.h"
#include "unit/domain/lock_wait.h"
#include "unit/domain/tables_fixture.h"

namespace aaadom {
namespace {

using Switches = std::array<uint32_t, 4>;

class RecordSwitchTest : public TablesTest {
  protected:
    ~RecordSwitchTest() override {
        DOM_SetUserRecordEnableDefault(0);
        DOM_SetUserRecordRecoverFlag(0);
    }
    static Switches Read() {
        return {DOM_GetOnlineFailRecordEnableInfo(), DOM_GetOfflineAllRecordEnableInfo(),
                DOM_GetOfflineNormalRecordEnableInfo(), DOM_GetOfflineAbnormalRecordEnableInfo()};
    }
    static void Set(uint16_t online, uint16_t all, uint16_t normal, uint16_t abnormal) {
        const RecordSwitches switches{online, all, normal, abnormal};
        DOM_SetRecordEnableInfoAll(&switches);
    }
    /// The switches of both roles after an initialisation with a default.
    static std::array<Switches, 2> AfterInitWith(uint32_t value) {
        fake::FiniBothRoles();
        DOM_SetUserRecordEnableDefault(value);
        EXPECT_EQ(fake::InitBothRoles(), 0u);
        return {Read(), InConfig([] { return Read(); })};
    }
};

TEST_F(RecordSwitchTest, DefaultOf1TurnsAllFourOnAtInit) {
    const auto read = AfterInitWith(1);
    EXPECT_EQ(read[0], (Switches{1, 1, 1, 1}));
    EXPECT_EQ(read[1], (Switches{1, 1, 1, 1}));
}

TEST_F(RecordSwitchTest, EveryOtherDefaultTurnsAllFourOffAtInit) {
    for (const uint32_t value : {0u, 2u, 0x10001u, 0xFFFFFFFFu}) {
        const auto read = AfterInitWith(value);
        EXPECT_EQ(read[0], (Switches{0, 0, 0, 0})) << value;
        EXPECT_EQ(read[1], (Switches{0, 0, 0, 0})) << value;
    }
}

TEST_F(RecordSwitchTest, DefaultIsStoredAsGivenAndLeavesTheSwitches) {
    for (const uint32_t value : {1u, 2u, 0xFFFFFFFFu, 0u}) {
        DOM_SetUserRecordEnableDefault(value);
        EXPECT_EQ(DOM_GetUserRecordEnableDefault(), value);
        EXPECT_EQ(Read(), (Switches{0, 0, 0, 0}));
    }
}

TEST_F(RecordSwitchTest, EachCodeSetsItsOwnSwitch) {
    for (uint32_t i = 0; i < 4; ++i) {
        Set(0, 0, 0, 0);
        EXPECT_EQ(DOM_SetRecordEnableInfo(77 + i, 1), DOM_OK);
        Switches want{};
        want[i] = 1;
        EXPECT_EQ(Read(), want) << "code " << 77 + i;
    }
}

TEST_F(RecordSwitchTest, OtherCodesFailAndChangeNothing) {
    Set(1, 0, 1, 0);
    for (const uint32_t code : {0u, 54u, 76u, 81u, 164u, 0xFFFFFFFFu, 0x1004Du}) {
        EXPECT_EQ(DOM_SetRecordEnableInfo(code, 1), DOM_ERR_FAILED) << code;
        EXPECT_EQ(Read(), (Switches{1, 0, 1, 0}));
    }
}

TEST_F(RecordSwitchTest, ValueIsStoredAsGiven) {
    EXPECT_EQ(DOM_SetRecordEnableInfo(78, 2), DOM_OK);
    EXPECT_EQ(DOM_GetOfflineAllRecordEnableInfo(), 2u);
    EXPECT_EQ(DOM_SetRecordEnableInfo(78, 0xFFFF), DOM_OK);
    EXPECT_EQ(DOM_GetOfflineAllRecordEnableInfo(), 0xFFFFu);
}

TEST_F(RecordSwitchTest, AllAreCopiedInTheirOrder) {
    Set(1, 2, 3, 4);
    EXPECT_EQ(Read(), (Switches{1, 2, 3, 4}));
}

TEST_F(RecordSwitchTest, NullSwitchesChangeNothing) {
    Set(1, 2, 3, 4);
    DOM_SetRecordEnableInfoAll(nullptr);
    EXPECT_EQ(Read(), (Switches{1, 2, 3, 4}));
}

TEST_F(RecordSwitchTest, SwitchesAreTheCallingRoles) {
    Set(1, 0, 0, 0);
    InConfig([] {
        EXPECT_EQ(Read(), (Switches{0, 0, 0, 0}));
        return DOM_SetRecordEnableInfo(80, 1);
    });
    EXPECT_EQ(Read(), (Switches{1, 0, 0, 0}));
    EXPECT_EQ(InConfig([] { return Read(); }), (Switches{0, 0, 0, 1}));
}

TEST_F(RecordSwitchTest, AnySwitchThatIs1KeepsRecords) {
    EXPECT_EQ(DOM_GetOnlineOffLineRecordEnableInfo(), 0u);
    for (uint32_t code = 77; code <= 80; ++code) {
        Set(0, 0, 0, 0);
        DOM_SetRecordEnableInfo(code, 1);
        EXPECT_EQ(DOM_GetOnlineOffLineRecordEnableInfo(), 1u) << code;
    }
}

TEST_F(RecordSwitchTest, OtherValuesThan1KeepNoRecords) {
    Set(2, 3, 0xFFFF, 0x0100);
    EXPECT_EQ(DOM_GetOnlineOffLineRecordEnableInfo(), 0u);
}

TEST_F(RecordSwitchTest, MessageCarriesTheCallingRolesSwitches) {
    Set(9, 9, 9, 9);
    InConfig([] {
        Set(1, 2, 3, 4);
        const TlvPtr msg(DOM_GetAllRecordEnableInfo());
        EXPECT_EQ(FindTlv(msg.get(), DOM_TLV_MSG_CODE).U32(), uint32_t{DOM_MSG_REC_ENABLE_INFO});
        RecordSwitches read{};
        EXPECT_EQ(DOM_userrecord_tlv_DecodeRecordEnableInfo(msg.get(), &read), DOM_OK);
        EXPECT_EQ(read.online_fail, 1);
        EXPECT_EQ(read.offline_all, 2);
        EXPECT_EQ(read.offline_normal, 3);
        EXPECT_EQ(read.offline_abnormal, 4);
        return 0;
    });
}

TEST_F(RecordSwitchTest, MessageWithoutMemoryIsNull) {
    fake::FailMessage(1);
    EXPECT_EQ(DOM_GetAllRecordEnableInfo(), nullptr);
    EXPECT_EQ(fake::HeldLocks(), 0);
}

TEST_F(RecordSwitchTest, EveryReaderAndWriterTakesOneLock) {
    const auto locks = [](auto&& operation) {
        const uint64_t before = fake::Count(fake::Event::kLock);
        operation();
        EXPECT_EQ(fake::HeldLocks(), 0);
        return fake::Count(fake::Event::kLock) - before;
    };
    EXPECT_EQ(locks([] { TLV_Destroy(DOM_GetAllRecordEnableInfo()); }), 1u);
    EXPECT_EQ(locks([] { DOM_GetOnlineFailRecordEnableInfo(); }), 1u);
    EXPECT_EQ(locks([] { DOM_GetOfflineAllRecordEnableInfo(); }), 1u);
    EXPECT_EQ(locks([] { DOM_GetOfflineNormalRecordEnableInfo(); }), 1u);
    EXPECT_EQ(locks([] { DOM_GetOfflineAbnormalRecordEnableInfo(); }), 1u);
    EXPECT_EQ(locks([] { DOM_GetOnlineOffLineRecordEnableInfo(); }), 1u);
    EXPECT_EQ(locks([] { DOM_SetRecordEnableInfo(77, 1); }), 1u);
    EXPECT_EQ(locks([] { DOM_SetRecordEnableInfo(81, 1); }), 1u);
    EXPECT_EQ(locks([] { Set(0, 0, 0, 0); }), 1u);
    EXPECT_EQ(locks([] { DOM_SetUserRecordEnableDefault(0); }), 0u);
    EXPECT_EQ(locks([] { DOM_GetUserRecordEnableDefault(); }), 0u);
    EXPECT_EQ(locks([] { DOM_SetUserRecordRecoverFlag(0); }), 0u);
    EXPECT_EQ(locks([] { DOM_GetUserRecordRecoverFlag(); }), 0u);
}

// A reader would hang here if it took the write side.
TEST_F(RecordSwitchTest, ReadersShareTheLock) {
    RwLock& lock = SwitchesOf(Role::kWorking).lock;
    ReadGuard reading(lock);
    Read();
    DOM_GetOnlineOffLineRecordEnableInfo();
    TLV_Destroy(DOM_GetAllRecordEnableInfo());
    EXPECT_EQ(pthread_rwlock_trywrlock(&lock.Native()), EBUSY);
}

TEST_F(RecordSwitchTest, WritersWaitForReaders) {
    pthread_rwlock_t& lock = SwitchesOf(Role::kWorking).lock.Native();
    EXPECT_TRUE(WaitsForReaders(lock, [] { Set(1, 2, 3, 4); }));
    EXPECT_EQ(Read(), (Switches{1, 2, 3, 4}));
    EXPECT_TRUE(WaitsForReaders(lock, [] { (void)DOM_SetRecordEnableInfo(77, 9); }));
    EXPECT_EQ(Read(), (Switches{9, 2, 3, 4}));
}

TEST_F(RecordSwitchTest, RecoverFlagIsTheProcesses) {
    DOM_SetUserRecordRecoverFlag(0xFFFF);
    EXPECT_EQ(DOM_GetUserRecordRecoverFlag(), 0xFFFFu);
    EXPECT_EQ(InConfig([] { return DOM_GetUserRecordRecoverFlag(); }), 0xFFFFu);
    DOM_SetUserRecordRecoverFlag(0);
    EXPECT_EQ(DOM_GetUserRecordRecoverFlag(), 0u);
}

}  // namespace
}  // namespace aaadom
