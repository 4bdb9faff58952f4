// What the tests of both policy stores ask: when a call locks, what its mutex is, what it leaves.
#pragma once

#include <gtest/gtest.h>
#include <malloc.h>
#include <pthread.h>

#include <atomic>
#include <cstdint>
#include <thread>

#include "fakes/fake_platform.h"

namespace aaadom {

/// Locks that `call` takes.
template <typename Call>
uint64_t LocksOf(Call&& call) {
    const uint64_t before = fake::Count(fake::Event::kLock);
    call();
    return fake::Count(fake::Event::kLock) - before;
}

/// The result of `call` in a thread of the working role that has to wait for the mutex until
/// `meanwhile` is done.
template <typename Call, typename Meanwhile>
uint32_t ResultBehindMutex(pthread_mutex_t& mutex, Call&& call, Meanwhile&& meanwhile) {
    {
        fake::Quiet not_counted;
        pthread_mutex_lock(&mutex);
    }
    const uint64_t before = fake::Count(fake::Event::kLock);
    uint32_t result = 0;
    std::atomic<bool> done = false;
    std::thread caller([&] {
        result = call();
        done = true;
    });
    while (fake::Count(fake::Event::kLock) == before && !done) std::this_thread::yield();
    meanwhile();
    {
        fake::Quiet not_counted;
        pthread_mutex_unlock(&mutex);
    }
    caller.join();
    return result;
}

/// Marks a free mutex: what is made new afterwards is not recursive.
inline void MakeRecursive(pthread_mutex_t& mutex) {
    fake::Quiet not_counted;
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
    pthread_mutex_destroy(&mutex);
    pthread_mutex_init(&mutex, &attributes);
    pthread_mutexattr_destroy(&attributes);
}

/// Whether the mutex is free, usable and not recursive.
inline bool IsPlain(pthread_mutex_t& mutex) {
    if (pthread_mutex_trylock(&mutex) != 0) return false;
    const bool plain = pthread_mutex_trylock(&mutex) != 0;
    if (!plain) pthread_mutex_unlock(&mutex);
    pthread_mutex_unlock(&mutex);
    return plain;
}

/// Expects that the working role's beginning and its end each leave the mutex made new.
inline void ExpectNewAtBothEnds(pthread_mutex_t& mutex, uint32_t (*init)(), void (*fini)()) {
    MakeRecursive(mutex);
    EXPECT_EQ(init(), 0u);
    EXPECT_TRUE(IsPlain(mutex));
    MakeRecursive(mutex);
    fini();
    EXPECT_TRUE(IsPlain(mutex));
}

/// Whether `call`, repeated, leaves a policy's worth of memory behind each time. Where an allocator
/// of a sanitizer takes over, its leak check answers instead.
template <typename Call>
bool LeavesMemory(Call&& call) {
    constexpr size_t kRepetitions = 1000;
    constexpr size_t kLessThanAPolicy = 200;
    call();
    const size_t before = mallinfo2().uordblks;
    for (size_t i = 0; i < kRepetitions; ++i) call();
    const size_t after = mallinfo2().uordblks;
    return after > before && after - before > kRepetitions * kLessThanAPolicy;
}

}  // namespace aaadom
