#include <cstdlib>

#include "unit/platform/tlv/support.h"

using namespace test;

namespace {

TEST(AaaValue, NumbersHaveTheirWidthAndComeBack) {
    Message msg = New();
    EXPECT_EQ(AAA_AppendUINTTlvData(msg.get(), 1, 0xFEDCBA98), 0u);
    EXPECT_EQ(AAA_AppendUSHORTTlvData(msg.get(), 2, 0xABCD), 0u);
    EXPECT_EQ(AAA_AppendUINT64TlvData(msg.get(), 3, 0x0123456789ABCDEF), 0u);
    TLV_ITER* first = TLV_GetFirst(msg.get());
    TLV_ITER* second = TLV_GetNext(msg.get(), first);
    TLV_ITER* third = TLV_GetNext(msg.get(), second);
    EXPECT_EQ(TLV_GetLenByIterator(msg.get(), first), 4u);
    EXPECT_EQ(TLV_GetLenByIterator(msg.get(), second), 2u);
    EXPECT_EQ(TLV_GetLenByIterator(msg.get(), third), 8u);
    EXPECT_EQ(AAA_GetUINTTlvValue(msg.get(), first), 0xFEDCBA98u);
    uint16_t word = 0;
    EXPECT_EQ(AAA_GetUSHORTTlvValue(msg.get(), second, &word), 0u);
    EXPECT_EQ(word, 0xABCD);
    EXPECT_EQ(AAA_GetUINT64TlvValue(msg.get(), third), 0x0123456789ABCDEFu);
}

TEST(AaaValue, NumbersAreLittleEndian) {
    Message msg = New();
    AAA_AppendUSHORTTlvData(msg.get(), 2, 0x0102);
    EXPECT_EQ(ValueOf(msg.get(), TLV_GetFirst(msg.get())), (std::string{2, 1}));
}

TEST(AaaValue, NumbersOfLongerTlvsAreTheirFirstBytes) {
    Message msg = New();
    Append(msg, 1, std::string{1, 2, 3, 4, 5, 6, 7, 8, 9});
    TLV_ITER* it = TLV_GetFirst(msg.get());
    uint16_t word = 0;
    EXPECT_EQ(AAA_GetUINTTlvValue(msg.get(), it), 0x04030201u);
    EXPECT_EQ(AAA_GetUINT64TlvValue(msg.get(), it), 0x0807060504030201u);
    EXPECT_EQ(AAA_GetUSHORTTlvValue(msg.get(), it, &word), 0u);
    EXPECT_EQ(word, 0x0201);
}

TEST(AaaValue, UintOfAShorterTlvIsZero) {
    Message msg = New();
    Append(msg, 1, "\xFF\xFF\xFF");
    EXPECT_EQ(AAA_GetUINTTlvValue(msg.get(), TLV_GetFirst(msg.get())), 0u);
}

TEST(AaaValue, Uint64OfAShorterTlvIsZero) {
    Message msg = New();
    Append(msg, 1, "\xFF\xFF\xFF\xFF\xFF\xFF\xFF");
    EXPECT_EQ(AAA_GetUINT64TlvValue(msg.get(), TLV_GetFirst(msg.get())), 0u);
}

TEST(AaaValue, UshortAndMacOfAShorterTlvFailAndStoreNothing) {
    Message msg = New();
    Append(msg, 1, "x");
    Append(msg, 2, "12345");
    uint16_t word = 0x7777;
    uint8_t mac[6] = {9, 9, 9, 9, 9, 9};
    EXPECT_EQ(AAA_GetUSHORTTlvValue(msg.get(), TLV_GetFirst(msg.get()), &word), kFailed);
    EXPECT_EQ(word, 0x7777);
    EXPECT_EQ(AAA_GetMACTlvValue(msg.get(), TLV_GetIteratorByType(msg.get(), 2), mac), kFailed);
    EXPECT_EQ(mac[0], 9);
}

TEST(AaaValue, MacIsSixRawBytes) {
    Message msg = New();
    const uint8_t mac[6] = {0, 1, 2, 3, 4, 255};
    EXPECT_EQ(AAA_AppendMACTlvData(msg.get(), 1, mac), 0u);
    TLV_ITER* it = TLV_GetFirst(msg.get());
    EXPECT_EQ(TLV_GetLenByIterator(msg.get(), it), 6u);
    uint8_t read[6];
    EXPECT_EQ(AAA_GetMACTlvValue(msg.get(), it, read), 0u);
    EXPECT_EQ(std::memcmp(mac, read, 6), 0);
}

TEST(AaaValue, NullsFail) {
    Message msg = New();
    AAA_AppendUINT64TlvData(msg.get(), 1, ~uint64_t{0});
    TLV_ITER* it = TLV_GetFirst(msg.get());
    uint16_t word;
    uint8_t mac[6] = {};
    EXPECT_EQ(AAA_AppendUINTTlvData(nullptr, 1, 1), kFailed);
    EXPECT_EQ(AAA_AppendUSHORTTlvData(nullptr, 1, 1), kFailed);
    EXPECT_EQ(AAA_AppendUINT64TlvData(nullptr, 1, 1), kFailed);
    EXPECT_EQ(AAA_AppendMACTlvData(nullptr, 1, mac), kFailed);
    EXPECT_EQ(AAA_AppendMACTlvData(msg.get(), 1, nullptr), kFailed);
    EXPECT_EQ(AAA_GetUINTTlvValue(nullptr, it), 0u);
    EXPECT_EQ(AAA_GetUINTTlvValue(msg.get(), nullptr), 0u);
    EXPECT_EQ(AAA_GetUINT64TlvValue(nullptr, it), 0u);
    EXPECT_EQ(AAA_GetUINT64TlvValue(msg.get(), nullptr), 0u);
    EXPECT_EQ(AAA_GetUSHORTTlvValue(nullptr, it, &word), kFailed);
    EXPECT_EQ(AAA_GetUSHORTTlvValue(msg.get(), nullptr, &word), kFailed);
    EXPECT_EQ(AAA_GetUSHORTTlvValue(msg.get(), it, nullptr), kFailed);
    EXPECT_EQ(AAA_GetMACTlvValue(nullptr, it, mac), kFailed);
    EXPECT_EQ(AAA_GetMACTlvValue(msg.get(), nullptr, mac), kFailed);
    EXPECT_EQ(AAA_GetMACTlvValue(msg.get(), it, nullptr), kFailed);
}

TEST(AaaText, GoesInWithItsTerminator) {
    Message msg = New();
    EXPECT_EQ(AAA_AppendStrTlvData(msg.get(), 1, "name"), 0u);
    EXPECT_EQ(AAA_AppendStrTlvData(msg.get(), 2, ""), 0u);
    EXPECT_EQ(Listing(msg), std::string("1=name\0 2=\0", 11));
}

TEST(AaaText, NullFails) {
    Message msg = New();
    EXPECT_EQ(AAA_AppendStrTlvData(msg.get(), 1, nullptr), kFailed);
    EXPECT_EQ(AAA_AppendStrTlvData(nullptr, 1, "a"), kFailed);
    EXPECT_EQ(TLV_GetFirst(msg.get()), nullptr);
}

std::string Read(const std::string& value, uint32_t capacity) {
    Message msg = New();
    Append(msg, 1, value);
    std::string buffer(16, '-');
    EXPECT_EQ(AAA_GetStrTlvValue(msg.get(), TLV_GetFirst(msg.get()), capacity, buffer.data()), 0u);
    EXPECT_NE(buffer.find('\0'), std::string::npos);
    // Nothing behind the terminator is written.
    EXPECT_EQ(buffer.find_first_not_of('-', buffer.find('\0') + 1), std::string::npos);
    return buffer.c_str();
}

TEST(AaaText, IsCutToTheCapacity) {
    EXPECT_EQ(Read(std::string("abcdef\0", 7), 4), "abc");
    EXPECT_EQ(Read(std::string("abcdef\0", 7), 7), "abcdef");
    EXPECT_EQ(Read(std::string("abcdef\0", 7), 6), "abcde");
}

TEST(AaaText, CapacityOfOneGivesTheEmptyText) {
    EXPECT_EQ(Read("abc", 1), "");
}

TEST(AaaText, EndsAtTheFirstNul) {
    EXPECT_EQ(Read(std::string("ab\0cd", 5), 16), "ab");
}

TEST(AaaText, EndsAtTheValuesEndWithoutTerminator) {
    EXPECT_EQ(Read("abc", 16), "abc");
}

TEST(AaaText, OfAnEmptyTlvIsEmpty) {
    EXPECT_EQ(Read("", 16), "");
}

TEST(AaaText, ReadFailsWithoutPositionCapacityBufferOrMessage) {
    Message msg = New();
    AAA_AppendStrTlvData(msg.get(), 1, "abc");
    TLV_ITER* it = TLV_GetFirst(msg.get());
    char buffer[8] = "kept";
    EXPECT_EQ(AAA_GetStrTlvValue(msg.get(), nullptr, 8, buffer), kFailed);
    EXPECT_EQ(AAA_GetStrTlvValue(msg.get(), it, 0, buffer), kFailed);
    EXPECT_EQ(AAA_GetStrTlvValue(msg.get(), it, 8, nullptr), kFailed);
    EXPECT_EQ(AAA_GetStrTlvValue(nullptr, it, 8, buffer), kFailed);
    EXPECT_STREQ(buffer, "kept");
}

TEST(AaaNested, ValueIsTheCompleteImage) {
    Message sub = New(), msg = New();
    Append(sub, 5, "abc");
    EXPECT_EQ(AAA_AppendSubTlv(msg.get(), 2, sub.get()), 0u);
    const Bytes image = ImageOf(sub);
    EXPECT_EQ(ValueOf(msg.get(), TLV_GetFirst(msg.get())), std::string(image.begin(), image.end()));
    EXPECT_EQ(Listing(sub), "5=abc");
}

TEST(AaaNested, EmptyMessageWorks) {
    Message sub = New(), msg = New();
    EXPECT_EQ(AAA_AppendSubTlv(msg.get(), 2, sub.get()), 0u);
    Message taken(AAA_GetSubTlv(msg.get(), TLV_GetFirst(msg.get())));
    ASSERT_TRUE(taken);
    EXPECT_EQ(TLV_GetFirst(taken.get()), nullptr);
}

TEST(AaaNested, OtherValuesAreNone) {
    Message msg = New();
    AAA_AppendUINTTlvData(msg.get(), 1, 0);
    AAA_AppendUINT64TlvData(msg.get(), 2, 0x00015654);  // a header with body length 0: one message
    AAA_AppendStrTlvData(msg.get(), 3, "TV\x01");
    Append(msg, 4, "");
    Append(msg, 5, std::string("TV\1\0\6\0\0\0\1\0\1\0\0\0", 14));  // a TLV longer than the body
    Append(msg, 6, std::string("TV\1\0\0\0\0\0x", 9));              // a byte behind the body
    for (uint16_t type : {1, 3, 4, 5, 6}) {
        EXPECT_EQ(AAA_GetSubTlv(msg.get(), TLV_GetIteratorByType(msg.get(), type)), nullptr)
            << type;
    }
    EXPECT_TRUE(Message(AAA_GetSubTlv(msg.get(), TLV_GetIteratorByType(msg.get(), 2))));
}

TEST(AaaNested, LongMalformedValueIsNone) {
    Message sub = New(), msg = New();
    Append(sub, 1, std::string(1000, 'x'));
    Bytes image = ImageOf(sub);
    ++image[10];
    TLV_Append_Data(msg.get(), 2, static_cast<uint32_t>(image.size()), image.data());
    EXPECT_EQ(AAA_GetSubTlv(msg.get(), TLV_GetFirst(msg.get())), nullptr);
}

TEST(AaaNested, NullsFail) {
    Message msg = New();
    EXPECT_EQ(AAA_AppendSubTlv(msg.get(), 1, nullptr), kFailed);
    EXPECT_EQ(AAA_AppendSubTlv(nullptr, 1, msg.get()), kFailed);
    EXPECT_EQ(AAA_GetSubTlv(msg.get(), nullptr), nullptr);
    EXPECT_EQ(AAA_GetSubTlv(nullptr, nullptr), nullptr);
}

Message Body() {
    Message msg = New();
    TLV_Append_UINT(msg.get(), 0, 3);
    AAA_AppendStrTlvData(msg.get(), 2, "domain");
    return msg;
}

TEST(OperationHead, StandsBeforeTheNestedMessage) {
    Message body = Body();
    const Bytes before = ImageOf(body);
    Message msg(AAA_AddOpHead(2, body.get()));
    ASSERT_TRUE(msg);
    TLV_ITER* first = TLV_GetFirst(msg.get());
    TLV_ITER* second = TLV_GetNext(msg.get(), first);
    EXPECT_EQ(TLV_GetTypeByIterator(msg.get(), first), 0xFF01);
    EXPECT_EQ(AAA_GetUINTTlvValue(msg.get(), first), 2u);
    EXPECT_EQ(TLV_GetTypeByIterator(msg.get(), second), 0xFF02);
    EXPECT_EQ(ImageOf(Message(AAA_GetSubTlv(msg.get(), second))), before);
    EXPECT_EQ(TLV_GetNext(msg.get(), second), nullptr);
    EXPECT_EQ(ImageOf(body), before);
}

TEST(OperationHead, ComesOffAgain) {
    Message msg(AAA_AddOpHead(0x80000001, Body().get()));
    const Bytes before = ImageOf(msg);
    uint32_t opcode = 0;
    Message body(AAA_DelOpHead(msg.get(), &opcode));
    ASSERT_TRUE(body);
    EXPECT_EQ(opcode, 0x80000001);
    EXPECT_EQ(ImageOf(body), ImageOf(Body()));
    EXPECT_EQ(ImageOf(msg), before);
    EXPECT_TRUE(Message(AAA_DelOpHead(msg.get(), nullptr)));
}

void ExpectNoOperationHead(const Message& msg) {
    uint32_t opcode = 77;
    EXPECT_EQ(AAA_DelOpHead(msg.get(), &opcode), nullptr);
    EXPECT_EQ(opcode, 77u);
}

TEST(OperationHead, IsOnlyTakenOffWhereItIs) {
    ExpectNoOperationHead(Body());
    ExpectNoOperationHead(New());
    ExpectNoOperationHead(Message(AAA_AddAaadHead(5, 4, Body().get())));
}

TEST(OperationHead, MustBeTheFirstTwoTlvs) {
    Message body = Body();
    Message late = New(), reversed = New(), alone = New();
    Append(late, 9, "x");
    for (const Message* msg : {&late, &alone}) AAA_AppendUINTTlvData(msg->get(), 0xFF01, 1);
    AAA_AppendSubTlv(late.get(), 0xFF02, body.get());
    AAA_AppendSubTlv(reversed.get(), 0xFF02, body.get());
    AAA_AppendUINTTlvData(reversed.get(), 0xFF01, 1);
    ExpectNoOperationHead(late);
    ExpectNoOperationHead(reversed);
    ExpectNoOperationHead(alone);
}

TEST(OperationHead, MalformedPartsAreRefused) {
    Message short_code = New(), no_message = New();
    AAA_AppendUSHORTTlvData(short_code.get(), 0xFF01, 1);
    AAA_AppendSubTlv(short_code.get(), 0xFF02, Body().get());
    AAA_AppendUINTTlvData(no_message.get(), 0xFF01, 1);
    AAA_AppendUINTTlvData(no_message.get(), 0xFF02, 1);
    ExpectNoOperationHead(short_code);
    ExpectNoOperationHead(no_message);
}

TEST(OperationHead, NullMessageGivesNull) {
    EXPECT_EQ(AAA_AddOpHead(0, nullptr), nullptr);
    EXPECT_EQ(AAA_DelOpHead(nullptr, nullptr), nullptr);
}

TEST(DaemonHead, StandsAroundTheOperationHead) {
    Message request(AAA_AddOpHead(1, Body().get()));
    Message msg(AAA_AddAaadHead(5, 4, request.get()));
    ASSERT_TRUE(msg);
    TLV_ITER* type = TLV_GetFirst(msg.get());
    TLV_ITER* sub_type = TLV_GetNext(msg.get(), type);
    TLV_ITER* nested = TLV_GetNext(msg.get(), sub_type);
    EXPECT_EQ(TLV_GetTypeByIterator(msg.get(), type), 0xFF03);
    EXPECT_EQ(AAA_GetUINTTlvValue(msg.get(), type), 5u);
    EXPECT_EQ(TLV_GetTypeByIterator(msg.get(), sub_type), 0xFF04);
    EXPECT_EQ(AAA_GetUINTTlvValue(msg.get(), sub_type), 4u);
    EXPECT_EQ(TLV_GetTypeByIterator(msg.get(), nested), 0xFF05);
    EXPECT_EQ(TLV_GetNext(msg.get(), nested), nullptr);

    Message inner(AAA_DelAaadHead(msg.get()));
    ASSERT_TRUE(inner);
    EXPECT_EQ(ImageOf(inner), ImageOf(request));
}

TEST(DaemonHead, IsOnlyTakenOffWhereItIs) {
    Message swapped = New();
    AAA_AppendUINTTlvData(swapped.get(), 0xFF04, 4);
    AAA_AppendUINTTlvData(swapped.get(), 0xFF03, 5);
    AAA_AppendSubTlv(swapped.get(), 0xFF05, Body().get());
    EXPECT_EQ(AAA_DelAaadHead(swapped.get()), nullptr);
    EXPECT_EQ(AAA_DelAaadHead(Body().get()), nullptr);
    EXPECT_EQ(AAA_DelAaadHead(Message(AAA_AddOpHead(1, Body().get())).get()), nullptr);
    EXPECT_EQ(AAA_DelAaadHead(nullptr), nullptr);
    EXPECT_EQ(AAA_AddAaadHead(5, 4, nullptr), nullptr);
}

struct Item {
    uint32_t number;
    char padding[12];
};

uint32_t EncapItem(uint32_t position, const void* item, TLV_MSG* msg) {
    return AAA_AppendUINTTlvData(msg, 1, position) |
           AAA_AppendUINTTlvData(msg, 2, static_cast<const Item*>(item)->number);
}

uint32_t RefuseSecond(uint32_t position, const void*, TLV_MSG*) {
    return position == 1 ? 9 : 0;
}

Message Encap(const std::vector<AAA_ENCAP_STEP>& steps) {
    uint32_t length = 77;
    void* buffer =
        AAA_EncapStructToTLVBuf(steps.data(), static_cast<uint32_t>(steps.size()), &length);
    EXPECT_EQ(buffer == nullptr, length == 0);
    Message msg(TLV_CreateReceiveMsg(2, reinterpret_cast<uintptr_t>(buffer), length));
    std::free(buffer);
    return msg;
}

TEST(EncapStructure, WritesRunsInOrderWithPositions) {
    const Item items[2] = {{100, {}}, {200, {}}};
    const uint32_t count = 0x01020304;
    Message msg = Encap({{1, 2, items, sizeof(Item), EncapItem}, {2, 1, &count, 4, nullptr}});
    ASSERT_TRUE(msg);
    TLV_ITER* it = TLV_GetFirst(msg.get());
    for (uint32_t position = 0; position < 2; ++position, it = TLV_GetNext(msg.get(), it)) {
        EXPECT_EQ(TLV_GetTypeByIterator(msg.get(), it), 1);
        Message sub(AAA_GetSubTlv(msg.get(), it));
        ASSERT_TRUE(sub);
        EXPECT_EQ(AAA_GetUINTTlvValue(sub.get(), TLV_GetIteratorByType(sub.get(), 1)), position);
        EXPECT_EQ(AAA_GetUINTTlvValue(sub.get(), TLV_GetIteratorByType(sub.get(), 2)),
                  100 * (position + 1));
    }
    EXPECT_EQ(TLV_GetTypeByIterator(msg.get(), it), 2);
    EXPECT_EQ(ValueOf(msg.get(), it), (std::string{1, 2, 3, 4}));
    EXPECT_EQ(TLV_GetNext(msg.get(), it), nullptr);
}

TEST(EncapStructure, NothingGivesTheEmptyMessage) {
    uint32_t length = 0;
    void* buffer = AAA_EncapStructToTLVBuf(nullptr, 0, &length);
    ASSERT_NE(buffer, nullptr);
    EXPECT_EQ(length, 8u);
    std::free(buffer);
    EXPECT_TRUE(Encap({{1, 0, nullptr, 4, EncapItem}}));
}

TEST(EncapStructure, FailingItemGivesNull) {
    const Item items[2] = {};
    EXPECT_FALSE(Encap({{1, 2, items, sizeof(Item), RefuseSecond}}));
}

TEST(EncapStructure, MissingItemsOrStepsGiveNull) {
    EXPECT_FALSE(Encap({{1, 1, nullptr, 4, EncapItem}}));
    uint32_t length = 77;
    EXPECT_EQ(AAA_EncapStructToTLVBuf(nullptr, 1, &length), nullptr);
    EXPECT_EQ(length, 0u);
}

TEST(EncapStructure, LengthMayBeNull) {
    void* buffer = AAA_EncapStructToTLVBuf(nullptr, 0, nullptr);
    EXPECT_NE(buffer, nullptr);
    std::free(buffer);
}

uint32_t CopyNumber(TLV_MSG* sub, void* object) {
    *static_cast<uint32_t*>(object) = AAA_GetUINTTlvValue(sub, TLV_GetIteratorByType(sub, 2));
    return 5;
}

TEST(DecapStructure, GivesTheNestedMessageAndTheReadersResult) {
    const Item item{100, {}};
    Message msg = Encap({{1, 1, &item, sizeof(Item), EncapItem}});
    uint32_t number = 0;
    EXPECT_EQ(AAA_DecapSubTLVToStruct(msg.get(), TLV_GetFirst(msg.get()), CopyNumber, &number), 5u);
    EXPECT_EQ(number, 100u);
}

TEST(DecapStructure, FailsWithoutNestedMessageOrReader) {
    const Item item{100, {}};
    const uint32_t plain = 1;
    Message msg = Encap({{1, 1, &plain, 4, nullptr}, {2, 1, &item, sizeof(Item), EncapItem}});
    uint32_t number = 7;
    EXPECT_EQ(AAA_DecapSubTLVToStruct(msg.get(), TLV_GetFirst(msg.get()), CopyNumber, &number),
              kFailed);
    EXPECT_EQ(AAA_DecapSubTLVToStruct(msg.get(), nullptr, CopyNumber, &number), kFailed);
    EXPECT_EQ(AAA_DecapSubTLVToStruct(nullptr, nullptr, CopyNumber, &number), kFailed);
    EXPECT_EQ(
        AAA_DecapSubTLVToStruct(msg.get(), TLV_GetIteratorByType(msg.get(), 2), nullptr, &number),
        kFailed);
    EXPECT_EQ(number, 7u);
}

}  // namespace
