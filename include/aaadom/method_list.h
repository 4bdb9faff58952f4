/* Method lists and the scheme table. */
#ifndef AAADOM_METHOD_LIST_H
#define AAADOM_METHOD_LIST_H

#include <aaadom/types.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

MethodList* DOM_CreateMethodList(void);
void DOM_DestroyMethodList(MethodList* list);
uint32_t DOM_GetMethodList(const char* domain, uint32_t aaa_type, uint32_t service,
                           MethodList* list_out, MethodEntry* extras_out);
uint32_t DOM_AddMethodList(const char* domain, MethodList* list, const MethodEntry* extras);
uint32_t DOM_DelMethodList(const char* domain, const MethodList* list_header);
uint32_t DOM_IsServiceSupportTheMethod(uint32_t service, uint32_t aaa_type, uint32_t method_kind);
void DOM_UpdateMethodModule(MethodEntry entries[DOM_METHODS], uint32_t method_kind);
void DOM_UpdateMethodSchemeName(MethodEntry entries[DOM_METHODS], uint32_t method_kind,
                                char* scheme_name);
uint32_t DOM_GetMethodIndex(const char* domain, uint32_t scheme_index, uint32_t* position_out);
uint32_t DOM_GetAAAType(const char* domain, uint32_t scheme_index, uint32_t* aaa_type_out);
uint32_t DOM_IsSchemeTableNull(void);
uint32_t DOM_MibGetFirstScheme(MibSchemeRow* row_out);
uint32_t DOM_MibGetNextScheme(const char* domain, uint32_t name_length, uint32_t scheme_index,
                              MibSchemeRow* row_out);
uint32_t DOM_AddSchemeTable(const MibSchemeRow* row);
uint32_t DOM_ModifySchemeTable(const MibSchemeRow* row);
uint32_t DOM_DeleteSchemeByIndex(const char* domain, uint32_t scheme_index);
uint32_t DOM_CreateDomainSchemeResource(const DomainInfo* record, SchemeResources* resources_out);
void DOM_DestroyDomainSchemeResource(SchemeResources* resources);
uint32_t DOM_GetItaPolicyName(const char* domain, uint32_t size, char* text_out);
uint32_t DOM_IsItaEnabled(const char* domain);
uint32_t DOM_GetItaMethodList(const char* domain, MethodList* list_out);
uint32_t DOM_GetAcctPolicy(const char* domain, uint32_t attribute_code, uint32_t* value_out);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
