#include <fcntl.h>
#include <pthread.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <thread>

#include "tlv/wait_limit.h"
#include "unit/platform/tlv/support.h"

using namespace test;

namespace {

using Clock = std::chrono::steady_clock;

int64_t MillisecondsSince(Clock::time_point start) {
    return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count();
}

class Pair {
  public:
    explicit Pair(int type) { EXPECT_EQ(socketpair(AF_UNIX, type | SOCK_CLOEXEC, 0, ends_), 0); }
    ~Pair() {
        Close(0);
        Close(1);
    }
    int operator[](int end) const { return ends_[end]; }
    void Close(int end) {
        if (ends_[end] >= 0) close(ends_[end]);
        ends_[end] = -1;
    }

  private:
    int ends_[2];
};

uint32_t Send(const Message& msg, int descriptor, uint32_t wait = 2000) {
    return TLV_Flush(msg.get(), 1, wait, static_cast<uintptr_t>(descriptor));
}

Message Receive(int descriptor, uint32_t wait = 2000) {
    return Message(TLV_CreateReceiveMsg(1, static_cast<uintptr_t>(descriptor), wait));
}

Message Sample(size_t size = 100) {
    Message msg = New();
    TLV_Append_UINT(msg.get(), 0, 29);
    Append(msg, 1, std::string(size, 's'));
    return msg;
}

void SetRoom(int descriptor, int bytes) {
    setsockopt(descriptor, SOL_SOCKET, SO_SNDBUF, &bytes, sizeof bytes);
}

class TlvSocket : public testing::TestWithParam<int> {
  protected:
    void TearDown() override { platform_SetWaitLimit(0); }
    Pair pair_{GetParam()};
};
INSTANTIATE_TEST_SUITE_P(Types, TlvSocket,
                         testing::Values(SOCK_SEQPACKET, SOCK_STREAM, SOCK_DGRAM,
                                         SOCK_SEQPACKET | SOCK_NONBLOCK,
                                         SOCK_STREAM | SOCK_NONBLOCK));

TEST_P(TlvSocket, CarriesMessagesInOrder) {
    ASSERT_EQ(Send(Sample(1), pair_[0]), 1u);
    ASSERT_EQ(Send(Sample(5000), pair_[0]), 1u);
    EXPECT_EQ(ImageOf(Receive(pair_[1])), ImageOf(Sample(1)));
    EXPECT_EQ(ImageOf(Receive(pair_[1])), ImageOf(Sample(5000)));
}

TEST_P(TlvSocket, CarriesTheEmptyMessage) {
    ASSERT_EQ(Send(New(), pair_[0]), 1u);
    Message msg = Receive(pair_[1]);
    ASSERT_TRUE(msg);
    EXPECT_EQ(TLV_GetFirst(msg.get()), nullptr);
}

TEST_P(TlvSocket, SendsExactlyTheImage) {
    Message msg = Sample();
    const Bytes image = ImageOf(msg);
    ASSERT_EQ(Send(msg, pair_[0]), 1u);
    Bytes received(image.size() + 10);
    const ssize_t got = recv(pair_[1], received.data(), received.size(), 0);
    ASSERT_EQ(static_cast<size_t>(got), image.size());
    received.resize(image.size());
    EXPECT_EQ(received, image);
}

TEST_P(TlvSocket, ResultOfSendingIsNonZeroInItsLow16Bits) {
    SetRoom(pair_[0], 400000);
    // An image of exactly 64 KiB: its length would read as a failure.
    Message msg = New();
    Append(msg, 1, std::string(65536 - 8 - 6, 'x'));
    ASSERT_EQ(TLV_GetMsgLen(msg.get(), 1), 65536u);
    EXPECT_NE(Send(msg, pair_[0]) & 0xFFFF, 0u);
}

TEST_P(TlvSocket, CarriesTwoHundredKilobytes) {
    SetRoom(pair_[0], 600000);
    Message msg = Sample(200 * 1024);
    std::thread sender([&] { EXPECT_EQ(Send(msg, pair_[0]), 1u); });
    Message received = Receive(pair_[1]);
    sender.join();
    ASSERT_TRUE(received);
    EXPECT_EQ(ImageOf(received), ImageOf(msg));
}

TEST_P(TlvSocket, ReceiveEndsAfterItsWait) {
    const auto start = Clock::now();
    EXPECT_FALSE(Receive(pair_[1], 60));
    EXPECT_GE(MillisecondsSince(start), 59);
    EXPECT_LT(MillisecondsSince(start), 5000);
}

TEST_P(TlvSocket, HighHalfOfTheWaitDoesNotCount) {
    const auto start = Clock::now();
    EXPECT_FALSE(Receive(pair_[1], 0xFFFF0020));
    EXPECT_LT(MillisecondsSince(start), 5000);
}

TEST_P(TlvSocket, WaitOfTheProcessCutsLongerOnes) {
    platform_SetWaitLimit(40);
    const auto start = Clock::now();
    EXPECT_FALSE(Receive(pair_[1], 0xFFFFEA60));
    EXPECT_LT(MillisecondsSince(start), 10000);
}

TEST_P(TlvSocket, NoWaitTakesWhatIsThere) {
    EXPECT_FALSE(Receive(pair_[1], 0));
    ASSERT_EQ(Send(Sample(), pair_[0], 0), 1u);
    EXPECT_TRUE(Receive(pair_[1], 0));
}

TEST_P(TlvSocket, ReceiveWaitsForALateMessage) {
    std::thread sender([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(30));
        EXPECT_EQ(Send(Sample(), pair_[0]), 1u);
    });
    Message msg = Receive(pair_[1], 20000);
    sender.join();
    EXPECT_TRUE(msg);
}

