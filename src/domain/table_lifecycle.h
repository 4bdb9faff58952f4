// Builds and tears down everything that one thread role keeps.
#pragma once

#include <cstdint>

#include "base/role.h"

namespace aaadom {

/// OR of the failing steps' results; on failure the role is torn down again. Runs in the role
/// itself, because the policy and profile stores ask for the role on their own.
uint32_t InitTables(Role role) noexcept;
/// Result of the backup-method teardown.
uint32_t FiniTables(Role role) noexcept;
/// Makes the working role's table and binding mutexes new; reports on the second only.
uint32_t ForceInitWorkingLocks() noexcept;

}  // namespace aaadom
