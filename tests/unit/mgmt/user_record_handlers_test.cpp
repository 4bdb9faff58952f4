// User records over the channel: what is sent, and what becomes of the answer.
#include <aaadom/user_record_query.h>

#include "unit/mgmt/channel_fixture.h"

namespace aaadom {
namespace {

constexpr uint32_t kRefusal = 13;
constexpr uint16_t kPresetStatus = 0xBEEF;
constexpr uint32_t kPresetCount = 0xDEADBEEFu;

const UserRecordTimeQuery kTimeQuery{1, 2, 1700000000, 1700003600};
const UserRecordQuery kConditions = [] {
    UserRecordQuery query{};
    query.record_count = 50;
    query.list_selector = 3;
    CopyText(query.second_name, "user@isp-a.example");
    return query;
}();

/// A call whose result is the daemon's own.
struct Setting {
    const char* title;
    uint32_t code;
    uint32_t op;
    uint32_t (*call)();
    TLV_MSG* (*request)();
};

const Setting kSettings[] = {
    {"BackupMethod", 164, 0, [] { return DOM_userrecord_mor_BackupMethod(0, 6); },
     [] { return DOM_userrecord_tlv_EncodeBackupMethod(6); }},
    {"UndoBackupMethod", 164, 1, [] { return DOM_userrecord_mor_BackupMethod(1, 5); },
     [] { return DOM_userrecord_tlv_EncodeBackupMethod(5); }},
    {"UndoBackupMethodWithAnyNumber", 164, 1,
     [] { return DOM_userrecord_mor_BackupMethod(0x10000, 5); },
     [] { return DOM_userrecord_tlv_EncodeBackupMethod(5); }},
    {"RecordEnable", 77, 0, [] { return DOM_userrecord_mor_RecordEnable(0, 77); },
     [] { return DOM_userrecord_tlv_EncodeRecordEnable(77); }},
    {"UndoRecordEnable", 80, 1, [] { return DOM_userrecord_mor_RecordEnable(2, 80); },
     [] { return DOM_userrecord_tlv_EncodeRecordEnable(80); }},
    // Neither set nor delete: the daemon and the standby board clear records with operation 6
    // alone.
    {"ResetRecord", 54, 6, [] { return DOM_userrecord_mor_ResetRecord(54); },
     [] { return DOM_userrecord_tlv_EncodeResetRecord(54); }},
};

void PrintTo(const Setting& setting, std::ostream* out) {
    *out << setting.title;
}

class RecordSettingTest : public ChannelTest, public ::testing::WithParamInterface<Setting> {};

TEST_P(RecordSettingTest, SendsItsRequestWithItsOperation) {
    AnswerResult(0);
    GetParam().call();
    const TlvPtr expected(GetParam().request());
    EXPECT_EQ(LastSent().code, GetParam().code);
    EXPECT_EQ(LastSent().op, GetParam().op);
    EXPECT_EQ(LastSent().image, fake::ImageOf(expected.get()));
    EXPECT_EQ(fake::FlushCalls().size(), 1u);
}

TEST_P(RecordSettingTest, GivesTheDaemonsResult) {
    for (const uint32_t result : {uint32_t{DOM_OK}, kRefusal, uint32_t{DOM_ERR_FAILED}}) {
        AnswerResult(result);
        EXPECT_EQ(GetParam().call(), result);
    }
}

TEST_P(RecordSettingTest, ReplyWithoutAResultIs1) {
    Answer(DOM_REPLY_KIND_RESULT, [] { return TLV_Create(); });
    EXPECT_EQ(GetParam().call(), 1u);
}

TEST_P(RecordSettingTest, WithoutAReplyFails) {
    EXPECT_EQ(GetParam().call(), DOM_ERR_FAILED);
    NeverAnswer();
    EXPECT_EQ(GetParam().call(), DOM_ERR_FAILED);
}

TEST_P(RecordSettingTest, RequestThatCannotBeEncodedFailsAndIsNotSent) {
    AnswerResult(0);
    fake::FailAppend(1);
    EXPECT_EQ(GetParam().call(), DOM_ERR_FAILED);
    fake::FailMessage(1);
    EXPECT_EQ(GetParam().call(), DOM_ERR_FAILED);
    EXPECT_TRUE(fake::FlushCalls().empty());
}

INSTANTIATE_TEST_SUITE_P(Settings, RecordSettingTest, ::testing::ValuesIn(kSettings),
                         [](const auto& info) { return info.param.title; });

class RecordNumberTest : public ChannelTest {};

TEST_F(RecordNumberTest, AsksWithItsCodeAloneAndOperation2) {
    AnswerData([] { return DOM_userrecord_tlv_EncodeDisplayRecordNumber(70, 32768); });
    uint32_t count = kPresetCount;
    EXPECT_EQ(DOM_userrecord_mor_GetRecordNumber(70, &count), DOM_OK);
    EXPECT_EQ(count, 32768u);
    const TlvPtr expected(DOM_userrecord_tlv_EncodeGetRecordNum(70));
    EXPECT_EQ(LastSent().op, 2u);
    EXPECT_EQ(LastSent().image, fake::ImageOf(expected.get()));
}

TEST_F(RecordNumberTest, AnyCodeIsAsked) {
    AnswerData([] { return DOM_userrecord_tlv_EncodeDisplayRecordNumber(0, 1); });
    uint32_t count = kPresetCount;
    EXPECT_EQ(DOM_userrecord_mor_GetRecordNumber(4711, &count), DOM_OK);
    EXPECT_EQ(LastSent().code, 4711u);
}

TEST_F(RecordNumberTest, RefusalFailsWithCount0) {
    AnswerResult(kRefusal);
    uint32_t count = kPresetCount;
    EXPECT_EQ(DOM_userrecord_mor_GetRecordNumber(70, &count), DOM_ERR_FAILED);
    EXPECT_EQ(count, 0u);
}

TEST_F(RecordNumberTest, WithoutAReplyTheCountStays) {
    uint32_t count = kPresetCount;
    EXPECT_EQ(DOM_userrecord_mor_GetRecordNumber(70, &count), DOM_ERR_FAILED);
    NeverAnswer();
    EXPECT_EQ(DOM_userrecord_mor_GetRecordNumber(70, &count), DOM_ERR_FAILED);
    EXPECT_EQ(count, kPresetCount);
}

TEST_F(RecordNumberTest, RequestThatCannotBeEncodedIsNotSent) {
    AnswerData([] { return DOM_userrecord_tlv_EncodeDisplayRecordNumber(70, 1); });
    uint32_t count = kPresetCount;
    fake::FailAppend(1);
    EXPECT_EQ(DOM_userrecord_mor_GetRecordNumber(70, &count), DOM_ERR_FAILED);
    fake::FailMessage(1);
    EXPECT_EQ(DOM_userrecord_mor_GetRecordNumber(70, &count), DOM_ERR_FAILED);
    EXPECT_EQ(count, kPresetCount);
    EXPECT_TRUE(fake::FlushCalls().empty());
}

TEST_F(RecordNumberTest, NullCountFails) {
    AnswerData([] { return DOM_userrecord_tlv_EncodeDisplayRecordNumber(70, 1); });
    EXPECT_EQ(DOM_userrecord_mor_GetRecordNumber(70, nullptr), DOM_ERR_FAILED);
}

/// A read whose reply is handed to the caller.
struct Reading {
    const char* title;
    uint32_t code;
    TLV_MSG* (*call)(uint16_t* status);
    TLV_MSG* (*request)();
};

const Reading kReadings[] = {
    {"All", 71, [](uint16_t* status) { return DOM_userrecord_mor_GetRecordAll(71, 3, status); },
     [] { return DOM_userrecord_tlv_EncodeDisplayRecordAll(71, 3); }},
    {"ByTime", 72,
     [](uint16_t* status) { return DOM_userrecord_mor_GetRecordByTime(72, &kTimeQuery, status); },
     [] { return DOM_userrecord_tlv_EncodeDisplayRecordTime(72, &kTimeQuery); }},
    {"ByReason", 74,
     [](uint16_t* status) { return DOM_userrecord_mor_GetRecordByReason(1, 2119, 4, status); },
     [] { return DOM_userrecord_tlv_EncodeDisplayRecordReason(1, 2119, 4); }},
    {"ByConditions", 73,
     [](uint16_t* status) {
         return DOM_userrecord_mor_GetRecordContentByCond(73, &kConditions, status);
     },
     [] { return DOM_userrecord_tlv_EncodeDisRecordMultParas(73, &kConditions); }},
    {"AnyCode", 4711,
     [](uint16_t* status) { return DOM_userrecord_mor_GetRecordAll(4711, 3, status); },
     [] { return DOM_userrecord_tlv_EncodeDisplayRecordAll(4711, 3); }},
};

void PrintTo(const Reading& reading, std::ostream* out) {
    *out << reading.title;
}

class RecordReadingTest : public ChannelTest, public ::testing::WithParamInterface<Reading> {};

TEST_P(RecordReadingTest, AsksWithOperation2) {
    AnswerData([] { return DOM_userrecord_tlv_EncodeNoRecordMsg(); });
    uint16_t status = kPresetStatus;
    const TlvPtr reply(GetParam().call(&status));
    const TlvPtr expected(GetParam().request());
    EXPECT_EQ(LastSent().code, GetParam().code);
    EXPECT_EQ(LastSent().op, 2u);
    EXPECT_EQ(LastSent().image, fake::ImageOf(expected.get()));
}

TEST_P(RecordReadingTest, ReplyIsTheCallersAsItCame) {
    AnswerData([] { return DOM_userrecord_tlv_EncodeRecordHeader(3); });
    uint16_t status = kPresetStatus;
    const TlvPtr reply(GetParam().call(&status));
    ASSERT_NE(reply, nullptr);
    const TlvPtr expected(DOM_userrecord_tlv_EncodeRecordHeader(3));
    EXPECT_EQ(fake::ImageOf(reply.get()), fake::ImageOf(expected.get()));
    EXPECT_EQ(status, DOM_REPLY_KIND_DATA);
}

TEST_P(RecordReadingTest, RefusalIsAReplyToo) {
    AnswerResult(kRefusal);
    uint16_t status = kPresetStatus;
    const TlvPtr reply(GetParam().call(&status));
    ASSERT_NE(reply, nullptr);
    EXPECT_EQ(FindTlv(reply.get(), DOM_TLV_RESULT).U32(), kRefusal);
    EXPECT_EQ(status, DOM_REPLY_KIND_RESULT);
}

TEST_P(RecordReadingTest, StatusIsWhateverKindTheReplyHas) {
    Answer(0xFFFF, [] { return TLV_Create(); });
    uint16_t status = kPresetStatus;
    EXPECT_NE(TlvPtr(GetParam().call(&status)), nullptr);
    EXPECT_EQ(status, 0xFFFF);
}

TEST_P(RecordReadingTest, StatusMayBeNull) {
    AnswerData([] { return DOM_userrecord_tlv_EncodeNoRecordMsg(); });
    const TlvPtr reply(GetParam().call(nullptr));
    ASSERT_NE(reply, nullptr);
    EXPECT_EQ(FindTlv(reply.get(), DOM_TLV_RESULT).U32(), 25u);
}

TEST_P(RecordReadingTest, WithoutAReplyTheStatusStays) {
    uint16_t status = kPresetStatus;
    EXPECT_EQ(GetParam().call(&status), nullptr);
    NeverAnswer();
    EXPECT_EQ(GetParam().call(&status), nullptr);
    EXPECT_EQ(status, kPresetStatus);
}

TEST_P(RecordReadingTest, RequestThatCannotBeEncodedIsNotSent) {
    AnswerData([] { return DOM_userrecord_tlv_EncodeNoRecordMsg(); });
    uint16_t status = kPresetStatus;
    fake::FailAppend(1);
    EXPECT_EQ(GetParam().call(&status), nullptr);
    fake::FailMessage(1);
    EXPECT_EQ(GetParam().call(&status), nullptr);
    EXPECT_EQ(status, kPresetStatus);
    EXPECT_TRUE(fake::FlushCalls().empty());
}

INSTANTIATE_TEST_SUITE_P(Readings, RecordReadingTest, ::testing::ValuesIn(kReadings),
                         [](const auto& info) { return info.param.title; });

TEST_F(ChannelTest, NullRecordQueryIsNotSent) {
    AnswerData([] { return DOM_userrecord_tlv_EncodeNoRecordMsg(); });
    uint16_t status = kPresetStatus;
    EXPECT_EQ(DOM_userrecord_mor_GetRecordByTime(72, nullptr, &status), nullptr);
    EXPECT_EQ(DOM_userrecord_mor_GetRecordContentByCond(73, nullptr, &status), nullptr);
    EXPECT_EQ(status, kPresetStatus);
    EXPECT_TRUE(fake::FlushCalls().empty());
}

}  // namespace
}  // namespace aaadom
