// The keys that a start loads from, when the database lists fewer than it has.
#include "daemon/saved_keys.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <new>
#include <string>
#include <vector>

#include "daemon/log.h"

namespace {

uint32_t g_saved;               // keys that the database counts
std::vector<uint32_t> g_lists;  // how many it lists, question by question; the last one goes on
size_t g_questions;
bool g_short_of_memory;
int g_lines;

}  // namespace

extern "C" uint32_t DBM_GetKeyNumByValueType(DBM_HANDLE, uint32_t) noexcept {
    return g_saved;
}
extern "C" uint32_t DBM_GetKeysByValueType(DBM_HANDLE, uint32_t count, uint32_t, void**,
                                           DBM_KEY_SLOT* slots) noexcept {
    const uint32_t listed = g_lists[std::min(g_questions++, g_lists.size() - 1)];
    if (g_short_of_memory) errno = ENOMEM;
    for (uint32_t i = 0; i < std::min(count, listed); ++i) {
        constexpr const char* kTexts[] = {"a", "b", "c"};
        slots[i] = {};
        slots[i].key = kTexts[i];
        slots[i].key_length = 2;
    }
    return std::min(count, listed);
}
extern "C" void DBM_FreeIterator(void*) noexcept {}

namespace aaad {

void Log(Severity, const char*, ...) {
    ++g_lines;
}

namespace {

class SavedKeysOf : public ::testing::Test {
  protected:
    void SetUp() override {
        g_saved = 3;
        g_lists = {3};
        g_questions = 0;
        g_short_of_memory = false;
        g_lines = 0;
    }
    static std::string Text(const std::optional<std::vector<SavedKey>>& keys) {
        if (!keys) return "none";
        std::string text;
        for (const SavedKey& key : *keys) text += key.text;
        return text;
    }
};

TEST_F(SavedKeysOf, AllAreGivenWithoutTheirTerminators) {
    EXPECT_EQ(Text(SavedKeys(1, 2)), "abc");
    EXPECT_EQ(Text(LoadableKeys(1, 2)), "abc");
    EXPECT_EQ(g_lines, 0);
}

TEST_F(SavedKeysOf, NoneSavedIsAnEmptyList) {
    g_saved = 0;
    EXPECT_EQ(Text(SavedKeys(1, 2)), "");
    EXPECT_EQ(Text(LoadableKeys(1, 2)), "");
}

TEST_F(SavedKeysOf, ListThatIsShortOnceIsAskedForAgain) {
    g_lists = {2, 3};
    EXPECT_EQ(Text(SavedKeys(1, 2)), "abc");
    g_questions = 0;
    EXPECT_EQ(Text(LoadableKeys(1, 2)), "abc");
    EXPECT_EQ(g_lines, 0);
}

// A damaged key would otherwise keep the daemon from starting, with all that can be read.
TEST_F(SavedKeysOf, KeyThatIsNeverListedCostsNoOtherItsPlaceAtAStart) {
    g_lists = {2};
    EXPECT_EQ(Text(SavedKeys(1, 2)), "none");
    EXPECT_EQ(Text(LoadableKeys(1, 2)), "ab");
    EXPECT_EQ(g_lines, 1);
}

TEST_F(SavedKeysOf, DatabaseThatListsNothingOfWhatItCountsIsNotTakenForAnEmptyOne) {
    g_lists = {0};
    EXPECT_EQ(Text(SavedKeys(1, 2)), "none");
    EXPECT_EQ(Text(LoadableKeys(1, 2)), "none");
    EXPECT_EQ(g_lines, 1);
}

TEST_F(SavedKeysOf, WantOfMemoryIsNoDamage) {
    g_lists = {2};
    g_short_of_memory = true;
    EXPECT_THROW(LoadableKeys(1, 2), std::bad_alloc);
    EXPECT_EQ(g_lines, 0);
}

}  // namespace
}  // namespace aaad
