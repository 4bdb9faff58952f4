// The daemon's end of the local channel: takes connections, reads one request from each, answers.
#pragma once

#include <aaadom/codes.h>

#include <cstdint>
#include <list>
#include <string>
#include <unordered_map>
#include <vector>

#include "log.h"
#include "request.h"

namespace aaad {

/// A client has this long to send its request.
constexpr int64_t kRequestLimitMilliseconds = 5000;
/// Requests that are served in one go.
constexpr size_t kBatchSize = 64;

/// Used by one thread. No client can make it wait: what is not there is not waited for, and a reply
/// that the client's socket does not take is dropped with the connection.
class Endpoint {
  public:
    /// Opens the socket in the directory that LIPC_SetRuntimeDir named. `name` is what messages to
    /// people call it. `epoll_fd` and `name` are borrowed. Throws Failure.
    Endpoint(int epoll_fd, uint16_t sub_endpoint, const char* name, const std::string& run_dir);
    ~Endpoint();
    Endpoint(const Endpoint&) = delete;
    Endpoint& operator=(const Endpoint&) = delete;

    bool IsServer(int fd) const { return fd == server_fd_; }
    /// Takes waiting connections; those that have sent their request already go to `batch`, which
    /// has room for kBatchSize.
    void Accept(std::vector<Request>& batch);
    /// A connection has something to read: moves its request to `batch` or drops it.
    void Readable(int fd, std::vector<Request>& batch);
    /// Drops the connections whose time is over; returns the milliseconds until the next one's is,
    /// -1 when there is none.
    int DropLate();

    /// Answers a request. Its connection closes with the request.
    void Answer(Request& request);

  private:
    struct Waiting {
        Connection connection;
        LIPC_PEER peer;
        int64_t deadline;
    };
    using WaitingList = std::list<Waiting>;  // oldest first, so the first deadline is the next

    enum class Arrival { kRequest, kNothingYet, kGone };
    Arrival Receive(int fd, Message& message);
    bool ConnectionWaits() const;
    void Await(Connection connection, const LIPC_PEER& peer);
    bool MakeRoom(int error);

    const int epoll_fd_;
    const char* const name_;
    int server_fd_;
    WaitingList waiting_;
    std::unordered_map<int, WaitingList::iterator> by_fd_;
    LogLimit room_limit_;
};

}  // namespace aaad
