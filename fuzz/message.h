// Messages out of fuzz inputs.
//
// A mutated image is refused by its outer lengths nearly always, and a decoder would never see it.
// So inputs hold a message as a sketch, from which a well-formed message is made whatever its bytes
// are:
//
//   message  16 bits: length, bit 15 = the bytes are an image as received; then so many bytes
//   sketch   items one behind the other: type 16 bits, length 16 bits with bit 15 = the value is a
//            sketch of a nested message; then so many bytes
//
// Lengths that reach behind the end of what surrounds them are cut.
#pragma once

#include <platform/tlv.h>

#include <memory>

#include "input.h"

namespace fuzz {

constexpr uint16_t kMark = 0x8000;

struct MessageDestroyer {
    void operator()(TLV_MSG* msg) const noexcept { TLV_Destroy(msg); }
};
using Message = std::unique_ptr<TLV_MSG, MessageDestroyer>;

/// Takes one message from an input; null when it is an image that is none.
Message TakeMessage(Input& input);
/// The same of bytes that are nothing but the message.
Message MakeMessage(Bytes bytes, bool is_image);

/// Reads every TLV of a message in every way, nested messages too; a failed promise of tlv.h or
/// aaa_tlv.h ends the process.
void WalkMessage(TLV_MSG* msg, int depth = 0);

/// Deletes, appends and takes out TLVs of `msg`, also through positions in `other`; the input says
/// which. Then everything is read again.
void ChangeMessage(TLV_MSG* msg, TLV_MSG* other, Input& input);

}  // namespace fuzz
