// Everything that a daemon and its database hold, as facts.
#pragma once

#include "facts.h"
#include "integration/daemon_process.h"

namespace crash {

struct Snapshot {
    Facts configuration;  // what the configuration role answers
    Facts working;        // what the working role answers
    Facts database;       // what lies in the two databases
};

/// Asks the daemon, which must not be changing anything, and reads its databases.
Snapshot TakeSnapshot(const daemon_test::DaemonProcess& daemon);
/// Without asking: the daemon need not run.
Facts ReadDatabase(const daemon_test::DaemonProcess& daemon);

/// The kinds that each role answers for; the database holds them all.
extern const std::vector<std::string> kKindsOfConfiguration;
extern const std::vector<std::string> kKindsOfWorking;

}  // namespace crash
