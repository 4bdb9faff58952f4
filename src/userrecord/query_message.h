// Queries of user records in messages.
#pragma once

#include <aaadom/user_record_query.h>

namespace aaadom {

TLV_MSG* EncodeTimeQuery(uint32_t code, const UserRecordTimeQuery& query) noexcept;
TLV_MSG* EncodeReasonQuery(const UserRecordReasonQuery& query) noexcept;
TLV_MSG* EncodeConditionQuery(uint32_t code, const UserRecordQuery& query) noexcept;

// Each keeps the fields whose TLV is missing or too short. The results differ in what they keep.

/// The last read's result.
[[nodiscard]] uint32_t DecodeListSelector(TLV_MSG* msg, uint16_t& selector) noexcept;
/// The results of the 16-bit reads, combined.
[[nodiscard]] uint32_t DecodeTimeQuery(TLV_MSG* msg, UserRecordTimeQuery& query) noexcept;
/// The result of the last 16-bit read.
[[nodiscard]] uint32_t DecodeReasonQuery(TLV_MSG* msg, UserRecordReasonQuery& query) noexcept;
/// The results of all reads but those of UINTs, combined.
[[nodiscard]] uint32_t DecodeConditionQuery(TLV_MSG* msg, UserRecordQuery& query) noexcept;

}  // namespace aaadom
