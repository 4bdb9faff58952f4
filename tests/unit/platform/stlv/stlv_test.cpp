#include <gtest/gtest.h>
#include <platform/stlv.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <random>
#include <vector>

namespace {

TEST(StlvSet, WritesTypeLengthAndValueLittleEndian) {
    std::array<uint8_t, 16> buffer{};
    EXPECT_EQ(STLV_Set(buffer.data(), 16, 0x0102, 3, "abc"), 7u);
    const uint8_t expected[] = {0x02, 0x01, 0x03, 0x00, 'a', 'b', 'c', 0};
    EXPECT_EQ(std::memcmp(buffer.data(), expected, sizeof expected), 0);
}

TEST(StlvSet, FillsTheRoomExactly) {
    uint8_t buffer[7];
    EXPECT_EQ(STLV_Set(buffer, 7, 1, 3, "abc"), 7u);
}

TEST(StlvSet, WritesNothingWithoutRoom) {
    uint8_t buffer[8];
    std::fill(std::begin(buffer), std::end(buffer), 0xEE);
    for (uint32_t room = 0; room < 7; ++room) EXPECT_EQ(STLV_Set(buffer, room, 1, 3, "abc"), 0u);
    EXPECT_TRUE(
        std::all_of(std::begin(buffer), std::end(buffer), [](auto b) { return b == 0xEE; }));
}

TEST(StlvSet, EmptyValueNeedsNoPointer) {
    uint8_t buffer[4];
    EXPECT_EQ(STLV_Set(buffer, 4, 9, 0, nullptr), 4u);
}

TEST(StlvSet, LongestValueHas65535Bytes) {
    std::vector<uint8_t> value(65536, 7), buffer(70000);
    EXPECT_EQ(STLV_Set(buffer.data(), 70000, 1, 65535, value.data()), 65539u);
    EXPECT_EQ(STLV_Set(buffer.data(), 70000, 1, 65536, value.data()), 0u);
    EXPECT_EQ(STLV_Set(buffer.data(), 70000, 1, 0xFFFFFFFF, value.data()), 0u);
}

TEST(StlvSet, RefusesNullBufferAndNullValue) {
    uint8_t buffer[8];
    EXPECT_EQ(STLV_Set(nullptr, 8, 1, 1, "a"), 0u);
    EXPECT_EQ(STLV_Set(buffer, 8, 1, 1, nullptr), 0u);
}

TEST(StlvGet, GivesBackWhatWasSet) {
    uint8_t buffer[32];
    uint32_t used = STLV_Set(buffer, 32, 165, 4, "name");
    used += STLV_Set(buffer + used, 32 - used, 0xFFFF, 0, nullptr);

    uint16_t type = 0;
    uint32_t length = 0;
    const void* value = nullptr;
    EXPECT_EQ(STLV_Get(buffer, used, &type, &length, &value), 8u);
    EXPECT_EQ(type, 165);
    EXPECT_EQ(length, 4u);
    EXPECT_EQ(value, buffer + 4);
    EXPECT_EQ(STLV_Get(buffer + 8, used - 8, &type, &length, &value), 4u);
    EXPECT_EQ(type, 0xFFFF);
    EXPECT_EQ(length, 0u);
    EXPECT_EQ(STLV_Get(buffer + 12, used - 12, &type, &length, &value), 0u);
}

TEST(StlvGet, EachOutputMayBeNull) {
    uint8_t buffer[8];
    STLV_Set(buffer, 8, 1, 4, "abcd");
    EXPECT_EQ(STLV_Get(buffer, 8, nullptr, nullptr, nullptr), 8u);
}

TEST(StlvGet, EveryTruncationIsRefusedAndStoresNothing) {
    uint8_t buffer[10];
    const uint32_t size = STLV_Set(buffer, 10, 1, 6, "abcdef");
    for (uint32_t room = 0; room < size; ++room) {
        uint16_t type = 0x7777;
        uint32_t length = 0x77777777;
        const void* value = &type;
        EXPECT_EQ(STLV_Get(buffer, room, &type, &length, &value), 0u) << room;
        EXPECT_EQ(type, 0x7777);
        EXPECT_EQ(length, 0x77777777u);
        EXPECT_EQ(value, &type);
    }
}

TEST(StlvGet, NullBufferIsTheEnd) {
    EXPECT_EQ(STLV_Get(nullptr, 8, nullptr, nullptr, nullptr), 0u);
}

TEST(StlvGet, RandomBytesAreNeverReadBeyondTheirEnd) {
    std::mt19937 random(1);
    for (int round = 0; round < 2000; ++round) {
        std::vector<uint8_t> bytes(random() % 40);
        for (auto& byte : bytes) byte = static_cast<uint8_t>(random() % 16);
        uint32_t at = 0;
        while (true) {
            uint32_t length = 0;
            const void* value = nullptr;
            const uint32_t room = static_cast<uint32_t>(bytes.size()) - at;
            const uint32_t used = STLV_Get(bytes.data() + at, room, nullptr, &length, &value);
            if (used == 0) break;
            ASSERT_LE(used, room);
            ASSERT_EQ(used, length + 4);
            at += used;
        }
    }
}

}  // namespace
