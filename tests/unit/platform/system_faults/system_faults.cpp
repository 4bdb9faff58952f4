#include "system_faults.h"

#include <errno.h>
#include <poll.h>
#include <stdarg.h>
#include <stdlib.h>
#include <sys/stat.h>

#include <new>

#include "unit/platform/fault_window.h"

namespace system_faults {
Answers& Answer() {
    static Answers answers;
    return answers;
}

}  // namespace system_faults

using system_faults::Answer;

namespace {
bool Fails(const char* function) {
    if (!fault_window::Fails(function)) return false;
    errno = fault_window::Error();
    return true;
}
}  // namespace

/* SYSTEM(name, declared arguments, passed arguments): a call that may be refused. */
#define SYSTEM(name, declared, passed)                   \
    extern "C" int __real_##name declared;               \
    extern "C" int __wrap_##name declared {              \
        return Fails(#name) ? -1 : __real_##name passed; \
    }
/* The same, when the test may answer itself. */
#define ANSWERED(result, name, declared, passed)                            \
    extern "C" result __real_##name declared;                               \
    extern "C" result __wrap_##name declared {                              \
        if (Fails(#name)) return -1;                                        \
        return Answer().name ? Answer().name passed : __real_##name passed; \
    }

ANSWERED(int, socket, (int family, int type, int protocol), (family, type, protocol))
ANSWERED(int, getsockname, (int fd, sockaddr* address, socklen_t* length), (fd, address, length))
ANSWERED(int, connect, (int fd, const sockaddr* address, socklen_t length), (fd, address, length))
ANSWERED(ssize_t, recv, (int fd, void* to, size_t size, int flags), (fd, to, size, flags))
SYSTEM(bind, (int fd, const sockaddr* address, socklen_t length), (fd, address, length))
SYSTEM(listen, (int fd, int backlog), (fd, backlog))
SYSTEM(accept4, (int fd, sockaddr* address, socklen_t* length, int flags),
       (fd, address, length, flags))
SYSTEM(getsockopt, (int fd, int level, int name, void* value, socklen_t* length),
       (fd, level, name, value, length))
SYSTEM(setsockopt, (int fd, int level, int name, const void* value, socklen_t length),
       (fd, level, name, value, length))
SYSTEM(poll, (pollfd * entries, nfds_t count, int wait), (entries, count, wait))
SYSTEM(mkdir, (const char* path, mode_t mode), (path, mode))
SYSTEM(chmod, (const char* path, mode_t mode), (path, mode))
SYSTEM(lstat, (const char* path, struct stat* status), (path, status))
SYSTEM(unlink, (const char* path), (path))
SYSTEM(flock, (int fd, int operation), (fd, operation))
ANSWERED(int, pthread_setspecific, (pthread_key_t key, const void* value), (key, value))

extern "C" int __real_open(const char* path, int flags, ...);
extern "C" int __wrap_open(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const unsigned mode = va_arg(arguments, unsigned);
    va_end(arguments);
    return Fails("open") ? -1 : __real_open(path, flags, mode);
}
extern "C" void* __real_malloc(size_t size);
extern "C" void* __wrap_malloc(size_t size) {
    return Fails("malloc") ? nullptr : __real_malloc(size);
}
/* operator new(nothrow), by its name for the linker. */
extern "C" void* __real__ZnwmRKSt9nothrow_t(size_t size, const std::nothrow_t& tag);
extern "C" void* __wrap__ZnwmRKSt9nothrow_t(size_t size, const std::nothrow_t& tag) {
    return Fails("new") ? nullptr : __real__ZnwmRKSt9nothrow_t(size, tag);
}

namespace system_faults {
int RealSocket(int family, int type, int protocol) {
    return __real_socket(family, type, protocol);
}
ssize_t RealRecv(int fd, void* to, size_t size, int flags) {
    return __real_recv(fd, to, size, flags);
}
}  // namespace system_faults
