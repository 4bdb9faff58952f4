#include "config_document.h"

#include <set>

#include "accounting_policies.h"
#include "document.h"
#include "model.h"
#include "nas_id.h"
#include "profiles.h"
#include "recording_policy.h"
#include "records.h"
#include "texts.h"

namespace aaactl {

Json ReadConfig(Client& client) {
    const GlobalDomain global = client.ReadGlobal();
    const SessionLimits limits = client.ReadSessionLimits();
    Json document{{"format", "aaad-config"},
                  {"version", kConfigVersion},
                  {"default_domain", FieldText(global.default_domain)},
                  {"unknown_domain", FieldText(global.unknown_domain)},
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
    for (const ProfileStore* store : {&kAuthorProfiles, &kCriticalProfiles}) {
        document[store->member] = ReadProfiles(client, *store);
    }
    document["accounting_policies"] = ReadAccountingPolicies(client);
    document["recording_policy"] = ReadRecordingPolicy(client);
    return document;
}

void CheckConfig(const Json& document) {
    if (!document.is_object() || DocumentText(document, "format") != "aaad-config") {
        RefuseUsage("configuration", "it is no document of the format aaad-config",
                    "Give a file that aaactl config export wrote");
    }
    if (DocumentNumber(document, "version", 0, UINT32_MAX) != kConfigVersion) {
        RefuseUsage("configuration", "its version is not " + std::to_string(kConfigVersion),
                    "Use the aaactl of the release that exported it");
    }
    RefuseUnknown(
        document, "configuration",
        {"format", "version", "default_domain", "unknown_domain", "device_id", "session_limits",
         "domains", "nas_id_profiles", "record_switches", "record_backup", "author_profiles",
         "critical_profiles", "accounting_policies", "recording_policy"});
    CheckFits("default domain", DocumentText(document, "default_domain"), DOM_NAME_SIZE);
    CheckFits("unknown domain", DocumentText(document, "unknown_domain"), DOM_NAME_SIZE);
    DocumentNumber(document, "device_id", 0, UINT32_MAX);
    const Json limits = DocumentObject(document, "session_limits");
    RefuseUnknown(limits, "session_limits", {"19", "20", "21", "22", "23"});
    for (const auto& [session_class, limit] : limits.items()) {
        DocumentNumber(limits, session_class.c_str(), 0, UINT32_MAX);
    }
    CheckNasIdProfiles(DocumentObject(document, "nas_id_profiles"));
    CheckRecordSwitches(DocumentObject(document, "record_switches"));
    CheckRecordBackup(DocumentObject(document, "record_backup"));
    for (const ProfileStore* store : {&kAuthorProfiles, &kCriticalProfiles}) {
        CheckProfiles(*store, DocumentObject(document, store->member));
    }
    CheckAccountingPolicies(DocumentObject(document, "accounting_policies"));
    CheckRecordingPolicy(document.value("recording_policy", Json()));
    const Json domains = DocumentList(document, "domains");
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
    // Names of profiles count in any case, those of accounting policies as they are.
    for (const char* member :
         {"nas_id_profiles", kAuthorProfiles.member, kCriticalProfiles.member}) {
        keyed[member] = Json::object();
        for (const auto& [name, profile] : config.at(member).items()) {
            keyed[member][FoldedName(name)] = profile;
        }
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

}  // namespace aaactl
