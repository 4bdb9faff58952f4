// Replies about NAS-ID profiles and bindings.
#pragma once

#include "readers.h"

namespace aaad {

/// Bindings that the reply about a profile carries; a reply must fit into one packet.
constexpr int kBindingsInReply = 512;

Message ReadNasIdProfile(const Question& question, uint32_t& refusal);
Message ReadNasIdBinding(const Question& question, uint32_t& refusal);

}  // namespace aaad
