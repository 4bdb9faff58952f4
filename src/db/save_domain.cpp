#include <aaadom/codes.h>
#include <aaadom/database.h>
#include <aaadom/db_layout.h>
#include <aaadom/domain.h>
#include <aaadom/domain_codec.h>
#include <aaadom/domain_table.h>
#include <aaadom/results.h>

#include "base/text.h"
#include "db/binary_value.h"
#include "db/save.h"
#include "db/stored_message.h"

namespace aaadom {
namespace {

/// Slot of the domain in the calling role's table, which is its array index; false when there is no
/// such domain.
bool FindSlot(const char* name, uint32_t& slot) noexcept {
    (void)DOM_DomainInfoTableLock();  // a default mutex fails only when misused
    const DomainInfo* domain = DOM_FindDomainByName(name);
    if (domain != nullptr) slot = domain->slot;
    (void)DOM_DomainInfoTableUnlock();
    return domain != nullptr;
}

uint32_t SaveName(const DomDbUpdateReq& request, TlvPtr (*encode)(const char* name),
                  const char* key, uint32_t key_length) noexcept {
    if (request.operation != DOM_PRESENT) return StoreEmpty(key, key_length, request.object_type);
    char name[DOM_NAME_SIZE];
    CopyField(name, request.object_name);
    return StoreMessage(encode(name), key, key_length, request.object_type);
}

}  // namespace

/// Deleting does nothing here: once a domain has left the table its index is known to the deleter
/// alone, who uses DOM_DeleteDomainToDBByIndex.
uint32_t SaveDomain(const DomDbUpdateReq& request) {
    if (request.operation != DOM_PRESENT) return DOM_OK;
    char name[DOM_NAME_SIZE];
    CopyField(name, request.object_name);
    uint32_t slot = 0;
    if (!FindSlot(name, slot)) return DOM_ERR_FAILED;

    const TlvPtr record(DOM_EncodeDomain(name));  // takes the table lock itself
    if (!record) return DOM_ERR_FAILED;
    const ValueBuffer buffer;
    const uint32_t length = buffer.Flush(record, ValueBuffer::Size());
    if (length == 0) return DOM_ERR_FAILED;
    return DBM_SetArray(g_hDomDbmHandle, DOM_DB_KEY_DOMAINS, DOM_DB_KEY_DOMAINS_LEN, slot, length,
                        buffer.Data(), DOM_DB_DOMAIN) < 0
               ? DOM_ERR_FAILED
               : DOM_OK;
}

uint32_t SaveDefaultDomain(const DomDbUpdateReq& request) {
    constexpr auto encode = [](const char* name) {
        constexpr uint32_t kNoValue18 = 0;
        return TlvPtr(DOM_EncodeDefaultDomain(name, kNoValue18));
    };
    return SaveName(request, encode, DOM_DB_KEY_DEFAULT_DOMAIN, DOM_DB_KEY_DEFAULT_DOMAIN_LEN);
}

uint32_t SaveUnknownDomain(const DomDbUpdateReq& request) {
    constexpr auto encode = [](const char* name) { return TlvPtr(DOM_EncodeUnknownDomain(name)); };
    return SaveName(request, encode, DOM_DB_KEY_UNKNOWN_DOMAIN, DOM_DB_KEY_UNKNOWN_DOMAIN_LEN);
}

}  // namespace aaadom
