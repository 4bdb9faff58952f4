// The messages of single values: which values each code carries, in sending order.
#pragma once

#include <aaadom/codes.h>

#include "codec/value_message.h"

namespace aaadom {

inline constexpr ValueField kDomainName = {DOM_TLV_DOMAIN_NAME, ValueKind::kName};
// Carried for the front ends; the library itself sends 0 and never looks at it.
inline constexpr ValueField kValue18 = {DOM_TLV_VALUE_18, ValueKind::kWord};

inline constexpr ValueMessage<2> kDefaultDomainMessage = {DOM_MSG_DEFAULT_DOMAIN,
                                                          {kDomainName, kValue18}};
inline constexpr ValueMessage<1> kDomainCountMessage = {
    DOM_MSG_DOMAIN_COUNT, {{DOM_TLV_DOMAIN_COUNT, ValueKind::kMainWord}}};
inline constexpr ValueMessage<1> kDomainNameMessage = {DOM_MSG_DOMAIN_NAME, {kDomainName}};
inline constexpr ValueMessage<2> kStateMessage = {DOM_MSG_STATE,
                                                  {kDomainName, {DOM_TLV_STATE, ValueKind::kHalf}}};
inline constexpr ValueMessage<2> kDomainNameLenMessage = {
    DOM_MSG_DOMAIN_NAME_LEN, {kDomainName, {DOM_TLV_NAME_LENGTH, ValueKind::kWord}}};
inline constexpr ValueMessage<3> kSchemeIndexMessage = {DOM_MSG_SCHEME_INDEX,
                                                        {kDomainName,
                                                         {DOM_TLV_NAME_LENGTH, ValueKind::kWord},
                                                         {DOM_TLV_SCHEME_INDEX, ValueKind::kWord}}};
inline constexpr ValueMessage<1> kNasIdProfileMessage = {
    DOM_MSG_NASID_PROFILE, {{DOM_TLV_NASID_PROFILE, ValueKind::kName}}};
inline constexpr ValueMessage<1> kUnknownDomainMessage = {
    DOM_MSG_UNKNOWN_DOMAIN, {{DOM_TLV_UNKNOWN_DOMAIN, ValueKind::kName}}};
inline constexpr ValueMessage<2> kSessionTimeMessage = {
    DOM_MSG_SESSION_TIME, {kDomainName, {DOM_TLV_SESSION_TIME, ValueKind::kHalf}}};
inline constexpr ValueMessage<1> kDeviceIdMessage = {DOM_MSG_DEVICE_ID,
                                                     {{DOM_TLV_DEVICE_ID, ValueKind::kWord}}};
inline constexpr ValueMessage<2> kUserAddrTypeMessage = {
    DOM_MSG_USER_ADDR_TYPE, {kDomainName, {DOM_TLV_USER_ADDR_TYPE, ValueKind::kWord}}};
// A device without a default domain sends an empty name. A message without the name is no such
// reply: readers take it for the refusal that it is.
inline constexpr ValueMessage<4> kGlobalDomainMessage = {
    DOM_MSG_GLOBAL_DOMAIN,
    {kDomainName,
     {DOM_TLV_UNKNOWN_DOMAIN, ValueKind::kText},
     {DOM_TLV_DEVICE_ID, ValueKind::kWord},
     kValue18}};
inline constexpr ValueMessage<2> kDualStackMessage = {
    DOM_MSG_ACCT_DUAL_STACK, {kDomainName, {DOM_TLV_DUAL_STACK_MODE, ValueKind::kWord}}};
// The operation of the request switches the redirect on or off.
inline constexpr ValueMessage<1> kRedirectMessage = {DOM_MSG_REDIRECT, {kDomainName}};
inline constexpr ValueMessage<4> kAuthFailDomainMessage = {
    DOM_MSG_AUTH_FAIL_DOMAIN,
    {kDomainName,
     {DOM_TLV_AUTH_FAIL_DOMAIN, ValueKind::kText},
     kValue18,
     {DOM_TLV_AUTH_FAIL_KIND, ValueKind::kHalf}}};
inline constexpr ValueMessage<3> kPermitDomainMessage = {
    DOM_MSG_PERMIT_DOMAIN, {kDomainName, {DOM_TLV_PERMIT_DOMAIN, ValueKind::kText}, kValue18}};
inline constexpr ValueMessage<5> kEscapeRecoverMessage = {
    DOM_MSG_ESCAPE_RECOVER,
    {kDomainName,
     {DOM_TLV_ESCAPE_SETTING, ValueKind::kHalf},
     {DOM_TLV_ESCAPE_DOMAIN, ValueKind::kText},
     {DOM_TLV_ESCAPE_SECOND, ValueKind::kHalf},
     kValue18}};
inline constexpr ValueMessage<1> kDebugFlagMessage = {DOM_MSG_DEBUG_FLAG,
                                                      {{DOM_TLV_DEBUG_FLAG, ValueKind::kWord}}};
inline constexpr ValueMessage<1> kAuthorProfileNameMessage = {
    DOM_MSG_AAA_AUTHOR_PROFILE, {{DOM_TLV_AUTHOR_PROFILE_NAME, ValueKind::kName}}};
inline constexpr ValueMessage<1> kAuthorProfileNumMessage = {
    DOM_MSG_AAA_AUTHOR_PROFILE_NUM, {{DOM_TLV_AUTHOR_PROFILE_NUM, ValueKind::kWord}}};
inline constexpr ValueMessage<1> kCriticalProfileMessage = {
    DOM_MSG_CRITICAL_PROFILE, {{DOM_TLV_CRITICAL_PROFILE_NAME, ValueKind::kName}}};
inline constexpr ValueMessage<1> kAuthorProfileMessage = {
    DOM_MSG_AUTHOR_PROFILE, {{DOM_TLV_AUTHOR_PROFILE_NAME, ValueKind::kName}}};
inline constexpr ValueMessage<2> kCriticalVpnQuestion = {
    DOM_MSG_CRITICAL_VPN,
    {{DOM_TLV_CRITICAL_PROFILE_NAME, ValueKind::kName},
     {DOM_TLV_CRITICAL_VPN_NAME, ValueKind::kName}}};
inline constexpr ValueMessage<2> kAuthorVpnQuestion = {
    DOM_MSG_AUTHOR_VPN,
    {{DOM_TLV_AUTHOR_PROFILE_NAME, ValueKind::kName}, {DOM_TLV_AUTHOR_VPN_NAME, ValueKind::kName}}};
inline constexpr ValueMessage<1> kDomainNameInfoMessage = {DOM_MSG_DOMAIN_NAME_INFO, {kDomainName}};

}  // namespace aaadom
