#include "unit/platform/tlv/support.h"

using namespace test;

namespace {

TEST(TlvMessage, NewOneIsEmpty) {
    Message msg = New();
    EXPECT_EQ(TLV_GetFirst(msg.get()), nullptr);
    EXPECT_EQ(TLV_GetMsgLen(msg.get(), 1), 8u);
    EXPECT_EQ(TLV_GetMsgLen(msg.get(), 2), 8u);
    EXPECT_EQ(ImageOf(msg), (Bytes{'T', 'V', 1, 0, 0, 0, 0, 0}));
}

TEST(TlvMessage, ImageHasTypeLengthAndValueLittleEndian) {
    Message msg = New();
    EXPECT_EQ(Append(msg, 0x0102, "ab"), 0u);
    EXPECT_EQ(TLV_Append_UINT(msg.get(), 3, 0x0A0B0C0D), 0u);
    EXPECT_EQ(ImageOf(msg), (Bytes{'T',  'V',  1, 0, 18, 0, 0,    0,    //
                                   0x02, 0x01, 2, 0, 0,  0, 'a',  'b',  //
                                   3,    0,    4, 0, 0,  0, 0x0D, 0x0C, 0x0B, 0x0A}));
}

TEST(TlvMessage, KeepsOrderAndRepeatedTypes) {
    Message msg = New();
    for (const char* value : {"a", "b", "c"}) EXPECT_EQ(Append(msg, 7, value), 0u);
    EXPECT_EQ(Append(msg, 0xFFFF, ""), 0u);
    EXPECT_EQ(Listing(msg), "7=a 7=b 7=c 65535=");
}

TEST(TlvMessage, GrowsFarBeyondItsFirstRoom) {
    Message msg = New();
    std::string expected;
    for (int i = 0; i < 20000; ++i) {
        ASSERT_EQ(Append(msg, static_cast<uint16_t>(i), std::to_string(i)), 0u);
        if (i != 0) expected += ' ';
        expected += std::to_string(i) + '=' + std::to_string(i);
    }
    EXPECT_EQ(Listing(msg), expected);
    EXPECT_EQ(Listing(FromImage(ImageOf(msg))), expected);
}

TEST(TlvMessage, EverySizeAroundTheRoomsIsKept) {
    for (uint32_t around : {2024u, 8192u, 65536u}) {
        for (uint32_t size = around - 40; size < around + 40; ++size) {
            const std::string value(size, static_cast<char>('a' + size % 26));
            Message msg = New();
            ASSERT_EQ(Append(msg, 1, value), 0u);
            ASSERT_EQ(ValueOf(msg.get(), TLV_GetFirst(msg.get())), value);
            Message copy = FromImage(ImageOf(msg));
            ASSERT_TRUE(copy);
            ASSERT_EQ(ImageOf(copy), ImageOf(msg));
            ASSERT_EQ(Append(copy, 2, "end"), 0u);
            ASSERT_EQ(ValueOf(copy.get(), TLV_GetIteratorByType(copy.get(), 2)), "end");
        }
    }
}

TEST(TlvMessage, AppendsDataThatLiesInItself) {
    Message msg = New();
    ASSERT_EQ(Append(msg, 1, std::string(1000, 'x')), 0u);
    // Doubles over the first room and over every block.
    for (int i = 0; i < 8; ++i) {
        const std::string value = ValueOf(msg.get(), TLV_GetFirst(msg.get()));
        ASSERT_EQ(AAA_AppendSubTlv(msg.get(), 2, msg.get()), 0u);
    }
    Message sub(AAA_GetSubTlv(msg.get(), TLV_GetIteratorByType(msg.get(), 2)));
    ASSERT_TRUE(sub);
    EXPECT_EQ(Listing(sub), "1=" + std::string(1000, 'x'));
}

TEST(TlvMessage, RefusesToPassFourGigabytes) {
    Message msg = New();
    ASSERT_EQ(Append(msg, 1, "kept"), 0u);
    uint8_t byte = 0;
    EXPECT_EQ(TLV_Append_Data(msg.get(), 2, 0xFFFFFFFF, &byte), kFailed);
    EXPECT_EQ(TLV_Append_Data(msg.get(), 2, 0xFFFFFFFF - 8 - 10 - 5, &byte), kFailed);
    EXPECT_EQ(Listing(msg), "1=kept");
}

TEST(TlvAppend, RefusesNulls) {
    Message msg = New();
    EXPECT_EQ(TLV_Append_Data(nullptr, 1, 1, "a"), kFailed);
    EXPECT_EQ(TLV_Append_Data(msg.get(), 1, 1, nullptr), kFailed);
    EXPECT_EQ(TLV_Append_UINT(nullptr, 1, 1), kFailed);
    EXPECT_EQ(TLV_GetFirst(msg.get()), nullptr);
}

TEST(TlvAppend, EmptyValueNeedsNoData) {
    Message msg = New();
    EXPECT_EQ(TLV_Append_Data(msg.get(), 5, 0, nullptr), 0u);
    EXPECT_EQ(Listing(msg), "5=");
}

TEST(TlvIterator, ByTypeFindsTheFirstOfItsType) {
    Message msg = New();
    Append(msg, 1, "x");
    Append(msg, 2, "first");
    Append(msg, 2, "second");
    EXPECT_EQ(ValueOf(msg.get(), TLV_GetIteratorByType(msg.get(), 2)), "first");
    EXPECT_EQ(TLV_GetIteratorByType(msg.get(), 3), nullptr);
    EXPECT_EQ(TLV_GetIteratorByType(msg.get(), 0), nullptr);
}

TEST(TlvIterator, ValueIsCutToTheBuffer) {
    Message msg = New();
    Append(msg, 1, "abcdef");
    char buffer[8] = "-------";
    EXPECT_EQ(TLV_GetValueByIterator(msg.get(), TLV_GetFirst(msg.get()), 3, buffer), 0u);
    EXPECT_STREQ(buffer, "abc----");
}

TEST(TlvIterator, ShortValueLeavesTheRestOfTheBuffer) {
    Message msg = New();
    Append(msg, 1, "ab");
    char buffer[8] = "-------";
    EXPECT_EQ(TLV_GetValueByIterator(msg.get(), TLV_GetFirst(msg.get()), 7, buffer), 0u);
    EXPECT_STREQ(buffer, "ab-----");
}

TEST(TlvIterator, UintIsReadBackAsGiven) {
    Message msg = New();
    TLV_Append_UINT(msg.get(), 1, 0x12345678);
    EXPECT_EQ(TLV_GetUINTByIterator(msg.get(), TLV_GetFirst(msg.get())), 0x12345678u);
}

TEST(TlvIterator, UintOfAShorterTlvIsZero) {
    Message msg = New();
    Append(msg, 1, "abc");
    EXPECT_EQ(TLV_GetUINTByIterator(msg.get(), TLV_GetFirst(msg.get())), 0u);
}

void ExpectNothingAt(TLV_MSG* msg, TLV_ITER* it) {
    char buffer[4] = "abc";
    EXPECT_EQ(TLV_GetNext(msg, it), nullptr);
    EXPECT_EQ(TLV_GetTypeByIterator(msg, it), 0);
    EXPECT_EQ(TLV_GetLenByIterator(msg, it), 0u);
    EXPECT_EQ(TLV_GetUINTByIterator(msg, it), 0u);
    EXPECT_EQ(TLV_GetValueByIterator(msg, it, 4, buffer), kFailed);
    EXPECT_EQ(TLV_Delete_Data(msg, it), kFailed);
    EXPECT_STREQ(buffer, "abc");
}

TEST(TlvIterator, NullIsTheEndForEveryCall) {
    Message msg = New();
    Append(msg, 1, "abcdef");
    ExpectNothingAt(msg.get(), nullptr);
    EXPECT_EQ(Listing(msg), "1=abcdef");
}

TEST(TlvIterator, PositionOfAnotherMessageIsTheEnd) {
    Message msg = New(), other = New();
    Append(msg, 1, "abcdef");
    Append(other, 2, "abcdef");
    ExpectNothingAt(msg.get(), TLV_GetFirst(other.get()));
    ExpectNothingAt(other.get(), TLV_GetFirst(msg.get()));
}

TEST(TlvIterator, PositionBehindTheEndIsTheEnd) {
    Message msg = New();
    Append(msg, 1, "abc");
    Append(msg, 2, "def");
    TLV_ITER* second = TLV_GetIteratorByType(msg.get(), 2);
    ASSERT_EQ(TLV_Delete_Data(msg.get(), second), 0u);
    ExpectNothingAt(msg.get(), second);
}

TEST(TlvIterator, NoMessageHasNothing) {
    Message msg = New();
    Append(msg, 1, "abc");
    EXPECT_EQ(TLV_GetFirst(nullptr), nullptr);
    EXPECT_EQ(TLV_GetIteratorByType(nullptr, 1), nullptr);
    ExpectNothingAt(nullptr, TLV_GetFirst(msg.get()));
}

TEST(TlvIterator, ValueNeedsABuffer) {
    Message msg = New();
    Append(msg, 1, "abc");
    EXPECT_EQ(TLV_GetValueByIterator(msg.get(), TLV_GetFirst(msg.get()), 3, nullptr), kFailed);
}

TEST(TlvDelete, TakesOutFirstMiddleAndLast) {
    Message msg = New();
    for (uint16_t type = 1; type <= 5; ++type) Append(msg, type, std::string(type, 'x'));
    EXPECT_EQ(TLV_Delete_Data(msg.get(), TLV_GetIteratorByType(msg.get(), 3)), 0u);
    EXPECT_EQ(Listing(msg), "1=x 2=xx 4=xxxx 5=xxxxx");
    EXPECT_EQ(TLV_Delete_Data(msg.get(), TLV_GetIteratorByType(msg.get(), 5)), 0u);
    EXPECT_EQ(TLV_Delete_Data(msg.get(), TLV_GetIteratorByType(msg.get(), 1)), 0u);
    EXPECT_EQ(Listing(msg), "2=xx 4=xxxx");
    EXPECT_EQ(Listing(FromImage(ImageOf(msg))), "2=xx 4=xxxx");
}

TEST(TlvDelete, OneByOneLeavesAnEmptyUsableMessage) {
    Message msg = New();
    for (uint16_t type = 1; type <= 50; ++type) Append(msg, type, std::string(100, 'x'));
    uint32_t deleted = 0;
    while (TLV_ITER* it = TLV_GetFirst(msg.get())) {
        ASSERT_EQ(TLV_Delete_Data(msg.get(), it), 0u);
        ++deleted;
    }
    EXPECT_EQ(deleted, 50u);
    EXPECT_EQ(TLV_GetMsgLen(msg.get(), 2), 8u);
    EXPECT_EQ(Append(msg, 9, "again"), 0u);
    EXPECT_EQ(Listing(msg), "9=again");
}

TEST(TlvDelete, PositionOfANestedMessageGivenWithItsParentIsRefused) {
    Message nested = New(), parent = New();
    Append(nested, 20, "abc");
    Append(nested, 21, "def");
    AAA_AppendSubTlv(parent.get(), 2, nested.get());
    Append(parent, 3, "behind");
    const Bytes before = ImageOf(parent);
    Message taken(AAA_GetSubTlv(parent.get(), TLV_GetFirst(parent.get())));
    EXPECT_EQ(TLV_Delete_Data(parent.get(), TLV_GetFirst(taken.get())), kFailed);
    EXPECT_EQ(ImageOf(parent), before);
    EXPECT_EQ(ValueOf(parent.get(), TLV_GetIteratorByType(parent.get(), 3)), "behind");
}

TEST(TlvDelete, EveryPositionThatIsNoTlvsBeginIsRefused) {
    Message msg = New();
    for (uint16_t type = 1; type <= 4; ++type) Append(msg, type, std::string(12, '\0'));
    const Bytes before = ImageOf(msg);
    auto* first = reinterpret_cast<char*>(TLV_GetFirst(msg.get()));
    for (size_t offset = 1; offset < before.size(); ++offset) {
        if (offset % 18 == 0) continue;  // a TLV has 6 + 12 bytes
        auto* inside = reinterpret_cast<TLV_ITER*>(first + offset);
        ASSERT_EQ(TLV_Delete_Data(msg.get(), inside), kFailed) << offset;
    }
    EXPECT_EQ(ImageOf(msg), before);
}

TEST(TlvDestroy, NullIsIgnored) {
    TLV_Destroy(nullptr);
}

TEST(TlvLength, OfNoMessageOrAnUnknownFormIsZero) {
    Message msg = New();
    EXPECT_EQ(TLV_GetMsgLen(nullptr, 2), 0u);
    EXPECT_EQ(TLV_GetMsgLen(msg.get(), 0), 0u);
    EXPECT_EQ(TLV_GetMsgLen(msg.get(), 3), 0u);
}

TEST(TlvFlushToBuffer, WritesNothingWhenItDoesNotFit) {
    Message msg = New();
    Append(msg, 1, "abc");
    Bytes buffer(17, 0xEE);
    for (uint32_t size = 0; size < 17; ++size) {
        EXPECT_EQ(TLV_Flush(msg.get(), 2, size, reinterpret_cast<uintptr_t>(buffer.data())), 0u);
    }
    EXPECT_EQ(buffer, Bytes(17, 0xEE));
    EXPECT_EQ(TLV_Flush(msg.get(), 2, 17, reinterpret_cast<uintptr_t>(buffer.data())), 17u);
    EXPECT_EQ(TLV_Flush(msg.get(), 2, 0xFFFFFFFF, reinterpret_cast<uintptr_t>(buffer.data())), 17u);
}

TEST(TlvFlush, RefusesNullsAndUnknownForms) {
    Message msg = New();
    Bytes buffer(64);
    const auto address = reinterpret_cast<uintptr_t>(buffer.data());
    EXPECT_EQ(TLV_Flush(nullptr, 2, 64, address), 0u);
    EXPECT_EQ(TLV_Flush(msg.get(), 2, 64, 0), 0u);
    EXPECT_EQ(TLV_Flush(msg.get(), 0, 64, address), 0u);
    EXPECT_EQ(TLV_Flush(msg.get(), 3, 64, address), 0u);
    EXPECT_EQ(TLV_Flush(nullptr, 1, 0, 0), 0u);
}

}  // namespace
