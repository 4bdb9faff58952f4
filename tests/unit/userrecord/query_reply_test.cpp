// Replies to queries of user records: header, no record, number, the brief form.
#include <aaadom/codes.h>
#include <aaadom/user_record_query.h>

#include <cstdlib>

#include "unit/userrecord/record_fixture.h"

namespace {

using namespace record_test;
using aaadom::Appender;

class RecordReply : public RecordTest {};

TEST_F(RecordReply, HeaderIsTheListAlone) {
    const TlvPtr msg(DOM_userrecord_tlv_EncodeRecordHeader(0xABCD));
    EXPECT_EQ(TypesOf(msg.get()), std::vector<uint32_t>{177});
    EXPECT_EQ(BytesOf(msg.get(), 177), "\xCD\xAB");
    ExpectEveryFailureGivesNull([] { return DOM_userrecord_tlv_EncodeRecordHeader(1); });
}

TEST_F(RecordReply, NoRecordIsResult25Alone) {
    const TlvPtr msg(DOM_userrecord_tlv_EncodeNoRecordMsg());
    EXPECT_EQ(TypesOf(msg.get()), std::vector<uint32_t>{16});
    EXPECT_EQ(BytesOf(msg.get(), 16), std::string("\x19\x00\x00\x00", 4));
    ExpectEveryFailureGivesNull([] { return DOM_userrecord_tlv_EncodeNoRecordMsg(); });
}

TEST_F(RecordReply, NumberComesBack) {
    const TlvPtr msg(DOM_userrecord_tlv_EncodeDisplayRecordNumber(70, 32768));
    uint32_t count = 7;
    EXPECT_EQ(DOM_userrecord_tlv_DecodeDisplayRecordNumber(msg.get(), &count), 0u);
    EXPECT_EQ(count, 32768u);
}

// A reply without a number answers something else, above all it refuses.
TEST_F(RecordReply, NumberReplyWithoutANumberFailsAndCounts0) {
    const TlvPtr empty(TLV_Create());
    const TlvPtr no_record(DOM_userrecord_tlv_EncodeNoRecordMsg());
    for (TLV_MSG* msg : {empty.get(), no_record.get(), static_cast<TLV_MSG*>(nullptr)}) {
        uint32_t count = 7;
        EXPECT_EQ(DOM_userrecord_tlv_DecodeDisplayRecordNumber(msg, &count), DOM_ERR_FAILED);
        EXPECT_EQ(count, 0u);
    }
}

TEST_F(RecordReply, LastNumberCountsAndTlvsBehindItDoNotMatter) {
    const TlvPtr msg(TLV_Create());
    Appender append(msg.get());
    append.U32(163, 1).U32(163, 2).U32(16, 1);
    ASSERT_FALSE(append.Failed());
    uint32_t count = 7;
    EXPECT_EQ(DOM_userrecord_tlv_DecodeDisplayRecordNumber(msg.get(), &count), 0u);
    EXPECT_EQ(count, 2u);
}

TEST_F(RecordReply, NumberThatIsTooShortIs0AndNoFailure) {
    const TlvPtr msg(TLV_Create());
    ASSERT_EQ(TLV_Append_Data(msg.get(), 163, 3, "\x01\x01\x01"), 0u);
    uint32_t count = 7;
    EXPECT_EQ(DOM_userrecord_tlv_DecodeDisplayRecordNumber(msg.get(), &count), 0u);
    EXPECT_EQ(count, 0u);
}

TEST_F(RecordReply, NumberNeedsAnOutput) {
    const TlvPtr msg(DOM_userrecord_tlv_EncodeDisplayRecordNumber(70, 1));
    EXPECT_EQ(DOM_userrecord_tlv_DecodeDisplayRecordNumber(msg.get(), nullptr), DOM_ERR_FAILED);
}

class BriefRecord : public RecordTest {
  protected:
    BriefRecord() : fields_(TLV_Create()) {}
    ~BriefRecord() override { free(brief_.detail); }

