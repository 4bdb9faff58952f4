// What a daemon holds, and what it must not leave behind.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "fault/snapshot.h"
#include "fault_daemon/daemon.h"
#include "fault_daemon/rows.h"

namespace fault_daemon {

struct State {
    fault::Snapshot parts;
    std::map<std::string, std::string> domains;  ///< what both roles' domains are told as
};
State TakeState();

/// The parts that differ between the roles.
std::string BetweenRoles(const State& state);
/// The parts of which a daemon that started on the database made something else.
std::string AfterRestart(const State& before, const State& started);
/// What the databases hold, by table.
std::map<std::string, std::string> Databases(const fault::Snapshot& parts);

/// What is open or alive; a request must leave it as its stage had it. A lock that the working
/// thread kept would stop it at the next request, and the sweep with it.
std::string Resources();
/// To be called when the stage is cleared away; `blocks` lived before it was set.
void ExpectNothingLeft(int64_t blocks);

std::string Shown(uint64_t result);

/// The message of a row, made and sent without a refusal.
Reply Ask(Daemon& daemon, const Row& row);
/// Asks what must succeed.
void Furnish(Daemon& daemon, const Row& row);
/// The rows of StageRows.
void Furnish(Daemon& daemon);

}  // namespace fault_daemon
