// Memory for a load, taken from the system in few pieces.
//
// A thread other than the first has a heap of its own, which the C library grows by a page or two
// at a time: a system call and a page fault for every few kilobytes of tables that take many
// megabytes. That is a quarter of the time of a start. Here the heap grows ahead of the load, by as
// much as the load will need as far as is known, in large pages where the system has them. What is
// left over is ordinary free memory of the heap.
#pragma once

#include <cstddef>
#include <cstdint>

namespace aaad {

/// Room in the heap of the calling thread for a load of so many objects.
class HeapRoom {
  public:
    explicit HeapRoom(uint32_t objects);

    /// Tells that one object was allocated, which took `bytes`; makes new room when what is left is
    /// little. Never fails: without room every allocation grows the heap itself.
    void Used(size_t bytes);

  private:
    const uint32_t objects_;
    uint32_t used_objects_ = 0;
    size_t used_ = 0;
    size_t left_ = 0;
};

}  // namespace aaad
