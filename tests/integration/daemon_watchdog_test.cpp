// What the daemon tells its service manager: when it is ready, that it is alive, that it stops.
#include <poll.h>
#include <sys/ptrace.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "daemon_process.h"

using namespace daemon_test;

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds kAskedFor{1000};
constexpr milliseconds kSlow{15000};  // a busy machine, a sanitizer

/// The service manager's end of the notification socket.
class ServiceManager {
  public:
    explicit ServiceManager(const std::string& path)
        : path_(path), fd_(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
        EXPECT_EQ(bind(fd_, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    }
    ~ServiceManager() { close(fd_); }
    ServiceManager(const ServiceManager&) = delete;

    /// In the daemon's process.
    void Adopt(const char* watchdog_microseconds) const {
        setenv("NOTIFY_SOCKET", path_.c_str(), 1);
        unsetenv("WATCHDOG_PID");
        if (watchdog_microseconds == nullptr) {
            unsetenv("WATCHDOG_USEC");
        } else {
            setenv("WATCHDOG_USEC", watchdog_microseconds, 1);
        }
    }
    /// The next message, empty when none comes in time.
    std::string Next(milliseconds limit = kSlow) const {
        pollfd waiting{fd_, POLLIN, 0};
        if (poll(&waiting, 1, static_cast<int>(limit.count())) <= 0) return {};
        char text[256];
        const ssize_t length = recv(fd_, text, sizeof text, 0);
        return length > 0 ? std::string(text, static_cast<size_t>(length)) : std::string();
    }
    /// What came already is forgotten; whether nothing more comes for a time.
    bool IsSilentFor(milliseconds time) const {
        while (!Next(milliseconds(0)).empty()) continue;
        return Next(time).empty();
    }

  private:
    const std::string path_;
    const int fd_;
};

class DaemonWatchdog : public ::testing::Test {
  protected:
    bool Start(const char* watchdog_microseconds) {
        return daemon_.Start({}, [&] { manager_.Adopt(watchdog_microseconds); });
    }

    DaemonProcess daemon_;
    ServiceManager manager_{daemon_.StateDir() + ".notify"};
};

/// Holds one thread of the daemon in the middle of whatever it does, as a debugger would.
class HeldThread {
  public:
    HeldThread(pid_t process, const std::string& name) {
        const std::string tasks = "/proc/" + std::to_string(process) + "/task";
        for (const auto& entry : std::filesystem::directory_iterator(tasks)) {
            std::string comm;
            std::getline(std::ifstream(entry.path() / "comm") >> std::ws, comm);
            if (comm == name) thread_ = std::stoi(entry.path().filename());
        }
        if (thread_ == 0 || ptrace(PTRACE_SEIZE, thread_, nullptr, nullptr) != 0) return;
        seized_ = true;
        int status = 0;
        held_ = ptrace(PTRACE_INTERRUPT, thread_, nullptr, nullptr) == 0 &&
                waitpid(thread_, &status, __WALL) == thread_ && WIFSTOPPED(status);
    }
    ~HeldThread() {
        if (seized_) ptrace(PTRACE_DETACH, thread_, nullptr, nullptr);
    }
    HeldThread(const HeldThread&) = delete;

    bool Exists() const { return thread_ != 0; }
    bool Held() const { return held_; }

  private:
    pid_t thread_ = 0;
    bool seized_ = false;
    bool held_ = false;
};

TEST_F(DaemonWatchdog, ReadyThenStopping) {
    ASSERT_TRUE(Start(nullptr));
    EXPECT_EQ(manager_.Next(), "READY=1");
    EXPECT_EQ(daemon_.Terminate(), 0);
    EXPECT_EQ(manager_.Next(), "STOPPING=1");
    EXPECT_EQ(manager_.Next(milliseconds(0)), "");
}

TEST_F(DaemonWatchdog, NobodyIsToldOfLifeWhoDoesNotAsk) {
    ASSERT_TRUE(Start(nullptr));
    EXPECT_EQ(manager_.Next(), "READY=1");
    EXPECT_EQ(manager_.Next(milliseconds(700)), "");
}

TEST_F(DaemonWatchdog, LivesTwiceInTheTimeThatIsAskedFor) {
    ASSERT_TRUE(Start("1000000"));
    ASSERT_EQ(manager_.Next(), "READY=1");
    ASSERT_EQ(manager_.Next(), "WATCHDOG=1");
    const auto begin = Clock::now();
    for (int beat = 0; beat < 4; ++beat) ASSERT_EQ(manager_.Next(), "WATCHDOG=1");
    // Never more often; on a busy machine later.
    EXPECT_GT(Clock::now() - begin, kAskedFor * 3 / 2);
    EXPECT_EQ(daemon_.Terminate(), 0);
}

class DaemonWatchdogOf : public DaemonWatchdog,
                         public ::testing::WithParamInterface<const char*> {};

INSTANTIATE_TEST_SUITE_P(Threads, DaemonWatchdogOf,
                         ::testing::Values("configuration", "working", "records"),
                         [](const auto& thread) { return std::string(thread.param); });

// A daemon that answers nobody, or not everybody, must not look alive.
TEST_P(DaemonWatchdogOf, ThreadThatHangsEndsTheSignsOfLife) {
    ASSERT_TRUE(Start("1000000"));
    ASSERT_EQ(manager_.Next(), "READY=1");
    ASSERT_EQ(manager_.Next(), "WATCHDOG=1");
    {
        const HeldThread held(daemon_.Pid(), GetParam());
        ASSERT_TRUE(held.Exists()) << "the daemon has no such thread";
        if (!held.Held()) GTEST_SKIP() << "this system lets nobody hold a thread of its child";
        // A sign that was under way, and for the records the one whose question was answered.
        (void)manager_.Next(kAskedFor / 2 + milliseconds(100));
        EXPECT_TRUE(manager_.IsSilentFor(kAskedFor + milliseconds(500)));
    }
    EXPECT_EQ(manager_.Next(), "WATCHDOG=1");
    EXPECT_EQ(daemon_.Terminate(), 0);
}

}  // namespace
