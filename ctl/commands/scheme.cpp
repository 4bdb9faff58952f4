// scheme list, show, add, modify, delete
#include <aaadom/rows.h>

#include "../command.h"
#include "../names.h"
#include "../scheme_rows.h"
#include "../texts.h"

namespace aaactl {
namespace scheme_commands {

class SchemeCommand : public Command {
  public:
    SchemeCommand(const char* verb, const char* help) : Command({"scheme", verb}, help) {}

  protected:
    void DefineKey(CLI::App& app) {
        app.add_option("domain", domain_, "The domain")->required();
        app.add_option("index", index_, "Scheme index of the row")->required();
    }
    SchemeKey Key() const {
        CheckFits("domain name", domain_, DOM_NAME_SIZE);
        return {domain_, ParseNumber("scheme index", index_, UINT32_MAX)};
    }
    std::string Object() const { return "scheme row " + index_ + " of domain \"" + domain_ + "\""; }

    MibSchemeRow NeedRow(Client& client) const {
        const auto row = FindSchemeRow(client, Key());
        if (row) return *row;
        (void)client.NeedDomain(domain_);
        throw Failure(kExitRefused, Object(), "there is no such row",
                      "See aaactl scheme list --domain " + domain_);
    }

    std::string domain_;
    std::string index_;
};

class List : public SchemeCommand {
  public:
    List() : SchemeCommand("list", "List the rows of the scheme table, shorter names first") {}
    void Define(CLI::App& app) override {
        app.add_option("--domain", domain_, "Rows of this domain only");
    }
    void Run(Context& context) override {
        SchemeKey key;
        if (!domain_.empty()) domain_ = context.client.NeedDomain(domain_)->name;
        Json rows = Json::array();
        while (const auto row = NextSchemeRow(context.client, key)) {
            key = {row->domain_name, row->scheme_index};
            if (!domain_.empty() && key.domain != domain_) continue;
            context.output.Line(SchemeRowLine(*row));
            rows.push_back(SchemeRowToJson(*row));
        }
        context.output.Result({{"rows", rows}});
    }
};

class Show : public SchemeCommand {
  public:
    Show() : SchemeCommand("show", "Show one row of the scheme table") {}
    void Define(CLI::App& app) override { DefineKey(app); }
    void Run(Context& context) override {
        const MibSchemeRow row = NeedRow(context.client);
        context.output.Line(SchemeRowLine(row));
        context.output.Result(SchemeRowToJson(row));
    }
};

/// Add and modify: a row with a method.
class Set : public SchemeCommand {
  public:
    Set(const char* verb, const char* help, uint32_t row_status)
        : SchemeCommand(verb, help), row_status_(row_status) {}
    void Define(CLI::App& app) override {
        DefineKey(app);
        if (Adds()) {
            app.add_option("type", type_, "authentication, authorization or accounting")
                ->required();
        }
        app.add_option("method", method_, "scheme1:NAME, scheme2:NAME, scheme3:NAME, local or none")
            ->required();
    }
    void Run(Context& context) override {
        const SchemeKey key = Key();
        const MethodEntry method = ParseMethod(method_);
        if (Adds() && key.scheme_index == 0) {
            RefuseUsage("scheme index 0", "scheme indexes begin with 1", "Give a number from 1 on");
        }
        const uint32_t type = Adds() ? ParseAaaType(type_) : NeedRow(context.client).aaa_type;
        const uint32_t result = context.client.Change(
            DOM_EncodeDomainSchemeFlag(0, key.domain.c_str(), row_status_, type, key.scheme_index,
                                       method.method_kind, method.scheme_name),
            DOM_OP_SET);
        if (result == DOM_ROW_FAILED || result == DOM_ROW_NO_OBJECT) {
            (void)context.client.NeedDomain(key.domain);
            if (Adds() && FindSchemeRow(context.client, key)) {
                throw Failure(kExitRefused, Object(), "the row exists already",
                              "Change it with: aaactl scheme modify", result);
            }
            throw Failure(kExitRefused, Object(),
                          "the list of " + AaaTypeName(type) + " methods does not take " + method_ +
                              " in this place",
                          "A list takes each method once and \"none\" at its end only; see aaactl "
                          "scheme list --domain " +
                              key.domain,
                          result);
        }
        if (result != DOM_ROW_OK) throw Refused(Object(), result);
        const MibSchemeRow row = NeedRow(context.client);
        context.output.Line(SchemeRowLine(row));
        context.output.Result(SchemeRowToJson(row));
    }

  private:
    bool Adds() const { return row_status_ == DOM_ROW_CREATE_AND_GO; }

    uint32_t row_status_;
    std::string type_;
    std::string method_;
};

class Delete : public SchemeCommand {
  public:
    Delete()
        : SchemeCommand("delete", "Put the whole list that a row belongs to back to local alone") {}
    void Define(CLI::App& app) override { DefineKey(app); }
    void Run(Context& context) override {
        const MibSchemeRow row = NeedRow(context.client);
        const uint32_t result = context.client.Change(
            DOM_EncodeDomainSchemeFlag(0, row.domain_name, DOM_ROW_ACTIVE, row.aaa_type,
                                       row.scheme_index, row.method_kind, row.scheme_name),
            DOM_OP_DELETE);
        if (result != DOM_ROW_OK) throw Refused(Object(), result);
        const std::string type = AaaTypeName(row.aaa_type);
        context.output.Line("domain \"" + Printable(row.domain_name) + "\": methods of " + type +
                            " are local again");
        context.output.Result({{"domain", row.domain_name}, {"type", type}});
    }
};

}  // namespace scheme_commands

void AddSchemeCommands(Commands& commands) {
    using namespace scheme_commands;
    commands.push_back(std::make_unique<List>());
    commands.push_back(std::make_unique<Show>());
    commands.push_back(std::make_unique<Set>("add", "Add a method to a default list of a domain",
                                             DOM_ROW_CREATE_AND_GO));
    commands.push_back(
        std::make_unique<Set>("modify", "Change the method of a scheme row", DOM_ROW_ACTIVE));
    commands.push_back(std::make_unique<Delete>());
}

}  // namespace aaactl
