// Requests that are served in one go and saved in one transaction, with each single thing refused
// that they ask of the system: what was answered with 0 is there, what was answered with a failure
// is not, whatever became of its neighbours.
#include <gtest/gtest.h>

#include <optional>

#include "fault/refusals.h"
#include "fault/scene.h"
#include "fault_daemon/state.h"
#include "fault_daemon/sweep.h"

namespace fault_daemon {
namespace {

using fake::Event;
using Rows = std::vector<const Row*>;

Rows RowsOf(std::initializer_list<const char*> names) {
    Rows rows;
    for (const char* name : names) rows.push_back(&RowOf(name));
    return rows;
}

/// A stage of its own.
class Stage {
  public:
    Stage() : blocks_(fake::LiveBlocks()) {
        scene_.emplace();
        daemon_.emplace();
        Furnish(*daemon_);
    }
    ~Stage() {
        daemon_.reset();
        scene_.reset();
        ExpectNothingLeft(blocks_);
    }
    Daemon& Serving() { return *daemon_; }
    State Restarted() {
        daemon_.reset();
        daemon_.emplace();
        return TakeState();
    }

  private:
    const int64_t blocks_;
    std::optional<fault::Scene> scene_;
    std::optional<Daemon> daemon_;
};

class BatchSweep {
  public:
    explicit BatchSweep(Rows rows) : rows_(std::move(rows)) {}

    uint64_t All() {
        for (uint32_t done = 0; done < 1u << rows_.size(); ++done) {
            if (ChangesAlone(done)) after_[done] = After(done);
        }
        fault::Counts counts;
        {
            Stage stage;
            std::vector<Reply> replies;
            counts = fault::CountEvents([&] { replies = stage.Serving().ExchangeAll(rows_); });
            for (size_t i = 0; i < rows_.size(); ++i) {
                EXPECT_EQ(Shown(replies[i].result), Shown(rows_[i]->good)) << rows_[i]->name;
            }
            ExpectOneOf(replies, TakeState());
        }
        return fault::RefuseEach(counts, [this](Event event, int n) { Refused(event, n); });
    }

  private:
    void Refused(Event event, int n) {
        Stage stage;
        const std::string resources = Resources();
        fake::Fail(event, n);
        const std::vector<Reply> replies = stage.Serving().ExchangeAll(rows_);
        EXPECT_TRUE(fake::Tripped());
        fake::DisarmFailures();
        EXPECT_EQ(Resources(), resources);
        const State state = TakeState();
        ExpectOneOf(replies, state);
        EXPECT_EQ(BetweenRoles(state), "") << "differ between the roles";
        EXPECT_EQ(AfterRestart(state, stage.Restarted()), "") << "differ after a start";
    }

    bool Changes(size_t i) const { return !rows_[i]->reads; }
    bool ChangesAlone(uint32_t done) const {
        for (size_t i = 0; i < rows_.size(); ++i) {
            if ((done >> i & 1) != 0 && !Changes(i)) return false;
        }
        return true;
    }

    /// The state is that of the changes that were answered with success, one after the other. A
    /// connection that was closed does not tell.
    void ExpectOneOf(const std::vector<Reply>& replies, const State& state) const {
        std::string shown;
        for (const Reply& reply : replies) shown += Shown(reply.result) + ' ';
        for (const auto& [done, after] : after_) {
            bool possible = true;
            for (size_t i = 0; i < rows_.size(); ++i) {
                if (!Changes(i) || replies[i].result == kClosed) continue;
                const bool is_done = (done >> i & 1) != 0;
                possible &= is_done == (replies[i].result == rows_[i]->good);
            }
            if (possible && fault::Differences(after, state.parts).empty()) return;
        }
        ADD_FAILURE() << "the state is none that was answered: " << shown;
    }

    /// What some of the changes make, one after the other.
    fault::Snapshot After(uint32_t done) const {
        Stage stage;
        for (size_t i = 0; i < rows_.size(); ++i) {
            if ((done >> i & 1) != 0) Furnish(stage.Serving(), *rows_[i]);
        }
        return fault::TakeSnapshot();
    }

    const Rows rows_;
    std::map<uint32_t, fault::Snapshot> after_;  // by the changes that are made, a bit each
};

TEST(DaemonBatch, SavesWhatItAnswersWithSuccessAndNothingElse) {
    CountRefusals(
        BatchSweep(RowsOf({"Code7_Operation0", "Code24_Operation1", "Malformed_UnknownCode",
                           "Code29_Operation2", "Code147_Operation1", "Code20_Operation0"}))
            .All());
}

TEST(DaemonBatch, OfReportsStoresWhatItAnswersWithSuccessAndNothingElse) {
    CountRefusals(BatchSweep(RowsOf({"Report_Record", "Malformed_Report_BrokenRecord",
                                     "Report_Record", "Report_CommandFailure"}))
                      .All());
}

}  // namespace
}  // namespace fault_daemon
