/* The one registry of numbers and names that are stored: database names, keys, key lengths, value
 * types. A stored number is never reused. docs/formats/config_db.md describes every record. */
#ifndef AAADOM_DB_LAYOUT_H
#define AAADOM_DB_LAYOUT_H

#define DOM_DB_DATABASE "DOM_DB"
#define DOM_DB_TABLE "isp-domain"
#define DOM_DB_VERSION_TEXT "1"

/* Object types of DomDbUpdateReq, which are also the value types of what they store (4, 23 and 33
 * create lists whose value type is that of their entries: 5, 24, 34). */
enum DomDbObject {
    DOM_DB_NOTHING = 0,
    DOM_DB_DOMAIN = 1,
    DOM_DB_DEFAULT_DOMAIN = 2,
    DOM_DB_SESSION_LIMIT = 3,
    DOM_DB_NASID_PROFILE = 4,
    DOM_DB_NASID_VLAN = 5,
    DOM_DB_UNKNOWN_DOMAIN = 6,
    DOM_DB_DEVICE_ID = 7,
    DOM_DB_ITA_POLICY = 8,
    DOM_DB_REC_POLICY = 9,
    DOM_DB_RECORD_ENABLE = 11,
    DOM_DB_RECORD_ENABLE_DEFAULT = 12, /* value type only */
    DOM_DB_CRITICAL_PROFILE = 23,
    DOM_DB_CRITICAL_ENTRY = 24,
    DOM_DB_CRITICAL_SEGMENT = 25,
    DOM_DB_AUTHOR_PROFILE = 33,
    DOM_DB_AUTHOR_ENTRY = 34,
    DOM_DB_AUTHOR_SEGMENT = 35,
    DOM_DB_RECORD_BACKUP = 38,
    DOM_DB_RECORD_BACKUP_DEFAULT = 39 /* value type only */
};

/* The three oldest keys are stored without their terminating NUL, every other key with it.
 * Databases in the field depend on these lengths: a key with another length is another key. */
#define DOM_DB_KEY_DOMAINS "apstDomainInfoTab"
#define DOM_DB_KEY_DOMAINS_LEN 17u
#define DOM_DB_KEY_DEFAULT_DOMAIN "szDefaultDomain"
#define DOM_DB_KEY_DEFAULT_DOMAIN_LEN 15u
#define DOM_DB_KEY_UNKNOWN_DOMAIN "szUnknownDomain"
#define DOM_DB_KEY_UNKNOWN_DOMAIN_LEN 15u
#define DOM_DB_KEY_SESSION_LIMIT "SessionLimit"
#define DOM_DB_KEY_SESSION_LIMIT_LEN 13u
#define DOM_DB_KEY_DEVICE_ID "AaaDeviceID"
#define DOM_DB_KEY_DEVICE_ID_LEN 12u

#define DOM_DB_KEY_RECORD_ENABLE "AaaUserRecord"
#define DOM_DB_KEY_RECORD_ENABLE_LEN 14u
#define DOM_DB_KEY_RECORD_ENABLE_DEFAULT "AaaUserRecordSwitchOn"
#define DOM_DB_KEY_RECORD_ENABLE_DEFAULT_LEN 22u
#define DOM_DB_KEY_RECORD_BACKUP "AaaUserRecordBackup"
#define DOM_DB_KEY_RECORD_BACKUP_LEN 20u
#define DOM_DB_KEY_RECORD_BACKUP_DEFAULT "AaaUserRecordBackupDefault"
#define DOM_DB_KEY_RECORD_BACKUP_DEFAULT_LEN 27u

