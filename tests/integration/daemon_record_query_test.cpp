// Record queries: which records they give, in which order and in what form.
#include <cstring>

#include "record_query_client.h"
#include "record_reports.h"
#include "tests/golden/hex_file.h"

using namespace daemon_test;

namespace {

constexpr uint32_t kOnline = DOM_RECORD_ONLINE_FAIL;
constexpr uint32_t kAbnormal = DOM_RECORD_ABNORMAL_OFFLINE;
constexpr uint32_t kNormal = DOM_RECORD_NORMAL_OFFLINE;

using Names = std::vector<std::string>;

class DaemonRecordQuery : public DaemonTest {
  protected:
    void SetUp() override {
        DaemonTest::SetUp();
        KeepAllRecords();
    }

    static void Add(uint32_t list, const std::string& user, uint32_t time,
                    const std::function<void(UserRecord&)>& fill = {}) {
        const RecordPtr record = MakeRecord(user, time);
        if (fill) fill(*record);
        ASSERT_NE(Report(list, *record), 0u);
    }

    static uint32_t CountOf(uint16_t list) {
        Query query(DOM_MSG_RECORD_NUMBER);
        const Answer answer = Ask(query.List(list).Take(), DOM_OP_GET);
        uint32_t count = kNoReply;
        (void)DOM_userrecord_tlv_DecodeDisplayRecordNumber(answer.body.get(), &count);
        return answer.kind == DOM_REPLY_KIND_DATA ? count : kNoReply;
    }

