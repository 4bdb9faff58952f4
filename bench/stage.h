// What the benchmarks run on: a filled table in this process, and a real daemon beside it.
#pragma once

#include <aaadom/aaadom.h>

#include <functional>
#include <string>
#include <vector>

namespace bench {

inline constexpr int kDomains = 1024;

/// Fills this process's table once with 1024 domains; kFullDomain has every setting.
void FillTable();
/// Name of the n-th domain.
std::string NameOf(int n);
/// A domain with every setting, every attribute, and 36 lists of three methods.
extern const char* const kFullDomain;

/// A daemon on a temporary directory; ends with the process.
class Daemon {
  public:
    /// The one that the benchmarks share.
    static Daemon& Running();
    /// `prepare` gets the state and the run directory before the daemon starts.
    using Prepare = std::function<void(const std::string& state, const std::string& run)>;
    explicit Daemon(const Prepare& prepare = {}, std::vector<std::string> more_arguments = {});
    const std::string& Directory() const { return directory_; }
    ~Daemon();
    Daemon(const Daemon&) = delete;
    Daemon& operator=(const Daemon&) = delete;
    /// Points the requests of this process at the daemon; a new one gets them at first.
    void Attach() const;

  private:
    std::string directory_;
    int pid_ = -1;
};

}  // namespace bench
