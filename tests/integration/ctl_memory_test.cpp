// Once aaactl was aborted when memory ran out before the command was known.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "daemon_process.h"

using namespace daemon_test;

namespace {

class CtlMemory : public ::testing::Test {
  protected:
    /// Runs aaactl --help with so many KiB of address space; the shell's status.
    int Run(int kibibytes) {
        const std::string command =
            "ulimit -v " + std::to_string(kibibytes) +
            " && exec " AAADOM_BINARY_DIR "/ctl/aaactl --help >/dev/null 2>" + Errors();
        std::filesystem::create_directories(daemon_.RunDir());
        return std::system(command.c_str());
    }
    std::string Told() const {
        std::ifstream file(Errors());
        return std::string(std::istreambuf_iterator<char>(file), {});
    }

  private:
    std::string Errors() const { return daemon_.RunDir() + "/errors"; }

    DaemonProcess daemon_;  // for its directories
};

TEST_F(CtlMemory, WantOfMemoryAtTheStartIsTold) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "the sanitizers take more address space than any limit leaves";
#endif
    constexpr int kMost = 256 * 1024;
    int enough = 4 * 1024;
    while (enough < kMost && Run(enough) != 0) enough += 256;
    ASSERT_LT(enough, kMost);
    // Below the first limit that main runs with, the loader and the libraries' own objects fail.
    int told = 0;
    for (int limit = enough - 1024; limit < enough; limit += 16) {
        const int status = Run(limit);
        ASSERT_TRUE(WIFEXITED(status) || told == 0) << "aborted with " << limit << " KiB";
        if (!WIFEXITED(status) || WEXITSTATUS(status) != 1) continue;
        EXPECT_NE(Told().find("out of memory"), std::string::npos) << Told();
        ++told;
    }
    EXPECT_GT(told, 0);
}

}  // namespace
