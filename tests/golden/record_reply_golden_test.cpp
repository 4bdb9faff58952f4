// Replies to queries of user records against their bytes. They carry no message code: nothing but
// these files tells when one of them changes.
#include <aaadom/codes.h>
#include <aaadom/user_record_query.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

#include "base/message.h"
#include "tests/golden/hex_file.h"
#include "tests/golden/sample_record.h"

namespace {

using aaadom::TlvItem;
using aaadom::TlvPtr;
using aaadom::TlvWalk;

std::string ImageOf(TLV_MSG* msg) {
    std::string image(TLV_GetMsgLen(msg, TLV_FORM_BUFFER), '\0');
    image.resize(TLV_Flush(msg, TLV_FORM_BUFFER, static_cast<uint32_t>(image.size()),
                           reinterpret_cast<uintptr_t>(image.data())));
    return image;
}

TlvPtr Parse(const char* name) {
    const std::string file = golden::ReadHexFile(name);
    return TlvPtr(TLV_CreateReceiveMsg(TLV_FORM_BUFFER, reinterpret_cast<uintptr_t>(file.data()),
                                       static_cast<uint32_t>(file.size())));
}

void ExpectFile(TLV_MSG* msg, const char* name) {
    ASSERT_NE(msg, nullptr);
    EXPECT_EQ(golden::ToHex(ImageOf(msg)), golden::ToHex(golden::ReadHexFile(name)));
}

using Append = uint32_t (*)(TLV_MSG*, const UserRecord*);

/// A record with and one without a detail text behind the header.
TlvPtr Records(Append append) {
    TlvPtr reply(DOM_userrecord_tlv_EncodeRecordHeader(DOM_RECORD_ABNORMAL_OFFLINE));
    for (const bool with_detail : {true, false}) {
        const UserRecord record = golden::SampleRecord(with_detail);
        EXPECT_EQ(append(reply.get(), &record), 0u);
    }
    return reply;
}

TEST(RecordReplyGoldens, Header) {
    ExpectFile(TlvPtr(DOM_userrecord_tlv_EncodeRecordHeader(DOM_RECORD_ABNORMAL_OFFLINE)).get(),
               "reply_record_header");
}

TEST(RecordReplyGoldens, NoRecord) {
    ExpectFile(TlvPtr(DOM_userrecord_tlv_EncodeNoRecordMsg()).get(), "reply_no_record");
}

TEST(RecordReplyGoldens, VerboseRecords) {
    ExpectFile(Records(DOM_userrecord_tlv_EncodeRecordVerbose).get(), "reply_records_verbose");
}

TEST(RecordReplyGoldens, BriefRecords) {
    ExpectFile(Records(DOM_userrecord_tlv_EncodeRecordBrief).get(), "reply_records_brief");
}

TEST(RecordReplyGoldens, HeaderIsReadAsTheListAskedFor) {
    const TlvPtr reply = Parse("reply_record_header");
    uint16_t selector = 0;
    EXPECT_EQ(DOM_userrecord_tlv_DecodeDisplayRecordAll(reply.get(), &selector), 0u);
    EXPECT_EQ(selector, DOM_RECORD_ABNORMAL_OFFLINE);
}

TEST(RecordReplyGoldens, VerboseRecordsComeBack) {
    const TlvPtr reply = Parse("reply_records_verbose");
    bool with_detail = true;
    int records = 0;
    for (const TlvItem item : TlvWalk(reply.get())) {
        if (item.Type() != DOM_TLV_USER_RECORD) continue;
        ++records;
        const UserRecord want = golden::SampleRecord(with_detail);
        UserRecord read{};
        EXPECT_EQ(DOM_userrecord_tlv_DecodeUserRecordStruct(item.Sub().get(), &read), 0u);
        EXPECT_STREQ(read.detail, want.detail);
        free(read.detail);
        read.detail = want.detail;
        EXPECT_EQ(memcmp(&read, &want, sizeof want), 0);
        with_detail = false;
    }
    EXPECT_EQ(records, 2);
}

TEST(RecordReplyGoldens, BriefRecordsComeBack) {
    const TlvPtr reply = Parse("reply_records_brief");
    bool with_detail = true;
    int records = 0;
    for (const TlvItem item : TlvWalk(reply.get())) {
        if (item.Type() != DOM_TLV_USER_RECORD_BRIEF) continue;
        ++records;
        const UserRecord want = golden::SampleRecord(with_detail);
        UserRecordBrief read{};
        EXPECT_EQ(DOM_userrecord_tlv_DecodeRecordBrief(item.Sub().get(), &read), 0u);
        EXPECT_EQ(read.second_number, want.second_number);
        EXPECT_EQ(memcmp(read.ipv4, want.ipv4, sizeof read.ipv4), 0);
        EXPECT_EQ(memcmp(read.ipv6, want.ipv6, sizeof read.ipv6), 0);
        EXPECT_EQ(memcmp(read.mac, want.mac, sizeof read.mac), 0);
        EXPECT_STREQ(read.second_name, want.second_name);
        EXPECT_EQ(read.detail_len, want.detail_len);
        EXPECT_STREQ(read.detail, want.detail);
        free(read.detail);
        with_detail = false;
    }
    EXPECT_EQ(records, 2);
}

}  // namespace
