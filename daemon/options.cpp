#include "options.h"

#include <CLI/CLI.hpp>

namespace aaad {
namespace {

/// Three lists of so many records without a detail fit the run database.
constexpr uint32_t kMostRecords = 1000000;

}  // namespace

int ReadOptions(int argc, char** argv, Options& options) {
    CLI::App app("Serve the ISP-domain configuration. Runs in the foreground.", "aaad");
    app.add_option("--state-dir", options.state_dir, "Directory of the saved configuration")
        ->capture_default_str();
    app.add_option("--run-dir", options.run_dir,
                   "Directory of the sockets, the user records and the lock file")
        ->capture_default_str();
    app.add_option("--admin-group", options.admin_group,
                   "Group whose members may change the configuration, beside root and the daemon's "
                   "own user");
    app.add_option("--max-records", options.max_records,
                   "User records kept in each list; the oldest go first")
        ->check(CLI::Range(1u, kMostRecords))
        ->capture_default_str();
    app.add_flag("--verbose", options.verbose, "Write the log to standard error, too");
    app.set_version_flag("--version", "aaad 1.0.0");
    app.footer("Exit status: 0 stopped on SIGTERM, SIGINT or SIGHUP, 1 failed, 2 wrong usage");
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& answer) {
        return app.exit(answer);
    } catch (const CLI::ParseError& error) {
        (void)app.exit(error);
        return 2;
    }
    return -1;
}

}  // namespace aaad
