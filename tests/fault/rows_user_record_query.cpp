// Rows of user_record_query.h.
#include <aaadom/codes.h>
#include <aaadom/user_record_query.h>
#include <gtest/gtest.h>
#include <platform/aaa_tlv.h>

#include <cstdlib>

#include "base/message.h"
#include "base/text.h"
#include "fault/outputs.h"
#include "fault/sweep.h"
#include "golden/sample_record.h"

namespace fault {
namespace {

constexpr uint16_t kList = DOM_RECORD_ABNORMAL_OFFLINE;
constexpr uint16_t kBrief = 1;
constexpr uint32_t kReason = 15;
constexpr UserRecordTimeQuery kTime{kList, kBrief, 1700000000, 1700003600};

UserRecordQuery Conditions() {
    UserRecordQuery query{};
    query.record_count = 10;
    query.list_selector = kList;
    aaadom::CopyText(query.first_name, "isp-a.example");
    aaadom::CopyText(query.second_name, "user@isp-a.example");
    aaadom::CopyText(query.interface_name, "eth1/0/7");
    return query;
}

const Rows questions{
    Encodes("DOM_userrecord_tlv_EncodeGetRecordNum",
            [](Scene&) { return DOM_userrecord_tlv_EncodeGetRecordNum(DOM_MSG_RECORD_NUMBER); }),
    Encodes("DOM_userrecord_tlv_EncodeDisplayRecordAll",
            [](Scene&) {
                return DOM_userrecord_tlv_EncodeDisplayRecordAll(DOM_MSG_RECORD_ALL, kList);
            }),
    Encodes("DOM_userrecord_tlv_EncodeDisplayRecordTime",
            [](Scene&) {
                return DOM_userrecord_tlv_EncodeDisplayRecordTime(DOM_MSG_RECORD_BY_TIME, &kTime);
            }),
    Encodes("DOM_userrecord_tlv_EncodeDisplayRecordReason",
            [](Scene&) {
                return DOM_userrecord_tlv_EncodeDisplayRecordReason(kBrief, kReason, kList);
            }),
    Encodes("DOM_userrecord_tlv_EncodeDisRecordMultParas",
            [](Scene&) {
                const UserRecordQuery query = Conditions();
                return DOM_userrecord_tlv_EncodeDisRecordMultParas(DOM_MSG_RECORD_BY_CONDITIONS,
                                                                   &query);
            }),
    Decodes("DOM_userrecord_tlv_DecodeDisplayRecordAll", "msg_071_record_all",
            Into(DOM_userrecord_tlv_DecodeDisplayRecordAll)),
    Decodes("DOM_userrecord_tlv_DecodeDisplayRecordTime", "msg_072_record_by_time",
            Into(DOM_userrecord_tlv_DecodeDisplayRecordTime)),
    Decodes("DOM_userrecord_tlv_DecodeDisplayRecordReason", "msg_074_record_by_reason",
            Into(DOM_userrecord_tlv_DecodeDisplayRecordReason)),
    Decodes("DOM_userrecord_tlv_DecodeDisRecordMultParas", "msg_073_record_by_conditions",
            Into(DOM_userrecord_tlv_DecodeDisRecordMultParas)),
};

/// The first record of the golden reply in the brief form.
void WithBriefRecord(Scene& scene) {
    TLV_MSG* reply = scene.Golden("reply_records_brief");
    const aaadom::TlvItem item = aaadom::FindTlv(reply, DOM_TLV_USER_RECORD_BRIEF);
    scene.message = scene.Keep(item.Sub().release());
}

const Rows answers{
    Encodes("DOM_userrecord_tlv_EncodeDisplayRecordNumber",
            [](Scene&) {
                return DOM_userrecord_tlv_EncodeDisplayRecordNumber(DOM_MSG_RECORD_NUMBER, 3);
            }),
    Encodes("DOM_userrecord_tlv_EncodeRecordHeader",
            [](Scene&) { return DOM_userrecord_tlv_EncodeRecordHeader(kList); }),
    Encodes("DOM_userrecord_tlv_EncodeNoRecordMsg",
            [](Scene&) { return DOM_userrecord_tlv_EncodeNoRecordMsg(); }),
    Appends("DOM_userrecord_tlv_EncodeRecordBrief",
            [](TLV_MSG* msg) {
                const UserRecord record = golden::SampleRecord();
                return DOM_userrecord_tlv_EncodeRecordBrief(msg, &record);
            }),
    Encodes("DOM_userrecord_tlv_EncodeBackupMethodWithDefault",
            [](Scene&) { return DOM_userrecord_tlv_EncodeBackupMethodWithDefault(5, 1); }),
    Decodes("DOM_userrecord_tlv_DecodeDisplayRecordNumber", "msg_070_record_number",
            [](Scene&, TLV_MSG* msg) -> Outcome {
                uint32_t count = 0;
                const uint32_t result = DOM_userrecord_tlv_DecodeDisplayRecordNumber(msg, &count);
                return {result, BytesOf(count)};
            }),
    Reads("DOM_userrecord_tlv_DecodeRecordBrief",
          [](Scene& scene) -> Outcome {
              UserRecordBrief brief{};
              const uint32_t result = DOM_userrecord_tlv_DecodeRecordBrief(scene.message, &brief);
              EXPECT_EQ(brief.detail == nullptr, brief.detail_len == 0);
              const std::string detail = brief.detail == nullptr ? "" : brief.detail;
              free(brief.detail);
              brief.detail = nullptr;
              return {result, detail + '\n' + BytesOf(brief)};
          })
        .After(WithBriefRecord)
        .Partial("a record without its detail text is better than none"),
    Decodes("DOM_userrecord_tlv_DecodeBackupMethodWithDefault", "msg_164_backup_method_default",
            [](Scene&, TLV_MSG* msg) -> Outcome {
                uint32_t bits = 0;
                uint32_t default_bits = 0;
                const uint32_t result =
                    DOM_userrecord_tlv_DecodeBackupMethodWithDefault(msg, &bits, &default_bits);
                return {result, BytesOf(bits) + BytesOf(default_bits)};
            }),
};

/// The reply that `ask(status)` gets, its kind behind it. The kind is there before the reply turns
/// out to be too much for the memory.
template <typename Ask>
Row AsksRecords(std::string name, Ask ask) {
    return Asks(std::move(name), "reply_records_verbose",
                [ask](Scene&) -> Outcome {
                    constexpr uint16_t kNoReply = 99;
                    uint16_t status = kNoReply;
                    Outcome outcome = Made(ask(&status));
                    EXPECT_TRUE(status == kNoReply || status == DOM_REPLY_KIND_DATA) << status;
                    outcome.outputs += BytesOf(status);
                    return outcome;
                })
        .Good(kSomething)
        .Fails({kNothing});
}

const Rows requests{
    Requests("DOM_userrecord_mor_BackupMethod",
             [](Scene&) { return DOM_userrecord_mor_BackupMethod(0, 5); }),
    Requests("DOM_userrecord_mor_RecordEnable",
             [](Scene&) { return DOM_userrecord_mor_RecordEnable(0, DOM_MSG_REC_EN_OFFLINE_ALL); }),
    Requests("DOM_userrecord_mor_ResetRecord",
             [](Scene&) { return DOM_userrecord_mor_ResetRecord(DOM_MSG_RESET_OFFLINE_ALL); }),
    Asks("DOM_userrecord_mor_GetRecordNumber", "msg_070_record_number",
         [](Scene&) -> Outcome {
             uint32_t count = 99;
             const uint32_t result =
                 DOM_userrecord_mor_GetRecordNumber(DOM_MSG_RECORD_NUMBER, &count);
             return {result, BytesOf(count)};
         }),
    AsksRecords("DOM_userrecord_mor_GetRecordAll",
                [](uint16_t* status) {
                    return DOM_userrecord_mor_GetRecordAll(DOM_MSG_RECORD_ALL, kList, status);
                }),
    AsksRecords("DOM_userrecord_mor_GetRecordByTime",
                [](uint16_t* status) {
                    return DOM_userrecord_mor_GetRecordByTime(DOM_MSG_RECORD_BY_TIME, &kTime,
                                                              status);
                }),
    AsksRecords("DOM_userrecord_mor_GetRecordByReason",
                [](uint16_t* status) {
                    return DOM_userrecord_mor_GetRecordByReason(kBrief, kReason, kList, status);
                }),
    AsksRecords("DOM_userrecord_mor_GetRecordContentByCond",
                [](uint16_t* status) {
                    const UserRecordQuery query = Conditions();
                    return DOM_userrecord_mor_GetRecordContentByCond(DOM_MSG_RECORD_BY_CONDITIONS,
                                                                     &query, status);
                }),
};

}  // namespace
}  // namespace fault
