// Finds the slot of a domain name ignoring ASCII case, without allocating: a fixed open-addressing
// table beside the 1024 slots.
#pragma once

#include <aaadom/types.h>

#include <cstddef>
#include <cstdint>

namespace aaadom {

/// Says of names what a scan of the slots in slot order with strcasecmp says. Among names that are
/// equal ignoring case the lowest slot is found first. All zero bytes are the empty index.
class NameIndex {
  public:
    constexpr NameIndex() = default;

    void Clear() noexcept;
    /// Indexes `slot` under `name`; the slot is not indexed yet.
    void Add(uint32_t slot, const char (&name)[DOM_NAME_SIZE]) noexcept;
    /// Forgets `slot`, whatever its record's name is by now. A slot that is not indexed is ignored.
    void Remove(uint32_t slot) noexcept;
    /// The record of the lowest slot whose name equals `name` ignoring case, or null.
    DomainInfo* Find(DomainInfo* const (&slots)[DOM_MAX_DOMAINS], const char* name) const noexcept;

  private:
    // Four entries a slot keep probe sequences short when the table is full.
    static constexpr uint32_t kEntries = 4 * DOM_MAX_DOMAINS;
    static constexpr uint32_t kMask = kEntries - 1;

    /// Entries of one hash stand in ascending slot order along their probe sequence.
    struct Entry {
        uint32_t hash;
        uint32_t slot_plus_one;  // 0 = free
    };

    Entry entries_[kEntries]{};
    uint32_t slot_hashes_[DOM_MAX_DOMAINS]{};
};

}  // namespace aaadom
