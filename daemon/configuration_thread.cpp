#include "configuration_thread.h"

#include <pthread.h>
#include <signal.h>
#include <sys/epoll.h>
#include <sys/signalfd.h>
#include <systemd/sd-daemon.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "configuration.h"
#include "endpoint.h"
#include "failure.h"
#include "log.h"
#include "record_thread.h"

namespace aaad {
namespace {

constexpr int kLastTurns = 16;

class Descriptor {
  public:
    Descriptor(int fd, const char* what) : fd_(fd) {
        if (fd < 0) throw Failure(what, strerror(errno), "Raise the limit of open files");
    }
    ~Descriptor() { close(fd_); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    operator int() const { return fd_; }

  private:
    const int fd_;
};

int OpenStopSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) sigaddset(&signals, signal);
    return signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
}

/// Tells the service manager that the daemon is alive, twice as often as it asks for, and only when
/// every thread that serves somebody has answered: a half-dead daemon is restarted.
class Watchdog {
  public:
    Watchdog(WorkingThread& working, RecordThread& records) : working_(working), records_(records) {
        uint64_t microseconds = 0;
        if (sd_watchdog_enabled(0, &microseconds) > 0) {
            interval_ = static_cast<int>(std::max<uint64_t>(microseconds / 2000, 1));
        }
    }
    /// Milliseconds until the next sign of life is due, -1 when nobody asks.
    int Beat() {
        if (interval_ < 0) return -1;
        timespec time{};
        (void)clock_gettime(CLOCK_MONOTONIC, &time);
        const int64_t now = static_cast<int64_t>(time.tv_sec) * 1000 + time.tv_nsec / 1000000;
        if (now >= next_) {
            working_.Run([] {});  // a working thread that hangs stops this one, too
            const bool alive = records_.HasAnswered();
            if (alive) (void)sd_notify(0, "WATCHDOG=1");
            next_ = now + (alive ? interval_ : interval_ / kQuestionsInAnInterval);
        }
        return static_cast<int>(next_ - now);
    }

  private:
    /// How often a silent thread is looked at again before the service manager's time is over.
    static constexpr int kQuestionsInAnInterval = 8;

    WorkingThread& working_;
    RecordThread& records_;
    int interval_ = -1;  // milliseconds
    int64_t next_ = 0;
};

/// The earlier of two time limits; -1 means none.
int Earlier(int one, int other) {
    if (one < 0) return other;
    if (other < 0) return one;
    return std::min(one, other);
}

class Loop {
  public:
    explicit Loop(const Surroundings& surroundings)
        : mail_(surroundings.mail),
          epoll_(epoll_create1(EPOLL_CLOEXEC), "event queue"),
          stop_signals_(OpenStopSignals(), "signal descriptor"),
          configuration_(surroundings.handle, surroundings.options.state_dir,
                         surroundings.administrators, surroundings.working, surroundings.records),
          options_(surroundings.options),
          working_(surroundings.working),
          records_(surroundings.records) {
        configuration_.Start();
        Watch(stop_signals_);
        Watch(mail_.Descriptor());
        batch_.reserve(kBatchSize);
    }

    void Run() {
        Endpoint endpoint(epoll_, DOM_LIPC_SUB_ENDPOINT, "request socket", options_.run_dir);
        RecordThread record_thread(options_, records_);
        Watchdog watchdog(working_, record_thread);
        (void)sd_notify(0, "READY=1");
        Log(Severity::kNotice, "ready");
        while (!stopping_) Turn(endpoint, Earlier(endpoint.DropLate(), watchdog.Beat()));
        (void)sd_notify(0, "STOPPING=1");
        // Whoever has asked already is answered; who keeps asking does not keep the daemon.
        for (int turn = 0; turn < kLastTurns && Turn(endpoint, 0) > 0; ++turn) continue;
        Log(Severity::kNotice, "stopped");
    }

  private:
    void Watch(int fd) {
        epoll_event event{};
        event.events = EPOLLIN;
        event.data.fd = fd;
        if (epoll_ctl(epoll_, EPOLL_CTL_ADD, fd, &event) != 0) {
            throw Failure("event queue", strerror(errno), "Free memory");
        }
    }

    /// Waits for something to do and does it; returns how many requests were served.
    size_t Turn(Endpoint& endpoint, int wait_milliseconds) {
        epoll_event events[kBatchSize];
        const int count = epoll_wait(epoll_, events, kBatchSize, wait_milliseconds);
        bool connections_wait = false;
        for (int i = 0; i < count; ++i) {
            const int fd = events[i].data.fd;
            if (endpoint.IsServer(fd)) {
                connections_wait = true;
            } else if (fd == stop_signals_) {
                signalfd_siginfo info;
                stopping_ |= read(stop_signals_, &info, sizeof info) > 0;
            } else if (fd == mail_.Descriptor()) {
                for (Message& message : mail_.TakeAll()) {
                    configuration_.TakeMail(std::move(message));
                }
            } else {
                endpoint.Readable(fd, batch_);
            }
        }
        if (connections_wait) endpoint.Accept(batch_);
        const size_t served = batch_.size();
        if (served > 0) {
            configuration_.Serve(batch_);
            for (Request& request : batch_) endpoint.Answer(request);
            batch_.clear();
        }
        return served;
    }

    ConfigurationMail& mail_;
    const Descriptor epoll_;
    const Descriptor stop_signals_;
    Configuration configuration_;
    const Options& options_;
    WorkingThread& working_;
    RecordStore& records_;
    std::vector<Request> batch_;
    bool stopping_ = false;
};

}  // namespace

int RunConfigurationThread(const Surroundings& surroundings) {
    TakeRole(Role::kConfiguration);
    (void)pthread_setname_np(pthread_self(), "configuration");
    try {
        Loop loop(surroundings);
        loop.Run();
        return 0;
    } catch (const std::bad_alloc&) {
        const Failure failure("configuration thread", "out of memory",
                              "Free memory and start the daemon again");
        Log(Severity::kError, "%s", failure.what());
        if (!surroundings.options.verbose) fprintf(stderr, "aaad: %s\n", failure.what());
        return 1;
    } catch (const std::exception& error) {
        Log(Severity::kError, "%s", error.what());
        if (!surroundings.options.verbose) fprintf(stderr, "aaad: %s\n", error.what());
        return 1;
    }
}

}  // namespace aaad
