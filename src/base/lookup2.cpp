#include "base/lookup2.h"

namespace aaadom {
namespace {

constexpr uint32_t kGoldenRatio = 0x9E3779B9u;

struct State {
    uint32_t a = kGoldenRatio;
    uint32_t b = kGoldenRatio;
    uint32_t c;

    void Mix() noexcept {
        a -= b, a -= c, a ^= c >> 13;
        b -= c, b -= a, b ^= a << 8;
        c -= a, c -= b, c ^= b >> 13;
        a -= b, a -= c, a ^= c >> 12;
        b -= c, b -= a, b ^= a << 16;
        c -= a, c -= b, c ^= b >> 5;
        a -= b, a -= c, a ^= c >> 3;
        b -= c, b -= a, b ^= a << 10;
        c -= a, c -= b, c ^= b >> 15;
    }
};

/// Up to four bytes as a little-endian number.
uint32_t Word(const uint8_t* bytes, size_t count) noexcept {
    uint32_t word = 0;
    for (size_t i = 0; i < count && i < 4; ++i) word |= static_cast<uint32_t>(bytes[i]) << (8 * i);
    return word;
}

}  // namespace

uint32_t Lookup2(const void* bytes, size_t length, uint32_t initial) noexcept {
    const uint8_t* p = static_cast<const uint8_t*>(bytes);
    State state{.c = initial};
    size_t rest = length;
    for (; rest >= 12; p += 12, rest -= 12) {
        state.a += Word(p, 4);
        state.b += Word(p + 4, 4);
        state.c += Word(p + 8, 4);
        state.Mix();
    }
    // The low byte of c takes the length, so the tail's last three bytes begin at bit 8.
    state.c += static_cast<uint32_t>(length);
    if (rest > 8) state.c += Word(p + 8, rest - 8) << 8;
    if (rest > 4) state.b += Word(p + 4, rest - 4);
    state.a += Word(p, rest);
    state.Mix();
    return state.c;
}

}  // namespace aaadom
