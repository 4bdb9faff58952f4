#include <aaadom/diagnostics.h>
#include <aaadom/settings.h>
#include <gtest/gtest.h>

#include "fakes/fake_platform.h"

namespace {

class Diagnostics : public testing::Test {
  protected:
    Diagnostics() {
        DOM_AAAResetDebugFlag(0xFFFFFFFF);
        fake::Reset();
    }
    ~Diagnostics() override { DOM_AAAResetDebugFlag(0xFFFFFFFF); }
};

TEST_F(Diagnostics, SettingAFlagOpensTheLogEveryTime) {
    DOM_AAASetDebugFlag(2);
    DOM_AAASetDebugFlag(0);
    auto controls = fake::LogControls();
    ASSERT_EQ(controls.size(), 2u);
    for (const auto& control : controls) {
        EXPECT_TRUE(control.open);
        EXPECT_EQ(control.identity, "AAA");
        EXPECT_EQ(control.option, 4);
        EXPECT_EQ(control.facility, 184);
    }
}

TEST_F(Diagnostics, FlagsAreSetAndClearedBitwise) {
    DOM_AAASetDebugFlag(1);
    DOM_AAASetDebugFlag(0x80000002);
    EXPECT_EQ(DOM_AAAGetDebugFlag(), 0x80000003u);
    DOM_AAAResetDebugFlag(0x80000001);
    EXPECT_EQ(DOM_AAAGetDebugFlag(), 2u);
    EXPECT_EQ(g_stAAAGlobalBaseInfo.debug_flag, 2u);
}

TEST_F(Diagnostics, LastFlagClearedClosesTheLog) {
    DOM_AAASetDebugFlag(2);
    DOM_AAAResetDebugFlag(1);
    EXPECT_EQ(DOM_AAAGetDebugFlag(), 2u);
    EXPECT_EQ(fake::LogControls().size(), 1u);
    DOM_AAAResetDebugFlag(2);
    auto controls = fake::LogControls();
    ASSERT_EQ(controls.size(), 2u);
    EXPECT_FALSE(controls[1].open);
    EXPECT_EQ(fake::HeldLocks(), 0);
}

TEST_F(Diagnostics, BitZeroEnablesErrors) {
    DOM_AAASetDebugFlag(1);
    AAA_DebugEvent("event %d", 1);
    AAA_DebugError("error %d", 2);
    auto lines = fake::LogLines();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].priority, 0x010000BFu);
    EXPECT_EQ(lines[0].module, "AAA");
    EXPECT_EQ(lines[0].label, "ERROR");
    EXPECT_EQ(lines[0].text, "error 2");
}

TEST_F(Diagnostics, BitOneEnablesEvents) {
    DOM_AAASetDebugFlag(2);
    AAA_DebugEvent("event %s", "x");
    AAA_DebugError("error %d", 2);
    auto lines = fake::LogLines();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].priority, 0x010000BFu);
    EXPECT_EQ(lines[0].module, "AAA");
    EXPECT_EQ(lines[0].label, "EVENT");
    EXPECT_EQ(lines[0].text, "event x");
}

TEST_F(Diagnostics, WithoutFlagsOnlyTracesAndLogInfoAreWritten) {
    AAA_DebugEvent("event");
    AAA_DebugError("error");
    AAA_TracePrint("trace %d", 3);
    AAA_PrintLogInfo(42, "LABEL%s", "info %d", 4);
    auto lines = fake::LogLines();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0].priority, 0x010000BFu);
    EXPECT_EQ(lines[0].label, "TRACE");
    EXPECT_EQ(lines[0].text, "trace 3");
    EXPECT_EQ(lines[1].priority, 42u);
    EXPECT_EQ(lines[1].module, "AAA");
    EXPECT_EQ(lines[1].label, "LABEL%s");
    EXPECT_EQ(lines[1].text, "info 4");
}

TEST_F(Diagnostics, LinesAreWrittenWithoutALock) {
    DOM_AAASetDebugFlag(3);
    uint64_t locks = fake::Count(fake::Event::kLock);
    AAA_TracePrint("trace");
    EXPECT_EQ(fake::Count(fake::Event::kLock), locks);
    AAA_DebugError("error");
    EXPECT_EQ(fake::Count(fake::Event::kLock), locks + 1);
    EXPECT_EQ(fake::HeldLocks(), 0);
}

TEST_F(Diagnostics, TheDaemonsSwitchDoesNotGateAnything) {
    EXPECT_EQ(g_bAaaDebugSwitch, 0);
    g_bAaaDebugSwitch = 1;
    AAA_DebugError("error");
    EXPECT_TRUE(fake::LogLines().empty());
    g_bAaaDebugSwitch = 0;
}

TEST_F(Diagnostics, NullFormatsAndLabelsDoNotCrash) {
    DOM_AAASetDebugFlag(3);
    const char* none = nullptr;
    AAA_DebugEvent(none, 1);
    AAA_DebugError(none, 1);
    AAA_TracePrint(none, 1);
    AAA_PrintLogInfo(1, "L", none, 1);
    EXPECT_TRUE(fake::LogLines().empty());
    AAA_PrintLogInfo(1, nullptr, "%d", 1);
    ASSERT_EQ(fake::LogLines().size(), 1u);
    EXPECT_EQ(fake::LogLines()[0].label, "");
}

}  // namespace
