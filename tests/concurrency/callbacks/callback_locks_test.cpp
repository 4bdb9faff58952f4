// No lock of the library is held while a callback of the daemon, the database or a peer's
// descriptor is used: a daemon whose every callback tries every lock gets each of them.
//
// The exceptions, where the contract itself holds a lock:
//   slot 13                 answers the role in the middle of operations that hold a lock; it may
//                           not lock, so this daemon's does not try
//   the system log          is opened and closed under the lock of the debug word
//   DOM_MibAddDomain        returns with the table mutex held when a default method list cannot be
//                           allocated
//   DOM_DomainInfoTableLock is held by its caller for as long as he likes; nothing that calls out
//                           is called in between
#include <aaadom/aaadom.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "base/message.h"
#include "codec/message_registry.h"
#include "domain/tables.h"
#include "fakes/fake_platform.h"
#include "fakes/role.h"
#include "golden/hex_file.h"

namespace aaadom {
namespace {

constexpr int32_t kDescriptor = 9;
constexpr uint16_t kSave = 1;

/// A lock of the library and a way to try it, which leaves it as it was.
struct LibraryLock {
    const char* name;
    const void* object;
    bool free;
};

bool TryMutex(pthread_mutex_t& mutex) {
    if (pthread_mutex_trylock(&mutex) != 0) return false;
    pthread_mutex_unlock(&mutex);
    return true;
}
AAADOM_NO_TSA bool TryMutex(Mutex& mutex) {
    if (!mutex.TryLock()) return false;
    mutex.Unlock();
    return true;
}
bool TryLock(pthread_rwlock_t& lock) {
    if (pthread_rwlock_trywrlock(&lock) != 0) return false;
    pthread_rwlock_unlock(&lock);
    return true;
}

std::vector<LibraryLock> TryEveryLock() {
    const fake::Quiet uncounted;
    std::vector<LibraryLock> locks;
    const auto mutex = [&](const char* name, auto& lock) {
        locks.push_back({name, &lock, TryMutex(lock)});
    };
    const auto reader_writer = [&](const char* name, pthread_rwlock_t& lock) {
        locks.push_back({name, &lock, TryLock(lock)});
    };
    mutex("table mutex, working role", Domains(Role::kWorking).mutex);
    mutex("table mutex, configuration role", Domains(Role::kConfig).mutex);
    mutex("binding mutex, working role", NasIdBindings(Role::kWorking).mutex);
    mutex("binding mutex, configuration role", NasIdBindings(Role::kConfig).mutex);
    reader_writer("record switches, working role", SwitchesOf(Role::kWorking).lock.Native());
    reader_writer("record switches, configuration role", SwitchesOf(Role::kConfig).lock.Native());
    reader_writer("backup methods, working role", BackupOf(Role::kWorking).lock.Native());
    reader_writer("backup methods, configuration role", BackupOf(Role::kConfig).lock.Native());
    reader_writer("debug word", g_stAAAGlobalBaseInfo.lock);
    mutex("accounting policies", g_stDomainItaPolicyTableMutexLock);
    mutex("recording policy", g_stRecPolicyTypeMutexLock);
    return locks;
}

std::set<std::string> calls_out;      // of the operation that runs
std::vector<std::string> held_locks;  // "call: lock"

void Probe(const char* call) {
    calls_out.insert(call);
    for (const LibraryLock& lock : TryEveryLock()) {
        if (!lock.free) held_locks.push_back(std::string(call) + ": " + lock.name);
    }
}

AAADService ProbingDaemon() {
    AAADService service = fake::RoleService();
    service.real_sync_msg = [](TLV_MSG*) {
        Probe("slot 0");
        return DOM_OK;
    };
    service.cfg_real_sync_to_slave = [](TLV_MSG*) {
        Probe("slot 10");
        return DOM_OK;
    };
    service.sync_msg_to_cfg_thr = [](uint32_t, uint32_t, TLV_MSG* msg) {
        Probe("slot 12");
        TLV_Destroy(msg);
        return DOM_OK;
    };
    service.cfg_thr_msg_to_pam = [](uint32_t, TLV_MSG*) {
        Probe("slot 14");
        return DOM_OK;
    };
    service.record_thread_init = [] {
        Probe("slot 19");
        return DOM_OK;
    };
    return service;
}

TlvPtr Golden(const std::string& name) {
    return TlvPtr(fake::Parse(golden::ReadHexFile(name)));
}

class CallbackLocks : public ::testing::TestWithParam<uint32_t> {
  protected:
    void SetUp() override {
        fake::Reset();
        held_locks.clear();
        ASSERT_EQ(fake::InitBothRoles(), DOM_OK);
        const AAADService daemon = ProbingDaemon();
        DOM_SetAAADService(&daemon);
        handle_ = DOM_CreateDomainDBM();
        DOM_SetDomainDBMHandle(handle_);
        DOM_ita_db_SetGlobalHandle(handle_);
        DOM_Rec_db_SetGlobalHandle(handle_);
        DOM_SetRecordRunDBHandle(DOM_CreateRecordRunDB());
        DOM_CreateAllRecordDBAvlList();
        fake::role_of_this_thread = fake::kWorkingRole;
        FillStores();
        fake::role_of_this_thread = GetParam();
        fake::SetWatcher(Probe);
    }
    void TearDown() override {
        fake::SetWatcher(nullptr);
        DOM_DestroyRecordRunDB();
        DOM_SetDomainDBMHandle(DBM_INVALID_HANDLE);
        DOM_ita_db_SetGlobalHandle(DBM_INVALID_HANDLE);
        DOM_Rec_db_SetGlobalHandle(DBM_INVALID_HANDLE);
        DBM_Close(handle_);
        fake::role_of_this_thread = fake::kWorkingRole;
        (void)fake::FiniBothRoles();
        fake::Reset();
    }
    /// Something to send in every store that is sent.
    static void FillStores() {
        DOM_AddNasIdProfile("nas");
        for (uint16_t vlan = 1; vlan <= 3; ++vlan) DOM_AddNasIdBindVlanId("nas", "id", vlan);
        DOM_critical_AddProfile("critical");
        DOM_critical_FindProfile("critical")->default_segment.segment_id = 7;
        DOM_author_AddProfile("author");
        DOM_author_FindProfile("author")->default_segment.segment_id = 7;
        DOM_ita_policy_Create("policy");
        DOM_Rec_CreatePolicy(DOM_REC_POLICY_CONNECTION);
    }

