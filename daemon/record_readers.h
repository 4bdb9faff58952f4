// Replies about record switches and backup methods.
#pragma once

#include "readers.h"

namespace aaad {

Message ReadRecordSwitches(const Question& question, uint32_t& refusal);
Message ReadBackupMethods(const Question& question, uint32_t& refusal);

}  // namespace aaad
