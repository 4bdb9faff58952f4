// Clients that err, die, or mean no good.
#include <platform/aaa_tlv.h>
#include <platform/lipc.h>
#include <sys/resource.h>

#include <chrono>
#include <cstring>
#include <thread>

#include "daemon_process.h"
#include "raw_client.h"

using namespace daemon_test;

namespace {

using DaemonChannel = DaemonTest;

std::vector<uint8_t> Headed(TLV_MSG* body, uint32_t operation) {
    const Message owned(body);
    const Message headed(AAA_AddOpHead(operation, body));
    return Image(headed.get());
}

TEST_F(DaemonChannel, BytesThatAreNoMessageAreAnswered) {
    RawClient client;
    ASSERT_TRUE(client.Connected());
    client.Send({1, 2, 3, 4, 5, 6, 7, 8, 9});
    EXPECT_EQ(client.Result(), AAAD_ERR_MALFORMED);
}

TEST_F(DaemonChannel, EveryTruncationOfARequestIsAnswered) {
    const std::vector<uint8_t> whole = Headed(DOM_EncodeDomainName("cut"), DOM_OP_SET);
    for (size_t length = 1; length < whole.size(); ++length) {
        RawClient client;
        ASSERT_TRUE(client.Connected());
        client.Send({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)});
        EXPECT_EQ(client.Result(), AAAD_ERR_MALFORMED) << length;
    }
    EXPECT_EQ(CountDomains(), 1u);
}

TEST_F(DaemonChannel, MessageWithoutHeadIsAnswered) {
    const Message body(DOM_EncodeDomainName("headless"));
    RawClient client;
    ASSERT_TRUE(client.Connected());
    client.Send(Image(body.get()));
    EXPECT_EQ(client.Result(), AAAD_ERR_MALFORMED);
}

TEST_F(DaemonChannel, MessageWithoutCodeIsAnswered) {
    TLV_MSG* body = TLV_Create();
    ASSERT_EQ(AAA_AppendStrTlvData(body, DOM_TLV_DOMAIN_NAME, "corp"), 0u);
    EXPECT_EQ(Change(body), AAAD_ERR_MALFORMED);
}

TEST_F(DaemonChannel, HugePacketIsAnswered) {
    TLV_MSG* body = DOM_EncodeDomainName("huge");
    const std::vector<uint8_t> filler(100000, 'x');
    ASSERT_EQ(TLV_Append_Data(body, 999, static_cast<uint32_t>(filler.size()), filler.data()), 0u);
    EXPECT_EQ(Change(body), DOM_OK);  // unknown items are skipped, whatever their size
    EXPECT_TRUE(GetDomain("huge"));
}

TEST_F(DaemonChannel, CodesThatAreNotServedAreAnswered) {
    for (const uint32_t code : {5u, 6u, 174u, 175u, 1000u, 0xFFFFFFFFu}) {
        for (const uint32_t operation : {0u, 1u, 2u, 3u}) {
            EXPECT_EQ(Change(CodeAlone(code), operation), AAAD_ERR_MALFORMED) << code;
        }
    }
}

// The applier takes every operation but 0 for a deletion.
TEST_F(DaemonChannel, UnknownOperationDeletesNothing) {
    ASSERT_EQ(CreateDomain("corp"), DOM_OK);
    for (const uint32_t operation : {3u, 4u, 5u, 6u, 7u, 0x10000u, 0x80000001u, 0xFFFFFFFFu}) {
        EXPECT_EQ(Change(DOM_EncodeDomainName("corp"), operation), AAAD_ERR_MALFORMED);
    }
    ASSERT_EQ(Change(DOM_EncodeState("corp", 0)), DOM_OK);
    for (const uint32_t operation : {2u, 3u, 6u, 0x10001u}) {
        EXPECT_EQ(Change(DOM_EncodeState("corp", 0), operation), AAAD_ERR_MALFORMED);
    }
    ASSERT_TRUE(GetDomain("corp"));
    EXPECT_EQ(GetDomain("corp")->state, 0);
}

