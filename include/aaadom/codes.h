/* The one registry of numbers that are sent: message codes, TLV types, operations, reply kinds.
 * Numbers here are never reused or renumbered. Numbers that are stored are in db_layout.h. */
#ifndef AAADOM_CODES_H
#define AAADOM_CODES_H

/* Value of TLV 0, one number space for the whole system; 5 and 6 are unassigned. */
enum DomMsgCode {
    DOM_MSG_DOMAIN = 0, /* full domain record; walk replies */
    DOM_MSG_DEFAULT_DOMAIN = 1,
    DOM_MSG_DOMAIN_COUNT = 2,
    DOM_MSG_DOMAIN_NAME = 3, /* create, delete, get one */
    DOM_MSG_METHOD_LIST = 4,
    DOM_MSG_STATE = 7,
    DOM_MSG_SESSION_LIMIT = 8,
    DOM_MSG_SESSION_COUNT = 9,
    DOM_MSG_ALL_SESSION_LIMIT = 10,
    DOM_MSG_AUTHOR_ATTR = 11,
    DOM_MSG_DOMAIN_NAME_LEN = 12, /* row get-next */
    DOM_MSG_SCHEME_INDEX = 13,
    DOM_MSG_DOMAIN_ROW = 14,
    DOM_MSG_SCHEME_ROW = 15,
    DOM_MSG_NASID_PROFILE = 16,
    DOM_MSG_NASID_BIND = 17,
    DOM_MSG_UNKNOWN_DOMAIN = 18,
    DOM_MSG_SESSION_TIME = 19,
    DOM_MSG_DEVICE_ID = 20,
    DOM_MSG_USER_ADDR_TYPE = 21,
    DOM_MSG_ITA_POLICY = 22,
    DOM_MSG_ITA_POLICY_NAME = 23,
    DOM_MSG_ITA_ACCT_SCHEME = 24,
    DOM_MSG_ITA_ACCT_TOGETHER = 25,
    DOM_MSG_ITA_ACCT_LEVEL = 26,
    DOM_MSG_ITA_TRAF_SEPRATE = 27,
    DOM_MSG_ITA_TRAF_QUOTA_OUT = 28,
    DOM_MSG_GLOBAL_DOMAIN = 29,
    DOM_MSG_ACCT_DUAL_STACK = 30,
    DOM_MSG_REC_POLICY = 31,
    DOM_MSG_REC_POLICY_TYPE = 32,
    DOM_MSG_REC_ACCT_SCHEME = 33,
    DOM_MSG_RESET_ONLINE_FAIL = 54,
    DOM_MSG_RESET_OFFLINE_ALL = 55,
    DOM_MSG_RESET_OFFLINE_NORMAL = 56,
    DOM_MSG_RESET_OFFLINE_ABNORMAL = 57,
    DOM_MSG_RECORD_NUMBER = 70, /* how many records there are */
    DOM_MSG_RECORD_ALL = 71,    /* records of a list */
    DOM_MSG_RECORD_BY_TIME = 72,
    DOM_MSG_RECORD_BY_CONDITIONS = 73,
    DOM_MSG_RECORD_BY_REASON = 74,
    DOM_MSG_RECORD_TOP = 75,
    DOM_MSG_REC_EN_ONLINE_FAIL = 77,
    DOM_MSG_REC_EN_OFFLINE_ALL = 78,
    DOM_MSG_REC_EN_OFFLINE_NORMAL = 79,
    DOM_MSG_REC_EN_OFFLINE_ABNORMAL = 80,
    DOM_MSG_REC_ENABLE_INFO = 81,
    DOM_MSG_CMD_AUTHOR_FAIL = 92,
    DOM_MSG_REDIRECT = 130,
    DOM_MSG_AUTH_FAIL_DOMAIN = 132,
    DOM_MSG_PERMIT_DOMAIN = 143,
    DOM_MSG_ESCAPE_RECOVER = 144,
    DOM_MSG_DEBUG_FLAG = 145,
    DOM_MSG_CRITICAL_PROFILE = 147,
    DOM_MSG_CRITICAL_VPN = 148,
    DOM_MSG_CRITICAL_SEGMENT = 149,
    DOM_MSG_AUTHOR_PROFILE = 156,
    DOM_MSG_AUTHOR_VPN = 157,
    DOM_MSG_AUTHOR_SEGMENT = 158,
    DOM_MSG_AAA_AUTHOR_PROFILE = 159, /* read only */
    DOM_MSG_AAA_AUTHOR_PROFILE_NUM = 160,
    DOM_MSG_BACKUP_METHOD = 164,
    DOM_MSG_DOMAIN_NAME_INFO = 165, /* get-next walk */
    DOM_MSG_USER_RECORD = 173,
    DOM_MSG_LIMIT = 174 /* 174 and above are never applied */
};

