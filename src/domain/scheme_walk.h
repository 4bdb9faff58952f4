// Walks the scheme table in row order: domains by name length, then by strcmp; within a domain by
// scheme index. The order is the working role's, whatever role calls; the contents of a row are the
// calling role's. Nothing is locked here: callers that hold the calling role's table mutex call
// these, and the working role changes its lists from its own thread only.
#pragma once

#include <aaadom/types.h>

namespace aaadom {

/// Whether the first domain of the order has no scheme index, or there is none. Later domains do
/// not count.
bool IsSchemeTableEmpty() noexcept;
uint32_t FirstSchemeRow(MibSchemeRow& row_out) noexcept;
uint32_t NextSchemeRow(const char* domain, uint32_t name_length, uint32_t scheme_index,
                       MibSchemeRow& row_out) noexcept;

}  // namespace aaadom
