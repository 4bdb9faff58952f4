// The heap of a thread that loads: it grows ahead of the load, by few large pieces.
#include "daemon/heap_room.h"

#include <gtest/gtest.h>
#include <malloc.h>

#include <cstdlib>
#include <functional>
#include <thread>
#include <vector>

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kHasHeaps = false;  // the sanitizer owns malloc
#else
constexpr bool kHasHeaps = true;
#endif

/// Bytes that all heaps have taken from the system.
size_t TakenFromSystem() {
    return mallinfo2().arena;
}

class HeapRoom : public testing::Test {
  protected:
    void SetUp() override {
        if (!kHasHeaps) GTEST_SKIP() << "the sanitizer owns malloc";
    }
    /// Like the loading thread, one that has a heap of its own, with nothing in it yet.
    static void InThread(const std::function<void()>& test) {
        std::thread([&] {
            free(malloc(1));
            test();
        }).join();
    }
    static constexpr size_t kDomain = 13000;
    static constexpr size_t kPiece = size_t{128} << 10;
};

TEST_F(HeapRoom, ObjectsThatFollowTakeNothingFromTheSystem) {
    InThread([] {
        const size_t before = TakenFromSystem();
        aaad::HeapRoom room(1000);
        room.Used(kDomain);
        const size_t grown = TakenFromSystem();
        EXPECT_GT(grown, before);
        std::vector<void*> objects(kPiece / kDomain);
        for (void*& object : objects) object = malloc(kDomain);
        EXPECT_EQ(TakenFromSystem(), grown);
        for (void* object : objects) free(object);
    });
}

TEST_F(HeapRoom, PiecesGrowWithWhatHasCome) {
    InThread([] {
        aaad::HeapRoom room(1024);
        int growths = 0;
        size_t taken = TakenFromSystem();
        std::vector<void*> objects(1024);
        for (void*& object : objects) {
            object = malloc(kDomain);
            room.Used(kDomain);
            growths += TakenFromSystem() != taken;
            taken = TakenFromSystem();
        }
        EXPECT_LE(growths, 8);
        for (void* object : objects) free(object);
    });
}

TEST_F(HeapRoom, LastObjectMakesNoRoom) {
    InThread([] {
        const size_t before = TakenFromSystem();
        aaad::HeapRoom room(1);
        room.Used(size_t{1} << 20);
        EXPECT_EQ(TakenFromSystem(), before);
    });
}

// A number of objects that is a lie, from a damaged database, must not take all memory.
TEST_F(HeapRoom, NoPieceIsLargerThan16MiB) {
    InThread([] {
        const size_t before = TakenFromSystem();
        aaad::HeapRoom room(UINT32_MAX);
        room.Used(size_t{10} << 20);
        EXPECT_LE(TakenFromSystem(), before + (size_t{17} << 20));
    });
}

}  // namespace
