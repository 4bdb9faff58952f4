/* The run database: user records, in one list for each record type, ordered by serial number. It
 * lies in the runtime directory, so it survives the daemon and not a power cycle.
 * docs/formats/run_db.md describes it byte by byte.
 *
 * Which records are dropped when a list is long is the caller's decision: it removes them by serial
 * number; no call here drops one by itself.
 *
 * @thread every call takes no lock of the library; callers serialise their use of the record lists,
 * the database serialises its own operations. Inside DBM_Begin and DBM_Commit on the installed
 * handle the calls of one thread are one transaction. */
#ifndef AAADOM_RECORD_RUN_DB_H
#define AAADOM_RECORD_RUN_DB_H

#include <aaadom/types.h>
#include <aaadom/user_record.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* Bits of DOM_ClearAllRecordInfoFromRunDB, one for each list. */
enum {
    DOM_RECORD_MASK_ONLINE_FAIL = 1,
    DOM_RECORD_MASK_ABNORMAL_OFFLINE = 2,
    DOM_RECORD_MASK_NORMAL_OFFLINE = 4
};

/** Handle of the run database that every call here uses; -1, as at the start, means not open. */
extern DBM_HANDLE g_hRecordDbmRunDb;

/**
 * Opens table "isp-domain" of the run-time database "gRECORD" and creates it when it is not there;
 * records that it holds stay. Does not install the handle: DOM_SetRecordRunDBHandle does.
 * @return returned, destroy with DBM_Close or, once installed, with DOM_DestroyRecordRunDB; -1 when
 *         DBM_Open fails.
 */
DBM_HANDLE DOM_CreateRecordRunDB(void) AAADOM_NOEXCEPT;

/**
 * Closes the installed handle, whatever DBM_Close says, and uninstalls it. The records stay.
 * @return -1 always, the value of a handle that is not open: callers assign it to their copy.
 */
DBM_HANDLE DOM_DestroyRecordRunDB(void) AAADOM_NOEXCEPT;

/**
 * Installs the handle. Call before DOM_CreateAllRecordDBAvlList and the first record.
 * @param handle  consumed always, by DOM_DestroyRecordRunDB or by whoever installs another one.
 *                The handle that was installed is not closed.
 */
void DOM_SetRecordRunDBHandle(DBM_HANDLE handle) AAADOM_NOEXCEPT;

/** @return the installed handle: owned by the library, valid until DOM_DestroyRecordRunDB; -1 when
 *          none is installed. */
DBM_HANDLE DOM_GetRecordRunDBHandle(void) AAADOM_NOEXCEPT;

/**
 * Creates the lists that are not there, in the order abnormal offline, normal offline, online
 * failures; existing lists keep their records. One failure does not stop the others.
 * @return 0; DOM_ERR_FAILED when a list could not be created.
 */
uint32_t DOM_CreateAllRecordDBAvlList(void) AAADOM_NOEXCEPT;

/**
 * Stores a record in the list of abnormal offlines (record type 3).
 * @param record  borrowed; stored as DOM_userrecord_tlv_EncodeUserRecordStlv writes it, at most
 *                65535 bytes: a detail text that does not fit is left out.
 * @return 0; DOM_ERR_FAILED when the database is not open, memory is short, the record is null, the
 *         list does not exist, a record of this serial number is stored already (it stays), or the
 *         database refused.
 */
uint32_t DOM_SetAbnormalOfflineRecordInfoToRunDB(const UserRecord* record) AAADOM_NOEXCEPT;
/** The same for the list of normal offlines (record type 4). @param record  borrowed. */
uint32_t DOM_SetNormalOfflineRecordInfoToRunDB(const UserRecord* record) AAADOM_NOEXCEPT;
/** The same for the list of online failures (record type 1). @param record  borrowed. */
uint32_t DOM_SetOnlineFailedRecordInfoToRunDB(const UserRecord* record) AAADOM_NOEXCEPT;

/**
 * Stores a record in the list of its type. Used for code 173.
 * @param record_type  1, 3 or 4 (TLV 180).
 * @param record       borrowed.
 * @return as DOM_SetAbnormalOfflineRecordInfoToRunDB; DOM_ERR_FAILED for any other type, and no
 *         list is touched.
 */
uint32_t DOM_SetSingeRecordInfoToRunDB(uint32_t record_type,
                                       const UserRecord* record) AAADOM_NOEXCEPT;

/**
 * Removes a record from the list of abnormal offlines (record type 3).
 * @param serial  serial number of the record.
 * @return 0; DOM_ERR_FAILED when no record of this number is stored, memory is short, the database
 *         is not open or refused.
 */
uint32_t DOM_DelAbnormalOfflineRecordInfoToRunDB(uint64_t serial) AAADOM_NOEXCEPT;
/** The same for the list of normal offlines (record type 4). */
uint32_t DOM_DelNormalOfflineRecordInfoToRunDB(uint64_t serial) AAADOM_NOEXCEPT;
/** The same for the list of online failures (record type 1). */
uint32_t DOM_DelOnlineFailedRecordInfoToRunDB(uint64_t serial) AAADOM_NOEXCEPT;

/**
 * Removes every record of the chosen lists, in the order abnormal offline, normal offline, online
 * failures. Used for codes 54 to 57.
 * @param mask  DOM_RECORD_MASK_... bits; other bits are not looked at.
 * @return the mask itself when the database is not open or no list is chosen: such a clear is no
 *         failure, and callers do not compare with DOM_ERR_FAILED. Else the result of the last
 *         clear that was done, 0 or DOM_ERR_FAILED; that of an earlier one is not seen.
 */
uint32_t DOM_ClearAllRecordInfoFromRunDB(uint32_t mask) AAADOM_NOEXCEPT;

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
