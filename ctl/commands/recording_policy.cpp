// policy record create, delete, show; policy record scheme set, unset
#include "../recording_policy.h"
#include "../command.h"
#include "../texts.h"

namespace aaactl {
namespace recording_policy_commands {

std::string Line(const std::vector<std::string>& methods) {
    std::string line = "recording policy of connections: methods";
    for (const std::string& method : methods) line += " " + Printable(method);
    return methods.empty() ? line + " -" : line;
}

class Create : public Command {
  public:
    Create() : Command({"policy", "record", "create"}, "Create the recording policy") {}
    void Define(CLI::App&) override {}
    void Run(Context& context) override {
        CreateRecordingPolicy(context.client);
        context.output.Line("recording policy of connections is there");
        context.output.Result({{"policy", "connection"}});
    }
};

class Delete : public Command {
  public:
    Delete() : Command({"policy", "record", "delete"}, "Delete the recording policy") {}
    void Define(CLI::App&) override {}
    void Run(Context& context) override {
        DeleteRecordingPolicy(context.client);
        context.output.Line("recording policy of connections is deleted");
        context.output.Result({{"deleted", "connection"}});
    }
};

class Show : public Command {
  public:
    Show() : Command({"policy", "record", "show"}, "Show the recording policy") {}
    void Define(CLI::App&) override {}
    void Run(Context& context) override {
        const auto methods = FindRecordingPolicy(context.client);
        context.output.Line(methods ? Line(*methods) : "there is no recording policy");
        context.output.Result({{"policy", "connection"},
                               {"exists", methods.has_value()},
                               {"scheme", methods ? Json(*methods) : Json()}});
    }
};

class SetScheme : public Command {
  public:
    SetScheme()
        : Command({"policy", "record", "scheme", "set"},
                  "Set the methods by which connections are recorded") {}
    void Define(CLI::App& app) override {
        app.add_option("methods", methods_,
                       "One to six, in order of preference: scheme1:NAME, scheme2:NAME, "
                       "scheme3:NAME, local, none")
            ->required();
    }
    void Run(Context& context) override {
        SetRecordingScheme(context.client, methods_);
        context.output.Line(Line(methods_));
        context.output.Result({{"policy", "connection"}, {"scheme", methods_}});
    }

  private:
    std::vector<std::string> methods_;
};

class UnsetScheme : public Command {
  public:
    UnsetScheme() : Command({"policy", "record", "scheme", "unset"}, "Take the methods away") {}
    void Define(CLI::App&) override {}
    void Run(Context& context) override {
        SetRecordingScheme(context.client, {});
        context.output.Line(Line({}));
        context.output.Result({{"policy", "connection"}, {"scheme", Json::array()}});
    }
};

}  // namespace recording_policy_commands

void AddRecordingPolicyCommands(Commands& commands) {
    using namespace recording_policy_commands;
    commands.push_back(std::make_unique<Create>());
    commands.push_back(std::make_unique<Delete>());
    commands.push_back(std::make_unique<Show>());
    commands.push_back(std::make_unique<SetScheme>());
    commands.push_back(std::make_unique<UnsetScheme>());
}

}  // namespace aaactl
