#include "saved_nas_id.h"

#include <aaadom/database.h>
#include <aaadom/db_layout.h>

#include <cstring>
#include <new>

#include "saved_keys.h"

namespace aaad {
namespace {

using Entry = char[DOM_DB_NASID_ENTRY_SIZE];

/// The bytes need not be ours: a database may have been repaired by hand.
std::optional<NasIdBinding> Read(int32_t length, const Entry& entry) {
    if (length != static_cast<int32_t>(sizeof entry)) return std::nullopt;
    NasIdBinding binding{};
    memcpy(&binding.vlan_id, entry + DOM_DB_NASID_ENTRY_VLAN_OFFSET, sizeof binding.vlan_id);
    memcpy(binding.nas_id, entry + DOM_DB_NASID_ENTRY_TEXT_OFFSET, sizeof binding.nas_id - 1);
    return binding;
}

}  // namespace

static_assert(sizeof(NasIdBinding::nas_id) == DOM_DB_NASID_ENTRY_TEXT_SIZE);

bool SavedNasIdProfiles(DBM_HANDLE handle, std::vector<std::string>& names,
                        std::vector<std::string>* damaged) {
    try {
        const auto keys = damaged != nullptr ? LoadableKeys(handle, DOM_DB_NASID_VLAN)
                                             : SavedKeys(handle, DOM_DB_NASID_VLAN);
        if (!keys) return false;
        for (const SavedKey& key : *keys) {
            const auto name = NameInKey(key, DOM_DB_PREFIX_NASID_PROFILE);
            if (name && key.kind == DBM_KIND_SORTED) {
                names.push_back(*name);
            } else if (damaged != nullptr) {
                damaged->push_back(key.text);
            }
        }
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

SavedNasIdBindings::SavedNasIdBindings(DBM_HANDLE handle, const std::string& profile) {
    char key[DOM_DB_PROFILE_KEY_SIZE];
    const uint32_t length = DOM_GetDBkeyFromProfileName(profile.c_str(), key);
    if (DBM_CursorOpen(handle, key, length, &cursor_) != 0) {
        cursor_ = nullptr;
        failed_ = true;
    }
}

std::optional<NasIdBinding> SavedNasIdBindings::Taken(int32_t length, const void* entry) {
    if (length < 0) failed_ = true;
    return Read(length, *static_cast<const Entry*>(entry));
}

std::optional<NasIdBinding> SavedNasIdBindings::From(uint16_t vlan_id) {
    Entry entry;
    if (cursor_ == nullptr) return std::nullopt;
    return Taken(DBM_CursorSeek(cursor_, &vlan_id, sizeof entry, entry), entry);
}

std::optional<NasIdBinding> SavedNasIdBindings::Next() {
    Entry entry;
    if (cursor_ == nullptr) return std::nullopt;
    return Taken(DBM_CursorNext(cursor_, sizeof entry, entry), entry);
}

}  // namespace aaad
