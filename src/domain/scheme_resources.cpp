#include "domain/scheme_resources.h"

#include <aaadom/results.h>

#include <cstdlib>

#include "domain/domain_record.h"
#include "domain/scheme_index.h"

namespace aaadom {
namespace {

/// One node for each non-empty entry of a default list; a missing list needs none.
bool PrepareList(const MethodList* list, SchemeIndexNode* (&nodes)[DOM_METHODS]) noexcept {
    if (list == nullptr) return true;
    for (uint32_t position = 0; position < DOM_METHODS; ++position) {
        if (list->methods[position].method_kind == METHOD_EMPTY) continue;
        nodes[position] = CreateSchemeIndex().release();
        if (nodes[position] == nullptr) return false;
    }
    return true;
}

}  // namespace

uint32_t CreateSchemeResources(const DomainInfo& record, SchemeResources& resources_out) noexcept {
    resources_out = {};
    for (uint32_t group = 0; group < DOM_DEFAULT_LISTS; ++group) {
        const MethodList* list = record.method_lists[kDefaultListRows[group]][DOM_DEFAULT_SERVICE];
        if (PrepareList(list, resources_out.nodes[group])) continue;
        FreeSchemeResources(resources_out);
        return DOM_ERR_FAILED;
    }
    return DOM_OK;
}

void FreeSchemeResources(SchemeResources& resources) noexcept {
    for (auto& group : resources.nodes) {
        for (SchemeIndexNode*& node : group) {
            free(node);
            node = nullptr;
        }
    }
}

}  // namespace aaadom
