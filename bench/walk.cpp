// Whole walks of the scheme table through the channel, as a management station makes them: one
// request a row, three rows a domain. A full table against a quarter of it.
#include <benchmark/benchmark.h>

#include <cstring>

#include "stage.h"

namespace bench {
namespace {

constexpr int kQuarter = kDomains / 4;
constexpr int kRowsOfDomain = 3;

/// A daemon of its own with this number of domains.
class FilledDaemon : public Daemon {
  public:
    explicit FilledDaemon(int domains) {
        uint32_t count = 0;
        if (MOR_GetDomainCount(&count) != DOM_OK) return;
        for (int n = static_cast<int>(count); n < domains; ++n) {
            uint32_t result = 1;
            const std::string name = "walk" + std::to_string(n) + ".example.net";
            if (MOR_SetDomainName(name.c_str(), DOM_OP_SET, &result) != DOM_OK) return;
        }
        complete_ = true;
    }
    bool IsComplete() const { return complete_; }

  private:
    bool complete_ = false;
};

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

void WalkSchemeRows(benchmark::State& state, int domains, const FilledDaemon& daemon) {
    daemon.Attach();
    if (!daemon.IsComplete()) state.SkipWithError("domains are missing");
    for (auto _ : state) {
        // The first domain of a daemon has three rows like any other.
        if (Walk() != domains * kRowsOfDomain) state.SkipWithError("rows are missing");
    }
    state.SetItemsProcessed(state.iterations() * domains * kRowsOfDomain);
    Daemon::Running().Attach();
}

void WalkFullTable(benchmark::State& state) {
    static const FilledDaemon daemon(kDomains);
    WalkSchemeRows(state, kDomains, daemon);
}
BENCHMARK(WalkFullTable)->UseRealTime();

void WalkQuarterTable(benchmark::State& state) {
    static const FilledDaemon daemon(kQuarter);
    WalkSchemeRows(state, kQuarter, daemon);
}
BENCHMARK(WalkQuarterTable)->UseRealTime();

}  // namespace
}  // namespace bench
