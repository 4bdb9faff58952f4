// nas-id profile create, delete, list, show; nas-id bind, unbind, lookup
#include <aaadom/aaad_results.h>
#include <aaadom/nas_id.h>
#include <aaadom/nas_id_codec.h>

#include "../command.h"
#include "../nas_id.h"
#include "../texts.h"

namespace aaactl {
namespace nas_id_commands {

std::string Quoted(const std::string& name) {
    return "NAS-ID profile \"" + Printable(name) + "\"";
}

class ProfileCommand : public Command {
  public:
    ProfileCommand(std::vector<std::string> path, const char* help)
        : Command(std::move(path), help) {}

  protected:
    void DefineProfile(CLI::App& app) {
        app.add_option("profile", profile_, "The profile, at most 31 characters, in any case")
            ->required();
    }
    void CheckProfile() const { CheckNasIdName("NAS-ID profile", profile_); }
    std::string profile_;
};

class Create : public ProfileCommand {
  public:
    Create() : ProfileCommand({"nas-id", "profile", "create"}, "Create a NAS-ID profile") {}
    void Define(CLI::App& app) override { DefineProfile(app); }
    void Run(Context& context) override {
        CheckProfile();
        CreateNasIdProfile(context.client, profile_);
        const std::string name = NeedNasIdProfile(context.client, profile_).name;
        context.output.Line(Quoted(name) + " is there");
        context.output.Result({{"profile", name}});
    }
};

class Delete : public ProfileCommand {
  public:
    Delete()
        : ProfileCommand({"nas-id", "profile", "delete"},
                         "Delete a NAS-ID profile with its bindings") {}
    void Define(CLI::App& app) override { DefineProfile(app); }
    void Run(Context& context) override {
        CheckProfile();
        DeleteNasIdProfile(context.client, profile_);
        context.output.Line(Quoted(profile_) + " is deleted");
        context.output.Result({{"deleted", profile_}});
    }
};

class List : public ProfileCommand {
  public:
    List() : ProfileCommand({"nas-id", "profile", "list"}, "List the NAS-ID profiles") {}
    void Define(CLI::App&) override {}
    void Run(Context& context) override {
        Json rows = Json::array();
        const Json profiles = ReadNasIdProfiles(context.client);
        for (const auto& [name, bindings] : profiles.items()) {
            context.output.Line(Printable(name) + "  " + std::to_string(bindings.size()) +
                                (bindings.size() == 1 ? " binding" : " bindings"));
            rows.push_back({{"profile", name}, {"bindings", bindings.size()}});
        }
        context.output.Result({{"profiles", rows}});
    }
};

class Show : public ProfileCommand {
  public:
    Show() : ProfileCommand({"nas-id", "profile", "show"}, "Show the bindings of a profile") {}
    void Define(CLI::App& app) override { DefineProfile(app); }
    void Run(Context& context) override {
        CheckProfile();
        const NasIdProfile profile = NeedNasIdProfile(context.client, profile_);
        context.output.Line(Quoted(profile.name));
        for (const auto& [vlan, nas_id] : profile.bindings.items()) {
            context.output.Line("  VLAN " + vlan + "  " + Printable(nas_id.get<std::string>()));
        }
        context.output.Result({{"profile", profile.name}, {"bindings", profile.bindings}});
    }
};

/// What VLAN of the profile reports; throws when it is not bound.
struct Binding {
    std::string profile;
    std::string nas_id;
};
Binding LookUp(Client& client, const std::string& profile, uint16_t vlan) {
    const Reply reply =
        client.Read(DOM_EncodeNasidBindVlanId(profile.c_str(), "", vlan), DOM_OP_GET);
    if (reply.data) {
        char name[DOM_NASID_NAME_SIZE] = {};
        char nas_id[DOM_NASID_NAME_SIZE] = {};
        uint16_t read_vlan = 0;
        if (DOM_DecodeNasIdBindVlanId(reply.data.get(), name, nas_id, &read_vlan) == DOM_OK) {
            return {name, nas_id};
        }
    } else if (reply.refusal == AAAD_ERR_NO_OBJECT) {
        (void)NeedNasIdProfile(client, profile);
        throw Failure(kExitRefused, Quoted(profile),
                      "VLAN " + std::to_string(vlan) + " is not bound",
                      "See aaactl nas-id profile show " + profile, reply.refusal);
    }
    throw Refused(Quoted(profile), reply.refusal);
}

class BindingCommand : public ProfileCommand {
  public:
    BindingCommand(const char* verb, const char* help) : ProfileCommand({"nas-id", verb}, help) {}

  protected:
    void DefineBinding(CLI::App& app) {
        DefineProfile(app);
        app.add_option("vlan", vlan_, "VLAN, 0 to 65535")->required();
    }
    uint16_t Vlan() const {
        CheckProfile();
        return ParseVlan(vlan_);
    }
    std::string vlan_;
};

class Bind : public BindingCommand {
  public:
    Bind() : BindingCommand("bind", "Report a NAS-ID for the users of a VLAN") {}
    void Define(CLI::App& app) override {
        DefineBinding(app);
        app.add_option("nas-id", nas_id_, "NAS-ID, at most 31 characters")->required();
    }
    void Run(Context& context) override {
        const uint16_t vlan = Vlan();
        CheckNasIdName("NAS-ID", nas_id_);
        BindNasId(context.client, profile_, vlan, nas_id_);
        const std::string name = LookUp(context.client, profile_, vlan).profile;
        context.output.Line(Quoted(name) + ": VLAN " + std::to_string(vlan) + " reports \"" +
                            Printable(nas_id_) + "\"");
        context.output.Result({{"profile", name}, {"vlan", vlan}, {"nas_id", nas_id_}});
    }

  private:
    std::string nas_id_;
};

class Unbind : public BindingCommand {
  public:
    Unbind() : BindingCommand("unbind", "Take the NAS-ID of a VLAN away") {}
    void Define(CLI::App& app) override {
        DefineBinding(app);
        app.add_option("nas-id", nas_id_, "Only when the VLAN reports this NAS-ID");
    }
    void Run(Context& context) override {
        const uint16_t vlan = Vlan();
        const std::string nas_id =
            nas_id_.empty() ? LookUp(context.client, profile_, vlan).nas_id : nas_id_;
        UnbindNasId(context.client, profile_, vlan, nas_id);
        context.output.Line(Quoted(profile_) + ": VLAN " + std::to_string(vlan) +
                            " is not bound any more");
        context.output.Result({{"profile", profile_}, {"vlan", vlan}});
    }

  private:
    std::string nas_id_;
};

class Lookup : public BindingCommand {
  public:
    Lookup() : BindingCommand("lookup", "Tell which NAS-ID is reported for a VLAN") {}
    void Define(CLI::App& app) override { DefineBinding(app); }
    void Run(Context& context) override {
        const uint16_t vlan = Vlan();
        const Binding binding = LookUp(context.client, profile_, vlan);
        context.output.Line(Printable(binding.nas_id));
        context.output.Result(
            {{"profile", binding.profile}, {"vlan", vlan}, {"nas_id", binding.nas_id}});
    }
};

}  // namespace nas_id_commands

void AddNasIdCommands(Commands& commands) {
    using namespace nas_id_commands;
    commands.push_back(std::make_unique<Create>());
    commands.push_back(std::make_unique<Delete>());
    commands.push_back(std::make_unique<List>());
    commands.push_back(std::make_unique<Show>());
    commands.push_back(std::make_unique<Bind>());
    commands.push_back(std::make_unique<Unbind>());
    commands.push_back(std::make_unique<Lookup>());
}

}  // namespace aaactl
