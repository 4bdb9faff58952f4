#include "../command.h"

namespace aaactl {

Commands AllCommands() {
    Commands commands;
    AddDomainCommands(commands);
    AddDomainSetCommands(commands);
    AddDomainMethodCommands(commands);
    AddDomainAttributeCommands(commands);
    AddGlobalCommands(commands);
    AddSessionLimitCommands(commands);
    AddConfigCommands(commands);
    AddSelfCommands(commands);
    return commands;
}

}  // namespace aaactl
