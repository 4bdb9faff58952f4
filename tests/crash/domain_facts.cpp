#include "domain_facts.h"

#include <aaadom/db_layout.h>

#include "daemon/record_list_keys.h"

using namespace daemon_test;

namespace crash {

namespace {

constexpr size_t kHashedPart = 16;

/// Tells two byte strings apart; a fact is to be read by people, too.
std::string Digest(const void* bytes, size_t size) {
    uint64_t hash = 0xcbf29ce484222325u;
    for (size_t i = 0; i < size; ++i) {
        hash = (hash ^ static_cast<const uint8_t*>(bytes)[i]) * 0x100000001b3u;
    }
    char text[kHashedPart + 1];
    snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(hash));
    return text;
}

/// All method lists of a domain.
std::string MethodsOf(const DomainInfo& domain) {
    std::string all;
    for (uint32_t type = 0; type < DOM_AAA_TYPES; ++type) {
        for (uint32_t service = 0; service < DOM_SERVICES; ++service) {
            const MethodList* list = domain.method_lists[type][service];
            if (list == nullptr) continue;
            all += "[" + std::to_string(type) + "," + std::to_string(service);
            for (const MethodEntry& method : list->methods) {
                all += " " + std::to_string(method.method_kind) + ":" + method.scheme_name;
            }
            all += "]";
        }
    }
    return Digest(all.data(), all.size());
}

std::string FirstScheme(const DomainInfo& domain) {
    const MethodList* list = domain.method_lists[AAA_TYPE_0][DOM_DEFAULT_SERVICE];
    return list == nullptr ? "" : list->methods[0].scheme_name;
}

}  // namespace

std::string RecordList(uint32_t list) {
    size_t client = 0;
    while (aaad::kRecordListKeys[client].list != list) ++client;
    return OwnerName(client) + "-list" + std::to_string(list);
}

void AddDomain(const DomainInfo& domain, Facts& facts) {
    const auto add = [&](const char* detail, const std::string& value) {
        facts[FactKey("domain", domain.name, detail)] = value;
    };
    facts[FactKey("domain", domain.name)] = "";
    add("~slot", std::to_string(domain.slot));
    add("~methods", MethodsOf(domain));
    add("~attributes", std::string(domain.author_attr.ita_policy_name) + " " +
                           std::to_string(domain.redirect_code) + " " +
                           domain.auth_rd_fail_permit_domain + " " + domain.auth_fail_domain);
    add("state", std::to_string(domain.state));
    add("time", std::to_string(domain.session_time));
    add("addresses", std::to_string(domain.user_addr_type));
    add("stack", std::to_string(domain.acct_dual_stack_mode));
    add("policy", domain.author_attr.ita_policy_name);
    add("scheme", FirstScheme(domain));
}

void AddPolicy(const ItaPolicy& policy, Facts& facts) {
    facts[FactKey("policy", policy.name)] = "";
    for (const ItaAcctLevel& level : policy.levels) {
        if (level.level_id == 0) continue;
        facts[FactKey("policy", policy.name, "level" + std::to_string(level.level_id))] =
            std::to_string(level.level_value);
    }
    std::string methods;
    for (const MethodEntry& method : policy.acct_scheme) {
        methods += std::to_string(method.method_kind) + ":" + method.scheme_name + " ";
    }
    facts[FactKey("policy", policy.name, "~rest")] = methods + std::to_string(policy.level_count) +
                                                     " " + std::to_string(policy.together_state) +
                                                     " " + std::to_string(policy.separation_state) +
                                                     " " + std::to_string(policy.quota_out_state);
}

void AskDomains(Facts& configuration, Facts& working) {
    std::string name;
    uint32_t walked = 0;
    for (size_t i = 0; i <= 2 * DOM_MAX_DOMAINS; ++i) {
        uint32_t result = 0;
        const DomainPtr next(MOR_GetNextDomain(name.c_str(), DOM_OP_GET_NEXT, &result));
        if (!next) break;
        name = next->name;
        ++walked;
        AddDomain(*next, working);
        const DomainPtr same = GetDomain(name);
        if (same) AddDomain(*same, configuration);
    }
    EXPECT_EQ(CountDomains(), walked);
}

void AskSettings(Facts& configuration, Facts& working) {
    char default_name[DOM_NAME_SIZE] = {};
    char unknown_name[DOM_NAME_SIZE] = {};
    uint32_t device_id = 0;
    uint32_t value_18 = 0;
    EXPECT_EQ(MOR_GetGlobalDomain(sizeof default_name, default_name, sizeof unknown_name,
                                  unknown_name, &device_id, &value_18),
              DOM_OK);
    working[FactKey("device", kDevice, "id")] = std::to_string(device_id);
    working[FactKey("device", kDevice, "unknown-domain")] = unknown_name;
    working[FactKey("device", kDevice, "~default-domain")] = default_name;
    SessionLimits limits{};
    EXPECT_EQ(MOR_GetXmlSessionLimit(&limits), DOM_OK);
    configuration[FactKey("limit", kDevice, "21")] = std::to_string(limits.class_21);
}

void ReadDomains(DBM_HANDLE handle, Facts& facts) {
    int32_t index = -1;
    while ((index = DBM_GetNextArrayIndex(handle, DOM_DB_KEY_DOMAINS, DOM_DB_KEY_DOMAINS_LEN,
                                          index)) >= 0) {
        const DomainPtr domain(DOM_GetDomainFromDBByIndex(handle, static_cast<uint32_t>(index)));
        if (!domain) {
            facts["?/domain/element" + std::to_string(index)] = "unreadable";
            continue;
        }
        const std::string key = FactKey("domain", domain->name);
        if (facts.count(key) != 0) facts[key + "/again"] = std::to_string(index);
        // Its own word for its place, and where it lies.
        if (domain->slot != static_cast<uint32_t>(index)) {
            facts[key + "/misplaced"] = std::to_string(index);
        }
        AddDomain(*domain, facts);
    }
}

void ReadSettings(DBM_HANDLE handle, Facts& facts) {
    uint32_t device_id = 0;
    (void)DOM_GetDeviceIDFromDB(handle, &device_id);
    facts[FactKey("device", kDevice, "id")] = std::to_string(device_id);
    char name[DOM_NAME_SIZE] = {};
    if (DOM_GetUnknownDomainFromDB(handle, name) != DOM_OK) name[0] = '\0';
    facts[FactKey("device", kDevice, "unknown-domain")] = name;
    if (DOM_GetDefDomainFromDB(handle, name) != DOM_OK) name[0] = '\0';
    facts[FactKey("device", kDevice, "~default-domain")] = name;
    uint32_t limits[5] = {};
    if (DOM_GetSessionLimitFromDB(handle, limits) == DOM_OK) {
        constexpr size_t kClass21 = 1;
        facts[FactKey("limit", kDevice, "21")] = std::to_string(limits[kClass21]);
    }
}

}  // namespace crash