TEST_P(TlvSocket, SendEndsAfterItsWaitWhenNobodyReads) {
    SetRoom(pair_[0], 4096);
    bool refused = false;
    for (int i = 0; i < 10000 && !refused; ++i) refused = Send(Sample(3000), pair_[0], 10) == 0;
    EXPECT_TRUE(refused);
}

TEST_P(TlvSocket, SendToAClosedPeerFailsWithoutSignal) {
    pair_.Close(1);
    EXPECT_EQ(Send(Sample(), pair_[0]), 0u);
}

TEST_P(TlvSocket, MalformedBytesGiveNoMessage) {
    Bytes bytes = ImageOf(Sample());
    bytes[0] = 'X';
    ASSERT_GT(send(pair_[0], bytes.data(), bytes.size(), 0), 0);
    EXPECT_FALSE(Receive(pair_[1], 50));
}

TEST_P(TlvSocket, MalformedTlvGivesNoMessage) {
    Bytes bytes = ImageOf(Sample());
    bytes[10] = 0xFF;
    ASSERT_GT(send(pair_[0], bytes.data(), bytes.size(), 0), 0);
    EXPECT_FALSE(Receive(pair_[1], 50));
}

TEST_P(TlvSocket, NumberThatIsCutOffGivesNoMessage) {
    constexpr uint8_t kThreeBytesOfFour[] = {7, 0, 4, 0, 0, 0, 1, 2, 3};
    Bytes bytes = ImageOf(Sample());
    bytes.resize(8);
    bytes[4] = sizeof kThreeBytesOfFour;
    bytes[5] = bytes[6] = bytes[7] = 0;
    bytes.insert(bytes.end(), std::begin(kThreeBytesOfFour), std::end(kThreeBytesOfFour));
    ASSERT_GT(send(pair_[0], bytes.data(), bytes.size(), 0), 0);
    EXPECT_FALSE(Receive(pair_[1], 50));
}

/// Interrupts the thread that made it every millisecond.
class Interruptions {
  public:
    Interruptions() {
        struct sigaction action {};
        action.sa_handler = [](int) {};
        EXPECT_EQ(sigaction(SIGUSR1, &action, &before_), 0);
        thread_ = std::thread([this, target = pthread_self()] {
            while (!done_) {
                pthread_kill(target, SIGUSR1);
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
        });
    }
    ~Interruptions() {
        done_ = true;
        thread_.join();
        sigaction(SIGUSR1, &before_, nullptr);
    }

  private:
    struct sigaction before_;
    std::atomic<bool> done_{false};
    std::thread thread_;
};

TEST_P(TlvSocket, SignalsDoNotEndAReceive) {
    std::thread sender([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(40));
        EXPECT_EQ(Send(Sample(), pair_[0]), 1u);
    });
    Message msg;
    {
        Interruptions interruptions;
        msg = Receive(pair_[1], 20000);
    }
    sender.join();
    EXPECT_TRUE(msg);
}

