#include "domain/scheme_index.h"

#include <utility>

#include "domain/domain_record.h"

namespace aaadom {
namespace {

void Unlink(ZorvDomain& domain, SchemeIndexNode* node) noexcept {
    (node->prev == nullptr ? domain.scheme_index_head : node->prev->next) = node->next;
    if (node->next != nullptr) node->next->prev = node->prev;
}

}  // namespace

SchemeIndexPtr CreateSchemeIndex() noexcept {
    return SchemeIndexPtr(static_cast<SchemeIndexNode*>(calloc(1, sizeof(SchemeIndexNode))));
}

SchemeIndexNode* FindSchemeIndex(const ZorvDomain& domain, uint32_t scheme_index) noexcept {
    SchemeIndexNode* node = domain.scheme_index_head;
    while (node != nullptr && node->scheme_index < scheme_index) node = node->next;
    return node != nullptr && node->scheme_index == scheme_index ? node : nullptr;
}

uint32_t LowestFreeSchemeIndex(const ZorvDomain& domain) noexcept {
    uint32_t candidate = 1;
    for (const SchemeIndexNode* node = domain.scheme_index_head; node != nullptr;
         node = node->next) {
        if (node->scheme_index > candidate) break;
        if (node->scheme_index == candidate) ++candidate;  // a row may have taken index 0
    }
    return candidate;
}

void InsertSchemeIndex(ZorvDomain& domain, SchemeIndexPtr owned, uint32_t scheme_index,
                       uint32_t aaa_type, uint32_t position) noexcept {
    SchemeIndexNode* before = nullptr;
    SchemeIndexNode* after = domain.scheme_index_head;
    while (after != nullptr && after->scheme_index < scheme_index) {
        before = after;
        after = after->next;
    }
    SchemeIndexNode* node = owned.release();
    *node = {scheme_index, aaa_type, position, after, before};
    (before == nullptr ? domain.scheme_index_head : before->next) = node;
    if (after != nullptr) after->prev = node;
}

void RemoveSchemeIndexes(ZorvDomain& domain, uint32_t aaa_type) noexcept {
    for (SchemeIndexNode* node = domain.scheme_index_head; node != nullptr;) {
        SchemeIndexNode* next = node->next;
        if (node->aaa_type == aaa_type) {
            Unlink(domain, node);
            free(node);
        }
        node = next;
    }
}

void RenumberSchemeIndexes(ZorvDomain& domain, uint32_t aaa_type, const MethodList& list) noexcept {
    for (SchemeIndexNode* node = domain.scheme_index_head; node != nullptr; node = node->next) {
        if (node->aaa_type != aaa_type) continue;
        for (uint32_t position = 0; position < DOM_METHODS; ++position) {
            const MethodEntry& entry = list.methods[position];
            if (entry.method_kind == METHOD_EMPTY || entry.scheme_index != node->scheme_index) {
                continue;
            }
            node->position = position;
            break;
        }
    }
}

void dom_FillSchemeIndexes(ZorvDomain& node, DomainInfo& record,
                           SchemeResources& resources) noexcept {
    bool done[DOM_DEFAULT_LISTS][DOM_METHODS]{};
    auto for_each_method = [&](auto&& use) {
        for (uint32_t group = 0; group < DOM_DEFAULT_LISTS; ++group) {
            uint32_t row = kDefaultListRows[group];
            MethodList* list = record.method_lists[row][DOM_DEFAULT_SERVICE];
            if (list == nullptr) continue;
            for (uint32_t position = 0; position < DOM_METHODS; ++position) {
                MethodEntry& entry = list->methods[position];
                if (entry.method_kind == METHOD_EMPTY || done[group][position]) continue;
                SchemeIndexPtr prepared(std::exchange(resources.nodes[group][position], nullptr));
                uint32_t index = use(entry, prepared);
                if (index == 0) {
                    resources.nodes[group][position] = prepared.release();
                    continue;
                }
                InsertSchemeIndex(node, std::move(prepared), index, row, position);
                entry.scheme_index = index;
                done[group][position] = true;
            }
        }
    };
    for_each_method([&](const MethodEntry& entry, const SchemeIndexPtr& prepared) -> uint32_t {
        bool taken = FindSchemeIndex(node, entry.scheme_index) != nullptr;
        return prepared == nullptr || taken ? 0 : entry.scheme_index;
    });
    for_each_method([&](MethodEntry& entry, const SchemeIndexPtr& prepared) -> uint32_t {
        if (prepared != nullptr) return LowestFreeSchemeIndex(node);
        entry.scheme_index = 0;
        return 0;
    });
}

void dom_FreeSchemeIndexes(ZorvDomain& node) noexcept {
    while (SchemeIndexNode* first = node.scheme_index_head) {
        node.scheme_index_head = first->next;
        free(first);
    }
}

}  // namespace aaadom
