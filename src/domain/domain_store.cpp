#include "domain/domain_store.h"

#include <aaadom/domain.h>
#include <aaadom/method_list.h>
#include <aaadom/results.h>

#include <cstdlib>
#include <cstring>
#include <utility>

#include "base/text.h"
#include "domain/domain_order.h"
#include "domain/domain_record.h"
#include "domain/scheme_index.h"

namespace aaadom {
namespace {

constexpr uint32_t kNoSlot = DOM_MAX_DOMAINS;

/// All that the table needs beside the record, made before anything changes, so that an addition
/// either happens whole or not at all. Frees what was not handed over.
class Preparation {
  public:
    explicit Preparation(const DomainInfo& record) noexcept : mib_node_(DOM_CreateZorvDomain()) {
        if (mib_node_ == nullptr) return;
        if (DOM_CreateDomainSchemeResource(&record, &resources_) != DOM_OK) return;
        netconf_node_ = CreateNetConfNode(record.name);
    }
    ~Preparation() {
        DOM_DestroyDomainSchemeResource(&resources_);
        DOM_DestroyZorvDomain(mib_node_);
        free(netconf_node_);
    }
    Preparation(const Preparation&) = delete;
    Preparation& operator=(const Preparation&) = delete;

    bool Complete() const noexcept { return netconf_node_ != nullptr; }
    ZorvDomain* TakeMibNode() noexcept { return std::exchange(mib_node_, nullptr); }
    NetConfDomain* TakeNetConfNode() noexcept { return std::exchange(netconf_node_, nullptr); }
    SchemeResources& Resources() noexcept { return resources_; }

