/* Which user records are kept and backed up, by thread role, and the changes that are sent to the
 * standby board. */
#ifndef AAADOM_RECORD_SWITCHES_H
#define AAADOM_RECORD_SWITCHES_H

#include <aaadom/types.h>
#include <aaadom/user_record.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/**
 * Encodes the calling role's record switches: code 81, TLVs 181 to 184.
 * @return returned, destroy with TLV_Destroy; null when memory is short.
 * @thread any; takes the switches' lock for reading.
 */
TLV_MSG* DOM_GetAllRecordEnableInfo(void) AAADOM_NOEXCEPT;

/**
 * Reads one record switch of the calling role: online failures, offline records of both kinds,
 * normal offline records, abnormal offline records.
 * @return the switch as it was set: 1 = records are kept, 0 at load.
 * @thread any; takes the switches' lock for reading.
 */
uint32_t DOM_GetOnlineFailRecordEnableInfo(void) AAADOM_NOEXCEPT;
uint32_t DOM_GetOfflineAllRecordEnableInfo(void) AAADOM_NOEXCEPT;
uint32_t DOM_GetOfflineNormalRecordEnableInfo(void) AAADOM_NOEXCEPT;
uint32_t DOM_GetOfflineAbnormalRecordEnableInfo(void) AAADOM_NOEXCEPT;

/**
 * Tells whether any records are kept in the calling role.
 * @return 1 when one of the four switches is exactly 1, else 0.
 * @thread any; takes the switches' lock for reading.
 */
uint32_t DOM_GetOnlineOffLineRecordEnableInfo(void) AAADOM_NOEXCEPT;

/**
 * Sets one record switch of the calling role. Carried by the message of the same code.
 * @param code   77 online failures, 78 offline records of both kinds, 79 normal, 80 abnormal.
 * @param value  stored as given; 1 = records are kept.
 * @return 0; DOM_ERR_FAILED for any other code, nothing is changed then.
 * @thread any; takes the switches' lock for writing.
 */
uint32_t DOM_SetRecordEnableInfo(uint32_t code, uint16_t value) AAADOM_NOEXCEPT;

/**
 * Sets all four record switches of the calling role. Carried by code 81, stored as database type
 * 11.
 * @param switches  borrowed, stored as given; null changes nothing.
 * @thread any; takes the switches' lock for writing.
 */
void DOM_SetRecordEnableInfoAll(const RecordSwitches* switches) AAADOM_NOEXCEPT;

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
 * @param value  bits 0, 1, 2: online failure, abnormal offline, normal offline; a number above 7
 *               is stored as 0.
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

/**
 * Sets the backup flags of the calling role. Carried by code 164, stored as database type 38.
 * @param methods  borrowed, stored as given; 1 = records of the list are backed up; null changes
 *                 nothing.
 * @thread any; takes the flags' lock for writing.
 */
void DOM_SetAAAUserRecordBackupMethod(const BackupMethods* methods) AAADOM_NOEXCEPT;

/**
 * Reads the backup flags of the calling role.
 * @param methods_out  receives the flags as they were set; null is skipped.
 * @thread any; takes the flags' lock for reading.
 */
void DOM_GetAAAUserRecordBackupMethod(BackupMethods* methods_out) AAADOM_NOEXCEPT;

/**
 * Reads the backup flag of one list of records of the calling role.
 * @param type  1 online failure, 3 abnormal offline, 4 normal offline.
 * @return the flag as it was set; 1 for any other type.
 * @thread any; takes the flags' lock for reading.
 */
uint32_t DOM_GetAAAUserRecordBackupMethodByType(uint32_t type) AAADOM_NOEXCEPT;

/**
 * Reads the backup flags of the calling role as one number.
 * @return bit 0, 1, 2 is set where the online-failure, abnormal-offline, normal-offline flag is
 *         exactly 1.
 * @thread any; takes the flags' lock for reading.
 */
uint32_t DOM_GetAllRecordBackupMethodToUint(void) AAADOM_NOEXCEPT;

/**
 * Tells whether the calling role's backup flags are those that it started with, which need not be
 * saved.
 * @return 1 when DOM_GetAllRecordBackupMethodToUint gives the backup default, else 0.
 * @thread any; takes the flags' lock for reading.
 */
uint32_t DOM_IsDefaultUserRecordBackupMethod(void) AAADOM_NOEXCEPT;

/**
 * Writes the recover flag of the process, which the library keeps for the daemon.
 * @param flag  stored as given.
 * @thread any; takes no lock: the daemon serialises writing with reading.
 */
void DOM_SetUserRecordRecoverFlag(uint16_t flag) AAADOM_NOEXCEPT;

/**
 * Reads the recover flag of the process.
 * @return the value as it was given; 0 at load.
 * @thread any; takes no lock.
 */
uint32_t DOM_GetUserRecordRecoverFlag(void) AAADOM_NOEXCEPT;

/**
 * Sends a message to the standby board, inside the daemon's head (7, 4), through slot 10.
 * @param msg  borrowed; with its operation head.
 * @return slot 10's result, unchanged; DOM_ERR_FAILED when slot 10 is empty, for a null message and
 *         when memory is short.
 * @thread any; takes no lock, the caller holds none.
 */
uint32_t DOM_RealSync2Slave(TLV_MSG* msg) AAADOM_NOEXCEPT;

/**
 * Sends a new or deleted online-failure record to the standby board: code 173. Nothing is sent
 * when memory is short.
 * @param operation  0 sends the record, 1 its deletion; nothing is sent for any other number.
 * @param record     borrowed; nothing is sent for null. A deletion uses the serial number alone.
 * @thread any; takes no lock, the caller holds none.
 */
void DOM_SyncOnlineFailRecord(uint32_t operation, const UserRecord* record) AAADOM_NOEXCEPT;

/**
 * Sends a new or deleted offline record to the standby board: code 173. Nothing is sent when memory
 * is short.
 * @param operation      0 sends the record, 1 its deletion; nothing is sent for any other number.
 * @param abnormal_flag  1: the record is of list 4, which is the normal offline records, whatever
 *                       the flag is called; any other number: of list 3.
 * @param record         borrowed; nothing is sent for null. A deletion uses the serial number
 *                       alone.
 * @thread any; takes no lock, the caller holds none.
 */
void DOM_SyncOfflineRecord(uint32_t operation, uint16_t abnormal_flag,
                           const UserRecord* record) AAADOM_NOEXCEPT;

/**
 * Tells the standby board to clear records, with operation 6. Nothing is sent when memory is short.
 * @param clear_kind  1 sends code 54 (online failures), 2 code 57 (abnormal offline), 4 code 56
 *                    (normal offline), 6 code 55 (all offline); nothing is sent for any other.
 * @thread any; takes no lock, the caller holds none.
 */
void Dom_SyncClearUserRecord(uint32_t clear_kind) AAADOM_NOEXCEPT;

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