/* The second TLV 0 of the global-settings request; readers take the first, 29. */
#define DOM_MSG_GLOBAL_DOMAIN_SECOND 20u

/* TLV types. "text n" is a NUL-terminated text read into n bytes; "sub" is a nested message. */
enum DomTlvType {
    DOM_TLV_MSG_CODE = 0,       /* UINT32 */
    DOM_TLV_SLOT = 1,           /* UINT32 */
    DOM_TLV_DOMAIN_NAME = 2,    /* text 256 */
    DOM_TLV_LIMIT_VALUE = 3,    /* UINT32; written, never read back */
    DOM_TLV_SECOND_VALUE = 4,   /* UINT32; written, never read back */
    DOM_TLV_STATE = 6,          /* UINT32 carrying 16 bits */
    DOM_TLV_METHOD_LIST = 7,    /* sub: 8, 9, 10 repeated, 50; of code 22: 10 repeated */
    DOM_TLV_AAA_TYPE = 8,       /* UINT32 0..5 */
    DOM_TLV_SERVICE = 9,        /* UINT32 0..11 */
    DOM_TLV_METHOD_ITEM = 10,   /* sub: 11, 12, 13, 30 */
    DOM_TLV_ITEM_POSITION = 11, /* UINT32 0..5 */
    DOM_TLV_METHOD_TYPE = 12,   /* UINT32 */
    DOM_TLV_SCHEME_NAME = 13,   /* text 33 */
    DOM_TLV_DOMAIN_COUNT = 14,  /* UINT32 */
    DOM_TLV_RESULT = 16,        /* UINT32, replies */
    DOM_TLV_VALUE_18 = 18,      /* UINT32, carried for the front ends, never interpreted */
    DOM_TLV_CLASS_19 = 19,      /* UINT32; the type is the session class */
    DOM_TLV_CLASS_20 = 20,
    DOM_TLV_CLASS_21 = 21,
    DOM_TLV_CLASS_22 = 22,
    DOM_TLV_CLASS_23 = 23,
    DOM_TLV_AUTHOR_ATTR = 24, /* sub */
    DOM_TLV_ATTR_KIND = 25,   /* UINT32 0..26 */
    DOM_TLV_ATTR_K0_WORD1 = 26,
    DOM_TLV_ATTR_K0_WORD2 = 27,
    DOM_TLV_ATTR_K1_TEXT = 28,   /* text 32 */
    DOM_TLV_ATTR_K2_TEXT = 29,   /* text 64 */
    DOM_TLV_SCHEME_INDEX = 30,   /* UINT32: of a method item, and row index of codes 13 and 15 */
    DOM_TLV_NAME_LENGTH = 31,    /* UINT32 */
    DOM_TLV_ROW_FLAGS = 32,      /* UINT64 */
    DOM_TLV_ROW_STATUS = 33,     /* UINT32 */
    DOM_TLV_NASID_PROFILE = 34,  /* text 32 */
    DOM_TLV_NASID = 35,          /* text 32 */
    DOM_TLV_VLAN_ID = 36,        /* USHORT */
    DOM_TLV_UNKNOWN_DOMAIN = 37, /* text 256 */
    DOM_TLV_SESSION_TIME = 38,   /* UINT32 carrying 16 bits */
    DOM_TLV_ATTR_K3_BLOCK = 39,  /* raw 16 */
    DOM_TLV_ATTR_K3_WORD5 = 40,
    DOM_TLV_ATTR_K4_TEXT = 41, /* text 64 */
    DOM_TLV_ATTR_K5_ADDR = 42, /* raw 20 */
    DOM_TLV_ATTR_K6_ADDR = 43, /* raw 20 */
    DOM_TLV_ATTR_K7_TEXT = 44, /* text 256 */
    DOM_TLV_ATTR_K8_TEXT = 45, /* text 32 */
    DOM_TLV_ATTR_K9_WORD = 46,
    DOM_TLV_ATTR_K10_WORD = 47,
    DOM_TLV_ATTR_K11_WORD = 48,
    DOM_TLV_DEVICE_ID = 49,            /* UINT32 */
    DOM_TLV_EXTRA_ITEM = 50,           /* sub: 11, 12, 13, 30 with position 0 */
    DOM_TLV_USER_ADDR_TYPE = 51,       /* UINT32 */
    DOM_TLV_ITA_POLICY_NAME = 52,      /* text 32 */
    DOM_TLV_ITA_LEVEL_ID = 53,         /* UINT32 */
    DOM_TLV_ITA_LEVEL_VALUE = 54,      /* UINT32 */
    DOM_TLV_ITA_LEVEL = 55,            /* sub inside 56: 53, 54, 78, 79, 80, 81 */
    DOM_TLV_ITA_LEVELS = 56,           /* sub: eight 55 */
    DOM_TLV_ITA_LEVEL_COUNT = 57,      /* UINT32 */
    DOM_TLV_ITA_TOGETHER_STATE = 58,   /* UINT32 carrying 16 bits */
    DOM_TLV_ITA_SEPARATION_STATE = 59, /* UINT32 carrying 16 bits */
    DOM_TLV_ITA_QUOTA_OUT_STATE = 60,  /* UINT32 carrying 16 bits */
    DOM_TLV_ATTR_ITA_POLICY = 61,      /* text 32 */
    DOM_TLV_ATTR_K13_WORD = 62,
    DOM_TLV_ATTR_K14_WORD1 = 63,
    DOM_TLV_ATTR_K14_WORD2 = 64,
    DOM_TLV_ATTR_K15_WORD = 65,
    DOM_TLV_ATTR_K16_ADDR = 66, /* raw 20 */
    DOM_TLV_ATTR_K17_ADDR = 67, /* raw 20 */
    DOM_TLV_ATTR_K18_TEXT = 68, /* text 33 */
    DOM_TLV_ATTR_K19_WORD = 69,
    DOM_TLV_ATTR_K20_TEXT = 70, /* text 32 */
    DOM_TLV_ATTR_RATE1_X1024 = 71,
    DOM_TLV_ATTR_RATE2_X1024 = 72,
    DOM_TLV_ATTR_RATE3_X1024 = 73,
    DOM_TLV_ATTR_RATE4_X1024 = 74,
    DOM_TLV_ATTR_K0_WORD3 = 75,
    DOM_TLV_DUAL_STACK_MODE = 76,          /* UINT32 */
    DOM_TLV_ITA_LEVEL_FLAGS = 77,          /* UINT32 */
    DOM_TLV_ITA_FIRST_PAIR_A = 78,         /* UINT32 */
    DOM_TLV_ITA_FIRST_PAIR_B = 79,         /* UINT32 */
    DOM_TLV_ITA_SECOND_PAIR_A = 80,        /* UINT32 */
    DOM_TLV_ITA_SECOND_PAIR_B = 81,        /* UINT32 */
    DOM_TLV_REC_POLICY_TYPE = 82,          /* UINT32 */
    DOM_TLV_RECORDS_STATE = 96,            /* UINT32 */
    DOM_TLV_QUERY_START = 148,             /* UINT32 */
    DOM_TLV_QUERY_END = 149,               /* UINT32 */
    DOM_TLV_QUERY_TIME_SELECTOR = 150,     /* USHORT */
    DOM_TLV_QUERY_FIRST_NAME = 151,        /* text 256 */
    DOM_TLV_QUERY_INTERFACE = 152,         /* text 48 */
    DOM_TLV_QUERY_CONDITION_1 = 153,       /* USHORT */
    DOM_TLV_QUERY_CONDITION_2 = 154,       /* USHORT */
    DOM_TLV_QUERY_CONDITION_3 = 155,       /* USHORT */
    DOM_TLV_QUERY_CONDITION_4 = 156,       /* USHORT */
    DOM_TLV_QUERY_MAC = 158,               /* raw 6 */
    DOM_TLV_QUERY_CONDITION = 159,         /* UINT32 */
    DOM_TLV_QUERY_SECOND_NAME = 160,       /* text 256 */
    DOM_TLV_QUERY_REASON = 161,            /* UINT32 */
    DOM_TLV_QUERY_SECOND_SELECTOR = 162,   /* USHORT */
    DOM_TLV_RECORD_COUNT = 163,            /* UINT32 */
    DOM_TLV_RECORD_SECOND_NAME = 164,      /* text 256 */
    DOM_TLV_RECORD_FIRST_NAME = 165,       /* text 256 */
    DOM_TLV_RECORD_FIRST_NUMBER = 166,     /* UINT32 */
    DOM_TLV_RECORD_IPV4 = 167,             /* raw 4 */
    DOM_TLV_RECORD_IPV6 = 168,             /* raw 16 */
    DOM_TLV_RECORD_MAC = 169,              /* raw 6 */
    DOM_TLV_RECORD_INTERFACE = 170,        /* text 48 */
    DOM_TLV_RECORD_NUMBER16_1 = 171,       /* USHORT */
    DOM_TLV_RECORD_NUMBER16_2 = 172,       /* USHORT */
    DOM_TLV_RECORD_NUMBER16_3 = 173,       /* USHORT */
    DOM_TLV_RECORD_SECOND_NUMBER = 174,    /* UINT32 */
    DOM_TLV_RECORD_THIRD_NUMBER = 175,     /* UINT32 */
    DOM_TLV_RECORD_FOURTH_NUMBER = 176,    /* UINT32 */
    DOM_TLV_RECORD_LIST = 177,             /* USHORT */
    DOM_TLV_USER_RECORD = 178,             /* sub */
    DOM_TLV_USER_RECORD_BRIEF = 179,       /* sub */
    DOM_TLV_RECORD_KIND = 180,             /* UINT32: 1, 3, 4 */
    DOM_TLV_SWITCH_ONLINE_FAIL = 181,      /* USHORT */
    DOM_TLV_SWITCH_OFFLINE_ALL = 182,      /* USHORT */
    DOM_TLV_SWITCH_OFFLINE_NORMAL = 183,   /* USHORT */
    DOM_TLV_SWITCH_OFFLINE_ABNORMAL = 184, /* USHORT */
    DOM_TLV_RECORD_FLAGS = 185,            /* USHORT */
    DOM_TLV_RECORD_DETAIL = 207,           /* raw, as long as 208 says */
    DOM_TLV_RECORD_DETAIL_LEN = 208,       /* UINT32, bytes with the terminator */
    DOM_TLV_CMD_FAIL_ITEM = 219,           /* sub */
    DOM_TLV_CMD_FAIL_FIRST_TEXT = 220,     /* text 513 */
    DOM_TLV_CMD_FAIL_SECOND_TEXT = 221,    /* text 256 */
    DOM_TLV_CMD_FAIL_THIRD_TEXT = 222,     /* text 256 */
    DOM_TLV_CMD_FAIL_NUMBER64 = 223,       /* UINT64 */
    DOM_TLV_CMD_FAIL_NUMBER32 = 224,       /* UINT32 */
    DOM_TLV_CMD_FAIL_END = 225,            /* UINT32 */
    DOM_TLV_RECORD_SERIAL = 264,           /* UINT64 */
    DOM_TLV_REDIRECT_CODE = 353,           /* UINT32 */
    DOM_TLV_AUTH_FAIL_DOMAIN = 358,        /* text 256 */
    DOM_TLV_PERMIT_DOMAIN = 374,           /* text 256 */
    DOM_TLV_ESCAPE_SETTING = 375,          /* UINT32 carrying 16 bits */
    DOM_TLV_ESCAPE_DOMAIN = 376,           /* text 256 */
    DOM_TLV_DEBUG_FLAG = 377,              /* UINT32 */
    DOM_TLV_CRITICAL_PROFILE_NAME = 389,   /* text 32 */
    DOM_TLV_CRITICAL_SEGMENT_NAME = 390,   /* text 32 */
    DOM_TLV_CRITICAL_VALUE_16 = 391,       /* UINT32 carrying 16 bits */
    DOM_TLV_CRITICAL_SEGMENT_ID = 392,     /* UINT32 */
    DOM_TLV_CRITICAL_VPN_NAME = 393,       /* text 32 */
    DOM_TLV_AUTH_FAIL_KIND = 411,          /* UINT32 carrying 16 bits */
    DOM_TLV_ATTR_K23_WORD = 412,
    DOM_TLV_ATTR_K22_TEXT = 413, /* text 32 */
    DOM_TLV_ATTR_K24_WORD = 414,
    DOM_TLV_ESCAPE_SECOND = 415,       /* UINT32 carrying 16 bits */
    DOM_TLV_AUTHOR_PROFILE_NAME = 430, /* text 32: attribute kind 25, codes 156..159 */
    DOM_TLV_AUTHOR_SEGMENT_NAME = 431, /* text 32 */
    DOM_TLV_AUTHOR_SEGMENT_ID = 432,   /* UINT32 */
    DOM_TLV_AUTHOR_VPN_NAME = 433,     /* text 32 */
    DOM_TLV_AUTHOR_VALUE_434 = 434,    /* UINT32 */
    DOM_TLV_AUTHOR_ENTRY = 435,        /* raw 100 */
    DOM_TLV_AUTHOR_PROFILE_NUM = 436,  /* UINT32 */
    DOM_TLV_BACKUP_BITS = 448,         /* UINT32 */
    DOM_TLV_BACKUP_DEFAULT = 465,      /* UINT32 */
    DOM_TLV_ATTR_RATE1 = 468,
    DOM_TLV_ATTR_RATE2 = 469,
    DOM_TLV_ATTR_RATE3 = 470,
    DOM_TLV_ATTR_RATE4 = 471,
    DOM_TLV_ATTR_K26_SELECTED = 472, /* text 256 */
    DOM_TLV_ATTR_K26_OTHER = 473,    /* text 256 */

