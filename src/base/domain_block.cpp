#include "base/domain_block.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace aaadom {

struct Block {
    std::atomic<uint32_t> parts;  // records and lists that somebody owns
};

namespace {

/// Stands right before each part.
struct PartHead {
    uint32_t offset;  // of the part from the begin of the block
};

constexpr size_t kAlignment = alignof(std::max_align_t);
/// What an address of a part leaves when it is divided by the alignment.
constexpr size_t kMark = kAlignment / 2;
static_assert(kMark % alignof(DomainInfo) == 0 && kMark % alignof(MethodList) == 0);

constexpr size_t RoundUp(size_t size) {
    return (size + kAlignment - 1) / kAlignment * kAlignment;
}
constexpr size_t kFirstPartAt = RoundUp(sizeof(Block) + sizeof(PartHead)) + kMark;
constexpr size_t kListStride = RoundUp(sizeof(MethodList) + sizeof(PartHead));
constexpr size_t kRecordStride = RoundUp(sizeof(DomainInfo) + sizeof(PartHead));

bool IsPart(const void* object) noexcept {
    return reinterpret_cast<uintptr_t>(object) % kAlignment != 0;
}

PartHead* HeadOf(void* part) noexcept {
    return reinterpret_cast<PartHead*>(static_cast<char*>(part) - sizeof(PartHead));
}

Block* BlockOf(void* part) noexcept {
    return reinterpret_cast<Block*>(static_cast<char*>(part) - HeadOf(part)->offset);
}

/// Only the block's maker knows it yet.
void AddPart(Block* block, void* part) noexcept {
    HeadOf(part)->offset =
        static_cast<uint32_t>(static_cast<char*>(part) - reinterpret_cast<char*>(block));
    block->parts.store(block->parts.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
}

Block* CreateBlock(size_t parts_size) noexcept {
    void* memory = calloc(1, kFirstPartAt + parts_size);
    return memory == nullptr ? nullptr : new (memory) Block;
}

char* FirstPartOf(Block* block) noexcept {
    return reinterpret_cast<char*>(block) + kFirstPartAt;
}

/// Whoever gives up the last parts frees the block; who has all of them pays no locked instruction.
void GiveUp(Block* block, uint32_t parts) noexcept {
    if (block->parts.load(std::memory_order_acquire) != parts &&
        block->parts.fetch_sub(parts, std::memory_order_acq_rel) != parts) {
        return;
    }
    free(block);
}

/// Frees lists one after the other. Those of one block come together, as a rule, and are given up
/// together; those of the block that holds their record only when it is, at the end.
class ListFreer {
  public:
    explicit ListFreer(Block* of_record) noexcept : of_record_(of_record) {}

    void Free(MethodList* list) noexcept {
        if (!IsPart(list)) {
            free(list);
            return;
        }
        Block* block = BlockOf(list);
        if (block == of_record_) {
            ++parts_of_record_;
            return;
        }
        if (block != block_) {
            GiveUpRun();
            block_ = block;
        }
        ++parts_;
    }
    /// The number of lists that the record's block held.
    uint32_t End() noexcept {
        GiveUpRun();
        return parts_of_record_;
    }

  private:
    void GiveUpRun() noexcept {
        if (parts_ != 0) GiveUp(block_, parts_);
        parts_ = 0;
    }

    Block* of_record_;
    uint32_t parts_of_record_ = 0;
    Block* block_ = nullptr;
    uint32_t parts_ = 0;
};

constexpr size_t kPlacesAtOnce = 4;
static_assert(DOM_SERVICES % kPlacesAtOnce == 0);

/// Without a branch for each place.
bool AreEmpty(MethodList* const* places) noexcept {
    uintptr_t any = 0;
    for (size_t i = 0; i < kPlacesAtOnce; ++i) any |= reinterpret_cast<uintptr_t>(places[i]);
    return any == 0;
}

void FreeLists(MethodList* const (&row)[DOM_SERVICES], ListFreer& freer) noexcept {
    for (size_t column = 0; column < DOM_SERVICES; column += kPlacesAtOnce) {
        // Most of the grid is empty.
        MethodList* const* places = row + column;
        if (AreEmpty(places)) continue;
        for (MethodList* const* place = places; place != places + kPlacesAtOnce; ++place) {
            if (*place != nullptr) freer.Free(*place);
        }
    }
}

}  // namespace

DomainInfo* ListRoom::CreateRecord() noexcept {
    block_ = CreateBlock(kRecordStride + DOM_DEFAULT_LISTS * kListStride);
    if (block_ == nullptr) return nullptr;
    char* record = FirstPartOf(block_);
    AddPart(block_, record);
    next_ = record + kRecordStride;
    left_ = DOM_DEFAULT_LISTS;
    return reinterpret_cast<DomainInfo*>(record);
}

bool ListRoom::Extend(uint32_t lists) noexcept {
    Block* block = CreateBlock(lists * kListStride);
    if (block == nullptr) return false;
    // So that the block ends, too, when none of its lists is placed.
    block->parts.store(1, std::memory_order_relaxed);
    if (extension_ != nullptr) GiveUp(extension_, 1);
    extension_ = block_ = block;
    next_ = FirstPartOf(block);
    left_ = lists;
    return true;
}

void ListRoom::Place(DomainInfo& record) noexcept {
    MethodList& list = Next();
    AddPart(block_, &list);
    record.method_lists[list.aaa_type][list.service] = &list;
    next_ += kListStride;
    --left_;
    ++placed_;
}

ListRoom::~ListRoom() {
    if (extension_ != nullptr) GiveUp(extension_, 1);
}

void FreeMethodList(MethodList* list) noexcept {
    if (IsPart(list)) {
        GiveUp(BlockOf(list), 1);
    } else {
        free(list);
    }
}

void FreeDomainRecord(DomainInfo* record) noexcept {
    if (record == nullptr) return;
    Block* block = IsPart(record) ? BlockOf(record) : nullptr;
    ListFreer freer(block);
    for (const auto& row : record->method_lists) FreeLists(row, freer);
    const uint32_t lists_of_record = freer.End();
    if (block != nullptr) {
        GiveUp(block, 1 + lists_of_record);
    } else {
        free(record);
    }
}

}  // namespace aaadom
