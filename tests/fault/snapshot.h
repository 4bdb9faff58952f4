// What a failing call must leave alone: everything both roles' tables hold, the process's own
// words, the databases.
#pragma once

#include <map>
#include <string>

namespace fault {

/// By part: "config.domains", "working.order", ..., "process", "database.<name>/<table>".
using Snapshot = std::map<std::string, std::string>;

Snapshot TakeSnapshot();
/// The names of the parts that differ, separated by blanks; empty when none does.
std::string Differences(const Snapshot& before, const Snapshot& after);

}  // namespace fault
