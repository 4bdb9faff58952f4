// A client that changes objects of its own at random and knows what they must be afterwards.
#pragma once

#include <platform/dbm.h>

#include <fstream>
#include <functional>
#include <random>
#include <string>

#include "verdict.h"

namespace crash {

/// One change: what it is, how it is sent, what it makes of the facts.
struct Step {
    std::string text;
    std::function<uint32_t()> send;  // the daemon's result, kNoReply without one
    std::function<void(Facts&)> apply;
};

class Client {
  public:
    /// `fresh_domain`: details of a domain as it is created, by detail.
    Client(size_t number, uint64_t seed, const Facts& fresh_domain, const std::string& history);

    /// Changes until the daemon is gone; the last change is in flight then.
    void Run();
    /// On a database without a daemon: a policy in the form of former releases.
    void PutFormerPolicy(DBM_HANDLE handle);
    /// What has become of the change in flight; a line of the history.
    void Learn(Outcome outcome);
    void Note(const std::string& line);

    Expectation& Expected() { return expected_; }
    uint64_t Answered() const { return answered_; }
    /// Answers that no working daemon gives.
    const std::vector<std::string>& Faults() const { return faults_; }

  private:
    Step Next();
    Step DomainStep();
    Step NasIdStep();
    Step ProfileStep(bool critical);
    Step PolicyStep();
    Step DeviceStep();
    Step RecordingStep();
    Step RecordStep();

    uint32_t Below(uint32_t bound) { return static_cast<uint32_t>(random_() % bound); }
    std::string Name(const char* kind, uint32_t count);
    bool Has(const std::string& key) const { return expected_.known.count(key) != 0; }

    const size_t number_;
    std::mt19937_64 random_;
    const Facts& fresh_domain_;
    std::ofstream history_;
    Expectation expected_;
    uint64_t answered_ = 0;
    uint64_t last_serial_ = 0;
    uint64_t serial_in_flight_ = 0;
    std::vector<std::string> faults_;
};

}  // namespace crash
