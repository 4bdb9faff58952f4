/* Device-wide settings and the per-domain options. */
#ifndef AAADOM_SETTINGS_H
#define AAADOM_SETTINGS_H

#include <aaadom/types.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/** The debug flag word and its lock, one for the process. Its fields are visible where the C library
 *  offers reader-writer locks, which strict ISO C mode hides. */
typedef struct AAAGlobalBaseInfo AAAGlobalBaseInfo;
#ifdef PTHREAD_RWLOCK_INITIALIZER
struct AAAGlobalBaseInfo {
    pthread_rwlock_t lock;
    uint32_t debug_flag; /* bit 0: error messages, bit 1: event messages */
};
#endif
extern AAAGlobalBaseInfo g_stAAAGlobalBaseInfo;

void DOM_GetDefaultDomainName(char* text_out);
void DOM_SetDefaultDomainName(const char* name);
void DOM_GetUnknownDomainName(char* text_out);
void DOM_SetUnknownDomainName(const char* name);
void DOM_GetGlobalDomainName(GlobalDomain* record_out);
void DOM_SetDeviceID(uint32_t device_id);
uint32_t DOM_GetDeviceID(void);
void DOM_AAASetDebugFlag(uint32_t mask);
void DOM_AAAResetDebugFlag(uint32_t mask);
uint32_t DOM_AAAGetDebugFlag(void);
uint32_t DOM_GetState(const char* domain);
void DOM_SetState(const char* domain, uint16_t state);
uint32_t DOM_GetUserAddrType(const char* domain);
void DOM_SetUserAddrType(const char* domain, uint32_t user_addr_type);
uint32_t DOM_GetAcctDualStackMode(const char* domain);
void DOM_SetAcctDualStackMode(const char* domain, uint32_t mode);
uint32_t DOM_SetEscapeRecoverAction(const char* domain, uint16_t operation,
                                    const EscapeRecoverAction* block);
uint32_t DOM_GetEscapeRecoverAction(const char* domain, EscapeRecoverAction* block_out);
uint32_t DOM_SetAuthRdFailPermitDomain(uint16_t operation, const char* domain,
                                       const char* permit_domain);
uint32_t DOM_GetAuthRdFailPermitDomain(const char* domain, uint32_t size, char* text_out);
uint32_t DOM_SetAuthFailDomain(const char* domain, const char* auth_fail_domain, uint16_t kind);
uint32_t DOM_GetAuthFailDomain(const char* domain, uint32_t size, char* text_out,
                               uint16_t* kind_out);
void DOM_InitCriticalProfile(CriticalProfileMsg* record);
void DOM_InitAuthorProfile(AuthorProfileMsg* record);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
