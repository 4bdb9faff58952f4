/* The saved configuration. */
#ifndef AAADOM_DATABASE_H
#define AAADOM_DATABASE_H

#include <aaadom/types.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/** One profile name of a list. */
typedef struct DomProfileNameNode {
    struct DomProfileNameNode* next;
    char name[32];
} DomProfileNameNode;

/** Profile names in the order of their keys. The caller clears it before the first walk and frees
 *  every node with free. */
typedef struct DomProfileNameList {
    DomProfileNameNode* head;
    DomProfileNameNode* tail;
} DomProfileNameList;

/** Handle of the configuration table that every writer of the library uses; -1 means none.
 *  Set with DOM_SetDomainDBMHandle. */
extern DBM_HANDLE g_hDomDbmHandle;

/**
 * Opens table "isp-domain" of database "DOM_DB", durable, and creates it when it is not there.
 * @return the handle, close with DBM_Close; -1 when DBM_Open fails.
 * @thread any; takes no lock.
 */
DBM_HANDLE DOM_CreateDomainDBM(void) AAADOM_NOEXCEPT;

/**
 * Opens the same table if it exists; creates nothing.
 * @return the handle, close with DBM_Close; -1 when there is none.
 * @thread any; takes no lock.
 */
DBM_HANDLE DOM_OpenDomainDBM(void) AAADOM_NOEXCEPT;

/**
 * Installs the handle for every write. Call before the first configuration message is applied.
 * @param handle  borrowed: whoever opened it closes it, after installing another.
 * @thread none may be writing; takes no lock.
 */
void DOM_SetDomainDBMHandle(DBM_HANDLE handle) AAADOM_NOEXCEPT;

/**
 * Saves or deletes the object that a change record names, through g_hDomDbmHandle. What is written
 * is the present state of the calling role's tables, not something out of the record. Types: 1 a
 * domain record (deleting is DOM_DeleteDomainToDBByIndex's, here it does nothing and gives 0); 2
 * default and 6 unknown domain (deleting leaves the key with an empty value); 3 session limits, 7
 * device ID, 11 record switches and 38 backup methods (the operation is not looked at). Profiles
 * alone are written from the record's own fields, and found by the exact bytes of their name. 4 a
 * NAS-ID profile and 5 one of its bindings: an existing profile and a binding that is stored
 * already are successes that write nothing, another NAS-ID for the VLAN replaces the entry in one
 * transaction, deleting what is not there fails. 23 a critical and 33 an authorization profile: an
 * existing profile is left as it is; deleting takes its VPNs and its default segment along, and
 * fails when the profile is not there; what became of the default segment does not count. 24 and 34
 * the segment of one of its VPNs: a stored one is overwritten; deleting always succeeds. 25 and 35
 * its default segment: writing and deleting always succeed, also when the database refused.
 * @param request  borrowed; operation 1 adds or modifies, anything else deletes.
 * @return 0; DOM_ERR_FAILED: null request, a type without a saved form, a domain that is not in the
 *         table (nothing is written), a profile that is not stored (types 4, 23 and 33 deleting, 5,
 *         24 and 34 adding), no memory, or the database refused.
 * @thread any; type 1 takes the calling role's table mutex, types 11 and 38 its record locks; the
 *         caller holds none. The database is called without them.
 */
uint32_t DOM_SetDataToDB(const DomDbUpdateReq* request) AAADOM_NOEXCEPT;

/**
 * Deletes one element of the saved domains.
 * @param index  slot that the domain had, 0 to 1023.
 * @return a truth value, not a result code: 1 when the database failed, 0 when it did not, an
 * element that was not there included.
 * @thread any; takes no lock.
 */
uint32_t DOM_DeleteDomainToDBByIndex(uint32_t index) AAADOM_NOEXCEPT;

/**
 * Reads one saved domain.
 * @param handle  borrowed; need not be the installed one.
 * @param index  array index, the slot that the domain had.
 * @return the record, returned, destroy with DOM_DestroyDomain; null: nothing there, no domain
 * record, no memory or a database failure.
 * @thread any; takes no lock.
 */
DomainInfo* DOM_GetDomainFromDBByIndex(DBM_HANDLE handle, uint32_t index) AAADOM_NOEXCEPT;

/**
 * Reads the saved domain of a name: the one at the lowest index of 0 to 1023.
 * @param handle  borrowed.
 * @param name  compared exactly, letter case included, unlike names in the table.
 * @return as DOM_GetDomainFromDBByIndex; an element that cannot be read is passed over.
 * @thread any; takes no lock.
 */
