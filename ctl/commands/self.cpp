// status, and what is made from the commands themselves: completion and manual page
#include <map>
#include <set>

#include "../command.h"

namespace aaactl {
namespace self_commands {

class Status : public Command {
  public:
    Status() : Command({"status"}, "Tell whether the daemon answers") {}
    void Define(CLI::App&) override {}
    void Run(Context& context) override {
        const uint32_t count = context.client.CountDomains();
        context.output.Line("the daemon answers and holds " + std::to_string(count) +
                            (count == 1 ? " domain" : " domains"));
        context.output.Result({{"reachable", true}, {"domains", count}});
    }
};

std::string Joined(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) text += (text.empty() ? "" : " ") + word;
    return text;
}

class Completion : public Command {
  public:
    Completion() : Command({"completion"}, "Print the completion script for bash") {}
    void Define(CLI::App&) override {}
    void Run(Context& context) override {
        // What may follow each run of words.
        std::map<std::string, std::set<std::string>> next;
        for (const auto& command : AllCommands()) {
            std::vector<std::string> prefix;
            for (const std::string& word : command->Path()) {
                next[Joined(prefix)].insert(word);
                prefix.push_back(word);
            }
        }
        std::string script =
            "_aaactl() {\n"
            "    local words=\"\" word current=\"${COMP_WORDS[COMP_CWORD]}\" choices=\"\"\n"
            "    local skip=0\n"
            "    for word in \"${COMP_WORDS[@]:1:COMP_CWORD-1}\"; do\n"
            "        if [ $skip = 1 ]; then skip=0; continue; fi\n"
            "        case \"$word\" in\n"
            "            --timeout|--run-dir) skip=1 ;;\n"
            "            -*) ;;\n"
            "            *) words=\"${words:+$words }$word\" ;;\n"
            "        esac\n"
            "    done\n"
            "    case \"$words\" in\n";
        for (const auto& [prefix, words] : next) {
            script += "        \"" + prefix + "\") choices=\"" +
                      Joined({words.begin(), words.end()}) + "\" ;;\n";
        }
        script +=
            "    esac\n"
            "    case \"$current\" in\n"
            "        -*) choices=\"--help --json --timeout --run-dir --version\" ;;\n"
            "    esac\n"
            "    COMPREPLY=($(compgen -W \"$choices\" -- \"$current\"))\n"
            "}\n"
            "complete -F _aaactl aaactl\n";
        context.output.Line(script);
        context.output.Result({{"shell", "bash"}, {"script", script}});
    }
};

/// Troff takes a leading dot, an apostrophe and a backslash for its own.
std::string Troff(const std::string& text) {
    std::string quoted;
    for (char c : text) {
        if (c == '\\') {
            quoted += "\\e";
        } else if (c == '-') {
            quoted += "\\-";
        } else {
            if (quoted.empty() && (c == '.' || c == '\'')) quoted += "\\&";
            quoted += c;
        }
    }
    return quoted;
}

class Manual : public Command {
  public:
    Manual() : Command({"man"}, "Print the manual page") {}
    void Define(CLI::App&) override {}
    void Run(Context& context) override {
        std::string page =
            ".TH AAACTL 1 \"\" \"aaadom 1.0.0\" \"User Commands\"\n.SH NAME\naaactl \\- configure "
            "the AAA daemon's ISP domains\n"
            ".SH SYNOPSIS\n.B aaactl\nOBJECT VERB [ARGUMENTS] [\\-\\-json] [\\-\\-timeout MS] "
            "[\\-\\-run\\-dir DIR]\n.SH OPTIONS\n"
            ".TP\n.B \\-\\-json\nAnswer in JSON, errors included: {\"ok\": true, \"result\": ...} "
            "or "
            "{\"ok\": false, \"error\": {\"exit_code\", \"object\", \"reason\", \"way_out\", "
            "\"code\"}}. "
            "A byte B of a text that is no UTF\\-8 is the character U+F700 + B there and in "
            "exported files.\n"
            ".TP\n.BI \\-\\-timeout \" MS\"\nWait at most so long for each answer, 10000 when not "
            "given.\n"
            ".TP\n.BI \\-\\-run\\-dir \" DIR\"\nThe daemon's run directory, /run/aaad when not "
            "given.\n"
            ".TP\n.B \\-\\-help\nTell the arguments, also of each command and each group.\n"
            ".TP\n.B \\-\\-version\nTell the version.\n.SH COMMANDS\n";
        for (const auto& command : AllCommands()) {
            CLI::App app;
            command->Define(app);
            std::string line = Joined(command->Path());
            std::string arguments;
            for (const CLI::Option* option : app.get_options()) {
                if (option->get_name() == "--help") continue;
                line += option->get_required() ? " " + option->get_name()
                                               : " [" + option->get_name() + "]";
                arguments +=
                    ".br\n" + Troff(option->get_name() + ": " + option->get_description()) + "\n";
            }
            page += ".TP\n.B " + Troff(line) + "\n" + Troff(command->Help()) + ".\n" + arguments;
        }
        page +=
            ".SH \"EXIT STATUS\"\n"
            "0 done, 1 refused by the daemon, 2 wrong usage, 3 daemon not reachable. A change "
            "without an answer may have been made.\n.SH \"SEE ALSO\"\n.BR aaad (8)\n";
        context.output.Line(page);
        context.output.Result({{"page", page}});
    }
};

}  // namespace self_commands

void AddSelfCommands(Commands& commands) {
    using namespace self_commands;
    commands.push_back(std::make_unique<Status>());
    commands.push_back(std::make_unique<Completion>());
    commands.push_back(std::make_unique<Manual>());
}

}  // namespace aaactl
