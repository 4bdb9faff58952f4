#include "fault/sweep.h"

#include <aaadom/domain.h>
#include <gtest/gtest.h>

#include <cctype>
#include <cstdio>
#include <optional>

#include "fault/refusals.h"
#include "fault/snapshot.h"

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

namespace fault {
namespace {

struct Totals {
    uint64_t injected = 0;
    uint64_t rows = 0;
    std::set<std::string> operations;
    uint64_t without_refusal = 0;
};
Totals totals;

/// What is open or alive; a run must leave it as its stage had it.
struct Resources {
    int64_t messages = fake::LiveMessages();
    int sockets = fake::OpenSockets();
    int cursors = fake::OpenCursors();
    int handles = fake::OpenDatabaseHandles();
    int locks = fake::HeldLocks();

    friend bool operator==(const Resources&, const Resources&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Resources& resources) {
        return out << resources.messages << " messages, " << resources.sockets << " sockets, "
                   << resources.cursors << " cursors, " << resources.handles << " handles, "
                   << resources.locks << " locks";
    }
};

/// One run on a stage of its own.
class Run {
  public:
    explicit Run(const Row& row) : row_(row), blocks_(fake::LiveBlocks()) {
        scene_.emplace();
        row.stage(*scene_);
        fake::role_of_this_thread = row.role;
        for (const Step& step : row.steps) step(*scene_);
        before_ = TakeSnapshot();
        fake::ClearDbmCalls();
    }
    ~Run() {
        scene_.reset();
        EXPECT_EQ(fake::LiveMessages(), 0);
        EXPECT_EQ(fake::LiveHashTables(), 0);
        EXPECT_EQ(fake::OpenDatabaseHandles(), 0);
        EXPECT_EQ(fake::OpenSockets(), 0);
        EXPECT_EQ(fake::HeldLocks(), 0);
        EXPECT_EQ(fake::LiveBlocks(), blocks_) << "blocks leaked";
        EXPECT_TRUE(fake::Misuses().empty()) << fake::Misuses().front();
    }

    Outcome Call() {
        const Resources resources;
        const Outcome outcome = row_.call(*scene_);
        const fake::Quiet quiet;
        EXPECT_EQ(Resources(), resources);
        for (const fake::DbmCall& call : fake::DbmCalls())
            EXPECT_EQ(call.held_locks, resources.locks) << call.call << " while a lock is held";
        return outcome;
    }
    const Snapshot& Before() const { return before_; }

  private:
    const Row& row_;
    const int64_t blocks_;
    std::optional<Scene> scene_;
    Snapshot before_;
};

std::string Shown(const Results& results) {
    std::string text;
    char number[24];
    for (const uint64_t result : results) {
        std::snprintf(number, sizeof number, "0x%llX ", static_cast<unsigned long long>(result));
        text += number;
    }
    return text;
}

class Sweep {
  public:
    explicit Sweep(const Row& row) : row_(row) {}

    /// The number of refusals.
    uint64_t All() {
        return RefuseEach(Good(), [this](Event event, int n) { Refused(event, n); });
    }

  private:
    /// Nothing is refused. What the call asked for.
    Counts Good() {
        Run run(row_);
        Counts counts = CountEvents([&] { good_ = run.Call(); });
        good_state_ = TakeSnapshot();
        EXPECT_EQ(Shown({good_.result}), Shown({row_.good})) << "with nothing refused";
        if (row_.reads) {
            EXPECT_EQ(Differences(run.Before(), good_state_), "");
        }
        return counts;
    }

