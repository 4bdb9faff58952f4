// Who may change the configuration.
#pragma once

#include <platform/lipc.h>
#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>

namespace aaad {

/// Root, the daemon's own user, and the members of one group. Used by one thread.
class Administrators {
  public:
    /// `group_name` empty: no group. Throws Failure for a group that the system does not know.
    explicit Administrators(const std::string& group_name);

    bool MayChange(const LIPC_PEER& peer);

  private:
    bool IsMember(uid_t user);

    struct Answer {
        bool member;
        int64_t valid_until;  // seconds of the monotonic clock
    };

    const uid_t own_user_;
    std::optional<gid_t> group_;
    std::unordered_map<uid_t, Answer> answers_;
};

}  // namespace aaad
