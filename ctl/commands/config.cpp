// config export, import, diff
#include <cerrno>
#include <cstring>
#include <fstream>
#include <iostream>
#include <set>
#include <sstream>

#include "../command.h"
#include "../model.h"
#include "../names.h"

namespace aaactl {
namespace {

std::string ReadAll(std::istream& stream) {
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

/// A checked configuration from a file, or from standard input for "-".
Json LoadConfig(const std::string& path) {
    std::string text;
    if (path == "-") {
        text = ReadAll(std::cin);
    } else {
        std::ifstream file(path);
        if (!file) {
            RefuseUsage("file \"" + path + "\"", strerror(errno), "Give a file that can be read");
        }
        text = ReadAll(file);
    }
    Json document;
    try {
        document = Json::parse(text);
    } catch (const Json::parse_error& error) {
        RefuseUsage("file \"" + path + "\"",
                    "it is no JSON, byte " + std::to_string(error.byte) + " cannot be read",
                    "Give a file that aaactl config export wrote");
    }
    CheckConfig(document);
    return document;
}

/// The document with every setting that it leaves out at its initial value.
Json Completed(const Json& document) {
    Json complete = document;
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
        const std::string text = config.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
        if (path_.empty() || path_ == "-") {
            if (context.output.IsJson()) {
                context.output.Result(config);
            } else {
                std::cout << text << std::flush;
            }
            return;
        }
        std::ofstream file(path_, std::ios::trunc);
        file << text << std::flush;
        if (!file) {
            RefuseUsage("file \"" + path_ + "\"", strerror(errno),
                        "Give a file that can be written");
        }
        const size_t count = config.at("domains").size();
        context.output.Line(std::to_string(count) + " domains are written to " + path_);
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
        const Json wanted = Completed(LoadConfig(path_));
        const Json running = ReadConfig(context.client);
        Json differences = Json::array();
        for (const Difference& difference : Compare(running, wanted)) {
            const auto shown = [](const Json& value) {
                if (value.is_null()) return std::string("nothing");
                return value.is_object() ? std::string("present") : Printable(value.dump());
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
        app.add_flag("--replace", replace_, "Delete the domains that the file does not hold");
    }
    void Run(Context& context) override {
        const Json wanted = LoadConfig(path_);
        Client& client = context.client;
        const std::vector<DomainPtr> before = client.DomainsByName();
        std::set<std::string> kept;
        std::vector<DomainPtr> domains;
        for (const Json& domain : wanted.value("domains", Json::array())) {
            domains.push_back(DomainFromJson(domain));
            kept.insert(domains.back()->name);
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
        size_t deleted = 0;
        if (replace_) {
            for (const DomainPtr& domain : before) {
                const std::string name = domain->name;
                if (kept.count(name) != 0 || name == DOM_SYSTEM_DOMAIN) continue;
                const uint32_t result =
                    client.Change(DOM_EncodeDomainName(name.c_str()), DOM_OP_DELETE);
                if (result != DOM_OK) {
                    throw Failure(kExitRefused, "domain \"" + name + "\"",
                                  "the file does not hold it and the daemon keeps it",
                                  "See why with: aaactl domain delete " + name, result);
                }
                ++deleted;
            }
        }
        context.output.Line(std::to_string(domains.size()) + " domains are imported, " +
                            std::to_string(deleted) + " deleted");
        context.output.Result({{"imported", domains.size()}, {"deleted", deleted}});
    }

  private:
    static void Demand(Client& client, const char* object, TLV_MSG* request, uint32_t operation) {
        const uint32_t result = client.Change(request, operation);
        if (result != DOM_OK) throw Refused(object, result);
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

    std::string path_;
    bool replace_ = false;
};

}  // namespace

void AddConfigCommands(Commands& commands) {
    commands.push_back(std::make_unique<Export>());
    commands.push_back(std::make_unique<Import>());
    commands.push_back(std::make_unique<Diff>());
}

}  // namespace aaactl
