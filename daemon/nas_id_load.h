// Fills the working role's NAS-ID tables from the database.
#pragma once

#include <platform/dbm.h>

namespace aaad {

/// On the working thread, after its tables are made. False when memory is short.
[[nodiscard]] bool LoadNasIdProfiles(DBM_HANDLE handle);

}  // namespace aaad
