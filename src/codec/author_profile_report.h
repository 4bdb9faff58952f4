// An authorization profile as the read-only code 159 reports it.
#pragma once

#include <aaadom/domain_codec.h>

namespace aaadom {

/// Null when an append failed or the entry count exceeds the array.
TLV_MSG* EncodeProfileReport(const AAAAuthorProfile& profile) noexcept;
/// Clears `profile` first. Entries beyond the array are ignored.
[[nodiscard]] uint32_t DecodeProfileReport(TLV_MSG* msg, AAAAuthorProfile& profile) noexcept;

}  // namespace aaadom
