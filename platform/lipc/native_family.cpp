#include "lipc/native_family.h"

#include <platform/lipc.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>

namespace platform {
namespace {

/// Elsewhere the number may belong to some other family. The native one begins its addresses with a
/// length byte and a family byte.
bool IsNative(int fd) noexcept {
    LIPC_ADDRESS own{};
    socklen_t length = sizeof own;
    if (getsockname(fd, reinterpret_cast<sockaddr*>(&own), &length) != 0) return false;
    return length == sizeof own && own.length == sizeof own && own.family == kNativeFamily;
}

bool Probe() noexcept {
    const int saved_errno = errno;
    const int fd = socket(kNativeFamily, kNativeType, kNativeProtocol);
    const bool native = fd >= 0 && IsNative(fd);
    if (fd >= 0) close(fd);
    errno = saved_errno;
    return native;
}

}  // namespace

bool HasNativeFamily() noexcept {
    static const bool native = Probe();
    return native;
}

}  // namespace platform
