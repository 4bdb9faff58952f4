// Messages of record switches, backup methods and resets.
#include <aaadom/codes.h>
#include <aaadom/user_record.h>
#include <aaadom/user_record_query.h>

#include "unit/userrecord/record_fixture.h"

namespace {

using namespace record_test;

class RecordSwitchMessage : public RecordTest {
  protected:
    static TlvPtr Switches(std::initializer_list<std::pair<uint16_t, uint16_t>> values) {
        TlvPtr msg(TLV_Create());
        for (const auto& [type, value] : values) {
            EXPECT_EQ(AAA_AppendUSHORTTlvData(msg.get(), type, value), 0u);
        }
        return msg;
    }
    static TlvPtr Bits(std::initializer_list<uint32_t> values) {
        TlvPtr msg(TLV_Create());
        for (const uint32_t value : values) {
            EXPECT_EQ(AAA_AppendUINTTlvData(msg.get(), DOM_TLV_BACKUP_BITS, value), 0u);
        }
        return msg;
    }
    static bool Equal(const RecordSwitches& a, const RecordSwitches& b) {
        return memcmp(&a, &b, sizeof a) == 0;
    }
    static bool Equal(const BackupMethods& a, const BackupMethods& b) {
        return memcmp(&a, &b, sizeof a) == 0;
    }
};

TEST_F(RecordSwitchMessage, RequestsCarryTheirCodeAlone) {
    for (const uint32_t code : {54u, 55u, 56u, 57u, 77u, 78u, 79u, 80u, 0u, 0xFFFFFFFFu}) {
        for (const auto encode :
             {DOM_userrecord_tlv_EncodeRecordEnable, DOM_userrecord_tlv_EncodeResetRecord}) {
            const TlvPtr msg(encode(code));
            EXPECT_EQ(TypesOf(msg.get()), std::vector<uint32_t>{0});
            EXPECT_EQ(FindTlv(msg.get(), 0).U32(), code);
        }
    }
    ExpectEveryFailureGivesNull([] { return DOM_userrecord_tlv_EncodeRecordEnable(77); });
    ExpectEveryFailureGivesNull([] { return DOM_userrecord_tlv_EncodeResetRecord(54); });
}

TEST_F(RecordSwitchMessage, SwitchesGoInTheirOrderAs16Bits) {
    const RecordSwitches switches{1, 2, 3, 0xFFFF};
    const TlvPtr msg(DOM_userrecord_tlv_EncodeRecordEnableInfo(&switches));
    EXPECT_EQ(TypesOf(msg.get()), (std::vector<uint32_t>{0, 181, 182, 183, 184}));
    EXPECT_EQ(FindTlv(msg.get(), 0).U32(), 81u);
    EXPECT_EQ(BytesOf(msg.get(), 181), std::string("\x01\x00", 2));
    EXPECT_EQ(BytesOf(msg.get(), 182), std::string("\x02\x00", 2));
    EXPECT_EQ(BytesOf(msg.get(), 183), std::string("\x03\x00", 2));
    EXPECT_EQ(BytesOf(msg.get(), 184), std::string("\xFF\xFF", 2));
}

TEST_F(RecordSwitchMessage, SwitchesThatCannotBeEncodedAreNull) {
    EXPECT_EQ(DOM_userrecord_tlv_EncodeRecordEnableInfo(nullptr), nullptr);
    const RecordSwitches switches{1, 1, 1, 1};
    ExpectEveryFailureGivesNull(
        [&] { return DOM_userrecord_tlv_EncodeRecordEnableInfo(&switches); });
}

TEST_F(RecordSwitchMessage, SwitchesComeBack) {
    const RecordSwitches switches{1, 2, 3, 0xFFFF};
    const TlvPtr msg(DOM_userrecord_tlv_EncodeRecordEnableInfo(&switches));
    RecordSwitches read{};
    EXPECT_EQ(DOM_userrecord_tlv_DecodeRecordEnableInfo(msg.get(), &read), 0u);
    EXPECT_TRUE(Equal(read, switches));
}

TEST_F(RecordSwitchMessage, MissingSwitchesStay) {
    RecordSwitches read{7, 7, 7, 7};
    const TlvPtr msg = Switches({{183, 1}});
    EXPECT_EQ(DOM_userrecord_tlv_DecodeRecordEnableInfo(msg.get(), &read), 0u);
    EXPECT_TRUE(Equal(read, {7, 7, 1, 7}));
}

TEST_F(RecordSwitchMessage, OtherTypesAreSkipped) {
    RecordSwitches read{7, 7, 7, 7};
    const TlvPtr msg = Switches({{180, 1}, {185, 1}, {0, 1}});
    EXPECT_EQ(DOM_userrecord_tlv_DecodeRecordEnableInfo(msg.get(), &read), 0u);
    EXPECT_TRUE(Equal(read, {7, 7, 7, 7}));
}

// One switch that is too short fails the reading, wherever it stands; the others are read.
TEST_F(RecordSwitchMessage, ShortSwitchFailsAndTheOthersAreRead) {
    for (const uint16_t short_type : {181, 182, 183, 184}) {
        const TlvPtr msg(TLV_Create());
        for (uint16_t type = 181; type <= 184; ++type) {
            const uint32_t length = type == short_type ? 1 : 2;
            ASSERT_EQ(TLV_Append_Data(msg.get(), type, length, "\x01\x00"), 0u);
        }
        RecordSwitches read{7, 7, 7, 7};
        EXPECT_EQ(DOM_userrecord_tlv_DecodeRecordEnableInfo(msg.get(), &read), DOM_ERR_FAILED);
        RecordSwitches want{1, 1, 1, 1};
        (&want.online_fail)[short_type - 181] = 7;
        EXPECT_TRUE(Equal(read, want)) << short_type;
    }
}

TEST_F(RecordSwitchMessage, EmptyMessageIsNoFailureAndANullOutputIs) {
    const TlvPtr empty(TLV_Create());
    RecordSwitches switches{7, 7, 7, 7};
    BackupMethods methods{7, 7, 7};
    uint32_t bits = 7;
    for (TLV_MSG* msg : {empty.get(), static_cast<TLV_MSG*>(nullptr)}) {
        EXPECT_EQ(DOM_userrecord_tlv_DecodeRecordEnableInfo(msg, &switches), 0u);
        EXPECT_EQ(DOM_userrecord_tlv_DecodeBackupMethodByStruct(msg, &methods), 0u);
        EXPECT_EQ(DOM_userrecord_tlv_DecodeBackupMethod(msg, &bits), 0u);
        EXPECT_EQ(DOM_userrecord_tlv_DecodeRecordEnableInfo(msg, nullptr), DOM_ERR_FAILED);
        EXPECT_EQ(DOM_userrecord_tlv_DecodeBackupMethodByStruct(msg, nullptr), DOM_ERR_FAILED);
        EXPECT_EQ(DOM_userrecord_tlv_DecodeBackupMethod(msg, nullptr), DOM_ERR_FAILED);
    }
    EXPECT_TRUE(Equal(switches, {7, 7, 7, 7}));
    EXPECT_TRUE(Equal(methods, {7, 7, 7}));
    EXPECT_EQ(bits, 0u);
}

TEST_F(RecordSwitchMessage, BackupBitsGoAsOneNumber) {
    for (const uint32_t bits : {0u, 5u, 7u, 0xFFFFFFFFu}) {
        const TlvPtr msg(DOM_userrecord_tlv_EncodeBackupMethod(bits));
        EXPECT_EQ(TypesOf(msg.get()), (std::vector<uint32_t>{0, 448}));
        EXPECT_EQ(FindTlv(msg.get(), 0).U32(), 164u);
        uint32_t read = 9;
        EXPECT_EQ(DOM_userrecord_tlv_DecodeBackupMethod(msg.get(), &read), 0u);
        EXPECT_EQ(read, bits);
    }
    ExpectEveryFailureGivesNull([] { return DOM_userrecord_tlv_EncodeBackupMethod(7); });
}

TEST_F(RecordSwitchMessage, LastBackupBitsCount) {
    const TlvPtr msg = Bits({1, 6});
    uint32_t read = 0;
    EXPECT_EQ(DOM_userrecord_tlv_DecodeBackupMethod(msg.get(), &read), 0u);
    EXPECT_EQ(read, 6u);
}

TEST_F(RecordSwitchMessage, SetBitsRaiseTheirFlagsAndClearBitsKeepTheirs) {
    const struct {
        uint32_t bits;
        BackupMethods before, after;
    } kCases[] = {
        {1, {0, 0, 0}, {1, 0, 0}}, {2, {0, 0, 0}, {0, 1, 0}}, {4, {0, 0, 0}, {0, 0, 1}},
        {6, {0, 0, 0}, {0, 1, 1}}, {6, {1, 0, 0}, {1, 1, 1}}, {0, {1, 1, 1}, {1, 1, 1}},
        {0, {5, 6, 7}, {5, 6, 7}}, {7, {5, 6, 7}, {1, 1, 1}}, {0xFFFFFFF8u, {0, 0, 0}, {0, 0, 0}},
    };
    for (const auto& item : kCases) {
        const TlvPtr msg = Bits({item.bits});
        BackupMethods methods = item.before;
        EXPECT_EQ(DOM_userrecord_tlv_DecodeBackupMethodByStruct(msg.get(), &methods), 0u);
        EXPECT_TRUE(Equal(methods, item.after)) << item.bits;
    }
}

TEST_F(RecordSwitchMessage, BackupBitsGoWithTheirDefault) {
    const TlvPtr msg(DOM_userrecord_tlv_EncodeBackupMethodWithDefault(5, 0xFFFFFFFFu));
    EXPECT_EQ(TypesOf(msg.get()), (std::vector<uint32_t>{0, 448, 465}));
    EXPECT_EQ(FindTlv(msg.get(), 0).U32(), 164u);
    EXPECT_EQ(FindTlv(msg.get(), 448).U32(), 5u);
    EXPECT_EQ(FindTlv(msg.get(), 465).U32(), 0xFFFFFFFFu);
    ExpectEveryFailureGivesNull(
        [] { return DOM_userrecord_tlv_EncodeBackupMethodWithDefault(7, 1); });
}

TEST_F(RecordSwitchMessage, BackupBitsAndDefaultComeBack) {
    const TlvPtr msg(DOM_userrecord_tlv_EncodeBackupMethodWithDefault(5, 3));
    uint32_t bits = 9;
    uint32_t default_bits = 9;
    EXPECT_EQ(DOM_userrecord_tlv_DecodeBackupMethodWithDefault(msg.get(), &bits, &default_bits),
              0u);
    EXPECT_EQ(bits, 5u);
    EXPECT_EQ(default_bits, 3u);
}

TEST_F(RecordSwitchMessage, MissingBackupBitsAndDefaultAre0) {
    const TlvPtr only_bits = Bits({5});
    const TlvPtr empty(TLV_Create());
    uint32_t bits = 9;
    uint32_t default_bits = 9;
    EXPECT_EQ(
        DOM_userrecord_tlv_DecodeBackupMethodWithDefault(only_bits.get(), &bits, &default_bits),
        0u);
    EXPECT_EQ(bits, 5u);
    EXPECT_EQ(default_bits, 0u);
    for (TLV_MSG* msg : {empty.get(), static_cast<TLV_MSG*>(nullptr)}) {
        bits = default_bits = 9;
        EXPECT_EQ(DOM_userrecord_tlv_DecodeBackupMethodWithDefault(msg, &bits, &default_bits), 0u);
        EXPECT_EQ(bits, 0u);
        EXPECT_EQ(default_bits, 0u);
    }
}

TEST_F(RecordSwitchMessage, BackupBitsAndDefaultNeedBothOutputs) {
    const TlvPtr msg(DOM_userrecord_tlv_EncodeBackupMethodWithDefault(5, 3));
    uint32_t value = 9;
    EXPECT_EQ(DOM_userrecord_tlv_DecodeBackupMethodWithDefault(msg.get(), nullptr, &value),
              DOM_ERR_FAILED);
    EXPECT_EQ(DOM_userrecord_tlv_DecodeBackupMethodWithDefault(msg.get(), &value, nullptr),
              DOM_ERR_FAILED);
    EXPECT_EQ(value, 9u);
}

}  // namespace
