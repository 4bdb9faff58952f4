// Batches of user records for the standby board.
#pragma once

#include <aaadom/user_record.h>

#include "base/message.h"

namespace aaadom {

/// Takes the fields of a record over from `scratch` into `batch`, which is sent first when it would
/// become too long.
[[nodiscard]] uint32_t AddToBatch(uint32_t kind, TLV_MSG* batch, TLV_MSG* scratch) noexcept;
[[nodiscard]] uint32_t SendBatch(TLV_MSG* batch, uint32_t kind) noexcept;
/// Stores the records of a batch up to the first that cannot be read.
[[nodiscard]] uint32_t StoreBatch(TLV_MSG* batch, uint32_t kind) noexcept;

}  // namespace aaadom
