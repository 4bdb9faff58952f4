// Method items and method lists as nested messages.
#pragma once

#include <aaadom/types.h>

#include <memory>

#include "base/message.h"

namespace aaadom {

struct MethodListDestroyer {
    void operator()(MethodList* list) const noexcept;
};
using MethodListPtr = std::unique_ptr<MethodList, MethodListDestroyer>;

/// Appends the items up to the first empty one, at most six.
[[nodiscard]] uint32_t EncodeMethodItems(const MethodEntry* items, TLV_MSG* destination) noexcept;
/// Stores every item at the position it carries; items that `msg` lacks stay as they were.
[[nodiscard]] uint32_t DecodeMethodItems(TLV_MSG* msg, MethodEntry* items) noexcept;

/// Appends row, column, the items and the column's extra item, which is sent also when it is empty.
/// 0 or DOM_ERR_FAILED or the items' result.
[[nodiscard]] uint32_t EncodeMethodList(const MethodList& list, const MethodEntry& extra,
                                        TLV_MSG* destination) noexcept;
/// Reads a list from a message that may have other TLVs besides. `list` and `extra` start empty.
/// The caller checks row and column with IsListPlace.
[[nodiscard]] uint32_t DecodeMethodList(TLV_MSG* msg, MethodList& list,
                                        MethodEntry& extra) noexcept;
/// The same from the TLV that carries the list as a nested message. The caller gives `list` and
/// `extra` empty; both are undefined after a failure.
[[nodiscard]] uint32_t ReadMethodList(const TlvItem& nested, MethodList& list,
                                      MethodEntry& extra) noexcept;
/// Whether the list's row and column lie inside the grid of a domain.
inline bool IsListPlace(const MethodList& list) noexcept {
    return list.aaa_type < DOM_AAA_TYPES && list.service < DOM_SERVICES;
}

}  // namespace aaadom
