// profile author|critical create, delete, list, show; segment set, unset; vpn set, unset
#include "../command.h"
#include "../names.h"
#include "../profiles.h"
#include "../texts.h"

namespace aaactl {
namespace profile_commands {

class ProfileCommand : public Command {
  public:
    ProfileCommand(const ProfileStore& store, std::vector<std::string> verb, const char* help)
        : Command(PathOf(store, std::move(verb)), help), store_(store) {}

  protected:
    void DefineProfile(CLI::App& app) {
        app.add_option("profile", profile_, "The profile, at most 31 characters, in any case")
            ->required();
    }
    void CheckProfile() const { CheckProfileName(std::string(store_.word) + " profile", profile_); }
    std::string Object(const std::string& name) const {
        return ProfileObject(store_, Printable(name));
    }
    std::string Shown(const Json& segment) const {
        if (segment.is_null()) return "-";
        std::string shown = segment.at("id").dump();
        shown += " \"" + Printable(segment.at("name").get<std::string>()) + "\"";
        if (store_.has_value) shown += ", value " + segment.at("value").dump();
        return shown;
    }

    const ProfileStore& store_;
    std::string profile_;

  private:
    static std::vector<std::string> PathOf(const ProfileStore& store,
                                           std::vector<std::string> verb) {
        std::vector<std::string> path = {"profile", store.word};
        path.insert(path.end(), verb.begin(), verb.end());
        return path;
    }
};

class Create : public ProfileCommand {
  public:
    explicit Create(const ProfileStore& store)
        : ProfileCommand(store, {"create"}, "Create a profile") {}
    void Define(CLI::App& app) override { DefineProfile(app); }
    void Run(Context& context) override {
        CheckProfile();
        CreateProfile(context.client, store_, profile_);
        context.output.Line(Object(profile_) + " is there");
        context.output.Result({{"profile", profile_}});
    }
};

class Delete : public ProfileCommand {
  public:
    explicit Delete(const ProfileStore& store)
        : ProfileCommand(store, {"delete"}, "Delete a profile with its segments") {}
    void Define(CLI::App& app) override { DefineProfile(app); }
    void Run(Context& context) override {
        CheckProfile();
        DeleteProfile(context.client, store_, profile_);
        context.output.Line(Object(profile_) + " is deleted");
        context.output.Result({{"deleted", profile_}});
    }
};

class List : public ProfileCommand {
  public:
    explicit List(const ProfileStore& store)
        : ProfileCommand(store, {"list"}, "List the profiles") {}
    void Define(CLI::App&) override {}
    void Run(Context& context) override {
        const Json profiles = ReadProfiles(context.client, store_);
        Json rows = Json::array();
        for (const auto& [name, profile] : profiles.items()) {
            const size_t vpns = profile.at("vpns").size();
            context.output.Line(Printable(name) + "  segment " + Shown(profile.at("segment")) +
                                "  " + std::to_string(vpns) + (vpns == 1 ? " VPN" : " VPNs"));
            rows.push_back({{"profile", name}, {"segment", profile.at("segment")}, {"vpns", vpns}});
        }
        context.output.Result({{"profiles", rows}});
    }
};

class Show : public ProfileCommand {
  public:
    explicit Show(const ProfileStore& store)
        : ProfileCommand(store, {"show"}, "Show the segments of a profile") {}
    void Define(CLI::App& app) override { DefineProfile(app); }
    void Run(Context& context) override {
        CheckProfile();
        const ProfileEntry entry = NeedProfile(context.client, store_, profile_);
        const Json profile = ReadProfile(context.client, store_, entry);
        context.output.Line(Object(entry.profile));
        context.output.Line("  segment " + Shown(profile.at("segment")));
        for (const auto& [vpn, segment] : profile.at("vpns").items()) {
            context.output.Line("  VPN " + Printable(vpn) + "  segment " + Shown(segment));
        }
        Json result{{"profile", entry.profile}};
        result.update(profile);
        context.output.Result(result);
    }
};

/// The default segment of a profile, or the segment of one of its VPNs.
class SegmentCommand : public ProfileCommand {
  public:
    SegmentCommand(const ProfileStore& store, bool of_vpn, const char* verb, const char* help)
        : ProfileCommand(store, {of_vpn ? "vpn" : "segment", verb}, help), of_vpn_(of_vpn) {}