DomainInfo* DOM_GetDomainFromDBByName(DBM_HANDLE handle, const char* name) AAADOM_NOEXCEPT;

/**
 * Reads the saved default domain.
 * @param handle  borrowed.
 * @param out  256 bytes: at most 255 characters and the terminator.
 * @return 0; DOM_ERR_FAILED: never saved, deleted (empty value), undecodable, no memory.
 * @thread any; takes no lock.
 */
uint32_t DOM_GetDefDomainFromDB(DBM_HANDLE handle, char out[DOM_NAME_SIZE]) AAADOM_NOEXCEPT;

/**
 * Reads the saved unknown domain; parameters and results as DOM_GetDefDomainFromDB.
 * @thread any; takes no lock.
 */
uint32_t DOM_GetUnknownDomainFromDB(DBM_HANDLE handle, char out[DOM_NAME_SIZE]) AAADOM_NOEXCEPT;

/**
 * Reads the saved session limits.
 * @param handle  borrowed.
 * @param limits  preset to 32 each, then overwritten: access types 2, 5, 6, 10, 11 (session classes
 * 19, 21, 20, 22, 23) in this order. A stored value that is too short leaves 32 in the rest.
 * @return 0; DOM_ERR_FAILED when nothing is saved: the presets stay and are no saved limits.
 * @thread any; takes no lock.
 */
uint32_t DOM_GetSessionLimitFromDB(DBM_HANDLE handle, uint32_t limits[5]) AAADOM_NOEXCEPT;

/**
 * Reads the saved device identifier.
 * @param handle  borrowed.
 * @param out  preset to 0.
 * @return 0; DOM_ERR_FAILED when nothing is saved.
 * @thread any; takes no lock.
 */
uint32_t DOM_GetDeviceIDFromDB(DBM_HANDLE handle, uint32_t* out) AAADOM_NOEXCEPT;

/**
 * Reads the saved record switches.
 * @param handle  borrowed.
 * @param out  a switch that the stored message lacks stays as it was.
 * @return 0; DOM_ERR_FAILED: never saved, undecodable, no memory, null output.
 * @thread any; takes no lock.
 */
uint32_t DOM_GetRecordEnableInfoFromDB(DBM_HANDLE handle, RecordSwitches* out) AAADOM_NOEXCEPT;

/**
 * Reads the saved backup methods.
 * @param handle  borrowed.
 * @param out  flags that are saved as on become 1, the others stay as they were: clear it first.
 * @return 0; DOM_ERR_FAILED: never saved, undecodable, no memory, null output.
 * @thread any; takes no lock.
 */
uint32_t DOM_GetRecordBackupInfoFromDBStruct(DBM_HANDLE handle, BackupMethods* out) AAADOM_NOEXCEPT;

/**
 * Saves what the record switches start as (DOM_GetUserRecordEnableDefault), through
 * g_hDomDbmHandle.
 * @return 0; DOM_ERR_FAILED when the database refused.
 * @thread any; takes no lock.
 */
uint32_t DOM_SetRecordEnableSwitchOnToDB(void) AAADOM_NOEXCEPT;

/**
 * Reads what the record switches start as.
 * @param handle  borrowed.
 * @return the saved value, not a result code; 0 when none is saved.
 * @thread any; takes no lock.
 */
uint32_t DOM_GetUserRecordEnableDefaultFromDB(DBM_HANDLE handle) AAADOM_NOEXCEPT;

/**
 * Saves what the backup flags start as (DOM_GetUserRecordBackupMethodDefault), through
 * g_hDomDbmHandle.
 * @return 0; DOM_ERR_FAILED when the database refused.
 * @thread any; takes no lock.
 */
uint32_t DOM_SetRecordBackupMethodDefaultToDB(void) AAADOM_NOEXCEPT;

/**
 * Reads what the backup flags start as.
 * @param handle  borrowed.
 * @return the saved value, not a result code; 0 when none is saved.
 * @thread any; takes no lock.
 */
uint32_t DOM_GetRecordBackupMethodDefaultFromDB(DBM_HANDLE handle) AAADOM_NOEXCEPT;

/**
 * Builds the key of a NAS-ID profile's list.
 * @param name  borrowed; what makes the key longer than 128 characters is cut. Null counts as
 *              empty.
 * @param key  129 bytes; may be null.
 * @return length of the key with its terminator, at most 129; 0 for a null key.
 * @thread any; takes no lock.
 */
