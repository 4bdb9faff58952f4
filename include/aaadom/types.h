/* The records that cross the interface. Records that are copied whole between threads, into
 * messages or into the database have fixed layouts; the assertions at the end hold them. */
#ifndef AAADOM_TYPES_H
#define AAADOM_TYPES_H

#include <aaadom/results.h>
#include <platform/dbm.h>
#include <platform/tlv.h>
#include <pthread.h>
#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* table sizes */
#define DOM_MAX_DOMAINS 1024
#define DOM_NAME_SIZE 256
#define DOM_AAA_TYPES 6 /* rows 0..5; 0, 4 and 5 are used */
#define DOM_SERVICES 12 /* columns 0..11 */
#define DOM_DEFAULT_SERVICE 5
#define DOM_METHODS 6
#define DOM_SCHEME_NAME_SIZE 33
#define DOM_DEFAULT_LISTS 3 /* rows 0, 4, 5 in this order */
#define DOM_ATTR_KINDS 27   /* kinds 0..26 */
#define DOM_SYSTEM_DOMAIN "system"

enum { AAA_TYPE_0 = 0, AAA_TYPE_4 = 4, AAA_TYPE_5 = 5 };
enum {
    METHOD_EMPTY = 0,
    METHOD_SCHEME_1 = 1,
    METHOD_SCHEME_2 = 2,
    METHOD_SCHEME_3 = 3,
    METHOD_DEFAULT_4 = 4,
    METHOD_LAST_5 = 5
};
/* any other session class acts as class 20 */
enum {
    SESSION_CLASS_19 = 19,
    SESSION_CLASS_20 = 20,
    SESSION_CLASS_21 = 21,
    SESSION_CLASS_22 = 22,
    SESSION_CLASS_23 = 23
};
enum { ACCT_ATTR_187 = 187, ACCT_ATTR_188 = 188, ACCT_ATTR_189 = 189, ACCT_ATTR_190 = 190 };

/* defaults of a domain */
#define DOM_DEF_LIMIT_VALUE 0x7FFFFFFFu
#define DOM_DEF_STATE 1u
#define DOM_DEF_ADDR_TYPE 7u
#define DOM_DEF_DUAL_STACK 1u
#define DOM_ACCT_POLICY_NONE 0xFFFFFFFFu

/** One authentication, authorization or accounting method; also one per-service extra item. */
typedef struct MethodEntry {
    uint32_t method_kind;                   /* 0 = empty, ends a list */
    char scheme_name[DOM_SCHEME_NAME_SIZE]; /* at most 32 characters; empty for kinds 4 and 5 */
    uint8_t reserved[3];
    uint32_t scheme_index; /* meaningful in service column 5 only */
} MethodEntry;             /* 44 bytes */

/** The methods of one AAA type for one service, in order of preference. */
typedef struct MethodList {
    uint32_t aaa_type; /* row 0..5 */
    uint32_t service;  /* column 0..11 */
    MethodEntry methods[DOM_METHODS];
} MethodList; /* 272 bytes */

/** Address attribute. Family 2 means only the first 4 address bytes count, else all 16. */
typedef struct AttrAddress {
    uint16_t family;
    uint8_t reserved[2];
    uint8_t address[16];
} AttrAddress; /* 20 bytes */

/** Authorization attributes of a domain. A field is named after the attribute kind (0..26) that
 *  writes it; include/aaadom/codes.h lists the TLV of each. */
typedef struct AuthorAttr {
    uint32_t kind0_word1;
    uint32_t kind0_word2; /* initially 10240 */
    uint32_t kind11_word;
    uint32_t kind9_word;   /* initially 4 */
    uint32_t kind10_word;  /* initially 4 */
    uint32_t kind13_word;  /* accounting attribute 187 */
    uint32_t kind14_word1; /* accounting attribute 188 */
    uint32_t kind14_word2; /* accounting attribute 189; initially 1 */
    uint32_t kind15_word;  /* accounting attribute 190; initially 1 */
    uint32_t kind3_words[5];
    AttrAddress kind5_addr;
    AttrAddress kind6_addr;
    AttrAddress kind16_addr;
    AttrAddress kind17_addr;
    char kind4_text[64];
    char kind8_text[32];
    char kind7_text[256];
    char kind1_text[32];
    char kind2_text[64];
    char ita_policy_name[32]; /* kind 12 */
    char kind18_text[32];     /* with the next byte one 33-byte text on the wire */
    uint8_t kind18_byte;
    uint8_t kind18_reserved[3];
    uint32_t kind21_rates[4];
    int32_t kind19_word; /* initially -1 */
    char kind20_text[32];
    uint32_t kind0_word3;
    uint32_t kind23_word; /* initially 65535 */
    char kind22_text[32];
    uint32_t kind24_word;
    char author_profile_name[32]; /* kind 25 */
    char kind26_text[256];
    uint16_t kind26_selector;
    uint8_t kind26_reserved[2];
} AuthorAttr; /* 1040 bytes */

