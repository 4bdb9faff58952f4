// The keys of the saved configuration and of the run database, each with how its values look.
#pragma once

#include <aaadom/db_layout.h>
#include <platform/dbm.h>

#include <cstdint>

namespace fuzz {

struct StoredKey {
    enum class Value { kBytes, kMessage };

    const char* key;
    uint32_t length;
    uint32_t kind;  // DBM_KIND_*
    uint32_t value_type;
    Value value;
    const char* golden;           // begin of the names of its golden files
    uint32_t attributes[4] = {};  // of a list
};

constexpr StoredKey kStoredKeys[] = {
    {DOM_DB_KEY_DOMAINS, DOM_DB_KEY_DOMAINS_LEN, DBM_KIND_ARRAY, DOM_DB_DOMAIN,
     StoredKey::Value::kMessage, "db_domain"},
    {DOM_DB_KEY_DEFAULT_DOMAIN, DOM_DB_KEY_DEFAULT_DOMAIN_LEN, DBM_KIND_BINARY,
     DOM_DB_DEFAULT_DOMAIN, StoredKey::Value::kMessage, "db_default_domain"},
    {DOM_DB_KEY_UNKNOWN_DOMAIN, DOM_DB_KEY_UNKNOWN_DOMAIN_LEN, DBM_KIND_BINARY,
     DOM_DB_UNKNOWN_DOMAIN, StoredKey::Value::kMessage, "db_unknown_domain"},
    {DOM_DB_KEY_SESSION_LIMIT, DOM_DB_KEY_SESSION_LIMIT_LEN, DBM_KIND_BINARY, DOM_DB_SESSION_LIMIT,
     StoredKey::Value::kBytes, "db_session_limit"},
    {DOM_DB_KEY_DEVICE_ID, DOM_DB_KEY_DEVICE_ID_LEN, DBM_KIND_BINARY, DOM_DB_DEVICE_ID,
     StoredKey::Value::kBytes, "db_device_id"},
    {DOM_DB_KEY_RECORD_ENABLE, DOM_DB_KEY_RECORD_ENABLE_LEN, DBM_KIND_BINARY, DOM_DB_RECORD_ENABLE,
     StoredKey::Value::kMessage, "db_record_switches"},
    {DOM_DB_KEY_RECORD_ENABLE_DEFAULT, DOM_DB_KEY_RECORD_ENABLE_DEFAULT_LEN, DBM_KIND_BINARY,
     DOM_DB_RECORD_ENABLE_DEFAULT, StoredKey::Value::kBytes, "db_record_enable_default"},
    {DOM_DB_KEY_RECORD_BACKUP, DOM_DB_KEY_RECORD_BACKUP_LEN, DBM_KIND_BINARY, DOM_DB_RECORD_BACKUP,
     StoredKey::Value::kMessage, "db_record_backup"},
    {DOM_DB_KEY_RECORD_BACKUP_DEFAULT, DOM_DB_KEY_RECORD_BACKUP_DEFAULT_LEN, DBM_KIND_BINARY,
     DOM_DB_RECORD_BACKUP_DEFAULT, StoredKey::Value::kBytes, "db_record_backup_default"},
    {DOM_DB_PREFIX_ITA_POLICY "gold", DOM_DB_PREFIX_ITA_POLICY_LEN + 5, DBM_KIND_BINARY,
     DOM_DB_ITA_POLICY, StoredKey::Value::kMessage, "db_ita_policy"},
    {DOM_DB_PREFIX_ITA_POLICY_OLD "gold", DOM_DB_PREFIX_ITA_POLICY_OLD_LEN + 5, DBM_KIND_BINARY,
     DOM_DB_ITA_POLICY, StoredKey::Value::kBytes, "db_ita_policy_old"},
    {"connection" DOM_DB_REC_POLICY_SUFFIX, 28, DBM_KIND_BINARY, DOM_DB_REC_POLICY,
     StoredKey::Value::kMessage, "db_rec_policy"},
    {DOM_DB_PREFIX_NASID_PROFILE "branch",
     DOM_DB_PREFIX_NASID_PROFILE_LEN + 7,
     DBM_KIND_SORTED,
     DOM_DB_NASID_VLAN,
     StoredKey::Value::kBytes,
     "db_nas_id",
     {DOM_DB_NASID_ENTRY_VLAN_OFFSET, DOM_DB_NASID_ENTRY_VLAN_SIZE, DBM_KEY_KIND_U16, 0}},
    {DOM_DB_PREFIX_CRITICAL_PROFILE "gold",
     DOM_DB_PREFIX_CRITICAL_PROFILE_LEN + 5,
     DBM_KIND_SORTED,
     DOM_DB_CRITICAL_ENTRY,
     StoredKey::Value::kBytes,
     "db_critical_vpn",
     {DOM_DB_CRITICAL_ENTRY_VPN_OFFSET, DOM_DB_PROFILE_TEXT_SIZE, DBM_KEY_KIND_TEXT, 0}},
    {DOM_DB_PREFIX_CRITICAL_SEGMENT "gold", DOM_DB_PREFIX_CRITICAL_SEGMENT_LEN + 5, DBM_KIND_BINARY,
     DOM_DB_CRITICAL_SEGMENT, StoredKey::Value::kBytes, "db_critical_segment"},
    {DOM_DB_PREFIX_AUTHOR_PROFILE "gold",
     DOM_DB_PREFIX_AUTHOR_PROFILE_LEN + 5,
     DBM_KIND_SORTED,
     DOM_DB_AUTHOR_ENTRY,
     StoredKey::Value::kBytes,
     "db_author_vpn",
     {DOM_DB_AUTHOR_ENTRY_VPN_OFFSET, DOM_DB_PROFILE_TEXT_SIZE, DBM_KEY_KIND_TEXT, 0}},
    {DOM_DB_PREFIX_AUTHOR_SEGMENT "gold", DOM_DB_PREFIX_AUTHOR_SEGMENT_LEN + 5, DBM_KIND_BINARY,
     DOM_DB_AUTHOR_SEGMENT, StoredKey::Value::kBytes, "db_author_segment"},
};

}  // namespace fuzz
