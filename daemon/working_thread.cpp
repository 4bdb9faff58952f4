#include "working_thread.h"

#include <pthread.h>

#include "roles.h"

namespace aaad {

WorkingThread::WorkingThread() : thread_(&WorkingThread::Loop, this) {}

WorkingThread::~WorkingThread() {
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        stopping_ = true;
    }
    changed_.notify_all();
    thread_.join();
}

void WorkingThread::Run(const std::function<void()>& work) {
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        work_ = &work;
    }
    changed_.notify_all();
    std::unique_lock<std::mutex> lock(mutex_);
    changed_.wait(lock, [this] { return work_ == nullptr; });
}

void WorkingThread::Loop() {
    TakeRole(Role::kWorking);
    (void)pthread_setname_np(pthread_self(), "working");
    std::unique_lock<std::mutex> lock(mutex_);
    for (;;) {
        changed_.wait(lock, [this] { return work_ != nullptr || stopping_; });
        if (work_ == nullptr) return;
        const std::function<void()>& work = *work_;
        lock.unlock();
        work();
        lock.lock();
        work_ = nullptr;
        // Whoever is woken finds the lock free.
        lock.unlock();
        changed_.notify_all();
        lock.lock();
    }
}

}  // namespace aaad
