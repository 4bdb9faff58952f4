#include <platform/aaa_tlv.h>

#include <algorithm>

#include "tlv/message.h"

using namespace platform;

namespace {

constexpr uint32_t kMacLength = 6;

uint32_t CopyExactly(TLV_MSG* msg, TLV_ITER* it, uint32_t length, void* to) noexcept {
    if (msg == nullptr || to == nullptr) return PLATFORM_FAILED;
    const TlvAt tlv = Locate(msg, it);
    if (!tlv || tlv.length < length) return PLATFORM_FAILED;
    std::memcpy(to, tlv.Value(), length);
    return kOk;
}

}  // namespace

extern "C" {

uint32_t AAA_AppendUINTTlvData(TLV_MSG* msg, uint16_t type, uint32_t value) noexcept {
    return msg == nullptr ? PLATFORM_FAILED : AppendNumber(msg, type, value);
}

uint32_t AAA_AppendUSHORTTlvData(TLV_MSG* msg, uint16_t type, uint16_t value) noexcept {
    return msg == nullptr ? PLATFORM_FAILED : AppendNumber(msg, type, value);
}

uint32_t AAA_AppendUINT64TlvData(TLV_MSG* msg, uint16_t type, uint64_t value) noexcept {
    return msg == nullptr ? PLATFORM_FAILED : AppendNumber(msg, type, value);
}

uint32_t AAA_AppendStrTlvData(TLV_MSG* msg, uint16_t type, const char* text) noexcept {
    if (msg == nullptr || text == nullptr) return PLATFORM_FAILED;
    const size_t size = std::strlen(text) + 1;
    if (size > UINT32_MAX) return PLATFORM_FAILED;
    return AppendTlv(msg, type, static_cast<uint32_t>(size), text);
}

uint32_t AAA_AppendMACTlvData(TLV_MSG* msg, uint16_t type, const uint8_t mac[6]) noexcept {
    if (msg == nullptr || mac == nullptr) return PLATFORM_FAILED;
    return AppendTlv(msg, type, kMacLength, mac);
}

uint32_t AAA_AppendSubTlv(TLV_MSG* msg, uint16_t type, TLV_MSG* sub) noexcept {
    if (msg == nullptr || sub == nullptr) return PLATFORM_FAILED;
    return AppendTlv(msg, type, sub->length, sub->image);
}

uint32_t AAA_GetUINTTlvValue(TLV_MSG* msg, TLV_ITER* it) noexcept {
    return msg == nullptr ? 0 : NumberAt<uint32_t>(msg, it);
}

uint64_t AAA_GetUINT64TlvValue(TLV_MSG* msg, TLV_ITER* it) noexcept {
    return msg == nullptr ? 0 : NumberAt<uint64_t>(msg, it);
}

uint32_t AAA_GetUSHORTTlvValue(TLV_MSG* msg, TLV_ITER* it, uint16_t* value) noexcept {
    const uint32_t result = CopyExactly(msg, it, sizeof *value, value);
    if (result == kOk) *value = SwapUnlessLittleEndian(*value);
    return result;
}

uint32_t AAA_GetMACTlvValue(TLV_MSG* msg, TLV_ITER* it, uint8_t mac[6]) noexcept {
    return CopyExactly(msg, it, kMacLength, mac);
}

uint32_t AAA_GetStrTlvValue(TLV_MSG* msg, TLV_ITER* it, uint32_t capacity, char* buffer) noexcept {
    if (msg == nullptr || buffer == nullptr || capacity == 0) return PLATFORM_FAILED;
    const TlvAt tlv = Locate(msg, it);
    if (!tlv) return PLATFORM_FAILED;
    const auto* text = reinterpret_cast<const char*>(tlv.Value());
    const size_t length = strnlen(text, std::min(tlv.length, capacity - 1));
    std::memcpy(buffer, text, length);
    buffer[length] = '\0';
    return kOk;
}

TLV_MSG* AAA_GetSubTlv(TLV_MSG* msg, TLV_ITER* it) noexcept {
    if (msg == nullptr) return nullptr;
    const TlvAt tlv = Locate(msg, it);
    return tlv ? TakeNested(msg, tlv) : nullptr;
}

}  // extern "C"
