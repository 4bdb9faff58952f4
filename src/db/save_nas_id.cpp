// NAS-ID profiles: one sorted list a profile, one entry a binding, by VLAN.
#include <aaadom/codes.h>
#include <aaadom/database.h>
#include <aaadom/db_layout.h>
#include <aaadom/results.h>

#include <cstring>

#include "base/text.h"
#include "db/binary_value.h"
#include "db/profile_names.h"
#include "db/save.h"

namespace aaadom {
namespace {

constexpr uint32_t kListAttributes[4] = {DOM_DB_NASID_ENTRY_VLAN_OFFSET,
                                         DOM_DB_NASID_ENTRY_VLAN_SIZE, DBM_KEY_KIND_U16, 0};
constexpr uint32_t kAttributeSets = 1;

/// The stored bytes of one binding; without a NAS-ID it is the probe for a VLAN.
struct Entry {
    explicit Entry(uint16_t vlan_id) noexcept {
        memcpy(bytes + DOM_DB_NASID_ENTRY_VLAN_OFFSET, &vlan_id, sizeof vlan_id);
    }
    char* Text() noexcept { return bytes + DOM_DB_NASID_ENTRY_TEXT_OFFSET; }

    char bytes[DOM_DB_NASID_ENTRY_SIZE] = {};
};
static_assert(DOM_DB_NASID_ENTRY_VLAN_SIZE == sizeof(uint16_t));
static_assert(DOM_DB_NASID_ENTRY_TEXT_OFFSET + DOM_DB_NASID_ENTRY_TEXT_SIZE ==
              DOM_DB_NASID_ENTRY_SIZE);

NasIdProfileKey KeyOf(const DomDbUpdateReq& request) noexcept {
    char name[sizeof request.nas_id_profile_name];
    CopyField(name, request.nas_id_profile_name);
    return NasIdProfileKey(name);
}

bool Find(const NasIdProfileKey& key, Entry& entry) noexcept {
    return DBM_GetSortList(g_hDomDbmHandle, key.Text(), key.Length(), sizeof entry.bytes,
                           entry.bytes) >= 0;
}

uint32_t Insert(const NasIdProfileKey& key, const Entry& entry) noexcept {
    return DBM_InsertSortList(g_hDomDbmHandle, key.Text(), key.Length(), sizeof entry.bytes,
                              entry.bytes, DOM_DB_NASID_VLAN) == 0
               ? DOM_OK
               : DOM_ERR_FAILED;
}

uint32_t Remove(const NasIdProfileKey& key, const Entry& entry) noexcept {
    return DBM_RemoveSortList(g_hDomDbmHandle, key.Text(), key.Length(), sizeof entry.bytes,
                              entry.bytes);
}

/// All or nothing: a crash between the two calls must not cost the binding.
uint32_t Replace(const NasIdProfileKey& key, const Entry& stored, const Entry& entry) noexcept {
    if (DBM_Begin(g_hDomDbmHandle) != 0) return DOM_ERR_FAILED;
    if (Remove(key, stored) != DOM_OK || Insert(key, entry) != DOM_OK) {
        (void)DBM_Abort(g_hDomDbmHandle);  // the replacement failed already
        return DOM_ERR_FAILED;
    }
    return DBM_Commit(g_hDomDbmHandle) == 0 ? DOM_OK : DOM_ERR_FAILED;
}

}  // namespace

uint32_t SaveNasIdProfile(const DomDbUpdateReq& request) {
    const NasIdProfileKey key = KeyOf(request);
    const bool saved = IsKeySaved(g_hDomDbmHandle, key.Text(), key.Length());
    if (request.operation != DOM_PRESENT)
        return saved ? DBM_DeleteKey(g_hDomDbmHandle, key.Text(), key.Length()) : DOM_ERR_FAILED;
    if (saved) return DOM_OK;
    // The list has the value type of its entries, by which the profiles are found again.
    return DBM_CreateSortList(g_hDomDbmHandle, key.Text(), key.Length(), kListAttributes,
                              kAttributeSets, DOM_DB_NASID_VLAN) == 0
               ? DOM_OK
               : DOM_ERR_FAILED;
}

uint32_t SaveNasIdBinding(const DomDbUpdateReq& request) {
    const NasIdProfileKey key = KeyOf(request);
    Entry stored(request.vlan_id);
    const bool found = Find(key, stored);
    if (request.operation != DOM_PRESENT) return found ? Remove(key, stored) : DOM_ERR_FAILED;

    Entry entry(request.vlan_id);
    CopyBounded(entry.Text(), DOM_DB_NASID_ENTRY_TEXT_SIZE, request.nas_id, sizeof request.nas_id);
    if (!found) return Insert(key, entry);
    if (strncmp(stored.Text(), entry.Text(), DOM_DB_NASID_ENTRY_TEXT_SIZE) == 0) return DOM_OK;
    return Replace(key, stored, entry);
}

}  // namespace aaadom
