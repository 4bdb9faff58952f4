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
#define DOM_DB_PROFILE_KEY_SIZE 129u

/* Entry of a NAS-ID profile's sorted list: VLAN identifier in host order, the sort key, then the
 * NAS-ID, terminated and filled up with zeros. */
#define DOM_DB_NASID_ENTRY_SIZE 34u
#define DOM_DB_NASID_ENTRY_VLAN_OFFSET 0u
#define DOM_DB_NASID_ENTRY_VLAN_SIZE 2u
#define DOM_DB_NASID_ENTRY_TEXT_OFFSET 2u
#define DOM_DB_NASID_ENTRY_TEXT_SIZE 32u

#define DOM_DB_VALUE_MAX 65535u

#endif
