#include "domain/scheme_walk.h"

#include <aaadom/results.h>

#include <cstring>

#include "base/text.h"
#include "domain/domain_order.h"
#include "domain/method_list_store.h"
#include "domain/tables.h"

namespace aaadom {
namespace {

/// The calling role's record; the caller of the walk holds the role's mutex.
AAADOM_NO_TSA DomainInfo* FindRecord(const char* name) noexcept {
    return Domains(CurrentRole()).Find(name);
}

/// Fills the fields that the table knows; row status and service stay the caller's.
uint32_t FillRow(const ZorvDomain& domain, const SchemeIndexNode& node,
                 MibSchemeRow& row) noexcept {
    DomainInfo* record = FindRecord(domain.domain_name);
    if (record == nullptr || node.position >= DOM_METHODS) return DOM_ERR_FAILED;
    const MethodList* list = DefaultList(*record, node.aaa_type);
    if (list == nullptr) return DOM_ERR_FAILED;
    const MethodEntry& entry = list->methods[node.position];
    CopyField(row.domain_name, domain.domain_name);
    row.scheme_index = node.scheme_index;
    row.method_kind = entry.method_kind;
    row.aaa_type = node.aaa_type;
    CopyField(row.scheme_name, entry.scheme_name);
    return DOM_OK;
}

/// The domain that a row key names exactly, or null. The length is only compared.
const ZorvDomain* ExactDomain(const ZorvDomain* head, const char* name,
                              uint32_t name_length) noexcept {
    for (const ZorvDomain* domain = head; domain != nullptr; domain = domain->next) {
        if (strlen(domain->domain_name) == name_length && strcmp(domain->domain_name, name) == 0) {
            return domain;
        }
    }
    return nullptr;
}

const SchemeIndexNode* FirstAbove(const ZorvDomain& domain, uint32_t scheme_index) noexcept {
    const SchemeIndexNode* node = domain.scheme_index_head;
    while (node != nullptr && node->scheme_index <= scheme_index) node = node->next;
    return node;
}

}  // namespace

bool IsSchemeTableEmpty() noexcept {
    const ZorvDomain* first = WorkingMibHead();
    return first == nullptr || first->scheme_index_head == nullptr;
}

uint32_t FirstSchemeRow(MibSchemeRow& row_out) noexcept {
    if (IsSchemeTableEmpty()) return DOM_ERR_FAILED;
    const ZorvDomain* first = WorkingMibHead();
    return FillRow(*first, *first->scheme_index_head, row_out);
}

uint32_t NextSchemeRow(const char* name, uint32_t name_length, uint32_t scheme_index,
                       MibSchemeRow& row_out) noexcept {
    const ZorvDomain* head = MibWalkStart(name, name_length);
    if (const ZorvDomain* domain = ExactDomain(head, name, name_length)) {
        const SchemeIndexNode* node = FirstAbove(*domain, scheme_index);
        if (node != nullptr) {
            RememberMibWalk(domain);
            return FillRow(*domain, *node, row_out);
        }
    }
    const ZorvDomain* domain = NextMibNode(head, name, name_length);
    while (domain != nullptr && domain->scheme_index_head == nullptr) domain = domain->next;
    if (domain == nullptr) return DOM_ERR_NOT_FOUND;
    RememberMibWalk(domain);
    return FillRow(*domain, *domain->scheme_index_head, row_out);
}

}  // namespace aaadom
