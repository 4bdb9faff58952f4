#include "profile_load.h"

#include <aaadom/db_layout.h>
#include <aaadom/profile.h>
#include <arpa/inet.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <string>
#include <vector>

#include "log.h"
#include "saved_keys.h"
#include "saved_read.h"

namespace aaad {
namespace {

struct CriticalKind {
    using Profile = CriticalProfile;
    using Segment = CriticalSegment;
    static constexpr uint32_t kListType = DOM_DB_CRITICAL_ENTRY;
    static constexpr const char* kPrefix = DOM_DB_PREFIX_CRITICAL_PROFILE;
    static constexpr const char* kSegmentPrefix = DOM_DB_PREFIX_CRITICAL_SEGMENT;
    static constexpr size_t kSize = DOM_DB_CRITICAL_ENTRY_SIZE;
    static constexpr size_t kTextOffset = DOM_DB_CRITICAL_ENTRY_TEXT_OFFSET;
    static constexpr size_t kVpnOffset = DOM_DB_CRITICAL_ENTRY_VPN_OFFSET;
    static constexpr uint32_t kStoreFull = DOM_CRITICAL_STORE_FULL;
    static constexpr uint32_t kVpnFull = DOM_CRITICAL_VPN_FULL;
    static constexpr auto Find = DOM_critical_FindProfile;
    static constexpr auto Add = DOM_critical_AddProfile;
    static constexpr auto AddVpn = DOM_critical_AddVpn;
    static void ReadNumbers(const char* bytes, Segment& segment) {
        uint16_t value16;
        memcpy(&value16, bytes + DOM_DB_CRITICAL_ENTRY_VALUE16_OFFSET, sizeof value16);
        segment.value16 = ntohs(value16);
    }
};

struct AuthorKind {
    using Profile = AuthorProfile;
    using Segment = AuthorSegment;
    static constexpr uint32_t kListType = DOM_DB_AUTHOR_ENTRY;
    static constexpr const char* kPrefix = DOM_DB_PREFIX_AUTHOR_PROFILE;
    static constexpr const char* kSegmentPrefix = DOM_DB_PREFIX_AUTHOR_SEGMENT;
    static constexpr size_t kSize = DOM_DB_AUTHOR_ENTRY_SIZE;
    static constexpr size_t kTextOffset = DOM_DB_AUTHOR_ENTRY_TEXT_OFFSET;
    static constexpr size_t kVpnOffset = DOM_DB_AUTHOR_ENTRY_VPN_OFFSET;
    static constexpr uint32_t kStoreFull = DOM_AUTHOR_STORE_FULL;
    static constexpr uint32_t kVpnFull = DOM_AUTHOR_VPN_FULL;
    static constexpr auto Find = DOM_author_FindProfile;
    static constexpr auto Add = DOM_author_AddProfile;
    static constexpr auto AddVpn = DOM_author_AddVpn;
    static void ReadNumbers(const char*, Segment&) {}
};

/// Names the record that is left out.
class Damage {
  public:
    explicit Damage(bool tell) : tell_(tell) {}
    void Tell(const std::string& key, const char* reason) const {
        if (!tell_) return;
        Log(Severity::kError,
            "saved record \"%s\": %s; it was skipped, the rest is served. Delete the profile, "
            "after "
            "creating it if it is missing, and set it anew; or restore the database from a backup",
            key.c_str(), reason);
    }

  private:
    const bool tell_;
};

struct Cursor {
    Cursor(DBM_HANDLE handle, const std::string& key) {
        const auto length = static_cast<uint32_t>(key.size() + 1);
        if (DBM_CursorOpen(handle, key.c_str(), length, &position) != 0) position = nullptr;
    }
    ~Cursor() { DBM_CursorClose(position); }
    Cursor(const Cursor&) = delete;
    Cursor& operator=(const Cursor&) = delete;
    DBM_CURSOR* position = nullptr;
};

bool IsText(const char* field) {
    return memchr(field, '\0', DOM_DB_PROFILE_TEXT_SIZE) != nullptr;
}

/// Why stored bytes are no segment, null when they are one.
template <typename Kind>
const char* ReadSegment(int32_t length, const char* bytes, typename Kind::Segment& segment) {
    if (length != static_cast<int32_t>(Kind::kSize)) return "its length is none of a segment";
    if (!IsText(bytes + Kind::kTextOffset)) return "its segment name does not end";
    uint32_t segment_id;
    memcpy(&segment_id, bytes, sizeof segment_id);
    segment.segment_id = ntohl(segment_id);
    if (segment.segment_id == 0) return "its segment identifier is 0";
    Kind::ReadNumbers(bytes, segment);
    memcpy(segment.segment_name, bytes + Kind::kTextOffset, sizeof segment.segment_name);
    return nullptr;
}

/// The entries of one list.
struct Entries {
    enum class End { kReached, kNotReached, kNoList };
    /// Whether they are all there.
    explicit operator bool() const { return end == End::kReached; }

