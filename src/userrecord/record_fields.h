// The fields of a user record in messages.
#pragma once

#include <aaadom/user_record.h>

#include "base/message.h"

namespace aaadom {

/// Appends every field; the detail text only when there is one.
void AppendRecordFields(Appender& append, const UserRecord& record) noexcept;

/// Reads every field and keeps those without a TLV. `record.detail` must be null or a text that is
/// the reader's to free: a length in the message replaces it. Combined results of the reads that
/// count.
[[nodiscard]] uint32_t ReadRecordFields(TLV_MSG* msg, UserRecord& record) noexcept;

/// Length first: readers fetch the text as soon as they know how long it is.
void AppendDetail(Appender& append, const char* detail, uint32_t length) noexcept;

/// Text of the first TLV 207 in `length` bytes and a terminator, malloc'ed; null without.
char* CopyDetailOf(TLV_MSG* msg, uint32_t length) noexcept;

}  // namespace aaadom
