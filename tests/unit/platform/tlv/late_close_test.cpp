// A peer that answers and closes while the reader looks: the kernel may report the close first.
#include <dlfcn.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>

#include "unit/platform/tlv/support.h"

using namespace test;

namespace {
/// So many calls of recv report a close, as a kernel does that looked into the queue too early.
std::atomic<int> early_closes{0};
}  // namespace

extern "C" ssize_t recv(int descriptor, void* to, size_t size, int flags) {
    if (early_closes.load() > 0 && early_closes.fetch_sub(1) > 0) return 0;
    static const auto real =
        reinterpret_cast<ssize_t (*)(int, void*, size_t, int)>(dlsym(RTLD_NEXT, "recv"));
    return real(descriptor, to, size, flags);
}

namespace {

TEST(TlvLateClose, AnswerThatCameBeforeTheCloseIsRead) {
    int ends[2];
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends), 0);
    Message sent = New();
    TLV_Append_UINT(sent.get(), 0, 29);
    ASSERT_EQ(TLV_Flush(sent.get(), 1, 2000, static_cast<uintptr_t>(ends[0])), 1u);
    close(ends[0]);
    early_closes = 1;
    const Message received(TLV_CreateReceiveMsg(1, static_cast<uintptr_t>(ends[1]), 2000));
    EXPECT_EQ(early_closes, 0) << "the program's own recv is not in use";
    ASSERT_TRUE(received);
    EXPECT_EQ(ImageOf(received), ImageOf(sent));
    EXPECT_FALSE(Message(TLV_CreateReceiveMsg(1, static_cast<uintptr_t>(ends[1]), 2000)));
    close(ends[1]);
}

}  // namespace
