#include <platform/stlv.h>

#include "tlv/bytes.h"

using namespace platform;

namespace {

constexpr uint32_t kItemHeader = 4;
constexpr uint32_t kItemLengthAt = 2;

}  // namespace

extern "C" {

uint32_t STLV_Set(void* buffer, uint32_t room, uint16_t type, uint32_t length,
                  const void* value) noexcept {
    if (buffer == nullptr || (value == nullptr && length != 0)) return 0;
    if (length > UINT16_MAX || room < kItemHeader + length) return 0;
    auto* at = static_cast<uint8_t*>(buffer);
    StoreLittleEndian<uint16_t>(at, type);
    StoreLittleEndian<uint16_t>(at + kItemLengthAt, static_cast<uint16_t>(length));
    if (length != 0) std::memcpy(at + kItemHeader, value, length);
    return kItemHeader + length;
}

uint32_t STLV_Get(const void* buffer, uint32_t room, uint16_t* type, uint32_t* length,
                  const void** value) noexcept {
    if (buffer == nullptr || room < kItemHeader) return 0;
    const auto* at = static_cast<const uint8_t*>(buffer);
    const uint32_t size = LoadLittleEndian<uint16_t>(at + kItemLengthAt);
    if (room - kItemHeader < size) return 0;
    if (type != nullptr) *type = LoadLittleEndian<uint16_t>(at);
    if (length != nullptr) *length = size;
    if (value != nullptr) *value = at + kItemHeader;
    return kItemHeader + size;
}

}  // extern "C"