/** What happens to users of a domain when the authentication servers are back. */
typedef struct EscapeRecoverAction {
    char domain_name[DOM_NAME_SIZE];
    uint16_t setting;
    uint16_t second_setting;
} EscapeRecoverAction; /* 260 bytes */

/** One ISP domain. Create with DOM_CreateDomain, destroy with DOM_DestroyDomain. */
typedef struct DomainInfo {
    MethodList* method_lists[DOM_AAA_TYPES][DOM_SERVICES]; /* null where there is no list */
    MethodEntry service_extras[DOM_SERVICES];
    uint32_t limit_value;  /* carried, not interpreted */
    uint32_t second_value; /* carried, not interpreted */
    uint32_t slot;         /* index in the table and in the database */
    uint16_t state;
    char name[DOM_NAME_SIZE];
    AuthorAttr author_attr;
    uint16_t session_time;
    uint32_t user_addr_type;
    uint32_t acct_dual_stack_mode;
    char auth_rd_fail_permit_domain[DOM_NAME_SIZE];
    EscapeRecoverAction escape_recover;
    char auth_fail_domain[DOM_NAME_SIZE];
    uint16_t auth_fail_domain_kind;
    uint32_t redirect_code;
} DomainInfo;

/** Scheme index node: gives one method of a default list the index by which a row addresses it. */
typedef struct SchemeIndexNode {
    uint32_t scheme_index; /* from 1 upward */
    uint32_t aaa_type;
    uint32_t position; /* 0..5 */
    struct SchemeIndexNode* next;
    struct SchemeIndexNode* prev;
} SchemeIndexNode;

/** Nodes made before a domain is added, so that the addition cannot fail half-way: row 0, 4, 5. */
typedef struct SchemeResources {
    SchemeIndexNode* nodes[DOM_DEFAULT_LISTS][DOM_METHODS];
} SchemeResources;

/** Node of the length-first order in which management rows are walked. */
typedef struct ZorvDomain {
    struct ZorvDomain* next;
    struct ZorvDomain* prev;
    SchemeIndexNode* scheme_index_head; /* ascending by scheme index */
    char domain_name[DOM_NAME_SIZE];
} ZorvDomain;

/** Row of the domain table as row management sees it. */
typedef struct DomainMibRow {
    uint32_t state;
    char domain_name[DOM_NAME_SIZE];
} DomainMibRow;

/** Row of the scheme table: one method of one default list. */
typedef struct MibSchemeRow {
    uint32_t scheme_index;
    uint32_t method_kind;
    uint32_t row_status;
    uint32_t aaa_type;
    uint32_t service;
    char domain_name[DOM_NAME_SIZE];
    char scheme_name[DOM_SCHEME_NAME_SIZE];
} MibSchemeRow;

/** Session limits, one a session class, in the order in which they travel and are stored. */
typedef struct SessionLimits {
    uint32_t class_19;
    uint32_t class_21;
    uint32_t class_20;
    uint32_t class_22;
    uint32_t class_23;
} SessionLimits; /* 20 bytes */

/** Device-wide names and identifier. */
typedef struct GlobalDomain {
    char default_domain[DOM_NAME_SIZE];
    char unknown_domain[DOM_NAME_SIZE];
    uint32_t device_id;
} GlobalDomain; /* 516 bytes */

/** Which kinds of user records are kept; 1 = on. */
typedef struct RecordSwitches {
    uint16_t online_fail;
    uint16_t offline_all;
    uint16_t offline_normal;
    uint16_t offline_abnormal;
} RecordSwitches; /* 8 bytes */

/** Which kinds of user records are backed up; 1 = on. */
typedef struct BackupMethods {
    uint16_t online_fail;
    uint16_t abnormal_offline;
    uint16_t normal_offline;
} BackupMethods; /* 6 bytes */

/** What a configuration message changed: names the object to save. */
typedef struct DomDbUpdateReq {
    uint32_t object_type; /* DOM_DB_*; 0 = nothing recorded */
    char object_name[DOM_NAME_SIZE];
    uint16_t operation; /* 1 = the object exists after the change, else it was deleted */
    char ita_policy_name[32];
    char nas_id_profile_name[32];
    char critical_profile_name[32];
    char nas_id[32];
    char entry_name[32];
    uint16_t vlan_id;
    uint32_t rec_policy_index;
    uint32_t critical_number;
    uint16_t critical_number16;
    char critical_text[32];
    char author_profile_name[32];
    uint32_t author_number;
    char author_text[32];
} DomDbUpdateReq; /* 536 bytes */

/** Decoded authorization-profile message. */
typedef struct AuthorProfileMsg {
    uint32_t segment_id;
    char profile_name[32];
    char segment_name[32];
    char vpn_name[32];
} AuthorProfileMsg; /* 100 bytes */

