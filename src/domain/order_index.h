// Finds a place in a sorted list of domain nodes without walking the list.
#pragma once

#include <aaadom/codes.h>
#include <aaadom/types.h>

#include <cstdint>
#include <cstring>

namespace aaadom {

/// The nodes of one list in its order, as an array. The list is what counts: an index that does not
/// begin like its list is filled from it anew, so whoever takes the whole list away (or sets
/// another in its place) needs not know of the index. All zero bytes are the index of an empty
/// list.
template <typename Node>
class OrderIndex {
  public:
    constexpr OrderIndex() = default;

    void Clear() noexcept { count_ = last_ = 0; }

    /// Makes the index that of the list from `first` up to `end`. False when the list is longer
    /// than a table has slots; it has to be walked then.
    bool Follow(Node* first, const Node* end) noexcept {
        if (count_ == 0 ? first == end : nodes_[0] == first) return true;
        Clear();
        uint32_t count = 0;
        for (Node* node = first; node != end; node = node->next) {
            if (count == DOM_MAX_DOMAINS) return false;
            nodes_[count++] = node;
        }
        count_ = count;
        return true;
    }

    /// The number of nodes at the front for which `is_before` says true; it says so of none behind.
    /// Names come mostly in one of the orders, so the place of the last insertion is tried first.
    template <typename IsBefore>
    uint32_t Place(IsBefore&& is_before) const noexcept {
        uint32_t low = 0;
        uint32_t high = count_;
        if (last_ < count_) {
            if (is_before(*nodes_[last_])) {
                low = last_ + 1;
                if (low == count_ || !is_before(*nodes_[low])) return low;
                ++low;
            } else {
                high = last_;
            }
        }
        while (low < high) {
            const uint32_t middle = low + (high - low) / 2;
            if (is_before(*nodes_[middle])) {
                low = middle + 1;
            } else {
                high = middle;
            }
        }
        return low;
    }

    /// The node at `place`, or `end` behind the last one.
    Node* At(uint32_t place, Node* end) const noexcept {
        return place < count_ ? nodes_[place] : end;
    }

    /// After the node was linked at `place` of its list. A list too long for the index is not
    /// indexed any more.
    void Insert(uint32_t place, Node* node) noexcept {
        if (count_ == DOM_MAX_DOMAINS) return Clear();
        memmove(nodes_ + place + 1, nodes_ + place, (count_ - place) * sizeof nodes_[0]);
        nodes_[place] = node;
        last_ = place;
        ++count_;
    }

    /// After the node at `place` was unlinked.
    void Remove(uint32_t place) noexcept {
        --count_;
        memmove(nodes_ + place, nodes_ + place + 1, (count_ - place) * sizeof nodes_[0]);
    }

  private:
    Node* nodes_[DOM_MAX_DOMAINS]{};
    uint32_t count_ = 0;
    uint32_t last_ = 0;
};

}  // namespace aaadom
