// The message with which an access module reports a user record.
#pragma once

#include <aaadom/user_record.h>

namespace aaadom {

/// Fields of a reported record, which has no serial number.
[[nodiscard]] uint32_t AppendRecordContent(TLV_MSG* msg, const UserRecordSource& source) noexcept;

TLV_MSG* EncodeRecordReport(uint32_t record_type, uint16_t flags,
                            const UserRecordSource& source) noexcept;

/// Clears the record's detail text unread; keeps whatever else has no TLV.
[[nodiscard]] uint32_t DecodeRecordReport(TLV_MSG* msg, uint32_t& record_type, uint16_t& flags,
                                          UserRecord& record) noexcept;

}  // namespace aaadom
