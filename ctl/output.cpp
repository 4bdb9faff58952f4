#include "output.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "texts.h"

namespace aaactl {
namespace {

void Print(FILE* stream, const std::string& text) {
    fwrite(text.data(), 1, text.size(), stream);
    fputc('\n', stream);
}

std::string Dump(const Json& json) {
    return ToJsonTexts(json).dump(2);
}

}  // namespace

void Output::Line(const std::string& text) {
    if (json_) return;
    size_t begin = 0;
    for (size_t end; (end = text.find('\n', begin)) != std::string::npos; begin = end + 1) {
        Print(stdout, Printable(text.substr(begin, end - begin)));
    }
    Print(stdout, Printable(text.substr(begin)));
}

void Output::Result(const Json& result) {
    if (json_) Print(stdout, Dump(Json{{"ok", true}, {"result", result}}));
}

void Output::Error(const Failure& failure) {
    if (!json_) {
        Print(stderr, Printable(std::string("aaactl: ") + failure.what()));
        return;
    }
    Json error{{"exit_code", static_cast<int>(failure.exit_code)},
               {"object", failure.object},
               {"reason", failure.reason},
               {"way_out", failure.way_out}};
    if (failure.code) error["code"] = *failure.code;
    Print(stdout, Dump(Json{{"ok", false}, {"error", error}}));
}

void Output::Progress(const std::string& what, size_t done, size_t total) {
    if (json_ || isatty(STDERR_FILENO) == 0) return;
    fprintf(stderr, "\r%s: %zu of %zu%s", what.c_str(), done, total, done == total ? "\n" : "");
    fflush(stderr);
    progress_shown_ = done != total;
}

void Output::ClearProgress() {
    if (!progress_shown_) return;
    fputs("\r\033[K", stderr);
    fflush(stderr);
    progress_shown_ = false;
}

void Output::Finish() {
    errno = 0;
    if (fflush(stdout) == 0 && ferror(stdout) == 0) return;
    const std::string reason = errno != 0 ? strerror(errno) : "it was not written completely";
    throw Failure(kExitRefused, "standard output", reason,
                  "The command itself is done; write its answer where there is room");
}

}  // namespace aaactl
