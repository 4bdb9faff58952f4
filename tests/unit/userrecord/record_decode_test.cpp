// Reading a user record and its detail text out of a message.
#include <cstdlib>

#include "unit/userrecord/record_fixture.h"

namespace {

using namespace record_test;

class RecordDecode : public RecordTest {
  protected:
    RecordDecode() : msg_(TLV_Create()), append_(msg_.get()) {}
    ~RecordDecode() override {
        free(record_.detail);
        msg_.reset();
    }
    uint32_t Decode() {
        free(record_.detail);
        record_.detail = nullptr;
        return DOM_userrecord_tlv_DecodeUserRecordStruct(msg_.get(), &record_);
    }
    void ExpectNoDetail() {
        EXPECT_EQ(record_.detail, nullptr);
        EXPECT_EQ(record_.detail_len, 0u);
    }
    void ExpectFieldsOf(const UserRecord& want) {
        UserRecord got = record_;
        got.detail = want.detail;
        EXPECT_EQ(memcmp(&got, &want, sizeof want), 0);
    }

    TlvPtr msg_;
    aaadom::Appender append_;
    UserRecord record_{};
};

TEST_F(RecordDecode, GivesBackWhatWasEncoded) {
    const UserRecord record = Sample();
    ASSERT_EQ(DOM_userrecord_tlv_EncodeUserRecordStruct(msg_.get(), &record), DOM_OK);
    EXPECT_EQ(Decode(), DOM_OK);
    ExpectFieldsOf(record);
    EXPECT_STREQ(record_.detail, "rejected");
}

TEST_F(RecordDecode, GivesBackARecordWithoutDetailText) {
    const UserRecord record = golden::SampleRecord(false);
    ASSERT_EQ(DOM_userrecord_tlv_EncodeUserRecordStruct(msg_.get(), &record), DOM_OK);
    EXPECT_EQ(Decode(), DOM_OK);
    ExpectFieldsOf(record);
    ExpectNoDetail();
}

TEST_F(RecordDecode, EmptyMessageChangesTheDetailTextOnly) {
    char elsewhere[] = "not the record's to free";
    for (TLV_MSG* msg : {static_cast<TLV_MSG*>(nullptr), msg_.get()}) {
        record_ = golden::SampleRecord(false);
        record_.detail = elsewhere;
        record_.detail_len = 77;
        EXPECT_EQ(DOM_userrecord_tlv_DecodeUserRecordStruct(msg, &record_), DOM_OK);
        ExpectNoDetail();
        ExpectFieldsOf(golden::SampleRecord(false));
    }
}

TEST_F(RecordDecode, NullRecordFails) {
    EXPECT_EQ(DOM_userrecord_tlv_DecodeUserRecordStruct(msg_.get(), nullptr), DOM_ERR_FAILED);
}

TEST_F(RecordDecode, NamesAreCutToTheirField) {
    append_.Text(165, std::string(300, 'f').c_str())
        .Text(164, std::string(300, 's').c_str())
        .Text(170, std::string(300, 'i').c_str());
    EXPECT_EQ(Decode(), DOM_OK);
    EXPECT_EQ(record_.first_name, std::string(255, 'f'));
    EXPECT_EQ(record_.second_name, std::string(255, 's'));
    EXPECT_EQ(record_.interface_name, std::string(47, 'i'));
}

TEST_F(RecordDecode, LastOfSeveralTlvsCountsAndOthersAreSkipped) {
    append_.U32(1, 99).U32(166, 1).U32(166, 2).U64(264, 3).U64(264, 4).Text(9999, "x");
    EXPECT_EQ(Decode(), DOM_OK);
    EXPECT_EQ(record_.first_number, 2u);
    EXPECT_EQ(record_.serial, 4u);
}

TEST_F(RecordDecode, ShortMacFailsAndTheRestIsRead) {
    append_.Raw(169, "abcde", 5).U32(166, 7);
    EXPECT_EQ(Decode(), DOM_ERR_FAILED);
    EXPECT_EQ(record_.first_number, 7u);
    EXPECT_EQ(record_.mac[0], 0);
}

TEST_F(RecordDecode, ShortNumbersOfSixteenBitsFail) {
    for (const uint16_t type : {171, 172, 173}) {
        msg_.reset(TLV_Create());
        aaadom::Appender append(msg_.get());
        append.Raw(type, "a", 1).U16(171, 5).U16(172, 6).U16(173, 7);
        EXPECT_EQ(Decode(), DOM_ERR_FAILED) << "a later good TLV does not mend it: " << type;
        EXPECT_EQ(record_.number16[2], 7);
    }
}

// The numbers' readers have no result to give, and receivers count on records with odd numbers.
TEST_F(RecordDecode, ShortNumbersOfThirtyTwoAndSixtyFourBitsAreZeroAndNoFailure) {
    record_ = golden::SampleRecord(false);
    for (const uint16_t type : {166, 174, 175, 176}) append_.Raw(type, "abc", 3);
    append_.Raw(264, "abcdefg", 7);
    EXPECT_EQ(Decode(), DOM_OK);
    EXPECT_EQ(record_.first_number, 0u);
    EXPECT_EQ(record_.second_number, 0u);
    EXPECT_EQ(record_.third_number, 0u);
    EXPECT_EQ(record_.fourth_number, 0u);
    EXPECT_EQ(record_.serial, 0u);
}

TEST_F(RecordDecode, ShortAddressesGiveTheirBytesAndNoFailure) {
    append_.Raw(167, "ab", 2).Raw(168, "cd", 2);
    EXPECT_EQ(Decode(), DOM_OK);
    EXPECT_EQ(memcmp(record_.ipv4, "ab\0\0", 4), 0);
    EXPECT_EQ(memcmp(record_.ipv6, "cd\0\0", 4), 0);
}

TEST_F(RecordDecode, RecordWithoutSerialNumberKeepsTheOld) {
    record_.serial = 17;
    append_.U32(166, 1);
    EXPECT_EQ(Decode(), DOM_OK);
    EXPECT_EQ(record_.serial, 17u);
}

TEST_F(RecordDecode, DetailTextMayStandInFrontOfItsLength) {
    append_.Raw(207, "why", 4).U32(208, 4);
    EXPECT_EQ(Decode(), DOM_OK);
    EXPECT_STREQ(record_.detail, "why");
}

TEST_F(RecordDecode, DetailTextThatCannotBeHadIsNoFailure) {
    append_.U32(208, 5).Text(165, "isp");
    EXPECT_EQ(Decode(), DOM_OK);
    ExpectNoDetail();
    EXPECT_STREQ(record_.first_name, "isp");
}

TEST_F(RecordDecode, DetailTextWithoutLengthIsNotRead) {
    append_.Raw(207, "why", 4);
    EXPECT_EQ(Decode(), DOM_OK);
    ExpectNoDetail();
}

TEST_F(RecordDecode, SecondLengthReplacesTheTextOfTheFirst) {
    append_.U32(208, 2).U32(208, 4).Raw(207, "why", 4);
    EXPECT_EQ(Decode(), DOM_OK);
    EXPECT_STREQ(record_.detail, "why");
    EXPECT_EQ(record_.detail_len, 4u);
}

// Fetched at each length, a packet full of lengths would be searched and allocated for each of
// them.
TEST_F(RecordDecode, DetailTextIsFetchedOnceHoweverManyLengthsThereAre) {
    for (uint32_t n = 0; n < 100; ++n) append_.U32(208, 65535 - n);
    append_.Raw(207, "why", 4);
    const uint64_t allocations = fake::Count(fake::Event::kAllocation);
    EXPECT_EQ(Decode(), DOM_OK);
    EXPECT_EQ(fake::Count(fake::Event::kAllocation), allocations + 1);
    EXPECT_STREQ(record_.detail, "why");
    EXPECT_EQ(record_.detail_len, 65535u - 99);
}

TEST_F(RecordDecode, SecondLengthOfZeroTakesTheTextAway) {
    append_.U32(208, 4).Raw(207, "why", 4).U32(208, 0);
    EXPECT_EQ(Decode(), DOM_OK);
    ExpectNoDetail();
}

TEST_F(RecordDecode, RecordKeepsItsDetailTextAfterAFailure) {
    append_.U32(208, 4).Raw(207, "why", 4).Raw(169, "", 0);
    EXPECT_EQ(Decode(), DOM_ERR_FAILED);
    EXPECT_STREQ(record_.detail, "why");
}

TEST_F(RecordDecode, ShortMemoryCostsTheDetailTextOnly) {
    append_.U32(208, 4).Raw(207, "why", 4).U32(166, 5);
    fake::FailAllocation(1);
    EXPECT_EQ(DOM_userrecord_tlv_DecodeUserRecordStruct(msg_.get(), &record_), DOM_OK);
    EXPECT_TRUE(fake::Tripped());
    ExpectNoDetail();
    EXPECT_EQ(record_.first_number, 5u);
}

TEST_F(RecordDecode, EverySingleTypeOfEveryLengthIsReadInsideItsBytes) {
    for (const uint16_t type :
         {164, 165, 166, 167, 168, 169, 170, 171, 172, 173, 174, 175, 176, 207, 208, 264}) {
        for (const uint32_t length : {0u, 1u, 3u, 7u, 15u, 47u, 48u, 255u, 256u, 700u}) {
            msg_.reset(TLV_Create());
            aaadom::Appender append(msg_.get());
            const std::string value(length, '\xFF');
            append.Raw(type, value.data(), length).Raw(207, value.data(), length);
            (void)Decode();
            EXPECT_LE(strnlen(record_.first_name, 256), 255u);
            EXPECT_LE(strnlen(record_.second_name, 256), 255u);
            EXPECT_LE(strnlen(record_.interface_name, 48), 47u);
        }
    }
}

// --- the message of a record alone

TEST_F(RecordDecode, MessageOfARecordHoldsItsFieldsAndNoCode) {
    const UserRecord record = Sample();
    const TlvPtr alone(DOM_userrecord_tlv_EncodeUserRecordStructTlv(&record));
    ASSERT_EQ(DOM_userrecord_tlv_EncodeUserRecordStruct(msg_.get(), &record), DOM_OK);
    EXPECT_EQ(fake::ImageOf(alone.get()), fake::ImageOf(msg_.get()));
}

TEST_F(RecordDecode, MessageOfARecordIsNullOnEveryFailure) {
    EXPECT_EQ(DOM_userrecord_tlv_EncodeUserRecordStructTlv(nullptr), nullptr);
    const UserRecord record = Sample();
    for (int n = 1; n <= 16; ++n) {
        fake::FailAppend(n);
        EXPECT_EQ(DOM_userrecord_tlv_EncodeUserRecordStructTlv(&record), nullptr) << n;
        EXPECT_TRUE(fake::Tripped());
    }
    fake::FailMessage(1);
    EXPECT_EQ(DOM_userrecord_tlv_EncodeUserRecordStructTlv(&record), nullptr);
    EXPECT_EQ(fake::LiveMessages(), 1) << "the fixture's";
}

// --- the detail text

class DetailText : public RecordDecode {
  protected:
    std::string Get(uint32_t length, uint32_t bytes) {
        char* const text = DOM_userrecord_tlv_GetReplyMessage(msg_.get(), &length);
        if (text == nullptr) {
            EXPECT_EQ(length, 0u);
            return "(none)";
        }
        const std::string got(text, bytes);
        free(text);
        return got;
    }
};

TEST_F(DetailText, IsTheValueOfTheFirstTlv) {
    append_.Raw(207, "why", 4).Raw(207, "who", 4);
    EXPECT_EQ(Get(4, 4), std::string("why\0", 4));
}

TEST_F(DetailText, LengthStaysAsGiven) {
    append_.Raw(207, "why", 4);
    for (const uint32_t given : {2u, 4u, 100u}) {
        uint32_t length = given;
        char* const text = DOM_userrecord_tlv_GetReplyMessage(msg_.get(), &length);
        EXPECT_NE(text, nullptr);
        EXPECT_EQ(length, given);
        free(text);
    }
}

TEST_F(DetailText, LengthOfZeroGivesNone) {
    append_.Raw(207, "why", 4);
    EXPECT_EQ(Get(0, 0), "(none)");
}

TEST_F(DetailText, WithoutTlvGivesNoneAndLengthZero) {
    append_.U32(208, 5);
    EXPECT_EQ(Get(5, 0), "(none)");
}

TEST_F(DetailText, ShorterValueIsFollowedByZeros) {
    append_.Raw(207, "why", 3);
    EXPECT_EQ(Get(6, 7), std::string("why\0\0\0\0", 7));
}

TEST_F(DetailText, LongerValueIsCutAndTerminated) {
    append_.Raw(207, "rejected", 9);
    EXPECT_EQ(Get(3, 4), std::string("rej\0", 4));
}

TEST_F(DetailText, EmptyValueIsAText) {
    append_.Raw(207, "", 0);
    EXPECT_EQ(Get(2, 3), std::string(3, '\0'));
}

TEST_F(DetailText, LengthThatTheMessageDoesNotHoldIsRefusedBeforeAllocating) {
    append_.Raw(207, "why", 4);
    for (const uint32_t length : {65536u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
        const uint64_t allocations = fake::Count(fake::Event::kAllocation);
        EXPECT_EQ(Get(length, 0), "(none)");
        EXPECT_EQ(fake::Count(fake::Event::kAllocation), allocations);
    }
    EXPECT_EQ(Get(65535, 3), "why");
}

TEST_F(DetailText, LongTextsThatTheMessageHoldsAreCopiedWhole) {
    const std::string value(70000, 'd');
    append_.Raw(207, value.data(), 70000);
    EXPECT_EQ(Get(70000, 70000), value);
    EXPECT_EQ(Get(70001, 0), "(none)");
}

TEST_F(DetailText, ShortMemoryGivesNone) {
    append_.Raw(207, "why", 4);
    uint32_t length = 4;
    fake::FailAllocation(1);
    EXPECT_EQ(DOM_userrecord_tlv_GetReplyMessage(msg_.get(), &length), nullptr);
    EXPECT_TRUE(fake::Tripped());
    EXPECT_EQ(length, 0u);
}

TEST_F(DetailText, NullArgumentsGiveNone) {
    append_.Raw(207, "why", 4);
    uint32_t length = 4;
    EXPECT_EQ(DOM_userrecord_tlv_GetReplyMessage(nullptr, &length), nullptr);
    EXPECT_EQ(length, 0u);
    EXPECT_EQ(DOM_userrecord_tlv_GetReplyMessage(msg_.get(), nullptr), nullptr);
}

}  // namespace
