#include <gtest/gtest.h>
#include <platform/hash.h>
#include <platform/ifname.h>
#include <platform/syslog.h>

#include <cstdlib>

#include "fakes/fake_platform.h"

namespace {

struct Node {
    HASH_NODE links;
    int key;
};

uint32_t KeyOf(const void* key) {
    return static_cast<uint32_t>(*static_cast<const int*>(key)) % 4;
}

void LinkAtHead(HASH_TABLE* table, Node* node) {
    HASH_NODE** head = &table->buckets[KeyOf(&node->key)];
    node->links.next = *head;
    node->links.prev_link = head;
    if (*head != nullptr) (*head)->prev_link = &node->links.next;
    *head = &node->links;
}

TEST(FakeHash, FindsLinkedNodesAndFreesThem) {
    const int64_t before = fake::LiveHashTables();
    HASH_TABLE* table = HASH_Create(4, KeyOf);
    for (int key : {1, 5, 2}) {
        auto* node = static_cast<Node*>(std::calloc(1, sizeof(Node)));
        node->key = key;
        LinkAtHead(table, node);
    }
    const auto compare = [](const void* key, const HASH_NODE* node) {
        return *static_cast<const int*>(key) == reinterpret_cast<const Node*>(node)->key ? 0 : 1;
    };
    int wanted = 5, missing = 9;
    EXPECT_NE(nullptr, HASH_Find(table, &wanted, compare));
    EXPECT_EQ(nullptr, HASH_Find(table, &missing, compare));
    EXPECT_EQ(nullptr, HASH_Find(nullptr, &wanted, compare));
    HASH_Destroy(table, [](HASH_NODE* node) { std::free(node); });
    EXPECT_EQ(before, fake::LiveHashTables());
}

void Log(uint32_t priority, const char* label, const char* format, ...) {
    va_list args;
    va_start(args, format);
    vsyslog2(priority, "AAA", label, format, args);
    va_end(args);
}

TEST(FakeLog, LinesAndControlsAreRecorded) {
    fake::Reset();
    openlog("AAA", 4, 184);
    Log(0x010000BF, "EVENT", "%s %d", "text", 5);
    closelog();
    ASSERT_EQ(1u, fake::LogLines().size());
    EXPECT_EQ(0x010000BFu, fake::LogLines()[0].priority);
    EXPECT_EQ("AAA", fake::LogLines()[0].module);
    EXPECT_EQ("EVENT", fake::LogLines()[0].label);
    EXPECT_EQ("text 5", fake::LogLines()[0].text);
    ASSERT_EQ(2u, fake::LogControls().size());
    EXPECT_EQ(184, fake::LogControls()[0].facility);
    EXPECT_FALSE(fake::LogControls()[1].open);
}

TEST(FakeInterfaces, OnlyNamedInterfacesAreKnown) {
    fake::Reset();
    fake::SetInterfaceName(7, "GigabitEthernet0/0/1");
    char name[8];
    EXPECT_EQ(0u, IF_GetDataByIfIndex(7, IF_ATTRIBUTE_NAME, sizeof name, name));
    EXPECT_STREQ("Gigabit", name);
    EXPECT_NE(0u, IF_GetDataByIfIndex(8, IF_ATTRIBUTE_NAME, sizeof name, name));
    EXPECT_NE(0u, IF_GetDataByIfIndex(7, 11, sizeof name, name));
}

}  // namespace
