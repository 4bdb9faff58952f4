// Little-endian numbers at any address.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

namespace platform {

template <typename Number>
constexpr Number SwapUnlessLittleEndian(Number value) noexcept {
    if constexpr (std::endian::native == std::endian::little || sizeof(Number) == 1) {
        return value;
    } else if constexpr (sizeof(Number) == 2) {
        return __builtin_bswap16(value);
    } else if constexpr (sizeof(Number) == 4) {
        return __builtin_bswap32(value);
    } else {
        return __builtin_bswap64(value);
    }
}

template <typename Number>
inline Number LoadLittleEndian(const void* at) noexcept {
    Number value;
    std::memcpy(&value, at, sizeof value);
    return SwapUnlessLittleEndian(value);
}

template <typename Number>
inline void StoreLittleEndian(void* at, Number value) noexcept {
    value = SwapUnlessLittleEndian(value);
    std::memcpy(at, &value, sizeof value);
}

}  // namespace platform
