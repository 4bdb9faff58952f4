// domain create, delete, show, list, count
#include <strings.h>

#include "../accounting_policies.h"
#include "../command.h"
#include "../model.h"
#include "../names.h"
#include "../texts.h"

namespace aaactl {
namespace domain_commands {

std::string Named(const std::string& name) {
    return "domain \"" + Printable(name) + "\"";
}

class Create : public Command {
  public:
    Create() : Command({"domain", "create"}, "Create domains") {}
    void Define(CLI::App& app) override {
        app.add_option("name", names_, "Names, 1 to 255 characters without \\ / : * ? \" < > | @")
            ->required();
    }
    void Run(Context& context) override {
        for (const std::string& name : names_) CheckDomainName(name);
        for (const std::string& name : names_) {
            const uint32_t result =
                context.client.Change(DOM_EncodeDomainName(name.c_str()), DOM_OP_SET);
            if (result == DOM_ERR_FAILED && context.client.CountDomains() >= DOM_MAX_DOMAINS) {
                throw Failure(kExitRefused, Named(name), "the table of 1024 domains is full",
                              "Delete a domain that is no longer used", result);
            }
            if (result != DOM_OK) throw Refused(Named(name), result);
            context.output.Line(Named(name) + " is there");
        }
        context.output.Result({{"domains", names_}});
    }

  private:
    std::vector<std::string> names_;
};

/// Which domain keeps `name` from being deleted, for a reason that the daemon gave.
std::string Referrer(Client& client, const std::string& name, uint32_t reason) {
    for (const DomainPtr& domain : client.DomainsByName()) {
        const char* reference = reason == DOM_DELCHK_PERMIT   ? domain->auth_rd_fail_permit_domain
                                : reason == DOM_DELCHK_ESCAPE ? domain->escape_recover.domain_name
                                                              : domain->auth_fail_domain;
        if (strcasecmp(name.c_str(), reference) == 0) return Printable(domain->name);
    }
    return "another domain";
}

Failure WhyNotDeleted(Client& client, const std::string& name, uint32_t reason) {
    const auto refuse = [&](std::string why, std::string way_out) {
        return Failure(kExitRefused, Named(name), std::move(why), std::move(way_out), reason);
    };
    switch (reason) {
        case DOM_DELCHK_NO_DOMAIN:
            return refuse("there is no such domain", "See aaactl domain list");
        case DOM_DELCHK_SYSTEM:
            return refuse("the domain system belongs to the device", "It cannot be deleted");
        case DOM_DELCHK_DEFAULT:
            return refuse("it is the default domain",
                          "Set another one first: aaactl global set default-domain NAME");
        case DOM_DELCHK_PERMIT: {
            const std::string user = Referrer(client, name, reason);
            return refuse("domain \"" + user + "\" names it as its permit domain",
                          "Take it away first: aaactl domain unset permit " + user);
        }
        case DOM_DELCHK_ESCAPE: {
            const std::string user = Referrer(client, name, reason);
            return refuse("the escape-recover action of domain \"" + user + "\" names it",
                          "Take it away first: aaactl domain unset escape-recover " + user);
        }
        case DOM_DELCHK_AUTHFAIL: {
            const std::string user = Referrer(client, name, reason);
            return refuse("domain \"" + user + "\" names it as its authentication-fail domain",
                          "Take it away first: aaactl domain unset auth-fail " + user);
        }
        default:
            return Refused(Named(name), reason);
    }
}

class Delete : public Command {
  public:
    Delete() : Command({"domain", "delete"}, "Delete a domain, or say why it may not be") {}
    void Define(CLI::App& app) override { app.add_option("name", name_, "Its name")->required(); }
    void Run(Context& context) override {
        CheckFits("domain name", name_, DOM_NAME_SIZE);
        const uint32_t result =
            context.client.Change(DOM_EncodeDomainName(name_.c_str()), DOM_OP_DELETE);
        if (result != DOM_OK) throw WhyNotDeleted(context.client, name_, result);
        context.output.Line(Named(name_) + " is deleted");
        context.output.Result({{"deleted", name_}});
    }

