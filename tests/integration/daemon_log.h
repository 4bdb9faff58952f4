// What a daemon writes to its terminal.
#pragma once

#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <string>

#include "daemon_process.h"

namespace daemon_test {

/// A test that starts its daemon with the lines in a file, which lies beside the daemon's
/// directories: they may be full or not there yet.
template <class Test>
class WithLog : public Test {
  protected:
    bool StartWithLog(const std::function<void()>& in_child = {}) {
        const std::string path = LogPath();
        return this->daemon_.Start({}, [&] {
            if (freopen(path.c_str(), "w", stderr) == nullptr) _exit(126);
            if (in_child) in_child();
        });
    }
    /// How many lines since that start hold the text.
    int LinesWith(const std::string& text) const {
        std::ifstream file(LogPath());
        EXPECT_TRUE(file.is_open());
        int lines = 0;
        for (std::string line; std::getline(file, line);) {
            lines += line.find(text) != std::string::npos;
        }
        return lines;
    }

    std::string LogPath() const { return this->daemon_.StateDir() + ".log"; }
};

using DaemonTestWithLog = WithLog<DaemonTest>;

}  // namespace daemon_test
