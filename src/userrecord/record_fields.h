// The fields of a user record in messages.
#pragma once

#include <aaadom/user_record.h>

#include "base/message.h"

namespace aaadom {

/// Appends every field; the detail text only when there is one.
void AppendRecordFields(Appender& append, const UserRecord& record) noexcept;

}  // namespace aaadom