    /* The daemon's own, far from what the device's other programs number. */
    DOM_TLV_NASID_BINDING = 0xF001,     /* sub: a message of code 17 */
    DOM_TLV_RECORD_POSITION = 0xF010,   /* sub: 180 and 264, where a record query goes on */
    DOM_TLV_RECORD_LOOKED_AT = 0xF011,  /* UINT32 */
    DOM_TLV_RECORD_CONDITIONS = 0xF012, /* UINT32, bits: conditions of a record query that count */
    DOM_TLV_RECORD_TOP_BY = 0xF013,     /* UINT32 */
    DOM_TLV_RECORD_TOP_ENTRY = 0xF014   /* sub: 163 and one of 165, 170, 174 */
};

/* Bits of DOM_TLV_RECORD_CONDITIONS. */
#define DOM_RECORD_COND_OUTER_VLAN 0x001u
#define DOM_RECORD_COND_INNER_VLAN 0x002u
#define DOM_RECORD_COND_SERVICE 0x004u
#define DOM_RECORD_COND_MAC 0x010u
#define DOM_RECORD_COND_REASON 0x020u
#define DOM_RECORD_COND_DOMAIN 0x040u
#define DOM_RECORD_COND_USER 0x080u
#define DOM_RECORD_COND_INTERFACE 0x100u
#define DOM_RECORD_COND_IPV4 0x200u
#define DOM_RECORD_COND_IPV6 0x400u
#define DOM_RECORD_COND_ALL 0x7F7u

