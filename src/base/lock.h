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
#define AAADOM_TRY_ACQUIRE(...) AAADOM_TSA(try_acquire_capability(__VA_ARGS__))
#define AAADOM_ACQUIRE_SHARED(...) AAADOM_TSA(acquire_shared_capability(__VA_ARGS__))
#define AAADOM_RELEASE(...) AAADOM_TSA(release_capability(__VA_ARGS__))
#define AAADOM_RELEASE_GENERIC(...) AAADOM_TSA(release_generic_capability(__VA_ARGS__))
#define AAADOM_NO_TSA AAADOM_TSA(no_thread_safety_analysis)

namespace aaadom {

/// Destroys a lock that lives in a structure of the interface. Afterwards it is a lock in its
/// static initial state, so that a late caller finds a valid one. A lock that is held stays as it
/// is.
inline int DestroyToInitial(pthread_mutex_t& mutex) noexcept {
    const int result = pthread_mutex_destroy(&mutex);
    if (result == 0) mutex = pthread_mutex_t PTHREAD_MUTEX_INITIALIZER;
    return result;
}
inline int DestroyToInitial(pthread_rwlock_t& lock) noexcept {
    const int result = pthread_rwlock_destroy(&lock);
    if (result == 0) lock = pthread_rwlock_t PTHREAD_RWLOCK_INITIALIZER;
    return result;
}

/// A non-recursive pthread mutex, usable before Init because its static state is a valid mutex.
class AAADOM_CAPABILITY("mutex") Mutex {
  public:
    constexpr Mutex() = default;
    Mutex(const Mutex&) = delete;
    Mutex& operator=(const Mutex&) = delete;

    int Init() noexcept { return pthread_mutex_init(&mutex_, nullptr); }
    int Destroy() noexcept { return DestroyToInitial(mutex_); }
    int Lock() noexcept AAADOM_ACQUIRE() AAADOM_NO_TSA { return pthread_mutex_lock(&mutex_); }
    bool TryLock() noexcept AAADOM_TRY_ACQUIRE(true) AAADOM_NO_TSA {
        return pthread_mutex_trylock(&mutex_) == 0;
    }
    int Unlock() noexcept AAADOM_RELEASE() AAADOM_NO_TSA { return pthread_mutex_unlock(&mutex_); }

  private:
    pthread_mutex_t mutex_ = PTHREAD_MUTEX_INITIALIZER;
};

/// A pthread reader-writer lock, likewise usable from the start.
class AAADOM_CAPABILITY("reader-writer lock") RwLock {
  public:
    constexpr RwLock() = default;
    RwLock(const RwLock&) = delete;
    RwLock& operator=(const RwLock&) = delete;

    int Init() noexcept { return pthread_rwlock_init(&lock_, nullptr); }
    int Destroy() noexcept { return DestroyToInitial(lock_); }
    pthread_rwlock_t& Native() noexcept { return lock_; }

  private:
    pthread_rwlock_t lock_ = PTHREAD_RWLOCK_INITIALIZER;
};

/// Names a pthread lock that the interface exports, so that the analysis knows it: the headers of
/// the interface are C.
template <typename Lock>
class AAADOM_CAPABILITY("exported lock") Exported {
  public:
    constexpr explicit Exported(Lock& lock) noexcept : lock_(lock) {}
    Lock& Native() const noexcept { return lock_; }

  private:
    Lock& lock_;
};
using ExportedMutex = Exported<pthread_mutex_t>;
using ExportedRwLock = Exported<pthread_rwlock_t>;

// The guards below release what they locked and nothing else: after Fini, or where a thread already
// holds the write side, a lock call fails, and an unlock would release somebody else's lock.

class AAADOM_SCOPED_CAPABILITY MutexGuard {
  public:
    explicit MutexGuard(Mutex& mutex) noexcept AAADOM_ACQUIRE(mutex)
        : mutex_(mutex), held_(mutex.Lock() == 0) {}
    ~MutexGuard() AAADOM_RELEASE() AAADOM_NO_TSA {
        if (held_) (void)mutex_.Unlock();
    }
    MutexGuard(const MutexGuard&) = delete;
    MutexGuard& operator=(const MutexGuard&) = delete;

  private:
    Mutex& mutex_;
    const bool held_;
};

class AAADOM_SCOPED_CAPABILITY ExportedMutexGuard {
  public:
    explicit ExportedMutexGuard(const ExportedMutex& mutex) noexcept
        AAADOM_ACQUIRE(mutex) AAADOM_NO_TSA : mutex_(mutex.Native()),
                                              held_(pthread_mutex_lock(&mutex_) == 0) {}
    ~ExportedMutexGuard() AAADOM_RELEASE() AAADOM_NO_TSA {
        if (held_) (void)pthread_mutex_unlock(&mutex_);
    }
    ExportedMutexGuard(const ExportedMutexGuard&) = delete;
    ExportedMutexGuard& operator=(const ExportedMutexGuard&) = delete;

  private:
    pthread_mutex_t& mutex_;
    const bool held_;
};

/// The read side of an RwLock or ExportedRwLock.
template <typename Lock>
class AAADOM_SCOPED_CAPABILITY ReadGuard {
  public:
    explicit ReadGuard(Lock& lock) noexcept AAADOM_ACQUIRE_SHARED(lock) AAADOM_NO_TSA
        : lock_(lock.Native()),
          held_(pthread_rwlock_rdlock(&lock_) == 0) {}
    ~ReadGuard() AAADOM_RELEASE_GENERIC() AAADOM_NO_TSA {
        if (held_) (void)pthread_rwlock_unlock(&lock_);
    }
    ReadGuard(const ReadGuard&) = delete;
    ReadGuard& operator=(const ReadGuard&) = delete;

  private:
    pthread_rwlock_t& lock_;
    const bool held_;
};

/// The write side.
template <typename Lock>
class AAADOM_SCOPED_CAPABILITY WriteGuard {
  public:
    explicit WriteGuard(Lock& lock) noexcept AAADOM_ACQUIRE(lock) AAADOM_NO_TSA
        : lock_(lock.Native()),
          held_(pthread_rwlock_wrlock(&lock_) == 0) {}
    ~WriteGuard() AAADOM_RELEASE() AAADOM_NO_TSA {
        if (held_) (void)pthread_rwlock_unlock(&lock_);
    }
    WriteGuard(const WriteGuard&) = delete;
    WriteGuard& operator=(const WriteGuard&) = delete;

  private:
    pthread_rwlock_t& lock_;
    const bool held_;
};

}  // namespace aaadom
