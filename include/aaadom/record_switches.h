/* User-record defaults and backup methods of one thread role. */
#ifndef AAADOM_RECORD_SWITCHES_H
#define AAADOM_RECORD_SWITCHES_H

#include <aaadom/types.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/**
 * Sets what the record switches of both roles start as: all 1 when the value is 1, else all 0.
 * @param value  stored as given; 0 at load.
 * @thread before the tables are initialised; takes no lock.
 */
void DOM_SetUserRecordEnableDefault(uint32_t value) AAADOM_NOEXCEPT;

/**
 * Reads what the record switches start as.
 * @return the value as it was given; 0 at load.
 * @thread any; takes no lock.
 */
uint32_t DOM_GetUserRecordEnableDefault(void) AAADOM_NOEXCEPT;

/**
 * Sets what the backup flags of both roles start as.
 * @param value  bits 0, 1, 2: online failure, abnormal offline, normal offline; above 7 is stored
 * as 0.
 * @thread before the tables are initialised; takes no lock.
 */
void DOM_SetUserRecordBackupMethodDefault(uint32_t value) AAADOM_NOEXCEPT;

/**
 * Reads what the backup flags start as.
 * @return 0 to 7; 0 at load.
 * @thread any; takes no lock.
 */
uint32_t DOM_GetUserRecordBackupMethodDefault(void) AAADOM_NOEXCEPT;

/**
 * Makes the calling role's backup lock and sets its flags from the default. Part of
 * DOM_DomainInfoTableInit.
 * @return 0; DOM_ERR_FAILED when the lock cannot be made, the flags stay then.
 * @thread while no other thread of the role uses the flags; takes no lock.
 */
uint32_t DOM_InitRecordBackupInfo(void) AAADOM_NOEXCEPT;

/**
 * Destroys the calling role's backup lock and clears its flags. Part of DOM_DomainInfoTableFini.
 * @return the result of pthread_rwlock_destroy.
 * @thread while no other thread of the role uses the flags; nobody holds the lock.
 */
uint32_t DOM_FiniRecordBackupInfo(void) AAADOM_NOEXCEPT;

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
