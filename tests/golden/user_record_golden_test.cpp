// The stored form of a user record, its search key, and the message with which an access module
// reports one, against their bytes. They have no message code: nothing but these files tells when
// one of them changes.
#include <aaadom/user_record.h>
#include <gtest/gtest.h>
#include <platform/tlv.h>

#include <cstdlib>
#include <cstring>

#include "base/message.h"
#include "tests/golden/hex_file.h"
#include "tests/golden/sample_record.h"

namespace {

using aaadom::TlvPtr;

std::string Stored(const UserRecord& record) {
    std::string buffer(DOM_RECORD_STORED_SIZE, '\0');
    buffer.resize(
        DOM_userrecord_tlv_EncodeUserRecordStlv(&record, DOM_RECORD_STORED_SIZE, buffer.data()));
    return buffer;
}

void ExpectSame(const UserRecord& got, const UserRecord& want) {
    UserRecord fields = got;
    fields.detail = want.detail;
    EXPECT_EQ(memcmp(&fields, &want, sizeof want), 0);
    EXPECT_STREQ(got.detail, want.detail);
}

class StoredRecordGolden : public testing::TestWithParam<bool> {
  protected:
    static std::string File() {
        return golden::ReadHexFile(GetParam() ? "stored_user_record_detail" : "stored_user_record");
    }
};

TEST_P(StoredRecordGolden, StoringGivesTheFile) {
    EXPECT_EQ(golden::ToHex(Stored(golden::SampleRecord(GetParam()))), golden::ToHex(File()));
}

TEST_P(StoredRecordGolden, ReadingTheFileGivesTheRecord) {
    const std::string file = File();
    UserRecord record{};
    DOM_userrecord_tlv_DecodeUserRecordStlv(file.data(), static_cast<uint32_t>(file.size()),
                                            &record);
    ExpectSame(record, golden::SampleRecord(GetParam()));
    free(record.detail);
}

INSTANTIATE_TEST_SUITE_P(Detail, StoredRecordGolden, testing::Bool(), [](const auto& info) {
    return info.param ? "WithDetail" : "WithoutDetail";
});

TEST(StoredRecordGoldens, SearchKey) {
    char key[DOM_RECORD_KEY_SIZE];
    ASSERT_EQ(
        DOM_userrecord_tlv_EncodeUserRecordSerialNumberStlv(0x0102030405060708u, sizeof key, key),
        sizeof key);
    EXPECT_EQ(golden::ToHex(std::string(key, sizeof key)),
              golden::ToHex(golden::ReadHexFile("stored_user_record_key")));
}

std::string ImageOf(TLV_MSG* msg) {
    std::string image(TLV_GetMsgLen(msg, TLV_FORM_BUFFER), '\0');
    image.resize(TLV_Flush(msg, TLV_FORM_BUFFER, static_cast<uint32_t>(image.size()),
                           reinterpret_cast<uintptr_t>(image.data())));
    return image;
}

TEST(RecordReportGolden, EncodingGivesTheFile) {
    const UserRecordSource source = golden::SampleSource();
    const TlvPtr msg(PAM_EncUserRecordMsg(DOM_RECORD_ABNORMAL_OFFLINE, 0x0102, &source));
    ASSERT_NE(msg, nullptr);
    EXPECT_EQ(golden::ToHex(ImageOf(msg.get())),
              golden::ToHex(golden::ReadHexFile("report_user_record")));
}

TEST(RecordReportGolden, DecodingTheFileGivesTheRecord) {
    const std::string file = golden::ReadHexFile("report_user_record");
    const TlvPtr msg(TLV_CreateReceiveMsg(TLV_FORM_BUFFER, reinterpret_cast<uintptr_t>(file.data()),
                                          static_cast<uint32_t>(file.size())));
    ASSERT_NE(msg, nullptr);
    uint32_t record_type = 0;
    uint16_t flags = 0;
    UserRecord record{};
    EXPECT_EQ(PAM_DecUserRecordMsg(msg.get(), &record_type, &flags, &record), DOM_OK);
    EXPECT_EQ(record_type, uint32_t{DOM_RECORD_ABNORMAL_OFFLINE});
    EXPECT_EQ(flags, 0x0102);
    UserRecord want = golden::SampleRecord();
    want.serial = 0;
    memset(want.interface_name, 0, sizeof want.interface_name);
    ExpectSame(record, want);
    free(record.detail);
}

}  // namespace
