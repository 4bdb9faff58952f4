// Structures with arrays of nested messages, against reading each nested message by itself.
#include <algorithm>
#include <cstddef>

#include "unit/platform/tlv/support.h"

using namespace test;

namespace {

constexpr uint16_t kItemType = 10, kOneType = 50;
constexpr uint32_t kPlaces = 4;

struct Item {
    uint32_t kind;
    char name[33];
    uint8_t unused[3];
    uint32_t index;
};
struct List {
    uint32_t row;
    uint32_t column;
    Item items[kPlaces];
    Item one;
};

const AAA_FIELD kItemFields[] = {{1, AAA_FIELD_POSITION, 0, 0},
                                 {2, AAA_FIELD_WORD, offsetof(Item, kind), 0},
                                 {3, AAA_FIELD_TEXT, offsetof(Item, name), 33},
                                 {4, AAA_FIELD_WORD, offsetof(Item, index), 0}};
/// The same members in another order, so not the table that has a way of its own.
const AAA_FIELD kOtherFields[] = {{3, AAA_FIELD_TEXT, offsetof(Item, name), 33},
                                  {4, AAA_FIELD_WORD, offsetof(Item, index), 0},
                                  {1, AAA_FIELD_POSITION, 0, 0},
                                  {2, AAA_FIELD_HALF, offsetof(Item, kind), 0}};
const AAA_FIELD kListFields[] = {{8, AAA_FIELD_WORD, offsetof(List, row), 0},
                                 {9, AAA_FIELD_WORD, offsetof(List, column), 0}};

class AaaRecords : public testing::TestWithParam<const AAA_FIELD*> {
  public:
    static Item Named(const std::string& name, uint32_t index) {
        Item item{};
        item.kind = 0x102;
        std::memcpy(item.name, name.data(), std::min<size_t>(name.size(), sizeof item.name));
        item.index = index;
        return item;
    }

    /// One nested message whose position need not be where it comes.
    void AppendItem(const Message& msg, uint16_t type, const Item& item, uint32_t position) const {
        Message sub = New();
        for (uint32_t i = 0; i < 4; ++i) {
            if (GetParam()[i].kind == AAA_FIELD_POSITION) {
                AAA_AppendUINTTlvData(sub.get(), 1, position);
            } else {
                AAA_AppendFields(sub.get(), GetParam() + i, 1, &item);
            }
        }
        AAA_AppendSubTlv(msg.get(), type, sub.get());
    }

    static List Zeroed() {
        List list;
        std::memset(&list, 0, sizeof list);
        return list;
    }

    uint32_t Get(const Message& msg, TLV_ITER* it, List& list) const {
        const AAA_RECORDS arrays[] = {{kItemType, kPlaces, sizeof(Item), 4, GetParam(), list.items},
                                      {kOneType, 0, sizeof(Item), 4, GetParam(), &list.one}};
        return AAA_GetRecords(msg.get(), it, kListFields, 2, &list, arrays, 2);
    }

    /// What AAA_GetRecords stands for, a nested message at a time.
    uint32_t GetSingly(TLV_MSG* msg, List& list) const {
        uint32_t result = AAA_GetFields(msg, kListFields, 2, &list, nullptr, nullptr);
        for (TLV_ITER* it = TLV_GetFirst(msg); it != nullptr; it = TLV_GetNext(msg, it)) {
            const uint16_t type = TLV_GetTypeByIterator(msg, it);
            if (type != kItemType && type != kOneType) continue;
            Message sub(AAA_GetSubTlv(msg, it));
            if (!sub) return kFailed;
            Item item{};
            uint32_t position = 0;
            AAA_GetSubFields(msg, it, GetParam(), 4, &item, &position, nullptr, nullptr);
            if (type == kOneType) list.one = item;
            if (type == kItemType && position < kPlaces) list.items[position] = item;
        }
        return result;
    }

    static void ExpectSame(const Item& read, const Item& expected) {
        EXPECT_EQ(read.kind, expected.kind);
        EXPECT_STREQ(read.name, expected.name);
        EXPECT_EQ(read.index, expected.index);
    }
    static void ExpectSame(const List& read, const List& expected) {
        EXPECT_EQ(read.row, expected.row);
        EXPECT_EQ(read.column, expected.column);
        for (uint32_t i = 0; i < kPlaces; ++i) ExpectSame(read.items[i], expected.items[i]);
        ExpectSame(read.one, expected.one);
    }

