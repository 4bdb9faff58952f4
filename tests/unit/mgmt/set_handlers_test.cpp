#include <cstring>

#include "unit/mgmt/channel_fixture.h"

namespace aaadom {
namespace {

constexpr uint32_t kPreset = 0xDEADBEEFu;
constexpr uint32_t kCallersOp = 0x51u;
constexpr uint32_t kRefusal = 13;

enum class Kind { kJudged, kReported, kResultOnly, kBlind };

struct SetHandler {
    const char* title;
    Kind kind;
    uint32_t code;
    uint32_t op;
    /// Returns what the handler returned; `result` is null for handlers without a result.
    uint32_t (*call)(uint32_t* result);
    /// The request that must go out.
    TLV_MSG* (*request)();
    uint32_t if_unencoded = DOM_ERR_FAILED;
};

const MethodList kList = [] {
    MethodList list{};
    list.aaa_type = AAA_TYPE_5;
    list.service = 3;
    list.methods[0].method_kind = METHOD_SCHEME_1;
    strcpy(list.methods[0].scheme_name, "radius");
    return list;
}();
const MethodEntry kExtra{METHOD_SCHEME_2, "extra", {}, 0};
const AuthorAttr kAttributes = [] {
    AuthorAttr attributes;
    DOM_InitAuthorAttr(&attributes);
    attributes.kind23_word = 77;
    return attributes;
}();

const SetHandler kSetHandlers[] = {
    {"SetDomainName", Kind::kJudged, 3, kCallersOp,
     [](uint32_t* result) { return MOR_SetDomainName("alpha", kCallersOp, result); },
     [] { return DOM_EncodeDomainName("alpha"); }, MOR_ERR_ENCODE},
    {"SetUnknownDomain", Kind::kJudged, 18, kCallersOp,
     [](uint32_t* result) { return MOR_SetUnknownDomain("alpha", kCallersOp, result); },
     [] { return DOM_EncodeUnknownDomain("alpha"); }, MOR_ERR_ENCODE},
    {"SetSchemeTable", Kind::kReported, 15, kCallersOp,
     [](uint32_t* result) {
         return MOR_SetSchemeTable(3, "alpha", 4, 5, 6, 1, "radius", kCallersOp, result);
     },
     [] { return DOM_EncodeDomainSchemeFlag(3, "alpha", 4, 5, 6, 1, "radius"); }},
    {"CreateDomainInfoTable", Kind::kReported, 14, DOM_OP_SET,
     [](uint32_t* result) { return MOR_CreateDomainInfoTable("alpha", 1, 4, result); },
     [] { return DOM_EncodeDomainInfo("alpha", 1, 4); }},
    {"DestroyDomainName", Kind::kReported, 3, DOM_OP_DELETE,
     [](uint32_t* result) { return MOR_DestroyDomainName("alpha", result); },
     [] { return DOM_EncodeDomainName("alpha"); }},
    {"SetDomainInfoTable", Kind::kReported, 14, DOM_OP_SET,
     [](uint32_t* result) { return MOR_SetDomainInfoTable(1, "alpha", 2, 1, result); },
     [] { return DOM_EncodeDomainInfoFlag(1, "alpha", 2, 1); }},
    {"SetDefaultDomain", Kind::kResultOnly, 1, kCallersOp,
     [](uint32_t* result) { return MOR_SetDefaultDomain("alpha", 18, kCallersOp, result); },
     [] { return DOM_EncodeDefaultDomain("alpha", 18); }},
    {"SetSessionLimit", Kind::kResultOnly, 8, DOM_OP_SET,
     [](uint32_t* result) { return MOR_SetSessionLimit(21, 100, result); },
     [] { return DOM_EncodeSessionLimit(21, 100); }},
    {"SetDeviceID", Kind::kResultOnly, 20, DOM_OP_SET,
     [](uint32_t* result) { return MOR_SetDeviceID(7, result); },
     [] { return DOM_EncodeDeviceID(7); }},
    {"SetAuthFailDomain", Kind::kResultOnly, 132, DOM_OP_SET,
     [](uint32_t* result) { return MOR_SetAuthFailDomain("alpha", "fail", 18, 3, result); },
     [] { return DOM_EncodeAuthFailDomain("alpha", "fail", 18, 3); }},
    {"SetState", Kind::kBlind, 7, DOM_OP_SET, [](uint32_t*) { return MOR_SetState("alpha", 2); },
     [] { return DOM_EncodeState("alpha", 2); }},
    {"SetSessionTime", Kind::kBlind, 19, DOM_OP_SET,
     [](uint32_t*) { return MOR_SetSessionTime("alpha", 30); },
     [] { return DOM_EncodeSessionTime("alpha", 30); }},
    {"SetMethodList", Kind::kBlind, 4, kCallersOp,
     [](uint32_t*) { return MOR_SetMethodList("alpha", &kList, &kExtra, kCallersOp); },
     [] { return DOM_EncodeMethList("alpha", &kList, &kExtra); }},
    {"SetAuthorAttr", Kind::kBlind, 11, kCallersOp,
     [](uint32_t*) { return MOR_SetAuthorAttr(23, "alpha", &kAttributes, kCallersOp); },
     [] { return DOM_EncodeAuthorAttr(23, "alpha", &kAttributes); }},
    {"SetRedirectMoveTemporarily", Kind::kBlind, 130, kCallersOp,
     [](uint32_t*) { return MOR_SetRedirectMoveTemporarily("alpha", kCallersOp); },
     [] { return DOM_EncodeRedirectMoveTemporarily("alpha"); }},
    {"SetUserAddrType", Kind::kBlind, 21, DOM_OP_SET,
     [](uint32_t*) { return MOR_SetUserAddrType("alpha", 3); },
     [] { return DOM_EncodeUserAddrType("alpha", 3); }},
    {"SetAcctDualStackMode", Kind::kBlind, 30, DOM_OP_SET,
     [](uint32_t*) { return MOR_SetAcctDualStackMode("alpha", 2); },
     [] { return DOM_EncodeAcctDualStackMode("alpha", 2); }},
    {"SetAAADebugFlag", Kind::kBlind, 145, kCallersOp,
     [](uint32_t*) { return MOR_SetAAADebugFlag(3, kCallersOp); },
     [] { return DOM_EncodeDebugFlag(3); }},
};

void PrintTo(const SetHandler& handler, std::ostream* out) {
    *out << handler.title;
}

class SetHandlerTest : public ChannelTest, public ::testing::WithParamInterface<SetHandler> {
  protected:
    static constexpr uint32_t Expect(Kind kind, uint32_t judged, uint32_t reported) {
        if (kind == Kind::kJudged) return judged;
        return kind == Kind::kReported ? reported : DOM_OK;
    }
    static uint32_t ExpectResult(uint32_t answered) {
        return GetParam().kind == Kind::kBlind ? kPreset : answered;
    }
};

TEST_P(SetHandlerTest, SendsItsRequestWithItsOperation) {
    AnswerResult(0);
    uint32_t result = kPreset;
    GetParam().call(&result);
    const TlvPtr expected(GetParam().request());
    EXPECT_EQ(LastSent().code, GetParam().code);
    EXPECT_EQ(LastSent().op, GetParam().op);
    EXPECT_EQ(LastSent().image, fake::ImageOf(expected.get()));
    EXPECT_EQ(fake::FlushCalls().size(), 1u);
}

TEST_P(SetHandlerTest, Accepted) {
    AnswerResult(0);
    uint32_t result = kPreset;
    EXPECT_EQ(GetParam().call(&result), DOM_OK);
    EXPECT_EQ(result, ExpectResult(0));
}

TEST_P(SetHandlerTest, Refused) {
    AnswerResult(kRefusal);
    uint32_t result = kPreset;
    EXPECT_EQ(GetParam().call(&result), Expect(GetParam().kind, DOM_ERR_FAILED, DOM_OK));
    EXPECT_EQ(result, ExpectResult(kRefusal));
}

TEST_P(SetHandlerTest, ReplyWithoutResultIsARefusal) {
    Answer(DOM_REPLY_KIND_RESULT, [] { return TLV_Create(); });
    uint32_t result = kPreset;
    EXPECT_EQ(GetParam().call(&result), Expect(GetParam().kind, DOM_ERR_FAILED, DOM_OK));
    EXPECT_EQ(result, ExpectResult(1));
}

TEST_P(SetHandlerTest, NoServer) {
    uint32_t result = kPreset;
    EXPECT_EQ(GetParam().call(&result), Expect(GetParam().kind, DOM_ERR_FAILED, DOM_ERR_FAILED));
    EXPECT_EQ(result, kPreset);
}

TEST_P(SetHandlerTest, NoReply) {
    NeverAnswer();
    uint32_t result = kPreset;
    EXPECT_EQ(GetParam().call(&result), Expect(GetParam().kind, DOM_ERR_FAILED, DOM_ERR_FAILED));
    EXPECT_EQ(result, kPreset);
}

TEST_P(SetHandlerTest, NullResultPointer) {
    AnswerResult(kRefusal);
    EXPECT_EQ(GetParam().call(nullptr), Expect(GetParam().kind, DOM_ERR_FAILED, DOM_OK));
    AnswerResult(0);
    EXPECT_EQ(GetParam().call(nullptr), DOM_OK);
}

TEST_P(SetHandlerTest, RequestThatCannotBeEncodedIsNotSent) {
    AnswerResult(0);
    fake::FailAppend(1);
    uint32_t result = kPreset;
    EXPECT_EQ(GetParam().call(&result), GetParam().if_unencoded);
    EXPECT_EQ(result, kPreset);
    EXPECT_TRUE(fake::FlushCalls().empty());
}

INSTANTIATE_TEST_SUITE_P(Handlers, SetHandlerTest, ::testing::ValuesIn(kSetHandlers),
                         [](const auto& info) { return info.param.title; });

TEST_F(ChannelTest, NullNameIsARequestThatCannotBeEncoded) {
    AnswerResult(0);
    EXPECT_EQ(MOR_SetDomainName(nullptr, 0, nullptr), 0x61010041u);
    EXPECT_EQ(MOR_SetUnknownDomain(nullptr, 0, nullptr), 0x61010041u);
    EXPECT_EQ(MOR_DestroyDomainName(nullptr, nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(MOR_SetState(nullptr, 1), DOM_ERR_FAILED);
    EXPECT_TRUE(fake::FlushCalls().empty());
}

TEST_F(ChannelTest, PermitDomainReturnsTheResultItself) {
    AnswerResult(0);
    EXPECT_EQ(MOR_SetAuthRdFailPermitDomain("alpha", "permit", 18, 5), 0u);
    EXPECT_EQ(LastSent().op, 5u);
    const TlvPtr expected(DOM_EncodeAuthRdFailPermitDomain("alpha", "permit", 18));
    EXPECT_EQ(LastSent().image, fake::ImageOf(expected.get()));
    AnswerResult(kRefusal);
    EXPECT_EQ(MOR_SetAuthRdFailPermitDomain("alpha", "permit", 18, 5), kRefusal);
    Answer(DOM_REPLY_KIND_RESULT, [] { return TLV_Create(); });
    EXPECT_EQ(MOR_SetAuthRdFailPermitDomain("alpha", "permit", 18, 5), 1u);
}

TEST_F(ChannelTest, PermitDomainWithoutAReplyReturnsItsPresetOne) {
    EXPECT_EQ(MOR_SetAuthRdFailPermitDomain("alpha", "permit", 18, 0), 1u);
    NeverAnswer();
    EXPECT_EQ(MOR_SetAuthRdFailPermitDomain("alpha", "permit", 18, 0), 1u);
}

TEST_F(ChannelTest, PermitDomainThatCannotBeEncodedFails) {
    fake::FailAppend(1);
    EXPECT_EQ(MOR_SetAuthRdFailPermitDomain("alpha", "permit", 18, 0), DOM_ERR_FAILED);
}

TEST_F(ChannelTest, EscapeRecoverReturnsTheResultItself) {
    AnswerResult(0);
    EXPECT_EQ(MOR_SetAuthenEscapeRecover("alpha", 1, "escape", 2, 18, 5), 0u);
    EXPECT_EQ(LastSent().op, 5u);
    const TlvPtr expected(DOM_EncodeAuthenEscapeRecover("alpha", 1, "escape", 2, 18));
    EXPECT_EQ(LastSent().image, fake::ImageOf(expected.get()));
    AnswerResult(kRefusal);
    EXPECT_EQ(MOR_SetAuthenEscapeRecover("alpha", 1, "escape", 2, 18, 5), kRefusal);
    Answer(DOM_REPLY_KIND_RESULT, [] { return TLV_Create(); });
    EXPECT_EQ(MOR_SetAuthenEscapeRecover("alpha", 1, "escape", 2, 18, 5), 1u);
}

TEST_F(ChannelTest, EscapeRecoverWithoutAReplyFails) {
    EXPECT_EQ(MOR_SetAuthenEscapeRecover("alpha", 1, "escape", 2, 18, 0), DOM_ERR_FAILED);
}

TEST_F(ChannelTest, EscapeRecoverThatCannotBeEncodedFails) {
    fake::FailAppend(1);
    EXPECT_EQ(MOR_SetAuthenEscapeRecover("alpha", 1, "escape", 2, 18, 0), DOM_ERR_FAILED);
}

}  // namespace
}  // namespace aaadom
