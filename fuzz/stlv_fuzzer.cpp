// The stored form of a user record: item by item, as a record, and written again.
//
// Input: the stored form.
#include <aaadom/db_layout.h>
#include <aaadom/user_record.h>
#include <platform/stlv.h>

#include <vector>

#include "input.h"
#include "promise.h"

using namespace fuzz;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::vector<uint8_t> stored(data, data + size);
    const auto length = static_cast<uint32_t>(size);
    uint32_t at = 0;
    for (uint32_t taken = 1; taken != 0; at += taken) {
        uint16_t type = 0;
        uint32_t value_length = 0;
        const void* value = nullptr;
        taken = STLV_Get(stored.data() + at, length - at, &type, &value_length, &value);
        FUZZ_PROMISE(taken == 0 || (taken == value_length + 4 && taken <= length - at));
    }
    UserRecord record{};
    DOM_userrecord_tlv_DecodeUserRecordStlv(stored.data(), length, &record);
    std::vector<uint8_t> written(record.detail_len + 1024u);
    const uint32_t room = static_cast<uint32_t>(written.size());
    (void)DOM_userrecord_tlv_EncodeUserRecordStlv(&record, room / 2, written.data());
    const uint32_t whole = DOM_userrecord_tlv_EncodeUserRecordStlv(&record, room, written.data());
    UserRecord again{};
    DOM_userrecord_tlv_DecodeUserRecordStlv(written.data(), whole, &again);
    FUZZ_PROMISE(again.serial == record.serial && again.detail_len == record.detail_len);
    FUZZ_PROMISE(strcmp(again.first_name, record.first_name) == 0);
    free(record.detail);
    free(again.detail);
    return 0;
}
