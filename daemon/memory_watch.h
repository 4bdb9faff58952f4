// Tells want of memory from whatever else a callee may answer in the same way: an object that is
// not there, a record that is damaged, a success that lacks something.
#pragma once

#include <cerrno>

namespace aaad {

/// Watches the calling thread from its construction on. The allocators of the C library leave
/// ENOMEM in errno when they fail, and a call that succeeds leaves errno alone.
class MemoryWatch {
  public:
    MemoryWatch() { errno = 0; }
    /// Also when a later call made do without the memory.
    bool RanShort() const { return errno == ENOMEM; }
};

}  // namespace aaad
