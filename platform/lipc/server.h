// One served endpoint: its listening socket, its socket file and the lock that proves its life.
#pragma once

#include <sys/types.h>

#include <cstdint>

#include "lipc/endpoint_path.h"

namespace platform {

class Server {
  public:
    Server() = default;
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;
    /// Closes everything; removes the socket file if it is still this server's.
    ~Server();

    /// 0 or the errno of the step that failed.
    int Open(const EndpointPath& path, uint32_t mode) noexcept;
    int fd() const noexcept { return fd_; }

    Server* next = nullptr;

  private:
    int MakeDirectory() noexcept;
    int TakeLock() noexcept;
    int RemoveStaleFile() noexcept;
    int Listen(uint32_t mode) noexcept;

    EndpointPath path_{};
    int fd_ = -1;
    int lock_fd_ = -1;
    bool has_file_ = false;
    dev_t file_device_ = 0;
    ino_t file_inode_ = 0;
};

}  // namespace platform