TEST_P(TlvSocket, SignalsDoNotProlongAReceive) {
    Interruptions interruptions;
    const auto start = Clock::now();
    EXPECT_FALSE(Receive(pair_[1], 60));
    EXPECT_GE(MillisecondsSince(start), 59);
    EXPECT_LT(MillisecondsSince(start), 5000);
}

TEST_P(TlvSocket, SignalsDoNotEndASendThatWaits) {
    SetRoom(pair_[0], 4096);
    int sent = 0;
    while (Send(Sample(1500), pair_[0], 0) == 1u) ++sent;
    if (GetParam() & SOCK_STREAM) return;  // a part of an image may be on its way now
    std::thread reader([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(40));
        for (int i = 0; i < sent; ++i) EXPECT_TRUE(Receive(pair_[1]));
    });
    Interruptions interruptions;
    EXPECT_EQ(Send(Sample(1500), pair_[0], 20000), 1u);
    reader.join();
}

class TlvConnectedSocket : public TlvSocket {};
INSTANTIATE_TEST_SUITE_P(Types, TlvConnectedSocket, testing::Values(SOCK_SEQPACKET, SOCK_STREAM));

TEST_P(TlvConnectedSocket, ClosedPeerIsNoticedAtOnce) {
    pair_.Close(0);
    const auto start = Clock::now();
    EXPECT_FALSE(Receive(pair_[1], 60000));
    EXPECT_LT(MillisecondsSince(start), 10000);
}

TEST_P(TlvConnectedSocket, PeerThatClosesWhileWaitedForIsNoticed) {
    const auto start = Clock::now();
    std::thread closer([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(30));
        shutdown(pair_[0], SHUT_RDWR);
    });
    EXPECT_FALSE(Receive(pair_[1], 60000));
    closer.join();
    EXPECT_LT(MillisecondsSince(start), 10000);
}

TEST_P(TlvConnectedSocket, MessageOfAPeerThatClosedIsStillReceived) {
    ASSERT_EQ(Send(Sample(), pair_[0]), 1u);
    pair_.Close(0);
    EXPECT_TRUE(Receive(pair_[1]));
    EXPECT_FALSE(Receive(pair_[1]));
}

TEST(TlvPacketSocket, PacketOfTheWrongSizeIsTakenAwayAndTheNextOneComes) {
    Pair pair(SOCK_SEQPACKET);
    Bytes bytes = ImageOf(Sample());
    for (size_t size : {size_t{1}, size_t{7}, bytes.size() - 1}) {
        ASSERT_EQ(send(pair[0], bytes.data(), size, 0), static_cast<ssize_t>(size));
        ASSERT_EQ(Send(Sample(), pair[0]), 1u);
        EXPECT_FALSE(Receive(pair[1], 50));
        EXPECT_TRUE(Receive(pair[1], 50));
    }
}

TEST(TlvPacketSocket, ImageAboveTheSocketsSizeIsRefused) {
    Pair pair(SOCK_SEQPACKET);
    SetRoom(pair[0], 4096);
    EXPECT_EQ(Send(Sample(300000), pair[0], 50), 0u);
}

TEST(TlvStreamSocket, ImageInSinglesBytesIsPutTogether) {
    Pair pair(SOCK_STREAM);
    const Bytes image = ImageOf(Sample(40));
    std::thread sender([&] {
        for (uint8_t byte : image) {
            ASSERT_EQ(send(pair[0], &byte, 1, 0), 1);
            std::this_thread::sleep_for(std::chrono::microseconds(200));
        }
    });
    Message msg = Receive(pair[1], 20000);
    sender.join();
    ASSERT_TRUE(msg);
    EXPECT_EQ(ImageOf(msg), image);
}

