#include "lipc/endpoint_path.h"

#include <sys/socket.h>

#include <cstdio>
#include <cstring>

#include "lock.h"

namespace platform {
namespace {

constexpr size_t kFileNameLength = sizeof("/lipc-660c-0080.sock") - 1;
constexpr size_t kLongestDirectory = kEndpointPathSize - 1 - kFileNameLength;

Mutex directory_mutex;
char runtime_directory[kLongestDirectory + 1] PLATFORM_GUARDED_BY(directory_mutex) = "/run/aaad";

}  // namespace

bool SetRuntimeDirectory(const char* directory) noexcept {
    if (directory == nullptr) return false;
    const size_t length = strnlen(directory, kLongestDirectory + 1);
    if (length == 0 || length > kLongestDirectory) return false;
    const MutexLock lock(directory_mutex);
    std::memcpy(runtime_directory, directory, length);
    runtime_directory[length] = '\0';
    return true;
}

EndpointPath PathOf(uint16_t endpoint, uint16_t sub_endpoint) noexcept {
    EndpointPath path;
    char directory[kLongestDirectory + 1];
    {
        const MutexLock lock(directory_mutex);
        std::memcpy(directory, runtime_directory, sizeof directory);
    }
    std::snprintf(path.directory, sizeof path.directory, "%s", directory);
    std::snprintf(path.socket, sizeof path.socket, "%s/lipc-%04x-%04x.sock", directory, endpoint,
                  sub_endpoint);
    std::snprintf(path.lock, sizeof path.lock, "%s/lipc-%04x-%04x.lock", directory, endpoint,
                  sub_endpoint);
    return path;
}

sockaddr_un AddressOf(const EndpointPath& path) noexcept {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.socket, sizeof address.sun_path);
    address.sun_path[sizeof address.sun_path - 1] = '\0';
    return address;
}

}  // namespace platform
