#include "codec/method_item.h"

#include <aaadom/codes.h>
#include <aaadom/method_list.h>

#include "codec/field_table.h"

namespace aaadom {
namespace {

constexpr Field kItemFieldList[] = {
    {DOM_TLV_ITEM_POSITION, FieldKind::kPosition, 0},
    {DOM_TLV_METHOD_TYPE, FieldKind::kWord, offsetof(MethodEntry, method_kind)},
    {DOM_TLV_SCHEME_NAME, FieldKind::kText, offsetof(MethodEntry, scheme_name),
     DOM_SCHEME_NAME_SIZE},
    {DOM_TLV_SCHEME_INDEX, FieldKind::kWord, offsetof(MethodEntry, scheme_index)},
};
constexpr FieldTable kItemFields(kItemFieldList);

constexpr Field kListFieldList[] = {
    {DOM_TLV_AAA_TYPE, FieldKind::kWord, offsetof(MethodList, aaa_type)},
    {DOM_TLV_SERVICE, FieldKind::kWord, offsetof(MethodList, service)},
};
constexpr FieldTable kListFields(kListFieldList);

uint32_t AppendItems(TLV_MSG* msg, uint16_t type, const MethodEntry* items,
                     uint32_t count) noexcept {
    return AAA_AppendRecords(msg, type, kItemFields.Sent(), kItemFields.Size(), items,
                             sizeof *items, count);
}

static_assert(kItemFields.ReadCount() == kItemFields.Size());
uint32_t ReadFreshItem(const TlvItem& tlv, MethodEntry& item, uint32_t& position) noexcept {
    return tlv.SubFields(kItemFields.Read(), kItemFields.ReadCount(), &item, &position);
}

/// Decodes the item nested in one TLV. It starts empty and at position 0; unknown types are
/// skipped.
uint32_t ReadNestedItem(const TlvItem& tlv, MethodEntry& item, uint32_t& position) noexcept {
    item = MethodEntry{};
    position = 0;
    return ReadFreshItem(tlv, item, position);
}

/// A position outside the list stores nothing; the rest of the message still counts.
uint32_t StoreNestedItem(const TlvItem& tlv, MethodEntry* items) noexcept {
    MethodEntry item;
    uint32_t position;
    const uint32_t result = ReadNestedItem(tlv, item, position);
    if (result == DOM_OK && position < DOM_METHODS) items[position] = item;
    return result;
}

/// A list that is being read and was empty before.
struct ListTarget {
    MethodList& list;
    MethodEntry& extra;
    /// The position that comes next as long as items come in order; nothing is stored from here on.
    uint32_t next = 0;
};

/// Items usually come in order, so each is read where it belongs and moved only when it turns out
/// to belong elsewhere.
uint32_t TakeListItem(const TlvItem& tlv, ListTarget& target) noexcept {
    MethodEntry* items = target.list.methods;
    if (target.next == DOM_METHODS) return StoreNestedItem(tlv, items);
    uint32_t position = 0;
    MethodEntry& place = items[target.next];
    const uint32_t result = ReadFreshItem(tlv, place, position);
    if (position == target.next) {
        ++target.next;
        return result;
    }
    const MethodEntry item = place;
    place = MethodEntry{};
    target.next = DOM_METHODS;
    if (position < DOM_METHODS) items[position] = item;
    return result;
}

uint32_t TakeItem(void* context, uint16_t type, TLV_MSG* msg, TLV_ITER* it) noexcept {
    auto& target = *static_cast<ListTarget*>(context);
    if (type == DOM_TLV_METHOD_ITEM) return TakeListItem({msg, it}, target);
    if (type != DOM_TLV_EXTRA_ITEM) return DOM_OK;
    uint32_t position;
    return ReadNestedItem({msg, it}, target.extra, position);
}

}  // namespace

void MethodListDestroyer::operator()(MethodList* list) const noexcept {
    DOM_DestroyMethodList(list);
}

uint32_t EncodeMethodItems(const MethodEntry* items, TLV_MSG* destination) noexcept {
    uint32_t count = 0;
    while (count < DOM_METHODS && items[count].method_kind != METHOD_EMPTY) ++count;
    return AppendItems(destination, DOM_TLV_METHOD_ITEM, items, count);
}

uint32_t DecodeMethodItems(TLV_MSG* msg, MethodEntry* items) noexcept {
    bool any = false;
    for (TlvItem tlv : TlvWalk(msg)) {
        if (tlv.Type() != DOM_TLV_METHOD_ITEM) continue;
        const uint32_t result = StoreNestedItem(tlv, items);
        if (result != DOM_OK) return result;
        any = true;
    }
    return any ? DOM_OK : DOM_ERR_FAILED;
}

uint32_t EncodeMethodList(const MethodList& list, const MethodEntry& extra,
                          TLV_MSG* destination) noexcept {
    Appender head(destination);
    AppendFields(head, &list, kListFields);
    if (head.Failed()) return DOM_ERR_FAILED;
    const uint32_t result = EncodeMethodItems(list.methods, destination);
    if (result != DOM_OK) return result;
    return AppendItems(destination, DOM_TLV_EXTRA_ITEM, &extra, 1);
}

uint32_t DecodeMethodList(TLV_MSG* msg, MethodList& list, MethodEntry& extra) noexcept {
    list = MethodList{};
    extra = MethodEntry{};
    if (msg == nullptr) return DOM_OK;
    ListTarget target{list, extra};
    return AAA_GetFields(msg, kListFields.Read(), kListFields.ReadCount(), &list, TakeItem,
                         &target);
}

uint32_t ReadMethodList(const TlvItem& nested, MethodList& list, MethodEntry& extra) noexcept {
    ListTarget target{list, extra};
    return nested.SubFields(kListFields.Read(), kListFields.ReadCount(), &list, nullptr, TakeItem,
                            &target);
}

}  // namespace aaadom
