// A start on a database with something in each of its parts, and a stop, with each single thing
// refused that they ask of the system. A start either fails, tells so and leaves everything as it
// was, or both roles hold all that is stored: a policy or profile that is taken for damaged because
// memory was short is not there when a user comes, and the next change of it is saved over it.
#include <gtest/gtest.h>

#include <optional>

#include "fault/refusals.h"
#include "fault/scene.h"
#include "fault_daemon/state.h"
#include "fault_daemon/sweep.h"

namespace fault_daemon {
namespace {

using fake::Event;

// What StageRows leaves unset.
constexpr const char* kSettings[] = {"Code1_Operation0",  "Code10_Operation0", "Code18_Operation0",
                                     "Code20_Operation0", "Code7_Operation0",  "Code4_Operation0"};

/// The databases that a daemon left, and nothing else.
class Stored {
  public:
    explicit Stored(bool filled) : blocks_(fake::LiveBlocks()) {
        scene_.emplace();
        if (filled) {
            Daemon daemon;
            Furnish(daemon);
            for (const char* name : kSettings) Furnish(daemon, RowOf(name));
        }
        databases_ = Databases(fault::TakeSnapshot());
    }
    ~Stored() {
        scene_.reset();
        ExpectNothingLeft(blocks_);
    }
    void ExpectUnchanged() const { EXPECT_EQ(Databases(fault::TakeSnapshot()), databases_); }

  private:
    const int64_t blocks_;
    std::optional<fault::Scene> scene_;
    std::map<std::string, std::string> databases_;
};

void ExpectSame(const State& good, const State& state) {
    EXPECT_EQ(BetweenRoles(state), "") << "differ between the roles";
    EXPECT_EQ(AfterRestart(good, state), "") << "are not what is stored";
}

/// The number of refusals.
uint64_t SweepStart(bool filled) {
    State good;
    fault::Counts counts;
    {
        const Stored stored(filled);
        std::optional<Daemon> daemon;
        counts = fault::CountEvents([&] { daemon.emplace(true); });
        good = TakeState();
        EXPECT_EQ(BetweenRoles(good), "");
        if (filled) stored.ExpectUnchanged();
    }
    return fault::RefuseEach(counts, [&](Event event, int n) {
        const Stored stored(filled);
        const std::string resources = Resources();
        std::optional<Daemon> daemon;
        std::string told;
        fake::Fail(event, n);
        try {
            daemon.emplace(true);
        } catch (const std::exception& error) {
            told = error.what();
        }
        EXPECT_TRUE(fake::Tripped()) << "the start asked for less than without a refusal";
        fake::DisarmFailures();
        if (filled) stored.ExpectUnchanged();
        if (!daemon) {
            EXPECT_NE(told, "");
            EXPECT_EQ(Resources(), resources);
            daemon.emplace();
        }
        ExpectSame(good, TakeState());
    });
}

TEST(DaemonStart, FailsOrHoldsAllThatIsStoredWhateverIsRefused) {
    CountRefusals(SweepStart(true));
}

TEST(DaemonStart, OnNoDatabaseFailsOrMakesOneWhateverIsRefused) {
    CountRefusals(SweepStart(false));
}

TEST(DaemonStop, LeavesNothingBehindWhateverIsRefused) {
    State good;
    fault::Counts counts;
    {
        const Stored stored(true);
        Daemon daemon;
        good = TakeState();
        counts = fault::CountEvents([&] { daemon.Stop(); });
    }
    CountRefusals(fault::RefuseEach(counts, [&](Event event, int n) {
        const Stored stored(true);
        const std::string resources = Resources();
        {
            Daemon daemon;
            fake::Fail(event, n);
            daemon.Stop();
        }
        EXPECT_TRUE(fake::Tripped());
        fake::DisarmFailures();
        EXPECT_EQ(Resources(), resources);
        stored.ExpectUnchanged();
        const Daemon again;
        ExpectSame(good, TakeState());
    }));
}

}  // namespace
}  // namespace fault_daemon
