/* Domains: create, find, add, delete, walk; authorization attributes. */
#ifndef AAADOM_DOMAIN_H
#define AAADOM_DOMAIN_H

#include <aaadom/types.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

uint32_t DOM_CheckDomainName(const char* name);
void DOM_ToLowerCaseStr(char* text);
DomainInfo* DOM_CreateDomain(void);
void DOM_DestroyDomain(DomainInfo* record);
ZorvDomain* DOM_CreateZorvDomain(void);
void DOM_DestroyZorvDomain(ZorvDomain* node);
DomainInfo* DOM_FindDomainByName(const char* name);
uint32_t DOM_IsDomainExist(const char* name);
void DOM_AddDomain(DomainInfo* record, ZorvDomain* mib_node, SchemeResources* resources);
uint32_t DOM_AddDomainByName(const char* name);
uint32_t DOM_MibAddDomain(DomainInfo* record);
uint32_t DOM_MibUpdateDomain(const DomainMibRow* row, uint64_t change_mask);
uint32_t DOM_UpdateDomain(DomainInfo* record);
uint32_t DOM_DelDomainCheck(const char* name);
void DOM_DeleteDomain(DomainInfo* record);
uint32_t DOM_DeleteDomainAndDBByName(const char* name, uint16_t also_database);
void DOM_InitAuthorAttr(AuthorAttr* block);
uint32_t DOM_AddAuthorAttr(const char* domain, const AuthorAttr* block, uint32_t kind);
uint32_t DOM_DelAuthorAttr(const char* domain, uint32_t kind);
uint32_t DOM_GetDomainAuthorAttrByName(const char* name, AuthorAttr* block_out);
uint32_t DOM_SetRedirectMoveTemporarily(const char* name, uint32_t code);
uint32_t DOM_GetRedirectCode(const char* name);
uint32_t DOM_GetDomainCount(uint32_t* count_out);
DomainInfo* DOM_GetFirstDomain(void);
DomainInfo* DOM_GetNextDomain(const char* name);
DomainInfo* DOM_MibGetFirstDomain(void);
DomainInfo* DOM_MibGetNextDomain(const char* name, uint32_t name_length);
DomainInfo* DOM_NetConfGetFirstDomain(void);
DomainInfo* DOM_NetConfGetNextDomain(const char* name);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