    /// Reads a message both ways, itself and nested in another one.
    void ExpectReadLikeSingly(const Message& msg) const {
        List expected = Zeroed(), whole = Zeroed(), nested = Zeroed();
        const uint32_t result = GetSingly(msg.get(), expected);
        EXPECT_EQ(Get(msg, nullptr, whole), result);
        Message parent = New();
        AAA_AppendSubTlv(parent.get(), 7, msg.get());
        EXPECT_EQ(Get(parent, TLV_GetFirst(parent.get()), nested), result);
        if (result != 0) return;
        ExpectSame(whole, expected);
        ExpectSame(nested, expected);
    }

    Message InOrder() const {
        Message msg = New();
        AAA_AppendUINTTlvData(msg.get(), 8, 5);
        AAA_AppendUINTTlvData(msg.get(), 9, 11);
        for (uint32_t i = 0; i < 3; ++i) AppendItem(msg, kItemType, Named("radius-main", 7), i);
        AppendItem(msg, kOneType, Named("backup", 9), 0);
        return msg;
    }
};
INSTANTIATE_TEST_SUITE_P(Tables, AaaRecords, testing::Values(kItemFields, kOtherFields),
                         [](const auto& info) {
                             return std::string(info.param == kItemFields ? "OfItem"
                                                                          : "OfAnyOrder");
                         });

TEST_P(AaaRecords, InOrderEachComesToItsPlace) {
    const Message msg = InOrder();
    List list = Zeroed();
    ASSERT_EQ(Get(msg, nullptr, list), 0u);
    EXPECT_EQ(list.row, 5u);
    EXPECT_EQ(list.column, 11u);
    for (uint32_t i = 0; i < 3; ++i) ExpectSame(list.items[i], Named("radius-main", 7));
    ExpectSame(list.items[3], Item{});
    ExpectSame(list.one, Named("backup", 9));
    ExpectReadLikeSingly(msg);
}

TEST_P(AaaRecords, EveryTextLengthIsAppendedAndReadLikeSingly) {
    for (size_t length = 0; length <= 40; ++length) {
        Item items[kPlaces];
        Message together = New(), singly = New();
        for (uint32_t i = 0; i < kPlaces; ++i) {
            items[i] = Named(std::string(length + i, 'n'), i);
            AppendItem(singly, kItemType, items[i], i);
        }
        ASSERT_EQ(AAA_AppendRecords(together.get(), kItemType, GetParam(), 4, items, sizeof *items,
                                    kPlaces),
                  0u);
        ASSERT_EQ(ImageOf(together), ImageOf(singly)) << length;
        ExpectReadLikeSingly(together);
    }
}

TEST_P(AaaRecords, AnyOrderOfPositionsIsReadLikeSingly) {
    // 5 is outside the array; a position that comes again replaces all of what was there.
    const uint32_t orders[][4] = {{1, 0, 2, 3}, {0, 0, 1, 2}, {3, 3, 3, 0}, {0, 1, 5, 2},
                                  {5, 0, 1, 2}, {0, 2, 1, 0}, {0, 1, 1, 3}, {0, 1, 2, 4}};
    for (const auto& order : orders) {
        Message msg = New();
        for (uint32_t i = 0; i < 4; ++i) {
            AppendItem(msg, kItemType, Named(std::string(4 - i, 'x'), 10 + i), order[i]);
        }
        AppendItem(msg, kItemType, Item{}, 1);
        ExpectReadLikeSingly(msg);
    }
}

TEST_P(AaaRecords, PositionOutsideTheArrayStoresNothing) {
    Message msg = New();
    for (uint32_t position : {kPlaces, kPlaces + 1, 0x10000u, UINT32_MAX}) {
        AppendItem(msg, kItemType, Named("far away", 1), position);
    }
    List list = Zeroed();
    ASSERT_EQ(Get(msg, nullptr, list), 0u);
    ExpectSame(list, Zeroed());
}

TEST_P(AaaRecords, LastOfASingleStructureCountsWhateverItsPosition) {
    Message msg = New();
    AppendItem(msg, kOneType, Named("first", 1), 3);
    Message sub = New();
    AAA_AppendUINTTlvData(sub.get(), 4, 2);
    AAA_AppendSubTlv(msg.get(), kOneType, sub.get());
    List list = Zeroed();
    ASSERT_EQ(Get(msg, nullptr, list), 0u);
    ExpectSame(list.one, Item{0, {}, {}, 2});
}

TEST_P(AaaRecords, MoreStructuresThanPlacesAreReadAndTheLastCounts) {
    Message msg = New();
    for (uint32_t i = 0; i < 10; ++i) AppendItem(msg, kItemType, Named("name", i), i % kPlaces);
    ExpectReadLikeSingly(msg);
}

TEST_P(AaaRecords, MissingTlvsAreZeroAndOthersAreSkipped) {
    Message msg = New();
    Append(msg, 77, "unknown");
    for (uint32_t skipped = 0; skipped < 4; ++skipped) {
        Message sub = New();
        Append(sub, 78, "unknown");
        const Item item = Named("some name", 6);
        for (uint32_t i = 0; i < 4; ++i) {
            if (i == skipped) continue;
            if (GetParam()[i].kind == AAA_FIELD_POSITION) {
                AAA_AppendUINTTlvData(sub.get(), 1, skipped);
            } else {
                AAA_AppendFields(sub.get(), GetParam() + i, 1, &item);
            }
        }
        AAA_AppendSubTlv(msg.get(), kItemType, sub.get());
        Append(msg, 77, "unknown");
    }
    ExpectReadLikeSingly(msg);
}

TEST_P(AaaRecords, ChangedBytesAreReadLikeSinglyOrFail) {
    const Bytes image = ImageOf(InOrder());
    for (size_t at = 8; at < image.size(); ++at) {
        for (int change : {1, 2, 0x7F, 0x80, 0xFF}) {
            Bytes bytes = image;
            bytes[at] = static_cast<Bytes::value_type>(bytes[at] ^ change);
            const Message msg = FromImage(bytes);
            if (!msg) continue;
            SCOPED_TRACE(at);
            ExpectReadLikeSingly(msg);
        }
    }
}

TEST_P(AaaRecords, CutNestedMessagesFail) {
    Message sub = New();
    AppendItem(sub, kItemType, Named("radius-main", 7), 0);
    const std::string image = ValueOf(sub.get(), TLV_GetFirst(sub.get()));
    for (size_t length = 0; length < image.size(); ++length) {
        Message msg = New();
        Append(msg, kItemType, image.substr(0, length));
        List list = Zeroed();
        EXPECT_EQ(Get(msg, nullptr, list), kFailed) << length;
    }
}

TEST_P(AaaRecords, NullsFail) {
    Message msg = InOrder();
    List list = Zeroed();
    AAA_RECORDS array{kItemType, kPlaces, sizeof(Item), 4, GetParam(), list.items};
    const auto get = [&](TLV_MSG* from, const AAA_FIELD* fields, void* record, uint32_t arrays) {
        return AAA_GetRecords(from, nullptr, fields, 2, record, arrays == 0 ? nullptr : &array, 1);
    };
    EXPECT_EQ(get(nullptr, kListFields, &list, 1), kFailed);
    EXPECT_EQ(get(msg.get(), nullptr, &list, 1), kFailed);
    EXPECT_EQ(get(msg.get(), kListFields, nullptr, 1), kFailed);
    EXPECT_EQ(get(msg.get(), kListFields, &list, 0), kFailed);
    array.first = nullptr;
    EXPECT_EQ(get(msg.get(), kListFields, &list, 1), kFailed);
    array.first = list.items;
    array.fields = nullptr;
    EXPECT_EQ(get(msg.get(), kListFields, &list, 1), kFailed);
    EXPECT_EQ(AAA_GetRecords(msg.get(), nullptr, kListFields, 2, &list, nullptr, 0), 0u);
    TLV_ITER* not_nested = TLV_GetFirst(msg.get());
    EXPECT_EQ(AAA_GetRecords(msg.get(), not_nested, kListFields, 2, &list, nullptr, 0), kFailed);
}

TEST(AaaRecordsLimit, MoreThanFourArraysFail) {
    Message msg = New();
    List list{};
    AAA_RECORDS arrays[5];
    for (uint16_t i = 0; i < 5; ++i) {
        arrays[i] = {i, kPlaces, sizeof(Item), 4, kItemFields, list.items};
    }
    EXPECT_EQ(AAA_GetRecords(msg.get(), nullptr, kListFields, 2, &list, arrays, 4), 0u);
    EXPECT_EQ(AAA_GetRecords(msg.get(), nullptr, kListFields, 2, &list, arrays, 5), kFailed);
}

}  // namespace
