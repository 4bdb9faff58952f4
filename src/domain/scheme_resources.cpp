// Nodes made before a domain is added, one for each method of its default lists, so that giving the
// methods their indexes cannot fail half-way.
#include <aaadom/method_list.h>
#include <aaadom/results.h>

#include "domain/domain_record.h"
#include "domain/scheme_index.h"

using namespace aaadom;

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

extern "C" {

uint32_t DOM_CreateDomainSchemeResource(const DomainInfo* record,
                                        SchemeResources* resources_out) noexcept {
    if (resources_out == nullptr) return DOM_ERR_FAILED;
    *resources_out = {};
    if (record == nullptr) return DOM_ERR_FAILED;
    for (uint32_t group = 0; group < DOM_DEFAULT_LISTS; ++group) {
        const MethodList* list = record->method_lists[kDefaultListRows[group]][DOM_DEFAULT_SERVICE];
        if (PrepareList(list, resources_out->nodes[group])) continue;
        DOM_DestroyDomainSchemeResource(resources_out);
        return DOM_ERR_FAILED;
    }
    return DOM_OK;
}

void DOM_DestroyDomainSchemeResource(SchemeResources* resources) noexcept {
    if (resources == nullptr) return;
    for (auto& group : resources->nodes) {
        for (SchemeIndexNode*& node : group) {
            free(node);
            node = nullptr;
        }
    }
}

}  // extern "C"
