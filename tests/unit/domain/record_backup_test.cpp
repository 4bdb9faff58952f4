#include <aaadom/record_switches.h>

#include <array>

#include "unit/domain/lock_wait.h"
#include "unit/domain/tables_fixture.h"

namespace aaadom {
namespace {

using Flags = std::array<uint32_t, 3>;

class RecordBackup : public TablesTest {
  protected:
    ~RecordBackup() override { DOM_SetUserRecordBackupMethodDefault(0); }
    static Flags Read() {
        BackupMethods methods{};
        DOM_GetAAAUserRecordBackupMethod(&methods);
        return {methods.online_fail, methods.abnormal_offline, methods.normal_offline};
    }
    static void Set(uint16_t online, uint16_t abnormal, uint16_t normal) {
        const BackupMethods methods{online, abnormal, normal};
        DOM_SetAAAUserRecordBackupMethod(&methods);
    }
};

TEST_F(RecordBackup, DefaultsUpTo7AreKeptAndLargerOnesBecome0) {
    for (uint32_t value = 0; value <= 7; ++value) {
        DOM_SetUserRecordBackupMethodDefault(value);
        EXPECT_EQ(DOM_GetUserRecordBackupMethodDefault(), value);
    }
    for (const uint32_t value : {8u, 9u, 15u, 0xFFFFFFFFu}) {
        DOM_SetUserRecordBackupMethodDefault(7);
        DOM_SetUserRecordBackupMethodDefault(value);
        EXPECT_EQ(DOM_GetUserRecordBackupMethodDefault(), 0u) << value;
    }
}

TEST_F(RecordBackup, FlagsStartFromTheBitsOfTheDefault) {
    fake::FiniBothRoles();
    for (uint32_t value = 0; value <= 7; ++value) {
        DOM_SetUserRecordBackupMethodDefault(value);
        ASSERT_EQ(fake::InitBothRoles(), 0u);
        const Flags want{value & 1, (value >> 1) & 1, (value >> 2) & 1};
        EXPECT_EQ(Read(), want) << value;
        EXPECT_EQ(InConfig([] { return Read(); }), want) << value;
        fake::FiniBothRoles();
    }
    ASSERT_EQ(fake::InitBothRoles(), 0u);
}

TEST_F(RecordBackup, InitThatCannotMakeTheLockKeepsTheFlags) {
    Set(1, 2, 3);
    DOM_SetUserRecordBackupMethodDefault(4);
    pthread_rwlock_destroy(&BackupOf(Role::kWorking).lock.Native());
    fake::FailLockInit(1);
    EXPECT_EQ(DOM_InitRecordBackupInfo(), DOM_ERR_FAILED);
    fake::DisarmFailures();
    const BackupMethods& methods = BackupOf(Role::kWorking).methods;
    EXPECT_EQ(methods.online_fail, 1);
    EXPECT_EQ(methods.abnormal_offline, 2);
    EXPECT_EQ(methods.normal_offline, 3);
    EXPECT_EQ(DOM_InitRecordBackupInfo(), DOM_OK);
    EXPECT_EQ(Read(), (Flags{0, 0, 1}));
}

TEST_F(RecordBackup, FiniClearsTheFlagsOfTheCallingRole) {
    Set(1, 1, 1);
    InConfig([] { return Set(1, 1, 1), 0; });
    EXPECT_EQ(DOM_FiniRecordBackupInfo(), 0u);
    const BackupMethods& methods = BackupOf(Role::kWorking).methods;
    EXPECT_EQ(methods.online_fail + methods.abnormal_offline + methods.normal_offline, 0);
    EXPECT_EQ(InConfig([] { return Read(); }), (Flags{1, 1, 1}));
    EXPECT_EQ(DOM_InitRecordBackupInfo(), DOM_OK);
}

TEST_F(RecordBackup, FlagsAreStoredAsGivenInTheirOrder) {
    Set(1, 2, 0xFFFF);
    EXPECT_EQ(Read(), (Flags{1, 2, 0xFFFF}));
}

TEST_F(RecordBackup, NullArgumentsAreSkipped) {
    Set(1, 0, 1);
    DOM_SetAAAUserRecordBackupMethod(nullptr);
    DOM_GetAAAUserRecordBackupMethod(nullptr);
    EXPECT_EQ(Read(), (Flags{1, 0, 1}));
}

TEST_F(RecordBackup, FlagsAreTheCallingRoles) {
    Set(1, 0, 0);
    EXPECT_EQ(InConfig([] { return Read(); }), (Flags{0, 0, 0}));
    InConfig([] { return Set(0, 0, 1), 0; });
    EXPECT_EQ(Read(), (Flags{1, 0, 0}));
}

TEST_F(RecordBackup, TypeChoosesTheFlag) {
    Set(10, 30, 40);
    EXPECT_EQ(DOM_GetAAAUserRecordBackupMethodByType(1), 10u);
    EXPECT_EQ(DOM_GetAAAUserRecordBackupMethodByType(3), 30u);
    EXPECT_EQ(DOM_GetAAAUserRecordBackupMethodByType(4), 40u);
}

TEST_F(RecordBackup, OtherTypesAre1WhateverTheFlags) {
    for (const uint16_t flag : {0, 1}) {
        Set(flag, flag, flag);
        for (const uint32_t type : {0u, 2u, 5u, 0x10001u, 0xFFFFFFFFu}) {
            EXPECT_EQ(DOM_GetAAAUserRecordBackupMethodByType(type), 1u) << type;
        }
    }
}

TEST_F(RecordBackup, PackedFormHasABitForEachFlagThatIs1) {
    Set(1, 0, 0);
    EXPECT_EQ(DOM_GetAllRecordBackupMethodToUint(), 1u);
    Set(0, 1, 0);
    EXPECT_EQ(DOM_GetAllRecordBackupMethodToUint(), 2u);
    Set(0, 0, 1);
    EXPECT_EQ(DOM_GetAllRecordBackupMethodToUint(), 4u);
    Set(1, 1, 1);
    EXPECT_EQ(DOM_GetAllRecordBackupMethodToUint(), 7u);
    Set(2, 3, 0xFFFF);
    EXPECT_EQ(DOM_GetAllRecordBackupMethodToUint(), 0u);
}

TEST_F(RecordBackup, DefaultFlagsAreThoseOfTheDefault) {
    EXPECT_EQ(DOM_IsDefaultUserRecordBackupMethod(), 1u);
    Set(0, 1, 1);
    EXPECT_EQ(DOM_IsDefaultUserRecordBackupMethod(), 0u);
    DOM_SetUserRecordBackupMethodDefault(6);
    EXPECT_EQ(DOM_IsDefaultUserRecordBackupMethod(), 1u);
    EXPECT_EQ(InConfig([] { return DOM_IsDefaultUserRecordBackupMethod(); }), 0u);
}

TEST_F(RecordBackup, EveryReaderAndWriterTakesOneLock) {
    const auto locks = [](auto&& operation) {
        const uint64_t before = fake::Count(fake::Event::kLock);
        operation();
        EXPECT_EQ(fake::HeldLocks(), 0);
        return fake::Count(fake::Event::kLock) - before;
    };
    EXPECT_EQ(locks([] { Read(); }), 1u);
    EXPECT_EQ(locks([] { Set(0, 0, 0); }), 1u);
    EXPECT_EQ(locks([] { DOM_GetAAAUserRecordBackupMethodByType(1); }), 1u);
    EXPECT_EQ(locks([] { DOM_GetAllRecordBackupMethodToUint(); }), 1u);
    EXPECT_EQ(locks([] { DOM_IsDefaultUserRecordBackupMethod(); }), 1u);
    EXPECT_EQ(locks([] { DOM_SetUserRecordBackupMethodDefault(0); }), 0u);
    EXPECT_EQ(locks([] { DOM_GetUserRecordBackupMethodDefault(); }), 0u);
}

// A reader would hang here if it took the write side.
TEST_F(RecordBackup, ReadersShareTheLock) {
    RwLock& lock = BackupOf(Role::kWorking).lock;
    ReadGuard reading(lock);
    Read();
    DOM_GetAAAUserRecordBackupMethodByType(3);
    DOM_GetAllRecordBackupMethodToUint();
    EXPECT_EQ(pthread_rwlock_trywrlock(&lock.Native()), EBUSY);
}

TEST_F(RecordBackup, WriterWaitsForReaders) {
    EXPECT_TRUE(WaitsForReaders(BackupOf(Role::kWorking).lock.Native(), [] { Set(1, 1, 1); }));
    EXPECT_EQ(Read(), (Flags{1, 1, 1}));
}

}  // namespace
}  // namespace aaadom
