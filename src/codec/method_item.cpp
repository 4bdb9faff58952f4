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

/// Stores the item nested in one TLV, which starts empty and at position 0. A position outside the
/// list stores nothing; the rest of the message still counts.
uint32_t StoreNestedItem(const TlvItem& tlv, MethodEntry* items) noexcept {
    MethodEntry item{};
    uint32_t position = 0;
    const uint32_t result =
        tlv.SubFields(kItemFields.Read(), kItemFields.ReadCount(), &item, &position);
    if (result == DOM_OK && position < DOM_METHODS) items[position] = item;
    return result;
}

/// Reads a list from the TLV that carries it or, without a position, from the message itself. Both
/// start empty. The extra item is the only one of its kind, whatever position it carries.
uint32_t ReadList(const TlvItem& nested, MethodList& list, MethodEntry& extra) noexcept {
    const AAA_RECORDS arrays[] = {
        {DOM_TLV_METHOD_ITEM, DOM_METHODS, sizeof(MethodEntry), kItemFields.ReadCount(),
         kItemFields.Read(), list.methods},
        {DOM_TLV_EXTRA_ITEM, 0, sizeof(MethodEntry), kItemFields.ReadCount(), kItemFields.Read(),
         &extra},
    };
    return nested.Records(kListFields.Read(), kListFields.ReadCount(), &list, arrays,
                          std::size(arrays));
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
    return ReadList(TlvItem(msg, nullptr), list, extra);
}

uint32_t ReadMethodList(const TlvItem& nested, MethodList& list, MethodEntry& extra) noexcept {
    return ReadList(nested, list, extra);
}

}  // namespace aaadom
