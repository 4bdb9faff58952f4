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

/* Highest reason code; AAA_GetRecordReasonString knows none above. */
#define DOM_RECORD_REASON_MAX 2120u
/* Size in bytes of the buffer that every stored record fits into. */
#define DOM_RECORD_STORED_SIZE 65535u
/* Size in bytes of the serial-number key. */
#define DOM_RECORD_KEY_SIZE 12u

/** A user record: one failed login or one logout. The library carries the fields; the meaning given
 *  here is the daemon's and that of everybody who sends it records. The TLV type under which a
 *  field travels stands first; types are the same in messages and in the stored form. */
typedef struct UserRecord {
    uint32_t first_number;   /* 166; time of the event, seconds since 1970 UTC */
    uint32_t second_number;  /* 174; reason code, AAA_GetRecordReasonString; in the brief form */
    uint8_t ipv4[4];         /* 167; network order */
    uint8_t ipv6[16];        /* 168 */
    uint32_t third_number;   /* 175; length of the session in seconds; 0 for online failures */
    uint32_t fourth_number;  /* 176; access type code, carried and not interpreted */
    uint16_t number16[3];    /* 171 outer VLAN; 172 inner VLAN; 173 service or slot number,
                                carried and not interpreted */
    uint8_t mac[6];          /* 169 */
    char first_name[256];    /* 165; ISP domain */
    char second_name[256];   /* 164; user name; in the brief form */
    char interface_name[48]; /* 170; access interface */
    char* detail;            /* 207; free text; malloc'ed, owned by the record; null = none */
    uint32_t detail_len;     /* 208; bytes with the terminator; 0 = no detail text */
    uint64_t serial;         /* 264; number of the record within its list, its identity there */
} UserRecord;
#if UINTPTR_MAX == UINT64_MAX
AAADOM_ASSERT_LAYOUT(offsetof(UserRecord, detail) == 608);
AAADOM_ASSERT_LAYOUT(sizeof(UserRecord) == 632);
#endif

/** A user record as an access module reports it: the interface by its index, and no serial number,
 *  which the receiver gives. The other fields mean what they mean in UserRecord. */
typedef struct UserRecordSource {
    uint32_t first_number;
    uint32_t second_number;
    uint8_t ipv4[4];
    uint8_t ipv6[16];
    uint32_t third_number;
    uint32_t fourth_number;
    uint32_t interface_index; /* 0 = none */
    uint16_t number16[3];
    uint8_t mac[6];
    char first_name[256];
    char second_name[256];
    char* detail;        /* null = no detail text */
    uint32_t detail_len; /* bytes with the terminator; 0 = no detail text */
} UserRecordSource;
#if UINTPTR_MAX == UINT64_MAX
AAADOM_ASSERT_LAYOUT(offsetof(UserRecordSource, interface_index) == 36);
AAADOM_ASSERT_LAYOUT(offsetof(UserRecordSource, detail) == 568);
AAADOM_ASSERT_LAYOUT(sizeof(UserRecordSource) == 584);
#endif

/**
 * Writes the stored form of a record, the value of the run lists: the serial number (264) first,
 * because the lists sort by its value at offset 4; then 166, 174, 167, 168, 175, 176, 171, 172,
 * 173, 169, 165, 164, 170 and, only when the record has a detail text of a length, 208 and 207.
 * Numbers in host order, the three names as their whole fields: 672 bytes without a detail text.
 * @param record       borrowed.
 * @param buffer_size  bytes that may be written; DOM_RECORD_STORED_SIZE at every caller. An item
 *                     that does not fit into what is left is omitted; smaller ones behind it are
 *                     still written. A detail text above 65535 bytes never fits.
 * @param buffer       receives the items, any alignment.
 * @return the bytes written; 0 for a null argument.
 * @thread any; takes no lock.
 */
uint32_t DOM_userrecord_tlv_EncodeUserRecordStlv(const UserRecord* record, uint32_t buffer_size,
                                                 void* buffer) AAADOM_NOEXCEPT;

/**
 * Reads the stored form of a record. Unknown items are skipped, the last of several items of a type
 * counts (of the detail text the first); reading ends at the first item that is not whole.
 * @param buffer  borrowed; null reads as empty.
 * @param length  bytes in `buffer`.
 * @param record  a field whose item is missing, or shorter than the field, stays as it was; names
 *                are cut to their field and terminated. The detail text and its length are set
 *                in every case, without looking at what they were: the text, to be freed with free,
 *                cut to the stored length - 1 characters; null and 0 when there is no text, its
 *                length is missing, 0 or above 65535, or memory is short. Null: nothing happens.
 * @thread any; takes no lock.
 */
void DOM_userrecord_tlv_DecodeUserRecordStlv(const void* buffer, uint32_t length,
                                             UserRecord* record) AAADOM_NOEXCEPT;

/**
 * Writes the key under which a record is searched and removed in the run lists: the item of the
 * serial number alone.
 * @param serial       serial number.
 * @param buffer_size  bytes that may be written; DOM_RECORD_KEY_SIZE are needed.
 * @param buffer       receives the key, any alignment.
 * @return DOM_RECORD_KEY_SIZE; 0, and nothing written, when the buffer is null or too small.
 * @thread any; takes no lock.
 */
uint32_t DOM_userrecord_tlv_EncodeUserRecordSerialNumberStlv(uint64_t serial, uint32_t buffer_size,
                                                             void* buffer) AAADOM_NOEXCEPT;

