#include "record_thread.h"

#include <pthread.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "failure.h"
#include "log.h"
#include "roles.h"

namespace aaad {
namespace {

constexpr int kLastTurns = 16;

}  // namespace

RecordThread::Descriptor::Descriptor(int fd, const char* what) : fd_(fd) {
    if (fd < 0) throw Failure(what, strerror(errno), "Raise the limit of open files");
}

RecordThread::Descriptor::~Descriptor() {
    close(fd_);
}

RecordThread::RecordThread(const Options& options, RecordStore& records)
    : epoll_(epoll_create1(EPOLL_CLOEXEC), "event queue"),
      wake_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK), "event descriptor"),
      administrators_(options.admin_group),
      reports_(records, administrators_),
      endpoint_(epoll_, DOM_LIPC_RECORD_SUB_ENDPOINT, "record socket", options.run_dir) {
    epoll_event event{};
    event.events = EPOLLIN;
    event.data.fd = wake_;
    if (epoll_ctl(epoll_, EPOLL_CTL_ADD, wake_, &event) != 0) {
        throw Failure("event queue", strerror(errno), "Free memory");
    }
    batch_.reserve(kBatchSize);
    thread_ = std::thread(&RecordThread::Loop, this);
}

RecordThread::~RecordThread() {
    asked_to_stop_ = true;
    Wake();
    thread_.join();
}

bool RecordThread::HasAnswered() {
    if (!answered_.exchange(false)) return false;
    Wake();
    return true;
}

void RecordThread::Wake() {
    const uint64_t one = 1;
    (void)!write(wake_, &one, sizeof one);
}

void RecordThread::TakeWakeUp() {
    uint64_t count = 0;
    (void)!read(wake_, &count, sizeof count);
    answered_ = true;
    stopping_ = asked_to_stop_;
}

void RecordThread::Loop() {
    TakeRole(Role::kWorking);
    (void)pthread_setname_np(pthread_self(), "records");
    while (!stopping_) Turn(endpoint_.DropLate());
    for (int turn = 0; turn < kLastTurns && Turn(0) > 0; ++turn) continue;
}

/// Waits for something to do and does it; returns how many reports were served.
size_t RecordThread::Turn(int wait_milliseconds) {
    epoll_event events[kBatchSize];
    const int count = epoll_wait(epoll_, events, kBatchSize, wait_milliseconds);
    try {
        bool connections_wait = false;
        for (int i = 0; i < count; ++i) {
            const int fd = events[i].data.fd;
            if (endpoint_.IsServer(fd)) {
                connections_wait = true;
            } else if (fd == wake_) {
                TakeWakeUp();
            } else {
                endpoint_.Readable(fd, batch_);
            }
        }
        if (connections_wait) endpoint_.Accept(batch_);
        const size_t served = batch_.size();
        Serve();
        return served;
    } catch (const std::bad_alloc&) {
        // The closed connections tell the senders that there is no answer.
        batch_.clear();
        Log(Severity::kError, "record socket: out of memory; reports were dropped. Free memory");
        return 0;
    }
}

void RecordThread::Serve() {
    if (batch_.empty()) return;
    reports_.Serve(batch_);
    for (Request& report : batch_) endpoint_.Answer(report);
    batch_.clear();
}

}  // namespace aaad
