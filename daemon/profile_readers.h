// Replies about authorization and critical profiles, from the configuration role's stores.
#pragma once

#include "readers.h"

namespace aaad {

Message ReadCriticalProfile(const Question& question, uint32_t& refusal);
Message ReadCriticalVpn(const Question& question, uint32_t& refusal);
Message ReadAuthorProfile(const Question& question, uint32_t& refusal);
Message ReadAuthorVpn(const Question& question, uint32_t& refusal);
/// A whole authorization profile with its VPNs.
Message ReadAuthorProfileReport(const Question& question, uint32_t& refusal);
Message ReadAuthorProfileCount(const Question& question, uint32_t& refusal);

}  // namespace aaad
