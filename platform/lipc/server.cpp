#include "lipc/server.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace platform {
namespace {

constexpr mode_t kDirectoryMode = 0755;
constexpr mode_t kLockMode = 0600;
constexpr uint32_t kPermissionBits = 0777;

/// Whether somebody listens on the socket file; covers a lock file that was removed by hand.
bool Answers(const sockaddr_un& address) noexcept {
    const int fd = socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (fd < 0) return false;
    const bool alive =
        connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 ||
        errno == EAGAIN;
    close(fd);
    return alive;
}

}  // namespace

Server::~Server() {
    struct stat file;
    // first the file, then the lock: whoever gets the lock finds no file of ours
    if (has_file_ && lstat(path_.socket, &file) == 0 && file.st_dev == file_device_ &&
        file.st_ino == file_inode_) {
        (void)unlink(path_.socket);
    }
    if (fd_ >= 0) close(fd_);
    if (lock_fd_ >= 0) close(lock_fd_);
}

int Server::Open(const EndpointPath& path, uint32_t mode) noexcept {
    path_ = path;
    int error = MakeDirectory();
    if (error == 0) error = TakeLock();
    if (error == 0) error = RemoveStaleFile();
    if (error == 0) error = Listen(mode);
    return error;
}

int Server::MakeDirectory() noexcept {
    if (mkdir(path_.directory, kDirectoryMode) != 0) return errno == EEXIST ? 0 : errno;
    return chmod(path_.directory, kDirectoryMode) == 0 ? 0 : errno;  // whatever the umask took
}

int Server::TakeLock() noexcept {
    lock_fd_ = open(path_.lock, O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, kLockMode);
    if (lock_fd_ < 0) return errno;
    while (flock(lock_fd_, LOCK_EX | LOCK_NB) != 0) {
        if (errno != EINTR) return errno == EWOULDBLOCK ? EADDRINUSE : errno;
    }
    return 0;
}

int Server::RemoveStaleFile() noexcept {
    struct stat file;
    if (lstat(path_.socket, &file) != 0) return errno == ENOENT ? 0 : errno;
    if (!S_ISSOCK(file.st_mode)) return EEXIST;
    if (Answers(AddressOf(path_))) return EADDRINUSE;
    return unlink(path_.socket) == 0 ? 0 : errno;
}

int Server::Listen(uint32_t mode) noexcept {
    fd_ = socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (fd_ < 0) return errno;
    const sockaddr_un address = AddressOf(path_);
    if (bind(fd_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) return errno;
    struct stat file;
    if (lstat(path_.socket, &file) != 0) return errno;
    has_file_ = true;
    file_device_ = file.st_dev;
    file_inode_ = file.st_ino;
    // nobody can connect before listen, so nobody slips in with other permissions
    if (chmod(path_.socket, mode & kPermissionBits) != 0) return errno;
    return listen(fd_, SOMAXCONN) == 0 ? 0 : errno;
}

}  // namespace platform
