#include "fault/snapshot.h"

#include <aaadom/accounting_policy.h>
#include <aaadom/accounting_policy_codec.h>
#include <aaadom/cmd_author_fail.h>
#include <aaadom/database.h>
#include <aaadom/diagnostics.h>
#include <aaadom/record_run_db.h>
#include <aaadom/record_switches.h>
#include <aaadom/recording_policy.h>
#include <aaadom/session.h>
#include <aaadom/settings.h>

#include <cstddef>

#include "domain/nas_id_binding.h"
#include "domain/nas_id_profile.h"
#include "domain/tables.h"
#include "fakes/fake_platform.h"
#include "policy/ita_store.h"
#include "policy/rec_policy.h"
#include "profile/author_profiles.h"
#include "profile/critical_profiles.h"

namespace fault {
namespace {

using aaadom::Role;

/// Text of a part, value after value.
class Part {
  public:
    explicit Part(std::string& text) : text_(text) {}
    template <typename T>
    Part& Add(const T& value) {
        text_.append(reinterpret_cast<const char*>(&value), sizeof value);
        return *this;
    }
    Part& Bytes(const void* from, const void* to) {
        text_.append(static_cast<const char*>(from), static_cast<const char*>(to));
        return *this;
    }
    Part& Text(const char* text) {
        text_ += text;
        text_ += '\n';
        return *this;
    }

