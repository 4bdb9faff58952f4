// The lock calls of the whole test program, turned here by the linker's --wrap: initialisation and
// locking can fail on demand, and held locks are counted.
#include <pthread.h>

#include <cerrno>

#include "fakes/state.h"

extern "C" {
#define FAKE_LOCK_CALL(name, type)   \
    int __real_##name(type* object); \
    int __wrap_##name(type* object);
FAKE_LOCK_CALL(pthread_mutex_lock, pthread_mutex_t)
FAKE_LOCK_CALL(pthread_mutex_trylock, pthread_mutex_t)
FAKE_LOCK_CALL(pthread_mutex_unlock, pthread_mutex_t)
FAKE_LOCK_CALL(pthread_rwlock_rdlock, pthread_rwlock_t)
FAKE_LOCK_CALL(pthread_rwlock_wrlock, pthread_rwlock_t)
FAKE_LOCK_CALL(pthread_rwlock_unlock, pthread_rwlock_t)
#undef FAKE_LOCK_CALL
int __real_pthread_mutex_init(pthread_mutex_t* mutex, const pthread_mutexattr_t* attributes);
int __wrap_pthread_mutex_init(pthread_mutex_t* mutex, const pthread_mutexattr_t* attributes);
int __real_pthread_rwlock_init(pthread_rwlock_t* lock, const pthread_rwlockattr_t* attributes);
int __wrap_pthread_rwlock_init(pthread_rwlock_t* lock, const pthread_rwlockattr_t* attributes);
}

namespace {

template <typename T>
int Take(T* object, int (*real)(T*)) {
    if (fake::IsQuiet()) return real(object);
    if (fake::Hit(fake::Event::kLock)) return EINVAL;
    const int result = real(object);
    if (result == 0) {
        fake::NoteLock(1);
        fake::NoteLockObject(object);
    }
    return result;
}

template <typename T>
int Release(T* object, int (*real)(T*)) {
    const int result = real(object);
    if (result == 0 && !fake::IsQuiet()) fake::NoteLock(-1);
    return result;
}

}  // namespace

int __wrap_pthread_mutex_init(pthread_mutex_t* mutex, const pthread_mutexattr_t* attributes) {
    if (fake::Hit(fake::Event::kLockInit)) return ENOMEM;
    return __real_pthread_mutex_init(mutex, attributes);
}

int __wrap_pthread_rwlock_init(pthread_rwlock_t* lock, const pthread_rwlockattr_t* attributes) {
    if (fake::Hit(fake::Event::kLockInit)) return ENOMEM;
    return __real_pthread_rwlock_init(lock, attributes);
}

int __wrap_pthread_mutex_lock(pthread_mutex_t* mutex) {
    return Take(mutex, __real_pthread_mutex_lock);
}
int __wrap_pthread_mutex_trylock(pthread_mutex_t* mutex) {
    return Take(mutex, __real_pthread_mutex_trylock);
}
int __wrap_pthread_mutex_unlock(pthread_mutex_t* mutex) {
    return Release(mutex, __real_pthread_mutex_unlock);
}
int __wrap_pthread_rwlock_rdlock(pthread_rwlock_t* lock) {
    return Take(lock, __real_pthread_rwlock_rdlock);
}
int __wrap_pthread_rwlock_wrlock(pthread_rwlock_t* lock) {
    return Take(lock, __real_pthread_rwlock_wrlock);
}
int __wrap_pthread_rwlock_unlock(pthread_rwlock_t* lock) {
    return Release(lock, __real_pthread_rwlock_unlock);
}
