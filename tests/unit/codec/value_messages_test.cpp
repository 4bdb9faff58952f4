// Messages of single values: TLV order, missing and overlong values, failing appends.
#include <aaadom/domain_codec.h>
#include <aaadom/settings_codec.h>

#include <functional>

#include "unit/codec/codec_test_support.h"

namespace {

using namespace codec_test;

/// One message: how to make it, what it holds, how to read its name (null when it has none).
struct Shape {
    const char* title;
    uint32_t code;
    std::vector<uint32_t> types;  // behind TLV 0
    std::function<TLV_MSG*(const char* name)> encode;
    std::function<uint32_t(TLV_MSG*, uint32_t size, char* name)> decode;
    uint16_t name_type = DOM_TLV_DOMAIN_NAME;
};

MethodList EmptyList() {
    return MethodList{};
}

const std::vector<Shape>& NamedShapes() {
    static const std::vector<Shape> shapes = {
        {"default domain",
         1,
         {2, 18},
         [](const char* n) { return DOM_EncodeDefaultDomain(n, 0x12345678); },
         [](TLV_MSG* m, uint32_t s, char* n) { return DOM_DecodeDefaultDomain(m, s, n, nullptr); }},
        {"domain name",
         3,
         {2},
         [](const char* n) { return DOM_EncodeDomainName(n); },
         DOM_DecodeDomainName},
        {"method list",
         4,
         {2, 8, 9, 50},
         [](const char* n) {
             const MethodList list = EmptyList();
             return DOM_EncodeMethList(n, &list, nullptr);
         },
         [](TLV_MSG* m, uint32_t s, char* n) {
             return DOM_DecodeMethList(m, s, n, nullptr, nullptr);
         }},
        {"state",
         7,
         {2, 6},
         [](const char* n) { return DOM_EncodeState(n, 2); },
         [](TLV_MSG* m, uint32_t s, char* n) { return DOM_DecodeState(m, s, n, nullptr); }},
        {"name and length",
         12,
         {2, 31},
         [](const char* n) { return DOM_EncodeDomainNameAndLen(n, 4); },
         [](TLV_MSG* m, uint32_t s, char* n) {
             return DOM_DecodeDomainNameAndLen(m, s, n, nullptr);
         }},
        {"scheme index",
         13,
         {2, 31, 30},
         [](const char* n) { return DOM_EncodeSchemeIndex(n, 4, 2); },
         [](TLV_MSG* m, uint32_t s, char* n) {
             return DOM_DecodeSchemeIndex(m, s, n, nullptr, nullptr);
         }},
        {"unknown domain",
         18,
         {37},
         [](const char* n) { return DOM_EncodeUnknownDomain(n); },
         DOM_DecodeUnknownDomain,
         DOM_TLV_UNKNOWN_DOMAIN},
        {"session time",
         19,
         {2, 38},
         [](const char* n) { return DOM_EncodeSessionTime(n, 9); },
         [](TLV_MSG* m, uint32_t s, char* n) { return DOM_DecodeSessionTime(m, s, n, nullptr); }},
        {"user address type",
         21,
         {2, 51},
         [](const char* n) { return DOM_EncodeUserAddrType(n, 7); },
         [](TLV_MSG* m, uint32_t s, char* n) { return DOM_DecodeUserAddrType(m, s, n, nullptr); }},
        {"dual-stack mode",
         30,
         {2, 76},
         [](const char* n) { return DOM_EncodeAcctDualStackMode(n, 1); },
         [](TLV_MSG* m, uint32_t s, char* n) {
             return DOM_DecodeAcctDualStackMode(m, s, n, nullptr);
         }},
        {"redirect",
         130,
         {2},
         [](const char* n) { return DOM_EncodeRedirectMoveTemporarily(n); },
         DOM_DecodeRedirectMoveTemporarily},
        {"authentication-fail domain",
         132,
         {2, 358, 18, 411},
         [](const char* n) { return DOM_EncodeAuthFailDomain(n, "f", 0, 1); },
         [](TLV_MSG* m, uint32_t s, char* n) {
             return DOM_DecodeAuthFailDomain(m, s, n, 0, nullptr, nullptr, nullptr);
         }},
        {"permit domain",
         143,
         {2, 374, 18},
         [](const char* n) { return DOM_EncodeAuthRdFailPermitDomain(n, "p", 0); },
         [](TLV_MSG* m, uint32_t s, char* n) {
             return DOM_DecodeAuthRdFailPermitDomain(m, s, n, 0, nullptr, nullptr);
         }},
        {"escape recover",
         144,
         {2, 375, 376, 415, 18},
         [](const char* n) { return DOM_EncodeAuthenEscapeRecover(n, 1, "e", 2, 0); },
         [](TLV_MSG* m, uint32_t s, char* n) {
             return DOM_DecodeAuthenEscapeRecover(m, s, n, nullptr, 0, nullptr, nullptr, nullptr);
         }},
        {"profile name",
         159,
         {430},
         [](const char* n) { return DOM_EncodeAAAAuthorProfileName(n); },
         DOM_DecodeAAAAuthorProfileName,
         DOM_TLV_AUTHOR_PROFILE_NAME},
        {"name of a walk",
         165,
         {2},
         [](const char* n) { return DOM_EncodeDomainNameInfo(n); },
         DOM_DecodeDomainNameInfo},
    };
    return shapes;
}

class NamedMessage : public CodecTest, public testing::WithParamInterface<size_t> {
  protected:
    const Shape& shape() const { return NamedShapes()[GetParam()]; }
};

TEST_P(NamedMessage, CodeFirstThenTheValuesInOrder) {
    const TlvPtr msg(shape().encode("isp"));
    ASSERT_NE(msg, nullptr);
    std::vector<uint32_t> want = {DOM_TLV_MSG_CODE};
    want.insert(want.end(), shape().types.begin(), shape().types.end());
    EXPECT_EQ(TypesOf(msg.get()), want) << shape().title;
    EXPECT_EQ(NumberOf(msg.get(), DOM_TLV_MSG_CODE), shape().code);
}

TEST_P(NamedMessage, EveryFailureGivesNull) {
    ExpectEveryFailureGivesNull([&] { return shape().encode("isp"); });
}

TEST_P(NamedMessage, NullNameGivesNull) {
    EXPECT_EQ(shape().encode(nullptr), nullptr);
}

TEST_P(NamedMessage, NameIsReadBack) {
    const TlvPtr msg(shape().encode("Isp.Example"));
    char name[DOM_NAME_SIZE] = "old";
    EXPECT_EQ(shape().decode(msg.get(), sizeof name, name), DOM_OK);
    EXPECT_STREQ(name, "Isp.Example");
}

TEST_P(NamedMessage, LongNameIsCutToTheCapacityAndTerminated) {
    const TlvPtr msg(shape().encode(std::string(300, 'n').c_str()));
    char name[DOM_NAME_SIZE + 1];
    memset(name, '#', sizeof name);
    EXPECT_EQ(shape().decode(msg.get(), DOM_NAME_SIZE, name), DOM_OK);
    EXPECT_EQ(std::string(name), std::string(255, 'n'));
    EXPECT_EQ(name[DOM_NAME_SIZE], '#');
    EXPECT_EQ(shape().decode(msg.get(), 4, name), DOM_OK);
    EXPECT_STREQ(name, "nnn");
}

TEST_P(NamedMessage, MessageWithoutTheNameFails) {
    Message msg(shape().code);
    for (const uint32_t type : shape().types) {
        if (type != shape().name_type && type != DOM_TLV_EXTRA_ITEM) {
            msg.U32(static_cast<uint16_t>(type), 1);
        }
    }
    char name[DOM_NAME_SIZE] = "old";
    EXPECT_EQ(shape().decode(msg.get(), sizeof name, name), DOM_ERR_FAILED);
    EXPECT_STREQ(name, "");
}

TEST_P(NamedMessage, NullMessageFails) {
    char name[DOM_NAME_SIZE];
    EXPECT_EQ(shape().decode(nullptr, sizeof name, name), DOM_ERR_FAILED);
}

TEST_P(NamedMessage, NullOutputsAreSkipped) {
    const TlvPtr msg(shape().encode("isp"));
    EXPECT_EQ(shape().decode(msg.get(), DOM_NAME_SIZE, nullptr), DOM_OK);
}

TEST_P(NamedMessage, CapacityZeroFailsAndWritesNothing) {
    const TlvPtr msg(shape().encode("isp"));
    char name[2] = {'#', '#'};
    EXPECT_EQ(shape().decode(msg.get(), 0, name), DOM_ERR_FAILED);
    EXPECT_EQ(name[0], '#');
}

TEST_P(NamedMessage, NameWithoutTerminatorIsTerminated) {
    Message msg(shape().code);
    msg.Raw(shape().name_type, "abc");
    char name[8];
    memset(name, '#', sizeof name);
    EXPECT_EQ(shape().decode(msg.get(), sizeof name, name), DOM_OK);
    EXPECT_STREQ(name, "abc");
}

TEST_P(NamedMessage, FirstNameCounts) {
    Message msg(shape().code);
    msg.Text(shape().name_type, "first").Text(shape().name_type, "second");
    char name[DOM_NAME_SIZE];
    EXPECT_EQ(shape().decode(msg.get(), sizeof name, name), DOM_OK);
    EXPECT_STREQ(name, "first");
}

TEST_P(NamedMessage, DamagedImagesNeverHurt) {
    const TlvPtr msg(shape().encode("isp"));
    ForEveryDamage(msg.get(), [&](TLV_MSG* damaged) {
        char name[3] = {'#', '#', '#'};
        const uint32_t result = shape().decode(damaged, 2, name);
        EXPECT_EQ(name[2], '#');
        if (result == DOM_OK) {
            EXPECT_LT(strnlen(name, 2), 2u);
        }
    });
}

INSTANTIATE_TEST_SUITE_P(Shapes, NamedMessage, testing::Range<size_t>(0, NamedShapes().size()),
                         [](const testing::TestParamInfo<size_t>& info) {
                             return "Code" + std::to_string(NamedShapes()[info.param].code);
                         });

class Values : public CodecTest {
  protected:
    char name[DOM_NAME_SIZE] = "old";
    char text[DOM_NAME_SIZE] = "old";
    uint32_t word = 99;
    uint16_t half = 99;
};

TEST_F(Values, Value18IsCarriedUnchanged) {
    const TlvPtr msg(DOM_EncodeDefaultDomain("d", 0xFFFFFFFE));
    EXPECT_EQ(DOM_DecodeDefaultDomain(msg.get(), sizeof name, name, &word), DOM_OK);
    EXPECT_EQ(word, 0xFFFFFFFEu);
}

TEST_F(Values, MissingNumbersAreZeroAndMissingOptionalTextsEmpty) {
    Message msg(144);
    msg.Text(DOM_TLV_DOMAIN_NAME, "d");
    uint16_t second = 99;
    EXPECT_EQ(DOM_DecodeAuthenEscapeRecover(msg.get(), sizeof name, name, &half, sizeof text, text,
                                            &second, &word),
              DOM_OK);
    EXPECT_EQ(half, 0u);
    EXPECT_STREQ(text, "");
    EXPECT_EQ(second, 0u);
    EXPECT_EQ(word, 0u);
    memcpy(text, "old", 4);
    EXPECT_EQ(
        DOM_DecodeAuthRdFailPermitDomain(msg.get(), sizeof name, name, sizeof text, text, &word),
        DOM_OK);
    EXPECT_STREQ(text, "");
    memcpy(text, "old", 4);
    half = 99;
    EXPECT_EQ(
        DOM_DecodeAuthFailDomain(msg.get(), sizeof name, name, sizeof text, text, &word, &half),
        DOM_OK);
    EXPECT_STREQ(text, "");
    EXPECT_EQ(half, 0u);
    EXPECT_EQ(DOM_DecodeState(msg.get(), sizeof name, name, &half), DOM_OK);
    EXPECT_EQ(half, 0u);
    word = 99;
    EXPECT_EQ(DOM_DecodeUserAddrType(msg.get(), sizeof name, name, &word), DOM_OK);
    EXPECT_EQ(word, 0u);
}

TEST_F(Values, SixteenBitValuesTravelAs32BitsAndAreNarrowed) {
    const TlvPtr state(DOM_EncodeState("d", 65535));
    EXPECT_EQ(aaadom::FindTlv(state.get(), DOM_TLV_STATE).Length(), 4u);
    Message wide(7);
    wide.Text(DOM_TLV_DOMAIN_NAME, "d").U32(DOM_TLV_STATE, 0x00010002);
    wide.U32(DOM_TLV_SESSION_TIME, 0x7FFF0003).U32(DOM_TLV_AUTH_FAIL_KIND, 0x00050004);
    EXPECT_EQ(DOM_DecodeState(wide.get(), sizeof name, name, &half), DOM_OK);
    EXPECT_EQ(half, 2u);
    EXPECT_EQ(DOM_DecodeSessionTime(wide.get(), sizeof name, name, &half), DOM_OK);
    EXPECT_EQ(half, 3u);
    EXPECT_EQ(DOM_DecodeAuthFailDomain(wide.get(), sizeof name, name, 0, nullptr, nullptr, &half),
              DOM_OK);
    EXPECT_EQ(half, 4u);
}

TEST_F(Values, TooShortNumberReadsAsZero) {
    Message msg(7);
    msg.Text(DOM_TLV_DOMAIN_NAME, "d").Raw(DOM_TLV_STATE, "\x01\x02");
    EXPECT_EQ(DOM_DecodeState(msg.get(), sizeof name, name, &half), DOM_OK);
    EXPECT_EQ(half, 0u);
}

TEST_F(Values, GlobalSettingsMayLackAllButTheDefaultName) {
    Message msg(29);
    msg.Text(DOM_TLV_DOMAIN_NAME, "");
    uint32_t device = 99;
    EXPECT_EQ(
        DOM_DecodeGlobalDomain(msg.get(), sizeof name, name, sizeof text, text, &device, &word),
        DOM_OK);
    EXPECT_STREQ(name, "");
    EXPECT_STREQ(text, "");
    EXPECT_EQ(device, 0u);
    const TlvPtr full(DOM_EncodeGlobalDomain("a", "b", 1, 2));
    EXPECT_EQ(TypesOf(full.get()), (std::vector<uint32_t>{0, 2, 37, 49, 18}));
    ExpectEveryFailureGivesNull([] { return DOM_EncodeGlobalDomain("a", "b", 1, 2); });
    EXPECT_EQ(DOM_EncodeGlobalDomain(nullptr, "b", 1, 2), nullptr);
    EXPECT_EQ(DOM_EncodeGlobalDomain("a", nullptr, 1, 2), nullptr);
}

TEST_F(Values, CodeIsNotLookedAtByTheseDecoders) {
    const TlvPtr msg(DOM_EncodeDomainName("d"));
    EXPECT_EQ(DOM_DecodeDomainNameInfo(msg.get(), sizeof name, name), DOM_OK);
    EXPECT_STREQ(name, "d");
}

// A refused read comes back as a result without data. Plain reads see it by the failing decoder.
TEST_F(Values, ReadRepliesWithoutTheirMainValueFail) {
    Message refusal(29);
    refusal.U32(DOM_TLV_RESULT, 0).Text(DOM_TLV_UNKNOWN_DOMAIN, "b").U32(DOM_TLV_DEVICE_ID, 1);
    uint32_t device = 99;
    EXPECT_EQ(
        DOM_DecodeGlobalDomain(refusal.get(), sizeof name, name, sizeof text, text, &device, &word),
        DOM_ERR_FAILED);
    EXPECT_EQ(DOM_DecodeGlobalDomain(refusal.get(), 0, nullptr, 0, nullptr, nullptr, nullptr),
              DOM_ERR_FAILED);
    EXPECT_EQ(DOM_DecodeDefaultDomain(refusal.get(), sizeof name, name, &word), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_DecodeDomainCount(refusal.get(), &word), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_DecodeDomainCount(refusal.get(), nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(word, 0u);
}

TEST_F(Values, EmptyDefaultNameIsADefaultName) {
    const TlvPtr msg(DOM_EncodeDefaultDomain("", 0));
    EXPECT_EQ(DOM_DecodeDefaultDomain(msg.get(), sizeof name, name, &word), DOM_OK);
    EXPECT_STREQ(name, "");
}

TEST_F(Values, DomainCount) {
    ExpectEveryFailureGivesNull([] { return DOM_EncodeDomainCount(3); });
    EXPECT_EQ(DOM_DecodeDomainCount(nullptr, &word), DOM_ERR_FAILED);
}

TEST_F(Values, LastDeviceIdCounts) {
    Message msg(20);
    msg.U32(DOM_TLV_DEVICE_ID, 1).U32(99, 5).U32(DOM_TLV_DEVICE_ID, 2);
    EXPECT_EQ(DOM_DecodeDeviceID(msg.get(), &word), DOM_OK);
    EXPECT_EQ(word, 2u);
}

TEST_F(Values, MissingDeviceIdLeavesTheOutputAndSucceeds) {
    EXPECT_EQ(DOM_DecodeDeviceID(Message(20).get(), &word), DOM_OK);
    EXPECT_EQ(word, 99u);
    EXPECT_EQ(DOM_DecodeDeviceID(nullptr, &word), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_DecodeDeviceID(Message(20).get(), nullptr), DOM_OK);
    ExpectEveryFailureGivesNull([] { return DOM_EncodeDeviceID(3); });
}

TEST_F(Values, DebugFlagIsClearedFirst) {
    EXPECT_EQ(DOM_DecodeDebugFlag(Message(145).get(), &word), DOM_OK);
    EXPECT_EQ(word, 0u);
    ExpectEveryFailureGivesNull([] { return DOM_EncodeDebugFlag(3); });
}

TEST_F(Values, StrangeTlvEndsTheDebugFlagAndKeepsWhatWasRead) {
    Message after(145);
    after.U32(DOM_TLV_DEBUG_FLAG, 3).U32(DOM_TLV_DEVICE_ID, 1).U32(DOM_TLV_DEBUG_FLAG, 1);
    EXPECT_EQ(DOM_DecodeDebugFlag(after.get(), &word), DOM_ERR_FAILED);
    EXPECT_EQ(word, 3u);
    Message before(145);
    before.U32(DOM_TLV_DEVICE_ID, 1).U32(DOM_TLV_DEBUG_FLAG, 3);
    EXPECT_EQ(DOM_DecodeDebugFlag(before.get(), &word), DOM_ERR_FAILED);
    EXPECT_EQ(word, 0u);
    EXPECT_EQ(DOM_DecodeDebugFlag(nullptr, nullptr), DOM_ERR_FAILED);
}

TEST_F(Values, NullSecondNamesGiveNull) {
    EXPECT_EQ(DOM_EncodeAuthFailDomain("d", nullptr, 0, 1), nullptr);
    EXPECT_EQ(DOM_EncodeAuthRdFailPermitDomain("d", nullptr, 0), nullptr);
    EXPECT_EQ(DOM_EncodeAuthenEscapeRecover("d", 1, nullptr, 0, 0), nullptr);
}

// --- sessions

TEST_F(Values, SessionClassIsTheTlvType) {
    for (uint32_t session_class = 19; session_class <= 23; ++session_class) {
        const TlvPtr limit(DOM_EncodeSessionLimit(session_class, 5));
        EXPECT_EQ(TypesOf(limit.get()), (std::vector<uint32_t>{0, session_class}));
        uint32_t decoded = 0;
        EXPECT_EQ(DOM_DecodeSessionCount(limit.get(), &decoded, &word), DOM_OK);
        EXPECT_EQ(decoded, session_class);
        EXPECT_EQ(word, 5u);
    }
    ExpectEveryFailureGivesNull([] { return DOM_EncodeSessionLimit(19, 5); });
    ExpectEveryFailureGivesNull([] { return DOM_EncodeSessionCount(19, 5); });
}

TEST_F(Values, MessageWithoutASessionClassFails) {
    Message msg(8);
    msg.U32(18, 1).U32(24, 2).U32(99, 3);
    uint32_t session_class = 9;
    EXPECT_EQ(DOM_DecodeSessionLimit(msg.get(), &session_class, &word), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_DecodeSessionLimit(nullptr, &session_class, &word), DOM_ERR_FAILED);
}

TEST_F(Values, SessionClassThatFitsNoTypeGivesNull) {
    EXPECT_EQ(DOM_EncodeSessionLimit(65536 + 19, 5), nullptr);
}

TEST_F(Values, AllSessionLimitsTravelInTheOrder19_21_20_22_23) {
    const SessionLimits limits = {1, 2, 3, 4, 5};
    const TlvPtr msg(DOM_EncodeAllSessionLimit(&limits));
    EXPECT_EQ(TypesOf(msg.get()), (std::vector<uint32_t>{0, 19, 21, 20, 22, 23}));
    EXPECT_EQ(NumberOf(msg.get(), 21), 2u);
    EXPECT_EQ(NumberOf(msg.get(), 20), 3u);
    ExpectEveryFailureGivesNull([&] { return DOM_EncodeAllSessionLimit(&limits); });
    EXPECT_EQ(DOM_EncodeAllSessionLimit(nullptr), nullptr);
}

TEST_F(Values, MissingSessionLimitKeepsThePreset) {
    Message msg(10);
    msg.U32(20, 7);
    SessionLimits limits = {32, 32, 32, 32, 32};
    EXPECT_EQ(DOM_DecodeAllSessionLimit(msg.get(), &limits), DOM_OK);
    const SessionLimits want = {32, 32, 7, 32, 32};
    EXPECT_EQ(memcmp(&limits, &want, sizeof want), 0);
    EXPECT_EQ(DOM_DecodeAllSessionLimit(msg.get(), nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_DecodeAllSessionLimit(nullptr, &limits), DOM_ERR_FAILED);
}

// --- one method list

TEST_F(Values, MethodListOutsideTheGridFails) {
    for (const auto& [row, column] :
         std::vector<std::pair<uint32_t, uint32_t>>{{6, 0}, {0, 12}, {0xFFFFFFFF, 0xFFFFFFFF}}) {
        MethodList list{};
        list.aaa_type = row;
        list.service = column;
        const TlvPtr msg(DOM_EncodeMethList("d", &list, nullptr));
        MethodList decoded;
        memset(&decoded, 0x11, sizeof decoded);
        EXPECT_EQ(DOM_DecodeMethList(msg.get(), sizeof name, name, &decoded, nullptr),
                  DOM_ERR_FAILED);
        EXPECT_EQ(decoded.aaa_type, 0x11111111u) << "the output was touched";
    }
}

TEST_F(Values, MethodListWithAnItemThatIsNoMessageFailsUntouched) {
    for (const uint16_t type : {DOM_TLV_METHOD_ITEM, DOM_TLV_EXTRA_ITEM}) {
        Message msg(4);
        msg.Text(DOM_TLV_DOMAIN_NAME, "d").Raw(type, "no message");
        MethodList list;
        memset(&list, 0x11, sizeof list);
        MethodEntry extra;
        memset(&extra, 0x11, sizeof extra);
        EXPECT_EQ(DOM_DecodeMethList(msg.get(), sizeof name, name, &list, &extra), DOM_ERR_FAILED);
        EXPECT_EQ(list.aaa_type, 0x11111111u) << "the list was touched";
        EXPECT_EQ(extra.method_kind, 0x11111111u) << "the extra item was touched";
    }
}

TEST_F(Values, MethodListStartsFromZeros) {
    Message msg(4);
    msg.Text(DOM_TLV_DOMAIN_NAME, "d").U32(DOM_TLV_SERVICE, 11);
    MethodList list;
    memset(&list, 0x11, sizeof list);
    MethodEntry extra;
    memset(&extra, 0x11, sizeof extra);
    EXPECT_EQ(DOM_DecodeMethList(msg.get(), sizeof name, name, &list, &extra), DOM_OK);
    MethodList want{};
    want.service = 11;
    EXPECT_EQ(memcmp(&list, &want, sizeof want), 0);
    const MethodEntry empty{};
    EXPECT_EQ(memcmp(&extra, &empty, sizeof empty), 0);
}

TEST_F(Values, MethodListNeedsNameAndList) {
    EXPECT_EQ(DOM_EncodeMethList("d", nullptr, nullptr), nullptr);
    MethodList list{};
    list.methods[0] = Entry(1, "x");
    const MethodEntry extra = Entry(2, "y");
    ExpectEveryFailureGivesNull([&] { return DOM_EncodeMethList("d", &list, &extra); });
}

// --- authorization profiles

class ProfileReport : public CodecTest {};

TEST_F(ProfileReport, NumberOfProfilesIsTheResult) {
    const TlvPtr msg(DOM_EncodeAAAAuthorProfileNum(12));
    EXPECT_EQ(DOM_DecodeAAAAuthorProfileNum(msg.get()), 12u);
    EXPECT_EQ(DOM_DecodeAAAAuthorProfileNum(nullptr), 0u);
    Message other(159);
    other.U32(DOM_TLV_AUTHOR_PROFILE_NUM, 12);
    EXPECT_EQ(DOM_DecodeAAAAuthorProfileNum(other.get()), 0u);
    ExpectEveryFailureGivesNull([] { return DOM_EncodeAAAAuthorProfileNum(3); });
    ExpectEveryFailureGivesNull([] { return DOM_EncodeAAAAuthorProfileNumRequest(); });
}

TEST_F(ProfileReport, NumberRequestIsTheCodeAlone) {
    const TlvPtr msg(DOM_EncodeAAAAuthorProfileNumRequest());
    EXPECT_EQ(TypesOf(msg.get()), (std::vector<uint32_t>{0}));
}

TEST_F(ProfileReport, OtherCodeIsRefused) {
    AAAAuthorProfile profile;
    Message msg(156);
    msg.Text(DOM_TLV_AUTHOR_PROFILE_NAME, "p");
    EXPECT_EQ(DOM_DecodeAAAAuthorProfile(msg.get(), &profile), DOM_ERR_FAILED);
    Message none;
    none.Text(DOM_TLV_AUTHOR_PROFILE_NAME, "p");
    EXPECT_EQ(DOM_DecodeAAAAuthorProfile(none.get(), &profile), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_DecodeAAAAuthorProfile(nullptr, &profile), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_DecodeAAAAuthorProfile(Message(159).get(), nullptr), DOM_ERR_FAILED);
}

TEST_F(ProfileReport, OrderAndEntries) {
    AAAAuthorProfile profile{};
    strcpy(profile.profile_name, "p");
    profile.entry_count = 2;
    const TlvPtr msg(DOM_EncodeAAAAuthorProfile(&profile));
    EXPECT_EQ(TypesOf(msg.get()), (std::vector<uint32_t>{0, 430, 434, 431, 432, 435, 435}));
    EXPECT_EQ(aaadom::FindTlv(msg.get(), DOM_TLV_AUTHOR_ENTRY).Length(), 100u);
    ExpectEveryFailureGivesNull([&] { return DOM_EncodeAAAAuthorProfile(&profile); });
    EXPECT_EQ(DOM_EncodeAAAAuthorProfile(nullptr), nullptr);
    profile.entry_count = DOM_AUTHOR_ENTRY_MAX + 1;
    EXPECT_EQ(DOM_EncodeAAAAuthorProfile(&profile), nullptr);
}

TEST_F(ProfileReport, ReportWithoutAProfileNameIsRefusedAndCleared) {
    Message msg(159);
    msg.U32(DOM_TLV_AUTHOR_SEGMENT_ID, 7);
    AAAAuthorProfile profile;
    memset(&profile, 0x11, sizeof profile);
    EXPECT_EQ(DOM_DecodeAAAAuthorProfile(msg.get(), &profile), DOM_ERR_FAILED);
    const AAAAuthorProfile empty{};
    EXPECT_EQ(memcmp(&profile, &empty, sizeof empty), 0);
}

TEST_F(ProfileReport, DamagedImagesNeverHurt) {
    AAAAuthorProfile profile{};
    strcpy(profile.profile_name, "p");
    profile.entry_count = 1;
    const TlvPtr msg(DOM_EncodeAAAAuthorProfile(&profile));
    ForEveryDamage(msg.get(), [](TLV_MSG* damaged) {
        AAAAuthorProfile decoded;
        (void)DOM_DecodeAAAAuthorProfile(damaged, &decoded);
        EXPECT_LE(decoded.entry_count, 1u);
    });
}

TEST_F(ProfileReport, SurplusEntriesAreIgnored) {
    Message msg(159);
    msg.Text(DOM_TLV_AUTHOR_PROFILE_NAME, "p");
    for (int i = 0; i < 200; ++i) msg.Raw(DOM_TLV_AUTHOR_ENTRY, std::string(100, 'z'));
    AAAAuthorProfile profile;
    EXPECT_EQ(DOM_DecodeAAAAuthorProfile(msg.get(), &profile), DOM_OK);
    EXPECT_EQ(profile.entry_count, DOM_AUTHOR_ENTRY_MAX);
    EXPECT_EQ(std::string(profile.entries[127].text2), std::string(31, 'z'));
}

TEST_F(ProfileReport, EntryOfAnotherLengthIsRefused) {
    for (const size_t length : {0u, 68u, 99u, 101u}) {
        Message msg(159);
        msg.Text(DOM_TLV_AUTHOR_PROFILE_NAME, "p")
            .Raw(DOM_TLV_AUTHOR_ENTRY, std::string(length, 'z'));
        AAAAuthorProfile profile;
        EXPECT_EQ(DOM_DecodeAAAAuthorProfile(msg.get(), &profile), DOM_ERR_FAILED) << length;
    }
}

}  // namespace
