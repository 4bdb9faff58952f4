// Critical and authorization profiles in messages. What the families have in common is tested for
// both; numbers are written out here, so that a changed registry does not change the tests.
#include <aaadom/profile_codec.h>

#include <algorithm>

#include "unit/codec/codec_test_support.h"

namespace {

using namespace codec_test;
using Types = std::vector<uint32_t>;

struct Author {
    using Record = AuthorProfileMsg;
    using Profile = AuthorProfile;
    using Vpn = AuthorVpn;
    static constexpr uint32_t kProfile = 156, kVpn = 157, kSegment = 158;
    static constexpr uint16_t kName = 430, kSegmentName = 431, kId = 432, kVpnName = 433;
    static inline const Types kVpnTypes{0, 431, 432, 430, 433};
    static inline const Types kSegmentTypes{0, 431, 432, 430};

    static constexpr auto EncodeProfile = DOM_author_tlv_EncodeAuthorProfile;
    static constexpr auto EncodeSegment = DOM_author_tlv_EncodeDefaultAuthor;
    static constexpr auto EncodeSegmentOf = DOM_author_tlv_EncodeDefaultAuthorByProfile;
    static constexpr auto EncodeVpn = DOM_author_tlv_EncodeAuthorVpn;
    static constexpr auto EncodeVpnOf = DOM_author_tlv_EncodeAuthorVpnByProfile;
    static constexpr auto EncodeGetVpn = DOM_author_tlv_EncodeGetAuthorVpn;
    static constexpr auto EncodeEnd = DOM_author_tlv_EncodeEndMsg;
    static constexpr auto DecodeSegment = DOM_author_tlv_DecodeDefaultAuthor;
    static constexpr auto DecodeVpn = DOM_author_tlv_DecodeAuthorVpn;
    static constexpr auto DecodeGetVpn = DOM_author_tlv_DecodeGetAuthorVpn;
    static uint32_t DecodeName(TLV_MSG* msg, char* name) {
        return DOM_author_tlv_DecodeProfileName(msg, 32, name);
    }
};

struct Critical {
    using Record = CriticalProfileMsg;
    using Profile = CriticalProfile;
    using Vpn = CriticalVpn;
    static constexpr uint32_t kProfile = 147, kVpn = 148, kSegment = 149;
    static constexpr uint16_t kName = 389, kSegmentName = 390, kId = 392, kVpnName = 393;
    static inline const Types kVpnTypes{0, 390, 391, 392, 389, 393};
    static inline const Types kSegmentTypes{0, 390, 391, 392, 389};

    static constexpr auto EncodeProfile = DOM_clitical_tlv_EncodeCriticalProfile;
    static constexpr auto EncodeSegment = DOM_critical_tlv_EncodeDefaultCritical;
    static constexpr auto EncodeSegmentOf = DOM_critical_tlv_EncodeDefaultCriticalByProfile;
    static constexpr auto EncodeVpn = DOM_critical_tlv_EncodeCriticalVpn;
    static constexpr auto EncodeVpnOf = DOM_critical_tlv_EncodeCriticalVpnByProfile;
    static constexpr auto EncodeGetVpn = DOM_critical_tlv_EncodeGetCriticalVpn;
    static constexpr auto EncodeEnd = DOM_critical_tlv_EncodeEndMsg;
    static constexpr auto DecodeSegment = DOM_critical_tlv_DecodeDefaultCritical;
    static constexpr auto DecodeVpn = DOM_critical_tlv_DecodeCriticalVpn;
    static constexpr auto DecodeGetVpn = DOM_critical_tlv_DecodeGetCriticalVpn;
    static constexpr auto DecodeName = DOM_critical_tlv_DecodeProfileName;
};

template <typename Family>
class ProfileCodec : public CodecTest {
  protected:
    using Record = typename Family::Record;

