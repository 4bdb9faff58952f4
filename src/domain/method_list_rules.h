// Which method kinds a service may use, and in which order kinds may follow each other.
#pragma once

#include <aaadom/types.h>

#include <cstdint>

namespace aaadom {

/// Whether a service may use a method kind for an AAA type. Only the low five bits of the kind
/// count. False for AAA types other than 0, 4, 5 and services above 11.
bool IsMethodSupported(uint32_t service, uint32_t aaa_type, uint32_t method_kind) noexcept;

/// Whether the kinds of a list, up to the first empty entry and at most four, are the leading kinds
/// of an allowed order. Entries after the fourth are not looked at; an empty list is allowed.
bool IsOrderAllowed(const MethodList& list) noexcept;

}  // namespace aaadom
