#include <functional>

#include "unit/policy/ita_data_fixture.h"

namespace aaadom {
namespace {

const MethodEntry* SampleMethods() {
    static const ItaPolicy sample = golden::SamplePolicy();
    return sample.acct_scheme;
}

struct Setter {
    uint32_t code;
    std::function<uint32_t(uint32_t operation, const char* name)> call;
    std::function<TLV_MSG*()> message;
};

const Setter kSetters[] = {
    {23, DOM_ita_mor_SetPolicy, [] { return DOM_ita_tlv_EncodePolicyName("gold"); }},
    {24,
     [](uint32_t operation, const char* name) {
         return DOM_ita_mor_SetAcctScheme(operation, name, SampleMethods());
     },
     [] { return DOM_ita_tlv_EncodeAcctScheme("gold", SampleMethods()); }},
    {25, DOM_ita_mor_SetAcctTogether, [] { return DOM_ita_tlv_EncodeAcctTogether("gold"); }},
    {26,
     [](uint32_t operation, const char* name) {
         return DOM_ita_mor_SetTrafLevel(operation, name, 1, 2, 3, 4, 5, 6, 7);
     },
     [] { return DOM_ita_tlv_EncodeAcctLevel("gold", 1, 2, 3, 4, 5, 6, 7); }},
    {27, DOM_ita_mor_SetTrafSeprate, [] { return DOM_ita_tlv_EncodeTrafSeprate("gold"); }},
    {28,
     [](uint32_t operation, const char* name) {
         return DOM_ita_mor_SetAcctTrafQuotaOut(operation, name, 9);
     },
     [] { return DOM_ita_tlv_EncodeTrafQuotaOut("gold", 9); }},
};

class ItaManagement : public ItaDataTest {
  protected:
    static void AnswerResult(uint32_t result) {
        fake::SetServer([=](TLV_MSG*) {
            TLV_MSG* body = TLV_Create();
            AAA_AppendUINTTlvData(body, DOM_TLV_RESULT, result);
            return fake::MakeReply(DOM_REPLY_KIND_RESULT, body);
        });
    }
    void TearDown() override {
        EXPECT_EQ(fake::OpenSockets(), 0);
        ItaDataTest::TearDown();
    }
};

TEST_F(ItaManagement, EachSendsItsMessage) {
    AnswerResult(0);
    for (const Setter& setter : kSetters) {
        EXPECT_EQ(setter.call(1, "gold"), DOM_OK);
        const TlvPtr whole(fake::Parse(fake::FlushCalls().back().image));
        const TlvPtr body(AAA_DelOpHead(whole.get(), nullptr));
        const TlvPtr want(setter.message());
        EXPECT_EQ(fake::ImageOf(body.get()), fake::ImageOf(want.get()));
        EXPECT_EQ(FindTlv(body.get(), 0).U32(), setter.code);
    }
}

// Non-zero means add or set to the caller; daemons turn it for these codes.
TEST_F(ItaManagement, TheOperationGoesOutReducedToZeroOrOne) {
    AnswerResult(0);
    for (const Setter& setter : kSetters) {
        for (const uint32_t operation : {0u, 1u, 2u, 0x80000000u}) {
            EXPECT_EQ(setter.call(operation, "gold"), DOM_OK);
            const TlvPtr whole(fake::Parse(fake::FlushCalls().back().image));
            uint32_t sent = 99;
            const TlvPtr body(AAA_DelOpHead(whole.get(), &sent));
            EXPECT_EQ(sent, operation == 0 ? 0u : 1u) << setter.code;
        }
    }
}

// Front ends ask whether the daemon is there; what it said they read elsewhere.
TEST_F(ItaManagement, ARefusalByTheDaemonIsAReply) {
    AnswerResult(DOM_ERR_NOT_FOUND);
    for (const Setter& setter : kSetters) EXPECT_EQ(setter.call(1, "gold"), DOM_OK);
}

TEST_F(ItaManagement, NoReplyIsAFailure) {
    for (const Setter& setter : kSetters) EXPECT_EQ(setter.call(1, "gold"), DOM_ERR_FAILED);
}

TEST_F(ItaManagement, WhatCannotBeEncodedIsNotSent) {
    AnswerResult(0);
    for (const Setter& setter : kSetters) {
        EXPECT_EQ(setter.call(1, nullptr), DOM_ERR_FAILED);
        fake::FailAppend(1);
        EXPECT_EQ(setter.call(1, "gold"), DOM_ERR_FAILED);
        fake::DisarmFailures();
    }
    EXPECT_EQ(DOM_ita_mor_SetAcctScheme(1, "gold", nullptr), DOM_ERR_FAILED);
    EXPECT_TRUE(fake::FlushCalls().empty());
}

}  // namespace
}  // namespace aaadom
