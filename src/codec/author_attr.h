// Authorization attributes of a domain as a nested message.
#pragma once

#include <aaadom/types.h>

#include "base/message.h"

namespace aaadom {

/// Appends the attributes as a nested message.
void AppendAttributes(Appender& append, const AuthorAttr& attributes) noexcept;
/// Stores what the nested message carries; attributes that it lacks keep their value.
[[nodiscard]] uint32_t DecodeAttributes(TLV_MSG* sub, AuthorAttr& attributes) noexcept;
/// The same from the TLV that carries the nested message; `attributes` is undefined after
/// a failure.
[[nodiscard]] uint32_t ReadAttributes(const TlvItem& nested, AuthorAttr& attributes) noexcept;

}  // namespace aaadom
