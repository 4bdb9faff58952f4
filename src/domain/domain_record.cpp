#include "domain/domain_record.h"

#include <aaadom/domain.h>
#include <aaadom/method_list.h>

#include <cstdlib>

#include "base/domain_block.h"
#include "domain/author_attr.h"

namespace aaadom {
namespace {

bool AddDefaultLists(DomainInfo& record) noexcept {
    for (uint32_t row : kDefaultListRows) {
        MethodList* list = CreateDefaultList(row);
        if (list == nullptr) return false;
        record.method_lists[row][DOM_DEFAULT_SERVICE] = list;
    }
    return true;
}

}  // namespace

MethodList* CreateDefaultList(uint32_t row) noexcept {
    MethodList* list = DOM_CreateMethodList();
    if (list == nullptr) return nullptr;
    list->aaa_type = row;
    list->service = DOM_DEFAULT_SERVICE;
    list->methods[0].method_kind = METHOD_DEFAULT_4;
    return list;
}

DomainInfo* CreateDomainRecord() noexcept {
    auto* record = static_cast<DomainInfo*>(calloc(1, sizeof(DomainInfo)));
    if (record == nullptr) return nullptr;
    if (!AddDefaultLists(*record)) {
        DestroyDomainRecord(record);
        return nullptr;
    }
    record->state = DOM_DEF_STATE;
    record->limit_value = DOM_DEF_LIMIT_VALUE;
    record->user_addr_type = DOM_DEF_ADDR_TYPE;
    record->acct_dual_stack_mode = DOM_DEF_DUAL_STACK;
    InitAuthorAttr(record->author_attr);
    return record;
}

void DestroyDomainRecord(DomainInfo* record) noexcept {
    FreeDomainRecord(record);
}

}  // namespace aaadom
