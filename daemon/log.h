// The daemon's one way to say something: the system log and, with --verbose, the terminal.
#pragma once

#include <cstdint>

namespace aaad {

enum class Severity { kError, kWarning, kNotice, kInfo };

/// Copies every line to standard error from now on.
void LogToTerminal();

/// One line of at most 1023 characters. From any thread.
__attribute__((format(printf, 2, 3))) void Log(Severity severity, const char* format, ...);

/// Lets a few lines a second through, so that a peer that repeats a mistake cannot fill the log.
/// Used by one thread.
class LogLimit {
  public:
    /// Whether a line may be written now; `suppressed_out` tells how many were not since the last.
    [[nodiscard]] bool Allows(uint32_t& suppressed_out);

  private:
    int64_t second_ = 0;
    uint32_t lines_ = 0;
    uint32_t suppressed_ = 0;
};

}  // namespace aaad
