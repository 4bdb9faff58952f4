// Locks that clang's thread-safety analysis understands, around the pthread objects that the
// interface promises.
#pragma once

#include <pthread.h>

#if defined(__clang__)
#define AAADOM_TSA(x) __attribute__((x))
#else
#define AAADOM_TSA(x)
#endif
#define AAADOM_CAPABILITY(name) AAADOM_TSA(capability(name))
#define AAADOM_SCOPED_CAPABILITY AAADOM_TSA(scoped_lockable)
#define AAADOM_GUARDED_BY(lock) AAADOM_TSA(guarded_by(lock))
#define AAADOM_REQUIRES(...) AAADOM_TSA(requires_capability(__VA_ARGS__))
#define AAADOM_REQUIRES_SHARED(...) AAADOM_TSA(requires_shared_capability(__VA_ARGS__))
#define AAADOM_EXCLUDES(...) AAADOM_TSA(locks_excluded(__VA_ARGS__))
#define AAADOM_ACQUIRE(...) AAADOM_TSA(acquire_capability(__VA_ARGS__))
#define AAADOM_ACQUIRE_SHARED(...) AAADOM_TSA(acquire_shared_capability(__VA_ARGS__))
#define AAADOM_RELEASE(...) AAADOM_TSA(release_capability(__VA_ARGS__))
#define AAADOM_RELEASE_GENERIC(...) AAADOM_TSA(release_generic_capability(__VA_ARGS__))
#define AAADOM_NO_TSA AAADOM_TSA(no_thread_safety_analysis)

namespace aaadom {

/// A non-recursive pthread mutex, usable before Init because its static state is a valid mutex.
class AAADOM_CAPABILITY("mutex") Mutex {
  public:
    constexpr Mutex() = default;
    Mutex(const Mutex&) = delete;
    Mutex& operator=(const Mutex&) = delete;

    int Init() noexcept { return pthread_mutex_init(&mutex_, nullptr); }
    int Destroy() noexcept { return pthread_mutex_destroy(&mutex_); }
    int Lock() noexcept AAADOM_ACQUIRE() AAADOM_NO_TSA { return pthread_mutex_lock(&mutex_); }
    int Unlock() noexcept AAADOM_RELEASE() AAADOM_NO_TSA { return pthread_mutex_unlock(&mutex_); }

  private:
    pthread_mutex_t mutex_ = PTHREAD_MUTEX_INITIALIZER;
};

class AAADOM_SCOPED_CAPABILITY MutexGuard {
  public:
    explicit MutexGuard(Mutex& mutex) noexcept AAADOM_ACQUIRE(mutex) : mutex_(mutex) {
        (void)mutex_.Lock();  // a default mutex fails only when misused
    }
    ~MutexGuard() AAADOM_RELEASE() { (void)mutex_.Unlock(); }
    MutexGuard(const MutexGuard&) = delete;
    MutexGuard& operator=(const MutexGuard&) = delete;

  private:
    Mutex& mutex_;
};

/// A pthread reader-writer lock that lives in a structure of the interface.
class AAADOM_SCOPED_CAPABILITY ReadGuard {
  public:
    explicit ReadGuard(pthread_rwlock_t& lock) noexcept AAADOM_NO_TSA : lock_(lock) {
        (void)pthread_rwlock_rdlock(&lock_);
    }
    ~ReadGuard() AAADOM_NO_TSA { (void)pthread_rwlock_unlock(&lock_); }
    ReadGuard(const ReadGuard&) = delete;
    ReadGuard& operator=(const ReadGuard&) = delete;

  private:
    pthread_rwlock_t& lock_;
};

class AAADOM_SCOPED_CAPABILITY WriteGuard {
  public:
    explicit WriteGuard(pthread_rwlock_t& lock) noexcept AAADOM_NO_TSA : lock_(lock) {
        (void)pthread_rwlock_wrlock(&lock_);
    }
    ~WriteGuard() AAADOM_NO_TSA { (void)pthread_rwlock_unlock(&lock_); }
    WriteGuard(const WriteGuard&) = delete;
    WriteGuard& operator=(const WriteGuard&) = delete;

  private:
    pthread_rwlock_t& lock_;
};

}  // namespace aaadom
