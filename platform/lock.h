// Mutexes that clang's thread-safety analysis understands, around the standard ones.
#pragma once

#include <condition_variable>
#include <mutex>
#include <shared_mutex>

#if defined(__clang__)
#define PLATFORM_TSA(x) __attribute__((x))
#else
#define PLATFORM_TSA(x)
#endif
#define PLATFORM_GUARDED_BY(lock) PLATFORM_TSA(guarded_by(lock))
#define PLATFORM_REQUIRES(...) PLATFORM_TSA(requires_capability(__VA_ARGS__))
#define PLATFORM_REQUIRES_SHARED(...) PLATFORM_TSA(requires_shared_capability(__VA_ARGS__))
#define PLATFORM_NO_TSA PLATFORM_TSA(no_thread_safety_analysis)

namespace platform {

class PLATFORM_TSA(capability("mutex")) Mutex : public std::mutex {
  public:
    void lock() PLATFORM_TSA(acquire_capability()) PLATFORM_NO_TSA { std::mutex::lock(); }
    void unlock() PLATFORM_TSA(release_capability()) PLATFORM_NO_TSA { std::mutex::unlock(); }
};

class PLATFORM_TSA(scoped_lockable) MutexLock {
  public:
    explicit MutexLock(Mutex& mutex) PLATFORM_TSA(acquire_capability(mutex)) PLATFORM_NO_TSA
        : lock_(mutex) {}
    ~MutexLock() PLATFORM_TSA(release_capability()) {}
    MutexLock(const MutexLock&) = delete;
    MutexLock& operator=(const MutexLock&) = delete;

    /// The mutex is released while the thread sleeps, and held again afterwards.
    void Wait(std::condition_variable& changed) { changed.wait(lock_); }

  private:
    std::unique_lock<std::mutex> lock_;
};

class PLATFORM_TSA(capability("shared mutex")) SharedMutex : public std::shared_mutex {
  public:
    void lock() PLATFORM_TSA(acquire_capability()) PLATFORM_NO_TSA { std::shared_mutex::lock(); }
    void unlock() PLATFORM_TSA(release_capability()) PLATFORM_NO_TSA {
        std::shared_mutex::unlock();
    }
};

/// Shared with other readers.
class PLATFORM_TSA(scoped_lockable) SharedLock {
  public:
    explicit SharedLock(SharedMutex& mutex)
        PLATFORM_TSA(acquire_shared_capability(mutex)) PLATFORM_NO_TSA : lock_(mutex) {}
    ~SharedLock() PLATFORM_TSA(release_generic_capability()) {}
    SharedLock(const SharedLock&) = delete;
    SharedLock& operator=(const SharedLock&) = delete;

  private:
    std::shared_lock<std::shared_mutex> lock_;
};

class PLATFORM_TSA(scoped_lockable) AloneLock {
  public:
    explicit AloneLock(SharedMutex& mutex) PLATFORM_TSA(acquire_capability(mutex)) PLATFORM_NO_TSA
        : lock_(mutex) {}
    ~AloneLock() PLATFORM_TSA(release_capability()) {}
    AloneLock(const AloneLock&) = delete;
    AloneLock& operator=(const AloneLock&) = delete;

  private:
    std::unique_lock<std::shared_mutex> lock_;
};

}  // namespace platform