    static TlvPtr Encode(const UserRecord& record) {
        TlvPtr reply(TLV_Create());
        EXPECT_EQ(DOM_userrecord_tlv_EncodeRecordBrief(reply.get(), &record), 0u);
        EXPECT_EQ(TypesOf(reply.get()), std::vector<uint32_t>{179});
        return FindTlv(reply.get(), 179).Sub();
    }
    void Add(uint16_t type, const std::string& bytes) {
        ASSERT_EQ(
            TLV_Append_Data(fields_.get(), type, static_cast<uint32_t>(bytes.size()), bytes.data()),
            0u);
    }
    void AddNumber(uint16_t type, uint32_t value) {
        ASSERT_EQ(AAA_AppendUINTTlvData(fields_.get(), type, value), 0u);
    }
    uint32_t Decode() { return DOM_userrecord_tlv_DecodeRecordBrief(fields_.get(), &brief_); }
    void ExpectNoDetail() {
        EXPECT_EQ(brief_.detail, nullptr);
        EXPECT_EQ(brief_.detail_len, 0u);
    }

    TlvPtr fields_;
    UserRecordBrief brief_{};
};

TEST_F(BriefRecord, FieldsGoInTheirOrder) {
    const UserRecord record = Sample();
    const TlvPtr fields = Encode(record);
    EXPECT_EQ(TypesOf(fields.get()), (std::vector<uint32_t>{164, 167, 168, 169, 174, 208, 207}));
    EXPECT_EQ(BytesOf(fields.get(), 164),
              std::string(record.second_name, strlen(record.second_name) + 1));
    EXPECT_EQ(BytesOf(fields.get(), 167), std::string("\xC0\x00\x02\x07", 4));
    EXPECT_EQ(BytesOf(fields.get(), 168),
              std::string(reinterpret_cast<const char*>(record.ipv6), sizeof record.ipv6));
    EXPECT_EQ(BytesOf(fields.get(), 169),
              std::string(reinterpret_cast<const char*>(record.mac), sizeof record.mac));
    EXPECT_EQ(FindTlv(fields.get(), 174).U32(), record.second_number);
    EXPECT_EQ(FindTlv(fields.get(), 208).U32(), record.detail_len);
    EXPECT_EQ(BytesOf(fields.get(), 207), std::string(record.detail, record.detail_len));
}

TEST_F(BriefRecord, DetailIsSentOnlyWhenThereIsOne) {
    const std::vector<uint32_t> kWithout{164, 167, 168, 169, 174};
    UserRecord record = Sample();
    record.detail_len = 0;
    EXPECT_EQ(TypesOf(Encode(record).get()), kWithout);
    record = Sample();
    record.detail = nullptr;
    EXPECT_EQ(TypesOf(Encode(record).get()), kWithout);
}

TEST_F(BriefRecord, FullNameIsSentWhole) {
    UserRecord record = Sample();
    memset(record.second_name, 's', sizeof record.second_name);
    EXPECT_EQ(BytesOf(Encode(record).get(), 164), std::string(256, 's') + '\0');
}

TEST_F(BriefRecord, NullArgumentsFail) {
    const TlvPtr reply(TLV_Create());
    const UserRecord record = Sample();
    EXPECT_EQ(DOM_userrecord_tlv_EncodeRecordBrief(reply.get(), nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_userrecord_tlv_EncodeRecordBrief(nullptr, &record), DOM_ERR_FAILED);
    EXPECT_EQ(TLV_GetFirst(reply.get()), nullptr);
    EXPECT_EQ(DOM_userrecord_tlv_DecodeRecordBrief(reply.get(), nullptr), DOM_ERR_FAILED);
}

TEST_F(BriefRecord, FailedAppendLeavesTheReplyAsItWas) {
    const UserRecord record = Sample();
    for (const fake::Event event : {fake::Event::kMessage, fake::Event::kAppend}) {
        for (int n = 1;; ++n) {
            ASSERT_LT(n, 50);
            const TlvPtr reply(DOM_userrecord_tlv_EncodeRecordHeader(1));
            fake::Fail(event, n);
            const uint32_t result = DOM_userrecord_tlv_EncodeRecordBrief(reply.get(), &record);
            const bool tripped = fake::Tripped();
            fake::DisarmFailures();
            if (!tripped) {
                EXPECT_EQ(result, 0u);
                break;
            }
            EXPECT_EQ(result, DOM_ERR_FAILED);
            EXPECT_EQ(TypesOf(reply.get()), std::vector<uint32_t>{177});
            EXPECT_EQ(fake::LiveMessages(), 2) << "the reply and the fixture's";
        }
    }
}

TEST_F(BriefRecord, RecordsStandBehindEachOther) {
    const UserRecord record = Sample();
    const TlvPtr reply(DOM_userrecord_tlv_EncodeRecordHeader(1));
    EXPECT_EQ(DOM_userrecord_tlv_EncodeRecordBrief(reply.get(), &record), 0u);
    EXPECT_EQ(DOM_userrecord_tlv_EncodeRecordVerbose(reply.get(), &record), 0u);
    EXPECT_EQ(DOM_userrecord_tlv_EncodeRecordBrief(reply.get(), &record), 0u);
    EXPECT_EQ(TypesOf(reply.get()), (std::vector<uint32_t>{177, 179, 178, 179}));
}

TEST_F(BriefRecord, ComesBack) {
    const UserRecord record = Sample();
    fields_ = Encode(record);
    ASSERT_EQ(Decode(), 0u);
    EXPECT_EQ(brief_.second_number, record.second_number);
    EXPECT_EQ(memcmp(brief_.ipv4, record.ipv4, sizeof brief_.ipv4), 0);
    EXPECT_EQ(memcmp(brief_.ipv6, record.ipv6, sizeof brief_.ipv6), 0);
    EXPECT_EQ(memcmp(brief_.mac, record.mac, sizeof brief_.mac), 0);
    EXPECT_STREQ(brief_.second_name, record.second_name);
    EXPECT_STREQ(brief_.detail, record.detail);
    EXPECT_EQ(brief_.detail_len, record.detail_len);
}

TEST_F(BriefRecord, VerboseFormReadsAsTheBriefOne) {
    const UserRecord record = Sample();
    EXPECT_EQ(DOM_userrecord_tlv_EncodeUserRecordStruct(fields_.get(), &record), 0u);
    ASSERT_EQ(Decode(), 0u);
    EXPECT_STREQ(brief_.second_name, record.second_name);
    EXPECT_EQ(brief_.second_number, record.second_number);
    EXPECT_STREQ(brief_.detail, record.detail);
}

// What the structure held before is not a text to be kept or freed.
TEST_F(BriefRecord, DetailIsSetWithoutLookingAtWhatItWas) {
    char callers[] = "caller's";
    brief_.detail = callers;
    brief_.detail_len = 9;
    AddNumber(174, 5);
    EXPECT_EQ(Decode(), 0u);
    ExpectNoDetail();
}

TEST_F(BriefRecord, EmptyMessageKeepsTheFieldsAndIsNoFailure) {
    brief_.second_number = 7;
    brief_.second_name[0] = 'x';
    EXPECT_EQ(Decode(), 0u);
    EXPECT_EQ(DOM_userrecord_tlv_DecodeRecordBrief(nullptr, &brief_), 0u);
    EXPECT_EQ(brief_.second_number, 7u);
    EXPECT_STREQ(brief_.second_name, "x");
    ExpectNoDetail();
}

TEST_F(BriefRecord, LengthWithoutATextIsNoDetailAndNoFailure) {
    AddNumber(208, 5);
    EXPECT_EQ(Decode(), 0u);
    ExpectNoDetail();
}

TEST_F(BriefRecord, TextWithoutALengthIsNoDetail) {
    Add(207, "text");
    EXPECT_EQ(Decode(), 0u);
    ExpectNoDetail();
}

TEST_F(BriefRecord, LengthOf0IsNoDetail) {
    AddNumber(208, 0);
    Add(207, "text");
    EXPECT_EQ(Decode(), 0u);
    ExpectNoDetail();
}

TEST_F(BriefRecord, TextMayStandBeforeItsLength) {
    Add(207, std::string("text", 5));
    AddNumber(208, 5);
    EXPECT_EQ(Decode(), 0u);
    EXPECT_STREQ(brief_.detail, "text");
    EXPECT_EQ(brief_.detail_len, 5u);
}

TEST_F(BriefRecord, LastLengthAndFirstTextCount) {
    AddNumber(208, 2);
    AddNumber(208, 6);
    Add(207, std::string("first", 6));
    Add(207, std::string("other", 6));
    EXPECT_EQ(Decode(), 0u);
    EXPECT_STREQ(brief_.detail, "first");
    EXPECT_EQ(brief_.detail_len, 6u);
}

TEST_F(BriefRecord, UnterminatedTextIsTerminated) {
    AddNumber(208, 4);
    Add(207, "text");
    EXPECT_EQ(Decode(), 0u);
    EXPECT_STREQ(brief_.detail, "text");
    EXPECT_EQ(brief_.detail_len, 4u);
}

TEST_F(BriefRecord, LengthBeyondReasonIsNoDetail) {
    AddNumber(208, 0xFFFFFFFFu);
    Add(207, std::string("text", 5));
    EXPECT_EQ(Decode(), 0u);
    ExpectNoDetail();
}

TEST_F(BriefRecord, MemoryShortageCostsTheDetailAlone) {
    AddNumber(174, 5);
    AddNumber(208, 5);
    Add(207, std::string("text", 5));
    fake::FailAllocation(1);
    EXPECT_EQ(Decode(), 0u);
    EXPECT_TRUE(fake::Tripped());
    fake::DisarmFailures();
    EXPECT_EQ(brief_.second_number, 5u);
    ExpectNoDetail();
}

// The MAC is the read that can fail; the walk goes on, and the detail is not fetched.
TEST_F(BriefRecord, ShortMacFailsAndTheDetailIsNotFetched) {
    brief_.mac[0] = 0x77;
    Add(169, "short");
    AddNumber(208, 5);
    Add(207, std::string("text", 5));
    Add(164, std::string("user", 5));
    Add(169, "longer");
    EXPECT_EQ(Decode(), DOM_ERR_FAILED) << "a later one does not replace the failure";
    ExpectNoDetail();
    EXPECT_STREQ(brief_.second_name, "user");
    EXPECT_EQ(memcmp(brief_.mac, "longer", 6), 0);
}

TEST_F(BriefRecord, ShortNumbersReadAs0AndDoNotCount) {
    brief_.second_number = 7;
    Add(174, "abc");
    Add(208, "abc");
    EXPECT_EQ(Decode(), 0u);
    EXPECT_EQ(brief_.second_number, 0u);
    ExpectNoDetail();
}

TEST_F(BriefRecord, LongNameIsCutAndAddressesToo) {
    Add(164, std::string(300, 'n'));
    Add(167, "\x01\x02\x03\x04\x05");
    Add(168, std::string(17, '\x06'));
    EXPECT_EQ(Decode(), 0u);
    EXPECT_EQ(std::string(brief_.second_name), std::string(255, 'n'));
    EXPECT_EQ(memcmp(brief_.ipv4, "\x01\x02\x03\x04", 4), 0);
    EXPECT_EQ(brief_.ipv6[15], 6);
    EXPECT_EQ(brief_.ipv6[0], 6);
}

TEST_F(BriefRecord, OtherFieldsOfARecordAreSkipped) {
    const UserRecordBrief before = brief_;
    AddNumber(166, 1);
    AddNumber(175, 1);
    Add(165, "first");
    Add(170, "eth0");
    EXPECT_EQ(Decode(), 0u);
    EXPECT_EQ(memcmp(&brief_, &before, sizeof before), 0);
}

}  // namespace
