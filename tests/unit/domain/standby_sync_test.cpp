// What the standby board is told: heads, operations, bodies, and nothing where there is nothing.
#include <aaadom/codes.h>
#include <aaadom/record_codec.h>
#include <aaadom/record_switches.h>
#include <aaadom/results.h>
#include <aaadom/service.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "base/message.h"
#include "fakes/fake_platform.h"
#include "unit/batch_sync.h"

namespace aaadom {
namespace {

struct Standby {
    std::vector<std::string> images;
    uint32_t result = 0;
} standby;

class StandbySync : public testing::Test {
  protected:
    StandbySync() {
        fake::Reset();
        standby = Standby{};
        AAADService service{};
        service.cfg_real_sync_to_slave = [](TLV_MSG* msg) {
            standby.images.push_back(fake::ImageOf(msg));
            return standby.result;
        };
        DOM_SetAAADService(&service);
        record_.serial = 0x1122334455667788u;
        record_.first_number = 5;
    }
    ~StandbySync() override {
        DOM_ResetAAADService();
        EXPECT_EQ(fake::LiveMessages(), 0);
        EXPECT_TRUE(fake::Misuses().empty());
    }

    /// The body of the only message sent.
    static TlvPtr OnlyBody(uint32_t want_operation) {
        EXPECT_EQ(standby.images.size(), 1u);
        if (standby.images.size() != 1) return nullptr;
        const std::string image = standby.images[0];
        standby.images.clear();
        return BodyInHeads(image, 7, 4, want_operation);
    }
    static void ExpectSame(const TlvPtr& got, TLV_MSG* want) {
        const TlvPtr owned(want);
        ASSERT_NE(got, nullptr);
        EXPECT_EQ(fake::ImageOf(got.get()), fake::ImageOf(owned.get()));
    }
    /// Every failing message or append of `send` sends nothing and leaks nothing.
    static void ExpectFailuresSendNothing(const std::function<void()>& send) {
        for (const fake::Event event : {fake::Event::kMessage, fake::Event::kAppend}) {
            for (int n = 1;; ++n) {
                ASSERT_LT(n, 200);
                standby.images.clear();
                fake::Fail(event, n);
                send();
                const bool tripped = fake::Tripped();
                fake::DisarmFailures();
                EXPECT_EQ(standby.images.size(), tripped ? 0u : 1u);
                EXPECT_EQ(fake::LiveMessages(), 0);
                if (!tripped) break;
            }
        }
    }