  private:
    std::string& text_;
};

/// Whether a pointer is set: its value differs from run to run.
bool Is(const void* pointer) {
    return pointer != nullptr;
}

void AddDomain(Part part, const DomainInfo& domain) {
    part.Text(domain.name);
    for (const auto& row : domain.method_lists) {
        for (const MethodList* list : row) {
            part.Add(Is(list));
            if (list != nullptr) part.Add(*list);
        }
    }
    part.Bytes(&domain.service_extras, &domain + 1);
}

AAADOM_NO_TSA void AddDomains(Snapshot& snapshot, const std::string& role_name, Role role) {
    const aaadom::DomainTable& table = aaadom::Domains(role);
    Part domains(snapshot[role_name + ".domains"]);
    domains.Add(table.count);
    for (const DomainInfo* domain : table.slots) {
        if (domain != nullptr) AddDomain(domains, *domain);
    }
    Part order(snapshot[role_name + ".order"]);
    for (const ZorvDomain* node = table.mib_head; node != nullptr; node = node->next) {
        order.Text(node->domain_name);
        for (const SchemeIndexNode* index = node->scheme_index_head; index; index = index->next)
            order.Add(index->scheme_index).Add(index->aaa_type).Add(index->position);
    }
    const aaadom::NetConfDomain* sentinel = &table.netconf;
    for (const auto* node = sentinel->next; node != nullptr && node != sentinel; node = node->next)
        order.Text(node->domain_name);
    Part(snapshot[role_name + ".settings"])
        .Text(table.default_domain)
        .Text(table.unknown_domain)
        .Add(aaadom::Limits(role))
        .Add(aaadom::DeviceIdOf(role));
}

void AddNasIds(Part part, Role role) {
    const HASH_TABLE* profiles = aaadom::NasIdProfiles(role);
    part.Add(Is(profiles));
    for (uint32_t i = 0; profiles != nullptr && i < profiles->bucket_count; ++i) {
        for (const HASH_NODE* node = profiles->buckets[i]; node; node = node->next)
            part.Text(aaadom::AsNasIdProfile(node)->name);
    }
    const HASH_TABLE* bindings = aaadom::NasIdBindings(role).hash;
    part.Add(Is(bindings));
    for (uint32_t i = 0; bindings != nullptr && i < bindings->bucket_count; ++i) {
        for (const HASH_NODE* node = bindings->buckets[i]; node; node = node->next) {
            const aaadom::NasIdBinding* binding = aaadom::AsNasIdBinding(node);
            part.Add(binding->vlan_id).Text(binding->profile_name).Text(binding->nas_id);
        }
    }
}

template <typename Kind>
void AddProfiles(Part part, Role role) {
    const auto& head = Kind::stores.Of(role);
    part.Add(head.profile_count);
    for (auto* profile = head.first_profile; profile != nullptr; profile = profile->next) {
        part.Text(profile->name).Add(profile->vpn_count).Add(profile->default_segment);
        const auto& list = Kind::ListOf(*profile);
        for (auto* vpn = Kind::First(list); vpn != nullptr; vpn = Kind::Next(list, *vpn))
            part.Text(vpn->vpn_name).Add(vpn->segment);
    }
}

void AddPolicies(Part part, Role role) {
    const HASH_TABLE* table = aaadom::ItaPolicies(role);
    part.Add(Is(table));
    for (uint32_t i = 0; table != nullptr && i < table->bucket_count; ++i) {
        for (const HASH_NODE* node = table->buckets[i]; node != nullptr; node = node->next) {
            const auto* policy = reinterpret_cast<const ItaPolicy*>(node);
            part.Bytes(&policy->name, policy + 1);
        }
    }
    const RecPolicy* recording = aaadom::RecPolicySlot(role);
    part.Add(Is(recording));
    if (recording != nullptr) part.Add(*recording);
}

void AddRole(Snapshot& snapshot, const std::string& name, Role role) {
    AddDomains(snapshot, name, role);
    AddNasIds(Part(snapshot[name + ".nas_ids"]), role);
    AddProfiles<aaadom::CriticalProfiles>(Part(snapshot[name + ".critical"]), role);
    AddProfiles<aaadom::AuthorProfiles>(Part(snapshot[name + ".author"]), role);
    AddPolicies(Part(snapshot[name + ".policies"]), role);
    Part(snapshot[name + ".records"])
        .Add(aaadom::SwitchesOf(role).switches)
        .Add(aaadom::BackupOf(role).methods);
}

void AddProcess(Part part) {
    for (uint32_t session_class = 19; session_class <= 23; ++session_class)
        part.Add(DOM_GetSessionCount(session_class));
    part.Add(g_stAAAGlobalBaseInfo.debug_flag)
        .Add(g_bAaaDebugSwitch)
        .Add(DOM_GetUserRecordEnableDefault())
        .Add(DOM_GetUserRecordBackupMethodDefault())
        .Add(DOM_GetUserRecordRecoverFlag())
        .Add(g_hDomDbmHandle != DBM_INVALID_HANDLE)  // numbers differ from run to run
        .Add(g_hDomItaDBHandle != DBM_INVALID_HANDLE)
        .Add(g_hDomRecDBHandle != DBM_INVALID_HANDLE)
        .Add(DOM_GetRecordRunDBHandle() != DBM_INVALID_HANDLE);
}

void AddCommands(Part part) {
    const CmdAuthorFailRec* rec = DOM_GetGlbCmdAuthorFailRec();
    const auto* end = reinterpret_cast<const CmdAuthorFailNode*>(&rec->head);
    part.Add(rec->count);
    for (const CmdAuthorFailNode* node = rec->head.next; node != nullptr && node != end;
         node = node->next) {
        part.Text(node->item.first_text)
            .Text(node->item.second_text)
            .Text(node->item.third_text)
            .Add(node->item.number64)
            .Add(node->item.number32);
    }
}

}  // namespace

Snapshot TakeSnapshot() {
    const fake::Quiet quiet;
    Snapshot snapshot;
    AddRole(snapshot, "config", Role::kConfig);
    AddRole(snapshot, "working", Role::kWorking);
    AddProcess(Part(snapshot["process"]));
    AddCommands(Part(snapshot["commands"]));
    for (const auto& [name, contents] : fake::DatabaseContents())
        snapshot["database." + name] = contents;
    return snapshot;
}

std::string Differences(const Snapshot& before, const Snapshot& after) {
    std::string names;
    for (const auto& [name, contents] : before) {
        const auto found = after.find(name);
        if (found == after.end() || found->second != contents) names += name + ' ';
    }
    for (const auto& [name, contents] : after) {
        if (before.count(name) == 0) names += name + ' ';
    }
    return names;
}

}  // namespace fault
