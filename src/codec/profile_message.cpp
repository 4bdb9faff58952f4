#include "codec/profile_message.h"

#include <cstring>

#include "base/text.h"

namespace aaadom {
namespace {

uint32_t StoreField(const AAA_FIELD& field, const TlvItem& item, char* member) noexcept {
    if (field.kind == AAA_FIELD_TEXT) return ReadWholeText(item, field.size, member);
    const uint32_t number = item.U32();
    const auto half = static_cast<uint16_t>(number);
    if (field.kind == AAA_FIELD_HALF)
        memcpy(member, &half, sizeof half);
    else
        memcpy(member, &number, sizeof number);
    return DOM_OK;
}

const AAA_FIELD* FindField(const AAA_FIELD* fields, size_t count, uint16_t type) noexcept {
    for (size_t i = 0; i < count; ++i)
        if (fields[i].type == type) return &fields[i];
    return nullptr;
}

AuthorProfileMsg Message(const AuthorSegment& segment) noexcept {
    AuthorProfileMsg record{};
    record.segment_id = segment.segment_id;
    CopyField(record.segment_name, segment.segment_name);
    return record;
}

CriticalProfileMsg Message(const CriticalSegment& segment) noexcept {
    CriticalProfileMsg record{};
    record.segment_id = segment.segment_id;
    record.value16 = segment.value16;
    CopyField(record.segment_name, segment.segment_name);
    return record;
}

template <typename Profile>
auto DefaultOf(const Profile& profile) noexcept {
    auto record = Message(profile.default_segment);
    CopyField(record.profile_name, profile.name);
    return record;
}

template <typename Vpn>
auto SegmentOf(const Vpn& vpn, const char* profile_name) noexcept {
    auto record = Message(vpn.segment);
    CopyText(record.profile_name, profile_name);
    CopyField(record.vpn_name, vpn.vpn_name);
    return record;
}

}  // namespace

TLV_MSG* EncodeEnd(uint32_t result) noexcept {
    TlvPtr msg(TLV_Create());
    if (!msg) return nullptr;
    Appender append(msg.get());
    append.U32(DOM_TLV_RESULT, result);
    return append.Failed() ? nullptr : msg.release();
}

uint32_t ReadWholeText(const TlvItem& item, uint32_t capacity, char* text) noexcept {
    if (item.Length() > capacity) return DOM_ERR_FAILED;
    if (item.Length() < capacity) return item.Text(text, capacity);
    // The value fills the buffer, so it must bring its terminator along.
    const uint32_t result = item.Raw(text, capacity);
    const bool fits = result == DOM_OK && BoundedLength(text, capacity) < capacity;
    const size_t kept = fits ? strlen(text) : 0;
    memset(text + kept, 0, capacity - kept);
    return fits ? DOM_OK : DOM_ERR_FAILED;
}

uint32_t DecodeProfileName(TLV_MSG* msg, uint16_t type, uint32_t capacity, char* name) noexcept {
    const TlvItem item = FindTlv(msg, type);
    return item && name != nullptr ? ReadWholeText(item, capacity, name) : DOM_ERR_FAILED;
}

uint32_t DecodeSegmentFields(TLV_MSG* msg, const AAA_FIELD* fields, size_t count,
                             void* record) noexcept {
    if (msg == nullptr) return DOM_ERR_FAILED;
    for (const TlvItem item : TlvWalk(msg)) {
        const AAA_FIELD* field = FindField(fields, count, item.Type());
        if (field == nullptr) continue;
        const uint32_t result =
            StoreField(*field, item, static_cast<char*>(record) + field->offset);
        if (result != DOM_OK) return DOM_ERR_FAILED;
    }
    return DOM_OK;
}

AuthorProfileMsg DefaultSegmentOf(const AuthorProfile& profile) noexcept {
    return DefaultOf(profile);
}

CriticalProfileMsg DefaultSegmentOf(const CriticalProfile& profile) noexcept {
    return DefaultOf(profile);
}

AuthorProfileMsg VpnSegmentOf(const AuthorVpn& vpn, const char* profile_name) noexcept {
    return SegmentOf(vpn, profile_name);
}

CriticalProfileMsg VpnSegmentOf(const CriticalVpn& vpn, const char* profile_name) noexcept {
    return SegmentOf(vpn, profile_name);
}

}  // namespace aaadom
