// A user record in its message form.
#include <aaadom/codes.h>
#include <aaadom/user_record.h>

#include <cstring>

#include "unit/userrecord/record_fixture.h"

namespace {

using namespace record_test;

class RecordFields : public RecordTest {};

constexpr uint32_t kFieldTypes[] = {166, 174, 167, 168, 175, 176, 171,
                                    172, 173, 169, 165, 164, 170, 264};

std::vector<uint32_t> WithoutDetail() {
    return {std::begin(kFieldTypes), std::end(kFieldTypes)};
}

TEST_F(RecordFields, OrderWithoutADetailText) {
    UserRecord record = Sample();
    record.detail = nullptr;
    const TlvPtr msg(TLV_Create());
    EXPECT_EQ(DOM_userrecord_tlv_EncodeUserRecordStruct(msg.get(), &record), 0u);
    EXPECT_EQ(TypesOf(msg.get()), WithoutDetail());
}

TEST_F(RecordFields, DetailLengthAndTextComeLast) {
    const UserRecord record = Sample();
    const TlvPtr msg(TLV_Create());
    EXPECT_EQ(DOM_userrecord_tlv_EncodeUserRecordStruct(msg.get(), &record), 0u);
    std::vector<uint32_t> want = WithoutDetail();
    want.push_back(208);
    want.push_back(207);
    EXPECT_EQ(TypesOf(msg.get()), want);
}

TEST_F(RecordFields, DetailNeedsATextAndALength) {
    UserRecord no_length = Sample();
    no_length.detail_len = 0;
    UserRecord no_text = Sample();
    no_text.detail = nullptr;
    for (const UserRecord& record : {no_length, no_text}) {
        const TlvPtr msg(TLV_Create());
        EXPECT_EQ(DOM_userrecord_tlv_EncodeUserRecordStruct(msg.get(), &record), 0u);
        EXPECT_EQ(TypesOf(msg.get()), WithoutDetail());
    }
}

TEST_F(RecordFields, ValuesAndTheirWidths) {
    const UserRecord record = Sample();
    const TlvPtr msg(TLV_Create());
    ASSERT_EQ(DOM_userrecord_tlv_EncodeUserRecordStruct(msg.get(), &record), 0u);
    EXPECT_EQ(BytesOf(msg.get(), 166), std::string("\x01\xF1\x53\x65", 4));
    EXPECT_EQ(BytesOf(msg.get(), 174), std::string("\x0F\x00\x00\x00", 4));
    EXPECT_EQ(BytesOf(msg.get(), 167), std::string("\xC0\x00\x02\x07", 4));
    EXPECT_EQ(BytesOf(msg.get(), 168).size(), 16u);
    EXPECT_EQ(BytesOf(msg.get(), 168).substr(0, 4), "\x20\x01\x0D\xB8");
    EXPECT_EQ(BytesOf(msg.get(), 175), std::string("\x03\x00\x00\x00", 4));
    EXPECT_EQ(BytesOf(msg.get(), 176), std::string("\x04\x00\x00\x00", 4));
    EXPECT_EQ(BytesOf(msg.get(), 171), std::string("\x64\x00", 2));
    EXPECT_EQ(BytesOf(msg.get(), 172), std::string("\xC8\x00", 2));
    EXPECT_EQ(BytesOf(msg.get(), 173), std::string("\x14\x07", 2));
    EXPECT_EQ(BytesOf(msg.get(), 169), std::string("\x02\x00\x5E\x00\x53\x01", 6));
    EXPECT_EQ(BytesOf(msg.get(), 165), std::string("isp-a.example", 14));
    EXPECT_EQ(BytesOf(msg.get(), 164), std::string("user@isp-a.example", 19));
    EXPECT_EQ(BytesOf(msg.get(), 170), std::string("eth1/0/7", 9));
    EXPECT_EQ(BytesOf(msg.get(), 264), std::string("\x08\x07\x06\x05\x04\x03\x02\x01", 8));
    EXPECT_EQ(BytesOf(msg.get(), 208), std::string("\x09\x00\x00\x00", 4));
    EXPECT_EQ(BytesOf(msg.get(), 207), std::string("rejected", 9));
}

TEST_F(RecordFields, NamesWithoutTerminatorStayInsideTheirField) {
    UserRecord record = Sample();
    memset(record.first_name, 'f', sizeof record.first_name);
    memset(record.second_name, 's', sizeof record.second_name);
    memset(record.interface_name, 'i', sizeof record.interface_name);
    const TlvPtr msg(TLV_Create());
    ASSERT_EQ(DOM_userrecord_tlv_EncodeUserRecordStruct(msg.get(), &record), 0u);
    EXPECT_EQ(BytesOf(msg.get(), 165), std::string(256, 'f') + '\0');
    EXPECT_EQ(BytesOf(msg.get(), 164), std::string(256, 's') + '\0');
    EXPECT_EQ(BytesOf(msg.get(), 170), std::string(48, 'i') + '\0');
}

TEST_F(RecordFields, NullArgumentsFail) {
    const UserRecord record = Sample();
    const TlvPtr msg(TLV_Create());
    EXPECT_EQ(DOM_userrecord_tlv_EncodeUserRecordStruct(nullptr, &record), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_userrecord_tlv_EncodeUserRecordStruct(msg.get(), nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_userrecord_tlv_EncodeRecordVerbose(nullptr, &record), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_userrecord_tlv_EncodeRecordVerbose(msg.get(), nullptr), DOM_ERR_FAILED);
    EXPECT_TRUE(TypesOf(msg.get()).empty());
}

TEST_F(RecordFields, EveryFailingAppendFails) {
    const UserRecord record = Sample();
    for (int n = 1; n <= 16; ++n) {
        const TlvPtr msg(TLV_Create());
        fake::FailAppend(n);
        EXPECT_EQ(DOM_userrecord_tlv_EncodeUserRecordStruct(msg.get(), &record), DOM_ERR_FAILED);
        EXPECT_TRUE(fake::Tripped()) << n;
    }
}

TEST_F(RecordFields, VerboseFormIsTheFieldsInTlv178) {
    const UserRecord record = Sample();
    const TlvPtr reply(TLV_Create());
    ASSERT_EQ(DOM_userrecord_tlv_EncodeRecordVerbose(reply.get(), &record), 0u);
    EXPECT_EQ(TypesOf(reply.get()), std::vector<uint32_t>{178});
    const TlvPtr fields(TLV_Create());
    ASSERT_EQ(DOM_userrecord_tlv_EncodeUserRecordStruct(fields.get(), &record), 0u);
    const TlvPtr nested = FindTlv(reply.get(), 178).Sub();
    ASSERT_NE(nested, nullptr);
    EXPECT_EQ(fake::ImageOf(nested.get()), fake::ImageOf(fields.get()));
}

TEST_F(RecordFields, FailedVerboseFormLeavesTheReplyAsItWas) {
    const UserRecord record = Sample();
    for (const fake::Event event : {fake::Event::kMessage, fake::Event::kAppend}) {
        for (int n = 1;; ++n) {
            ASSERT_LT(n, 100);
            const TlvPtr reply(TLV_Create());
            fake::Fail(event, n);
            const uint32_t result = DOM_userrecord_tlv_EncodeRecordVerbose(reply.get(), &record);
            const bool tripped = fake::Tripped();
            fake::DisarmFailures();
            if (!tripped) break;
            EXPECT_EQ(result, DOM_ERR_FAILED);
            EXPECT_TRUE(TypesOf(reply.get()).empty()) << n;
            EXPECT_EQ(fake::LiveMessages(), 1) << n;
        }
    }
}

}  // namespace
