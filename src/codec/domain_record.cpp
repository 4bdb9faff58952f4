#include "codec/domain_record.h"

#include <aaadom/codes.h>
#include <aaadom/domain.h>
#include <aaadom/method_list.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <memory>
#include <utility>

#include "base/attribute_defaults.h"
#include "base/domain_block.h"
#include "codec/author_attr.h"
#include "codec/field_table.h"
#include "codec/method_item.h"

namespace aaadom {
namespace {

struct DomainDestroyer {
    void operator()(DomainInfo* record) const noexcept { DOM_DestroyDomain(record); }
};
using DomainPtr = std::unique_ptr<DomainInfo, DomainDestroyer>;

#define AT(member) offsetof(DomainInfo, member)
#define TEXT_AT(member) offsetof(DomainInfo, member), DOM_NAME_SIZE
using enum FieldKind;
// The limit and the second value are not read back: a device that restores a domain keeps its own
// presets, whatever the sender stored.
constexpr Field kScalarFieldList[] = {
    {DOM_TLV_DOMAIN_NAME, kText, TEXT_AT(name)},
    {DOM_TLV_SLOT, kWord, AT(slot)},
    {DOM_TLV_LIMIT_VALUE, kWordWriteOnly, AT(limit_value)},
    {DOM_TLV_SECOND_VALUE, kWordWriteOnly, AT(second_value)},
    {DOM_TLV_STATE, kHalf, AT(state)},
    {DOM_TLV_SESSION_TIME, kHalf, AT(session_time)},
    {DOM_TLV_USER_ADDR_TYPE, kWord, AT(user_addr_type)},
    {DOM_TLV_DUAL_STACK_MODE, kWord, AT(acct_dual_stack_mode)},
    {DOM_TLV_REDIRECT_CODE, kWord, AT(redirect_code)},
    {DOM_TLV_PERMIT_DOMAIN, kText, TEXT_AT(auth_rd_fail_permit_domain)},
    {DOM_TLV_ESCAPE_SETTING, kHalf, AT(escape_recover.setting)},
    {DOM_TLV_ESCAPE_DOMAIN, kText, TEXT_AT(escape_recover.domain_name)},
    {DOM_TLV_ESCAPE_SECOND, kHalf, AT(escape_recover.second_setting)},
    {DOM_TLV_AUTH_FAIL_DOMAIN, kText, TEXT_AT(auth_fail_domain)},
    {DOM_TLV_AUTH_FAIL_KIND, kHalf, AT(auth_fail_domain_kind)},
};
#undef TEXT_AT
#undef AT
constexpr FieldTable kScalarFields(kScalarFieldList);

/// A domain message from its begin to its end, but for the lists before the attributes. The code
/// has been read already.
struct MessageFields {
    AAA_FIELD fields[kScalarFields.Size() + 2];

