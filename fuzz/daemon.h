// A daemon in this process, without threads of its own for its endpoints, so that every input gives
// the same run: its configuration in both roles, its databases in memory, its sockets.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "input.h"
#include "message.h"
#include "request.h"

namespace fuzz {

class Daemon {
  public:
    /// Starts with empty databases.
    Daemon();
    ~Daemon();
    Daemon(const Daemon&) = delete;
    Daemon& operator=(const Daemon&) = delete;

    /// Sends one packet to the request socket, or to the record socket, and serves it. The reply, a
    /// well-formed one, must come; null when the packet cannot be sent.
    Message Ask(bool record_socket, Bytes packet);

    /// The directory of its sockets.
    static std::string RunDirectory();
    /// Serves both sockets until `stop_fd` can be read.
    void ServeUntil(int stop_fd);

  private:
    void Decide(bool record_socket, std::vector<aaad::Request>& batch);

    struct Parts;
    std::unique_ptr<Parts> parts_;
};

}  // namespace fuzz
