#include "working_thread.h"

#include <pthread.h>

#include "roles.h"

namespace aaad {

WorkingThread::WorkingThread() : thread_(&WorkingThread::Loop, this) {}

WorkingThread::~WorkingThread() {
    {
        const MutexLock lock(mutex_);
        stopping_ = true;
    }
    changed_.notify_all();
    thread_.join();
}

void WorkingThread::RunBorrowed(const Work& work, const Work& meanwhile) {
    {
        const MutexLock lock(mutex_);
        work_ = &work;
    }
    changed_.notify_all();
    meanwhile();
    MutexLock lock(mutex_);
    while (work_ != nullptr) lock.Wait(changed_);
}

void WorkingThread::Loop() {
    TakeRole(Role::kWorking);
    (void)pthread_setname_np(pthread_self(), "working");
    MutexLock lock(mutex_);
    for (;;) {
        while (work_ == nullptr && !stopping_) lock.Wait(changed_);
        if (work_ == nullptr) return;
        const Work& work = *work_;
        lock.Unlock();
        work();
        lock.Lock();
        work_ = nullptr;
        // Whoever is woken finds the lock free.
        lock.Unlock();
        changed_.notify_all();
        lock.Lock();
    }
}

}  // namespace aaad
