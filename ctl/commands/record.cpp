// record switch show, set; record backup show, set
#include <algorithm>

#include "../command.h"
#include "../records.h"

namespace aaactl {
namespace record_commands {

/// People write hyphens, documents underlines.
std::string Member(std::string word) {
    std::replace(word.begin(), word.end(), '-', '_');
    return word;
}

std::string Word(std::string member) {
    std::replace(member.begin(), member.end(), '_', '-');
    return member;
}

/// What the switches mean together: two of them keep a list of offline records, either will do.
std::string KeptLine(const Json& switches) {
    const auto on = [&](const char* name) { return switches.at(name).get<bool>(); };
    std::string lists;
    if (on("online_fail")) lists += " online-fail";
    if (on("offline_all") || on("offline_abnormal")) lists += " abnormal";
    if (on("offline_all") || on("offline_normal")) lists += " normal";
    return "new records are kept in:" + (lists.empty() ? " no list" : lists);
}

const char* OnOff(const Json& on) {
    return on.get<bool>() ? "on" : "off";
}

class ShowSwitches : public Command {
  public:
    ShowSwitches() : Command({"record", "switch", "show"}, "Show which user records are kept") {}
    void Define(CLI::App&) override {}
    void Run(Context& context) override {
        const Json switches = ReadRecordSwitches(context.client);
        for (const auto& [name, on] : switches.items()) {
            context.output.Line(Word(name) + "  " + OnOff(on));
        }
        context.output.Line(KeptLine(switches));
        context.output.Result(switches);
    }
};

class ShowBackup : public Command {
  public:
    ShowBackup()
        : Command({"record", "backup", "show"},
                  "Show which user records are backed up, and which are while nothing is set") {}
    void Define(CLI::App&) override {}
    void Run(Context& context) override {
        const Json methods = ReadRecordBackupWithDefault(context.client);
        for (const auto& [name, by_default] : methods.at("default").items()) {
            context.output.Line(Word(name) + "  " + OnOff(methods.at(name)) + "  default " +
                                OnOff(by_default));
        }
        context.output.Result(methods);
    }
};

class Set : public Command {
  public:
    Set(const char* object, const char* help, std::vector<std::string> names,
        void (*set)(Client&, const std::string&, bool))
        : Command({"record", object, "set"}, help), names_(std::move(names)), set_(set) {}
    void Define(CLI::App& app) override {
        app.add_option("records", name_, "Which records")->required()->check(CLI::IsMember(names_));
        app.add_option("value", value_, "on or off")
            ->required()
            ->check(CLI::IsMember({"on", "off"}));
    }
    void Run(Context& context) override {
        const bool on = value_ == "on";
        set_(context.client, Member(name_), on);
        context.output.Line("record " + Path()[1] + " " + Word(name_) + " is " + value_);
        context.output.Result({{"records", Member(name_)}, {"on", on}});
    }

  private:
    const std::vector<std::string> names_;
    void (*set_)(Client&, const std::string&, bool);
    std::string name_;
    std::string value_;
};

}  // namespace record_commands

void AddRecordCommands(Commands& commands) {
    using namespace record_commands;
    commands.push_back(std::make_unique<ShowSwitches>());
    commands.push_back(
        std::make_unique<Set>("switch", "Keep user records or not",
                              std::vector<std::string>{"online-fail", "offline-all",
                                                       "offline-normal", "offline-abnormal"},
                              SetRecordSwitch));
    commands.push_back(std::make_unique<ShowBackup>());
    commands.push_back(std::make_unique<Set>(
        "backup", "Back user records up or not",
        std::vector<std::string>{"online-fail", "abnormal-offline", "normal-offline"},
        SetRecordBackup));
}

}  // namespace aaactl
