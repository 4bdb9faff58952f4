#include <platform/aaa_tlv.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "fakes/message.h"
#include "fakes/state.h"
#include "fakes/text_reads.h"

using fake::Event;
using fake::Hit;
using fake::kFailed;
using fake::Quiet;

fake::TextReads fake::failing_text_reads = {0, 0};

namespace {

// Types of the operation and daemon heads.
constexpr uint16_t kOpcode = 0xFF01, kOpBody = 0xFF02;
constexpr uint16_t kAaadType = 0xFF03, kAaadSubType = 0xFF04, kAaadBody = 0xFF05;

uint32_t Append(TLV_MSG* msg, uint16_t type, const std::string& value) {
    if (msg == nullptr) return kFailed;
    fake::AddItem(msg, type, value);
    return 0;
}

/// The nested message in the item at `index` when that item has the type.
TLV_MSG* NestedAt(TLV_MSG* msg, size_t index, uint16_t type) {
    if (msg == nullptr || index >= msg->items.size() || msg->items[index]->type != type) {
        return nullptr;
    }
    return fake::ParseImage(msg->items[index]->value);
}

bool HasWordAt(TLV_MSG* msg, size_t index, uint16_t type) {
    return msg != nullptr && index < msg->items.size() && msg->items[index]->type == type &&
           msg->items[index]->value.size() >= 4;
}

}  // namespace

extern "C" uint32_t AAA_AppendUINTTlvData(TLV_MSG* msg, uint16_t type, uint32_t value) noexcept {
    if (Hit(Event::kAppend)) return kFailed;
    Quiet quiet;
    return Append(msg, type, fake::LittleEndian(value, 4));
}

extern "C" uint32_t AAA_AppendUSHORTTlvData(TLV_MSG* msg, uint16_t type, uint16_t value) noexcept {
    if (Hit(Event::kAppend)) return kFailed;
    Quiet quiet;
    return Append(msg, type, fake::LittleEndian(value, 2));
}

extern "C" uint32_t AAA_AppendUINT64TlvData(TLV_MSG* msg, uint16_t type, uint64_t value) noexcept {
    if (Hit(Event::kAppend)) return kFailed;
    Quiet quiet;
    return Append(msg, type, fake::LittleEndian(value, 8));
}

extern "C" uint32_t AAA_AppendStrTlvData(TLV_MSG* msg, uint16_t type, const char* text) noexcept {
    if (Hit(Event::kAppend) || text == nullptr) return kFailed;
    Quiet quiet;
    return Append(msg, type, std::string(text, std::strlen(text) + 1));
}

extern "C" uint32_t AAA_AppendMACTlvData(TLV_MSG* msg, uint16_t type,
                                         const uint8_t mac[6]) noexcept {
    if (Hit(Event::kAppend) || mac == nullptr) return kFailed;
    Quiet quiet;
    return Append(msg, type, std::string(reinterpret_cast<const char*>(mac), 6));
}

extern "C" uint32_t AAA_AppendSubTlv(TLV_MSG* msg, uint16_t type, TLV_MSG* sub) noexcept {
    if (Hit(Event::kAppend) || sub == nullptr) return kFailed;
    Quiet quiet;
    return Append(msg, type, fake::MakeImage(sub));
}

extern "C" uint32_t AAA_GetUINTTlvValue(TLV_MSG* msg, TLV_ITER* it) noexcept {
    const TLV_ITER* item = fake::Readable(msg, it);
    if (item == nullptr || item->value.size() < 4) return 0;
    return static_cast<uint32_t>(fake::FromLittleEndian(item->value, 0, 4));
}

extern "C" uint64_t AAA_GetUINT64TlvValue(TLV_MSG* msg, TLV_ITER* it) noexcept {
    const TLV_ITER* item = fake::Readable(msg, it);
    if (item == nullptr || item->value.size() < 8) return 0;
    return fake::FromLittleEndian(item->value, 0, 8);
}

extern "C" uint32_t AAA_GetUSHORTTlvValue(TLV_MSG* msg, TLV_ITER* it, uint16_t* value) noexcept {
    const TLV_ITER* item = fake::Readable(msg, it);
    if (item == nullptr || value == nullptr || item->value.size() < 2) return kFailed;
    *value = static_cast<uint16_t>(fake::FromLittleEndian(item->value, 0, 2));
    return 0;
}

extern "C" uint32_t AAA_GetMACTlvValue(TLV_MSG* msg, TLV_ITER* it, uint8_t mac[6]) noexcept {
    const TLV_ITER* item = fake::Readable(msg, it);
    if (item == nullptr || mac == nullptr || item->value.size() < 6) return kFailed;
    std::memcpy(mac, item->value.data(), 6);
    return 0;
}

