#include "crash_loop.h"

#include <platform/dbm.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <thread>

#include "domain_facts.h"
#include "integration/record_reports.h"
#include "integration/stopped_database.h"

using namespace daemon_test;

namespace crash {

namespace {

constexpr size_t kClients = 5;
constexpr uint32_t kLoadMicroseconds = 120000;  // at most, before a kill
constexpr uint32_t kInitialLimit = 5000;
constexpr unsigned kTellEvery = 25;

void Sleep(uint32_t microseconds) {
    std::this_thread::sleep_for(std::chrono::microseconds(microseconds));
}

}  // namespace

CrashLoop::CrashLoop(const Options& options) : options_(options), random_(options.seed) {}

bool CrashLoop::Start() {
    const std::string log = options_.history + "/aaad.log";
    const auto begin = std::chrono::steady_clock::now();
    const bool started = daemon_.Start({}, [&] {
        if (freopen(log.c_str(), "a", stderr) == nullptr) _exit(126);
    });
    start_time_ = std::chrono::duration_cast<std::chrono::microseconds>(
        std::chrono::steady_clock::now() - begin);
    return started;
}

std::vector<Expectation*> CrashLoop::Expectations() {
    std::vector<Expectation*> all;
    for (Client& client : clients_) all.push_back(&client.Expected());
    return all;
}

/// A new domain's details, from the daemon: what they are is other tests' business.
void CrashLoop::LearnFreshDomain() {
    const std::string name = OwnerName(0) + "-fresh";
    (void)CreateDomain(name);
    const DomainPtr domain = GetDomain(name);
    if (!domain) return;
    Facts facts;
    AddDomain(*domain, facts);
    const std::string prefix = FactKey("domain", name);
    for (const auto& [key, value] : Known(facts, prefix)) {
        if (key != prefix) fresh_domain_[key.substr(prefix.size() + 1)] = value;
    }
    (void)DeleteDomain(name);
}

std::vector<std::string> CrashLoop::SetUp() {
    if (!Start()) return {"the daemon does not start on an empty directory"};
    KeepAllRecords();
    LearnFreshDomain();
    if (Change(DOM_EncodeSessionLimit(SESSION_CLASS_21, kInitialLimit)) != DOM_OK)
        return {"the first change is refused"};
    for (size_t i = 0; i < kClients; ++i) {
        clients_.emplace_back(i, random_(), fresh_domain_,
                              options_.history + "/" + OwnerName(i) + ".log");
    }
    Facts& known = clients_[0].Expected().known;
    known[FactKey("device", kDevice, "id")] = "0";
    known[FactKey("device", kDevice, "unknown-domain")] = "";
    known[FactKey("limit", kDevice, "21")] = std::to_string(kInitialLimit);
    return JudgeNow();
}

std::vector<std::string> CrashLoop::JudgeNow() {
    const Snapshot snapshot = TakeSnapshot(daemon_);
    facts_ = snapshot.database.size();
    std::vector<Outcome> outcomes;
    std::vector<std::string> wrong = Judge(snapshot, Expectations(), &outcomes);
    for (size_t i = 0; i < clients_.size(); ++i) {
        Client& client = clients_[i];
        wrong.insert(wrong.end(), client.Faults().begin(), client.Faults().end());
        client.Learn(outcomes[i]);
        if (outcomes[i] == Outcome::kNothingInFlight) continue;
        const bool done = outcomes[i] == Outcome::kDone;
        ++(done ? done_ : undone_);
        client.Note(done ? "found done" : "found not done");
    }
    if (!daemon_.IsRunning()) wrong.push_back("the daemon ended while it was asked");
    return wrong;
}

void CrashLoop::KillUnderLoad() {
    std::vector<std::thread> threads;
    for (Client& client : clients_) threads.emplace_back([&client] { client.Run(); });
    Sleep(Below(kLoadMicroseconds));
    daemon_.Kill();
    ++kills_;
    for (std::thread& thread : threads) thread.join();
    for (Client& client : clients_) client.Note("killed: " + std::to_string(kills_));
}

size_t CrashLoop::FormerPolicies() const {
    const StoppedDatabase database(daemon_);
    std::vector<DBM_KEY_SLOT> slots(256);
    const uint32_t count =
        DBM_GetKeysByValueType(database.Handle(), static_cast<uint32_t>(slots.size()),
                               DOM_DB_ITA_POLICY, nullptr, slots.data());
    size_t former = 0;
    for (uint32_t i = 0; i < count; ++i) {
        former +=
            std::string(slots[i].key)
                .compare(0, DOM_DB_PREFIX_ITA_POLICY_OLD_LEN, DOM_DB_PREFIX_ITA_POLICY_OLD) == 0;
    }
    return former;
}

void CrashLoop::KillStarts() {
    size_t former = 0;
    if (Below(2) == 0) {
        {
            const StoppedDatabase database(daemon_);
            for (Client& client : clients_) {
                for (uint32_t count = Below(3); count > 0; --count) {
                    client.PutFormerPolicy(database.Handle());
                    ++former_policies_;
                }
            }
        }
        former = FormerPolicies();
    }
    while (kills_ < options_.kills && Below(former > 0 ? 4 : 8) != 0 && Below(2) == 0) {
        daemon_.Launch({}, [] { (void)!freopen("/dev/null", "w", stderr); });
        const auto limit = static_cast<uint32_t>(start_time_.count());
        // The policies come last in a start.
        Sleep(former > 0 ? limit / 2 + Below(limit / 2 + 1) : Below(limit + 1));
        daemon_.Kill();
        ++kills_;
        ++kills_of_starts_;
        const size_t left = former > 0 ? FormerPolicies() : 0;
        if (left > 0 && left < former) ++kills_inside_migration_;
        former = left;
    }
}

void CrashLoop::Tell(bool always) {
    if (!always && kills_ / kTellEvery == told_) return;
    told_ = kills_ / kTellEvery;
    uint64_t answered = 0;
    for (const Client& client : clients_) answered += client.Answered();
    printf(
        "%u of %u kills after %lld s: %llu changes answered, all there; in flight %u done, %u "
        "not; %u starts killed, %u of them inside the migration of %u former policies; %zu "
        "facts compared at last\n",
        kills_, options_.kills,
        static_cast<long long>(std::chrono::duration_cast<std::chrono::seconds>(
                                   std::chrono::steady_clock::now() - begin_)
                                   .count()),
        static_cast<unsigned long long>(answered), done_, undone_, kills_of_starts_,
        kills_inside_migration_, former_policies_, facts_);
    fflush(stdout);
}

std::vector<std::string> CrashLoop::Run() {
    std::vector<std::string> wrong = SetUp();
    while (wrong.empty() && kills_ < options_.kills) {
        KillUnderLoad();
        KillStarts();
        wrong = Start() ? JudgeNow() : std::vector<std::string>{"the daemon does not start again"};
        Tell(false);
    }
    if (wrong.empty()) {
        Tell(true);
        return wrong;
    }
    daemon_.Kill();
    wrong.push_back("after " + std::to_string(kills_) + " kills");
    namespace fs = std::filesystem;
    std::error_code error;
    fs::copy(daemon_.StateDir(), options_.history + "/state", fs::copy_options::recursive, error);
    fs::copy(daemon_.RunDir() + "/gRECORD", options_.history + "/gRECORD",
             fs::copy_options::recursive, error);
    std::ofstream report(options_.history + "/wrong");
    for (const std::string& line : wrong) report << line << '\n';
    return wrong;
}

}  // namespace crash
