// One socket to the daemon's configuration thread for one request and its reply.
#pragma once

#include <cstdint>

#include "base/message.h"

namespace aaadom {

/// Sends `request` behind an operation head and waits for the reply, which is returned whole; null
/// on any failure. The socket is closed in every case, `request` is borrowed.
TlvPtr Exchange(TLV_MSG* request, uint32_t opcode) noexcept;

}  // namespace aaadom
