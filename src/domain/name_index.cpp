#include "domain/name_index.h"

#include <bit>
#include <cstring>
#include <utility>

#include "base/text.h"

namespace aaadom {
namespace {

constexpr uint64_t kEachByte = 0x0101010101010101u;
constexpr uint64_t kMultiplier = 0x9E3779B97F4A7C15u;

/// Eight characters with their ASCII capitals made small.
uint64_t FoldCase(uint64_t characters) noexcept {
    uint64_t low_bits = characters & (0x7F * kEachByte);
    uint64_t from_a = low_bits + (0x80 - 'A') * kEachByte;
    uint64_t above_z = low_bits + (0x7F - 'Z') * kEachByte;
    uint64_t ascii = ~characters & (0x80 * kEachByte);
    return characters | ((ascii & (from_a ^ above_z)) >> 2);
}

template <typename Word>
uint64_t Load(const char* text) noexcept {
    Word word;
    memcpy(&word, text, sizeof word);
    return word;
}

/// All of 1 to 7 characters in one word, in an order that depends on their number only.
uint64_t LoadShort(const char* text, size_t length) noexcept {
    if (length >= 4) return Load<uint32_t>(text) | Load<uint32_t>(text + length - 4) << 32;
    return Load<uint8_t>(text) | Load<uint8_t>(text + length / 2) << 8 |
           Load<uint8_t>(text + length - 1) << 16;
}

/// Calls `visit(offset-th word of case-folded characters)` until it says false. Texts of 8
/// characters and more end with a word that may overlap the one before, so nothing past the text is
/// read.
template <typename Visit>
bool ForEachWord(size_t length, Visit&& visit) noexcept {
    if (length == 0) return true;
    if (length < 8) {
        return visit([length](const char* text) { return FoldCase(LoadShort(text, length)); });
    }
    size_t last = length - 8;
    for (size_t at = 0; at < last; at += 8) {
        if (!visit([at](const char* text) { return FoldCase(Load<uint64_t>(text + at)); })) {
            return false;
        }
    }
    return visit([last](const char* text) { return FoldCase(Load<uint64_t>(text + last)); });
}

uint32_t HashFolded(const char* text, size_t length) noexcept {
    uint64_t hash = length;
    ForEachWord(length, [&](auto&& word_of) {
        hash = (std::rotl(hash, 23) ^ word_of(text)) * kMultiplier;
        return true;
    });
    return static_cast<uint32_t>(hash ^ (hash >> 32));
}

/// `text` has `length` characters and no terminator among them.
bool EqualsFolded(const char (&stored)[DOM_NAME_SIZE], const char* text, size_t length) noexcept {
    if (stored[length] != '\0') return false;
    return ForEachWord(length, [&](auto&& word_of) { return word_of(stored) == word_of(text); });
}

}  // namespace

void NameIndex::Clear() noexcept {
    memset(entries_, 0, sizeof entries_);
}

void NameIndex::Add(uint32_t slot, const char (&name)[DOM_NAME_SIZE]) noexcept {
    Entry carried{HashFolded(name, BoundedLength(name, sizeof name)), slot + 1};
    slot_hashes_[slot] = carried.hash;
    uint32_t at = carried.hash & kMask;
    while (entries_[at].slot_plus_one != 0) {
        Entry& entry = entries_[at];
        if (entry.hash == carried.hash && carried.slot_plus_one < entry.slot_plus_one) {
            std::swap(entry, carried);
        }
        at = (at + 1) & kMask;
    }
    entries_[at] = carried;
}

void NameIndex::Remove(uint32_t slot) noexcept {
    uint32_t hole = slot_hashes_[slot] & kMask;
    while (entries_[hole].slot_plus_one != slot + 1) {
        if (entries_[hole].slot_plus_one == 0) return;
        hole = (hole + 1) & kMask;
    }
    // Move back what would not be found across the hole; the order within a hash stays.
    for (uint32_t at = (hole + 1) & kMask; entries_[at].slot_plus_one != 0; at = (at + 1) & kMask) {
        uint32_t from_home = (at - entries_[at].hash) & kMask;
        uint32_t from_hole = (at - hole) & kMask;
        if (from_home < from_hole) continue;
        entries_[hole] = entries_[at];
        hole = at;
    }
    entries_[hole] = Entry{};
}

DomainInfo* NameIndex::Find(DomainInfo* const (&slots)[DOM_MAX_DOMAINS],
                            const char* name) const noexcept {
    size_t length = BoundedLength(name, DOM_NAME_SIZE);
    if (length == DOM_NAME_SIZE) return nullptr;  // longer than any stored name
    uint32_t hash = HashFolded(name, length);
    for (uint32_t at = hash & kMask; entries_[at].slot_plus_one != 0; at = (at + 1) & kMask) {
        if (entries_[at].hash != hash) continue;
        DomainInfo* record = slots[entries_[at].slot_plus_one - 1];
        if (EqualsFolded(record->name, name, length)) return record;
    }
    return nullptr;
}

}  // namespace aaadom
