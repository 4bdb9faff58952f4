// Structures with arrays of nested structures, read with one call.
#include "aaa_tlv/fields.h"

using namespace platform;

namespace {

/// Where the structures of one array go. They come in order, as a rule, so each is read where the
/// next one belongs, which is all zero until then. From the first on that belongs elsewhere each is
/// looked at for its position before it is read.
struct ArrayReader {
    const AAA_RECORDS* array;
    uint32_t next;
    bool of_items;
};

constexpr uint32_t kNoOrder = UINT32_MAX;

uint32_t PlacesOf(const AAA_RECORDS& array) noexcept {
    return std::max<uint32_t>(array.places, 1);
}

uint8_t* PlaceOf(const AAA_RECORDS& array, uint32_t position) noexcept {
    return static_cast<uint8_t*>(array.first) + size_t{position} * array.size;
}

/// Reads one nested message wherever it belongs, whatever was there. The position is read first,
/// because a structure starts afresh where another one was. False when the bytes are none.
bool TakeAside(ArrayReader& reader, TLV_MSG* msg, const TlvAt& tlv) noexcept {
    if (!BeginsImage(tlv)) return false;
    const AAA_RECORDS& array = *reader.array;
    const FieldTable table(array.fields, array.count);
    const Body body(tlv);
    uint32_t position = 0;
    for (const uint8_t* at = body.begin; at != body.end;) {
        const TlvAt part = TlvWithin(at, body.end);
        if (!part) return false;
        at = part.Value() + part.length;
        const AAA_FIELD* field = table.Find(part.Type());
        if (field == table.end || field->kind != AAA_FIELD_POSITION) continue;
        TakeField(*field, part, body.end, nullptr, position);
    }
    if (array.places == 0) position = 0;
    if (position != reader.next) reader.next = kNoOrder;
    if (position >= PlacesOf(array)) return true;
    if (reader.next != kNoOrder) ++reader.next;
    uint8_t* place = PlaceOf(array, position);
    std::memset(place, 0, array.size);
    return TakeFields(body, msg, table, place, position, NoOtherTlvs()) == kOk;
}

/// Whether the bytes at `at` begin a TLV of a number, given its type.
inline bool BeginsNumber(const uint8_t* at, uint16_t type) noexcept {
    return (LoadLittleEndian<uint64_t>(at) ^ type) << 16 == kNumberLength;
}

/// Reads an item whose TLVs are exactly those of its table in their order; false, and nothing
/// stored, when they are not. The length of the text decides where the last number must end, so
/// that one comparison checks all lengths.
inline bool TakeItem(Body body, const AAA_FIELD* fields, const uint8_t* readable, uint8_t* record,
                     uint32_t& position) noexcept {
    constexpr uint32_t kTextAt = 2 * kNumberTlv;
    constexpr ptrdiff_t kWithoutText = 3 * kNumberTlv + kTlvHeader;
    const ptrdiff_t length = body.end - body.begin - kWithoutText;
    const uint8_t* at = body.begin;
    if (length < 0 || !BeginsNumber(at, fields[0].type) ||
        !BeginsNumber(at + kNumberTlv, fields[1].type) ||
        !BeginsNumber(body.end - kNumberTlv, fields[3].type)) {
        return false;
    }
    const uint64_t text = LoadLittleEndian<uint64_t>(at + kTextAt) ^ fields[2].type;
    if (text << 16 != static_cast<uint64_t>(length) << 32) return false;
    position = LoadLittleEndian<uint32_t>(at + kTlvHeader);
    CopyNumber(record + fields[1].offset, at + kNumberTlv + kTlvHeader);
    TakeText(reinterpret_cast<char*>(record + fields[2].offset), fields[2].size,
             at + kTextAt + kTlvHeader, static_cast<uint32_t>(length), readable);
    CopyNumber(record + fields[3].offset, body.end - sizeof(uint32_t));
    return true;
}

/// Reads the structures that come one behind the other in their order, with their TLVs in the order
/// of the table; the end of what was read. A function of its own, so that what it needs all the
/// time stays in registers.
template <bool of_items>
[[gnu::noinline]] const uint8_t* TakeEach(ArrayReader& reader, const uint8_t* at,
                                          const uint8_t* end, const uint8_t* readable) noexcept {
    const AAA_RECORDS& array = *reader.array;
    uint32_t next = reader.next;
    const uint32_t places = PlacesOf(array);
    if (next >= places) return at;
    uint8_t* place = PlaceOf(array, next);
    do {
        if (end - at < static_cast<ptrdiff_t>(kNestedHeader)) break;
        const auto header = LoadLittleEndian<uint64_t>(at);
        const TlvAt tlv{at, static_cast<uint32_t>(header >> 16)};
        if (static_cast<uint16_t>(header) != array.type || tlv.length > end - tlv.Value() ||
            !BeginsImage(tlv)) {
            break;
        }
        const Body body(tlv);
        uint32_t position = 0;
        bool taken;
        if constexpr (of_items) {
            taken = TakeItem(body, array.fields, readable, place, position);
        } else {
            FieldWalk walk(body, FieldTable(array.fields, array.count));
            TakeExpected(walk, readable, place, position);
            taken = walk.at == walk.end;
        }
        if (!taken || (position != next && array.places != 0)) [[unlikely]] {
            std::memset(place, 0, array.size);
            break;
        }
        at = body.end;
        place += array.size;
    } while (++next != places);
    reader.next = next;
    return at;
}

inline const uint8_t* TakeInOrder(ArrayReader& reader, const uint8_t* at, const uint8_t* end,
                                  const uint8_t* readable) noexcept {
    return reader.of_items ? TakeEach<true>(reader, at, end, readable)
                           : TakeEach<false>(reader, at, end, readable);
}

constexpr uint32_t kMostArrays = 4;

struct Arrays {
    ArrayReader readers[kMostArrays];
    uint32_t count;

