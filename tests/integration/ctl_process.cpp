#include "integration/ctl_process.h"

#include <sys/wait.h>

#include <cstdio>

namespace daemon_test {

CtlAnswer RunCtl(const DaemonProcess& daemon, const std::string& arguments) {
    const std::string line = "cd '" + daemon.RunDir() + "' && '" AAADOM_BINARY_DIR "/ctl/aaactl' " +
                             "--run-dir '" + daemon.RunDir() + "' " + arguments + " 2>&1";
    CtlAnswer answer;
    FILE* pipe = popen(line.c_str(), "r");
    if (pipe == nullptr) return answer;
    char buffer[4096];
    while (size_t count = fread(buffer, 1, sizeof buffer, pipe)) answer.text.append(buffer, count);
    const int status = pclose(pipe);
    if (WIFEXITED(status)) answer.status = WEXITSTATUS(status);
    return answer;
}

}  // namespace daemon_test
