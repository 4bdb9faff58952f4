// Where a batch-synchronisation message goes.
#pragma once

#include <platform/tlv.h>

#include <cstdint>

namespace aaadom {

/// Second argument of slot 12.
constexpr uint32_t kSyncToCfgThrConstant = 4;

/// Consumes `msg` always, except that slot 12 owns it once it was called.
uint32_t RouteBatchMessage(TLV_MSG* msg, int32_t fd) noexcept;

}  // namespace aaadom
