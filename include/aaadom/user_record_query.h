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

/** Records of a time range. */
typedef struct UserRecordTimeQuery {
    uint16_t list_selector;   /* 177 */
    uint16_t second_selector; /* 150 */
    uint32_t start;           /* 148 */
    uint32_t end;             /* 149 */
} UserRecordTimeQuery;        /* 12 bytes */

/** Records with a reason. */
typedef struct UserRecordReasonQuery {
    uint16_t list_selector;   /* 177 */
    uint16_t second_selector; /* 162 */
    uint32_t reason;          /* 161; code of AAA_GetRecordReasonString */
} UserRecordReasonQuery;      /* 8 bytes */

/** Records that meet conditions. The TLV type under which a field travels stands beside it. */
typedef struct UserRecordQuery {
    uint32_t record_count;    /* 163 */
    uint16_t list_selector;   /* 177 */
    uint16_t second_selector; /* 162 */
    uint32_t condition;       /* 159 */
    uint8_t ipv4[4];          /* 167; network order */
    uint8_t ipv6[16];         /* 168 */
    uint16_t conditions[4];   /* 153, 154, 155, 156 */
    char first_name[256];     /* 151; sent unless empty */
    char second_name[256];    /* 160; sent unless empty */
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

TLV_MSG* DOM_userrecord_tlv_EncodeGetRecordNum(uint32_t code) AAADOM_NOEXCEPT;
TLV_MSG* DOM_userrecord_tlv_EncodeDisplayRecordNumber(uint32_t code,
                                                      uint32_t count) AAADOM_NOEXCEPT;
TLV_MSG* DOM_userrecord_tlv_EncodeDisplayRecordAll(uint32_t code,
                                                   uint16_t selector) AAADOM_NOEXCEPT;
TLV_MSG* DOM_userrecord_tlv_EncodeDisplayRecordTime(uint32_t code, const UserRecordTimeQuery* query)
    AAADOM_NOEXCEPT;
TLV_MSG* DOM_userrecord_tlv_EncodeDisplayRecordReason(uint16_t second_selector, uint32_t reason,
                                                      uint16_t selector) AAADOM_NOEXCEPT;
TLV_MSG* DOM_userrecord_tlv_EncodeDisRecordMultParas(uint32_t code,
                                                     const UserRecordQuery* query) AAADOM_NOEXCEPT;
TLV_MSG* DOM_userrecord_tlv_EncodeRecordHeader(uint16_t selector) AAADOM_NOEXCEPT;
TLV_MSG* DOM_userrecord_tlv_EncodeNoRecordMsg(void) AAADOM_NOEXCEPT;
uint32_t DOM_userrecord_tlv_EncodeRecordBrief(TLV_MSG* reply,
                                              const UserRecord* record) AAADOM_NOEXCEPT;
TLV_MSG* DOM_userrecord_tlv_EncodeBackupMethodWithDefault(uint32_t bits,
                                                          uint32_t default_bits) AAADOM_NOEXCEPT;

uint32_t DOM_userrecord_tlv_DecodeDisplayRecordNumber(TLV_MSG* reply,
                                                      uint32_t* count) AAADOM_NOEXCEPT;
uint32_t DOM_userrecord_tlv_DecodeDisplayRecordAll(TLV_MSG* msg,
                                                   uint16_t* selector) AAADOM_NOEXCEPT;
uint32_t DOM_userrecord_tlv_DecodeDisplayRecordTime(TLV_MSG* msg,
                                                    UserRecordTimeQuery* query) AAADOM_NOEXCEPT;
uint32_t DOM_userrecord_tlv_DecodeDisplayRecordReason(TLV_MSG* msg,
                                                      UserRecordReasonQuery* query) AAADOM_NOEXCEPT;
uint32_t DOM_userrecord_tlv_DecodeDisRecordMultParas(TLV_MSG* msg,
                                                     UserRecordQuery* query) AAADOM_NOEXCEPT;
uint32_t DOM_userrecord_tlv_DecodeRecordBrief(TLV_MSG* msg, UserRecordBrief* brief) AAADOM_NOEXCEPT;
uint32_t DOM_userrecord_tlv_DecodeBackupMethodWithDefault(TLV_MSG* msg, uint32_t* bits,
                                                          uint32_t* default_bits) AAADOM_NOEXCEPT;

uint32_t DOM_userrecord_mor_BackupMethod(uint32_t undo, uint32_t bits) AAADOM_NOEXCEPT;
uint32_t DOM_userrecord_mor_RecordEnable(uint32_t undo, uint32_t code) AAADOM_NOEXCEPT;
uint32_t DOM_userrecord_mor_ResetRecord(uint32_t code) AAADOM_NOEXCEPT;
uint32_t DOM_userrecord_mor_GetRecordNumber(uint32_t code, uint32_t* count) AAADOM_NOEXCEPT;
TLV_MSG* DOM_userrecord_mor_GetRecordAll(uint32_t code, uint16_t selector,
                                         uint16_t* status) AAADOM_NOEXCEPT;
TLV_MSG* DOM_userrecord_mor_GetRecordByTime(uint32_t code, const UserRecordTimeQuery* query,
                                            uint16_t* status) AAADOM_NOEXCEPT;
TLV_MSG* DOM_userrecord_mor_GetRecordByReason(uint16_t second_selector, uint32_t reason,
                                              uint16_t selector, uint16_t* status) AAADOM_NOEXCEPT;
TLV_MSG* DOM_userrecord_mor_GetRecordContentByCond(uint32_t code, const UserRecordQuery* query,
                                                   uint16_t* status) AAADOM_NOEXCEPT;

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