/** Decoded critical-profile message. */
typedef struct CriticalProfileMsg {
    uint32_t segment_id;
    char profile_name[32];
    char segment_name[32];
    char vpn_name[32];
    uint16_t value16;
} CriticalProfileMsg; /* 104 bytes */

#ifdef __cplusplus
#define AAADOM_ASSERT_LAYOUT(condition) static_assert(condition, #condition)
#else
#define AAADOM_ASSERT_LAYOUT(condition) _Static_assert(condition, #condition)
#endif
AAADOM_ASSERT_LAYOUT(sizeof(MethodEntry) == 44);
AAADOM_ASSERT_LAYOUT(offsetof(MethodEntry, scheme_index) == 40);
AAADOM_ASSERT_LAYOUT(sizeof(MethodList) == 272);
AAADOM_ASSERT_LAYOUT(sizeof(AttrAddress) == 20);
AAADOM_ASSERT_LAYOUT(sizeof(AuthorAttr) == 1040);
AAADOM_ASSERT_LAYOUT(offsetof(AuthorAttr, kind3_words) == 36);
AAADOM_ASSERT_LAYOUT(offsetof(AuthorAttr, kind5_addr) == 56);
AAADOM_ASSERT_LAYOUT(offsetof(AuthorAttr, kind4_text) == 136);
AAADOM_ASSERT_LAYOUT(offsetof(AuthorAttr, kind7_text) == 232);
AAADOM_ASSERT_LAYOUT(offsetof(AuthorAttr, kind1_text) == 488);
AAADOM_ASSERT_LAYOUT(offsetof(AuthorAttr, ita_policy_name) == 584);
AAADOM_ASSERT_LAYOUT(offsetof(AuthorAttr, kind18_text) == 616);
AAADOM_ASSERT_LAYOUT(offsetof(AuthorAttr, kind18_byte) == 648);
AAADOM_ASSERT_LAYOUT(offsetof(AuthorAttr, kind21_rates) == 652);
AAADOM_ASSERT_LAYOUT(offsetof(AuthorAttr, kind19_word) == 668);
AAADOM_ASSERT_LAYOUT(offsetof(AuthorAttr, kind0_word3) == 704);
AAADOM_ASSERT_LAYOUT(offsetof(AuthorAttr, kind23_word) == 708);
AAADOM_ASSERT_LAYOUT(offsetof(AuthorAttr, kind22_text) == 712);
AAADOM_ASSERT_LAYOUT(offsetof(AuthorAttr, author_profile_name) == 748);
AAADOM_ASSERT_LAYOUT(offsetof(AuthorAttr, kind26_text) == 780);
AAADOM_ASSERT_LAYOUT(offsetof(AuthorAttr, kind26_selector) == 1036);
AAADOM_ASSERT_LAYOUT(sizeof(EscapeRecoverAction) == 260);
AAADOM_ASSERT_LAYOUT(offsetof(EscapeRecoverAction, setting) == 256);
AAADOM_ASSERT_LAYOUT(offsetof(EscapeRecoverAction, second_setting) == 258);
AAADOM_ASSERT_LAYOUT(sizeof(SessionLimits) == 20);
AAADOM_ASSERT_LAYOUT(offsetof(SessionLimits, class_21) == 4);
AAADOM_ASSERT_LAYOUT(sizeof(GlobalDomain) == 516);
AAADOM_ASSERT_LAYOUT(sizeof(RecordSwitches) == 8);
AAADOM_ASSERT_LAYOUT(sizeof(BackupMethods) == 6);
AAADOM_ASSERT_LAYOUT(sizeof(DomDbUpdateReq) == 536);
AAADOM_ASSERT_LAYOUT(offsetof(DomDbUpdateReq, operation) == 260);
AAADOM_ASSERT_LAYOUT(offsetof(DomDbUpdateReq, ita_policy_name) == 262);
AAADOM_ASSERT_LAYOUT(offsetof(DomDbUpdateReq, vlan_id) == 422);
AAADOM_ASSERT_LAYOUT(offsetof(DomDbUpdateReq, rec_policy_index) == 424);
AAADOM_ASSERT_LAYOUT(offsetof(DomDbUpdateReq, author_text) == 504);
AAADOM_ASSERT_LAYOUT(sizeof(AuthorProfileMsg) == 100);
#if UINTPTR_MAX == UINT64_MAX
AAADOM_ASSERT_LAYOUT(offsetof(DomainInfo, service_extras) == 576);
AAADOM_ASSERT_LAYOUT(offsetof(DomainInfo, limit_value) == 1104);
AAADOM_ASSERT_LAYOUT(offsetof(DomainInfo, name) == 1118);
AAADOM_ASSERT_LAYOUT(offsetof(DomainInfo, author_attr) == 1376);
AAADOM_ASSERT_LAYOUT(offsetof(DomainInfo, redirect_code) == 3204);
AAADOM_ASSERT_LAYOUT(sizeof(DomainInfo) == 3208);
#endif

#ifdef __cplusplus
}
#endif
#endif
