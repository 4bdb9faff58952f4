#include <platform/lipc.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "lipc/endpoint_path.h"
#include "lipc/native_family.h"
#include "lipc/packet_room.h"
#include "result.h"
#include "tlv/wait_limit.h"

namespace {

constexpr uint32_t kLongestConnect = 60000;  // milliseconds

int32_t Refuse(int error) noexcept {
    errno = error;
    return -1;
}

/// connect(2) on a server whose queue is full waits as long as a send may.
void BoundConnect(int fd) noexcept {
    const uint32_t wait = platform_BoundWait(kLongestConnect);  // never 0, which means for ever
    timeval limit{};
    limit.tv_sec = wait / 1000;
    limit.tv_usec = static_cast<suseconds_t>(wait % 1000) * 1000;
    (void)setsockopt(fd, SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit);
}

}  // namespace

extern "C" uint32_t LIPC_SetRuntimeDir(const char* directory) noexcept {
    return platform::SetRuntimeDirectory(directory) ? platform::kOk : platform::PLATFORM_FAILED;
}

extern "C" uint32_t LIPC_SetWaitLimit(uint32_t milliseconds) noexcept {
    platform_SetWaitLimit(milliseconds);
    return platform::kOk;
}

extern "C" int32_t LIPC_Socket(int32_t family, int32_t type, int32_t protocol) noexcept {
    if (family != platform::kNativeFamily || type != platform::kNativeType ||
        protocol != platform::kNativeProtocol) {
        return Refuse(EAFNOSUPPORT);
    }
    if (platform::HasNativeFamily()) return socket(family, type | SOCK_CLOEXEC, protocol);
    const int fd = socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0);
    if (fd >= 0) platform::MakePacketRoom(fd);
    return fd;
}

extern "C" int32_t LIPC_Connect(int32_t fd, const void* address, uint32_t length) noexcept {
    LIPC_ADDRESS to;
    if (address == nullptr || length != sizeof to) return Refuse(EINVAL);
    std::memcpy(&to, address, sizeof to);
    if (to.length != sizeof to || to.family != platform::kNativeFamily) return Refuse(EINVAL);
    if (platform::HasNativeFamily()) {
        return connect(fd, reinterpret_cast<const sockaddr*>(&to), sizeof to);
    }
    BoundConnect(fd);
    const sockaddr_un file = platform::AddressOf(platform::PathOf(to.endpoint, to.sub_endpoint));
    return connect(fd, reinterpret_cast<const sockaddr*>(&file), sizeof file);
}

extern "C" void LIPC_Close(int32_t fd) noexcept {
    if (fd >= 0) close(fd);
}
