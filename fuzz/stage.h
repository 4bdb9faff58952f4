// What the targets share: the tables of both thread roles and both databases, on LMDB in memory.
#pragma once

#include <platform/dbm.h>

#include <cstdint>
#include <string>

namespace fuzz {

/// A directory of this process on a file system in memory; removed when the process ends.
const std::string& TemporaryDirectory();

/// Empty tables in both roles, unless the input makes them, and empty databases, for one input. The
/// databases stay open from one input to the next: everything between is one transaction that is
/// given up, so that no input sees what another one wrote and nothing is ever synced. There is one
/// stage at a time.
class Stage {
  public:
    enum class Tables { kEmpty, kNone };
    explicit Stage(Tables tables = Tables::kEmpty);
    ~Stage();
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    DBM_HANDLE Configuration() const;
    DBM_HANDLE Records() const;
    /// The calling thread's role from now on: 0 working, 1 configuration.
    static void TakeRole(uint32_t role);

  private:
    const Tables tables_;
};

}  // namespace fuzz
