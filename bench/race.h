// A race: contestants that do the same work, measured in windows that take turns.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace bench {

/// Works for about `seconds`, or once when its work has a fixed size; nanoseconds a unit of work.
/// Throws when the work failed: a time of failed work is none.
using Window = std::function<double(double seconds)>;

struct Contestant {
    std::string name;
    Window window;
};

/// What the first contestant is to reach against a peer.
struct Goal {
    enum Kind { kCostAtMost, kSpeedAtLeast };
    std::string peer;
    Kind kind;
    double limit;
};

struct Race {
    std::string group;      // of races that differ in their load only: one plot
    std::string title;      // of the group
    std::string unit;       // of work
    int load = 0;           // number of what grows
    std::string load_unit;  // name of what grows
    std::vector<Goal> goals;
    double seconds = 0.05;  // of a window
    /// Sets the stage, in a process of the race's own. The first contestant is ours; what the
    /// windows need lives as long as they do.
    std::function<std::vector<Contestant>()> prepare;
};

/// How much is measured: everything, or in quick mode the smallest and the largest load of what
/// needs daemons, in short windows.
struct Extent {
    bool quick = false;
    std::vector<int> Loads() const { return {16, 64, 256, 1024}; }
    std::vector<int> DaemonLoads() const { return quick ? std::vector<int>{16, 1024} : Loads(); }
    double Seconds(double full) const { return quick ? full / 8 : full; }
};

/// Runs the race in a child process. Prints its medians and appends a line of JSON with every
/// window to `results`. False when a contestant failed; `progress` is printed before it.
bool Run(const Race& race, const std::string& results, const std::string& progress);

void AddFindRaces(const Extent& extent, std::vector<Race>& races);
void AddCodecRaces(const Extent& extent, std::vector<Race>& races);
void AddGetRaces(const Extent& extent, std::vector<Race>& races);
void AddDurableRaces(const Extent& extent, std::vector<Race>& races);
void AddRecordRaces(const Extent& extent, std::vector<Race>& races);
void AddRecordPageRaces(const Extent& extent, std::vector<Race>& races);
void AddColdStartRaces(const Extent& extent, std::vector<Race>& races);
void AddImportRaces(const Extent& extent, std::vector<Race>& races);
void AddWalkRaces(const Extent& extent, std::vector<Race>& races);

}  // namespace bench
