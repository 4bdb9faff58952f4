// Tells want of memory from whatever else a callee may answer in the same way: an object that is
// not there, a record that is damaged, a success that lacks something.
#pragma once

#include <cerrno>

namespace aaad {

/// Watches the calling thread from its construction on. The allocators of the C library leave
/// ENOMEM in errno when they fail; one that succeeded only at its second try, near a limit of the
/// address space, may leave it, too, and then counts as want. Watches do not nest: what an outer
/// one is to see may not lie before an inner one.
class MemoryWatch {
  public:
    MemoryWatch() { errno = 0; }
    /// Also when a later call made do without the memory.
    bool RanShort() const { return errno == ENOMEM; }
};

}  // namespace aaad
