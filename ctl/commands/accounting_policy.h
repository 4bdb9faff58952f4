// What the commands about accounting policies share.
#pragma once

#include <string>
#include <vector>

#include "../command.h"

namespace aaactl {

/// `accounting policy "NAME"`, for a terminal.
std::string QuotedPolicy(const std::string& name);
/// One level of a policy's document.
std::string LevelLine(const std::string& id, const Json& level);

class PolicyCommand : public Command {
  public:
    /// `verb` is what follows "policy acct".
    PolicyCommand(std::vector<std::string> verb, const char* help);

  protected:
    void DefinePolicy(CLI::App& app);
    /// Sends a change of the policy; throws when it is refused.
    void Change(Client& client, TLV_MSG* message, bool set) const;

    std::string policy_;
};

void AddAccountingLevelCommands(Commands& commands);

}  // namespace aaactl
