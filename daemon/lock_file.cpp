#include "lock_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "failure.h"

namespace aaad {
namespace {

constexpr mode_t kOwnerOnly = 0600;

std::string HolderOf(int fd) {
    char text[32] = {};
    const ssize_t length = pread(fd, text, sizeof text - 1, 0);
    if (length <= 0) return "another process";
    text[strcspn(text, "\n")] = '\0';
    return std::string("the daemon with process id ") + text;
}

}  // namespace

void MakeDirectory(const std::string& path, unsigned mode) {
    if (mkdir(path.c_str(), mode) == 0) {
        // The umask of whoever starts the daemon does not decide who reaches its files.
        if (chmod(path.c_str(), mode) == 0) return;
    } else if (errno == EEXIST) {
        struct stat status {};
        if (stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode)) return;
        errno = ENOTDIR;
    }
    throw Failure("directory " + path, strerror(errno),
                  "Create it for the daemon's user, or name another one with --state-dir or "
                  "--run-dir");
}

LockFile::LockFile(const std::string& directory) {
    const std::string path = directory + "/aaad.lock";
    // Whoever can open the file, for reading only even, could take the lock and keep the daemon
    // from starting.
    fd_ = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, kOwnerOnly);
    if (fd_ < 0 || fchmod(fd_, kOwnerOnly) != 0) {
        const int error = errno;
        if (fd_ >= 0) close(fd_);
        errno = error;
        throw Failure("lock file " + path, strerror(errno),
                      "Make the directory writable for the daemon's user");
    }
    if (flock(fd_, LOCK_EX | LOCK_NB) != 0) {
        const int error = errno;
        const std::string reason =
            error == EWOULDBLOCK ? HolderOf(fd_) + " uses this directory" : strerror(error);
        close(fd_);
        throw Failure("lock file " + path, reason,
                      "Stop that daemon, or start this one with other directories");
    }
    const std::string owner = std::to_string(getpid()) + "\n";
    if (ftruncate(fd_, 0) != 0 ||
        pwrite(fd_, owner.data(), owner.size(), 0) != static_cast<ssize_t>(owner.size())) {
        const int error = errno;
        close(fd_);
        throw Failure("lock file " + path, strerror(error), "Make room on its disk");
    }
}

LockFile::~LockFile() {
    close(fd_);
}

}  // namespace aaad
