#include <gtest/gtest.h>
#include <net/if.h>
#include <platform/ifname.h>

#include <cstring>

namespace {

constexpr uint32_t kFailed = 0x40010001u;

TEST(InterfaceData, NameOfAnExistingInterface) {
    char name[48];
    std::memset(name, 'x', sizeof name);
    const uint32_t loopback = if_nametoindex("lo");
    ASSERT_NE(0u, loopback);
    EXPECT_EQ(0u, IF_GetDataByIfIndex(loopback, 10, sizeof name, name));
    EXPECT_STREQ("lo", name);
}

TEST(InterfaceData, ANameThatDoesNotFitIsCutAndTerminated) {
    char name[3] = {'x', 'x', 'x'};
    EXPECT_EQ(0u, IF_GetDataByIfIndex(if_nametoindex("lo"), 10, 2, name));
    EXPECT_STREQ("l", name);
    EXPECT_EQ('x', name[2]);
    EXPECT_EQ(0u, IF_GetDataByIfIndex(if_nametoindex("lo"), 10, 1, name));
    EXPECT_STREQ("", name);
}

TEST(InterfaceData, AnUnknownInterfaceGivesAnEmptyName) {
    for (const uint32_t index : {0u, 0x7FFFFFF0u, 0xFFFFFFFFu}) {
        char name[8] = "before";
        EXPECT_EQ(kFailed, IF_GetDataByIfIndex(index, 10, sizeof name, name));
        EXPECT_STREQ("", name);
    }
}

TEST(InterfaceData, OtherAttributesDoNotExist) {
    char name[8];
    EXPECT_EQ(kFailed, IF_GetDataByIfIndex(if_nametoindex("lo"), 0, sizeof name, name));
    EXPECT_EQ(kFailed, IF_GetDataByIfIndex(if_nametoindex("lo"), 11, sizeof name, name));
}

TEST(InterfaceData, NoRoomIsAFailure) {
    char name[8] = "kept";
    EXPECT_EQ(kFailed, IF_GetDataByIfIndex(if_nametoindex("lo"), 10, 0, name));
    EXPECT_STREQ("kept", name);
    EXPECT_EQ(kFailed, IF_GetDataByIfIndex(if_nametoindex("lo"), 10, 8, nullptr));
}

}  // namespace
