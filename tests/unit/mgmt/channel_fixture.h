// A configuration thread that answers as a test tells it, and what must be true after every
// request.
#pragma once

#include <aaadom/channel.h>
#include <aaadom/codes.h>
#include <aaadom/domain.h>
#include <aaadom/domain_codec.h>
#include <aaadom/management.h>
#include <aaadom/results.h>
#include <aaadom/settings_codec.h>
#include <gtest/gtest.h>
#include <platform/aaa_tlv.h>

#include <functional>
#include <string>

#include "base/message.h"
#include "fakes/fake_platform.h"

namespace aaadom {

class ChannelTest : public ::testing::Test {
  protected:
    void SetUp() override {
        fake::Reset();
        live_before_ = fake::LiveMessages();
    }
    void TearDown() override {
        EXPECT_EQ(fake::OpenSockets(), 0);
        EXPECT_EQ(fake::LiveMessages(), live_before_);
        EXPECT_TRUE(fake::Misuses().empty());
    }

    /// Every request is answered with a reply of this kind around the body.
    static void Answer(uint16_t kind, std::function<TLV_MSG*()> body) {
        fake::SetServer([=](TLV_MSG*) { return fake::MakeReply(kind, body()); });
    }
    static void AnswerResult(uint32_t result) {
        Answer(DOM_REPLY_KIND_RESULT, [=] { return ResultBody(result); });
    }
    static void AnswerData(std::function<TLV_MSG*()> body) { Answer(DOM_REPLY_KIND_DATA, body); }
    static void NeverAnswer() {
        fake::SetServer([](TLV_MSG*) -> TLV_MSG* { return nullptr; });
        fake::ReceiveTimesOut(true);
    }
    static TLV_MSG* ResultBody(uint32_t result) {
        TLV_MSG* body = TLV_Create();
        AAA_AppendUINTTlvData(body, DOM_TLV_RESULT, result);
        return body;
    }

    /// What was sent last, without its operation head.
    struct Sent {
        uint32_t op = 0xFFFFFFFFu;
        uint32_t code = 0xFFFFFFFFu;
        std::string image;
    };
    static Sent LastSent() {
        Sent sent;
        const auto calls = fake::FlushCalls();
        if (calls.empty()) return sent;
        const TlvPtr whole(fake::Parse(calls.back().image));
        const TlvPtr body(AAA_DelOpHead(whole.get(), &sent.op));
        if (!body) return sent;
        sent.code = FindTlv(body.get(), DOM_TLV_MSG_CODE).U32();
        sent.image = fake::ImageOf(body.get());
        return sent;
    }

  private:
    int64_t live_before_ = 0;
};

}  // namespace aaadom
