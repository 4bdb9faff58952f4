#include "domain_row.h"

#include <aaadom/codes.h>
#include <aaadom/database.h>
#include <aaadom/db_layout.h>
#include <aaadom/domain.h>
#include <aaadom/domain_codec.h>
#include <aaadom/domain_table.h>
#include <aaadom/method_list.h>
#include <aaadom/restore.h>
#include <aaadom/rows.h>
#include <platform/aaa_tlv.h>

#include <cstring>
#include <memory>

#include "request.h"

namespace aaad {
namespace {

struct DomainDestroyer {
    void operator()(DomainInfo* record) const noexcept { DOM_DestroyDomain(record); }
};
using DomainPtr = std::unique_ptr<DomainInfo, DomainDestroyer>;

constexpr uint32_t kDefaultListTypes[DOM_DEFAULT_LISTS] = {AAA_TYPE_0, AAA_TYPE_4, AAA_TYPE_5};

MethodList*& DefaultList(DomainInfo& record, uint32_t type) {
    return record.method_lists[type][DOM_DEFAULT_SERVICE];
}

/// DOM_MibAddDomain replaces the default lists and returns with the table mutex locked when it
/// cannot allocate one of them, with the same result as for other failures, after which the mutex
/// is free. The lists tell the two apart: those that were there before are taken out first, so one
/// that is missing afterwards is the one that could not be allocated.
uint32_t Add(DomainPtr& record) {
    for (const uint32_t type : kDefaultListTypes) {
        DOM_DestroyMethodList(DefaultList(*record, type));
        DefaultList(*record, type) = nullptr;
    }
    const uint32_t result = DOM_MibAddDomain(record.get());
    if (result == DOM_ADD_OK) {
        (void)record.release();  // the table's now
        return DOM_ROW_OK;
    }
    if (result != DOM_ADD_FAILED) return result;
    for (const uint32_t type : kDefaultListTypes) {
        if (DefaultList(*record, type) != nullptr) continue;
        (void)DOM_DomainInfoTableUnlock();
        break;
    }
    return result;
}

uint32_t Create(TLV_MSG* body, bool save) {
    DomainPtr record(DOM_DecodeDomain(body));
    if (!record) return DOM_ROW_FAILED;
    // Front ends tell "exists" from "bad name", and an existing domain with a bad name exists.
    if (DOM_IsDomainExist(record->name) != 0) return DOM_ROW_EXISTS;
    if (DOM_CheckDomainName(record->name) != DOM_OK) return DOM_ROW_BAD_NAME;
    DomDbUpdateReq change{};
    change.object_type = DOM_DB_DOMAIN;
    change.operation = DOM_PRESENT;
    static_assert(sizeof change.object_name == sizeof record->name);
    memcpy(change.object_name, record->name, sizeof change.object_name);
    const uint32_t result = Add(record);
    return result == DOM_ROW_OK && save ? DOM_SetDataToDB(&change) : result;
}

}  // namespace

uint32_t ApplyDomainRow(const Request& request, bool save) {
    TLV_MSG* body = request.body.get();
    TLV_ITER* status = TLV_GetIteratorByType(body, DOM_TLV_ROW_STATUS);
    if (status != nullptr && AAA_GetUINTTlvValue(body, status) == DOM_ROW_CREATE_AND_GO) {
        return Create(body, save);
    }
    return DOM_RestoreData(request.message.get(), save ? 1 : 0, 0, 0, nullptr, nullptr);
}

}  // namespace aaad
