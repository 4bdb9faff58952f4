// domain set and unset: one setting each
#include "../command.h"
#include "../names.h"
#include "../texts.h"

namespace aaactl {
namespace domain_set_commands {

/// A command whose first argument is a domain.
class DomainCommand : public Command {
  public:
    using Command::Command;
    void Define(CLI::App& app) override {
        app.add_option("name", name_, "The domain")->required();
        DefineMore(app);
    }
    void Run(Context& context) override {
        CheckFits("domain name", name_, DOM_NAME_SIZE);
        Change(context.client);
        context.output.Line("domain \"" + Printable(name_) + "\": " + Printable(Done()));
        context.output.Result({{"domain", name_}, {"done", Done()}});
    }

  protected:
    virtual void DefineMore(CLI::App&) {}
    virtual void Change(Client& client) = 0;
    /// What the command did, in words.
    virtual std::string Done() const = 0;
    const char* Name() const { return name_.c_str(); }
    const std::string& Domain() const { return name_; }

  private:
    std::string name_;
};

class SetState : public DomainCommand {
  public:
    SetState() : DomainCommand({"domain", "set", "state"}, "Set the state") {}

  protected:
    void DefineMore(CLI::App& app) override {
        app.add_option("state", word_, "active, blocked, or a number up to 65535")->required();
    }
    void Change(Client& client) override {
        client.ChangeDomain(Domain(), DOM_EncodeState(Name(), ParseState(word_)), DOM_OP_SET);
    }
    std::string Done() const override { return "state is " + word_; }

  private:
    std::string word_;
};

/// A setting that is one number.
class SetNumber : public DomainCommand {
  public:
    using Encode = TLV_MSG* (*)(const char* name, uint32_t number);
    SetNumber(const char* word, const char* help, const char* what, uint32_t maximum, Encode encode)
        : DomainCommand({"domain", "set", word}, help),
          what_(what),
          maximum_(maximum),
          encode_(encode) {}

  protected:
    void DefineMore(CLI::App& app) override {
        app.add_option("number", word_, "0 to " + std::to_string(maximum_))->required();
    }
    void Change(Client& client) override {
        client.ChangeDomain(Domain(), encode_(Name(), ParseNumber(what_, word_, maximum_)),
                            DOM_OP_SET);
    }
    std::string Done() const override { return std::string(what_) + " is " + word_; }

  private:
    const char* what_;
    uint32_t maximum_;
    Encode encode_;
    std::string word_;
};

class SetRedirect : public DomainCommand {
  public:
    SetRedirect() : DomainCommand({"domain", "set", "redirect"}, "Switch the redirect on or off") {}

  protected:
    void DefineMore(CLI::App& app) override {
        app.add_option("switch", word_, "on or off")
            ->required()
            ->check(CLI::IsMember({"on", "off"}));
    }
    void Change(Client& client) override {
        client.ChangeDomain(Domain(), DOM_EncodeRedirectMoveTemporarily(Name()),
                            word_ == "on" ? DOM_OP_SET : DOM_OP_DELETE);
    }
    std::string Done() const override { return "redirect is " + word_; }

  private:
    std::string word_;
};

/// A setting that names another domain; the unset form of the command takes it away.
class Reference : public DomainCommand {
  public:
    Reference(const char* verb, const char* word, const char* help, const char* what)
        : DomainCommand({"domain", verb, word}, help),
          sets_(std::string(verb) == "set"),
          what_(what) {}

  protected:
    void DefineMore(CLI::App& app) override {
        if (!sets_) return;
        app.add_option("other", other_, "The domain that it names")->required();
        DefineNumbers(app);
    }
    virtual void DefineNumbers(CLI::App&) {}
    void Change(Client& client) override {
        if (sets_) CheckDomainName(other_);
        Send(client, sets_ ? DOM_OP_SET : DOM_OP_DELETE);
    }
    virtual void Send(Client& client, uint32_t operation) = 0;
    std::string Done() const override {
        return std::string(what_) + (sets_ ? " is \"" + other_ + "\"" : " is taken away");
    }
    const char* Other() const { return other_.c_str(); }

  private:
    bool sets_;
    const char* what_;
    std::string other_;
};

class Permit : public Reference {
  public:
    explicit Permit(const char* verb)
        : Reference(verb, "permit", "Domain of users whose authentication could not be decided",
                    "permit domain") {}

  protected:
    void Send(Client& client, uint32_t operation) override {
        client.ChangeDomain(Domain(), DOM_EncodeAuthRdFailPermitDomain(Name(), Other(), 0),
                            operation);
    }
};

class EscapeRecover : public Reference {
  public:
    explicit EscapeRecover(const char* verb)
        : Reference(verb, "escape-recover", "Action when the servers are back",
                    "escape-recover domain") {}

  protected:
    void DefineNumbers(CLI::App& app) override {
        app.add_option("--setting", setting_, "First setting, 0 to 65535")->capture_default_str();
        app.add_option("--second-setting", second_, "Second setting, 0 to 65535")
            ->capture_default_str();
    }
    void Send(Client& client, uint32_t operation) override {
        client.ChangeDomain(
            Domain(),
            DOM_EncodeAuthenEscapeRecover(Name(), Number(setting_), Other(), Number(second_), 0),
            operation);
    }

  private:
    static uint16_t Number(const std::string& word) {
        return static_cast<uint16_t>(ParseNumber("escape-recover setting", word, UINT16_MAX));
    }
    std::string setting_ = "0";
    std::string second_ = "0";
};

class AuthFail : public Reference {
  public:
    explicit AuthFail(const char* verb)
        : Reference(verb, "auth-fail", "Domain of users whose authentication failed",
                    "authentication-fail domain") {}

  protected:
    void DefineNumbers(CLI::App& app) override {
        app.add_option("--kind", kind_, "Kind, 0 to 65535")->capture_default_str();
    }
    /// This setting has no delete form: an empty name takes it away.
    void Send(Client& client, uint32_t) override {
        const auto kind =
            static_cast<uint16_t>(ParseNumber("authentication-fail kind", kind_, UINT16_MAX));
        client.ChangeDomain(Domain(), DOM_EncodeAuthFailDomain(Name(), Other(), 0, kind),
                            DOM_OP_SET);
    }

  private:
    std::string kind_ = "0";
};

TLV_MSG* EncodeSessionTime(const char* name, uint32_t number) {
    return DOM_EncodeSessionTime(name, static_cast<uint16_t>(number));
}

}  // namespace domain_set_commands

void AddDomainSetCommands(Commands& commands) {
    using namespace domain_set_commands;
    commands.push_back(std::make_unique<SetState>());
    commands.push_back(std::make_unique<SetNumber>("session-time", "Set the session time",
                                                   "session time", UINT16_MAX, EncodeSessionTime));
    commands.push_back(std::make_unique<SetNumber>("address-type", "Set the user address type",
                                                   "user address type", UINT32_MAX,
                                                   DOM_EncodeUserAddrType));
    commands.push_back(std::make_unique<SetNumber>(
        "dual-stack", "Set the accounting dual-stack mode", "accounting dual-stack mode",
        UINT32_MAX, DOM_EncodeAcctDualStackMode));
    commands.push_back(std::make_unique<SetRedirect>());
    for (const char* verb : {"set", "unset"}) {
        commands.push_back(std::make_unique<Permit>(verb));
        commands.push_back(std::make_unique<EscapeRecover>(verb));
        commands.push_back(std::make_unique<AuthFail>(verb));
    }
}

}  // namespace aaactl
