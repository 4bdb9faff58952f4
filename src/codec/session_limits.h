// Session limits and counters: the TLV type is the session class.
#pragma once

#include <aaadom/types.h>

namespace aaadom {

/// One class with its value under a code; null when the class does not fit a TLV type.
TLV_MSG* EncodeSessionClass(uint32_t code, uint32_t session_class, uint32_t value) noexcept;
/// The first TLV whose type is a session class.
[[nodiscard]] uint32_t DecodeSessionClass(TLV_MSG* msg, uint32_t& session_class,
                                          uint32_t& value) noexcept;
TLV_MSG* EncodeSessionLimits(const SessionLimits& limits) noexcept;
/// A class that the message lacks keeps its value.
[[nodiscard]] uint32_t DecodeSessionLimits(TLV_MSG* msg, SessionLimits& limits) noexcept;

}  // namespace aaadom
