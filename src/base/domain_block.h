// Domain records and method lists that share allocations. A full domain has 36 lists, and an
// allocation for each would cost a decoder more than reading them.
//
// Nothing outside sees the difference: a list is taken out of its record, replaced and destroyed
// alone, and the record is destroyed before or after lists that left it. So a block counts who is
// left of its parts. Parts are told from objects that malloc gave by their address, which is never
// a multiple of malloc's alignment.
#pragma once

#include <aaadom/types.h>

#include <cstddef>
#include <cstdint>

namespace aaadom {

struct Block;

/// Hands out the lists for one new record: those that are allocated with it, and once more lists.
class ListRoom {
  public:
    ListRoom() noexcept = default;
    ListRoom(const ListRoom&) = delete;
    ListRoom& operator=(const ListRoom&) = delete;
    ~ListRoom();

    /// A zeroed record with room for the lists that every domain has, or null. Freed by
    /// FreeDomainRecord.
    DomainInfo* CreateRecord() noexcept;
    /// Makes room for more lists in place of the room that is left; false without memory.
    [[nodiscard]] bool Extend(uint32_t lists) noexcept;
    bool IsEmpty() const noexcept { return left_ == 0; }
    /// The next list, zeroed at first and nobody's until it is placed. The room is not empty.
    MethodList& Next() noexcept { return *reinterpret_cast<MethodList*>(next_); }
    /// The next list is the record's from now on, until FreeMethodList or FreeDomainRecord.
    void Place(DomainInfo& record) noexcept;
    uint32_t Placed() const noexcept { return placed_; }

  private:
    char* next_ = nullptr;
    uint32_t left_ = 0;
    uint32_t placed_ = 0;
    Block* block_ = nullptr;      // of the next list
    Block* extension_ = nullptr;  // kept by the room until it ends
};

/// Frees the memory of a list, whether it is of a block or not; null is ignored.
void FreeMethodList(MethodList* list) noexcept;
/// Frees the memory of a record and its lists, each whether it is of a block or not; null is
/// ignored.
void FreeDomainRecord(DomainInfo* record) noexcept;

}  // namespace aaadom
