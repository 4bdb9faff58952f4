// Builds the data of replies, each in the role that its row of the code table names.
#pragma once

#include <cstdint>

#include "message.h"

namespace aaad {

Message ReadDefaultDomain(TLV_MSG* body, uint32_t& refusal);
Message ReadDomainCount(TLV_MSG* body, uint32_t& refusal);
Message ReadDomain(TLV_MSG* body, uint32_t& refusal);
Message ReadSessionLimits(TLV_MSG* body, uint32_t& refusal);
Message ReadNextDomainRow(TLV_MSG* body, uint32_t& refusal);
Message ReadGlobalDomain(TLV_MSG* body, uint32_t& refusal);
Message ReadDebugFlag(TLV_MSG* body, uint32_t& refusal);
Message ReadNextDomain(TLV_MSG* body, uint32_t& refusal);

}  // namespace aaad
