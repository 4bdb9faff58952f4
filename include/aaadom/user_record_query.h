/* Questions about user records and their answers: requests of the management side, replies of the
 * daemon, and the calls that send the requests. What the selectors and conditions choose is decided
 * by the daemon that answers; the codec carries any value. */
#ifndef AAADOM_USER_RECORD_QUERY_H
#define AAADOM_USER_RECORD_QUERY_H

#include <aaadom/types.h>
#include <aaadom/user_record.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* The TLV type under which a field travels stands first; behind it what the daemon takes. */

/** Records of a time range. */
typedef struct UserRecordTimeQuery {
    uint16_t list_selector;   /* 177; DOM_RECORD_... or 0 for all lists */
    uint16_t second_selector; /* 150; 0 verbose, 1 brief */
    uint32_t start;           /* 148; seconds since 1970 UTC, inclusive */
    uint32_t end;             /* 149; seconds since 1970 UTC, inclusive */
} UserRecordTimeQuery;        /* 12 bytes */

/** Records with a reason. */
typedef struct UserRecordReasonQuery {
    uint16_t list_selector;   /* 177; DOM_RECORD_... or 0 for all lists */
    uint16_t second_selector; /* 162; 0 verbose, 1 brief */
    uint32_t reason;          /* 161; code of AAA_GetRecordReasonString */
} UserRecordReasonQuery;      /* 8 bytes */

/** Records that meet all conditions; to the daemon one that is 0 or empty is none. */
typedef struct UserRecordQuery {
    uint32_t record_count;    /* 163; records a reply, at most 500; 0 means 50 */
    uint16_t list_selector;   /* 177; DOM_RECORD_... or 0 for all lists */
    uint16_t second_selector; /* 162; 0 verbose, 1 brief */
    uint32_t condition;       /* 159; reason code */
    uint8_t ipv4[4];          /* 167; network order */
    uint8_t ipv6[16];         /* 168 */
    uint16_t conditions[4];   /* 153 outer VLAN; 154 inner VLAN; 155 service or slot number;
                                 156 reserved, 0 */
    char first_name[256];     /* 151; ISP domain; sent unless empty */
    char second_name[256];    /* 160; user name; sent unless empty */
    char interface_name[48];  /* 152; sent unless empty */
    uint8_t mac[6];           /* 158 */
} UserRecordQuery;            /* 608 bytes */

/** The part of a record that the brief reply carries. */
typedef struct UserRecordBrief {
    uint32_t second_number; /* 174 */
    uint8_t ipv4[4];        /* 167; network order */
    uint8_t ipv6[16];       /* 168 */
    char second_name[256];  /* 164 */
    uint8_t mac[6];         /* 169 */
    char* detail;           /* 207; malloc'ed, owned by the structure; null = no detail text */
    uint32_t detail_len;    /* 208; bytes with the terminator; 0 = no detail text */
} UserRecordBrief;

AAADOM_ASSERT_LAYOUT(sizeof(UserRecordTimeQuery) == 12);
AAADOM_ASSERT_LAYOUT(sizeof(UserRecordReasonQuery) == 8);
AAADOM_ASSERT_LAYOUT(sizeof(UserRecordQuery) == 608);
#if UINTPTR_MAX == UINT64_MAX
AAADOM_ASSERT_LAYOUT(offsetof(UserRecordBrief, detail) == 288);
AAADOM_ASSERT_LAYOUT(sizeof(UserRecordBrief) == 304);
#endif

