#include "endpoint.h"

#include <platform/aaa_tlv.h>
#include <poll.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <time.h>

#include <cerrno>
#include <cstring>
#include <new>

#include "failure.h"
#include "memory_watch.h"

namespace aaad {
namespace {

// Whoever may connect may read; the peer's identity decides about changes.
constexpr uint32_t kSocketMode = 0666;
constexpr uint32_t kNoWait = 0;
/// Far above every message; a larger packet is answered without being read.
constexpr ssize_t kLargestRequest = ssize_t{256} * 1024;
/// So many connections are taken before those that are there get their turn.
constexpr int kAcceptsInOneGo = 256;

int64_t NowMilliseconds() {
    timespec now{};
    (void)clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<int64_t>(now.tv_sec) * 1000 + now.tv_nsec / 1000000;
}

/// Of the next packet; 0 when the peer has closed, negative with errno when there is none.
ssize_t PeekLength(int fd) {
    char first;
    ssize_t length;
    do {
        length = recv(fd, &first, sizeof first, MSG_PEEK | MSG_TRUNC | MSG_DONTWAIT);
    } while (length < 0 && errno == EINTR);
    return length;
}

Request MakeRequest(Connection connection, const LIPC_PEER& peer, Message message) {
    Request request;
    request.connection = std::move(connection);
    request.peer = peer;
    request.message = std::move(message);
    return request;
}

/// The reply's frame: its first TLV has the kind as type and nests the body.
Message Frame(uint16_t kind, TLV_MSG* body) {
    Message reply(TLV_Create());
    if (!reply || body == nullptr || AAA_AppendSubTlv(reply.get(), kind, body) != 0) return nullptr;
    return reply;
}

Message ResultBody(const Request& request) {
    Message body(TLV_Create());
    if (body && request.name_type != 0 &&
        AAA_AppendStrTlvData(body.get(), request.name_type, request.name) != 0) {
        return nullptr;
    }
    if (body && request.serial != 0 &&
        AAA_AppendUINT64TlvData(body.get(), DOM_TLV_RECORD_SERIAL, request.serial) != 0) {
        return nullptr;
    }
    if (body && request.removed.has_value() &&
        AAA_AppendUINTTlvData(body.get(), DOM_TLV_RECORD_COUNT, *request.removed) != 0) {
        return nullptr;
    }
    if (!body || AAA_AppendUINTTlvData(body.get(), DOM_TLV_RESULT, request.result) != 0) {
        return nullptr;
    }
    return body;
}

}  // namespace

Endpoint::Endpoint(int epoll_fd, uint16_t sub_endpoint, const char* name,
                   const std::string& run_dir)
    : epoll_fd_(epoll_fd),
      name_(name),
      server_fd_(LIPC_ServerOpen(DOM_LIPC_ENDPOINT, sub_endpoint, kSocketMode)) {
    if (server_fd_ < 0) {
        const int error = errno;
        const char* way_out = error == EADDRINUSE ? "Stop the process that serves it"
                              : error == EEXIST
                                  ? "Move the file away that has the socket's name"
                                  : "Make the directory writable for the daemon's user";
        throw Failure(name_ + (" below " + run_dir), strerror(error), way_out);
    }
    epoll_event event{};
    event.events = EPOLLIN;
    event.data.fd = server_fd_;
    if (epoll_ctl(epoll_fd_, EPOLL_CTL_ADD, server_fd_, &event) != 0) {
        const int error = errno;
        LIPC_ServerClose(server_fd_);
        throw Failure(name_ + (" below " + run_dir), strerror(error), "Free memory");
    }
}

Endpoint::~Endpoint() {
    LIPC_ServerClose(server_fd_);
}

/// Much cheaper than an accept in vain, for which the kernel makes a socket first.
bool Endpoint::ConnectionWaits() const {
    pollfd server{server_fd_, POLLIN, 0};
    return poll(&server, 1, 0) != 0;  // what is wrong with the socket, accept tells
}

void Endpoint::Accept(std::vector<Request>& batch) {
    for (int i = 0; i < kAcceptsInOneGo && batch.size() < kBatchSize; ++i) {
        if (i > 0 && !ConnectionWaits()) return;
        LIPC_PEER peer{};
        const int fd = LIPC_ServerAccept(server_fd_, &peer);
        if (fd < 0) {
            if (errno == EINTR || errno == ECONNABORTED) continue;
            if (errno == EAGAIN || errno == EWOULDBLOCK || !MakeRoom(errno)) return;
            continue;
        }
        Connection connection(fd);
        Message message;
        switch (Receive(fd, message)) {
            case Arrival::kRequest:
                batch.push_back(MakeRequest(std::move(connection), peer, std::move(message)));
                break;
            case Arrival::kGone:
                break;
            case Arrival::kNothingYet:
                Await(std::move(connection), peer);
                break;
        }
    }
}

/// Without memory for it the connection is closed.
void Endpoint::Await(Connection connection, const LIPC_PEER& peer) {
    const int fd = connection.Descriptor();
    epoll_event event{};
    event.events = EPOLLIN;
    event.data.fd = fd;
    if (epoll_ctl(epoll_fd_, EPOLL_CTL_ADD, fd, &event) != 0) return;
    const size_t before = waiting_.size();
    try {
        waiting_.push_back(
            {std::move(connection), peer, NowMilliseconds() + kRequestLimitMilliseconds});
        by_fd_[fd] = std::prev(waiting_.end());
    } catch (const std::bad_alloc&) {
        // One that only one of the two knows would report without ever being read.
        if (waiting_.size() > before) waiting_.pop_back();
    }
}

void Endpoint::Readable(int fd, std::vector<Request>& batch) {
    const auto found = by_fd_.find(fd);
    if (found == by_fd_.end()) return;  // dropped earlier in this round
    Message message;
    const Arrival arrival = Receive(fd, message);
    if (arrival == Arrival::kNothingYet) return;
    Waiting waiting = std::move(*found->second);
    waiting_.erase(found->second);
    by_fd_.erase(found);
    // The socket lives on in its request until it is answered, and must not report in the meantime.
    (void)epoll_ctl(epoll_fd_, EPOLL_CTL_DEL, fd, nullptr);
    if (arrival == Arrival::kRequest) {
        batch.push_back(
            MakeRequest(std::move(waiting.connection), waiting.peer, std::move(message)));
    }
}

/// A packet that is no message is a request, too: its sender waits for an answer. One that memory
/// does not suffice for must not be answered like it; its closed connection says that there is
/// none.
Endpoint::Arrival Endpoint::Receive(int fd, Message& message) {
    // Once more after a close: the kernel may report it before a packet that came just ahead of it.
    ssize_t length = PeekLength(fd);
    if (length == 0) length = PeekLength(fd);
    if (length < 0) {
        return errno == EAGAIN || errno == EWOULDBLOCK ? Arrival::kNothingYet : Arrival::kGone;
    }
    if (length == 0) return Arrival::kGone;
    if (length <= kLargestRequest) {
        const MemoryWatch memory;
        message.reset(
            TLV_CreateReceiveMsg(TLV_FORM_DESCRIPTOR, static_cast<uintptr_t>(fd), kNoWait));
        if (!message && memory.RanShort()) return Arrival::kGone;
    }
    return Arrival::kRequest;
}

/// No descriptor or memory for another connection: the one that has been silent longest goes.
bool Endpoint::MakeRoom(int error) {
    uint32_t suppressed = 0;
    if (room_limit_.Allows(suppressed)) {
        Log(Severity::kWarning,
            "%s: %s with %zu silent connections; the oldest one is dropped. Raise the limit of "
            "open files, or find out who connects without asking",
            name_, strerror(error), waiting_.size());
    }
    if (waiting_.empty()) {
        // Nothing of ours to give up: let the others run instead of turning in circles.
        const timespec pause{0, 10'000'000};
        (void)nanosleep(&pause, nullptr);
        return false;
    }
    by_fd_.erase(waiting_.front().connection.Descriptor());
    waiting_.pop_front();
    return true;
}

int Endpoint::DropLate() {
    if (waiting_.empty()) return -1;
    const int64_t now = NowMilliseconds();
    while (!waiting_.empty() && waiting_.front().deadline <= now) {
        by_fd_.erase(waiting_.front().connection.Descriptor());
        waiting_.pop_front();
    }
    return waiting_.empty() ? -1 : static_cast<int>(waiting_.front().deadline - now);
}

void Endpoint::Answer(Request& request) {
    Message reply;
    if (request.data) {
        reply = Frame(DOM_REPLY_KIND_DATA, request.data.get());
    } else {
        reply = Frame(DOM_REPLY_KIND_RESULT, ResultBody(request).get());
    }
    // Without memory for the reply the closed connection tells the client that there is none. A
    // client that has gone or does not read loses its reply, not the daemon's time.
    if (reply) {
        (void)TLV_Flush(reply.get(), TLV_FORM_DESCRIPTOR, kNoWait,
                        static_cast<uintptr_t>(request.connection.Descriptor()));
    }
}

}  // namespace aaad
