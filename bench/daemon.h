// A real daemon in a temporary directory, with domains saved before it starts.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "table.h"
#include "workspace.h"

namespace bench {

/// Saves that many domains in a new configuration database below `state_dir`, as a daemon does.
void SaveDomains(const std::string& state_dir, int domains, Size size);

/// State and run directory of a daemon, with or without one running on them.
class DaemonStage {
  public:
    DaemonStage() = default;
    /// With that many domains saved.
    DaemonStage(int domains, Size size) { SaveDomains(State(), domains, size); }
    ~DaemonStage() { Stop(); }
    DaemonStage(const DaemonStage&) = delete;
    DaemonStage& operator=(const DaemonStage&) = delete;

    std::string State() const { return directory_.Path() + "/state"; }
    std::string RunDir() const { return directory_.Path() + "/run"; }
    std::string Path() const { return directory_.Path(); }
    /// Starts the daemon, points the requests of this process at it and waits for its first answer.
    void Start(const std::vector<std::string>& more_arguments = {});
    void Stop();
    /// Points the requests of this process at the daemon.
    void Attach() const;

  private:
    Directory directory_{"daemon"};
    pid_t pid_ = -1;
};

}  // namespace bench
