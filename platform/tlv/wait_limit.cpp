#include "tlv/wait_limit.h"

#include <algorithm>
#include <atomic>

namespace {

/// Callers set the high half to ones (0xFFFFEA60 is one minute), so only the low half is a time.
constexpr uint32_t kWaitMask = 0xFFFF;

std::atomic<uint32_t> wait_limit{0};

}  // namespace

void platform_SetWaitLimit(uint32_t milliseconds) noexcept {
    wait_limit.store(milliseconds, std::memory_order_relaxed);
}

uint32_t platform_BoundWait(uint32_t wait) noexcept {
    const uint32_t asked = wait & kWaitMask;
    const uint32_t limit = wait_limit.load(std::memory_order_relaxed);
    return limit == 0 ? asked : std::min(asked, limit);
}
