#include <aaadom/method_list.h>
#include <aaadom/results.h>

#include "domain/scheme_resources.h"
#include "domain/scheme_table.h"
#include "domain/scheme_walk.h"

using namespace aaadom;

extern "C" {

uint32_t DOM_GetMethodIndex(const char* domain, uint32_t scheme_index,
                            uint32_t* position_out) noexcept {
    SchemePlace place{};
    uint32_t result = FindScheme(domain, scheme_index, place);
    if (result == DOM_OK && position_out != nullptr) *position_out = place.position;
    return result;
}

uint32_t DOM_GetAAAType(const char* domain, uint32_t scheme_index,
                        uint32_t* aaa_type_out) noexcept {
    SchemePlace place{};
    uint32_t result = FindScheme(domain, scheme_index, place);
    if (result == DOM_OK && aaa_type_out != nullptr) *aaa_type_out = place.aaa_type;
    return result;
}

uint32_t DOM_IsSchemeTableNull(void) noexcept {
    return IsSchemeTableEmpty() ? 1 : 0;
}

uint32_t DOM_MibGetFirstScheme(MibSchemeRow* row_out) noexcept {
    return row_out == nullptr ? DOM_ERR_FAILED : FirstSchemeRow(*row_out);
}

uint32_t DOM_MibGetNextScheme(const char* domain, uint32_t name_length, uint32_t scheme_index,
                              MibSchemeRow* row_out) noexcept {
    if (domain == nullptr) return DOM_ERR_NOT_FOUND;
    if (row_out == nullptr) return DOM_ERR_FAILED;
    return NextSchemeRow(domain, name_length, scheme_index, *row_out);
}

uint32_t DOM_AddSchemeTable(const MibSchemeRow* row) noexcept {
    return row == nullptr ? DOM_ERR_FAILED : AddScheme(*row);
}

uint32_t DOM_ModifySchemeTable(const MibSchemeRow* row) noexcept {
    return row == nullptr ? DOM_ERR_FAILED : ModifyScheme(*row);
}

uint32_t DOM_DeleteSchemeByIndex(const char* domain, uint32_t scheme_index) noexcept {
    return DeleteScheme(domain, scheme_index);
}

uint32_t DOM_CreateDomainSchemeResource(const DomainInfo* record,
                                        SchemeResources* resources_out) noexcept {
    if (resources_out == nullptr) return DOM_ERR_FAILED;
    *resources_out = {};
    return record == nullptr ? DOM_ERR_FAILED : CreateSchemeResources(*record, *resources_out);
}

void DOM_DestroyDomainSchemeResource(SchemeResources* resources) noexcept {
    if (resources != nullptr) FreeSchemeResources(*resources);
}

}  // extern "C"
