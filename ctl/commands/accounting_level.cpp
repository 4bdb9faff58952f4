// policy acct level set, unset
#include <aaadom/accounting_policy_codec.h>

#include "../accounting_policies.h"
#include "../names.h"
#include "accounting_policy.h"

namespace aaactl {
namespace accounting_level_commands {

std::string PairText(const Json& pair) {
    if (pair.is_null()) return "-";
    const auto shown = [](const Json& number) {
        return number.is_null() ? std::string("-") : number.dump();
    };
    return shown(pair.at(0)) + "," + shown(pair.at(1));
}

}  // namespace accounting_level_commands

std::string LevelLine(const std::string& id, const Json& level) {
    return "level " + id + ": value " + level.at("value").dump() + ", first pair " +
           accounting_level_commands::PairText(level.at("first_pair")) + ", second pair " +
           accounting_level_commands::PairText(level.at("second_pair"));
}

namespace accounting_level_commands {

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
            throw Failure(kExitRefused, QuotedPolicy(policy_) + " level " + key,
                          "another client has taken it away meanwhile", "Set it again");
        }
        context.output.Line(QuotedPolicy(policy_) + ": " + LevelLine(key, level));
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
        throw Failure(kExitRefused, QuotedPolicy(policy_) + " level " + id,
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
                kExitRefused, QuotedPolicy(policy_),
                "it has " + std::to_string(DOM_ITA_LEVELS) + " levels, and no policy has more",
                "Take one away that is no longer used: aaactl policy acct level unset " + policy_ +
                    " LEVEL",
                result);
        }
        throw Refused(QuotedPolicy(policy_), result);
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
            throw Failure(kExitRefused, QuotedPolicy(policy_),
                          "it has no level " + std::to_string(id),
                          "See aaactl policy acct show " + policy_, result);
        }
        if (result != DOM_OK) RefuseAccountingPolicy(context.client, policy_, result);
        context.output.Line(QuotedPolicy(policy_) + ": " +
                            (all ? "all levels are" : "level " + std::to_string(id) + " is") +
                            " taken away");
        context.output.Result({{"policy", policy_}, {"level", all ? Json("all") : Json(id)}});
    }

  private:
    /// A message about level 0 takes all levels away.
    static constexpr uint32_t kAllLevels = 0;
    std::string id_;
};

}  // namespace accounting_level_commands

void AddAccountingLevelCommands(Commands& commands) {
    using namespace accounting_level_commands;
    commands.push_back(std::make_unique<SetLevel>());
    commands.push_back(std::make_unique<UnsetLevel>());
}

}  // namespace aaactl
