// Batches of records for the standby board: when they are sent, and what is sent.
#include <aaadom/record_codec.h>
#include <aaadom/service.h>
#include <aaadom/user_record.h>

#include "tests/golden/sample_record.h"
#include "unit/batch_sync.h"
#include "unit/codec/codec_test_support.h"

namespace {

using namespace codec_test;
using Types = std::vector<uint32_t>;

struct Standby {
    std::vector<std::string> images;
    uint32_t result = 0;
} standby;

/// A record whose fields make a message of a wanted length.
class SizedRecord {
  public:
    explicit SizedRecord(uint32_t message_length, uint64_t serial = 1) {
        record_.serial = serial;
        SetDetail(1);
        const uint32_t shortest = MessageLength();
        EXPECT_GE(message_length, shortest);
        SetDetail(1 + message_length - shortest);
        EXPECT_EQ(MessageLength(), message_length);
    }
    operator const UserRecord*() const { return &record_; }

  private:
    void SetDetail(uint32_t length) {
        detail_.assign(length, 'x');
        record_.detail = detail_.data();
        record_.detail_len = length;
    }
    uint32_t MessageLength() const {
        const TlvPtr msg(TLV_Create());
        EXPECT_EQ(DOM_userrecord_tlv_EncodeUserRecordStruct(msg.get(), &record_), DOM_OK);
        return TLV_GetMsgLen(msg.get(), TLV_FORM_BUFFER);
    }

    UserRecord record_{};
    std::string detail_;
};

class RecordBatch : public CodecTest {
  protected:
    RecordBatch() {
        standby = Standby{};
        AAADService service{};
        service.cfg_real_sync_to_slave = [](TLV_MSG* msg) {
            standby.images.push_back(fake::ImageOf(msg));
            return standby.result;
        };
        DOM_SetAAADService(&service);
        batch_.reset(TLV_Create());
        scratch_.reset(TLV_Create());
    }
    ~RecordBatch() override {
        fake::DisarmFailures();
        DOM_ResetAAADService();
        batch_.reset();
        scratch_.reset();
    }

    uint32_t Add(const UserRecord* record, uint32_t kind = 3) {
        return DOM_EncodeUserRecordAll(kind, record, batch_.get(), scratch_.get());
    }
    uint32_t Length() const { return TLV_GetMsgLen(batch_.get(), TLV_FORM_BUFFER); }
    Types InBatch() const { return TypesOf(batch_.get()); }
    Types InScratch() const { return TypesOf(scratch_.get()); }

    /// The body of the n-th message that was sent.
    static TlvPtr Body(size_t n) {
        EXPECT_LT(n, standby.images.size());
        if (n >= standby.images.size()) return nullptr;
        return aaadom::BodyInHeads(standby.images[n], 7, 4, DOM_OP_SET);
    }
    static std::vector<uint64_t> SerialsOf(TLV_MSG* msg) {
        std::vector<uint64_t> serials;
        for (aaadom::TlvItem item : aaadom::TlvWalk(msg)) {
            if (item.Type() != 178) continue;
            const TlvPtr fields = item.Sub();
            serials.push_back(aaadom::FindTlv(fields.get(), 264).U64());
        }
        return serials;
    }

    TlvPtr batch_;
    TlvPtr scratch_;
};

TEST_F(RecordBatch, RecordBecomesTlv178WithItsFields) {
    const UserRecord record = golden::SampleRecord();
    EXPECT_EQ(Add(&record), DOM_OK);
    EXPECT_EQ(InBatch(), Types{178});
    const TlvPtr fields = aaadom::FindTlv(batch_.get(), 178).Sub();
    const TlvPtr want(TLV_Create());
    ASSERT_EQ(DOM_userrecord_tlv_EncodeUserRecordStruct(want.get(), &record), DOM_OK);
    EXPECT_EQ(fake::ImageOf(fields.get()), fake::ImageOf(want.get()));
    EXPECT_TRUE(standby.images.empty()) << "the last records are the caller's to send";
}

TEST_F(RecordBatch, ScratchIsEmptyAfterEachRecord) {
    const UserRecord record = golden::SampleRecord();
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(Add(&record), DOM_OK);
        EXPECT_EQ(InScratch(), Types{});
    }
    EXPECT_EQ(InBatch(), (Types{178, 178, 178}));
}