  private:
    ZorvDomain* mib_node_;
    SchemeResources resources_{};
    NetConfDomain* netconf_node_ = nullptr;
};

uint32_t FirstEmptySlot(const DomainTable& table) noexcept AAADOM_REQUIRES(table.mutex) {
    uint32_t slot = 0;
    while (slot < DOM_MAX_DOMAINS && table.slots[slot] != nullptr) ++slot;
    return slot;
}

/// Lowest slot of exactly this name.
uint32_t SlotOfName(const DomainTable& table, const char* name) noexcept
    AAADOM_REQUIRES(table.mutex) {
    const DomainInfo* found = table.Find(name);
    if (found == nullptr) return kNoSlot;
    if (strcmp(found->name, name) == 0) return found->slot;
    for (uint32_t slot = 0; slot < DOM_MAX_DOMAINS; ++slot) {
        if (table.slots[slot] != nullptr && strcmp(table.slots[slot]->name, name) == 0) return slot;
    }
    return kNoSlot;
}

void InsertNodes(DomainTable& table, DomainInfo& record, ZorvDomain* mib_node,
                 SchemeResources& resources, NetConfDomain* netconf_node) noexcept
    AAADOM_REQUIRES(table.mutex) {
    if (mib_node != nullptr) {
        CopyField(mib_node->domain_name, record.name);
        InsertMibNode(table, mib_node);
        dom_FillSchemeIndexes(*mib_node, record, resources);
    }
    if (netconf_node != nullptr) InsertNetConfNode(table, netconf_node);
}

void RemoveNodes(DomainTable& table, const char* name) noexcept AAADOM_REQUIRES(table.mutex) {
    if (ZorvDomain* node = TakeMibNode(table, name)) {
        dom_FreeSchemeIndexes(*node);
        DOM_DestroyZorvDomain(node);
    }
    RemoveNetConfNode(table, name);
}

/// Row management asks whether the working role has room, whatever role calls it. No lock of that
/// role is taken: it changes its count from its own thread only.
AAADOM_NO_TSA bool WorkingTableIsFull() noexcept {
    return Domains(Role::kWorking).count >= DOM_MAX_DOMAINS;
}

/// Replaces the record's lists of the default service.
bool ReplaceDefaultLists(DomainInfo& record) noexcept {
    for (uint32_t row : kDefaultListRows) {
        MethodList* list = CreateDefaultList(row);
        if (list == nullptr) return false;
        DOM_DestroyMethodList(record.method_lists[row][DOM_DEFAULT_SERVICE]);
        record.method_lists[row][DOM_DEFAULT_SERVICE] = list;
    }
    return true;
}

}  // namespace

bool AddDomain(DomainTable& table, DomainInfo* record, ZorvDomain* mib_node,
               SchemeResources& resources, NetConfDomain* netconf_node) noexcept {
    InsertNodes(table, *record, mib_node, resources, netconf_node);
    ++table.count;
    uint32_t slot = FirstEmptySlot(table);
    if (slot == kNoSlot) return false;
    table.SetSlot(slot, record);
    return true;
}

uint32_t AddDomainByName(DomainTable& table, const char* name) noexcept {
    // The stored form of a name is what must not exist twice.
    char stored_name[DOM_NAME_SIZE];
    CopyText(stored_name, name);
    if (table.Find(stored_name) != nullptr) return DOM_ADD_OK;
    if (table.count >= DOM_MAX_DOMAINS) return DOM_ADD_TABLE_FULL;
    DomainInfo* record = CreateDomainRecord();
    if (record == nullptr) return DOM_ADD_FAILED;
    CopyText(record->name, stored_name);
    Preparation prepared(*record);
    if (!prepared.Complete()) {
        DestroyDomainRecord(record);
        return DOM_ADD_FAILED;
    }
    (void)AddDomain(table, record, prepared.TakeMibNode(), prepared.Resources(),
                    prepared.TakeNetConfNode());  // the count left room
    return DOM_ADD_OK;
}

// The analysis cannot follow a mutex that stays locked on one path.
AAADOM_NO_TSA uint32_t AddDomainOfRow(DomainTable& table, DomainInfo* record) noexcept {
    (void)table.mutex.Lock();
    uint32_t result = DOM_ADD_FAILED;
    if (table.Find(record->name) != nullptr) {
        // an existing name is a failure here, unlike in AddDomainByName
    } else if (WorkingTableIsFull()) {
        result = DOM_ADD_TABLE_FULL;
    } else if (!ReplaceDefaultLists(*record)) {
        // The mutex stays locked on this path and on no other: callers of the row interface rely on
        // finding it held after this failure. Who goes on with the table releases it with
        // DOM_DomainInfoTableUnlock.
        return DOM_ADD_FAILED;
    } else {
        Preparation prepared(*record);
        if (prepared.Complete()) {
            // A success takes the record over. One that found no slot belongs to nobody else.
            if (!AddDomain(table, record, prepared.TakeMibNode(), prepared.Resources(),
                           prepared.TakeNetConfNode()))
                DestroyDomainRecord(record);
            result = DOM_ADD_OK;
        }
    }
    (void)table.mutex.Unlock();
    return result;
}

// The nodes leave the lists of the calling role, whose mutex the caller holds, and enter those of
// the working role: meant for that role, where both are the same table under the same mutex.
AAADOM_NO_TSA uint32_t UpdateDomain(DomainTable& caller, DomainInfo* record) noexcept {
    DomainTable& working = Domains(Role::kWorking);
    DomainInfo* previous = record->slot < DOM_MAX_DOMAINS ? working.slots[record->slot] : nullptr;
    Preparation prepared(*record);
    if (record->slot >= DOM_MAX_DOMAINS || !prepared.Complete()) {
        if (record != previous) DestroyDomainRecord(record);
        return DOM_ERR_FAILED;
    }
    RemoveNodes(caller, record->name);
    InsertNodes(working, *record, prepared.TakeMibNode(), prepared.Resources(),
                prepared.TakeNetConfNode());
    working.SetSlot(record->slot, record);
    if (previous == nullptr) {
        ++working.count;
    } else if (previous != record) {
        DestroyDomainRecord(previous);
    }
    return DOM_OK;
}

void DeleteDomain(DomainTable& table, const DomainInfo& record) noexcept {
    uint32_t slot = SlotOfName(table, record.name);
    if (slot != kNoSlot) {
        table.ClearSlot(slot);
        --table.count;
    }
    // Found or not: nodes without a record would be walked for ever.
    RemoveNodes(table, record.name);
}

}  // namespace aaadom
