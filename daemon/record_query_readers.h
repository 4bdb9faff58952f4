// Reads of codes 70 to 75.
#pragma once

#include "readers.h"

namespace aaad {

Message ReadRecordNumber(const Question& question, uint32_t& refusal);
Message ReadRecordPage(const Question& question, uint32_t& refusal);
Message ReadRecordsByReason(const Question& question, uint32_t& refusal);
Message ReadRecordTop(const Question& question, uint32_t& refusal);

}  // namespace aaad
