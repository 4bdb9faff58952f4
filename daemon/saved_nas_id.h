// NAS-ID profiles and bindings as they are saved. The library has no walk over those in memory, and
// memory never differs from the database between two requests.
#pragma once

#include <aaadom/nas_id.h>
#include <platform/dbm.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace aaad {

struct NasIdBinding {
    uint16_t vlan_id;
    char nas_id[DOM_NASID_NAME_SIZE];
};

/// Names in ascending order. What a database holds in the place of a profile and is none is left
/// out and, with `damaged`, its key given there. False when memory is short or the database
/// refuses; throws nothing.
bool SavedNasIdProfiles(DBM_HANDLE handle, std::vector<std::string>& names,
                        std::vector<std::string>* damaged = nullptr);

/// The bindings of one profile by ascending VLAN.
class SavedNasIdBindings {
  public:
    /// `profile` in its saved spelling. A profile that is not saved has no bindings.
    SavedNasIdBindings(DBM_HANDLE handle, const std::string& profile);
    ~SavedNasIdBindings() { DBM_CursorClose(cursor_); }
    SavedNasIdBindings(const SavedNasIdBindings&) = delete;
    SavedNasIdBindings& operator=(const SavedNasIdBindings&) = delete;

    /// The first binding at or behind a VLAN.
    std::optional<NasIdBinding> From(uint16_t vlan_id);
    std::optional<NasIdBinding> Next();
    /// True from the first time on that the database could not be read: what came is incomplete.
    bool Failed() const { return failed_; }

  private:
    std::optional<NasIdBinding> Taken(int32_t length, const void* entry);

    bool failed_ = false;
    DBM_CURSOR* cursor_ = nullptr;
};

}  // namespace aaad
