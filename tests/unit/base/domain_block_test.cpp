// Records and lists that share allocations and end one by one.
#include "base/domain_block.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <utility>
#include <vector>

#include "fakes/fake_platform.h"

namespace aaadom {
namespace {

class DomainBlock : public testing::Test {
  protected:
    DomainBlock() {
        fake::Reset();
        fake::CountBlocks(true);
    }
    ~DomainBlock() override {
        EXPECT_EQ(fake::LiveBlocks(), 0);
        fake::CountBlocks(false);
    }

    /// A record with that many lists, row by row.
    static DomainInfo* Record(uint32_t lists) {
        ListRoom room;
        DomainInfo* record = room.CreateRecord();
        for (uint32_t i = 0; i < lists; ++i) {
            if (room.IsEmpty()) {
                EXPECT_TRUE(room.Extend(lists - i));
            }
            room.Next().aaa_type = i / DOM_SERVICES;
            room.Next().service = i % DOM_SERVICES;
            room.Place(*record);
        }
        return record;
    }
    static MethodList* Take(DomainInfo* record, uint32_t number) {
        return std::exchange(record->method_lists[number / DOM_SERVICES][number % DOM_SERVICES],
                             nullptr);
    }
};

TEST_F(DomainBlock, RecordWithTheListsOfEveryDomainIsOneAllocation) {
    DomainInfo* record = Record(DOM_DEFAULT_LISTS);
    EXPECT_EQ(fake::LiveBlocks(), 1);
    FreeDomainRecord(record);
}

TEST_F(DomainBlock, AllFurtherListsAreOneMoreAllocation) {
    DomainInfo* record = Record(72);
    EXPECT_EQ(fake::LiveBlocks(), 2);
    for (uint32_t i = 0; i < 72; ++i) {
        const MethodList* list = record->method_lists[i / DOM_SERVICES][i % DOM_SERVICES];
        ASSERT_NE(list, nullptr);
        EXPECT_EQ(list->service, i % DOM_SERVICES);
        EXPECT_EQ(list->methods[5].scheme_index, 0u);
    }
    FreeDomainRecord(record);
}

TEST_F(DomainBlock, ListsThatLeftTheirRecordOutliveIt) {
    for (const uint32_t number : {0u, 2u, 3u, 35u}) {
        DomainInfo* record = Record(36);
        MethodList* list = Take(record, number);
        FreeDomainRecord(record);
        list->methods[5].scheme_index = 7;
        EXPECT_EQ(list->service, number % DOM_SERVICES);
        FreeMethodList(list);
        EXPECT_EQ(fake::LiveBlocks(), 0) << number;
    }
}

TEST_F(DomainBlock, RecordOutlivesItsLists) {
    DomainInfo* record = Record(5);
    for (uint32_t number = 0; number < 5; ++number) FreeMethodList(Take(record, number));
    EXPECT_EQ(fake::LiveBlocks(), 1);
    record->slot = 3;
    FreeDomainRecord(record);
}

TEST_F(DomainBlock, ListsFromElsewhereEndWithTheRecord) {
    DomainInfo* record = Record(5);
    for (const uint32_t number : {1u, 4u}) FreeMethodList(Take(record, number));
    record->method_lists[0][1] = static_cast<MethodList*>(calloc(1, sizeof(MethodList)));
    record->method_lists[5][11] = static_cast<MethodList*>(calloc(1, sizeof(MethodList)));
    FreeDomainRecord(record);
}

TEST_F(DomainBlock, RecordFromElsewhereFreesListsOfManyBlocks) {
    auto* record = static_cast<DomainInfo*>(calloc(1, sizeof(DomainInfo)));
    for (uint32_t number = 0; number < 10; ++number) {
        DomainInfo* other = Record(5);
        record->method_lists[2][number] = Take(other, number % 5);
        FreeDomainRecord(other);
    }
    FreeDomainRecord(record);
}

TEST_F(DomainBlock, RoomThatNobodyTookEnds) {
    ListRoom room;
    DomainInfo* record = room.CreateRecord();
    EXPECT_TRUE(room.Extend(2));
    EXPECT_TRUE(room.Extend(4));
    FreeDomainRecord(record);
}

TEST_F(DomainBlock, WithoutMemoryThereIsNoRecordAndNoMoreRoom) {
    fake::FailAllocation(1);
    ListRoom none;
    EXPECT_EQ(none.CreateRecord(), nullptr);
    EXPECT_TRUE(none.IsEmpty());
    ListRoom room;
    DomainInfo* record = room.CreateRecord();
    fake::FailAllocation(1);
    EXPECT_FALSE(room.Extend(2));
    FreeDomainRecord(record);
}

TEST_F(DomainBlock, NullsAreIgnored) {
    FreeMethodList(nullptr);
    FreeDomainRecord(nullptr);
}

}  // namespace
}  // namespace aaadom
