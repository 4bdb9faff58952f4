// Results of the platform's calls that answer with a code.
#pragma once

#include <cstdint>

namespace platform {

inline constexpr uint32_t kOk = 0;
inline constexpr uint32_t PLATFORM_FAILED = 0x40010001;

}  // namespace platform
