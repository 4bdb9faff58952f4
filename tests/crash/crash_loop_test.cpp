// The daemon is killed at random instants. CRASH_KILLS and CRASH_SEED choose how often and which
// ones; a seed repeats the clients' changes, not the machine's timing.
#include <cstdlib>
#include <filesystem>

#include "crash_loop.h"

namespace {

uint64_t FromEnvironment(const char* name, uint64_t otherwise) {
    const char* text = getenv(name);
    return text != nullptr && *text != '\0' ? strtoull(text, nullptr, 10) : otherwise;
}

TEST(CrashLoop, WhatWasAnsweredIsThereAndNothingIsHalfDone) {
    crash::Options options;
    options.kills = static_cast<unsigned>(FromEnvironment("CRASH_KILLS", 10));
    options.seed = FromEnvironment("CRASH_SEED", std::random_device()());
    const std::string beginning =
        (std::filesystem::temp_directory_path() / "aaad-crash-XXXXXX").string();
    options.history = beginning;
    ASSERT_NE(mkdtemp(options.history.data()), nullptr);
    printf("CRASH_SEED=%llu, history in %s\n", static_cast<unsigned long long>(options.seed),
           options.history.c_str());

    const std::vector<std::string> wrong = crash::CrashLoop(options).Run();
    for (const std::string& line : wrong) ADD_FAILURE() << line;
    if (HasFailure()) {
        ADD_FAILURE() << "seed " << options.seed << "; what was sent and answered, the daemon's "
                      << "log and its databases are kept in " << options.history;
        return;
    }
    std::filesystem::remove_all(options.history);
}

}  // namespace
