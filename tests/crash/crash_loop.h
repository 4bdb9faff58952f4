// Clients change things, the daemon is killed and started again, what is left is judged; and again.
#pragma once

#include <deque>
#include <memory>

#include "client.h"
#include "integration/daemon_process.h"

namespace crash {

struct Options {
    unsigned kills = 10;
    uint64_t seed = 0;
    std::string history;  // a directory that exists
};

class CrashLoop {
  public:
    explicit CrashLoop(const Options& options);
    /// What was found wrong; empty after all kills.
    std::vector<std::string> Run();

  private:
    bool Start();
    std::vector<std::string> SetUp();
    std::vector<std::string> JudgeNow();
    /// Kills starts until one is left alone, with policies of former releases put in before.
    void KillStarts();
    void KillUnderLoad();
    void LearnFreshDomain();
    std::vector<Expectation*> Expectations();
    size_t FormerPolicies() const;
    void Tell(bool always);
    uint32_t Below(uint32_t bound) { return static_cast<uint32_t>(random_() % bound); }

    const Options options_;
    std::mt19937_64 random_;
    daemon_test::DaemonProcess daemon_;
    Facts fresh_domain_;
    std::deque<Client> clients_;
    std::chrono::microseconds start_time_{50000};
    std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();

    unsigned kills_ = 0, kills_of_starts_ = 0, kills_inside_migration_ = 0;
    unsigned told_ = 0, done_ = 0, undone_ = 0, former_policies_ = 0;
    size_t facts_ = 0;
};

}  // namespace crash
