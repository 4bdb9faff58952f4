// Accounting policies as messages, without the checks of the interface.
#pragma once

#include <aaadom/accounting_policy.h>
#include <platform/tlv.h>

#include <cstdint>

namespace aaadom {

/// The whole policy, code 22; null without memory.
TLV_MSG* EncodeItaPolicy(const ItaPolicy& policy) noexcept;
/// Overwrites `policy`, which is undefined after a failure. Nothing has a default.
[[nodiscard]] uint32_t DecodeItaPolicy(TLV_MSG* msg, ItaPolicy& policy) noexcept;

}  // namespace aaadom
