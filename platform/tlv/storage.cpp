#include "tlv/storage.h"

#include <pthread.h>

#include <cstdlib>
#include <new>

#if defined(__SANITIZE_ADDRESS__)
#define POOL_IS_POISONED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define POOL_IS_POISONED 1
#endif
#endif

#if defined(POOL_IS_POISONED)
#include <sanitizer/asan_interface.h>
#define POOL_POISON(at, size) ASAN_POISON_MEMORY_REGION(at, size)
#define POOL_UNPOISON(at, size) ASAN_UNPOISON_MEMORY_REGION(at, size)
#else
#define POOL_POISON(at, size) ((void)(at), (void)(size))
#define POOL_UNPOISON(at, size) ((void)(at), (void)(size))
#endif

namespace platform {

__thread ThreadPool thread_pool __attribute__((tls_model("initial-exec")));

namespace {

/// Sizes of the two kinds of pooled blocks: a domain with its lists, and the largest stored value.
constexpr uint32_t kSmallRoom = 16 * 1024;
constexpr uint32_t kLargeRoom = 64 * 1024;

enum PoolState : uint32_t {
    kUnused,  // the thread's end does not know of the pool yet
    kOpen,
    kClosed,  // the thread ends, or nobody could be asked to tell its end
};

void Drain(ThreadPool& pool) noexcept {
    while (pool.message_count != 0) {
        TLV_MSG* msg = pool.messages[--pool.message_count];
        POOL_UNPOISON(msg, sizeof *msg);
        std::free(msg);
    }
    while (pool.small_count != 0) {
        Storage* block = pool.small_blocks[--pool.small_count];
        POOL_UNPOISON(block, sizeof(Storage) + kSmallRoom);
        std::free(block);
    }
    while (pool.large_count != 0) {
        Storage* block = pool.large_blocks[--pool.large_count];
        POOL_UNPOISON(block, sizeof(Storage) + kLargeRoom);
        std::free(block);
    }
    // What is destroyed after this point goes back to malloc at once.
    pool.state = kClosed;
}

extern "C" void EndOfThread(void* pool) {
    Drain(*static_cast<ThreadPool*>(pool));
}

std::atomic<bool> key_usable{false};
pthread_key_t key;

/// Tells each thread's end of its pool. The process's end, which runs no such function for the
/// thread that ends it, empties that thread's pool here.
class PoolKey {
  public:
    PoolKey() noexcept { key_usable = pthread_key_create(&key, EndOfThread) == 0; }
    ~PoolKey() {
        if (!key_usable.exchange(false)) return;
        Drain(thread_pool);
        pthread_key_delete(key);
    }
    PoolKey(const PoolKey&) = delete;
    PoolKey& operator=(const PoolKey&) = delete;
} pool_key;

/// First use of the pool by this thread.
bool Open(ThreadPool& pool) noexcept {
    if (pool.state == kUnused) {
        const bool told = key_usable && pthread_setspecific(key, &pool) == 0;
        // Before the key exists (constructors of other objects) a later call may try again.
        if (told) {
            pool.state = kOpen;
        }
    }
    return pool.state == kOpen;
}

}  // namespace

TLV_MSG* TakeMessage() noexcept {
    ThreadPool& pool = thread_pool;
    if (pool.message_count != 0) [[likely]] {
        TLV_MSG* msg = pool.messages[--pool.message_count];
        POOL_UNPOISON(msg, sizeof *msg);
        return msg;
    }
    void* memory = std::malloc(sizeof(TLV_MSG));
    if (memory == nullptr) return nullptr;
    TLV_MSG* msg = ::new (memory) TLV_MSG;
    msg->own.references.store(1, std::memory_order_relaxed);
    msg->own.room = 0;
    return msg;
}

void RecycleMessage(TLV_MSG* msg) noexcept {
    ThreadPool& pool = thread_pool;
    if (pool.message_count == ThreadPool::kMessages || (pool.state != kOpen && !Open(pool)))
        [[unlikely]] {
        std::free(msg);
        return;
    }
    // The last holder may have gone by counting down to 0.
    msg->own.references.store(1, std::memory_order_relaxed);
    POOL_POISON(msg, sizeof *msg);
    pool.messages[pool.message_count++] = msg;
}

Storage* TakeBlock(uint32_t room) noexcept {
    ThreadPool& pool = thread_pool;
    if (room <= kSmallRoom && pool.small_count != 0) {
        Storage* block = pool.small_blocks[--pool.small_count];
        POOL_UNPOISON(block, sizeof(Storage) + kSmallRoom);
        return block;
    }
    if (room > kSmallRoom && room <= kLargeRoom && pool.large_count != 0) {
        Storage* block = pool.large_blocks[--pool.large_count];
        POOL_UNPOISON(block, sizeof(Storage) + kLargeRoom);
        return block;
    }
    if (room <= kLargeRoom) room = room <= kSmallRoom ? kSmallRoom : kLargeRoom;
    void* memory = std::malloc(sizeof(Storage) + size_t{room});
    if (memory == nullptr) return nullptr;
    Storage* block = ::new (memory) Storage;
    block->references.store(1, std::memory_order_relaxed);
    block->room = room;
    return block;
}

void RecycleBlock(Storage* block) noexcept {
    ThreadPool& pool = thread_pool;
    Storage** place = nullptr;
    if (block->room == kSmallRoom && pool.small_count != ThreadPool::kSmallBlocks) {
        place = Open(pool) ? &pool.small_blocks[pool.small_count++] : nullptr;
    } else if (block->room == kLargeRoom && pool.large_count != ThreadPool::kLargeBlocks) {
        place = Open(pool) ? &pool.large_blocks[pool.large_count++] : nullptr;
    }
    if (place == nullptr) {
        std::free(block);
        return;
    }
    block->references.store(1, std::memory_order_relaxed);
    POOL_POISON(block, sizeof(Storage) + block->room);
    *place = block;
}

}  // namespace platform