    /// Runs the operation; what it called on the way.
    static std::set<std::string> CallsOf(const std::string& name,
                                         const std::function<void()>& operation) {
        calls_out.clear();
        held_locks.clear();
        operation();
        EXPECT_TRUE(held_locks.empty()) << name << " holds a lock: " << held_locks.front();
        for (const LibraryLock& lock : TryEveryLock()) {
            EXPECT_TRUE(lock.free) << name << " returned with " << lock.name;
        }
        return calls_out;
    }
    static bool IsConfiguration() { return GetParam() == fake::kConfigRole; }

    DBM_HANDLE handle_ = DBM_INVALID_HANDLE;
};

INSTANTIATE_TEST_SUITE_P(Roles, CallbackLocks,
                         ::testing::Values(fake::kWorkingRole, fake::kConfigRole),
                         [](const auto& role) {
                             return role.param == fake::kConfigRole ? "Configuration" : "Working";
                         });

struct SendingOperation {
    const char* name;
    std::function<void()> run;
    std::set<std::string> working;        // what it calls in the working role
    std::set<std::string> configuration;  // and on the configuration thread
};

std::vector<SendingOperation> SendingOperations() {
    static const UserRecord record = [] {
        UserRecord sample{};
        sample.serial = 5;
        return sample;
    }();
    const auto message = [] { return DOM_EncodeDomainName("corp"); };
    const std::set<std::string> nothing, peer = {"TLV_Flush"}, slot0 = {"slot 0"},
                                         slot10 = {"slot 10"}, slot12 = {"slot 12"},
                                         slot14 = {"slot 14"}, slot19 = {"slot 19"};
    return {
        {"SendRealSyncMsg", [=] { DOM_SendRealSyncMsg(TlvPtr(message()).get()); }, slot0, slot0},
        {"CfgRealSyncToSlave", [=] { DOM_CfgRealSyncToSlave(TlvPtr(message()).get()); }, slot10,
         slot10},
        {"RealSync2Slave", [=] { DOM_RealSync2Slave(TlvPtr(message()).get()); }, slot10, slot10},
        {"SyncOnlineFailRecord", [] { DOM_SyncOnlineFailRecord(DOM_OP_SET, &record); }, slot10,
         slot10},
        {"SyncOnlineFailRecord, deletion", [] { DOM_SyncOnlineFailRecord(DOM_OP_DELETE, &record); },
         slot10, slot10},
        {"SyncOfflineRecord", [] { DOM_SyncOfflineRecord(DOM_OP_SET, 1, &record); }, slot10,
         slot10},
        {"SyncOfflineRecord, deletion", [] { DOM_SyncOfflineRecord(DOM_OP_DELETE, 0, &record); },
         slot10, slot10},
        {"SyncClearUserRecord", [] { Dom_SyncClearUserRecord(1); }, slot10, slot10},
        {"EncodeRecordTypeAndSend",
         [] { DOM_EncodeRecordTypeAndSend(TlvPtr(TLV_Create()).get(), DOM_RECORD_ONLINE_FAIL); },
         slot10, slot10},
        {"SendSyncMSgToCfgThr", [=] { DOM_SendSyncMSgToCfgThr(1, message()); }, slot12, slot12},
        {"CfgThrSendMsgToPam", [=] { DOM_CfgThrSendMsgToPam(1, message()); }, slot14, slot14},
        {"BatchSyncCfgType, no peer", [=] { DOM_BatchSyncCfgType(message(), -1); }, slot12, slot12},
        {"BatchSyncCfgType", [=] { DOM_BatchSyncCfgType(message(), kDescriptor); }, peer, slot14},
        {"RecordThreadInit", [] { DOM_RecordThreadInit(); }, slot19, slot19},
        {"SyncAllNasIdProfile", [] { DOM_SyncAllNasIdProfile(kDescriptor); }, peer, nothing},
        {"SyncAllNasIdBindVlanId", [] { DOM_SyncAllNasIdBindVlanId(kDescriptor); }, peer, nothing},
        {"SyncAllCriticalProfile", [] { DOM_SyncAllCriticalProfile(kDescriptor); }, peer, nothing},
        {"SyncAllAuthorProfile", [] { DOM_SyncAllAuthorProfile(kDescriptor); }, peer, nothing},
        {"SyncCriticalMicroSegment, no peer",
         [] {
             CriticalProfile profile{};
             profile.default_segment.segment_id = 7;
             DOM_SyncCriticalMicroSegment(-1, &profile);
         },
         slot12, slot12},
        {"SyncAuthorMicroSegment, no peer",
         [] {
             AuthorProfile profile{};
             profile.default_segment.segment_id = 7;
             DOM_SyncAuthorMicroSegment(-1, &profile);
         },
         slot12, slot12},
        {"ita_bthsyn_SendPolicys", [] { DOM_ita_bthsyn_SendPolicys(kDescriptor); }, peer, nothing},
        {"Rec_bthsyn_SendPolicys", [] { DOM_Rec_bthsyn_SendPolicys(-1); }, slot12, nothing},
        {"Rec_tlv_SendBthPolicy",
         [] { DOM_Rec_tlv_SendBthPolicy(DOM_REC_POLICY_CONNECTION, kDescriptor); }, peer, nothing},
    };
}

TEST_P(CallbackLocks, OperationsThatSendHoldNone) {
    for (const SendingOperation& operation : SendingOperations()) {
        EXPECT_EQ(CallsOf(operation.name, operation.run),
                  IsConfiguration() ? operation.configuration : operation.working)
            << operation.name;
    }
}

TEST_P(CallbackLocks, MessagesOfEveryCodeAreAppliedAndSavedWithoutOne) {
    const std::vector<std::string> names = golden::MessageFiles();
    ASSERT_GT(names.size(), 60u);
    std::set<std::string> calls;
    // Twice: what the first round refuses for want of its domain or profile the second one saves.
    for (int round = 0; round < 2; ++round) {
        for (const uint32_t operation : {DOM_OP_SET, DOM_OP_DELETE, DOM_OP_SET}) {
            for (const std::string& name : names) {
                const TlvPtr body = Golden(name);
                ASSERT_TRUE(body) << name;
                const TlvPtr msg(AAA_AddOpHead(operation, body.get()));
                calls.merge(CallsOf(name, [&] {
                    (void)DOM_RestoreData(msg.get(), kSave, 0, 0, nullptr, nullptr);
                }));
            }
        }
    }
    EXPECT_TRUE(calls.count("DBM_SetArray") == 1 && calls.count("DBM_DeleteKey") == 1);
}

TEST_P(CallbackLocks, ReadersOfTheDatabaseHoldNone) {
    DOM_AddDomainByName("corp");
    const UserRecord record{};
    DomProfileNameList names{};
    RecordSwitches switches{};
    BackupMethods methods{};
    char text[DOM_NAME_SIZE];
    uint32_t limits[5];
    const std::pair<const char*, std::function<void()>> readers[] = {
        {"GetDomainFromDBByIndex",
         [&] { DOM_DestroyDomain(DOM_GetDomainFromDBByIndex(handle_, 0)); }},
        {"GetDomainFromDBByName",
         [&] { DOM_DestroyDomain(DOM_GetDomainFromDBByName(handle_, "corp")); }},
        {"GetDefDomainFromDB", [&] { DOM_GetDefDomainFromDB(handle_, text); }},
        {"GetUnknownDomainFromDB", [&] { DOM_GetUnknownDomainFromDB(handle_, text); }},
        {"GetSessionLimitFromDB", [&] { DOM_GetSessionLimitFromDB(handle_, limits); }},
        {"GetDeviceIDFromDB", [&] { DOM_GetDeviceIDFromDB(handle_, limits); }},
        {"GetRecordEnableInfoFromDB", [&] { DOM_GetRecordEnableInfoFromDB(handle_, &switches); }},
        {"GetRecordBackupInfo", [&] { DOM_GetRecordBackupInfoFromDBStruct(handle_, &methods); }},
        {"SetRecordEnableSwitchOnToDB", [] { DOM_SetRecordEnableSwitchOnToDB(); }},
        {"SetRecordBackupMethodDefaultToDB", [] { DOM_SetRecordBackupMethodDefaultToDB(); }},
        {"GetUserRecordEnableDefault", [&] { DOM_GetUserRecordEnableDefaultFromDB(handle_); }},
        {"GetRecordBackupMethodDefault", [&] { DOM_GetRecordBackupMethodDefaultFromDB(handle_); }},
        {"IsExistProfileName", [&] { DOM_IsExistProfileName(handle_, "nas"); }},
        {"GetAllNasIdProfileMode", [&] { DOM_GetAllNasIdProfileMode(handle_, &names); }},
        {"IsExistCriticalProfileName",
         [&] { DOM_IsExistCriticalProfileName(handle_, "critical"); }},
        {"GetAllCriticalProfileMode", [&] { DOM_GetAllCriticalProfileMode(handle_, &names); }},
        {"IsExistAuthorProfileName", [&] { DOM_IsExistAuthorProfileName(handle_, "author"); }},
        {"GetAllAuthorProfileMode", [&] { DOM_GetAllAuthorProfileMode(handle_, &names); }},
        {"AAA_GetSessionLimit", [] { AAA_GetSessionLimit(2); }},
        {"DeleteDomainAndDBByName", [] { DOM_DeleteDomainAndDBByName("corp", 1); }},
        {"ita_db_SetPolicy", [] { DOM_ita_db_SetPolicy("policy", DOM_OP_SET); }},
        {"ita_db_GetMemPolicy",
         [&] {
             DOM_ita_policy_DestroyPolicy(DOM_ita_db_GetMemPolicyFromDBByName(handle_, "policy"));
         }},
        {"ita_db_IsPolicyExist", [&] { DOM_ita_db_IsPolicyExist(handle_, "policy"); }},
        {"Rec_db_SetPolicy", [] { DOM_Rec_db_SetPolicy(DOM_REC_POLICY_CONNECTION, DOM_OP_SET); }},
        {"Rec_PolicyIsExist", [&] { DOM_Rec_PolicyIsExist(handle_, DOM_REC_POLICY_CONNECTION); }},
        {"Rec_db_GetPolicyFromDBByType",
         [&] { free(DOM_Rec_db_GetPolicyFromDBByType(handle_, DOM_REC_POLICY_CONNECTION)); }},
        {"SetOnlineFailedRecord", [&] { DOM_SetOnlineFailedRecordInfoToRunDB(&record); }},
        {"SetNormalOfflineRecord", [&] { DOM_SetNormalOfflineRecordInfoToRunDB(&record); }},
        {"SetAbnormalOfflineRecord", [&] { DOM_SetAbnormalOfflineRecordInfoToRunDB(&record); }},
        {"DelOnlineFailedRecord", [&] { DOM_DelOnlineFailedRecordInfoToRunDB(0); }},
        {"ClearAllRecordInfo", [] { DOM_ClearAllRecordInfoFromRunDB(7); }},
    };
    for (const auto& [name, read] : readers) {
        const std::set<std::string> calls = CallsOf(name, read);
        EXPECT_FALSE(calls.empty()) << name << " asks the database nothing";
    }
    while (DomProfileNameNode* node = names.head) {
        names.head = node->next;
        free(node);
    }
}

// A lock that is added to the library has to be added above.
TEST_P(CallbackLocks, EveryLockThatTheLibraryTakesIsTried) {
    for (const SendingOperation& operation : SendingOperations()) operation.run();
    for (const std::string& name : golden::MessageFiles()) {
        const TlvPtr body = Golden(name);
        const TlvPtr msg(AAA_AddOpHead(DOM_OP_SET, body.get()));
        (void)DOM_RestoreData(msg.get(), kSave, 0, 0, nullptr, nullptr);
    }
    const std::vector<LibraryLock> known = TryEveryLock();
    size_t seen = 0;
    for (const void* object : fake::LockObjects()) {
        const auto same = [object](const LibraryLock& lock) { return lock.object == object; };
        EXPECT_TRUE(std::any_of(known.begin(), known.end(), same)) << object;
        ++seen;
    }
    EXPECT_GE(seen, 6u);
}

// A probe that finds nothing held must find something when it is.
TEST_P(CallbackLocks, HeldTableIsSeen) {
    ASSERT_EQ(DOM_DomainInfoTableLock(), 0u);
    (void)DOM_SendSyncMSgToCfgThr(1, DOM_EncodeDomainName("corp"));
    ASSERT_EQ(DOM_DomainInfoTableUnlock(), 0u);
    const char* held = IsConfiguration() ? "slot 12: table mutex, configuration role"
                                         : "slot 12: table mutex, working role";
    EXPECT_EQ(held_locks, std::vector<std::string>{held});
    held_locks.clear();
}

// Its callers treat the result as the end of the role and count on the mutex.
TEST_P(CallbackLocks, RowWithoutMemoryForADefaultListLeavesTheTableLocked) {
    auto* record = static_cast<DomainInfo*>(calloc(1, sizeof(DomainInfo)));
    strcpy(record->name, "corp");
    fake::FailAllocation(1);
    EXPECT_EQ(DOM_MibAddDomain(record), DOM_ADD_FAILED);
    std::vector<std::string> held;
    for (const LibraryLock& lock : TryEveryLock()) {
        if (!lock.free) held.push_back(lock.name);
    }
    EXPECT_EQ(held.size(), 1u);
    EXPECT_EQ(DOM_DomainInfoTableUnlock(), 0u);
    DOM_DestroyDomain(record);
}

}  // namespace
}  // namespace aaadom
