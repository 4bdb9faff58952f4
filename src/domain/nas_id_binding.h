// The bindings of (profile, VLAN) to NAS-IDs of one role. Callers hold the table's mutex.
#pragma once

#include <platform/hash.h>

#include <cstdint>

#include "domain/tables.h"

namespace aaadom {

struct NasIdBinding {
    HASH_NODE links;  // first: the table's links are the node
    uint16_t vlan_id;
    char profile_name[kNasIdNameSize];  // as given, in any letter case
    char nas_id[kNasIdNameSize];
};

inline const NasIdBinding* AsNasIdBinding(const HASH_NODE* node) noexcept {
    return reinterpret_cast<const NasIdBinding*>(node);
}

/// By VLAN and the whole profile name in any letter case, or null.
NasIdBinding* FindNasIdBinding(const NasIdBindTable& table, const char* profile_name,
                               uint16_t vlan_id) noexcept AAADOM_REQUIRES(table.mutex);
/// False when memory is short or there is no table. Does not look for one of the same key.
[[nodiscard]] bool AddNasIdBinding(NasIdBindTable& table, const char* profile_name,
                                   const char* nas_id, uint16_t vlan_id) noexcept
    AAADOM_REQUIRES(table.mutex);
/// Takes the binding out of its table and frees it.
void RemoveNasIdBinding(NasIdBinding* binding) noexcept;
/// Removes the bindings, on every VLAN, whose profile name is spelled exactly so.
void RemoveNasIdBindingsOf(NasIdBindTable& table, const char* profile_name) noexcept
    AAADOM_REQUIRES(table.mutex);

}  // namespace aaadom
