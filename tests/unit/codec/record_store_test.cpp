// Batches of records on the standby board: what they store, and what ends them.
#include <aaadom/record_codec.h>
#include <aaadom/user_record.h>

#include "fakes/text_reads.h"
#include "tests/golden/sample_record.h"
#include "unit/codec/codec_test_support.h"
#include "unit/codec/run_database.h"

namespace {

using namespace codec_test;
using Serials = std::vector<uint64_t>;

Message FieldsOf(const UserRecord& record) {
    Message fields;
    EXPECT_EQ(DOM_userrecord_tlv_EncodeUserRecordStruct(fields.get(), &record), DOM_OK);
    return fields;
}

Message Fields(uint64_t serial) {
    UserRecord record = golden::SampleRecord();
    record.serial = serial;
    return FieldsOf(record);
}

/// A record with a detail text that cannot be decoded: one of its 16-bit numbers is a byte long.
Message Undecodable(uint64_t serial) {
    Message fields = Fields(serial);
    fields.Raw(DOM_TLV_RECORD_NUMBER16_1, "x");
    return fields;
}

class RecordStore : public CodecTest {
  protected:
    RecordStore() { run_db::Open(); }
    ~RecordStore() override {
        fake::DisarmFailures();
        DOM_DestroyRecordRunDB();
    }
    static uint32_t Store(const Message& msg, uint32_t kind = 3) {
        return DOM_DecodeUserRecordAllAndSetToRunDB(msg.get(), kind);
    }
};

TEST_F(RecordStore, EveryRecordIsStoredInTheList) {
    for (const uint32_t kind : run_db::kLists) {
        EXPECT_EQ(Store(Message().Sub(178, Fields(kind)).Sub(178, Fields(kind + 10)), kind),
                  DOM_OK);
    }
    for (const uint32_t kind : run_db::kLists) {
        EXPECT_EQ(run_db::Serials(kind), (Serials{kind, kind + 10u}));
    }
}

TEST_F(RecordStore, StoredRecordIsTheOneThatWasSent) {
    const UserRecord record = golden::SampleRecord();
    ASSERT_EQ(Store(Message().Sub(178, FieldsOf(record))), DOM_OK);
    std::string want(DOM_RECORD_STORED_SIZE, '\0');
    want.resize(
        DOM_userrecord_tlv_EncodeUserRecordStlv(&record, DOM_RECORD_STORED_SIZE, want.data()));
    EXPECT_EQ(run_db::Entries(3), std::vector<std::string>{want});
}

TEST_F(RecordStore, NothingOfARecordIsLeftForTheNext) {
    UserRecord bare{};
    bare.serial = 2;
    Message serial_alone;
    serial_alone.U64(264, 2);
    ASSERT_EQ(Store(Message().Sub(178, Fields(1)).Sub(178, serial_alone)), DOM_OK);
    std::string want(DOM_RECORD_STORED_SIZE, '\0');
    want.resize(
        DOM_userrecord_tlv_EncodeUserRecordStlv(&bare, DOM_RECORD_STORED_SIZE, want.data()));
    const auto entries = run_db::Entries(3);
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[1], want);
}

TEST_F(RecordStore, CodeListAndOtherTlvsAreNotLookedAt) {
    Message msg;
    msg.U32(0, 7).U32(180, 1).Text(179, "x").Sub(178, Fields(5)).U32(16, 9);
    EXPECT_EQ(Store(msg, 4), DOM_OK);
    EXPECT_EQ(run_db::Serials(4), Serials{5});
    EXPECT_EQ(run_db::Serials(1), Serials{});
}

TEST_F(RecordStore, MessageWithoutRecordsIsDone) {
    EXPECT_EQ(Store(Message()), DOM_OK);
    EXPECT_EQ(Store(Message(173).U32(180, 3)), DOM_OK);
    EXPECT_EQ(run_db::Serials(3), Serials{});
}

TEST_F(RecordStore, RecordThatIsNoMessageEndsTheWork) {
    EXPECT_EQ(Store(Message().Sub(178, Fields(1)).Raw(178, "bad").Sub(178, Fields(2))),
              DOM_ERR_FAILED);
    EXPECT_EQ(run_db::Serials(3), Serials{1});
}

TEST_F(RecordStore, RecordThatCannotBeDecodedEndsTheWork) {
    EXPECT_EQ(Store(Message().Sub(178, Fields(1)).Sub(178, Undecodable(2)).Sub(178, Fields(3))),
              DOM_ERR_FAILED);
    EXPECT_EQ(run_db::Serials(3), Serials{1});
}

TEST_F(RecordStore, ResultOfTheDecoderIsTheResult) {
    const fake::FailTextReads fail(DOM_TLV_RECORD_FIRST_NAME, 0x40010008);
    EXPECT_EQ(Store(Message().Sub(178, Fields(1)).Sub(178, Fields(2))), 0x40010008u);
    EXPECT_EQ(run_db::Serials(3), Serials{});
}

TEST_F(RecordStore, RecordThatItsListRefusesKeepsNoneOut) {
    EXPECT_EQ(Store(Message().Sub(178, Fields(1)).Sub(178, Fields(1)).Sub(178, Fields(2))), DOM_OK);
    EXPECT_EQ(run_db::Serials(3), (Serials{1, 2}));
    fake::FailDbmCall(1);
    EXPECT_EQ(Store(Message().Sub(178, Fields(3)).Sub(178, Fields(4))), DOM_OK);
    EXPECT_EQ(run_db::Serials(3), (Serials{1, 2, 4}));
}

TEST_F(RecordStore, UnknownListAndClosedDatabaseStoreNothing) {
    for (const uint32_t kind : {0u, 2u, 5u, 0xFFFFFFFFu}) {
        EXPECT_EQ(Store(Message().Sub(178, Fields(1)), kind), DOM_OK);
    }
    for (const uint32_t kind : run_db::kLists) EXPECT_EQ(run_db::Serials(kind), Serials{});
    DOM_DestroyRecordRunDB();
    EXPECT_EQ(Store(Message().Sub(178, Fields(1))), DOM_OK);
}

TEST_F(RecordStore, MessageStaysTheCallers) {
    Message msg;
    msg.Sub(178, Fields(1)).Sub(178, Fields(2));
    const std::string before = fake::ImageOf(msg.get());
    EXPECT_EQ(Store(msg), DOM_OK);
    EXPECT_EQ(fake::ImageOf(msg.get()), before);
}

TEST_F(RecordStore, LackOfMemoryForARecordEndsTheWork) {
    Message msg;
    msg.Sub(178, Fields(1)).Sub(178, Fields(2));
    fake::FailMessage(2);
    EXPECT_EQ(Store(msg), DOM_ERR_FAILED);
    EXPECT_EQ(run_db::Serials(3), Serials{1});
}

TEST_F(RecordStore, NullIsRefused) {
    EXPECT_EQ(DOM_DecodeUserRecordAllAndSetToRunDB(nullptr, 3), DOM_ERR_FAILED);
}

TEST_F(RecordStore, DamagedBatchesAreReadSafely) {
    Message msg;
    msg.Sub(178, Fields(1)).U32(0, 173).U32(180, 3);
    ForEveryDamage(msg.get(), [](TLV_MSG* damaged) {
        (void)DOM_DecodeUserRecordAllAndSetToRunDB(damaged, 3);
        (void)DOM_ClearAllRecordInfoFromRunDB(2);
    });
}

}  // namespace
