// Importing a configuration in one go: `aaactl config import` on an empty daemon, where each change
// is durable before the next one is sent. The peer commits the same number of durable changes to
// raw LMDB one after the other: the cost that no importer with this promise can avoid.
#include <aaadom/aaadom.h>
#include <aaadom/db_layout.h>

#include <memory>

#include "daemon.h"
#include "race.h"
#include "store.h"
#include "timing.h"

namespace bench {
namespace {

uint64_t Commits(const DaemonStage& daemon) {
    return LmdbTransactions(daemon.State() + "/" DOM_DB_DATABASE);
}

struct Stage {
    explicit Stage(int count) : domains(count) {
        DaemonStage full(domains, Size::kTypical);
        full.Start();
        Execute({AAACTL_PATH, "--run-dir", full.RunDir(), "config", "export", File()});
        FillTable(domains, Size::kTypical);
        values = EncodedDomains(domains);
    }
    std::string File() const { return directory.Path() + "/domains.json"; }
    int domains;
    Directory directory{"import"};
    std::vector<std::string> values;
    uint64_t commits = 0;  // of the last import
};

Window Import(std::shared_ptr<Stage> stage) {
    return [=](double) {
        DaemonStage daemon;
        daemon.Start();
        const uint64_t before = Commits(daemon);
        const auto start = Clock::now();
        Execute({AAACTL_PATH, "--run-dir", daemon.RunDir(), "config", "import", stage->File()});
        const double seconds = SecondsSince(start);
        uint32_t count = 0;
        Demand(
            MOR_GetDomainCount(&count) == DOM_OK && count == static_cast<uint32_t>(stage->domains),
            "importing all domains");
        stage->commits = Commits(daemon) - before;
        return seconds * 1e9 / stage->domains;
    };
}

Window CommitAsOften(std::shared_ptr<Stage> stage) {
    return [=](double) {
        const Directory directory("peer");
        const auto store = MakeLmdbStore(directory.Path());
        const auto domains = static_cast<uint64_t>(stage->domains);
        Demand(stage->commits >= domains, "counting the import's commits");
        const auto start = Clock::now();
        for (uint64_t n = 0; n < stage->commits; ++n) {
            store->Put(0, static_cast<uint32_t>(n % domains), stage->values[n % domains]);
        }
        return SecondsSince(start) * 1e9 / stage->domains;
    };
}

std::vector<Contestant> Prepare(int domains) {
    auto stage = std::make_shared<Stage>(domains);
    return {{"aaactl config import", Import(stage)}, {"raw LMDB commits", CommitAsOften(stage)}};
}

}  // namespace

void AddImportRaces(const Extent& extent, std::vector<Race>& races) {
    for (int domains : extent.Loads()) {
        // Each of the nine windows of a full table syncs some thousand times, twice.
        if (extent.quick && domains > 64) continue;
        races.push_back({"import",
                         "Import typical domains with aaactl",
                         "domain",
                         domains,
                         "domains",
                         {},
                         0,
                         [=] { return Prepare(domains); }});
    }
}

}  // namespace bench
