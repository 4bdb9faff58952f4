/* Management requests: one operation, one message to the configuration thread. */
#ifndef AAADOM_MANAGEMENT_H
#define AAADOM_MANAGEMENT_H

#include <aaadom/types.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

uint32_t MOR_SetDomainName(const char* name, uint32_t op, uint32_t* result);
uint32_t MOR_SetUnknownDomain(const char* name, uint32_t op, uint32_t* result);
uint32_t MOR_SetSchemeTable(uint64_t flags, const char* domain, uint32_t row_status,
                            uint32_t aaa_type, uint32_t scheme_index, uint32_t method_type,
                            const char* scheme_name, uint32_t op, uint32_t* result);
uint32_t MOR_CreateDomainInfoTable(const char* name, uint32_t state, uint32_t row_status,
                                   uint32_t* result);
uint32_t MOR_DestroyDomainName(const char* name, uint32_t* result);
uint32_t MOR_SetDomainInfoTable(uint64_t flags, const char* name, uint32_t state,
                                uint32_t row_status, uint32_t* result);
uint32_t MOR_SetDefaultDomain(const char* name, uint32_t value_18, uint32_t op, uint32_t* result);
uint32_t MOR_SetSessionLimit(uint32_t session_class, uint32_t limit, uint32_t* result);
uint32_t MOR_SetDeviceID(uint32_t device_id, uint32_t* result);
uint32_t MOR_SetAuthFailDomain(const char* name, const char* fail_domain, uint32_t value_18,
                               uint16_t kind, uint32_t* result);
uint32_t MOR_SetAuthRdFailPermitDomain(const char* name, const char* permit_domain,
                                       uint32_t value_18, uint32_t op);
uint32_t MOR_SetAuthenEscapeRecover(const char* name, uint16_t setting, const char* escape_domain,
                                    uint16_t second_setting, uint32_t value_18, uint32_t op);
uint32_t MOR_SetState(const char* name, uint16_t state);
uint32_t MOR_SetSessionTime(const char* name, uint16_t session_time);
uint32_t MOR_SetMethodList(const char* name, const MethodList* list, const MethodEntry* extra,
                           uint32_t op);
uint32_t MOR_SetAuthorAttr(uint32_t kind, const char* name, const AuthorAttr* attr, uint32_t op);
uint32_t MOR_SetRedirectMoveTemporarily(const char* name, uint32_t op);
uint32_t MOR_SetUserAddrType(const char* name, uint32_t user_addr_type);
uint32_t MOR_SetAcctDualStackMode(const char* name, uint32_t mode);
uint32_t MOR_SetAAADebugFlag(uint32_t flag, uint32_t op);
uint32_t MOR_GetDefaultDomain(uint32_t size, char* name, uint32_t* value_18);
uint32_t MOR_GetGlobalDomain(uint32_t default_size, char* default_name, uint32_t unknown_size,
                             char* unknown_name, uint32_t* device_id, uint32_t* value_18);
DomainInfo* MOR_GetDomain(const char* name, uint32_t op, uint32_t* result);
DomainInfo* MOR_GetNextDomain(const char* name, uint32_t op, uint32_t* result);
uint32_t MOR_GetDomainCount(uint32_t* count);
uint32_t MOR_GetXmlSessionLimit(SessionLimits* limits);
uint32_t MOR_GetAAADebugFlag(uint32_t* flag);
uint32_t MOR_GetDomainInfoTable(const char* name, uint32_t name_length, uint32_t op,
                                DomainMibRow* row, uint32_t* result);
uint32_t MOR_GetMibSchemeTable(const char* domain, uint32_t name_length, uint32_t scheme_index,
                               uint32_t op, MibSchemeRow* row, uint32_t* result);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
