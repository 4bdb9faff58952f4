// What is tested before a change is applied. Each returns 0 or the result of the refusal.
#pragma once

#include <platform/tlv.h>

#include <cstdint>

namespace aaad {

/// A domain that the change may create: its name is not empty, not too long and of allowed
/// characters.
uint32_t CheckNewDomain(TLV_MSG* body, uint32_t operation);
/// Set: as CheckNewDomain. Delete: the domain exists and nothing refers to it, in whatever letter
/// case either is spelled; else the library's reason, 1 to 6.
uint32_t CheckNewOrDeletedDomain(TLV_MSG* body, uint32_t operation);
/// A setting of a domain: there is such a domain. Some of the library's settings ignore an unknown
/// one and would find out only when it cannot be saved.
uint32_t CheckExistingDomain(TLV_MSG* body, uint32_t operation);
/// A row of the domain table: it names a domain that the applier neither cuts nor takes for one
/// without a name. What else is wrong with a row the applier tells by a result of its own.
uint32_t CheckDomainRow(TLV_MSG* body, uint32_t operation);
/// A name that the library would cut is refused, because the cut one may be another domain's.
uint32_t CheckNameLength(TLV_MSG* body, uint32_t operation);

}  // namespace aaad
