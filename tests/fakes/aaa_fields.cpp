// Structures to and from messages by tables of their members: each member is one append or one read
// of aaa_tlv.cpp, so each can be refused alone.
#include <platform/aaa_tlv.h>

#include <algorithm>
#include <cstring>

#include "fakes/message.h"
#include "fakes/state.h"

using fake::kFailed;
using fake::Quiet;

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
        if (field != fields + count && field->kind != AAA_FIELD_OTHER) {
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

extern "C" uint32_t AAA_CountTlvs(TLV_MSG* msg, TLV_ITER* it, uint16_t type) noexcept {
    uint32_t count = 0;
    for (; it != nullptr; it = TLV_GetNext(msg, it)) {
        if (TLV_GetTypeByIterator(msg, it) == type) ++count;
    }
    return count;
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
