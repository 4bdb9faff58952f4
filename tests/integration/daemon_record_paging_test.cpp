// Record queries page by page, their bounds, and what they refuse.
#include <platform/aaa_tlv.h>

#include <algorithm>
#include <cstring>
#include <set>

#include "record_query_client.h"
#include "record_reports.h"

using namespace daemon_test;

namespace {

constexpr uint32_t kOnline = DOM_RECORD_ONLINE_FAIL;
constexpr uint32_t kAbnormal = DOM_RECORD_ABNORMAL_OFFLINE;
constexpr uint32_t kNormal = DOM_RECORD_NORMAL_OFFLINE;

constexpr int64_t kLookedAt = 4096;

/// A daemon whose lists are filled before it starts.
class DaemonRecordPaging : public ::testing::Test {
  protected:
    /// Records `first` to `last`, each named and dated by its number.
    void Fill(uint32_t list, uint64_t first, uint64_t last,
              const std::function<void(UserRecord&)>& more = {}) {
        FillRecords(daemon_, list, first, last, [&](UserRecord& record) {
            record.first_number = static_cast<uint32_t>(record.serial);
            snprintf(record.second_name, sizeof record.second_name, "u%u", record.first_number);
            if (more) more(record);
        });
    }

    static Query All() { return Query(DOM_MSG_RECORD_ALL); }

