#include <aaadom/profile_codec.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include "unit/mgmt/channel_fixture.h"

namespace aaadom {
namespace {

constexpr uint32_t kPreset = 0xDEADBEEFu;
constexpr uint32_t kCallersOp = 0x51u;

class ProfileHandlerTest : public ChannelTest {
  protected:
    /// Answers with these TLVs.
    template <typename Fields>
    static void AnswerTlvs(uint16_t kind, Fields fields) {
        Answer(kind, [fields] {
            TLV_MSG* body = TLV_Create();
            Appender append(body);
            fields(append);
            return body;
        });
    }

    uint32_t result_ = kPreset;
    char name_[32] = "untouched";
};

// --- changes of a profile
// ------------------------------------------------------------------------

struct ProfileSetter {
    const char* title;
    uint32_t (*call)(const char*, uint32_t, uint32_t*, char*);
    TLV_MSG* (*encode)(const char*);
    uint32_t code;
    uint16_t name_tlv;
    uint16_t others_name_tlv;
    std::vector<uint32_t> taken;
};

const ProfileSetter kProfileSetters[] = {
    {"Critical",
     MOR_SetAaaCriticalProfile,
     DOM_clitical_tlv_EncodeCriticalProfile,
     147,
     389,
     430,
     {0, 12, 13}},
    {"Author", MOR_SetAaaAuthorProfile, DOM_author_tlv_EncodeAuthorProfile, 156, 430, 389, {0, 19}},
};

class ProfileSetterTest : public ProfileHandlerTest,
                          public ::testing::WithParamInterface<ProfileSetter> {
  protected:
    uint32_t SetProfile() {
        result_ = kPreset;
        strcpy(name_, "untouched");
        return GetParam().call("Profile", kCallersOp, &result_, name_);
    }
};

TEST_P(ProfileSetterTest, IsSentWithTheCallersOperation) {
    AnswerResult(0);
    EXPECT_EQ(SetProfile(), DOM_OK);
    EXPECT_EQ(LastSent().op, kCallersOp);
    EXPECT_EQ(LastSent().code, GetParam().code);
    const TlvPtr expected(GetParam().encode("Profile"));
    EXPECT_EQ(LastSent().image, fake::ImageOf(expected.get()));
    EXPECT_EQ(fake::FlushCalls().size(), 1u);
}

// Deleting a critical profile that is not there counts as taken, deleting an authorization profile
// that is not there does not.
TEST_P(ProfileSetterTest, ResultsThatMeanTakenAreZeroAllOthersOne) {
    for (uint32_t answered = 0; answered <= 64; ++answered) {
        AnswerResult(answered);
        const auto& taken = GetParam().taken;
        const bool is_taken = std::find(taken.begin(), taken.end(), answered) != taken.end();
        EXPECT_EQ(SetProfile(), is_taken ? 0u : 1u) << answered;
        EXPECT_EQ(result_, answered);
        EXPECT_STREQ(name_, "untouched");
    }
    AnswerResult(DOM_ERR_FAILED);
    EXPECT_EQ(SetProfile(), 1u);
    EXPECT_EQ(result_, DOM_ERR_FAILED);
}

TEST_P(ProfileSetterTest, NameOfTheReplyIsReadOnEitherSideOfTheResult) {
    const uint16_t tlv = GetParam().name_tlv;
    AnswerTlvs(DOM_REPLY_KIND_RESULT,
               [=](Appender& append) { append.Text(tlv, "stored").U32(DOM_TLV_RESULT, 0); });
    EXPECT_EQ(SetProfile(), DOM_OK);
    EXPECT_STREQ(name_, "stored");
    AnswerTlvs(DOM_REPLY_KIND_RESULT,
               [=](Appender& append) { append.U32(DOM_TLV_RESULT, 1).Text(tlv, "stored"); });
    EXPECT_EQ(SetProfile(), 1u);
    EXPECT_STREQ(name_, "stored");
}

TEST_P(ProfileSetterTest, NameOfTheReplyIsCutTo31Characters) {
    const uint16_t tlv = GetParam().name_tlv;
    AnswerTlvs(DOM_REPLY_KIND_RESULT, [=](Appender& append) {
        append.Text(tlv, std::string(40, 'n').c_str()).U32(DOM_TLV_RESULT, 0);
    });
    EXPECT_EQ(SetProfile(), DOM_OK);
    EXPECT_EQ(std::string(name_), std::string(31, 'n'));
}

TEST_P(ProfileSetterTest, NamesOfOtherProfilesAreNotRead) {
    const uint16_t tlv = GetParam().others_name_tlv;
    AnswerTlvs(DOM_REPLY_KIND_RESULT, [=](Appender& append) {
        append.Text(tlv, "other").Text(DOM_TLV_NASID_PROFILE, "nas").U32(DOM_TLV_RESULT, 0);
    });
    EXPECT_EQ(SetProfile(), DOM_OK);
    EXPECT_STREQ(name_, "untouched");
}

TEST_P(ProfileSetterTest, ReplyWithoutAResultReadsAsOne) {
    const uint16_t tlv = GetParam().name_tlv;
    AnswerTlvs(DOM_REPLY_KIND_RESULT, [=](Appender& append) { append.Text(tlv, "stored"); });
    EXPECT_EQ(SetProfile(), 1u);
    EXPECT_EQ(result_, 1u);
    EXPECT_STREQ(name_, "stored");
}

TEST_P(ProfileSetterTest, NoReplyFails) {
    EXPECT_EQ(SetProfile(), DOM_ERR_FAILED);
    NeverAnswer();
    EXPECT_EQ(SetProfile(), DOM_ERR_FAILED);
    EXPECT_EQ(result_, kPreset);
    EXPECT_STREQ(name_, "untouched");
}

TEST_P(ProfileSetterTest, NullOutputsAreSkipped) {
    const uint16_t tlv = GetParam().name_tlv;
    AnswerTlvs(DOM_REPLY_KIND_RESULT,
               [=](Appender& append) { append.Text(tlv, "stored").U32(DOM_TLV_RESULT, 0); });
    EXPECT_EQ(GetParam().call("Profile", 0, nullptr, nullptr), DOM_OK);
}

TEST_P(ProfileSetterTest, RequestThatCannotBeEncodedIsNotSent) {
    AnswerResult(0);
    EXPECT_EQ(GetParam().call(nullptr, 0, &result_, name_), DOM_ERR_FAILED);
    fake::FailAppend(1);
    EXPECT_EQ(SetProfile(), DOM_ERR_FAILED);
    EXPECT_TRUE(fake::FlushCalls().empty());
    EXPECT_EQ(result_, kPreset);
}

INSTANTIATE_TEST_SUITE_P(Families, ProfileSetterTest, ::testing::ValuesIn(kProfileSetters),
                         [](const auto& info) { return info.param.title; });

// --- changes of a segment
// ------------------------------------------------------------------------

CriticalProfileMsg CriticalSample() {
    CriticalProfileMsg record{};
    record.segment_id = 7;
    record.value16 = 0xABCD;
    strcpy(record.profile_name, "profile");
    strcpy(record.segment_name, "segment");
    strcpy(record.vpn_name, "vpn");
    return record;
}

AuthorProfileMsg AuthorSample() {
    AuthorProfileMsg record{};
    record.segment_id = 7;
    strcpy(record.profile_name, "profile");
    strcpy(record.segment_name, "segment");
    strcpy(record.vpn_name, "vpn");
    return record;
}

struct SegmentSetter {
    const char* title;
    uint32_t (*call)(uint32_t op, uint32_t* result);
    uint32_t (*call_with_null)();
    TLV_MSG* (*encode)();
    uint32_t code;
};

const SegmentSetter kSegmentSetters[] = {
    {"VpnCritical",
     [](uint32_t op, uint32_t* result) {
         const auto record = CriticalSample();
         return MOR_SetVpnCriticalSeg(&record, op, result);
     },
     [] { return MOR_SetVpnCriticalSeg(nullptr, 0, nullptr); },
     [] {
         const auto record = CriticalSample();
         return DOM_critical_tlv_EncodeCriticalVpn(&record);
     },
     148},
    {"DefaultCritical",
     [](uint32_t op, uint32_t* result) {
         const auto record = CriticalSample();
         return MOR_SetDefaultCriticalSeg(&record, op, result);
     },
     [] { return MOR_SetDefaultCriticalSeg(nullptr, 0, nullptr); },
     [] {
         const auto record = CriticalSample();
         return DOM_critical_tlv_EncodeDefaultCritical(&record);
     },
     149},
    {"VpnAuthor",
     [](uint32_t op, uint32_t* result) {
         const auto record = AuthorSample();
         return MOR_SetVpnAuthorSeg(&record, op, result);
     },
     [] { return MOR_SetVpnAuthorSeg(nullptr, 0, nullptr); },
     [] {
         const auto record = AuthorSample();
         return DOM_author_tlv_EncodeAuthorVpn(&record);
     },
     157},
    {"DefaultAuthor",
     [](uint32_t op, uint32_t* result) {
         const auto record = AuthorSample();
         return MOR_SetDefaultAuthorSeg(&record, op, result);
     },
     [] { return MOR_SetDefaultAuthorSeg(nullptr, 0, nullptr); },
     [] {
         const auto record = AuthorSample();
         return DOM_author_tlv_EncodeDefaultAuthor(&record);
     },
     158},
};

class SegmentSetterTest : public ProfileHandlerTest,
                          public ::testing::WithParamInterface<SegmentSetter> {};

TEST_P(SegmentSetterTest, IsSentWithTheCallersOperation) {
    AnswerResult(0);
    EXPECT_EQ(GetParam().call(kCallersOp, &result_), DOM_OK);
    EXPECT_EQ(LastSent().op, kCallersOp);
    EXPECT_EQ(LastSent().code, GetParam().code);
    const TlvPtr expected(GetParam().encode());
    EXPECT_EQ(LastSent().image, fake::ImageOf(expected.get()));
    EXPECT_EQ(fake::FlushCalls().size(), 1u);
}

TEST_P(SegmentSetterTest, OnlyResultZeroSucceeds) {
    for (const uint32_t answered : {0u, 1u, 11u, 12u, 13u, 19u, 22u, 0x40010001u}) {
        AnswerResult(answered);
        EXPECT_EQ(GetParam().call(0, &result_), answered == 0 ? DOM_OK : DOM_ERR_FAILED);
        EXPECT_EQ(result_, answered);
        EXPECT_EQ(GetParam().call(0, nullptr), answered == 0 ? DOM_OK : DOM_ERR_FAILED);
    }
}

TEST_P(SegmentSetterTest, ReplyWithoutAResultReadsAsOne) {
    Answer(DOM_REPLY_KIND_RESULT, [] { return TLV_Create(); });
    EXPECT_EQ(GetParam().call(0, &result_), DOM_ERR_FAILED);
    EXPECT_EQ(result_, 1u);
}

TEST_P(SegmentSetterTest, NoReplyFails) {
    EXPECT_EQ(GetParam().call(0, &result_), DOM_ERR_FAILED);
    NeverAnswer();
    EXPECT_EQ(GetParam().call(0, &result_), DOM_ERR_FAILED);
    EXPECT_EQ(result_, kPreset);
}

TEST_P(SegmentSetterTest, RequestThatCannotBeEncodedIsNotSent) {
    AnswerResult(0);
    EXPECT_EQ(GetParam().call_with_null(), DOM_ERR_FAILED);
    fake::FailAppend(1);
    EXPECT_EQ(GetParam().call(0, &result_), DOM_ERR_FAILED);
    EXPECT_TRUE(fake::FlushCalls().empty());
    EXPECT_EQ(result_, kPreset);
}

INSTANTIATE_TEST_SUITE_P(Setters, SegmentSetterTest, ::testing::ValuesIn(kSegmentSetters),
                         [](const auto& info) { return info.param.title; });

using AuthorSegmentMessageTest = ProfileHandlerTest;

TEST_F(AuthorSegmentMessageTest, RequestStaysTheCallers) {
    const TlvPtr request(DOM_author_tlv_EncodeGetAuthorVpn("profile", "vpn"));
    const std::string image = fake::ImageOf(request.get());
    AnswerResult(19);
    EXPECT_EQ(MOR_AuthorSegMsgProc(request.get(), kCallersOp, &result_), DOM_ERR_FAILED);
    EXPECT_EQ(result_, 19u);
    EXPECT_EQ(LastSent().op, kCallersOp);
    EXPECT_EQ(LastSent().image, image);
    AnswerResult(0);
    EXPECT_EQ(MOR_AuthorSegMsgProc(request.get(), 0, &result_), DOM_OK);
    EXPECT_EQ(fake::ImageOf(request.get()), image);
}

TEST_F(AuthorSegmentMessageTest, NullRequestFails) {
    AnswerResult(0);
    EXPECT_EQ(MOR_AuthorSegMsgProc(nullptr, 0, &result_), DOM_ERR_FAILED);
    EXPECT_EQ(result_, kPreset);
}

// --- reads
// --------------------------------------------------------------------------------------

/// A read of one profile or VPN; `fields` of the record that came back as one text.
struct ProfileRead {
    const char* title;
    uint32_t (*call)(const char* name, uint32_t* result, std::string* fields);
    TLV_MSG* (*request)();
    TLV_MSG* (*reply)();
    uint32_t code;
    std::string expected;
    bool refusal_fails;
};

template <typename Record>
std::string Fields(const Record& record) {
    return std::to_string(record.segment_id) + ' ' + record.profile_name + ' ' +
           record.segment_name + ' ' + record.vpn_name;
}

const ProfileRead kProfileReads[] = {
    {"CriticalProfile",
     [](const char* name, uint32_t* result, std::string* fields) {
         CriticalProfileMsg out{};
         const uint32_t value = MOR_GetCriticalPrfInfo(name, kCallersOp, &out, result);
         *fields = Fields(out) + ' ' + std::to_string(out.value16);
         return value;
     },
     [] { return DOM_clitical_tlv_EncodeCriticalProfile("profile"); },
     [] {
         const auto record = CriticalSample();
         return DOM_critical_tlv_EncodeDefaultCritical(&record);
     },
     147, "7 profile segment  43981", true},
    {"AuthorProfile",
     [](const char* name, uint32_t* result, std::string* fields) {
         AuthorProfileMsg out{};
         const uint32_t value = MOR_GetAuthorPrfInfo(name, kCallersOp, &out, result);
         *fields = Fields(out);
         return value;
     },
     [] { return DOM_author_tlv_EncodeAuthorProfile("profile"); },
     [] {
         const auto record = AuthorSample();
         return DOM_author_tlv_EncodeDefaultAuthor(&record);
     },
     156, "7 profile segment ", true},
    {"CriticalVpn",
     [](const char* name, uint32_t* result, std::string* fields) {
         CriticalProfileMsg out{};
         const uint32_t value = MOR_GetCriticalVPNInfo(name, "vpn", kCallersOp, &out, result);
         *fields = Fields(out) + ' ' + std::to_string(out.value16);
         return value;
     },
     [] { return DOM_critical_tlv_EncodeGetCriticalVpn("profile", "vpn"); },
     [] {
         const auto record = CriticalSample();
         return DOM_critical_tlv_EncodeCriticalVpn(&record);
     },
     148, "7 profile segment vpn 43981", false},
    {"AuthorVpn",
     [](const char* name, uint32_t* result, std::string* fields) {
         AuthorProfileMsg out{};
         const uint32_t value = MOR_GetAuthorVPNInfo(name, "vpn", kCallersOp, &out, result);
         *fields = Fields(out);
         return value;
     },
     [] { return DOM_author_tlv_EncodeGetAuthorVpn("profile", "vpn"); },
     [] {
         const auto record = AuthorSample();
         return DOM_author_tlv_EncodeAuthorVpn(&record);
     },
     157, "7 profile segment vpn", false},
    {"AuthorReport",
     [](const char* name, uint32_t* result, std::string* fields) {
         AAAAuthorProfile out{};
         const uint32_t value = MOR_GetAAAAuthorProfile(name, kCallersOp, &out, result);
         *fields = std::to_string(out.segment_id) + ' ' + out.profile_name + ' ' +
                   std::to_string(out.entry_count);
         return value;
     },
     [] { return DOM_EncodeAAAAuthorProfileName("profile"); },
     [] {
         AAAAuthorProfile profile{};
         strcpy(profile.profile_name, "profile");
         profile.segment_id = 7;
         profile.entry_count = 2;
         return DOM_EncodeAAAAuthorProfile(&profile);
     },
     159, "7 profile 2", false},
};

void PrintTo(const ProfileRead& read, std::ostream* out) {
    *out << read.title;
}

class ProfileReadTest : public ProfileHandlerTest,
                        public ::testing::WithParamInterface<ProfileRead> {
  protected:
    uint32_t Read() { return GetParam().call("profile", &result_, &fields_); }
    /// What a read leaves that wrote nothing.
    std::string Untouched() {
        std::string cleared;
        (void)GetParam().call(nullptr, nullptr, &cleared);
        return cleared;
    }

    std::string fields_;
};

TEST_P(ProfileReadTest, AsksWithTheCallersOperation) {
    AnswerData(GetParam().reply);
    EXPECT_EQ(Read(), DOM_OK);
    EXPECT_EQ(LastSent().op, kCallersOp);
    EXPECT_EQ(LastSent().code, GetParam().code);
    const TlvPtr expected(GetParam().request());
    EXPECT_EQ(LastSent().image, fake::ImageOf(expected.get()));
}

TEST_P(ProfileReadTest, ReplyIsDecodedAndTheResultUntouched) {
    AnswerData(GetParam().reply);
    EXPECT_EQ(Read(), DOM_OK);
    EXPECT_EQ(fields_, GetParam().expected);
    EXPECT_EQ(result_, kPreset);
}

// The profile reads fail for a refusal, the others tell it by the result alone.
TEST_P(ProfileReadTest, RefusalGoesToTheResultAndNothingIsDecoded) {
    for (const uint32_t refusal : {0u, 12u, 21u}) {
        AnswerResult(refusal);
        EXPECT_EQ(Read(), GetParam().refusal_fails ? DOM_ERR_FAILED : DOM_OK);
        EXPECT_EQ(result_, refusal);
        EXPECT_EQ(fields_, Untouched());
        EXPECT_EQ(GetParam().call("profile", nullptr, &fields_),
                  GetParam().refusal_fails ? DOM_ERR_FAILED : DOM_OK);
    }
}

// The kind of the reply decides, whatever else the reply carries.
TEST_P(ProfileReadTest, DataUnderTheKindOfARefusalIsARefusal) {
    Answer(DOM_REPLY_KIND_RESULT, GetParam().reply);
    EXPECT_EQ(Read(), GetParam().refusal_fails ? DOM_ERR_FAILED : DOM_OK);
    EXPECT_EQ(result_, 1u) << "no result reads as 1";
    EXPECT_EQ(fields_, Untouched());
}

TEST_P(ProfileReadTest, NoReplyFails) {
    EXPECT_EQ(Read(), DOM_ERR_FAILED);
    NeverAnswer();
    EXPECT_EQ(Read(), DOM_ERR_FAILED);
    EXPECT_EQ(result_, kPreset);
    EXPECT_EQ(fields_, Untouched());
}

TEST_P(ProfileReadTest, UndecodableReplyIsTheDecodersFailure) {
    const uint32_t code = GetParam().code;
    AnswerTlvs(DOM_REPLY_KIND_DATA, [=](Appender& append) {
        append.U32(DOM_TLV_MSG_CODE, code)
            .Text(DOM_TLV_CRITICAL_PROFILE_NAME, std::string(40, 'p').c_str());
        if (code != 159) append.Text(DOM_TLV_AUTHOR_PROFILE_NAME, std::string(40, 'p').c_str());
    });
    EXPECT_EQ(Read(), DOM_ERR_FAILED);
    EXPECT_EQ(result_, kPreset);
}

TEST_P(ProfileReadTest, RequestThatCannotBeEncodedIsNotSent) {
    AnswerData(GetParam().reply);
    EXPECT_EQ(GetParam().call(nullptr, &result_, &fields_), DOM_ERR_FAILED);
    fake::FailAppend(1);
    EXPECT_EQ(Read(), DOM_ERR_FAILED);
    EXPECT_TRUE(fake::FlushCalls().empty());
    EXPECT_EQ(result_, kPreset);
}

INSTANTIATE_TEST_SUITE_P(Reads, ProfileReadTest, ::testing::ValuesIn(kProfileReads),
                         [](const auto& info) { return info.param.title; });

using ProfileReadOutputs = ProfileHandlerTest;

TEST_F(ProfileReadOutputs, NullRecordFails) {
    AnswerData([] { return DOM_critical_tlv_EncodeGetCriticalVpn("profile", "vpn"); });
    EXPECT_EQ(MOR_GetCriticalPrfInfo("profile", 2, nullptr, nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(MOR_GetCriticalVPNInfo("profile", "vpn", 2, nullptr, nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(MOR_GetAuthorPrfInfo("profile", 2, nullptr, nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(MOR_GetAuthorVPNInfo("profile", "vpn", 2, nullptr, nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(MOR_GetAAAAuthorProfile("profile", 2, nullptr, nullptr), DOM_ERR_FAILED);
}

TEST_F(ProfileReadOutputs, NullVpnIsNotSent) {
    CriticalProfileMsg critical{};
    AuthorProfileMsg author{};
    EXPECT_EQ(MOR_GetCriticalVPNInfo("profile", nullptr, 2, &critical, nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(MOR_GetAuthorVPNInfo("profile", nullptr, 2, &author, nullptr), DOM_ERR_FAILED);
    EXPECT_TRUE(fake::FlushCalls().empty());
}

// --- the number of authorization profiles
// ---------------------------------------------------------

using ProfileNumber = ProfileHandlerTest;

TEST_F(ProfileNumber, IsReturnedItself) {
    for (const uint32_t number : {0u, 1u, 16u}) {
        AnswerData([=] { return DOM_EncodeAAAAuthorProfileNum(number); });
        EXPECT_EQ(MOR_GetAAAAuthorProfileNum(kCallersOp, &result_), number);
        EXPECT_EQ(result_, kPreset);
    }
    EXPECT_EQ(LastSent().op, kCallersOp);
    EXPECT_EQ(LastSent().code, 160u);
    const TlvPtr expected(DOM_EncodeAAAAuthorProfileNumRequest());
    EXPECT_EQ(LastSent().image, fake::ImageOf(expected.get()));
}

TEST_F(ProfileNumber, RefusalIsZeroWithItsResult) {
    AnswerResult(8);
    EXPECT_EQ(MOR_GetAAAAuthorProfileNum(2, &result_), 0u);
    EXPECT_EQ(result_, 8u);
    EXPECT_EQ(MOR_GetAAAAuthorProfileNum(2, nullptr), 0u);
}

TEST_F(ProfileNumber, NoReplyOrRequestFails) {
    EXPECT_EQ(MOR_GetAAAAuthorProfileNum(2, &result_), DOM_ERR_FAILED);
    NeverAnswer();
    EXPECT_EQ(MOR_GetAAAAuthorProfileNum(2, &result_), DOM_ERR_FAILED);
    fake::FailMessage(1);
    EXPECT_EQ(MOR_GetAAAAuthorProfileNum(2, &result_), DOM_ERR_FAILED);
    EXPECT_EQ(result_, kPreset);
}

}  // namespace
}  // namespace aaadom
