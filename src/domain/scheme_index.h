// The scheme indexes of one domain: a list, ascending by index, of the nodes that give each method
// of the domain's default lists the number by which a management row addresses it.
#pragma once

#include <aaadom/types.h>

#include <cstdint>
#include <cstdlib>
#include <memory>

namespace aaadom {

struct SchemeIndexFree {
    void operator()(SchemeIndexNode* node) const noexcept { free(node); }
};
/// A node that belongs to no domain yet.
using SchemeIndexPtr = std::unique_ptr<SchemeIndexNode, SchemeIndexFree>;

/// A zero-filled node, or null.
SchemeIndexPtr CreateSchemeIndex() noexcept;

/// The node of that index, or null.
SchemeIndexNode* FindSchemeIndex(const ZorvDomain& domain, uint32_t scheme_index) noexcept;
/// The first number from 1 upward that no node of the domain has.
uint32_t LowestFreeSchemeIndex(const ZorvDomain& domain) noexcept;
/// Links `node` in index order; its index is not in use yet.
void InsertSchemeIndex(ZorvDomain& domain, SchemeIndexPtr node, uint32_t scheme_index,
                       uint32_t aaa_type, uint32_t position) noexcept;
/// Frees every node of an AAA type.
void RemoveSchemeIndexes(ZorvDomain& domain, uint32_t aaa_type) noexcept;
/// Makes every node of the list's AAA type say at which position of `list` its method stands now.
void RenumberSchemeIndexes(ZorvDomain& domain, uint32_t aaa_type, const MethodList& list) noexcept;

/// Gives each method of the record's default lists (AAA types 0, 4, 5 in this order) an index and
/// writes it into the record. A method keeps the index that it carries when no other method of the
/// domain has it, so that both roles and a restarted daemon agree on the rows of a domain; then
/// every other method gets the lowest free one. Nodes move from `resources` into the domain. A
/// method for which `resources` has no node (made for another record) ends up with index 0: no row
/// addresses it.
void dom_FillSchemeIndexes(ZorvDomain& node, DomainInfo& record,
                           SchemeResources& resources) noexcept;
/// Frees every scheme index of the domain.
void dom_FreeSchemeIndexes(ZorvDomain& node) noexcept;

}  // namespace aaadom
