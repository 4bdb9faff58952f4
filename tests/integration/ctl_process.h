// aaactl against a daemon of a test.
#pragma once

#include <string>

#include "integration/daemon_process.h"

namespace daemon_test {

struct CtlAnswer {
    std::string text;  // standard output, then standard error
    int status = -1;   // exit status, -1 when a signal ended it
};

/// Runs aaactl by the shell in the daemon's run directory. `arguments` are quoted for the shell.
CtlAnswer RunCtl(const DaemonProcess& daemon, const std::string& arguments);

}  // namespace daemon_test
