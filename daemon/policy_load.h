// Fills the policies of a role from the database.
#pragma once

#include <platform/dbm.h>

#include "roles.h"

namespace aaad {

/// On the working thread, which alone has accounting policies, after its tables are made. Records
/// of former releases are rewritten in the current form, and what a former migration left is
/// removed. A record that is no policy is left out, and the log names its key. False when memory is
/// short.
[[nodiscard]] bool LoadAccountingPolicies(DBM_HANDLE handle);

/// Loads the recording policy of a role, which is the calling thread's. The configuration role
/// tells the log of a record that is none, for both.
[[nodiscard]] bool LoadRecordingPolicy(DBM_HANDLE handle, Role role);

}  // namespace aaad
