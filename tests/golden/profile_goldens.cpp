// Golden messages of critical and authorization profiles.
#include <aaadom/profile_codec.h>
#include <aaadom/results.h>
#include <gtest/gtest.h>
#include <platform/tlv.h>

#include <cstring>
#include <string>

#include "base/message.h"
#include "tests/golden/hex_file.h"
#include "tests/golden/record_goldens.h"

namespace golden {
namespace {

CriticalProfileMsg CriticalSegmentMessage(const char* vpn) {
    CriticalProfileMsg record{};
    record.segment_id = 0x01020304;
    record.value16 = 0xFFFE;
    strcpy(record.profile_name, "Quarantine");
    strcpy(record.segment_name, "restricted");
    strcpy(record.vpn_name, vpn);
    return record;
}

AuthorProfileMsg AuthorSegmentMessage(const char* vpn) {
    AuthorProfileMsg record{};
    record.segment_id = 0x87654321;
    strcpy(record.profile_name, "Staff");
    strcpy(record.segment_name, "offices");
    strcpy(record.vpn_name, vpn);
    return record;
}

template <typename Record>
std::function<void(TLV_MSG*)> ExpectRecord(uint32_t (*decode)(TLV_MSG*, Record*),
                                           const Record& want) {
    return [=](TLV_MSG* msg) {
        Record record;
        memset(&record, 0xA5, sizeof record);
        EXPECT_EQ(decode(msg, &record), DOM_OK);
        EXPECT_EQ(record.segment_id, want.segment_id);
        EXPECT_STREQ(record.profile_name, want.profile_name);
        EXPECT_STREQ(record.segment_name, want.segment_name);
        EXPECT_STREQ(record.vpn_name, want.vpn_name);
    };
}

std::function<void(TLV_MSG*)> ExpectNames(uint32_t (*decode)(TLV_MSG*, char*, char*),
                                          const char* profile, const char* vpn) {
    return [=](TLV_MSG* msg) {
        char profile_name[32] = "?";
        char vpn_name[32] = "?";
        EXPECT_EQ(decode(msg, profile_name, vpn_name), DOM_OK);
        EXPECT_STREQ(profile_name, profile);
        EXPECT_STREQ(vpn_name, vpn);
    };
}

std::string ImageOf(TLV_MSG* msg) {
    std::string image(TLV_GetMsgLen(msg, TLV_FORM_BUFFER), '\0');
    image.resize(TLV_Flush(msg, TLV_FORM_BUFFER, static_cast<uint32_t>(image.size()),
                           reinterpret_cast<uintptr_t>(image.data())));
    return image;
}

// They have no message code, so they stand apart from the files of the codes.
TEST(EndMessageGolden, IsAResultAlone) {
    const aaadom::TlvPtr critical(DOM_critical_tlv_EncodeEndMsg(12));
    ASSERT_NE(critical, nullptr);
    EXPECT_EQ(ToHex(ImageOf(critical.get())), ToHex(ReadHexFile("end_critical_profile")));
    const aaadom::TlvPtr author(DOM_author_tlv_EncodeEndMsg(21));
    ASSERT_NE(author, nullptr);
    EXPECT_EQ(ToHex(ImageOf(author.get())), ToHex(ReadHexFile("end_author_profile")));
}

TEST(ProfileGolden, StoredNodesGiveTheMessagesOfRequests) {
    CriticalProfile critical{};
    strcpy(critical.name, "Quarantine");
    critical.default_segment = {0x01020304, 0xFFFE, "restricted"};
    const aaadom::TlvPtr critical_segment(
        DOM_critical_tlv_EncodeDefaultCriticalByProfile(&critical));
    ASSERT_NE(critical_segment, nullptr);
    EXPECT_EQ(ToHex(ImageOf(critical_segment.get())),
              ToHex(ReadHexFile("msg_149_critical_segment")));

    CriticalVpn critical_vpn{};
    strcpy(critical_vpn.vpn_name, "vpn-a");
    critical_vpn.segment = critical.default_segment;
    const aaadom::TlvPtr critical_vpn_message(
        DOM_critical_tlv_EncodeCriticalVpnByProfile(&critical_vpn, "Quarantine"));
    ASSERT_NE(critical_vpn_message, nullptr);
    EXPECT_EQ(ToHex(ImageOf(critical_vpn_message.get())),
              ToHex(ReadHexFile("msg_148_critical_vpn")));

    AuthorProfile author{};
    strcpy(author.name, "Staff");
    author.default_segment = {0x87654321, "offices"};
    const aaadom::TlvPtr author_segment(DOM_author_tlv_EncodeDefaultAuthorByProfile(&author));
    ASSERT_NE(author_segment, nullptr);
    EXPECT_EQ(ToHex(ImageOf(author_segment.get())), ToHex(ReadHexFile("msg_158_author_segment")));

    AuthorVpn author_vpn{};
    strcpy(author_vpn.vpn_name, "vpn-b");
    author_vpn.segment = author.default_segment;
    const aaadom::TlvPtr author_vpn_message(
        DOM_author_tlv_EncodeAuthorVpnByProfile(&author_vpn, "Staff"));
    ASSERT_NE(author_vpn_message, nullptr);
    EXPECT_EQ(ToHex(ImageOf(author_vpn_message.get())), ToHex(ReadHexFile("msg_157_author_vpn")));
}

}  // namespace

std::vector<GoldenMessage> ProfileGoldens() {
    return {
        {"msg_147_critical_profile", DOM_MSG_CRITICAL_PROFILE,
         [] { return DOM_clitical_tlv_EncodeCriticalProfile("Quarantine"); },
         [](TLV_MSG* msg) {
             char name[32] = "?";
             EXPECT_EQ(DOM_critical_tlv_DecodeProfileName(msg, name), DOM_OK);
             EXPECT_STREQ(name, "Quarantine");
         }},
        {"msg_148_critical_vpn", DOM_MSG_CRITICAL_VPN,
         [] {
             const CriticalProfileMsg record = CriticalSegmentMessage("vpn-a");
             return DOM_critical_tlv_EncodeCriticalVpn(&record);
         },
         [](TLV_MSG* msg) {
             const CriticalProfileMsg want = CriticalSegmentMessage("vpn-a");
             ExpectRecord(DOM_critical_tlv_DecodeCriticalVpn, want)(msg);
             CriticalProfileMsg record{};
             EXPECT_EQ(DOM_critical_tlv_DecodeCriticalVpn(msg, &record), DOM_OK);
             EXPECT_EQ(record.value16, 0xFFFE);
         }},
        {"msg_148_critical_vpn_request", DOM_MSG_CRITICAL_VPN,
         [] { return DOM_critical_tlv_EncodeGetCriticalVpn("Quarantine", "vpn-a"); },
         ExpectNames(DOM_critical_tlv_DecodeGetCriticalVpn, "Quarantine", "vpn-a")},
        {"msg_149_critical_segment", DOM_MSG_CRITICAL_SEGMENT,
         [] {
             const CriticalProfileMsg record = CriticalSegmentMessage("not sent");
             return DOM_critical_tlv_EncodeDefaultCritical(&record);
         },
         [](TLV_MSG* msg) {
             const CriticalProfileMsg want = CriticalSegmentMessage("");
             ExpectRecord(DOM_critical_tlv_DecodeDefaultCritical, want)(msg);
             CriticalProfileMsg record{};
             EXPECT_EQ(DOM_critical_tlv_DecodeDefaultCritical(msg, &record), DOM_OK);
             EXPECT_EQ(record.value16, 0xFFFE);
         }},
        {"msg_156_author_profile", DOM_MSG_AUTHOR_PROFILE,
         [] { return DOM_author_tlv_EncodeAuthorProfile("Staff"); },
         [](TLV_MSG* msg) {
             char name[32] = "?";
             EXPECT_EQ(DOM_author_tlv_DecodeProfileName(msg, sizeof name, name), DOM_OK);
             EXPECT_STREQ(name, "Staff");
         }},
        {"msg_157_author_vpn", DOM_MSG_AUTHOR_VPN,
         [] {
             const AuthorProfileMsg record = AuthorSegmentMessage("vpn-b");
             return DOM_author_tlv_EncodeAuthorVpn(&record);
         },
         ExpectRecord(DOM_author_tlv_DecodeAuthorVpn, AuthorSegmentMessage("vpn-b"))},
        {"msg_157_author_vpn_request", DOM_MSG_AUTHOR_VPN,
         [] { return DOM_author_tlv_EncodeGetAuthorVpn("Staff", "vpn-b"); },
         ExpectNames(DOM_author_tlv_DecodeGetAuthorVpn, "Staff", "vpn-b")},
        {"msg_158_author_segment", DOM_MSG_AUTHOR_SEGMENT,
         [] {
             const AuthorProfileMsg record = AuthorSegmentMessage("not sent");
             return DOM_author_tlv_EncodeDefaultAuthor(&record);
         },
         ExpectRecord(DOM_author_tlv_DecodeDefaultAuthor, AuthorSegmentMessage(""))},
    };
}

}  // namespace golden
