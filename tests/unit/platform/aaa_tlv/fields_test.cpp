// Structures by their field tables, against the single appends and reads that they stand for.
#include <algorithm>
#include <cstddef>

#include "unit/platform/tlv/support.h"

using namespace test;

namespace {

struct Record {
    uint32_t word;
    uint16_t half;
    char name[33];
    uint8_t block[5];
    char tail[3];
};

const AAA_FIELD kFields[] = {
    {7, AAA_FIELD_POSITION, 0, 0},
    {1, AAA_FIELD_WORD, offsetof(Record, word), 0},
    {2, AAA_FIELD_HALF, offsetof(Record, half), 0},
    {3, AAA_FIELD_TEXT, offsetof(Record, name), 33},
    {4, AAA_FIELD_BLOCK, offsetof(Record, block), 5},
    {5, AAA_FIELD_TEXT, offsetof(Record, tail), 3},
};
constexpr uint32_t kCount = 6;

Record Sample(const std::string& name) {
    Record record;
    std::memset(&record, 'z', sizeof record);
    record.word = 0x01020304;
    record.half = 0xFEDC;
    std::memcpy(record.name, name.c_str(), std::min<size_t>(name.size() + 1, sizeof record.name));
    return record;
}

void AppendSingly(const Message& msg, const Record& record, uint32_t position) {
    AAA_AppendUINTTlvData(msg.get(), 7, position);
    AAA_AppendUINTTlvData(msg.get(), 1, record.word);
    AAA_AppendUINTTlvData(msg.get(), 2, record.half);
    AAA_AppendStrTlvData(msg.get(), 3, std::string(record.name, strnlen(record.name, 33)).c_str());
    TLV_Append_Data(msg.get(), 4, 5, record.block);
    AAA_AppendStrTlvData(msg.get(), 5, std::string(record.tail, strnlen(record.tail, 3)).c_str());
}

uint32_t Get(const Message& msg, Record& record, AAA_OTHER_FN other = nullptr,
             void* context = nullptr) {
    return AAA_GetFields(msg.get(), kFields, kCount, &record, other, context);
}

uint32_t GetSub(const Message& msg, TLV_ITER* it, Record& record, uint32_t* position = nullptr) {
    return AAA_GetSubFields(msg.get(), it, kFields, kCount, &record, position, nullptr, nullptr);
}

uint32_t NoteType(void* context, uint16_t type, TLV_MSG* msg, TLV_ITER* it) {
    static_cast<std::string*>(context)->append(std::to_string(type) + '=' + ValueOf(msg, it) + ' ');
    return type;
}

TEST(AaaFields, AppendGivesTheTlvsOfTheSingleAppendsForEveryTextLength) {
    for (size_t length = 0; length <= 40; ++length) {
        const Record record = Sample(std::string(length, 'n'));
        Message together = New(), singly = New();
        ASSERT_EQ(AAA_AppendFields(together.get(), kFields, kCount, &record), 0u);
        AppendSingly(singly, record, 0);
        EXPECT_EQ(ImageOf(together), ImageOf(singly)) << length;
    }
}

TEST(AaaFields, AppendKeepsItsBytesWhileTheMessageGrows) {
    const Record record = Sample("a name");
    Message together = New(), singly = New();
    for (int i = 0; i < 2000; ++i) {
        ASSERT_EQ(AAA_AppendFields(together.get(), kFields, kCount, &record), 0u);
        AppendSingly(singly, record, 0);
    }
    EXPECT_EQ(ImageOf(together), ImageOf(singly));
}

TEST(AaaFields, AppendToAViewLeavesItsParentAlone) {
    Message parent = New(), nested = New();
    Append(nested, 9, "x");
    AAA_AppendSubTlv(parent.get(), 1, nested.get());
    Append(parent, 2, "behind");
    const Bytes before = ImageOf(parent);
    Message view(AAA_GetSubTlv(parent.get(), TLV_GetFirst(parent.get())));
    const Record record = Sample("name");
    ASSERT_EQ(AAA_AppendFields(view.get(), kFields, kCount, &record), 0u);
    EXPECT_EQ(ImageOf(parent), before);
}

TEST(AaaFields, RecordsAreNestedMessagesWithTheirPositions) {
    Record records[100];
    Message together = New(), singly = New();
    for (uint32_t i = 0; i < 100; ++i) {
        records[i] = Sample(std::string(i % 34, 'r'));
        Message sub = New();
        AppendSingly(sub, records[i], i);
        AAA_AppendSubTlv(singly.get(), 12, sub.get());
    }
    ASSERT_EQ(AAA_AppendRecords(together.get(), 12, kFields, kCount, records, sizeof *records, 100),
              0u);
    EXPECT_EQ(ImageOf(together), ImageOf(singly));
}

TEST(AaaFields, NoRecordsAppendNothing) {
    Message msg = New();
    EXPECT_EQ(AAA_AppendRecords(msg.get(), 12, kFields, kCount, nullptr, 0, 0), 0u);
    EXPECT_EQ(Listing(msg), "");
}

TEST(AaaFields, ReadsBackWhatWasWrittenForEveryTextLength) {
    for (size_t length = 0; length <= 40; ++length) {
        const Record record = Sample(std::string(length, 'n'));
        Message msg = New();
        AAA_AppendFields(msg.get(), kFields, kCount, &record);
        Record read;
        std::memset(&read, '?', sizeof read);
        ASSERT_EQ(Get(msg, read), 0u);
        EXPECT_EQ(read.word, record.word);
        EXPECT_EQ(read.half, record.half);
        EXPECT_EQ(std::string(read.name), std::string(std::min<size_t>(length, 32), 'n'));
        EXPECT_EQ(std::memcmp(read.block, record.block, 5), 0);
        EXPECT_EQ(std::string(read.tail), "zz");
    }
}

TEST(AaaFields, TextEndsAtItsNulAtTheValuesEndOrAtTheCapacity) {
    for (uint16_t capacity : {1, 2, 7, 8, 9, 15, 16, 17, 33}) {
        const AAA_FIELD field{3, AAA_FIELD_TEXT, 0, capacity};
        for (size_t length = 0; length < 40; ++length) {
            for (size_t nul = 0; nul <= length; ++nul) {
                std::string value(length, 't');
                if (nul < length) value[nul] = '\0';
                Message msg = New();
                Append(msg, 3, value);
                char expected[34], read[40];
                std::memset(read, '?', sizeof read);
                AAA_GetStrTlvValue(msg.get(), TLV_GetFirst(msg.get()), capacity, expected);
                ASSERT_EQ(AAA_GetFields(msg.get(), &field, 1, read, nullptr, nullptr), 0u);
                EXPECT_STREQ(read, expected) << capacity << ' ' << length << ' ' << nul;
                EXPECT_EQ(read[capacity], '?') << capacity << ' ' << length << ' ' << nul;
            }
        }
    }
}

TEST(AaaFields, ShortNumbersReadAsZeroAndShortBlocksKeepTheRest) {
    Message msg = New();
    Append(msg, 1, "abc");
    Append(msg, 4, "12");
    Record record = Sample("");
    ASSERT_EQ(Get(msg, record), 0u);
    EXPECT_EQ(record.word, 0u);
    EXPECT_EQ(std::memcmp(record.block, "12zzz", 5), 0);
}

TEST(AaaFields, AnyOrderIsReadAndTheLastOfATypeCounts) {
    Message msg = New();
    AAA_AppendStrTlvData(msg.get(), 3, "name");
    AAA_AppendUINTTlvData(msg.get(), 1, 1);
    AAA_AppendUINTTlvData(msg.get(), 2, 0x12345);
    AAA_AppendUINTTlvData(msg.get(), 1, 2);
    Record record = Sample("");
    ASSERT_EQ(Get(msg, record), 0u);
    EXPECT_EQ(record.word, 2u);
    EXPECT_EQ(record.half, 0x2345);
    EXPECT_STREQ(record.name, "name");
}

TEST(AaaFields, OtherTypesAreHandedOutInOrderAndTheirResultsCombined) {
    Message msg = New();
    for (uint16_t type : {32, 1, 64, 64, 32, 2}) Append(msg, type, std::to_string(type));
    Record record = Sample("");
    std::string seen;
    EXPECT_EQ(Get(msg, record, NoteType, &seen), 96u);
    EXPECT_EQ(seen, "32=32 64=64 64=64 32=32 ");
    EXPECT_EQ(Get(msg, record), 0u);
}

TEST(AaaFields, OtherFieldsAreHandedOutLikeOtherTypes) {
    const AAA_FIELD fields[] = {{1, AAA_FIELD_WORD, offsetof(Record, word), 0},
                                {64, AAA_FIELD_OTHER, 0, 0},
                                {2, AAA_FIELD_HALF, offsetof(Record, half), 0}};
    Message msg = New();
    AAA_AppendUINTTlvData(msg.get(), 1, 7);
    for (uint16_t type : {64, 64, 32}) Append(msg, type, std::to_string(type));
    AAA_AppendUINTTlvData(msg.get(), 2, 8);
    Append(msg, 64, "last");
    Record record = Sample("");
    std::string seen;
    EXPECT_EQ(AAA_GetFields(msg.get(), fields, 3, &record, NoteType, &seen), 96u);
    EXPECT_EQ(seen, "64=64 64=64 32=32 64=last ");
    EXPECT_EQ(record.word, 7u);
    EXPECT_EQ(record.half, 8u);
    EXPECT_EQ(AAA_GetFields(msg.get(), fields, 3, &record, nullptr, nullptr), 0u);
}

TEST(AaaFields, NestedMessageIsReadInPlace) {
    const Record records[2] = {Sample("first"), Sample("second")};
    Message msg = New();
    AAA_AppendRecords(msg.get(), 12, kFields, kCount, records, sizeof *records, 2);
    Record read = Sample("");
    uint32_t position = 9;
    ASSERT_EQ(GetSub(msg, TLV_GetNext(msg.get(), TLV_GetFirst(msg.get())), read, &position), 0u);
    EXPECT_EQ(position, 1u);
    EXPECT_STREQ(read.name, "second");
    EXPECT_EQ(GetSub(msg, TLV_GetFirst(msg.get()), read), 0u) << "the position is not wanted";
}

TEST(AaaFields, HostileNestedBytesFailOrAreReadInsideTheirValue) {
    const Record record = Sample("a name of some length");
    Message good = New();
    AAA_AppendRecords(good.get(), 12, kFields, kCount, &record, sizeof record, 1);
    const std::string image = ValueOf(good.get(), TLV_GetFirst(good.get()));
    for (size_t at = 0; at < image.size(); ++at) {
        for (int change : {1, 0x7F, 0x80, 0xFF}) {
            std::string bytes = image;
            bytes[at] = static_cast<char>(bytes[at] ^ change);
            Message msg = New();
            Append(msg, 12, bytes);
            Message view(AAA_GetSubTlv(msg.get(), TLV_GetFirst(msg.get())));
            Record read = Sample("");
            EXPECT_EQ(GetSub(msg, TLV_GetFirst(msg.get()), read) == 0, view != nullptr) << at;
        }
    }
    for (size_t length = 0; length < image.size(); ++length) {
        Message msg = New();
        Append(msg, 12, image.substr(0, length));
        Record read = Sample("");
        EXPECT_EQ(GetSub(msg, TLV_GetFirst(msg.get()), read), kFailed) << length;
    }
}

// A field of no bytes says that its TLV is known and not wanted.
TEST(AaaFields, BlockOfNoBytesTakesNothing) {
    const AAA_FIELD fields[] = {{1, AAA_FIELD_BLOCK, 0, 0}, {2, AAA_FIELD_WORD, 0, 0}};
    for (const char* passed_over : {"", "abc", "word", "longer than a word"}) {
        const Message msg = New();
        Append(msg, 1, passed_over);
        AAA_AppendUINTTlvData(msg.get(), 2, 77);
        Append(msg, 1, passed_over);
        uint32_t word = 5;
        EXPECT_EQ(AAA_GetFields(msg.get(), fields, 2, &word, nullptr, nullptr), 0u);
        EXPECT_EQ(word, 77u);
    }
}

TEST(AaaCount, CountsATypeFromATlvToTheEnd) {
    const Message nested = New();
    Append(nested, 7, "inside");
    const Message msg = New();
    for (const uint16_t type : {7, 8, 7}) Append(msg, type, "x");
    AAA_AppendSubTlv(msg.get(), 9, nested.get());
    Append(msg, 7, "");
    TLV_ITER* it = TLV_GetFirst(msg.get());
    EXPECT_EQ(AAA_CountTlvs(msg.get(), it, 7), 3u);
    EXPECT_EQ(AAA_CountTlvs(msg.get(), it, 10), 0u);
    it = TLV_GetNext(msg.get(), it);
    EXPECT_EQ(AAA_CountTlvs(msg.get(), it, 7), 2u);
    EXPECT_EQ(AAA_CountTlvs(msg.get(), it, 8), 1u);
}

TEST(AaaCount, NullsAndForeignPositionsCountNothing) {
    const Message msg = New();
    Append(msg, 7, "x");
    const Message other = New();
    Append(other, 7, "x");
    EXPECT_EQ(AAA_CountTlvs(nullptr, TLV_GetFirst(msg.get()), 7), 0u);
    EXPECT_EQ(AAA_CountTlvs(msg.get(), nullptr, 7), 0u);
    EXPECT_EQ(AAA_CountTlvs(msg.get(), TLV_GetFirst(other.get()), 7), 0u);
}

TEST(AaaFields, NullsFail) {
    Message msg = New();
    Record record = Sample("");
    EXPECT_EQ(AAA_AppendFields(nullptr, kFields, kCount, &record), kFailed);
    EXPECT_EQ(AAA_AppendFields(msg.get(), nullptr, kCount, &record), kFailed);
    EXPECT_EQ(AAA_AppendFields(msg.get(), kFields, kCount, nullptr), kFailed);
    EXPECT_EQ(AAA_AppendRecords(nullptr, 1, kFields, kCount, &record, 1, 1), kFailed);
    EXPECT_EQ(AAA_AppendRecords(msg.get(), 1, nullptr, kCount, &record, 1, 1), kFailed);
    EXPECT_EQ(AAA_AppendRecords(msg.get(), 1, kFields, kCount, nullptr, 1, 1), kFailed);
    EXPECT_EQ(AAA_GetFields(nullptr, kFields, kCount, &record, nullptr, nullptr), kFailed);
    EXPECT_EQ(AAA_GetFields(msg.get(), nullptr, kCount, &record, nullptr, nullptr), kFailed);
    EXPECT_EQ(AAA_GetFields(msg.get(), kFields, kCount, nullptr, nullptr, nullptr), kFailed);
    EXPECT_EQ(GetSub(msg, nullptr, record), kFailed);
    EXPECT_EQ(GetSub(Message(), nullptr, record), kFailed);
    EXPECT_EQ(Listing(msg), "");
}

TEST(AaaSubInPlace, IsTheSameAsAppendingASeparateMessage) {
    Message in_place = New(), separate = New();
    uint32_t outer, inner;
    Append(in_place, 1, "before");
    ASSERT_EQ(AAA_BeginSubTlv(in_place.get(), 2, &outer), 0u);
    for (int i = 0; i < 500; ++i) Append(in_place, 3, "value");
    ASSERT_EQ(AAA_BeginSubTlv(in_place.get(), 4, &inner), 0u);
    ASSERT_EQ(AAA_EndSubTlv(in_place.get(), inner), 0u);
    ASSERT_EQ(AAA_EndSubTlv(in_place.get(), outer), 0u);
    Append(in_place, 5, "behind");

    Message sub = New(), empty = New();
    Append(separate, 1, "before");
    for (int i = 0; i < 500; ++i) Append(sub, 3, "value");
    AAA_AppendSubTlv(sub.get(), 4, empty.get());
    AAA_AppendSubTlv(separate.get(), 2, sub.get());
    Append(separate, 5, "behind");
    EXPECT_EQ(ImageOf(in_place), ImageOf(separate));
}

TEST(AaaSubInPlace, UnfinishedMessageIsStillWellFormed) {
    Message msg = New();
    uint32_t mark;
    AAA_BeginSubTlv(msg.get(), 2, &mark);
    Append(msg, 3, "value");
    EXPECT_NE(FromImage(ImageOf(msg)), nullptr);
}

TEST(AaaSubInPlace, NullsAndForeignMarksFail) {
    Message msg = New();
    uint32_t mark = 77;
    EXPECT_EQ(AAA_BeginSubTlv(nullptr, 1, &mark), kFailed);
    EXPECT_EQ(AAA_BeginSubTlv(msg.get(), 1, nullptr), kFailed);
    EXPECT_EQ(mark, 77u);
    EXPECT_EQ(AAA_EndSubTlv(nullptr, 8), kFailed);
    Append(msg, 1, "a value that is no message");
    const Bytes before = ImageOf(msg);
    for (uint32_t foreign : {0u, 8u, 9u, 40u, 41u, 0xFFFFFFFFu}) {
        EXPECT_EQ(AAA_EndSubTlv(msg.get(), foreign), kFailed) << foreign;
    }
    EXPECT_EQ(ImageOf(msg), before);
}

}  // namespace
