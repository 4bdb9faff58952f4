#include <aaadom/database.h>
#include <aaadom/db_layout.h>
#include <aaadom/record_switches.h>
#include <aaadom/results.h>

#include <cstring>

#include "db/binary_value.h"
#include "db/load.h"
#include "db/profile_names.h"
#include "db/record_defaults.h"
#include "db/save.h"

using namespace aaadom;

extern "C" {

DBM_HANDLE g_hDomDbmHandle = DBM_INVALID_HANDLE;

DBM_HANDLE DOM_CreateDomainDBM(void) noexcept {
    constexpr uint32_t kDurable = 1;
    const DBM_OPEN_ATTR attributes{0, kDurable, 0, DOM_DB_VERSION_TEXT};
    DBM_HANDLE handle = DBM_INVALID_HANDLE;
    const uint32_t failed =
        DBM_Open(DOM_DB_DATABASE, DOM_DB_TABLE, DBM_MODE_CREATE, &attributes, &handle);
    return failed == 0 ? handle : DBM_INVALID_HANDLE;
}

DBM_HANDLE DOM_OpenDomainDBM(void) noexcept {
    const DBM_OPEN_ATTR attributes{};
    DBM_HANDLE handle = DBM_INVALID_HANDLE;
    // A failed open leaves the handle alone, so the handle itself says how it went.
    (void)DBM_Open(DOM_DB_DATABASE, DOM_DB_TABLE, DBM_MODE_OPEN, &attributes, &handle);
    return handle;
}

void DOM_SetDomainDBMHandle(DBM_HANDLE handle) noexcept {
    g_hDomDbmHandle = handle;
}

uint32_t DOM_SetDataToDB(const DomDbUpdateReq* request) noexcept {
    return request == nullptr ? DOM_ERR_FAILED : SaveChange(*request);
}

uint32_t DOM_DeleteDomainToDBByIndex(uint32_t index) noexcept {
    return DBM_SetArray(g_hDomDbmHandle, DOM_DB_KEY_DOMAINS, DOM_DB_KEY_DOMAINS_LEN, index, 0,
                        nullptr, DOM_DB_DOMAIN) < 0;
}

DomainInfo* DOM_GetDomainFromDBByIndex(DBM_HANDLE handle, uint32_t index) noexcept {
    return LoadDomain(handle, index);
}

DomainInfo* DOM_GetDomainFromDBByName(DBM_HANDLE handle, const char* name) noexcept {
    return LoadDomain(handle, name);
}

uint32_t DOM_GetDefDomainFromDB(DBM_HANDLE handle, char out[DOM_NAME_SIZE]) noexcept {
    return out == nullptr ? DOM_ERR_FAILED : LoadDefaultDomain(handle, out);
}

uint32_t DOM_GetUnknownDomainFromDB(DBM_HANDLE handle, char out[DOM_NAME_SIZE]) noexcept {
    return out == nullptr ? DOM_ERR_FAILED : LoadUnknownDomain(handle, out);
}

uint32_t DOM_GetSessionLimitFromDB(DBM_HANDLE handle, uint32_t limits[5]) noexcept {
    if (limits == nullptr) return DOM_ERR_FAILED;
    SessionLimits saved;
    const uint32_t result = LoadSessionLimits(handle, saved);
    memcpy(limits, &saved, sizeof saved);
    return result;
}

uint32_t DOM_GetDeviceIDFromDB(DBM_HANDLE handle, uint32_t* out) noexcept {
    return out == nullptr ? DOM_ERR_FAILED : LoadDeviceId(handle, *out);
}

uint32_t DOM_GetRecordEnableInfoFromDB(DBM_HANDLE handle, RecordSwitches* out) noexcept {
    return out == nullptr ? DOM_ERR_FAILED : LoadRecordSwitches(handle, *out);
}

uint32_t DOM_GetRecordBackupInfoFromDBStruct(DBM_HANDLE handle, BackupMethods* out) noexcept {
    return out == nullptr ? DOM_ERR_FAILED : LoadBackupMethods(handle, *out);
}

uint32_t DOM_SetRecordEnableSwitchOnToDB(void) noexcept {
    return StoreDefault(kRecordEnableDefault, DOM_GetUserRecordEnableDefault());
}

uint32_t DOM_GetUserRecordEnableDefaultFromDB(DBM_HANDLE handle) noexcept {
    return LoadDefault(handle, kRecordEnableDefault);
}

uint32_t DOM_SetRecordBackupMethodDefaultToDB(void) noexcept {
    return StoreDefault(kRecordBackupDefault, DOM_GetUserRecordBackupMethodDefault());
}

uint32_t DOM_GetRecordBackupMethodDefaultFromDB(DBM_HANDLE handle) noexcept {
    return LoadDefault(handle, kRecordBackupDefault);
}

uint32_t DOM_GetDBkeyFromProfileName(const char* name, char* key) noexcept {
    if (key == nullptr) return 0;
    return BuildProfileKey(DOM_DB_PREFIX_NASID_PROFILE, name, DOM_DB_PROFILE_KEY_SIZE, key);
}

uint32_t DOM_IsExistProfileName(DBM_HANDLE handle, const char* name) noexcept {
    const NasIdProfileKey key(name);
    return IsKeySaved(handle, key.Text(), key.Length());
}

// A walk that runs out of memory is a success here: start-up restores the profiles that it got.
uint32_t DOM_GetAllNasIdProfileMode(DBM_HANDLE handle, DomProfileNameList* list) noexcept {
    if (list == nullptr) return DOM_ERR_FAILED;
    return AppendProfileNames(handle, DOM_DB_NASID_VLAN, DOM_DB_PREFIX_NASID_PROFILE, DOM_OK,
                              *list);
}

}  // extern "C"
