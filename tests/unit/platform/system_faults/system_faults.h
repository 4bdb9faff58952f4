/* Refuses one call that the transport makes: of the system, for memory. The linker turns those
 * calls here (CMakeLists.txt has the list). */
#ifndef TESTS_PLATFORM_SYSTEM_FAULTS_H
#define TESTS_PLATFORM_SYSTEM_FAULTS_H

#include <sys/socket.h>

#include <functional>
#include <string>

namespace system_faults {

/* While one lives, the calls of this thread are counted and the given one fails with the error;
 * 0 lets all pass. With a name only calls of that function count. */
class Window {
  public:
    Window(int failing_call, int error, const char* only = nullptr);
    ~Window();
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    static int Calls();
};
/* The function that was refused. */
const char* Refused();

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
