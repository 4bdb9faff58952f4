#include "mgmt/rows.h"

#include <aaadom/codes.h>
#include <aaadom/db_layout.h>
#include <aaadom/domain.h>
#include <aaadom/domain_codec.h>
#include <aaadom/method_list.h>
#include <aaadom/results.h>

#include <memory>

#include "base/message.h"
#include "base/text.h"
#include "mgmt/scheme_row.h"

namespace aaadom {
namespace {

constexpr uint32_t kNoRowStatus = 0;

struct DomainDestroyer {
    void operator()(DomainInfo* record) const noexcept { DOM_DestroyDomain(record); }
};
using DomainPtr = std::unique_ptr<DomainInfo, DomainDestroyer>;

uint32_t RowStatusOf(TLV_MSG* msg) noexcept {
    const TlvItem status = FindTlv(msg, DOM_TLV_ROW_STATUS);
    return status ? status.U32() : kNoRowStatus;
}

/// The domain is there after every row request, also after one that deletes a method of it.
void DomainChanged(DomDbUpdateReq& change, const char* name) noexcept {
    change.object_type = DOM_DB_DOMAIN;
    CopyText(change.object_name, name);
    change.operation = DOM_PRESENT;
}

/// A refused create records no change.
uint32_t CreateDomainRow(TLV_MSG* msg, DomDbUpdateReq& change) noexcept {
    DomainPtr record(DOM_DecodeDomain(msg));
    if (!record) return DOM_ROW_FAILED;
    // Front ends tell "exists" from "bad name", and an existing domain with a bad name exists.
    if (DOM_IsDomainExist(record->name) != 0) return DOM_ROW_EXISTS;
    if (DOM_CheckDomainName(record->name) != DOM_OK) return DOM_ROW_BAD_NAME;
    // Once added, the record may be gone: a table without an empty slot does not keep it.
    char name[DOM_NAME_SIZE];
    CopyField(name, record->name);
    const uint32_t result = DOM_MibAddDomain(record.get());
    if (result != DOM_ADD_OK) return result;
    (void)record.release();  // the table's now
    DomainChanged(change, name);
    return DOM_ROW_OK;
}

/// A refused modify records the change all the same; nobody saves it, because the result is not 0.
uint32_t ModifyDomainRow(TLV_MSG* msg, DomDbUpdateReq& change) noexcept {
    DomainMibRow row{};
    uint64_t flags = 0;
    if (DOM_DecodeDomainInfoTable(msg, &row, &flags) != DOM_OK) return DOM_ROW_FAILED;
    DomainChanged(change, row.domain_name);
    if (DOM_IsDomainExist(row.domain_name) == 0) return DOM_ROW_NO_OBJECT;
    // Domains that were not created as rows may bear any name.
    if (DOM_CheckDomainName(row.domain_name) != DOM_OK) return DOM_ROW_BAD_NAME;
    return DOM_MibUpdateDomain(&row, flags);
}

uint32_t RowResult(uint32_t result) noexcept {
    if (result == DOM_OK) return DOM_ROW_OK;
    return result == DOM_ERR_NOT_FOUND ? DOM_ROW_NO_OBJECT : DOM_ROW_FAILED;
}

uint32_t SetSchemeRow(const MibSchemeRow& row, uint32_t row_status) noexcept {
    switch (row_status) {
        case DOM_ROW_CREATE_AND_GO:
            return RowResult(DOM_AddSchemeTable(&row));
        case DOM_ROW_ACTIVE:
            return RowResult(DOM_ModifySchemeTable(&row));
        default:
            return DOM_ROW_FAILED;
    }
}

}  // namespace

uint32_t ApplyDomainRow(TLV_MSG* msg, DomDbUpdateReq& change) noexcept {
    switch (RowStatusOf(msg)) {
        case DOM_ROW_CREATE_AND_GO:
            return CreateDomainRow(msg, change);
        case DOM_ROW_ACTIVE:
            return ModifyDomainRow(msg, change);
        default:
            return DOM_ROW_FAILED;
    }
}

uint32_t ApplySchemeRow(TLV_MSG* msg, bool setting, DomDbUpdateReq& change) noexcept {
    MibSchemeRow row;
    PresetRow(row);
    if (DOM_DecodeMibSchemeTable(msg, &row) != DOM_OK) return DOM_ROW_FAILED;
    DomainChanged(change, row.domain_name);
    // The status that counts is the message's: the decoded row keeps its preset, which is one.
    if (setting) return SetSchemeRow(row, RowStatusOf(msg));
    return RowResult(DOM_DeleteSchemeByIndex(row.domain_name, row.scheme_index));
}

}  // namespace aaadom
