// One command of aaactl: its words, its help, its arguments and what it does.
#pragma once

#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <vector>

#include "client.h"
#include "output.h"

namespace aaactl {

struct Context {
    Client client;
    Output output;
};

class Command {
  public:
    /// `path` is what the user types, e.g. {"domain", "set", "state"}.
    Command(std::vector<std::string> path, std::string help)
        : path_(std::move(path)), help_(std::move(help)) {}
    virtual ~Command() = default;
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;

    const std::vector<std::string>& Path() const { return path_; }
    const std::string& Help() const { return help_; }
    /// Declares the arguments.
    virtual void Define(CLI::App& app) = 0;
    /// Throws Failure; prints its answer otherwise.
    virtual void Run(Context& context) = 0;

  private:
    std::vector<std::string> path_;
    std::string help_;
};

using Commands = std::vector<std::unique_ptr<Command>>;

// One function a file below commands/ that adds its commands.
void AddDomainCommands(Commands& commands);
void AddDomainRowCommands(Commands& commands);
void AddDomainSetCommands(Commands& commands);
void AddDomainMethodCommands(Commands& commands);
void AddDomainAttributeCommands(Commands& commands);
void AddGlobalCommands(Commands& commands);
void AddSessionLimitCommands(Commands& commands);
void AddSchemeCommands(Commands& commands);
void AddNasIdCommands(Commands& commands);
void AddRecordCommands(Commands& commands);
void AddRecordListCommands(Commands& commands);
void AddRecordTopCommand(Commands& commands);
void AddRecordReportCommand(Commands& commands);
void AddCommandFailureCommands(Commands& commands);
void AddProfileCommands(Commands& commands);
void AddAccountingPolicyCommands(Commands& commands);
void AddRecordingPolicyCommands(Commands& commands);
void AddConfigCommands(Commands& commands);
void AddSelfCommands(Commands& commands);

/// Every command, in the order of the help.
Commands AllCommands();

}  // namespace aaactl
