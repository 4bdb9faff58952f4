#include "saved_keys.h"

#include <string_view>
#include <utility>

#include "log.h"
#include "saved_read.h"
#include "short_text.h"

namespace aaad {
namespace {

struct Iterator {
    ~Iterator() { DBM_FreeIterator(position); }
    void* position = nullptr;
};

using Keys = std::vector<SavedKey>;

/// A database that refuses to count or to list gives fewer keys, and does not tell; so does one
/// that cannot read what kind of value a key has.
struct Listing {
    Keys keys;
    uint32_t saved;  // how many there are
    explicit operator bool() const { return keys.size() == saved; }
};

Listing List(DBM_HANDLE handle, uint32_t value_type) {
    std::vector<DBM_KEY_SLOT> slots(DBM_GetKeyNumByValueType(handle, value_type));
    uint32_t filled = 0;
    if (!slots.empty()) {
        Iterator iterator;
        filled = DBM_GetKeysByValueType(handle, static_cast<uint32_t>(slots.size()), value_type,
                                        &iterator.position, slots.data());
    }
    Keys keys;
    keys.reserve(filled);
    for (uint32_t i = 0; i < filled; ++i) {
        std::string_view text(slots[i].key, slots[i].key_length);
        if (!text.empty() && text.back() == '\0') text.remove_suffix(1);
        keys.push_back({std::string(text), slots[i].kind});
    }
    return {std::move(keys), DBM_GetKeyNumByValueType(handle, value_type)};
}

}  // namespace

std::optional<Keys> SavedKeys(DBM_HANDLE handle, uint32_t value_type) {
    Listing listing = ReadSaved([&] { return List(handle, value_type); });
    if (!listing) return std::nullopt;
    return std::move(listing.keys);
}

std::optional<Keys> LoadableKeys(DBM_HANDLE handle, uint32_t value_type) {
    Listing listing = ReadSaved([&] { return List(handle, value_type); });
    if (listing) return std::move(listing.keys);
    Log(Severity::kError,
        "configuration database: only %zu of %u keys with values of type %u can be listed. Restore "
        "it from a backup, or set again what is missing",
        listing.keys.size(), listing.saved, value_type);
    if (listing.keys.empty()) return std::nullopt;
    return std::move(listing.keys);
}

std::optional<std::string> NameInKey(const SavedKey& key, const char* prefix) {
    const std::string_view wanted(prefix);
    if (key.text.compare(0, wanted.size(), wanted) != 0) return std::nullopt;
    const std::string name = key.text.substr(wanted.size());
    // A key may hold any bytes; a name ends at its first zero.
    if (name.empty() || name.size() >= kShortTextSize || name.find('\0') != std::string::npos) {
        return std::nullopt;
    }
    return name;
}

}  // namespace aaad