  private:
    std::string name_;
};

std::string Shown(const Json& value) {
    return value.is_string() ? Printable(value.get<std::string>()) : value.dump();
}

void PrintDomain(Output& output, const Json& domain) {
    output.Line("domain " + Shown(domain.at("name")));
    output.Line("  state                   " + StateName(domain.at("state").get<uint16_t>()));
    output.Line("  session time            " + Shown(domain.at("session_time")));
    output.Line("  user address type       " + Shown(domain.at("address_type")));
    output.Line("  dual-stack accounting   " + Shown(domain.at("dual_stack_mode")));
    output.Line(std::string("  redirect                ") +
                (domain.at("redirect").get<bool>() ? "on" : "off"));
    const auto or_dash = [](const Json& value) {
        const std::string shown = Shown(value);
        return shown.empty() ? std::string("-") : shown;
    };
    output.Line("  permit domain           " + or_dash(domain.at("permit_domain")));
    const Json& escape = domain.at("escape_recover");
    output.Line("  escape-recover domain   " + or_dash(escape.at("domain")) + " (settings " +
                Shown(escape.at("setting")) + ", " + Shown(escape.at("second_setting")) + ")");
    const Json& fail = domain.at("auth_fail");
    output.Line("  auth-fail domain        " + or_dash(fail.at("domain")) + " (kind " +
                Shown(fail.at("kind")) + ")");
    for (const Json& item : domain.at("methods")) {
        std::string line =
            "  methods " + Shown(item.at("type")) + " " + Shown(item.at("service")) + ":";
        for (const Json& method : item.at("methods")) line += " " + Shown(method);
        if (item.contains("extra")) line += " (extra " + Shown(item.at("extra")) + ")";
        output.Line(line);
    }
    for (const auto& [kind, fields] : domain.at("attributes").items()) {
        std::string line = "  attribute " + kind + ":";
        for (const auto& [name, value] : fields.items()) line += " " + name + "=" + Shown(value);
        output.Line(line);
    }
    if (!domain.contains("accounting_policy")) return;
    const Json& policy = domain.at("accounting_policy");
    std::string line = "  accounting policy \"" + Shown(policy.at("name")) + "\"";
    if (policy.at("exists").get<bool>()) {
        line += ": methods";
        for (const Json& method : policy.at("methods")) line += " " + Shown(method);
        if (policy.at("methods").empty()) line += " -";
    } else {
        line += " does not exist and gives no methods";
    }
    output.Line(line);
}

class Show : public Command {
  public:
    Show() : Command({"domain", "show"}, "Show every setting of a domain") {}
    void Define(CLI::App& app) override { app.add_option("name", name_, "Its name")->required(); }
    void Run(Context& context) override {
        CheckFits("domain name", name_, DOM_NAME_SIZE);
        const DomainPtr record = context.client.NeedDomain(name_);
        Json domain = DomainToJson(*record);
        const std::string policy = FieldText(record->author_attr.ita_policy_name);
        if (!policy.empty()) {
            const auto methods = EffectiveMethods(context.client, record->name);
            domain["accounting_policy"] = {{"name", policy},
                                           {"exists", methods.has_value()},
                                           {"methods", methods ? Json(*methods) : Json()}};
        }
        PrintDomain(context.output, domain);
        context.output.Result(domain);
    }

  private:
    std::string name_;
};

class List : public Command {
  public:
    List() : Command({"domain", "list"}, "List all domains") {}
    void Define(CLI::App& app) override {
        app.add_option("--order", order_,
                       "name: as text compares; row: shorter names first, as rows are walked")
            ->check(CLI::IsMember({"name", "row"}))
            ->capture_default_str();
    }
    void Run(Context& context) override {
        Json domains = Json::array();
        const auto add = [&](const char* name, uint16_t state) {
            domains.push_back({{"name", name}, {"state", state}});
            context.output.Line(Printable(name) + "  " + StateName(state));
        };
        if (order_ == "row") {
            for (const DomainMibRow& row : context.client.DomainsByRow()) {
                add(row.domain_name, static_cast<uint16_t>(row.state));
            }
        } else {
            for (const DomainPtr& domain : context.client.DomainsByName()) {
                add(domain->name, domain->state);
            }
        }
        context.output.Result({{"order", order_}, {"domains", domains}});
    }

  private:
    std::string order_ = "name";
};

class Count : public Command {
  public:
    Count() : Command({"domain", "count"}, "Count the domains") {}
    void Define(CLI::App&) override {}
    void Run(Context& context) override {
        const uint32_t count = context.client.CountDomains();
        context.output.Line(std::to_string(count) + " of " + std::to_string(DOM_MAX_DOMAINS) +
                            " domains");
        context.output.Result({{"count", count}, {"maximum", DOM_MAX_DOMAINS}});
    }
};

}  // namespace domain_commands

void AddDomainCommands(Commands& commands) {
    using namespace domain_commands;
    commands.push_back(std::make_unique<Create>());
    commands.push_back(std::make_unique<Delete>());
    commands.push_back(std::make_unique<Show>());
    commands.push_back(std::make_unique<List>());
    commands.push_back(std::make_unique<Count>());
}

}  // namespace aaactl