TEST_F(RecordBatch, BatchAndRecordOf59899BytesAreNotSent) {
    const SizedRecord first(30000, 1);
    ASSERT_EQ(Add(first), DOM_OK);
    const SizedRecord second(59899 - Length(), 2);
    EXPECT_EQ(Add(second), DOM_OK);
    EXPECT_TRUE(standby.images.empty());
    EXPECT_EQ(SerialsOf(batch_.get()), (std::vector<uint64_t>{1, 2}));
}

TEST_F(RecordBatch, RecordThatTakesTheBatchToExactly59900BytesSendsItFirst) {
    const SizedRecord first(30000, 1);
    ASSERT_EQ(Add(first), DOM_OK);
    const SizedRecord second(59900 - Length(), 2);
    EXPECT_EQ(Add(second, 4), DOM_OK);
    ASSERT_EQ(standby.images.size(), 1u);
    const TlvPtr body = Body(0);
    EXPECT_EQ(SerialsOf(body.get()), std::vector<uint64_t>{1});
    EXPECT_EQ(NumberOf(body.get(), 180), 4u);
    EXPECT_EQ(SerialsOf(batch_.get()), std::vector<uint64_t>{2});
    EXPECT_EQ(InBatch(), Types{178}) << "code and list of the sent batch are gone";
    EXPECT_EQ(InScratch(), Types{});
}

TEST_F(RecordBatch, RecordThatTakesTheBatchTo59901BytesSendsItFirst) {
    const SizedRecord first(30000, 1);
    ASSERT_EQ(Add(first), DOM_OK);
    const SizedRecord second(59901 - Length(), 2);
    EXPECT_EQ(Add(second), DOM_OK);
    EXPECT_EQ(standby.images.size(), 1u);
    EXPECT_EQ(SerialsOf(batch_.get()), std::vector<uint64_t>{2});
}

// An empty batch has the 8 bytes of its header.
TEST_F(RecordBatch, FirstRecordOf59891BytesIsNotSent) {
    const SizedRecord record(59891);
    EXPECT_EQ(Add(record), DOM_OK);
    EXPECT_TRUE(standby.images.empty());
    EXPECT_EQ(InBatch(), Types{178});
}

// Receivers take a batch without records for what it is: nothing.
TEST_F(RecordBatch, FirstRecordOf59892BytesSendsTheEmptyBatch) {
    const SizedRecord record(59892);
    EXPECT_EQ(Add(record), DOM_OK);
    ASSERT_EQ(standby.images.size(), 1u);
    const TlvPtr body = Body(0);
    EXPECT_EQ(TypesOf(body.get()), (Types{0, 180}));
    EXPECT_EQ(InBatch(), Types{178});
}

TEST_F(RecordBatch, ManyRecordsAreSentInOrderAndOnce) {
    std::vector<uint64_t> want;
    UserRecord record = golden::SampleRecord();
    for (record.serial = 1; record.serial <= 1000; ++record.serial) {
        ASSERT_EQ(Add(&record), DOM_OK);
        want.push_back(record.serial);
    }
    ASSERT_EQ(DOM_EncodeRecordTypeAndSend(batch_.get(), 3), DOM_OK);
    EXPECT_GT(standby.images.size(), 3u);
    std::vector<uint64_t> got;
    for (size_t n = 0; n < standby.images.size(); ++n) {
        const TlvPtr body = Body(n);
        EXPECT_LT(TLV_GetMsgLen(body.get(), TLV_FORM_BUFFER), 60000u);
        for (const uint64_t serial : SerialsOf(body.get())) got.push_back(serial);
    }
    EXPECT_EQ(got, want);
}

TEST_F(RecordBatch, AbsentStandbyBoardIsNoFailure) {
    for (const bool slot_is_empty : {false, true}) {
        if (slot_is_empty) DOM_ResetAAADService();
        standby.result = 77;
        const SizedRecord first(40000, 1);
        const SizedRecord second(40000, 2);
        EXPECT_EQ(Add(first), DOM_OK);
        EXPECT_EQ(Add(second), DOM_OK);
        EXPECT_EQ(SerialsOf(batch_.get()), std::vector<uint64_t>{2});
    }
}