TEST(TlvStreamSocket, ImagesBackToBackAreKeptApart) {
    Pair pair(SOCK_STREAM);
    Bytes both = ImageOf(Sample(10));
    const Bytes second = ImageOf(Sample(20));
    both.insert(both.end(), second.begin(), second.end());
    ASSERT_EQ(send(pair[0], both.data(), both.size(), 0), static_cast<ssize_t>(both.size()));
    EXPECT_EQ(ImageOf(Receive(pair[1])), ImageOf(Sample(10)));
    EXPECT_EQ(ImageOf(Receive(pair[1])), second);
}

TEST(TlvStreamSocket, HalfAnImageEndsWithTheWait) {
    Pair pair(SOCK_STREAM);
    const Bytes image = ImageOf(Sample());
    for (size_t size : {size_t{3}, size_t{20}}) {
        ASSERT_GT(send(pair[0], image.data(), size, 0), 0);
        const auto start = Clock::now();
        EXPECT_FALSE(Receive(pair[1], 50));
        EXPECT_LT(MillisecondsSince(start), 5000);
        Bytes rest(100);
        (void)recv(pair[1], rest.data(), rest.size(), MSG_DONTWAIT);
    }
}

TEST(TlvStreamSocket, DrippingSenderDoesNotProlongTheWait) {
    Pair pair(SOCK_STREAM);
    const Bytes image = ImageOf(Sample());
    std::atomic<bool> stop{false};
    std::thread sender([&] {
        for (size_t at = 0; at < image.size() && !stop; ++at) {
            (void)send(pair[0], &image[at], 1, MSG_NOSIGNAL);
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        }
    });
    const auto start = Clock::now();
    EXPECT_FALSE(Receive(pair[1], 120));
    EXPECT_LT(MillisecondsSince(start), 4000);
    stop = true;
    sender.join();
}

TEST(TlvStreamSocket, PeerThatClosesInTheMiddleGivesNoMessage) {
    Pair pair(SOCK_STREAM);
    const Bytes image = ImageOf(Sample());
    ASSERT_GT(send(pair[0], image.data(), image.size() - 1, 0), 0);
    pair.Close(0);
    EXPECT_FALSE(Receive(pair[1], 60000));
}

TEST(TlvStreamSocket, FrameAboveSixteenMebibytesIsRefusedUnread) {
    Pair pair(SOCK_STREAM);
    for (uint32_t body : {16u * 1024 * 1024 - 7, 0xFFFFFFFFu, 0xFFFFFFF8u}) {
        Bytes header{'T', 'V', 1, 0, 0, 0, 0, 0};
        std::memcpy(header.data() + 4, &body, 4);
        ASSERT_EQ(send(pair[0], header.data(), 8, 0), 8);
        EXPECT_FALSE(Receive(pair[1], 50));
    }
    EXPECT_EQ(Send(Sample(16 * 1024 * 1024), pair[0], 50), 0u);
}

TEST(TlvStreamSocket, LargestFrameComesThrough) {
    Pair pair(SOCK_STREAM);
    Message msg = New();
    Append(msg, 1, std::string(16 * 1024 * 1024 - 14, 'x'));
    std::thread sender([&] { EXPECT_EQ(Send(msg, pair[0], 30000), 1u); });
    Message received = Receive(pair[1], 30000);
    sender.join();
    ASSERT_TRUE(received);
    EXPECT_EQ(ImageOf(received), ImageOf(msg));
}

TEST(TlvDescriptor, WhatIsNoSocketFails) {
    const int file = open("/dev/null", O_RDWR | O_CLOEXEC);
    EXPECT_EQ(Send(Sample(), file), 0u);
    EXPECT_FALSE(Receive(file));
    close(file);
    EXPECT_EQ(Send(Sample(), file), 0u);
    EXPECT_FALSE(Receive(file));
    EXPECT_EQ(Send(Sample(), -1), 0u);
    EXPECT_FALSE(Receive(-1));
}

}  // namespace
