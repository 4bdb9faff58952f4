// domain row create, modify
#include <aaadom/rows.h>

#include "../command.h"
#include "../names.h"
#include "../texts.h"

namespace aaactl {
namespace domain_row_commands {

/// Bit of the row's flags under which its state counts.
constexpr uint64_t kStateFlag = 1;

class RowCommand : public Command {
  public:
    RowCommand(const char* verb, const char* help) : Command({"domain", "row", verb}, help) {}

  protected:
    void DefineRow(CLI::App& app, uint32_t row_status) {
        app.add_option("name", name_, "The domain")->required();
        row_status_ = std::to_string(row_status);
        app.add_option("--status", row_status_, "Row status: 4 create and go, 1 active")
            ->capture_default_str();
    }
    uint32_t RowStatus() const { return ParseNumber("row status", row_status_, UINT32_MAX); }

    void Demand(uint32_t result) const {
        const std::string object = "domain \"" + name_ + "\"";
        const auto refuse = [&](const char* why, const char* way_out) {
            throw Failure(kExitRefused, object, why, way_out, result);
        };
        switch (result) {
            case DOM_ROW_OK:
                return;
            case DOM_ROW_FAILED:
                refuse("the daemon takes no row of this status",
                       "Give --status 4 to create or --status 1 to change a row");
                break;
            case DOM_ROW_NO_OBJECT:
                refuse("there is no such row", "Create it with: aaactl domain row create");
                break;
            case DOM_ROW_FULL:
                refuse("the table of 1024 domains is full",
                       "Delete a domain that is no longer used");
                break;
            case DOM_ROW_EXISTS:
                refuse("the row exists already", "Change it with: aaactl domain row modify");
                break;
            default:
                throw Refused(object, result);
        }
    }

    std::string name_;

  private:
    std::string row_status_;
};

class Create : public RowCommand {
  public:
    Create() : RowCommand("create", "Create a row of the domain table (create and go)") {}
    void Define(CLI::App& app) override {
        DefineRow(app, DOM_ROW_CREATE_AND_GO);
        app.add_option("--state", state_, "active, blocked or a number")->capture_default_str();
    }
    void Run(Context& context) override {
        CheckDomainName(name_);
        const uint16_t state = ParseState(state_);
        Demand(context.client.Change(DOM_EncodeDomainInfo(name_.c_str(), state, RowStatus()),
                                     DOM_OP_SET));
        context.output.Line("row \"" + Printable(name_) + "\" is there, " + StateName(state));
        context.output.Result({{"domain", name_}, {"state", state}});
    }

  private:
    std::string state_ = "active";
};

class Modify : public RowCommand {
  public:
    Modify() : RowCommand("modify", "Change a row of the domain table") {}
    void Define(CLI::App& app) override {
        DefineRow(app, DOM_ROW_ACTIVE);
        app.add_option("--state", state_, "active, blocked or a number");
        app.add_option("--flags", flags_,
                       "Which fields of the row count, 1 = state; follows from what is given");
    }
    void Run(Context& context) override {
        CheckDomainName(name_);
        const uint16_t state = state_.empty() ? uint16_t{0} : ParseState(state_);
        uint64_t flags = state_.empty() ? 0 : kStateFlag;
        if (!flags_.empty()) flags = ParseNumber("row flags", flags_, UINT32_MAX);
        Demand(context.client.Change(
            DOM_EncodeDomainInfoFlag(flags, name_.c_str(), state, RowStatus()), DOM_OP_SET));
        const bool changed = (flags & kStateFlag) != 0;
        context.output.Line("row \"" + Printable(name_) +
                            (changed ? "\" is " + StateName(state) : "\" stays as it is"));
        Json result{{"domain", name_}, {"flags", flags}};
        if (changed) result["state"] = state;
        context.output.Result(result);
    }

  private:
    std::string state_;
    std::string flags_;
};

}  // namespace domain_row_commands

void AddDomainRowCommands(Commands& commands) {
    using namespace domain_row_commands;
    commands.push_back(std::make_unique<Create>());
    commands.push_back(std::make_unique<Modify>());
}

}  // namespace aaactl
