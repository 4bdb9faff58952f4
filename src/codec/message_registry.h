// The codes whose messages are built and read by the method, domain and settings codecs. The golden
// test has a file for each.
#pragma once

#include <aaadom/codes.h>

namespace aaadom {

inline constexpr DomMsgCode kDomainMessageCodes[] = {
    DOM_MSG_DOMAIN,           DOM_MSG_DEFAULT_DOMAIN,     DOM_MSG_DOMAIN_COUNT,
    DOM_MSG_DOMAIN_NAME,      DOM_MSG_METHOD_LIST,        DOM_MSG_STATE,
    DOM_MSG_SESSION_LIMIT,    DOM_MSG_SESSION_COUNT,      DOM_MSG_ALL_SESSION_LIMIT,
    DOM_MSG_AUTHOR_ATTR,      DOM_MSG_DOMAIN_NAME_LEN,    DOM_MSG_SCHEME_INDEX,
    DOM_MSG_DOMAIN_ROW,       DOM_MSG_SCHEME_ROW,         DOM_MSG_UNKNOWN_DOMAIN,
    DOM_MSG_SESSION_TIME,     DOM_MSG_DEVICE_ID,          DOM_MSG_USER_ADDR_TYPE,
    DOM_MSG_GLOBAL_DOMAIN,    DOM_MSG_ACCT_DUAL_STACK,    DOM_MSG_REDIRECT,
    DOM_MSG_AUTH_FAIL_DOMAIN, DOM_MSG_PERMIT_DOMAIN,      DOM_MSG_ESCAPE_RECOVER,
    DOM_MSG_DEBUG_FLAG,       DOM_MSG_AAA_AUTHOR_PROFILE, DOM_MSG_AAA_AUTHOR_PROFILE_NUM,
    DOM_MSG_DOMAIN_NAME_INFO, DOM_MSG_NASID_PROFILE,      DOM_MSG_NASID_BIND,
};

/// The same for accounting policies.
inline constexpr DomMsgCode kItaPolicyMessageCodes[] = {
    DOM_MSG_ITA_POLICY,         DOM_MSG_ITA_POLICY_NAME, DOM_MSG_ITA_ACCT_SCHEME,
    DOM_MSG_ITA_ACCT_TOGETHER,  DOM_MSG_ITA_ACCT_LEVEL,  DOM_MSG_ITA_TRAF_SEPRATE,
    DOM_MSG_ITA_TRAF_QUOTA_OUT,
};

/// The same for recording policies.
inline constexpr DomMsgCode kRecPolicyMessageCodes[] = {
    DOM_MSG_REC_POLICY,
    DOM_MSG_REC_POLICY_TYPE,
    DOM_MSG_REC_ACCT_SCHEME,
};

/// The same for critical and authorization profiles.
inline constexpr DomMsgCode kProfileMessageCodes[] = {
    DOM_MSG_CRITICAL_PROFILE, DOM_MSG_CRITICAL_VPN, DOM_MSG_CRITICAL_SEGMENT,
    DOM_MSG_AUTHOR_PROFILE,   DOM_MSG_AUTHOR_VPN,   DOM_MSG_AUTHOR_SEGMENT,
};

/// The same for user records, queries of them, their switches and backup methods.
inline constexpr DomMsgCode kRecordMessageCodes[] = {
    DOM_MSG_RECORD_NUMBER,         DOM_MSG_RECORD_ALL,
    DOM_MSG_RECORD_BY_TIME,        DOM_MSG_RECORD_BY_CONDITIONS,
    DOM_MSG_RECORD_BY_REASON,      DOM_MSG_RECORD_TOP,
    DOM_MSG_RESET_ONLINE_FAIL,     DOM_MSG_RESET_OFFLINE_ALL,
    DOM_MSG_RESET_OFFLINE_NORMAL,  DOM_MSG_RESET_OFFLINE_ABNORMAL,
    DOM_MSG_REC_EN_ONLINE_FAIL,    DOM_MSG_REC_EN_OFFLINE_ALL,
    DOM_MSG_REC_EN_OFFLINE_NORMAL, DOM_MSG_REC_EN_OFFLINE_ABNORMAL,
    DOM_MSG_REC_ENABLE_INFO,       DOM_MSG_BACKUP_METHOD,
    DOM_MSG_USER_RECORD,
};

}  // namespace aaadom
