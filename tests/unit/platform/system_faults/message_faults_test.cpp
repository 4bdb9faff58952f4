// Sending and receiving with a system call refused.
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <thread>
#include <utility>

#include "system_faults.h"
#include "unit/platform/fault_window.h"
#include "unit/platform/tlv/support.h"

namespace {

using namespace test;
using fault_window::Window;
using system_faults::Answer;

class MessageFaults : public testing::TestWithParam<int> {
  protected:
    void SetUp() override { ASSERT_EQ(0, socketpair(AF_UNIX, GetParam(), 0, ends_)); }
    void TearDown() override {
        Answer() = {};
        close(ends_[0]);
        close(ends_[1]);
    }
    void Send(const Message& msg) {
        ASSERT_EQ(
            1u, TLV_Flush(msg.get(), TLV_FORM_DESCRIPTOR, 1000, static_cast<uintptr_t>(ends_[0])));
    }
    void Send(uint32_t number) {
        const Message msg = New();
        ASSERT_EQ(0u, AAA_AppendUINTTlvData(msg.get(), 1, number));
        Send(msg);
    }
    // The number of the next message; 0 when there is none.
    uint32_t Receive(uint32_t wait = 1000) {
        const Message msg(
            TLV_CreateReceiveMsg(TLV_FORM_DESCRIPTOR, static_cast<uintptr_t>(ends_[1]), wait));
        return msg ? AAA_GetUINTTlvValue(msg.get(), TLV_GetFirst(msg.get())) : 0;
    }
    int ends_[2] = {-1, -1};
};

TEST_P(MessageFaults, InterruptedReadIsRepeated) {
    Send(7);
    const Window window(1, EINTR, "recv");
    EXPECT_EQ(7u, Receive());
}

TEST_P(MessageFaults, InterruptedWaitGoesOn) {
    std::thread late([this] {
        usleep(20000);
        Send(7);
    });
    {
        const Window window(1, EINTR, "poll");
        EXPECT_EQ(7u, Receive());
    }
    late.join();
}

TEST_P(MessageFaults, InterruptionAtTheEndOfTheWaitEndsIt) {
    const Window window(1, EINTR, "poll");
    EXPECT_EQ(0u, Receive(0));
    EXPECT_EQ(1, Window::Calls());
}

TEST_P(MessageFaults, RefusedWaitEndsTheReceive) {
    const Window window(1, ENOMEM, "poll");
    EXPECT_EQ(0u, Receive());
    EXPECT_EQ(1, Window::Calls());
}

TEST_P(MessageFaults, ReadErrorEndsTheReceive) {
    Send(7);
    {
        const Window window(1, ECONNRESET, "recv");
        EXPECT_EQ(0u, Receive());
    }
    EXPECT_EQ(7u, Receive());
}

INSTANTIATE_TEST_SUITE_P(Kinds, MessageFaults, testing::Values(SOCK_STREAM, SOCK_SEQPACKET),
                         [](const auto& info) {
                             return info.param == SOCK_STREAM ? "Stream" : "Packets";
                         });

class PacketFaults : public MessageFaults {};
INSTANTIATE_TEST_SUITE_P(Kinds, PacketFaults, testing::Values(SOCK_SEQPACKET));

// No memory is asked for, however long a sender says its packet is.
TEST_P(PacketFaults, PacketAboveTheLargestFrameIsTakenAwayAndTheNextOneComes) {
    Send(7);
    Send(8);
    Answer().recv = [first = true](int fd, void* to, size_t size, int flags) mutable -> ssize_t {
        const ssize_t got = system_faults::RealRecv(fd, to, size, flags);
        return std::exchange(first, false) ? (16 << 20) + 1 : got;
    };
    EXPECT_EQ(0u, Receive());
    EXPECT_EQ(8u, Receive());
}

TEST_P(PacketFaults, PacketThatAnotherReaderTookGivesNoMessage) {
    Send(7);
    Message large = New();
    ASSERT_EQ(0u, Append(large, 2, std::string(300, 'x')));
    Send(large);
    Answer().recv = [](int fd, void* to, size_t size, int flags) -> ssize_t {
        const ssize_t got = system_faults::RealRecv(fd, to, size, flags);
        char other[64];
        if ((flags & MSG_PEEK) != 0) (void)system_faults::RealRecv(fd, other, sizeof other, 0);
        return got;
    };
    EXPECT_EQ(0u, Receive());
}

// A thread whose end nobody can be told of keeps nothing back: there would be nobody to free it.
TEST(ThreadsEnd, WithoutItsNoticeBlocksAreFreedAtOnce) {
    const auto asked = [] {
        const Window window(0, 0, "malloc");
        Message small = New(), large = New();
        EXPECT_EQ(0u, Append(small, 1, std::string(10000, 's')));
        EXPECT_EQ(0u, Append(large, 1, std::string(40000, 'l')));
        large.reset();
        small.reset();
        return Window::Calls();
    };
    std::thread([&] {
        Answer().pthread_setspecific = [](unsigned, const void*) { return ENOMEM; };
        const int cold = asked();
        EXPECT_EQ(cold, asked());
        Answer() = {};
        EXPECT_EQ(cold, asked());
        EXPECT_LT(asked(), cold);
    }).join();
}

TEST(MemoryFaults, FrameThatFindsNoMemoryEndsTheReceive) {
    int ends[2];
    ASSERT_EQ(0, socketpair(AF_UNIX, SOCK_STREAM, 0, ends));
    Message msg = New();
    ASSERT_EQ(0u, Append(msg, 1, std::string(100000, 'x')));
    ASSERT_EQ(1u, TLV_Flush(msg.get(), TLV_FORM_DESCRIPTOR, 1000, static_cast<uintptr_t>(ends[0])));
    const Window window(1, ENOMEM, "malloc");
    EXPECT_EQ(nullptr,
              TLV_CreateReceiveMsg(TLV_FORM_DESCRIPTOR, static_cast<uintptr_t>(ends[1]), 1000));
    EXPECT_STREQ("malloc", fault_window::Refused());
    close(ends[0]);
    close(ends[1]);
}

}  // namespace
