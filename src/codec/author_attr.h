// Authorization attributes of a domain as a nested message.
#pragma once

#include <aaadom/types.h>

#include "base/message.h"

namespace aaadom {

/// The attributes as a nested message; null when an append failed.
TlvPtr EncodeAttributes(const AuthorAttr& attributes) noexcept;
/// Stores what the nested message carries; attributes that it lacks keep their value.
[[nodiscard]] uint32_t DecodeAttributes(TLV_MSG* sub, AuthorAttr& attributes) noexcept;

}  // namespace aaadom
