#include "fault_daemon/sweep.h"

#include <aaadom/aaad_results.h>
#include <aaadom/codes.h>
#include <aaadom/domain_codec.h>
#include <aaadom/results.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <optional>

#include "daemon/code_table.h"
#include "daemon/roles.h"
#include "fault/scene.h"
#include "fault/snapshot.h"

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

namespace fault_daemon {
namespace {

using fake::Event;
using fault::Differences;
using fault::Snapshot;
using fault::TakeSnapshot;

struct Kind {
    Event event;
    const char* name;
};
constexpr Kind kKinds[] = {{Event::kAllocation, "allocation"}, {Event::kMessage, "message"},
                           {Event::kAppend, "append"},         {Event::kFlush, "flush"},
                           {Event::kDbm, "database call"},     {Event::kHashCreate, "hash table"},
                           {Event::kSocket, "socket"},         {Event::kLockInit, "lock"}};

/// What every request may be answered when something is refused.
const std::set<uint64_t> kRefusals = {DOM_ERR_FAILED, AAAD_ERR_NOT_SAVED, AAAD_ERR_MALFORMED,
                                      kClosed};

std::string Shown(uint64_t result) {
    char number[24];
    std::snprintf(number, sizeof number, "0x%llX", static_cast<unsigned long long>(result));
    return number;
}

/// What is open or alive; a request must leave it as its stage had it. A lock that the working
/// thread kept would stop it at the next request, and the sweep with it.
std::string Resources() {
    return std::to_string(fake::LiveMessages()) + " messages, " +
           std::to_string(fake::OpenSockets()) + " sockets, " +
           std::to_string(fake::OpenCursors()) + " cursors, " +
           std::to_string(fake::OpenDatabaseHandles()) + " handles, " +
           std::to_string(fake::HeldLocksHere()) + " locks";
}

/// One run on a stage of its own.
class Run {
  public:
    explicit Run(const Row& row) : row_(row), blocks_(fake::LiveBlocks()) {
        scene_.emplace();
        daemon_.emplace();
        for (const Row& furniture : StageRows()) Furnish(furniture);
        for (const Row& first : row.before) Furnish(first);
        before_ = TakeSnapshot();
    }
    ~Run() {
        daemon_.reset();
        scene_.reset();
        EXPECT_EQ(fake::LiveMessages(), 0);
        EXPECT_EQ(fake::LiveHashTables(), 0);
        EXPECT_EQ(fake::OpenDatabaseHandles(), 0);
        EXPECT_EQ(fake::OpenSockets(), 0);
        EXPECT_EQ(fake::HeldLocksHere(), 0);
        EXPECT_EQ(fake::LiveBlocks(), blocks_) << "blocks leaked";
        EXPECT_TRUE(fake::Misuses().empty()) << fake::Misuses().front();
    }

    Reply Ask() {
        const std::string resources = Resources();
        Reply reply = Sent(row_);
        EXPECT_EQ(Resources(), resources);
        return reply;
    }
    const Snapshot& Before() const { return before_; }

    /// What the roles' domains are told as.
    static std::map<std::string, std::string> Domains() {
        std::map<std::string, std::string> images;
        for (const aaad::Role role : {aaad::Role::kWorking, aaad::Role::kConfiguration}) {
            aaad::TakeRole(role);
            for (const char* name : {DOM_SYSTEM_DOMAIN, "isp-a.example", "other.example"}) {
                const fake::Quiet quiet;
                const aaad::Message image(DOM_EncodeDomain(name));
                const char* of = role == aaad::Role::kWorking ? "working." : "config.";
                images[of + std::string(name)] = image ? fake::ImageOf(image.get()) : std::string();
            }
        }
        return images;
    }

    /// The parts of which a daemon that starts on this database makes something else, and those
    /// that differ between the roles.
    std::string Disagreements() {
        const Snapshot present = TakeSnapshot();
        const std::map<std::string, std::string> domains = Domains();
        std::string parts;
        for (const char* part : {"domains", "order", "settings", "critical", "author", "records"}) {
            if (Part(present, "config", part) != Part(present, "working", part)) {
                parts += std::string("roles.") + part + ' ';
            }
        }
        daemon_.reset();
        daemon_.emplace();
        const Snapshot started = TakeSnapshot();
        for (const char* role : {"config", "working"}) {
            for (const char* part :
                 {"order", "settings", "critical", "author", "policies", "records", "nas_ids"}) {
                if (Part(present, role, part) != Part(started, role, part)) {
                    parts += std::string("restart.") + role + '.' + part + ' ';
                }
            }
        }
        if (Domains() != domains) parts += "restart.domains ";
        return parts;
    }

  private:
    static std::string Part(const Snapshot& snapshot, const std::string& role, const char* part) {
        const auto found = snapshot.find(role + '.' + part);
        return found == snapshot.end() ? std::string() : found->second;
    }
    Reply Sent(const Row& row) {
        TLV_MSG* message;
        {
            const fake::Quiet quiet;
            message = row.Message();
        }
        Reply reply = daemon_->Exchange(row.socket, message);
        const fake::Quiet quiet;
        TLV_Destroy(message);
        return reply;
    }
    void Furnish(const Row& row) {
        EXPECT_EQ(Shown(Sent(row).result), Shown(row.good))
            << "the stage cannot be set: " << row.name;
    }

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
        const std::map<Event, uint64_t> counts = Good();
        uint64_t events = 0;
        for (const Kind& kind : kKinds) {
            const uint64_t count = counts.at(kind.event);
            for (uint64_t n = 1; n <= count && !testing::Test::HasFailure(); ++n) {
                SCOPED_TRACE(std::string(kind.name) + " " + std::to_string(n) + " of " +
                             std::to_string(count));
                Refused(kind.event, static_cast<int>(n));
                ++events;
            }
        }
        return events;
    }

  private:
    std::map<Event, uint64_t> Good() {
        Run run(row_);
        std::map<Event, uint64_t> counts;
        for (const Kind& kind : kKinds) counts[kind.event] = fake::Count(kind.event);
        good_ = run.Ask();
        for (auto& [event, count] : counts) count = fake::Count(event) - count;
        good_state_ = TakeSnapshot();
        EXPECT_EQ(Shown(good_.result), Shown(row_.good)) << "with nothing refused";
        if (row_.reads) {
            EXPECT_EQ(Differences(run.Before(), good_state_), "");
        }
        EXPECT_EQ(run.Disagreements(), "");
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
        if (succeeded && !row_.partial.empty()) return;
        if (succeeded) {
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
        EXPECT_EQ(run.Disagreements(), "");
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