uint32_t DOM_GetDBkeyFromProfileName(const char* name, char* key) AAADOM_NOEXCEPT;

/**
 * Tells whether a NAS-ID profile is saved.
 * @param handle  borrowed.
 * @param name  compared exactly, letter case included, unlike names in the table.
 * @return 1; 0 when it is not.
 * @thread any; takes no lock.
 */
uint32_t DOM_IsExistProfileName(DBM_HANDLE handle, const char* name) AAADOM_NOEXCEPT;

/**
 * Lists the saved NAS-ID profiles.
 * @param handle  borrowed.
 * @param list  the names are appended at its tail; what it holds stays.
 * @return 0; DOM_ERR_NOT_FOUND when none is saved or the database refused to count them;
 *         DOM_ERR_FAILED when the database's answer has no room in memory or list is null. When
 *         memory runs out between two names, and when the database does not list what it counted,
 *         the result is 0 and the list holds the names so far.
 * @thread any; takes no lock.
 */
uint32_t DOM_GetAllNasIdProfileMode(DBM_HANDLE handle, DomProfileNameList* list) AAADOM_NOEXCEPT;

/**
 * Build the keys of a critical profile: of the list that holds its VPNs, and of its default
 * segment.
 * @param name  borrowed; what makes the key longer than 128 characters is cut. Null counts as
 *              empty.
 * @param key  129 bytes; may be null.
 * @return length of the key with its terminator, at most 129; 0 for a null key.
 * @thread any; takes no lock.
 */
uint32_t DOM_GetDBkeyFromCriticalProfileName(const char* name, char* key) AAADOM_NOEXCEPT;
uint32_t DOM_GetDBkeyFromCriticalMicroSegMent(const char* name, char* key) AAADOM_NOEXCEPT;

/**
 * Builds the key of the list that holds an authorization profile's VPNs.
 * @param name  borrowed; cut as the key needs. Null counts as empty.
 * @param size  size of `key` in bytes; 129 for a key that is used: keys of more than 128 characters
 *              are stored cut to 128.
 * @param key  may be null.
 * @return length of the key with its terminator, at most `size`; 0 for a null key and size 0.
 * @thread any; takes no lock.
 */
uint32_t DOM_GetDBkeyFromAuthorProfileName(const char* name, uint32_t size,
                                           char* key) AAADOM_NOEXCEPT;

/**
 * Builds the key of an authorization profile's default segment; parameters and result as
 * DOM_GetDBkeyFromCriticalMicroSegMent.
 * @thread any; takes no lock.
 */
uint32_t DOM_GetDBkeyFromAuthorMicroSegMent(const char* name, char* key) AAADOM_NOEXCEPT;

/**
 * Tell whether a critical or an authorization profile is saved.
 * @param handle  borrowed.
 * @param name  compared exactly, letter case included, unlike names in the store.
 * @return 1; 0 when it is not.
 * @thread any; takes no lock.
 */
uint32_t DOM_IsExistCriticalProfileName(DBM_HANDLE handle, const char* name) AAADOM_NOEXCEPT;
uint32_t DOM_IsExistAuthorProfileName(DBM_HANDLE handle, const char* name) AAADOM_NOEXCEPT;

/**
 * List the saved critical or authorization profiles, also those without a VPN.
 * @param handle  borrowed.
 * @param list  the names are appended at its tail; what it holds stays.
 * @return 0, also when the database does not list what it counted; DOM_ERR_NOT_FOUND when none is
 *         saved or the database refused to count them; DOM_ERR_FAILED when memory is short,
 *         the list then holds the names so far, and for a null list.
 * @thread any; takes no lock.
 */
uint32_t DOM_GetAllCriticalProfileMode(DBM_HANDLE handle, DomProfileNameList* list) AAADOM_NOEXCEPT;
uint32_t DOM_GetAllAuthorProfileMode(DBM_HANDLE handle, DomProfileNameList* list) AAADOM_NOEXCEPT;

/**
 * The saved session limit of one access type, from a handle that is opened for this one read.
 * @param access_type  2, 5, 6, 10 or 11.
 * @return the limit; 0 for any other access type and when none is saved or readable (not the preset
 *         32).
 * @thread any process and thread; takes no lock.
 */
uint32_t AAA_GetSessionLimit(uint32_t access_type) AAADOM_NOEXCEPT;

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
