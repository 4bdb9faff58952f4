// Where the socket file of an endpoint lies.
#pragma once

#include <sys/un.h>

#include <cstdint>

namespace platform {

/// Room for every path that LIPC_SetRuntimeDir lets through.
inline constexpr uint32_t kEndpointPathSize = sizeof(sockaddr_un::sun_path);

/// The runtime directory and an endpoint's files in it, as they are at one moment.
struct EndpointPath {
    char directory[kEndpointPathSize];
    char socket[kEndpointPathSize];
    char lock[kEndpointPathSize];
};

/// Any thread.
EndpointPath PathOf(uint16_t endpoint, uint16_t sub_endpoint) noexcept;

/// The socket file as an address.
sockaddr_un AddressOf(const EndpointPath& path) noexcept;

/// False when the directory's name is empty or too long for a socket address.
bool SetRuntimeDirectory(const char* directory) noexcept;

}  // namespace platform
