#include <aaadom/database.h>
#include <aaadom/domain.h>
#include <aaadom/results.h>

#include <cctype>
#include <cstdlib>

#include "base/text.h"
#include "domain/author_attr.h"
#include "domain/deletion_check.h"
#include "domain/domain_name.h"
#include "domain/domain_order.h"
#include "domain/domain_record.h"
#include "domain/domain_store.h"
#include "domain/with_domain.h"

using namespace aaadom;

namespace {

constexpr uint16_t kAlsoInDatabase = 1;
constexpr uint64_t kStateIsInRow = 1;  // bit 0 of a row's change mask

void Terminate(DomainInfo& record) noexcept {
    record.name[DOM_NAME_SIZE - 1] = '\0';
}

}  // namespace

extern "C" {

uint32_t DOM_CheckDomainName(const char* name) noexcept {
    return name == nullptr || HasForbiddenCharacter(name) ? DOM_ERR_FAILED : DOM_OK;
}

void DOM_ToLowerCaseStr(char* text) noexcept {
    if (text == nullptr) return;
    for (; *text != '\0'; ++text) {
        auto character = static_cast<unsigned char>(*text);
        if (isupper(character)) *text = static_cast<char>(tolower(character));
    }
}

DomainInfo* DOM_CreateDomain(void) noexcept {
    return CreateDomainRecord();
}

void DOM_DestroyDomain(DomainInfo* record) noexcept {
    DestroyDomainRecord(record);
}

ZorvDomain* DOM_CreateZorvDomain(void) noexcept {
    return static_cast<ZorvDomain*>(calloc(1, sizeof(ZorvDomain)));
}

void DOM_DestroyZorvDomain(ZorvDomain* node) noexcept {
    free(node);
}

// The caller holds the mutex through DOM_DomainInfoTableLock, here and below where the analysis is
// off.
AAADOM_NO_TSA DomainInfo* DOM_FindDomainByName(const char* name) noexcept {
    return Domains(CurrentRole()).Find(name);
}

uint32_t DOM_IsDomainExist(const char* name) noexcept {
    return ReadDomain(name, 0u, [](const DomainInfo&) { return 1u; });
}

AAADOM_NO_TSA void DOM_AddDomain(DomainInfo* record, ZorvDomain* mib_node,
                                 SchemeResources* resources) noexcept {
    if (record == nullptr) return;
    Terminate(*record);
    SchemeResources none{};
    // Without memory for its NetConf node the domain is added all the same: this addition has no
    // result to report, and its callers rely on the record being stored.
    (void)AddDomain(Domains(CurrentRole()), record, mib_node,
                    resources == nullptr ? none : *resources, CreateNetConfNode(record->name));
}

uint32_t DOM_AddDomainByName(const char* name) noexcept {
    if (name == nullptr) return DOM_ADD_FAILED;
    DomainTable& table = Domains(CurrentRole());
    MutexGuard lock(table.mutex);
    return AddDomainByName(table, name);
}

uint32_t DOM_MibAddDomain(DomainInfo* record) noexcept {
    if (record == nullptr) return DOM_ADD_FAILED;
    Terminate(*record);
    return AddDomainOfRow(Domains(CurrentRole()), record);
}

uint32_t DOM_MibUpdateDomain(const DomainMibRow* row, uint64_t change_mask) noexcept {
    if (row == nullptr) return DOM_MIBUPD_NO_DOMAIN;
    char name[DOM_NAME_SIZE];
    CopyField(name, row->domain_name);
    uint32_t result = WithDomain(name, [&](DomainInfo& domain) {
        if ((change_mask & kStateIsInRow) != 0) domain.state = static_cast<uint16_t>(row->state);
        return DOM_OK;
    });
    return result == DOM_OK ? DOM_OK : DOM_MIBUPD_NO_DOMAIN;
}

AAADOM_NO_TSA uint32_t DOM_UpdateDomain(DomainInfo* record) noexcept {
    if (record == nullptr) return DOM_ERR_FAILED;
    Terminate(*record);
    return UpdateDomain(Domains(CurrentRole()), record);
}

uint32_t DOM_DelDomainCheck(const char* name) noexcept {
    DomainTable& table = Domains(CurrentRole());
    MutexGuard lock(table.mutex);
    return CheckDeletion(table, name);
}

AAADOM_NO_TSA void DOM_DeleteDomain(DomainInfo* record) noexcept {
    if (record == nullptr) return;
    Terminate(*record);
    DeleteDomain(Domains(CurrentRole()), *record);
}

uint32_t DOM_DeleteDomainAndDBByName(const char* name, uint16_t also_database) noexcept {
    uint32_t slot;
    {
        DomainTable& table = Domains(CurrentRole());
        MutexGuard lock(table.mutex);
        DomainInfo* record = table.Find(name);
        if (record == nullptr) return DOM_OK;
        slot = record->slot;
        DeleteDomain(table, *record);
        DestroyDomainRecord(record);
    }
    return also_database == kAlsoInDatabase ? DOM_DeleteDomainToDBByIndex(slot) : DOM_OK;
}

void DOM_InitAuthorAttr(AuthorAttr* block) noexcept {
    if (block != nullptr) InitAuthorAttr(*block);
}

uint32_t DOM_AddAuthorAttr(const char* domain, const AuthorAttr* block, uint32_t kind) noexcept {
    if (block == nullptr) return DOM_ERR_FAILED;
    return WithDomain(domain,
                      [&](DomainInfo& d) { return CopyAuthorAttr(d.author_attr, *block, kind); });
}

uint32_t DOM_DelAuthorAttr(const char* domain, uint32_t kind) noexcept {
    return WithDomain(domain, [&](DomainInfo& d) { return ResetAuthorAttr(d.author_attr, kind); });
}

uint32_t DOM_GetDomainAuthorAttrByName(const char* name, AuthorAttr* block_out) noexcept {
    return WithDomain(name, [&](const DomainInfo& domain) {
        if (block_out != nullptr) *block_out = domain.author_attr;
        return DOM_OK;
    });
}

uint32_t DOM_SetRedirectMoveTemporarily(const char* name, uint32_t code) noexcept {
    return WithDomain(name, [&](DomainInfo& domain) {
        domain.redirect_code = code;
        return DOM_OK;
    });
}

uint32_t DOM_GetRedirectCode(const char* name) noexcept {
    return ReadDomain(name, 0u, [](const DomainInfo& domain) { return domain.redirect_code; });
}

// Reads the working role's count under the calling role's mutex; the working role changes it from
// its own thread only.
AAADOM_NO_TSA uint32_t DOM_GetDomainCount(uint32_t* count_out) noexcept {
    DomainTable& table = Domains(CurrentRole());
    MutexGuard lock(table.mutex);
    if (count_out != nullptr) *count_out = static_cast<uint32_t>(Domains(Role::kWorking).count);
    return DOM_OK;
}

AAADOM_NO_TSA DomainInfo* DOM_GetFirstDomain(void) noexcept {
    for (DomainInfo* record : Domains(CurrentRole()).slots) {
        if (record != nullptr) return record;
    }
    return nullptr;
}

AAADOM_NO_TSA DomainInfo* DOM_GetNextDomain(const char* name) noexcept {
    DomainTable& table = Domains(CurrentRole());
    const DomainInfo* named = table.Find(name);
    if (named == nullptr) return nullptr;
    for (uint32_t slot = named->slot + 1; slot < DOM_MAX_DOMAINS; ++slot) {
        if (table.slots[slot] != nullptr) return table.slots[slot];
    }
    return nullptr;
}

// The management walks follow the working role's order from every role and return the calling
// role's record of the name found there: null when that role has none, the walk does not skip it.

DomainInfo* DOM_MibGetFirstDomain(void) noexcept {
    const ZorvDomain* node = WorkingMibHead();
    return node == nullptr ? nullptr : DOM_FindDomainByName(node->domain_name);
}

DomainInfo* DOM_MibGetNextDomain(const char* name, uint32_t name_length) noexcept {
    if (name == nullptr) return nullptr;
    const ZorvDomain* node = NextMibNode(MibWalkStart(name, name_length), name, name_length);
    if (node == nullptr) return nullptr;
    RememberMibWalk(node);
    return DOM_FindDomainByName(node->domain_name);
}

DomainInfo* DOM_NetConfGetFirstDomain(void) noexcept {
    const NetConfDomain* node = NextNetConfNode(WorkingNetConfSentinel(), nullptr);
    return node == nullptr ? nullptr : DOM_FindDomainByName(node->domain_name);
}

DomainInfo* DOM_NetConfGetNextDomain(const char* name) noexcept {
    if (name == nullptr) return nullptr;
    const NetConfDomain* node = NextNetConfNode(WorkingNetConfSentinel(), name);
    return node == nullptr ? nullptr : DOM_FindDomainByName(node->domain_name);
}

}  // extern "C"
