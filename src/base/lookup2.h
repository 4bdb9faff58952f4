// Bob Jenkins' lookup2 hash, the bucket hash of the NAS-ID, VPN and accounting-policy tables.
#pragma once

#include <cstddef>
#include <cstdint>

namespace aaadom {

/// The full 32-bit hash; callers mask it to their bucket count. Words are read little-endian.
uint32_t Lookup2(const void* bytes, size_t length, uint32_t initial) noexcept;

}  // namespace aaadom