/**
 * Encodes the request for the number of records: its code alone.
 * @param code  DOM_MSG_RECORD_NUMBER (70); any number is sent as it is.
 * @return returned, destroy with TLV_Destroy; null when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_userrecord_tlv_EncodeGetRecordNum(uint32_t code) AAADOM_NOEXCEPT;

/**
 * Encodes the answer to the request for the number of records: TLV 0, TLV 163.
 * @param code   DOM_MSG_RECORD_NUMBER (70); any number is sent as it is.
 * @param count  number of records.
 * @return returned, destroy with TLV_Destroy; null when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_userrecord_tlv_EncodeDisplayRecordNumber(uint32_t code,
                                                      uint32_t count) AAADOM_NOEXCEPT;

/**
 * Encodes the request for all records of a list: TLV 0, TLV 177.
 * @param code      DOM_MSG_RECORD_ALL (71); any number is sent as it is.
 * @param selector  TLV 177; the daemon takes DOM_RECORD_... or 0 for all lists.
 * @return returned, destroy with TLV_Destroy; null when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_userrecord_tlv_EncodeDisplayRecordAll(uint32_t code,
                                                   uint16_t selector) AAADOM_NOEXCEPT;

/**
 * Encodes the request for records of a time range: TLVs 0, 177, 148, 149, 150.
 * @param code   DOM_MSG_RECORD_BY_TIME (72); any number is sent as it is.
 * @param query  borrowed.
 * @return returned, destroy with TLV_Destroy; null for a null query and when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_userrecord_tlv_EncodeDisplayRecordTime(uint32_t code, const UserRecordTimeQuery* query)
    AAADOM_NOEXCEPT;

/**
 * Encodes the request for records with a reason: code 74, TLVs 161, 177, 162. It is the only query
 * whose code the caller does not choose.
 * @param second_selector  TLV 162; the daemon takes 0 verbose, 1 brief.
 * @param reason           TLV 161, code of AAA_GetRecordReasonString.
 * @param selector         TLV 177; the daemon takes DOM_RECORD_... or 0 for all lists.
 * @return returned, destroy with TLV_Destroy; null when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_userrecord_tlv_EncodeDisplayRecordReason(uint16_t second_selector, uint32_t reason,
                                                      uint16_t selector) AAADOM_NOEXCEPT;

/**
 * Encodes the request for records that meet conditions: TLVs 0, 163, 177, 162, then 160, 151 and
 * 152 each only when its text is not empty, then 158, 159, 153, 154, 155, 156, 167, 168.
 * @param code   DOM_MSG_RECORD_BY_CONDITIONS (73); any number is sent as it is.
 * @param query  borrowed; a text without a terminator is sent whole.
 * @return returned, destroy with TLV_Destroy; null for a null query and when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_userrecord_tlv_EncodeDisRecordMultParas(uint32_t code,
                                                     const UserRecordQuery* query) AAADOM_NOEXCEPT;

/**
 * Encodes what a reply with records begins with: TLV 177 and no code.
 * @param selector  TLV 177, the list that was asked for.
 * @return returned, destroy with TLV_Destroy; null when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_userrecord_tlv_EncodeRecordHeader(uint16_t selector) AAADOM_NOEXCEPT;

/**
 * Encodes the answer to a query that no record meets: TLV 16 = DOM_RESULT_NO_RECORD and no code.
 * @return returned, destroy with TLV_Destroy; null when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_userrecord_tlv_EncodeNoRecordMsg(void) AAADOM_NOEXCEPT;

/**
 * Appends a record in its brief form: TLV 179, nested 164, 167, 168, 169, 174, then 208 and 207
 * only when the record has a detail text of a length. DOM_userrecord_tlv_EncodeRecordVerbose
 * appends the whole record.
 * @param reply   borrowed; unchanged on failure.
 * @param record  borrowed; a name without a terminator is sent whole.
 * @return 0; DOM_ERR_FAILED for a null argument and when memory is short.
 * @thread any; takes no lock.
 */
uint32_t DOM_userrecord_tlv_EncodeRecordBrief(TLV_MSG* reply,
                                              const UserRecord* record) AAADOM_NOEXCEPT;

/**
 * Encodes backup methods together with what they start as: code 164, TLV 448, TLV 465.
 * @param bits          bits 0, 1, 2: online failure, abnormal offline, normal offline; any number
 *                      is sent as it is.
 * @param default_bits  the same bits of the default.
 * @return returned, destroy with TLV_Destroy; null when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_userrecord_tlv_EncodeBackupMethodWithDefault(uint32_t bits,
                                                          uint32_t default_bits) AAADOM_NOEXCEPT;

/*
 * The decoders look at no code and skip TLVs of other types. A text that is too long is cut to its
 * field and terminated, a UINT TLV that is too short reads as 0, a 16-bit or MAC TLV that is too
 * short fails and keeps its field, and behind an IP address TLV that is too short the field keeps
 * its last bytes. Which failures the result tells differs, and callers rely on it. Of several TLVs
 * of a type the last counts, the first of a detail text.
 */

/**
 * Reads the number of records (TLV 163).
 * @param reply  borrowed.
 * @param count  receives the number; 0 when there is none.
 * @return 0 when a TLV 163 was found; DOM_ERR_FAILED without one, for a null or empty reply and for
 *         a null count.
 * @thread any; takes no lock.
 */
