#include "../command.h"

namespace aaactl {

Commands AllCommands() {
    Commands commands;
    AddDomainCommands(commands);
    AddDomainRowCommands(commands);
    AddDomainSetCommands(commands);
    AddDomainMethodCommands(commands);
    AddDomainAttributeCommands(commands);
    AddSchemeCommands(commands);
    AddGlobalCommands(commands);
    AddSessionLimitCommands(commands);
    AddNasIdCommands(commands);
    AddRecordListCommands(commands);
    AddRecordTopCommand(commands);
    AddRecordReportCommand(commands);
    AddRecordCommands(commands);
    AddCommandFailureCommands(commands);
    AddProfileCommands(commands);
    AddAccountingPolicyCommands(commands);
    AddRecordingPolicyCommands(commands);
    AddConfigCommands(commands);
    AddSelfCommands(commands);
    return commands;
}

}  // namespace aaactl
