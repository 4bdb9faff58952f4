// policy acct create, delete, list, show; scheme set, unset; together, separation, quota-out
#include <aaadom/accounting_policy_codec.h>

#include <algorithm>

#include "../accounting_policies.h"
#include "../names.h"
#include "../texts.h"
#include "accounting_policy.h"

namespace aaactl {

std::string QuotedPolicy(const std::string& name) {
    return "accounting policy \"" + Printable(name) + "\"";
}

namespace accounting_policy_commands {

std::vector<std::string> PathOf(std::vector<std::string> verb) {
    std::vector<std::string> path = {"policy", "acct"};
    path.insert(path.end(), verb.begin(), verb.end());
    return path;
}

}  // namespace accounting_policy_commands

PolicyCommand::PolicyCommand(std::vector<std::string> verb, const char* help)
    : Command(accounting_policy_commands::PathOf(std::move(verb)), help) {}

void PolicyCommand::DefinePolicy(CLI::App& app) {
    app.add_option("policy", policy_, "The policy, at most 31 characters")->required();
}

void PolicyCommand::Change(Client& client, TLV_MSG* message, bool set) const {
    const uint32_t result = ChangeAccountingPolicy(client, message, set);
    if (result != DOM_OK) RefuseAccountingPolicy(client, policy_, result);
}

namespace accounting_policy_commands {

std::string SwitchName(uint32_t state) {
    return state == 0 ? "off" : state == 1 ? "on" : std::to_string(state);
}

std::string SchemeLine(const Json& scheme) {
    std::string line = "methods";
    for (const Json& method : scheme) line += " " + Printable(method.get<std::string>());
    return scheme.empty() ? line + " -" : line;
}

class Create : public PolicyCommand {
  public:
    Create() : PolicyCommand({"create"}, "Create an accounting policy; an existing one stays") {}
    void Define(CLI::App& app) override { DefinePolicy(app); }
    void Run(Context& context) override {
        CheckPolicyName(policy_);
        CreateAccountingPolicy(context.client, policy_);
        context.output.Line(QuotedPolicy(policy_) + " is there");
        // Domains hold the names of their policies in small letters.
        const bool reachable = std::none_of(policy_.begin(), policy_.end(),
                                            [](char c) { return c >= 'A' && c <= 'Z'; });
        if (!reachable) {
            context.output.Line("no domain can refer to it, because of its capital letters");
        }
        context.output.Result({{"policy", policy_}, {"reachable", reachable}});
    }
};

class Delete : public PolicyCommand {
  public:
    Delete() : PolicyCommand({"delete"}, "Delete an accounting policy") {}
    void Define(CLI::App& app) override { DefinePolicy(app); }
    void Run(Context& context) override {
        CheckPolicyName(policy_);
        DeleteAccountingPolicy(context.client, policy_);
        context.output.Line(QuotedPolicy(policy_) + " is deleted");
        context.output.Result({{"deleted", policy_}});
    }
};

class List : public PolicyCommand {
  public:
    List() : PolicyCommand({"list"}, "List the accounting policies") {}
    void Define(CLI::App&) override {}
    void Run(Context& context) override {
        Json rows = Json::array();
        const Json policies = ReadAccountingPolicies(context.client);
        for (const auto& [name, policy] : policies.items()) {
            const size_t levels = policy.at("levels").size();
            context.output.Line(Printable(name) + "  " + SchemeLine(policy.at("scheme")) + "  " +
                                std::to_string(levels) + (levels == 1 ? " level" : " levels"));
            rows.push_back({{"policy", name}, {"scheme", policy.at("scheme")}, {"levels", levels}});
        }
        context.output.Result({{"policies", rows}});
    }
};

class Show : public PolicyCommand {
  public:
    Show() : PolicyCommand({"show"}, "Show an accounting policy") {}
    void Define(CLI::App& app) override { DefinePolicy(app); }
    void Run(Context& context) override {
        CheckPolicyName(policy_);
        const Json policy = AccountingPolicyToJson(NeedAccountingPolicy(context.client, policy_));
        Output& output = context.output;
        output.Line(QuotedPolicy(policy_));
        output.Line("  " + SchemeLine(policy.at("scheme")));
        const auto state = [&](const char* name) {
            return SwitchName(policy.at(name).get<uint32_t>());
        };
        output.Line("  together " + state("together"));
        output.Line("  separation " + state("separation"));
        output.Line("  quota-out " + state("quota_out"));
        for (const auto& [id, level] : policy.at("levels").items()) {
            output.Line("  " + LevelLine(id, level));
        }
        Json result{{"policy", policy_}};
        result.update(policy);
        output.Result(result);
    }
};

class SetScheme : public PolicyCommand {
  public:
    SetScheme() : PolicyCommand({"scheme", "set"}, "Set the methods of a policy") {}
    void Define(CLI::App& app) override {
        DefinePolicy(app);
        app.add_option("methods", methods_,
                       "One to six, in order of preference: scheme1:NAME, scheme2:NAME, "
                       "scheme3:NAME, local, none")
            ->required();
    }
    void Run(Context& context) override {
        CheckPolicyName(policy_);
        const MethodList scheme = ParseScheme(methods_);
        Change(context.client, DOM_ita_tlv_EncodeAcctScheme(policy_.c_str(), scheme.methods), true);
        context.output.Line(QuotedPolicy(policy_) + ": " + SchemeLine(methods_));
        context.output.Result({{"policy", policy_}, {"scheme", methods_}});
    }

