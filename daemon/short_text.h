// Names of at most 31 characters, as profiles and policies have them, in messages.
#pragma once

#include <platform/tlv.h>

#include <cstdint>

namespace aaad {

constexpr uint32_t kShortTextSize = 32;
using ShortText = char[kShortTextSize];

enum class ShortTextState {
    kWhole,
    kMissing,
    kUnusable  // stands twice, cannot be read, or is longer than the library keeps
};

/// Reads the one text of a type. What is too long is another name than the one that it begins with,
/// and of two the library may take the one that was not looked at, so both are unusable. `text` is
/// empty unless it was whole.
ShortTextState ReadShortText(TLV_MSG* body, uint16_t type, ShortText& text);

/// Whether there is such a text and it is not empty.
bool HasName(TLV_MSG* body, uint16_t type);

}  // namespace aaad
