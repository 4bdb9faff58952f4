#include "policy/ita_level.h"

#include <aaadom/results.h>

#include <cstring>
#include <utility>

namespace aaadom {
namespace {

constexpr uint32_t kLast = DOM_ITA_LEVELS - 1;
constexpr uint32_t kFree = 0;  // ID of an entry that holds no level

/// The first entry that is free or has the ID; DOM_ITA_LEVELS when there is neither.
uint32_t FindEntry(const ItaPolicy& policy, uint32_t level_id) noexcept {
    uint32_t entry = 0;
    while (entry < DOM_ITA_LEVELS && policy.levels[entry].level_id != kFree &&
           policy.levels[entry].level_id != level_id) {
        ++entry;
    }
    return entry;
}

/// Moves the last used entry down to where its ID belongs; the others are in order already.
void SortLastUsed(ItaPolicy& policy) noexcept {
    ItaAcctLevel* levels = policy.levels;
    uint32_t entry = kLast;
    while (entry > 0 && levels[entry].level_id == kFree) --entry;
    for (; entry > 0 && levels[entry - 1].level_id > levels[entry].level_id; --entry) {
        std::swap(levels[entry - 1], levels[entry]);
    }
}

}  // namespace

uint32_t SetItaLevel(ItaPolicy& policy, const ItaLevelChange& change) noexcept {
    const uint32_t entry = FindEntry(policy, change.level_id);
    if (entry == DOM_ITA_LEVELS) return DOM_ERR_FAILED;
    ItaAcctLevel& level = policy.levels[entry];
    // Level 0 is taken for a new one each time: it is counted and stays free, and what it brought
    // along is found there by the next new level.
    const bool is_new = level.level_id == kFree;
    level.level_id = change.level_id;
    if (is_new) {
        ++policy.level_count;
        level.first_pair[0] = level.first_pair[1] = DOM_ITA_PAIR_UNSET;
        level.second_pair[0] = level.second_pair[1] = DOM_ITA_PAIR_UNSET;
    }
    if (change.level_value != 0) level.level_value = change.level_value;
    if ((change.flags & DOM_ITA_FLAG_FIRST_PAIR) != 0) {
        memcpy(level.first_pair, change.first_pair, sizeof level.first_pair);
    }
    if ((change.flags & DOM_ITA_FLAG_SECOND_PAIR) != 0) {
        memcpy(level.second_pair, change.second_pair, sizeof level.second_pair);
    }
    if (is_new) SortLastUsed(policy);
    return DOM_OK;
}

// Level 0 matches the first free entry and changes nothing but the count, which then may wrap to
// 0xFFFFFFFF: peers hold the count that this sequence of requests gives, so it is not corrected.
uint32_t UnsetItaLevel(ItaPolicy& policy, uint32_t level_id) noexcept {
    ItaAcctLevel* levels = policy.levels;
    const uint32_t match = FindEntry(policy, level_id);
    if (match == DOM_ITA_LEVELS || levels[match].level_id != level_id) return DOM_ERR_NOT_FOUND;
    if (level_id != kFree) {
        for (uint32_t entry = match; entry < kLast; ++entry) {
            levels[entry] = levels[entry + 1];
            if (levels[entry].level_id == kFree) break;
        }
    }
    if (levels[kLast].level_id != kFree) levels[kLast] = ItaAcctLevel{};
    --policy.level_count;
    return DOM_OK;
}

void UnsetAllItaLevels(ItaPolicy& policy) noexcept {
    policy.level_count = 0;
    memset(policy.levels, 0, sizeof policy.levels);
}

}  // namespace aaadom
