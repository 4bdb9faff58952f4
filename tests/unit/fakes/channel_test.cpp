#include <gtest/gtest.h>
#include <platform/aaa_tlv.h>

#include <cerrno>
#include <thread>

#include "fakes/fake_platform.h"

namespace {

class FakeChannel : public ::testing::Test {
  protected:
    void SetUp() override {
        fake::Reset();
        live_ = fake::LiveMessages();
    }
    void TearDown() override {
        EXPECT_EQ(live_, fake::LiveMessages());
        fake::Reset();
    }
    static int32_t Connected() {
        const int32_t fd = LIPC_Socket(37, 2, 1);
        EXPECT_EQ(0, LIPC_Connect(fd, &kAddress, sizeof kAddress));
        return fd;
    }
    static uint32_t Send(int32_t fd, uint32_t value) {
        TLV_MSG* msg = TLV_Create();
        EXPECT_EQ(0u, AAA_AppendUINTTlvData(msg, 0, value));
        const uint32_t result = TLV_Flush(msg, 1, 0xFFFFEA60, static_cast<uintptr_t>(fd));
        TLV_Destroy(msg);
        return result;
    }
    static TLV_MSG* Receive(int32_t fd, uint32_t wait = 0xFFFFEA60) {
        return TLV_CreateReceiveMsg(1, static_cast<uintptr_t>(fd), wait);
    }
    static constexpr LIPC_ADDRESS kAddress{16, 37, 0x660C, 0x0080, {}};
    int64_t live_ = 0;
};

TEST_F(FakeChannel, TheServerAnswersWhatIsFlushed) {
    fake::SetServer([](TLV_MSG* request) {
        TLV_MSG* body = TLV_Create();
        AAA_AppendUINTTlvData(body, 16, AAA_GetUINTTlvValue(request, TLV_GetFirst(request)) + 1);
        return fake::MakeReply(4, body);
    });
    const int32_t fd = Connected();
    EXPECT_EQ(1u, Send(fd, 41));
    TLV_MSG* reply = Receive(fd);
    ASSERT_NE(nullptr, reply);
    EXPECT_EQ(4, TLV_GetTypeByIterator(reply, TLV_GetFirst(reply)));
    TLV_MSG* body = AAA_GetSubTlv(reply, TLV_GetFirst(reply));
    EXPECT_EQ(42u, AAA_GetUINTTlvValue(body, TLV_GetIteratorByType(body, 16)));
    TLV_Destroy(body);
    TLV_Destroy(reply);
    EXPECT_EQ(1, fake::OpenSockets());
    LIPC_Close(fd);
    EXPECT_EQ(0, fake::OpenSockets());
}

TEST_F(FakeChannel, ArgumentsOfTheSeamAreRecorded) {
    fake::SetServer([](TLV_MSG*) -> TLV_MSG* { return nullptr; });
    const int32_t fd = Connected();
    EXPECT_EQ(37, fake::SocketCalls().at(0).family);
    const auto address = fake::ConnectCalls().at(0).address;
    const std::array<uint8_t, 16> expected{16, 37, 0x0C, 0x66, 0x80};
    EXPECT_EQ(expected, address);
    EXPECT_EQ(1u, Send(fd, 1));
    EXPECT_EQ(0xFFFFEA60u, fake::FlushCalls().at(0).wait);
    EXPECT_EQ(nullptr, Receive(fd));
    EXPECT_EQ(0xFFFFEA60u, fake::ReceiveWaits().at(0));
    LIPC_Close(fd);
}

TEST_F(FakeChannel, ConnectFailsAsTold) {
    const int32_t fd = LIPC_Socket(37, 2, 1);
    EXPECT_EQ(-1, LIPC_Connect(fd, &kAddress, 16));
    EXPECT_EQ(ECONNREFUSED, errno);
    fake::SetServer([](TLV_MSG*) { return fake::MakeReply(4, nullptr); });
    fake::ConnectErrors({EINTR, EISCONN});
    EXPECT_EQ(-1, LIPC_Connect(fd, &kAddress, 16));
    EXPECT_EQ(EINTR, errno);
    EXPECT_EQ(-1, LIPC_Connect(fd, &kAddress, 16));
    EXPECT_EQ(EISCONN, errno);
    EXPECT_EQ(1u, Send(fd, 1));
    fake::ReceiveTimesOut(true);
    EXPECT_EQ(nullptr, Receive(fd));
    fake::ReceiveTimesOut(false);
    TLV_MSG* reply = Receive(fd);
    EXPECT_NE(nullptr, reply);
    TLV_Destroy(reply);
    LIPC_Close(fd);
}

TEST_F(FakeChannel, NothingFailsInsideTheServerFunction) {
    fake::SetServer([](TLV_MSG*) {
        TLV_MSG* body = TLV_Create();
        EXPECT_EQ(0u, AAA_AppendUINTTlvData(body, 16, 0));
        return fake::MakeReply(4, body);
    });
    const int32_t fd = Connected();
    TLV_MSG* msg = TLV_Create();
    fake::FailAppend(1);
    EXPECT_EQ(1u, TLV_Flush(msg, 1, 1000, static_cast<uintptr_t>(fd)));
    EXPECT_FALSE(fake::Tripped());
    TLV_Destroy(msg);
    LIPC_Close(fd);
}

TEST_F(FakeChannel, ServerSideSocketsCarryRequestAndReply) {
    const int32_t server = LIPC_ServerOpen(0x660C, 0x0080, 0666);
    const int32_t client = Connected();
    std::thread daemon([&] {
        LIPC_PEER peer;
        const int32_t fd = LIPC_ServerAccept(server, &peer);
        TLV_MSG* request = Receive(fd, 5000);
        EXPECT_NE(0u, TLV_Flush(request, 1, 1000, static_cast<uintptr_t>(fd)));
        TLV_Destroy(request);
        LIPC_Close(fd);
    });
    EXPECT_EQ(1u, Send(client, 5));
    TLV_MSG* reply = Receive(client, 5000);
    daemon.join();
    EXPECT_NE(nullptr, reply);
    EXPECT_EQ(nullptr, Receive(client, 5000)) << "the other end is closed";
    TLV_Destroy(reply);
    LIPC_Close(client);
    LIPC_ServerClose(server);
    EXPECT_EQ(0, fake::OpenSockets());
}

TEST_F(FakeChannel, ClosingTwiceIsNoticed) {
    const int32_t fd = LIPC_Socket(37, 2, 1);
    LIPC_Close(fd);
    EXPECT_TRUE(fake::Misuses().empty());
    LIPC_Close(fd);
    EXPECT_EQ(1u, fake::Misuses().size());
}

TEST_F(FakeChannel, AFlushToAnyNumberIsRecorded) {
    EXPECT_EQ(1u, Send(7, 1));
    EXPECT_EQ(7, fake::FlushCalls().at(0).fd);
    EXPECT_EQ(0u, Send(-1, 1));
}

}  // namespace
