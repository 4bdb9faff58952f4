#include "domain/nas_id_profile.h"

#include <cstdlib>

#include "base/text.h"

namespace aaadom {
namespace {

int CompareName(const void* name, const HASH_NODE* node) {
    return strcasecmp(static_cast<const char*>(name), AsNasIdProfile(node)->name);
}

}  // namespace

NasIdProfile* FindNasIdProfile(Role role, const char* name) noexcept {
    HASH_TABLE* table = NasIdProfiles(role);
    if (table == nullptr || name == nullptr) return nullptr;
    return reinterpret_cast<NasIdProfile*>(HASH_Find(table, name, CompareName));
}

bool AddNasIdProfile(Role role, const char* name) noexcept {
    HASH_TABLE* table = NasIdProfiles(role);
    if (table == nullptr || name == nullptr) return false;
    auto* profile = static_cast<NasIdProfile*>(calloc(1, sizeof(NasIdProfile)));
    if (profile == nullptr) return false;
    CopyText(profile->name, name);
    HASH_LinkAtHead(&table->buckets[table->key_fn(profile->name)], &profile->links);
    return true;
}

void RemoveNasIdProfile(NasIdProfile* profile) noexcept {
    HASH_Unlink(&profile->links);
    free(profile);
}

}  // namespace aaadom