/* Values of DOM_TLV_RECORD_TOP_BY: what the counts of code 75 are by. */
#define DOM_RECORD_TOP_BY_REASON 0u
#define DOM_RECORD_TOP_BY_DOMAIN 1u
#define DOM_RECORD_TOP_BY_INTERFACE 2u

/* Forms of a record in an answer (TLV 150 and 162), and the most that one answer holds. */
#define DOM_RECORD_FORM_VERBOSE 0u
#define DOM_RECORD_FORM_BRIEF 1u
#define DOM_RECORD_PAGE_MAX 500u

/* Network-order method item: its own number space, stored with the policies. */
enum DomMethodItemTlv {
    DOM_ITEM_TLV_POSITION = 1, /* UINT32 big-endian */
    DOM_ITEM_TLV_TYPE = 2,     /* UINT32 big-endian */
    DOM_ITEM_TLV_INDEX = 3,    /* UINT32 big-endian */
    DOM_ITEM_TLV_NAME = 4      /* raw text without terminator */
};

/* Operations on the wire. To the applier every operation other than 0 deletes, DOM_OP_GET included:
 * the daemon never gives it a read. */
#define DOM_OP_SET 0u
#define DOM_OP_DELETE 1u
#define DOM_OP_GET 2u
#define DOM_OP_GET_NEXT 3u
#define DOM_OP_CLEAR_RECORDS 6u
/* Operations inside the library (set flags, change record): the other polarity. */
#define DOM_PRESENT 1u
#define DOM_ABSENT 0u

/* Type of a reply's first TLV. */
#define DOM_REPLY_KIND_RESULT 4u /* nested: DOM_TLV_RESULT; a getter reads it as a refusal */
#define DOM_REPLY_KIND_DATA 2u   /* nested: the requested data */

/* First argument of the daemon's head (second is always DOM_AAAD_HEAD_SUB_TYPE). */
#define DOM_AAAD_HEAD_BATCH 5u /* batch record, and live change for the other role */
#define DOM_AAAD_HEAD_SLAVE 7u /* live change for the standby board */
#define DOM_AAAD_HEAD_SUB_TYPE 4u

/* The daemon's configuration service on the local channel. */
#define DOM_LIPC_FAMILY 37
#define DOM_LIPC_TYPE 2
#define DOM_LIPC_PROTOCOL 1
#define DOM_LIPC_ADDR_LEN 16u
#define DOM_LIPC_ENDPOINT 0x660Cu
#define DOM_LIPC_SUB_ENDPOINT 0x0080u
/* Where access modules report user records and refused command lines. */
#define DOM_LIPC_RECORD_SUB_ENDPOINT 0x0081u
#define DOM_LIPC_WAIT 0xFFFFEA60u /* low 16 bits: 60000 ms */

#endif
