// The latest command lines whose authorization failed: the library's list and the lock over it.
#pragma once

#include "readers.h"

namespace aaad {

/// The list lives as long as the object; there is one.
class CommandFailures {
  public:
    CommandFailures();
    ~CommandFailures();
    CommandFailures(const CommandFailures&) = delete;
    CommandFailures& operator=(const CommandFailures&) = delete;
};

/// Takes a reported failure (code 92) in; returns the answer. From any thread.
uint32_t TakeCommandFailure(TLV_MSG* report);

/// All failures, the oldest first, and the end mark with their number. From any thread.
Message ReadCommandFailures(const Question& question, uint32_t& refusal);

}  // namespace aaad
