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

/// Place of the first node of the row order that does not stand before `name`. The index follows
/// the list already.
uint32_t PlaceOfMibNode(const DomainTable& table, const char* name) noexcept
    AAADOM_REQUIRES(table.mutex) {
    const size_t length = strlen(name);
    return table.mib_index.Place([name, length](const ZorvDomain& node) {
        return CompareInMibOrder(name, length, &node) > 0;
    });
}

}  // namespace

void InsertMibNode(DomainTable& table, ZorvDomain* node) noexcept {
    const size_t length = BoundedLength(node->domain_name, DOM_NAME_SIZE);
    const auto is_before = [node, length](const ZorvDomain& other) {
        return CompareInMibOrder(node->domain_name, length, &other) > 0;
    };
    table.mib_walk = nullptr;
    ZorvDomain* before = nullptr;
    ZorvDomain* after = table.mib_head;
    if (table.mib_index.Follow(table.mib_head, nullptr)) {
        const uint32_t place = table.mib_index.Place(is_before);
        after = table.mib_index.At(place, nullptr);
        if (place > 0) before = table.mib_index.At(place - 1, nullptr);
        table.mib_index.Insert(place, node);
    } else {
        while (after != nullptr && is_before(*after)) {
            before = after;
            after = after->next;
        }
    }
    node->prev = before;
    node->next = after;
    (before == nullptr ? table.mib_head : before->next) = node;
    if (after != nullptr) after->prev = node;
}

ZorvDomain* FindMibNode(DomainTable& table, const char* name) noexcept {
    ZorvDomain* node = table.mib_head;
    if (table.mib_index.Follow(table.mib_head, nullptr)) {
        node = table.mib_index.At(PlaceOfMibNode(table, name), nullptr);
        return node != nullptr && strcmp(node->domain_name, name) == 0 ? node : nullptr;
    }
    while (node != nullptr && strcmp(node->domain_name, name) != 0) node = node->next;
    return node;
}

ZorvDomain* TakeMibNode(DomainTable& table, const char* name) noexcept {
    ZorvDomain* node = FindMibNode(table, name);
    if (node == nullptr) return nullptr;
    table.mib_walk = nullptr;
    if (table.mib_index.Follow(table.mib_head, nullptr)) {
        table.mib_index.Remove(PlaceOfMibNode(table, name));
    }
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
    const auto is_before = [node](const NetConfDomain& other) {
        return strcmp(other.domain_name, node->domain_name) <= 0;
    };
    NetConfDomain* after = table.netconf.next;
    if (table.netconf_index.Follow(table.netconf.next, &table.netconf)) {
        const uint32_t place = table.netconf_index.Place(is_before);
        after = table.netconf_index.At(place, &table.netconf);
        table.netconf_index.Insert(place, node);
    } else {
        while (after != &table.netconf && is_before(*after)) after = after->next;
    }
    node->next = after;
    node->prev = after->prev;
    after->prev->next = node;
    after->prev = node;
}

void RemoveNetConfNode(DomainTable& table, const char* name) noexcept {
    NetConfDomain* node = table.netconf.next;
    if (node == nullptr) return;
    const bool indexed = table.netconf_index.Follow(node, &table.netconf);
    uint32_t place = 0;
    if (indexed) {
        place = table.netconf_index.Place(
            [name](const NetConfDomain& other) { return strcmp(other.domain_name, name) < 0; });
        node = table.netconf_index.At(place, &table.netconf);
    } else {
        while (node != &table.netconf && strcmp(node->domain_name, name) != 0) node = node->next;
    }
    if (node == &table.netconf || strcmp(node->domain_name, name) != 0) return;
    if (indexed) table.netconf_index.Remove(place);
    node->prev->next = node->next;
    node->next->prev = node->prev;
    free(node);
}

void ResetNetConfOrder(DomainTable& table) noexcept {
    table.netconf_index.Clear();
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
