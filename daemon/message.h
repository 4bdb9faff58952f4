// Owning handle of a TLV message.
#pragma once

#include <platform/tlv.h>

#include <memory>

namespace aaad {

struct MessageDestroyer {
    void operator()(TLV_MSG* message) const noexcept { TLV_Destroy(message); }
};
using Message = std::unique_ptr<TLV_MSG, MessageDestroyer>;

}  // namespace aaad
