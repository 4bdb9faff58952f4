#include <cerrno>
#include <thread>
#include <vector>

#include "unit/mgmt/channel_fixture.h"

namespace aaadom {
namespace {

TlvPtr Request() {
    return TlvPtr(DOM_EncodeDomainName("alpha"));
}

TEST_F(ChannelTest, SocketIsThePlatformsLocalDatagramFamily) {
    AnswerResult(0);
    const TlvPtr reply(DOM_lipc_SendCfgMsg(Request().get(), 0, nullptr));
    const auto calls = fake::SocketCalls();
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].family, 37);
    EXPECT_EQ(calls[0].type, 2);
    EXPECT_EQ(calls[0].protocol, 1);
}

TEST_F(ChannelTest, AddressIsTheConfigurationServiceOfTheDaemon) {
    AnswerResult(0);
    const TlvPtr reply(DOM_lipc_SendCfgMsg(Request().get(), 0, nullptr));
    const auto calls = fake::ConnectCalls();
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].length, 16u);
    const std::array<uint8_t, 16> expected{16, 37, 0x0C, 0x66, 0x80, 0x00};
    EXPECT_EQ(calls[0].address, expected);
}

TEST_F(ChannelTest, WaitsAreSixtySecondsInTheLowHalf) {
    AnswerResult(0);
    const TlvPtr reply(DOM_lipc_SendCfgMsg(Request().get(), 0, nullptr));
    ASSERT_EQ(fake::FlushCalls().size(), 1u);
    EXPECT_EQ(fake::FlushCalls()[0].wait, 0xFFFFEA60u);
    ASSERT_EQ(fake::ReceiveWaits().size(), 1u);
    EXPECT_EQ(fake::ReceiveWaits()[0], 0xFFFFEA60u);
}

TEST_F(ChannelTest, RequestGoesOutOnTheConnectedSocket) {
    AnswerResult(0);
    const TlvPtr reply(DOM_lipc_SendCfgMsg(Request().get(), 0, nullptr));
    ASSERT_EQ(fake::ConnectCalls().size(), 1u);
    ASSERT_EQ(fake::FlushCalls().size(), 1u);
    EXPECT_EQ(fake::FlushCalls()[0].fd, fake::ConnectCalls()[0].fd);
}

TEST_F(ChannelTest, RequestIsWrappedOnceTheSocketIsConnected) {
    AnswerResult(0);
    const TlvPtr request = Request();
    const uint64_t before = fake::Count(fake::Event::kMessage);
    fake::ConnectErrors({ECONNREFUSED});
    EXPECT_EQ(DOM_lipc_SendCfgMsg(request.get(), 0, nullptr), nullptr);
    EXPECT_EQ(fake::Count(fake::Event::kMessage), before);
}

TEST_F(ChannelTest, RequestTravelsBehindItsOperation) {
    AnswerResult(0);
    const TlvPtr request = Request();
    const std::string before = fake::ImageOf(request.get());
    const TlvPtr reply(DOM_lipc_SendCfgMsg(request.get(), 77, nullptr));
    EXPECT_EQ(LastSent().op, 77u);
    EXPECT_EQ(LastSent().image, before);
    EXPECT_EQ(fake::ImageOf(request.get()), before) << "the request stays the caller's";
}

TEST_F(ChannelTest, ReturnsTheNestedMessageAndItsKind) {
    AnswerData([] { return DOM_EncodeDomainCount(9); });
    uint16_t kind = 0;
    const TlvPtr reply(DOM_lipc_SendCfgMsg(Request().get(), 2, &kind));
    ASSERT_TRUE(reply);
    EXPECT_EQ(kind, DOM_REPLY_KIND_DATA);
    uint32_t count = 0;
    EXPECT_EQ(DOM_DecodeDomainCount(reply.get(), &count), DOM_OK);
    EXPECT_EQ(count, 9u);
}

