/* User records: one failed login or one logout of an access user, and its messages. */
#ifndef AAADOM_USER_RECORD_H
#define AAADOM_USER_RECORD_H

#include <aaadom/types.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* Lists of records, each record is in exactly one; the number travels as TLV 180. */
enum { DOM_RECORD_ONLINE_FAIL = 1, DOM_RECORD_ABNORMAL_OFFLINE = 3, DOM_RECORD_NORMAL_OFFLINE = 4 };

/** A user record. The daemon gives the numbers and names their meaning; the TLV type under which a
 *  field travels stands beside it. */
typedef struct UserRecord {
    uint32_t first_number;   /* 166 */
    uint32_t second_number;  /* 174 */
    uint8_t ipv4[4];         /* 167; network order */
    uint8_t ipv6[16];        /* 168 */
    uint32_t third_number;   /* 175 */
    uint32_t fourth_number;  /* 176 */
    uint16_t number16[3];    /* 171, 172, 173 */
    uint8_t mac[6];          /* 169 */
    char first_name[256];    /* 165 */
    char second_name[256];   /* 164 */
    char interface_name[48]; /* 170 */
    char* detail;            /* 207; malloc'ed, owned by the record; null = no detail text */
    uint32_t detail_len;     /* 208; bytes with the terminator; 0 = no detail text */
    uint64_t serial;         /* 264; identity of the record within its list */
} UserRecord;
#if UINTPTR_MAX == UINT64_MAX
AAADOM_ASSERT_LAYOUT(offsetof(UserRecord, detail) == 608);
AAADOM_ASSERT_LAYOUT(sizeof(UserRecord) == 632);
#endif

/**
 * Appends the fields of a record to a message: TLVs 166, 174, 167, 168, 175, 176, 171, 172, 173,
 * 169, 165, 164, 170, 264, then 208 and 207 only when the record has a detail text of a length.
 * @param msg     borrowed; after a failure it may carry some of the fields.
 * @param record  borrowed; names are sent up to their terminator, whole when they have none;
 *                `detail_len` bytes of the detail text are read.
 * @return 0; DOM_ERR_FAILED for a null argument and when an append failed.
 * @thread any; takes no lock.
 */
uint32_t DOM_userrecord_tlv_EncodeUserRecordStruct(TLV_MSG* msg,
                                                   const UserRecord* record) AAADOM_NOEXCEPT;

/**
 * Appends a record in its verbose form: TLV 178, nested the fields of
 * DOM_userrecord_tlv_EncodeUserRecordStruct. Body of code 173.
 * @param reply   borrowed; unchanged on failure.
 * @param record  borrowed.
 * @return 0; DOM_ERR_FAILED for a null argument and when memory is short.
 * @thread any; takes no lock.
 */
uint32_t DOM_userrecord_tlv_EncodeRecordVerbose(TLV_MSG* reply,
                                                const UserRecord* record) AAADOM_NOEXCEPT;

/**
 * Encodes the request that sets one record switch: its code alone.
 * @param code  77 online failures, 78 all offline, 79 normal offline, 80 abnormal offline; any
 *              number is sent as it is.
 * @return returned, destroy with TLV_Destroy; null when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_userrecord_tlv_EncodeRecordEnable(uint32_t code) AAADOM_NOEXCEPT;

/**
 * Encodes the request that clears records: its code alone.
 * @param code  54 online failures, 55 all offline, 56 normal offline, 57 abnormal offline; any
 *              number is sent as it is.
 * @return returned, destroy with TLV_Destroy; null when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_userrecord_tlv_EncodeResetRecord(uint32_t code) AAADOM_NOEXCEPT;

/**
 * Encodes the record switches: code 81, TLVs 181, 182, 183, 184 in the order of the fields, 16 bits
 * each. Stored as database type 11.
 * @param switches  borrowed.
 * @return returned, destroy with TLV_Destroy; null for null switches and when memory is short.
 * @thread any; takes no lock, also while the caller holds the switches' lock.
 */
TLV_MSG* DOM_userrecord_tlv_EncodeRecordEnableInfo(const RecordSwitches* switches) AAADOM_NOEXCEPT;

/**
 * Reads the record switches (code 81; the code itself is not looked at).
 * @param msg       borrowed; null reads as a message without TLVs.
 * @param switches  a switch whose TLV is missing or too short stays as it was.
 * @return 0, also for a message without the TLVs; DOM_ERR_FAILED for null switches and when a TLV
 *         181 to 184 is shorter than 16 bits.
 * @thread any; takes no lock.
 */
uint32_t DOM_userrecord_tlv_DecodeRecordEnableInfo(TLV_MSG* msg,
                                                   RecordSwitches* switches) AAADOM_NOEXCEPT;

/**
 * Encodes backup methods: code 164, TLV 448. Stored as database type 38.
 * @param bits  bits 0, 1, 2: online failure, abnormal offline, normal offline; any number is sent
 *              as it is.
 * @return returned, destroy with TLV_Destroy; null when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_userrecord_tlv_EncodeBackupMethod(uint32_t bits) AAADOM_NOEXCEPT;

/**
 * Reads backup methods (code 164; the code itself is not looked at) as one number.
 * @param msg   borrowed; null reads as a message without TLVs.
 * @param bits  receives the last TLV 448; 0 when there is none.
 * @return 0; DOM_ERR_FAILED for null bits.
 * @thread any; takes no lock.
 */
uint32_t DOM_userrecord_tlv_DecodeBackupMethod(TLV_MSG* msg, uint32_t* bits) AAADOM_NOEXCEPT;

/**
 * Reads backup methods (code 164; the code itself is not looked at) into their flags.
 * @param msg      borrowed; null reads as a message without TLVs.
 * @param methods  a flag whose bit is set becomes 1; a flag whose bit is clear stays as it was, so
 *                 callers clear the flags first.
 * @return 0; DOM_ERR_FAILED for null methods.
 * @thread any; takes no lock.
 */
uint32_t DOM_userrecord_tlv_DecodeBackupMethodByStruct(TLV_MSG* msg,
                                                       BackupMethods* methods) AAADOM_NOEXCEPT;

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
