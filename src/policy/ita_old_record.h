// Accounting policies as former releases stored them: one fixed block under a key of its own.
#pragma once

#include <aaadom/accounting_policy.h>
#include <platform/dbm.h>

#include "policy/ita_record.h"

namespace aaadom {

struct ItaOldRecordKey : ItaKey<DOM_DB_ITA_POLICY_OLD_KEY_SIZE> {
    explicit ItaOldRecordKey(const char* name) noexcept
        : ItaKey(DOM_DB_PREFIX_ITA_POLICY_OLD, name) {}
};
static_assert(DOM_DB_PREFIX_ITA_POLICY_OLD_LEN + DOM_ITA_NAME_SIZE ==
              DOM_DB_ITA_POLICY_OLD_KEY_SIZE);

/// A new record with the name that the block carries; null when none is saved, it is none (which is
/// logged) or there is no memory.
ItaPolicy* LoadOldItaRecord(DBM_HANDLE handle, const char* name) noexcept;

}  // namespace aaadom
