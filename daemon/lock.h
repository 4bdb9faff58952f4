// Mutexes that clang's thread-safety analysis understands, around the standard ones.
#pragma once

#include <condition_variable>
#include <mutex>

#if defined(__clang__)
#define AAAD_TSA(x) __attribute__((x))
#else
#define AAAD_TSA(x)
#endif
#define AAAD_GUARDED_BY(lock) AAAD_TSA(guarded_by(lock))
#define AAAD_REQUIRES(...) AAAD_TSA(requires_capability(__VA_ARGS__))
#define AAAD_NO_TSA AAAD_TSA(no_thread_safety_analysis)

namespace aaad {

class AAAD_TSA(capability("mutex")) Mutex : public std::mutex {
  public:
    void lock() AAAD_TSA(acquire_capability()) AAAD_NO_TSA { std::mutex::lock(); }
    void unlock() AAAD_TSA(release_capability()) AAAD_NO_TSA { std::mutex::unlock(); }
};

class AAAD_TSA(scoped_lockable) MutexLock {
  public:
    explicit MutexLock(Mutex& mutex) AAAD_TSA(acquire_capability(mutex)) AAAD_NO_TSA
        : lock_(mutex) {}
    ~MutexLock() AAAD_TSA(release_capability()) {}
    MutexLock(const MutexLock&) = delete;
    MutexLock& operator=(const MutexLock&) = delete;

    /// The mutex is released while the thread sleeps, and held again afterwards.
    void Wait(std::condition_variable& changed) { changed.wait(lock_); }
    void Unlock() AAAD_TSA(release_capability()) AAAD_NO_TSA { lock_.unlock(); }
    void Lock() AAAD_TSA(acquire_capability()) AAAD_NO_TSA { lock_.lock(); }

  private:
    std::unique_lock<std::mutex> lock_;
};

}  // namespace aaad
