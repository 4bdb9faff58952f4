#include <aaadom/domain.h>
#include <aaadom/method_list.h>
#include <aaadom/results.h>

#include <cstdlib>

#include "base/domain_block.h"
#include "domain/method_list_edit.h"
#include "domain/method_list_rules.h"
#include "domain/method_list_store.h"

using namespace aaadom;

extern "C" {

MethodList* DOM_CreateMethodList(void) noexcept {
    return static_cast<MethodList*>(calloc(1, sizeof(MethodList)));
}

void DOM_DestroyMethodList(MethodList* list) noexcept {
    FreeMethodList(list);
}

uint32_t DOM_GetMethodList(const char* domain, uint32_t aaa_type, uint32_t service,
                           MethodList* list_out, MethodEntry* extras_out) noexcept {
    return GetMethodList(domain, aaa_type, service, list_out, extras_out);
}

uint32_t DOM_AddMethodList(const char* domain, MethodList* list,
                           const MethodEntry* extras) noexcept {
    return list == nullptr ? DOM_ERR_FAILED : AddMethodList(domain, *list, extras);
}

uint32_t DOM_DelMethodList(const char* domain, const MethodList* list_header) noexcept {
    if (list_header == nullptr) return DOM_ERR_FAILED;
    return DeleteMethodList(domain, list_header->aaa_type, list_header->service);
}

uint32_t DOM_IsServiceSupportTheMethod(uint32_t service, uint32_t aaa_type,
                                       uint32_t method_kind) noexcept {
    return IsMethodSupported(service, aaa_type, method_kind) ? 1 : 0;
}

void DOM_UpdateMethodModule(MethodEntry entries[DOM_METHODS], uint32_t method_kind) noexcept {
    if (entries != nullptr) AppendKind(entries, method_kind);
}

void DOM_UpdateMethodSchemeName(MethodEntry entries[DOM_METHODS], uint32_t method_kind,
                                char* scheme_name) noexcept {
    if (scheme_name == nullptr) return;
    DOM_ToLowerCaseStr(scheme_name);
    if (entries != nullptr) NameFirstOfKind(entries, method_kind, scheme_name);
}

}  // extern "C"
