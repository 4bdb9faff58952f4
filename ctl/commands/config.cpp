// config export, import, diff
#include <strings.h>

#include <cstdio>
#include <cstring>
#include <set>

#include "../accounting_policies.h"
#include "../command.h"
#include "../config_document.h"
#include "../config_file.h"
#include "../model.h"
#include "../names.h"
#include "../nas_id.h"
#include "../profiles.h"
#include "../recording_policy.h"
#include "../records.h"
#include "../texts.h"

namespace aaactl {
namespace config_commands {

/// What an import of the document would make of the running configuration: settings of the device
/// that it leaves out stay, those of a domain are at their initial value.
Json Completed(const Json& document, const Json& running) {
    Json complete = running;
    for (const auto& [name, value] : document.items()) {
        if (name == "session_limits" || name == "record_switches" || name == "record_backup") {
            complete[name].update(value);
        } else {
            complete[name] = value;
        }
    }
    for (const ProfileStore* store : {&kAuthorProfiles, &kCriticalProfiles}) {
        complete[store->member] = CompletedProfiles(*store, complete.at(store->member));
    }
    complete["accounting_policies"] =
        CompletedAccountingPolicies(complete.at("accounting_policies"));
    complete["domains"] = Json::array();
    for (const Json& domain : document.value("domains", Json::array())) {
        complete["domains"].push_back(DomainToJson(*DomainFromJson(domain)));
    }
    return complete;
}

class Export : public Command {
  public:
    Export() : Command({"config", "export"}, "Write the whole configuration as JSON") {}
    void Define(CLI::App& app) override {
        app.add_option("file", path_, "The file; standard output when left out");
    }
    void Run(Context& context) override {
        const Json config = ReadConfig(context.client);
        const std::string text = ToJsonTexts(config).dump(2) + "\n";
        if (path_.empty() || path_ == "-") {
            if (context.output.IsJson()) {
                context.output.Result(config);
            } else {
                fwrite(text.data(), 1, text.size(), stdout);
            }
            return;
        }
        WriteConfigFile(path_, text);
        const size_t count = config.at("domains").size();
        context.output.Line(std::to_string(count) + " domains are written to " + Printable(path_));
        context.output.Result({{"file", path_}, {"domains", count}});
    }

  private:
    std::string path_;
};

class Diff : public Command {
  public:
    Diff() : Command({"config", "diff"}, "Compare a file with the running configuration") {}
    void Define(CLI::App& app) override {
        app.add_option("file", path_, "A file that config export wrote, or -")->required();
    }
    void Run(Context& context) override {
        const Json document = LoadConfig(path_);
        const Json running = ReadConfig(context.client);
        const Json wanted = Completed(document, running);
        Json differences = Json::array();
        for (const Difference& difference : Compare(running, wanted)) {
            const auto shown = [](const Json& value) {
                if (value.is_null()) return std::string("nothing");
                return value.is_object() ? std::string("present")
                                         : Printable(ToJsonTexts(value).dump());
            };
            context.output.Line(Printable(difference.path) + ": running " + shown(difference.here) +
                                ", file " + shown(difference.there));
            differences.push_back({{"setting", difference.path},
                                   {"running", difference.here},
                                   {"file", difference.there}});
        }
        if (differences.empty()) context.output.Line("no difference");
        context.output.Result({{"equal", differences.empty()}, {"differences", differences}});
    }

