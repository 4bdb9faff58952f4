#include "unit/policy/ita_data_fixture.h"

namespace aaadom {
namespace {

constexpr uint32_t kUnset = DOM_ITA_PAIR_UNSET;

class ItaLevel : public ItaDataTest {
  protected:
    void SetUp() override {
        ItaDataTest::SetUp();
        ASSERT_EQ(DOM_ita_policy_Create("p"), DOM_OK);
    }
    static ItaPolicy& Policy() { return *DOM_ita_policy_GetDomPolicyByName("p"); }
    static uint32_t Set(uint32_t id, uint32_t value = 0, uint32_t flags = 0) {
        return DOM_ita_policy_SetAcctLevel("p", id, value, 1, 2, 3, 4, flags);
    }
    static uint32_t Unset(uint32_t id) { return DOM_ita_policy_UnSetOneAcctLevel("p", id); }
    /// "id=value" of every entry from the first to the last used one, free ones as "-".
    static std::string Ids() {
        std::string text, pending;
        for (const ItaAcctLevel& level : Policy().levels) {
            if (level.level_id == 0) {
                pending += "- ";
                continue;
            }
            text += pending + std::to_string(level.level_id) + " ";
            pending.clear();
        }
        if (!text.empty()) text.pop_back();
        return text;
    }
    static std::string Entry(uint32_t index) {
        const ItaAcctLevel& level = Policy().levels[index];
        std::ostringstream out;
        out << level.level_id << '=' << level.level_value << std::hex << ' ' << level.first_pair[0]
            << ' ' << level.first_pair[1] << ' ' << level.second_pair[0] << ' '
            << level.second_pair[1];
        return out.str();
    }
    static uint32_t Count() { return Policy().level_count; }
    /// Entries as a message can bring them, count included.
    static void Put(std::initializer_list<uint32_t> ids) {
        memset(Policy().levels, 0, sizeof Policy().levels);
        uint32_t entry = 0;
        for (const uint32_t id : ids) Policy().levels[entry++].level_id = id;
        Policy().level_count = static_cast<uint32_t>(ids.size());
    }
};

TEST_F(ItaLevel, LevelsAreKeptInAscendingOrder) {
    for (const uint32_t id : {30, 10, 20}) EXPECT_EQ(Set(id, id * 10), DOM_OK);
    EXPECT_EQ(Ids(), "10 20 30");
    EXPECT_EQ(Entry(0), "10=100 ffffffff ffffffff ffffffff ffffffff");
    EXPECT_EQ(Entry(2), "30=300 ffffffff ffffffff ffffffff ffffffff");
    EXPECT_EQ(Count(), 3u);
}

TEST_F(ItaLevel, OrderIsUnsigned) {
    for (const uint32_t id : {0x80000000u, 1u, 0xFFFFFFFFu, 0x7FFFFFFFu}) EXPECT_EQ(Set(id), 0u);
    EXPECT_EQ(Ids(), "1 2147483647 2147483648 4294967295");
}

TEST_F(ItaLevel, NinthLevelFailsAndChangesNothing) {
    for (const uint32_t id : {8, 7, 6, 5, 4, 3, 2, 1}) EXPECT_EQ(Set(id, id), DOM_OK);
    EXPECT_EQ(Ids(), "1 2 3 4 5 6 7 8");
    const std::string before = Stored("p");
    EXPECT_EQ(Set(9, 9, 3), DOM_ERR_FAILED);
    EXPECT_EQ(Stored("p"), before);
    EXPECT_EQ(Set(8, 80), DOM_OK);
    EXPECT_EQ(Entry(7), "8=80 ffffffff ffffffff ffffffff ffffffff");
}

TEST_F(ItaLevel, ValueZeroAndNoFlagsChangeNothing) {
    Set(10, 100, 3);
    const std::string before = Stored("p");
    EXPECT_EQ(Set(10, 0, 0), DOM_OK);
    EXPECT_EQ(Stored("p"), before);
}

TEST_F(ItaLevel, NewLevelWithValueZeroHasValueZero) {
    EXPECT_EQ(Set(10), DOM_OK);
    EXPECT_EQ(Entry(0), "10=0 ffffffff ffffffff ffffffff ffffffff");
}

TEST_F(ItaLevel, FlagsSayWhichPairsAreStored) {
    EXPECT_EQ(Set(10, 0, 1), DOM_OK);
    EXPECT_EQ(Entry(0), "10=0 1 2 ffffffff ffffffff");
    EXPECT_EQ(DOM_ita_policy_SetAcctLevel("p", 10, 0, 5, 6, 7, 8, 2), DOM_OK);
    EXPECT_EQ(Entry(0), "10=0 1 2 7 8");
    EXPECT_EQ(DOM_ita_policy_SetAcctLevel("p", 10, 0, kUnset, kUnset, 9, 9, 0xFFFFFFFD), DOM_OK);
    EXPECT_EQ(Entry(0), "10=0 ffffffff ffffffff 7 8");
    EXPECT_EQ(DOM_ita_policy_SetAcctLevel("p", 10, 0, 9, 9, kUnset, 3, 0xFFFFFFFE), DOM_OK);
    EXPECT_EQ(Entry(0), "10=0 ffffffff ffffffff ffffffff 3");
}

TEST_F(ItaLevel, NewLevelDoesNotKeepThePairsOfAFormerOne) {
    Set(10, 100, 3);
    EXPECT_EQ(Unset(10), DOM_OK);
    EXPECT_EQ(Set(20), DOM_OK);
    EXPECT_EQ(Entry(0), "20=0 ffffffff ffffffff ffffffff ffffffff");
}

TEST_F(ItaLevel, SettingAnExistingLevelDoesNotSort) {
    Put({30, 10});
    EXPECT_EQ(Set(10, 5), DOM_OK);
    EXPECT_EQ(Ids(), "30 10");
    EXPECT_EQ(Count(), 2u);
}

// The last used entry moves down, not the new one: they differ only when a message left a gap.
TEST_F(ItaLevel, SortBeginsAtTheLastUsedEntry) {
    Put({40, 0, 30, 20});
    EXPECT_EQ(Set(10), DOM_OK);
    EXPECT_EQ(Ids(), "40 10 20 30");
}

// The count follows the requests, and the entry stays free.
TEST_F(ItaLevel, LevelZeroIsCountedEachTimeAndStaysFree) {
    EXPECT_EQ(Set(0, 5, 1), DOM_OK);
    EXPECT_EQ(Set(0), DOM_OK);
    EXPECT_EQ(Ids(), "");
    EXPECT_EQ(Count(), 2u);
    EXPECT_EQ(Entry(0), "0=5 ffffffff ffffffff ffffffff ffffffff");
    EXPECT_EQ(Set(10), DOM_OK);
    EXPECT_EQ(Entry(0), "10=5 ffffffff ffffffff ffffffff ffffffff");
    EXPECT_EQ(Count(), 3u);
}

TEST_F(ItaLevel, LevelZeroDoesNotFitAmongEight) {
    for (uint32_t id = 1; id <= 8; ++id) Set(id);
    EXPECT_EQ(Set(0), DOM_ERR_FAILED);
    EXPECT_EQ(Unset(0), DOM_ERR_NOT_FOUND);
    EXPECT_EQ(Count(), 8u);
}

TEST_F(ItaLevel, UnsetClosesTheGap) {
    for (const uint32_t id : {10, 20, 30}) Set(id, id);
    EXPECT_EQ(Unset(10), DOM_OK);
    EXPECT_EQ(Ids(), "20 30");
    EXPECT_EQ(Count(), 2u);
    EXPECT_EQ(Entry(1), "30=30 ffffffff ffffffff ffffffff ffffffff");
    EXPECT_EQ(Entry(2), "0=0 0 0 0 0");
}

TEST_F(ItaLevel, UnsetOfEachOfEightKeepsTheOthers) {
    for (uint32_t removed = 1; removed <= 8; ++removed) {
        EXPECT_EQ(DOM_ita_policy_UnSetAllAcctLevel("p"), DOM_OK);
        std::string want;
        for (uint32_t id = 1; id <= 8; ++id) {
            Set(id, id);
            if (id != removed) want += std::to_string(id) + " ";
        }
        want.pop_back();
        EXPECT_EQ(Unset(removed), DOM_OK);
        EXPECT_EQ(Ids(), want);
        EXPECT_EQ(Entry(7), "0=0 0 0 0 0");
        EXPECT_EQ(Count(), 7u);
    }
}

TEST_F(ItaLevel, UnsetOfAnAbsentLevelChangesNothing) {
    for (const uint32_t id : {10, 20}) Set(id);
    const std::string before = Stored("p");
    EXPECT_EQ(Unset(15), DOM_ERR_NOT_FOUND);
    EXPECT_EQ(Unset(30), DOM_ERR_NOT_FOUND);
    EXPECT_EQ(Stored("p"), before);
}

TEST_F(ItaLevel, UnsetOfAnAbsentLevelAmongEightChangesNothing) {
    for (uint32_t id = 1; id <= 8; ++id) Set(id);
    EXPECT_EQ(Unset(9), DOM_ERR_NOT_FOUND);
    EXPECT_EQ(Count(), 8u);
}

TEST_F(ItaLevel, LevelBehindAFreeEntryIsAbsent) {
    Put({10, 0, 30});
    EXPECT_EQ(Unset(30), DOM_ERR_NOT_FOUND);
}

// Peers hold the count that the requests give, so it is not corrected.
TEST_F(ItaLevel, UnsetOfLevelZeroLowersTheCountOnly) {
    EXPECT_EQ(Unset(0), DOM_OK);
    EXPECT_EQ(Count(), 0xFFFFFFFFu);
    EXPECT_EQ(Ids(), "");
    Set(10, 100, 3);
    EXPECT_EQ(Count(), 0u);
    const std::string entry = Entry(0);
    EXPECT_EQ(Unset(0), DOM_OK);
    EXPECT_EQ(Entry(0), entry);
    EXPECT_EQ(Count(), 0xFFFFFFFFu);
}

TEST_F(ItaLevel, UnsetOfLevelZeroClosesNoGap) {
    Put({10, 0, 30, 40});
    EXPECT_EQ(Unset(0), DOM_OK);
    EXPECT_EQ(Ids(), "10 - 30 40");
    EXPECT_EQ(Count(), 3u);
}

TEST_F(ItaLevel, CountIsNeverABound) {
    for (uint32_t id = 1; id <= 8; ++id) Set(id);
    Policy().level_count = 0xFFFFFFFF;
    EXPECT_EQ(Unset(3), DOM_OK);
    EXPECT_EQ(Ids(), "1 2 4 5 6 7 8");
    EXPECT_EQ(Count(), 0xFFFFFFFEu);
    Policy().level_count = 0;
    EXPECT_EQ(Set(3), DOM_OK);
    EXPECT_EQ(Ids(), "1 2 3 4 5 6 7 8");
    ItaServicePolicy service{};
    Policy().level_count = 0xFFFFFFFF;
    EXPECT_EQ(DOM_ita_policy_GetServicePolicyByName("p", &service), DOM_OK);
    EXPECT_EQ(service.level_count, 0xFFFFFFFFu);
}

// The last entry is cleared by every unset, because a full array is closed up into it.
TEST_F(ItaLevel, UnsetClearsAUsedLastEntry) {
    Put({10, 20, 0, 0, 0, 0, 0, 80});
    EXPECT_EQ(Unset(10), DOM_OK);
    EXPECT_EQ(Ids(), "20");
    Put({10, 0, 0, 0, 0, 0, 0, 80});
    EXPECT_EQ(Unset(0), DOM_OK);
    EXPECT_EQ(Ids(), "10");
}

TEST_F(ItaLevel, UnsetStopsAtTheFirstGap) {
    Put({10, 20, 0, 40});
    EXPECT_EQ(Unset(10), DOM_OK);
    EXPECT_EQ(Ids(), "20 - - 40");
}

TEST_F(ItaLevel, UnsetOfAllClearsCountAndEntries) {
    for (uint32_t id = 1; id <= 8; ++id) Set(id, id, 3);
    EXPECT_EQ(DOM_ita_policy_UnSetAllAcctLevel("p"), DOM_OK);
    EXPECT_EQ(Count(), 0u);
    for (uint32_t entry = 0; entry < DOM_ITA_LEVELS; ++entry)
        EXPECT_EQ(Entry(entry), "0=0 0 0 0 0");
}

TEST_F(ItaLevel, LevelsLeaveTheRestOfThePolicy) {
    DOM_ita_policy_SetTogetherState("p", 1);
    Set(10, 100, 3);
    Unset(10);
    DOM_ita_policy_UnSetAllAcctLevel("p");
    EXPECT_EQ(Policy().together_state, 1);
    EXPECT_EQ(Policy().quota_out_state, 1);
    EXPECT_EQ(Policy().acct_scheme[0].method_kind, 5u);
}

}  // namespace
}  // namespace aaadom
