#include <aaadom/accounting_policy_codec.h>
#include <aaadom/codes.h>
#include <aaadom/db_layout.h>
#include <aaadom/results.h>

#include "base/lock.h"
#include "base/text.h"
#include "policy/ita_old_record.h"
#include "policy/ita_record.h"
#include "policy/ita_store.h"

using namespace aaadom;

DBM_HANDLE g_hDomItaDBHandle = DBM_INVALID_HANDLE;

namespace {

bool CopyPolicy(const char* name, ItaPolicy& copy) noexcept {
    ExportedMutexGuard lock(ita_policies_mutex);
    const ItaPolicy* policy = DOM_ita_policy_GetDomPolicyByName(name);
    if (policy != nullptr) copy = *policy;
    return policy != nullptr;
}

/// Writes first and deletes then, so that a crash in between leaves both records and loses nothing.
/// A policy that cannot be written keeps its old record and is migrated by a later read.
void Migrate(const char* name, const ItaPolicy& policy) noexcept {
    if (StoreItaRecord(g_hDomItaDBHandle, name, policy) != DOM_OK) return;
    const ItaOldRecordKey old(name);
    // An old record that stays is never read again: the current one comes first.
    (void)DBM_DeleteKey(g_hDomItaDBHandle, old.Text(), old.Length());
}

}  // namespace

extern "C" {

void DOM_ita_db_SetGlobalHandle(DBM_HANDLE handle) noexcept {
    g_hDomItaDBHandle = handle;
}

uint32_t DOM_ita_db_SetPolicy(const char* name, uint16_t operation) noexcept {
    if (name == nullptr) return DOM_ERR_FAILED;
    if (operation != DOM_PRESENT) {
        const ItaRecordKey key(name);
        (void)DBM_DeleteKey(g_hDomItaDBHandle, key.Text(), key.Length());
        // The answer to every deletion: callers do not go by it but look for the key themselves,
        // and the answer must not tell them more at one time than at another.
        return DOM_ERR_FAILED;
    }
    ItaPolicy policy;
    if (!CopyPolicy(name, policy)) return DOM_ERR_FAILED;
    return StoreItaRecord(g_hDomItaDBHandle, name, policy);
}

ItaPolicy* DOM_ita_db_GetMemPolicyFromDBByName(DBM_HANDLE handle, const char* name) noexcept {
    if (name == nullptr) return nullptr;
    ItaPolicy* policy = LoadItaRecord(handle, name);
    if (policy == nullptr) {
        policy = LoadOldItaRecord(handle, name);
        if (policy == nullptr) return nullptr;
        Migrate(name, *policy);
    }
    CopyText(policy->name, name);
    return policy;
}

uint32_t DOM_ita_db_IsPolicyExist(DBM_HANDLE handle, const char* name) noexcept {
    return name != nullptr && IsItaRecordSaved(handle, name) ? 1 : 0;
}

void DOM_ita_db_SetDbChangeInfo(const char* name, uint16_t operation,
                                DomDbUpdateReq* change) noexcept {
    if (change == nullptr) return;
    change->object_type = DOM_DB_ITA_POLICY;
    change->operation = operation;
    CopyText(change->ita_policy_name, name);
}

}  // extern "C"
