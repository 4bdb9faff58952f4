// Structures of numbers and repeated items as one message, the form in which policies are stored.
#include <platform/aaa_tlv.h>

#include <cstdlib>

#include "tlv/message.h"

using namespace platform;

namespace {

uint32_t AppendNetworkOrder(TLV_MSG* msg, uint16_t type, const uint8_t* item) noexcept {
    uint32_t value;
    std::memcpy(&value, item, sizeof value);
    // Appending stores little-endian, so the swap is needed on every host.
    return AppendNumber(msg, type, __builtin_bswap32(value));
}

uint32_t AppendItem(TLV_MSG* msg, const AAA_ENCAP_STEP& step, uint32_t position) noexcept {
    const uint8_t* item = static_cast<const uint8_t*>(step.first) + size_t{position} * step.stride;
    if (step.encap == nullptr) return AppendNetworkOrder(msg, step.type, item);
    TLV_MSG* sub = CreateMessage();
    if (sub == nullptr) return PLATFORM_FAILED;
    uint32_t result = step.encap(position, item, sub);
    if (result == kOk) result = AppendTlv(msg, step.type, sub->length, sub->image);
    DestroyMessage(sub);
    return result;
}

bool AppendSteps(TLV_MSG* msg, const AAA_ENCAP_STEP* steps, uint32_t step_count) noexcept {
    for (uint32_t i = 0; i < step_count; ++i) {
        if (steps[i].count != 0 && steps[i].first == nullptr) return false;
        for (uint32_t position = 0; position < steps[i].count; ++position) {
            if (AppendItem(msg, steps[i], position) != kOk) return false;
        }
    }
    return true;
}

}  // namespace

extern "C" {

void* AAA_EncapStructToTLVBuf(const AAA_ENCAP_STEP* steps, uint32_t step_count,
                              uint32_t* length_out) noexcept {
    if (length_out != nullptr) *length_out = 0;
    if (steps == nullptr && step_count != 0) return nullptr;
    TLV_MSG* msg = CreateMessage();
    if (msg == nullptr) return nullptr;
    void* image = nullptr;
    if (AppendSteps(msg, steps, step_count)) image = std::malloc(msg->length);
    if (image != nullptr) {
        std::memcpy(image, msg->image, msg->length);
        if (length_out != nullptr) *length_out = msg->length;
    }
    DestroyMessage(msg);
    return image;
}

uint32_t AAA_DecapSubTLVToStruct(TLV_MSG* msg, TLV_ITER* it, AAA_DECAP_FN decap,
                                 void* object) noexcept {
    TLV_MSG* sub = decap == nullptr ? nullptr : AAA_GetSubTlv(msg, it);
    if (sub == nullptr) return PLATFORM_FAILED;
    const uint32_t result = decap(sub, object);
    DestroyMessage(sub);
    return result;
}

}  // extern "C"
