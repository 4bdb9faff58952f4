#include "tlv/wait_limit.h"

#include <gtest/gtest.h>

namespace {

class WaitLimit : public testing::Test {
  protected:
    void TearDown() override { platform_SetWaitLimit(0); }
};

TEST_F(WaitLimit, OnlyTheLowSixteenBitsAreATime) {
    EXPECT_EQ(platform_BoundWait(0xFFFFEA60), 60000u);
    EXPECT_EQ(platform_BoundWait(0xEA60), 60000u);
    EXPECT_EQ(platform_BoundWait(0x10000), 0u);
}

TEST_F(WaitLimit, CutsLongerWaitsOnly) {
    platform_SetWaitLimit(500);
    EXPECT_EQ(platform_BoundWait(0xFFFFEA60), 500u);
    EXPECT_EQ(platform_BoundWait(499), 499u);
}

TEST_F(WaitLimit, ZeroMeansNoLimit) {
    platform_SetWaitLimit(500);
    platform_SetWaitLimit(0);
    EXPECT_EQ(platform_BoundWait(60000), 60000u);
}

}  // namespace