  private:
    std::string path_;
};

class Import : public Command {
  public:
    Import()
        : Command({"config", "import"}, "Bring the running configuration to what a file holds") {}
    void Define(CLI::App& app) override {
        app.add_option("file", path_, "A file that config export wrote, or -")->required();
        app.add_flag(
            "--replace", replace_,
            "Delete the domains, profiles and accounting policies that the file does not hold");
    }
    void Run(Context& context) override {
        const Json wanted = LoadConfig(path_);
        Client& client = context.client;
        std::vector<DomainPtr> domains;
        std::set<std::string> kept = {DOM_SYSTEM_DOMAIN};
        for (const Json& domain : wanted.value("domains", Json::array())) {
            domains.push_back(DomainFromJson(domain));
            kept.insert(FoldedName(domains.back()->name));
        }
        std::vector<DomainPtr> running = client.DomainsByName();
        std::vector<DomainPtr> doomed;
        size_t after = kept.size();
        for (DomainPtr& domain : running) {
            if (kept.count(FoldedName(domain->name)) != 0) continue;
            if (replace_) {
                doomed.push_back(std::move(domain));
            } else {
                ++after;
            }
        }
        // Everything that can be known is refused before the first change.
        if (after > DOM_MAX_DOMAINS) {
            throw Failure(kExitRefused, "configuration",
                          "with the domains of the file there would be " + std::to_string(after) +
                              ", and the daemon takes " + std::to_string(DOM_MAX_DOMAINS),
                          "Delete domains that are no longer used, or give --replace");
        }
        CheckDeviceNames(wanted, kept, running);
        for (const ProfileStore* store : {&kAuthorProfiles, &kCriticalProfiles}) {
            if (!wanted.contains(store->member)) continue;
            CheckProfileRoom(client, *store, wanted.at(store->member), replace_);
        }

        ImportPolicies(client, wanted);

        // When the table has no room for both, the domains that go have to go first.
        const bool full = after + doomed.size() > DOM_MAX_DOMAINS;
        if (full) {
            Demand(client, "default domain", DOM_EncodeDefaultDomain("", 0), DOM_OP_DELETE);
            for (const DomainPtr& domain : running) {
                if (domain) ForgetReferences(client, *domain, doomed);
            }
            DeleteAll(client, doomed);
        }
        // References between domains are set last, so that no order of the file matters to a
        // reader, and deletions come after them, because a named domain may not be deleted.
        const size_t total = 2 * domains.size();
        size_t done = 0;
        for (const DomainPtr& domain : domains) {
            const uint32_t result = client.Change(DOM_EncodeDomainName(domain->name), DOM_OP_SET);
            if (result != DOM_OK) {
                throw Refused("domain \"" + std::string(domain->name) + "\"", result);
            }
            context.output.Progress("config import", ++done, total);
        }
        for (const DomainPtr& domain : domains) {
            const DomainPtr current = client.NeedDomain(domain->name);
            ApplyDomain(client, *current, *domain);
            context.output.Progress("config import", ++done, total);
        }
        ImportGlobal(client, wanted);
        if (wanted.contains("nas_id_profiles")) {
            ApplyNasIdProfiles(client, wanted.at("nas_id_profiles"), replace_);
        }
        ImportRecords(client, wanted);
        if (!full) DeleteAll(client, doomed);
        context.output.Line(std::to_string(domains.size()) + " domains are imported, " +
                            std::to_string(doomed.size()) + " deleted");
        context.output.Result({{"imported", domains.size()}, {"deleted", doomed.size()}});
    }

  private:
    static void Demand(Client& client, const char* object, TLV_MSG* request, uint32_t operation) {
        const uint32_t result = client.Change(request, operation);
        if (result != DOM_OK) throw Refused(object, result);
    }

    /// The daemon would take a default domain that does not exist.
    static void CheckDeviceNames(const Json& wanted, const std::set<std::string>& kept,
                                 const std::vector<DomainPtr>& running) {
        for (const char* setting : {"default_domain", "unknown_domain"}) {
            if (!wanted.contains(setting)) continue;
            const std::string name = wanted.at(setting).get<std::string>();
            bool exists = name.empty() || kept.count(FoldedName(name)) != 0;
            for (const DomainPtr& domain : running) {
                exists = exists || (domain && FoldedName(name) == FoldedName(domain->name));
            }
            if (!exists) {
                RefuseUsage("setting \"" + std::string(setting) + "\"",
                            "there will be no domain \"" + name + "\"",
                            "Name a domain of the file");
            }
        }
    }

    static bool Names(const char* reference, const std::vector<DomainPtr>& doomed) {
        for (const DomainPtr& domain : doomed) {
            if (strcasecmp(reference, domain->name) == 0) return true;
        }
        return false;
    }

