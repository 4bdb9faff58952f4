#include <platform/lipc.h>

#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstring>
#include <deque>
#include <map>
#include <optional>

#include "fakes/message.h"
#include "fakes/state.h"

namespace fake {
namespace {

constexpr int32_t kFirstDescriptor = 100000;  // far above every real descriptor of a test

struct Socket {
    enum Kind { kNew, kToFunction, kConnected, kListening } kind = kNew;
    int32_t peer = -1;
    bool peer_closed = false;
    std::deque<std::string> inbox;
    std::deque<int32_t> backlog;  // of a listening socket: accepted ends waiting
    uint32_t endpoint = 0;        // of a listening socket
};

struct Network {
    std::map<int32_t, Socket> sockets;
    int32_t next = kFirstDescriptor;
    std::function<TLV_MSG*(TLV_MSG*)> server;
    std::deque<int> connect_errors;
    bool receive_times_out = false;
    std::optional<uint32_t> flush_result;
    uint32_t wait_limit = 0;
    std::vector<SocketCall> socket_calls;
    std::vector<ConnectCall> connect_calls;
    std::vector<FlushCall> flush_calls;
    std::vector<uint32_t> receive_waits;
    std::vector<uint32_t> buffer_flush_limits;
};
Network& Net() {
    static auto* network = new Network;
    return *network;
}
std::condition_variable_any& Changed() {
    static auto* changed = new std::condition_variable_any;
    return *changed;
}

Socket* Find(int32_t fd) {
    const auto found = Net().sockets.find(fd);
    return found == Net().sockets.end() ? nullptr : &found->second;
}
int32_t NewSocket(Socket::Kind kind) {
    const int32_t fd = Net().next++;
    Net().sockets[fd].kind = kind;
    return fd;
}
uint32_t Endpoint(uint16_t endpoint, uint16_t sub) {
    return uint32_t{endpoint} << 16 | sub;
}

Socket* Listener(uint32_t endpoint) {
    for (auto& [fd, socket] : Net().sockets) {
        if (socket.kind == Socket::kListening && socket.endpoint == endpoint) return &socket;
    }
    return nullptr;
}

int Connect(int32_t fd, const void* address, uint32_t length) {
    Socket* socket = Find(fd);
    if (socket == nullptr) return EBADF;
    LIPC_ADDRESS to;
    if (address == nullptr || length != sizeof to) return EINVAL;
    std::memcpy(&to, address, sizeof to);
    if (to.length != sizeof to || to.family != 37) return EINVAL;
    int error = 0;
    if (!Net().connect_errors.empty()) {
        error = Net().connect_errors.front();
        Net().connect_errors.pop_front();
        if (error != 0 && error != EISCONN) return error;
    }
    if (socket->kind != Socket::kNew) return EISCONN;
    if (Socket* listener = Listener(Endpoint(to.endpoint, to.sub_endpoint))) {
        const int32_t accepted = NewSocket(Socket::kConnected);
        Net().sockets[accepted].peer = fd;
        socket = Find(fd);
        socket->kind = Socket::kConnected;
        socket->peer = accepted;
        listener->backlog.push_back(accepted);
        Changed().notify_all();
        return error;
    }
    if (!Net().server) return ECONNREFUSED;
    socket->kind = Socket::kToFunction;
    return error;
}

void Close(int32_t fd) {
    Socket* socket = Find(fd);
    if (socket == nullptr) {
        NoteMisuse("a descriptor closed that is no open socket: " + std::to_string(fd));
        return;
    }
    if (Socket* peer = Find(socket->peer)) peer->peer_closed = true;
    const std::deque<int32_t> waiting = socket->backlog;
    Net().sockets.erase(fd);
    for (const int32_t accepted : waiting) Close(accepted);
    Changed().notify_all();
}

}  // namespace

uint32_t FlushToDescriptor(int32_t fd, uint32_t wait, const std::string& image) {
    std::unique_lock<std::recursive_mutex> lock(StateMutex());
    if (fd < 0) return 0;
    Watch("TLV_Flush");
    Net().flush_calls.push_back({fd, wait, image, HeldLocks()});
    const uint32_t result = Net().flush_result.value_or(1);
    Socket* socket = Find(fd);
    if (socket == nullptr) return fd >= kFirstDescriptor ? 0 : result;
    if (socket->kind == Socket::kToFunction) {
        const auto server = Net().server;
        lock.unlock();
        TLV_MSG* request = ParseImage(image);
        TLV_MSG* reply = server ? server(request) : nullptr;
        std::string answer;
        if (reply != nullptr) answer = MakeImage(reply);
        DestroyMessage(request);
        DestroyMessage(reply);
        lock.lock();
        if (reply != nullptr) {
            if (Socket* still_open = Find(fd)) still_open->inbox.push_back(answer);
        }
        return result;
    }
    Socket* peer = Find(socket->peer);
    if (socket->kind != Socket::kConnected || peer == nullptr) return 0;
    peer->inbox.push_back(image);
    Changed().notify_all();
    return result;
}

bool ReceiveFromDescriptor(int32_t fd, uint32_t wait, std::string& image) {
    std::unique_lock<std::recursive_mutex> lock(StateMutex());
    Net().receive_waits.push_back(wait);
    uint32_t limit = wait & 0xFFFFu;
    if (Net().wait_limit != 0 && Net().wait_limit < limit) limit = Net().wait_limit;
    const auto ready = [fd] {
        const Socket* socket = Find(fd);
        return socket == nullptr || !socket->inbox.empty() || socket->peer_closed ||
               socket->kind != Socket::kConnected;  // a function has answered already or never will
    };
    if (Net().receive_times_out) return false;
    if (!Changed().wait_for(lock, std::chrono::milliseconds(limit), ready)) return false;
    Socket* socket = Find(fd);
    if (socket == nullptr || socket->inbox.empty()) return false;
    image = socket->inbox.front();
    socket->inbox.pop_front();
    return true;
}

int64_t NextPacket(int32_t fd) {
    Inside inside;
    const Socket* socket = Find(fd);
    if (socket == nullptr) return 0;
    if (!socket->inbox.empty()) return static_cast<int64_t>(socket->inbox.front().size());
    return socket->peer_closed ? 0 : -1;
}

void SetServer(std::function<TLV_MSG*(TLV_MSG* request)> server) {
    Inside inside;
    Net().server = std::move(server);
}
TLV_MSG* MakeReply(uint16_t kind, TLV_MSG* body) {
    Quiet quiet;
    TLV_MSG* reply = NewMessage();
    TLV_MSG* empty = body == nullptr ? NewMessage() : nullptr;
    AddItem(reply, kind, MakeImage(body == nullptr ? empty : body));
    DestroyMessage(empty);
    DestroyMessage(body);
    return reply;
}
void ConnectErrors(std::initializer_list<int> errors) {
    Inside inside;
    Net().connect_errors = errors;
}
void ReceiveTimesOut(bool on) {
    Inside inside;
    Net().receive_times_out = on;
}
void SetFlushResult(uint32_t result) {
    Inside inside;
    Net().flush_result = result;
}
std::vector<SocketCall> SocketCalls() {
    Inside inside;
    return Net().socket_calls;
}
std::vector<ConnectCall> ConnectCalls() {
    Inside inside;
    return Net().connect_calls;
}
std::vector<FlushCall> FlushCalls() {
    Inside inside;
    return Net().flush_calls;
}
void NoteBufferFlush(uint32_t limit) {
    Inside inside;
    Net().buffer_flush_limits.push_back(limit);
}
std::vector<uint32_t> BufferFlushLimits() {
    Inside inside;
    return Net().buffer_flush_limits;
}
std::vector<uint32_t> ReceiveWaits() {
    Inside inside;
    return Net().receive_waits;
}
int OpenSockets() {
    Inside inside;
    return static_cast<int>(Net().sockets.size());
}
void ResetSockets() {
    const int32_t next = Net().next;  // old numbers stay unknown
    Net() = Network{};
    Net().next = next;
}

}  // namespace fake