    constexpr MessageFields() : fields{} {
        fields[0] = {DOM_TLV_MSG_CODE, AAA_FIELD_BLOCK, 0, 0};
        for (size_t i = 0; i < kScalarFields.Size(); ++i) fields[i + 1] = kScalarFields.Read()[i];
        fields[kScalarFields.Size() + 1] = {DOM_TLV_AUTHOR_ATTR, AAA_FIELD_OTHER, 0, 0};
    }
};
constexpr MessageFields kMessage;

DomainPtr CreateRecordForDecoding(ListRoom& room) noexcept {
    DomainPtr record(room.CreateRecord());
    if (!record) return record;
    record->limit_value = DOM_DEF_LIMIT_VALUE;
    record->user_addr_type = DOM_DEF_ADDR_TYPE;
    record->acct_dual_stack_mode = DOM_DEF_DUAL_STACK;
    PresetAttributes(record->author_attr);
    return record;
}

struct Decoding {
    DomainInfo& record;
    ListRoom& room;
};

constexpr uint32_t kListPlaces = DOM_AAA_TYPES * DOM_SERVICES;

/// A table of many domains lies in main memory: the list that comes after the next ones is fetched
/// from there while this one is written.
constexpr uint32_t kListsAhead = 3;
void FetchAhead(const MethodList* list) noexcept {
    if (list == nullptr) return;
    constexpr size_t kLine = 64;
    constexpr size_t kUsualLength = 3 * kLine; /* of a list with three methods */
    for (size_t at = 0; at < kUsualLength; at += kLine) {
        __builtin_prefetch(reinterpret_cast<const char*>(list) + at);
    }
}

/// Room for the lists from `it` on. However many they are, there is one for each place that is
/// empty at most, and one to read what replaces another.
bool MakeRoom(ListRoom& room, TLV_MSG* msg, TLV_ITER* it) noexcept {
    const uint32_t lists = AAA_CountTlvs(msg, it, DOM_TLV_METHOD_LIST);
    return room.Extend(std::min(lists, kListPlaces - room.Placed() + 1));
}

/// Stores a nested method list at its place; a list that was there before is replaced.
uint32_t TakeMethodList(const TlvItem& tlv, Decoding& decoding) noexcept {
    DomainInfo& record = decoding.record;
    MethodList* list = &decoding.room.Next();
    MethodEntry extra{};
    const uint32_t result = ReadMethodList(tlv, *list, extra);
    if (result != DOM_OK || !IsListPlace(*list)) {
        // The message counts no more, but it is read to its end.
        *list = {};
        return result != DOM_OK ? result : DOM_ERR_FAILED;
    }
    // Every list of a column carries the column's extra item: an empty one must not erase it.
    if (extra.method_kind != METHOD_EMPTY) {
        // Member by member, because the item has just been written in these pieces.
        MethodEntry& kept = record.service_extras[list->service];
        kept.method_kind = extra.method_kind;
        memcpy(kept.scheme_name, extra.scheme_name,
               sizeof extra.scheme_name + sizeof extra.reserved);
        kept.scheme_index = extra.scheme_index;
    }
    if (MethodList* former = record.method_lists[list->aaa_type][list->service]) {
        *former = std::exchange(*list, {});
    } else {
        decoding.room.Place(record);
    }
    return DOM_OK;
}

/// The attribute block starts afresh with every TLV, so attributes count only when they come last:
/// senders put them there, and a message that goes on behind them asks for the defaults.
uint32_t TakeAttributes(const TlvItem& tlv, AuthorAttr& attributes) noexcept {
    const uint32_t result = ReadAttributes(tlv, attributes);
    if (!tlv.IsLast()) DOM_InitAuthorAttr(&attributes);
    return result;
}

/// What is no plain member. The scalars that are sent only come here, too, and are skipped.
uint32_t TakePart(void* context, uint16_t type, TLV_MSG* msg, TLV_ITER* it) noexcept {
    auto& decoding = *static_cast<Decoding*>(context);
    if (type == DOM_TLV_METHOD_LIST) {
        if (decoding.room.IsEmpty() && !MakeRoom(decoding.room, msg, it)) return DOM_ERR_FAILED;
        return TakeMethodList({msg, it}, decoding);
    }
    if (type == DOM_TLV_AUTHOR_ATTR) return TakeAttributes({msg, it}, decoding.record.author_attr);
    return DOM_OK;
}

bool IsDomainCode(TLV_MSG* msg) noexcept {
    const TlvItem code = FindTlv(msg, DOM_TLV_MSG_CODE);
    if (!code) return false;
    const uint32_t value = code.U32();
    return value == DOM_MSG_DOMAIN || value == DOM_MSG_DOMAIN_ROW;
}

}  // namespace

uint32_t AppendDomainRecord(const DomainInfo& record, TLV_MSG* msg) noexcept {
    Appender scalars(msg);
    AppendFields(scalars, &record, kScalarFields);
    if (scalars.Failed()) return DOM_ERR_FAILED;
    Appender parts(msg);
    for (uint32_t row = 0; row < DOM_AAA_TYPES; ++row) {
        for (uint32_t column = 0; column < DOM_SERVICES; ++column) {
            const MethodList* list = record.method_lists[row][column];
            if (list == nullptr) continue;
            if (column + kListsAhead < DOM_SERVICES) {
                FetchAhead(record.method_lists[row][column + kListsAhead]);
            }
            parts.Nested(DOM_TLV_METHOD_LIST, [&](Appender& nested) {
                nested.Fold(EncodeMethodList(*list, record.service_extras[column], msg));
            });
            if (parts.Failed()) return DOM_ERR_FAILED;
        }
    }
    // Last, because the decoder forgets attributes that another TLV follows.
    AppendAttributes(parts, record.author_attr);
    return parts.Failed() ? DOM_ERR_FAILED : DOM_OK;
}

TlvPtr FillDomainMessage(const DomainInfo& record, TlvPtr msg) noexcept {
    if (!msg) return msg;
    Appender append(msg.get());
    append.U32(DOM_TLV_MSG_CODE, DOM_MSG_DOMAIN).Fold(AppendDomainRecord(record, msg.get()));
    if (append.Failed()) msg.reset();
    return msg;
}

TlvPtr EncodeDomainRecord(const DomainInfo& record) noexcept {
    return FillDomainMessage(record, TlvPtr(TLV_Create()));
}

DomainInfo* DecodeDomainRecord(TLV_MSG* msg) noexcept {
    if (!IsDomainCode(msg)) return nullptr;
    ListRoom room;
    DomainPtr record = CreateRecordForDecoding(room);
    if (!record) return nullptr;

    Decoding decoding{*record, room};
    const uint32_t result = AAA_GetFields(msg, kMessage.fields, std::size(kMessage.fields),
                                          record.get(), TakePart, &decoding);
    return result == DOM_OK ? record.release() : nullptr;
}

}  // namespace aaadom
