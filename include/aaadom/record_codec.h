/* Changes of user records on their way to the standby board: code 173. */
#ifndef AAADOM_RECORD_CODEC_H
#define AAADOM_RECORD_CODEC_H

#include <aaadom/types.h>
#include <aaadom/user_record.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/**
 * Encodes a new online-failure record: code 173, TLV 180 = 1, TLV 178 with the record.
 * @param record  borrowed.
 * @return returned, destroy with TLV_Destroy; null for a null record and when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_EncodeOnlineFailRecord(const UserRecord* record) AAADOM_NOEXCEPT;

/**
 * Encodes a new offline record: code 173, TLV 180, TLV 178 with the record.
 * @param flag    1: the record is of list 4 (normal offline), any other number: of list 3
 *                (abnormal offline).
 * @param record  borrowed.
 * @return returned, destroy with TLV_Destroy; null for a null record and when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_EncodOfflineRecord(uint16_t flag, const UserRecord* record) AAADOM_NOEXCEPT;

/**
 * Encodes the deletion of a record: code 173, TLVs 180, 264.
 * @param record_kind  the record's list: 1, 3 or 4; any number is sent as it is.
 * @param serial       the record's serial number.
 * @return returned, destroy with TLV_Destroy; null when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_EncodeDelUserRecord(uint32_t record_kind, uint64_t serial) AAADOM_NOEXCEPT;

/**
 * Reads the deletion of a record (code 173; the code itself is not looked at): the first TLV of
 * each type.
 * @param msg          borrowed.
 * @param record_kind  receives the list; 0 when missing or too short.
 * @param serial       receives the serial number; 0 when missing or too short.
 * @return 0, also for a message without the TLVs; DOM_ERR_FAILED for a null argument; an output
 *         that is not null is cleared then too.
 * @thread any; takes no lock.
 */
uint32_t DOM_DecodeDelUserRecord(TLV_MSG* msg, uint32_t* record_kind,
                                 uint64_t* serial) AAADOM_NOEXCEPT;

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
