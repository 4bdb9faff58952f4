#include <aaadom/nas_id_codec.h>

#include <cstring>

#include "unit/mgmt/channel_fixture.h"

namespace aaadom {
namespace {

constexpr uint32_t kPreset = 0xDEADBEEFu;
constexpr uint32_t kCallersOp = 0x51u;

class NasIdHandler : public ChannelTest {
  protected:
    uint32_t SetProfile() {
        result_ = kPreset;
        strcpy(name_, "untouched");
        return MOR_SetAaaNasIdProfile("Profile", kCallersOp, &result_, name_);
    }
    /// Answers with these TLVs.
    template <typename Fields>
    static void AnswerTlvs(Fields fields) {
        Answer(DOM_REPLY_KIND_RESULT, [fields] {
            TLV_MSG* body = TLV_Create();
            Appender append(body);
            fields(append);
            return body;
        });
    }

    uint32_t result_ = kPreset;
    char name_[32] = "";
};

TEST_F(NasIdHandler, ProfileIsSentWithTheCallersOperation) {
    AnswerResult(0);
    EXPECT_EQ(SetProfile(), DOM_OK);
    EXPECT_EQ(LastSent().op, kCallersOp);
    EXPECT_EQ(LastSent().code, 16u);
    const TlvPtr expected(DOM_EncodeNasIdProfile("Profile"));
    EXPECT_EQ(LastSent().image, fake::ImageOf(expected.get()));
    EXPECT_EQ(fake::FlushCalls().size(), 1u);
}

TEST_F(NasIdHandler, AnyResultOfTheProfileIsAnAnswer) {
    for (uint32_t answered : {0u, 1u, 2u, 15u, 0x40010001u}) {
        AnswerResult(answered);
        EXPECT_EQ(SetProfile(), DOM_OK) << answered;
        EXPECT_EQ(result_, answered);
        EXPECT_STREQ(name_, "untouched");
    }
}

TEST_F(NasIdHandler, NameOfTheReplyIsReadOnEitherSideOfTheResult) {
    AnswerTlvs([](Appender& append) {
        append.Text(DOM_TLV_NASID_PROFILE, "stored").U32(DOM_TLV_RESULT, 15);
    });
    EXPECT_EQ(SetProfile(), DOM_OK);
    EXPECT_STREQ(name_, "stored");
    EXPECT_EQ(result_, 15u);
    AnswerTlvs([](Appender& append) {
        append.U32(DOM_TLV_RESULT, 15).Text(DOM_TLV_NASID_PROFILE, "stored");
    });
    EXPECT_EQ(SetProfile(), DOM_OK);
    EXPECT_STREQ(name_, "stored");
    EXPECT_EQ(result_, 15u);
}

TEST_F(NasIdHandler, NameOfTheReplyIsCutTo31Characters) {
    AnswerTlvs([](Appender& append) {
        append.Text(DOM_TLV_NASID_PROFILE, std::string(40, 'n').c_str()).U32(DOM_TLV_RESULT, 0);
    });
    EXPECT_EQ(SetProfile(), DOM_OK);
    EXPECT_EQ(std::string(name_), std::string(31, 'n'));
}

TEST_F(NasIdHandler, NamesOfOtherProfilesAreNotRead) {
    AnswerTlvs([](Appender& append) {
        append.Text(DOM_TLV_CRITICAL_PROFILE_NAME, "critical")
            .Text(DOM_TLV_AUTHOR_PROFILE_NAME, "author")
            .U32(DOM_TLV_RESULT, 0);
    });
    EXPECT_EQ(SetProfile(), DOM_OK);
    EXPECT_STREQ(name_, "untouched");
}

TEST_F(NasIdHandler, ReplyWithoutResultFails) {
    AnswerTlvs([](Appender& append) { append.Text(DOM_TLV_NASID_PROFILE, "stored"); });
    EXPECT_EQ(SetProfile(), DOM_ERR_FAILED);
    EXPECT_EQ(result_, kPreset);
    AnswerTlvs([](Appender&) {});
    EXPECT_EQ(SetProfile(), DOM_ERR_FAILED);
}

TEST_F(NasIdHandler, ProfileWithoutReplyFails) {
    EXPECT_EQ(SetProfile(), DOM_ERR_FAILED);
    NeverAnswer();
    EXPECT_EQ(SetProfile(), DOM_ERR_FAILED);
    EXPECT_EQ(result_, kPreset);
    EXPECT_STREQ(name_, "untouched");
}

TEST_F(NasIdHandler, NullOutputsOfTheProfileAreSkipped) {
    AnswerTlvs([](Appender& append) {
        append.Text(DOM_TLV_NASID_PROFILE, "stored").U32(DOM_TLV_RESULT, 15);
    });
    EXPECT_EQ(MOR_SetAaaNasIdProfile("Profile", 0, nullptr, nullptr), DOM_OK);
}

TEST_F(NasIdHandler, ProfileThatCannotBeEncodedIsNotSent) {
    AnswerResult(0);
    EXPECT_EQ(MOR_SetAaaNasIdProfile(nullptr, 0, &result_, name_), DOM_ERR_FAILED);
    fake::FailAppend(1);
    EXPECT_EQ(SetProfile(), DOM_ERR_FAILED);
    EXPECT_TRUE(fake::FlushCalls().empty());
    EXPECT_EQ(result_, kPreset);
}

TEST_F(NasIdHandler, BindingReturnsTheResultItself) {
    for (uint32_t answered : {0u, 1u, 2u, 15u}) {
        AnswerResult(answered);
        EXPECT_EQ(MOR_SetNasIdBindVlanId("profile", "nas", 100, kCallersOp), answered);
    }
    EXPECT_EQ(LastSent().op, kCallersOp);
    EXPECT_EQ(LastSent().code, 17u);
    const TlvPtr expected(DOM_EncodeNasidBindVlanId("profile", "nas", 100));
    EXPECT_EQ(LastSent().image, fake::ImageOf(expected.get()));
}

TEST_F(NasIdHandler, BindingWithoutAResultIs1) {
    Answer(DOM_REPLY_KIND_RESULT, [] { return TLV_Create(); });
    EXPECT_EQ(MOR_SetNasIdBindVlanId("profile", "nas", 100, 0), 1u);
}

TEST_F(NasIdHandler, BindingWithoutAReplyFails) {
    EXPECT_EQ(MOR_SetNasIdBindVlanId("profile", "nas", 100, 0), DOM_ERR_FAILED);
    NeverAnswer();
    EXPECT_EQ(MOR_SetNasIdBindVlanId("profile", "nas", 100, 0), DOM_ERR_FAILED);
}

TEST_F(NasIdHandler, BindingThatCannotBeEncodedIsNotSent) {
    AnswerResult(0);
    EXPECT_EQ(MOR_SetNasIdBindVlanId(nullptr, "nas", 100, 0), DOM_ERR_FAILED);
    EXPECT_EQ(MOR_SetNasIdBindVlanId("profile", nullptr, 100, 0), DOM_ERR_FAILED);
    fake::FailAppend(1);
    EXPECT_EQ(MOR_SetNasIdBindVlanId("profile", "nas", 100, 0), DOM_ERR_FAILED);
    EXPECT_TRUE(fake::FlushCalls().empty());
}

}  // namespace
}  // namespace aaadom
