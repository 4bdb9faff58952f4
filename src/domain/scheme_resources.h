// Nodes made before a domain is added, one for each method of its default lists, so that giving the
// methods their indexes cannot fail half-way.
#pragma once

#include <aaadom/types.h>

namespace aaadom {

/// Overwrites `resources_out`. DOM_ERR_FAILED, and no node, when one cannot be allocated.
uint32_t CreateSchemeResources(const DomainInfo& record, SchemeResources& resources_out) noexcept;
/// Frees the nodes that no domain has taken over.
void FreeSchemeResources(SchemeResources& resources) noexcept;

}  // namespace aaadom
