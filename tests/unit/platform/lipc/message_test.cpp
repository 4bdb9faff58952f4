// Whole messages over the transport, the way a front end and the daemon exchange them.
#include <platform/aaa_tlv.h>

#include <chrono>
#include <string>
#include <thread>

#include "unit/platform/lipc/runtime_dir.h"

namespace {

constexpr uint32_t kWait = 0xFFFFEA60;  // a minute

class LipcMessages : public LipcTest {
  protected:
    void SetUp() override {
        LipcTest::SetUp();
        server_ = Serve();
        client_ = Socket();
        ASSERT_EQ(0, Connect(client_));
        accepted_ = LIPC_ServerAccept(server_, nullptr);
        ASSERT_GE(accepted_, 0);
    }
    void TearDown() override {
        LIPC_Close(accepted_);
        LIPC_Close(client_);
        LIPC_ServerClose(server_);
        LipcTest::TearDown();
    }
    static uint32_t Send(int32_t fd, TLV_MSG* msg) {
        const uint32_t sent =
            TLV_Flush(msg, TLV_FORM_DESCRIPTOR, kWait, static_cast<uintptr_t>(fd));
        TLV_Destroy(msg);
        return sent & 0xFFFF;
    }
    static TLV_MSG* Receive(int32_t fd) {
        return TLV_CreateReceiveMsg(TLV_FORM_DESCRIPTOR, static_cast<uintptr_t>(fd), kWait);
    }
    static TLV_MSG* Text(const std::string& text) {
        TLV_MSG* msg = TLV_Create();
        EXPECT_EQ(0u, AAA_AppendStrTlvData(msg, 1, text.c_str()));
        return msg;
    }
    template <typename Call>
    static std::chrono::milliseconds Time(Call&& call) {
        const auto start = std::chrono::steady_clock::now();
        call();
        return std::chrono::duration_cast<std::chrono::milliseconds>(
            std::chrono::steady_clock::now() - start);
    }

    int32_t server_ = -1, client_ = -1, accepted_ = -1;
};

TEST_F(LipcMessages, RequestAndReplyPassWhole) {
    TLV_MSG* body = Text("campus");
    EXPECT_NE(0u, Send(client_, AAA_AddOpHead(2, body)));
    TLV_MSG* request = Receive(accepted_);
    uint32_t opcode = 0;
    TLV_MSG* received = AAA_DelOpHead(request, &opcode);
    EXPECT_EQ(2u, opcode);
    char name[16] = "";
    EXPECT_EQ(0u, AAA_GetStrTlvValue(received, TLV_GetFirst(received), sizeof name, name));
    EXPECT_STREQ("campus", name);
    EXPECT_NE(0u, Send(accepted_, received));
    TLV_MSG* reply = Receive(client_);
    EXPECT_EQ(TLV_GetMsgLen(body, 2), TLV_GetMsgLen(reply, 2));
    for (TLV_MSG* msg : {body, request, reply}) TLV_Destroy(msg);
}

TEST_F(LipcMessages, AMessageOf200KibPasses) {
    EXPECT_NE(0u, Send(client_, Text(std::string(200 * 1024, 'm'))));
    TLV_MSG* received = Receive(accepted_);
    ASSERT_NE(nullptr, received);
    EXPECT_EQ(200u * 1024 + 1, TLV_GetLenByIterator(received, TLV_GetFirst(received)));
    TLV_Destroy(received);
}

TEST_F(LipcMessages, ADeadServerEndsTheReceiveAtOnce) {
    EXPECT_NE(0u, Send(client_, Text("request")));
    LIPC_Close(accepted_);
    accepted_ = -1;
    TLV_MSG* reply = nullptr;
    EXPECT_LT(Time([&] { reply = Receive(client_); }), std::chrono::seconds(20));
    EXPECT_EQ(nullptr, reply);
}

TEST_F(LipcMessages, AServerThatDiesWhileTheClientWaitsEndsTheReceive) {
    std::thread daemon([this] {
        std::this_thread::sleep_for(std::chrono::milliseconds(30));
        LIPC_Close(accepted_);
        accepted_ = -1;
    });
    TLV_MSG* reply = nullptr;
    EXPECT_LT(Time([&] { reply = Receive(client_); }), std::chrono::seconds(20));
    EXPECT_EQ(nullptr, reply);
    daemon.join();
}

TEST_F(LipcMessages, TheWaitLimitCutsTheReceive) {
    LIPC_SetWaitLimit(40);
    TLV_MSG* reply = nullptr;
    const auto waited = Time([&] { reply = Receive(client_); });
    EXPECT_EQ(nullptr, reply);
    EXPECT_GE(waited, std::chrono::milliseconds(30));
    EXPECT_LT(waited, std::chrono::seconds(20));
}

}  // namespace
