// The thread of the working role. It does nothing of its own accord: the configuration thread hands
// it work and waits, so a change is answered only after both roles hold it.
#pragma once

#include <condition_variable>
#include <thread>
#include <type_traits>

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
    /// no other thread. Called by one thread; allocates nothing, so that a change that is half done
    /// can always be finished or taken back.
    template <typename Callable>
    void Run(Callable&& work) {
        Run(work, [] {});
    }
    /// The same, with `meanwhile` run by the caller in the time that `work` takes. Neither may need
    /// a lock that the other holds for long; `meanwhile` throws nothing either.
    template <typename Callable, typename Other>
    void Run(Callable&& work, Other&& meanwhile) {
        RunBorrowed(Work(work), Work(meanwhile));
    }

  private:
    /// A borrowed callable.
    class Work {
      public:
        template <typename Callable>
        explicit Work(Callable& work)
            : object_(&work), call_([](const void* object) {
                  (*static_cast<std::add_const_t<Callable>*>(object))();
              }) {}
        void operator()() const { call_(object_); }

      private:
        const void* object_;
        void (*call_)(const void* object);
    };

    void RunBorrowed(const Work& work, const Work& meanwhile);
    void Loop();

    Mutex mutex_;
    std::condition_variable changed_;
    const Work* work_ AAAD_GUARDED_BY(mutex_) = nullptr;
    bool stopping_ AAAD_GUARDED_BY(mutex_) = false;
    std::thread thread_;
};

}  // namespace aaad
