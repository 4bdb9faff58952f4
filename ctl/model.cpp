#include "model.h"

#include <cstring>
#include <set>

#include "attributes.h"
#include "document.h"
#include "names.h"
#include "texts.h"

namespace aaactl {
namespace {

constexpr uint32_t kTypes[] = {AAA_TYPE_0, AAA_TYPE_4, AAA_TYPE_5};

template <size_t N>
void SetText(char (&field)[N], const std::string& text, const std::string& what) {
    CheckFits(what, text, N);
    memset(field, 0, N);
    memcpy(field, text.data(), text.size());
}

void MethodsFromJson(const Json& document, DomainInfo& domain) {
    std::set<std::pair<uint32_t, uint32_t>> given;
    const Json lists = DocumentList(document, "methods");
    for (const Json& item : lists) {
        if (!item.is_object()) RefuseUsage("methods", "an entry is no object", "Mend the file");
        RefuseUnknown(item, "methods", {"type", "service", "methods", "extra"});
        const uint32_t type = ParseAaaType(DocumentText(item, "type"));
        const uint32_t service = ParseService(DocumentText(item, "service"));
        MethodList*& place = domain.method_lists[type][service];
        if (!given.insert({type, service}).second) {
            RefuseUsage("methods of " + AaaTypeName(type) + ", service " + ServiceName(service),
                        "they are given twice for one domain", "Remove one of the entries");
        }
        if (place == nullptr) place = DOM_CreateMethodList();
        if (place == nullptr) {
            throw Failure(kExitRefused, "methods", "out of memory", "Free memory and try again");
        }
        *place = ParseMethodList(type, service, DocumentTexts(item, "methods"));
        const std::string extra = DocumentText(item, "extra");
        if (!extra.empty()) domain.service_extras[service] = ParseMethod(extra);
    }
}

}  // namespace

std::string FoldedName(std::string name) {
    for (char& c : name) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return name;
}

Json DomainToJson(const DomainInfo& domain) {
    Json document{{"name", FieldText(domain.name)},
                  {"state", domain.state},
                  {"session_time", domain.session_time},
                  {"address_type", domain.user_addr_type},
                  {"dual_stack_mode", domain.acct_dual_stack_mode},
                  {"redirect", domain.redirect_code != 0},
                  {"permit_domain", FieldText(domain.auth_rd_fail_permit_domain)}};
    document["escape_recover"] = {{"domain", FieldText(domain.escape_recover.domain_name)},
                                  {"setting", domain.escape_recover.setting},
                                  {"second_setting", domain.escape_recover.second_setting}};
    document["auth_fail"] = {{"domain", FieldText(domain.auth_fail_domain)},
                             {"kind", domain.auth_fail_domain_kind}};
    document["methods"] = Json::array();
    for (uint32_t type : kTypes) {
        for (uint32_t service = 0; service < DOM_SERVICES; ++service) {
            const MethodList* list = domain.method_lists[type][service];
            if (list == nullptr) continue;
            Json item{{"type", AaaTypeName(type)},
                      {"service", ServiceName(service)},
                      {"methods", MethodNames(list->methods)}};
            const MethodEntry& extra = domain.service_extras[service];
            if (type == AAA_TYPE_5 && extra.method_kind != METHOD_EMPTY) {
                item["extra"] = MethodName(extra);
            }
            document["methods"].push_back(item);
        }
    }
    document["attributes"] = AttributesToJson(domain.author_attr);
    return document;
}

DomainPtr DomainFromJson(const Json& document) {
    if (!document.is_object()) RefuseUsage("domain", "its entry is no object", "Mend the file");
    const std::string name = DocumentText(document, "name");
    CheckDomainName(name);
    const std::string object = "domain \"" + name + "\"";
    RefuseUnknown(document, object,
                  {"name", "state", "session_time", "address_type", "dual_stack_mode", "redirect",
                   "permit_domain", "escape_recover", "auth_fail", "methods", "attributes"});
    DomainPtr domain(DOM_CreateDomain());
    if (!domain) throw Failure(kExitRefused, object, "out of memory", "Free memory and try again");
    SetText(domain->name, name, "name");
    domain->state =
        static_cast<uint16_t>(DocumentNumber(document, "state", DOM_DEF_STATE, UINT16_MAX));
    domain->session_time =
        static_cast<uint16_t>(DocumentNumber(document, "session_time", 0, UINT16_MAX));
    domain->user_addr_type =
        DocumentNumber(document, "address_type", DOM_DEF_ADDR_TYPE, UINT32_MAX);
    domain->acct_dual_stack_mode =
        DocumentNumber(document, "dual_stack_mode", DOM_DEF_DUAL_STACK, UINT32_MAX);
    domain->redirect_code = DocumentFlag(document, "redirect", false) ? 1 : 0;
    SetText(domain->auth_rd_fail_permit_domain, DocumentText(document, "permit_domain"),
            "permit domain");
    const Json escape = DocumentObject(document, "escape_recover");
    RefuseUnknown(escape, object + " escape_recover", {"domain", "setting", "second_setting"});
    SetText(domain->escape_recover.domain_name, DocumentText(escape, "domain"), "escape domain");
    domain->escape_recover.setting =
        static_cast<uint16_t>(DocumentNumber(escape, "setting", 0, UINT16_MAX));
    domain->escape_recover.second_setting =
        static_cast<uint16_t>(DocumentNumber(escape, "second_setting", 0, UINT16_MAX));
    const Json auth_fail = DocumentObject(document, "auth_fail");
    RefuseUnknown(auth_fail, object + " auth_fail", {"domain", "kind"});
    SetText(domain->auth_fail_domain, DocumentText(auth_fail, "domain"),
            "authentication-fail domain");
    domain->auth_fail_domain_kind =
        static_cast<uint16_t>(DocumentNumber(auth_fail, "kind", 0, UINT16_MAX));
    MethodsFromJson(document, *domain);
    const Json attributes = DocumentObject(document, "attributes");
    for (const auto& [kind, fields] : attributes.items()) {
        SetFieldsFromJson(domain->author_attr, ParseKind(kind), fields);
    }
    return domain;
}

namespace {

bool SameMethods(const MethodList* a, const MethodList* b) {
    if (a == nullptr || b == nullptr) return a == b;
    return MethodNames(a->methods) == MethodNames(b->methods);
}

void ApplyMethods(Client& client, const std::string& name, const DomainInfo& current,
                  const DomainInfo& wanted) {
    for (uint32_t type : kTypes) {
        for (uint32_t service = 0; service < DOM_SERVICES; ++service) {
            const MethodList* list = wanted.method_lists[type][service];
            const MethodEntry& extra = wanted.service_extras[service];
            const bool same_extra =
                type != AAA_TYPE_5 ||
                MethodName(extra) == MethodName(current.service_extras[service]);
            if (SameMethods(current.method_lists[type][service], list) && same_extra) continue;
            MethodList header{};
            header.aaa_type = type;
            header.service = service;
            client.ChangeDomain(
                name, DOM_EncodeMethList(name.c_str(), list != nullptr ? list : &header, &extra),
                list != nullptr ? DOM_OP_SET : DOM_OP_DELETE);
        }
    }
}

}  // namespace

void ApplyDomain(Client& client, const DomainInfo& current, const DomainInfo& wanted) {
    const std::string name = FieldText(wanted.name);
    const char* text = name.c_str();
    if (current.state != wanted.state) {
        client.ChangeDomain(name, DOM_EncodeState(text, wanted.state), DOM_OP_SET);
    }
    if (current.session_time != wanted.session_time) {
        client.ChangeDomain(name, DOM_EncodeSessionTime(text, wanted.session_time), DOM_OP_SET);
    }
    if (current.user_addr_type != wanted.user_addr_type) {
        client.ChangeDomain(name, DOM_EncodeUserAddrType(text, wanted.user_addr_type), DOM_OP_SET);
    }
    if (current.acct_dual_stack_mode != wanted.acct_dual_stack_mode) {
        client.ChangeDomain(name, DOM_EncodeAcctDualStackMode(text, wanted.acct_dual_stack_mode),
                            DOM_OP_SET);
    }
    if ((current.redirect_code != 0) != (wanted.redirect_code != 0)) {
        client.ChangeDomain(name, DOM_EncodeRedirectMoveTemporarily(text),
                            wanted.redirect_code != 0 ? DOM_OP_SET : DOM_OP_DELETE);
    }
    if (FieldText(current.auth_rd_fail_permit_domain) !=
        FieldText(wanted.auth_rd_fail_permit_domain)) {
        const std::string permit = FieldText(wanted.auth_rd_fail_permit_domain);
        client.ChangeDomain(name, DOM_EncodeAuthRdFailPermitDomain(text, permit.c_str(), 0),
                            permit.empty() ? DOM_OP_DELETE : DOM_OP_SET);
    }
    const EscapeRecoverAction& escape = wanted.escape_recover;
    if (FieldText(current.escape_recover.domain_name) != FieldText(escape.domain_name) ||
        current.escape_recover.setting != escape.setting ||
        current.escape_recover.second_setting != escape.second_setting) {
        const std::string domain = FieldText(escape.domain_name);
        client.ChangeDomain(name,
                            DOM_EncodeAuthenEscapeRecover(text, escape.setting, domain.c_str(),
                                                          escape.second_setting, 0),
                            DOM_OP_SET);
    }
    if (FieldText(current.auth_fail_domain) != FieldText(wanted.auth_fail_domain) ||
        current.auth_fail_domain_kind != wanted.auth_fail_domain_kind) {
        client.ChangeDomain(
            name,
            DOM_EncodeAuthFailDomain(text, FieldText(wanted.auth_fail_domain).c_str(), 0,
                                     wanted.auth_fail_domain_kind),
            DOM_OP_SET);
    }
    ApplyMethods(client, name, current, wanted);
    for (uint32_t kind = 0; kind < DOM_ATTR_KINDS; ++kind) {
        if (SameKind(current.author_attr, wanted.author_attr, kind)) continue;
        SendAttribute(client, name, kind, current.author_attr, wanted.author_attr);
    }
}

}  // namespace aaactl
