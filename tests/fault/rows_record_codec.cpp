// Rows of record_codec.h.
#include <aaadom/codes.h>
#include <aaadom/method_codec.h>
#include <aaadom/record_codec.h>
#include <aaadom/user_record.h>
#include <platform/aaa_tlv.h>

#include "base/message.h"
#include "fault/outputs.h"
#include "fault/sweep.h"
#include "golden/sample_record.h"

namespace fault {
namespace {

using aaadom::TlvPtr;

/// Above the length at which a batch is sent.
constexpr uint32_t kFullBatch = 59900;

void WithMessage(Scene& scene) {
    scene.message = scene.Keep(TLV_Create());
}
/// A message that reaches the length at which a batch is sent.
void WithFullBatch(Scene& scene) {
    WithMessage(scene);
    const std::string bytes(kFullBatch, 'x');
    (void)TLV_Append_Data(scene.message, DOM_TLV_USER_RECORD, kFullBatch, bytes.data());
}
/// The two numbers of a message without a code.
void WithState(Scene& scene) {
    WithMessage(scene);
    (void)TLV_Append_UINT(scene.message, DOM_TLV_RECORD_COUNT, 7);
    (void)TLV_Append_UINT(scene.message, DOM_TLV_RECORDS_STATE, 2);
}
/// The records of a batch as the standby board gets them, without the heads.
void WithBatch(Scene& scene) {
    const TlvPtr sent(Scene::Parse("batch_173_normal"));
    const TlvPtr request(AAA_DelAaadHead(sent.get()));
    uint32_t operation = 0;
    scene.message = scene.Keep(AAA_DelOpHead(request.get(), &operation));
}

/// Adds the sample record to the batch; the batch is the output.
Outcome AddRecord(Scene& scene) {
    const TlvPtr scratch = Quietly([] { return TlvPtr(TLV_Create()); });
    const UserRecord record = golden::SampleRecord();
    const uint32_t result =
        DOM_EncodeUserRecordAll(DOM_RECORD_NORMAL_OFFLINE, &record, scene.message, scratch.get());
    EXPECT_EQ(TLV_GetFirst(scratch.get()), nullptr);
    return {result, fake::ImageOf(scene.message)};
}

const Rows messages{
    Encodes("DOM_EncodeOnlineFailRecord",
            [](Scene&) {
                const UserRecord record = golden::SampleRecord();
                return DOM_EncodeOnlineFailRecord(&record);
            }),
    Encodes("DOM_EncodOfflineRecord",
            [](Scene&) {
                const UserRecord record = golden::SampleRecord();
                return DOM_EncodOfflineRecord(1, &record);
            }),
    Encodes("DOM_EncodeDelUserRecord",
            [](Scene&) { return DOM_EncodeDelUserRecord(DOM_RECORD_NORMAL_OFFLINE, 7); }),
    Decodes("DOM_DecodeDelUserRecord", "msg_173_record_delete", Into(DOM_DecodeDelUserRecord)),
    Reads("DOM_DecodeUserRecordsState",
          [](Scene& scene) -> Outcome {
              uint32_t first = 0;
              uint32_t second = 0;
              const uint32_t result =
                  DOM_DecodeUserRecordsState(scene.message, DOM_TLV_RECORD_COUNT, &first, &second);
              return {result, BytesOf(first) + BytesOf(second)};
          })
        .After(WithState),
};

const Rows batches{
    Reads("DOM_EncodeUserRecordAll/room in the batch", AddRecord)
        .After(WithMessage)
        .Fails({DOM_ERR_FAILED}),
    // What cannot be sent does not keep the record out of the next batch.
    Reads("DOM_EncodeUserRecordAll/full batch", AddRecord)
        .After(WithFullBatch)
        .Fails({DOM_OK, DOM_ERR_FAILED}),
    Reads("DOM_EncodeRecordTypeAndSend",
          [](Scene& scene) {
              const uint32_t result =
                  DOM_EncodeRecordTypeAndSend(scene.message, DOM_RECORD_NORMAL_OFFLINE);
              (void)Quietly([&] { return DOM_ClearTlv(scene.message); });
              return result;
          })
        .After(WithMessage)
        .Fails({DOM_ERR_FAILED}),
    Saves("DOM_DecodeUserRecordAllAndSetToRunDB",
          [](Scene& scene) {
              return DOM_DecodeUserRecordAllAndSetToRunDB(scene.message, DOM_RECORD_NORMAL_OFFLINE);
          })
        .After(WithBatch)
        .Fails({DOM_OK, DOM_ERR_FAILED})
        .Except("database", "a record that the list refuses keeps the others out of nothing"),
};

}  // namespace
}  // namespace fault