uint32_t DOM_userrecord_tlv_DecodeDisplayRecordNumber(TLV_MSG* reply,
                                                      uint32_t* count) AAADOM_NOEXCEPT;

/**
 * Reads the request for all records of a list (TLV 177).
 * @param msg       borrowed; null reads as a message without TLVs.
 * @param selector  receives TLV 177; stays as it was when there is none.
 * @return the result of the last TLV 177: 0, also without one; DOM_ERR_FAILED when the last one is
 *         shorter than 16 bits, and for a null selector.
 * @thread any; takes no lock.
 */
uint32_t DOM_userrecord_tlv_DecodeDisplayRecordAll(TLV_MSG* msg,
                                                   uint16_t* selector) AAADOM_NOEXCEPT;

/**
 * Reads the request for records of a time range (TLVs 177, 148, 149, 150).
 * @param msg    borrowed; null reads as a message without TLVs.
 * @param query  a field whose TLV is missing stays as it was.
 * @return 0, also for a message without the TLVs; DOM_ERR_FAILED for a null query and when any TLV
 *         150 or 177 is shorter than 16 bits. The times do not count.
 * @thread any; takes no lock.
 */
uint32_t DOM_userrecord_tlv_DecodeDisplayRecordTime(TLV_MSG* msg,
                                                    UserRecordTimeQuery* query) AAADOM_NOEXCEPT;

/**
 * Reads the request for records with a reason (TLVs 161, 177, 162).
 * @param msg    borrowed; null reads as a message without TLVs.
 * @param query  a field whose TLV is missing stays as it was.
 * @return the result of the last TLV 177 or 162, whatever those before it gave: 0, also without
 *         any; DOM_ERR_FAILED when it is shorter than 16 bits, and for a null query. The reason
 *         does not count.
 * @thread any; takes no lock.
 */
uint32_t DOM_userrecord_tlv_DecodeDisplayRecordReason(TLV_MSG* msg,
                                                      UserRecordReasonQuery* query) AAADOM_NOEXCEPT;

/**
 * Reads the request for records that meet conditions (TLVs 151 to 156, 158 to 160, 162, 163, 167,
 * 168, 177).
 * @param msg    borrowed; null reads as a message without TLVs.
 * @param query  a field whose TLV is missing stays as it was.
 * @return 0, also for a message without the TLVs; DOM_ERR_FAILED for a null query and when a text,
 *         16-bit, MAC or raw TLV cannot be read. TLVs 159 and 163 do not count.
 * @thread any; takes no lock.
 */
uint32_t DOM_userrecord_tlv_DecodeDisRecordMultParas(TLV_MSG* msg,
                                                     UserRecordQuery* query) AAADOM_NOEXCEPT;

/**
 * Reads a record in its brief form: the nested message of TLV 179.
 * @param msg    borrowed; null reads as a message without TLVs.
 * @param brief  a field whose TLV is missing stays as it was. The detail text and its length are
 *               set in every case, without looking at what they were: the text, to be freed with
 *               free; null and 0 when there is none, its length is missing, 0 or above both 65535
 *               and that of the text, memory is short, or the result is not 0.
 * @return 0, also without a detail text; DOM_ERR_FAILED for a null brief and when a text, MAC or
 *         raw TLV cannot be read. TLVs 174 and 208 do not count.
 * @thread any; takes no lock.
 */
uint32_t DOM_userrecord_tlv_DecodeRecordBrief(TLV_MSG* msg, UserRecordBrief* brief) AAADOM_NOEXCEPT;

/**
 * Reads backup methods together with what they start as (TLVs 448 and 465).
 * @param msg           borrowed; null reads as a message without TLVs.
 * @param bits          receives TLV 448; 0 when there is none.
 * @param default_bits  receives TLV 465; 0 when there is none.
 * @return 0; DOM_ERR_FAILED, and nothing stored, when an output is null.
 * @thread any; takes no lock.
 */
uint32_t DOM_userrecord_tlv_DecodeBackupMethodWithDefault(TLV_MSG* msg, uint32_t* bits,
                                                          uint32_t* default_bits) AAADOM_NOEXCEPT;

/*
 * Calls of the management side. Each runs in the caller's process, sends one request over the
 * channel of channel.h (which blocks) and destroys it, also when no reply came.
 */

