// The message with which an access module reports a user record.
#include <cstdlib>

#include "unit/userrecord/record_fixture.h"

namespace {

using namespace record_test;
using golden::SampleSource;

constexpr uint32_t kContentTypes[] = {164, 165, 166, 167, 168, 169, 170,
                                      171, 172, 173, 174, 175, 176};
constexpr uint32_t kInterface = 7;

std::vector<uint32_t> WithoutDetail() {
    return {std::begin(kContentTypes), std::end(kContentTypes)};
}

class RecordContent : public RecordTest {
  protected:
    RecordContent() : msg_(TLV_Create()) {}
    ~RecordContent() override { msg_.reset(); }

    /// The nested message of TLV 178.
    TlvPtr Content(const UserRecordSource& source) {
        EXPECT_EQ(DOM_userrecord_tlv_EncodeRecordContent(msg_.get(), &source), DOM_OK);
        return FindTlv(msg_.get(), 178).Sub();
    }

    TlvPtr msg_;
};

TEST_F(RecordContent, IsOneTlvWithTheFieldsInTheirOrder) {
    const TlvPtr content = Content(SampleSource(false));
    EXPECT_EQ(TypesOf(msg_.get()), std::vector<uint32_t>{178});
    EXPECT_EQ(TypesOf(content.get()), WithoutDetail());
}

TEST_F(RecordContent, DetailLengthAndTextComeLast) {
    const TlvPtr content = Content(SampleSource());
    std::vector<uint32_t> want = WithoutDetail();
    want.push_back(208);
    want.push_back(207);
    EXPECT_EQ(TypesOf(content.get()), want);
}

TEST_F(RecordContent, DetailNeedsATextAndALength) {
    UserRecordSource no_length = SampleSource();
    no_length.detail_len = 0;
    UserRecordSource no_text = SampleSource();
    no_text.detail = nullptr;
    for (const UserRecordSource& source : {no_length, no_text}) {
        msg_.reset(TLV_Create());
        EXPECT_EQ(TypesOf(Content(source).get()), WithoutDetail());
    }
}

TEST_F(RecordContent, ValuesAndTheirWidths) {
    const TlvPtr content = Content(SampleSource());
    TLV_MSG* msg = content.get();
    EXPECT_EQ(BytesOf(msg, 164), std::string("user@isp-a.example", 19));
    EXPECT_EQ(BytesOf(msg, 165), std::string("isp-a.example", 14));
    EXPECT_EQ(BytesOf(msg, 166), std::string("\x01\xF1\x53\x65", 4));
    EXPECT_EQ(BytesOf(msg, 167), std::string("\xC0\x00\x02\x07", 4));
    EXPECT_EQ(BytesOf(msg, 168), std::string("\x20\x01\x0D\xB8\0\0\0\0\0\0\0\0\0\0\0\x07", 16));
    EXPECT_EQ(BytesOf(msg, 169), std::string("\x02\x00\x5E\x00\x53\x01", 6));
    EXPECT_EQ(BytesOf(msg, 171), std::string("\x64\x00", 2));
    EXPECT_EQ(BytesOf(msg, 172), std::string("\xC8\x00", 2));
    EXPECT_EQ(BytesOf(msg, 173), std::string("\x14\x07", 2));
    EXPECT_EQ(BytesOf(msg, 174), std::string("\x0F\x00\x00\x00", 4));
    EXPECT_EQ(BytesOf(msg, 175), std::string("\x03\x00\x00\x00", 4));
    EXPECT_EQ(BytesOf(msg, 176), std::string("\x04\x00\x00\x00", 4));
    EXPECT_EQ(BytesOf(msg, 208), std::string("\x09\x00\x00\x00", 4));
    EXPECT_EQ(BytesOf(msg, 207), std::string("rejected", 9));
}

TEST_F(RecordContent, InterfaceIsNamedByItsIndex) {
    fake::SetInterfaceName(kInterface, "eth1/0/7");
    UserRecordSource source = SampleSource();
    source.interface_index = kInterface;
    EXPECT_EQ(BytesOf(Content(source).get(), 170), std::string("eth1/0/7", 9));
}

TEST_F(RecordContent, LongInterfaceNameIsCut) {
    fake::SetInterfaceName(kInterface, std::string(60, 'i'));
    UserRecordSource source = SampleSource();
    source.interface_index = kInterface;
    EXPECT_EQ(BytesOf(Content(source).get(), 170), std::string(47, 'i') + '\0');
}

TEST_F(RecordContent, NoInterfaceHasAnEmptyName) {
    fake::SetInterfaceName(0, "nobody asks for this");
    EXPECT_EQ(BytesOf(Content(SampleSource()).get(), 170), std::string(1, '\0'));
}

TEST_F(RecordContent, UnknownInterfaceHasAnEmptyName) {
    UserRecordSource source = SampleSource();
    source.interface_index = kInterface;
    EXPECT_EQ(BytesOf(Content(source).get(), 170), std::string(1, '\0'));
}

TEST_F(RecordContent, NamesWithoutTerminatorStayInsideTheirField) {
    UserRecordSource source = SampleSource();
    memset(source.first_name, 'f', sizeof source.first_name);
    memset(source.second_name, 's', sizeof source.second_name);
    const TlvPtr content = Content(source);
    EXPECT_EQ(BytesOf(content.get(), 165), std::string(256, 'f') + '\0');
    EXPECT_EQ(BytesOf(content.get(), 164), std::string(256, 's') + '\0');
}

TEST_F(RecordContent, NullArgumentsFail) {
    const UserRecordSource source = SampleSource();
    EXPECT_EQ(DOM_userrecord_tlv_EncodeRecordContent(nullptr, &source), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_userrecord_tlv_EncodeRecordContent(msg_.get(), nullptr), DOM_ERR_FAILED);
    EXPECT_TRUE(TypesOf(msg_.get()).empty());
}

TEST_F(RecordContent, EveryFailureLeavesTheMessageAsItWas) {
    const UserRecordSource source = SampleSource();
    for (const fake::Event event : {fake::Event::kMessage, fake::Event::kAppend}) {
        const int count = event == fake::Event::kMessage ? 1 : 16;
        for (int n = 1; n <= count; ++n) {
            fake::Fail(event, n);
            EXPECT_EQ(DOM_userrecord_tlv_EncodeRecordContent(msg_.get(), &source), DOM_ERR_FAILED);
            EXPECT_TRUE(fake::Tripped()) << n;
            fake::DisarmFailures();
            EXPECT_TRUE(TypesOf(msg_.get()).empty()) << n;
            EXPECT_EQ(fake::LiveMessages(), 1) << n;
        }
    }
}

// --- the whole message

class RecordReport : public RecordTest {
  protected:
    RecordReport() : msg_(TLV_Create()), append_(msg_.get()) {}
    ~RecordReport() override {
        free(record_.detail);
        msg_.reset();
    }
    uint32_t Decode() { return PAM_DecUserRecordMsg(msg_.get(), &record_type_, &flags_, &record_); }
    /// A TLV 178 with these fields.
    template <typename Fields>
    void AppendContent(Fields&& fields) {
        append_.Nested(178, fields);
        ASSERT_FALSE(append_.Failed());
    }
    void AppendBrokenContent() { append_.Raw(178, "no message", 10); }