extern "C" uint32_t AAA_GetStrTlvValue(TLV_MSG* msg, TLV_ITER* it, uint32_t capacity,
                                       char* buffer) noexcept {
    const TLV_ITER* item = fake::Readable(msg, it);
    if (item == nullptr || capacity == 0 || buffer == nullptr) return kFailed;
    const fake::TextReads& failing = fake::failing_text_reads;
    if (failing.result != 0 && item->type == failing.type) return failing.result;
    const size_t text = std::min(item->value.find('\0'), item->value.size());
    const size_t copied = std::min<size_t>(text, capacity - 1);
    std::memcpy(buffer, item->value.data(), copied);
    buffer[copied] = '\0';
    return 0;
}

extern "C" TLV_MSG* AAA_GetSubTlv(TLV_MSG* msg, TLV_ITER* it) noexcept {
    if (Hit(Event::kMessage)) return nullptr;
    Quiet quiet;
    const TLV_ITER* item = fake::Readable(msg, it);
    return item == nullptr ? nullptr : fake::ParseImage(item->value);
}

extern "C" TLV_MSG* AAA_AddOpHead(uint32_t opcode, TLV_MSG* msg) noexcept {
    if (Hit(Event::kMessage) || msg == nullptr) return nullptr;
    Quiet quiet;
    TLV_MSG* out = fake::NewMessage();
    fake::AddItem(out, kOpcode, fake::LittleEndian(opcode, 4));
    fake::AddItem(out, kOpBody, fake::MakeImage(msg));
    return out;
}

extern "C" TLV_MSG* AAA_DelOpHead(TLV_MSG* msg, uint32_t* opcode) noexcept {
    if (Hit(Event::kMessage) || !HasWordAt(msg, 0, kOpcode)) return nullptr;
    Quiet quiet;
    TLV_MSG* body = NestedAt(msg, 1, kOpBody);
    if (body != nullptr && opcode != nullptr) {
        *opcode = static_cast<uint32_t>(fake::FromLittleEndian(msg->items[0]->value, 0, 4));
    }
    return body;
}

extern "C" TLV_MSG* AAA_AddAaadHead(uint32_t type, uint32_t sub_type, TLV_MSG* msg) noexcept {
    if (Hit(Event::kMessage) || msg == nullptr) return nullptr;
    Quiet quiet;
    TLV_MSG* out = fake::NewMessage();
    fake::AddItem(out, kAaadType, fake::LittleEndian(type, 4));
    fake::AddItem(out, kAaadSubType, fake::LittleEndian(sub_type, 4));
    fake::AddItem(out, kAaadBody, fake::MakeImage(msg));
    return out;
}

extern "C" TLV_MSG* AAA_DelAaadHead(TLV_MSG* msg) noexcept {
    if (Hit(Event::kMessage)) return nullptr;
    if (!HasWordAt(msg, 0, kAaadType) || !HasWordAt(msg, 1, kAaadSubType)) return nullptr;
    Quiet quiet;
    return NestedAt(msg, 2, kAaadBody);
}

extern "C" void* AAA_EncapStructToTLVBuf(const AAA_ENCAP_STEP* steps, uint32_t step_count,
                                         uint32_t* length_out) noexcept {
    if (length_out != nullptr) *length_out = 0;
    if (Hit(Event::kMessage)) return nullptr;
    if (steps == nullptr && step_count != 0) return nullptr;
    Quiet quiet;
    TLV_MSG* out = fake::NewMessage();
    bool failed = false;
    for (uint32_t s = 0; s < step_count && !failed; ++s) {
        const AAA_ENCAP_STEP& step = steps[s];
        failed = step.count != 0 && step.first == nullptr;
        for (uint32_t i = 0; i < step.count && !failed; ++i) {
            const void* item = static_cast<const char*>(step.first) + size_t{i} * step.stride;
            if (step.encap == nullptr) {
                const auto* number = static_cast<const uint8_t*>(item);
                fake::AddItem(out, step.type, std::string(number, number + 4));
                std::reverse(out->items.back()->value.begin(), out->items.back()->value.end());
                continue;
            }
            TLV_MSG* sub = fake::NewMessage();
            {
                fake::Outside outside;
                failed = step.encap(i, item, sub) != 0;
            }
            if (!failed) fake::AddItem(out, step.type, fake::MakeImage(sub));
            fake::DestroyMessage(sub);
        }
    }
    const std::string image = fake::MakeImage(out);
    fake::DestroyMessage(out);
    if (failed) return nullptr;
    void* buffer = std::malloc(image.size());
    std::memcpy(buffer, image.data(), image.size());
    if (length_out != nullptr) *length_out = static_cast<uint32_t>(image.size());
    return buffer;
}

