// A message: building, reading, changing. All functions want a message that is not null; positions
// may be null or foreign.
#pragma once

#include <platform/tlv.h>

#include <cstdint>
#include <cstring>

#include "result.h"
#include "tlv/image.h"
#include "tlv/storage.h"

namespace platform {

/// One TLV whose header and value lie inside its message; false for null and foreign positions.
struct TlvAt {
    const uint8_t* at = nullptr;
    uint32_t length = 0;

    explicit operator bool() const noexcept { return at != nullptr; }
    uint16_t Type() const noexcept { return LoadLittleEndian<uint16_t>(at); }
    const uint8_t* Value() const noexcept { return at + kTlvHeader; }
};

/// The one check of every position that comes from outside.
inline TlvAt Locate(const TLV_MSG* msg, const TLV_ITER* it) noexcept {
    const uint64_t offset =
        uint64_t{reinterpret_cast<uintptr_t>(it)} - reinterpret_cast<uintptr_t>(msg->image);
    // Below the image the difference wraps to a huge number.
    if (offset < kImageHeader || offset >= msg->length || msg->length - offset < kTlvHeader) {
        return {};
    }
    const uint8_t* at = msg->image + offset;
    const uint32_t length = LoadLittleEndian<uint32_t>(at + kTlvLengthAt);
    if (length > msg->length - offset - kTlvHeader) return {};
    return {at, length};
}

inline TLV_ITER* IterAt(const uint8_t* at) noexcept {
    return reinterpret_cast<TLV_ITER*>(const_cast<uint8_t*>(at));
}

inline TLV_ITER* First(const TLV_MSG* msg) noexcept {
    return msg->length == kImageHeader ? nullptr : IterAt(msg->image + kImageHeader);
}

inline TLV_ITER* Next(const TLV_MSG* msg, const TLV_ITER* it) noexcept {
    const TlvAt tlv = Locate(msg, it);
    if (!tlv) return nullptr;
    const uint8_t* next = tlv.Value() + tlv.length;
    return next == msg->image + msg->length ? nullptr : IterAt(next);
}

TLV_ITER* FindType(const TLV_MSG* msg, uint16_t type) noexcept;

inline TLV_MSG* CreateMessage() noexcept {
    TLV_MSG* msg = TakeMessage();
    if (msg == nullptr) return nullptr;
    msg->image = msg->room;
    msg->length = kImageHeader;
    msg->capacity = kOwnRoom;
    msg->storage = &msg->own;
    StartImage(msg->image);
    return msg;
}

inline void DestroyMessage(TLV_MSG* msg) noexcept {
    if (msg->storage != &msg->own) Release(msg->storage);
    Release(&msg->own);
}

/// A message with room for an image of `length` bytes, which the caller writes to `image` and then
/// either validates or destroys; null when memory is short.
TLV_MSG* CreateForImage(uint32_t length) noexcept;
/// A message from a copy of `length` bytes; null when they are none.
TLV_MSG* CopyImage(const uint8_t* image, uint32_t length) noexcept;
/// The nested message that a TLV of `msg` carries; null when it carries none.
TLV_MSG* TakeNested(TLV_MSG* msg, const TlvAt& tlv) noexcept;

/// AppendTlv for a message without enough room, or which is a view.
uint32_t AppendAfterGrowth(TLV_MSG* msg, uint16_t type, uint32_t length,
                           const void* value) noexcept;

/// Makes room for an image of `room` bytes in bytes that this message may write.
[[nodiscard]] bool Reserve(TLV_MSG* msg, uint64_t room) noexcept;

/// Writes behind the image's end, which no view of these bytes reaches; so it needs no own copy.
inline void PutTlv(TLV_MSG* msg, uint16_t type, uint32_t length, const void* value) noexcept {
    uint8_t* at = msg->image + msg->length;
    StoreLittleEndian<uint16_t>(at, type);
    StoreLittleEndian<uint32_t>(at + kTlvLengthAt, length);
    if (length != 0) std::memcpy(at + kTlvHeader, value, length);
    // Last, so that a message that is appended to itself carries the length it had.
    msg->length += kTlvHeader + length;
    SetImageLength(msg->image, msg->length);
}

/// `value` may be null when `length` is 0, and may lie inside `msg`.
inline uint32_t AppendTlv(TLV_MSG* msg, uint16_t type, uint32_t length,
                          const void* value) noexcept {
    if (uint64_t{msg->length} + kTlvHeader + length > msg->capacity) [[unlikely]] {
        return AppendAfterGrowth(msg, type, length, value);
    }
    PutTlv(msg, type, length, value);
    return kOk;
}

template <typename Number>
inline uint32_t AppendNumber(TLV_MSG* msg, uint16_t type, Number value) noexcept {
    value = SwapUnlessLittleEndian(value);
    return AppendTlv(msg, type, sizeof value, &value);
}

template <typename Number>
inline Number NumberAt(const TLV_MSG* msg, const TLV_ITER* it) noexcept {
    const TlvAt tlv = Locate(msg, it);
    return tlv && tlv.length >= sizeof(Number) ? LoadLittleEndian<Number>(tlv.Value()) : Number{0};
}

uint32_t DeleteTlv(TLV_MSG* msg, const TLV_ITER* it) noexcept;

}  // namespace platform
