#include <cstring>

#include "unit/mgmt/channel_fixture.h"

namespace aaadom {
namespace {

constexpr uint32_t kPreset = 0xDEADBEEFu;
constexpr uint32_t kRefusal = 8;

/// A read with operation 2 that has no result output.
struct PlainRead {
    const char* title;
    uint32_t code;
    uint32_t (*call)();
};

const PlainRead kPlainReads[] = {
    {"DefaultDomain", 1,
     [] {
         char name[DOM_NAME_SIZE];
         uint32_t value = 0;
         return MOR_GetDefaultDomain(sizeof name, name, &value);
     }},
    {"GlobalDomain", 29,
     [] {
         char name[DOM_NAME_SIZE];
         uint32_t value = 0;
         return MOR_GetGlobalDomain(sizeof name, name, sizeof name, name, &value, &value);
     }},
    {"DomainCount", 2,
     [] {
         uint32_t count = 0;
         return MOR_GetDomainCount(&count);
     }},
    {"SessionLimit", 8,
     [] {
         SessionLimits limits{};
         return MOR_GetXmlSessionLimit(&limits);
     }},
    {"DebugFlag", 145,
     [] {
         uint32_t flag = 0;
         return MOR_GetAAADebugFlag(&flag);
     }},
};

void PrintTo(const PlainRead& read, std::ostream* out) {
    *out << read.title;
}

class PlainReadTest : public ChannelTest, public ::testing::WithParamInterface<PlainRead> {};

TEST_P(PlainReadTest, AsksWithItsCodeAndOperationTwo) {
    AnswerResult(kRefusal);
    GetParam().call();
    EXPECT_EQ(LastSent().code, GetParam().code);
    EXPECT_EQ(LastSent().op, 2u);
}

TEST_P(PlainReadTest, NoServerFails) {
    EXPECT_EQ(GetParam().call(), DOM_ERR_FAILED);
}

TEST_P(PlainReadTest, NoReplyFails) {
    NeverAnswer();
    EXPECT_EQ(GetParam().call(), DOM_ERR_FAILED);
}

// Plain reads have no result output: a refusal can only be told by the return value.
TEST_P(PlainReadTest, RefusalFailsWhateverItsResult) {
    AnswerResult(kRefusal);
    EXPECT_EQ(GetParam().call(), DOM_ERR_FAILED);
    AnswerResult(0);
    EXPECT_EQ(GetParam().call(), DOM_ERR_FAILED);
}

TEST_P(PlainReadTest, ReplyOfAnotherCodeFails) {
    AnswerData([] { return DOM_EncodeState("alpha", 2); });
    if (GetParam().code == DOM_MSG_DEFAULT_DOMAIN || GetParam().code == DOM_MSG_GLOBAL_DOMAIN)
        AnswerData([] { return DOM_EncodeUnknownDomain("alpha"); });  // has no TLV 2
    EXPECT_EQ(GetParam().call(), DOM_ERR_FAILED);
}

TEST_P(PlainReadTest, RequestThatCannotBeEncodedIsNotSent) {
    AnswerResult(0);
    fake::FailAppend(1);
    EXPECT_EQ(GetParam().call(), DOM_ERR_FAILED);
    EXPECT_TRUE(fake::FlushCalls().empty());
}

INSTANTIATE_TEST_SUITE_P(Handlers, PlainReadTest, ::testing::ValuesIn(kPlainReads),
                         [](const auto& info) { return info.param.title; });

TEST_F(ChannelTest, DefaultDomainIsCutToTheCapacity) {
    AnswerData([] { return DOM_EncodeDefaultDomain("alphabet", 18); });
    char name[6];
    uint32_t value = 0;
    EXPECT_EQ(MOR_GetDefaultDomain(sizeof name, name, &value), DOM_OK);
    EXPECT_STREQ(name, "alpha");
    EXPECT_EQ(value, 18u);
}

TEST_F(ChannelTest, GlobalDomainRequestCarriesTwoCodes) {
    AnswerResult(0);
    uint32_t value = 0;
    char name[DOM_NAME_SIZE];
    MOR_GetGlobalDomain(sizeof name, name, sizeof name, name, &value, &value);
    const TlvPtr sent(fake::Parse(LastSent().image));
    std::vector<std::pair<uint16_t, uint32_t>> items;
    for (TlvItem item : TlvWalk(sent.get())) items.emplace_back(item.Type(), item.U32());
    const std::vector<std::pair<uint16_t, uint32_t>> expected{{0, 29}, {0, 20}};
    EXPECT_EQ(items, expected);
}

TEST_F(ChannelTest, GlobalDomainIsRead) {
    AnswerData([] { return DOM_EncodeGlobalDomain("alpha", "beta", 7, 18); });
    char default_name[DOM_NAME_SIZE] = {};
    char unknown_name[DOM_NAME_SIZE] = {};
    uint32_t device_id = 0;
    uint32_t value = 0;
    EXPECT_EQ(MOR_GetGlobalDomain(sizeof default_name, default_name, sizeof unknown_name,
                                  unknown_name, &device_id, &value),
              DOM_OK);
    EXPECT_STREQ(default_name, "alpha");
    EXPECT_STREQ(unknown_name, "beta");
    EXPECT_EQ(device_id, 7u);
    EXPECT_EQ(value, 18u);
}

TEST_F(ChannelTest, CodeAloneIsAllThatPlainReadsSend) {
    AnswerResult(0);
    uint32_t count = 0;
    MOR_GetDomainCount(&count);
    const TlvPtr expected(MessageBuilder(DOM_MSG_DOMAIN_COUNT).Build());
    EXPECT_EQ(LastSent().image, fake::ImageOf(expected.get()));
}

TEST_F(ChannelTest, DomainCountIsRead) {
    AnswerData([] { return DOM_EncodeDomainCount(1024); });
    uint32_t count = 0;
    EXPECT_EQ(MOR_GetDomainCount(&count), DOM_OK);
    EXPECT_EQ(count, 1024u);
}

TEST_F(ChannelTest, SessionLimitsAreRead) {
    AnswerData([] {
        const SessionLimits limits{1, 2, 3, 4, 5};
        return DOM_EncodeAllSessionLimit(&limits);
    });
    SessionLimits limits{};
    EXPECT_EQ(MOR_GetXmlSessionLimit(&limits), DOM_OK);
    EXPECT_EQ(limits.class_19, 1u);
    EXPECT_EQ(limits.class_23, 5u);
}

TEST_F(ChannelTest, SessionLimitsAreReadFromCode10Alone) {
    AnswerData([] { return DOM_EncodeSessionLimit(21, 100); });
    SessionLimits limits{1, 2, 3, 4, 5};
    EXPECT_EQ(MOR_GetXmlSessionLimit(&limits), DOM_ERR_FAILED);
    EXPECT_EQ(limits.class_21, 2u);
    AnswerData([] {
        return MessageBuilder(DOM_MSG_ALL_SESSION_LIMIT).Build([](Appender& append) {
            append.U32(DOM_TLV_CLASS_21, 100);
        });
    });
    EXPECT_EQ(MOR_GetXmlSessionLimit(&limits), DOM_OK);
    EXPECT_EQ(limits.class_21, 100u);
    EXPECT_EQ(limits.class_23, 5u) << "a missing class keeps the caller's";
}

TEST_F(ChannelTest, GlobalDomainOfADeviceWithoutNamesIsRead) {
    AnswerData([] { return DOM_EncodeGlobalDomain("", "", 7, 0); });
    char default_name[DOM_NAME_SIZE] = "x";
    char unknown_name[DOM_NAME_SIZE] = "x";
    uint32_t device_id = 0;
    uint32_t value = 9;
    EXPECT_EQ(MOR_GetGlobalDomain(sizeof default_name, default_name, sizeof unknown_name,
                                  unknown_name, &device_id, &value),
              DOM_OK);
    EXPECT_STREQ(default_name, "");
    EXPECT_STREQ(unknown_name, "");
    EXPECT_EQ(device_id, 7u);
}

TEST_F(ChannelTest, DebugFlagIsRead) {
    AnswerData([] { return DOM_EncodeDebugFlag(3); });
    uint32_t flag = 0;
    EXPECT_EQ(MOR_GetAAADebugFlag(&flag), DOM_OK);
    EXPECT_EQ(flag, 3u);
}

// --- reads of one domain
// ------------------------------------------------------------------------

struct DomainRead {
    const char* title;
    uint32_t code;
    DomainInfo* (*call)(const char* name, uint32_t op, uint32_t* result);
};
void PrintTo(const DomainRead& read, std::ostream* out) {
    *out << read.title;
}

class DomainReadTest : public ChannelTest, public ::testing::WithParamInterface<DomainRead> {
  protected:
    static TLV_MSG* Record() {
        return MessageBuilder(DOM_MSG_DOMAIN).Build([](Appender& append) {
            append.Text(DOM_TLV_DOMAIN_NAME, "beta").U32(DOM_TLV_STATE, 2);
        });
    }
};

TEST_P(DomainReadTest, SendsTheNameWithTheCallersOperation) {
    AnswerResult(kRefusal);
    GetParam().call("alpha", 3, nullptr);
    EXPECT_EQ(LastSent().code, GetParam().code);
    EXPECT_EQ(LastSent().op, 3u);
}

TEST_P(DomainReadTest, ReturnsTheDomain) {
    AnswerData(Record);
    uint32_t result = kPreset;
    DomainInfo* record = GetParam().call("alpha", 2, &result);
    ASSERT_NE(record, nullptr);
    EXPECT_STREQ(record->name, "beta");
    EXPECT_EQ(record->state, 2);
    EXPECT_EQ(result, kPreset);
    DOM_DestroyDomain(record);
}

TEST_P(DomainReadTest, RefusalIsNullAndItsResult) {
    AnswerResult(kRefusal);
    uint32_t result = kPreset;
    EXPECT_EQ(GetParam().call("alpha", 2, &result), nullptr);
    EXPECT_EQ(result, kRefusal);
}

TEST_P(DomainReadTest, RefusalIsNotDecodedEvenWhenItCarriesADomain) {
    Answer(DOM_REPLY_KIND_RESULT, Record);
    uint32_t result = kPreset;
    EXPECT_EQ(GetParam().call("alpha", 2, &result), nullptr);
    EXPECT_EQ(result, 1u);
}

TEST_P(DomainReadTest, NoReplyIsNullAndLeavesTheResult) {
    uint32_t result = kPreset;
    EXPECT_EQ(GetParam().call("alpha", 2, &result), nullptr);
    NeverAnswer();
    EXPECT_EQ(GetParam().call("alpha", 2, &result), nullptr);
    EXPECT_EQ(result, kPreset);
}

TEST_P(DomainReadTest, ReplyThatIsNoDomainIsNull) {
    AnswerData([] { return DOM_EncodeDomainCount(3); });
    uint32_t result = kPreset;
    EXPECT_EQ(GetParam().call("alpha", 2, &result), nullptr);
    EXPECT_EQ(result, kPreset);
}

TEST_P(DomainReadTest, NullPointersAreHarmless) {
    AnswerResult(kRefusal);
    EXPECT_EQ(GetParam().call("alpha", 2, nullptr), nullptr);
    EXPECT_EQ(GetParam().call(nullptr, 2, nullptr), nullptr);
}

INSTANTIATE_TEST_SUITE_P(Handlers, DomainReadTest,
                         ::testing::Values(DomainRead{"GetDomain", 3, MOR_GetDomain},
                                           DomainRead{"GetNextDomain", 165, MOR_GetNextDomain}),
                         [](const auto& info) { return info.param.title; });

// --- rows
// ---------------------------------------------------------------------------------------

TEST_F(ChannelTest, DomainRowByNameCarriesNoLength) {
    AnswerResult(kRefusal);
    DomainMibRow row{};
    MOR_GetDomainInfoTable("alpha", 5, DOM_OP_GET, &row, nullptr);
    const TlvPtr expected(DOM_EncodeDomainName("alpha"));
    EXPECT_EQ(LastSent().image, fake::ImageOf(expected.get()));
    EXPECT_EQ(LastSent().op, 2u);
}

TEST_F(ChannelTest, NextDomainRowCarriesTheLength) {
    AnswerResult(kRefusal);
    DomainMibRow row{};
    MOR_GetDomainInfoTable("alpha", 5, DOM_OP_GET_NEXT, &row, nullptr);
    const TlvPtr expected(DOM_EncodeDomainNameAndLen("alpha", 5));
    EXPECT_EQ(LastSent().image, fake::ImageOf(expected.get()));
    EXPECT_EQ(LastSent().op, 3u);
}

TEST_F(ChannelTest, DomainRowIsRead) {
    AnswerData([] { return DOM_EncodeDomainInfo("beta", 2, 1); });
    DomainMibRow row{};
    uint32_t result = kPreset;
    EXPECT_EQ(MOR_GetDomainInfoTable("alpha", 5, DOM_OP_GET, &row, &result), DOM_OK);
    EXPECT_STREQ(row.domain_name, "beta");
    EXPECT_EQ(row.state, 2u);
    EXPECT_EQ(result, 0u) << "cleared first";
}

TEST_F(ChannelTest, RefusedDomainRowIsZeroWithItsResult) {
    AnswerResult(kRefusal);
    DomainMibRow row{77, "untouched"};
    uint32_t result = kPreset;
    EXPECT_EQ(MOR_GetDomainInfoTable("alpha", 5, DOM_OP_GET, &row, &result), DOM_OK);
    EXPECT_EQ(result, kRefusal);
    EXPECT_EQ(row.state, 77u);
}

TEST_F(ChannelTest, DomainRowWithoutReplyClearsTheResultAndFails) {
    DomainMibRow row{};
    uint32_t result = kPreset;
    EXPECT_EQ(MOR_GetDomainInfoTable("alpha", 5, DOM_OP_GET, &row, &result), DOM_ERR_FAILED);
    EXPECT_EQ(result, 0u);
}

TEST_F(ChannelTest, SchemeRowRequestCarriesItsKey) {
    AnswerResult(kRefusal);
    MibSchemeRow row{};
    MOR_GetMibSchemeTable("alpha", 5, 6, DOM_OP_GET_NEXT, &row, nullptr);
    const TlvPtr expected(DOM_EncodeSchemeIndex("alpha", 5, 6));
    EXPECT_EQ(LastSent().image, fake::ImageOf(expected.get()));
    EXPECT_EQ(LastSent().code, 13u);
    EXPECT_EQ(LastSent().op, 3u);
}

TEST_F(ChannelTest, SchemeRowIsRead) {
    AnswerData([] { return DOM_EncodeDomainSchemeFlag(0, "beta", 1, 4, 6, 2, "radius"); });
    MibSchemeRow row{};
    uint32_t result = kPreset;
    EXPECT_EQ(MOR_GetMibSchemeTable("alpha", 5, 6, DOM_OP_GET, &row, &result), DOM_OK);
    EXPECT_STREQ(row.domain_name, "beta");
    EXPECT_STREQ(row.scheme_name, "radius");
    EXPECT_EQ(row.aaa_type, 4u);
    EXPECT_EQ(row.scheme_index, 6u);
    EXPECT_EQ(row.method_kind, 2u);
    EXPECT_EQ(result, kPreset);
}

TEST_F(ChannelTest, SparseSchemeRowReadsAsItsPresets) {
    AnswerData([] {
        return MessageBuilder(DOM_MSG_SCHEME_ROW).Build([](Appender& append) {
            append.Text(DOM_TLV_DOMAIN_NAME, "beta");
        });
    });
    MibSchemeRow row{99, 99, 99, 99, 99, "x", "x"};
    EXPECT_EQ(MOR_GetMibSchemeTable("alpha", 5, 6, DOM_OP_GET, &row, nullptr), DOM_OK);
    EXPECT_EQ(row.scheme_index, 0u);
    EXPECT_EQ(row.method_kind, 4u);
    EXPECT_EQ(row.row_status, 1u);
    EXPECT_EQ(row.aaa_type, 0u);
    EXPECT_EQ(row.service, 5u);
    EXPECT_STREQ(row.scheme_name, "");
}

TEST_F(ChannelTest, RefusedSchemeRowIsZeroWithItsResult) {
    AnswerResult(kRefusal);
    MibSchemeRow row{};
    row.scheme_index = 77;
    uint32_t result = kPreset;
    EXPECT_EQ(MOR_GetMibSchemeTable("alpha", 5, 6, DOM_OP_GET, &row, &result), DOM_OK);
    EXPECT_EQ(result, kRefusal);
    EXPECT_EQ(row.scheme_index, 77u);
}

TEST_F(ChannelTest, SchemeRowWithoutReplyFailsAndLeavesTheResult) {
    MibSchemeRow row{};
    uint32_t result = kPreset;
    EXPECT_EQ(MOR_GetMibSchemeTable("alpha", 5, 6, DOM_OP_GET, &row, &result), DOM_ERR_FAILED);
    EXPECT_EQ(result, kPreset);
}

TEST_F(ChannelTest, NullRowFailsInsteadOfCrashing) {
    AnswerData([] { return DOM_EncodeDomainSchemeFlag(0, "beta", 1, 4, 6, 2, "radius"); });
    EXPECT_EQ(MOR_GetMibSchemeTable("alpha", 5, 6, DOM_OP_GET, nullptr, nullptr), DOM_ERR_FAILED);
}

}  // namespace
}  // namespace aaadom
