#include <algorithm>

#include "tlv/message.h"
#include "tlv/socket.h"
#include "tlv/wait_limit.h"

using namespace platform;

namespace {

/// A value whose low 16 bits are never 0; the image's length would be, at a multiple of 64 KiB.
constexpr uint32_t kSent = 1;

}  // namespace

extern "C" {

TLV_MSG* TLV_Create(void) noexcept {
    return CreateMessage();
}

void TLV_Destroy(TLV_MSG* msg) noexcept {
    if (msg != nullptr) DestroyMessage(msg);
}

TLV_ITER* TLV_GetFirst(TLV_MSG* msg) noexcept {
    return msg == nullptr ? nullptr : First(msg);
}

TLV_ITER* TLV_GetNext(TLV_MSG* msg, TLV_ITER* it) noexcept {
    return msg == nullptr ? nullptr : Next(msg, it);
}

TLV_ITER* TLV_GetIteratorByType(TLV_MSG* msg, uint16_t type) noexcept {
    return msg == nullptr ? nullptr : FindType(msg, type);
}

uint16_t TLV_GetTypeByIterator(TLV_MSG* msg, TLV_ITER* it) noexcept {
    if (msg == nullptr) return 0;
    const TlvAt tlv = Locate(msg, it);
    return tlv ? tlv.Type() : 0;
}

uint32_t TLV_GetLenByIterator(TLV_MSG* msg, TLV_ITER* it) noexcept {
    return msg == nullptr ? 0 : Locate(msg, it).length;
}

uint32_t TLV_GetValueByIterator(TLV_MSG* msg, TLV_ITER* it, uint32_t length,
                                void* buffer) noexcept {
    if (msg == nullptr || buffer == nullptr) return PLATFORM_FAILED;
    const TlvAt tlv = Locate(msg, it);
    if (!tlv) return PLATFORM_FAILED;
    std::memcpy(buffer, tlv.Value(), std::min(length, tlv.length));
    return kOk;
}

uint32_t TLV_GetUINTByIterator(TLV_MSG* msg, TLV_ITER* it) noexcept {
    return msg == nullptr ? 0 : NumberAt<uint32_t>(msg, it);
}

uint32_t TLV_Append_Data(TLV_MSG* msg, uint16_t type, uint32_t length, const void* data) noexcept {
    if (msg == nullptr || (data == nullptr && length != 0)) return PLATFORM_FAILED;
    return AppendTlv(msg, type, length, data);
}

uint32_t TLV_Append_UINT(TLV_MSG* msg, uint16_t type, uint32_t value) noexcept {
    return msg == nullptr ? PLATFORM_FAILED : AppendNumber(msg, type, value);
}

uint32_t TLV_Delete_Data(TLV_MSG* msg, TLV_ITER* it) noexcept {
    return msg == nullptr ? PLATFORM_FAILED : DeleteTlv(msg, it);
}

uint32_t TLV_GetMsgLen(TLV_MSG* msg, uint32_t form) noexcept {
    const bool known = form == TLV_FORM_DESCRIPTOR || form == TLV_FORM_BUFFER;
    return msg == nullptr || !known ? 0 : msg->length;
}

uint32_t TLV_Flush(TLV_MSG* msg, uint32_t form, uint32_t wait_or_max,
                   uintptr_t fd_or_buffer) noexcept {
    if (msg == nullptr) return 0;
    if (form == TLV_FORM_DESCRIPTOR) {
        const uint32_t wait = platform_BoundWait(wait_or_max);
        return SendMessage(msg, static_cast<int>(fd_or_buffer), wait) ? kSent : 0;
    }
    if (form != TLV_FORM_BUFFER || fd_or_buffer == 0 || msg->length > wait_or_max) return 0;
    std::memcpy(reinterpret_cast<void*>(fd_or_buffer), msg->image, msg->length);
    return msg->length;
}

TLV_MSG* TLV_CreateReceiveMsg(uint32_t form, uintptr_t fd_or_buffer,
                              uint32_t wait_or_length) noexcept {
    if (form == TLV_FORM_DESCRIPTOR) {
        return ReceiveMessage(static_cast<int>(fd_or_buffer), platform_BoundWait(wait_or_length));
    }
    if (form != TLV_FORM_BUFFER || fd_or_buffer == 0) return nullptr;
    return CopyImage(reinterpret_cast<const uint8_t*>(fd_or_buffer), wait_or_length);
}

}  // extern "C"
