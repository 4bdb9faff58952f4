#include "heap_room.h"

#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

namespace aaad {
namespace {

constexpr size_t kLittle = size_t{80} << 10;  // a stored value's buffer, and the object in it
constexpr size_t kSmallPiece = size_t{128} << 10;
constexpr size_t kLargestPiece = size_t{16} << 20;
constexpr size_t kLargePage = size_t{2} << 20;

/// Larger pieces than usual come from the heap, and what is freed at its end stays there.
void KeepPiecesInHeap() {
#ifdef M_MMAP_THRESHOLD
    static const bool done = [] {
        (void)mallopt(M_MMAP_THRESHOLD, static_cast<int>(kLargestPiece + kSmallPiece));
        (void)mallopt(M_TRIM_THRESHOLD, static_cast<int>(2 * kLargestPiece));
        return true;
    }();
    (void)done;
#endif
}

void Advise(uintptr_t begin, uintptr_t end, uintptr_t page, int advice) {
    begin = (begin + page - 1) / page * page;
    end = end / page * page;
    if (begin < end) (void)madvise(reinterpret_cast<void*>(begin), end - begin, advice);
}

/// Has the pages that lie wholly inside made now. Where the system cannot, they come with their
/// first use.
void MakePages(void* piece, size_t size) {
    const auto begin = reinterpret_cast<uintptr_t>(piece);
    Advise(begin, begin + size, kLargePage, MADV_HUGEPAGE);
#ifdef MADV_POPULATE_WRITE
    static const auto page = static_cast<uintptr_t>(sysconf(_SC_PAGESIZE));
    Advise(begin, begin + size, page, MADV_POPULATE_WRITE);
#endif
}

}  // namespace

HeapRoom::HeapRoom(uint32_t objects) : objects_(objects) {
    KeepPiecesInHeap();
}

void HeapRoom::Used(size_t bytes) {
    ++used_objects_;
    used_ += bytes;
    left_ -= std::min(bytes, left_);
    if (left_ >= kLittle || used_objects_ >= objects_) return;
    // What came so far tells what is to come; the less it is, the less it is trusted.
    const size_t expected = used_ / used_objects_ * (objects_ - used_objects_);
    const size_t piece =
        std::min({expected, std::max(kSmallPiece, 4 * used_), kLargestPiece}) + kLittle;
    void* memory = malloc(piece);
    if (memory == nullptr) return;
    MakePages(memory, piece);
    free(memory);
    left_ += piece;
}

}  // namespace aaad
