// The bytes of one fuzz input, taken from the front. Behind the end there are zeros and empty
// spans.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>

namespace fuzz {

using Bytes = std::span<const uint8_t>;

class Input {
  public:
    Input(const uint8_t* data, size_t size) : rest_(data, size) {}
    explicit Input(Bytes bytes) : rest_(bytes) {}

    bool Empty() const { return rest_.empty(); }
    uint8_t Byte() {
        const Bytes one = Take(1);
        return one.empty() ? uint8_t{0} : one[0];
    }
    /// Little-endian, like everything in a message.
    uint16_t Number16() {
        const uint16_t low = Byte();
        return static_cast<uint16_t>(low | Byte() << 8);
    }
    uint32_t Number32() {
        const uint32_t low = Number16();
        return low | static_cast<uint32_t>(Number16()) << 16;
    }
    /// At most so many; a length that reaches behind the end is cut.
    Bytes Take(size_t length) {
        const Bytes taken = rest_.first(std::min(length, rest_.size()));
        rest_ = rest_.subspan(taken.size());
        return taken;
    }
    Bytes Rest() { return Take(rest_.size()); }
    /// A byte of length, then the text.
    std::string Text() {
        const Bytes bytes = Take(Byte());
        return std::string(bytes.begin(), bytes.end());
    }

  private:
    Bytes rest_;
};

}  // namespace fuzz
