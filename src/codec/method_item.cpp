#include "codec/method_item.h"

#include <aaadom/codes.h>
#include <aaadom/method_list.h>

#include "codec/field_table.h"

namespace aaadom {
namespace {

/// An item and the position it carries.
struct PlacedItem {
    uint32_t position;
    MethodEntry item;
};

constexpr size_t kItem = offsetof(PlacedItem, item);
constexpr Field kItemFieldList[] = {
    {DOM_TLV_ITEM_POSITION, FieldKind::kWord, offsetof(PlacedItem, position)},
    {DOM_TLV_METHOD_TYPE, FieldKind::kWord, kItem + offsetof(MethodEntry, method_kind)},
    {DOM_TLV_SCHEME_NAME, FieldKind::kText, kItem + offsetof(MethodEntry, scheme_name),
     DOM_SCHEME_NAME_SIZE},
    {DOM_TLV_SCHEME_INDEX, FieldKind::kWord, kItem + offsetof(MethodEntry, scheme_index)},
};
constexpr FieldTable kItemFields(kItemFieldList);

/// A position outside the list stores nothing; the rest of the message still counts.
void StoreItem(const MethodEntry& item, uint32_t position, MethodEntry* items) noexcept {
    if (position < DOM_METHODS) items[position] = item;
}

/// Decodes the item nested in one TLV.
uint32_t ReadNestedItem(const TlvItem& tlv, MethodEntry& item, uint32_t& position) noexcept {
    const TlvPtr sub = tlv.Sub();
    return sub ? DecodeMethodItem(sub.get(), item, position) : DOM_ERR_FAILED;
}

}  // namespace

void MethodListDestroyer::operator()(MethodList* list) const noexcept {
    DOM_DestroyMethodList(list);
}

TlvPtr EncodeMethodItem(const MethodEntry& item, uint32_t position) noexcept {
    TlvPtr sub(TLV_Create());
    if (!sub) return sub;
    const PlacedItem placed{position, item};
    Appender append(sub.get());
    AppendFields(append, &placed, kItemFields);
    if (append.Failed()) sub.reset();
    return sub;
}

uint32_t DecodeMethodItem(TLV_MSG* sub, MethodEntry& item, uint32_t& position) noexcept {
    PlacedItem placed{};
    const uint32_t result = ReadFields(sub, &placed, kItemFields);
    item = placed.item;
    position = placed.position;
    return result;
}

uint32_t EncodeMethodItems(const MethodEntry* items, TLV_MSG* destination) noexcept {
    for (uint32_t position = 0; position < DOM_METHODS; ++position) {
        if (items[position].method_kind == METHOD_EMPTY) break;
        const TlvPtr sub = EncodeMethodItem(items[position], position);
        if (!sub) return DOM_ERR_FAILED;
        const uint32_t result = AAA_AppendSubTlv(destination, DOM_TLV_METHOD_ITEM, sub.get());
        if (result != DOM_OK) return result;
    }
    return DOM_OK;
}

uint32_t DecodeMethodItems(TLV_MSG* msg, MethodEntry* items) noexcept {
    bool any = false;
    for (TlvItem tlv : TlvWalk(msg)) {
        if (tlv.Type() != DOM_TLV_METHOD_ITEM) continue;
        MethodEntry item;
        uint32_t position;
        const uint32_t result = ReadNestedItem(tlv, item, position);
        if (result != DOM_OK) return result;
        StoreItem(item, position, items);
        any = true;
    }
    return any ? DOM_OK : DOM_ERR_FAILED;
}

uint32_t EncodeMethodList(const MethodList& list, const MethodEntry& extra,
                          TLV_MSG* destination) noexcept {
    Appender head(destination);
    head.U32(DOM_TLV_AAA_TYPE, list.aaa_type).U32(DOM_TLV_SERVICE, list.service);
    if (head.Failed()) return DOM_ERR_FAILED;
    const uint32_t result = EncodeMethodItems(list.methods, destination);
    if (result != DOM_OK) return result;
    Appender tail(destination);
    tail.Sub(DOM_TLV_EXTRA_ITEM, EncodeMethodItem(extra, 0));
    return tail.Failed() ? DOM_ERR_FAILED : DOM_OK;
}

uint32_t DecodeMethodList(TLV_MSG* msg, MethodList& list, MethodEntry& extra) noexcept {
    list = MethodList{};
    extra = MethodEntry{};
    for (TlvItem tlv : TlvWalk(msg)) {
        uint32_t result = DOM_OK;
        uint32_t position = 0;
        MethodEntry item;
        switch (tlv.Type()) {
            case DOM_TLV_AAA_TYPE:
                list.aaa_type = tlv.U32();
                break;
            case DOM_TLV_SERVICE:
                list.service = tlv.U32();
                break;
            case DOM_TLV_METHOD_ITEM:
                result = ReadNestedItem(tlv, item, position);
                if (result == DOM_OK) StoreItem(item, position, list.methods);
                break;
            case DOM_TLV_EXTRA_ITEM:
                result = ReadNestedItem(tlv, extra, position);
                break;
            default:
                break;
        }
        if (result != DOM_OK) return result;
    }
    return DOM_OK;
}

bool IsListPlace(const MethodList& list) noexcept {
    return list.aaa_type < DOM_AAA_TYPES && list.service < DOM_SERVICES;
}

}  // namespace aaadom
