// Changes of user records on their way to the standby board.
#include <aaadom/record_codec.h>

#include "unit/codec/codec_test_support.h"

namespace {

using namespace codec_test;

class RecordCodec : public CodecTest {
  protected:
    static UserRecord Sample() {
        UserRecord record{};
        record.serial = 42;
        aaadom::CopyText(record.second_name, "user@isp");
        return record;
    }
    static void ExpectRecordOfKind(TLV_MSG* msg, uint32_t kind) {
        const TlvPtr owned(msg);
        ASSERT_NE(msg, nullptr);
        EXPECT_EQ(TypesOf(msg), (std::vector<uint32_t>{0, 180, 178}));
        EXPECT_EQ(NumberOf(msg, 0), 173u);
        EXPECT_EQ(NumberOf(msg, 180), kind);
        const TlvPtr fields = aaadom::FindTlv(msg, 178).Sub();
        ASSERT_NE(fields, nullptr);
        EXPECT_EQ(aaadom::FindTlv(fields.get(), 264).U64(), 42u);
        EXPECT_EQ(TextOf(fields.get(), 164), "user@isp");
    }
};

TEST_F(RecordCodec, OnlineFailureIsOfList1) {
    const UserRecord record = Sample();
    ExpectRecordOfKind(DOM_EncodeOnlineFailRecord(&record), 1);
}

TEST_F(RecordCodec, OfflineRecordIsOfList4ForFlag1AndOfList3Else) {
    const UserRecord record = Sample();
    ExpectRecordOfKind(DOM_EncodOfflineRecord(1, &record), 4);
    for (const uint16_t flag : {0, 2, 3, 0xFFFF}) {
        ExpectRecordOfKind(DOM_EncodOfflineRecord(flag, &record), 3);
    }
}

TEST_F(RecordCodec, DeletionIsListAndSerial) {
    const TlvPtr msg(DOM_EncodeDelUserRecord(3, 0x1122334455667788u));
    EXPECT_EQ(TypesOf(msg.get()), (std::vector<uint32_t>{0, 180, 264}));
    EXPECT_EQ(NumberOf(msg.get(), 0), 173u);
    EXPECT_EQ(aaadom::FindTlv(msg.get(), 264).Length(), 8u);
    uint32_t kind = 0;
    uint64_t serial = 0;
    EXPECT_EQ(DOM_DecodeDelUserRecord(msg.get(), &kind, &serial), DOM_OK);
    EXPECT_EQ(kind, 3u);
    EXPECT_EQ(serial, 0x1122334455667788u);
}

TEST_F(RecordCodec, WhatCannotBeEncodedIsNull) {
    EXPECT_EQ(DOM_EncodeOnlineFailRecord(nullptr), nullptr);
    EXPECT_EQ(DOM_EncodOfflineRecord(1, nullptr), nullptr);
    char detail[] = "text";
    UserRecord record = Sample();
    record.detail = detail;
    record.detail_len = sizeof detail;
    ExpectEveryFailureGivesNull([&] { return DOM_EncodeOnlineFailRecord(&record); });
    ExpectEveryFailureGivesNull([&] { return DOM_EncodOfflineRecord(0, &record); });
    ExpectEveryFailureGivesNull([] { return DOM_EncodeDelUserRecord(1, 2); });
}

TEST_F(RecordCodec, DeletionWithoutTlvsReadsZeros) {
    uint32_t kind = 9;
    uint64_t serial = 9;
    EXPECT_EQ(DOM_DecodeDelUserRecord(Message(173).get(), &kind, &serial), DOM_OK);
    EXPECT_EQ(kind, 0u);
    EXPECT_EQ(serial, 0u);
}

TEST_F(RecordCodec, FirstTlvOfEachTypeOfADeletionCounts) {
    Message msg(173);
    msg.U64(264, 5).U32(180, 4).U32(180, 1).U64(264, 6);
    uint32_t kind = 9;
    uint64_t serial = 9;
    EXPECT_EQ(DOM_DecodeDelUserRecord(msg.get(), &kind, &serial), DOM_OK);
    EXPECT_EQ(kind, 4u);
    EXPECT_EQ(serial, 5u);
}

TEST_F(RecordCodec, DeletionWithShortTlvsReadsZeros) {
    Message msg(173);
    msg.Raw(180, "abc").Raw(264, "1234567");
    uint32_t kind = 9;
    uint64_t serial = 9;
    EXPECT_EQ(DOM_DecodeDelUserRecord(msg.get(), &kind, &serial), DOM_OK);
    EXPECT_EQ(kind, 0u);
    EXPECT_EQ(serial, 0u);
}

TEST_F(RecordCodec, NullOutputsFailAndTheOtherIsCleared) {
    const TlvPtr msg(DOM_EncodeDelUserRecord(3, 4));
    uint32_t kind = 9;
    uint64_t serial = 9;
    EXPECT_EQ(DOM_DecodeDelUserRecord(msg.get(), &kind, nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_DecodeDelUserRecord(msg.get(), nullptr, &serial), DOM_ERR_FAILED);
    EXPECT_EQ(kind, 0u);
    EXPECT_EQ(serial, 0u);
    EXPECT_EQ(DOM_DecodeDelUserRecord(msg.get(), nullptr, nullptr), DOM_ERR_FAILED);
    kind = 9;
    serial = 9;
    EXPECT_EQ(DOM_DecodeDelUserRecord(nullptr, &kind, &serial), DOM_ERR_FAILED);
    EXPECT_EQ(kind, 0u);
    EXPECT_EQ(serial, 0u);
}

}  // namespace
