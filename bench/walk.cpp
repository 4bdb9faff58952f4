// Whole walks of the scheme table through the channel, as a management station makes them: one
// request a row, three rows a domain. A full table against a quarter of it.
#include <aaadom/aaadom.h>

#include <cstring>
#include <memory>

#include "daemon.h"
#include "race.h"
#include "timing.h"

namespace bench {
namespace {

constexpr int kRowsOfDomain = 3;

/// The rows of a walk from the first to the last; -1 when it broke off.
int Walk() {
    MibSchemeRow row{};
    for (int rows = 0;; ++rows) {
        uint32_t result = DOM_OK;
        const auto length = static_cast<uint32_t>(strlen(row.domain_name));
        if (MOR_GetMibSchemeTable(row.domain_name, length, row.scheme_index, DOM_OP_GET_NEXT, &row,
                                  &result) != DOM_OK) {
            return -1;
        }
        if (result != DOM_OK) return rows;
    }
}

/// A window is one walk; nanoseconds a row.
Window Walks(int domains) {
    auto daemon = std::make_shared<DaemonStage>(domains, Size::kSmall);
    daemon->Start();
    return [=](double) {
        daemon->Attach();
        const int rows = domains * kRowsOfDomain;
        const auto start = Clock::now();
        Demand(Walk() == rows, "walking over all rows");
        return SecondsSince(start) * 1e9 / rows;
    };
}

}  // namespace

void AddWalkRaces(const Extent&, std::vector<Race>& races) {
    races.push_back({"walk",
                     "Walk the scheme table through the daemon",
                     "row",
                     DOM_MAX_DOMAINS,
                     "domains",
                     {{"256 domains", Goal::kCostAtMost, 1.15}},
                     0,
                     []() -> std::vector<Contestant> {
                         return {{"1024 domains", Walks(DOM_MAX_DOMAINS)},
                                 {"256 domains", Walks(DOM_MAX_DOMAINS / 4)}};
                     }});
}

}  // namespace bench
