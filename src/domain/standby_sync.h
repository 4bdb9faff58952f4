// Wrapping and sending of what a peer takes over: batch records and changes for the standby board.
#pragma once

#include <cstdint>

#include "base/message.h"

namespace aaadom {

/// Sends one object of a batch with operation 0 in the daemon's head to where DOM_BatchSyncCfgType
/// leads. Null and a message that cannot be wrapped are left out.
void SendBatchRecord(TlvPtr msg, int32_t fd) noexcept;

/// Sends a change with its operation to the standby board. Null and a message that cannot be
/// wrapped are left out.
void SendToStandby(uint32_t operation, TlvPtr msg) noexcept;

}  // namespace aaadom