TEST_F(ChannelTest, OnlyTheFirstTlvOfTheReplyCounts) {
    fake::SetServer([](TLV_MSG*) {
        TLV_MSG* reply = fake::MakeReply(7, ResultBody(5));
        const TlvPtr second(ResultBody(6));
        AAA_AppendSubTlv(reply, 4, second.get());
        return reply;
    });
    uint16_t kind = 0;
    const TlvPtr reply(DOM_lipc_SendCfgMsg(Request().get(), 2, &kind));
    EXPECT_EQ(kind, 7);
    uint32_t result = 0;
    DOM_lipc_ReplyMsgProc(reply.get(), &result);
    EXPECT_EQ(result, 5u);
}

TEST_F(ChannelTest, NullRequestGivesNull) {
    AnswerResult(0);
    EXPECT_EQ(DOM_lipc_SendCfgMsg(nullptr, 0, nullptr), nullptr);
    EXPECT_TRUE(fake::FlushCalls().empty());
}

TEST_F(ChannelTest, NoSocketGivesNull) {
    AnswerResult(0);
    fake::FailSocket();
    EXPECT_EQ(DOM_lipc_SendCfgMsg(Request().get(), 0, nullptr), nullptr);
    EXPECT_TRUE(fake::ConnectCalls().empty());
}

TEST_F(ChannelTest, NobodyAtTheEndpointGivesNull) {
    EXPECT_EQ(DOM_lipc_SendCfgMsg(Request().get(), 0, nullptr), nullptr);
    EXPECT_EQ(fake::ConnectCalls().size(), 1u);
}

TEST_F(ChannelTest, InterruptedConnectIsRepeated) {
    AnswerResult(0);
    fake::ConnectErrors({EINTR, EINTR, 0});
    const TlvPtr reply(DOM_lipc_SendCfgMsg(Request().get(), 0, nullptr));
    EXPECT_TRUE(reply);
    EXPECT_EQ(fake::ConnectCalls().size(), 3u);
}

TEST_F(ChannelTest, AlreadyConnectedCountsAsConnected) {
    AnswerResult(0);
    fake::ConnectErrors({EINTR, EISCONN});
    const TlvPtr reply(DOM_lipc_SendCfgMsg(Request().get(), 0, nullptr));
    EXPECT_TRUE(reply);
    EXPECT_EQ(fake::ConnectCalls().size(), 2u);
}

TEST_F(ChannelTest, OtherConnectErrorsAreNotRepeated) {
    for (int error : {ECONNREFUSED, EACCES, EAGAIN, ENOENT, ETIMEDOUT}) {
        AnswerResult(0);
        fake::ConnectErrors({error});
        const size_t before = fake::ConnectCalls().size();
        EXPECT_EQ(DOM_lipc_SendCfgMsg(Request().get(), 0, nullptr), nullptr) << error;
        EXPECT_EQ(fake::ConnectCalls().size(), before + 1);
        EXPECT_EQ(fake::OpenSockets(), 0) << error;
    }
}

TEST_F(ChannelTest, FailedSendGivesNull) {
    AnswerResult(0);
    fake::SetFlushResult(0);
    EXPECT_EQ(DOM_lipc_SendCfgMsg(Request().get(), 0, nullptr), nullptr);
    EXPECT_TRUE(fake::ReceiveWaits().empty());
}

TEST_F(ChannelTest, OnlyTheLowHalfOfTheSendResultCounts) {
    AnswerResult(0);
    fake::SetFlushResult(0xABCD0000u);
    EXPECT_EQ(DOM_lipc_SendCfgMsg(Request().get(), 0, nullptr), nullptr);
    fake::SetFlushResult(0x00008000u);
    EXPECT_TRUE(TlvPtr(DOM_lipc_SendCfgMsg(Request().get(), 0, nullptr)));
}

TEST_F(ChannelTest, NoReplyGivesNull) {
    NeverAnswer();
    uint16_t kind = 99;
    EXPECT_EQ(DOM_lipc_SendCfgMsg(Request().get(), 0, &kind), nullptr);
    EXPECT_EQ(kind, 99);
}

