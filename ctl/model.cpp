#include "model.h"

#include <cstring>
#include <set>

#include "attributes.h"
#include "names.h"
#include "nas_id.h"
#include "records.h"

namespace aaactl {
namespace {

constexpr uint32_t kTypes[] = {AAA_TYPE_0, AAA_TYPE_4, AAA_TYPE_5};

template <size_t N>
std::string Text(const char (&field)[N]) {
    return std::string(field, strnlen(field, N));
}

template <size_t N>
void SetText(char (&field)[N], const std::string& text, const std::string& what) {
    CheckFits(what, text, N);
    memset(field, 0, N);
    memcpy(field, text.data(), text.size());
}

Json MethodsToJson(const MethodList& list) {
    Json words = Json::array();
    for (const MethodEntry& entry : list.methods) {
        if (entry.method_kind == METHOD_EMPTY) break;
        words.push_back(MethodName(entry));
    }
    return words;
}

/// A member of a document, checked for its type.
template <typename T>
T Member(const Json& document, const char* name, T missing, bool (Json::*is)() const noexcept,
         const char* type) {
    if (!document.contains(name)) return missing;
    const Json& value = document.at(name);
    if (!(value.*is)()) {
        RefuseUsage("setting \"" + std::string(name) + "\"", std::string("it is no ") + type,
                    "Mend the file");
    }
    return value.get<T>();
}

uint32_t Number(const Json& document, const char* name, uint32_t missing, uint32_t maximum) {
    if (!document.contains(name)) return missing;
    const Json& value = document.at(name);
    if (!value.is_number_unsigned() || value.get<uint64_t>() > maximum) {
        RefuseUsage("setting \"" + std::string(name) + "\"",
                    "it is no whole number from 0 to " + std::to_string(maximum), "Mend the file");
    }
    return value.get<uint32_t>();
}

std::string String(const Json& document, const char* name) {
    return Member<std::string>(document, name, "", &Json::is_string, "text");
}

Json Object(const Json& document, const char* name) {
    return Member<Json>(document, name, Json::object(), &Json::is_object, "object");
}

void RefuseUnknown(const Json& document, const std::string& object,
                   std::initializer_list<const char*> known) {
    for (const auto& [name, value] : document.items()) {
        bool found = false;
        for (const char* word : known) found = found || name == word;
        if (!found) {
            RefuseUsage(object + " setting \"" + name + "\"", "there is no such setting",
                        "Mend the file; aaactl config export shows every setting");
        }
    }
}

void MethodsFromJson(const Json& document, DomainInfo& domain) {
    std::set<std::pair<uint32_t, uint32_t>> given;
    const Json lists = Member<Json>(document, "methods", Json::array(), &Json::is_array, "list");
    for (const Json& item : lists) {
        if (!item.is_object()) RefuseUsage("methods", "an entry is no object", "Mend the file");
        RefuseUnknown(item, "methods", {"type", "service", "methods", "extra"});
        const uint32_t type = ParseAaaType(String(item, "type"));
        const uint32_t service = ParseService(String(item, "service"));
        const Json words = Member<Json>(item, "methods", Json::array(), &Json::is_array, "list");
        std::vector<std::string> methods;
        for (const Json& word : words) {
            if (!word.is_string()) RefuseUsage("methods", "a method is no text", "Mend the file");
            methods.push_back(word.get<std::string>());
        }
        MethodList*& place = domain.method_lists[type][service];
        if (!given.insert({type, service}).second) {
            RefuseUsage("methods of " + AaaTypeName(type) + ", service " + ServiceName(service),
                        "they are given twice for one domain", "Remove one of the entries");
        }
        if (place == nullptr) place = DOM_CreateMethodList();
        if (place == nullptr) {
            throw Failure(kExitRefused, "methods", "out of memory", "Free memory and try again");
        }
        *place = ParseMethodList(type, service, methods);
        const std::string extra = String(item, "extra");
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
    Json document{{"name", Text(domain.name)},
                  {"state", domain.state},
                  {"session_time", domain.session_time},
                  {"address_type", domain.user_addr_type},
                  {"dual_stack_mode", domain.acct_dual_stack_mode},
                  {"redirect", domain.redirect_code != 0},
                  {"permit_domain", Text(domain.auth_rd_fail_permit_domain)}};
    document["escape_recover"] = {{"domain", Text(domain.escape_recover.domain_name)},
                                  {"setting", domain.escape_recover.setting},
                                  {"second_setting", domain.escape_recover.second_setting}};
    document["auth_fail"] = {{"domain", Text(domain.auth_fail_domain)},
                             {"kind", domain.auth_fail_domain_kind}};
    document["methods"] = Json::array();
    for (uint32_t type : kTypes) {
        for (uint32_t service = 0; service < DOM_SERVICES; ++service) {
            const MethodList* list = domain.method_lists[type][service];
            if (list == nullptr) continue;
            Json item{{"type", AaaTypeName(type)},
                      {"service", ServiceName(service)},
                      {"methods", MethodsToJson(*list)}};
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
    const std::string name = String(document, "name");
    CheckDomainName(name);
    const std::string object = "domain \"" + name + "\"";
    RefuseUnknown(document, object,
                  {"name", "state", "session_time", "address_type", "dual_stack_mode", "redirect",
                   "permit_domain", "escape_recover", "auth_fail", "methods", "attributes"});
    DomainPtr domain(DOM_CreateDomain());
    if (!domain) throw Failure(kExitRefused, object, "out of memory", "Free memory and try again");
    SetText(domain->name, name, "name");
    domain->state = static_cast<uint16_t>(Number(document, "state", DOM_DEF_STATE, UINT16_MAX));
    domain->session_time = static_cast<uint16_t>(Number(document, "session_time", 0, UINT16_MAX));
    domain->user_addr_type = Number(document, "address_type", DOM_DEF_ADDR_TYPE, UINT32_MAX);
    domain->acct_dual_stack_mode =
        Number(document, "dual_stack_mode", DOM_DEF_DUAL_STACK, UINT32_MAX);
    domain->redirect_code =
        Member<bool>(document, "redirect", false, &Json::is_boolean, "truth value") ? 1 : 0;
    SetText(domain->auth_rd_fail_permit_domain, String(document, "permit_domain"), "permit domain");
    const Json escape = Object(document, "escape_recover");
    RefuseUnknown(escape, object + " escape_recover", {"domain", "setting", "second_setting"});
    SetText(domain->escape_recover.domain_name, String(escape, "domain"), "escape domain");
    domain->escape_recover.setting =
        static_cast<uint16_t>(Number(escape, "setting", 0, UINT16_MAX));
    domain->escape_recover.second_setting =
        static_cast<uint16_t>(Number(escape, "second_setting", 0, UINT16_MAX));
    const Json auth_fail = Object(document, "auth_fail");
    RefuseUnknown(auth_fail, object + " auth_fail", {"domain", "kind"});
    SetText(domain->auth_fail_domain, String(auth_fail, "domain"), "authentication-fail domain");
    domain->auth_fail_domain_kind = static_cast<uint16_t>(Number(auth_fail, "kind", 0, UINT16_MAX));
    MethodsFromJson(document, *domain);
    const Json attributes = Object(document, "attributes");
    for (const auto& [kind, fields] : attributes.items()) {
        SetFieldsFromJson(domain->author_attr, ParseKind(kind), fields);
    }
    return domain;
}

Json ReadConfig(Client& client) {
    const GlobalDomain global = client.ReadGlobal();
    const SessionLimits limits = client.ReadSessionLimits();
    Json document{{"format", "aaad-config"},
                  {"version", kConfigVersion},
                  {"default_domain", Text(global.default_domain)},
                  {"unknown_domain", Text(global.unknown_domain)},
                  {"device_id", global.device_id},
                  {"session_limits",
                   {{"19", limits.class_19},
                    {"20", limits.class_20},
                    {"21", limits.class_21},
                    {"22", limits.class_22},
                    {"23", limits.class_23}}},
                  {"domains", Json::array()}};
    for (const DomainPtr& domain : client.DomainsByName()) {
        document["domains"].push_back(DomainToJson(*domain));
    }
    document["nas_id_profiles"] = ReadNasIdProfiles(client);
    document["record_switches"] = ReadRecordSwitches(client);
    document["record_backup"] = ReadRecordBackup(client);
    return document;
}

void CheckConfig(const Json& document) {
    if (!document.is_object() || String(document, "format") != "aaad-config") {
        RefuseUsage("configuration", "it is no document of the format aaad-config",
                    "Give a file that aaactl config export wrote");
    }
    if (Number(document, "version", 0, UINT32_MAX) != kConfigVersion) {
        RefuseUsage("configuration", "its version is not " + std::to_string(kConfigVersion),
                    "Use the aaactl of the release that exported it");
    }
    RefuseUnknown(
        document, "configuration",
        {"format", "version", "default_domain", "unknown_domain", "device_id", "session_limits",
         "domains", "nas_id_profiles", "record_switches", "record_backup"});
    CheckFits("default domain", String(document, "default_domain"), DOM_NAME_SIZE);
    CheckFits("unknown domain", String(document, "unknown_domain"), DOM_NAME_SIZE);
    Number(document, "device_id", 0, UINT32_MAX);
    const Json limits = Object(document, "session_limits");
    RefuseUnknown(limits, "session_limits", {"19", "20", "21", "22", "23"});
    for (const auto& [session_class, limit] : limits.items()) {
        Number(limits, session_class.c_str(), 0, UINT32_MAX);
    }
    CheckNasIdProfiles(Object(document, "nas_id_profiles"));
    CheckRecordSwitches(Object(document, "record_switches"));
    CheckRecordBackup(Object(document, "record_backup"));
    const Json domains = Member<Json>(document, "domains", Json::array(), &Json::is_array, "list");
    if (domains.size() > DOM_MAX_DOMAINS) {
        RefuseUsage("configuration", "it holds " + std::to_string(domains.size()) + " domains",
                    "The daemon takes at most " + std::to_string(DOM_MAX_DOMAINS));
    }
    std::set<std::string> names;
    for (const Json& domain : domains) {
        const std::string name = DomainFromJson(domain)->name;
        if (!names.insert(FoldedName(name)).second) {
            RefuseUsage("domain \"" + name + "\"", "the file holds it twice (case does not count)",
                        "Remove one of its entries");
        }
    }
}

namespace {

/// Lists become objects keyed by what names their entries, so that an entry is compared with its
/// namesake and not with its neighbour.
Json Keyed(const Json& config) {
    Json keyed = config;
    keyed["domains"] = Json::object();
    for (Json domain : config.at("domains")) {
        Json methods = Json::object();
        for (const Json& item : domain.at("methods")) {
            const std::string key =
                item.at("type").get<std::string>() + " " + item.at("service").get<std::string>();
            methods[key] = item;
        }
        domain["methods"] = methods;
        const std::string name = FoldedName(domain.at("name").get<std::string>());
        domain.erase("name");
        keyed["domains"][name] = domain;
    }
    keyed["nas_id_profiles"] = Json::object();
    for (const auto& [name, bindings] : config.at("nas_id_profiles").items()) {
        keyed["nas_id_profiles"][FoldedName(name)] = bindings;
    }
    return keyed;
}

void Collect(const std::string& path, const Json& here, const Json& there,
             std::vector<Difference>& differences) {
    if (!here.is_object() || !there.is_object()) {
        if (here != there) differences.push_back({path, here, there});
        return;
    }
    for (const auto& [name, value] : here.items()) {
        Collect(path + "/" + name, value, there.contains(name) ? there.at(name) : Json(),
                differences);
    }
    for (const auto& [name, value] : there.items()) {
        if (!here.contains(name)) differences.push_back({path + "/" + name, Json(), value});
    }
}

}  // namespace

std::vector<Difference> Compare(const Json& here, const Json& there) {
    std::vector<Difference> differences;
    Collect("", Keyed(here), Keyed(there), differences);
    return differences;
}

namespace {

bool SameMethods(const MethodList* a, const MethodList* b) {
    if (a == nullptr || b == nullptr) return a == b;
    return MethodsToJson(*a) == MethodsToJson(*b);
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
    const std::string name = Text(wanted.name);
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
    if (Text(current.auth_rd_fail_permit_domain) != Text(wanted.auth_rd_fail_permit_domain)) {
        const std::string permit = Text(wanted.auth_rd_fail_permit_domain);
        client.ChangeDomain(name, DOM_EncodeAuthRdFailPermitDomain(text, permit.c_str(), 0),
                            permit.empty() ? DOM_OP_DELETE : DOM_OP_SET);
    }
    const EscapeRecoverAction& escape = wanted.escape_recover;
    if (Text(current.escape_recover.domain_name) != Text(escape.domain_name) ||
        current.escape_recover.setting != escape.setting ||
        current.escape_recover.second_setting != escape.second_setting) {
        const std::string domain = Text(escape.domain_name);
        client.ChangeDomain(name,
                            DOM_EncodeAuthenEscapeRecover(text, escape.setting, domain.c_str(),
                                                          escape.second_setting, 0),
                            DOM_OP_SET);
    }
    if (Text(current.auth_fail_domain) != Text(wanted.auth_fail_domain) ||
        current.auth_fail_domain_kind != wanted.auth_fail_domain_kind) {
        client.ChangeDomain(name,
                            DOM_EncodeAuthFailDomain(text, Text(wanted.auth_fail_domain).c_str(), 0,
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
