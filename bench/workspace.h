// Where the measurements keep their files, and how they start programs beside them.
#pragma once

#include <sys/types.h>

#include <functional>
#include <string>
#include <vector>

namespace bench {

/// The run's directory below $BENCH_DIR (default /var/tmp); made at the first call.
const std::string& WorkspaceRoot();
/// Removes it with all that is left in it.
void RemoveWorkspace();

/// A directory below the root, gone with its object.
class Directory {
  public:
    explicit Directory(const char* name);
    ~Directory();
    Directory(const Directory&) = delete;
    Directory& operator=(const Directory&) = delete;
    const std::string& Path() const { return path_; }

  private:
    std::string path_;
};

/// Starts a program that ends with this process at the latest. Its output goes to /dev/null.
pid_t Start(const std::vector<std::string>& arguments);
/// Starts a program and waits for it; throws when it did not succeed.
void Execute(const std::vector<std::string>& arguments);
/// Ends a program that Start began.
void Stop(pid_t pid);
/// Does the work in a process of its own; throws when it threw.
void InChild(const std::function<void()>& work);

/// Throws a failure that names `what` unless it is good.
void Demand(bool good, const char* what);

/// Writes the file to the disk and drops it from the page cache.
void DropFromCache(const std::string& file);

}  // namespace bench
