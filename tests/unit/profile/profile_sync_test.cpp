// Batch synchronisation: what is sent, in which order, and what a receiver makes of it.
#include "unit/batch_sync.h"
#include "unit/profile/profile_fixture.h"

namespace aaadom {
namespace {

constexpr int32_t kDescriptor = 9;

template <typename Store>
class ProfileSyncTest : public ProfileTest<Store> {
  protected:
    ProfileSyncTest() { CountSlotCalls(); }
    /// The message inside a batch record.
    static TlvPtr Body(const std::string& image) { return BodyInHeads(image, 5, 4, DOM_OP_SET); }
    /// What was sent, in order: "profile", "profile = segment ID", "profile/vpn = segment ID".
    static Names Sent() {
        Names texts;
        for (const fake::FlushCall& flush : fake::FlushCalls()) {
            EXPECT_EQ(flush.fd, kDescriptor);
            EXPECT_EQ(flush.wait, 60000u);
            EXPECT_EQ(flush.held_locks, 0);
            texts.push_back(InWords(Body(flush.image)));
        }
        return texts;
    }
    static std::string InWords(const TlvPtr& body) {
        char profile[32] = "", vpn[32] = "";
        EXPECT_EQ(FindTlv(body.get(), Store::kProfileNameTlv).Text(profile, 32), DOM_OK);
        const uint32_t code = FindTlv(body.get(), DOM_TLV_MSG_CODE).U32();
        if (code == Store::kProfileCode) return profile;
        const uint16_t id_type =
            std::is_same_v<Store, Author> ? DOM_TLV_AUTHOR_SEGMENT_ID : DOM_TLV_CRITICAL_SEGMENT_ID;
        const std::string id = std::to_string(FindTlv(body.get(), id_type).U32());
        if (code == Store::kDefaultCode) return std::string(profile) + " = " + id;
        EXPECT_EQ(code, Store::kVpnCode);
        EXPECT_EQ(FindTlv(body.get(), Store::kVpnNameTlv).Text(vpn, 32), DOM_OK);
        return std::string(profile) + "/" + vpn + " = " + id;
    }
    /// Applies what was sent to the configuration thread's store, like the peer's daemon.
    static void Receive() {
        for (const fake::FlushCall& flush : fake::FlushCalls()) {
            const TlvPtr body = Body(flush.image);
            const uint32_t code = FindTlv(body.get(), DOM_TLV_MSG_CODE).U32();
            uint32_t result = kFailed;
            if (code == Store::kProfileCode)
                result = Store::ApplyProfile(body.get(), kAdd, nullptr, nullptr);
            if (code == Store::kVpnCode) result = Store::ApplyVpn(body.get(), kAdd, nullptr);
            if (code == Store::kDefaultCode)
                result = Store::ApplyDefault(body.get(), kAdd, nullptr);
            EXPECT_EQ(result, kOk);
        }
    }
};
TYPED_TEST_SUITE(ProfileSyncTest, BothKinds, KindNames);

// Buckets: v199 and v352 0, v109 and v182 1, v47 2, v82 3, v51 127; the newest of a bucket first.
TYPED_TEST(ProfileSyncTest, VpnsGoBucketByBucketEachFromItsHead) {
    auto* profile = this->Add("p");
    uint32_t id = 0;
    for (const char* name : {"v51", "v82", "v109", "v199", "v182", "v47", "v352"}) {
        this->AddVpn(profile, name, {++id, ""});
    }
    this->AddVpn(profile, "v199", {99, ""});  // overwriting moves nothing
    TypeParam::SyncAll(kDescriptor);
    EXPECT_EQ(this->Sent(), Names({"p", "p/v352 = 7", "p/v199 = 99", "p/v182 = 5", "p/v109 = 3",
                                   "p/v47 = 6", "p/v82 = 2", "p/v51 = 1"}));
}

TYPED_TEST(ProfileSyncTest, EachProfileGoesWithItsSegmentsInListOrder) {
    this->AddVpn(this->Add("b"), "v", {3, ""});
    this->SetDefault(TypeParam::Find("b"), {2, ""});
    this->SetDefault(this->Add("a"), {1, ""});
    this->Add("c");
    TypeParam::SyncAll(kDescriptor);
    EXPECT_EQ(this->Sent(), Names({"a", "a = 1", "b", "b = 2", "b/v = 3", "c"}));
}

TYPED_TEST(ProfileSyncTest, MessagesAreTheOnesOfTheCodec) {
    const Seg seg{7, "seven", 700};
    auto* profile = this->Add("p");
    this->SetDefault(profile, seg);
    this->AddVpn(profile, "v", seg);
    TypeParam::SyncAll(kDescriptor);
    const auto flushes = fake::FlushCalls();
    ASSERT_EQ(flushes.size(), 3u);
    this->ExpectSame(this->Body(flushes[0].image), this->ProfileMsg("p"));
    this->ExpectSame(this->Body(flushes[1].image), this->DefaultMsg("p", seg));
    this->ExpectSame(this->Body(flushes[2].image), this->VpnMsg("p", "v", seg));
}

// Unlike in management reads.
TYPED_TEST(ProfileSyncTest, DefaultWithoutIdIsNotSent) {
    this->SetDefault(this->Add("p"), {0, "name alone"});
    TypeParam::SyncAll(kDescriptor);
    EXPECT_EQ(this->Sent(), Names({"p"}));
}

TYPED_TEST(ProfileSyncTest, ReceiverEndsWithAnEqualStore) {
    for (int i = 0; i < 16; ++i) {
        auto* profile = this->Add((i % 2 == 0 ? "P" : "profile-") + std::to_string(i));
        if (i % 3 != 0) this->SetDefault(profile, {100u + i, "default", static_cast<uint16_t>(i)});
        for (int j = 0; j < 8 * i; ++j) {
            this->AddVpn(profile, "vpn-" + std::to_string(j * j),
                         {1u + j, "segment", static_cast<uint16_t>(0xFF00 + j)});
        }
    }
    const std::string sent = this->Dump();
    TypeParam::SyncAll(kDescriptor);
    this->InConfig([&] {
        this->Receive();
        EXPECT_EQ(this->Dump(), sent);
        return 0;
    });
}

TYPED_TEST(ProfileSyncTest, NothingGoesToANegativeDescriptor) {
    this->AddVpn(this->Add("p"), "v");
    for (const int32_t target : {-1, INT32_MIN}) TypeParam::SyncAll(target);
    EXPECT_TRUE(fake::FlushCalls().empty());
    EXPECT_EQ(to_config_thread, 0);
}

TYPED_TEST(ProfileSyncTest, DescriptorZeroIsADescriptor) {
    this->Add("p");
    TypeParam::SyncAll(0);
    EXPECT_EQ(fake::FlushCalls().size(), 1u);
}

TYPED_TEST(ProfileSyncTest, NothingGoesFromTheConfigurationThread) {
    this->Add("of the working role");
    for (const uint32_t role : {fake::kConfigRole, 0x10001u}) {
        fake::InRole(role, [this] {
            if (TypeParam::Find("p") == nullptr) this->AddVpn(this->Add("p"), "v");
            TypeParam::SyncAll(kDescriptor);
            return 0;
        });
    }
    EXPECT_TRUE(fake::FlushCalls().empty());
    EXPECT_EQ(to_pam, 0);
}

TYPED_TEST(ProfileSyncTest, EmptyStoreSendsNothing) {
    TypeParam::SyncAll(kDescriptor);
    EXPECT_TRUE(fake::FlushCalls().empty());
}

TYPED_TEST(ProfileSyncTest, FailedSendDoesNotEndTheBatch) {
    fake::SetFlushResult(0);
    for (const char* name : {"a", "b"}) {
        this->AddVpns(this->Add(name), 3);
        this->SetDefault(TypeParam::Find(name), {1, ""});
    }
    TypeParam::SyncAll(kDescriptor);
    EXPECT_EQ(fake::FlushCalls().size(), 10u);
}

TYPED_TEST(ProfileSyncTest, ProfileThatCannotBeEncodedIsLeftOutWithItsSegments) {
    for (const char* name : {"a", "b"}) {
        this->AddVpn(this->Add(name), "v", {2, ""});
        this->SetDefault(TypeParam::Find(name), {1, ""});
    }
    fake::FailMessage(1);
    TypeParam::SyncAll(kDescriptor);
    EXPECT_TRUE(fake::Tripped());
    EXPECT_EQ(this->Sent(), Names({"b", "b = 1", "b/v = 2"}));
}

// A head that cannot be put on, on the other hand, costs its own message only.
TYPED_TEST(ProfileSyncTest, ProfileThatCannotBeWrappedIsLeftOutAlone) {
    this->AddVpn(this->Add("a"), "v", {2, ""});
    this->SetDefault(TypeParam::Find("a"), {1, ""});
    for (const int head : {2, 3}) {
        fake::FailMessage(head);
        const size_t before = fake::FlushCalls().size();
        TypeParam::SyncAll(kDescriptor);
        EXPECT_TRUE(fake::Tripped());
        const Names sent = this->Sent();
        EXPECT_EQ(Names(sent.begin() + static_cast<std::ptrdiff_t>(before), sent.end()),
                  Names({"a = 1", "a/v = 2"}));
        EXPECT_EQ(fake::LiveMessages(), 0);
    }
}

// Each allocation, message and append of a profile's segments fails once: exactly one message is
// left out, the others arrive, none leaks.
TYPED_TEST(ProfileSyncTest, FailureLeavesOutOneSegmentOnly) {
    auto* profile = this->Add("p");
    this->SetDefault(profile, {1, "s", 1});
    this->AddVpns(profile, 3);
    const auto sync = [profile] {
        TypeParam::SyncDefault(kDescriptor, profile);
        TypeParam::SyncVpns(kDescriptor, profile);
    };
    for (const fake::Event event :
         {fake::Event::kAllocation, fake::Event::kMessage, fake::Event::kAppend}) {
        for (int n = 1;; ++n) {
            ASSERT_LT(n, 200);
            const size_t before = fake::FlushCalls().size();
            fake::Fail(event, n);
            sync();
            const bool tripped = fake::Tripped();
            fake::DisarmFailures();
            const size_t sent = fake::FlushCalls().size() - before;
            EXPECT_EQ(fake::LiveMessages(), 0);
            if (!tripped) {
                EXPECT_EQ(sent, 4u);
                break;
            }
            EXPECT_EQ(sent, 3u) << "event " << static_cast<int>(event) << ", number " << n;
        }
    }
}

// The two for a single profile look at neither the role nor the target.
TYPED_TEST(ProfileSyncTest, SegmentsOfOneProfileGoWhereTheBatchStepLeads) {
    auto* profile = this->Add("p");
    this->SetDefault(profile, {1, ""});
    this->AddVpn(profile, "v");
    TypeParam::SyncDefault(-1, profile);
    TypeParam::SyncVpns(-1, profile);
    EXPECT_EQ(to_config_thread, 2);
    AAADService service = fake::RoleService();
    service.cfg_thr_msg_to_pam = [](uint32_t channel, TLV_MSG* msg) {
        EXPECT_EQ(channel, 3u);
        EXPECT_NE(msg, nullptr);
        ++to_pam;
        return 0u;
    };
    DOM_SetAAADService(&service);
    this->InConfig([profile] {
        TypeParam::SyncDefault(3, profile);
        TypeParam::SyncVpns(3, profile);
        return 0;
    });
    EXPECT_EQ(to_pam, 2);
    EXPECT_TRUE(fake::FlushCalls().empty());
}

TYPED_TEST(ProfileSyncTest, ProfileWithoutSegmentsSendsNone) {
    auto* profile = this->Add("p");
    TypeParam::SyncDefault(kDescriptor, profile);
    TypeParam::SyncVpns(kDescriptor, profile);
    this->AddVpn(profile, "v");
    TypeParam::DeleteVpn("v", profile);
    TypeParam::SyncVpns(kDescriptor, profile);
    TypeParam::SyncDefault(kDescriptor, nullptr);
    TypeParam::SyncVpns(kDescriptor, nullptr);
    EXPECT_TRUE(fake::FlushCalls().empty());
}

}  // namespace
}  // namespace aaadom
