// aaactl: the operators' command line.
#include <csignal>
#include <cstdio>
#include <cstring>
#include <map>
#include <new>
#include <sstream>

#include "command.h"

namespace aaactl {
namespace {

/// Words that group commands and have no help of their own.
const std::map<std::string, std::string> kGroupHelp = {
    {"domain", "ISP domains"},
    {"domain row", "Rows of the domain table"},
    {"domain set", "Change one setting of a domain"},
    {"domain unset", "Take one setting of a domain away"},
    {"scheme", "Rows of the scheme table: the methods of the default lists"},
    {"global", "Settings of the whole device"},
    {"global set", "Change one setting of the device"},
    {"global unset", "Take one setting of the device away"},
    {"debug", "Debug messages of the daemon"},
    {"session-limit", "Session limits by session class"},
    {"nas-id", "NAS-IDs by VLAN"},
    {"nas-id profile", "Named sets of bindings"},
    {"record", "User records"},
    {"record switch", "Which user records are kept"},
    {"record backup", "Which user records are backed up"},
    {"cmd-fail", "Command lines whose authorization failed"},
    {"profile", "Profiles that hand out micro-segments"},
    {"policy", "Accounting and recording policies"},
    {"policy acct", "Accounting policies, which domains refer to"},
    {"policy acct scheme", "The methods of a policy"},
    {"policy acct level", "The traffic levels of a policy"},
    {"policy record", "The recording policy of connections"},
    {"policy record scheme", "The methods of the recording policy"},
    {"profile author", "Authorization profiles"},
    {"profile author segment", "Default segments"},
    {"profile author vpn", "Segments of single VPNs"},
    {"profile critical", "Critical profiles"},
    {"profile critical segment", "Default segments"},
    {"profile critical vpn", "Segments of single VPNs"},
    {"config", "The whole configuration as a document"},
};

CLI::App* FindSubcommand(CLI::App& app, const std::string& word) {
    const auto found = app.get_subcommands(
        [&](const CLI::App* candidate) { return candidate->get_name() == word; });
    return found.empty() ? nullptr : found.front();
}

/// The CLI11 command of a path; makes the groups on the way.
CLI::App* SubcommandOf(CLI::App& root, const Command& command) {
    CLI::App* app = &root;
    std::string prefix;
    for (size_t i = 0; i < command.Path().size(); ++i) {
        const std::string& word = command.Path()[i];
        prefix += (prefix.empty() ? "" : " ") + word;
        CLI::App* next = FindSubcommand(*app, word);
        if (next == nullptr) {
            const bool is_group = i + 1 < command.Path().size();
            next = app->add_subcommand(word, is_group ? kGroupHelp.at(prefix) : command.Help());
            next->fallthrough();
            if (is_group) next->require_subcommand(1);
        }
        app = next;
    }
    return app;
}

/// Wrong usage in words: which word is no command, and which commands there are.
Failure WrongUsage(const CLI::App& root, const CLI::ParseError& error) {
    const CLI::App* app = &root;
    std::string path;
    while (!app->get_subcommands().empty()) {
        app = app->get_subcommands().front();
        path += (path.empty() ? "" : " ") + app->get_name();
    }
    const std::string object = path.empty() ? "command line" : path;
    std::string known;
    for (const CLI::App* next : app->get_subcommands([](const CLI::App*) { return true; })) {
        known += (known.empty() ? "" : ", ") + next->get_name();
    }
    if (known.empty()) {
        return Failure(kExitUsage, object, error.what(), "See aaactl " + path + " --help");
    }
    if (dynamic_cast<const CLI::RequiredError*>(&error) == nullptr) {
        return Failure(kExitUsage, object, error.what(), "See aaactl --help");
    }
    const std::vector<std::string> rest = root.remaining(true);
    return Failure(
        kExitUsage, object,
        rest.empty() ? "a command is missing" : "there is no command \"" + rest.front() + "\"",
        "The commands are " + known);
}

/// Help or version.
int Answer(const CLI::App& root, const CLI::Success& asked, Output& output) {
    std::ostringstream text;
    const int exit_code = root.exit(asked, text, text);
    std::string shown = text.str();
    while (!shown.empty() && shown.back() == '\n') shown.pop_back();
    output.Line(shown);
    output.Result({{"text", shown}});
    return exit_code;
}

/// Asked for before the arguments are parsed, because wrong arguments are answered in JSON, too.
bool WantsJson(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        if (strcmp(argv[i], "--json") == 0) return true;
    }
    return false;
}

int Main(int argc, char** argv) {
    // A peer that closes early is an error of one request, not the end of the process.
    (void)signal(SIGPIPE, SIG_IGN);
    Context context;
    context.output.UseJson(WantsJson(argc, argv));

    CLI::App root("Configure the ISP domains of the AAA daemon.", "aaactl");
    root.require_subcommand(1);
    bool json = false;
    uint32_t timeout = 10000;
    std::string run_dir = "/run/aaad";
    root.add_flag("--json", json, "Answer in JSON, errors included");
    root.add_option("--timeout", timeout, "Wait at most this many milliseconds for an answer")
        ->check(CLI::Range(1, 60000))
        ->capture_default_str()
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
    root.add_option("--run-dir", run_dir, "The daemon's run directory")
        ->capture_default_str()
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
    root.set_version_flag("--version", "aaactl 1.0.0");
    root.footer("Exit status: 0 done, 1 refused by the daemon, 2 wrong usage, 3 not reachable");

    const Commands commands = AllCommands();
    std::map<const CLI::App*, Command*> by_app;
    for (const auto& command : commands) {
        CLI::App* app = SubcommandOf(root, *command);
        command->Define(*app);
        by_app[app] = command.get();
    }
    try {
        root.parse(argc, argv);
        context.client.SetRunDir(run_dir);
        context.client.SetTimeout(timeout);
        const CLI::App* app = &root;
        while (!app->get_subcommands().empty()) app = app->get_subcommands().front();
        by_app.at(app)->Run(context);
        Output::Finish();
        return kExitDone;
    } catch (const CLI::Success& help) {
        return Answer(root, help, context.output);
    } catch (const CLI::ParseError& error) {
        context.output.Error(WrongUsage(root, error));
        return kExitUsage;
    } catch (const Failure& failure) {
        context.output.Error(failure);
        return failure.exit_code;
    } catch (const std::bad_alloc&) {
        context.output.Error(
            Failure(kExitRefused, "aaactl", "out of memory", "Free memory and try again"));
        return kExitRefused;
    } catch (const std::exception& error) {
        context.output.Error(
            Failure(kExitRefused, "aaactl", error.what(), "Report this with the command"));
        return kExitRefused;
    }
}

}  // namespace
}  // namespace aaactl

int main(int argc, char** argv) {
    try {
        return aaactl::Main(argc, argv);
    } catch (...) {
        // Only want of memory gets here, while the commands or an error are put together.
        (void)fputs("aaactl: out of memory. Free memory and try again.\n", stderr);
        return aaactl::kExitRefused;
    }
}