    static Names UsersOf(Query query) { return AskPage(std::move(query)).Users(); }
};

TEST_F(DaemonRecordQuery, NumbersAreThoseOfOneListOrOfAll) {
    Add(kOnline, "a", 1);
    Add(kAbnormal, "b", 2);
    Add(kNormal, "c", 3);
    Add(kNormal, "d", 4);
    EXPECT_EQ(CountOf(kOnline), 1u);
    EXPECT_EQ(CountOf(kAbnormal), 1u);
    EXPECT_EQ(CountOf(kNormal), 2u);
    EXPECT_EQ(CountOf(0), 4u);
    EXPECT_EQ(CountOf(2), kNoReply);
    ASSERT_EQ(ResetRecords(DOM_MSG_RESET_OFFLINE_NORMAL), DOM_OK);
    EXPECT_EQ(CountOf(kNormal), 0u);
    EXPECT_EQ(CountOf(0), 2u);
}

TEST_F(DaemonRecordQuery, AListIsGivenNewestFirstWithItsNumber) {
    for (uint32_t time = 1; time <= 3; ++time) Add(kAbnormal, std::to_string(time), time);
    Add(kNormal, "other", 9);
    const RecordPage page = AskPage(std::move(Query(DOM_MSG_RECORD_ALL).List(kAbnormal)));
    EXPECT_EQ(page.kind, DOM_REPLY_KIND_DATA);
    EXPECT_EQ(page.header, static_cast<int>(kAbnormal));
    EXPECT_EQ(page.Users(), (Names{"3", "2", "1"}));
    EXPECT_EQ(page.Serials(), (std::vector<uint64_t>{3, 2, 1}));
    for (const FoundRecord& found : page.records) EXPECT_EQ(found.list, kAbnormal);
    EXPECT_EQ(page.looked_at, 3);
    EXPECT_TRUE(page.positions.empty());
}

// A list is what its serial numbers say, even when the clock of an access module is wrong.
TEST_F(DaemonRecordQuery, WithinAListTheSerialNumberDecides) {
    Add(kOnline, "first", 100);
    Add(kOnline, "second", 50);
    Add(kOnline, "third", 70);
    EXPECT_EQ(UsersOf(Query(DOM_MSG_RECORD_ALL)), (Names{"third", "second", "first"}));
}

TEST_F(DaemonRecordQuery, AllListsGoByTimeAndThenByList) {
    Add(kNormal, "normal 5", 5);
    Add(kAbnormal, "abnormal 5", 5);
    Add(kOnline, "online 5", 5);
    Add(kAbnormal, "abnormal 7", 7);
    Add(kNormal, "normal 6", 6);
    const RecordPage page = AskPage(Query(DOM_MSG_RECORD_ALL));
    EXPECT_EQ(page.header, 0);
    EXPECT_EQ(page.Users(),
              (Names{"abnormal 7", "normal 6", "online 5", "abnormal 5", "normal 5"}));
    std::vector<uint32_t> lists;
    for (const FoundRecord& found : page.records) lists.push_back(found.list);
    EXPECT_EQ(lists, (std::vector<uint32_t>{kAbnormal, kNormal, kOnline, kAbnormal, kNormal}));
}

TEST_F(DaemonRecordQuery, TheVerboseFormHasEveryField) {
    Add(kOnline, "user", 1700000000, [](UserRecord& record) {
        record.second_number = 27;
        memcpy(record.ipv4, "\x0a\x01\x02\x03", 4);
        memset(record.ipv6, 0x20, sizeof record.ipv6);
        record.third_number = 3600;
        record.fourth_number = 5;
        record.number16[0] = 100;
        record.number16[1] = 200;
        record.number16[2] = 300;
        memcpy(record.mac, "\x02\x00\x5e\x00\x53\x01", 6);
        strcpy(record.first_name, "isp.example");
        strcpy(record.interface_name, "GE1/0/1");
        SetDetail(record, "no address left");
    });
    const RecordPage page = AskPage(Query(DOM_MSG_RECORD_ALL));
    ASSERT_EQ(page.records.size(), 1u);
    EXPECT_FALSE(page.records[0].brief);
    const UserRecord& record = page.records[0].record;
    EXPECT_EQ(record.first_number, 1700000000u);
    EXPECT_EQ(record.second_number, 27u);
    EXPECT_EQ(memcmp(record.ipv4, "\x0a\x01\x02\x03", 4), 0);
    EXPECT_EQ(record.ipv6[15], 0x20);
    EXPECT_EQ(record.third_number, 3600u);
    EXPECT_EQ(record.fourth_number, 5u);
    EXPECT_EQ(record.number16[0], 100);
    EXPECT_EQ(record.number16[1], 200);
    EXPECT_EQ(record.number16[2], 300);
    EXPECT_EQ(memcmp(record.mac, "\x02\x00\x5e\x00\x53\x01", 6), 0);
    EXPECT_STREQ(record.first_name, "isp.example");
    EXPECT_STREQ(record.second_name, "user");
    EXPECT_STREQ(record.interface_name, "GE1/0/1");
    EXPECT_EQ(page.records[0].detail, "no address left");
    EXPECT_EQ(record.serial, 1u);
}

TEST_F(DaemonRecordQuery, TheBriefFormHasItsSerialNumberAndTimeInFront) {
    Add(kOnline, "user", 77, [](UserRecord& record) {
        record.second_number = 27;
        memcpy(record.mac, "\x02\x00\x5e\x00\x53\x01", 6);
        SetDetail(record, "why");
    });
    for (const uint16_t type : {DOM_TLV_QUERY_SECOND_SELECTOR, DOM_TLV_QUERY_TIME_SELECTOR}) {
        const RecordPage page = AskPage(std::move(Query(DOM_MSG_RECORD_ALL).Number16(type, 1)));
        ASSERT_EQ(page.records.size(), 1u);
        const FoundRecord& found = page.records[0];
        EXPECT_TRUE(found.brief);
        EXPECT_EQ(found.list, kOnline);
        EXPECT_EQ(found.brief_serial, 1u);
        EXPECT_EQ(found.brief_time, 77u);
        EXPECT_EQ(found.record.second_number, 27u);
        EXPECT_STREQ(found.record.second_name, "user");
        EXPECT_EQ(memcmp(found.record.mac, "\x02\x00\x5e\x00\x53\x01", 6), 0);
        EXPECT_EQ(found.detail, "why");
    }
}

TEST_F(DaemonRecordQuery, ATimeRangeHoldsBothItsEnds) {
    for (uint32_t time = 10; time <= 14; ++time) Add(kOnline, std::to_string(time), time);
    const auto range = [](uint32_t start, uint32_t end) {
        return UsersOf(std::move(Query(DOM_MSG_RECORD_BY_TIME)
                                     .Number32(DOM_TLV_QUERY_START, start)
                                     .Number32(DOM_TLV_QUERY_END, end)));
    };
    EXPECT_EQ(range(11, 13), (Names{"13", "12", "11"}));
    EXPECT_EQ(range(12, 12), Names{"12"});
    EXPECT_EQ(range(0, 0xFFFFFFFF).size(), 5u);
    EXPECT_EQ(range(0, 0), Names{});
    EXPECT_EQ(UsersOf(std::move(Query(DOM_MSG_RECORD_BY_TIME).Number32(DOM_TLV_QUERY_START, 13))),
              (Names{"14", "13"}));
    EXPECT_EQ(UsersOf(std::move(Query(DOM_MSG_RECORD_BY_TIME).Number32(DOM_TLV_QUERY_END, 11))),
              (Names{"11", "10"}));
}

TEST_F(DaemonRecordQuery, AReasonIsFoundAndSoIsReasonZero) {
    Add(kOnline, "none", 1);
    Add(kOnline, "rejected", 2, [](UserRecord& record) { record.second_number = 15; });
    const auto reason = [](uint32_t code) {
        return UsersOf(
            std::move(Query(DOM_MSG_RECORD_BY_REASON).Number32(DOM_TLV_QUERY_REASON, code)));
    };
    EXPECT_EQ(reason(15), Names{"rejected"});
    EXPECT_EQ(reason(0), Names{"none"});
}

TEST_F(DaemonRecordQuery, NothingFoundIsTheNoRecordMessage) {
    EXPECT_TRUE(AskPage(Query(DOM_MSG_RECORD_ALL)).NoRecord());
    Add(kOnline, "a", 5);
    EXPECT_TRUE(AskPage(std::move(Query(DOM_MSG_RECORD_ALL).List(kNormal))).NoRecord());
    EXPECT_TRUE(AskPage(std::move(Query(DOM_MSG_RECORD_BY_TIME).Number32(DOM_TLV_QUERY_START, 6)))
                    .NoRecord());
    EXPECT_TRUE(AskPage(std::move(Query(DOM_MSG_RECORD_BY_TIME)
                                      .Number32(DOM_TLV_QUERY_START, 6)
                                      .Number32(DOM_TLV_QUERY_END, 5)))
                    .NoRecord());
    const Answer answer = Ask(Query(DOM_MSG_RECORD_ALL).List(kNormal).Take(), DOM_OP_GET);
    const Message no_record(DOM_userrecord_tlv_EncodeNoRecordMsg());
    EXPECT_EQ(Image(answer.body.get()), Image(no_record.get()));
}

/// One condition of the table: what the wanted record has, and what asks for it.
struct Condition {
    const char* name;
    uint32_t bit;
    std::function<void(UserRecord&)> fill;
    std::function<void(Query&)> ask;       // for that record
    std::function<void(Query&)> ask_zero;  // for 0 or the empty text
};

std::vector<Condition> Conditions() {
    const auto number16 = [](uint16_t type, uint16_t value) {
        return [=](Query& query) { query.Number16(type, value); };
    };
    const auto raw = [](uint16_t type, std::vector<uint8_t> value) {
        return [=](Query& query) { query.Raw(type, value); };
    };
    const auto text = [](uint16_t type, const char* value) {
        return [=](Query& query) { query.Text(type, value); };
    };
    return {
        {"OuterVlan", 0x001, [](UserRecord& record) { record.number16[0] = 7; },
         number16(DOM_TLV_QUERY_CONDITION_1, 7), number16(DOM_TLV_QUERY_CONDITION_1, 0)},
        {"InnerVlan", 0x002, [](UserRecord& record) { record.number16[1] = 7; },
         number16(DOM_TLV_QUERY_CONDITION_2, 7), number16(DOM_TLV_QUERY_CONDITION_2, 0)},
        {"Service", 0x004, [](UserRecord& record) { record.number16[2] = 7; },
         number16(DOM_TLV_QUERY_CONDITION_3, 7), number16(DOM_TLV_QUERY_CONDITION_3, 0)},
        {"Mac", 0x010, [](UserRecord& record) { record.mac[5] = 7; },
         raw(DOM_TLV_QUERY_MAC, {0, 0, 0, 0, 0, 7}), raw(DOM_TLV_QUERY_MAC, {0, 0, 0, 0, 0, 0})},
        {"Reason", 0x020, [](UserRecord& record) { record.second_number = 7; },
         [](Query& query) { query.Number32(DOM_TLV_QUERY_CONDITION, 7); },
         [](Query& query) { query.Number32(DOM_TLV_QUERY_CONDITION, 0); }},
        {"Domain", 0x040, [](UserRecord& record) { strcpy(record.first_name, "isp"); },
         text(DOM_TLV_QUERY_FIRST_NAME, "isp"), text(DOM_TLV_QUERY_FIRST_NAME, "")},
        {"User", 0x080, [](UserRecord& record) { strcpy(record.second_name, "someone"); },
         text(DOM_TLV_QUERY_SECOND_NAME, "someone"), text(DOM_TLV_QUERY_SECOND_NAME, "")},
        {"Interface", 0x100, [](UserRecord& record) { strcpy(record.interface_name, "ge1"); },
         text(DOM_TLV_QUERY_INTERFACE, "ge1"), text(DOM_TLV_QUERY_INTERFACE, "")},
        {"Ipv4", 0x200, [](UserRecord& record) { record.ipv4[0] = 7; },
         raw(DOM_TLV_RECORD_IPV4, {7, 0, 0, 0}), raw(DOM_TLV_RECORD_IPV4, {0, 0, 0, 0})},
        {"Ipv6", 0x400, [](UserRecord& record) { record.ipv6[15] = 7; },
         raw(DOM_TLV_RECORD_IPV6, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 7}),
         raw(DOM_TLV_RECORD_IPV6, std::vector<uint8_t>(16, 0))},
    };
}

