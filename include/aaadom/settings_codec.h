/* Global settings and per-domain options in messages. */
#ifndef AAADOM_SETTINGS_CODEC_H
#define AAADOM_SETTINGS_CODEC_H

#include <aaadom/types.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

TLV_MSG* DOM_EncodeDeviceID(uint32_t device_id);
uint32_t DOM_DecodeDeviceID(TLV_MSG* msg, uint32_t* device_id);
TLV_MSG* DOM_EncodeUserAddrType(const char* name, uint32_t user_addr_type);
uint32_t DOM_DecodeUserAddrType(TLV_MSG* msg, uint32_t size, char* name, uint32_t* user_addr_type);
TLV_MSG* DOM_EncodeAcctDualStackMode(const char* name, uint32_t mode);
uint32_t DOM_DecodeAcctDualStackMode(TLV_MSG* msg, uint32_t size, char* name, uint32_t* mode);
TLV_MSG* DOM_EncodeDebugFlag(uint32_t flag);
uint32_t DOM_DecodeDebugFlag(TLV_MSG* msg, uint32_t* flag);
TLV_MSG* DOM_EncodeAuthenEscapeRecover(const char* name, uint16_t setting,
                                       const char* escape_domain, uint16_t second_setting,
                                       uint32_t value_18);
uint32_t DOM_DecodeAuthenEscapeRecover(TLV_MSG* msg, uint32_t size, char* name, uint16_t* setting,
                                       uint32_t escape_size, char* escape_domain,
                                       uint16_t* second_setting, uint32_t* value_18);
TLV_MSG* DOM_EncodeAuthRdFailPermitDomain(const char* name, const char* permit_domain,
                                          uint32_t value_18);
uint32_t DOM_DecodeAuthRdFailPermitDomain(TLV_MSG* msg, uint32_t size, char* name,
                                          uint32_t permit_size, char* permit_domain,
                                          uint32_t* value_18);
TLV_MSG* DOM_EncodeAuthFailDomain(const char* name, const char* fail_domain, uint32_t value_18,
                                  uint16_t kind);
uint32_t DOM_DecodeAuthFailDomain(TLV_MSG* msg, uint32_t size, char* name, uint32_t fail_size,
                                  char* fail_domain, uint32_t* value_18, uint16_t* kind);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