TEST_F(ChannelTest, EmptyReplyGivesNull) {
    fake::SetServer([](TLV_MSG*) { return TLV_Create(); });
    uint16_t kind = 99;
    EXPECT_EQ(DOM_lipc_SendCfgMsg(Request().get(), 0, &kind), nullptr);
    EXPECT_EQ(kind, 99);
}

TEST_F(ChannelTest, ReplyWhoseFirstTlvIsNoMessageGivesNullButItsKind) {
    fake::SetServer([](TLV_MSG*) {
        TLV_MSG* reply = TLV_Create();
        AAA_AppendUINTTlvData(reply, 21, 3);
        return reply;
    });
    uint16_t kind = 0;
    EXPECT_EQ(DOM_lipc_SendCfgMsg(Request().get(), 0, &kind), nullptr);
    EXPECT_EQ(kind, 21);
}

TEST_F(ChannelTest, EverySingleFailureClosesTheSocketAndGivesNull) {
    AnswerResult(0);
    const TlvPtr request = Request();
    int failures = 0;
    for (int n = 1;; ++n) {
        fake::FailAny(n);
        const TlvPtr reply(DOM_lipc_SendCfgMsg(request.get(), 0, nullptr));
        const bool tripped = fake::Tripped();
        fake::DisarmFailures();
        EXPECT_EQ(fake::OpenSockets(), 0) << n;
        if (!tripped) {
            EXPECT_TRUE(reply);
            break;
        }
        EXPECT_FALSE(reply) << n;
        ++failures;
    }
    EXPECT_GE(failures, 4);
}

TEST_F(ChannelTest, ConcurrentRequestsShareNoSocket) {
    AnswerResult(0);
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([] {
            for (int j = 0; j < 20; ++j) {
                uint32_t result = 9;
                EXPECT_EQ(DOM_lipc_CfgMsgProc(Request().get(), 0, &result), DOM_OK);
                EXPECT_EQ(result, 0u);
            }
        });
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(fake::SocketCalls().size(), 80u);
}

TEST_F(ChannelTest, ResultIsReadFromTheFirstResultTlv) {
    TLV_MSG* body = ResultBody(5);
    AAA_AppendUINTTlvData(body, DOM_TLV_RESULT, 6);
    const TlvPtr reply(body);
    uint32_t result = 99;
    EXPECT_EQ(DOM_lipc_ReplyMsgProc(reply.get(), &result), DOM_OK);
    EXPECT_EQ(result, 5u);
}

TEST_F(ChannelTest, MissingResultReadsAsOne) {
    const TlvPtr reply(TLV_Create());
    uint32_t result = 0;
    EXPECT_EQ(DOM_lipc_ReplyMsgProc(reply.get(), &result), DOM_OK);
    EXPECT_EQ(result, 1u);
    result = 0;
    EXPECT_EQ(DOM_lipc_ReplyMsgProc(nullptr, &result), DOM_OK);
    EXPECT_EQ(result, 1u);
}

TEST_F(ChannelTest, NullResultPointerIsIgnored) {
    const TlvPtr reply(ResultBody(5));
    EXPECT_EQ(DOM_lipc_ReplyMsgProc(reply.get(), nullptr), DOM_OK);
}

TEST_F(ChannelTest, RequestForAResultReportsTheChannelOnly) {
    AnswerResult(0x40010001u);
    uint32_t result = 99;
    EXPECT_EQ(DOM_lipc_CfgMsgProc(Request().get(), 0, &result), DOM_OK);
    EXPECT_EQ(result, 0x40010001u);
    EXPECT_EQ(DOM_lipc_CfgMsgProc(Request().get(), 0, nullptr), DOM_OK);
}

TEST_F(ChannelTest, ChannelFailureLeavesTheResultUntouched) {
    uint32_t result = 99;
    EXPECT_EQ(DOM_lipc_CfgMsgProc(Request().get(), 0, &result), DOM_ERR_FAILED);
    EXPECT_EQ(result, 99u);
}

}  // namespace
}  // namespace aaadom
