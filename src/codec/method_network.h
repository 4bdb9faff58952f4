// Method items in network byte order, the form in which policies keep their method lists.
#pragma once

#include <aaadom/types.h>

namespace aaadom {

/// Appends one item, empty ones included. The sum of the append results, 0 on success.
[[nodiscard]] uint32_t EncodeNetworkItem(uint32_t position, const MethodEntry& item,
                                         TLV_MSG* msg) noexcept;
/// Stores the item at the position that it carries. Without a position below six, and with a name
/// of 34 bytes or more, nothing is stored.
[[nodiscard]] uint32_t DecodeNetworkItem(TLV_MSG* msg, MethodEntry* items) noexcept;

}  // namespace aaadom