  protected:
    void DefinePlace(CLI::App& app) {
        DefineProfile(app);
        if (of_vpn_) app.add_option("vpn", vpn_, "The VPN, at most 31 characters")->required();
    }
    void CheckPlace() const {
        CheckProfile();
        if (of_vpn_) CheckProfileName("VPN", vpn_);
    }
    std::string Place(const std::string& profile) const {
        return Object(profile) + ": " +
               (of_vpn_ ? "segment of VPN \"" + Printable(vpn_) + "\"" : "default segment");
    }
    Json Result(const std::string& profile, const Json& segment) const {
        Json result{{"profile", profile}};
        if (of_vpn_) result["vpn"] = vpn_;
        result["segment"] = segment;
        return result;
    }

    const bool of_vpn_;
    std::string vpn_;
};

class Set : public SegmentCommand {
  public:
    Set(const ProfileStore& store, bool of_vpn)
        : SegmentCommand(store, of_vpn, "set",
                         of_vpn ? "Set the segment of users of a VPN"
                                : "Set the segment of users whose VPN has none of its own") {}
    void Define(CLI::App& app) override {
        DefinePlace(app);
        app.add_option("--segment-id", id_, "1 to 4294967295")->required();
        app.add_option("--segment-name", segment_.name, "At most 31 characters");
        if (store_.has_value) {
            app.add_option("--value", value_, "0 to 65535")->capture_default_str();
        }
    }
    void Run(Context& context) override {
        CheckPlace();
        segment_.id = ParseSegmentId(id_);
        segment_.value = static_cast<uint16_t>(ParseNumber("value", value_, UINT16_MAX));
        CheckFits("segment name", segment_.name, DOM_PROFILE_NAME_SIZE);
        SetSegment(context.client, store_, {profile_, vpn_, segment_});
        const std::string name = NeedProfile(context.client, store_, profile_).profile;
        const Json segment = SegmentToJson(store_, segment_);
        context.output.Line(Place(name) + " is " + Shown(segment));
        context.output.Result(Result(name, segment));
    }

  private:
    std::string id_;
    std::string value_ = "0";
    Segment segment_;
};

class Unset : public SegmentCommand {
  public:
    Unset(const ProfileStore& store, bool of_vpn)
        : SegmentCommand(store, of_vpn, "unset",
                         of_vpn ? "Take a VPN out of a profile" : "Take the default segment away") {
    }
    void Define(CLI::App& app) override { DefinePlace(app); }
    void Run(Context& context) override {
        CheckPlace();
        // The daemon takes the deletion of a segment that is not there for done.
        const ProfileEntry profile = NeedProfile(context.client, store_, profile_);
        const bool is_there = of_vpn_ ? FindVpn(context.client, store_, profile_, vpn_).has_value()
                                      : profile.segment.id != 0;
        if (!is_there) {
            throw Failure(kExitRefused, ProfileObject(store_, profile.profile),
                          of_vpn_ ? "it has no VPN \"" + vpn_ + "\"" : "it has no default segment",
                          "See aaactl profile " + std::string(store_.word) + " show " + profile_);
        }
        UnsetSegment(context.client, store_, {profile_, vpn_, {}});
        context.output.Line(Place(profile.profile) + " is taken away");
        context.output.Result(Result(profile.profile, nullptr));
    }
};

}  // namespace profile_commands

void AddProfileCommands(Commands& commands) {
    using namespace profile_commands;
    for (const ProfileStore* store : {&kAuthorProfiles, &kCriticalProfiles}) {
        commands.push_back(std::make_unique<Create>(*store));
        commands.push_back(std::make_unique<Delete>(*store));
        commands.push_back(std::make_unique<List>(*store));
        commands.push_back(std::make_unique<Show>(*store));
        for (const bool of_vpn : {false, true}) {
            commands.push_back(std::make_unique<Set>(*store, of_vpn));
            commands.push_back(std::make_unique<Unset>(*store, of_vpn));
        }
    }
}

}  // namespace aaactl