    /// Takes the references away that keep one of `doomed` from being deleted.
    static void ForgetReferences(Client& client, const DomainInfo& domain,
                                 const std::vector<DomainPtr>& doomed) {
        const std::string name = domain.name;
        if (Names(domain.auth_rd_fail_permit_domain, doomed)) {
            client.ChangeDomain(name, DOM_EncodeAuthRdFailPermitDomain(domain.name, "", 0),
                                DOM_OP_DELETE);
        }
        if (Names(domain.escape_recover.domain_name, doomed)) {
            client.ChangeDomain(name, DOM_EncodeAuthenEscapeRecover(domain.name, 0, "", 0, 0),
                                DOM_OP_DELETE);
        }
        if (Names(domain.auth_fail_domain, doomed)) {
            client.ChangeDomain(
                name, DOM_EncodeAuthFailDomain(domain.name, "", 0, domain.auth_fail_domain_kind),
                DOM_OP_SET);
        }
    }

    /// They may name each other, in a circle even.
    static void DeleteAll(Client& client, const std::vector<DomainPtr>& doomed) {
        for (const DomainPtr& domain : doomed) ForgetReferences(client, *domain, doomed);
        for (const DomainPtr& domain : doomed) {
            const std::string name = domain->name;
            const uint32_t result =
                client.Change(DOM_EncodeDomainName(name.c_str()), DOM_OP_DELETE);
            if (result == DOM_OK || result == DOM_DELCHK_NO_DOMAIN) continue;
            throw Failure(kExitRefused, "domain \"" + name + "\"",
                          "the file does not hold it and the daemon keeps it",
                          "See why with: aaactl domain delete " + name, result);
        }
    }

    static void ImportGlobal(Client& client, const Json& wanted) {
        if (wanted.contains("default_domain")) {
            const std::string name = wanted.at("default_domain").get<std::string>();
            Demand(client, "default domain", DOM_EncodeDefaultDomain(name.c_str(), 0),
                   name.empty() ? DOM_OP_DELETE : DOM_OP_SET);
        }
        if (wanted.contains("unknown_domain")) {
            const std::string name = wanted.at("unknown_domain").get<std::string>();
            Demand(client, "unknown domain", DOM_EncodeUnknownDomain(name.c_str()),
                   name.empty() ? DOM_OP_DELETE : DOM_OP_SET);
        }
        if (wanted.contains("device_id")) {
            Demand(client, "device ID", DOM_EncodeDeviceID(wanted.at("device_id").get<uint32_t>()),
                   DOM_OP_SET);
        }
        if (!wanted.contains("session_limits")) return;
        for (const auto& [session_class, limit] : wanted.at("session_limits").items()) {
            Demand(client, "session limit",
                   DOM_EncodeSessionLimit(ParseSessionClass(session_class), limit.get<uint32_t>()),
                   DOM_OP_SET);
        }
    }

    /// Before the domains, which name them.
    void ImportPolicies(Client& client, const Json& wanted) const {
        for (const ProfileStore* store : {&kAuthorProfiles, &kCriticalProfiles}) {
            if (!wanted.contains(store->member)) continue;
            ApplyProfiles(client, *store, wanted.at(store->member), replace_);
        }
        if (wanted.contains("accounting_policies")) {
            ApplyAccountingPolicies(client, wanted.at("accounting_policies"), replace_);
        }
        if (wanted.contains("recording_policy")) {
            ApplyRecordingPolicy(client, wanted.at("recording_policy"));
        }
    }

    static void ImportRecords(Client& client, const Json& wanted) {
        const Json switches = wanted.value("record_switches", Json::object());
        for (const auto& [name, on] : switches.items()) {
            SetRecordSwitch(client, name, on.get<bool>());
        }
        const Json backup = wanted.value("record_backup", Json::object());
        for (const auto& [name, on] : backup.items()) {
            SetRecordBackup(client, name, on.get<bool>());
        }
    }

    std::string path_;
    bool replace_ = false;
};

}  // namespace config_commands

void AddConfigCommands(Commands& commands) {
    using namespace config_commands;
    commands.push_back(std::make_unique<Export>());
    commands.push_back(std::make_unique<Import>());
    commands.push_back(std::make_unique<Diff>());
}

}  // namespace aaactl
