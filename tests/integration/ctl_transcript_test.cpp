// Golden transcripts of aaactl: each file runs against a daemon of its own on an empty database.
//
//   $ domain create corp        a command, without "aaactl" and its directories
//   ! kill                      kill the daemon with SIGKILL and start it again
//   ! write NAME                the lines up to "! end" become the file NAME
//   [1]                         an exit status other than 0, behind the output
//
// Local time is an hour east of UTC, wherever the test runs.
//
// Run with --update-transcripts to write what the commands answer now; read the difference before
// committing it.
#include <dirent.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <sstream>

#include "integration/daemon_process.h"

namespace {

using daemon_test::DaemonProcess;

const std::string kFolder = AAADOM_SOURCE_DIR "/tests/integration/transcripts/";

std::vector<std::string> Transcripts() {
    std::vector<std::string> names;
    DIR* folder = opendir(kFolder.c_str());
    if (folder == nullptr) return names;
    while (const dirent* entry = readdir(folder)) {
        const std::string name = entry->d_name;
        const std::string ending = ".transcript";
        if (name.size() > ending.size() && name.ends_with(ending)) {
            names.push_back(name.substr(0, name.size() - ending.size()));
        }
    }
    closedir(folder);
    std::sort(names.begin(), names.end());
    return names;
}

bool UpdateWanted() {
    const auto arguments = ::testing::internal::GetArgvs();
    return std::find(arguments.begin(), arguments.end(), "--update-transcripts") != arguments.end();
}

/// What a command prints, standard error included, and its status when it is not 0.
std::string RunCommand(const std::string& command, const DaemonProcess& daemon) {
    const std::string line = "cd '" + daemon.RunDir() +
                             "' && TZ=LOC-1 '" AAADOM_BINARY_DIR "/ctl/aaactl' " + "--run-dir '" +
                             daemon.RunDir() + "' " + command + " 2>&1";
    FILE* pipe = popen(line.c_str(), "r");
    std::string text;
    char buffer[4096];
    while (size_t count = fread(buffer, 1, sizeof buffer, pipe)) text.append(buffer, count);
    const int status = pclose(pipe);
    if (!text.empty() && text.back() != '\n') text += '\n';
    // The directory differs from run to run.
    for (size_t at; (at = text.find(daemon.RunDir())) != std::string::npos;) {
        text.replace(at, daemon.RunDir().size(), "RUN_DIR");
    }
    const int exit_status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    if (exit_status != 0) text += "[" + std::to_string(exit_status) + "]\n";
    return text;
}

class CtlTranscript : public ::testing::TestWithParam<std::string> {};

TEST_P(CtlTranscript, AnswersAsRecorded) {
    const std::string path = kFolder + GetParam() + ".transcript";
    std::ifstream file(path);
    std::ostringstream recorded;
    recorded << file.rdbuf();
    ASSERT_FALSE(recorded.str().empty()) << path;

    DaemonProcess daemon;
    ASSERT_TRUE(daemon.Start());
    std::istringstream lines(recorded.str());
    std::string actual;
    std::string line;
    while (std::getline(lines, line)) {
        if (line.starts_with("#") || (line.empty() && actual.ends_with("\n\n"))) {
            actual += line + "\n";
        } else if (line.starts_with("$ ")) {
            actual += line + "\n" + RunCommand(line.substr(2), daemon);
        } else if (line == "! kill") {
            actual += line + "\n";
            daemon.Kill();
            ASSERT_TRUE(daemon.Start());
        } else if (line.starts_with("! write ")) {
            actual += line + "\n";
            std::ofstream out(daemon.RunDir() + "/" + line.substr(8));
            while (std::getline(lines, line) && line != "! end") {
                out << line << "\n";
                actual += line + "\n";
            }
            actual += "! end\n";
        }
    }
    if (UpdateWanted()) {
        std::ofstream(path) << actual;
        return;
    }
    EXPECT_EQ(actual, recorded.str()) << path;
}

INSTANTIATE_TEST_SUITE_P(All, CtlTranscript, ::testing::ValuesIn(Transcripts()),
                         [](const auto& info) { return info.param; });

TEST(CtlTranscripts, AreThere) {
    EXPECT_GE(Transcripts().size(), 5u);
}

}  // namespace
