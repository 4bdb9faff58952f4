// domain set attribute, domain unset attribute
#include "../attributes.h"
#include "../command.h"
#include "../texts.h"

namespace aaactl {
namespace domain_attributes_commands {

class Attribute : public Command {
  public:
    explicit Attribute(bool sets)
        : Command({"domain", sets ? "set" : "unset", "attribute"},
                  sets ? "Set fields of an authorization attribute"
                       : "Put an authorization attribute back to its initial value"),
          sets_(sets) {}
    void Define(CLI::App& app) override {
        app.add_option("name", name_, "The domain")->required();
        app.add_option("kind", kind_, "0 to 26, or a kind's name")->required();
        if (sets_) {
            app.add_option("fields", fields_, "field=value, other fields keep their values")
                ->required();
        }
        app.footer("Kinds and their fields:\n" + DescribeKinds());
    }
    void Run(Context& context) override {
        CheckFits("domain name", name_, DOM_NAME_SIZE);
        const uint32_t kind = ParseKind(kind_);
        AuthorAttr wanted = DefaultAttributes();
        if (sets_) SetFieldsFromWords(wanted, kind, fields_);  // refuse before asking the daemon
        const AuthorAttr current = context.client.NeedDomain(name_)->author_attr;
        if (sets_) {
            wanted = current;
            SetFieldsFromWords(wanted, kind, fields_);
        }
        SendAttribute(context.client, name_, kind, current, wanted);
        // The daemon keeps some texts in another form than they were given.
        const AuthorAttr attributes = context.client.NeedDomain(name_)->author_attr;
        std::string kept;
        if (sets_ && !SameKind(attributes, wanted, kind)) {
            const Json kinds = AttributesToJson(attributes);
            kept = ", and the daemon keeps it as " +
                   kinds.value(std::to_string(kind), Json::object()).dump();
        }
        context.output.Line("domain \"" + Printable(name_) + "\": attribute " +
                            std::to_string(kind) +
                            (sets_ ? " is set" : " is back to its initial value") + kept);
        context.output.Result(
            {{"domain", name_}, {"kind", kind}, {"attributes", AttributesToJson(attributes)}});
    }

  private:
    bool sets_;
    std::string name_;
    std::string kind_;
    std::vector<std::string> fields_;
};

}  // namespace domain_attributes_commands

void AddDomainAttributeCommands(Commands& commands) {
    using namespace domain_attributes_commands;
    commands.push_back(std::make_unique<Attribute>(true));
    commands.push_back(std::make_unique<Attribute>(false));
}

}  // namespace aaactl
