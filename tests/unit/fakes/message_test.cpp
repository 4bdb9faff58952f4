#include <gtest/gtest.h>
#include <platform/aaa_tlv.h>
#include <platform/stlv.h>

#include <cstddef>
#include <cstdlib>
#include <string>

#include "fakes/fake_platform.h"

namespace {

using namespace std::string_literals;

class FakeMessages : public ::testing::Test {
  protected:
    void SetUp() override {
        fake::Reset();
        live_ = fake::LiveMessages();
    }
    void TearDown() override {
        EXPECT_EQ(live_, fake::LiveMessages());
        fake::Reset();
    }
    int64_t live_ = 0;
};

TEST_F(FakeMessages, ImageIsTheWireFormat) {
    TLV_MSG* msg = TLV_Create();
    EXPECT_EQ(0u, AAA_AppendUINTTlvData(msg, 0, 7));
    EXPECT_EQ(0u, AAA_AppendStrTlvData(msg, 0x0102, "ab"));
    const std::string expected =
        "TV\x01\x00\x13\x00\x00\x00"
        "\x00\x00\x04\x00\x00\x00\x07\x00\x00\x00"
        "\x02\x01\x03\x00\x00\x00"
        "ab\x00"s;
    EXPECT_EQ(expected, fake::ImageOf(msg));
    EXPECT_EQ(expected.size(), TLV_GetMsgLen(msg, 2));
    TLV_Destroy(msg);
}

TEST_F(FakeMessages, EveryTruncatedImageIsRefused) {
    TLV_MSG* msg = TLV_Create();
    EXPECT_EQ(0u, AAA_AppendUINTTlvData(msg, 0, 7));
    EXPECT_EQ(0u, AAA_AppendStrTlvData(msg, 3, "name"));
    const std::string image = fake::ImageOf(msg);
    TLV_Destroy(msg);
    for (size_t length = 0; length < image.size(); ++length) {
        EXPECT_EQ(nullptr, fake::Parse(image.substr(0, length))) << length;
    }
    TLV_MSG* whole = fake::Parse(image);
    EXPECT_NE(nullptr, whole);
    TLV_Destroy(whole);
}

TEST_F(FakeMessages, ValuesComeBack) {
    const uint8_t mac[6] = {1, 2, 3, 4, 5, 6};
    TLV_MSG* msg = TLV_Create();
    EXPECT_EQ(0u, AAA_AppendUINTTlvData(msg, 1, 0x01020304));
    EXPECT_EQ(0u, AAA_AppendUSHORTTlvData(msg, 2, 0x0506));
    EXPECT_EQ(0u, AAA_AppendUINT64TlvData(msg, 3, 0x0102030405060708));
    EXPECT_EQ(0u, AAA_AppendStrTlvData(msg, 4, "hello"));
    EXPECT_EQ(0u, AAA_AppendMACTlvData(msg, 5, mac));
    uint16_t half = 0;
    uint8_t mac_out[6] = {};
    char text[4];
    EXPECT_EQ(0x01020304u, AAA_GetUINTTlvValue(msg, TLV_GetIteratorByType(msg, 1)));
    EXPECT_EQ(0u, AAA_GetUSHORTTlvValue(msg, TLV_GetIteratorByType(msg, 2), &half));
    EXPECT_EQ(0x0506, half);
    EXPECT_EQ(0x0102030405060708u, AAA_GetUINT64TlvValue(msg, TLV_GetIteratorByType(msg, 3)));
    EXPECT_EQ(0u, AAA_GetStrTlvValue(msg, TLV_GetIteratorByType(msg, 4), sizeof text, text));
    EXPECT_STREQ("hel", text);
    EXPECT_EQ(0u, AAA_GetMACTlvValue(msg, TLV_GetIteratorByType(msg, 5), mac_out));
    EXPECT_EQ(0, memcmp(mac, mac_out, 6));
    TLV_Destroy(msg);
}

TEST_F(FakeMessages, HeadsWrapAndUnwrap) {
    TLV_MSG* msg = TLV_Create();
    EXPECT_EQ(0u, AAA_AppendUINTTlvData(msg, 0, 7));
    TLV_MSG* operation = AAA_AddOpHead(2, msg);
    TLV_MSG* daemon = AAA_AddAaadHead(5, 4, operation);
    TLV_MSG* operation_again = AAA_DelAaadHead(daemon);
    uint32_t opcode = 99;
    TLV_MSG* inner = AAA_DelOpHead(operation_again, &opcode);
    EXPECT_EQ(2u, opcode);
    EXPECT_EQ(fake::ImageOf(msg), fake::ImageOf(inner));
    EXPECT_EQ(nullptr, AAA_DelOpHead(msg, &opcode));
    EXPECT_EQ(nullptr, AAA_DelAaadHead(operation));
    for (TLV_MSG* one : {msg, operation, daemon, operation_again, inner}) TLV_Destroy(one);
}

TEST_F(FakeMessages, AValueThatIsNoImageIsNoNestedMessage) {
    TLV_MSG* msg = TLV_Create();
    EXPECT_EQ(0u, AAA_AppendUINTTlvData(msg, 4, 0));
    EXPECT_EQ(nullptr, AAA_GetSubTlv(msg, TLV_GetFirst(msg)));
    TLV_Destroy(msg);
}

TEST_F(FakeMessages, AStaleIteratorIsNoticed) {
    TLV_MSG* msg = TLV_Create();
    EXPECT_EQ(0u, AAA_AppendUINTTlvData(msg, 1, 5));
    TLV_ITER* it = TLV_GetFirst(msg);
    EXPECT_EQ(0u, AAA_AppendUINTTlvData(msg, 2, 6));
    EXPECT_TRUE(fake::Misuses().empty());
    EXPECT_EQ(0u, AAA_GetUINTTlvValue(msg, it));
    EXPECT_EQ(1u, fake::Misuses().size());
    TLV_Destroy(msg);
}

TEST_F(FakeMessages, ADeletedItemIsGoneAndTheRestStays) {
    TLV_MSG* msg = TLV_Create();
    for (uint16_t type = 1; type <= 3; ++type) EXPECT_EQ(0u, TLV_Append_UINT(msg, type, type));
    EXPECT_EQ(0u, TLV_Delete_Data(msg, TLV_GetIteratorByType(msg, 2)));
    TLV_ITER* it = TLV_GetFirst(msg);
    EXPECT_EQ(1, TLV_GetTypeByIterator(msg, it));
    it = TLV_GetNext(msg, it);
    EXPECT_EQ(3, TLV_GetTypeByIterator(msg, it));
    EXPECT_EQ(nullptr, TLV_GetNext(msg, it));
    TLV_Destroy(msg);
}

TEST_F(FakeMessages, FlushWritesNothingThatDoesNotFit) {
    TLV_MSG* msg = TLV_Create();
    EXPECT_EQ(0u, TLV_Append_UINT(msg, 1, 1));
    char buffer[64] = {'x'};
    const auto address = reinterpret_cast<uintptr_t>(buffer);
    EXPECT_EQ(0u, TLV_Flush(msg, 2, 17, address));
    EXPECT_EQ('x', buffer[0]);
    EXPECT_EQ(18u, TLV_Flush(msg, 2, 18, address));
    TLV_MSG* again = TLV_CreateReceiveMsg(2, address, 18);
    EXPECT_EQ(fake::ImageOf(msg), fake::ImageOf(again));
    TLV_Destroy(again);
    TLV_Destroy(msg);
}

TEST_F(FakeMessages, StructuresPackItemByItem) {
    const uint32_t numbers[] = {10, 20};
    const AAA_ENCAP_STEP step{
        1, 2, numbers, sizeof(uint32_t), [](uint32_t position, const void* item, TLV_MSG* msg) {
            return TLV_Append_UINT(msg, 1, position) |
                   TLV_Append_UINT(msg, 2, *static_cast<const uint32_t*>(item));
        }};
    uint32_t length = 0;
    void* buffer = AAA_EncapStructToTLVBuf(&step, 1, &length);
    ASSERT_NE(nullptr, buffer);
    TLV_MSG* msg = TLV_CreateReceiveMsg(2, reinterpret_cast<uintptr_t>(buffer), length);
    std::free(buffer);
    uint32_t read = 0;
    TLV_ITER* second = TLV_GetNext(msg, TLV_GetFirst(msg));
    EXPECT_EQ(0u, AAA_DecapSubTLVToStruct(
                      msg, second,
                      [](TLV_MSG* sub, void* object) {
                          *static_cast<uint32_t*>(object) =
                              AAA_GetUINTTlvValue(sub, TLV_GetIteratorByType(sub, 2));
                          return 0u;
                      },
                      &read));
    EXPECT_EQ(20u, read);
    TLV_Destroy(msg);
}

TEST_F(FakeMessages, CompactItemsHaveAFourByteHeader) {
    char buffer[16];
    EXPECT_EQ(7u, STLV_Set(buffer, sizeof buffer, 0x0102, 3, "abc"));
    EXPECT_EQ(0, memcmp(buffer,
                        "\x02\x01\x03\x00"
                        "abc",
                        7));
    EXPECT_EQ(0u, STLV_Set(buffer, 6, 1, 3, "abc"));
    uint16_t type = 0;
    uint32_t length = 0;
    const void* value = nullptr;
    EXPECT_EQ(7u, STLV_Get(buffer, 7, &type, &length, &value));
    EXPECT_EQ(buffer + 4, value);
    EXPECT_EQ(0u, STLV_Get(buffer, 6, &type, &length, &value));
}

struct Pair {
    uint32_t number;
    char text[4];
};
const AAA_FIELD kPairFields[] = {{9, AAA_FIELD_POSITION, 0, 0},
                                 {1, AAA_FIELD_WORD, offsetof(Pair, number), 0},
                                 {2, AAA_FIELD_TEXT, offsetof(Pair, text), 4}};

TEST_F(FakeMessages, StructuresComeBack) {
    const Pair pairs[2] = {{1, "one"}, {2, {'f', 'o', 'u', 'r'}}};
    TLV_MSG* msg = TLV_Create();
    EXPECT_EQ(0u, AAA_AppendFields(msg, kPairFields, 3, &pairs[0]));
    EXPECT_EQ(0u, AAA_AppendRecords(msg, 5, kPairFields, 3, pairs, sizeof *pairs, 2));
    Pair read{};
    EXPECT_EQ(0u, AAA_GetFields(msg, kPairFields, 3, &read, nullptr, nullptr));
    EXPECT_STREQ("one", read.text);
    TLV_ITER* last = TLV_GetNext(msg, TLV_GetIteratorByType(msg, 5));
    uint32_t position = 0;
    EXPECT_EQ(0u, AAA_GetSubFields(msg, last, kPairFields, 3, &read, &position, nullptr, nullptr));
    EXPECT_EQ(1u, position);
    EXPECT_STREQ("fou", read.text);
    TLV_Destroy(msg);
}

TEST_F(FakeMessages, EveryTlvOfACombinedCallIsOneAppend) {
    const Pair pair{1, "one"};
    for (int n = 1; n <= 4; ++n) {
        TLV_MSG* msg = TLV_Create();
        fake::FailAppend(n);
        EXPECT_NE(0u, AAA_AppendRecords(msg, 5, kPairFields, 3, &pair, sizeof pair, 1)) << n;
        EXPECT_TRUE(fake::Tripped()) << n;
        EXPECT_EQ(nullptr, TLV_GetFirst(msg)) << n;
        fake::FailAppend(n);
        EXPECT_EQ(n <= 3, AAA_AppendFields(msg, kPairFields, 3, &pair) != 0) << n;
        fake::DisarmFailures();
        TLV_Destroy(msg);
    }
}

TEST_F(FakeMessages, NestedMessageInPlaceIsOneAppend) {
    TLV_MSG* msg = TLV_Create();
    uint32_t mark = 0;
    EXPECT_EQ(0u, AAA_BeginSubTlv(msg, 3, &mark));
    EXPECT_EQ(0u, AAA_AppendUINTTlvData(msg, 1, 7));
    fake::FailAppend(1);
    EXPECT_NE(0u, AAA_EndSubTlv(msg, mark));
    fake::DisarmFailures();
    EXPECT_EQ(0u, AAA_EndSubTlv(msg, mark));
    EXPECT_EQ(nullptr, TLV_GetNext(msg, TLV_GetFirst(msg)));
    TLV_MSG* sub = AAA_GetSubTlv(msg, TLV_GetFirst(msg));
    EXPECT_EQ(7u, AAA_GetUINTTlvValue(sub, TLV_GetFirst(sub)));
    TLV_Destroy(sub);
    TLV_Destroy(msg);
}

}  // namespace
