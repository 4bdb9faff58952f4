// Every decoder of the library, callable with nothing but a message.
#pragma once

#include <platform/tlv.h>

#include <cstddef>
#include <cstdint>

namespace fuzz {

/// How many there are.
size_t DecoderCount();

/// Calls one with texts of `capacity` bytes, of which nothing behind may be written, and frees what
/// it gives. Where there is an encoder of the same code, what was decoded is encoded and decoded
/// again. Needs a Stage.
void Decode(size_t decoder, TLV_MSG* msg, uint32_t capacity);

}  // namespace fuzz