extern "C" uint32_t AAA_DecapSubTLVToStruct(TLV_MSG* msg, TLV_ITER* it, AAA_DECAP_FN decap,
                                            void* object) noexcept {
    if (Hit(Event::kMessage) || decap == nullptr) return kFailed;
    const TLV_ITER* item = fake::Readable(msg, it);
    if (item == nullptr) return kFailed;
    Quiet quiet;
    TLV_MSG* sub = fake::ParseImage(item->value);
    if (sub == nullptr) return kFailed;
    uint32_t result;
    {
        fake::Outside outside;
        result = decap(sub, object);
    }
    fake::DestroyMessage(sub);
    return result;
}

namespace {

/// The member as the single append that its kind stands for.
uint32_t AppendMember(TLV_MSG* msg, const AAA_FIELD& field, const void* record, uint32_t position) {
    const char* member = static_cast<const char*>(record) + field.offset;
    switch (field.kind) {
        case AAA_FIELD_WORD: {
            uint32_t word;
            std::memcpy(&word, member, sizeof word);
            return AAA_AppendUINTTlvData(msg, field.type, word);
        }
        case AAA_FIELD_HALF: {
            uint16_t half;
            std::memcpy(&half, member, sizeof half);
            return AAA_AppendUINTTlvData(msg, field.type, half);
        }
        case AAA_FIELD_TEXT: {
            std::string text;
            {
                Quiet quiet;
                text.assign(member, strnlen(member, field.size));
            }
            return AAA_AppendStrTlvData(msg, field.type, text.c_str());
        }
        case AAA_FIELD_BLOCK:
            return TLV_Append_Data(msg, field.type, field.size, member);
        default:
            return AAA_AppendUINTTlvData(msg, field.type, position);
    }
}

uint32_t AppendMembers(TLV_MSG* msg, const AAA_FIELD* fields, uint32_t count, const void* record,
                       uint32_t position) {
    uint32_t result = 0;
    for (uint32_t i = 0; i < count; ++i) result |= AppendMember(msg, fields[i], record, position);
    return result;
}

uint32_t ReadMember(TLV_MSG* msg, TLV_ITER* it, const AAA_FIELD& field, void* record,
                    uint32_t* position) {
    char* member = static_cast<char*>(record) + field.offset;
    const uint32_t word = AAA_GetUINTTlvValue(msg, it);
    const auto half = static_cast<uint16_t>(word);
    switch (field.kind) {
        case AAA_FIELD_WORD:
            std::memcpy(member, &word, sizeof word);
            return 0;
        case AAA_FIELD_HALF:
            std::memcpy(member, &half, sizeof half);
            return 0;
        case AAA_FIELD_TEXT:
            return AAA_GetStrTlvValue(msg, it, field.size, member);
        case AAA_FIELD_BLOCK:
            return TLV_GetValueByIterator(msg, it, field.size, member);
        default:
            if (position != nullptr) *position = word;
            return 0;
    }
}

uint32_t ReadMembers(TLV_MSG* msg, const AAA_FIELD* fields, uint32_t count, void* record,
                     uint32_t* position, AAA_OTHER_FN other, void* context) {
    uint32_t result = 0;
    for (TLV_ITER* it = TLV_GetFirst(msg); it != nullptr; it = TLV_GetNext(msg, it)) {
        const uint16_t type = TLV_GetTypeByIterator(msg, it);
        const AAA_FIELD* field = std::find_if(
            fields, fields + count, [type](const AAA_FIELD& each) { return each.type == type; });
        if (field != fields + count) {
            result |= ReadMember(msg, it, *field, record, position);
        } else if (other != nullptr) {
            result |= other(context, type, msg, it);
        }
    }
    return result;
}

}  // namespace

extern "C" uint32_t AAA_AppendFields(TLV_MSG* msg, const AAA_FIELD* fields, uint32_t count,
                                     const void* record) noexcept {
    if (msg == nullptr || record == nullptr || (fields == nullptr && count != 0)) return kFailed;
    return AppendMembers(msg, fields, count, record, 0);
}

extern "C" uint32_t AAA_AppendRecords(TLV_MSG* msg, uint16_t type, const AAA_FIELD* fields,
                                      uint32_t count, const void* first, uint32_t stride,
                                      uint32_t records) noexcept {
    if (msg == nullptr || (fields == nullptr && count != 0) || (first == nullptr && records != 0)) {
        return kFailed;
    }
    for (uint32_t position = 0; position < records; ++position) {
        TLV_MSG* sub = TLV_Create();
        if (sub == nullptr) return kFailed;
        const char* record = static_cast<const char*>(first) + size_t{position} * stride;
        uint32_t result = AppendMembers(sub, fields, count, record, position);
        if (result == 0) result = AAA_AppendSubTlv(msg, type, sub);
        TLV_Destroy(sub);
        if (result != 0) return kFailed;
    }
    return 0;
}

