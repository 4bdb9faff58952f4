// Structures of plain members and nested messages in place.
#include "aaa_tlv/fields.h"

using namespace platform;

namespace platform {

void TakeAnyText(char* to, uint32_t capacity, const uint8_t* value, uint32_t length,
                 const uint8_t* readable) noexcept {
    uint32_t left = std::min(length, capacity - 1);
    while (capacity >= sizeof(uint64_t) &&
           readable - value >= static_cast<ptrdiff_t>(sizeof(uint64_t))) {
        auto chunk = LoadLittleEndian<uint64_t>(value);
        // A value that ends within the chunk ends the text like a NUL.
        const uint64_t stop =
            left < sizeof chunk ? ZeroBytes(chunk) | uint64_t{0x80} << 8 * left : ZeroBytes(chunk);
        if (stop != 0) {
            chunk &= ((stop & -stop) >> 7) - 1;
            StoreLittleEndian(to, chunk);
            return;
        }
        StoreLittleEndian(to, chunk);
        to += sizeof chunk;
        value += sizeof chunk;
        left -= sizeof chunk;
        capacity -= sizeof chunk;
    }
    for (; left != 0 && *value != 0; --left) *to++ = static_cast<char>(*value++);
    *to = '\0';
}

void TakeField(const AAA_FIELD& field, const TlvAt& tlv, const uint8_t* end, uint8_t* record,
               uint32_t& position) noexcept {
    uint8_t* member = record + field.offset;
    const uint32_t number =
        tlv.length < sizeof(uint32_t) ? 0 : LoadLittleEndian<uint32_t>(tlv.Value());
    const auto half = static_cast<uint16_t>(number);
    switch (field.kind) {
        case AAA_FIELD_WORD:
            std::memcpy(member, &number, sizeof number);
            return;
        case AAA_FIELD_HALF:
            std::memcpy(member, &half, sizeof half);
            return;
        case AAA_FIELD_TEXT:
            TakeText(reinterpret_cast<char*>(member), field.size, tlv.Value(), tlv.length, end);
            return;
        case AAA_FIELD_BLOCK:
            std::memcpy(member, tlv.Value(), std::min<uint32_t>(tlv.length, field.size));
            return;
        default:
            position = number;
            return;
    }
}

}  // namespace platform

namespace {

uint32_t ReadFields(Body body, TLV_MSG* msg, const FieldTable& table, void* record,
                    uint32_t* position_out, const OtherTlvs& others) noexcept {
    auto* bytes = static_cast<uint8_t*>(record);
    uint32_t position = position_out == nullptr ? 0 : *position_out;
    const uint32_t result = others.take == nullptr
                                ? TakeFields(body, msg, table, bytes, position, NoOtherTlvs())
                                : TakeFields(body, msg, table, bytes, position, others);
    if (position_out != nullptr) *position_out = position;
    return result;
}

void SetEnd(TLV_MSG* msg, const uint8_t* end) noexcept {
    msg->length = static_cast<uint32_t>(end - msg->image);
    SetImageLength(msg->image, msg->length);
}

/// Makes room for `room` more bytes. Nearly always there is; where growing fails there is not.
inline bool MakeRoom(TLV_MSG* msg, uint64_t room) noexcept {
    return msg->length + room <= msg->capacity || Reserve(msg, msg->length + room);
}

/// Writes one structure as a nested message, for which there is room; its end.
template <bool of_item>
inline uint8_t* PutRecord(uint8_t* at, uint16_t type, const FieldTable& table,
                          const uint8_t* record, uint32_t position) noexcept {
    uint8_t* image = at + kTlvHeader;
    uint8_t* end = of_item ? PutItem(image + kImageHeader, table.begin, record, position)
                           : PutFields(image + kImageHeader, table, record, position);
    const auto length = static_cast<uint32_t>(end - image);
    PutTlvHeader(at, type, length);
    StoreLittleEndian<uint64_t>(image, kImageStart | uint64_t{length - kImageHeader} << 32);
    return end;
}

template <bool of_item>
uint32_t PutRecords(TLV_MSG* msg, uint16_t type, const FieldTable& table, const uint8_t* record,
                    uint32_t stride, uint32_t records) noexcept {
    const uint64_t room = kNestedHeader + table.Room();
    for (uint32_t position = 0; position < records; ++position, record += stride) {
        if (!MakeRoom(msg, room)) return PLATFORM_FAILED;
        SetEnd(msg, PutRecord<of_item>(msg->image + msg->length, type, table, record, position));
    }
    return kOk;
}

}  // namespace

extern "C" {

uint32_t AAA_AppendFields(TLV_MSG* msg, const AAA_FIELD* fields, uint32_t count,
                          const void* record) noexcept {
    if (msg == nullptr || record == nullptr || (fields == nullptr && count != 0)) {
        return PLATFORM_FAILED;
    }
    const FieldTable table(fields, count);
    if (!MakeRoom(msg, table.Room())) return PLATFORM_FAILED;
    SetEnd(msg, PutFields(msg->image + msg->length, table, static_cast<const uint8_t*>(record), 0));
    return kOk;
}

uint32_t AAA_AppendRecords(TLV_MSG* msg, uint16_t type, const AAA_FIELD* fields, uint32_t count,
                           const void* first, uint32_t stride, uint32_t records) noexcept {
    if (msg == nullptr || (fields == nullptr && count != 0) || (first == nullptr && records != 0)) {
        return PLATFORM_FAILED;
    }
    const FieldTable table(fields, count);
    const auto* record = static_cast<const uint8_t*>(first);
    return table.IsOfItem() ? PutRecords<true>(msg, type, table, record, stride, records)
                            : PutRecords<false>(msg, type, table, record, stride, records);
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

uint32_t AAA_CountTlvs(TLV_MSG* msg, TLV_ITER* it, uint16_t type) noexcept {
    if (msg == nullptr) return 0;
    uint32_t count = 0;
    for (TlvAt tlv = Locate(msg, it); tlv; tlv = Locate(msg, IterAt(tlv.Value() + tlv.length))) {
        count += tlv.Type() == type;
    }
    return count;
}

uint32_t AAA_GetFields(TLV_MSG* msg, const AAA_FIELD* fields, uint32_t count, void* record,
                       AAA_OTHER_FN other, void* context) noexcept {
    if (msg == nullptr || record == nullptr || (fields == nullptr && count != 0)) {
        return PLATFORM_FAILED;
    }
    const FieldTable table(fields, count);
    return ReadFields(Body(msg), msg, table, record, nullptr, {other, context});
}

uint32_t AAA_GetSubFields(TLV_MSG* msg, TLV_ITER* it, const AAA_FIELD* fields, uint32_t count,
                          void* record, uint32_t* position, AAA_OTHER_FN other,
                          void* context) noexcept {
    if (msg == nullptr || record == nullptr || (fields == nullptr && count != 0)) {
        return PLATFORM_FAILED;
    }
    const TlvAt tlv = Locate(msg, it);
    if (!tlv || !BeginsImage(tlv)) return PLATFORM_FAILED;
    const FieldTable table(fields, count);
    return ReadFields(Body(tlv), msg, table, record, position, {other, context});
}

}  // extern "C"
