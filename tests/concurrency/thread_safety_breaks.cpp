// Uses of what a lock guards without that lock, one for each value of BREAK. None may pass clang's
// analysis; without a value the file must. tools/check-thread-safety compiles it.
#include "daemon/lock.h"
#include "domain/tables.h"
#include "platform/lock.h"
#include "policy/ita_store.h"
#include "policy/rec_policy.h"

namespace {

struct OfPlatform {
    platform::Mutex mutex;
    int guarded PLATFORM_GUARDED_BY(mutex) = 0;
    platform::SharedMutex shared_mutex;
    int shared PLATFORM_GUARDED_BY(shared_mutex) = 0;
};
struct OfDaemon {
    aaad::Mutex mutex;
    int guarded AAAD_GUARDED_BY(mutex) = 0;
};

using namespace aaadom;

[[maybe_unused]] void Use(OfPlatform& platform, OfDaemon& daemon) {
    DomainTable& table = Domains(Role::kWorking);
    {
        const MutexGuard lock(table.mutex);
        table.count = 1;
        (void)table.Find("corp");
    }
    {
        const ReadGuard lock(BackupOf(Role::kWorking).lock);
        const platform::SharedLock shared(platform.shared_mutex);
        (void)platform.shared;
    }
    {
        const platform::MutexLock lock(platform.mutex);
        platform.guarded = 1;
    }
    {
        const aaad::MutexLock lock(daemon.mutex);
        daemon.guarded = 1;
    }
#if BREAK == 1
    table.count = 2;
#elif BREAK == 2
    (void)table.Find("corp");
#elif BREAK == 3
    NasIdBindings(Role::kWorking).hash = nullptr;
#elif BREAK == 4
    SwitchesOf(Role::kWorking).switches.online_fail = 1;
#elif BREAK == 5
    RecordBackupInfo& backup = BackupOf(Role::kWorking);
    const ReadGuard lock(backup.lock);
    backup.methods = BackupMethods{};
#elif BREAK == 6
    (void)ItaPolicies(Role::kWorking);
#elif BREAK == 7
    const ExportedMutexGuard lock(rec_policies_mutex);
    (void)ItaPolicies(Role::kWorking);
#elif BREAK == 8
    RecPolicySlot(Role::kWorking) = nullptr;
#elif BREAK == 9
    platform.guarded = 2;
#elif BREAK == 10
    const platform::SharedLock lock(platform.shared_mutex);
    platform.shared = 2;
#elif BREAK == 11
    daemon.guarded = 2;
#elif BREAK == 12
    const MutexGuard lock(table.mutex);
    const MutexGuard again(table.mutex);
#elif BREAK == 13
    (void)table.mutex.Lock();
#endif
}

}  // namespace
