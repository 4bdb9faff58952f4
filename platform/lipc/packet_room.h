// How large a packet a socket may carry.
#pragma once

namespace platform {

/// Raises the send buffer so that a large message passes in one packet; best effort.
void MakePacketRoom(int fd) noexcept;

}  // namespace platform
