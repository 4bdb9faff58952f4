#include "workspace.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <stdexcept>

namespace bench {
namespace {

std::string MakeDirectory(std::string pattern) {
    pattern += "-XXXXXX";
    Demand(mkdtemp(pattern.data()) != nullptr, "making a directory below $BENCH_DIR");
    return pattern;
}

std::string BelowEnvironment() {
    const char* root = getenv("BENCH_DIR");
    return MakeDirectory(std::string(root != nullptr ? root : "/var/tmp") + "/aaadom-bench");
}

}  // namespace

const std::string& WorkspaceRoot() {
    static const std::string root = BelowEnvironment();
    return root;
}

void RemoveWorkspace() {
    std::error_code ignored;
    std::filesystem::remove_all(WorkspaceRoot(), ignored);
}

Directory::Directory(const char* name) : path_(MakeDirectory(WorkspaceRoot() + "/" + name)) {}

Directory::~Directory() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

pid_t Start(const std::vector<std::string>& arguments) {
    std::vector<char*> pointers;
    for (const std::string& argument : arguments) {
        pointers.push_back(const_cast<char*>(argument.c_str()));
    }
    pointers.push_back(nullptr);
    const pid_t parent = getpid();
    const pid_t child = fork();
    if (child != 0) {
        Demand(child > 0, "fork");
        return child;
    }
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (getppid() != parent) _exit(127);
    const int nowhere = open("/dev/null", O_RDWR);
    dup2(nowhere, STDIN_FILENO);
    dup2(nowhere, STDOUT_FILENO);
    execvp(pointers[0], pointers.data());
    _exit(127);
}

void Execute(const std::vector<std::string>& arguments) {
    int status = 1;
    const pid_t child = Start(arguments);
    if (waitpid(child, &status, 0) != child || status != 0) {
        throw std::runtime_error(arguments[0] + " failed");
    }
}

void Stop(pid_t pid) {
    if (pid <= 0) return;
    kill(pid, SIGTERM);
    waitpid(pid, nullptr, 0);
}

void InChild(const std::function<void()>& work) {
    const pid_t child = fork();
    if (child == 0) {
        try {
            work();
            _exit(0);
        } catch (const std::exception& failure) {
            fprintf(stderr, "bench: %s\n", failure.what());
            _exit(1);
        }
    }
    int status = 1;
    Demand(child > 0 && waitpid(child, &status, 0) == child && status == 0, "setting the stage");
}

void Demand(bool good, const char* what) {
    if (!good) throw std::runtime_error(std::string(what) + " failed");
}

void DropFromCache(const std::string& file) {
    const int fd = open(file.c_str(), O_RDONLY | O_CLOEXEC);
    Demand(fd >= 0, "opening a file to drop it from the cache");
    const bool good = fsync(fd) == 0 && posix_fadvise(fd, 0, 0, POSIX_FADV_DONTNEED) == 0;
    close(fd);
    Demand(good, "dropping a file from the cache");
}

}  // namespace bench
