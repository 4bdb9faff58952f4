#include "tlv/socket.h"

#include <poll.h>
#include <sys/socket.h>
#include <time.h>

#include <cerrno>

#include "tlv/message.h"

namespace platform {
namespace {

/// A peer cannot make this process reserve more than this for one image.
constexpr uint64_t kLargestFrame = uint64_t{16} * 1024 * 1024;

/// The end of a call's wait, which all its steps share.
class Deadline {
  public:
    explicit Deadline(uint32_t wait) noexcept : end_(Now() + wait) {}

    /// Waits until the descriptor is ready or in error; false when the time is over.
    bool Await(int descriptor, short events) const noexcept {
        for (;;) {
            const int64_t left = end_ - Now();
            pollfd entry{descriptor, events, 0};
            const int ready = poll(&entry, 1, left > 0 ? static_cast<int>(left) : 0);
            if (ready > 0) return true;
            if (ready == 0 || errno != EINTR) return false;
            if (left <= 0) return false;
        }
    }

  private:
    static int64_t Now() noexcept {
        timespec now{};
        clock_gettime(CLOCK_MONOTONIC, &now);
        return int64_t{now.tv_sec} * 1000 + now.tv_nsec / 1'000'000;
    }

    int64_t end_;
};

/// Repeats `step` (a non-blocking call) through interruptions and waits; its last result, negative
/// when it failed or the time is over.
template <typename Step>
ssize_t Persist(int descriptor, short events, const Deadline& deadline, Step&& step) noexcept {
    for (;;) {
        const ssize_t result = step();
        if (result >= 0) return result;
        if (errno == EINTR) continue;
        if (errno != EAGAIN && errno != EWOULDBLOCK) return -1;
        if (!deadline.Await(descriptor, events)) return -1;
    }
}

enum class Kind { kNone, kStream, kPackets };

Kind KindOf(int descriptor) noexcept {
    int type = 0;
    socklen_t size = sizeof type;
    if (getsockopt(descriptor, SOL_SOCKET, SO_TYPE, &type, &size) != 0) return Kind::kNone;
    return type == SOCK_STREAM ? Kind::kStream : Kind::kPackets;
}

bool ReadWhole(int descriptor, uint8_t* to, size_t length, const Deadline& deadline) noexcept {
    while (length != 0) {
        const ssize_t got = Persist(descriptor, POLLIN, deadline,
                                    [&] { return recv(descriptor, to, length, MSG_DONTWAIT); });
        if (got <= 0) return false;
        to += got;
        length -= static_cast<size_t>(got);
    }
    return true;
}

TLV_MSG* ReceiveFromStream(int descriptor, const Deadline& deadline) noexcept {
    uint8_t header[kImageHeader];
    if (!ReadWhole(descriptor, header, sizeof header, deadline)) return nullptr;
    const uint64_t length = ImageLengthOf(header);
    if (length == 0 || length > kLargestFrame) return nullptr;
    TLV_MSG* msg = CreateForImage(static_cast<uint32_t>(length));
    if (msg == nullptr) return nullptr;
    std::memcpy(msg->image, header, sizeof header);
    if (!ReadWhole(descriptor, msg->image + kImageHeader, length - kImageHeader, deadline) ||
        !BodyIsWellFormed(msg->image, msg->length)) {
        DestroyMessage(msg);
        return nullptr;
    }
    return msg;
}

/// Waits for a packet and tells its real length; 0 when the peer has closed, negative on failure.
ssize_t LengthOfNextPacket(int descriptor, const Deadline& deadline) noexcept {
    const auto length = [&] {
        return Persist(descriptor, POLLIN, deadline, [&] {
            uint8_t probe;
            return recv(descriptor, &probe, sizeof probe, MSG_PEEK | MSG_TRUNC | MSG_DONTWAIT);
        });
    };
    // The kernel looks into the queue first and whether the peer has closed later: a peer that
    // sends and closes between the two looks like one that closed without a word. Once it has
    // closed, its packets are in the queue, so the second answer is true.
    const ssize_t first = length();
    return first != 0 ? first : length();
}

TLV_MSG* ReceivePacket(int descriptor, const Deadline& deadline) noexcept {
    const ssize_t length = LengthOfNextPacket(descriptor, deadline);
    if (length < 0) return nullptr;
    uint8_t probe;
    const bool plausible =
        length >= static_cast<ssize_t>(kImageHeader) && uint64_t(length) <= kLargestFrame;
    TLV_MSG* msg = plausible ? CreateForImage(static_cast<uint32_t>(length)) : nullptr;
    if (msg == nullptr) {
        // Takes the packet away, so that the next call finds the next one.
        (void)recv(descriptor, &probe, sizeof probe, MSG_DONTWAIT);
        return nullptr;
    }
    const ssize_t got = Persist(descriptor, POLLIN, deadline, [&] {
        return recv(descriptor, msg->image, msg->length, MSG_TRUNC | MSG_DONTWAIT);
    });
    // Another reader of the socket may have taken the packet that was measured.
    if (got != length || !IsImage(msg->image, msg->length)) {
        DestroyMessage(msg);
        return nullptr;
    }
    return msg;
}

}  // namespace

bool SendMessage(const TLV_MSG* msg, int descriptor, uint32_t wait) noexcept {
    const Kind kind = KindOf(descriptor);
    if (kind == Kind::kNone || (kind == Kind::kStream && msg->length > kLargestFrame)) return false;
    const Deadline deadline(wait);
    const uint8_t* from = msg->image;
    size_t left = msg->length;
    while (left != 0) {
        const ssize_t sent = Persist(descriptor, POLLOUT, deadline, [&] {
            return send(descriptor, from, left, MSG_NOSIGNAL | MSG_DONTWAIT);
        });
        if (sent < 0) return false;
        from += sent;
        left -= static_cast<size_t>(sent);
    }
    return true;
}

TLV_MSG* ReceiveMessage(int descriptor, uint32_t wait) noexcept {
    const Deadline deadline(wait);
    switch (KindOf(descriptor)) {
        case Kind::kStream:
            return ReceiveFromStream(descriptor, deadline);
        case Kind::kPackets:
            return ReceivePacket(descriptor, deadline);
        case Kind::kNone:
            break;
    }
    return nullptr;
}

}  // namespace platform
