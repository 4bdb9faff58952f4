// Start and reload: from the database to the tables of both roles.
#include <aaadom/aaad_results.h>
#include <aaadom/codes.h>
#include <aaadom/database.h>
#include <aaadom/db_layout.h>
#include <aaadom/domain.h>
#include <aaadom/domain_codec.h>
#include <aaadom/domain_table.h>
#include <fcntl.h>
#include <platform/aaa_tlv.h>
#include <unistd.h>

#include <new>

#include "code_table.h"
#include "configuration.h"
#include "failure.h"
#include "nas_id_load.h"
#include "policy_load.h"
#include "profile_load.h"

namespace aaad {

void Configuration::Start() {
    Load();
    TidyDatabase(report_);
    const bool is_new = report_.domains == 0 && !report_.default_domain_saved &&
                        report_.undecodable_indexes.empty();
    // The deletion check protects this domain, so it exists from the first start on.
    if (!DOM_IsDomainExist(DOM_SYSTEM_DOMAIN)) {
        const uint32_t result = ChangeOfOwn(DOM_EncodeDomainName(DOM_SYSTEM_DOMAIN));
        const bool has_room = report_.domains < DOM_MAX_DOMAINS;
        if (result == AAAD_ERR_NOT_SAVED || (result != DOM_OK && has_room)) {
            throw Failure("configuration database below " + state_dir_, "it cannot be written",
                          "See the log line of the database; make room on the disk and the "
                          "directory writable for the daemon's user; or free memory");
        }
        if (result != DOM_OK) {
            Log(Severity::kWarning,
                "domain \"" DOM_SYSTEM_DOMAIN
                "\" could not be created (result 0x%08X). Delete a "
                "domain that is not needed and restart the daemon",
                result);
        }
    }
    if (is_new) {
        const uint32_t result = ChangeOfOwn(DOM_EncodeDefaultDomain(DOM_SYSTEM_DOMAIN, 0));
        if (result != DOM_OK) {
            throw Failure("configuration database below " + state_dir_,
                          "the default domain cannot be saved", "Make room on its disk");
        }
    }
    records_.TakeSwitches();
    Log(Severity::kNotice, "%u domains loaded from %s", report_.domains, state_dir_.c_str());
}

/// Loads what the calling thread's role has beside its domains and settings, or leaves it without
/// any tables.
bool Configuration::LoadRest(Role role) {
    const bool tells = role == Role::kConfiguration;  // both find the same
    bool loaded = false;
    try {
        loaded = LoadProfiles(handle_, tells) && LoadRecordingPolicy(handle_, role);
        if (loaded && role == Role::kWorking) {
            loaded = LoadNasIdProfiles(handle_) && LoadAccountingPolicies(handle_);
        }
    } catch (const std::bad_alloc&) {
        loaded = false;
    }
    if (!loaded) (void)DOM_DomainInfoTableFini();
    return loaded;
}

/// Both roles hold exactly what the database holds, or the daemon ends and is started again.
void Configuration::Load() {
    Unload();
    LoadRecordDefaults(handle_);
    LoadReport working_report;
    bool working_loaded = false;
    bool configuration_loaded = false;
    // Nearly all of a start is the domains. The roles share none of their tables, so both read at
    // the same time; what follows is little, and one after the other.
    working_.Run([&] { working_loaded = LoadRoleTables(handle_, working_report); },
                 [&] { configuration_loaded = LoadRoleTables(handle_, report_); });
    configuration_loaded = configuration_loaded && LoadRest(Role::kConfiguration);
    working_.Run([&] {
        working_loaded = working_loaded && LoadRest(Role::kWorking);
        if (working_loaded && !configuration_loaded) (void)DOM_DomainInfoTableFini();
    });
    if (configuration_loaded && !working_loaded) (void)DOM_DomainInfoTableFini();
    loaded_ = configuration_loaded && working_loaded;
    if (!loaded_ || working_report.domains != report_.domains) {
        throw Failure("configuration below " + state_dir_,
                      "it cannot be loaded into memory from the database",
                      "Free memory and start the daemon again; see the log for the database");
    }
}

void Configuration::Unload() {
    if (!loaded_) return;
    loaded_ = false;
    (void)DOM_DomainInfoTableFini();  // its result is that of one lock's end
    working_.Run([] { (void)DOM_DomainInfoTableFini(); });
}

void Configuration::TidyDatabase(const LoadReport& report) {
    for (const uint32_t index : report.undecodable_indexes) KeepUndecodable(index);
    if (report.stale_indexes.empty()) return;
    // A stale copy left in place would come back once its domain is deleted.
    bool removed = DBM_Begin(handle_) == 0;
    if (removed) {
        for (const uint32_t index : report.stale_indexes) {
            removed &= DOM_DeleteDomainToDBByIndex(index) == 0;
        }
        removed &= DBM_Commit(handle_) == 0;
    }
    Log(removed ? Severity::kNotice : Severity::kWarning,
        "%zu stale copies of domains %s the database below %s", report.stale_indexes.size(),
        removed ? "removed from" : "could not be removed from", state_dir_.c_str());
}

/// The slot of an element that is no domain is free, so a new domain will take its index. Its bytes
/// go to a file before.
void Configuration::KeepUndecodable(uint32_t index) {
    const std::string path = state_dir_ + "/undecodable-domain-" + std::to_string(index) + ".bin";
    std::vector<char> bytes(65536);
    const int32_t length = DBM_GetArray(handle_, DOM_DB_KEY_DOMAINS, DOM_DB_KEY_DOMAINS_LEN, index,
                                        static_cast<uint32_t>(bytes.size()), bytes.data());
    bool kept = false;
    const int fd =
        length > 0 ? open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, 0640)
                   : -1;
    if (fd >= 0) {
        kept = write(fd, bytes.data(), static_cast<size_t>(length)) == length;
        kept &= close(fd) == 0;
    }
    Log(Severity::kError,
        "saved domain %u below %s is no domain record and was skipped; its bytes are %s %s. "
        "Restore "
        "the domain from a backup or create it again",
        index, state_dir_.c_str(), kept ? "copied to" : "not copied, failed to write",
        path.c_str());
}

/// A change that the daemon makes itself takes the way of all changes. `body` is consumed.
uint32_t Configuration::ChangeOfOwn(TLV_MSG* body) {
    Request request;
    request.body.reset(body);
    request.message.reset(AAA_AddOpHead(DOM_OP_SET, body));
    if (!request.body || !request.message) return DOM_ERR_FAILED;
    request.operation = DOM_OP_SET;
    request.code = AAA_GetUINTTlvValue(body, TLV_GetIteratorByType(body, DOM_TLV_MSG_CODE));
    request.row = FindCode(request.code);
    request.kind = Request::Kind::kChange;
    Request* const change = &request;
    Change({&change, 1});
    return request.result;
}

}  // namespace aaad
