#include "tlv/message.h"

#include <algorithm>

namespace platform {
namespace {

/// Moves the image to bytes of which this message is the only user, with a capacity of at least
/// `room`. The former bytes stay until the caller releases `former` (null = nothing to release),
/// because what is being appended may lie in them.
bool MoveToOwnBytes(TLV_MSG* msg, uint64_t room, Storage*& former) noexcept {
    former = nullptr;
    Storage* target = &msg->own;
    uint8_t* bytes = msg->room;
    uint32_t capacity = kOwnRoom;
    // The room inside is free again only when no image, of this message or of a view, is in it.
    if (room > kOwnRoom || msg->storage == &msg->own || !IsSole(msg->own)) {
        // Doubling keeps the cost of many appends linear; beyond the end of 32 bits it stops.
        const uint64_t wanted =
            std::min<uint64_t>(std::max(room, uint64_t{msg->length} * 2), UINT32_MAX);
        target = TakeBlock(static_cast<uint32_t>(wanted));
        if (target == nullptr && wanted != room) target = TakeBlock(static_cast<uint32_t>(room));
        if (target == nullptr) return false;
        bytes = BytesOf(target);
        capacity = target->room;
    }
    std::memcpy(bytes, msg->image, msg->length);
    if (msg->storage != &msg->own) former = msg->storage;
    msg->image = bytes;
    msg->capacity = capacity;
    msg->storage = target;
    return true;
}

/// Whether `at`, inside the image, is where one of its TLVs begins.
bool BeginsTlv(const TLV_MSG* msg, const uint8_t* at) noexcept {
    const uint8_t* tlv = msg->image + kImageHeader;
    while (tlv < at) tlv += kTlvHeader + size_t{LoadLittleEndian<uint32_t>(tlv + kTlvLengthAt)};
    return tlv == at;
}

}  // namespace

TLV_ITER* FindType(const TLV_MSG* msg, uint16_t type) noexcept {
    const uint8_t* at = msg->image + kImageHeader;
    const uint8_t* const end = msg->image + msg->length;
    while (at != end) {
        if (LoadLittleEndian<uint16_t>(at) == type) return IterAt(at);
        at += kTlvHeader + size_t{LoadLittleEndian<uint32_t>(at + kTlvLengthAt)};
    }
    return nullptr;
}

TLV_MSG* CreateForImage(uint32_t length) noexcept {
    TLV_MSG* msg = CreateMessage();
    if (msg == nullptr) return nullptr;
    if (length > kOwnRoom) {
        Storage* block = TakeBlock(length);
        if (block == nullptr) {
            DestroyMessage(msg);
            return nullptr;
        }
        msg->storage = block;
        msg->image = BytesOf(block);
        msg->capacity = block->room;
    }
    msg->length = length;
    return msg;
}

TLV_MSG* CopyImage(const uint8_t* image, uint32_t length) noexcept {
    if (length < kImageHeader || ImageLengthOf(image) != length) return nullptr;
    TLV_MSG* msg = CreateForImage(length);
    if (msg == nullptr) return nullptr;
    // First the copy, which reads ahead, then the walk through it: a walk through bytes that are in
    // no cache waits for each TLV's length before it knows where the next one is.
    std::memcpy(msg->image, image, length);
    if (BodyIsWellFormed(msg->image, length)) return msg;
    DestroyMessage(msg);
    return nullptr;
}

TLV_MSG* TakeNested(TLV_MSG* msg, const TlvAt& tlv) noexcept {
    if (!IsImage(tlv.Value(), tlv.length)) return nullptr;
    TLV_MSG* nested = TakeMessage();
    if (nested == nullptr) return nullptr;
    Retain(msg->storage);
    nested->image = const_cast<uint8_t*>(tlv.Value());
    nested->length = tlv.length;
    nested->capacity = 0;
    nested->storage = msg->storage;
    return nested;
}

uint32_t AppendAfterGrowth(TLV_MSG* msg, uint16_t type, uint32_t length,
                           const void* value) noexcept {
    const uint64_t room = uint64_t{msg->length} + kTlvHeader + length;
    if (room > UINT32_MAX) return PLATFORM_FAILED;
    Storage* former;
    if (!MoveToOwnBytes(msg, room, former)) return PLATFORM_FAILED;
    PutTlv(msg, type, length, value);
    if (former != nullptr) Release(former);
    return kOk;
}

bool Reserve(TLV_MSG* msg, uint64_t room) noexcept {
    if (room <= msg->capacity) return true;
    Storage* former;
    if (room > UINT32_MAX || !MoveToOwnBytes(msg, room, former)) return false;
    if (former != nullptr) Release(former);
    return true;
}

uint32_t DeleteTlv(TLV_MSG* msg, const TLV_ITER* it) noexcept {
    const TlvAt tlv = Locate(msg, it);
    // Taking bytes out of a value, at a position of a nested message for one, would leave an image
    // that no longer walks to its end.
    if (!tlv || !BeginsTlv(msg, tlv.at)) return PLATFORM_FAILED;
    const size_t offset = static_cast<size_t>(tlv.at - msg->image);
    const size_t size = kTlvHeader + size_t{tlv.length};
    if (msg->capacity == 0 || !IsSole(*msg->storage)) {
        Storage* former;
        if (!MoveToOwnBytes(msg, msg->length, former)) return PLATFORM_FAILED;
        if (former != nullptr) Release(former);
    }
    std::memmove(msg->image + offset, msg->image + offset + size, msg->length - offset - size);
    msg->length -= static_cast<uint32_t>(size);
    SetImageLength(msg->image, msg->length);
    return kOk;
}

}  // namespace platform
