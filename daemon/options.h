// The daemon's command line.
#pragma once

#include <cstdint>
#include <string>

namespace aaad {

struct Options {
    std::string state_dir = "/var/lib/aaad";
    std::string run_dir = "/run/aaad";
    std::string admin_group;
    uint32_t max_records = 32768;  // of each list
    bool verbose = false;
};

/// Reads the command line into `options`. Returns -1 to go on, else the exit code: 0 after --help
/// or
/// --version, 2 after wrong usage; the answer is printed.
int ReadOptions(int argc, char** argv, Options& options);

}  // namespace aaad
