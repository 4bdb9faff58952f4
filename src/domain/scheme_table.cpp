#include "domain/scheme_table.h"

#include <aaadom/results.h>

#include <utility>

#include "base/text.h"
#include "domain/domain_order.h"
#include "domain/method_list_edit.h"
#include "domain/method_list_rules.h"
#include "domain/method_list_store.h"
#include "domain/scheme_index.h"

namespace aaadom {
namespace {

/// A default list and the scheme indexes of its domain; `list` is null when anything is missing.
struct DefaultListOfRow {
    ZorvDomain* mib_node = nullptr;
    MethodList* list = nullptr;
};

DefaultListOfRow FindDefaultList(DomainTable& table, const MibSchemeRow& row) noexcept
    AAADOM_REQUIRES(table.mutex) {
    char name[DOM_NAME_SIZE];
    CopyField(name, row.domain_name);
    DomainInfo* domain = table.Find(name);
    if (domain == nullptr) return {};
    ZorvDomain* mib_node = FindMibNode(table, domain->name);
    if (mib_node == nullptr) return {};
    return {mib_node, DefaultList(*domain, row.aaa_type)};
}

/// The node of a domain of the calling role, whose record may be missing.
const ZorvDomain* FindMibNodeIgnoringCase(const DomainTable& table, const char* name) noexcept
    AAADOM_REQUIRES(table.mutex) {
    if (name == nullptr) return nullptr;
    const ZorvDomain* node = table.mib_head;
    while (node != nullptr && !EqualIgnoringCase(node->domain_name, name)) node = node->next;
    return node;
}

/// Changes the method with the row's index in `list`, a copy: out, and in again at the place of its
/// new kind. False when there is no room.
bool ReplaceMethod(MethodList& list, const MibSchemeRow& row) noexcept {
    RemoveMethod(list, row.scheme_index);
    return InsertMethod(list, row.method_kind, row.scheme_index, row.scheme_name);
}

/// Whether the method with the row's index may get the row's kind. The entries decide in their
/// order: the first one that has the kind or the index.
bool IsChangeAllowed(const MethodList& list, const MibSchemeRow& row) noexcept {
    for (const MethodEntry& entry : list.methods) {
        if (entry.method_kind == METHOD_EMPTY) return true;
        bool same_kind = entry.method_kind == row.method_kind;
        bool same_index = entry.scheme_index == row.scheme_index;
        if (same_kind) return same_index;
        if (!same_index) continue;
        MethodList changed = list;
        return ReplaceMethod(changed, row) && IsOrderAllowed(changed);
    }
    return true;
}

}  // namespace

uint32_t FindScheme(const char* domain, uint32_t scheme_index, SchemePlace& place_out) noexcept {
    DomainTable& table = Domains(CurrentRole());
    MutexGuard lock(table.mutex);
    const ZorvDomain* mib_node = FindMibNodeIgnoringCase(table, domain);
    if (mib_node == nullptr) return DOM_ERR_FAILED;
    const SchemeIndexNode* node = FindSchemeIndex(*mib_node, scheme_index);
    if (node == nullptr) return DOM_ERR_FAILED;
    place_out = {node->aaa_type, node->position};
    return DOM_OK;
}

uint32_t AddScheme(const MibSchemeRow& row) noexcept {
    DomainTable& table = Domains(CurrentRole());
    MutexGuard lock(table.mutex);
    auto [mib_node, list] = FindDefaultList(table, row);
    if (list == nullptr || FindSchemeIndex(*mib_node, row.scheme_index) != nullptr ||
        HasKind(*list, row.method_kind)) {
        return DOM_ERR_FAILED;
    }
    MethodList changed = *list;
    // Kind 0 fits nowhere: a list either has an empty entry, which is of kind 0, or no room.
    if (!InsertMethod(changed, row.method_kind, row.scheme_index, row.scheme_name) ||
        !IsOrderAllowed(changed)) {
        return DOM_ERR_FAILED;
    }
    SchemeIndexPtr node = CreateSchemeIndex();
    if (node == nullptr) return DOM_ERR_FAILED;
    *list = changed;
    InsertSchemeIndex(*mib_node, std::move(node), row.scheme_index, row.aaa_type, 0);
    RenumberSchemeIndexes(*mib_node, row.aaa_type, *list);
    return DOM_OK;
}

uint32_t ModifyScheme(const MibSchemeRow& row) noexcept {
    DomainTable& table = Domains(CurrentRole());
    MutexGuard lock(table.mutex);
    auto [mib_node, list] = FindDefaultList(table, row);
    if (list == nullptr) return DOM_ERR_NOT_FOUND;
    const SchemeIndexNode* node = FindSchemeIndex(*mib_node, row.scheme_index);
    if (node == nullptr || node->aaa_type != row.aaa_type) return DOM_ERR_FAILED;
    // An empty entry is no method: a row of kind 0 would leave an index that addresses nothing.
    if (row.method_kind == METHOD_EMPTY || !IsChangeAllowed(*list, row)) return DOM_ERR_FAILED;
    MethodList changed = *list;
    if (!ReplaceMethod(changed, row)) return DOM_ERR_FAILED;
    *list = changed;
    RenumberSchemeIndexes(*mib_node, row.aaa_type, *list);
    return DOM_OK;
}

uint32_t DeleteScheme(const char* name, uint32_t scheme_index) noexcept {
    DomainTable& table = Domains(CurrentRole());
    MutexGuard lock(table.mutex);
    DomainInfo* domain = table.Find(name);
    if (domain == nullptr) return DOM_ERR_FAILED;
    ZorvDomain* mib_node = FindMibNode(table, domain->name);
    if (mib_node == nullptr) return DOM_ERR_FAILED;
    const SchemeIndexNode* node = FindSchemeIndex(*mib_node, scheme_index);
    if (node == nullptr) return DOM_ERR_FAILED;
    // One method cannot be taken out of an ordered list without judging the rest: the whole list
    // goes back to its default.
    uint32_t aaa_type = node->aaa_type;
    MethodList* list = DefaultList(*domain, aaa_type);
    return list == nullptr ? DOM_ERR_FAILED : ResetDefaultList(*mib_node, aaa_type, *list);
}

}  // namespace aaadom