    End end = End::kNoList;
    std::vector<std::string> bytes;
};

/// Those up to the first one that cannot be read.
template <typename Kind>
Entries ReadEntries(DBM_HANDLE handle, const std::string& key) {
    Entries entries;
    const Cursor cursor(handle, key);
    if (cursor.position == nullptr) return entries;
    char bytes[Kind::kSize + 1];  // so that a longer entry shows
    int32_t length = DBM_CursorFirst(cursor.position, sizeof bytes, bytes);
    for (; length > 0; length = DBM_CursorNext(cursor.position, sizeof bytes, bytes)) {
        entries.bytes.emplace_back(bytes, std::min<size_t>(length, sizeof bytes));
    }
    entries.end = length == 0 ? Entries::End::kReached : Entries::End::kNotReached;
    return entries;
}

/// False when memory is short.
template <typename Kind>
bool LoadVpns(const Entries& entries, const std::string& key, typename Kind::Profile& profile,
              const Damage& damage) {
    for (const std::string& bytes : entries.bytes) {
        typename Kind::Segment segment{};
        const char* reason =
            ReadSegment<Kind>(static_cast<int32_t>(bytes.size()), bytes.data(), segment);
        const char* vpn = reason == nullptr ? bytes.data() + Kind::kVpnOffset : nullptr;
        if (reason == nullptr && !IsText(vpn)) reason = "a VPN name does not end";
        if (reason == nullptr && vpn[0] == '\0') reason = "a VPN name is empty";
        if (reason == nullptr) {
            const uint32_t added = Kind::AddVpn(vpn, &profile, &segment);
            if (added == Kind::kVpnFull) {
                damage.Tell(key, "it has more VPNs than a profile may have");
                return true;
            }
            if (added != 0) return false;
        } else {
            damage.Tell(key, reason);
        }
    }
    if (!entries) damage.Tell(key, "its entries cannot be read to the end");
    return true;
}

template <typename Kind>
void LoadDefaultSegment(DBM_HANDLE handle, typename Kind::Profile& profile, const Damage& damage) {
    constexpr int32_t kWhole = 0;
    const std::string key = std::string(Kind::kSegmentPrefix) + profile.name;
    const auto key_length = static_cast<uint32_t>(key.size() + 1);
    if (!ReadSaved([&] { return DBM_IsKeyExist(handle, key.c_str(), key_length) == 1; })) return;
    char bytes[Kind::kSize + 1];  // so that a longer value shows
    int32_t length = 0;
    (void)ReadSaved([&] {  // what it lacks shows below
        length = DBM_GetBinary(handle, key.c_str(), key_length, kWhole, sizeof bytes, bytes);
        return length > 0;
    });
    typename Kind::Segment segment{};
    const char* reason = ReadSegment<Kind>(length, bytes, segment);
    if (reason != nullptr) {
        damage.Tell(key, reason);
        return;
    }
    profile.default_segment = segment;
}

template <typename Kind>
bool LoadKind(DBM_HANDLE handle, const Damage& damage) {
    const auto keys = LoadableKeys(handle, Kind::kListType);
    if (!keys) return false;
    for (const SavedKey& key : *keys) {
        const auto name = NameInKey(key, Kind::kPrefix);
        if (!name || key.kind != DBM_KIND_SORTED) {
            damage.Tell(key.text, "it is no profile");
            continue;
        }
        const Entries entries = ReadSaved([&] { return ReadEntries<Kind>(handle, key.text); });
        if (entries.end == Entries::End::kNoList) {
            damage.Tell(key.text, "its entries cannot be read");
            continue;
        }
        if (Kind::Find(name->c_str()) != nullptr) {
            damage.Tell(key.text, "its name differs from another one's in letter case alone");
            continue;
        }
        const uint32_t added = Kind::Add(name->c_str());
        if (added == Kind::kStoreFull) {
            damage.Tell(key.text, "there are more profiles than a device may have");
            continue;
        }
        typename Kind::Profile* profile = Kind::Find(name->c_str());
        if (added != 0 || profile == nullptr) return false;
        if (!LoadVpns<Kind>(entries, key.text, *profile, damage)) return false;
        LoadDefaultSegment<Kind>(handle, *profile, damage);
    }
    return true;
}

}  // namespace

bool LoadProfiles(DBM_HANDLE handle, bool tell) {
    const Damage damage(tell);
    try {
        return LoadKind<CriticalKind>(handle, damage) && LoadKind<AuthorKind>(handle, damage);
    } catch (const std::bad_alloc&) {
        return false;
    }
}

}  // namespace aaad
