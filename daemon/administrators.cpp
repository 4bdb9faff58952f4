#include "administrators.h"

#include <grp.h>
#include <pwd.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <vector>

#include "failure.h"

namespace aaad {
namespace {

// Asking the user database may mean asking a server. An answer is kept so long that a burst of
// requests asks once, and so short that a member who leaves the group is out soon.
constexpr int64_t kAnswerSeconds = 5;
constexpr size_t kMaxAnswers = 1024;

int64_t Now() {
    timespec now{};
    (void)clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec;
}

/// Calls a reentrant look-up with a growing buffer; the entry, or null.
template <typename Entry, typename Lookup>
Entry* FindEntry(Entry& entry, std::vector<char>& buffer, Lookup lookup) {
    constexpr size_t kLargest = 1u << 20;
    for (buffer.resize(1024); buffer.size() <= kLargest; buffer.resize(buffer.size() * 2)) {
        Entry* found = nullptr;
        const int error = lookup(&entry, buffer.data(), buffer.size(), &found);
        if (error != ERANGE) return error == 0 ? found : nullptr;
    }
    return nullptr;
}

}  // namespace

Administrators::Administrators(const std::string& group_name) : own_user_(geteuid()) {
    if (group_name.empty()) return;
    struct group entry {};
    std::vector<char> buffer;
    const struct group* found =
        FindEntry(entry, buffer, [&](auto* into, char* bytes, size_t size, auto** result) {
            return getgrnam_r(group_name.c_str(), into, bytes, size, result);
        });
    if (found == nullptr) {
        throw Failure("administrators' group \"" + group_name + "\"",
                      "the system knows no such group",
                      "Create it with groupadd, or start without --admin-group");
    }
    group_ = found->gr_gid;
}

bool Administrators::MayChange(const LIPC_PEER& peer) {
    if (peer.uid == 0 || peer.uid == own_user_) return true;
    if (!group_) return false;
    if (peer.gid == *group_) return true;

    const int64_t now = Now();
    const auto known = answers_.find(peer.uid);
    if (known != answers_.end() && now < known->second.valid_until) return known->second.member;
    if (answers_.size() >= kMaxAnswers) answers_.clear();
    const bool member = IsMember(peer.uid);
    answers_[peer.uid] = {member, now + kAnswerSeconds};
    return member;
}

bool Administrators::IsMember(uid_t user) {
    struct passwd entry {};
    std::vector<char> buffer;
    const struct passwd* found =
        FindEntry(entry, buffer, [&](auto* into, char* bytes, size_t size, auto** result) {
            return getpwuid_r(user, into, bytes, size, result);
        });
    if (found == nullptr) return false;
    int count = 64;
    std::vector<gid_t> groups(count);
    while (getgrouplist(found->pw_name, found->pw_gid, groups.data(), &count) < 0) {
        if (count <= static_cast<int>(groups.size())) return false;
        groups.resize(count);
    }
    groups.resize(count);
    return std::find(groups.begin(), groups.end(), *group_) != groups.end();
}

}  // namespace aaad
