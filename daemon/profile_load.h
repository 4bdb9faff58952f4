// Fills the calling role's profiles from the database.
#pragma once

#include <platform/dbm.h>

namespace aaad {

/// After the role's tables are made. A record that is none is left out, and with `tell` the log
/// names its key; the rest is loaded. False when memory is short.
[[nodiscard]] bool LoadProfiles(DBM_HANDLE handle, bool tell);

}  // namespace aaad
