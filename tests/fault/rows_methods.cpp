// Rows of method_list.h.
#include <aaadom/domain.h>
#include <aaadom/domain_table.h>
#include <aaadom/method_list.h>

#include "base/text.h"
#include "fault/sweep.h"

namespace fault {
namespace {

constexpr uint32_t kOtherService = 2;

MethodList List(uint32_t service) {
    MethodList list{};
    list.aaa_type = AAA_TYPE_0;
    list.service = service;
    list.methods[0].method_kind = METHOD_SCHEME_2;
    aaadom::CopyText(list.methods[0].scheme_name, "radius-b");
    list.methods[1].method_kind = METHOD_DEFAULT_4;
    return list;
}

Outcome Add(uint32_t service) {
    MethodList list = List(service);
    const uint32_t result = DOM_AddMethodList(kDomain, &list, nullptr);
    return {result, BytesOf(list)};
}

Outcome Delete(uint32_t service) {
    const MethodList list = List(service);
    return DOM_DelMethodList(kDomain, &list);
}

void WithOtherService(Scene&) {
    (void)Add(kOtherService);
}

/// A row of the scheme table: kDomain's list of AAA type 0 has the indexes 1 and 4 or so.
MibSchemeRow SchemeRow(uint32_t index, uint32_t kind, uint32_t aaa_type) {
    MibSchemeRow row{};
    aaadom::CopyText(row.domain_name, kDomain);
    aaadom::CopyText(row.scheme_name, "tacacs-a");
    row.scheme_index = index;
    row.method_kind = kind;
    row.aaa_type = aaa_type;
    row.service = DOM_DEFAULT_SERVICE;
    return row;
}

/// The scheme index of the first method of a list, as it stands on the stage.
uint32_t IndexOf(uint32_t aaa_type) {
    MethodList list{};
    (void)DOM_GetMethodList(kDomain, aaa_type, DOM_DEFAULT_SERVICE, &list, nullptr);
    return list.methods[0].scheme_index;
}

template <typename Read>
Outcome Value(Read&& read) {
    uint32_t value = 0;
    const uint32_t result = read(&value);
    return {result, BytesOf(value)};
}

const Rows lists{
    Reads("DOM_CreateMethodList",
          [](Scene&) { return Made(DOM_CreateMethodList(), DOM_DestroyMethodList); })
        .Good(kSomething)
        .Fails({kNothing}),
    Reads("DOM_DestroyMethodList",
          [](Scene&) {
              return DOM_DestroyMethodList(Quietly([] { return DOM_CreateMethodList(); })), 0;
          }),
    Reads("DOM_GetMethodList",
          [](Scene&) -> Outcome {
              MethodList list{};
              MethodEntry extra{};
              const uint32_t result =
                  DOM_GetMethodList(kDomain, AAA_TYPE_0, DOM_DEFAULT_SERVICE, &list, &extra);
              return {result, BytesOf(list) + BytesOf(extra)};
          }),
    Changes("DOM_AddMethodList/default service", [](Scene&) { return Add(DOM_DEFAULT_SERVICE); }),
    Changes("DOM_AddMethodList/new list", [](Scene&) { return Add(kOtherService); }),
    Changes("DOM_AddMethodList/list that exists", [](Scene&) { return Add(kOtherService); })
        .After(WithOtherService),
    Changes("DOM_DelMethodList/default service",
            [](Scene&) { return Delete(DOM_DEFAULT_SERVICE); }),
    Changes("DOM_DelMethodList/other service", [](Scene&) { return Delete(kOtherService); })
        .After(WithOtherService),
    Reads("DOM_IsServiceSupportTheMethod",
          [](Scene&) {
              return DOM_IsServiceSupportTheMethod(DOM_DEFAULT_SERVICE, AAA_TYPE_0,
                                                   METHOD_SCHEME_2);
          })
        .Good(1),
    Reads("DOM_UpdateMethodModule",
          [](Scene&) -> Outcome {
              MethodList list = List(kOtherService);
              DOM_UpdateMethodModule(list.methods, METHOD_LAST_5);
              return {0, BytesOf(list)};
          }),
    Reads("DOM_UpdateMethodSchemeName",
          [](Scene&) -> Outcome {
              MethodList list = List(kOtherService);
              char name[] = "RADIUS-C";
              DOM_UpdateMethodSchemeName(list.methods, METHOD_SCHEME_2, name);
              return {0, BytesOf(list)};
          }),
    Reads("DOM_GetMethodIndex",
          [](Scene&) {
              return Value([](uint32_t* position) {
                  return DOM_GetMethodIndex(kDomain, IndexOf(AAA_TYPE_4), position);
              });
          }),
    Reads("DOM_GetAAAType",
          [](Scene&) {
              return Value([](uint32_t* type) {
                  return DOM_GetAAAType(kDomain, IndexOf(AAA_TYPE_5), type);
              });
          }),
};

const Rows schemes{
    Reads("DOM_IsSchemeTableNull", [](Scene&) { return DOM_IsSchemeTableNull(); }),
    Reads("DOM_MibGetFirstScheme",
          [](Scene&) -> Outcome {
              MibSchemeRow row{};
              DOM_DomainInfoTableLock();
              const uint32_t result = DOM_MibGetFirstScheme(&row);
              DOM_DomainInfoTableUnlock();
              return {result, BytesOf(row)};
          }),
    Reads("DOM_MibGetNextScheme",
          [](Scene&) -> Outcome {
              MibSchemeRow row{};
              DOM_DomainInfoTableLock();
              const uint32_t result = DOM_MibGetNextScheme(kDomain, 13, 1, &row);
              DOM_DomainInfoTableUnlock();
              return {result, BytesOf(row)};
          }),
    Changes("DOM_AddSchemeTable",
            [](Scene&) {
                const MibSchemeRow row = SchemeRow(0, METHOD_SCHEME_2, AAA_TYPE_4);
                return DOM_AddSchemeTable(&row);
            }),
    Changes("DOM_ModifySchemeTable",
            [](Scene&) {
                const MibSchemeRow row =
                    SchemeRow(IndexOf(AAA_TYPE_0), METHOD_SCHEME_2, AAA_TYPE_0);
                return DOM_ModifySchemeTable(&row);
            })
        .NeverFails(),
    Changes("DOM_DeleteSchemeByIndex",
            [](Scene&) { return DOM_DeleteSchemeByIndex(kDomain, IndexOf(AAA_TYPE_0)); }),
    Reads("DOM_CreateDomainSchemeResource",
          [](Scene&) {
              DomainInfo* domain = Quietly([] { return DOM_CreateDomain(); });
              SchemeResources resources;
              const uint32_t result = DOM_CreateDomainSchemeResource(domain, &resources);
              DOM_DestroyDomainSchemeResource(&resources);
              DOM_DestroyDomain(domain);
              return result;
          })
        .Fails({DOM_ERR_FAILED}),
    Reads("DOM_DestroyDomainSchemeResource",
          [](Scene&) {
              SchemeResources resources{};
              Quietly([&] {
                  DomainInfo* domain = DOM_CreateDomain();
                  (void)DOM_CreateDomainSchemeResource(domain, &resources);
                  DOM_DestroyDomain(domain);
                  return 0;
              });
              return DOM_DestroyDomainSchemeResource(&resources), 0;
          }),
};

const Rows accounting{
    Reads("DOM_GetItaPolicyName",
          [](Scene&) -> Outcome {
              char name[32] = "";
              const uint32_t result = DOM_GetItaPolicyName(kDomain, sizeof name, name);
              return {result, name};
          }),
    Reads("DOM_IsItaEnabled", [](Scene&) { return DOM_IsItaEnabled(kDomain); }).Good(1),
    Reads("DOM_GetItaMethodList",
          [](Scene&) -> Outcome {
              MethodList list{};
              const uint32_t result = DOM_GetItaMethodList(kDomain, &list);
              return {result, BytesOf(list)};
          }),
    Reads("DOM_GetAcctPolicy",
          [](Scene&) {
              return Value(
                  [](uint32_t* value) { return DOM_GetAcctPolicy(kDomain, ACCT_ATTR_189, value); });
          }),
};

}  // namespace
}  // namespace fault
