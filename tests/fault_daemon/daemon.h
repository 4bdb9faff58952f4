// The daemon in this process on the fake platform, one step at a time: its databases, its threads'
// roles, its endpoints. What it does is done inside a Window, where everything can be refused.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "daemon/message.h"
#include "fakes/fake_platform.h"

namespace fault_daemon {

/// The daemon at work: throwing `new` is refused like every other allocation.
class Window {
  public:
    Window() { fake::FailThrowingNew(true); }
    ~Window() { fake::FailThrowingNew(false); }
    Window(const Window&) = delete;
};

enum class Socket { kRequests, kRecords };

struct Row;

/// Results of an exchange that are no result codes.
constexpr uint64_t kData = uint64_t{1} << 32;    ///< data came
constexpr uint64_t kClosed = uint64_t{1} << 33;  ///< the connection was closed without an answer

struct Reply {
    uint64_t result = kClosed;
    std::string image;  ///< of the whole reply
};

class Daemon {
  public:
    /// A start, in a Window if `refusable`. Throws what ends a start.
    explicit Daemon(bool refusable = false);
    ~Daemon();
    Daemon(const Daemon&) = delete;

    /// Ends in a Window, where everything can be refused, before its time.
    void Stop();

    /// Sends the messages of all rows, which are of one socket, each on a connection of its own,
    /// serves them together in a Window and takes the replies.
    std::vector<Reply> ExchangeAll(const std::vector<const Row*>& rows);
    /// Connects, and sends only after the daemon has taken the connection.
    Reply ExchangeLate(Socket socket, TLV_MSG* message);

  private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

}  // namespace fault_daemon