/* A profile's key is this prefix and the profile's name, cut to 128 characters. */
#define DOM_DB_PREFIX_NASID_PROFILE "profilename_"
#define DOM_DB_PREFIX_NASID_PROFILE_LEN 12u
#define DOM_DB_PREFIX_CRITICAL_PROFILE "criticalprofilename_"
#define DOM_DB_PREFIX_CRITICAL_PROFILE_LEN 20u
#define DOM_DB_PREFIX_CRITICAL_SEGMENT "criticalmicrosegmentname_"
#define DOM_DB_PREFIX_CRITICAL_SEGMENT_LEN 25u
#define DOM_DB_PREFIX_AUTHOR_PROFILE "authorprofilename_"
#define DOM_DB_PREFIX_AUTHOR_PROFILE_LEN 18u
#define DOM_DB_PREFIX_AUTHOR_SEGMENT "authormicrosegmentname_"
#define DOM_DB_PREFIX_AUTHOR_SEGMENT_LEN 23u
#define DOM_DB_PROFILE_KEY_SIZE 129u

/* Entry of a NAS-ID profile's sorted list: VLAN identifier in host order, the sort key, then the
 * NAS-ID, terminated and filled up with zeros. */
#define DOM_DB_NASID_ENTRY_SIZE 34u
#define DOM_DB_NASID_ENTRY_VLAN_OFFSET 0u
#define DOM_DB_NASID_ENTRY_VLAN_SIZE 2u
#define DOM_DB_NASID_ENTRY_TEXT_OFFSET 2u
#define DOM_DB_NASID_ENTRY_TEXT_SIZE 32u

/* An accounting policy's key is this prefix and the policy's name, cut to 50 characters. */
#define DOM_DB_PREFIX_ITA_POLICY "dom-tlv-ita-policy-"
#define DOM_DB_PREFIX_ITA_POLICY_LEN 19u
#define DOM_DB_ITA_POLICY_KEY_SIZE 51u

/* TLVs of a stored accounting policy, in the order in which they are written. Numbers are
 * big-endian UINT32. */
enum DomDbItaPolicyTlv {
    DOM_DB_ITA_METHOD = 1, /* sub, six times: DomMethodItemTlv */
    DOM_DB_ITA_LEVEL_COUNT = 2,
    DOM_DB_ITA_LEVEL = 3, /* sub, eight times: DomDbItaLevelTlv */
    DOM_DB_ITA_TOGETHER_STATE = 4,
    DOM_DB_ITA_SEPARATION_STATE = 5,
    DOM_DB_ITA_QUOTA_OUT_STATE = 6
};
enum DomDbItaLevelTlv {
    DOM_DB_ITA_LEVEL_INDEX = 1, /* 0..7 */
    DOM_DB_ITA_LEVEL_ID = 2,
    DOM_DB_ITA_LEVEL_VALUE = 3,
    DOM_DB_ITA_LEVEL_FIRST_A = 4,
    DOM_DB_ITA_LEVEL_FIRST_B = 5,
    DOM_DB_ITA_LEVEL_SECOND_A = 6,
    DOM_DB_ITA_LEVEL_SECOND_B = 7
};

/* The accounting policies of former releases, which are read and never written: key, cut to 46
 * characters, and the offsets of a fixed block of big-endian numbers. */
#define DOM_DB_PREFIX_ITA_POLICY_OLD "dom-ita-policy-"
#define DOM_DB_PREFIX_ITA_POLICY_OLD_LEN 15u
#define DOM_DB_ITA_POLICY_OLD_KEY_SIZE 47u
enum DomDbOldItaPolicy {
    DOM_DB_OLD_ITA_NAME = 0,
    DOM_DB_OLD_ITA_NAME_SIZE = 32,
    DOM_DB_OLD_ITA_METHODS = 32,
    DOM_DB_OLD_ITA_METHOD_COUNT = 6,
    DOM_DB_OLD_ITA_METHOD_SIZE = 44,
    DOM_DB_OLD_ITA_METHOD_KIND = 0,
    DOM_DB_OLD_ITA_METHOD_NAME = 4,
    DOM_DB_OLD_ITA_METHOD_NAME_SIZE = 32,
    DOM_DB_OLD_ITA_METHOD_INDEX = 36, /* the last 4 bytes of a method are not read */
    DOM_DB_OLD_ITA_LEVEL_COUNT = 296,
    DOM_DB_OLD_ITA_LEVELS = 300,
    DOM_DB_OLD_ITA_LEVEL_ENTRIES = 8,
    DOM_DB_OLD_ITA_LEVEL_SIZE = 24,        /* six words: ID, value, first pair, second pair */
    DOM_DB_OLD_ITA_TOGETHER_STATE = 492,   /* 2 bytes */
    DOM_DB_OLD_ITA_SEPARATION_STATE = 494, /* 2 bytes */
    DOM_DB_OLD_ITA_QUOTA_OUT_STATE = 496,  /* 2 bytes */
    DOM_DB_OLD_ITA_USED = 498,
    DOM_DB_OLD_ITA_SIZE = 500
};