/**
 * Appends a reported record: TLV 178, nested 164, 165, 166, 167, 168, 169, 170, 171, 172, 173, 174,
 * 175, 176, then 208 and 207 only when there is a detail text of a length.
 * @param msg     borrowed; unchanged on failure.
 * @param source  borrowed; names are sent up to their terminator, whole when they have none. The
 *                name of an interface that the system does not know is sent empty.
 * @return 0; DOM_ERR_FAILED for a null argument and when an append failed.
 * @thread any; takes no lock.
 */
uint32_t DOM_userrecord_tlv_EncodeRecordContent(TLV_MSG* msg,
                                                const UserRecordSource* source) AAADOM_NOEXCEPT;

/**
 * Encodes the message with which an access module reports a record: TLV 180, TLV 185 and TLV 178
 * (DOM_userrecord_tlv_EncodeRecordContent). It has no TLV 0.
 * @param record_type  list of the record, DOM_RECORD_...; any number is sent as it is, the receiver
 *                     refuses others.
 * @param flags        TLV 185, carried and not interpreted.
 * @param record       borrowed.
 * @return returned, destroy with TLV_Destroy; null for a null record and when an append failed.
 * @thread any; takes no lock.
 */
TLV_MSG* PAM_EncUserRecordMsg(uint32_t record_type, uint16_t flags,
                              const UserRecordSource* record) AAADOM_NOEXCEPT;

/**
 * Reads the message with which an access module reports a record. Other TLVs are skipped.
 * @param msg              borrowed; null reads as a message without TLVs.
 * @param record_type_out  receives TLV 180 (0 when too short); unchanged without it.
 * @param flags_out        receives TLV 185; unchanged without it and when it is too short.
 * @param record           receives TLV 178 as DOM_userrecord_tlv_DecodeUserRecordStruct reads it;
 *                         its detail text is null and of length 0 when there is none, and must be
 *                         freed with free also after a failure.
 * @return 0, also for a message without TLVs; DOM_ERR_FAILED for a null output (nothing is stored)
 *         and when a TLV 178 cannot be read. Except for want of memory, the result of reading a
 *         TLV 185 replaces what was gathered before: a broken 178 in front of a good 185 is no
 *         failure. Modules of earlier releases put a placeholder 178 there and the record behind.
 * @thread any; takes no lock.
 */
uint32_t PAM_DecUserRecordMsg(TLV_MSG* msg, uint32_t* record_type_out, uint16_t* flags_out,
                              UserRecord* record) AAADOM_NOEXCEPT;

/**
 * Writes what a reason code says, in words for the operator. Scripts compare these texts letter
 * for letter, so they never change, peculiar as some are.
 * @param code         reason code; one without a text, or above DOM_RECORD_REASON_MAX, gives
 *                     "Unknown reason code <code>.".
 * @param buffer_size  size of `buffer` in bytes with the terminator; a longer text is cut.
 * @param buffer       receives the text, terminated; nothing when `buffer_size` is 0.
 * @return the characters written, without the terminator; 0 for a null buffer.
 * @thread any; takes no lock.
 */
uint32_t AAA_GetRecordReasonString(uint32_t code, uint32_t buffer_size,
                                   char* buffer) AAADOM_NOEXCEPT;

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
 * Encodes a message that holds the fields of a record and nothing else, as
 * DOM_userrecord_tlv_EncodeUserRecordStruct appends them.
 * @param record  borrowed.
 * @return returned, destroy with TLV_Destroy; null for a null record and when an append failed.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_userrecord_tlv_EncodeUserRecordStructTlv(const UserRecord* record) AAADOM_NOEXCEPT;

/**
 * Reads the fields of a record, also those of DOM_userrecord_tlv_EncodeRecordContent, which carry
 * no serial number. Other TLVs are skipped; the last of several TLVs of a type counts.
 * @param msg     borrowed; null reads as a message without TLVs.
 * @param record  a field whose TLV is missing stays as it was, also a MAC address or a 16-bit
 * number whose TLV is too short; behind an IP address TLV that is too short the field keeps its
 * last bytes. Names are cut to their field and terminated. The detail text and its length are set
 * in every case, without looking at what they were: the text of DOM_userrecord_tlv_GetReplyMessage,
 * to be freed with free also after a failure, or null and 0.
 * @return 0, also for a message without TLVs and for a detail text that cannot be had;
 *         DOM_ERR_FAILED for a null record and when a name, an address or a 16-bit number cannot be
 *         read, after reading the rest. Numbers of 32 and 64 bits do not count: too short they are
 *         0.
 * @thread any; takes no lock.
 */
uint32_t DOM_userrecord_tlv_DecodeUserRecordStruct(TLV_MSG* msg,
                                                   UserRecord* record) AAADOM_NOEXCEPT;

/**
 * Copies the detail text of a message, its first TLV 207.
 * @param msg     borrowed.
 * @param length  in: bytes to copy at most, as TLV 208 gave them, with the terminator; 0 gives
 *                none. Out: unchanged with a text, 0 without.
 * @return the text, `length` bytes that are zero behind a shorter value and a terminator behind
 *         them; free it with free. Null when there is no TLV 207, the length is above both 65535
 *         and that of the TLV, an argument is null or memory is short.
 * @thread any; takes no lock.
 */
char* DOM_userrecord_tlv_GetReplyMessage(TLV_MSG* msg, uint32_t* length) AAADOM_NOEXCEPT;

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
