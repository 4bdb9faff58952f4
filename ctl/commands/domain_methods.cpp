// domain set methods, domain unset methods
#include "../command.h"
#include "../names.h"
#include "../texts.h"

namespace aaactl {
namespace domain_methods_commands {

class SetMethods : public Command {
  public:
    SetMethods()
        : Command({"domain", "set", "methods"}, "Set the methods of one AAA type and service") {}
    void Define(CLI::App& app) override {
        app.add_option("name", name_, "The domain")->required();
        app.add_option("type", type_, "authentication, authorization or accounting")->required();
        app.add_option("service", service_, "default, or 0 to 11")->required();
        app.add_option("methods", methods_,
                       "One to six, in order of preference: scheme1:NAME, scheme2:NAME, "
                       "scheme3:NAME, local, none")
            ->required();
        app.add_option("--extra", extra_, "Extra method of the service (accounting lists only)");
        app.footer(Support());
    }
    void Run(Context& context) override {
        CheckFits("domain name", name_, DOM_NAME_SIZE);
        const uint32_t type = ParseAaaType(type_);
        MethodList list = ParseMethodList(type, ParseService(service_), methods_);
        MethodEntry extra{};
        if (!extra_.empty()) {
            if (type != AAA_TYPE_5) {
                RefuseUsage("--extra", "only accounting lists carry an extra method",
                            "Leave it out");
            }
            extra = ParseMethod(extra_);
        }
        context.client.ChangeDomain(name_, DOM_EncodeMethList(name_.c_str(), &list, &extra),
                                    DOM_OP_SET);
        std::string line = "domain \"" + Printable(name_) + "\": methods of " + type_ +
                           ", service " + ServiceName(list.service) + " are";
        for (const std::string& method : methods_) line += " " + Printable(method);
        context.output.Line(line);
        context.output.Result({{"domain", name_},
                               {"type", type_},
                               {"service", ServiceName(list.service)},
                               {"methods", methods_}});
    }

  private:
    /// What each service supports, from the library's own table.
    static std::string Support() {
        std::string text = "Methods that a service supports:\n";
        const char* const kinds[] = {"", "scheme1", "scheme2", "scheme3", "local", "none"};
        for (uint32_t type : {AAA_TYPE_0, AAA_TYPE_4, AAA_TYPE_5}) {
            for (uint32_t service = 0; service < DOM_SERVICES; ++service) {
                std::string line;
                for (uint32_t kind = 1; kind <= METHOD_LAST_5; ++kind) {
                    if (DOM_IsServiceSupportTheMethod(service, type, kind) != 0) {
                        line += std::string(" ") + kinds[kind];
                    }
                }
                if (line.empty()) continue;
                text += "  " + AaaTypeName(type) + " " + ServiceName(service) + ":" + line + "\n";
            }
        }
        return text;
    }

    std::string name_;
    std::string type_;
    std::string service_;
    std::vector<std::string> methods_;
    std::string extra_;
};

class UnsetMethods : public Command {
  public:
    UnsetMethods()
        : Command({"domain", "unset", "methods"},
                  "Remove a list of methods; the default list goes back to local") {}
    void Define(CLI::App& app) override {
        app.add_option("name", name_, "The domain")->required();
        app.add_option("type", type_, "authentication, authorization or accounting")->required();
        app.add_option("service", service_, "default, or 0 to 11")->required();
    }
    void Run(Context& context) override {
        CheckFits("domain name", name_, DOM_NAME_SIZE);
        MethodList list{};
        list.aaa_type = ParseAaaType(type_);
        list.service = ParseService(service_);
        const MethodEntry extra{};
        const DomainPtr domain = context.client.NeedDomain(name_);
        const std::string what = "methods of " + type_ + ", service " + ServiceName(list.service);
        if (domain->method_lists[list.aaa_type][list.service] == nullptr) {
            throw Failure(kExitRefused, "domain \"" + name_ + "\"", "it has no " + what,
                          "See aaactl domain show " + name_);
        }
        context.client.ChangeDomain(name_, DOM_EncodeMethList(name_.c_str(), &list, &extra),
                                    DOM_OP_DELETE);
        context.output.Line(
            "domain \"" + Printable(name_) + "\": " + what +
            (list.service == DOM_DEFAULT_SERVICE ? " are local again" : " are removed"));
        context.output.Result(
            {{"domain", name_}, {"type", type_}, {"service", ServiceName(list.service)}});
    }

  private:
    std::string name_;
    std::string type_;
    std::string service_;
};

}  // namespace domain_methods_commands

void AddDomainMethodCommands(Commands& commands) {
    using namespace domain_methods_commands;
    commands.push_back(std::make_unique<SetMethods>());
    commands.push_back(std::make_unique<UnsetMethods>());
}

}  // namespace aaactl
