// Rows of the domain table and of the scheme table as row management sends and reads them.
#pragma once

#include <aaadom/types.h>

#include "base/message.h"

namespace aaadom {

/// `flags` null leaves the field-presence flags out.
TlvPtr EncodeDomainRow(const uint64_t* flags, const DomainMibRow& row,
                       uint32_t row_status) noexcept;
/// Clears both outputs first; refuses other codes than 0 and 14 and a row without a name.
[[nodiscard]] uint32_t DecodeDomainRow(TLV_MSG* msg, DomainMibRow& row, uint64_t& flags) noexcept;

/// `flags` null leaves the field-presence flags out.
TlvPtr EncodeSchemeRow(const uint64_t* flags, const MibSchemeRow& row) noexcept;
/// Stores what the message has over the caller's presets; refuses a row without a domain name.
[[nodiscard]] uint32_t DecodeSchemeRow(TLV_MSG* msg, MibSchemeRow& row) noexcept;
/// The first row of the scheme table.
TlvPtr EncodeFirstSchemeRow(uint32_t& status) noexcept;
/// The row after the given key.
TlvPtr EncodeNextSchemeRow(const char* domain, uint32_t name_length, uint32_t scheme_index,
                           uint32_t& status) noexcept;

}  // namespace aaadom
