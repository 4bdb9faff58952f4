// What both fault sweeps, of the operations and of the daemon, have in common: counting what a run
// asks of the system, and refusing each single one of it.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>

#include "fakes/fake_platform.h"

namespace fault {

/// By kind, without locking, which fails only when it is misused.
using Counts = std::map<fake::Event, uint64_t>;

/// What `run` asks of the system.
Counts CountEvents(const std::function<void()>& run);

/// Calls `refused` with each kind and the number of each event in turn, under a trace that names
/// them, until something does not hold in the running test. The number of calls.
uint64_t RefuseEach(const Counts& counts, const std::function<void(fake::Event, int)>& refused);

}  // namespace fault
