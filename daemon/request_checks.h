// What is tested before a change is applied. Each returns 0 or the result of the refusal.
#pragma once

#include <platform/tlv.h>

#include <cstdint>

namespace aaad {

/// A domain that the change may create: its name is not empty, not too long and of allowed
/// characters.
uint32_t CheckNewDomain(TLV_MSG* body, uint32_t operation);
/// Set: as CheckNewDomain. Delete: the domain exists and nothing refers to it; else the library's
/// reason, 1 to 6.
uint32_t CheckNewOrDeletedDomain(TLV_MSG* body, uint32_t operation);
/// A domain that the change names: a name that the library would cut is refused, because the cut
/// one may be another domain's.
uint32_t CheckNamedDomain(TLV_MSG* body, uint32_t operation);

}  // namespace aaad
