// policy acct create, delete, list, show; scheme set, unset; level set, unset; together,
// separation, quota-out
#include <aaadom/accounting_policy_codec.h>

#include <algorithm>

#include "../accounting_policies.h"
#include "../command.h"
#include "../names.h"
#include "../texts.h"

namespace aaactl {
namespace {

std::string Quoted(const std::string& name) {
    return "accounting policy \"" + Printable(name) + "\"";
}

std::string SwitchName(uint32_t state) {
    return state == 0 ? "off" : state == 1 ? "on" : std::to_string(state);
}

std::string PairText(const Json& pair) {
    if (pair.is_null()) return "-";
    const auto shown = [](const Json& number) {
        return number.is_null() ? std::string("-") : number.dump();
    };
    return shown(pair.at(0)) + "," + shown(pair.at(1));
}

std::string LevelLine(const std::string& id, const Json& level) {
    return "level " + id + ": value " + level.at("value").dump() + ", first pair " +
           PairText(level.at("first_pair")) + ", second pair " + PairText(level.at("second_pair"));
}

std::string SchemeLine(const Json& scheme) {
    std::string line = "methods";
    for (const Json& method : scheme) line += " " + Printable(method.get<std::string>());
    return scheme.empty() ? line + " -" : line;
}

class PolicyCommand : public Command {
  public:
    PolicyCommand(std::vector<std::string> verb, const char* help)
        : Command(PathOf(std::move(verb)), help) {}

  protected:
    void DefinePolicy(CLI::App& app) {
        app.add_option("policy", policy_, "The policy, at most 31 characters")->required();
    }
    /// Sends a change of the policy; throws when it is refused.
    void Change(Client& client, TLV_MSG* message, bool set) const {
        const uint32_t result = ChangeAccountingPolicy(client, message, set);
        if (result != DOM_OK) RefuseAccountingPolicy(client, policy_, result);
    }

    std::string policy_;

  private:
    static std::vector<std::string> PathOf(std::vector<std::string> verb) {
        std::vector<std::string> path = {"policy", "acct"};
        path.insert(path.end(), verb.begin(), verb.end());
        return path;
    }
};

class Create : public PolicyCommand {
  public:
    Create() : PolicyCommand({"create"}, "Create an accounting policy; an existing one stays") {}
    void Define(CLI::App& app) override { DefinePolicy(app); }
    void Run(Context& context) override {
        CheckPolicyName(policy_);
        CreateAccountingPolicy(context.client, policy_);
        context.output.Line(Quoted(policy_) + " is there");
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
        context.output.Line(Quoted(policy_) + " is deleted");
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
        output.Line(Quoted(policy_));
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
        context.output.Line(Quoted(policy_) + ": " + SchemeLine(methods_));
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
        context.output.Line(Quoted(policy_) + ": " + SchemeLine({"none"}));
        context.output.Result({{"policy", policy_}, {"scheme", {"none"}}});
    }
};

class SetLevel : public PolicyCommand {
  public:
    SetLevel() : PolicyCommand({"level", "set"}, "Set a traffic level; what is not given stays") {}
    void Define(CLI::App& app) override {
        DefinePolicy(app);
        app.add_option("level", id_, "1 to 4294967295; a policy has at most 8 levels")->required();
        app.add_option("--value", value_, "0 to 4294967295");
        app.add_option("--first-pair", pairs_[0],
                       "Two numbers, A,B, each 0 to 4294967294 or - for none; - alone for neither");
        app.add_option("--second-pair", pairs_[1], "Likewise");
    }
    void Run(Context& context) override {
        CheckPolicyName(policy_);
        const uint32_t id = ParseLevelId(id_);
        const uint32_t value = value_.empty() ? 0 : ParseNumber("value", value_, UINT32_MAX);
        uint32_t numbers[4] = {DOM_ITA_PAIR_UNSET, DOM_ITA_PAIR_UNSET, DOM_ITA_PAIR_UNSET,
                               DOM_ITA_PAIR_UNSET};
        uint32_t flags = 0;
        if (!pairs_[0].empty()) flags |= DOM_ITA_FLAG_FIRST_PAIR;
        if (!pairs_[1].empty()) flags |= DOM_ITA_FLAG_SECOND_PAIR;
        ParsePair("first pair", pairs_[0], numbers);
        ParsePair("second pair", pairs_[1], numbers + 2);
        if (!value_.empty() && value == 0) RefuseZero(context.client);
        const uint32_t result = ChangeAccountingPolicy(
            context.client,
            DOM_ita_tlv_EncodeAcctLevel(policy_.c_str(), id, value, flags, numbers[0], numbers[1],
                                        numbers[2], numbers[3]),
            true);
        if (result != DOM_OK) Refuse(context.client, result);
        const std::string key = std::to_string(id);
        const Json policy = AccountingPolicyToJson(NeedAccountingPolicy(context.client, policy_));
        const Json level = policy.at("levels").value(key, Json());
        if (level.is_null()) {
            throw Failure(kExitRefused, Quoted(policy_) + " level " + key,
                          "another client has taken it away meanwhile", "Set it again");
        }
        context.output.Line(Quoted(policy_) + ": " + LevelLine(key, level));
        Json answer{{"policy", policy_}, {"level", id}};
        answer.update(level);
        context.output.Result(answer);
    }