TEST_F(RecordBatch, RecordThatCannotBeEncodedLeavesTheBatchAndAnEmptyScratch) {
    const UserRecord record = golden::SampleRecord();
    ASSERT_EQ(Add(&record), DOM_OK);
    EXPECT_EQ(Add(nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(InBatch(), Types{178});
    ASSERT_EQ(AAA_AppendUINTTlvData(scratch_.get(), 1, 1), 0u);
    EXPECT_EQ(Add(nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(InScratch(), Types{});
}

// The 16 fields of the record, then TLV 178 itself.
TEST_F(RecordBatch, FailedFieldClearsTheScratchAndFailedRecordClearsBoth) {
    const UserRecord record = golden::SampleRecord();
    for (int n = 1; n <= 17; ++n) {
        batch_.reset(TLV_Create());
        ASSERT_EQ(Add(&record), DOM_OK);
        fake::FailAppend(n);
        EXPECT_EQ(Add(&record), DOM_ERR_FAILED) << n;
        EXPECT_TRUE(fake::Tripped()) << n;
        fake::DisarmFailures();
        EXPECT_EQ(InScratch(), Types{}) << n;
        EXPECT_EQ(InBatch(), n <= 16 ? Types{178} : Types{}) << n;
    }
    fake::FailAppend(18);
    EXPECT_EQ(Add(&record), DOM_OK);
    EXPECT_FALSE(fake::Tripped());
    EXPECT_TRUE(standby.images.empty());
}

TEST_F(RecordBatch, MessagesOfTheCallerStayValid) {
    const SizedRecord big(50000);
    for (int i = 0; i < 3; ++i) ASSERT_EQ(Add(big), DOM_OK);
    EXPECT_EQ(Add(nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(fake::LiveMessages(), 2) << "batch and scratch, nothing else";
}

TEST_F(RecordBatch, NullMessagesAreRefused) {
    const UserRecord record = golden::SampleRecord();
    EXPECT_EQ(DOM_EncodeUserRecordAll(3, &record, nullptr, scratch_.get()), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_EncodeUserRecordAll(3, &record, batch_.get(), nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(InBatch(), Types{});
    EXPECT_EQ(InScratch(), Types{});
}

TEST_F(RecordBatch, CodeAndListAreSentBehindTheRecords) {
    const UserRecord record = golden::SampleRecord();
    for (const uint32_t kind : {1u, 3u, 4u, 0xFFFFFFFFu}) {
        standby.images.clear();
        batch_.reset(TLV_Create());
        ASSERT_EQ(Add(&record), DOM_OK);
        ASSERT_EQ(Add(&record), DOM_OK);
        EXPECT_EQ(DOM_EncodeRecordTypeAndSend(batch_.get(), kind), DOM_OK);
        ASSERT_EQ(standby.images.size(), 1u);
        const TlvPtr body = Body(0);
        EXPECT_EQ(TypesOf(body.get()), (Types{178, 178, 0, 180}));
        EXPECT_EQ(NumberOf(body.get(), 0), 173u);
        EXPECT_EQ(NumberOf(body.get(), 180), kind);
    }
}

TEST_F(RecordBatch, SentBatchStaysTheCallersWithCodeAndList) {
    EXPECT_EQ(DOM_EncodeRecordTypeAndSend(batch_.get(), 1), DOM_OK);
    EXPECT_EQ(InBatch(), (Types{0, 180}));
    EXPECT_EQ(fake::LiveMessages(), 2);
}

TEST_F(RecordBatch, ResultOfTheSlotIsTheResultOfSending) {
    standby.result = 77;
    EXPECT_EQ(DOM_EncodeRecordTypeAndSend(batch_.get(), 1), 77u);
    DOM_ResetAAADService();
    EXPECT_EQ(DOM_EncodeRecordTypeAndSend(batch_.get(), 1), DOM_ERR_FAILED);
}

TEST_F(RecordBatch, BatchThatCannotBeCompletedIsNotSent) {
    EXPECT_EQ(DOM_EncodeRecordTypeAndSend(nullptr, 1), DOM_ERR_FAILED);
    for (const fake::Event event : {fake::Event::kAppend, fake::Event::kMessage}) {
        for (int n = 1;; ++n) {
            ASSERT_LT(n, 50);
            standby.images.clear();
            batch_.reset(TLV_Create());
            fake::Fail(event, n);
            const uint32_t result = DOM_EncodeRecordTypeAndSend(batch_.get(), 1);
            const bool tripped = fake::Tripped();
            fake::DisarmFailures();
            EXPECT_EQ(fake::LiveMessages(), 2);
            EXPECT_EQ(result, tripped ? DOM_ERR_FAILED : DOM_OK) << n;
            EXPECT_EQ(standby.images.size(), tripped ? 0u : 1u) << n;
            if (!tripped) {
                EXPECT_GT(n, 1);
                break;
            }
        }
    }
}

class RecordsState : public CodecTest {
  protected:
    static uint32_t Decode(const Message& msg) {
        first = second = 99;
        return DOM_DecodeUserRecordsState(msg.get(), 95, &first, &second);
    }
    static inline uint32_t first;
    static inline uint32_t second;
};

TEST_F(RecordsState, ChosenTypeIsTheFirstNumberAnd96TheSecond) {
    EXPECT_EQ(Decode(Message().U32(95, 5).U32(96, 6)), DOM_OK);
    EXPECT_EQ(first, 5u);
    EXPECT_EQ(second, 6u);
    EXPECT_EQ(Decode(Message().U32(96, 8).U32(95, 7)), DOM_OK);
    EXPECT_EQ(first, 7u);
    EXPECT_EQ(second, 8u);
}

TEST_F(RecordsState, MissingNumbersAreZero) {
    EXPECT_EQ(Decode(Message()), DOM_OK);
    EXPECT_EQ(first, 0u);
    EXPECT_EQ(second, 0u);
}

TEST_F(RecordsState, OtherTlvsFailAndBothNumbersAreFilled) {
    EXPECT_EQ(Decode(Message().U32(97, 1).U32(95, 5).U32(96, 6)), DOM_ERR_FAILED);
    EXPECT_EQ(first, 5u);
    EXPECT_EQ(second, 6u);
    EXPECT_EQ(Decode(Message().U32(95, 7).U32(1, 1).U32(96, 8)), DOM_ERR_FAILED);
    EXPECT_EQ(first, 7u);
    EXPECT_EQ(second, 8u);
}

// Senders of this message give it no code.
TEST_F(RecordsState, MessageCodeIsAnotherTlv) {
    EXPECT_EQ(Decode(Message(173).U32(95, 5).U32(96, 6)), DOM_ERR_FAILED);
    EXPECT_EQ(first, 5u);
    EXPECT_EQ(second, 6u);
}

TEST_F(RecordsState, MessageCodeAsTheChosenTypeIsTheFirstNumber) {
    uint32_t code = 0;
    uint32_t state = 0;
    EXPECT_EQ(DOM_DecodeUserRecordsState(Message(173).U32(96, 6).get(), 0, &code, &state), DOM_OK);
    EXPECT_EQ(code, 173u);
    EXPECT_EQ(state, 6u);
}

TEST_F(RecordsState, LastTlvOfATypeCountsAndAShortOneIsZero) {
    EXPECT_EQ(Decode(Message().U32(95, 1).U32(96, 2).U32(95, 3).U32(96, 4)), DOM_OK);
    EXPECT_EQ(first, 3u);
    EXPECT_EQ(second, 4u);
    EXPECT_EQ(Decode(Message().Raw(95, "abc").Raw(96, "")), DOM_OK);
    EXPECT_EQ(first, 0u);
    EXPECT_EQ(second, 0u);
}

TEST_F(RecordsState, Type96AsTheChosenTypeIsTheFirstNumber) {
    EXPECT_EQ(DOM_DecodeUserRecordsState(Message().U32(96, 6).get(), 96, &first, &second), DOM_OK);
    EXPECT_EQ(first, 6u);
    EXPECT_EQ(second, 0u);
}

TEST_F(RecordsState, NullArgumentsFailAndTheOtherNumberIsFilled) {
    Message msg;
    msg.U32(95, 5).U32(96, 6);
    first = second = 99;
    EXPECT_EQ(DOM_DecodeUserRecordsState(msg.get(), 95, nullptr, &second), DOM_ERR_FAILED);
    EXPECT_EQ(second, 6u);
    EXPECT_EQ(DOM_DecodeUserRecordsState(msg.get(), 95, &first, nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(first, 5u);
    EXPECT_EQ(DOM_DecodeUserRecordsState(nullptr, 95, &first, &second), DOM_ERR_FAILED);
    EXPECT_EQ(first, 0u);
    EXPECT_EQ(second, 0u);
}

}  // namespace
