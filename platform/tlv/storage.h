// The bytes behind messages, and the per-thread pool that makes messages cost no malloc once a
// thread is warm.
//
// A message begins with room inside its own object and moves to a block when it outgrows that. A
// nested message may view the bytes of the message it came from: whoever uses bytes holds a
// reference, and the last one gives them back to the pool of the thread it runs on.
#pragma once

#include <platform/tlv.h>

#include <atomic>
#include <cstddef>
#include <cstdint>

namespace platform {

/// Counts the users of the bytes that follow it. `room` is 0 in a message's own storage.
struct Storage {
    std::atomic<uint32_t> references;
    uint32_t room;
};

inline constexpr uint32_t kMessageSize = 2048;
inline constexpr uint32_t kOwnRoom = kMessageSize - 3 * sizeof(void*) - sizeof(Storage);

}  // namespace platform

struct TLV_MSG {
    uint8_t* image;              // header and TLVs, always complete
    uint32_t length;             // of the image
    uint32_t capacity;           // bytes from `image` on that this message may write; 0 for a view
    platform::Storage* storage;  // what `image` lies in: `own`, a block, or another message's
    platform::Storage own;       // one reference is the message itself, each other one a view
    uint8_t room[platform::kOwnRoom];
};

namespace platform {

static_assert(sizeof(TLV_MSG) <= kMessageSize + sizeof(void*));

/// What a thread keeps for its next messages. At most 32 KiB of messages and 192 KiB of blocks.
struct ThreadPool {
    static constexpr uint32_t kMessages = 16;
    static constexpr uint32_t kSmallBlocks = 4;
    static constexpr uint32_t kLargeBlocks = 2;

    TLV_MSG* messages[kMessages];
    Storage* small_blocks[kSmallBlocks];
    Storage* large_blocks[kLargeBlocks];
    uint32_t message_count;
    uint32_t small_count;
    uint32_t large_count;
    uint32_t state;  // PoolState
};

/// Zero-initialised, without a constructor, in the static part of a thread's memory: reading it
/// costs one instruction.
extern __thread ThreadPool thread_pool __attribute__((tls_model("initial-exec")));

/// An object to be set up by its receiver, `own` counted once; null when memory is short.
TLV_MSG* TakeMessage() noexcept;
/// A block of at least `room` bytes, counted once; null when memory is short.
Storage* TakeBlock(uint32_t room) noexcept;

void RecycleMessage(TLV_MSG* msg) noexcept;
void RecycleBlock(Storage* block) noexcept;

inline uint8_t* BytesOf(Storage* block) noexcept {
    return reinterpret_cast<uint8_t*>(block + 1);
}

inline TLV_MSG* MessageAround(Storage* own) noexcept {
    return reinterpret_cast<TLV_MSG*>(reinterpret_cast<uint8_t*>(own) - offsetof(TLV_MSG, own));
}

/// True when nobody else uses the bytes; only a holder of a reference may ask, so nobody can join.
inline bool IsSole(const Storage& storage) noexcept {
    return storage.references.load(std::memory_order_acquire) == 1;
}

inline void Retain(Storage* storage) noexcept {
    storage->references.fetch_add(1, std::memory_order_relaxed);
}

/// Gives up one reference; the last one ends the bytes. The sole holder pays no locked instruction.
inline void Release(Storage* storage) noexcept {
    if (!IsSole(*storage) && storage->references.fetch_sub(1, std::memory_order_acq_rel) != 1) {
        return;
    }
    if (storage->room == 0) {
        RecycleMessage(MessageAround(storage));
    } else {
        RecycleBlock(storage);
    }
}

}  // namespace platform