  private:
    static uint32_t ParsePairNumber(const std::string& what, const std::string& word) {
        if (word == "-") return DOM_ITA_PAIR_UNSET;
        return ParseNumber(what, word, DOM_ITA_PAIR_UNSET - 1);
    }

    static void ParsePair(const std::string& what, const std::string& word, uint32_t* numbers) {
        if (word.empty() || word == "-") return;
        const size_t comma = word.find(',');
        if (comma == std::string::npos) {
            RefuseUsage(what + " \"" + word + "\"", "it is not of the form A,B",
                        "Write two numbers with a comma between them");
        }
        numbers[0] = ParsePairNumber(what, word.substr(0, comma));
        numbers[1] = ParsePairNumber(what, word.substr(comma + 1));
    }

    /// The daemon takes value 0 for "leave it".
    void RefuseZero(Client& client) const {
        const Json policy = AccountingPolicyToJson(NeedAccountingPolicy(client, policy_));
        const std::string id = std::to_string(ParseLevelId(id_));
        const Json level = policy.at("levels").value(id, Json());
        if (level.is_null() || level.at("value") == 0) return;
        throw Failure(kExitRefused, Quoted(policy_) + " level " + id,
                      "the value of a level cannot go back to 0",
                      "Take the level away and set it again: aaactl policy acct level unset " +
                          policy_ + " " + id);
    }

    [[noreturn]] void Refuse(Client& client, uint32_t result) const {
        if (result != DOM_ERR_FAILED) RefuseAccountingPolicy(client, policy_, result);
        const Json policy = AccountingPolicyToJson(NeedAccountingPolicy(client, policy_));
        const Json& levels = policy.at("levels");
        if (levels.size() >= DOM_ITA_LEVELS &&
            !levels.contains(std::to_string(ParseLevelId(id_)))) {
            throw Failure(
                kExitRefused, Quoted(policy_),
                "it has " + std::to_string(DOM_ITA_LEVELS) + " levels, and no policy has more",
                "Take one away that is no longer used: aaactl policy acct level unset " + policy_ +
                    " LEVEL",
                result);
        }
        throw Refused(Quoted(policy_), result);
    }

    std::string id_;
    std::string value_;
    std::string pairs_[2];
};

class UnsetLevel : public PolicyCommand {
  public:
    UnsetLevel() : PolicyCommand({"level", "unset"}, "Take one traffic level or all away") {}
    void Define(CLI::App& app) override {
        DefinePolicy(app);
        app.add_option("level", id_, "The level, or all")->required();
    }
    void Run(Context& context) override {
        CheckPolicyName(policy_);
        const bool all = id_ == "all";
        const uint32_t id = all ? kAllLevels : ParseLevelId(id_);
        const uint32_t unset = DOM_ITA_PAIR_UNSET;
        const uint32_t result = ChangeAccountingPolicy(
            context.client,
            DOM_ita_tlv_EncodeAcctLevel(policy_.c_str(), id, 0, 0, unset, unset, unset, unset),
            false);
        if (result == DOM_ERR_NOT_FOUND && FindAccountingPolicy(context.client, policy_)) {
            throw Failure(kExitRefused, Quoted(policy_), "it has no level " + std::to_string(id),
                          "See aaactl policy acct show " + policy_, result);
        }
        if (result != DOM_OK) RefuseAccountingPolicy(context.client, policy_, result);
        context.output.Line(Quoted(policy_) + ": " +
                            (all ? "all levels are" : "level " + std::to_string(id) + " is") +
                            " taken away");
        context.output.Result({{"policy", policy_}, {"level", all ? Json("all") : Json(id)}});
    }

  private:
    /// A message about level 0 takes all levels away.
    static constexpr uint32_t kAllLevels = 0;
    std::string id_;
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
        context.output.Line(Quoted(policy_) + ": " + name_ + " is " + value_);
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
        context.output.Line(Quoted(policy_) + ": quota-out is " + SwitchName(state));
        context.output.Result({{"policy", policy_}, {"quota_out", state}});
    }

  private:
    std::string value_;
};

}  // namespace

void AddAccountingPolicyCommands(Commands& commands) {
    commands.push_back(std::make_unique<Create>());
    commands.push_back(std::make_unique<Delete>());
    commands.push_back(std::make_unique<List>());
    commands.push_back(std::make_unique<Show>());
    commands.push_back(std::make_unique<SetScheme>());
    commands.push_back(std::make_unique<UnsetScheme>());
    commands.push_back(std::make_unique<SetLevel>());
    commands.push_back(std::make_unique<UnsetLevel>());
    commands.push_back(std::make_unique<Switch>("together", "Account all traffic together, or not",
                                                DOM_ita_tlv_EncodeAcctTogether));
    commands.push_back(std::make_unique<Switch>("separation", "Separate traffic, or not",
                                                DOM_ita_tlv_EncodeTrafSeprate));
    commands.push_back(std::make_unique<QuotaOut>());
}

}  // namespace aaactl