/// One daemon for the table: two records, of which the second has every field set.
TEST_F(DaemonRecordQuery, EachConditionChoosesAlone) {
    Add(kOnline, "", 1);
    Add(kOnline, "", 2, [](UserRecord& record) {
        for (const Condition& condition : Conditions()) condition.fill(record);
    });
    for (const Condition& condition : Conditions()) {
        SCOPED_TRACE(condition.name);
        Query set(DOM_MSG_RECORD_BY_CONDITIONS);
        condition.ask(set.Conditions(condition.bit));
        EXPECT_EQ(AskPage(std::move(set)).Serials(), std::vector<uint64_t>{2});
        // The mark makes 0 a value like every other one.
        Query zero(DOM_MSG_RECORD_BY_CONDITIONS);
        condition.ask_zero(zero.Conditions(condition.bit));
        EXPECT_EQ(AskPage(std::move(zero)).Serials(), std::vector<uint64_t>{1});
        Query missing(DOM_MSG_RECORD_BY_CONDITIONS);
        EXPECT_EQ(AskPage(std::move(missing.Conditions(condition.bit))).Serials(),
                  std::vector<uint64_t>{1});
        Query unmarked(DOM_MSG_RECORD_BY_CONDITIONS);
        condition.ask(unmarked.Conditions(0));
        EXPECT_EQ(AskPage(std::move(unmarked)).Serials(), (std::vector<uint64_t>{2, 1}));
        // Without any marks 0 means any.
        Query implied(DOM_MSG_RECORD_BY_CONDITIONS);
        condition.ask(implied);
        EXPECT_EQ(AskPage(std::move(implied)).Serials(), std::vector<uint64_t>{2});
        Query any(DOM_MSG_RECORD_BY_CONDITIONS);
        condition.ask_zero(any);
        EXPECT_EQ(AskPage(std::move(any)).Serials(), (std::vector<uint64_t>{2, 1}));
    }
}

