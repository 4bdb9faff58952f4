// Why a domain may not be deleted.
#pragma once

#include <cstdint>

#include "domain/tables.h"

namespace aaadom {

/// DOM_DELCHK_*. Existence is asked of `table` ignoring case; everything else compares the given
/// spelling with what the working role's table refers to.
uint32_t CheckDeletion(const DomainTable& table, const char* name) noexcept
    AAADOM_REQUIRES(table.mutex);

}  // namespace aaadom