    UserRecord record_{};
};

TEST_F(StandbySync, MessageIsWrappedSentAndKeptByTheCaller) {
    const TlvPtr body(MessageBuilder(3).Build());
    const TlvPtr request(AAA_AddOpHead(1, body.get()));
    for (const uint32_t result : {0u, 77u}) {
        standby.result = result;
        EXPECT_EQ(DOM_RealSync2Slave(request.get()), result);
        EXPECT_EQ(fake::LiveMessages(), 2) << "the wrapped message is gone, the given one is not";
        ExpectSame(OnlyBody(1), MessageBuilder(3).Build());
    }
}

TEST_F(StandbySync, MessageWithoutSlotFailsAndLeaksNothing) {
    DOM_ResetAAADService();
    const TlvPtr request(MessageBuilder(3).Build());
    EXPECT_EQ(DOM_RealSync2Slave(request.get()), DOM_ERR_FAILED);
    EXPECT_EQ(fake::LiveMessages(), 1);
}

TEST_F(StandbySync, MessageThatCannotBeWrappedFails) {
    EXPECT_EQ(DOM_RealSync2Slave(nullptr), DOM_ERR_FAILED);
    const TlvPtr request(MessageBuilder(3).Build());
    fake::FailMessage(1);
    EXPECT_EQ(DOM_RealSync2Slave(request.get()), DOM_ERR_FAILED);
    fake::DisarmFailures();
    EXPECT_TRUE(standby.images.empty());
    EXPECT_EQ(fake::LiveMessages(), 1);
}

TEST_F(StandbySync, OnlineFailureIsSentWhole) {
    DOM_SyncOnlineFailRecord(0, &record_);
    ExpectSame(OnlyBody(0), DOM_EncodeOnlineFailRecord(&record_));
}

TEST_F(StandbySync, DeletedOnlineFailureIsSentByTypeAndSerial) {
    DOM_SyncOnlineFailRecord(1, &record_);
    ExpectSame(OnlyBody(1), DOM_EncodeDelUserRecord(1, 0x1122334455667788u));
}

// The flag that is called abnormal chooses list 4, the normal offline records.
TEST_F(StandbySync, OfflineRecordWithTheFlagIsOfList4) {
    DOM_SyncOfflineRecord(0, 1, &record_);
    const TlvPtr body = OnlyBody(0);
    EXPECT_EQ(FindTlv(body.get(), DOM_TLV_RECORD_KIND).U32(), 4u);
    DOM_SyncOfflineRecord(1, 1, &record_);
    ExpectSame(OnlyBody(1), DOM_EncodeDelUserRecord(4, 0x1122334455667788u));
}

TEST_F(StandbySync, OfflineRecordWithAnyOtherFlagIsOfList3) {
    for (const uint16_t flag : {0, 2, 0xFFFF}) {
        DOM_SyncOfflineRecord(0, flag, &record_);
        ExpectSame(OnlyBody(0), DOM_EncodOfflineRecord(0, &record_));
        DOM_SyncOfflineRecord(1, flag, &record_);
        ExpectSame(OnlyBody(1), DOM_EncodeDelUserRecord(3, 0x1122334455667788u));
    }
}

TEST_F(StandbySync, OtherOperationsAndNullRecordsSendNothing) {
    for (const uint32_t operation : {2u, 3u, 6u, 0xFFFFFFFFu}) {
        DOM_SyncOnlineFailRecord(operation, &record_);
        DOM_SyncOfflineRecord(operation, 1, &record_);
    }
    for (const uint32_t operation : {0u, 1u}) {
        DOM_SyncOnlineFailRecord(operation, nullptr);
        DOM_SyncOfflineRecord(operation, 1, nullptr);
    }
    EXPECT_TRUE(standby.images.empty());
}

TEST_F(StandbySync, ClearKindsBecomeResetCodes) {
    const std::pair<uint32_t, uint32_t> kCodes[] = {{1, 54}, {2, 57}, {4, 56}, {6, 55}};
    for (const auto& [kind, code] : kCodes) {
        Dom_SyncClearUserRecord(kind);
        ExpectSame(OnlyBody(6), DOM_userrecord_tlv_EncodeResetRecord(code));
    }
}

TEST_F(StandbySync, OtherClearKindsSendNothing) {
    for (const uint32_t kind : {0u, 3u, 5u, 7u, 8u, 0xFFFFFFFFu}) Dom_SyncClearUserRecord(kind);
    EXPECT_TRUE(standby.images.empty());
}

TEST_F(StandbySync, FailuresSendNothingAndLeakNothing) {
    ExpectFailuresSendNothing([this] { DOM_SyncOnlineFailRecord(0, &record_); });
    ExpectFailuresSendNothing([this] { DOM_SyncOnlineFailRecord(1, &record_); });
    ExpectFailuresSendNothing([this] { DOM_SyncOfflineRecord(0, 1, &record_); });
    ExpectFailuresSendNothing([this] { DOM_SyncOfflineRecord(1, 0, &record_); });
    ExpectFailuresSendNothing([] { Dom_SyncClearUserRecord(6); });
}

TEST_F(StandbySync, WithoutSlotNothingLeaks) {
    DOM_ResetAAADService();
    DOM_SyncOnlineFailRecord(0, &record_);
    DOM_SyncOfflineRecord(1, 0, &record_);
    Dom_SyncClearUserRecord(1);
    EXPECT_EQ(fake::LiveMessages(), 0);
}

}  // namespace
}  // namespace aaadom