  private:
    std::vector<std::string> methods_;
};

class UnsetScheme : public PolicyCommand {
  public:
    UnsetScheme() : PolicyCommand({"scheme", "unset"}, "Put the methods back to none alone") {}
    void Define(CLI::App& app) override { DefinePolicy(app); }
    void Run(Context& context) override {
        CheckPolicyName(policy_);
        // The daemon refuses the message without any method, although it does not look at them.
        const MethodList scheme = ParseScheme({"none"});
        Change(context.client, DOM_ita_tlv_EncodeAcctScheme(policy_.c_str(), scheme.methods),
               false);
        context.output.Line(QuotedPolicy(policy_) + ": " + SchemeLine({"none"}));
        context.output.Result({{"policy", policy_}, {"scheme", {"none"}}});
    }
};

/// Accounting together and traffic separation: the operation is the value.
class Switch : public PolicyCommand {
  public:
    Switch(const char* name, const char* help, TLV_MSG* (*encode)(const char*))
        : PolicyCommand({name}, help), name_(name), encode_(encode) {}
    void Define(CLI::App& app) override {
        DefinePolicy(app);
        app.add_option("value", value_, "on or off")
            ->required()
            ->check(CLI::IsMember({"on", "off"}));
    }
    void Run(Context& context) override {
        CheckPolicyName(policy_);
        const bool on = value_ == "on";
        Change(context.client, encode_(policy_.c_str()), on);
        context.output.Line(QuotedPolicy(policy_) + ": " + name_ + " is " + value_);
        context.output.Result({{"policy", policy_}, {name_, on ? 1 : 0}});
    }

  private:
    const std::string name_;
    TLV_MSG* (*encode_)(const char*);
    std::string value_;
};

class QuotaOut : public PolicyCommand {
  public:
    QuotaOut() : PolicyCommand({"quota-out"}, "Set the quota-out state") {}
    void Define(CLI::App& app) override {
        DefinePolicy(app);
        app.add_option("value", value_, "on (1), off (0) or a number up to 65535")->required();
    }
    void Run(Context& context) override {
        CheckPolicyName(policy_);
        const uint16_t state =
            value_ == "on" ? uint16_t{1}
            : value_ == "off"
                ? uint16_t{0}
                : static_cast<uint16_t>(ParseNumber("quota-out state", value_, UINT16_MAX));
        // This code has no operation: its message holds the state.
        Change(context.client, DOM_ita_tlv_EncodeTrafQuotaOut(policy_.c_str(), state), true);
        context.output.Line(QuotedPolicy(policy_) + ": quota-out is " + SwitchName(state));
        context.output.Result({{"policy", policy_}, {"quota_out", state}});
    }

  private:
    std::string value_;
};

}  // namespace accounting_policy_commands

void AddAccountingPolicyCommands(Commands& commands) {
    using namespace accounting_policy_commands;
    commands.push_back(std::make_unique<Create>());
    commands.push_back(std::make_unique<Delete>());
    commands.push_back(std::make_unique<List>());
    commands.push_back(std::make_unique<Show>());
    commands.push_back(std::make_unique<SetScheme>());
    commands.push_back(std::make_unique<UnsetScheme>());
    AddAccountingLevelCommands(commands);
    commands.push_back(std::make_unique<Switch>("together", "Account all traffic together, or not",
                                                DOM_ita_tlv_EncodeAcctTogether));
    commands.push_back(std::make_unique<Switch>("separation", "Separate traffic, or not",
                                                DOM_ita_tlv_EncodeTrafSeprate));
    commands.push_back(std::make_unique<QuotaOut>());
}

}  // namespace aaactl