TEST_F(DaemonRecordQuery, AllConditionsMustHold) {
    const auto with = [](uint16_t vlan, uint32_t reason) {
        return [=](UserRecord& record) {
            record.number16[0] = vlan;
            record.second_number = reason;
        };
    };
    Add(kOnline, "u", 1, with(7, 15));
    Add(kOnline, "u", 2, with(7, 16));
    Add(kOnline, "u", 3, with(8, 15));
    Add(kOnline, "v", 4, with(7, 15));
    Add(kOnline, "u", 5, with(7, 15));
    Query query(DOM_MSG_RECORD_BY_CONDITIONS);
    query.Number16(DOM_TLV_QUERY_CONDITION_1, 7)
        .Number32(DOM_TLV_QUERY_REASON, 15)
        .Text(DOM_TLV_QUERY_SECOND_NAME, "u")
        .Number32(DOM_TLV_QUERY_END, 4);
    EXPECT_EQ(AskPage(std::move(query)).Serials(), std::vector<uint64_t>{1});
}

TEST_F(DaemonRecordQuery, UserNamesCountExactlyDomainsAndInterfacesInAnyCase) {
    Add(kOnline, "Anna", 1, [](UserRecord& record) {
        strcpy(record.first_name, "ISP.Example");
        strcpy(record.interface_name, "GE1/0/1");
    });
    const auto finds = [](uint16_t type, const char* text) {
        return !AskPage(std::move(Query(DOM_MSG_RECORD_BY_CONDITIONS).Text(type, text))).NoRecord();
    };
    EXPECT_TRUE(finds(DOM_TLV_QUERY_SECOND_NAME, "Anna"));
    EXPECT_FALSE(finds(DOM_TLV_QUERY_SECOND_NAME, "anna"));
    EXPECT_FALSE(finds(DOM_TLV_QUERY_SECOND_NAME, "Ann"));
    EXPECT_FALSE(finds(DOM_TLV_QUERY_SECOND_NAME, "Annabel"));
    EXPECT_TRUE(finds(DOM_TLV_QUERY_FIRST_NAME, "isp.eXample"));
    EXPECT_FALSE(finds(DOM_TLV_QUERY_FIRST_NAME, "isp"));
    EXPECT_TRUE(finds(DOM_TLV_QUERY_INTERFACE, "ge1/0/1"));
    EXPECT_FALSE(finds(DOM_TLV_QUERY_INTERFACE, "ge1/0/10"));
}

