// The rows of the scheme table, one for each method of the default lists of the calling role's
// domains.
#pragma once

#include <aaadom/types.h>

namespace aaadom {

/// What a scheme index of a domain addresses.
struct SchemePlace {
    uint32_t aaa_type;
    uint32_t position;
};

uint32_t FindScheme(const char* domain, uint32_t scheme_index, SchemePlace& place_out) noexcept;
uint32_t AddScheme(const MibSchemeRow& row) noexcept;
uint32_t ModifyScheme(const MibSchemeRow& row) noexcept;
uint32_t DeleteScheme(const char* domain, uint32_t scheme_index) noexcept;

}  // namespace aaadom