TEST_F(DaemonChannel, WholeRecordTakesNoDeletion) {
    Answer record = Ask(DOM_EncodeDomainName("system"), DOM_OP_GET);
    ASSERT_TRUE(record.body);
    EXPECT_EQ(Change(record.body.release(), DOM_OP_DELETE), AAAD_ERR_MALFORMED);
}

TEST_F(DaemonChannel, ReadOfAnUnknownDomainIsRefused) {
    EXPECT_EQ(ResultOf(Ask(DOM_EncodeDomainName("nowhere"), DOM_OP_GET)), AAAD_ERR_NO_OBJECT);
}

TEST_F(DaemonChannel, WalksEndWithTheirStatus) {
    EXPECT_EQ(ResultOf(Ask(DOM_EncodeDomainNameInfo("system"), DOM_OP_GET_NEXT)),
              static_cast<uint32_t>(DOM_WALK_NONE));
    const Answer row = Ask(DOM_EncodeDomainNameAndLen("", 0), DOM_OP_GET_NEXT);
    EXPECT_EQ(row.kind, DOM_REPLY_KIND_DATA);
    const uint32_t end = ResultOf(Ask(DOM_EncodeDomainNameAndLen("system", 6), DOM_OP_GET_NEXT));
    EXPECT_TRUE(end == DOM_WALK_NONE || end == DOM_WALK_NO_MESSAGE) << end;
}

TEST_F(DaemonChannel, ClientsThatDieCostNothing) {
    const std::vector<uint8_t> whole = Headed(DOM_EncodeDomainName("orphan"), DOM_OP_SET);
    for (int i = 0; i < 50; ++i) {
        { RawClient silent; }
        {
            RawClient half;
            half.Send({whole.begin(), whole.begin() + 11});
        }
        {
            RawClient impatient;  // does not wait for its answer
            impatient.Send(whole);
        }
    }
    EXPECT_EQ(CreateDomain("alive"), DOM_OK);
    EXPECT_TRUE(GetDomain("orphan"));
    EXPECT_EQ(CountDomains(), 3u);
}

TEST_F(DaemonChannel, ClientsThatDoNotReadStopNobody) {
    std::vector<RawClient> deaf(100);
    const std::vector<uint8_t> read = Headed(DOM_EncodeDomainName("system"), DOM_OP_GET);
    for (RawClient& client : deaf) client.Send(read);
    EXPECT_EQ(CreateDomain("alive"), DOM_OK);
}

TEST_F(DaemonChannel, SilentConnectionIsDroppedAfterFiveSeconds) {
    RawClient silent;
    ASSERT_TRUE(silent.Connected());
    EXPECT_FALSE(silent.IsClosedWithin(3000));
    EXPECT_EQ(CreateDomain("meanwhile"), DOM_OK);
    EXPECT_TRUE(silent.IsClosedWithin(15000));
}

TEST_F(DaemonChannel, HundredsOfSilentConnectionsStopNobody) {
    std::vector<RawClient> silent;
    for (int i = 0; i < 800; ++i) silent.emplace_back();
    EXPECT_EQ(CreateDomain("alive"), DOM_OK);
}

TEST(DaemonDescriptors, OldestSilentConnectionsGoWhenDescriptorsRunOut) {
    DaemonProcess daemon;
    ASSERT_TRUE(daemon.Start({}, [] {
        const rlimit few{64, 64};
        (void)setrlimit(RLIMIT_NOFILE, &few);
    }));
    std::vector<RawClient> silent;
    for (int i = 0; i < 200; ++i) silent.emplace_back();
    EXPECT_EQ(CreateDomain("alive"), DOM_OK);
    EXPECT_TRUE(silent.front().IsClosedWithin(2000));
    EXPECT_FALSE(silent.back().IsClosedWithin(0));
}

}  // namespace
