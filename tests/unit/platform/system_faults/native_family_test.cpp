// Where the system has the native family, it is used; where its number belongs to another, not. The
// look is done once a process, so each test is a process of its own.
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "system_faults.h"
#include "unit/platform/lipc/runtime_dir.h"

namespace {

using system_faults::Answer;
using system_faults::RealSocket;

class NativeFamily : public LipcTest {
  protected:
    // The program anew, for nothing but work(), which gives its exit status.
    template <class Work>
    static void ExpectInFreshProcess(int status, Work work) {
        GTEST_FLAG_SET(death_test_style, "threadsafe");
        EXPECT_EXIT(_exit(work()), testing::ExitedWithCode(status), "");
    }
    // The system opens something for family 37 that gives itself this address.
    static void FamilyExists(LIPC_ADDRESS own, socklen_t length) {
        Answer().socket = [](int family, int type, int protocol) {
            if (family != 37) return RealSocket(family, type, protocol);
            last_type = type;
            return RealSocket(AF_UNIX, SOCK_SEQPACKET, 0);
        };
        Answer().getsockname = [=](int, sockaddr* address, socklen_t* room) {
            if (length == 0) {
                errno = ENOTSOCK;
                return -1;
            }
            memcpy(address, &own, std::min<size_t>(length, *room));
            *room = length;
            return 0;
        };
        Answer().connect = [](int, const sockaddr* address, socklen_t size) {
            if (size == sizeof connected_to) memcpy(&connected_to, address, size);
            last_family = size == sizeof connected_to ? 37 : address->sa_family;
            return 0;
        };
    }
    // The family that a connection goes through.
    static int FamilyInUse() {
        const int32_t fd = Socket();
        if (fd < 0 || Connect(fd) != 0) return -1;
        LIPC_Close(fd);
        return last_family;
    }

    static constexpr LIPC_ADDRESS kOwn{16, 37, 0, 0, {}};
    static inline int last_type = 0;
    static inline int last_family = 0;
    static inline LIPC_ADDRESS connected_to{};
};

TEST_F(NativeFamily, IsUsedWhereItExists) {
    ExpectInFreshProcess(0, [] {
        FamilyExists(kOwn, sizeof kOwn);
        errno = 99;
        const int32_t fd = Socket();
        if (fd < 0 || errno != 99) return 1;
        if (last_type != (2 | SOCK_CLOEXEC)) return 2;
        if (Connect(fd) != 0) return 3;
        return memcmp(&connected_to, &kAddress, sizeof kAddress) == 0 ? 0 : 4;
    });
}

TEST_F(NativeFamily, ServesNoEndpointThere) {
    ExpectInFreshProcess(0, [] {
        FamilyExists(kOwn, sizeof kOwn);
        return Serve() == -1 && errno == EOPNOTSUPP ? 0 : 1;
    });
}

TEST_F(NativeFamily, NumberOfAnotherFamilyIsNotUsed) {
    constexpr LIPC_ADDRESS kOtherLength{15, 37, 0, 0, {}}, kOtherFamily{16, 36, 0, 0, {}};
    const std::pair<LIPC_ADDRESS, socklen_t> others[] = {
        {kOwn, 0}, {kOwn, 2}, {kOtherLength, 16}, {kOtherFamily, 16}};
    for (const auto& [own, length] : others) {
        ExpectInFreshProcess(AF_UNIX, [&] {
            FamilyExists(own, length);
            return FamilyInUse();
        });
    }
}

}  // namespace