    TlvPtr msg_;
    aaadom::Appender append_;
    uint32_t record_type_ = 77;
    uint16_t flags_ = 78;
    UserRecord record_{};
};

TEST_F(RecordReport, IsTheListTheFlagsAndTheRecordWithoutACode) {
    const UserRecordSource source = SampleSource();
    const TlvPtr report(PAM_EncUserRecordMsg(DOM_RECORD_ABNORMAL_OFFLINE, 0x1234, &source));
    EXPECT_EQ(TypesOf(report.get()), (std::vector<uint32_t>{180, 185, 178}));
    EXPECT_EQ(BytesOf(report.get(), 180), std::string("\x03\0\0\0", 4));
    EXPECT_EQ(BytesOf(report.get(), 185), std::string("\x34\x12", 2));
    ASSERT_EQ(DOM_userrecord_tlv_EncodeRecordContent(msg_.get(), &source), DOM_OK);
    EXPECT_EQ(BytesOf(report.get(), 178), BytesOf(msg_.get(), 178));
}

// The receiver refuses lists that it does not know; the module need not be of the same release.
TEST_F(RecordReport, AnyListIsSent) {
    const UserRecordSource source = SampleSource();
    for (const uint32_t record_type : {0u, 2u, 5u, 0xFFFFFFFFu}) {
        const TlvPtr report(PAM_EncUserRecordMsg(record_type, 0, &source));
        ASSERT_NE(report, nullptr);
        EXPECT_EQ(FindTlv(report.get(), 180).U32(), record_type);
    }
}

TEST_F(RecordReport, NullRecordGivesNoMessage) {
    EXPECT_EQ(PAM_EncUserRecordMsg(1, 0, nullptr), nullptr);
}

TEST_F(RecordReport, EveryFailureGivesNoMessage) {
    const UserRecordSource source = SampleSource();
    for (const fake::Event event : {fake::Event::kMessage, fake::Event::kAppend}) {
        const int count = event == fake::Event::kMessage ? 2 : 18;
        for (int n = 1; n <= count; ++n) {
            fake::Fail(event, n);
            EXPECT_EQ(PAM_EncUserRecordMsg(1, 0, &source), nullptr) << n;
            EXPECT_TRUE(fake::Tripped()) << n;
            fake::DisarmFailures();
            EXPECT_EQ(fake::LiveMessages(), 1) << "the fixture's";
        }
    }
}

TEST_F(RecordReport, ComesBackAsTheRecordWithTheInterfacesName) {
    fake::SetInterfaceName(kInterface, "eth1/0/7");
    UserRecordSource source = SampleSource();
    source.interface_index = kInterface;
    msg_.reset(PAM_EncUserRecordMsg(DOM_RECORD_NORMAL_OFFLINE, 5, &source));
    EXPECT_EQ(Decode(), DOM_OK);
    EXPECT_EQ(record_type_, uint32_t{DOM_RECORD_NORMAL_OFFLINE});
    EXPECT_EQ(flags_, 5);
    EXPECT_STREQ(record_.detail, "rejected");
    UserRecord want = Sample();
    want.serial = 0;
    UserRecord got = record_;
    got.detail = want.detail;
    EXPECT_EQ(memcmp(&got, &want, sizeof want), 0);
}

TEST_F(RecordReport, ReportHasNoSerialNumberSoTheRecordKeepsItsOwn) {
    const UserRecordSource source = SampleSource(false);
    msg_.reset(PAM_EncUserRecordMsg(1, 0, &source));
    record_.serial = 17;
    EXPECT_EQ(Decode(), DOM_OK);
    EXPECT_EQ(record_.serial, 17u);
}

TEST_F(RecordReport, VerboseFormOfARecordIsReadWithItsSerialNumber) {
    const UserRecord record = Sample();
    ASSERT_EQ(DOM_userrecord_tlv_EncodeRecordVerbose(msg_.get(), &record), DOM_OK);
    EXPECT_EQ(Decode(), DOM_OK);
    EXPECT_EQ(record_.serial, record.serial);
}

TEST_F(RecordReport, EveryOutputIsNeeded) {
    append_.U32(180, 3).U16(185, 5);
    EXPECT_EQ(PAM_DecUserRecordMsg(msg_.get(), nullptr, &flags_, &record_), DOM_ERR_FAILED);
    EXPECT_EQ(PAM_DecUserRecordMsg(msg_.get(), &record_type_, nullptr, &record_), DOM_ERR_FAILED);
    EXPECT_EQ(PAM_DecUserRecordMsg(msg_.get(), &record_type_, &flags_, nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(record_type_, 77u);
    EXPECT_EQ(flags_, 78);
}

TEST_F(RecordReport, EmptyMessageIsNoFailureAndKeepsTheOutputs) {
    EXPECT_EQ(Decode(), DOM_OK);
    EXPECT_EQ(PAM_DecUserRecordMsg(nullptr, &record_type_, &flags_, &record_), DOM_OK);
    EXPECT_EQ(record_type_, 77u);
    EXPECT_EQ(flags_, 78);
}

TEST_F(RecordReport, DetailPointerOfBeforeIsNeitherKeptNorFreed) {
    char elsewhere[] = "not the record's to free";
    const auto expect_cleared = [&] {
        record_.detail = elsewhere;
        record_.detail_len = 77;
        EXPECT_EQ(Decode(), DOM_OK);
        EXPECT_EQ(record_.detail, nullptr);
        EXPECT_EQ(record_.detail_len, 0u);
    };
    expect_cleared();
    AppendContent([](aaadom::Appender& fields) { fields.U32(166, 1); });
    expect_cleared();
}

TEST_F(RecordReport, OtherTlvsAreSkipped) {
    append_.U32(0, 173).U32(180, 4).Text(9999, "x").U16(185, 5);
    EXPECT_EQ(Decode(), DOM_OK);
    EXPECT_EQ(record_type_, 4u);
    EXPECT_EQ(flags_, 5);
}

TEST_F(RecordReport, ShortListIsZeroAndNoFailure) {
    append_.Raw(180, "abc", 3);
    EXPECT_EQ(Decode(), DOM_OK);
    EXPECT_EQ(record_type_, 0u);
}

TEST_F(RecordReport, ShortFlagsFailAndStay) {
    append_.Raw(185, "a", 1);
    EXPECT_EQ(Decode(), DOM_ERR_FAILED);
    EXPECT_EQ(flags_, 78);
}

TEST_F(RecordReport, BrokenRecordFails) {
    append_.U16(185, 5);
    AppendBrokenContent();
    EXPECT_EQ(Decode(), DOM_ERR_FAILED);
    EXPECT_EQ(flags_, 5);
}

// Modules may send a placeholder in front of the flags and the record behind; combining the
// results would refuse their records.
TEST_F(RecordReport, FlagsReplaceTheFailureOfARecordInFrontOfThem) {
    AppendBrokenContent();
    append_.U16(185, 5);
    EXPECT_EQ(Decode(), DOM_OK);
}

// Without memory for it a record in front of the flags was lost, and its module was told that it
// had been read.
TEST_F(RecordReport, FlagsDoNotReplaceTheWantOfMemoryForARecordInFrontOfThem) {
    const UserRecordSource source = SampleSource();
    ASSERT_EQ(DOM_userrecord_tlv_EncodeRecordContent(msg_.get(), &source), DOM_OK);
    append_.U16(185, 5);
    fake::FailMessage(1);
    EXPECT_EQ(Decode(), DOM_ERR_FAILED);
    EXPECT_TRUE(fake::Tripped());
}

TEST_F(RecordReport, FlagsReplaceTheFailureOfFlagsInFrontOfThem) {
    append_.Raw(185, "a", 1).U16(185, 5);
    EXPECT_EQ(Decode(), DOM_OK);
    EXPECT_EQ(flags_, 5);
}

TEST_F(RecordReport, ListDoesNotReplaceAFailureInFrontOfIt) {
    AppendBrokenContent();
    append_.U32(180, 3);
    EXPECT_EQ(Decode(), DOM_ERR_FAILED);
    EXPECT_EQ(record_type_, 3u);
}

TEST_F(RecordReport, RecordDoesNotReplaceTheFailureOfTheFlags) {
    append_.Raw(185, "a", 1);
    AppendContent([](aaadom::Appender& fields) { fields.U32(166, 9); });
    EXPECT_EQ(Decode(), DOM_ERR_FAILED);
    EXPECT_EQ(record_.first_number, 9u);
}

TEST_F(RecordReport, GoodRecordDoesNotMendABrokenOne) {
    AppendBrokenContent();
    AppendContent([](aaadom::Appender& fields) { fields.U32(166, 9); });
    EXPECT_EQ(Decode(), DOM_ERR_FAILED);
    EXPECT_EQ(record_.first_number, 9u);
}

TEST_F(RecordReport, FieldThatCannotBeReadFails) {
    AppendContent([](aaadom::Appender& fields) { fields.Raw(169, "abc", 3); });
    EXPECT_EQ(Decode(), DOM_ERR_FAILED);
}

TEST_F(RecordReport, DetailTextOfTheSecondRecordReplacesThatOfTheFirst) {
    AppendContent([](aaadom::Appender& fields) { fields.U32(208, 4).Raw(207, "one", 4); });
    AppendContent([](aaadom::Appender& fields) { fields.U32(208, 4).Raw(207, "two", 4); });
    EXPECT_EQ(Decode(), DOM_OK);
    EXPECT_STREQ(record_.detail, "two");
}

TEST_F(RecordReport, SecondRecordWithoutDetailTextKeepsThatOfTheFirst) {
    AppendContent([](aaadom::Appender& fields) { fields.U32(208, 4).Raw(207, "one", 4); });
    AppendContent([](aaadom::Appender& fields) { fields.U32(166, 1); });
    EXPECT_EQ(Decode(), DOM_OK);
    EXPECT_STREQ(record_.detail, "one");
}

TEST_F(RecordReport, RecordOwnsItsDetailTextAfterAFailure) {
    AppendContent([](aaadom::Appender& fields) { fields.U32(208, 4).Raw(207, "one", 4); });
    AppendBrokenContent();
    EXPECT_EQ(Decode(), DOM_ERR_FAILED);
    EXPECT_STREQ(record_.detail, "one");
}

TEST_F(RecordReport, ShortMemoryWhileReadingLeavesNothingBehind) {
    const UserRecordSource source = SampleSource();
    msg_.reset(PAM_EncUserRecordMsg(1, 0, &source));
    for (int n = 1;; ++n) {
        ASSERT_LT(n, 100);
        fake::FailAny(n);
        (void)Decode();
        const bool tripped = fake::Tripped();
        fake::DisarmFailures();
        free(record_.detail);
        record_.detail = nullptr;
        EXPECT_EQ(fake::LiveMessages(), 1) << n;
        if (!tripped) break;
    }
}

}  // namespace