/**
 * Sets or undoes backup methods: code 164.
 * @param undo  0 sends operation 0, any other number operation 1.
 * @param bits  TLV 448.
 * @return the result of the reply (TLV 16), DOM_RESULT_MISSING when it has none; DOM_ERR_FAILED
 *         when no reply came or memory is short.
 * @thread any; takes no lock.
 */
uint32_t DOM_userrecord_mor_BackupMethod(uint32_t undo, uint32_t bits) AAADOM_NOEXCEPT;

/**
 * Sets or undoes one record switch.
 * @param undo  0 sends operation 0, any other number operation 1.
 * @param code  77 online failures, 78 all offline, 79 normal offline, 80 abnormal offline; any
 *              number is sent as it is.
 * @return as DOM_userrecord_mor_BackupMethod.
 * @thread any; takes no lock.
 */
uint32_t DOM_userrecord_mor_RecordEnable(uint32_t undo, uint32_t code) AAADOM_NOEXCEPT;

/**
 * Clears records: operation 6, always.
 * @param code  54 online failures, 55 all offline, 56 normal offline, 57 abnormal offline; any
 *              number is sent as it is.
 * @return as DOM_userrecord_mor_BackupMethod.
 * @thread any; takes no lock.
 */
uint32_t DOM_userrecord_mor_ResetRecord(uint32_t code) AAADOM_NOEXCEPT;

/**
 * Asks for the number of records, with operation 2.
 * @param code   DOM_MSG_RECORD_NUMBER (70); any number is sent as it is.
 * @param count  receives the number; 0 when the reply has none, as it was when no reply came.
 * @return 0; DOM_ERR_FAILED when no reply came, the reply has no number (a refusal), count is null
 *         or memory is short.
 * @thread any; takes no lock.
 */
uint32_t DOM_userrecord_mor_GetRecordNumber(uint32_t code, uint32_t* count) AAADOM_NOEXCEPT;

/**
 * Asks for all records of a list, with operation 2. The reply carries the records as TLVs 178 or
 * 179; TLV 16 alone is DOM_RESULT_NO_RECORD or the daemon's refusal.
 * @param code      DOM_MSG_RECORD_ALL (71); any number is sent as it is.
 * @param selector  TLV 177, as DOM_userrecord_tlv_EncodeDisplayRecordAll.
 * @param status    receives the kind of the reply: DOM_REPLY_KIND_RESULT a result, any other data;
 *                  as it was when no reply came, set also when memory is short for one that
 *                  came. May be null.
 * @return returned, destroy with TLV_Destroy; null when no reply came or memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_userrecord_mor_GetRecordAll(uint32_t code, uint16_t selector,
                                         uint16_t* status) AAADOM_NOEXCEPT;

/**
 * Asks for records of a time range, with operation 2.
 * @param code    DOM_MSG_RECORD_BY_TIME (72); any number is sent as it is.
 * @param query   borrowed.
 * @param status  as DOM_userrecord_mor_GetRecordAll.
 * @return as DOM_userrecord_mor_GetRecordAll; null, and nothing sent, also for a null query.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_userrecord_mor_GetRecordByTime(uint32_t code, const UserRecordTimeQuery* query,
                                            uint16_t* status) AAADOM_NOEXCEPT;

/**
 * Asks for records with a reason, with code 74 and operation 2.
 * @param second_selector  TLV 162, as DOM_userrecord_tlv_EncodeDisplayRecordReason.
 * @param reason           TLV 161, code of AAA_GetRecordReasonString.
 * @param selector         TLV 177, as DOM_userrecord_tlv_EncodeDisplayRecordReason.
 * @param status           as DOM_userrecord_mor_GetRecordAll.
 * @return as DOM_userrecord_mor_GetRecordAll.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_userrecord_mor_GetRecordByReason(uint16_t second_selector, uint32_t reason,
                                              uint16_t selector, uint16_t* status) AAADOM_NOEXCEPT;

/**
 * Asks for records that meet conditions, with operation 2.
 * @param code    DOM_MSG_RECORD_BY_CONDITIONS (73); any number is sent as it is.
 * @param query   borrowed; a text without a terminator is sent whole.
 * @param status  as DOM_userrecord_mor_GetRecordAll.
 * @return as DOM_userrecord_mor_GetRecordAll; null, and nothing sent, also for a null query.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_userrecord_mor_GetRecordContentByCond(uint32_t code, const UserRecordQuery* query,
                                                   uint16_t* status) AAADOM_NOEXCEPT;

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
