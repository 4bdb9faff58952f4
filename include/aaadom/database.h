/* The saved configuration. */
#ifndef AAADOM_DATABASE_H
#define AAADOM_DATABASE_H

#include <aaadom/types.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

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
 * default and 6 unknown domain (deleting leaves the key with an empty value); 3 session limits and
 * 7 device ID (the operation is not looked at).
 * @param request  borrowed; operation 1 adds or modifies, anything else deletes.
 * @return 0; DOM_ERR_FAILED: null request, a type without a saved form, a domain that is not in the
 *         table (nothing is written), no memory, or the database refused.
 * @thread any; type 1 takes the calling role's table mutex, the caller holds none. The database is
 *         called without it.
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
 * @return as DOM_GetDomainFromDBByIndex.
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
