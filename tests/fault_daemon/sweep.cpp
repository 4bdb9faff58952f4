#include "fault_daemon/sweep.h"

#include <aaadom/aaad_results.h>
#include <aaadom/codes.h>
#include <aaadom/results.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <optional>

#include "daemon/code_table.h"
#include "fault/refusals.h"
#include "fault/scene.h"
#include "fault/snapshot.h"
#include "fault_daemon/state.h"

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

namespace fault_daemon {
namespace {

using fake::Event;
using fault::Differences;
using fault::Snapshot;
using fault::TakeSnapshot;

/// What every request may be answered when something is refused.
const std::set<uint64_t> kRefusals = {DOM_ERR_FAILED, AAAD_ERR_NOT_SAVED, kClosed};

/// One run on a stage of its own.
class Run {
  public:
    explicit Run(const Row& row) : row_(row), blocks_(fake::LiveBlocks()) {
        scene_.emplace();
        daemon_.emplace();
        Furnish(*daemon_);
        for (const Row& first : row.before) Furnish(*daemon_, first);
        before_ = TakeSnapshot();
    }
    ~Run() {
        daemon_.reset();
        scene_.reset();
        ExpectNothingLeft(blocks_);
    }

    Reply Ask() {
        const std::string resources = Resources();
        Reply reply = fault_daemon::Ask(*daemon_, row_);
        EXPECT_EQ(Resources(), resources);
        return reply;
    }
    const Snapshot& Before() const { return before_; }

    /// The roles agree, and a daemon that starts on the database holds the same.
    void ExpectAgreement() {
        const State present = TakeState();
        EXPECT_EQ(BetweenRoles(present), "") << "differ between the roles";
        daemon_.reset();
        daemon_.emplace();
        EXPECT_EQ(AfterRestart(present, TakeState()), "") << "differ after a start";
    }

  private:
    const Row& row_;
    const int64_t blocks_;
    std::optional<fault::Scene> scene_;
    std::optional<Daemon> daemon_;
    Snapshot before_;
};

class Sweep {
  public:
    explicit Sweep(const Row& row) : row_(row) {}

    uint64_t All() {
        return fault::RefuseEach(Good(), [this](Event event, int n) { Refused(event, n); });
    }

  private:
    fault::Counts Good() {
        Run run(row_);
        fault::Counts counts = fault::CountEvents([&] { good_ = run.Ask(); });
        good_state_ = TakeSnapshot();
        EXPECT_EQ(Shown(good_.result), Shown(row_.good)) << "with nothing refused";
        if (row_.reads) {
            EXPECT_EQ(Differences(run.Before(), good_state_), "");
        }
        run.ExpectAgreement();
        return counts;
    }

    void Refused(Event event, int n) {
        Run run(row_);
        fake::Fail(event, n);
        const Reply reply = run.Ask();
        EXPECT_TRUE(fake::Tripped()) << "the request asked for less than without a refusal";
        fake::DisarmFailures();

        const bool succeeded = reply.result == row_.good;
        EXPECT_TRUE(succeeded || kRefusals.count(reply.result) != 0 ||
                    row_.also.count(reply.result) != 0)
            << "result " << Shown(reply.result);
        const Snapshot after = TakeSnapshot();
        const std::string from_before = Differences(run.Before(), after);
        const std::string from_good = Differences(good_state_, after);
        if (succeeded && kRefusals.count(row_.good) != 0) {
            // A change that is answered with a failure also when it is made.
            EXPECT_TRUE(from_before.empty() || from_good.empty()) << "half done: " << from_good;
        } else if (succeeded) {
            EXPECT_EQ(reply.image, good_.image);
            EXPECT_EQ(from_good, "") << "not done by a success";
        } else if (reply.result == kClosed) {
            EXPECT_TRUE(from_before.empty() || from_good.empty()) << "half done: " << from_good;
        } else {
            EXPECT_EQ(from_before, "") << "changed by a refusal with " << Shown(reply.result);
        }
        if (!succeeded && from_before.empty()) {
            EXPECT_EQ(Shown(run.Ask().result), Shown(row_.good)) << "when asked again";
            EXPECT_EQ(Differences(good_state_, TakeSnapshot()), "") << "when asked again";
        }
        run.ExpectAgreement();
    }

    const Row& row_;
    Reply good_;
    Snapshot good_state_;
};

struct Totals {
    uint64_t injected = 0;
    uint64_t rows = 0;
};
Totals totals;

class PrintTotals : public testing::Environment {
    void SetUp() override { fake::CountBlocks(true); }
    void TearDown() override {
        fake::CountBlocks(false);
        std::printf("%llu single failures injected into the daemon (%llu rows)\n",
                    static_cast<unsigned long long>(totals.injected),
                    static_cast<unsigned long long>(totals.rows));
    }
};
[[maybe_unused]] testing::Environment* const print_totals =
    testing::AddGlobalTestEnvironment(new PrintTotals);

}  // namespace

uint64_t SweepRow(const Row& row) {
    return Sweep(row).All();
}

void CountRefusals(uint64_t number) {
    totals.injected += number;
    ++totals.rows;
}

class DaemonFault : public testing::TestWithParam<Row> {};

TEST_P(DaemonFault, LeavesEverythingInOrder) {
    CountRefusals(SweepRow(GetParam()));
#if defined(__SANITIZE_ADDRESS__)
    EXPECT_EQ(__lsan_do_recoverable_leak_check(), 0) << "memory leaked";
#endif
}

INSTANTIATE_TEST_SUITE_P(Request, DaemonFault, testing::ValuesIn(AllRows()),
                         [](const auto& info) { return info.param.name; });

void PrintTo(const Row& row, std::ostream* out) {
    *out << row.name;
}

// A request that the daemon learns to serve is swept from its first day on.
TEST(DaemonFaultTable, HasARowForEveryRequest) {
    constexpr uint32_t kOperations[] = {DOM_OP_SET, DOM_OP_DELETE, DOM_OP_GET, DOM_OP_GET_NEXT,
                                        DOM_OP_CLEAR_RECORDS};
    for (uint32_t code = 0; code <= UINT16_MAX; ++code) {
        const aaad::CodeRow* served = aaad::FindCode(code);
        if (served == nullptr) continue;
        for (const uint32_t operation : kOperations) {
            // A walk takes every operation that is no change; 2 and 3 stand for all of them.
            if (operation == DOM_OP_CLEAR_RECORDS && !served->TakesChange(operation)) continue;
            const bool is_served = served->TakesChange(operation) || served->TakesRead(operation);
            bool has_row = false;
            for (const Row& row : AllRows()) {
                has_row |= row.has_head && row.code == code && row.operation == operation;
            }
            EXPECT_EQ(has_row, is_served) << "code " << code << ", operation " << operation;
        }
    }
    for (const Row& row : AllRows()) {
        EXPECT_TRUE(!row.has_head || aaad::FindCode(row.code) != nullptr) << row.name;
    }
}

}  // namespace fault_daemon
