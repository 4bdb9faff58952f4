// The library creates a row (code 14) and leaves its table mutex locked when a default list cannot
// be allocated. The configuration thread then stopped at its next look into the tables, and the
// daemon with it: no request was answered any more.
#include <aaadom/codes.h>
#include <gtest/gtest.h>

#include <optional>

#include "fault/scene.h"
#include "fault_daemon/rows.h"

namespace fault_daemon {
namespace {

Reply Ask(Daemon& daemon, uint32_t code, uint32_t operation) {
    for (const Row& row : AllRows()) {
        if (!row.has_head || row.code != code || row.operation != operation) continue;
        TLV_MSG* message;
        {
            const fake::Quiet quiet;
            message = row.Message();
        }
        Reply reply = daemon.Exchange(Socket::kRequests, message);
        const fake::Quiet quiet;
        TLV_Destroy(message);
        return reply;
    }
    ADD_FAILURE() << "no row";
    return {};
}

TEST(DaemonRowCreation, LeavesNoLockBehindWhateverAllocationFails) {
    for (int n = 1;; ++n) {
        const fault::Scene scene;
        Daemon daemon;
        fake::FailAllocation(n);
        const Reply reply = Ask(daemon, DOM_MSG_DOMAIN_ROW, DOM_OP_SET);
        const bool refused = fake::Tripped();
        fake::DisarmFailures();
        EXPECT_EQ(fake::HeldLocksHere(), 0) << "allocation " << n;
        if (HasFailure()) return;  // what follows would wait for the lock
        EXPECT_EQ(Ask(daemon, DOM_MSG_DOMAIN_COUNT, DOM_OP_GET).result, kData);
        if (!refused) {
            EXPECT_EQ(reply.result, 0u);
            break;
        }
        EXPECT_NE(reply.result, 0u) << "allocation " << n;
        EXPECT_EQ(Ask(daemon, DOM_MSG_DOMAIN_ROW, DOM_OP_SET).result, 0u) << "allocation " << n;
    }
}

}  // namespace
}  // namespace fault_daemon
