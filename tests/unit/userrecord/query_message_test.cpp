// Queries of user records: what they carry, what a reader takes, and which failed reads count.
#include <aaadom/codes.h>
#include <aaadom/user_record_query.h>

#include <initializer_list>
#include <utility>

#include "unit/userrecord/record_fixture.h"

namespace {

using namespace record_test;
using aaadom::Appender;

UserRecordQuery SampleQuery() {
    UserRecordQuery query{};
    query.record_count = 0x01020304;
    query.list_selector = 0x1112;
    query.second_selector = 0x2122;
    query.condition = 0x31323334;
    for (uint8_t i = 0; i < 4; ++i) query.ipv4[i] = static_cast<uint8_t>(0x40 + i);
    for (uint8_t i = 0; i < 16; ++i) query.ipv6[i] = static_cast<uint8_t>(0x50 + i);
    for (uint16_t i = 0; i < 4; ++i) query.conditions[i] = static_cast<uint16_t>(0x6160 + i);
    aaadom::CopyText(query.first_name, "first");
    aaadom::CopyText(query.second_name, "second");
    aaadom::CopyText(query.interface_name, "eth1/0/7");
    for (uint8_t i = 0; i < 6; ++i) query.mac[i] = static_cast<uint8_t>(0x70 + i);
    return query;
}

class RecordQuery : public RecordTest {
  protected:
    /// A TLV of `length` bytes of 0x01.
    struct Item {
        uint16_t type;
        uint32_t length;
    };
    static TlvPtr Message(std::initializer_list<Item> items) {
        TlvPtr msg(TLV_Create());
        for (const Item& item : items) {
            const std::string bytes(item.length, '\x01');
            EXPECT_EQ(TLV_Append_Data(msg.get(), item.type, item.length, bytes.data()), 0u);
        }
        return msg;
    }
};

using RecordQueryRequest = RecordQuery;

TEST_F(RecordQueryRequest, NumberRequestIsItsCodeAlone) {
    for (const uint32_t code : {70u, 0u, 0xFFFFFFFFu}) {
        const TlvPtr msg(DOM_userrecord_tlv_EncodeGetRecordNum(code));
        EXPECT_EQ(TypesOf(msg.get()), std::vector<uint32_t>{0});
        EXPECT_EQ(FindTlv(msg.get(), 0).U32(), code);
    }
    ExpectEveryFailureGivesNull([] { return DOM_userrecord_tlv_EncodeGetRecordNum(70); });
}

TEST_F(RecordQueryRequest, NumberAnswerCarriesTheCount) {
    const TlvPtr msg(DOM_userrecord_tlv_EncodeDisplayRecordNumber(70, 0xFEDCBA98u));
    EXPECT_EQ(TypesOf(msg.get()), (std::vector<uint32_t>{0, 163}));
    EXPECT_EQ(FindTlv(msg.get(), 0).U32(), 70u);
    EXPECT_EQ(BytesOf(msg.get(), 163), "\x98\xBA\xDC\xFE");
    ExpectEveryFailureGivesNull([] { return DOM_userrecord_tlv_EncodeDisplayRecordNumber(70, 1); });
}

TEST_F(RecordQueryRequest, AllRequestCarriesTheListIn16Bits) {
    const TlvPtr msg(DOM_userrecord_tlv_EncodeDisplayRecordAll(71, 0xABCD));
    EXPECT_EQ(TypesOf(msg.get()), (std::vector<uint32_t>{0, 177}));
    EXPECT_EQ(FindTlv(msg.get(), 0).U32(), 71u);
    EXPECT_EQ(BytesOf(msg.get(), 177), "\xCD\xAB");
    ExpectEveryFailureGivesNull([] { return DOM_userrecord_tlv_EncodeDisplayRecordAll(71, 1); });
}

TEST_F(RecordQueryRequest, TimeRequestGoesInItsOrder) {
    const UserRecordTimeQuery query{1, 2, 3, 0xFFFFFFFFu};
    const TlvPtr msg(DOM_userrecord_tlv_EncodeDisplayRecordTime(72, &query));
    EXPECT_EQ(TypesOf(msg.get()), (std::vector<uint32_t>{0, 177, 148, 149, 150}));
    EXPECT_EQ(FindTlv(msg.get(), 0).U32(), 72u);
    EXPECT_EQ(BytesOf(msg.get(), 177), std::string("\x01\x00", 2));
    EXPECT_EQ(BytesOf(msg.get(), 148), std::string("\x03\x00\x00\x00", 4));
    EXPECT_EQ(BytesOf(msg.get(), 149), "\xFF\xFF\xFF\xFF");
    EXPECT_EQ(BytesOf(msg.get(), 150), std::string("\x02\x00", 2));
    ExpectEveryFailureGivesNull(
        [&] { return DOM_userrecord_tlv_EncodeDisplayRecordTime(72, &query); });
}

// Its code is fixed, and the reason goes before the selectors.
TEST_F(RecordQueryRequest, ReasonRequestGoesInItsOrder) {
    const TlvPtr msg(DOM_userrecord_tlv_EncodeDisplayRecordReason(2, 2119, 3));
    EXPECT_EQ(TypesOf(msg.get()), (std::vector<uint32_t>{0, 161, 177, 162}));
    EXPECT_EQ(FindTlv(msg.get(), 0).U32(), 74u);
    EXPECT_EQ(FindTlv(msg.get(), 161).U32(), 2119u);
    EXPECT_EQ(BytesOf(msg.get(), 177), std::string("\x03\x00", 2));
    EXPECT_EQ(BytesOf(msg.get(), 162), std::string("\x02\x00", 2));
    ExpectEveryFailureGivesNull(
        [] { return DOM_userrecord_tlv_EncodeDisplayRecordReason(2, 2119, 3); });
}

TEST_F(RecordQueryRequest, ConditionRequestGoesInItsOrder) {
    const UserRecordQuery query = SampleQuery();
    const TlvPtr msg(DOM_userrecord_tlv_EncodeDisRecordMultParas(73, &query));
    EXPECT_EQ(TypesOf(msg.get()), (std::vector<uint32_t>{0, 163, 177, 162, 160, 151, 152, 158, 159,
                                                         153, 154, 155, 156, 167, 168}));
    EXPECT_EQ(FindTlv(msg.get(), 0).U32(), 73u);
    EXPECT_EQ(BytesOf(msg.get(), 163), "\x04\x03\x02\x01");
    EXPECT_EQ(BytesOf(msg.get(), 177), "\x12\x11");
    EXPECT_EQ(BytesOf(msg.get(), 162), "\x22\x21");
    EXPECT_EQ(BytesOf(msg.get(), 160), std::string("second", 7));
    EXPECT_EQ(BytesOf(msg.get(), 151), std::string("first", 6));
    EXPECT_EQ(BytesOf(msg.get(), 152), std::string("eth1/0/7", 9));
    EXPECT_EQ(BytesOf(msg.get(), 158), "\x70\x71\x72\x73\x74\x75");
    EXPECT_EQ(BytesOf(msg.get(), 159), "\x34\x33\x32\x31");
    EXPECT_EQ(BytesOf(msg.get(), 153), "\x60\x61");
    EXPECT_EQ(BytesOf(msg.get(), 154), "\x61\x61");
    EXPECT_EQ(BytesOf(msg.get(), 155), "\x62\x61");
    EXPECT_EQ(BytesOf(msg.get(), 156), "\x63\x61");
    EXPECT_EQ(BytesOf(msg.get(), 167), "\x40\x41\x42\x43");
    EXPECT_EQ(BytesOf(msg.get(), 168),
              "\x50\x51\x52\x53\x54\x55\x56\x57\x58\x59\x5A\x5B\x5C\x5D\x5E\x5F");
    ExpectEveryFailureGivesNull(
        [&] { return DOM_userrecord_tlv_EncodeDisRecordMultParas(73, &query); });
}

TEST_F(RecordQueryRequest, EmptyTextsOfAConditionRequestAreNotSent) {
    const UserRecordQuery query{};
    const TlvPtr msg(DOM_userrecord_tlv_EncodeDisRecordMultParas(73, &query));
    EXPECT_EQ(TypesOf(msg.get()),
              (std::vector<uint32_t>{0, 163, 177, 162, 158, 159, 153, 154, 155, 156, 167, 168}));
}

TEST_F(RecordQueryRequest, EachTextOfAConditionRequestIsSentAlone) {
    for (const uint16_t type : {151, 152, 160}) {
        UserRecordQuery query{};
        if (type == 151) query.first_name[0] = 'x';
        if (type == 152) query.interface_name[0] = 'x';
        if (type == 160) query.second_name[0] = 'x';
        const TlvPtr msg(DOM_userrecord_tlv_EncodeDisRecordMultParas(73, &query));
        EXPECT_EQ(TypesOf(msg.get()).size(), 13u);
        EXPECT_EQ(BytesOf(msg.get(), type), std::string("x", 2));
    }
}

// Text fields that fill their field have no terminator; what lies behind them is not sent.
TEST_F(RecordQueryRequest, FullTextsAreSentWhole) {
    UserRecordQuery query = SampleQuery();
    memset(query.first_name, 'f', sizeof query.first_name);
    memset(query.second_name, 's', sizeof query.second_name);
    memset(query.interface_name, 'i', sizeof query.interface_name);
    const TlvPtr msg(DOM_userrecord_tlv_EncodeDisRecordMultParas(73, &query));
    EXPECT_EQ(BytesOf(msg.get(), 151), std::string(256, 'f') + '\0');
    EXPECT_EQ(BytesOf(msg.get(), 160), std::string(256, 's') + '\0');
    EXPECT_EQ(BytesOf(msg.get(), 152), std::string(48, 'i') + '\0');
}

TEST_F(RecordQueryRequest, NullQueriesGiveNoMessage) {
    EXPECT_EQ(DOM_userrecord_tlv_EncodeDisplayRecordTime(72, nullptr), nullptr);
    EXPECT_EQ(DOM_userrecord_tlv_EncodeDisRecordMultParas(73, nullptr), nullptr);
}

TEST_F(RecordQuery, NullOutputsFail) {
    const TlvPtr msg = Message({{177, 2}});
    EXPECT_EQ(DOM_userrecord_tlv_DecodeDisplayRecordAll(msg.get(), nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_userrecord_tlv_DecodeDisplayRecordTime(msg.get(), nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_userrecord_tlv_DecodeDisplayRecordReason(msg.get(), nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_userrecord_tlv_DecodeDisRecordMultParas(msg.get(), nullptr), DOM_ERR_FAILED);
}

TEST_F(RecordQuery, EmptyMessagesChangeNothingAndAreNoFailure) {
    const TlvPtr empty(TLV_Create());
    for (TLV_MSG* msg : {empty.get(), static_cast<TLV_MSG*>(nullptr)}) {
        uint16_t selector = 7;
        EXPECT_EQ(DOM_userrecord_tlv_DecodeDisplayRecordAll(msg, &selector), 0u);
        EXPECT_EQ(selector, 7);
        UserRecordTimeQuery by_time{7, 7, 7, 7};
        EXPECT_EQ(DOM_userrecord_tlv_DecodeDisplayRecordTime(msg, &by_time), 0u);
        EXPECT_EQ(by_time.list_selector, 7);
        EXPECT_EQ(by_time.second_selector, 7);
        EXPECT_EQ(by_time.start, 7u);
        EXPECT_EQ(by_time.end, 7u);
        UserRecordReasonQuery by_reason{7, 7, 7};
        EXPECT_EQ(DOM_userrecord_tlv_DecodeDisplayRecordReason(msg, &by_reason), 0u);
        EXPECT_EQ(by_reason.list_selector, 7);
        EXPECT_EQ(by_reason.second_selector, 7);
        EXPECT_EQ(by_reason.reason, 7u);
        const UserRecordQuery before = SampleQuery();
        UserRecordQuery query = before;
        EXPECT_EQ(DOM_userrecord_tlv_DecodeDisRecordMultParas(msg, &query), 0u);
        EXPECT_EQ(memcmp(&query, &before, sizeof query), 0);
    }
}

TEST_F(RecordQuery, OtherTypesAreSkipped) {
    const TlvPtr msg = Message(
        {{0, 4}, {147, 4}, {157, 4}, {164, 4}, {166, 4}, {169, 6}, {178, 8}, {1, 2}, {65535, 0}});
    const UserRecordQuery before = SampleQuery();
    UserRecordQuery query = before;
    EXPECT_EQ(DOM_userrecord_tlv_DecodeDisRecordMultParas(msg.get(), &query), 0u);
    EXPECT_EQ(memcmp(&query, &before, sizeof query), 0);
}

// Types that belong to another query are not this one's.
TEST_F(RecordQuery, EachQueryTakesItsOwnTypes) {
    const TlvPtr msg = Message({{161, 4}, {148, 4}, {149, 4}, {150, 2}});
    UserRecordQuery query{};
    EXPECT_EQ(DOM_userrecord_tlv_DecodeDisRecordMultParas(msg.get(), &query), 0u);
    const UserRecordQuery zero{};
    EXPECT_EQ(memcmp(&query, &zero, sizeof query), 0);

    const TlvPtr others = Message({{161, 4}, {162, 2}});
    UserRecordTimeQuery by_time{};
    EXPECT_EQ(DOM_userrecord_tlv_DecodeDisplayRecordTime(others.get(), &by_time), 0u);
    EXPECT_EQ(by_time.second_selector, 0);
    const TlvPtr times = Message({{148, 4}, {150, 2}});
    UserRecordReasonQuery by_reason{};
    EXPECT_EQ(DOM_userrecord_tlv_DecodeDisplayRecordReason(times.get(), &by_reason), 0u);
    EXPECT_EQ(by_reason.second_selector, 0);
    EXPECT_EQ(by_reason.reason, 0u);
}

TEST_F(RecordQuery, AllQueryComesBack) {
    const TlvPtr msg(DOM_userrecord_tlv_EncodeDisplayRecordAll(71, 0xABCD));
    uint16_t selector = 0;
    EXPECT_EQ(DOM_userrecord_tlv_DecodeDisplayRecordAll(msg.get(), &selector), 0u);
    EXPECT_EQ(selector, 0xABCD);
}

TEST_F(RecordQuery, AllQueryTakesTheLastReadsResult) {
    uint16_t selector = 7;
    EXPECT_EQ(
        DOM_userrecord_tlv_DecodeDisplayRecordAll(Message({{177, 1}, {177, 2}}).get(), &selector),
        0u);
    EXPECT_EQ(selector, 0x0101);
    selector = 7;
    EXPECT_EQ(
        DOM_userrecord_tlv_DecodeDisplayRecordAll(Message({{177, 2}, {177, 1}}).get(), &selector),
        DOM_ERR_FAILED);
    EXPECT_EQ(selector, 0x0101) << "the earlier one was read";
    selector = 7;
    EXPECT_EQ(
        DOM_userrecord_tlv_DecodeDisplayRecordAll(Message({{177, 1}, {162, 2}}).get(), &selector),
        DOM_ERR_FAILED)
        << "another type does not replace the result";
    EXPECT_EQ(selector, 7);
}

TEST_F(RecordQuery, TimeQueryComesBack) {
    const UserRecordTimeQuery query{1, 2, 3, 0xFFFFFFFFu};
    const TlvPtr msg(DOM_userrecord_tlv_EncodeDisplayRecordTime(72, &query));
    UserRecordTimeQuery read{};
    EXPECT_EQ(DOM_userrecord_tlv_DecodeDisplayRecordTime(msg.get(), &read), 0u);
    EXPECT_EQ(read.list_selector, 1);
    EXPECT_EQ(read.second_selector, 2);
    EXPECT_EQ(read.start, 3u);
    EXPECT_EQ(read.end, 0xFFFFFFFFu);
}

TEST_F(RecordQuery, ShortTimesReadAs0AndDoNotCount) {
    UserRecordTimeQuery read{7, 7, 7, 7};
    EXPECT_EQ(
        DOM_userrecord_tlv_DecodeDisplayRecordTime(Message({{148, 3}, {149, 0}}).get(), &read), 0u);
    EXPECT_EQ(read.start, 0u);
    EXPECT_EQ(read.end, 0u);
}

TEST_F(RecordQuery, AnyShortSelectorFailsATimeQueryAndTheRestIsRead) {
    const std::initializer_list<Item> kCases[] = {
        {{177, 1}, {148, 4}, {149, 4}, {150, 2}},
        {{177, 2}, {148, 4}, {149, 4}, {150, 1}},
        {{177, 1}, {177, 2}, {148, 4}, {149, 4}, {150, 2}},
        {{150, 1}, {150, 2}, {148, 4}, {149, 4}, {177, 2}},
    };
    for (const auto& items : kCases) {
        UserRecordTimeQuery read{};
        EXPECT_EQ(DOM_userrecord_tlv_DecodeDisplayRecordTime(Message(items).get(), &read),
                  DOM_ERR_FAILED);
        EXPECT_EQ(read.start, 0x01010101u);
        EXPECT_EQ(read.end, 0x01010101u);
    }
}

TEST_F(RecordQuery, ReasonQueryComesBack) {
    const TlvPtr msg(DOM_userrecord_tlv_EncodeDisplayRecordReason(2, 2119, 3));
    UserRecordReasonQuery read{};
    EXPECT_EQ(DOM_userrecord_tlv_DecodeDisplayRecordReason(msg.get(), &read), 0u);
    EXPECT_EQ(read.list_selector, 3);
    EXPECT_EQ(read.second_selector, 2);
    EXPECT_EQ(read.reason, 2119u);
}

// The daemon refuses by this result, and whoever repeats a selector is answered as said last:
// combining the results would refuse those queries.
TEST_F(RecordQuery, ReasonQueryTakesTheLastSelectorsResult) {
    const struct {
        std::initializer_list<Item> items;
        uint32_t result;
    } kCases[] = {
        {{{177, 1}, {162, 2}}, DOM_OK},         {{{162, 1}, {177, 2}}, DOM_OK},
        {{{177, 2}, {162, 1}}, DOM_ERR_FAILED}, {{{162, 2}, {177, 1}}, DOM_ERR_FAILED},
        {{{177, 1}, {177, 2}}, DOM_OK},         {{{162, 1}}, DOM_ERR_FAILED},
        {{{177, 1}}, DOM_ERR_FAILED},
    };
    for (const auto& item : kCases) {
        UserRecordReasonQuery read{};
        EXPECT_EQ(DOM_userrecord_tlv_DecodeDisplayRecordReason(Message(item.items).get(), &read),
                  item.result);
    }
}

TEST_F(RecordQuery, ReasonDoesNotCountNorReplaceTheSelectorsResult) {
    UserRecordReasonQuery read{7, 7, 7};
    EXPECT_EQ(DOM_userrecord_tlv_DecodeDisplayRecordReason(Message({{161, 3}}).get(), &read), 0u);
    EXPECT_EQ(read.reason, 0u);
    EXPECT_EQ(
        DOM_userrecord_tlv_DecodeDisplayRecordReason(Message({{162, 1}, {161, 4}}).get(), &read),
        DOM_ERR_FAILED);
    EXPECT_EQ(read.reason, 0x01010101u);
}

TEST_F(RecordQuery, ConditionQueryComesBack) {
    const UserRecordQuery query = SampleQuery();
    const TlvPtr msg(DOM_userrecord_tlv_EncodeDisRecordMultParas(73, &query));
    UserRecordQuery read{};
    EXPECT_EQ(DOM_userrecord_tlv_DecodeDisRecordMultParas(msg.get(), &read), 0u);
    EXPECT_EQ(memcmp(&read, &query, sizeof read), 0);
}

TEST_F(RecordQuery, ShortNumbersOfAConditionQueryReadAs0AndDoNotCount) {
    UserRecordQuery read = SampleQuery();
    EXPECT_EQ(
        DOM_userrecord_tlv_DecodeDisRecordMultParas(Message({{159, 3}, {163, 0}}).get(), &read),
        0u);
    EXPECT_EQ(read.condition, 0u);
    EXPECT_EQ(read.record_count, 0u);
}

// Every 16-bit condition and the MAC address count, wherever they stand, and keep their field.
TEST_F(RecordQuery, AnyShortConditionFailsAConditionQueryAndTheRestIsRead) {
    const std::pair<uint16_t, uint32_t> kShort[] = {{153, 1}, {154, 1}, {155, 0}, {156, 1},
                                                    {162, 1}, {177, 0}, {158, 5}};
    const UserRecordQuery before = SampleQuery();
    for (const auto& [type, length] : kShort) {
        UserRecordQuery read = before;
        read.record_count = 0;
        const TlvPtr msg = Message({{type, length}, {163, 4}});
        EXPECT_EQ(DOM_userrecord_tlv_DecodeDisRecordMultParas(msg.get(), &read), DOM_ERR_FAILED)
            << type;
        EXPECT_EQ(read.record_count, 0x01010101u) << type;
        read.record_count = before.record_count;
        EXPECT_EQ(memcmp(&read, &before, sizeof read), 0) << type;

        const TlvPtr twice = Message({{type, length}, {type, 6}});
        EXPECT_EQ(DOM_userrecord_tlv_DecodeDisRecordMultParas(twice.get(), &read), DOM_ERR_FAILED)
            << type << ": a later one does not replace the failure";
    }
}

TEST_F(RecordQuery, LongTextsAreCutAndTerminated) {
    UserRecordQuery read{};
    const TlvPtr msg = Message({{151, 300}, {152, 48}, {160, 256}});
    EXPECT_EQ(DOM_userrecord_tlv_DecodeDisRecordMultParas(msg.get(), &read), 0u);
    EXPECT_EQ(std::string(read.first_name), std::string(255, '\x01'));
    EXPECT_EQ(std::string(read.interface_name), std::string(47, '\x01'));
    EXPECT_EQ(std::string(read.second_name), std::string(255, '\x01'));
}

TEST_F(RecordQuery, AddressesAreCutToTheirFieldAndShortOnesKeepTheRest) {
    UserRecordQuery read = SampleQuery();
    EXPECT_EQ(
        DOM_userrecord_tlv_DecodeDisRecordMultParas(Message({{167, 5}, {168, 17}}).get(), &read),
        0u);
    EXPECT_EQ(memcmp(read.ipv4, "\x01\x01\x01\x01\x50", 4), 0);
    EXPECT_EQ(read.ipv6[0], 1);
    EXPECT_EQ(read.ipv6[15], 1);
    EXPECT_EQ(read.conditions[0], 0x6160) << "the field behind the address";

    read = SampleQuery();
    EXPECT_EQ(
        DOM_userrecord_tlv_DecodeDisRecordMultParas(Message({{167, 2}, {168, 0}}).get(), &read),
        0u);
    EXPECT_EQ(memcmp(read.ipv4, "\x01\x01\x42\x43", 4), 0);
    EXPECT_EQ(read.ipv6[0], 0x50);
}

TEST_F(RecordQuery, LastOfSeveralCounts) {
    const TlvPtr msg(TLV_Create());
    Appender append(msg.get());
    append.U32(163, 1).U32(163, 2).Text(151, "old").Text(151, "new").U16(153, 1).U16(153, 2);
    ASSERT_FALSE(append.Failed());
    UserRecordQuery read{};
    EXPECT_EQ(DOM_userrecord_tlv_DecodeDisRecordMultParas(msg.get(), &read), 0u);
    EXPECT_EQ(read.record_count, 2u);
    EXPECT_STREQ(read.first_name, "new");
    EXPECT_EQ(read.conditions[0], 2);
}

}  // namespace