// The mark is the position of the TLV that is still empty; it counts as an append when it is
// closed.
extern "C" uint32_t AAA_BeginSubTlv(TLV_MSG* msg, uint16_t type, uint32_t* mark) noexcept {
    if (Hit(Event::kMessage) || msg == nullptr || mark == nullptr) return kFailed;
    Quiet quiet;
    TLV_MSG* empty = fake::NewMessage();
    fake::AddItem(msg, type, fake::MakeImage(empty));
    fake::DestroyMessage(empty);
    *mark = static_cast<uint32_t>(msg->items.size() - 1);
    return 0;
}

extern "C" uint32_t AAA_EndSubTlv(TLV_MSG* msg, uint32_t mark) noexcept {
    if (Hit(Event::kAppend) || msg == nullptr || mark >= msg->items.size()) return kFailed;
    Quiet quiet;
    TLV_MSG* sub = fake::NewMessage();
    if (msg->items[mark]->value != fake::MakeImage(sub)) {
        fake::DestroyMessage(sub);
        return kFailed;
    }
    for (size_t i = mark + 1; i < msg->items.size(); ++i) {
        fake::AddItem(sub, msg->items[i]->type, msg->items[i]->value);
        msg->deleted.push_back(std::move(msg->items[i]));
    }
    msg->items.resize(mark + 1);
    msg->items[mark]->value = fake::MakeImage(sub);
    ++msg->changes;
    fake::DestroyMessage(sub);
    return 0;
}

extern "C" uint32_t AAA_GetFields(TLV_MSG* msg, const AAA_FIELD* fields, uint32_t count,
                                  void* record, AAA_OTHER_FN other, void* context) noexcept {
    if (msg == nullptr || record == nullptr || (fields == nullptr && count != 0)) return kFailed;
    return ReadMembers(msg, fields, count, record, nullptr, other, context);
}

extern "C" uint32_t AAA_GetSubFields(TLV_MSG* msg, TLV_ITER* it, const AAA_FIELD* fields,
                                     uint32_t count, void* record, uint32_t* position,
                                     AAA_OTHER_FN other, void* context) noexcept {
    if (msg == nullptr || record == nullptr || (fields == nullptr && count != 0)) return kFailed;
    TLV_MSG* sub = AAA_GetSubTlv(msg, it);
    if (sub == nullptr) return kFailed;
    const uint32_t result = ReadMembers(sub, fields, count, record, position, other, context);
    TLV_Destroy(sub);
    return result;
}

namespace {

/// Reads one nested message into the place in its array that its position names.
uint32_t ReadRecord(TLV_MSG* msg, TLV_ITER* it, const AAA_RECORDS& array) {
    TLV_MSG* sub = AAA_GetSubTlv(msg, it);
    if (sub == nullptr) return kFailed;
    uint32_t position = 0;
    uint32_t result = 0;
    {
        Quiet quiet;
        std::string record(array.size, '\0');
        {
            fake::Outside outside;
            result = ReadMembers(sub, array.fields, array.count, record.data(), &position, nullptr,
                                 nullptr);
        }
        if (array.places == 0) position = 0;
        if (position < std::max<uint32_t>(array.places, 1)) {
            std::memcpy(static_cast<char*>(array.first) + size_t{position} * array.size,
                        record.data(), record.size());
        }
    }
    TLV_Destroy(sub);
    return result;
}

struct ArrayList {
    const AAA_RECORDS* begin;
    uint32_t count;
};

uint32_t ReadOther(void* context, uint16_t type, TLV_MSG* msg, TLV_ITER* it) {
    const auto& arrays = *static_cast<const ArrayList*>(context);
    for (uint32_t i = 0; i < arrays.count; ++i) {
        if (arrays.begin[i].type == type) return ReadRecord(msg, it, arrays.begin[i]);
    }
    return 0;
}

}  // namespace

extern "C" uint32_t AAA_GetRecords(TLV_MSG* msg, TLV_ITER* it, const AAA_FIELD* fields,
                                   uint32_t count, void* record, const AAA_RECORDS* arrays,
                                   uint32_t array_count) noexcept {
    if (arrays == nullptr && array_count != 0) return kFailed;
    ArrayList list{arrays, array_count};
    if (it == nullptr) return AAA_GetFields(msg, fields, count, record, ReadOther, &list);
    return AAA_GetSubFields(msg, it, fields, count, record, nullptr, ReadOther, &list);
}