TEST_F(DaemonRecordQuery, TheLongestNamesAreFound) {
    const std::string user(255, 'u');
    const std::string interface(47, 'i');
    Add(kOnline, user, 1, [&](UserRecord& record) {
        strcpy(record.first_name, std::string(255, 'd').c_str());
        strcpy(record.interface_name, interface.c_str());
    });
    Query query(DOM_MSG_RECORD_BY_CONDITIONS);
    query.Text(DOM_TLV_QUERY_SECOND_NAME, user)
        .Text(DOM_TLV_QUERY_FIRST_NAME, std::string(255, 'D'))
        .Text(DOM_TLV_QUERY_INTERFACE, interface);
    EXPECT_EQ(AskPage(std::move(query)).Users(), Names{user});
}

// Neither bytes come from a codec of the library alone.
TEST_F(DaemonRecordQuery, TheGoldenQuestionForCountsGetsTheGoldenAnswer) {
    const auto add = [](const std::string& domain, uint32_t reason) {
        Add(kOnline, "user", 1, [&](UserRecord& record) {
            strcpy(record.first_name, domain.c_str());
            strcpy(record.interface_name, "ETH1/0/7");
            record.second_number = reason;
        });
    };
    add("isp-b.example", 15);
    add("ISP-B.example", 15);
    add("isp-a.example", 15);
    add("isp-a.example", 16);
    std::string image = golden::ReadHexFile("msg_075_record_top");
    const Answer answer =
        Ask(TLV_CreateReceiveMsg(TLV_FORM_BUFFER, reinterpret_cast<uintptr_t>(image.data()),
                                 static_cast<uint32_t>(image.size())),
            DOM_OP_GET);
    ASSERT_EQ(answer.kind, DOM_REPLY_KIND_DATA);
    std::string got(TLV_GetMsgLen(answer.body.get(), TLV_FORM_BUFFER), '\0');
    got.resize(TLV_Flush(answer.body.get(), TLV_FORM_BUFFER, static_cast<uint32_t>(got.size()),
                         reinterpret_cast<uintptr_t>(got.data())));
    EXPECT_EQ(golden::ToHex(got), golden::ToHex(golden::ReadHexFile("reply_record_top")));
}