extern "C" uint32_t LIPC_SetRuntimeDir(const char* directory) noexcept {
    return directory == nullptr ? fake::kFailed : 0;
}

extern "C" uint32_t LIPC_SetWaitLimit(uint32_t milliseconds) noexcept {
    fake::Inside inside;
    fake::Net().wait_limit = milliseconds;
    return 0;
}

extern "C" int32_t LIPC_Socket(int32_t family, int32_t type, int32_t protocol) noexcept {
    const bool fails = fake::Hit(fake::Event::kSocket);
    fake::Inside inside;
    fake::Net().socket_calls.push_back({family, type, protocol});
    if (fails) errno = EMFILE;
    if (fails) return -1;
    if (family == 37 && type == 2 && protocol == 1) return fake::NewSocket(fake::Socket::kNew);
    errno = EAFNOSUPPORT;
    return -1;
}

extern "C" int32_t LIPC_Connect(int32_t fd, const void* address, uint32_t length) noexcept {
    fake::Inside inside;
    fake::ConnectCall call{fd, {}, length, 0};
    if (address != nullptr) {
        std::memcpy(call.address.data(), address, length < 16 ? length : 16);
    }
    call.error = fake::Connect(fd, address, length);
    fake::Net().connect_calls.push_back(call);
    if (call.error != 0) errno = call.error;
    return call.error == 0 ? 0 : -1;
}

extern "C" void LIPC_Close(int32_t fd) noexcept {
    fake::Inside inside;
    fake::Close(fd);
}

extern "C" int32_t LIPC_ServerOpen(uint16_t endpoint, uint16_t sub_endpoint, uint32_t) noexcept {
    const bool fails = fake::Hit(fake::Event::kSocket);
    fake::Inside inside;
    if (fails) {
        errno = EMFILE;
        return -1;
    }
    if (fake::Listener(fake::Endpoint(endpoint, sub_endpoint)) != nullptr) {
        errno = EADDRINUSE;
        return -1;
    }
    const int32_t fd = fake::NewSocket(fake::Socket::kListening);
    fake::Net().sockets[fd].endpoint = fake::Endpoint(endpoint, sub_endpoint);
    return fd;
}

extern "C" int32_t LIPC_ServerAccept(int32_t server_fd, LIPC_PEER* peer) noexcept {
    fake::Inside inside;
    const auto fails = [] {
        const fake::Outside outside;
        return fake::Hit(fake::Event::kSocket);
    };
    fake::Socket* socket = fake::Find(server_fd);
    if (socket == nullptr || socket->kind != fake::Socket::kListening) {
        errno = EBADF;
        return -1;
    }
    if (socket->backlog.empty()) {
        errno = EAGAIN;
        return -1;
    }
    if (fails()) {
        errno = EMFILE;
        return -1;
    }
    const int32_t fd = socket->backlog.front();
    socket->backlog.pop_front();
    if (peer != nullptr) *peer = {1, 0, 0};
    return fd;
}

extern "C" void LIPC_ServerClose(int32_t server_fd) noexcept {
    LIPC_Close(server_fd);
}
