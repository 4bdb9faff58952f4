// Rows of user_record.h.
#include <aaadom/codes.h>
#include <aaadom/user_record.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "fault/outputs.h"
#include "fault/sweep.h"
#include "golden/sample_record.h"

namespace fault {
namespace {

const char kWithoutDetail[] = "a record without its detail text is better than none";

/// What a decoder has filled in; its detail text is freed here.
std::string Taken(UserRecord& record) {
    const std::string detail = record.detail == nullptr ? "" : record.detail;
    EXPECT_EQ(record.detail == nullptr, record.detail_len == 0);
    free(record.detail);
    record.detail = nullptr;
    return detail + '\n' + BytesOf(record);
}

/// The stored form of the sample record.
struct Stored {
    char bytes[1024] = {};
    uint32_t length;
    Stored() {
        const UserRecord record = golden::SampleRecord();
        length = DOM_userrecord_tlv_EncodeUserRecordStlv(&record, sizeof bytes, bytes);
    }
};

const Rows stored_form{
    Reads("DOM_userrecord_tlv_EncodeUserRecordStlv",
          [](Scene&) -> Outcome {
              const Stored stored;
              return {stored.length > 672, BytesOf(stored)};
          })
        .Good(1),
    // Gives nothing back; the detail text tells whether there was memory for it.
    Reads("DOM_userrecord_tlv_DecodeUserRecordStlv",
          [](Scene&) -> Outcome {
              const Stored stored;
              UserRecord record{};
              DOM_userrecord_tlv_DecodeUserRecordStlv(stored.bytes, stored.length, &record);
              const bool with_detail = record.detail != nullptr;
              return {with_detail, Taken(record)};
          })
        .Good(1)
        .Fails({0}),
    Reads("DOM_userrecord_tlv_EncodeUserRecordSerialNumberStlv",
          [](Scene&) -> Outcome {
              char key[DOM_RECORD_KEY_SIZE] = {};
              const uint32_t length =
                  DOM_userrecord_tlv_EncodeUserRecordSerialNumberStlv(7, sizeof key, key);
              return {length, BytesOf(key)};
          })
        .Good(DOM_RECORD_KEY_SIZE),
};

/// A message that holds the sample record and nothing else.
void WithRecord(Scene& scene) {
    const UserRecord record = golden::SampleRecord();
    scene.message = scene.Keep(DOM_userrecord_tlv_EncodeUserRecordStructTlv(&record));
}

const Rows reports{
    Appends("DOM_userrecord_tlv_EncodeRecordContent",
            [](TLV_MSG* msg) {
                const UserRecordSource source = golden::SampleSource();
                return DOM_userrecord_tlv_EncodeRecordContent(msg, &source);
            }),
    Encodes("PAM_EncUserRecordMsg",
            [](Scene&) {
                const UserRecordSource source = golden::SampleSource();
                return PAM_EncUserRecordMsg(DOM_RECORD_ABNORMAL_OFFLINE, 258, &source);
            }),
    Decodes("PAM_DecUserRecordMsg", "report_user_record",
            [](Scene&, TLV_MSG* msg) -> Outcome {
                uint32_t type = 0;
                uint16_t flags = 0;
                UserRecord record{};
                const uint32_t result = PAM_DecUserRecordMsg(msg, &type, &flags, &record);
                return {result, BytesOf(type) + BytesOf(flags) + Taken(record)};
            })
        .On(Event::kAllocation, {DOM_OK})
        .Partial(kWithoutDetail),
    Reads("AAA_GetRecordReasonString",
          [](Scene&) -> Outcome {
              char text[128] = "";
              const uint32_t length = AAA_GetRecordReasonString(10, sizeof text, text);
              return {length, text};
          })
        .Good(sizeof "User request." - 1),
};

const Rows records{
    // What was appended before the refusal stays: the callers destroy the message.
    Reads("DOM_userrecord_tlv_EncodeUserRecordStruct",
          [](Scene& scene) -> Outcome {
              const UserRecord record = golden::SampleRecord();
              const uint32_t result =
                  DOM_userrecord_tlv_EncodeUserRecordStruct(scene.message, &record);
              return {result, fake::ImageOf(scene.message)};
          })
        .After([](Scene& scene) { scene.message = scene.Keep(TLV_Create()); })
        .Fails({DOM_ERR_FAILED}),
    Encodes("DOM_userrecord_tlv_EncodeUserRecordStructTlv",
            [](Scene&) {
                const UserRecord record = golden::SampleRecord();
                return DOM_userrecord_tlv_EncodeUserRecordStructTlv(&record);
            }),
    Reads("DOM_userrecord_tlv_DecodeUserRecordStruct",
          [](Scene& scene) -> Outcome {
              UserRecord record{};
              const uint32_t result =
                  DOM_userrecord_tlv_DecodeUserRecordStruct(scene.message, &record);
              return {result, Taken(record)};
          })
        .After(WithRecord)
        .Partial(kWithoutDetail),
    Reads("DOM_userrecord_tlv_GetReplyMessage",
          [](Scene& scene) -> Outcome {
              uint32_t length = sizeof "rejected";
              char* text = DOM_userrecord_tlv_GetReplyMessage(scene.message, &length);
              EXPECT_EQ(text == nullptr, length == 0);
              const Outcome outcome(Found(text).result, text == nullptr ? "" : text);
              free(text);
              return outcome;
          })
        .After(WithRecord)
        .Good(kSomething)
        .Fails({kNothing}),
    Appends("DOM_userrecord_tlv_EncodeRecordVerbose",
            [](TLV_MSG* msg) {
                const UserRecord record = golden::SampleRecord();
                return DOM_userrecord_tlv_EncodeRecordVerbose(msg, &record);
            }),
    Encodes("DOM_userrecord_tlv_EncodeResetRecord",
            [](Scene&) { return DOM_userrecord_tlv_EncodeResetRecord(DOM_MSG_RESET_OFFLINE_ALL); }),
};

const Rows switches{
    Encodes(
        "DOM_userrecord_tlv_EncodeRecordEnable",
        [](Scene&) { return DOM_userrecord_tlv_EncodeRecordEnable(DOM_MSG_REC_EN_OFFLINE_ALL); }),
    Encodes("DOM_userrecord_tlv_EncodeRecordEnableInfo",
            [](Scene&) {
                const RecordSwitches all{1, 0, 1, 0};
                return DOM_userrecord_tlv_EncodeRecordEnableInfo(&all);
            }),
    Decodes("DOM_userrecord_tlv_DecodeRecordEnableInfo", "msg_081_record_enable_info",
            Into(DOM_userrecord_tlv_DecodeRecordEnableInfo)),
    Encodes("DOM_userrecord_tlv_EncodeBackupMethod",
            [](Scene&) { return DOM_userrecord_tlv_EncodeBackupMethod(5); }),
    Decodes("DOM_userrecord_tlv_DecodeBackupMethod", "msg_164_backup_method",
            [](Scene&, TLV_MSG* msg) -> Outcome {
                uint32_t bits = 0;
                const uint32_t result = DOM_userrecord_tlv_DecodeBackupMethod(msg, &bits);
                return {result, BytesOf(bits)};
            }),
    Decodes("DOM_userrecord_tlv_DecodeBackupMethodByStruct", "msg_164_backup_method",
            Into(DOM_userrecord_tlv_DecodeBackupMethodByStruct)),
};

}  // namespace
}  // namespace fault
