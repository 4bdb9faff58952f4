#include "race.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <fstream>
#include <nlohmann/json.hpp>

namespace bench {
namespace {

constexpr size_t kWindows = 9;

double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

std::string Readable(double ns) {
    char text[32];
    if (ns < 1e4) {
        snprintf(text, sizeof text, "%.0f ns", ns);
    } else if (ns < 1e7) {
        snprintf(text, sizeof text, "%.1f us", ns / 1e3);
    } else {
        snprintf(text, sizeof text, "%.1f ms", ns / 1e6);
    }
    return text;
}

/// Windows take turns, and every second round goes backwards: what changes on the machine meanwhile
/// (clock, neighbours, the disk) meets all contestants alike, and nobody always comes first.
std::vector<std::vector<double>> Measure(const std::vector<Contestant>& contestants,
                                         double seconds) {
    for (const Contestant& contestant : contestants) (void)contestant.window(seconds / 2);
    std::vector<std::vector<double>> times(contestants.size());
    for (size_t round = 0; round < kWindows; ++round) {
        for (size_t turn = 0; turn < contestants.size(); ++turn) {
            const size_t who = round % 2 == 0 ? turn : contestants.size() - 1 - turn;
            times[who].push_back(contestants[who].window(seconds));
        }
    }
    return times;
}

void Report(const Race& race, const std::vector<Contestant>& contestants,
            const std::vector<std::vector<double>>& times, const std::string& results) {
    nlohmann::ordered_json line = {{"group", race.group},
                                   {"title", race.title},
                                   {"unit", race.unit},
                                   {"load", race.load},
                                   {"load_unit", race.load_unit}};
    line["goals"] = nlohmann::ordered_json::array();
    for (const Goal& goal : race.goals) {
        line["goals"].push_back({{"peer", goal.peer},
                                 {"kind", goal.kind == Goal::kCostAtMost ? "cost" : "speed"},
                                 {"limit", goal.limit}});
    }
    line["contestants"] = nlohmann::ordered_json::array();
    for (size_t who = 0; who < contestants.size(); ++who) {
        line["contestants"].push_back({{"name", contestants[who].name}, {"ns", times[who]}});
        printf("%s%s %s", who == 0 ? " " : ", ", contestants[who].name.c_str(),
               Readable(Median(times[who])).c_str());
        if (who == 0) continue;
        std::vector<double> ratios;
        for (size_t i = 0; i < kWindows; ++i) ratios.push_back(times[0][i] / times[who][i]);
        printf(" (x %.2f)", Median(ratios));
    }
    printf("\n");
    std::ofstream file(results, std::ios::app);
    file << line.dump() << '\n';
    if (!file.flush()) throw std::runtime_error("cannot write " + results);
}

bool RunHere(const Race& race, const std::string& results) {
    try {
        const std::vector<Contestant> contestants = race.prepare();
        Report(race, contestants, Measure(contestants, race.seconds), results);
        return true;
    } catch (const std::exception& failure) {
        printf(" FAILED: %s\n", failure.what());
        return false;
    }
}

}  // namespace

bool Run(const Race& race, const std::string& results, const std::string& progress) {
    printf("%s %s, %d %s:", progress.c_str(), race.title.c_str(), race.load,
           race.load_unit.c_str());
    fflush(stdout);
    // Tables, database roots and the daemon that is asked are one a process.
    const pid_t child = fork();
    if (child == 0) {
        const bool good = RunHere(race, results);
        fflush(stdout);
        _exit(good ? 0 : 1);
    }
    int status = 1;
    return child > 0 && waitpid(child, &status, 0) == child && status == 0;
}

}  // namespace bench
