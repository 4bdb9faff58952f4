#include "saved_keys.h"

#include <string_view>

#include "short_text.h"

namespace aaad {
namespace {

struct Iterator {
    ~Iterator() { DBM_FreeIterator(position); }
    void* position = nullptr;
};

}  // namespace

std::vector<SavedKey> SavedKeys(DBM_HANDLE handle, uint32_t value_type) {
    std::vector<DBM_KEY_SLOT> slots(DBM_GetKeyNumByValueType(handle, value_type));
    if (slots.empty()) return {};
    uint32_t filled;
    {
        Iterator iterator;
        filled = DBM_GetKeysByValueType(handle, static_cast<uint32_t>(slots.size()), value_type,
                                        &iterator.position, slots.data());
    }
    std::vector<SavedKey> keys;
    keys.reserve(filled);
    for (uint32_t i = 0; i < filled; ++i) {
        std::string_view text(slots[i].key, slots[i].key_length);
        if (!text.empty() && text.back() == '\0') text.remove_suffix(1);
        keys.push_back({std::string(text), slots[i].kind});
    }
    return keys;
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
