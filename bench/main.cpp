// Runs every race and writes what it measured, a line of JSON a race. Usage: see Usage().
#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "race.h"
#include "workspace.h"

namespace {

int Usage() {
    fprintf(stderr,
            "usage: aaadom_bench [--quick] [--only GROUP] RESULTS_FILE\n"
            "  --quick  short windows; smallest and largest load only where a daemon is asked\n"
            "  --only   the races whose group begins so: find, encode, decode, get, set, records,\n"
            "           pages, start, import, walk\n"
            "The files of the databases go below $BENCH_DIR, /var/tmp when it is not set.\n");
    return 2;
}

}  // namespace

int main(int argc, char** argv) {
    bench::Extent extent;
    std::string only;
    std::string results;
    for (int i = 1; i < argc; ++i) {
        if (strcmp(argv[i], "--quick") == 0) {
            extent.quick = true;
        } else if (strcmp(argv[i], "--only") == 0 && i + 1 < argc) {
            only = argv[++i];
        } else if (argv[i][0] != '-' && results.empty()) {
            results = argv[i];
        } else {
            return Usage();
        }
    }
    if (results.empty()) return Usage();
    std::vector<bench::Race> all;
    bench::AddFindRaces(extent, all);
    bench::AddCodecRaces(extent, all);
    bench::AddGetRaces(extent, all);
    bench::AddDurableRaces(extent, all);
    bench::AddRecordRaces(extent, all);
    bench::AddRecordPageRaces(extent, all);
    bench::AddColdStartRaces(extent, all);
    bench::AddImportRaces(extent, all);
    bench::AddWalkRaces(extent, all);
    std::erase_if(all, [&](const bench::Race& race) { return !race.group.starts_with(only); });

    const int fd = open(results.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (fd < 0) {
        perror(results.c_str());
        return 1;
    }
    close(fd);
    (void)bench::WorkspaceRoot();
    const auto start = std::chrono::steady_clock::now();
    size_t number = 0;
    size_t failed = 0;
    for (const bench::Race& race : all) {
        const auto seconds =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        char progress[48];
        snprintf(progress, sizeof progress, "[%zu/%zu %.0f s]", ++number, all.size(), seconds);
        failed += bench::Run(race, results, progress) ? 0 : 1;
    }
    bench::RemoveWorkspace();
    if (failed != 0) fprintf(stderr, "aaadom_bench: %zu of %zu races failed\n", failed, all.size());
    return failed == 0 ? 0 : 1;
}
