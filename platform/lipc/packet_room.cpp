#include "lipc/packet_room.h"

#include <sys/socket.h>

#include <cerrno>

namespace platform {

void MakePacketRoom(int fd) noexcept {
    constexpr int kBytes = 1 << 20;  // the largest reply is one domain, below 64 KiB: ample
    const int saved_errno = errno;
    // Without the privilege for the first the kernel cuts the second to its limit, twice 208 KiB
    // unless the administrator lowered it.
    if (setsockopt(fd, SOL_SOCKET, SO_SNDBUFFORCE, &kBytes, sizeof kBytes) != 0) {
        (void)setsockopt(fd, SOL_SOCKET, SO_SNDBUF, &kBytes, sizeof kBytes);
    }
    errno = saved_errno;
}

}  // namespace platform