    static Record Sample() {
        Record record{};
        record.segment_id = 0x01020304;
        aaadom::CopyText(record.profile_name, "profile");
        aaadom::CopyText(record.segment_name, "segment");
        aaadom::CopyText(record.vpn_name, "vpn");
        return record;
    }
    /// A record that a decoder has to clear.
    static Record Garbage() {
        Record record;
        memset(&record, 0xA5, sizeof record);
        return record;
    }
    static void ExpectEqual(const Record& got, const Record& want) {
        EXPECT_EQ(got.segment_id, want.segment_id);
        EXPECT_STREQ(got.profile_name, want.profile_name);
        EXPECT_STREQ(got.segment_name, want.segment_name);
        EXPECT_STREQ(got.vpn_name, want.vpn_name);
    }
};
using Families = testing::Types<Author, Critical>;

class FamilyNames {
  public:
    template <typename Family>
    static std::string GetName(int) {
        return std::is_same_v<Family, Author> ? "Author" : "Critical";
    }
};
TYPED_TEST_SUITE(ProfileCodec, Families, FamilyNames);

TYPED_TEST(ProfileCodec, ProfileIsItsName) {
    const TlvPtr msg(TypeParam::EncodeProfile("profile"));
    EXPECT_EQ(TypesOf(msg.get()), (Types{0, TypeParam::kName}));
    EXPECT_EQ(NumberOf(msg.get(), 0), TypeParam::kProfile);
    EXPECT_EQ(TextOf(msg.get(), TypeParam::kName), "profile");
    EXPECT_EQ(aaadom::FindTlv(msg.get(), TypeParam::kName).Length(), 8u) << "with its terminator";
}

TYPED_TEST(ProfileCodec, DefaultSegmentIsSentInTheOrderOfItsList) {
    const auto record = this->Sample();
    const TlvPtr msg(TypeParam::EncodeSegment(&record));
    EXPECT_EQ(TypesOf(msg.get()), TypeParam::kSegmentTypes);
    EXPECT_EQ(NumberOf(msg.get(), 0), TypeParam::kSegment);
    EXPECT_EQ(NumberOf(msg.get(), TypeParam::kId), 0x01020304u);
    EXPECT_EQ(TextOf(msg.get(), TypeParam::kSegmentName), "segment");
    EXPECT_EQ(TextOf(msg.get(), TypeParam::kName), "profile");
}

TYPED_TEST(ProfileCodec, VpnIsSentInTheOrderOfItsList) {
    const auto record = this->Sample();
    const TlvPtr msg(TypeParam::EncodeVpn(&record));
    EXPECT_EQ(TypesOf(msg.get()), TypeParam::kVpnTypes);
    EXPECT_EQ(NumberOf(msg.get(), 0), TypeParam::kVpn);
    EXPECT_EQ(NumberOf(msg.get(), TypeParam::kId), 0x01020304u);
    EXPECT_EQ(TextOf(msg.get(), TypeParam::kSegmentName), "segment");
    EXPECT_EQ(TextOf(msg.get(), TypeParam::kName), "profile");
    EXPECT_EQ(TextOf(msg.get(), TypeParam::kVpnName), "vpn");
}

TYPED_TEST(ProfileCodec, QuestionForAVpnHasTheCodeOfTheVpnAndBothNames) {
    const TlvPtr msg(TypeParam::EncodeGetVpn("profile", "vpn"));
    EXPECT_EQ(TypesOf(msg.get()), (Types{0, TypeParam::kName, TypeParam::kVpnName}));
    EXPECT_EQ(NumberOf(msg.get(), 0), TypeParam::kVpn);
    char profile[32] = "?";
    char vpn[32] = "?";
    EXPECT_EQ(TypeParam::DecodeGetVpn(msg.get(), profile, vpn), DOM_OK);
    EXPECT_STREQ(profile, "profile");
    EXPECT_STREQ(vpn, "vpn");
}

TYPED_TEST(ProfileCodec, EndMessageHasAResultAndNoCode) {
    for (const uint32_t result : {0u, 12u, 21u, 0xFFFFFFFFu}) {
        const TlvPtr msg(TypeParam::EncodeEnd(result));
        EXPECT_EQ(TypesOf(msg.get()), (Types{16}));
        EXPECT_EQ(NumberOf(msg.get(), 16), result);
    }
}

TYPED_TEST(ProfileCodec, StoredNodesAreSentLikeRequests) {
    typename TypeParam::Profile profile{};
    aaadom::CopyText(profile.name, "profile");
    profile.default_segment.segment_id = 0x01020304;
    aaadom::CopyText(profile.default_segment.segment_name, "segment");
    const auto record = this->Sample();
    const TlvPtr segment(TypeParam::EncodeSegmentOf(&profile));
    const TlvPtr segment_request(TypeParam::EncodeSegment(&record));
    EXPECT_EQ(fake::ImageOf(segment.get()), fake::ImageOf(segment_request.get()));

    typename TypeParam::Vpn vpn{};
    aaadom::CopyText(vpn.vpn_name, "vpn");
    vpn.segment = profile.default_segment;
    const TlvPtr stored_vpn(TypeParam::EncodeVpnOf(&vpn, "profile"));
    const TlvPtr vpn_request(TypeParam::EncodeVpn(&record));
    EXPECT_EQ(fake::ImageOf(stored_vpn.get()), fake::ImageOf(vpn_request.get()));
}

TYPED_TEST(ProfileCodec, ProfileWithoutDefaultSegmentIsSentWithIdZeroAndAnEmptyName) {
    typename TypeParam::Profile profile{};
    aaadom::CopyText(profile.name, "profile");
    const TlvPtr msg(TypeParam::EncodeSegmentOf(&profile));
    EXPECT_EQ(TypesOf(msg.get()), TypeParam::kSegmentTypes);
    auto record = this->Garbage();
    EXPECT_EQ(TypeParam::DecodeSegment(msg.get(), &record), DOM_OK);
    EXPECT_EQ(record.segment_id, 0u);
    EXPECT_STREQ(record.segment_name, "");
    EXPECT_STREQ(record.profile_name, "profile");
}

TYPED_TEST(ProfileCodec, NullInputsGiveNull) {
    typename TypeParam::Vpn vpn{};
    EXPECT_EQ(TypeParam::EncodeProfile(nullptr), nullptr);
    EXPECT_EQ(TypeParam::EncodeSegment(nullptr), nullptr);
    EXPECT_EQ(TypeParam::EncodeSegmentOf(nullptr), nullptr);
    EXPECT_EQ(TypeParam::EncodeVpn(nullptr), nullptr);
    EXPECT_EQ(TypeParam::EncodeVpnOf(nullptr, "profile"), nullptr);
    EXPECT_EQ(TypeParam::EncodeVpnOf(&vpn, nullptr), nullptr);
    EXPECT_EQ(TypeParam::EncodeGetVpn(nullptr, "vpn"), nullptr);
    EXPECT_EQ(TypeParam::EncodeGetVpn("profile", nullptr), nullptr);
}

TYPED_TEST(ProfileCodec, EveryFailedAppendOrCreationGivesNull) {
    const auto record = this->Sample();
    typename TypeParam::Profile profile{};
    typename TypeParam::Vpn vpn{};
    ExpectEveryFailureGivesNull([] { return TypeParam::EncodeProfile("profile"); });
    ExpectEveryFailureGivesNull([&] { return TypeParam::EncodeSegment(&record); });
    ExpectEveryFailureGivesNull([&] { return TypeParam::EncodeSegmentOf(&profile); });
    ExpectEveryFailureGivesNull([&] { return TypeParam::EncodeVpn(&record); });
    ExpectEveryFailureGivesNull([&] { return TypeParam::EncodeVpnOf(&vpn, "profile"); });
    ExpectEveryFailureGivesNull([] { return TypeParam::EncodeGetVpn("profile", "vpn"); });
    ExpectEveryFailureGivesNull([] { return TypeParam::EncodeEnd(1); });
}

TYPED_TEST(ProfileCodec, FieldsThatLackTheirTerminatorAreReadWithinThem) {
    auto record = this->Sample();
    memset(record.profile_name, 'p', 32);
    memset(record.segment_name, 's', 32);
    memset(record.vpn_name, 'v', 32);
    const TlvPtr msg(TypeParam::EncodeVpn(&record));
    EXPECT_EQ(TextOf(msg.get(), TypeParam::kName), std::string(32, 'p'));
    EXPECT_EQ(TextOf(msg.get(), TypeParam::kSegmentName), std::string(32, 's'));
    EXPECT_EQ(TextOf(msg.get(), TypeParam::kVpnName), std::string(32, 'v'));
}

TYPED_TEST(ProfileCodec, NameOfAStoredProfileIsCutTo31Characters) {
    typename TypeParam::Vpn vpn{};
    const TlvPtr msg(TypeParam::EncodeVpnOf(&vpn, std::string(5000, 'p').c_str()));
    EXPECT_EQ(TextOf(msg.get(), TypeParam::kName), std::string(31, 'p'));
}

TYPED_TEST(ProfileCodec, DecodersAreTheInverse) {
    const auto sent = this->Sample();
    const TlvPtr vpn(TypeParam::EncodeVpn(&sent));
    auto record = this->Garbage();
    EXPECT_EQ(TypeParam::DecodeVpn(vpn.get(), &record), DOM_OK);
    this->ExpectEqual(record, sent);

    auto expected = sent;
    expected.vpn_name[0] = '\0';
    const TlvPtr segment(TypeParam::EncodeSegment(&sent));
    record = this->Garbage();
    EXPECT_EQ(TypeParam::DecodeSegment(segment.get(), &record), DOM_OK);
    this->ExpectEqual(record, expected);

    char name[32] = "?";
    EXPECT_EQ(TypeParam::DecodeName(segment.get(), name), DOM_OK);
    EXPECT_STREQ(name, "profile");
}

TYPED_TEST(ProfileCodec, VpnInReverseOrderReadsTheSame) {
    Message msg;
    msg.Text(TypeParam::kVpnName, "vpn")
        .Text(TypeParam::kName, "profile")
        .U32(TypeParam::kId, 0x01020304)
        .Text(TypeParam::kSegmentName, "segment")
        .U32(0, TypeParam::kVpn);
    auto record = this->Garbage();
    EXPECT_EQ(TypeParam::DecodeVpn(msg.get(), &record), DOM_OK);
    this->ExpectEqual(record, this->Sample());
}

TYPED_TEST(ProfileCodec, WhatIsMissingReadsAsCleared) {
    auto record = this->Garbage();
    const typename TypeParam::Record cleared{};
    EXPECT_EQ(TypeParam::DecodeVpn(Message().get(), &record), DOM_OK);
    EXPECT_EQ(memcmp(&record, &cleared, sizeof record), 0);
    record = this->Garbage();
    EXPECT_EQ(TypeParam::DecodeSegment(Message(TypeParam::kSegment).get(), &record), DOM_OK);
    EXPECT_EQ(memcmp(&record, &cleared, sizeof record), 0);
    char profile[32] = "?";
    char vpn[32] = "?";
    EXPECT_EQ(TypeParam::DecodeGetVpn(Message().get(), profile, vpn), DOM_OK);
    EXPECT_STREQ(profile, "");
    EXPECT_STREQ(vpn, "");
}

TYPED_TEST(ProfileCodec, CodesAreNotLookedAt) {
    Message msg(9999);
    msg.Text(TypeParam::kName, "profile");
    auto record = this->Garbage();
    EXPECT_EQ(TypeParam::DecodeVpn(msg.get(), &record), DOM_OK);
    EXPECT_STREQ(record.profile_name, "profile");
    char name[32];
    EXPECT_EQ(TypeParam::DecodeName(msg.get(), name), DOM_OK);
}

TYPED_TEST(ProfileCodec, UnknownTypesAreSkipped) {
    Message msg(TypeParam::kVpn);
    msg.Text(1000, std::string(500, 'x')).U32(434, 7).Text(TypeParam::kName, "profile");
    auto record = this->Garbage();
    EXPECT_EQ(TypeParam::DecodeVpn(msg.get(), &record), DOM_OK);
    EXPECT_STREQ(record.profile_name, "profile");
}

TYPED_TEST(ProfileCodec, DefaultSegmentHasNoVpn) {
    Message msg(TypeParam::kSegment);
    msg.Text(TypeParam::kVpnName, std::string(500, 'v'));
    auto record = this->Garbage();
    EXPECT_EQ(TypeParam::DecodeSegment(msg.get(), &record), DOM_OK);
    EXPECT_STREQ(record.vpn_name, "");
}

TYPED_TEST(ProfileCodec, LastOfSeveralCountsButTheFirstNamesTheProfile) {
    Message msg(TypeParam::kVpn);
    msg.Text(TypeParam::kName, "first")
        .U32(TypeParam::kId, 1)
        .Text(TypeParam::kName, "last")
        .U32(TypeParam::kId, 2);
    auto record = this->Garbage();
    EXPECT_EQ(TypeParam::DecodeVpn(msg.get(), &record), DOM_OK);
    EXPECT_STREQ(record.profile_name, "last");
    EXPECT_EQ(record.segment_id, 2u);
    char name[32];
    EXPECT_EQ(TypeParam::DecodeName(msg.get(), name), DOM_OK);
    EXPECT_STREQ(name, "first");
}

TYPED_TEST(ProfileCodec, LaterShorterTextLeavesNothingOfTheFirst) {
    Message msg(TypeParam::kVpn);
    msg.Text(TypeParam::kName, std::string(31, 'x')).Text(TypeParam::kName, "p");
    auto record = this->Garbage();
    EXPECT_EQ(TypeParam::DecodeVpn(msg.get(), &record), DOM_OK);
    EXPECT_STREQ(record.profile_name, "p");
}

// A cut name would name another profile, so a text that does not fit is refused, in each member.
TYPED_TEST(ProfileCodec, TextsOf31CharactersFitAndLongerOnesAreRefused) {
    for (const uint16_t type : {TypeParam::kName, TypeParam::kSegmentName, TypeParam::kVpnName}) {
        for (const size_t length : {0u, 30u, 31u, 32u, 33u, 300u}) {
            Message msg(TypeParam::kVpn);
            msg.Text(type, std::string(length, 't'));
            auto record = this->Garbage();
            const uint32_t expected = length <= 31 ? DOM_OK : DOM_ERR_FAILED;
            EXPECT_EQ(TypeParam::DecodeVpn(msg.get(), &record), expected) << type << ' ' << length;
            const bool has_vpn = type == TypeParam::kVpnName;
            EXPECT_EQ(TypeParam::DecodeSegment(msg.get(), &record), has_vpn ? DOM_OK : expected);
            char profile[32], vpn[32];
            const bool has_segment = type == TypeParam::kSegmentName;
            EXPECT_EQ(TypeParam::DecodeGetVpn(msg.get(), profile, vpn),
                      has_segment ? DOM_OK : expected);
            if (type == TypeParam::kName) {
                EXPECT_EQ(TypeParam::DecodeName(msg.get(), profile), expected) << length;
                if (expected == DOM_OK) {
                    EXPECT_EQ(profile, std::string(length, 't'));
                }
            }
        }
    }
}

TYPED_TEST(ProfileCodec, TextsWithoutTerminatorAreReadWithinTheirValue) {
    Message fits(TypeParam::kVpn);
    fits.Raw(TypeParam::kName, std::string(31, 'p')).Raw(TypeParam::kVpnName, "");
    auto record = this->Garbage();
    EXPECT_EQ(TypeParam::DecodeVpn(fits.get(), &record), DOM_OK);
    EXPECT_EQ(record.profile_name, std::string(31, 'p'));
    EXPECT_STREQ(record.vpn_name, "");

    Message too_long(TypeParam::kVpn);
    too_long.Raw(TypeParam::kName, std::string(32, 'p'));
    EXPECT_EQ(TypeParam::DecodeVpn(too_long.get(), &record), DOM_ERR_FAILED);
    EXPECT_LT(strnlen(record.profile_name, 32), 32u);
    char name[32];
    EXPECT_EQ(TypeParam::DecodeName(too_long.get(), name), DOM_ERR_FAILED);
}

TYPED_TEST(ProfileCodec, BytesBehindATerminatorAreNotKept) {
    std::string value(32, '\xEE');
    value[3] = '\0';
    Message msg(TypeParam::kVpn);
    msg.Raw(TypeParam::kName, value);
    auto record = this->Garbage();
    EXPECT_EQ(TypeParam::DecodeVpn(msg.get(), &record), DOM_OK);
    EXPECT_EQ(record.profile_name, std::string(3, '\xEE'));
    EXPECT_TRUE(std::all_of(record.profile_name + 3, record.profile_name + 32,
                            [](char c) { return c == '\0'; }));
}

TYPED_TEST(ProfileCodec, RefusedTextEndsTheWalk) {
    Message msg(TypeParam::kVpn);
    msg.U32(TypeParam::kId, 7)
        .Text(TypeParam::kSegmentName, std::string(40, 's'))
        .Text(TypeParam::kName, "profile");
    auto record = this->Garbage();
    EXPECT_EQ(TypeParam::DecodeVpn(msg.get(), &record), DOM_ERR_FAILED);
    EXPECT_EQ(record.segment_id, 7u);
    EXPECT_STREQ(record.profile_name, "");
}

TYPED_TEST(ProfileCodec, ShortNumberReadsAsZero) {
    Message msg(TypeParam::kVpn);
    msg.Raw(TypeParam::kId, "\x01\x02\x03");
    auto record = this->Garbage();
    EXPECT_EQ(TypeParam::DecodeVpn(msg.get(), &record), DOM_OK);
    EXPECT_EQ(record.segment_id, 0u);
}

TYPED_TEST(ProfileCodec, MessageWithoutTheProfileNameHasNoProfileName) {
    Message msg(TypeParam::kProfile);
    msg.Text(TypeParam::kVpnName, "vpn");
    char name[32] = "?";
    EXPECT_EQ(TypeParam::DecodeName(msg.get(), name), DOM_ERR_FAILED);
}

TYPED_TEST(ProfileCodec, NullArgumentsOfDecoders) {
    auto record = this->Garbage();
    char name[32] = "?";
    char vpn[32] = "?";
    Message msg(TypeParam::kVpn);
    msg.Text(TypeParam::kName, "profile");
    EXPECT_EQ(TypeParam::DecodeVpn(nullptr, &record), DOM_ERR_FAILED);
    EXPECT_EQ(TypeParam::DecodeVpn(msg.get(), nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(TypeParam::DecodeSegment(nullptr, &record), DOM_ERR_FAILED);
    EXPECT_EQ(TypeParam::DecodeSegment(msg.get(), nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(TypeParam::DecodeGetVpn(nullptr, name, vpn), DOM_ERR_FAILED);
    EXPECT_EQ(TypeParam::DecodeGetVpn(msg.get(), nullptr, nullptr), DOM_OK) << "skipped";
    EXPECT_EQ(TypeParam::DecodeName(nullptr, name), DOM_ERR_FAILED);
    EXPECT_EQ(TypeParam::DecodeName(msg.get(), nullptr), DOM_ERR_FAILED);
}

TYPED_TEST(ProfileCodec, DamagedMessagesStayInsideTheirOutputs) {
    auto sample = this->Sample();
    memset(sample.profile_name, 'p', 31);
    memset(sample.vpn_name, 'v', 31);
    const TlvPtr msg(TypeParam::EncodeVpn(&sample));
    ForEveryDamage(msg.get(), [](TLV_MSG* damaged) {
        struct {
            typename TypeParam::Record record;
            char profile[32];
            char vpn[32];
            uint32_t guard;
        } out{};
        out.guard = 0x5AA5;
        (void)TypeParam::DecodeVpn(damaged, &out.record);
        (void)TypeParam::DecodeGetVpn(damaged, out.profile, out.vpn);
        EXPECT_LT(strnlen(out.record.profile_name, 32), 32u);
        EXPECT_LT(strnlen(out.record.segment_name, 32), 32u);
        EXPECT_LT(strnlen(out.record.vpn_name, 32), 32u);
        EXPECT_LT(strnlen(out.profile, 32), 32u);
        EXPECT_LT(strnlen(out.vpn, 32), 32u);
        (void)TypeParam::DecodeSegment(damaged, &out.record);
        (void)TypeParam::DecodeName(damaged, out.profile);
        EXPECT_EQ(out.guard, 0x5AA5u);
    });
}

// --- the 16-bit value of critical profiles
// -------------------------------------------------------

class CriticalValue : public CodecTest {};

TEST_F(CriticalValue, Goes32BitsWideBeforeTheSegmentId) {
    CriticalProfileMsg record{};
    record.segment_id = 0xAABBCCDD;
    record.value16 = 0xFFFE;
    const TlvPtr vpn(DOM_critical_tlv_EncodeCriticalVpn(&record));
    const TlvPtr segment(DOM_critical_tlv_EncodeDefaultCritical(&record));
    for (TLV_MSG* msg : {vpn.get(), segment.get()}) {
        EXPECT_EQ(aaadom::FindTlv(msg, 391).Length(), 4u);
        EXPECT_EQ(NumberOf(msg, 391), 0xFFFEu);
        EXPECT_EQ(NumberOf(msg, 392), 0xAABBCCDDu);
    }
}

TEST_F(CriticalValue, IsSentOfStoredNodes) {
    CriticalProfile profile{};
    profile.default_segment.value16 = 0x8001;
    CriticalVpn stored{};
    stored.segment.value16 = 0x7FFF;
    const TlvPtr segment(DOM_critical_tlv_EncodeDefaultCriticalByProfile(&profile));
    const TlvPtr vpn(DOM_critical_tlv_EncodeCriticalVpnByProfile(&stored, "profile"));
    EXPECT_EQ(NumberOf(segment.get(), 391), 0x8001u);
    EXPECT_EQ(NumberOf(vpn.get(), 391), 0x7FFFu);
}

TEST_F(CriticalValue, IsNarrowedTo16Bits) {
    Message msg(148);
    msg.U32(391, 0x0001FFFE).U32(392, 0x12345678);
    CriticalProfileMsg record{};
    EXPECT_EQ(DOM_critical_tlv_DecodeCriticalVpn(msg.get(), &record), DOM_OK);
    EXPECT_EQ(record.value16, 0xFFFE);
    EXPECT_EQ(record.segment_id, 0x12345678u);
    record.value16 = 0;
    EXPECT_EQ(DOM_critical_tlv_DecodeDefaultCritical(msg.get(), &record), DOM_OK);
    EXPECT_EQ(record.value16, 0xFFFE);
}

// --- the capacity of the authorization profile's name
// --------------------------------------------

class AuthorProfileName : public CodecTest {};

TEST_F(AuthorProfileName, FitsTheCallersBufferOrIsRefused) {
    Message msg(156);
    msg.Text(430, "1234567");
    char name[16];
    for (const uint32_t capacity : {8u, 9u, 16u}) {
        memset(name, '?', sizeof name);
        EXPECT_EQ(DOM_author_tlv_DecodeProfileName(msg.get(), capacity, name), DOM_OK) << capacity;
        EXPECT_STREQ(name, "1234567");
    }
    for (const uint32_t capacity : {0u, 1u, 7u}) {
        memset(name, '?', sizeof name);
        EXPECT_EQ(DOM_author_tlv_DecodeProfileName(msg.get(), capacity, name), DOM_ERR_FAILED);
        EXPECT_EQ(name[capacity], '?') << "nothing behind the buffer";
    }
}

TEST_F(AuthorProfileName, EmptyValueNeedsRoomForItsTerminator) {
    Message msg(156);
    msg.Raw(430, "");
    char name[2] = {'?', '?'};
    EXPECT_EQ(DOM_author_tlv_DecodeProfileName(msg.get(), 0, name), DOM_ERR_FAILED);
    EXPECT_EQ(name[0], '?');
    EXPECT_EQ(DOM_author_tlv_DecodeProfileName(msg.get(), 1, name), DOM_OK);
    EXPECT_EQ(name[0], '\0');
    EXPECT_EQ(name[1], '?');
}

}  // namespace