TEST_F(DaemonRecordQuery, OneRecordIsFoundByItsNumber) {
    for (uint32_t time = 1; time <= 3; ++time) Add(kNormal, std::to_string(time), time);
    const auto ask = [](uint64_t serial) {
        return AskPage(std::move(
            Query(DOM_MSG_RECORD_ALL).List(kNormal).PageOf(1).Position(kNormal, serial + 1)));
    };
    EXPECT_EQ(ask(2).Users(), Names{"2"});
    EXPECT_EQ(ask(3).Users(), Names{"3"});
    EXPECT_EQ(ask(9).Users(), Names{"3"});  // the next older one
    EXPECT_TRUE(ask(0).NoRecord());
}

TEST_F(DaemonRecordQuery, QueriesTakeNoOtherOperation) {
    for (uint32_t code = DOM_MSG_RECORD_NUMBER; code <= DOM_MSG_RECORD_TOP; ++code) {
        for (const uint32_t operation : {0u, 1u, 3u, 6u, 0xFFFFFFFFu}) {
            EXPECT_EQ(ResultOf(Ask(Query(code).Take(), operation)), AAAD_ERR_MALFORMED)
                << code << ' ' << operation;
        }
    }
}

TEST_F(DaemonRecordQuery, TheLibrarysCallsAreAnswered) {
    Add(kOnline, "early", 10, [](UserRecord& record) { record.second_number = 15; });
    Add(kAbnormal, "late", 20, [](UserRecord& record) { strcpy(record.first_name, "isp"); });

    uint32_t count = 0;
    EXPECT_EQ(DOM_userrecord_mor_GetRecordNumber(DOM_MSG_RECORD_NUMBER, &count), DOM_OK);
    EXPECT_EQ(count, 2u);

    const auto users = [](TLV_MSG* reply, uint16_t status) {
        const Message owned(reply);
        return ReadPage(status, reply).Users();
    };
    uint16_t status = 0;
    TLV_MSG* reply = DOM_userrecord_mor_GetRecordAll(DOM_MSG_RECORD_ALL, kOnline, &status);
    EXPECT_EQ(status, DOM_REPLY_KIND_DATA);
    EXPECT_EQ(users(reply, status), Names{"early"});

    const UserRecordTimeQuery time{0, 1, 11, 20};
    reply = DOM_userrecord_mor_GetRecordByTime(DOM_MSG_RECORD_BY_TIME, &time, &status);
    EXPECT_EQ(users(reply, status), Names{"late"});

    reply = DOM_userrecord_mor_GetRecordByReason(0, 15, 0, &status);
    EXPECT_EQ(users(reply, status), Names{"early"});

    UserRecordQuery query{};
    reply =
        DOM_userrecord_mor_GetRecordContentByCond(DOM_MSG_RECORD_BY_CONDITIONS, &query, &status);
    EXPECT_EQ(users(reply, status), (Names{"late", "early"}));
    strcpy(query.first_name, "ISP");
    reply =
        DOM_userrecord_mor_GetRecordContentByCond(DOM_MSG_RECORD_BY_CONDITIONS, &query, &status);
    EXPECT_EQ(users(reply, status), Names{"late"});
    strcpy(query.first_name, "nobody");
    reply =
        DOM_userrecord_mor_GetRecordContentByCond(DOM_MSG_RECORD_BY_CONDITIONS, &query, &status);
    const Message no_record(reply);
    EXPECT_TRUE(ReadPage(status, reply).NoRecord());
}

}  // namespace
