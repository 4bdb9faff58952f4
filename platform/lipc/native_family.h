// The address family that the seam names, as some network systems have it.
#pragma once

#include <cstdint>

namespace platform {

inline constexpr int32_t kNativeFamily = 37;
inline constexpr int32_t kNativeType = 2;
inline constexpr int32_t kNativeProtocol = 1;

/// Whether the system has the family; looked up once. Any thread.
bool HasNativeFamily() noexcept;

}  // namespace platform
