// Structures of plain members and nested messages in place.
#include "aaa_tlv/fields.h"

using namespace platform;

namespace {

void SetEnd(TLV_MSG* msg, const uint8_t* end) noexcept {
    msg->length = static_cast<uint32_t>(end - msg->image);
    SetImageLength(msg->image, msg->length);
}

/// Writes one structure as a nested message; its end, or null when the room may not do.
uint8_t* PutRecord(uint8_t* at, const uint8_t* limit, uint16_t type, const FieldTable& table,
                   const uint8_t* record, uint32_t position) noexcept {
    if (limit - at < static_cast<ptrdiff_t>(kNestedHeader)) return nullptr;
    uint8_t* image = at + kTlvHeader;
    uint8_t* end = PutFields(image + kImageHeader, limit, table, record, position);
    if (end == nullptr) return nullptr;
    const auto length = static_cast<uint32_t>(end - image);
    PutTlvHeader(at, type, length);
    StoreLittleEndian<uint64_t>(image, kImageStart | uint64_t{length - kImageHeader} << 32);
    return end;
}

}  // namespace

extern "C" {

uint32_t AAA_AppendFields(TLV_MSG* msg, const AAA_FIELD* fields, uint32_t count,
                          const void* record) noexcept {
    if (msg == nullptr || record == nullptr || (fields == nullptr && count != 0)) {
        return PLATFORM_FAILED;
    }
    const FieldTable table(fields, count);
    const auto* bytes = static_cast<const uint8_t*>(record);
    uint8_t* end = PutFields(msg->image + msg->length, msg->image + msg->capacity, table, bytes, 0);
    if (end == nullptr) {
        if (!Reserve(msg, msg->length + table.Room())) return PLATFORM_FAILED;
        end = PutFields(msg->image + msg->length, msg->image + msg->capacity, table, bytes, 0);
    }
    SetEnd(msg, end);
    return kOk;
}

uint32_t AAA_AppendRecords(TLV_MSG* msg, uint16_t type, const AAA_FIELD* fields, uint32_t count,
                           const void* first, uint32_t stride, uint32_t records) noexcept {
    if (msg == nullptr || (fields == nullptr && count != 0) || (first == nullptr && records != 0)) {
        return PLATFORM_FAILED;
    }
    const FieldTable table(fields, count);
    const auto* record = static_cast<const uint8_t*>(first);
    uint8_t* at = msg->image + msg->length;
    for (uint32_t position = 0; position < records; ++position, record += stride) {
        uint8_t* end = PutRecord(at, msg->image + msg->capacity, type, table, record, position);
        if (end == nullptr) {
            if (position != 0) SetEnd(msg, at);
            if (!Reserve(msg, msg->length + kNestedHeader + table.Room())) return PLATFORM_FAILED;
            end = PutRecord(msg->image + msg->length, msg->image + msg->capacity, type, table,
                            record, position);
        }
        at = end;
    }
    if (records != 0) SetEnd(msg, at);
    return kOk;
}

// Until its end is known the nested message is an empty one with TLVs of the parent behind it, so
// the parent is well-formed all the time.
uint32_t AAA_BeginSubTlv(TLV_MSG* msg, uint16_t type, uint32_t* mark) noexcept {
    if (msg == nullptr || mark == nullptr) return PLATFORM_FAILED;
    uint8_t empty[kImageHeader];
    StartImage(empty);
    const uint32_t at = msg->length;
    const uint32_t result = AppendTlv(msg, type, sizeof empty, empty);
    if (result == kOk) *mark = at;
    return result;
}

uint32_t AAA_EndSubTlv(TLV_MSG* msg, uint32_t mark) noexcept {
    if (msg == nullptr || mark < kImageHeader || mark > msg->length ||
        msg->length - mark < kNestedHeader || msg->capacity == 0) {
        return PLATFORM_FAILED;
    }
    uint8_t* image = msg->image + mark + kTlvHeader;
    if (ImageLengthOf(image) != kImageHeader) return PLATFORM_FAILED;
    const uint32_t length = msg->length - mark - kTlvHeader;
    StoreLittleEndian<uint32_t>(msg->image + mark + kTlvLengthAt, length);
    SetImageLength(image, length);
    return kOk;
}

uint32_t AAA_GetFields(TLV_MSG* msg, const AAA_FIELD* fields, uint32_t count, void* record,
                       AAA_OTHER_FN other, void* context) noexcept {
    if (msg == nullptr || record == nullptr || (fields == nullptr && count != 0)) {
        return PLATFORM_FAILED;
    }
    const Body body{msg, msg->image + kImageHeader, msg->image + msg->length};
    return TakeFields(body, FieldTable(fields, count), static_cast<uint8_t*>(record), nullptr,
                      {other, context});
}

uint32_t AAA_GetSubFields(TLV_MSG* msg, TLV_ITER* it, const AAA_FIELD* fields, uint32_t count,
                          void* record, uint32_t* position, AAA_OTHER_FN other,
                          void* context) noexcept {
    if (msg == nullptr || record == nullptr || (fields == nullptr && count != 0)) {
        return PLATFORM_FAILED;
    }
    const TlvAt tlv = Locate(msg, it);
    if (!tlv || tlv.length < kImageHeader || ImageLengthOf(tlv.Value()) != tlv.length) {
        return PLATFORM_FAILED;
    }
    const Body body{msg, tlv.Value() + kImageHeader, tlv.Value() + tlv.length};
    return TakeFields(body, FieldTable(fields, count), static_cast<uint8_t*>(record), position,
                      {other, context});
}

}  // extern "C"
