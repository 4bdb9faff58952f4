// The daemon's own calls on sockets, turned to the fake's by the linker: its descriptors are
// numbers that the system does not know.
#include <sys/epoll.h>
#include <sys/socket.h>

#include <cerrno>

#include "fakes/fake_platform.h"

extern "C" {
ssize_t __wrap_recv(int fd, void* buffer, size_t size, int flags);
int __wrap_epoll_ctl(int queue, int operation, int fd, epoll_event* event);
}

/// The daemon only looks how long the next packet is.
ssize_t __wrap_recv(int fd, void*, size_t, int) {
    const int64_t length = fake::NextPacket(fd);
    if (length < 0) errno = EAGAIN;
    return length;
}

int __wrap_epoll_ctl(int, int, int, epoll_event*) {
    return 0;
}
