// Batches of records, byte for byte, as slot 10 gets them. Their code stands behind
// the records, so they stand apart from the files of the codes.
#include <aaadom/codes.h>
#include <aaadom/record_codec.h>
#include <aaadom/results.h>
#include <aaadom/service.h>
#include <gtest/gtest.h>

#include "base/message.h"
#include "tests/golden/hex_file.h"
#include "tests/golden/sample_record.h"

namespace golden {
namespace {

using aaadom::TlvPtr;

struct Batch {
    const char* file;
    uint32_t kind;
};

class RecordBatchGolden : public testing::TestWithParam<Batch> {
  protected:
    RecordBatchGolden() {
        sent.clear();
        AAADService service{};
        service.cfg_real_sync_to_slave = [](TLV_MSG* msg) {
            std::string image(TLV_GetMsgLen(msg, TLV_FORM_BUFFER), '\0');
            TLV_Flush(msg, TLV_FORM_BUFFER, static_cast<uint32_t>(image.size()),
                      reinterpret_cast<uintptr_t>(image.data()));
            sent.push_back(ToHex(image));
            return 0u;
        };
        DOM_SetAAADService(&service);
    }
    ~RecordBatchGolden() override { DOM_ResetAAADService(); }

    static inline std::vector<std::string> sent;
};

TEST_P(RecordBatchGolden, SendingGivesTheFile) {
    const TlvPtr batch(TLV_Create());
    const TlvPtr scratch(TLV_Create());
    UserRecord record = SampleRecord(true);
    ASSERT_EQ(DOM_EncodeUserRecordAll(GetParam().kind, &record, batch.get(), scratch.get()), 0u);
    record = SampleRecord(false);
    ++record.serial;
    ASSERT_EQ(DOM_EncodeUserRecordAll(GetParam().kind, &record, batch.get(), scratch.get()), 0u);
    ASSERT_EQ(DOM_EncodeRecordTypeAndSend(batch.get(), GetParam().kind), DOM_OK);
    EXPECT_EQ(sent, std::vector<std::string>{ToHex(ReadHexFile(GetParam().file))});
}

TEST_P(RecordBatchGolden, FileIsReadAsTwoRecordsOfItsList) {
    const std::string image = ReadHexFile(GetParam().file);
    const TlvPtr msg(TLV_CreateReceiveMsg(TLV_FORM_BUFFER,
                                          reinterpret_cast<uintptr_t>(image.data()),
                                          static_cast<uint32_t>(image.size())));
    const TlvPtr request(AAA_DelAaadHead(msg.get()));
    uint32_t operation = 99;
    const TlvPtr batch(AAA_DelOpHead(request.get(), &operation));
    ASSERT_NE(batch, nullptr);
    EXPECT_EQ(operation, 0u);
    EXPECT_EQ(aaadom::FindTlv(batch.get(), DOM_TLV_MSG_CODE).U32(), 173u);
    EXPECT_EQ(aaadom::FindTlv(batch.get(), DOM_TLV_RECORD_KIND).U32(), GetParam().kind);
    uint64_t serial = SampleRecord().serial;
    int records = 0;
    for (aaadom::TlvItem item : aaadom::TlvWalk(batch.get())) {
        if (item.Type() != DOM_TLV_USER_RECORD) continue;
        UserRecord record{};
        const TlvPtr fields = item.Sub();
        EXPECT_EQ(DOM_userrecord_tlv_DecodeUserRecordStruct(fields.get(), &record), DOM_OK);
        EXPECT_EQ(record.serial, serial++);
        EXPECT_STREQ(record.second_name, "user@isp-a.example");
        free(record.detail);
        ++records;
    }
    EXPECT_EQ(records, 2);
}

INSTANTIATE_TEST_SUITE_P(Lists, RecordBatchGolden,
                         testing::Values(Batch{"batch_173_online_fail", 1},
                                         Batch{"batch_173_abnormal", 3},
                                         Batch{"batch_173_normal", 4}),
                         [](const testing::TestParamInfo<Batch>& info) {
                             return std::string(info.param.file);
                         });

}  // namespace
}  // namespace golden
