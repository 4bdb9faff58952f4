#include "daemon.h"

#include <aaadom/aaadom.h>
#include <platform/dbm.h>
#include <platform/lipc.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace bench {
namespace {

constexpr int kStartLimit = 30000;  // milliseconds

/// Where a daemon that starts tells that it is ready, as it tells a service manager. Asking it
/// again and again would take the processor that it starts on.
class Readiness {
  public:
    Readiness() : fd_(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        // A name without a file begins with a null byte, which its users write as @.
        char* name = address.sun_path + 1;
        const int length = snprintf(name, sizeof address.sun_path - 1, "aaadom-bench-%d", getpid());
        const size_t size = offsetof(sockaddr_un, sun_path) + 1 + static_cast<size_t>(length);
        Demand(fd_ >= 0 && bind(fd_, reinterpret_cast<const sockaddr*>(&address),
                                static_cast<socklen_t>(size)) == 0,
               "binding a socket for the daemon's readiness");
        setenv("NOTIFY_SOCKET", (std::string("@") + name).c_str(), 1);
    }
    ~Readiness() {
        unsetenv("NOTIFY_SOCKET");
        close(fd_);
    }
    Readiness(const Readiness&) = delete;
    Readiness& operator=(const Readiness&) = delete;

    bool Wait() const {
        char text[64] = {};
        pollfd readable{fd_, POLLIN, 0};
        return poll(&readable, 1, kStartLimit) == 1 && recv(fd_, text, sizeof text - 1, 0) > 0 &&
               std::string_view(text) == "READY=1";
    }

  private:
    int fd_;
};

void Save(const std::string& state_dir, int domains, Size size) {
    FillTable(domains, size);
    Demand(DBM_SetRoot(state_dir.c_str(), nullptr) == 0, "DBM_SetRoot");
    const DBM_HANDLE handle = DOM_CreateDomainDBM();
    Demand(handle != DBM_INVALID_HANDLE, "DOM_CreateDomainDBM");
    DOM_SetDomainDBMHandle(handle);
    Demand(DBM_Begin(handle) == 0, "DBM_Begin");
    for (int n = 0; n < domains; ++n) {
        DomDbUpdateReq request{};
        request.object_type = DOM_DB_DOMAIN;
        request.operation = 1;
        snprintf(request.object_name, sizeof request.object_name, "%s", NameOf(n).c_str());
        Demand(DOM_SetDataToDB(&request) == DOM_OK, "DOM_SetDataToDB");
    }
    Demand(DBM_Commit(handle) == 0, "DBM_Commit");
    Demand(DBM_Close(handle) == 0, "DBM_Close");
}

}  // namespace

void SaveDomains(const std::string& state_dir, int domains, Size size) {
    InChild([&] { Save(state_dir, domains, size); });
}

void DaemonStage::Attach() const {
    Demand(LIPC_SetRuntimeDir(RunDir().c_str()) == 0, "LIPC_SetRuntimeDir");
}

void DaemonStage::Start(const std::vector<std::string>& more_arguments) {
    Attach();
    std::vector<std::string> arguments = {AAAD_PATH, "--state-dir", State(), "--run-dir", RunDir()};
    arguments.insert(arguments.end(), more_arguments.begin(), more_arguments.end());
    const Readiness readiness;
    pid_ = bench::Start(arguments);
    uint32_t count = 0;
    Demand(readiness.Wait() && MOR_GetDomainCount(&count) == DOM_OK, "starting aaad");
}

void DaemonStage::Stop() {
    if (pid_ > 0) bench::Stop(pid_);
    pid_ = -1;
}

}  // namespace bench