    DaemonProcess daemon_;
};

TEST_F(DaemonRecordPaging, APageHasFiftyRecordsUnlessItIsAskedForMore) {
    Fill(kOnline, 1, 1200);
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(AskPage(All()).records.size(), 50u);
    EXPECT_EQ(AskPage(std::move(All().PageOf(0))).records.size(), 50u);
    EXPECT_EQ(AskPage(std::move(All().PageOf(1))).records.size(), 1u);
    EXPECT_EQ(AskPage(std::move(All().PageOf(500))).records.size(), 500u);
    EXPECT_EQ(AskPage(std::move(All().PageOf(0xFFFFFFFF))).records.size(), 500u);
}

TEST_F(DaemonRecordPaging, TheLastPageHasNoContinuationEvenWhenItIsFull) {
    Fill(kOnline, 1, 100);
    ASSERT_TRUE(daemon_.Start());
    const std::vector<RecordPage> pages = AskAll([] { return All(); });
    ASSERT_EQ(pages.size(), 2u);
    EXPECT_EQ(pages[0].positions, (std::vector<std::pair<uint32_t, uint64_t>>{{kOnline, 51}}));
    EXPECT_EQ(pages[0].Serials().front(), 100u);
    EXPECT_EQ(pages[0].Serials().back(), 51u);
    EXPECT_EQ(pages[1].Serials().front(), 50u);
    EXPECT_EQ(pages[1].Serials().back(), 1u);
    EXPECT_TRUE(pages[1].positions.empty());
}

TEST_F(DaemonRecordPaging, AllListsAreWalkedTogether) {
    Fill(kOnline, 1, 70);
    Fill(kAbnormal, 41, 60);
    Fill(kNormal, 1, 10);
    ASSERT_TRUE(daemon_.Start());
    std::vector<std::pair<uint32_t, uint32_t>> walked;  // time descending, list ascending
    for (const RecordPage& page : AskAll([] { return std::move(All().PageOf(7)); })) {
        for (const FoundRecord& found : page.records) {
            walked.emplace_back(found.record.first_number, found.list);
        }
    }
    auto sorted = walked;
    std::sort(sorted.begin(), sorted.end(), [](const auto& left, const auto& right) {
        return left.first != right.first ? left.first > right.first : left.second < right.second;
    });
    EXPECT_EQ(walked, sorted);
    EXPECT_EQ(walked.size(), 100u);
    EXPECT_EQ((std::set<std::pair<uint32_t, uint32_t>>(walked.begin(), walked.end()).size()), 100u);
}

// The list is full, so every report drops its oldest record.
TEST_F(DaemonRecordPaging, WhatIsThereDuringTheWholeWalkIsSeenOnce) {
    for (const uint32_t list : {kOnline, kAbnormal, kNormal}) Fill(list, 1, 200);
    ASSERT_TRUE(daemon_.Start({"--max-records", "200"}));
    KeepAllRecords();
    uint32_t time = 201;
    int pages_left = 30;
    const auto pages = AskAll([] { return std::move(All().PageOf(10)); },
                              [&] {
                                  if (pages_left-- <= 0) return;
                                  for (const uint32_t list : {kOnline, kAbnormal, kNormal}) {
                                      ASSERT_NE(Report(list, *MakeRecord("new", time)), 0u);
                                  }
                                  ++time;
                              });
    std::map<std::pair<uint32_t, uint64_t>, int> seen;
    for (const RecordPage& page : pages) {
        for (const FoundRecord& found : page.records) ++seen[{found.list, found.record.serial}];
    }
    const uint64_t oldest = time - 200;  // serial numbers go with the time here
    ASSERT_GT(oldest, 1u);
    for (const uint32_t list : {kOnline, kAbnormal, kNormal}) {
        for (uint64_t serial = oldest; serial <= 200; ++serial) {
            EXPECT_EQ((seen[{list, serial}]), 1) << list << ' ' << serial;
        }
    }
    for (const auto& [record, times] : seen) EXPECT_LE(times, 1) << record.second;
}

TEST_F(DaemonRecordPaging, AWalkGoesOnBelowARecordThatWasDropped) {
    Fill(kOnline, 1, 20);
    ASSERT_TRUE(daemon_.Start());
    const RecordPage first = AskPage(std::move(All().PageOf(5)));
    ASSERT_EQ(first.positions.size(), 1u);
    ASSERT_EQ(ResetRecords(DOM_MSG_RESET_ONLINE_FAIL), DOM_OK);
    EXPECT_TRUE(AskPage(std::move(All().Position(kOnline, first.positions[0].second))).NoRecord());
}

TEST_F(DaemonRecordPaging, ASearchStopsAndSaysWhereItGoesOn) {
    Fill(kOnline, 1, kLookedAt + 10);
    ASSERT_TRUE(daemon_.Start());
    const auto make = [] {
        return std::move(Query(DOM_MSG_RECORD_BY_CONDITIONS).Text(DOM_TLV_QUERY_SECOND_NAME, "u3"));
    };
    const std::vector<RecordPage> pages = AskAll(make);
    ASSERT_EQ(pages.size(), 2u);
    EXPECT_EQ(pages[0].kind, DOM_REPLY_KIND_DATA);
    EXPECT_EQ(pages[0].result, kNoReply);  // not the message that there is no record
    EXPECT_TRUE(pages[0].records.empty());
    EXPECT_EQ(pages[0].looked_at, kLookedAt);
    EXPECT_EQ(pages[0].positions, (std::vector<std::pair<uint32_t, uint64_t>>{{kOnline, 11}}));
    EXPECT_EQ(pages[1].Serials(), std::vector<uint64_t>{3});
    EXPECT_EQ(pages[1].looked_at, 10);
}

TEST_F(DaemonRecordPaging, LongDetailsMakeAPageShorterAndArriveWhole) {
    const std::string detail(60000, 'x');
    Fill(kOnline, 1, 12,
         [&](UserRecord& record) { SetDetail(record, std::to_string(record.serial) + detail); });
    ASSERT_TRUE(daemon_.Start());
    uint64_t expected = 12;
    for (const RecordPage& page : AskAll([] { return All(); })) {
        EXPECT_LE(page.length, 256u * 1024);
        for (const FoundRecord& found : page.records) {
            EXPECT_EQ(found.record.serial, expected);
            EXPECT_EQ(found.detail, std::to_string(expected) + detail);
            --expected;
        }
    }
    EXPECT_EQ(expected, 0u);
}

// The newest 156 records make up almost the 160 KiB at which a page ends, and then comes one with
// the longest detail that a stored record can have.
TEST_F(DaemonRecordPaging, TheLongestRecordFitsBehindAnAlmostFullPage) {
    Fill(kOnline, 1, 4, [&](UserRecord& record) { SetDetail(record, std::string(64850, 'x')); });
    Fill(kAbnormal, 5, 160, [](UserRecord& record) { SetDetail(record, std::string(830, 'x')); });
    ASSERT_TRUE(daemon_.Start());
    const auto pages = AskAll([] { return std::move(All().PageOf(500)); });
    EXPECT_EQ(pages[0].records.size(), 157u);
    EXPECT_GT(pages[0].length, 215u * 1024);
    size_t records = 0;
    for (const RecordPage& page : pages) {
        EXPECT_LE(page.length, 256u * 1024);
        records += page.records.size();
    }
    EXPECT_EQ(records, 160u);
}

class DaemonRecordQueryRefusals : public DaemonTest {
  protected:
    static bool Refuses(Query query) {
        return ResultOf(Ask(query.Take(), DOM_OP_GET)) == AAAD_ERR_MALFORMED;
    }
    static Query Top(uint32_t by = 0) {
        return std::move(Query(DOM_MSG_RECORD_TOP).Number32(DOM_TLV_RECORD_TOP_BY, by));
    }
    static Query Conditions() { return Query(DOM_MSG_RECORD_BY_CONDITIONS); }
};

TEST_F(DaemonRecordQueryRefusals, UnknownListsAndSelectors) {
    for (const uint16_t list : {2, 5, 0xFFFF}) {
        for (uint32_t code = DOM_MSG_RECORD_NUMBER; code <= DOM_MSG_RECORD_TOP; ++code) {
            Query query(code);
            query.List(list).Number32(DOM_TLV_QUERY_REASON, 0).Number32(DOM_TLV_RECORD_TOP_BY, 0);
            EXPECT_TRUE(Refuses(std::move(query))) << code << ' ' << list;
        }
    }
    EXPECT_TRUE(Refuses(std::move(Conditions().Number16(DOM_TLV_QUERY_SECOND_SELECTOR, 2))));
    EXPECT_TRUE(Refuses(std::move(Conditions().Number16(DOM_TLV_QUERY_TIME_SELECTOR, 2))));
}

TEST_F(DaemonRecordQueryRefusals, WhatIsMissing) {
    EXPECT_TRUE(Refuses(Query(DOM_MSG_RECORD_BY_REASON)));
    EXPECT_TRUE(Refuses(Query(DOM_MSG_RECORD_TOP)));
    EXPECT_TRUE(Refuses(Top(3)));
}

TEST_F(DaemonRecordQueryRefusals, WhatStandsTwice) {
    const std::vector<uint8_t> number(4), mac(6), ipv6(16), half(2);
    const std::vector<std::pair<uint16_t, std::vector<uint8_t>>> items = {
        {DOM_TLV_RECORD_LIST, half},
        {DOM_TLV_QUERY_SECOND_SELECTOR, half},
        {DOM_TLV_QUERY_TIME_SELECTOR, half},
        {DOM_TLV_RECORD_COUNT, number},
        {DOM_TLV_QUERY_START, number},
        {DOM_TLV_QUERY_END, number},
        {DOM_TLV_QUERY_REASON, number},
        {DOM_TLV_QUERY_CONDITION, number},
        {DOM_TLV_QUERY_CONDITION_1, half},
        {DOM_TLV_QUERY_CONDITION_2, half},
        {DOM_TLV_QUERY_CONDITION_3, half},
        {DOM_TLV_QUERY_CONDITION_4, half},
        {DOM_TLV_QUERY_MAC, mac},
        {DOM_TLV_QUERY_FIRST_NAME, {0}},
        {DOM_TLV_QUERY_SECOND_NAME, {0}},
        {DOM_TLV_QUERY_INTERFACE, {0}},
        {DOM_TLV_RECORD_IPV4, number},
        {DOM_TLV_RECORD_IPV6, ipv6},
        {DOM_TLV_RECORD_CONDITIONS, number},
        {DOM_TLV_RECORD_TOP_BY, number},
    };
    for (const auto& [type, value] : items) {
        EXPECT_FALSE(Refuses(std::move(Conditions().Raw(type, value)))) << type;
        EXPECT_TRUE(Refuses(std::move(Conditions().Raw(type, value).Raw(type, value)))) << type;
        // One byte more is another value.
        std::vector<uint8_t> longer = value;
        if (longer.size() == 1) continue;  // texts
        longer.push_back(0);
        EXPECT_TRUE(Refuses(std::move(Conditions().Raw(type, longer)))) << type;
        longer.resize(value.size() - 1);
        EXPECT_TRUE(Refuses(std::move(Conditions().Raw(type, longer)))) << type;
        EXPECT_TRUE(Refuses(std::move(Conditions().Raw(type, {})))) << type;
    }
    EXPECT_TRUE(Refuses(std::move(Query(DOM_MSG_RECORD_NUMBER).List(kOnline).List(kOnline))));
}

TEST_F(DaemonRecordQueryRefusals, WhatWouldBeCut) {
    EXPECT_FALSE(
        Refuses(std::move(Conditions().Text(DOM_TLV_QUERY_FIRST_NAME, std::string(255, 'a')))));
    EXPECT_TRUE(
        Refuses(std::move(Conditions().Text(DOM_TLV_QUERY_FIRST_NAME, std::string(256, 'a')))));
    EXPECT_TRUE(
        Refuses(std::move(Conditions().Text(DOM_TLV_QUERY_SECOND_NAME, std::string(70000, 'a')))));
    EXPECT_FALSE(
        Refuses(std::move(Conditions().Text(DOM_TLV_QUERY_INTERFACE, std::string(47, 'a')))));
    EXPECT_TRUE(
        Refuses(std::move(Conditions().Text(DOM_TLV_QUERY_INTERFACE, std::string(48, 'a')))));
}

TEST_F(DaemonRecordQueryRefusals, ConditionsThatItDoesNotKnow) {
    EXPECT_FALSE(Refuses(std::move(Conditions().Conditions(0x7F7))));
    EXPECT_TRUE(Refuses(std::move(Conditions().Conditions(0x008))));
    EXPECT_TRUE(Refuses(std::move(Conditions().Conditions(0x800))));
    EXPECT_TRUE(Refuses(std::move(Conditions().Conditions(0xFFFFFFFF))));
    EXPECT_TRUE(Refuses(std::move(Conditions().Number16(DOM_TLV_QUERY_CONDITION_4, 1))));
}

TEST_F(DaemonRecordQueryRefusals, ContinuationsThatItNeverGave) {
    const auto position = [](const std::function<void(TLV_MSG*)>& fill) {
        TLV_MSG* nested = TLV_Create();
        fill(nested);
        return std::move(Conditions().Nested(DOM_TLV_RECORD_POSITION, nested));
    };
    EXPECT_FALSE(Refuses(std::move(Conditions().Position(kOnline, 5))));
    EXPECT_TRUE(Refuses(std::move(Conditions().Position(2, 5))));
    EXPECT_TRUE(Refuses(std::move(Conditions().Position(kOnline, 5).Position(kOnline, 4))));
    EXPECT_TRUE(Refuses(position([](TLV_MSG*) {})));
    EXPECT_TRUE(Refuses(position(
        [](TLV_MSG* nested) { AAA_AppendUINTTlvData(nested, DOM_TLV_RECORD_KIND, kOnline); })));
    EXPECT_TRUE(Refuses(position(
        [](TLV_MSG* nested) { AAA_AppendUINT64TlvData(nested, DOM_TLV_RECORD_SERIAL, 1); })));
    EXPECT_TRUE(Refuses(std::move(Conditions().Raw(DOM_TLV_RECORD_POSITION, {1, 2, 3}))));
    EXPECT_TRUE(Refuses(std::move(Conditions().Raw(DOM_TLV_RECORD_POSITION, {}))));
    // No number lies below 0 and none above the greatest.
    EXPECT_TRUE(AskPage(std::move(Conditions().Position(kOnline, 0))).NoRecord());
    EXPECT_TRUE(AskPage(std::move(Conditions().Position(kOnline, UINT64_MAX))).NoRecord());
}

TEST_F(DaemonRecordQueryRefusals, TlvsOfNoTableAreSkipped) {
    EXPECT_TRUE(AskPage(std::move(Conditions().Number32(157, 1).Number32(157, 2).Raw(
                            0xFFFF, std::vector<uint8_t>(60000, 1))))
                    .NoRecord());
}

class DaemonRecordTop : public DaemonRecordPaging {
  protected:
    static Query Top(uint32_t by) {
        return std::move(Query(DOM_MSG_RECORD_TOP).Number32(DOM_TLV_RECORD_TOP_BY, by));
    }
};

TEST_F(DaemonRecordTop, CountsByReasonDomainAndInterface) {
    Fill(kOnline, 1, 10, [](UserRecord& record) {
        record.second_number = record.serial <= 6 ? 15 : 0;
        strcpy(record.first_name, record.serial % 2 == 0 ? "Isp" : "isp");
        strcpy(record.interface_name, record.serial == 3 ? "" : "ge1");
    });
    Fill(kNormal, 20, 22, [](UserRecord& record) {
        record.second_number = 10;
        strcpy(record.first_name, "other");
    });
    ASSERT_TRUE(daemon_.Start());
    using Counts = std::map<std::string, uint32_t>;
    const RecordPage reasons = AskPage(Top(0));
    EXPECT_EQ(reasons.counts, (Counts{{"15", 6}, {"0", 4}, {"10", 3}}));
    EXPECT_EQ(reasons.order, (std::vector<std::string>{"15", "0", "10"}));
    EXPECT_EQ(reasons.looked_at, 13);
    EXPECT_TRUE(reasons.positions.empty());
    // In the letters of the newest record.
    EXPECT_EQ(AskPage(Top(1)).counts, (Counts{{"Isp", 10}, {"other", 3}}));
    EXPECT_EQ(AskPage(Top(2)).counts, (Counts{{"ge1", 9}, {"", 4}}));
    EXPECT_EQ(AskPage(std::move(Top(0).Number32(DOM_TLV_QUERY_START, 9))).counts,
              (Counts{{"10", 3}, {"0", 2}}));
    EXPECT_EQ(AskPage(std::move(Top(0).List(kNormal))).counts, (Counts{{"10", 3}}));
    EXPECT_TRUE(AskPage(std::move(Top(0).Number32(DOM_TLV_QUERY_START, 23))).NoRecord());
}

TEST_F(DaemonRecordTop, AClientAddsThePagesUp) {
    Fill(kOnline, 1, 2 * kLookedAt + 5,
         [](UserRecord& record) { record.second_number = record.serial % 3; });
    ASSERT_TRUE(daemon_.Start());
    std::map<std::string, uint32_t> sum;
    const std::vector<RecordPage> pages = AskAll([] { return Top(0); });
    for (const RecordPage& page : pages) {
        for (const auto& [value, count] : page.counts) sum[value] += count;
    }
    EXPECT_EQ(pages.size(), 3u);
    EXPECT_EQ(pages[0].looked_at, kLookedAt);
    EXPECT_EQ(sum, (std::map<std::string, uint32_t>{{"0", 2732}, {"1", 2733}, {"2", 2732}}));
}

TEST_F(DaemonRecordTop, ManyLongValuesFitIntoTheirReplies) {
    Fill(kOnline, 1, 1500, [](UserRecord& record) {
        const std::string name = std::to_string(record.serial) + std::string(255, 'd');
        memcpy(record.first_name, name.data(), sizeof record.first_name - 1);
    });
    ASSERT_TRUE(daemon_.Start());
    size_t values = 0;
    const std::vector<RecordPage> pages = AskAll([] { return Top(1); });
    for (const RecordPage& page : pages) {
        EXPECT_LE(page.counts.size(), 512u);
        EXPECT_LE(page.length, 256u * 1024);
        values += page.counts.size();
    }
    EXPECT_EQ(pages.size(), 3u);
    EXPECT_EQ(values, 1500u);
}

}  // namespace
