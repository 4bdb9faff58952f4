// A connection to the daemon that does what no library would do.
#pragma once

#include <platform/aaa_tlv.h>
#include <platform/lipc.h>
#include <poll.h>
#include <unistd.h>

#include "daemon_process.h"

namespace daemon_test {

class RawClient {
  public:
    explicit RawClient(uint16_t sub_endpoint = DOM_LIPC_SUB_ENDPOINT)
        : fd_(LIPC_Socket(DOM_LIPC_FAMILY, DOM_LIPC_TYPE, DOM_LIPC_PROTOCOL)) {
        LIPC_ADDRESS address{};
        address.length = DOM_LIPC_ADDR_LEN;
        address.family = DOM_LIPC_FAMILY;
        address.endpoint = DOM_LIPC_ENDPOINT;
        address.sub_endpoint = sub_endpoint;
        if (LIPC_Connect(fd_, &address, DOM_LIPC_ADDR_LEN) != 0) {
            LIPC_Close(fd_);
            fd_ = -1;
        }
    }
    RawClient(RawClient&& other) noexcept : fd_(other.fd_) { other.fd_ = -1; }
    ~RawClient() { LIPC_Close(fd_); }

    bool Connected() const { return fd_ >= 0; }
    void Send(const std::vector<uint8_t>& bytes) {
        EXPECT_EQ(write(fd_, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    }
    /// The nested message of a result that the daemon answers, null without an answer.
    Message Answer() {
        const Message reply(
            TLV_CreateReceiveMsg(TLV_FORM_DESCRIPTOR, static_cast<uintptr_t>(fd_), 20000));
        if (!reply) return nullptr;
        TLV_ITER* first = TLV_GetFirst(reply.get());
        if (TLV_GetTypeByIterator(reply.get(), first) != DOM_REPLY_KIND_RESULT) return nullptr;
        return Message(AAA_GetSubTlv(reply.get(), first));
    }
    /// The result that the daemon answers, kNoReply without an answer.
    uint32_t Result() {
        const Message body = Answer();
        uint32_t result = kNoReply;
        if (body) (void)DOM_lipc_ReplyMsgProc(body.get(), &result);
        return result;
    }
    /// Whether the daemon closes the connection within a time.
    bool IsClosedWithin(int milliseconds) {
        pollfd poll_fd{fd_, POLLIN, 0};
        if (poll(&poll_fd, 1, milliseconds) <= 0) return false;
        char byte;
        return read(fd_, &byte, 1) <= 0;
    }

  private:
    int32_t fd_;
};

}  // namespace daemon_test
