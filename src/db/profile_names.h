// Keys of saved profiles: a prefix that tells the sort of profile, and the profile's name.
#pragma once

#include <aaadom/database.h>
#include <aaadom/db_layout.h>

#include <cstdint>

namespace aaadom {

/// Writes prefix and name into `key`, cut to `size` - 1 characters; the length with the terminator.
uint32_t BuildProfileKey(const char* prefix, const char* name, uint32_t size, char* key) noexcept;

/// One key of a profile.
class ProfileKey {
  public:
    ProfileKey(const char* prefix, const char* name) noexcept
        : length_(BuildProfileKey(prefix, name, sizeof text_, text_)) {}

    const char* Text() const noexcept { return text_; }
    uint32_t Length() const noexcept { return length_; }

  private:
    char text_[DOM_DB_PROFILE_KEY_SIZE];
    uint32_t length_;
};

/// The key of the list that holds a NAS-ID profile's bindings.
class NasIdProfileKey : public ProfileKey {
  public:
    explicit NasIdProfileKey(const char* name) noexcept
        : ProfileKey(DOM_DB_PREFIX_NASID_PROFILE, name) {}
};

/// Appends the name behind `prefix` of every key of a value type. DOM_OK, DOM_ERR_NOT_FOUND for no
/// such key, DOM_ERR_FAILED without memory for the keys; `if_cut_short` when memory ends between
/// two names, which stay in the list.
[[nodiscard]] uint32_t AppendProfileNames(DBM_HANDLE handle, uint32_t value_type,
                                          const char* prefix, uint32_t if_cut_short,
                                          DomProfileNameList& list) noexcept;

}  // namespace aaadom
