#include <platform/stlv.h>

#include <cstring>

// Item: type and length, 16 bits each in little-endian order, then the value.
extern "C" uint32_t STLV_Set(void* buffer, uint32_t room, uint16_t type, uint32_t length,
                             const void* value) noexcept {
    if (buffer == nullptr || (value == nullptr && length != 0)) return 0;
    if (length > 0xFFFF || room < 4 || length > room - 4) return 0;
    auto* out = static_cast<uint8_t*>(buffer);
    out[0] = static_cast<uint8_t>(type & 0xFF);
    out[1] = static_cast<uint8_t>(type >> 8);
    out[2] = static_cast<uint8_t>(length & 0xFF);
    out[3] = static_cast<uint8_t>(length >> 8);
    if (length != 0) std::memcpy(out + 4, value, length);
    return 4 + length;
}

extern "C" uint32_t STLV_Get(const void* buffer, uint32_t room, uint16_t* type, uint32_t* length,
                             const void** value) noexcept {
    if (buffer == nullptr || room < 4) return 0;
    const auto* in = static_cast<const uint8_t*>(buffer);
    const uint32_t size = in[2] | in[3] << 8;
    if (size > room - 4) return 0;
    if (type != nullptr) *type = static_cast<uint16_t>(in[0] | in[1] << 8);
    if (length != nullptr) *length = size;
    if (value != nullptr) *value = in + 4;
    return 4 + size;
}
