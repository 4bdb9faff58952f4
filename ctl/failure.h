// What a person is told when a command fails: the object, the reason and the way out.
#pragma once

#include <cstdint>
#include <exception>
#include <optional>
#include <string>

namespace aaactl {

enum ExitCode { kExitDone = 0, kExitRefused = 1, kExitUsage = 2, kExitUnreachable = 3 };

struct Failure : std::exception {
    Failure(ExitCode exit_code, std::string object, std::string reason, std::string way_out,
            std::optional<uint32_t> code = std::nullopt);
    const char* what() const noexcept override { return text_.c_str(); }

    ExitCode exit_code;
    std::string object;
    std::string reason;
    std::string way_out;
    std::optional<uint32_t> code;  // the daemon's result

  private:
    std::string text_;
};

/// A value on the command line or in a file that the library would cut or refuse.
[[noreturn]] void RefuseUsage(std::string object, std::string reason, std::string way_out);

}  // namespace aaactl
