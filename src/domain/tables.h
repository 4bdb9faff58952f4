// Everything that the library keeps once for each thread role. Choose the role's instance once per
// operation and unlock the instance that was locked.
#pragma once

#include <aaadom/types.h>
#include <platform/hash.h>

#include <cstdint>

#include "base/lock.h"
#include "base/role.h"
#include "domain/name_index.h"
#include "domain/order_index.h"

namespace aaadom {

constexpr uint32_t kNasIdProfileBuckets = 64;
constexpr uint32_t kNasIdBindBuckets = 512;
constexpr uint32_t kNasIdNameSize = 32;

/// Node of the strcmp order of the domains; the table's sentinel is one whose name stays empty.
struct NetConfDomain {
    NetConfDomain* prev;
    NetConfDomain* next;
    char domain_name[DOM_NAME_SIZE];
};

/// The domains of one role. Zero bytes are a valid empty table, so that operations before
/// DOM_DomainInfoTableInit find nothing instead of misbehaving; the sentinel's links are null then.
struct DomainTable {
    Mutex mutex;
    /// Can exceed the number of occupied slots: Fini leaves it, and a full table still counts.
    uint64_t count AAADOM_GUARDED_BY(mutex) = 0;
    /// Read freely under the mutex; change through SetSlot and ClearSlot only.
    DomainInfo* slots[DOM_MAX_DOMAINS] AAADOM_GUARDED_BY(mutex){};
    NameIndex names AAADOM_GUARDED_BY(mutex);
    char default_domain[DOM_NAME_SIZE] AAADOM_GUARDED_BY(mutex){};
    char unknown_domain[DOM_NAME_SIZE] AAADOM_GUARDED_BY(mutex){};
    /// By name length, then by strcmp: the order of string-indexed management rows.
    ZorvDomain* mib_head AAADOM_GUARDED_BY(mutex) = nullptr;
    /// Where the last walk of that order stood, or null: the next step begins there, so that a
    /// whole walk is linear. Every change of the order clears it.
    const ZorvDomain* mib_walk AAADOM_GUARDED_BY(mutex) = nullptr;
    /// Circular, by strcmp. Null links mean the same as links to itself: empty.
    NetConfDomain netconf AAADOM_GUARDED_BY(mutex){};
    /// Where a name stands in the two orders; the lists are what counts.
    OrderIndex<ZorvDomain> mib_index AAADOM_GUARDED_BY(mutex);
    OrderIndex<NetConfDomain> netconf_index AAADOM_GUARDED_BY(mutex);

    constexpr DomainTable() = default;

    /// The first record in slot order whose name equals `name` ignoring case, or null.
    DomainInfo* Find(const char* name) const noexcept AAADOM_REQUIRES(mutex) {
        return name == nullptr ? nullptr : names.Find(slots, name);
    }
    /// Puts `record` into `slot` (below DOM_MAX_DOMAINS) and writes the number into the record; the
    /// slot's former record is forgotten, not destroyed.
    void SetSlot(uint32_t slot, DomainInfo* record) noexcept AAADOM_REQUIRES(mutex);
    void ClearSlot(uint32_t slot) noexcept AAADOM_REQUIRES(mutex);
};

/// Bindings of (profile, VLAN) to NAS-IDs.
struct NasIdBindTable {
    Mutex mutex;
    HASH_TABLE* hash AAADOM_GUARDED_BY(mutex) = nullptr;  // null before Init and after Fini

    constexpr NasIdBindTable() = default;
};

/// Key of the binding table: hashed as 34 bytes, so the name is lower-case and zero-padded.
struct NasIdBindKey {
    uint16_t vlan_id;
    char profile_name[kNasIdNameSize];
};
static_assert(sizeof(NasIdBindKey) == 34);

struct RecordSwitchInfo {
    RwLock lock;
    RecordSwitches switches AAADOM_GUARDED_BY(lock){};

    constexpr RecordSwitchInfo() = default;
};

struct RecordBackupInfo {
    RwLock lock;
    BackupMethods methods AAADOM_GUARDED_BY(lock){};

    constexpr RecordBackupInfo() = default;
};

// Pass CurrentRole() for the caller's copy, Role::kWorking where a reader uses the working role's
// copy whatever role calls it.
DomainTable& Domains(Role role) noexcept;
SessionLimits& Limits(Role role) noexcept;
NasIdBindTable& NasIdBindings(Role role) noexcept;
/// Null before Init and after Fini. No lock: its callers serialise changes.
HASH_TABLE*& NasIdProfiles(Role role) noexcept;
RecordSwitchInfo& SwitchesOf(Role role) noexcept;
RecordBackupInfo& BackupOf(Role role) noexcept;
/// No lock: one word, read and written whole.
uint32_t& DeviceIdOf(Role role) noexcept;

/// Head of the working role's MIB order, for readers that use it from any role. They take no lock
/// of the working role, because that role changes its lists from its own thread only.
const ZorvDomain* WorkingMibHead() noexcept;
/// The same for its NetConf order; the walk ends at this sentinel or at a null link.
const NetConfDomain* WorkingNetConfSentinel() noexcept;

/// Bucket of a NAS-ID profile: the first 31 characters of the name in small letters.
uint32_t NasIdProfileBucket(const void* name) noexcept;
/// Bucket of a NasIdBindKey, whose name the caller has lower-cased and zero-padded.
uint32_t NasIdBindBucket(const void* key) noexcept;

}  // namespace aaadom
