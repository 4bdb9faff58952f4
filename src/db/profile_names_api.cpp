#include <aaadom/database.h>
#include <aaadom/db_layout.h>
#include <aaadom/results.h>

#include "db/binary_value.h"
#include "db/profile_names.h"

using namespace aaadom;

namespace {

uint32_t BuildKey(const char* prefix, const char* name, uint32_t size, char* key) noexcept {
    return key == nullptr || size == 0 ? 0 : BuildProfileKey(prefix, name, size, key);
}

uint32_t IsSaved(DBM_HANDLE handle, const char* prefix, const char* name) noexcept {
    const ProfileKey key(prefix, name);
    return IsKeySaved(handle, key.Text(), key.Length());
}

/// A walk that runs out of memory fails: start-up must not take some of the profiles for all of
/// them.
uint32_t ListNames(DBM_HANDLE handle, uint32_t value_type, const char* prefix,
                   DomProfileNameList* list) noexcept {
    if (list == nullptr) return DOM_ERR_FAILED;
    return AppendProfileNames(handle, value_type, prefix, DOM_ERR_FAILED, *list);
}

}  // namespace

extern "C" {

uint32_t DOM_GetDBkeyFromCriticalProfileName(const char* name, char* key) noexcept {
    return BuildKey(DOM_DB_PREFIX_CRITICAL_PROFILE, name, DOM_DB_PROFILE_KEY_SIZE, key);
}

uint32_t DOM_GetDBkeyFromCriticalMicroSegMent(const char* name, char* key) noexcept {
    return BuildKey(DOM_DB_PREFIX_CRITICAL_SEGMENT, name, DOM_DB_PROFILE_KEY_SIZE, key);
}

uint32_t DOM_GetDBkeyFromAuthorProfileName(const char* name, uint32_t size, char* key) noexcept {
    return BuildKey(DOM_DB_PREFIX_AUTHOR_PROFILE, name, size, key);
}

uint32_t DOM_GetDBkeyFromAuthorMicroSegMent(const char* name, char* key) noexcept {
    return BuildKey(DOM_DB_PREFIX_AUTHOR_SEGMENT, name, DOM_DB_PROFILE_KEY_SIZE, key);
}

uint32_t DOM_IsExistCriticalProfileName(DBM_HANDLE handle, const char* name) noexcept {
    return IsSaved(handle, DOM_DB_PREFIX_CRITICAL_PROFILE, name);
}

uint32_t DOM_IsExistAuthorProfileName(DBM_HANDLE handle, const char* name) noexcept {
    return IsSaved(handle, DOM_DB_PREFIX_AUTHOR_PROFILE, name);
}

uint32_t DOM_GetAllCriticalProfileMode(DBM_HANDLE handle, DomProfileNameList* list) noexcept {
    return ListNames(handle, DOM_DB_CRITICAL_ENTRY, DOM_DB_PREFIX_CRITICAL_PROFILE, list);
}

uint32_t DOM_GetAllAuthorProfileMode(DBM_HANDLE handle, DomProfileNameList* list) noexcept {
    return ListNames(handle, DOM_DB_AUTHOR_ENTRY, DOM_DB_PREFIX_AUTHOR_PROFILE, list);
}

}  // extern "C"