/* Entry of a critical profile's sorted list, by VPN name, and value of its default segment, which
 * has no VPN name: big-endian segment ID and 16-bit value, segment name, VPN name. The texts are
 * terminated and filled up with zeros; so are the bytes between and behind the members. */
#define DOM_DB_CRITICAL_ENTRY_SIZE 72u
#define DOM_DB_CRITICAL_ENTRY_ID_OFFSET 0u
#define DOM_DB_CRITICAL_ENTRY_VALUE16_OFFSET 4u
#define DOM_DB_CRITICAL_ENTRY_TEXT_OFFSET 8u
#define DOM_DB_CRITICAL_ENTRY_VPN_OFFSET 40u

/* The same of an authorization profile: big-endian segment ID, segment name, VPN name. */
#define DOM_DB_AUTHOR_ENTRY_SIZE 68u
#define DOM_DB_AUTHOR_ENTRY_ID_OFFSET 0u
#define DOM_DB_AUTHOR_ENTRY_TEXT_OFFSET 4u
#define DOM_DB_AUTHOR_ENTRY_VPN_OFFSET 36u

#define DOM_DB_PROFILE_TEXT_SIZE 32u

/* A recording policy's key is the text of its type and this suffix. Its value is a message with
 * TLVs of its own number space, its numbers big-endian. */
#define DOM_DB_REC_POLICY_SUFFIX "-recording-policy"
enum DomDbRecPolicyTlv {
    DOM_DB_REC_TLV_TYPE = 1,  /* UINT32 */
    DOM_DB_REC_TLV_METHOD = 2 /* sub: DomMethodItemTlv; six, empty ones included */
};

/* The run database: user records, each list under a key of its own, which is stored with its NUL.
 * An entry is a record's stored form; docs/formats/run_db.md describes it. */
#define DOM_RUN_DB_DATABASE "gRECORD"
#define DOM_RUN_DB_TABLE "isp-domain"
#define DOM_RUN_DB_VERSION_TEXT "1"
#define DOM_RUN_DB_KEY_ABNORMAL_OFFLINE "AaaUserRecordAbnormalOffline"
#define DOM_RUN_DB_KEY_ABNORMAL_OFFLINE_LEN 29u
#define DOM_RUN_DB_KEY_NORMAL_OFFLINE "AaaUserRecordNormalOffline"
#define DOM_RUN_DB_KEY_NORMAL_OFFLINE_LEN 27u
#define DOM_RUN_DB_KEY_ONLINE_FAIL "AaaUserRecordOnlineFail"
#define DOM_RUN_DB_KEY_ONLINE_FAIL_LEN 24u
/* Value types of the lists; numbers that DomDbObject does not use. */
enum DomRunDbList {
    DOM_RUN_DB_ABNORMAL_OFFLINE = 41,
    DOM_RUN_DB_NORMAL_OFFLINE = 42,
    DOM_RUN_DB_ONLINE_FAIL = 43
};
/* Sort key of an entry: the serial number, the value of the first item. */
#define DOM_RUN_DB_SERIAL_OFFSET 4u
#define DOM_RUN_DB_SERIAL_SIZE 8u

#define DOM_DB_VALUE_MAX 65535u

#endif
