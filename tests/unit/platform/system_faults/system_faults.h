/* Every call that the transport makes, of the system and for memory, may be refused, and some are
 * answered by the test. The linker turns them here (CMakeLists.txt has the list). */
#ifndef TESTS_PLATFORM_SYSTEM_FAULTS_H
#define TESTS_PLATFORM_SYSTEM_FAULTS_H

#include <sys/socket.h>

#include <functional>

namespace system_faults {

/* What the test answers instead of the system; empty: the system answers. */
struct Answers {
    std::function<int(int family, int type, int protocol)> socket;
    std::function<int(int fd, sockaddr* address, socklen_t* length)> getsockname;
    std::function<int(int fd, const sockaddr* address, socklen_t length)> connect;
    std::function<ssize_t(int fd, void* to, size_t size, int flags)> recv;
    std::function<int(unsigned key, const void* value)> pthread_setspecific;
};
Answers& Answer();
/* The system's own. */
int RealSocket(int family, int type, int protocol);
ssize_t RealRecv(int fd, void* to, size_t size, int flags);

}  // namespace system_faults

#endif
