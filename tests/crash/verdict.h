// Whether a daemon that was killed and started again holds what it must.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "snapshot.h"

namespace crash {

/// What one client knows of its objects.
struct Expectation {
    std::string owner;
    Facts known;                 // all that was answered
    std::optional<Facts> after;  // the same with the change that nobody answered
    std::string in_flight;       // that change, in words
};

enum class Outcome { kNothingInFlight, kUndone, kDone };

/// One line for each thing that is wrong; none: all is well, and each expectation knows what became
/// of its change in flight. `outcomes` gets one entry an expectation.
std::vector<std::string> Judge(const Snapshot& snapshot, std::vector<Expectation*> expectations,
                               std::vector<Outcome>* outcomes = nullptr);

}  // namespace crash
