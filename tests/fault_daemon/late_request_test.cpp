// A connection that the daemon could note in one of its two lists only, for want of memory, was
// reported again and again without ever being read.
#include <aaadom/codes.h>
#include <gtest/gtest.h>

#include "fault/scene.h"
#include "fault_daemon/rows.h"

namespace fault_daemon {
namespace {

TEST(DaemonLateRequest, IsAnsweredOrItsConnectionClosedWhateverAllocationFails) {
    for (int n = 1;; ++n) {
        const fault::Scene scene;
        Daemon daemon;
        const int sockets = fake::OpenSockets();
        TLV_MSG* message = nullptr;
        {
            const fake::Quiet quiet;
            for (const Row& row : AllRows()) {
                if (row.code == DOM_MSG_DOMAIN_COUNT) message = row.Message();
            }
        }
        fake::FailAllocation(n);
        const uint64_t result = daemon.ExchangeLate(Socket::kRequests, message).result;
        const bool refused = fake::Tripped();
        fake::DisarmFailures();
        EXPECT_TRUE(result == kData || (refused && result == kClosed)) << "allocation " << n;
        EXPECT_EQ(fake::OpenSockets(), sockets) << "allocation " << n;
        EXPECT_EQ(daemon.ExchangeLate(Socket::kRequests, message).result, kData);
        const fake::Quiet quiet;
        TLV_Destroy(message);
        if (!refused) break;
    }
}

}  // namespace
}  // namespace fault_daemon
