#include <platform/lipc.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <new>

#include "lipc/native_family.h"
#include "lipc/packet_room.h"
#include "lipc/server.h"
#include "lock.h"

namespace {

platform::Mutex servers_mutex;
platform::Server* servers PLATFORM_GUARDED_BY(servers_mutex) = nullptr;  // every open one

int32_t Refuse(int error) noexcept {
    errno = error;
    return -1;
}

platform::Server* TakeOut(int fd) noexcept {
    const platform::MutexLock lock(servers_mutex);
    for (platform::Server** link = &servers; *link != nullptr; link = &(*link)->next) {
        platform::Server* server = *link;
        if (server->fd() != fd) continue;
        *link = server->next;
        return server;
    }
    return nullptr;
}

}  // namespace

extern "C" int32_t LIPC_ServerOpen(uint16_t endpoint, uint16_t sub_endpoint,
                                   uint32_t mode) noexcept {
    if (platform::HasNativeFamily()) return Refuse(EOPNOTSUPP);
    auto* server = new (std::nothrow) platform::Server;
    if (server == nullptr) return Refuse(ENOMEM);
    if (const int error = server->Open(platform::PathOf(endpoint, sub_endpoint), mode)) {
        delete server;
        return Refuse(error);
    }
    const platform::MutexLock lock(servers_mutex);
    server->next = servers;
    servers = server;
    return server->fd();
}

extern "C" int32_t LIPC_ServerAccept(int32_t server_fd, LIPC_PEER* peer) noexcept {
    int fd;
    do {
        fd = accept4(server_fd, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
    } while (fd < 0 && (errno == EINTR || errno == ECONNABORTED));
    if (fd < 0) return -1;
    ucred who{};
    socklen_t length = sizeof who;
    if (getsockopt(fd, SOL_SOCKET, SO_PEERCRED, &who, &length) != 0) {
        const int error = errno;
        close(fd);
        return Refuse(error);
    }
    platform::MakePacketRoom(fd);
    if (peer != nullptr) *peer = {who.pid, who.uid, who.gid};
    return fd;
}

extern "C" void LIPC_ServerClose(int32_t server_fd) noexcept {
    delete TakeOut(server_fd);
}
