// The thread of the record endpoint. Records arrive in crowds when a link fails: they wait for one
// another here, and no change of the configuration waits for them.
#pragma once

#include <atomic>
#include <thread>
#include <vector>

#include "administrators.h"
#include "endpoint.h"
#include "options.h"
#include "record_reports.h"
#include "record_store.h"

namespace aaad {

class RecordThread {
  public:
    /// Opens the endpoint and starts. `records` is borrowed. Throws Failure.
    RecordThread(const Options& options, RecordStore& records);
    /// Answers what has been asked and waits for the thread's end.
    ~RecordThread();
    RecordThread(const RecordThread&) = delete;
    RecordThread& operator=(const RecordThread&) = delete;

    /// Whether the thread has answered since the last call, which asks it again. True at first. By
    /// one thread.
    bool HasAnswered();

  private:
    /// An epoll or event descriptor.
    class Descriptor {
      public:
        Descriptor(int fd, const char* what);
        ~Descriptor();
        Descriptor(const Descriptor&) = delete;
        Descriptor& operator=(const Descriptor&) = delete;
        operator int() const { return fd_; }

      private:
        const int fd_;
    };

    void Loop();
    void Wake();
    void TakeWakeUp();
    size_t Turn(int wait_milliseconds);
    void Serve();

    const Descriptor epoll_;
    const Descriptor wake_;
    std::atomic<bool> answered_{true};
    std::atomic<bool> asked_to_stop_{false};
    Administrators administrators_;
    RecordReports reports_;
    Endpoint endpoint_;
    std::vector<Request> batch_;
    bool stopping_ = false;
    std::thread thread_;
};

}  // namespace aaad
