// Messages on connected sockets: one packet on message sockets, one image behind the other on
// streams. Works the same on blocking and non-blocking descriptors.
#pragma once

#include <platform/tlv.h>

#include <cstdint>

namespace platform {

/// True when the whole image was handed to the socket within `wait` milliseconds.
bool SendMessage(const TLV_MSG* msg, int descriptor, uint32_t wait) noexcept;
/// The next message that comes within `wait` milliseconds, or null.
TLV_MSG* ReceiveMessage(int descriptor, uint32_t wait) noexcept;

}  // namespace platform
