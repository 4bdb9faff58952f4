// Fills the tables of the calling thread's role from the database.
//
// A domain's slot in memory is its index in the database, and the library always puts a domain into
// the first empty slot. Deleted domains leave holes, so a load keeps every hole occupied until the
// last domain is in its place. Otherwise the next change of a domain would be saved over another.
#pragma once

#include <platform/dbm.h>

#include <cstdint>
#include <vector>

namespace aaad {

struct LoadReport {
    uint32_t domains = 0;
    bool default_domain_saved = false;
    /// Older copies of domains that moved to a lower slot; the lower index is the newer copy.
    std::vector<uint32_t> stale_indexes;
    /// Elements that are no domain; their slots stay free, their bytes stay in the database.
    std::vector<uint32_t> undecodable_indexes;
};

/// Sets what switches and flags start as when none are saved; the tables read it when they are
/// made. The two words are the process's, so this comes before the tables of any role. Throws
/// std::bad_alloc.
void LoadRecordDefaults(DBM_HANDLE handle);

/// Initialises the role's tables and loads them. False when memory is short or the tables cannot be
/// made; they are then torn down. Writes nothing to the database. Both roles may do this at the
/// same time.
[[nodiscard]] bool LoadRoleTables(DBM_HANDLE handle, LoadReport& report);

}  // namespace aaad
