// Critical and authorization profiles: one sorted list a profile, one entry a VPN, by VPN name, and
// the default segment under a key of its own. The two families differ in what kCritical and kAuthor
// say.
#include <aaadom/codes.h>
#include <aaadom/database.h>
#include <aaadom/db_layout.h>
#include <aaadom/results.h>
#include <arpa/inet.h>

#include <cstring>

#include "base/text.h"
#include "db/binary_value.h"
#include "db/profile_names.h"
#include "db/save.h"

namespace aaadom {
namespace {

constexpr uint32_t kAttributeSets = 1;
/// The one value that is written with this index; the database takes it as any other.
constexpr int32_t kSegmentIndex = 0;

using Name = char (DomDbUpdateReq::*)[DOM_DB_PROFILE_TEXT_SIZE];

struct Family {
    const char* list_prefix;
    const char* segment_prefix;
    uint32_t entry_type;  // value type of the list, too: by it the profiles are found again
    uint32_t segment_type;
    // Of an entry and of the default segment, in which the place of the VPN name stays zero.
    uint32_t size;
    uint32_t text_offset;
    uint32_t vpn_offset;
    // Which members of the request are the family's.
    Name profile;
    Name text;
    uint32_t DomDbUpdateReq::*segment_id;
    uint16_t DomDbUpdateReq::*value16;  // null: the family has none
};

constexpr Family kCritical{DOM_DB_PREFIX_CRITICAL_PROFILE,
                           DOM_DB_PREFIX_CRITICAL_SEGMENT,
                           DOM_DB_CRITICAL_ENTRY,
                           DOM_DB_CRITICAL_SEGMENT,
                           DOM_DB_CRITICAL_ENTRY_SIZE,
                           DOM_DB_CRITICAL_ENTRY_TEXT_OFFSET,
                           DOM_DB_CRITICAL_ENTRY_VPN_OFFSET,
                           &DomDbUpdateReq::critical_profile_name,
                           &DomDbUpdateReq::critical_text,
                           &DomDbUpdateReq::critical_number,
                           &DomDbUpdateReq::critical_number16};

constexpr Family kAuthor{DOM_DB_PREFIX_AUTHOR_PROFILE,
                         DOM_DB_PREFIX_AUTHOR_SEGMENT,
                         DOM_DB_AUTHOR_ENTRY,
                         DOM_DB_AUTHOR_SEGMENT,
                         DOM_DB_AUTHOR_ENTRY_SIZE,
                         DOM_DB_AUTHOR_ENTRY_TEXT_OFFSET,
                         DOM_DB_AUTHOR_ENTRY_VPN_OFFSET,
                         &DomDbUpdateReq::author_profile_name,
                         &DomDbUpdateReq::author_text,
                         &DomDbUpdateReq::author_number,
                         nullptr};

static_assert(DOM_DB_CRITICAL_ENTRY_ID_OFFSET == 0 && DOM_DB_AUTHOR_ENTRY_ID_OFFSET == 0);
static_assert(DOM_DB_CRITICAL_ENTRY_VPN_OFFSET + DOM_DB_PROFILE_TEXT_SIZE ==
              DOM_DB_CRITICAL_ENTRY_SIZE);
static_assert(DOM_DB_AUTHOR_ENTRY_VPN_OFFSET + DOM_DB_PROFILE_TEXT_SIZE ==
              DOM_DB_AUTHOR_ENTRY_SIZE);

ProfileKey KeyOf(const Family& family, const char* prefix, const DomDbUpdateReq& request) noexcept {
    char name[DOM_DB_PROFILE_TEXT_SIZE];
    CopyField(name, request.*family.profile);
    return ProfileKey(prefix, name);
}

bool DeleteKey(const ProfileKey& key) noexcept {
    return DBM_DeleteKey(g_hDomDbmHandle, key.Text(), key.Length()) == 0;
}

/// The stored bytes of a segment. As an entry it also bears its VPN's name.
struct Value {
    Value(const Family& family, const DomDbUpdateReq& request) noexcept {
        const uint32_t segment_id = htonl(request.*family.segment_id);
        memcpy(bytes, &segment_id, sizeof segment_id);
        if (family.value16 != nullptr) {
            const uint16_t value16 = htons(request.*family.value16);
            memcpy(bytes + DOM_DB_CRITICAL_ENTRY_VALUE16_OFFSET, &value16, sizeof value16);
        }
        const auto& text = request.*family.text;
        CopyBounded(bytes + family.text_offset, DOM_DB_PROFILE_TEXT_SIZE, text, sizeof text);
    }
    void NameVpn(const Family& family, const DomDbUpdateReq& request) noexcept {
        CopyBounded(bytes + family.vpn_offset, DOM_DB_PROFILE_TEXT_SIZE, request.entry_name,
                    sizeof request.entry_name);
    }

