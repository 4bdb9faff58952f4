// The command line of aaad: what stands in docs/daemon.md and in its manual.
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "daemon_process.h"

using namespace daemon_test;

namespace {

class DaemonOptions : public ::testing::Test {
  protected:
    /// Runs a daemon that cannot start: 2 when it refused the words, 1 when it went on with them.
    int Run(std::vector<std::string> words) {
        const std::string nowhere = daemon_.StateDir() + "/missing/";
        words.insert(words.end(), {"--state-dir", nowhere + "state"});
        return daemon_.RunToEnd(words, error_);
    }
    /// The words of a daemon whose run directory has a path of so many characters, and whose
    /// database cannot be opened.
    std::string RunIn(size_t length) {
        std::filesystem::create_directories(daemon_.StateDir());
        std::filesystem::create_directories(daemon_.RunDir());
        std::ofstream(daemon_.StateDir() + "/DOM_DB") << "no directory";
        std::string run_dir = daemon_.RunDir() + "/";
        EXPECT_LT(run_dir.size(), length);
        run_dir.resize(length, 'r');
        EXPECT_EQ(
            daemon_.RunToEnd({"--state-dir", daemon_.StateDir(), "--run-dir", run_dir}, error_), 1);
        return error_;
    }
    static std::string Help() {
        std::string text;
        FILE* help = popen(AAADOM_BINARY_DIR "/daemon/aaad --help", "r");
        if (help == nullptr) return text;
        char piece[512];
        while (fgets(piece, sizeof piece, help) != nullptr) text += piece;
        EXPECT_EQ(pclose(help), 0);
        return text;
    }

    DaemonProcess daemon_;
    std::string error_;
};

TEST_F(DaemonOptions, OneToAMillionRecordsAreKept) {
    EXPECT_EQ(Run({"--max-records", "1"}), 1);
    EXPECT_EQ(Run({"--max-records", "1000000"}), 1);
    EXPECT_EQ(Run({"--max-records", "0"}), 2);
    EXPECT_EQ(Run({"--max-records", "1000001"}), 2);
    EXPECT_EQ(Run({"--max-records", "many"}), 2);
}

TEST_F(DaemonOptions, ARunDirectoryHasAtMost87Characters) {
    EXPECT_EQ(RunIn(87).find("too long"), std::string::npos) << error_;
    EXPECT_NE(error_.find("configuration database below"), std::string::npos) << error_;
    EXPECT_NE(RunIn(88).find("too long"), std::string::npos) << error_;
}

TEST_F(DaemonOptions, HelpTellsTheDefaults) {
    const std::string help = Help();
    for (const char* word : {"/var/lib/aaad", "/run/aaad", "32768"}) {
        EXPECT_NE(help.find(word), std::string::npos) << word << " in\n" << help;
    }
}

TEST_F(DaemonOptions, UnknownWordsAreWrongUsage) {
    EXPECT_EQ(Run({"--unknown"}), 2);
    EXPECT_EQ(Run({"word"}), 2);
    EXPECT_EQ(Run({"--admin-group"}), 2);
}

}  // namespace