    void Refused(Event event, int n) {
        Run run(row_);
        fake::Fail(event, n);
        const Outcome outcome = run.Call();
        EXPECT_TRUE(fake::Tripped()) << "the call asked for less than without a refusal";
        fake::DisarmFailures();

        const Results allowed = Allowed(event);
        EXPECT_TRUE(allowed.count(outcome.result) != 0)
            << "result " << Shown({outcome.result}) << "is none of " << Shown(allowed);
        const Snapshot after = TakeSnapshot();
        const bool succeeded = outcome.result == row_.good;
        const std::string from_before = Checked(Differences(run.Before(), after));
        const std::string from_good = Checked(Differences(good_state_, after));
        if (!succeeded) {
            EXPECT_EQ(from_before, "") << "changed by a failure";
        } else if (row_.failures.count(row_.good) != 0) {
            EXPECT_TRUE(from_before.empty() || from_good.empty()) << "half done: " << from_good;
        } else {
            EXPECT_EQ(from_good, "") << "not done by a success";
        }
        if (succeeded && row_.partial.empty() && allowed.size() == 1) {
            EXPECT_EQ(outcome.outputs, good_.outputs) << "outputs of a success";
        }
        if (!succeeded && row_.repeatable) {
            const Outcome again = run.Call();
            EXPECT_EQ(Shown({again.result}), Shown({row_.good})) << "when called again";
            EXPECT_EQ(Checked(Differences(good_state_, TakeSnapshot())), "") << "when called again";
        }
    }

    Results Allowed(Event event) const {
        const auto found = row_.failures_of.find(event);
        if (found != row_.failures_of.end()) return found->second;
        return row_.failures.empty() ? Results{row_.good} : row_.failures;
    }
    /// The differing parts without those that the row excepts.
    std::string Checked(const std::string& parts) const {
        std::string left;
        for (size_t begin = 0; begin < parts.size();) {
            const size_t end = parts.find(' ', begin);
            const std::string part = parts.substr(begin, end - begin);
            bool excepted = false;
            for (const auto& [beginning, reason] : row_.exceptions)
                excepted = excepted || part.compare(0, beginning.size(), beginning) == 0;
            if (!excepted) left += part + ' ';
            begin = end + 1;
        }
        return left;
    }

    const Row& row_;
    Outcome good_;
    Snapshot good_state_;
};

std::vector<Row>& Table() {
    static auto* table = new std::vector<Row>;
    return *table;
}

class PrintTotals : public testing::Environment {
    void SetUp() override { fake::CountBlocks(true); }
    void TearDown() override {
        fake::CountBlocks(false);
        std::printf(
            "%llu single failures injected into %zu operations (%llu rows, %llu of which "
            "ask for nothing that can be refused)\n",
            static_cast<unsigned long long>(totals.injected), totals.operations.size(),
            static_cast<unsigned long long>(totals.rows),
            static_cast<unsigned long long>(totals.without_refusal));
    }
};
[[maybe_unused]] testing::Environment* const print_totals =
    testing::AddGlobalTestEnvironment(new PrintTotals);

}  // namespace

Rows::Rows(std::initializer_list<Row> rows) {
    Table().insert(Table().end(), rows.begin(), rows.end());
}
Rows::Rows(const std::vector<Row>& rows) {
    Table().insert(Table().end(), rows.begin(), rows.end());
}
const std::vector<Row>& AllRows() {
    return Table();
}

uint64_t SweepRow(const Row& row) {
    return Sweep(row).All();
}

class Fault : public testing::TestWithParam<Row> {};

TEST_P(Fault, LeavesEverythingInOrder) {
    const Row& row = GetParam();
    const uint64_t injected = SweepRow(row);
    totals.injected += injected;
    ++totals.rows;
    totals.operations.insert(row.Operation());
    if (injected == 0) ++totals.without_refusal;
#if defined(__SANITIZE_ADDRESS__)
    EXPECT_EQ(__lsan_do_recoverable_leak_check(), 0) << "memory leaked";
#endif
}

// "DOM_AddMethodList/default service" becomes DOM_AddMethodList__default_service.
INSTANTIATE_TEST_SUITE_P(Operation, Fault, testing::ValuesIn(AllRows()), [](const auto& info) {
    std::string name;
    for (const char c : info.param.name) {
        if (c == '/') {
            name += "__";
        } else {
            name += std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
        }
    }
    return name;
});

void PrintTo(const Row& row, std::ostream* out) {
    *out << row.name;
}

}  // namespace fault
