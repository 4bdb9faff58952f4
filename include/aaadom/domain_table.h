/* The tables of one thread role: initialisation, teardown, the table lock. */
#ifndef AAADOM_DOMAIN_TABLE_H
#define AAADOM_DOMAIN_TABLE_H

#include <aaadom/types.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/**
 * Builds everything that the calling thread's role keeps: domain table, policy and profile stores,
 * NAS-ID tables, record switches, backup methods, session limits. The other role's copy is
 * untouched, so each role calls it once. A failing step does not stop the sequence; afterwards the
 * role is torn down. The session limits start as 0x20202020 each, after a failure too. Domains of
 * an earlier initialisation that was not torn down are forgotten, not freed.
 * @return 0, or the failing steps' results ored: DOM_ERR_FAILED when a mutex, lock or hash table
 * could not be made. A second initialisation of the working role without a teardown fails (its
 *         accounting-policy table exists) and tears the role down; of the configuration role it
 * succeeds.
 * @thread once on each role, with the service table installed; the caller holds no lock.
 */
uint32_t DOM_DomainInfoTableInit(void) AAADOM_NOEXCEPT;

/**
 * Frees everything that the calling thread's role keeps. The domain count, the default and unknown
 * domain names, the device identifier and the session limits stay as they are.
 * @return the result of DOM_FiniRecordBackupInfo.
 * @thread the last call of its role before DOM_DomainInfoTableInit or the end; takes and destroys
 * the role's locks, the caller holds none.
 */
uint32_t DOM_DomainInfoTableFini(void) AAADOM_NOEXCEPT;

/**
 * Locks the calling role's table mutex, which is not recursive. Needed around DOM_FindDomainByName,
 * DOM_AddDomain, DOM_DeleteDomain, DOM_UpdateDomain and the walks, and as long as a record they
 * return is used.
 * @return the result of pthread_mutex_lock.
 * @thread any; the caller holds no lock.
 */
uint32_t DOM_DomainInfoTableLock(void) AAADOM_NOEXCEPT;

/**
 * Releases the calling role's table mutex.
 * @return the result of pthread_mutex_unlock.
 * @thread the one that locked it, still in the same role.
 */
uint32_t DOM_DomainInfoTableUnlock(void) AAADOM_NOEXCEPT;

/**
 * Makes the working role's table mutex and then its NAS-ID binding mutex new, whatever their state;
 * a mutex that cannot be initialised is destroyed.
 * @return 0 when the binding mutex was initialised, else the result of its destruction. The table
 *         mutex's outcome is not reported.
 * @thread any, while no thread uses either mutex.
 */
uint32_t DOM_DomainInfoTbl_ForceInitLock(void) AAADOM_NOEXCEPT;

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
