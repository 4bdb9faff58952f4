#include <aaadom/accounting_policy.h>
#include <aaadom/domain.h>
#include <aaadom/domain_table.h>
#include <aaadom/record_switches.h>
#include <aaadom/results.h>
#include <aaadom/session.h>
#include <aaadom/settings.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>

#include "domain/tables.h"
#include "fakes/fake_platform.h"
#include "fakes/role.h"

namespace aaadom {
namespace {

constexpr uint32_t kFilledLimit = 538976288;

class TableLifecycle : public testing::Test {
  protected:
    TableLifecycle() {
        fake::Reset();
        AAADService service = fake::RoleService();
        DOM_SetAAADService(&service);
    }
    ~TableLifecycle() override {
        DOM_SetUserRecordEnableDefault(0);
        DOM_SetUserRecordBackupMethodDefault(0);
        DOM_ResetAAADService();
        EXPECT_EQ(fake::LiveHashTables(), 0);
        EXPECT_EQ(fake::HeldLocks(), 0);
        EXPECT_TRUE(fake::Misuses().empty());
    }

    static bool LimitsAreFilled(Role role) {
        const SessionLimits& l = Limits(role);
        return l.class_19 == kFilledLimit && l.class_21 == kFilledLimit &&
               l.class_20 == kFilledLimit && l.class_22 == kFilledLimit &&
               l.class_23 == kFilledLimit;
    }
    static AAADOM_NO_TSA bool IsEmpty(Role role) {
        const DomainTable& table = Domains(role);
        for (const DomainInfo* record : table.slots) {
            if (record != nullptr) return false;
        }
        return table.mib_head == nullptr && table.netconf.next == &table.netconf &&
               table.netconf.prev == &table.netconf;
    }
    static AAADOM_NO_TSA uint64_t CountOf(Role role) { return Domains(role).count; }
    static bool IsTornDown(Role role) {
        return IsEmpty(role) && NasIdProfiles(role) == nullptr &&
               NasIdBindings(role).hash == nullptr &&
               (role == Role::kConfig ? g_pstDomainItaPolicyThrTable : g_pstDomainItaPolicyTable) ==
                   nullptr;
    }
};

/// A lock is initialised here while it is held, which is what the operation is for; the thread
/// sanitizer knows no such use and ends the program.
#ifdef __SANITIZE_THREAD__
#define SkipWhereMisuseOfLocksIsReported() GTEST_SKIP() << "reported by the thread sanitizer"
#else
#define SkipWhereMisuseOfLocksIsReported() (void)0
#endif

TEST_F(TableLifecycle, InitBuildsAnEmptyTable) {
    ASSERT_EQ(DOM_DomainInfoTableInit(), 0u);
    EXPECT_TRUE(IsEmpty(Role::kWorking));
    EXPECT_EQ(CountOf(Role::kWorking), 0u);
    EXPECT_EQ(NasIdProfiles(Role::kWorking)->bucket_count, 64u);
    EXPECT_EQ(NasIdBindings(Role::kWorking).hash->bucket_count, 512u);
    EXPECT_EQ(g_pstDomainItaPolicyTable->bucket_count, 128u);
    EXPECT_EQ(DOM_DomainInfoTableFini(), 0u);
}

TEST_F(TableLifecycle, InitFillsTheLimitsBytewiseWithSpaces) {
    memset(&Limits(Role::kWorking), 0, sizeof(SessionLimits));
    ASSERT_EQ(DOM_DomainInfoTableInit(), 0u);
    EXPECT_TRUE(LimitsAreFilled(Role::kWorking));
    DOM_DomainInfoTableFini();
}

TEST_F(TableLifecycle, InitOfOneRoleLeavesTheOtherUntouched) {
    for (uint32_t first : {fake::kWorkingRole, fake::kConfigRole}) {
        Role other = first == fake::kConfigRole ? Role::kWorking : Role::kConfig;
        fake::InRole(first == fake::kConfigRole ? fake::kWorkingRole : fake::kConfigRole, [] {
            DOM_DomainInfoTableInit();
            return DOM_DomainInfoTableFini();
        });
        memset(&Limits(other), 0, sizeof(SessionLimits));
        fake::InRole(first, [] { return DOM_DomainInfoTableInit(); });
        EXPECT_TRUE(IsTornDown(other));
        EXPECT_EQ(Limits(other).class_19, 0u);
        fake::InRole(first, [] { return DOM_DomainInfoTableFini(); });
    }
}

TEST_F(TableLifecycle, InitClearsCountAndNamesButNotTheDeviceIdentifier) {
    ASSERT_EQ(DOM_DomainInfoTableInit(), 0u);
    DOM_AddDomainByName("a");
    DOM_SetDefaultDomainName("a");
    DOM_SetUnknownDomainName("b");
    DOM_SetDeviceID(7);
    DOM_DomainInfoTableFini();
    ASSERT_EQ(DOM_DomainInfoTableInit(), 0u);
    char name[DOM_NAME_SIZE];
    DOM_GetDefaultDomainName(name);
    EXPECT_STREQ(name, "");
    DOM_GetUnknownDomainName(name);
    EXPECT_STREQ(name, "");
    EXPECT_EQ(CountOf(Role::kWorking), 0u);
    EXPECT_EQ(DOM_GetDeviceID(), 7u);
    DOM_SetDeviceID(0);
    DOM_DomainInfoTableFini();
}

// The daemon reads the last count after the stop.
TEST_F(TableLifecycle, FiniLeavesCountAndNames) {
    ASSERT_EQ(DOM_DomainInfoTableInit(), 0u);
    DOM_AddDomainByName("a");
    DOM_SetDefaultDomainName("dflt");
    EXPECT_EQ(DOM_DomainInfoTableFini(), 0u);
    EXPECT_TRUE(IsTornDown(Role::kWorking));
    EXPECT_EQ(CountOf(Role::kWorking), 1u);
    GlobalDomain names;
    fake::InRole(fake::kConfigRole, [&] { return DOM_GetGlobalDomainName(&names), 0; });
    EXPECT_STREQ(names.default_domain, "dflt");
}

TEST_F(TableLifecycle, SecondInitOfTheWorkingRoleFailsAndTearsItDown) {
    ASSERT_EQ(DOM_DomainInfoTableInit(), 0u);
    // The first initialisation's NAS-ID tables are forgotten, not freed; free them here.
    HASH_TABLE* profiles = NasIdProfiles(Role::kWorking);
    HASH_TABLE* bindings = NasIdBindings(Role::kWorking).hash;
    EXPECT_EQ(DOM_DomainInfoTableInit(), DOM_ERR_FAILED);
    EXPECT_TRUE(IsTornDown(Role::kWorking));
    HASH_Destroy(profiles, [](HASH_NODE*) {});
    HASH_Destroy(bindings, [](HASH_NODE*) {});
    EXPECT_EQ(DOM_DomainInfoTableInit(), 0u);
    DOM_DomainInfoTableFini();
}

TEST_F(TableLifecycle, SecondInitOfTheConfigurationRoleSucceeds) {
    fake::ScopedRole config(fake::kConfigRole);
    ASSERT_EQ(DOM_DomainInfoTableInit(), 0u);
    HASH_TABLE* profiles = NasIdProfiles(Role::kConfig);
    HASH_TABLE* bindings = NasIdBindings(Role::kConfig).hash;
    EXPECT_EQ(DOM_DomainInfoTableInit(), 0u);
    HASH_Destroy(profiles, [](HASH_NODE*) {});
    HASH_Destroy(bindings, [](HASH_NODE*) {});
    DOM_DomainInfoTableFini();
}

TEST_F(TableLifecycle, EveryHashTableThatFailsFailsTheInit) {
    for (uint32_t role : {fake::kWorkingRole, fake::kConfigRole}) {
        fake::ScopedRole scoped(role);
        Role internal = CurrentRole();
        for (int n = 1; n <= 3; ++n) {  // policies, profiles, bindings
            memset(&Limits(internal), 0, sizeof(SessionLimits));
            uint64_t before = fake::Count(fake::Event::kHashCreate);
            fake::FailHashCreate(n);
            EXPECT_EQ(DOM_DomainInfoTableInit(), DOM_ERR_FAILED) << n;
            EXPECT_TRUE(fake::Tripped());
            // the later steps run all the same
            EXPECT_EQ(fake::Count(fake::Event::kHashCreate), before + 3) << n;
            EXPECT_TRUE(IsTornDown(internal)) << n;
            EXPECT_TRUE(LimitsAreFilled(internal)) << n;
        }
    }
}

TEST_F(TableLifecycle, EveryLockThatFailsFailsTheInit) {
    // Working role: table, two policy mutexes, bindings, switches, backup; the configuration role
    // has no policy mutexes.
    for (auto [role, locks] : {std::pair{fake::kWorkingRole, 6}, std::pair{fake::kConfigRole, 4}}) {
        fake::ScopedRole scoped(role);
        for (int n = 1; n <= locks; ++n) {
            uint64_t before = fake::Count(fake::Event::kLockInit);
            fake::FailLockInit(n);
            EXPECT_EQ(DOM_DomainInfoTableInit(), DOM_ERR_FAILED) << role << ' ' << n;
            EXPECT_TRUE(fake::Tripped());
            // the later steps run all the same
            EXPECT_EQ(fake::Count(fake::Event::kLockInit), before + static_cast<uint64_t>(locks));
            EXPECT_TRUE(LimitsAreFilled(CurrentRole())) << n;
            EXPECT_TRUE(IsTornDown(CurrentRole())) << n;
        }
        fake::FailLockInit(locks + 1);
        EXPECT_EQ(DOM_DomainInfoTableInit(), 0u);
        EXPECT_FALSE(fake::Tripped());
        fake::DisarmFailures();
        DOM_DomainInfoTableFini();
    }
}

TEST_F(TableLifecycle, FiniOfAFilledTableFreesEverything) {
    ASSERT_EQ(fake::InitBothRoles(), 0u);
    for (int i = 0; i < 20; ++i) {
        std::string name = "domain" + std::to_string(i);
        DOM_AddDomainByName(name.c_str());
        fake::InRole(fake::kConfigRole, [&] { return DOM_AddDomainByName(name.c_str()); });
    }
    EXPECT_EQ(fake::FiniBothRoles(), 0u);
    EXPECT_TRUE(IsTornDown(Role::kWorking));
    EXPECT_TRUE(IsTornDown(Role::kConfig));
}

TEST_F(TableLifecycle, FindAfterFiniFindsNothing) {
    ASSERT_EQ(DOM_DomainInfoTableInit(), 0u);
    DOM_AddDomainByName("a");
    DOM_DomainInfoTableFini();
    EXPECT_EQ(DOM_FindDomainByName("a"), nullptr);
    EXPECT_EQ(DOM_GetFirstDomain(), nullptr);
    EXPECT_EQ(DOM_MibGetFirstDomain(), nullptr);
    EXPECT_EQ(DOM_NetConfGetFirstDomain(), nullptr);
}

TEST_F(TableLifecycle, WithoutAServiceTableTheWorkingRolesTablesAreUsed) {
    ASSERT_EQ(fake::InitBothRoles(), 0u);
    fake::ScopedRole config(fake::kConfigRole);
    DOM_ResetAAADService();
    EXPECT_EQ(DOM_AddDomainByName("a"), DOM_ADD_OK);
    EXPECT_EQ(CountOf(Role::kWorking), 1u);
    EXPECT_EQ(CountOf(Role::kConfig), 0u);
    fake::FiniBothRoles();
}

TEST_F(TableLifecycle, DefaultsOfRecordsAreReadAndWrittenWithoutALock) {
    DOM_SetUserRecordEnableDefault(0xFFFFFFFF);
    EXPECT_EQ(DOM_GetUserRecordEnableDefault(), 0xFFFFFFFFu);
    DOM_SetUserRecordBackupMethodDefault(0xFFFFFFFF);
    EXPECT_EQ(DOM_GetUserRecordBackupMethodDefault(), 0u);
    EXPECT_EQ(fake::Count(fake::Event::kLock), 0u);
}

TEST_F(TableLifecycle, BackupFlagsAreTheCallingRoles) {
    DOM_SetUserRecordBackupMethodDefault(7);
    ASSERT_EQ(DOM_InitRecordBackupInfo(), 0u);
    EXPECT_EQ(BackupOf(Role::kConfig).methods.online_fail, 0);
    EXPECT_EQ(fake::InRole(fake::kConfigRole, [] { return DOM_InitRecordBackupInfo(); }), 0u);
    EXPECT_EQ(BackupOf(Role::kConfig).methods.online_fail, 1);
    EXPECT_EQ(DOM_FiniRecordBackupInfo(), 0u);
    EXPECT_EQ(BackupOf(Role::kConfig).methods.online_fail, 1);
    EXPECT_EQ(fake::InRole(fake::kConfigRole, [] { return DOM_FiniRecordBackupInfo(); }), 0u);
}

TEST_F(TableLifecycle, SwitchesFollowTheEnableDefaultOfExactlyOne) {
    for (auto [value, expected] : {std::pair{1u, 1}, std::pair{2u, 0}, std::pair{0u, 0}}) {
        DOM_SetUserRecordEnableDefault(value);
        EXPECT_EQ(DOM_GetUserRecordEnableDefault(), value);
        ASSERT_EQ(DOM_DomainInfoTableInit(), 0u);
        const RecordSwitches& s = SwitchesOf(Role::kWorking).switches;
        EXPECT_EQ(s.online_fail, expected);
        EXPECT_EQ(s.offline_all, expected);
        EXPECT_EQ(s.offline_normal, expected);
        EXPECT_EQ(s.offline_abnormal, expected);
        DOM_DomainInfoTableFini();
        EXPECT_EQ(s.online_fail | s.offline_all | s.offline_normal | s.offline_abnormal, 0);
    }
}

TEST_F(TableLifecycle, BackupDefaultAboveSevenIsStoredAsZero) {
    DOM_SetUserRecordBackupMethodDefault(7);
    EXPECT_EQ(DOM_GetUserRecordBackupMethodDefault(), 7u);
    DOM_SetUserRecordBackupMethodDefault(8);
    EXPECT_EQ(DOM_GetUserRecordBackupMethodDefault(), 0u);
    DOM_SetUserRecordBackupMethodDefault(9);
    EXPECT_EQ(DOM_GetUserRecordBackupMethodDefault(), 0u);
}

TEST_F(TableLifecycle, BackupFlagsAreTheBitsOfTheDefault) {
    const BackupMethods& m = BackupOf(Role::kWorking).methods;
    for (uint32_t packed = 0; packed < 8; ++packed) {
        DOM_SetUserRecordBackupMethodDefault(packed);
        ASSERT_EQ(DOM_InitRecordBackupInfo(), 0u);
        EXPECT_EQ(m.online_fail, packed & 1);
        EXPECT_EQ(m.abnormal_offline, packed >> 1 & 1);
        EXPECT_EQ(m.normal_offline, packed >> 2 & 1);
        EXPECT_EQ(DOM_FiniRecordBackupInfo(), 0u);
        EXPECT_EQ(m.online_fail | m.abnormal_offline | m.normal_offline, 0);
    }
}

TEST_F(TableLifecycle, BackupLockThatFailsLeavesTheFlags) {
    DOM_SetUserRecordBackupMethodDefault(7);
    ASSERT_EQ(DOM_InitRecordBackupInfo(), 0u);
    DOM_SetUserRecordBackupMethodDefault(0);
    fake::FailLockInit(1);
    EXPECT_EQ(DOM_InitRecordBackupInfo(), DOM_ERR_FAILED);
    EXPECT_EQ(BackupOf(Role::kWorking).methods.online_fail, 1);
    DOM_FiniRecordBackupInfo();
}

TEST_F(TableLifecycle, LockAndUnlockGiveThePthreadResults) {
    ASSERT_EQ(DOM_DomainInfoTableInit(), 0u);
    EXPECT_EQ(DOM_DomainInfoTableLock(), 0u);
    EXPECT_EQ(fake::HeldLocks(), 1);
    EXPECT_EQ(DOM_DomainInfoTableUnlock(), 0u);
    fake::FailLock(1);
    EXPECT_NE(DOM_DomainInfoTableLock(), 0u);
    fake::DisarmFailures();
    DOM_DomainInfoTableFini();
}

TEST_F(TableLifecycle, LockIsTheCallingRolesOwn) {
    ASSERT_EQ(fake::InitBothRoles(), 0u);
    EXPECT_EQ(DOM_DomainInfoTableLock(), 0u);
    fake::InRole(fake::kConfigRole, [] {
        EXPECT_EQ(DOM_DomainInfoTableLock(), 0u);
        return DOM_DomainInfoTableUnlock();
    });
    EXPECT_EQ(DOM_DomainInfoTableUnlock(), 0u);
    fake::FiniBothRoles();
}

TEST_F(TableLifecycle, ForceInitLockMakesBothWorkingMutexesNew) {
    ASSERT_EQ(fake::InitBothRoles(), 0u);
    uint64_t before = fake::Count(fake::Event::kLockInit);
    EXPECT_EQ(fake::InRole(fake::kConfigRole, [] { return DOM_DomainInfoTbl_ForceInitLock(); }),
              0u);
    EXPECT_EQ(fake::Count(fake::Event::kLockInit), before + 2);
    EXPECT_EQ(DOM_DomainInfoTableLock(), 0u);
    EXPECT_EQ(DOM_DomainInfoTableUnlock(), 0u);
    fake::FiniBothRoles();
}

// Both are held here as by a thread that is gone; afterwards both can be locked again.
TEST_F(TableLifecycle, ForceInitLockFreesMutexesThatNobodyWillRelease) {
    SkipWhereMisuseOfLocksIsReported();
    ASSERT_EQ(fake::InitBothRoles(), 0u);
    {
        fake::Quiet uncounted;
        (void)DOM_DomainInfoTableLock();
        (void)NasIdBindings(Role::kWorking).mutex.Lock();
    }
    EXPECT_EQ(DOM_DomainInfoTbl_ForceInitLock(), 0u);
    EXPECT_EQ(DOM_DomainInfoTableLock(), 0u);
    EXPECT_EQ(DOM_DomainInfoTableUnlock(), 0u);
    EXPECT_EQ(NasIdBindings(Role::kWorking).mutex.Lock(), 0);
    EXPECT_EQ(NasIdBindings(Role::kWorking).mutex.Unlock(), 0);
    fake::FiniBothRoles();
}

TEST_F(TableLifecycle, ForceInitLockReportsOnTheSecondMutexOnly) {
    SkipWhereMisuseOfLocksIsReported();
    ASSERT_EQ(fake::InitBothRoles(), 0u);
    // A mutex that is locked cannot be destroyed, which makes the two outcomes differ.
    Mutex& table = Domains(Role::kWorking).mutex;
    Mutex& bindings = NasIdBindings(Role::kWorking).mutex;
    (void)table.Lock();
    fake::FailLockInit(1);
    EXPECT_EQ(DOM_DomainInfoTbl_ForceInitLock(), 0u);
    EXPECT_TRUE(fake::Tripped());
    (void)table.Unlock();
    (void)bindings.Lock();
    fake::FailLockInit(2);
    EXPECT_EQ(DOM_DomainInfoTbl_ForceInitLock(), static_cast<uint32_t>(EBUSY));
    EXPECT_TRUE(fake::Tripped());
    (void)bindings.Unlock();
    fake::FailLockInit(2);
    EXPECT_EQ(DOM_DomainInfoTbl_ForceInitLock(), 0u);  // the destruction's result
    EXPECT_TRUE(fake::Tripped());
    EXPECT_EQ(DOM_DomainInfoTbl_ForceInitLock(), 0u);
    fake::FiniBothRoles();
}

}  // namespace
}  // namespace aaadom
