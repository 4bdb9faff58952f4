// global show, set, unset; debug
#include "../command.h"
#include "../names.h"
#include "../texts.h"

namespace aaactl {
namespace global_commands {

void Demand(Client& client, const std::string& object, TLV_MSG* request, uint32_t operation) {
    const uint32_t result = client.Change(request, operation);
    if (result != DOM_OK) throw Refused(object, result);
}

class Show : public Command {
  public:
    Show() : Command({"global", "show"}, "Show default and unknown domain, device ID, debugging") {}
    void Define(CLI::App&) override {}
    void Run(Context& context) override {
        const GlobalDomain global = context.client.ReadGlobal();
        const uint32_t debug = context.client.ReadDebugFlag();
        const auto or_dash = [](const char* name) {
            return name[0] == '\0' ? std::string("-") : Printable(name);
        };
        context.output.Line("default domain  " + or_dash(global.default_domain));
        context.output.Line("unknown domain  " + or_dash(global.unknown_domain));
        context.output.Line("device ID       " + std::to_string(global.device_id));
        context.output.Line(std::string("debug messages ") +
                            ((debug & AAA_DBG_ERROR_BIT) != 0 ? " errors" : "") +
                            ((debug & AAA_DBG_EVENT_BIT) != 0 ? " events" : "") +
                            ((debug & (AAA_DBG_ERROR_BIT | AAA_DBG_EVENT_BIT)) == 0 ? " off" : ""));
        context.output.Result({{"default_domain", global.default_domain},
                               {"unknown_domain", global.unknown_domain},
                               {"device_id", global.device_id},
                               {"debug_flag", debug}});
    }
};

/// Default and unknown domain.
class NameSetting : public Command {
  public:
    NameSetting(const char* verb, const char* word, const char* help)
        : Command({"global", verb, word}, help),
          sets_(std::string(verb) == "set"),
          is_default_(std::string(word) == "default-domain") {}
    void Define(CLI::App& app) override {
        if (sets_) app.add_option("name", name_, "The domain")->required();
    }
    void Run(Context& context) override {
        if (sets_) {
            CheckDomainName(name_);
            (void)context.client.NeedDomain(name_);
        }
        const std::string what = is_default_ ? "default domain" : "unknown domain";
        Demand(context.client, what,
               is_default_ ? DOM_EncodeDefaultDomain(name_.c_str(), 0)
                           : DOM_EncodeUnknownDomain(name_.c_str()),
               sets_ ? DOM_OP_SET : DOM_OP_DELETE);
        const std::string now = sets_ ? name_ : is_default_ ? DOM_SYSTEM_DOMAIN : "";
        context.output.Line(what +
                            (now.empty() ? " is taken away" : " is \"" + Printable(now) + "\""));
        context.output.Result({{is_default_ ? "default_domain" : "unknown_domain", now}});
    }

  private:
    bool sets_;
    bool is_default_;
    std::string name_;
};

class DeviceId : public Command {
  public:
    explicit DeviceId(const char* verb)
        : Command({"global", verb, "device-id"}, "Set the device ID, or put it back to 0"),
          sets_(std::string(verb) == "set") {}
    void Define(CLI::App& app) override {
        if (sets_) app.add_option("number", word_, "0 to 4294967295")->required();
    }
    void Run(Context& context) override {
        const uint32_t number = ParseNumber("device ID", word_, UINT32_MAX);
        Demand(context.client, "device ID", DOM_EncodeDeviceID(number),
               sets_ ? DOM_OP_SET : DOM_OP_DELETE);
        context.output.Line("device ID is " + std::to_string(number));
        context.output.Result({{"device_id", number}});
    }

  private:
    bool sets_;
    std::string word_ = "0";
};

class Debug : public Command {
  public:
    explicit Debug(bool on)
        : Command({"debug", on ? "on" : "off"},
                  on ? "Write debug messages to the system log" : "Stop writing them"),
          on_(on) {}
    void Define(CLI::App& app) override {
        app.add_option("messages", words_, "errors, events; both when none is named")
            ->check(CLI::IsMember({"errors", "events"}));
    }
    void Run(Context& context) override {
        uint32_t mask = words_.empty() ? AAA_DBG_ERROR_BIT | AAA_DBG_EVENT_BIT : 0;
        for (const std::string& word : words_) {
            mask |= word == "errors" ? AAA_DBG_ERROR_BIT : AAA_DBG_EVENT_BIT;
        }
        Demand(context.client, "debug messages", DOM_EncodeDebugFlag(mask),
               on_ ? DOM_OP_SET : DOM_OP_DELETE);
        const uint32_t flag = context.client.ReadDebugFlag();
        context.output.Line(std::string("debug messages: errors ") +
                            ((flag & AAA_DBG_ERROR_BIT) != 0 ? "on" : "off") + ", events " +
                            ((flag & AAA_DBG_EVENT_BIT) != 0 ? "on" : "off"));
        context.output.Result({{"debug_flag", flag}});
    }

  private:
    bool on_;
    std::vector<std::string> words_;
};

}  // namespace global_commands

void AddGlobalCommands(Commands& commands) {
    using namespace global_commands;
    commands.push_back(std::make_unique<Show>());
    commands.push_back(
        std::make_unique<NameSetting>("set", "default-domain", "Users without a domain go there"));
    commands.push_back(std::make_unique<NameSetting>("set", "unknown-domain",
                                                     "Users of an unknown domain go there"));
    commands.push_back(std::make_unique<DeviceId>("set"));
    commands.push_back(std::make_unique<NameSetting>("unset", "default-domain",
                                                     "Make system the default domain again"));
    commands.push_back(
        std::make_unique<NameSetting>("unset", "unknown-domain", "Take the unknown domain away"));
    commands.push_back(std::make_unique<DeviceId>("unset"));
    commands.push_back(std::make_unique<Debug>(true));
    commands.push_back(std::make_unique<Debug>(false));
}

}  // namespace aaactl
