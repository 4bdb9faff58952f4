// aaad: serves the ISP-domain configuration to management processes.
#include <aaadom/accounting_policy_codec.h>
#include <aaadom/database.h>
#include <aaadom/recording_policy.h>
#include <fcntl.h>
#include <platform/dbm.h>
#include <platform/lipc.h>
#include <platform/syslog.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <thread>

#include "administrators.h"
#include "command_failures.h"
#include "configuration_thread.h"
#include "failure.h"
#include "lock_file.h"
#include "log.h"
#include "options.h"
#include "record_store.h"
#include "roles.h"
#include "working_thread.h"

namespace aaad {
namespace {

constexpr int kOpenAtOnceWithPid = 0x09;  // LOG_PID | LOG_NDELAY
constexpr int kDaemonFacility = 3 << 3;   // LOG_DAEMON
constexpr rlim_t kOpenFiles = 65536;

/// A closed standard descriptor would be given to a socket or a database file, and then be written
/// to as a terminal.
void OccupyStandardDescriptors() {
    for (;;) {
        const int fd = open("/dev/null", O_RDWR | O_CLOEXEC);
        if (fd < 0) return;
        if (fd > STDERR_FILENO) {
            close(fd);
            return;
        }
    }
}

/// Every thread inherits the mask; the configuration thread reads the signals as events.
void SettleSignals() {
    (void)signal(SIGPIPE, SIG_IGN);
    // A file-size limit is one more way in which a commit can fail.
    (void)signal(SIGXFSZ, SIG_IGN);
    sigset_t stop;
    sigemptyset(&stop);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) sigaddset(&stop, signal);
    (void)pthread_sigmask(SIG_BLOCK, &stop, nullptr);
}

/// Every silent connection costs a descriptor until its time is over.
void RaiseOpenFiles() {
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return;
    const rlim_t wanted = std::min(limit.rlim_max, kOpenFiles);
    if (limit.rlim_cur >= wanted) return;
    limit.rlim_cur = wanted;
    (void)setrlimit(RLIMIT_NOFILE, &limit);  // with fewer the oldest silent connections go earlier
}

/// The library writes to it through handle variables of its own.
class Database {
  public:
    explicit Database(const Options& options) {
        if (DBM_SetRoot(options.state_dir.c_str(), options.run_dir.c_str()) != 0) {
            throw Failure("state directory " + options.state_dir, "the path is too long",
                          "Choose a shorter one");
        }
        handle_ = DOM_CreateDomainDBM();
        if (handle_ == DBM_INVALID_HANDLE) {
            throw Failure("configuration database below " + options.state_dir,
                          "it cannot be opened (the DBM line of the system log names the cause)",
                          "Make room and the directory writable for the daemon's user; move a "
                          "damaged database away and restore it from a backup");
        }
        InstallHandle(handle_);
    }
    ~Database() {
        InstallHandle(DBM_INVALID_HANDLE);
        (void)DBM_Close(handle_);  // everything is committed
    }
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    DBM_HANDLE Handle() const { return handle_; }

  private:
    /// Policies have handle variables of their own; all are one database.
    static void InstallHandle(DBM_HANDLE handle) {
        DOM_SetDomainDBMHandle(handle);
        DOM_ita_db_SetGlobalHandle(handle);
        DOM_Rec_db_SetGlobalHandle(handle);
    }

    DBM_HANDLE handle_ = DBM_INVALID_HANDLE;
};

int Run(const Options& options) {
    Administrators administrators(options.admin_group);
    MakeDirectory(options.state_dir, 0750);
    MakeDirectory(options.run_dir, 0755);
    const LockFile run_lock(options.run_dir);
    // Two daemons with different sockets must not save into one database, either.
    const LockFile state_lock(options.state_dir);
    if (LIPC_SetRuntimeDir(options.run_dir.c_str()) != 0) {
        throw Failure("run directory " + options.run_dir, "the path is too long",
                      "Choose a shorter one");
    }
    Callbacks callbacks;
    const Database database(options);
    RecordStore records(options.run_dir, options.max_records);
    const CommandFailures command_failures;
    WorkingThread working;
    int exit_code = 1;
    std::thread configuration([&] {
        exit_code = RunConfigurationThread(
            {options, database.Handle(), administrators, working, records, callbacks.Mail()});
    });
    configuration.join();
    return exit_code;
}

}  // namespace
}  // namespace aaad

int main(int argc, char** argv) {
    aaad::OccupyStandardDescriptors();
    aaad::Options options;
    const int answered = aaad::ReadOptions(argc, argv, options);
    if (answered >= 0) return answered;
    umask(027);
    openlog("aaad", aaad::kOpenAtOnceWithPid, aaad::kDaemonFacility);
    if (options.verbose) aaad::LogToTerminal();
    aaad::SettleSignals();
    aaad::RaiseOpenFiles();
    try {
        return aaad::Run(options);
    } catch (const std::exception& error) {
        aaad::Log(aaad::Severity::kError, "%s", error.what());
        if (!options.verbose) fprintf(stderr, "aaad: %s\n", error.what());
        return 1;
    }
}
