#include <aaadom/session.h>

#include <cstring>

#include "unit/domain/tables_fixture.h"

namespace aaadom {
namespace {

constexpr uint32_t kClasses[] = {19, 20, 21, 22, 23};

class Session : public TablesTest {
  protected:
    ~Session() override {
        for (uint32_t c : kClasses) DOM_SetSessionCount(c, 0);
    }
};

TEST_F(Session, TimeIsPerDomain) {
    Add("a");
    EXPECT_EQ(DOM_GetSessionTime("a"), 0u);
    EXPECT_EQ(DOM_SetSessionTime("A", 65535), DOM_OK);
    EXPECT_EQ(DOM_GetSessionTime("a"), 65535u);
}

TEST_F(Session, TimeOfAnUnknownDomain) {
    EXPECT_EQ(DOM_GetSessionTime("nobody"), 0u);
    EXPECT_EQ(DOM_SetSessionTime("nobody", 1), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_SetSessionTime(nullptr, 1), DOM_ERR_FAILED);
}

TEST_F(Session, LimitsStandInTheOrderTheyTravelIn) {
    for (uint32_t c : kClasses) DOM_SetSessionLimit(c, c);
    SessionLimits limits{};
    DOM_GetAllSessionLimit(&limits);
    uint32_t words[5];
    memcpy(words, &limits, sizeof words);
    EXPECT_EQ(words[0], 19u);
    EXPECT_EQ(words[1], 21u);
    EXPECT_EQ(words[2], 20u);
    EXPECT_EQ(words[3], 22u);
    EXPECT_EQ(words[4], 23u);
}

TEST_F(Session, AllLimitsAreCopiedInAndOut) {
    SessionLimits in{1, 2, 3, 4, 5};
    DOM_SetAllSessionLimit(&in);
    SessionLimits out{};
    DOM_GetAllSessionLimit(&out);
    EXPECT_EQ(memcmp(&in, &out, sizeof in), 0);
    DOM_SetAllSessionLimit(nullptr);
    DOM_GetAllSessionLimit(nullptr);
    DOM_GetAllSessionLimit(&out);
    EXPECT_EQ(memcmp(&in, &out, sizeof in), 0);
}

TEST_F(Session, OtherClassesActAsClassTwenty) {
    DOM_SetSessionLimit(99, 1);
    EXPECT_EQ(DOM_SessionIncrease(0), DOM_OK);
    EXPECT_EQ(DOM_GetSessionCount(20), 1u);
    EXPECT_EQ(DOM_SessionIncrease(20), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_SessionIncrease(18), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_SessionDecrease(24), DOM_OK);
    EXPECT_EQ(DOM_GetSessionCount(20), 0u);
}

TEST_F(Session, ClassesAreCountedApart) {
    for (uint32_t c : kClasses) {
        for (uint32_t i = 0; i < c; ++i) ASSERT_EQ(DOM_SessionIncrease(c), DOM_OK);
    }
    for (uint32_t c : kClasses) EXPECT_EQ(DOM_GetSessionCount(c), c);
}

TEST_F(Session, FreshlyInitialisedClassAdmits538976288Sessions) {
    DOM_SetSessionCount(19, 538976287);
    EXPECT_EQ(DOM_SessionIncrease(19), DOM_OK);
    EXPECT_EQ(DOM_SessionIncrease(19), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_GetSessionCount(19), 538976288u);
}

TEST_F(Session, LimitZeroAdmitsNobody) {
    DOM_SetSessionLimit(21, 0);
    EXPECT_EQ(DOM_SessionIncrease(21), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_GetSessionCount(21), 0u);
}

TEST_F(Session, CountAboveTheLimitAdmitsNobody) {
    DOM_SetSessionCount(22, 0xFFFFFFFF);
    EXPECT_EQ(DOM_SessionIncrease(22), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_GetSessionCount(22), 0xFFFFFFFFu);
}

TEST_F(Session, DecreaseAtZeroFails) {
    EXPECT_EQ(DOM_SessionDecrease(23), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_GetSessionCount(23), 0u);
}

TEST_F(Session, IncreaseTestsTheWorkingRolesLimitFromEveryRole) {
    InConfig([] { return DOM_SetSessionLimit(19, 0), 0; });
    EXPECT_EQ(InConfig([] { return DOM_SessionIncrease(19); }), DOM_OK);
    DOM_SetSessionLimit(19, 1);
    EXPECT_EQ(InConfig([] { return DOM_SessionIncrease(19); }), DOM_ERR_FAILED);
}

TEST_F(Session, LimitsAreTheCallingRoles) {
    SessionLimits limits{1, 2, 3, 4, 5};
    InConfig([&] { return DOM_SetAllSessionLimit(&limits), 0; });
    DOM_GetAllSessionLimit(&limits);
    EXPECT_EQ(limits.class_19, 538976288u);
    EXPECT_EQ(limits.class_23, 538976288u);
    InConfig([&] { return DOM_GetAllSessionLimit(&limits), 0; });
    EXPECT_EQ(limits.class_23, 5u);
}

TEST_F(Session, CountersAreOneSetForTheProcess) {
    EXPECT_EQ(DOM_SessionIncrease(19), DOM_OK);
    EXPECT_EQ(InConfig([] { return DOM_GetSessionCount(19); }), 1u);
}

}  // namespace
}  // namespace aaadom
