// One object of a batch synchronisation, wrapped the way a peer's daemon expects it.
#pragma once

#include <cstdint>

#include "base/message.h"

namespace aaadom {

/// Sends one object with operation 0 in the daemon's head to where DOM_BatchSyncCfgType leads, and
/// returns what that returned. Null and a message that cannot be wrapped are left out:
/// DOM_ERR_FAILED. A batch that goes on whatever became of one object ignores the result.
uint32_t SendBatchRecord(TlvPtr msg, int32_t fd) noexcept;

}  // namespace aaadom
