// The method lists of the calling role's domains.
#pragma once

#include <aaadom/types.h>

#include "domain/tables.h"

namespace aaadom {

/// The place of a list in a domain, or null when the grid has no such row or column.
MethodList** PlaceOfList(DomainInfo& domain, uint32_t aaa_type, uint32_t service) noexcept;
/// The list of a default service, or null.
MethodList* DefaultList(DomainInfo& domain, uint32_t aaa_type) noexcept;
/// Gives a default list its single method of kind 4 with the lowest index that is free when the
/// list's own are gone. DOM_ERR_FAILED, and nothing changed, when a node cannot be allocated.
uint32_t ResetDefaultList(ZorvDomain& mib_node, uint32_t aaa_type, MethodList& list) noexcept;

uint32_t GetMethodList(const char* domain, uint32_t aaa_type, uint32_t service,
                       MethodList* list_out, MethodEntry* extras_out) noexcept;
uint32_t AddMethodList(const char* domain, MethodList& list, const MethodEntry* extras) noexcept;
uint32_t DeleteMethodList(const char* domain, uint32_t aaa_type, uint32_t service) noexcept;

}  // namespace aaadom
