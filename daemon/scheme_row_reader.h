// Replies about rows of the scheme table.
#pragma once

#include "readers.h"

namespace aaad {

/// Operation 2: the row of the key. Every other one: the row behind the key, a length of 0 asks for
/// the first.
Message ReadSchemeRow(const Question& question, uint32_t& refusal);

}  // namespace aaad
