// Message codes that replace, create or delete a domain, and its method lists and attributes.
#include <aaadom/db_layout.h>
#include <aaadom/domain.h>
#include <aaadom/domain_codec.h>
#include <aaadom/domain_table.h>
#include <aaadom/method_list.h>
#include <aaadom/results.h>

#include <memory>

#include "codec/restore.h"

namespace aaadom {
namespace {

struct DomainDestroyer {
    void operator()(DomainInfo* record) const noexcept { DOM_DestroyDomain(record); }
};
using DomainPtr = std::unique_ptr<DomainInfo, DomainDestroyer>;

struct ZorvDestroyer {
    void operator()(ZorvDomain* node) const noexcept { DOM_DestroyZorvDomain(node); }
};
using ZorvPtr = std::unique_ptr<ZorvDomain, ZorvDestroyer>;

/// Scheme index nodes; what the table did not take is freed.
class SchemeGroup {
  public:
    SchemeGroup() = default;
    ~SchemeGroup() { DOM_DestroyDomainSchemeResource(&nodes_); }
    SchemeGroup(const SchemeGroup&) = delete;
    SchemeGroup& operator=(const SchemeGroup&) = delete;

    [[nodiscard]] bool Create(const DomainInfo* record) noexcept {
        return DOM_CreateDomainSchemeResource(record, &nodes_) == DOM_OK;
    }
    SchemeResources* Get() noexcept { return &nodes_; }

  private:
    SchemeResources nodes_{};
};

/// The calling role's table is locked. The count is no help: DOM_GetDomainCount tells the working
/// role's. Domains fill the lowest slots first, so a table with room usually shows a gap early.
bool TableIsFull() noexcept {
    uint32_t expected_slot = 0;
    for (DomainInfo* domain = DOM_GetFirstDomain(); domain != nullptr;
         domain = DOM_GetNextDomain(domain->name)) {
        if (domain->slot != expected_slot) return false;
        ++expected_slot;
    }
    return expected_slot == DOM_MAX_DOMAINS;
}

}  // namespace

/// The whole record, whatever the operation. It takes the place of a domain of the same name, but
/// not its slot: a domain always goes to the first empty one.
uint32_t RestoreDomain(Restore& restore) {
    DomainPtr record(DOM_DecodeDomain(restore.msg));
    if (!record) return DOM_ERR_FAILED;
    restore.Changed(DOM_DB_DOMAIN, record->name, DOM_PRESENT);

    ZorvPtr mib_node(DOM_CreateZorvDomain());
    SchemeGroup schemes;
    if (!mib_node || !schemes.Create(record.get())) return DOM_ERR_FAILED;

    DomainPtr replaced;
    uint32_t result = DOM_ERR_FAILED;
    (void)DOM_DomainInfoTableLock();  // a default mutex fails only when misused
    replaced.reset(DOM_FindDomainByName(record->name));
    // DOM_AddDomain cannot refuse: it would leave a full table with a wrong count and dangling
    // order.
    if (replaced || !TableIsFull()) {
        if (replaced) DOM_DeleteDomain(replaced.get());
        DomainInfo* added = record.release();
        DOM_AddDomain(added, mib_node.release(), schemes.Get());
        // The element of the old slot would come back as a second copy at the next start.
        if (replaced && replaced->slot != added->slot) restore.stale_element = replaced->slot;
        result = DOM_OK;
    }
    (void)DOM_DomainInfoTableUnlock();
    return result;
}

uint32_t RestoreDomainName(Restore& restore) {
    char name[DOM_NAME_SIZE] = {};
    if (DOM_DecodeDomainName(restore.msg, sizeof name, name) != DOM_OK) return DOM_ERR_FAILED;
    restore.Changed(DOM_DB_DOMAIN, name, restore.present);
    // Deleting removes the stored element here: once the domain is gone nobody knows its index.
    const uint32_t result = restore.Setting() ? DOM_AddDomainByName(name)
                                              : DOM_DeleteDomainAndDBByName(name, restore.save);
    return result == DOM_OK ? DOM_OK : DOM_ERR_FAILED;
}

uint32_t RestoreMethodList(Restore& restore) {
    char name[DOM_NAME_SIZE] = {};
    MethodList list{};
    MethodEntry extra{};
    if (DOM_DecodeMethList(restore.msg, sizeof name, name, &list, &extra) != DOM_OK)
        return DOM_ERR_FAILED;
    restore.Changed(DOM_DB_DOMAIN, name, DOM_PRESENT);
    return restore.Setting() ? DOM_AddMethodList(name, &list, &extra)
                             : DOM_DelMethodList(name, &list);
}

uint32_t RestoreAuthorAttr(Restore& restore) {
    uint32_t kind = 0;
    char name[DOM_NAME_SIZE] = {};
    AuthorAttr attributes;
    DOM_InitAuthorAttr(&attributes);
    if (DOM_DecodeAuthorAttr(restore.msg, &kind, sizeof name, name, &attributes) != DOM_OK)
        return DOM_ERR_FAILED;
    restore.Changed(DOM_DB_DOMAIN, name, DOM_PRESENT);
    return restore.Setting() ? DOM_AddAuthorAttr(name, &attributes, kind)
                             : DOM_DelAuthorAttr(name, kind);
}

}  // namespace aaadom
