// Domains one after the other, each as a full record.
#pragma once

#include <aaadom/types.h>

#include "base/message.h"

namespace aaadom {

TlvPtr EncodeNamedDomain(const char* name) noexcept;
/// In table order; an empty name asks for the first. `next_name` may be `name`.
TlvPtr EncodeNextDomain(const char* name, char* next_name) noexcept;
/// In the length-first order of rows; a length of 0 asks for the first.
TlvPtr EncodeNextRowDomain(const char* name, uint32_t name_length, uint32_t& status) noexcept;
/// In plain text order; an empty name asks for the first.
TlvPtr EncodeNextNetConfDomain(const char* name, uint32_t& status) noexcept;

}  // namespace aaadom
