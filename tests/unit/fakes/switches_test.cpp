#include <gtest/gtest.h>
#include <platform/aaa_tlv.h>
#include <platform/hash.h>
#include <pthread.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

#include "fakes/fake_platform.h"

namespace {

class FakeSwitches : public ::testing::Test {
  protected:
    void SetUp() override { fake::Reset(); }
    void TearDown() override { fake::Reset(); }
};

// Keeps the compiler from optimising an allocation away.
void* volatile kept;

void FreeKept(void* block) {
    kept = block;
    std::free(block);
}

bool MallocWorks() {
    void* block = std::malloc(16);
    FreeKept(block);
    return kept != nullptr;
}

TEST_F(FakeSwitches, TheNthAllocationFailsOnceAndTheNextSucceeds) {
    fake::FailAllocation(2);
    const bool first = MallocWorks();
    const bool second = MallocWorks();
    const bool third = MallocWorks();
    EXPECT_TRUE(first);
    EXPECT_FALSE(second);
    EXPECT_TRUE(third);
    EXPECT_TRUE(fake::Tripped());
}

TEST_F(FakeSwitches, EveryAllocationCallIsSeen) {
    char text[] = "text";
    const auto before = fake::Count(fake::Event::kAllocation);
    FreeKept(std::calloc(1, 8));
    FreeKept(std::realloc(std::malloc(8), 400));
    FreeKept(strdup(text));
    FreeKept(strndup(text, 2));
    auto* array = new (std::nothrow) char[3];
    kept = array;
    delete[] array;
    EXPECT_EQ(before + 6, fake::Count(fake::Event::kAllocation));
}

TEST_F(FakeSwitches, NothrowNewReturnsNull) {
    fake::FailAllocation(1);
    auto* failed = new (std::nothrow) char[4];
    kept = failed;
    EXPECT_EQ(nullptr, failed);
}

TEST_F(FakeSwitches, ThrowingNewAndQuietScopesNeitherCountNorFail) {
    const auto before = fake::Count(fake::Event::kAllocation);
    fake::FailAllocation(1);
    auto* one = new char;
    kept = one;
    delete one;
    {
        fake::Quiet quiet;
        EXPECT_TRUE(MallocWorks());
    }
    EXPECT_FALSE(fake::Tripped());
    EXPECT_EQ(before, fake::Count(fake::Event::kAllocation));
}

TEST_F(FakeSwitches, TheFakesOwnWorkDoesNotCountAsAllocation) {
    fake::FailAllocation(1);
    TLV_MSG* msg = TLV_Create();
    EXPECT_EQ(0u, AAA_AppendStrTlvData(msg, 1, "a text that is too long for the small buffer"));
    TLV_Destroy(msg);
    EXPECT_FALSE(fake::Tripped());
}

TEST_F(FakeSwitches, TheNthAppendFails) {
    TLV_MSG* msg = TLV_Create();
    fake::FailAppend(2);
    EXPECT_EQ(0u, AAA_AppendUINTTlvData(msg, 1, 1));
    EXPECT_EQ(0x40010001u, AAA_AppendUSHORTTlvData(msg, 2, 2));
    EXPECT_EQ(0u, TLV_Append_UINT(msg, 3, 3));
    EXPECT_EQ(nullptr, TLV_GetIteratorByType(msg, 2));
    TLV_Destroy(msg);
}

TEST_F(FakeSwitches, MessagesHashTablesAndSocketsFailOnDemand) {
    fake::FailMessage(1);
    EXPECT_EQ(nullptr, TLV_Create());
    fake::FailHashCreate(1);
    EXPECT_EQ(nullptr, HASH_Create(1, [](const void*) { return 0u; }));
    fake::FailSocket();
    EXPECT_EQ(-1, LIPC_Socket(37, 2, 1));
}

TEST_F(FakeSwitches, AnyCountsEventsOfAllKinds) {
    TLV_MSG* msg = TLV_Create();
    fake::FailAny(3);
    EXPECT_EQ(0u, AAA_AppendUINTTlvData(msg, 1, 1));
    const bool allocated = MallocWorks();
    DBM_HANDLE handle = -1;
    const DBM_OPEN_ATTR attr{};
    EXPECT_TRUE(allocated);
    EXPECT_NE(0u, DBM_Open("D", "t", DBM_MODE_CREATE, &attr, &handle));
    EXPECT_TRUE(fake::Tripped());
    TLV_Destroy(msg);
}

TEST_F(FakeSwitches, DisarmedSwitchesDoNotFire) {
    fake::FailAppend(1);
    fake::FailAny(1);
    fake::DisarmFailures();
    TLV_MSG* msg = TLV_Create();
    EXPECT_EQ(0u, AAA_AppendUINTTlvData(msg, 1, 1));
    TLV_Destroy(msg);
}

TEST_F(FakeSwitches, LockInitialisationFails) {
    pthread_mutex_t mutex;
    pthread_rwlock_t lock;
    fake::FailLockInit(1);
    EXPECT_EQ(ENOMEM, pthread_mutex_init(&mutex, nullptr));
    fake::FailLockInit(2);
    EXPECT_EQ(0, pthread_mutex_init(&mutex, nullptr));
    EXPECT_EQ(ENOMEM, pthread_rwlock_init(&lock, nullptr));
    pthread_mutex_destroy(&mutex);
}

TEST_F(FakeSwitches, HeldLocksAreCounted) {
    pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
    pthread_rwlock_t lock = PTHREAD_RWLOCK_INITIALIZER;
    const int before = fake::HeldLocks();
    pthread_mutex_lock(&mutex);
    pthread_rwlock_rdlock(&lock);
    const int held = fake::HeldLocks();
    pthread_rwlock_unlock(&lock);
    pthread_mutex_unlock(&mutex);
    EXPECT_EQ(before + 2, held);
    EXPECT_EQ(before, fake::HeldLocks());
}

TEST_F(FakeSwitches, LockingFailsOnDemand) {
    pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
    fake::FailLock(1);
    const int result = pthread_mutex_lock(&mutex);
    EXPECT_EQ(EINVAL, result);
}

}  // namespace
