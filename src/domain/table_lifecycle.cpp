#include "domain/table_lifecycle.h"

#include <aaadom/accounting_policy.h>
#include <aaadom/domain.h>
#include <aaadom/profile.h>
#include <aaadom/record_switches.h>
#include <aaadom/recording_policy.h>
#include <aaadom/results.h>

#include <cstdlib>
#include <cstring>

#include "domain/domain_order.h"
#include "domain/scheme_index.h"
#include "domain/tables.h"

namespace aaadom {
namespace {

/// The daemon counts on limits that start as a block of spaces: five times 0x20202020, so that a
/// device whose limits were never configured admits every session.
constexpr int kLimitFillByte = ' ';
constexpr uint32_t kEnabledByDefault = 1;

uint32_t FailedUnless(bool done) noexcept {
    return done ? DOM_OK : DOM_ERR_FAILED;
}

// Initialisation owns the role's table alone, and the mutex is not usable before it ends.
AAADOM_NO_TSA uint32_t InitDomainTable(DomainTable& table) noexcept {
    // Records of an earlier initialisation are forgotten, not freed: readers may still hold them,
    // and the mutex that would keep them out is about to be made new.
    table.count = 0;
    memset(table.slots, 0, sizeof table.slots);
    table.names.Clear();
    memset(table.default_domain, 0, sizeof table.default_domain);
    memset(table.unknown_domain, 0, sizeof table.unknown_domain);
    table.mib_head = nullptr;
    table.mib_index.Clear();
    table.mib_walk = nullptr;
    ResetNetConfOrder(table);
    return FailedUnless(table.mutex.Init() == 0);
}

void FiniDomainTable(DomainTable& table) noexcept {
    {
        MutexGuard lock(table.mutex);
        for (uint32_t slot = 0; slot < DOM_MAX_DOMAINS; ++slot) {
            DomainInfo* record = table.slots[slot];
            table.ClearSlot(slot);
            DOM_DestroyDomain(record);
        }
        table.mib_walk = nullptr;
        table.mib_index.Clear();
        while (ZorvDomain* node = table.mib_head) {
            table.mib_head = node->next;
            dom_FreeSchemeIndexes(*node);
            DOM_DestroyZorvDomain(node);
        }
        NetConfDomain* node = table.netconf.next;
        while (node != nullptr && node != &table.netconf) {
            NetConfDomain* next = node->next;
            free(node);
            node = next;
        }
        ResetNetConfOrder(table);
        // The count stays as it is: counters that management reads are reset by the next Init.
    }
    (void)table.mutex.Destroy();  // a default mutex fails only when misused
}

uint32_t InitNasIdProfiles(HASH_TABLE*& profiles) noexcept {
    HASH_TABLE* created = HASH_Create(kNasIdProfileBuckets, NasIdProfileBucket);
    if (created != nullptr) profiles = created;
    return FailedUnless(created != nullptr);
}

void FreeHashNode(HASH_NODE* node) {
    free(node);
}

void DestroyHash(HASH_TABLE*& table) noexcept {
    if (table != nullptr) HASH_Destroy(table, FreeHashNode);
    table = nullptr;
}

// The functions of this file that use no guard own what they build or take down alone.
AAADOM_NO_TSA uint32_t InitNasIdBindings(NasIdBindTable& bindings) noexcept {
    bindings.hash = nullptr;
    uint32_t result = FailedUnless(bindings.mutex.Init() == 0);
    bindings.hash = HASH_Create(kNasIdBindBuckets, NasIdBindBucket);
    return result | FailedUnless(bindings.hash != nullptr);
}

void FiniNasIdBindings(NasIdBindTable& bindings) noexcept {
    {
        MutexGuard lock(bindings.mutex);
        DestroyHash(bindings.hash);
    }
    (void)bindings.mutex.Destroy();
}

AAADOM_NO_TSA uint32_t InitSwitches(RecordSwitchInfo& info) noexcept {
    if (info.lock.Init() != 0) return DOM_ERR_FAILED;
    uint16_t on = DOM_GetUserRecordEnableDefault() == kEnabledByDefault ? 1 : 0;
    info.switches = RecordSwitches{on, on, on, on};
    return DOM_OK;
}

AAADOM_NO_TSA void FiniSwitches(RecordSwitchInfo& info) noexcept {
    (void)info.lock.Destroy();
    info.switches = RecordSwitches{};
}

}  // namespace

uint32_t InitTables(Role role) noexcept {
    // A failing step does not stop the sequence: Fini expects every instance to be built or failed.
    uint32_t result = InitDomainTable(Domains(role));
    result |= DOM_ita_policy_Init();
    result |= DOM_Rec_policy_Init();
    result |= InitNasIdProfiles(NasIdProfiles(role));
    result |= InitNasIdBindings(NasIdBindings(role));
    result |= InitSwitches(SwitchesOf(role));
    result |= DOM_InitRecordBackupInfo();
    (void)DOM_critical_InitData();  // the heads; they cannot fail
    (void)DOM_author_InitData();
    if (result != DOM_OK) (void)FiniTables(role);  // the initialisation's failure is what counts
    memset(&Limits(role), kLimitFillByte, sizeof(SessionLimits));
    return result;
}

uint32_t FiniTables(Role role) noexcept {
    DOM_critical_Fini();
    DOM_author_Fini();
    FiniDomainTable(Domains(role));
    DOM_ita_policy_Fini();
    DOM_Rec_policy_Fini();
    DestroyHash(NasIdProfiles(role));
    FiniNasIdBindings(NasIdBindings(role));
    FiniSwitches(SwitchesOf(role));
    return DOM_FiniRecordBackupInfo();
}

uint32_t ForceInitWorkingLocks() noexcept {
    auto init_or_destroy = [](Mutex& mutex) -> uint32_t {
        return mutex.Init() == 0 ? DOM_OK : static_cast<uint32_t>(mutex.Destroy());
    };
    (void)init_or_destroy(Domains(Role::kWorking).mutex);  // only the second outcome is reported
    return init_or_destroy(NasIdBindings(Role::kWorking).mutex);
}

}  // namespace aaadom
