// The batch of NAS-ID objects as a peer reads it from a socket of the real platform.
#include <aaadom/codes.h>
#include <aaadom/domain_table.h>
#include <aaadom/nas_id.h>
#include <aaadom/nas_id_codec.h>
#include <aaadom/service.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "base/message.h"

namespace {

using aaadom::FindTlv;
using aaadom::TlvPtr;

class NasIdBatch : public testing::Test {
  protected:
    NasIdBatch() {
        DOM_ResetAAADService();
        EXPECT_EQ(DOM_DomainInfoTableInit(), 0u);
        EXPECT_EQ(socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends_), 0);
    }
    ~NasIdBatch() override {
        close(ends_[0]);
        close(ends_[1]);
        (void)DOM_DomainInfoTableFini();
    }

    /// Everything that waits on the peer's end, in order: a profile as its name, a binding as
    /// "vlan/profile/nas-id".
    std::vector<std::string> Received() const {
        std::vector<std::string> texts;
        std::vector<char> packet(65536);
        ssize_t length = 0;
        while ((length = recv(ends_[1], packet.data(), packet.size(), MSG_DONTWAIT)) > 0) {
            const TlvPtr record(TLV_CreateReceiveMsg(TLV_FORM_BUFFER,
                                                     reinterpret_cast<uintptr_t>(packet.data()),
                                                     static_cast<uint32_t>(length)));
            const TlvPtr request(AAA_DelAaadHead(record.get()));
            uint32_t operation = 99;
            const TlvPtr body(AAA_DelOpHead(request.get(), &operation));
            EXPECT_EQ(operation, DOM_OP_SET);
            char profile[DOM_NASID_NAME_SIZE] = "";
            char nas_id[DOM_NASID_NAME_SIZE] = "";
            uint16_t vlan = 0;
            if (FindTlv(body.get(), DOM_TLV_MSG_CODE).U32() == DOM_MSG_NASID_PROFILE) {
                EXPECT_EQ(DOM_DecodeNasIdProfile(body.get(), profile), 0u);
                texts.emplace_back(profile);
                continue;
            }
            EXPECT_EQ(DOM_DecodeNasIdBindVlanId(body.get(), profile, nas_id, &vlan), 0u);
            texts.push_back(std::to_string(vlan) + "/" + profile + "/" + nas_id);
        }
        return texts;
    }

    int ends_[2] = {-1, -1};
};

// Buckets of the profiles: p40 0, p2 p82 p124 5, p1 14, p3 15, a 24.
TEST_F(NasIdBatch, ProfilesArriveBucketByBucketEachFromItsHead) {
    for (const char* name : {"a", "p2", "p1", "p82", "p3", "p40", "p124"}) {
        ASSERT_EQ(DOM_AddNasIdProfile(name), 0u);
    }
    DOM_SyncAllNasIdProfile(ends_[0]);
    EXPECT_EQ(Received(), (std::vector<std::string>{"p40", "p124", "p82", "p2", "p1", "p3", "a"}));
}

// Buckets of the bindings: {100, abc} 5, {258, p1} 108, {4094, p1} 332, {1, abc} 397.
TEST_F(NasIdBatch, BindingsArriveBucketByBucket) {
    ASSERT_EQ(DOM_AddNasIdBindVlanId("p1", "n1", 4094), 0u);
    ASSERT_EQ(DOM_AddNasIdBindVlanId("ABC", "n2", 1), 0u);
    ASSERT_EQ(DOM_AddNasIdBindVlanId("abc", "n3", 100), 0u);
    ASSERT_EQ(DOM_AddNasIdBindVlanId("p1", "n4", 258), 0u);
    DOM_SyncAllNasIdBindVlanId(ends_[0]);
    EXPECT_EQ(Received(),
              (std::vector<std::string>{"100/abc/n3", "258/p1/n4", "4094/p1/n1", "1/ABC/n2"}));
}

// A peer that went away ends no batch and no process.
TEST_F(NasIdBatch, ClosedPeerIsNoFailure) {
    ASSERT_EQ(DOM_AddNasIdProfile("p1"), 0u);
    ASSERT_EQ(DOM_AddNasIdBindVlanId("p1", "n", 1), 0u);
    shutdown(ends_[1], SHUT_RDWR);
    DOM_SyncAllNasIdProfile(ends_[0]);
    DOM_SyncAllNasIdBindVlanId(ends_[0]);
}

}  // namespace
