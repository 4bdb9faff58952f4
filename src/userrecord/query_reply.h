// Replies to queries of user records.
#pragma once

#include <aaadom/user_record_query.h>

namespace aaadom {

/// A message without a code.
TLV_MSG* EncodeListHeader(uint16_t selector) noexcept;
TLV_MSG* EncodeNoRecord() noexcept;

/// Appends the record in its brief form; the reply is unchanged on failure.
[[nodiscard]] uint32_t AppendBriefRecord(TLV_MSG* reply, const UserRecord& record) noexcept;
/// The detail text is set in every case: null after a failure.
[[nodiscard]] uint32_t DecodeBriefRecord(TLV_MSG* msg, UserRecordBrief& brief) noexcept;

/// The last count; fails, with count 0, without any.
[[nodiscard]] uint32_t DecodeRecordCount(TLV_MSG* reply, uint32_t& count) noexcept;

}  // namespace aaadom
