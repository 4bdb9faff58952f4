// The library creates a row (code 14) and leaves its table mutex locked when a default list cannot
// be allocated. The configuration thread then stopped at its next look into the tables, and the
// daemon with it: no request was answered any more.
#include <gtest/gtest.h>

#include <optional>

#include "fault/scene.h"
#include "fault_daemon/rows.h"

namespace fault_daemon {
namespace {

Reply Ask(Daemon& daemon, const char* row) {
    return daemon.ExchangeAll({&RowOf(row)}).front();
}

TEST(DaemonRowCreation, LeavesNoLockBehindWhateverAllocationFails) {
    for (int n = 1;; ++n) {
        const fault::Scene scene;
        Daemon daemon;
        fake::FailAllocation(n);
        const Reply reply = Ask(daemon, "Code14_Operation0");
        const bool refused = fake::Tripped();
        fake::DisarmFailures();
        EXPECT_EQ(fake::HeldLocksHere(), 0) << "allocation " << n;
        if (HasFailure()) return;  // what follows would wait for the lock
        EXPECT_EQ(Ask(daemon, "Code2_Operation2").result, kData);
        if (!refused) {
            EXPECT_EQ(reply.result, 0u);
            break;
        }
        EXPECT_NE(reply.result, 0u) << "allocation " << n;
        EXPECT_EQ(Ask(daemon, "Code14_Operation0").result, 0u) << "allocation " << n;
    }
}

}  // namespace
}  // namespace fault_daemon
