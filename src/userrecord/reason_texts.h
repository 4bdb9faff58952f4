// The texts of the reason codes.
#pragma once

#include <cstdint>

namespace aaadom {

/// Null for a code without a text.
const char* TextOfReason(uint32_t code) noexcept;

}  // namespace aaadom
