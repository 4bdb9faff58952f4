#include <aaadom/codes.h>
#include <aaadom/nas_id_codec.h>

#include "base/message.h"
#include "unit/batch_sync.h"
#include "unit/domain/nas_id_fixture.h"

namespace aaadom {
namespace {

constexpr int32_t kDescriptor = 9;

class NasIdSync : public NasIdTest {
  protected:
    NasIdSync() { CountSlotCalls(); }
    ~NasIdSync() override { EXPECT_EQ(fake::LiveMessages(), 0); }

    /// The message inside a batch record.
    static TlvPtr Body(const std::string& image) { return BodyInHeads(image, 5, 4, DOM_OP_SET); }
    /// What was flushed to the descriptor, in order: profiles by name, bindings like Bindings().
    static std::vector<std::string> Sent() {
        std::vector<std::string> texts;
        for (const fake::FlushCall& flush : fake::FlushCalls()) {
            EXPECT_EQ(flush.fd, kDescriptor);
            EXPECT_EQ(flush.wait, 0xEA60u);
            const TlvPtr body = Body(flush.image);
            char profile[DOM_NASID_NAME_SIZE] = "";
            char nas_id[DOM_NASID_NAME_SIZE] = "";
            uint16_t vlan = 0;
            if (FindTlv(body.get(), DOM_TLV_MSG_CODE).U32() == DOM_MSG_NASID_PROFILE) {
                EXPECT_EQ(DOM_DecodeNasIdProfile(body.get(), profile), DOM_OK);
                texts.emplace_back(profile);
                continue;
            }
            EXPECT_EQ(FindTlv(body.get(), DOM_TLV_MSG_CODE).U32(), uint32_t{DOM_MSG_NASID_BIND});
            EXPECT_EQ(DOM_DecodeNasIdBindVlanId(body.get(), profile, nas_id, &vlan), DOM_OK);
            texts.push_back(std::to_string(vlan) + "/" + profile + "/" + nas_id);
        }
        return texts;
    }
    static void AddSomeBindings() {
        for (uint16_t vlan = 1; vlan <= 1200; ++vlan) ASSERT_EQ(Bind("P", "n", vlan), 0u);
    }
};

// Buckets: p40 0, p2 p82 p124 5, a 24, p1 14, p3 15.
TEST_F(NasIdSync, ProfilesGoBucketByBucketEachFromItsHead) {
    for (const char* name : {"a", "p2", "p1", "p82", "p3", "p40", "p124"}) AddProfile(name);
    DOM_SyncAllNasIdProfile(kDescriptor);
    EXPECT_EQ(Sent(), Names({"p40", "p124", "p82", "p2", "p1", "p3", "a"}));
}

// Buckets: {100, abc} 5, {258, p1} 108, {4094, p1} 332, {1, abc} 397.
TEST_F(NasIdSync, BindingsGoBucketByBucket) {
    Bind("p1", "n", 4094);
    Bind("ABC", "n", 1);
    Bind("abc", "n", 100);
    Bind("p1", "n", 258);
    DOM_SyncAllNasIdBindVlanId(kDescriptor);
    EXPECT_EQ(Sent(), Names({"100/abc/n", "258/p1/n", "4094/p1/n", "1/ABC/n"}));
}

TEST_F(NasIdSync, BindingsOfOneBucketGoFromItsHead) {
    AddSomeBindings();  // more than buckets, so chains have several nodes
    DOM_SyncAllNasIdBindVlanId(kDescriptor);
    const Names sent = Sent();
    EXPECT_EQ(sent.size(), 1200u);
    EXPECT_EQ(sent, Bindings(Role::kWorking));
}

TEST_F(NasIdSync, NothingGoesToANegativeDescriptor) {
    AddProfile("p1");
    Bind("p1", "n", 1);
    for (const int32_t fd : {-1, INT32_MIN}) {
        DOM_SyncAllNasIdProfile(fd);
        DOM_SyncAllNasIdBindVlanId(fd);
    }
    EXPECT_TRUE(fake::FlushCalls().empty());
    EXPECT_EQ(to_config_thread + to_pam, 0);
}

TEST_F(NasIdSync, DescriptorZeroIsADescriptor) {
    AddProfile("p1");
    Bind("p1", "n", 1);
    DOM_SyncAllNasIdProfile(0);
    DOM_SyncAllNasIdBindVlanId(0);
    EXPECT_EQ(fake::FlushCalls().size(), 2u);
}

TEST_F(NasIdSync, NothingGoesFromTheConfigurationThread) {
    InConfig([] {
        AddProfile("p1");
        Bind("p1", "n", 1);
        DOM_SyncAllNasIdProfile(kDescriptor);
        DOM_SyncAllNasIdBindVlanId(kDescriptor);
        return 0;
    });
    EXPECT_TRUE(fake::FlushCalls().empty());
    EXPECT_EQ(to_config_thread + to_pam, 0);
}

TEST_F(NasIdSync, EmptyTablesSendNothing) {
    DOM_SyncAllNasIdProfile(kDescriptor);
    DOM_SyncAllNasIdBindVlanId(kDescriptor);
    EXPECT_TRUE(fake::FlushCalls().empty());
}

TEST_F(NasIdSync, FailedSendDoesNotEndTheBatch) {
    fake::SetFlushResult(0);
    for (const char* name : {"p1", "p2", "p3"}) {
        AddProfile(name);
        Bind(name, "n", 1);
    }
    DOM_SyncAllNasIdProfile(kDescriptor);
    DOM_SyncAllNasIdBindVlanId(kDescriptor);
    EXPECT_EQ(fake::FlushCalls().size(), 6u);
}

// Each allocation, message and append of the batch fails once: exactly one object is left out, the
// others arrive, nothing leaks (the fixture looks).
TEST_F(NasIdSync, FailureLeavesOutOneObjectOnly) {
    for (const char* name : {"p1", "p2", "p3"}) {
        AddProfile(name);
        Bind(name, "n", 1);
    }
    for (const auto sync : {&DOM_SyncAllNasIdProfile, &DOM_SyncAllNasIdBindVlanId}) {
        for (const fake::Event event :
             {fake::Event::kAllocation, fake::Event::kMessage, fake::Event::kAppend}) {
            for (int n = 1;; ++n) {
                ASSERT_LT(n, 200);
                const size_t before = fake::FlushCalls().size();
                fake::Fail(event, n);
                sync(kDescriptor);
                const bool tripped = fake::Tripped();
                fake::DisarmFailures();
                const size_t sent = fake::FlushCalls().size() - before;
                if (!tripped) {
                    EXPECT_EQ(sent, 3u);
                    break;
                }
                EXPECT_EQ(sent, 2u) << "event " << static_cast<int>(event) << ", number " << n;
                EXPECT_EQ(fake::LiveMessages(), 0);
            }
        }
    }
}

TEST_F(NasIdSync, BindingMutexIsTakenOnceAndFreeWhileMessagesAreSent) {
    AddSomeBindings();
    const uint64_t before = fake::Count(fake::Event::kLock);
    DOM_SyncAllNasIdBindVlanId(kDescriptor);
    EXPECT_EQ(fake::Count(fake::Event::kLock), before + 1);
    ASSERT_EQ(fake::FlushCalls().size(), 1200u);
    for (const fake::FlushCall& flush : fake::FlushCalls()) EXPECT_EQ(flush.held_locks, 0);
}

TEST_F(NasIdSync, ProfilesTakeNoLock) {
    AddProfile("p1");
    const uint64_t before = fake::Count(fake::Event::kLock);
    DOM_SyncAllNasIdProfile(kDescriptor);
    EXPECT_EQ(fake::Count(fake::Event::kLock), before);
}

TEST(NasIdSyncWithoutTable, SendsNothing) {
    fake::Reset();
    DOM_ResetAAADService();
    DOM_SyncAllNasIdProfile(kDescriptor);
    DOM_SyncAllNasIdBindVlanId(kDescriptor);
    EXPECT_TRUE(fake::FlushCalls().empty());
}

}  // namespace
}  // namespace aaadom
