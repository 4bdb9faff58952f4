#include "config_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <sstream>

#include "config_document.h"
#include "texts.h"

namespace aaactl {
namespace {

std::string ReadAll(std::istream& stream) {
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

[[noreturn]] void RefuseFile(const std::string& path, int error) {
    RefuseUsage("file \"" + path + "\"", strerror(error),
                "Give a file that can be written, on a disk with room");
}

void WriteAll(const std::string& path, int flags, const std::string& text) {
    const int fd = open(path.c_str(), O_WRONLY | O_CLOEXEC | flags, 0644);
    if (fd < 0) RefuseFile(path, errno);
    size_t written = 0;
    int error = 0;
    while (error == 0 && written < text.size()) {
        const ssize_t count = write(fd, text.data() + written, text.size() - written);
        if (count > 0) {
            written += static_cast<size_t>(count);
        } else if (count == 0 || errno != EINTR) {
            error = count == 0 ? ENOSPC : errno;
        }
    }
    // Pipes and terminals cannot be synced and need not be.
    if (error == 0 && fsync(fd) != 0 && errno != EINVAL && errno != EROFS) error = errno;
    if (close(fd) != 0 && error == 0) error = errno;
    if (error != 0) RefuseFile(path, error);
}

}  // namespace

Json LoadConfig(const std::string& path) {
    std::string text;
    errno = 0;
    if (path == "-") {
        text = ReadAll(std::cin);
    } else {
        std::ifstream file(path);
        if (file) text = ReadAll(file);
        // A directory opens like a file and fails when it is read.
        if (!file.is_open() || text.empty()) {
            RefuseUsage("file \"" + path + "\"", errno != 0 ? strerror(errno) : "it is empty",
                        "Give a file that aaactl config export wrote");
        }
    }
    Json document;
    try {
        document = Json::parse(text);
    } catch (const Json::parse_error& error) {
        RefuseUsage("file \"" + path + "\"",
                    "it is no JSON, byte " + std::to_string(error.byte) + " cannot be read",
                    "Give a file that aaactl config export wrote");
    }
    document = FromJsonTexts(document);
    CheckConfig(document);
    return document;
}

void WriteConfigFile(const std::string& path, const std::string& text) {
    struct stat status {};
    const bool exists = lstat(path.c_str(), &status) == 0;
    if (exists && !S_ISREG(status.st_mode)) {
        WriteAll(path, O_TRUNC, text);
        return;
    }
    const std::string unfinished = path + ".unfinished";
    (void)unlink(unfinished.c_str());
    try {
        WriteAll(unfinished, O_CREAT | O_EXCL | O_NOFOLLOW, text);
    } catch (const Failure&) {
        (void)unlink(unfinished.c_str());
        throw;
    }
    if (exists) (void)chmod(unfinished.c_str(), status.st_mode & 07777);
    if (rename(unfinished.c_str(), path.c_str()) != 0) {
        const int error = errno;
        (void)unlink(unfinished.c_str());
        RefuseFile(path, error);
    }
}

}  // namespace aaactl
