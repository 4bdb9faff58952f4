#include "mgmt/connection.h"

#include <aaadom/codes.h>
#include <platform/lipc.h>

#include <cerrno>

namespace aaadom {
namespace {

static_assert(sizeof(LIPC_ADDRESS) == DOM_LIPC_ADDR_LEN);

class Connection {
  public:
    Connection() noexcept : fd_(LIPC_Socket(DOM_LIPC_FAMILY, DOM_LIPC_TYPE, DOM_LIPC_PROTOCOL)) {}
    ~Connection() {
        if (fd_ >= 0) LIPC_Close(fd_);
    }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    [[nodiscard]] bool Open() noexcept {
        if (fd_ < 0) return false;
        const LIPC_ADDRESS daemon{
            DOM_LIPC_ADDR_LEN, DOM_LIPC_FAMILY, DOM_LIPC_ENDPOINT, DOM_LIPC_SUB_ENDPOINT, {}};
        while (LIPC_Connect(fd_, &daemon, sizeof daemon) != 0) {
            if (errno == EISCONN) break;  // an interrupted connect went through
            if (errno != EINTR) return false;
        }
        return true;
    }
    [[nodiscard]] bool Send(TLV_MSG* msg) noexcept {
        const uint32_t flushed =
            TLV_Flush(msg, TLV_FORM_DESCRIPTOR, DOM_LIPC_WAIT, static_cast<uintptr_t>(fd_));
        return static_cast<uint16_t>(flushed) != 0;  // a 16-bit result in a wider register
    }
    TlvPtr Receive() noexcept {
        return TlvPtr(
            TLV_CreateReceiveMsg(TLV_FORM_DESCRIPTOR, static_cast<uintptr_t>(fd_), DOM_LIPC_WAIT));
    }

  private:
    const int32_t fd_;
};

}  // namespace

TlvPtr Exchange(TLV_MSG* request, uint32_t opcode) noexcept {
    if (request == nullptr) return nullptr;
    Connection connection;
    if (!connection.Open()) return nullptr;
    {
        const TlvPtr wrapped(AAA_AddOpHead(opcode, request));
        if (!wrapped || !connection.Send(wrapped.get())) return nullptr;
    }
    return connection.Receive();
}

}  // namespace aaadom