    char bytes[DOM_DB_CRITICAL_ENTRY_SIZE] = {};
};
static_assert(DOM_DB_AUTHOR_ENTRY_SIZE <= DOM_DB_CRITICAL_ENTRY_SIZE);

/// Both keys or none: a default segment that outlived its profile would come back with the next
/// profile of that name. A profile without one has no such key, so only the list's result counts.
uint32_t DeleteProfile(const ProfileKey& list, const ProfileKey& segment) noexcept {
    if (DBM_Begin(g_hDomDbmHandle) != 0) return DOM_ERR_FAILED;
    const bool deleted = DeleteKey(list);
    (void)DeleteKey(segment);
    const bool committed = DBM_Commit(g_hDomDbmHandle) == 0;
    return deleted && committed ? DOM_OK : DOM_ERR_FAILED;
}

uint32_t SaveProfile(const Family& family, const DomDbUpdateReq& request) noexcept {
    const ProfileKey list = KeyOf(family, family.list_prefix, request);
    const bool saved = IsKeySaved(g_hDomDbmHandle, list.Text(), list.Length());
    if (request.operation != DOM_PRESENT) {
        if (!saved) return DOM_ERR_FAILED;
        return DeleteProfile(list, KeyOf(family, family.segment_prefix, request));
    }
    if (saved) return DOM_OK;
    const uint32_t attributes[4] = {family.vpn_offset, DOM_DB_PROFILE_TEXT_SIZE, DBM_KEY_KIND_TEXT,
                                    0};
    return DBM_CreateSortList(g_hDomDbmHandle, list.Text(), list.Length(), attributes,
                              kAttributeSets, family.entry_type) == 0
               ? DOM_OK
               : DOM_ERR_FAILED;
}

uint32_t SaveVpn(const Family& family, const DomDbUpdateReq& request) noexcept {
    const ProfileKey list = KeyOf(family, family.list_prefix, request);
    Value entry(family, request);
    entry.NameVpn(family, request);
    if (request.operation == DOM_PRESENT) {
        // Replaces the entry that the VPN had, in one step.
        return DBM_InsertSortList(g_hDomDbmHandle, list.Text(), list.Length(), family.size,
                                  entry.bytes, family.entry_type) == 0
                   ? DOM_OK
                   : DOM_ERR_FAILED;
    }
    // Deleting a VPN that the profile does not have is no error to the store, nor is it here.
    (void)DBM_RemoveSortList(g_hDomDbmHandle, list.Text(), list.Length(), family.size, entry.bytes);
    return DOM_OK;
}

/// Always 0: the requester is told of the segment that is in force, whether it could be saved or
/// not.
uint32_t SaveSegment(const Family& family, const DomDbUpdateReq& request) noexcept {
    const ProfileKey key = KeyOf(family, family.segment_prefix, request);
    if (request.operation != DOM_PRESENT) {
        (void)DeleteKey(key);
        return DOM_OK;
    }
    const Value value(family, request);
    (void)DBM_SetBinary(g_hDomDbmHandle, key.Text(), key.Length(), kSegmentIndex, family.size,
                        value.bytes, family.segment_type);
    return DOM_OK;
}

}  // namespace

uint32_t SaveCriticalProfile(const DomDbUpdateReq& request) {
    return SaveProfile(kCritical, request);
}

uint32_t SaveCriticalVpn(const DomDbUpdateReq& request) {
    return SaveVpn(kCritical, request);
}

uint32_t SaveCriticalSegment(const DomDbUpdateReq& request) {
    return SaveSegment(kCritical, request);
}

uint32_t SaveAuthorProfile(const DomDbUpdateReq& request) {
    return SaveProfile(kAuthor, request);
}

uint32_t SaveAuthorVpn(const DomDbUpdateReq& request) {
    return SaveVpn(kAuthor, request);
}

uint32_t SaveAuthorSegment(const DomDbUpdateReq& request) {
    return SaveSegment(kAuthor, request);
}

}  // namespace aaadom
