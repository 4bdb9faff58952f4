// The record of an accounting policy as former releases stored it: read, rewritten, read again.
//
// Input: the record, which lies under the name "gold".
#include <aaadom/accounting_policy.h>
#include <aaadom/accounting_policy_codec.h>
#include <aaadom/db_layout.h>

#include <cstring>

#include "promise.h"
#include "stage.h"

using fuzz::Stage;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const Stage stage;
    const DBM_HANDLE handle = stage.Configuration();
    const char key[] = DOM_DB_PREFIX_ITA_POLICY_OLD "gold";
    if (DBM_SetBinary(handle, key, sizeof key, -1, static_cast<uint32_t>(size), data,
                      DOM_DB_ITA_POLICY) != 0)
        return 0;
    ItaPolicy* policy = DOM_ita_db_GetMemPolicyFromDBByName(handle, "gold");
    if (policy == nullptr) {
        FUZZ_PROMISE((DBM_IsKeyExist(handle, key, sizeof key) & 0xFFFF) == 1);  // kept as it is
        return 0;
    }
    FUZZ_PROMISE(strcmp(policy->name, "gold") == 0);
    // Whatever it was, it is now a record of the current form that holds the same.
    FUZZ_PROMISE((DBM_IsKeyExist(handle, key, sizeof key) & 0xFFFF) == 0);
    ItaPolicy* again = DOM_ita_db_GetMemPolicyFromDBByName(handle, "gold");
    FUZZ_PROMISE(again != nullptr && again->level_count == policy->level_count);
    FUZZ_PROMISE(memcmp(again->levels, policy->levels, sizeof again->levels) == 0);
    FUZZ_PROMISE(again->quota_out_state == policy->quota_out_state);
    DOM_ita_policy_DestroyPolicy(again);
    DOM_ita_policy_DestroyPolicy(policy);
    return 0;
}