    /// Reads the TLV if it is an array's, and those behind it as long as they come in their order.
    uint32_t Take(FieldWalk& walk, TLV_MSG* msg, const TlvAt& tlv) noexcept {
        const uint16_t type = tlv.Type();
        ArrayReader* reader = readers;
        ArrayReader* const last = readers + count;
        while (reader != last && reader->array->type != type) ++reader;
        if (reader == last) return kOk;
        const uint8_t* readable = msg->image + msg->length;
        const uint8_t* at = TakeInOrder(*reader, tlv.at, walk.end, readable);
        if (at == tlv.at) return TakeAside(*reader, msg, tlv) ? kOk : PLATFORM_FAILED;
        while (++reader != last && at != walk.end) {
            at = TakeInOrder(*reader, at, walk.end, readable);
        }
        walk.at = at;
        return kOk;
    }
};

}  // namespace

extern "C" {

uint32_t AAA_GetRecords(TLV_MSG* msg, TLV_ITER* it, const AAA_FIELD* fields, uint32_t count,
                        void* record, const AAA_RECORDS* arrays, uint32_t array_count) noexcept {
    if (msg == nullptr || record == nullptr || (fields == nullptr && count != 0) ||
        (arrays == nullptr && array_count != 0) || array_count > kMostArrays) {
        return PLATFORM_FAILED;
    }
    Arrays others;
    for (others.count = 0; others.count != array_count; ++others.count) {
        const AAA_RECORDS& array = arrays[others.count];
        if (array.first == nullptr || (array.fields == nullptr && array.count != 0)) {
            return PLATFORM_FAILED;
        }
        others.readers[others.count] = {&array, 0,
                                        FieldTable(array.fields, array.count).IsOfItem()};
    }
    TlvAt tlv;
    if (it != nullptr) {
        tlv = Locate(msg, it);
        if (!tlv || !BeginsImage(tlv)) return PLATFORM_FAILED;
    }
    uint32_t position = 0;
    return TakeFields(it == nullptr ? Body(msg) : Body(tlv), msg, FieldTable(fields, count),
                      static_cast<uint8_t*>(record), position, others);
}

}  // extern "C"
