// Adds, replaces and removes the domains of a table.
#pragma once

#include <aaadom/types.h>

#include "domain/tables.h"

namespace aaadom {

/// Inserts the nodes and stores the record in the first empty slot. With no slot empty the record
/// is not stored and the result false, although the lists and the count have changed by then;
/// callers test the count first. A null NetConf node leaves the domain out of that order.
bool AddDomain(DomainTable& table, DomainInfo* record, ZorvDomain* mib_node,
               SchemeResources& resources, NetConfDomain* netconf_node) noexcept
    AAADOM_REQUIRES(table.mutex);

/// DOM_ADD_*; an existing name is no error and changes nothing.
uint32_t AddDomainByName(DomainTable& table, const char* name) noexcept
    AAADOM_REQUIRES(table.mutex);

/// DOM_ADD_*. Returns with the mutex of `table` held when a default list cannot be allocated.
uint32_t AddDomainOfRow(DomainTable& table, DomainInfo* record) noexcept;

/// Stores `record` in its slot of the working role's table. Consumes it.
uint32_t UpdateDomain(DomainTable& caller, DomainInfo* record) noexcept
    AAADOM_REQUIRES(caller.mutex);

/// Takes the domain out of slot and lists; the record stays the caller's.
void DeleteDomain(DomainTable& table, const DomainInfo& record) noexcept
    AAADOM_REQUIRES(table.mutex);

}  // namespace aaadom
