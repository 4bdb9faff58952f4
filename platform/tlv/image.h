// The bytes of a message: header, then TLVs one behind the other. The only place that decides
// whether bytes from outside are a message; every message in memory has passed it or was built
// here.
#pragma once

#include <cstddef>
#include <cstdint>

#include "tlv/bytes.h"

namespace platform {

/// Bytes 'T', 'V', version, 0.
inline constexpr uint32_t kImageStart = 0x00015654;
inline constexpr uint32_t kImageHeader = 8;
inline constexpr uint32_t kBodyLengthAt = 4;
inline constexpr uint32_t kTlvHeader = 6;
inline constexpr uint32_t kTlvLengthAt = 2;
/// A TLV of a 32-bit number.
inline constexpr uint32_t kNumberTlv = kTlvHeader + sizeof(uint32_t);

inline void StartImage(uint8_t* image) noexcept {
    StoreLittleEndian<uint32_t>(image, kImageStart);
    StoreLittleEndian<uint32_t>(image + kBodyLengthAt, 0);
}

inline void SetImageLength(uint8_t* image, uint32_t length) noexcept {
    StoreLittleEndian<uint32_t>(image + kBodyLengthAt, length - kImageHeader);
}

/// The image's length as its header (8 readable bytes) says; 0 when it is no header. Wider than
/// the field, because the header comes on top of a body of up to 4 GiB - 1.
inline uint64_t ImageLengthOf(const uint8_t* header) noexcept {
    if (LoadLittleEndian<uint32_t>(header) != kImageStart) return 0;
    return uint64_t{kImageHeader} + LoadLittleEndian<uint32_t>(header + kBodyLengthAt);
}

/// True when the TLVs of the body walk exactly to the end of `length` bytes.
inline bool BodyIsWellFormed(const uint8_t* image, uint32_t length) noexcept {
    const uint8_t* at = image + kImageHeader;
    const uint8_t* const end = image + length;
    while (at != end) {
        if (end - at < static_cast<ptrdiff_t>(kTlvHeader)) return false;
        const uint32_t value = LoadLittleEndian<uint32_t>(at + kTlvLengthAt);
        // Most TLVs are numbers. A step of a constant, which the processor foresees, does not wait
        // for the length to be read.
        if (value == sizeof(uint32_t) && end - at >= static_cast<ptrdiff_t>(kNumberTlv)) {
            at += kNumberTlv;
            continue;
        }
        at += kTlvHeader;
        if (value > static_cast<uint64_t>(end - at)) return false;
        at += value;
    }
    return true;
}

/// True when `length` bytes at `image` are exactly one message.
inline bool IsImage(const uint8_t* image, uint32_t length) noexcept {
    return length >= kImageHeader && ImageLengthOf(image) == length &&
           BodyIsWellFormed(image, length);
}

}  // namespace platform
