#include <gtest/gtest.h>
#include <platform/hash.h>

#include <cstdlib>
#include <vector>

namespace {

struct Entry {
    HASH_NODE links;
    uint32_t key;
};
static_assert(offsetof(Entry, links) == 0);

uint32_t ByModulo(const void* key) {
    return *static_cast<const uint32_t*>(key) % 4;
}
uint32_t OutsideTheTable(const void*) {
    return 4;
}

Entry* AsEntry(HASH_NODE* node) {
    return reinterpret_cast<Entry*>(node);
}

int Compare(const void* key, const HASH_NODE* node) {
    return *static_cast<const uint32_t*>(key) == reinterpret_cast<const Entry*>(node)->key ? 0 : -1;
}

Entry* Add(HASH_TABLE* table, uint32_t key) {
    auto* entry = static_cast<Entry*>(std::calloc(1, sizeof(Entry)));
    entry->key = key;
    HASH_LinkAtHead(&table->buckets[ByModulo(&key)], &entry->links);
    return entry;
}

std::vector<uint32_t> freed;

void FreeNode(HASH_NODE* node) {
    freed.push_back(AsEntry(node)->key);
    std::free(node);
}

void UnlinkAndFreeNode(HASH_NODE* node) {
    HASH_Unlink(node);
    FreeNode(node);
}

class HashTable : public testing::Test {
  protected:
    void SetUp() override {
        freed.clear();
        table_ = HASH_Create(4, ByModulo);
        ASSERT_NE(table_, nullptr);
    }
    void TearDown() override { HASH_Destroy(table_, FreeNode); }

    HASH_NODE* Find(uint32_t key) { return HASH_Find(table_, &key, Compare); }

    HASH_TABLE* table_ = nullptr;
};

TEST_F(HashTable, IsEmptyWhenCreated) {
    EXPECT_EQ(table_->bucket_count, 4u);
    EXPECT_EQ(table_->key_fn, ByModulo);
    for (uint32_t i = 0; i < 4; ++i) EXPECT_EQ(table_->buckets[i], nullptr);
    EXPECT_EQ(Find(1), nullptr);
}

TEST(HashCreate, RefusesNoBuckets) {
    EXPECT_EQ(HASH_Create(0, ByModulo), nullptr);
}

TEST(HashCreate, RefusesNoKeyFunction) {
    EXPECT_EQ(HASH_Create(4, nullptr), nullptr);
}

TEST_F(HashTable, FindsEachNodeOfOneBucket) {
    Entry* one = Add(table_, 1);
    Entry* five = Add(table_, 5);
    Entry* nine = Add(table_, 9);
    EXPECT_EQ(Find(1), &one->links);
    EXPECT_EQ(Find(5), &five->links);
    EXPECT_EQ(Find(9), &nine->links);
    EXPECT_EQ(Find(13), nullptr);
    EXPECT_EQ(Find(2), nullptr);
}

TEST_F(HashTable, FindsTheNewestOfEqualKeys) {
    Add(table_, 1);
    Entry* newer = Add(table_, 1);
    EXPECT_EQ(Find(1), &newer->links);
}

TEST_F(HashTable, FindOnNoTableFindsNothing) {
    const uint32_t key = 1;
    EXPECT_EQ(HASH_Find(nullptr, &key, Compare), nullptr);
}

TEST_F(HashTable, FindWithoutKeyOrCompareFindsNothing) {
    Add(table_, 1);
    const uint32_t key = 1;
    EXPECT_EQ(HASH_Find(table_, nullptr, Compare), nullptr);
    EXPECT_EQ(HASH_Find(table_, &key, nullptr), nullptr);
}

TEST_F(HashTable, KeyFunctionOutsideTheTableFindsNothing) {
    Add(table_, 0);
    table_->key_fn = OutsideTheTable;
    EXPECT_EQ(Find(0), nullptr);
}

TEST_F(HashTable, LinkAtHeadMakesTheNodeTheFirst) {
    Entry* one = Add(table_, 1);
    Entry* five = Add(table_, 5);
    EXPECT_EQ(table_->buckets[1], &five->links);
    EXPECT_EQ(five->links.next, &one->links);
    EXPECT_EQ(five->links.prev_link, &table_->buckets[1]);
    EXPECT_EQ(one->links.prev_link, &five->links.next);
    EXPECT_EQ(one->links.next, nullptr);
}

TEST_F(HashTable, UnlinkTakesOutFirstMiddleAndLast) {
    Entry* one = Add(table_, 1);
    Entry* five = Add(table_, 5);
    Entry* nine = Add(table_, 9);
    HASH_Unlink(&five->links);
    EXPECT_EQ(nine->links.next, &one->links);
    EXPECT_EQ(one->links.prev_link, &nine->links.next);
    HASH_Unlink(&nine->links);
    EXPECT_EQ(table_->buckets[1], &one->links);
    HASH_Unlink(&one->links);
    EXPECT_EQ(table_->buckets[1], nullptr);
    for (Entry* entry : {one, five, nine}) std::free(entry);
}

TEST_F(HashTable, UnlinkTwiceOrOfNothingIsIgnored) {
    Entry* one = Add(table_, 1);
    Entry* five = Add(table_, 5);
    HASH_Unlink(&one->links);
    HASH_Unlink(&one->links);
    HASH_Unlink(nullptr);
    EXPECT_EQ(table_->buckets[1], &five->links);
    std::free(one);
}

TEST(HashDestroy, FreesBucketByBucketFromEachHead) {
    freed.clear();
    HASH_TABLE* table = HASH_Create(4, ByModulo);
    for (uint32_t key : {6, 1, 5, 0, 9}) Add(table, key);
    HASH_Destroy(table, FreeNode);
    EXPECT_EQ(freed, (std::vector<uint32_t>{0, 9, 5, 1, 6}));
}

TEST(HashDestroy, NodeFunctionMayUnlink) {
    freed.clear();
    HASH_TABLE* table = HASH_Create(4, ByModulo);
    for (uint32_t key : {1, 5, 9, 2}) Add(table, key);
    HASH_Destroy(table, UnlinkAndFreeNode);
    EXPECT_EQ(freed, (std::vector<uint32_t>{9, 5, 1, 2}));
}

TEST(HashDestroy, WithoutNodeFunctionLeavesTheNodes) {
    HASH_TABLE* table = HASH_Create(4, ByModulo);
    Entry* one = Add(table, 1);
    HASH_Destroy(table, nullptr);
    EXPECT_EQ(one->key, 1u);
    std::free(one);
}

TEST(HashDestroy, NoTableIsIgnored) {
    HASH_Destroy(nullptr, FreeNode);
}

}  // namespace
