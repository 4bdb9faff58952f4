// Whether an operation takes the write side of a reader-writer lock.
#pragma once

#include <pthread.h>

#include <atomic>
#include <chrono>
#include <thread>

namespace aaadom {

/// Runs `operation` on a thread of the working role while a reader holds `lock`: true when it was
/// still waiting after a while. It has ended when this returns.
template <typename Operation>
bool WaitsForReaders(pthread_rwlock_t& lock, Operation&& operation) {
    if (pthread_rwlock_rdlock(&lock) != 0) return false;
    std::atomic<bool> done = false;
    std::thread writer([&] {
        operation();
        done = true;
    });
    // An operation that does not wait ends within microseconds; one that does never ends early.
    for (int i = 0; i < 50 && !done; ++i) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    const bool waited = !done;
    (void)pthread_rwlock_unlock(&lock);
    writer.join();
    return waited;
}

}  // namespace aaadom
