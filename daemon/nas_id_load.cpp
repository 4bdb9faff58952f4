#include "nas_id_load.h"

#include <aaadom/codes.h>
#include <aaadom/nas_id.h>

#include "log.h"
#include "saved_nas_id.h"

namespace aaad {

bool LoadNasIdProfiles(DBM_HANDLE handle) {
    std::vector<std::string> names;
    std::vector<std::string> damaged;
    if (!SavedNasIdProfiles(handle, names, &damaged)) return false;
    for (const std::string& key : damaged) {
        Log(Severity::kError,
            "saved record \"%s\": it is no NAS-ID profile; it was skipped, the rest is served. "
            "Delete the profile, after creating it if it is missing, and set it anew; or restore "
            "the database from a backup",
            key.c_str());
    }
    for (const std::string& name : names) {
        const uint32_t added = DOM_ProcNasIdProfileCfg(name.c_str(), DOM_PRESENT, nullptr, nullptr);
        if (added == DOM_NASID_UNCHANGED) {
            // In memory names differ by more than letter case, so only one of the two can be had.
            Log(Severity::kWarning,
                "saved NAS-ID profile \"%s\" differs from another one in letter case alone and was "
                "skipped. Delete one of them",
                name.c_str());
            continue;
        }
        if (added != DOM_NASID_OK) return false;
        SavedNasIdBindings bindings(handle, name);
        for (auto binding = bindings.From(0); binding; binding = bindings.Next()) {
            if (DOM_AddNasIdBindVlanId(name.c_str(), binding->nas_id, binding->vlan_id) ==
                DOM_NASID_FAILED) {
                return false;
            }
        }
        if (bindings.Failed()) return false;
    }
    return true;
}

}  // namespace aaad
