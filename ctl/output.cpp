#include "output.h"

#include <unistd.h>

#include <cstdio>

namespace aaactl {
namespace {

void Print(FILE* stream, const std::string& text) {
    fwrite(text.data(), 1, text.size(), stream);
    fputc('\n', stream);
}

std::string Dump(const Json& json) {
    return json.dump(2, ' ', false, Json::error_handler_t::replace);
}

}  // namespace

void Output::Line(const std::string& text) {
    if (!json_) Print(stdout, text);
}

void Output::Result(const Json& result) {
    if (json_) Print(stdout, Dump(Json{{"ok", true}, {"result", result}}));
}

void Output::Error(const Failure& failure) {
    if (!json_) {
        Print(stderr, std::string("aaactl: ") + failure.what());
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
}

std::string Printable(const std::string& text) {
    std::string shown;
    for (unsigned char c : text) {
        if (c >= 0x20 && c != 0x7F) {
            shown += static_cast<char>(c);
        } else {
            char escaped[5];
            snprintf(escaped, sizeof escaped, "\\x%02x", c);
            shown += escaped;
        }
    }
    return shown;
}

}  // namespace aaactl
