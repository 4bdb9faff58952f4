// Where the fields of records and queries lie: access modules and front ends are compiled with
// these offsets.
#include <aaadom/user_record.h>
#include <aaadom/user_record_query.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <vector>

namespace {

using Offsets = std::vector<size_t>;

TEST(UserRecordLayout, Record) {
    EXPECT_EQ((Offsets{offsetof(UserRecord, first_number), offsetof(UserRecord, second_number),
                       offsetof(UserRecord, ipv4), offsetof(UserRecord, ipv6),
                       offsetof(UserRecord, third_number), offsetof(UserRecord, fourth_number),
                       offsetof(UserRecord, number16), offsetof(UserRecord, mac),
                       offsetof(UserRecord, first_name), offsetof(UserRecord, second_name),
                       offsetof(UserRecord, interface_name)}),
              (Offsets{0, 4, 8, 12, 28, 32, 36, 42, 48, 304, 560}));
    EXPECT_EQ(offsetof(UserRecord, detail), 608u);
    EXPECT_EQ(offsetof(UserRecord, detail_len), 608 + sizeof(char*));
    EXPECT_GT(offsetof(UserRecord, serial), offsetof(UserRecord, detail_len));
}

TEST(UserRecordLayout, ReportedRecord) {
    EXPECT_EQ(
        (Offsets{offsetof(UserRecordSource, first_number),
                 offsetof(UserRecordSource, second_number), offsetof(UserRecordSource, ipv4),
                 offsetof(UserRecordSource, ipv6), offsetof(UserRecordSource, third_number),
                 offsetof(UserRecordSource, fourth_number),
                 offsetof(UserRecordSource, interface_index), offsetof(UserRecordSource, number16),
                 offsetof(UserRecordSource, mac), offsetof(UserRecordSource, first_name),
                 offsetof(UserRecordSource, second_name), offsetof(UserRecordSource, detail)}),
        (Offsets{0, 4, 8, 12, 28, 32, 36, 40, 46, 52, 308, 568}));
    EXPECT_EQ(offsetof(UserRecordSource, detail_len), 568 + sizeof(char*));
}

TEST(UserRecordLayout, QueryByTime) {
    EXPECT_EQ((Offsets{offsetof(UserRecordTimeQuery, list_selector),
                       offsetof(UserRecordTimeQuery, second_selector),
                       offsetof(UserRecordTimeQuery, start), offsetof(UserRecordTimeQuery, end)}),
              (Offsets{0, 2, 4, 8}));
}

TEST(UserRecordLayout, QueryByReason) {
    EXPECT_EQ((Offsets{offsetof(UserRecordReasonQuery, list_selector),
                       offsetof(UserRecordReasonQuery, second_selector),
                       offsetof(UserRecordReasonQuery, reason)}),
              (Offsets{0, 2, 4}));
}

TEST(UserRecordLayout, QueryByConditions) {
    EXPECT_EQ(
        (Offsets{offsetof(UserRecordQuery, record_count), offsetof(UserRecordQuery, list_selector),
                 offsetof(UserRecordQuery, second_selector), offsetof(UserRecordQuery, condition),
                 offsetof(UserRecordQuery, ipv4), offsetof(UserRecordQuery, ipv6),
                 offsetof(UserRecordQuery, conditions), offsetof(UserRecordQuery, first_name),
                 offsetof(UserRecordQuery, second_name), offsetof(UserRecordQuery, interface_name),
                 offsetof(UserRecordQuery, mac)}),
        (Offsets{0, 4, 6, 8, 12, 16, 32, 40, 296, 552, 600}));
}

TEST(UserRecordLayout, BriefRecord) {
    EXPECT_EQ((Offsets{offsetof(UserRecordBrief, second_number), offsetof(UserRecordBrief, ipv4),
                       offsetof(UserRecordBrief, ipv6), offsetof(UserRecordBrief, second_name),
                       offsetof(UserRecordBrief, mac), offsetof(UserRecordBrief, detail)}),
              (Offsets{0, 4, 8, 24, 280, 288}));
    EXPECT_EQ(offsetof(UserRecordBrief, detail_len), 288 + sizeof(char*));
}

TEST(UserRecordLayout, SwitchesAndBackupMethods) {
    EXPECT_EQ((Offsets{offsetof(RecordSwitches, online_fail), offsetof(RecordSwitches, offline_all),
                       offsetof(RecordSwitches, offline_normal),
                       offsetof(RecordSwitches, offline_abnormal)}),
              (Offsets{0, 2, 4, 6}));
    EXPECT_EQ(
        (Offsets{offsetof(BackupMethods, online_fail), offsetof(BackupMethods, abnormal_offline),
                 offsetof(BackupMethods, normal_offline)}),
        (Offsets{0, 2, 4}));
}

TEST(UserRecordLayout, NumbersOfTheLists) {
    EXPECT_EQ(uint32_t{DOM_RECORD_ONLINE_FAIL}, 1u);
    EXPECT_EQ(uint32_t{DOM_RECORD_ABNORMAL_OFFLINE}, 3u);
    EXPECT_EQ(uint32_t{DOM_RECORD_NORMAL_OFFLINE}, 4u);
}

}  // namespace
