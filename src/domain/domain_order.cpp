#include "domain/domain_order.h"

#include <cstdlib>
#include <cstring>

#include "base/text.h"

namespace aaadom {
namespace {

/// Order of a name of `length` characters and a node's name: shorter first, then strcmp.
int CompareInMibOrder(const char* name, size_t length, const ZorvDomain* node) noexcept {
    size_t node_length = BoundedLength(node->domain_name, DOM_NAME_SIZE);
    if (length != node_length) return length < node_length ? -1 : 1;
    return strcmp(name, node->domain_name);
}

}  // namespace

void InsertMibNode(DomainTable& table, ZorvDomain* node) noexcept {
    size_t length = BoundedLength(node->domain_name, DOM_NAME_SIZE);
    table.mib_walk = nullptr;
    ZorvDomain* before = nullptr;
    ZorvDomain* after = table.mib_head;
    while (after != nullptr && CompareInMibOrder(node->domain_name, length, after) > 0) {
        before = after;
        after = after->next;
    }
    node->prev = before;
    node->next = after;
    (before == nullptr ? table.mib_head : before->next) = node;
    if (after != nullptr) after->prev = node;
}

ZorvDomain* FindMibNode(DomainTable& table, const char* name) noexcept {
    ZorvDomain* node = table.mib_head;
    while (node != nullptr && strcmp(node->domain_name, name) != 0) node = node->next;
    return node;
}

ZorvDomain* TakeMibNode(DomainTable& table, const char* name) noexcept {
    ZorvDomain* node = FindMibNode(table, name);
    if (node == nullptr) return nullptr;
    table.mib_walk = nullptr;
    (node->prev == nullptr ? table.mib_head : node->prev->next) = node->next;
    if (node->next != nullptr) node->next->prev = node->prev;
    node->next = nullptr;
    node->prev = nullptr;
    return node;
}

const ZorvDomain* NextMibNode(const ZorvDomain* head, const char* name,
                              uint32_t name_length) noexcept {
    const ZorvDomain* node = head;
    while (node != nullptr && CompareInMibOrder(name, name_length, node) >= 0) node = node->next;
    return node;
}

AAADOM_NO_TSA const ZorvDomain* MibWalkStart(const char* name, uint32_t name_length) noexcept {
    if (CurrentRole() == Role::kWorking) {
        const ZorvDomain* node = Domains(Role::kWorking).mib_walk;
        if (node != nullptr && CompareInMibOrder(name, name_length, node) >= 0) return node;
    }
    return WorkingMibHead();
}

AAADOM_NO_TSA void RememberMibWalk(const ZorvDomain* node) noexcept {
    if (CurrentRole() == Role::kWorking) Domains(Role::kWorking).mib_walk = node;
}

NetConfDomain* CreateNetConfNode(const char* name) noexcept {
    auto* node = static_cast<NetConfDomain*>(calloc(1, sizeof(NetConfDomain)));
    if (node != nullptr) CopyText(node->domain_name, name);
    return node;
}

void InsertNetConfNode(DomainTable& table, NetConfDomain* node) noexcept {
    if (table.netconf.next == nullptr) ResetNetConfOrder(table);
    NetConfDomain* after = table.netconf.next;
    while (after != &table.netconf && strcmp(after->domain_name, node->domain_name) <= 0) {
        after = after->next;
    }
    node->next = after;
    node->prev = after->prev;
    after->prev->next = node;
    after->prev = node;
}

void RemoveNetConfNode(DomainTable& table, const char* name) noexcept {
    for (NetConfDomain* node = table.netconf.next; node != nullptr && node != &table.netconf;
         node = node->next) {
        if (strcmp(node->domain_name, name) != 0) continue;
        node->prev->next = node->next;
        node->next->prev = node->prev;
        free(node);
        return;
    }
}

void ResetNetConfOrder(DomainTable& table) noexcept {
    table.netconf.prev = &table.netconf;
    table.netconf.next = &table.netconf;
}

const NetConfDomain* NextNetConfNode(const NetConfDomain* sentinel, const char* name) noexcept {
    const NetConfDomain* node = sentinel->next;
    while (node != nullptr && node != sentinel) {
        if (name == nullptr || strcmp(node->domain_name, name) > 0) return node;
        node = node->next;
    }
    return nullptr;
}

}  // namespace aaadom
