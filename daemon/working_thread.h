// The thread of the working role. It does nothing of its own accord: the configuration thread hands
// it work and waits, so a change is answered only after both roles hold it.
#pragma once

#include <condition_variable>
#include <functional>
#include <thread>

#include "lock.h"

namespace aaad {

class WorkingThread {
  public:
    WorkingThread();
    /// Waits for the thread's end.
    ~WorkingThread();
    WorkingThread(const WorkingThread&) = delete;
    WorkingThread& operator=(const WorkingThread&) = delete;

    /// Runs `work` on the thread and returns when it is done. `work` throws nothing and waits for
    /// no other thread. Called by one thread.
    void Run(const std::function<void()>& work) {
        Run(work, [] {});
    }
    /// The same, with `meanwhile` run by the caller in the time that `work` takes. Neither may need
    /// a lock that the other holds for long; `meanwhile` throws nothing either.
    void Run(const std::function<void()>& work, const std::function<void()>& meanwhile);

  private:
    void Loop();

    Mutex mutex_;
    std::condition_variable changed_;
    const std::function<void()>* work_ AAAD_GUARDED_BY(mutex_) = nullptr;
    bool stopping_ AAAD_GUARDED_BY(mutex_) = false;
    std::thread thread_;
};

}  // namespace aaad
