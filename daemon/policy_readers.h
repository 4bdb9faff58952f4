// Replies about accounting policies, from the working role, which alone has them, and about the
// recording policy.
#pragma once

#include "readers.h"

namespace aaad {

Message ReadAccountingPolicy(const Question& question, uint32_t& refusal);
/// The accounting scheme of the policy that a domain refers to.
Message ReadDomainAccountingScheme(const Question& question, uint32_t& refusal);
Message ReadRecordingPolicy(const Question& question, uint32_t& refusal);

}  // namespace aaad
