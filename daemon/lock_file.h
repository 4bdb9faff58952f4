// Keeps a second daemon away from a directory.
#pragma once

#include <string>

namespace aaad {

/// Creates a directory with the permissions `mode` unless it exists; its parent must exist.
void MakeDirectory(const std::string& path, unsigned mode);

/// `<directory>/aaad.lock`, locked while the object lives. It holds the owner's process id for
/// people; the lock itself ends with the process, however that ends, so a file left behind means
/// nothing.
class LockFile {
  public:
    /// Throws Failure when another process holds the lock or the file cannot be made.
    explicit LockFile(const std::string& directory);
    ~LockFile();
    LockFile(const LockFile&) = delete;
    LockFile& operator=(const LockFile&) = delete;

  private:
    int fd_;
};

}  // namespace aaad
