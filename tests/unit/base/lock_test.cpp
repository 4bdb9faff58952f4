#include "base/lock.h"

#include <gtest/gtest.h>

#include "fakes/fake_platform.h"

namespace aaadom {
namespace {

class Lock : public testing::Test {
  protected:
    Lock() { fake::Reset(); }
    ~Lock() override { fake::DisarmFailures(); }

    static AAADOM_NO_TSA int LockMutex(Mutex& mutex) { return mutex.Lock(); }
    static AAADOM_NO_TSA int UnlockMutex(Mutex& mutex) { return mutex.Unlock(); }
};

TEST_F(Lock, MutexIsUsableBeforeItsInitialisation) {
    static constinit Mutex mutex;
    EXPECT_EQ(LockMutex(mutex), 0);
    EXPECT_EQ(UnlockMutex(mutex), 0);
}

TEST_F(Lock, GuardsHoldForTheirScope) {
    Mutex mutex;
    pthread_mutex_t object = PTHREAD_MUTEX_INITIALIZER;
    const ExportedMutex exported(object);
    RwLock shared;
    RwLock exclusive;
    {
        MutexGuard a(mutex);
        ExportedMutexGuard b(exported);
        ReadGuard c(shared);
        WriteGuard d(exclusive);
        EXPECT_EQ(fake::HeldLocks(), 4);
    }
    EXPECT_EQ(fake::HeldLocks(), 0);
}

TEST_F(Lock, ReadersShareAndAWriterDoesNot) {
    RwLock lock;
    {
        ReadGuard reader(lock);
        fake::Quiet uncounted;
        EXPECT_EQ(pthread_rwlock_tryrdlock(&lock.Native()), 0);
        pthread_rwlock_unlock(&lock.Native());
        EXPECT_NE(pthread_rwlock_trywrlock(&lock.Native()), 0);
    }
    WriteGuard writer(lock);
    EXPECT_NE(pthread_rwlock_tryrdlock(&lock.Native()), 0);
}

// An unlock after a lock that failed would release a lock that somebody else holds.
TEST_F(Lock, GuardThatCouldNotLockReleasesNothing) {
    Mutex mutex;
    ASSERT_EQ(LockMutex(mutex), 0);
    fake::FailLock(1);
    { MutexGuard guard(mutex); }
    EXPECT_TRUE(fake::Tripped());
    EXPECT_EQ(fake::HeldLocks(), 1);
    UnlockMutex(mutex);
}

TEST_F(Lock, ExportedGuardThatCouldNotLockReleasesNothing) {
    pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
    pthread_mutex_lock(&mutex);
    fake::FailLock(1);
    { ExportedMutexGuard guard(ExportedMutex{mutex}); }
    EXPECT_TRUE(fake::Tripped());
    EXPECT_EQ(fake::HeldLocks(), 1);
    pthread_mutex_unlock(&mutex);
}

TEST_F(Lock, SharedGuardsThatCouldNotLockReleaseNothing) {
    RwLock lock;
    pthread_rwlock_wrlock(&lock.Native());
    fake::FailLock(1);
    { ReadGuard guard(lock); }
    EXPECT_EQ(fake::HeldLocks(), 1);
    fake::FailLock(1);
    { WriteGuard guard(lock); }
    EXPECT_EQ(fake::HeldLocks(), 1);
    pthread_rwlock_unlock(&lock.Native());
}

}  // namespace
}  // namespace aaadom
