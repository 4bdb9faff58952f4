#include "codec/table_rows.h"

#include <aaadom/codes.h>
#include <aaadom/method_list.h>
#include <aaadom/rows.h>

#include "codec/field_table.h"
#include "codec/table_lock.h"

namespace aaadom {
namespace {

using enum FieldKind;

constexpr Field kDomainRowFieldList[] = {
    {DOM_TLV_DOMAIN_NAME, kText, offsetof(DomainMibRow, domain_name), DOM_NAME_SIZE},
    {DOM_TLV_STATE, kWord, offsetof(DomainMibRow, state)},
};
constexpr FieldTable kDomainRowFields(kDomainRowFieldList);

// The row status belongs to the request, not to the row: its reader looks it up in the message.
constexpr Field kSchemeRowFieldList[] = {
    {DOM_TLV_DOMAIN_NAME, kText, offsetof(MibSchemeRow, domain_name), DOM_NAME_SIZE},
    {DOM_TLV_ROW_STATUS, kWordWriteOnly, offsetof(MibSchemeRow, row_status)},
    {DOM_TLV_AAA_TYPE, kWord, offsetof(MibSchemeRow, aaa_type)},
    {DOM_TLV_SCHEME_INDEX, kWord, offsetof(MibSchemeRow, scheme_index)},
    {DOM_TLV_METHOD_TYPE, kWord, offsetof(MibSchemeRow, method_kind)},
    {DOM_TLV_SCHEME_NAME, kText, offsetof(MibSchemeRow, scheme_name), DOM_SCHEME_NAME_SIZE},
};
constexpr FieldTable kSchemeRowFields(kSchemeRowFieldList);

TlvPtr FillSchemeRow(TlvPtr msg, const uint64_t* flags, const MibSchemeRow& row) noexcept {
    if (!msg) return msg;
    Appender append(msg.get());
    append.U32(DOM_TLV_MSG_CODE, DOM_MSG_SCHEME_ROW);
    if (flags != nullptr) append.U64(DOM_TLV_ROW_FLAGS, *flags);
    AppendFields(append, &row, kSchemeRowFields);
    if (append.Failed()) msg.reset();
    return msg;
}

template <typename GetRow>
TlvPtr EncodeWalkedRow(GetRow&& get_row, uint32_t& status) noexcept {
    status = DOM_WALK_NO_MESSAGE;
    TlvPtr msg(TLV_Create());
    if (!msg) return msg;
    const TableLock lock;
    MibSchemeRow row{};
    if (get_row(&row) != DOM_OK) {
        // As in the walk of domain rows, the end of a table that has rows keeps 9.
        if (DOM_IsSchemeTableNull() == 1) status = DOM_WALK_NONE;
        return nullptr;
    }
    row.row_status = DOM_ROW_ACTIVE;
    msg = FillSchemeRow(std::move(msg), nullptr, row);
    if (msg) status = DOM_WALK_OK;
    return msg;
}

}  // namespace

TlvPtr EncodeDomainRow(const uint64_t* flags, const DomainMibRow& row,
                       uint32_t row_status) noexcept {
    return TlvPtr(MessageBuilder(DOM_MSG_DOMAIN_ROW).Build([&](Appender& append) {
        if (flags != nullptr) append.U64(DOM_TLV_ROW_FLAGS, *flags);
        AppendFields(append, &row, kDomainRowFields);
        append.U32(DOM_TLV_ROW_STATUS, row_status);
    }));
}

uint32_t DecodeDomainRow(TLV_MSG* msg, DomainMibRow& row, uint64_t& flags) noexcept {
    row = DomainMibRow{};
    flags = 0;
    const TlvItem code = FindTlv(msg, DOM_TLV_MSG_CODE);
    if (!code) return DOM_ERR_FAILED;
    const uint32_t value = code.U32();
    if (value != DOM_MSG_DOMAIN && value != DOM_MSG_DOMAIN_ROW) return DOM_ERR_FAILED;
    if (!FindTlv(msg, DOM_TLV_DOMAIN_NAME)) return DOM_ERR_FAILED;
    if (const TlvItem item = FindTlv(msg, DOM_TLV_ROW_FLAGS)) flags = item.U64();
    return ReadFields(msg, &row, kDomainRowFields);
}

TlvPtr EncodeSchemeRow(const uint64_t* flags, const MibSchemeRow& row) noexcept {
    return FillSchemeRow(TlvPtr(TLV_Create()), flags, row);
}

uint32_t DecodeSchemeRow(TLV_MSG* msg, MibSchemeRow& row) noexcept {
    if (!FindTlv(msg, DOM_TLV_DOMAIN_NAME)) return DOM_ERR_FAILED;
    return ReadFields(msg, &row, kSchemeRowFields);
}

TlvPtr EncodeFirstSchemeRow(uint32_t& status) noexcept {
    return EncodeWalkedRow([](MibSchemeRow* row) { return DOM_MibGetFirstScheme(row); }, status);
}

TlvPtr EncodeNextSchemeRow(const char* domain, uint32_t name_length, uint32_t scheme_index,
                           uint32_t& status) noexcept {
    return EncodeWalkedRow(
        [&](MibSchemeRow* row) {
            return DOM_MibGetNextScheme(domain, name_length, scheme_index, row);
        },
        status);
}

}  // namespace aaadom
