#include "db/stored_message.h"

#include "unit/db/config_db_fixture.h"

namespace aaadom {
namespace {

/// A message whose image has this many bytes.
TlvPtr MessageOf(uint32_t length) {
    constexpr uint32_t kMessageHeader = 8;
    constexpr uint32_t kTlvHeader = 6;
    const std::string value(length - kMessageHeader - kTlvHeader, 'v');
    TlvPtr msg(TLV_Create());
    EXPECT_EQ(TLV_Append_Data(msg.get(), 1, static_cast<uint32_t>(value.size()), value.data()), 0u);
    EXPECT_EQ(TLV_GetMsgLen(msg.get(), TLV_FORM_BUFFER), length);
    return msg;
}

TEST_F(ConfigDbTest, LongestMessageIsStoredAndReadBack) {
    EXPECT_EQ(StoreMessage(MessageOf(65535), "key", 3, 2), DOM_OK);
    ASSERT_EQ(fake::DbmCalls().size(), 1u);
    EXPECT_EQ(fake::DbmCalls()[0].value_length, 65535u);
    EXPECT_TRUE(LoadMessage(handle_, "key", 3));
}

// The flush itself has no limit, so a message that is too long must never get there.
TEST_F(ConfigDbTest, LongerMessageIsNeitherFlushedNorStored) {
    EXPECT_EQ(StoreMessage(MessageOf(65536), "key", 3, 2), DOM_ERR_FAILED);
    EXPECT_TRUE(fake::BufferFlushLimits().empty());
    EXPECT_TRUE(fake::DbmCalls().empty());
    const ValueBuffer buffer;
    EXPECT_EQ(buffer.Flush(MessageOf(65536), kNoFlushLimit), 0u);
}

TEST_F(ConfigDbTest, LengthsOutsideTheBufferAreNoMessage) {
    const ValueBuffer buffer;
    for (int32_t length : {-1, 0, 65536, INT32_MAX}) EXPECT_FALSE(buffer.Message(length)) << length;
}

TEST_F(ConfigDbTest, NullMessageIsNotStored) {
    EXPECT_EQ(StoreMessage(nullptr, "key", 3, 2), DOM_ERR_FAILED);
    EXPECT_TRUE(fake::DbmCalls().empty());
}

}  // namespace
}  // namespace aaadom
