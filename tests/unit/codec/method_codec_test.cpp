#include <aaadom/method_codec.h>
#include <arpa/inet.h>

#include "unit/codec/codec_test_support.h"

namespace {

using namespace codec_test;

class MethodItems : public CodecTest {
  protected:
    MethodEntry items[DOM_METHODS] = {};
};

TEST_F(MethodItems, ItemIsPositionTypeNameAndIndexInThisOrder) {
    items[0] = Entry(2, "radius", 7);
    Message msg;
    ASSERT_EQ(DOM_EncodeMultiMethods(msg.get(), items), DOM_OK);
    ASSERT_EQ(TypesOf(msg.get()), (std::vector<uint32_t>{DOM_TLV_METHOD_ITEM}));
    const TlvPtr sub = aaadom::FindTlv(msg.get(), DOM_TLV_METHOD_ITEM).Sub();
    EXPECT_EQ(TypesOf(sub.get()), (std::vector<uint32_t>{11, 12, 13, 30}));
    EXPECT_EQ(NumberOf(sub.get(), DOM_TLV_ITEM_POSITION), 0u);
    EXPECT_EQ(NumberOf(sub.get(), DOM_TLV_METHOD_TYPE), 2u);
    EXPECT_EQ(TextOf(sub.get(), DOM_TLV_SCHEME_NAME), "radius");
    EXPECT_EQ(NumberOf(sub.get(), DOM_TLV_SCHEME_INDEX), 7u);
}

TEST_F(MethodItems, EncodingStopsAtTheFirstEmptyItem) {
    items[0] = Entry(1);
    items[2] = Entry(3);
    Message msg;
    ASSERT_EQ(DOM_EncodeMultiMethods(msg.get(), items), DOM_OK);
    EXPECT_EQ(TypesOf(msg.get()).size(), 1u);
}

TEST_F(MethodItems, EmptyFirstItemEncodesNothing) {
    Message msg;
    EXPECT_EQ(DOM_EncodeMultiMethods(msg.get(), items), DOM_OK);
    EXPECT_TRUE(TypesOf(msg.get()).empty());
}

TEST_F(MethodItems, SixItemsAreSentAndASeventhIsNeverRead) {
    MethodEntry seven[DOM_METHODS + 1] = {};
    for (uint32_t i = 0; i <= DOM_METHODS; ++i) seven[i] = Entry(1 + i % 5, "s", i);
    Message msg;
    ASSERT_EQ(DOM_EncodeMultiMethods(msg.get(), seven), DOM_OK);
    ASSERT_EQ(TypesOf(msg.get()).size(), 6u);
    ASSERT_EQ(DOM_DecodeMultiMethods(msg.get(), items), DOM_OK);
    EXPECT_EQ(memcmp(items, seven, sizeof items), 0);
}

TEST_F(MethodItems, FullUnterminatedNameIsSentAs33CharactersAndReadBackAs32) {
    items[0] = Entry(1);
    memset(items[0].scheme_name, 'x', DOM_SCHEME_NAME_SIZE);
    Message msg;
    ASSERT_EQ(DOM_EncodeMultiMethods(msg.get(), items), DOM_OK);
    const TlvPtr sub = aaadom::FindTlv(msg.get(), DOM_TLV_METHOD_ITEM).Sub();
    EXPECT_EQ(TextOf(sub.get(), DOM_TLV_SCHEME_NAME), std::string(33, 'x'));
    MethodEntry decoded[DOM_METHODS] = {};
    ASSERT_EQ(DOM_DecodeMultiMethods(msg.get(), decoded), DOM_OK);
    EXPECT_EQ(std::string(decoded[0].scheme_name), std::string(32, 'x'));
}

TEST_F(MethodItems, FailedAppendIsReturned) {
    items[0] = Entry(1);
    items[1] = Entry(2);
    for (int n = 1; n <= 10; ++n) {
        Message msg;
        fake::FailAppend(n);
        EXPECT_NE(DOM_EncodeMultiMethods(msg.get(), items), DOM_OK) << n;
        EXPECT_TRUE(fake::Tripped()) << n;
        fake::DisarmFailures();
        EXPECT_EQ(fake::LiveMessages(), 1) << n;
    }
}

TEST_F(MethodItems, ItemThatCannotBeBuiltFails) {
    items[0] = Entry(1);
    Message msg;
    fake::FailMessage(1);
    EXPECT_EQ(DOM_EncodeMultiMethods(msg.get(), items), DOM_ERR_FAILED);
    EXPECT_TRUE(TypesOf(msg.get()).empty());
}

TEST_F(MethodItems, ItemsAreStoredAtThePositionTheyCarry) {
    Message msg;
    msg.Sub(DOM_TLV_METHOD_ITEM, Item(4, 3, "c")).Sub(DOM_TLV_METHOD_ITEM, Item(1, 2, "b"));
    items[0] = Entry(5);
    ASSERT_EQ(DOM_DecodeMultiMethods(msg.get(), items), DOM_OK);
    EXPECT_EQ(items[0].method_kind, 5u) << "items that the message lacks stay";
    EXPECT_EQ(items[1].method_kind, 2u);
    EXPECT_STREQ(items[4].scheme_name, "c");
}

TEST_F(MethodItems, LaterItemOfTheSamePositionWins) {
    Message msg;
    msg.Sub(DOM_TLV_METHOD_ITEM, Item(0, 1)).Sub(DOM_TLV_METHOD_ITEM, Item(0, 2));
    ASSERT_EQ(DOM_DecodeMultiMethods(msg.get(), items), DOM_OK);
    EXPECT_EQ(items[0].method_kind, 2u);
}

TEST_F(MethodItems, PositionOutsideTheListStoresNothing) {
    for (const uint32_t position : {6u, 7u, 0x80000000u, 0xFFFFFFFFu, 97612894u}) {
        struct {
            MethodEntry items[DOM_METHODS];
            MethodEntry guard;
        } block{};
        Message msg;
        msg.Sub(DOM_TLV_METHOD_ITEM, Item(position, 3, "evil", 9));
        EXPECT_EQ(DOM_DecodeMultiMethods(msg.get(), block.items), DOM_OK);
        const decltype(block) empty{};
        EXPECT_EQ(memcmp(&block, &empty, sizeof empty), 0) << position;
    }
}

TEST_F(MethodItems, MessageWithoutAnItemFails) {
    Message empty;
    EXPECT_EQ(DOM_DecodeMultiMethods(empty.get(), items), DOM_ERR_FAILED);
    Message other;
    other.U32(DOM_TLV_AAA_TYPE, 1);
    EXPECT_EQ(DOM_DecodeMultiMethods(other.get(), items), DOM_ERR_FAILED);
}

TEST_F(MethodItems, ItemThatIsNoMessageFails) {
    Message msg;
    msg.Sub(DOM_TLV_METHOD_ITEM, Item(0, 1)).Raw(DOM_TLV_METHOD_ITEM, "garbage");
    EXPECT_EQ(DOM_DecodeMultiMethods(msg.get(), items), DOM_ERR_FAILED);
}

TEST_F(MethodItems, UnknownTlvsOfAnItemAreSkippedAndMissingOnesAreZero) {
    Message item;
    item.U32(999, 5).U32(DOM_TLV_METHOD_TYPE, 2).U32(65535, 1);
    Message msg;
    msg.Sub(DOM_TLV_METHOD_ITEM, item);
    items[0] = Entry(9, "old", 9);
    ASSERT_EQ(DOM_DecodeMultiMethods(msg.get(), items), DOM_OK);
    const MethodEntry want = Entry(2);
    EXPECT_EQ(memcmp(&items[0], &want, sizeof want), 0);
}

TEST_F(MethodItems, OverlongNameIsCutTo32Characters) {
    Message msg;
    msg.Sub(DOM_TLV_METHOD_ITEM, Item(0, 1, std::string(500, 'n')));
    ASSERT_EQ(DOM_DecodeMultiMethods(msg.get(), items), DOM_OK);
    EXPECT_EQ(std::string(items[0].scheme_name), std::string(32, 'n'));
}

TEST_F(MethodItems, NullArgumentsFail) {
    Message msg;
    EXPECT_EQ(DOM_EncodeMultiMethods(nullptr, items), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_EncodeMultiMethods(msg.get(), nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_DecodeMultiMethods(nullptr, items), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_DecodeMultiMethods(msg.get(), nullptr), DOM_ERR_FAILED);
}

class ClearTlv : public CodecTest {};

TEST_F(ClearTlv, DeletesEveryTlvAndKeepsTheMessage) {
    Message msg(3);
    msg.Text(2, "a").U32(18, 0);
    EXPECT_EQ(DOM_ClearTlv(msg.get()), DOM_OK);
    EXPECT_TRUE(TypesOf(msg.get()).empty());
    msg.U32(18, 5);
    EXPECT_EQ(NumberOf(msg.get(), 18), 5u);
}

TEST_F(ClearTlv, EmptyMessageGivesZeroAndStaysUsable) {
    Message msg;
    EXPECT_EQ(DOM_ClearTlv(msg.get()), DOM_OK);
    msg.U32(18, 5);
    EXPECT_EQ(TypesOf(msg.get()).size(), 1u);
}

TEST_F(ClearTlv, NullMessageFails) {
    EXPECT_EQ(DOM_ClearTlv(nullptr), DOM_ERR_FAILED);
}

class NetworkItem : public CodecTest {
  protected:
    static Message Wire(uint32_t position, const std::string& name) {
        Message msg;
        msg.U32(DOM_ITEM_TLV_POSITION, htonl(position))
            .U32(DOM_ITEM_TLV_TYPE, htonl(2))
            .U32(DOM_ITEM_TLV_INDEX, htonl(9))
            .Raw(DOM_ITEM_TLV_NAME, name);
        return msg;
    }
    MethodEntry items[DOM_METHODS] = {};
};

TEST_F(NetworkItem, NumbersAreBigEndianAndTheNameHasNoTerminator) {
    const MethodEntry item = Entry(2, "abc", 0x01020304);
    Message msg;
    ASSERT_EQ(DOM_EncapMethodToTLVItem(5, &item, msg.get()), DOM_OK);
    EXPECT_EQ(TypesOf(msg.get()), (std::vector<uint32_t>{1, 2, 3, 4}));
    EXPECT_EQ(NumberOf(msg.get(), 1), htonl(5));
    EXPECT_EQ(NumberOf(msg.get(), 2), htonl(2));
    EXPECT_EQ(NumberOf(msg.get(), 3), 0x04030201u);
    EXPECT_EQ(aaadom::FindTlv(msg.get(), 4).Length(), 3u);
}

TEST_F(NetworkItem, EmptyNameIsOmittedAndEmptyItemsAreSent) {
    const MethodEntry item{};
    Message msg;
    ASSERT_EQ(DOM_EncapMethodToTLVItem(0, &item, msg.get()), DOM_OK);
    EXPECT_EQ(TypesOf(msg.get()), (std::vector<uint32_t>{1, 2, 3}));
}

TEST_F(NetworkItem, EveryFailedAppendIsReportedAndTheOthersAreStillMade) {
    const MethodEntry item = Entry(2, "abc");
    for (int n = 1; n <= 4; ++n) {
        Message msg;
        fake::FailAppend(n);
        EXPECT_NE(DOM_EncapMethodToTLVItem(0, &item, msg.get()), DOM_OK) << n;
        fake::DisarmFailures();
        EXPECT_EQ(TypesOf(msg.get()).size(), 3u) << n;
    }
}

TEST_F(NetworkItem, ReadsBackWhatWasWritten) {
    const MethodEntry item = Entry(3, "scheme", 77);
    Message msg;
    ASSERT_EQ(DOM_EncapMethodToTLVItem(4, &item, msg.get()), DOM_OK);
    ASSERT_EQ(DOM_DecapTLVItemToMethod(msg.get(), items), DOM_OK);
    EXPECT_EQ(memcmp(&items[4], &item, sizeof item), 0);
}

TEST_F(NetworkItem, NameOf33BytesIsAcceptedAndKept32Characters) {
    ASSERT_EQ(DOM_DecapTLVItemToMethod(Wire(1, std::string(33, 'k')).get(), items), DOM_OK);
    EXPECT_EQ(std::string(items[1].scheme_name), std::string(32, 'k'));
}

TEST_F(NetworkItem, NameOf34BytesRefusesTheItem) {
    EXPECT_EQ(DOM_DecapTLVItemToMethod(Wire(1, std::string(34, 'k')).get(), items), DOM_ERR_FAILED);
    EXPECT_EQ(items[1].method_kind, 0u);
}

TEST_F(NetworkItem, TooLongNameIsNotRepairedByAShorterOne) {
    Message msg = Wire(1, std::string(34, 'k'));
    msg.Raw(DOM_ITEM_TLV_NAME, "ok");
    EXPECT_EQ(DOM_DecapTLVItemToMethod(msg.get(), items), DOM_ERR_FAILED);
}

TEST_F(NetworkItem, LaterShorterNameReplacesTheWholeName) {
    Message msg = Wire(1, "longer-name");
    msg.Raw(DOM_ITEM_TLV_NAME, "ok");
    ASSERT_EQ(DOM_DecapTLVItemToMethod(msg.get(), items), DOM_OK);
    EXPECT_STREQ(items[1].scheme_name, "ok");
}

TEST_F(NetworkItem, ItemWithoutPositionIsRefused) {
    Message msg;
    msg.U32(DOM_ITEM_TLV_TYPE, htonl(2));
    EXPECT_EQ(DOM_DecapTLVItemToMethod(msg.get(), items), DOM_ERR_FAILED);
}

TEST_F(NetworkItem, PositionAboveFiveIsRefused) {
    for (const uint32_t position : {6u, 0x05000000u, 0xFFFFFFFFu}) {
        EXPECT_EQ(DOM_DecapTLVItemToMethod(Wire(position, "a").get(), items), DOM_ERR_FAILED);
    }
    const MethodEntry empty[DOM_METHODS] = {};
    EXPECT_EQ(memcmp(items, empty, sizeof items), 0);
}

TEST_F(NetworkItem, MissingNameEmptiesTheName) {
    items[0] = Entry(1, "old");
    Message msg;
    msg.U32(DOM_ITEM_TLV_POSITION, 0);
    ASSERT_EQ(DOM_DecapTLVItemToMethod(msg.get(), items), DOM_OK);
    EXPECT_STREQ(items[0].scheme_name, "");
    EXPECT_EQ(items[0].method_kind, 0u);
}

TEST_F(NetworkItem, FullUnterminatedNameIsSentAs33Bytes) {
    MethodEntry item = Entry(1);
    memset(item.scheme_name, 'x', DOM_SCHEME_NAME_SIZE);
    Message msg;
    ASSERT_EQ(DOM_EncapMethodToTLVItem(0, &item, msg.get()), DOM_OK);
    EXPECT_EQ(aaadom::FindTlv(msg.get(), DOM_ITEM_TLV_NAME).Length(), 33u);
    ASSERT_EQ(DOM_DecapTLVItemToMethod(msg.get(), items), DOM_OK);
    EXPECT_EQ(std::string(items[0].scheme_name), std::string(32, 'x'));
}

TEST_F(NetworkItem, DamagedImagesNeverHurt) {
    const MethodEntry item = Entry(1, "scheme", 2);
    Message msg;
    ASSERT_EQ(DOM_EncapMethodToTLVItem(3, &item, msg.get()), DOM_OK);
    ForEveryDamage(msg.get(), [](TLV_MSG* damaged) {
        struct {
            MethodEntry items[DOM_METHODS];
            MethodEntry guard;
        } block{};
        (void)DOM_DecapTLVItemToMethod(damaged, block.items);
        const MethodEntry empty{};
        EXPECT_EQ(memcmp(&block.guard, &empty, sizeof empty), 0);
    });
}

TEST_F(NetworkItem, NullArgumentsFail) {
    const MethodEntry item{};
    Message msg;
    EXPECT_EQ(DOM_EncapMethodToTLVItem(0, nullptr, msg.get()), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_EncapMethodToTLVItem(0, &item, nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_DecapTLVItemToMethod(nullptr, items), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_DecapTLVItemToMethod(msg.get(), nullptr), DOM_ERR_FAILED);
}

}  // namespace
