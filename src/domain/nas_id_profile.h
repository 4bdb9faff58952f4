// The NAS-ID profiles of one role. The table has no lock: callers serialise changes of profiles.
#pragma once

#include <platform/hash.h>

#include <cstdint>

#include "base/role.h"
#include "domain/tables.h"

namespace aaadom {

struct NasIdProfile {
    HASH_NODE links;  // first: the table's links are the node
    char name[kNasIdNameSize];
};

/// The first profile of a bucket, then its followers; null at the end.
inline const NasIdProfile* AsNasIdProfile(const HASH_NODE* node) noexcept {
    return reinterpret_cast<const NasIdProfile*>(node);
}

/// By the whole name in any letter case, or null: a name that is too long to be kept is never
/// found.
NasIdProfile* FindNasIdProfile(Role role, const char* name) noexcept;
/// False when memory is short or there is no table. Does not look for one of the same name.
[[nodiscard]] bool AddNasIdProfile(Role role, const char* name) noexcept;
/// Takes the profile out of its table and frees it.
void RemoveNasIdProfile(NasIdProfile* profile) noexcept;

}  // namespace aaadom
