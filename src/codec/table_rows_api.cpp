#include <aaadom/codes.h>
#include <aaadom/domain_codec.h>
#include <aaadom/results.h>

#include "base/text.h"
#include "codec/table_rows.h"
#include "codec/value_messages.h"

using namespace aaadom;

namespace {

TLV_MSG* DomainRowMessage(const uint64_t* flags, const char* name, uint32_t state,
                          uint32_t row_status) noexcept {
    if (name == nullptr) return nullptr;
    DomainMibRow row{};
    row.state = state;
    CopyText(row.domain_name, name);
    return EncodeDomainRow(flags, row, row_status).release();
}

}  // namespace

extern "C" {

TLV_MSG* DOM_EncodeDomainInfo(const char* name, uint32_t state, uint32_t row_status) noexcept {
    return DomainRowMessage(nullptr, name, state, row_status);
}

TLV_MSG* DOM_EncodeDomainInfoFlag(uint64_t flags, const char* name, uint32_t state,
                                  uint32_t row_status) noexcept {
    return DomainRowMessage(&flags, name, state, row_status);
}

uint32_t DOM_DecodeDomainInfoTable(TLV_MSG* msg, DomainMibRow* row, uint64_t* flags) noexcept {
    DomainMibRow decoded_row;
    uint64_t decoded_flags;
    const uint32_t result = DecodeDomainRow(msg, decoded_row, decoded_flags);
    if (row != nullptr) *row = decoded_row;
    if (flags != nullptr) *flags = decoded_flags;
    return result;
}

TLV_MSG* DOM_EncodeDomainSchemeFlag(uint64_t flags, const char* domain, uint32_t row_status,
                                    uint32_t aaa_type, uint32_t scheme_index, uint32_t method_type,
                                    const char* scheme_name) noexcept {
    if (domain == nullptr || scheme_name == nullptr) return nullptr;
    MibSchemeRow row{};
    row.scheme_index = scheme_index;
    row.method_kind = method_type;
    row.row_status = row_status;
    row.aaa_type = aaa_type;
    CopyText(row.domain_name, domain);
    CopyText(row.scheme_name, scheme_name);
    return EncodeSchemeRow(&flags, row).release();
}

TLV_MSG* DOM_EncodeMibSchemeTable(uint32_t* status_out) noexcept {
    uint32_t status;
    TlvPtr msg = EncodeFirstSchemeRow(status);
    if (status_out != nullptr) *status_out = status;
    return msg.release();
}

TLV_MSG* DOM_EncodeMibNextSchemeTable(const char* domain, uint32_t name_length,
                                      uint32_t scheme_index, uint32_t* status_out) noexcept {
    uint32_t status = DOM_WALK_NO_MESSAGE;
    TlvPtr msg;
    if (domain != nullptr) msg = EncodeNextSchemeRow(domain, name_length, scheme_index, status);
    if (status_out != nullptr) *status_out = status;
    return msg.release();
}

uint32_t DOM_DecodeMibSchemeTable(TLV_MSG* msg, MibSchemeRow* row) noexcept {
    return row == nullptr ? DOM_ERR_FAILED : DecodeSchemeRow(msg, *row);
}

TLV_MSG* DOM_EncodeSchemeIndex(const char* domain, uint32_t name_length,
                               uint32_t scheme_index) noexcept {
    return Encode(kSchemeIndexMessage, {domain, name_length, scheme_index});
}

uint32_t DOM_DecodeSchemeIndex(TLV_MSG* msg, uint32_t size, char* domain, uint32_t* name_length,
                               uint32_t* scheme_index) noexcept {
    return Decode(kSchemeIndexMessage, msg, {{size, domain}, name_length, scheme_index});
}

}  // extern "C"
