#include "codec/domain_record.h"

#include <aaadom/codes.h>
#include <aaadom/domain.h>
#include <aaadom/method_list.h>

#include <cstdlib>
#include <cstring>
#include <memory>

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

DomainPtr CreateRecordForDecoding() noexcept {
    DomainPtr record(static_cast<DomainInfo*>(calloc(1, sizeof(DomainInfo))));
    if (!record) return record;
    record->limit_value = DOM_DEF_LIMIT_VALUE;
    record->user_addr_type = DOM_DEF_ADDR_TYPE;
    record->acct_dual_stack_mode = DOM_DEF_DUAL_STACK;
    return record;
}

/// Stores a nested method list at its place; a list that was there before is freed.
uint32_t TakeMethodList(const TlvItem& tlv, DomainInfo& record) noexcept {
    MethodListPtr list(DOM_CreateMethodList());
    if (!list) return DOM_ERR_FAILED;
    MethodEntry extra{};
    const uint32_t result = ReadMethodList(tlv, *list, extra);
    if (result != DOM_OK) return result;
    if (!IsListPlace(*list)) return DOM_ERR_FAILED;
    // Every list of a column carries the column's extra item: an empty one must not erase it.
    if (extra.method_kind != METHOD_EMPTY) {
        // Member by member, because the item has just been written in these pieces.
        MethodEntry& kept = record.service_extras[list->service];
        kept.method_kind = extra.method_kind;
        memcpy(kept.scheme_name, extra.scheme_name,
               sizeof extra.scheme_name + sizeof extra.reserved);
        kept.scheme_index = extra.scheme_index;
    }
    MethodList*& place = record.method_lists[list->aaa_type][list->service];
    DOM_DestroyMethodList(place);
    place = list.release();
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
    auto& record = *static_cast<DomainInfo*>(context);
    if (type == DOM_TLV_METHOD_LIST) return TakeMethodList({msg, it}, record);
    if (type == DOM_TLV_AUTHOR_ATTR) return TakeAttributes({msg, it}, record.author_attr);
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
    DomainPtr record = CreateRecordForDecoding();
    if (!record) return nullptr;

    DOM_InitAuthorAttr(&record->author_attr);
    const uint32_t result = AAA_GetFields(msg, kScalarFields.Read(), kScalarFields.ReadCount(),
                                          record.get(), TakePart, record.get());
    return result == DOM_OK ? record.release() : nullptr;
}

}  // namespace aaadom
