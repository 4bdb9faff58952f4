// session-limit show, session-limit set
#include "../command.h"
#include "../names.h"

namespace aaactl {
namespace session_limit_commands {

class Show : public Command {
  public:
    Show() : Command({"session-limit", "show"}, "Show the session limit of each class") {}
    void Define(CLI::App&) override {}
    void Run(Context& context) override {
        const SessionLimits limits = context.client.ReadSessionLimits();
        const std::pair<const char*, uint32_t> rows[] = {{"19", limits.class_19},
                                                         {"20", limits.class_20},
                                                         {"21", limits.class_21},
                                                         {"22", limits.class_22},
                                                         {"23", limits.class_23}};
        Json result = Json::object();
        for (const auto& [session_class, limit] : rows) {
            context.output.Line(std::string("class ") + session_class + "  " +
                                std::to_string(limit));
            result[session_class] = limit;
        }
        context.output.Result(result);
    }
};

class Set : public Command {
  public:
    Set() : Command({"session-limit", "set"}, "Limit the sessions of a class") {}
    void Define(CLI::App& app) override {
        app.add_option("class", class_, "19 to 23")->required();
        app.add_option("limit", limit_, "0 to 4294967295")->required();
    }
    void Run(Context& context) override {
        const uint32_t session_class = ParseSessionClass(class_);
        const uint32_t limit = ParseNumber("session limit", limit_, UINT32_MAX);
        const uint32_t result =
            context.client.Change(DOM_EncodeSessionLimit(session_class, limit), DOM_OP_SET);
        if (result != DOM_OK) throw Refused("session limit of class " + class_, result);
        context.output.Line("session limit of class " + class_ + " is " + std::to_string(limit));
        context.output.Result({{"class", session_class}, {"limit", limit}});
    }

  private:
    std::string class_;
    std::string limit_;
};

}  // namespace session_limit_commands

void AddSessionLimitCommands(Commands& commands) {
    using namespace session_limit_commands;
    commands.push_back(std::make_unique<Show>());
    commands.push_back(std::make_unique<Set>());
}

}  // namespace aaactl
