#include <aaadom/results.h>
#include <aaadom/user_record_query.h>
#include <gtest/gtest.h>
#include <platform/aaa_tlv.h>

#include <cstring>
#include <map>

#include "base/message.h"
#include "base/text.h"
#include "tests/golden/record_goldens.h"
#include "tests/golden/sample_record.h"

namespace golden {
namespace {

const UserRecordTimeQuery kTimeQuery{DOM_RECORD_NORMAL_OFFLINE, 1, 1700000000, 1700003600};

/// The conditions that the sample record meets.
UserRecordQuery SampleQuery() {
    const UserRecord record = SampleRecord();
    UserRecordQuery query{};
    query.record_count = 50;
    query.list_selector = DOM_RECORD_ONLINE_FAIL;
    query.second_selector = 258;
    query.condition = record.second_number;
    memcpy(query.ipv4, record.ipv4, sizeof query.ipv4);
    memcpy(query.ipv6, record.ipv6, sizeof query.ipv6);
    for (int i = 0; i < 3; ++i) query.conditions[i] = record.number16[i];
    query.conditions[3] = 4;
    aaadom::CopyField(query.first_name, record.first_name);
    aaadom::CopyField(query.second_name, record.second_name);
    aaadom::CopyField(query.interface_name, record.interface_name);
    memcpy(query.mac, record.mac, sizeof query.mac);
    return query;
}

GoldenMessage Conditions(const char* file, const UserRecordQuery& query) {
    return {file, DOM_MSG_RECORD_BY_CONDITIONS,
            [=] {
                return DOM_userrecord_tlv_EncodeDisRecordMultParas(DOM_MSG_RECORD_BY_CONDITIONS,
                                                                   &query);
            },
            [=](TLV_MSG* msg) {
                UserRecordQuery read{};
                EXPECT_EQ(DOM_userrecord_tlv_DecodeDisRecordMultParas(msg, &read), DOM_OK);
                EXPECT_EQ(memcmp(&read, &query, sizeof read), 0);
            }};
}

/// What a daemon takes: it refuses the selector and the condition that the sample sets.
UserRecordQuery TopQuery() {
    UserRecordQuery query = SampleQuery();
    query.second_selector = DOM_RECORD_FORM_VERBOSE;
    query.conditions[3] = 0;
    return query;
}

/// The library's conditions with what only a daemon reads behind them.
TLV_MSG* TopQuestion() {
    const UserRecordQuery query = TopQuery();
    aaadom::TlvPtr msg(DOM_userrecord_tlv_EncodeDisRecordMultParas(DOM_MSG_RECORD_TOP, &query));
    if (msg == nullptr ||
        TLV_Append_UINT(msg.get(), DOM_TLV_RECORD_CONDITIONS,
                        DOM_RECORD_COND_REASON | DOM_RECORD_COND_INTERFACE) != 0 ||
        TLV_Append_UINT(msg.get(), DOM_TLV_RECORD_TOP_BY, DOM_RECORD_TOP_BY_DOMAIN) != 0) {
        return nullptr;
    }
    return msg.release();
}

}  // namespace

std::vector<GoldenMessage> RecordQueryGoldens() {
    return {
        {"msg_070_record_number_request", DOM_MSG_RECORD_NUMBER,
         [] { return DOM_userrecord_tlv_EncodeGetRecordNum(DOM_MSG_RECORD_NUMBER); },
         [](TLV_MSG* msg) {
             EXPECT_TRUE(aaadom::TlvItem(msg, TLV_GetFirst(msg)).IsLast());
             uint32_t count = 7;
             EXPECT_EQ(DOM_userrecord_tlv_DecodeDisplayRecordNumber(msg, &count), DOM_ERR_FAILED);
             EXPECT_EQ(count, 0u);
         }},
        {"msg_070_record_number", DOM_MSG_RECORD_NUMBER,
         [] { return DOM_userrecord_tlv_EncodeDisplayRecordNumber(DOM_MSG_RECORD_NUMBER, 32768); },
         [](TLV_MSG* msg) {
             uint32_t count = 0;
             EXPECT_EQ(DOM_userrecord_tlv_DecodeDisplayRecordNumber(msg, &count), DOM_OK);
             EXPECT_EQ(count, 32768u);
         }},
        {"msg_071_record_all", DOM_MSG_RECORD_ALL,
         [] {
             return DOM_userrecord_tlv_EncodeDisplayRecordAll(DOM_MSG_RECORD_ALL,
                                                              DOM_RECORD_ABNORMAL_OFFLINE);
         },
         [](TLV_MSG* msg) {
             uint16_t selector = 0;
             EXPECT_EQ(DOM_userrecord_tlv_DecodeDisplayRecordAll(msg, &selector), DOM_OK);
             EXPECT_EQ(selector, DOM_RECORD_ABNORMAL_OFFLINE);
         }},
        {"msg_072_record_by_time", DOM_MSG_RECORD_BY_TIME,
         [] {
             return DOM_userrecord_tlv_EncodeDisplayRecordTime(DOM_MSG_RECORD_BY_TIME, &kTimeQuery);
         },
         [](TLV_MSG* msg) {
             UserRecordTimeQuery query{};
             EXPECT_EQ(DOM_userrecord_tlv_DecodeDisplayRecordTime(msg, &query), DOM_OK);
             EXPECT_EQ(memcmp(&query, &kTimeQuery, sizeof query), 0);
         }},
        Conditions("msg_073_record_by_conditions", SampleQuery()),
        Conditions("msg_073_record_by_no_name", UserRecordQuery{}),
        {"msg_074_record_by_reason", DOM_MSG_RECORD_BY_REASON,
         [] {
             return DOM_userrecord_tlv_EncodeDisplayRecordReason(1, 2119,
                                                                 DOM_RECORD_ABNORMAL_OFFLINE);
         },
         [](TLV_MSG* msg) {
             UserRecordReasonQuery query{};
             EXPECT_EQ(DOM_userrecord_tlv_DecodeDisplayRecordReason(msg, &query), DOM_OK);
             EXPECT_EQ(query.list_selector, DOM_RECORD_ABNORMAL_OFFLINE);
             EXPECT_EQ(query.second_selector, 1);
             EXPECT_EQ(query.reason, 2119u);
         }},
        {"msg_075_record_top", DOM_MSG_RECORD_TOP, TopQuestion,
         [](TLV_MSG* msg) {
             UserRecordQuery query{};
             EXPECT_EQ(DOM_userrecord_tlv_DecodeDisRecordMultParas(msg, &query), DOM_OK);
             const UserRecordQuery want = TopQuery();
             EXPECT_EQ(memcmp(&query, &want, sizeof query), 0);
             std::map<uint16_t, uint32_t> numbers;
             for (aaadom::TlvItem item : aaadom::TlvWalk(msg)) numbers[item.Type()] = item.U32();
             EXPECT_EQ(numbers[DOM_TLV_RECORD_CONDITIONS], 0x120u);
             EXPECT_EQ(numbers[DOM_TLV_RECORD_TOP_BY], 1u);
         }},
        {"msg_164_backup_method_default", DOM_MSG_BACKUP_METHOD,
         [] { return DOM_userrecord_tlv_EncodeBackupMethodWithDefault(6, 1); },
         [](TLV_MSG* msg) {
             uint32_t bits = 0;
             uint32_t default_bits = 0;
             EXPECT_EQ(DOM_userrecord_tlv_DecodeBackupMethodWithDefault(msg, &bits, &default_bits),
                       DOM_OK);
             EXPECT_EQ(bits, 6u);
             EXPECT_EQ(default_bits, 1u);
         }},
    };
}

}  // namespace golden
