#include "policy_load.h"

#include <aaadom/accounting_policy_codec.h>
#include <aaadom/db_layout.h>
#include <aaadom/recording_policy.h>
#include <aaadom/results.h>

#include <cstdlib>
#include <memory>
#include <new>
#include <set>
#include <string>

#include "log.h"
#include "saved_keys.h"
#include "saved_read.h"

namespace aaad {
namespace {

struct PolicyDestroyer {
    void operator()(ItaPolicy* policy) const noexcept { DOM_ita_policy_DestroyPolicy(policy); }
};
using PolicyPtr = std::unique_ptr<ItaPolicy, PolicyDestroyer>;

struct Freer {
    void operator()(RecPolicy* policy) const noexcept { free(policy); }
};
using RecPolicyPtr = std::unique_ptr<RecPolicy, Freer>;

void TellDamage(const std::string& key, const char* what) {
    Log(Severity::kError,
        "saved record \"%s\" is no %s and was skipped, the rest is served. Set the policy anew or "
        "restore the database from a backup",
        key.c_str(), what);
}

bool Exists(DBM_HANDLE handle, const std::string& key) {
    return ReadSaved([&] {
        return DBM_IsKeyExist(handle, key.c_str(), static_cast<uint32_t>(key.size() + 1)) != 0;
    });
}

/// The record of a former release beside a current one: a migration was interrupted. It goes, or
/// the deletion of the policy would bring it back. In the transaction the policy is read once more,
/// now without it: only what is readable from the current record alone may cost the former one.
void RemoveFormerRecord(DBM_HANDLE handle, const std::string& name, const std::string& key) {
    bool removed = false;
    if (DBM_Begin(handle) == 0) {
        const bool deleted =
            DBM_DeleteKey(handle, key.c_str(), static_cast<uint32_t>(key.size() + 1)) == 0;
        const PolicyPtr current(DOM_ita_db_GetMemPolicyFromDBByName(handle, name.c_str()));
        removed = deleted && current != nullptr;
        removed = (removed ? DBM_Commit(handle) : DBM_Abort(handle)) == 0 && removed;
    }
    Log(removed ? Severity::kNotice : Severity::kWarning,
        "accounting policy \"%s\": the record \"%s\" of a former release %s", name.c_str(),
        key.c_str(), removed ? "was left over and is removed" : "could not be removed");
}

struct PolicyCounts {
    unsigned loaded = 0;
    unsigned migrated = 0;
};

void LoadPolicy(DBM_HANDLE handle, const std::string& name, PolicyCounts& counts) {
    const std::string current = DOM_DB_PREFIX_ITA_POLICY + name;
    const std::string former = DOM_DB_PREFIX_ITA_POLICY_OLD + name;
    const bool had_former = Exists(handle, former);
    PolicyPtr policy = ReadSaved(
        [&] { return PolicyPtr(DOM_ita_db_GetMemPolicyFromDBByName(handle, name.c_str())); });
    if (!policy) {
        if (Exists(handle, current)) TellDamage(current, "accounting policy");
        if (had_former) TellDamage(former, "accounting policy");
        return;
    }
    DOM_ita_policy_AddPolicy(policy.release());
    ++counts.loaded;
    if (!had_former) return;
    if (Exists(handle, former) && !Exists(handle, current)) {
        Log(Severity::kWarning,
            "accounting policy \"%s\" of a former release is served, but its record \"%s\" could "
            "not be rewritten (the DBM line before names the cause); the next start tries again",
            name.c_str(), former.c_str());
    } else if (Exists(handle, former)) {
        RemoveFormerRecord(handle, name, former);
    } else {
        ++counts.migrated;
        Log(Severity::kNotice,
            "accounting policy \"%s\" of a former release is rewritten: record \"%s\" becomes "
            "\"%s\"",
            name.c_str(), former.c_str(), current.c_str());
    }
}

}  // namespace

bool LoadAccountingPolicies(DBM_HANDLE handle) {
    try {
        const auto keys = LoadableKeys(handle, DOM_DB_ITA_POLICY);
        if (!keys) return false;
        std::set<std::string> names;
        for (const SavedKey& key : *keys) {
            auto name = NameInKey(key, DOM_DB_PREFIX_ITA_POLICY);
            if (!name) name = NameInKey(key, DOM_DB_PREFIX_ITA_POLICY_OLD);
            if (name) {
                names.insert(std::move(*name));
            } else {
                TellDamage(key.text, "accounting policy");
            }
        }
        PolicyCounts counts;
        for (const std::string& name : names) LoadPolicy(handle, name, counts);
        if (!names.empty()) {
            Log(Severity::kNotice,
                "%u of %zu accounting policies loaded, %u of them from a former release",
                counts.loaded, names.size(), counts.migrated);
        }
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

bool LoadRecordingPolicy(DBM_HANDLE handle, Role role) {
    const bool exists =
        ReadSaved([&] { return DOM_Rec_PolicyIsExist(handle, DOM_REC_POLICY_CONNECTION) != 0; });
    if (!exists) return true;
    RecPolicyPtr policy = ReadSaved([&] {
        return RecPolicyPtr(DOM_Rec_db_GetPolicyFromDBByType(handle, DOM_REC_POLICY_CONNECTION));
    });
    if (!policy || policy->policy_type != DOM_REC_POLICY_CONNECTION) {
        char key[DOM_REC_MODE_SIZE] = {};
        DOM_Rec_GetPolicyMode(DOM_REC_POLICY_CONNECTION, key);
        if (role == Role::kConfiguration) TellDamage(key, "recording policy");
        return true;
    }
    if (role == Role::kWorking) {
        DOM_Rec_SetPolicy(policy.release());
        return true;
    }
    return DOM_Rec_CreatePolicy(DOM_REC_POLICY_CONNECTION) == DOM_OK &&
           DOM_Rec_policy_SetAcctScheme(DOM_REC_POLICY_CONNECTION, policy->acct_scheme) == DOM_OK;
}

}  // namespace aaad
