#include "domain/method_list_store.h"

#include <aaadom/method_list.h>

#include <utility>

#include "domain/domain_order.h"
#include "domain/method_list_edit.h"
#include "domain/scheme_index.h"
#include "domain/with_domain.h"

namespace aaadom {
namespace {

struct MethodListFree {
    void operator()(MethodList* list) const noexcept { DOM_DestroyMethodList(list); }
};
using MethodListPtr = std::unique_ptr<MethodList, MethodListFree>;

/// Copies reach callers that read names up to their terminator; a list or record from elsewhere may
/// have come in with a name that fills its field.
void TerminateName(MethodEntry& copy) noexcept {
    copy.scheme_name[DOM_SCHEME_NAME_SIZE - 1] = '\0';
}

/// Gives every method of the list a fresh index in place of those that the AAA type had, and writes
/// them into the list. DOM_ERR_FAILED, and nothing changed, when a node cannot be allocated.
uint32_t ReindexMethods(ZorvDomain& mib_node, MethodList& list) noexcept {
    SchemeIndexPtr prepared[DOM_METHODS];
    for (uint32_t position = 0; position < DOM_METHODS; ++position) {
        if (list.methods[position].method_kind == METHOD_EMPTY) continue;
        prepared[position] = CreateSchemeIndex();
        if (prepared[position] == nullptr) return DOM_ERR_FAILED;
    }
    RemoveSchemeIndexes(mib_node, list.aaa_type);
    for (uint32_t position = 0; position < DOM_METHODS; ++position) {
        if (prepared[position] == nullptr) continue;
        uint32_t index = LowestFreeSchemeIndex(mib_node);
        list.methods[position].scheme_index = index;
        InsertSchemeIndex(mib_node, std::move(prepared[position]), index, list.aaa_type, position);
    }
    return DOM_OK;
}

}  // namespace

MethodList** PlaceOfList(DomainInfo& domain, uint32_t aaa_type, uint32_t service) noexcept {
    if (aaa_type >= DOM_AAA_TYPES || service >= DOM_SERVICES) return nullptr;
    return &domain.method_lists[aaa_type][service];
}

MethodList* DefaultList(DomainInfo& domain, uint32_t aaa_type) noexcept {
    MethodList** place = PlaceOfList(domain, aaa_type, DOM_DEFAULT_SERVICE);
    return place == nullptr ? nullptr : *place;
}

uint32_t ResetDefaultList(ZorvDomain& mib_node, uint32_t aaa_type, MethodList& list) noexcept {
    SchemeIndexPtr node = CreateSchemeIndex();
    if (node == nullptr) return DOM_ERR_FAILED;
    // The list's own indexes go first, so it usually gets its lowest one back.
    RemoveSchemeIndexes(mib_node, aaa_type);
    uint32_t index = LowestFreeSchemeIndex(mib_node);
    ResetToDefault(list, index);
    InsertSchemeIndex(mib_node, std::move(node), index, aaa_type, 0);
    return DOM_OK;
}

uint32_t GetMethodList(const char* name, uint32_t aaa_type, uint32_t service, MethodList* list_out,
                       MethodEntry* extras_out) noexcept {
    return WithDomain(name, [&](DomainInfo& domain) -> uint32_t {
        MethodList** place = PlaceOfList(domain, aaa_type, service);
        if (place == nullptr || *place == nullptr) return DOM_ERR_FAILED;
        if (list_out != nullptr) {
            *list_out = **place;
            for (MethodEntry& entry : list_out->methods) TerminateName(entry);
        }
        if (extras_out != nullptr) {
            *extras_out = domain.service_extras[service];
            TerminateName(*extras_out);
        }
        return DOM_OK;
    });
}

// Neither kinds nor orders are judged here: whole lists come from configuration that was judged
// when it was entered, and must be restored as they are.
uint32_t AddMethodList(const char* name, MethodList& list, const MethodEntry* extras) noexcept {
    DomainTable& table = Domains(CurrentRole());
    MutexGuard lock(table.mutex);
    DomainInfo* domain = table.Find(name);
    if (domain == nullptr) return DOM_ERR_FAILED;
    MethodList** place = PlaceOfList(*domain, list.aaa_type, list.service);
    if (place == nullptr) return DOM_ERR_FAILED;
    MethodListPtr created(*place == nullptr ? DOM_CreateMethodList() : nullptr);
    if (*place == nullptr && created == nullptr) return DOM_ERR_FAILED;
    if (list.service == DOM_DEFAULT_SERVICE) {
        ZorvDomain* mib_node = FindMibNode(table, domain->name);
        if (mib_node == nullptr) return DOM_ERR_FAILED;
        if (ReindexMethods(*mib_node, list) != DOM_OK) return DOM_ERR_FAILED;
    }
    if (created != nullptr) *place = created.release();
    **place = list;
    // Extras arrive with the lists of this type only; one of kind 0 clears the stored one.
    if (list.aaa_type == AAA_TYPE_5 && extras != nullptr) {
        domain->service_extras[list.service] = *extras;
    }
    return DOM_OK;
}

uint32_t DeleteMethodList(const char* name, uint32_t aaa_type, uint32_t service) noexcept {
    DomainTable& table = Domains(CurrentRole());
    MutexGuard lock(table.mutex);
    DomainInfo* domain = table.Find(name);
    if (domain == nullptr) return DOM_ERR_FAILED;
    MethodList** place = PlaceOfList(*domain, aaa_type, service);
    if (place == nullptr || *place == nullptr) return DOM_ERR_FAILED;
    if (service != DOM_DEFAULT_SERVICE) {
        DOM_DestroyMethodList(std::exchange(*place, nullptr));
        return DOM_OK;
    }
    // A default list is never removed: rows of the scheme table can only be added to a list that is
    // there.
    ZorvDomain* mib_node = FindMibNode(table, domain->name);
    return mib_node == nullptr ? DOM_ERR_FAILED : ResetDefaultList(*mib_node, aaa_type, **place);
}

}  // namespace aaadom
