// Wrapping and sending of changes for the standby board.
#pragma once

#include <cstdint>

#include "base/message.h"

namespace aaadom {

/// Sends a change with its operation to the standby board. Null and a message that cannot be
/// wrapped are left out.
void SendToStandby(uint32_t operation, TlvPtr msg) noexcept;

}  // namespace aaadom
