// From the start of the process to its readiness, with many large domains saved: the daemon until
// its first answer (both tables filled), against programs that only read the same domains to
// memory. Once with the database files in the page cache, once without.
#include <aaadom/aaadom.h>

#include <filesystem>
#include <memory>

#include "daemon.h"
#include "race.h"
#include "sqlite_domains.h"
#include "store.h"
#include "timing.h"

namespace bench {
namespace {

struct Stage {
    explicit Stage(int count) : domains(count), daemon(count, Size::kLarge) {
        // In a child, because it syncs nothing and keeps no file open that the caches would hold.
        InChild([this] {
            FillTable(domains, Size::kLarge);
            const auto values = EncodedDomains(domains);
            const auto store = MakeLmdbStore(lmdb.Path());
            std::vector<const DomainInfo*> records;
            for (int n = 0; n < domains; ++n) {
                store->Put(0, static_cast<uint32_t>(n), values[static_cast<size_t>(n)]);
                records.push_back(DOM_FindDomainByName(NameOf(n).c_str()));
            }
            Demand(SaveToSqlite(SqliteFile(), records), "saving domains in SQLite");
        });
        // What the first start on a database adds to it is not part of the others.
        daemon.Start();
        daemon.Stop();
    }
    std::string SqliteFile() const { return sqlite.Path() + "/domains.sqlite"; }
    int domains;
    DaemonStage daemon;
    Directory lmdb{"peer"};
    Directory sqlite{"peer"};
};

void DropDirectory(const std::string& directory) {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(directory)) {
        if (entry.is_regular_file()) DropFromCache(entry.path());
    }
}

Window StartDaemon(std::shared_ptr<Stage> stage, bool cold) {
    return [=](double) {
        if (cold) DropDirectory(stage->daemon.State());
        const auto start = Clock::now();
        stage->daemon.Start();
        const double seconds = SecondsSince(start);
        uint32_t count = 0;
        Demand(
            MOR_GetDomainCount(&count) == DOM_OK && count == static_cast<uint32_t>(stage->domains),
            "loading all domains");
        stage->daemon.Stop();
        return seconds * 1e9 / stage->domains;
    };
}

Window StartLoader(std::shared_ptr<Stage> stage, bool cold, const char* kind,
                   const std::string& directory, const std::string& source) {
    return [=](double) {
        if (cold) DropDirectory(directory);
        const auto start = Clock::now();
        Execute({LOADER_PATH, kind, source, std::to_string(stage->domains)});
        return SecondsSince(start) * 1e9 / stage->domains;
    };
}

std::vector<Contestant> Prepare(int domains, bool cold) {
    auto stage = std::make_shared<Stage>(domains);
    const std::string lmdb = stage->lmdb.Path();
    return {{"aaad", StartDaemon(stage, cold)},
            {"raw LMDB scan and copy", StartLoader(stage, cold, "lmdb", lmdb, lmdb)},
            {"SQLite select",
             StartLoader(stage, cold, "sqlite", stage->sqlite.Path(), stage->SqliteFile())}};
}

}  // namespace

void AddColdStartRaces(const Extent& extent, std::vector<Race>& races) {
    for (bool cold : {false, true}) {
        for (int domains : extent.DaemonLoads()) {
            races.push_back({cold ? "start-cold" : "start-warm",
                             cold ? "Start with large domains, files not in the page cache"
                                  : "Start with large domains, files in the page cache",
                             "domain",
                             domains,
                             "domains",
                             {{"raw LMDB scan and copy", Goal::kCostAtMost, 1.5}},
                             0,
                             [=] { return Prepare(domains, cold); }});
        }
    }
}

}  // namespace bench
