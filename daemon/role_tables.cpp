#include "role_tables.h"

#include <aaadom/database.h>
#include <aaadom/db_layout.h>
#include <aaadom/domain.h>
#include <aaadom/domain_table.h>
#include <aaadom/method_list.h>
#include <aaadom/record_switches.h>
#include <aaadom/session.h>
#include <aaadom/settings.h>

#include <cstdio>
#include <memory>
#include <new>

#include "heap_room.h"
#include "memory_watch.h"
#include "saved_read.h"
#include "table_lock.h"

namespace aaad {
namespace {

struct DomainDestroyer {
    void operator()(DomainInfo* record) const noexcept { DOM_DestroyDomain(record); }
};
using DomainPtr = std::unique_ptr<DomainInfo, DomainDestroyer>;

/// Puts a record into the first empty slot. The table owns it, unless it is still in `record`.
/// False for want of memory, also for the node of one of the two orders, without which the library
/// adds a domain, too.
bool Add(DomainPtr& record) {
    const MemoryWatch memory;
    ZorvDomain* mib_node = DOM_CreateZorvDomain();
    if (mib_node == nullptr) return false;
    SchemeResources schemes{};
    if (DOM_CreateDomainSchemeResource(record.get(), &schemes) != DOM_OK) {
        DOM_DestroyZorvDomain(mib_node);
        return false;
    }
    {
        const TableLock lock;
        DOM_AddDomain(record.release(), mib_node, &schemes);
    }
    DOM_DestroyDomainSchemeResource(&schemes);  // the nodes that the domain did not need
    return !memory.RanShort();
}

/// Occupies a slot. The slash keeps the name apart from every domain's.
DomainPtr Placeholder(uint32_t index) {
    DomainPtr record(DOM_CreateDomain());
    if (record) snprintf(record->name, sizeof record->name, "/hole/%u", index);
    return record;
}

bool Exists(const char* name) {
    const TableLock lock;
    return DOM_FindDomainByName(name) != nullptr;
}

/// What a domain takes of the heap, about.
size_t MemoryOf(const DomainInfo& record) {
    constexpr size_t kOverhead = 16;
    size_t bytes = sizeof record + sizeof(ZorvDomain) + DOM_NAME_SIZE + 4 * kOverhead;
    for (const auto& row : record.method_lists) {
        for (const MethodList* list : row) {
            if (list != nullptr) bytes += sizeof *list + kOverhead;
        }
    }
    return bytes;
}

bool LoadDomains(DBM_HANDLE handle, LoadReport& report) {
    std::vector<DomainInfo*> placeholders;
    placeholders.reserve(DOM_MAX_DOMAINS);
    const auto fill_holes = [&](uint32_t from, uint32_t to) {
        for (uint32_t index = from; index < to; ++index) {
            DomainPtr placeholder = Placeholder(index);
            if (!placeholder) return false;
            placeholders.push_back(placeholder.get());
            if (!Add(placeholder)) {
                if (placeholder) placeholders.pop_back();
                return false;
            }
        }
        return true;
    };

    HeapRoom room(DBM_GetEntryNum(handle, DOM_DB_KEY_DOMAINS, DOM_DB_KEY_DOMAINS_LEN));
    bool complete = true;
    uint32_t next_slot = 0;
    int32_t after = -1;
    while (complete) {
        int32_t found = -1;
        const bool any = ReadSaved([&] {
            found =
                DBM_GetNextArrayIndex(handle, DOM_DB_KEY_DOMAINS, DOM_DB_KEY_DOMAINS_LEN, after);
            return found > after;
        });
        if (!any || found >= DOM_MAX_DOMAINS) break;
        after = found;
        const uint32_t index = static_cast<uint32_t>(found);
        DomainPtr record =
            ReadSaved([&] { return DomainPtr(DOM_GetDomainFromDBByIndex(handle, index)); });
        if (!record || record->name[0] == '\0') {
            report.undecodable_indexes.push_back(index);
            continue;
        }
        if (Exists(record->name)) {
            report.stale_indexes.push_back(index);
            continue;
        }
        room.Used(MemoryOf(*record));
        complete = fill_holes(next_slot, index) && Add(record);
        next_slot = index + 1;
        ++report.domains;
    }

    const TableLock lock;
    for (DomainInfo* placeholder : placeholders) {
        DOM_DeleteDomain(placeholder);
        DOM_DestroyDomain(placeholder);
    }
    return complete;
}

void LoadSettings(DBM_HANDLE handle, LoadReport& report) {
    char name[DOM_NAME_SIZE] = {};
    // Taking the default domain away saves an empty name, which the getter refuses like none.
    report.default_domain_saved =
        ReadSaved([&] { return DOM_GetDefDomainFromDB(handle, name) == DOM_OK; });
    DOM_SetDefaultDomainName(report.default_domain_saved ? name : DOM_SYSTEM_DOMAIN);

    // New tables keep the former ones' name and number, which may be those of a change that was
    // taken back.
    const bool has_unknown =
        ReadSaved([&] { return DOM_GetUnknownDomainFromDB(handle, name) == DOM_OK; });
    DOM_SetUnknownDomainName(has_unknown ? name : "");
    uint32_t device_id = 0;
    const bool has_device_id =
        ReadSaved([&] { return DOM_GetDeviceIDFromDB(handle, &device_id) == DOM_OK; });
    DOM_SetDeviceID(has_device_id ? device_id : 0);

    // What the getter presets is not a saved limit: without one the table's own limits stay.
    uint32_t stored[5] = {};
    if (ReadSaved([&] { return DOM_GetSessionLimitFromDB(handle, stored) == DOM_OK; })) {
        const SessionLimits limits{stored[0], stored[1], stored[2], stored[3], stored[4]};
        DOM_SetAllSessionLimit(&limits);
    }
}

void LoadRecordSettings(DBM_HANDLE handle) {
    RecordSwitches switches{};
    if (ReadSaved([&] { return DOM_GetRecordEnableInfoFromDB(handle, &switches) == DOM_OK; })) {
        DOM_SetRecordEnableInfoAll(&switches);
    }
    BackupMethods methods{};
    if (ReadSaved(
            [&] { return DOM_GetRecordBackupInfoFromDBStruct(handle, &methods) == DOM_OK; })) {
        DOM_SetAAAUserRecordBackupMethod(&methods);
    }
}

}  // namespace

void LoadRecordDefaults(DBM_HANDLE handle) {
    // 0 is what they start as, and what is read where none is saved.
    DOM_SetUserRecordEnableDefault(
        ReadSaved([&] { return DOM_GetUserRecordEnableDefaultFromDB(handle); }));
    DOM_SetUserRecordBackupMethodDefault(
        ReadSaved([&] { return DOM_GetRecordBackupMethodDefaultFromDB(handle); }));
}

bool LoadRoleTables(DBM_HANDLE handle, LoadReport& report) {
    report = LoadReport();
    if (DOM_DomainInfoTableInit() != DOM_OK) return false;
    bool complete = false;
    try {
        complete = LoadDomains(handle, report);
        if (complete) {
            LoadSettings(handle, report);
            LoadRecordSettings(handle);
        }
    } catch (const std::bad_alloc&) {
        complete = false;
    }
    if (!complete) {
        (void)DOM_DomainInfoTableFini();
        return false;
    }
    return true;
}

}  // namespace aaad
