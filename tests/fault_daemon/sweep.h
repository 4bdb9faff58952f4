// The fault sweep of the daemon. Each request is made once with nothing refused, counting what its
// handling asks of the system, and then once for each single allocation (throwing ones included),
// message, append, flush, database call, hash table, socket call and lock initialisation that is
// refused. After each run it must hold:
//
// - the answer is good, or a stated refusal, or none because memory did not suffice for it;
// - nothing leaked, no lock is held, no handle, cursor or socket stays open, nothing was misused;
// - both roles hold the same; after a refusal they and the databases are as before, after a success
//   as after the run without a refusal;
// - a daemon that starts on the database holds what this one holds;
// - the same request works when nothing is refused any more.
#pragma once

#include <cstdint>
#include <string>

#include "fault_daemon/rows.h"

namespace fault_daemon {

/// Sweeps a row. What does not hold fails the running test; the number of single refusals.
uint64_t SweepRow(const Row& row);

/// Adds to what is printed at the end.
void CountRefusals(uint64_t number);

}  // namespace fault_daemon
