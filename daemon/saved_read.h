// Reads of the database while the tables are filled from it. What is taken for missing or damaged
// there is served as missing, and the next change of it is saved over it; so an answer of "nothing"
// is believed only after it was given twice, and never when memory ran short.
#pragma once

#include <new>

#include "memory_watch.h"

namespace aaad {

/// What `read` gives: something that is true unless there is nothing. Throws std::bad_alloc when
/// memory does not suffice for the whole of it.
template <typename Read>
auto ReadSaved(Read&& read) {
    for (bool again = false;; again = true) {
        const MemoryWatch memory;
        auto object = read();
        const bool ran_short = memory.RanShort();
        if (object && !ran_short) return object;
        if (!again) continue;
        if (ran_short) throw std::bad_alloc();
        return object;
    }
}

}  // namespace aaad
