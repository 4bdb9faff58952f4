#include "base/lookup2.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <utility>

#include "domain/tables.h"

namespace aaadom {
namespace {

TEST(Lookup2, FullHashOfTheEmptyText) {
    EXPECT_EQ(Lookup2("", 0, 0), 0xBD49D10Du);
}

TEST(Lookup2, FullHashOfAShortText) {
    EXPECT_EQ(Lookup2("abc", 3, 0), 0x251E4793u);
}

TEST(Lookup2, InitialValueCounts) {
    EXPECT_NE(Lookup2("abc", 3, 0), Lookup2("abc", 3, 1));
}

TEST(Lookup2, ProfileBucketsAreTheReferenceValues) {
    const std::pair<const char*, uint32_t> kReference[] = {
        {"", 13},
        {"a", 24},
        {"abc", 19},
        {"ABC", 19},
        {"p1", 14},
        {"p2", 5},
        {"p3", 15},
        {"p40", 0},
        {"p82", 5},
        {"p124", 5},
        {"profile1", 62},
        {"nas-id-profile", 32},
        {"abcdefghijkl", 37},  // one whole block, empty tail
    };
    for (auto [name, bucket] : kReference) EXPECT_EQ(NasIdProfileBucket(name), bucket) << name;
}

TEST(Lookup2, ProfileBucketUsesThirtyOneCharactersOnly) {
    EXPECT_EQ(NasIdProfileBucket(std::string(31, 'a').c_str()), 7u);
    EXPECT_EQ(NasIdProfileBucket(std::string(40, 'a').c_str()), 7u);
}

TEST(Lookup2, BindingBucketsAreTheReferenceValues) {
    struct {
        uint16_t vlan;
        const char* name;
        uint32_t bucket;
    } const kReference[] = {
        {1, "abc", 397}, {100, "abc", 5}, {4094, "p1", 332}, {258, "p1", 108}, {1, "", 314}};
    for (const auto& [vlan, name, bucket] : kReference) {
        NasIdBindKey key{};
        key.vlan_id = vlan;
        strcpy(key.profile_name, name);
        EXPECT_EQ(NasIdBindBucket(&key), bucket) << vlan << ' ' << name;
    }
}

}  // namespace
}  // namespace aaadom
