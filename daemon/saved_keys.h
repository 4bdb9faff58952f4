// The keys of one value type in the database, whatever somebody put there.
#pragma once

#include <platform/dbm.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace aaad {

struct SavedKey {
    std::string text;  // without the terminator
    uint32_t kind;     // DBM_KIND_...
};

/// Ascending by their bytes; none when the database does not list them all. Throws std::bad_alloc.
std::optional<std::vector<SavedKey>> SavedKeys(DBM_HANDLE handle, uint32_t value_type);
/// The same for a start: damage of one key costs no other its place. Those that are listed, when
/// not all are, and a line in the log; none when not a single one is.
std::optional<std::vector<SavedKey>> LoadableKeys(DBM_HANDLE handle, uint32_t value_type);

/// The object's name in a key, which is the prefix and the name; none when the key is not so, or
/// its name is empty or longer than 31 characters. Throws std::bad_alloc.
std::optional<std::string> NameInKey(const SavedKey& key, const char* prefix);

}  // namespace aaad
