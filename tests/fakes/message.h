// The fake's message: a list of items, with everything needed to notice a stale iterator.
#pragma once

#include <platform/tlv.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

struct TLV_ITER {
    TLV_MSG* owner;
    uint16_t type;
    std::string value;
    uint64_t handed_out_at;  ///< change counter of the message when a caller last got this iterator
};

struct TLV_MSG {
    std::vector<std::unique_ptr<TLV_ITER>> items;
    std::vector<std::unique_ptr<TLV_ITER>> deleted;  ///< kept, so that stale iterators can be told
    uint64_t changes = 1;
};

namespace fake {

/// A new, counted message.
TLV_MSG* NewMessage();
void DestroyMessage(TLV_MSG* msg);
/// Adds an item; every iterator handed out before is stale.
void AddItem(TLV_MSG* msg, uint16_t type, const std::string& value);
/// Hands an item out as iterator.
TLV_ITER* HandOut(TLV_MSG* msg, size_t index);
/// The item that the caller may read, or null (noting the misuse) for a stale or foreign iterator.
TLV_ITER* Readable(TLV_MSG* msg, TLV_ITER* it);
/// Null unless the bytes are exactly one image.
TLV_MSG* ParseImage(const std::string& image);
std::string MakeImage(const TLV_MSG* msg);
std::string LittleEndian(uint64_t value, int bytes);
uint64_t FromLittleEndian(const std::string& bytes, size_t offset, int count);

// The socket half of TLV_Flush and TLV_CreateReceiveMsg.
void NoteBufferFlush(uint32_t limit);
uint32_t FlushToDescriptor(int32_t fd, uint32_t wait, const std::string& image);
/// False when nothing came.
bool ReceiveFromDescriptor(int32_t fd, uint32_t wait, std::string& image);

}  // namespace fake
