/* User records on their way to the standby board, one by one and in batches: code 173. */
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

/**
 * Adds a record to a batch for the standby board: TLV 178 with the record's fields. A batch that
 * would reach 59900 bytes with the record, the images of `batch` and `scratch` added up, is sent
 * first with DOM_EncodeRecordTypeAndSend and cleared; so no batch passes what one synchronisation
 * message may carry. The result of the sending does not count: the record goes into the next batch
 * also when the standby board is away. A single record of that length is sent in a batch of its
 * own, behind a batch that is sent although it is empty.
 * @param kind     the list of the batch: 1, 3 or 4; any number is sent as it is.
 * @param record   borrowed.
 * @param batch    borrowed; starts empty, keeps the records that are not sent yet: the caller sends
 *                 the last ones. Cleared when the record cannot be appended.
 * @param scratch  borrowed, empty; cleared again in every case.
 * @return 0; DOM_ERR_FAILED for a null argument and when the record cannot be encoded (`batch`
 * stays as it was); the append's result.
 * @thread any, the callers of one batch take turns; takes no lock; the caller holds none, slot 10
 *         runs.
 */
uint32_t DOM_EncodeUserRecordAll(uint32_t kind, const UserRecord* record, TLV_MSG* batch,
                                 TLV_MSG* scratch) AAADOM_NOEXCEPT;

/**
 * Sends a batch of records to the standby board through DOM_RealSync2Slave, operation 0: code 173
 * and TLV 180 are appended BEHIND the records, so receivers look both up by type.
 * @param batch  borrowed; keeps the two TLVs, so that the caller clears it (DOM_ClearTlv) or
 *               destroys it.
 * @param kind   the list of the records: 1, 3 or 4; any number is sent as it is.
 * @return the result of DOM_RealSync2Slave; DOM_ERR_FAILED for null and when the batch cannot be
 *         completed or wrapped: nothing is sent then.
 * @thread any; takes no lock; the caller holds none, slot 10 runs.
 */
uint32_t DOM_EncodeRecordTypeAndSend(TLV_MSG* batch, uint32_t kind) AAADOM_NOEXCEPT;

/**
 * Stores every record of a batch (code 173, TLVs 178; neither code nor TLV 180 is looked at) in a
 * list of the run database. A record that the list refuses, because its serial number is there or
 * the database is closed, does not keep the later ones out.
 * @param msg   borrowed.
 * @param kind  the list: 1, 3 or 4; with another number no record is stored.
 * @return 0, also without records; DOM_ERR_FAILED for null and at the first TLV 178 that is no
 *         message; the decoder's result at the first record that cannot be decoded. Earlier records
 *         stay stored.
 * @thread any, callers that change the record lists take turns; takes no lock.
 */
uint32_t DOM_DecodeUserRecordAllAndSetToRunDB(TLV_MSG* msg, uint32_t kind) AAADOM_NOEXCEPT;

/**
 * Reads two numbers of a message: the last TLV of a type and the last TLV 96.
 * @param msg     borrowed.
 * @param type    the TLV type of the first number; for type 96 the first number gets it.
 * @param first   receives the first number; 0 when missing or too short.
 * @param second  receives TLV 96; 0 when missing or too short.
 * @return 0, also for a message without TLVs; DOM_ERR_FAILED for a null argument, and when the
 *         message has any other TLV, its code (TLV 0) included. All outputs that are not null are
 *         filled all the same.
 * @thread any; takes no lock.
 */
uint32_t DOM_DecodeUserRecordsState(TLV_MSG* msg, uint16_t type, uint32_t* first,
                                    uint32_t* second) AAADOM_NOEXCEPT;

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
