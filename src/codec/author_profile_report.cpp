#include "codec/author_profile_report.h"

#include <aaadom/codes.h>
#include <arpa/inet.h>

#include "base/text.h"
#include "codec/field_table.h"

namespace aaadom {
namespace {

#define TEXT_AT(member) offsetof(AAAAuthorProfile, member), sizeof(AAAAuthorProfile::member)
using enum FieldKind;
constexpr Field kProfileFieldList[] = {
    {DOM_TLV_AUTHOR_PROFILE_NAME, kText, TEXT_AT(profile_name)},
    {DOM_TLV_AUTHOR_VALUE_434, kWord, offsetof(AAAAuthorProfile, value_434)},
    {DOM_TLV_AUTHOR_SEGMENT_NAME, kText, TEXT_AT(segment_name)},
    {DOM_TLV_AUTHOR_SEGMENT_ID, kWord, offsetof(AAAAuthorProfile, segment_id)},
};
#undef TEXT_AT
constexpr FieldTable kProfileFields(kProfileFieldList);

/// One list entry as it is sent.
struct WireEntry {
    uint32_t number;  // big-endian
    char text1[32];
    char text2[32];
    char reserved[32];  // sent as zeros, ignored when received
};
static_assert(sizeof(WireEntry) == DOM_AUTHOR_ENTRY_SIZE);

WireEntry ToWire(const AAAAuthorEntry& entry) noexcept {
    WireEntry wire{};
    wire.number = htonl(entry.number);
    CopyField(wire.text1, entry.text1);
    CopyField(wire.text2, entry.text2);
    return wire;
}

uint32_t AddEntry(const TlvItem& item, AAAAuthorProfile& profile) noexcept {
    if (item.Length() != sizeof(WireEntry)) return DOM_ERR_FAILED;
    if (profile.entry_count == DOM_AUTHOR_ENTRY_MAX) return DOM_OK;
    WireEntry wire;
    const uint32_t result = item.Raw(&wire, sizeof wire);
    if (result != DOM_OK) return result;
    AAAAuthorEntry& entry = profile.entries[profile.entry_count++];
    entry.number = ntohl(wire.number);
    CopyField(entry.text1, wire.text1);
    CopyField(entry.text2, wire.text2);
    return DOM_OK;
}

}  // namespace

TLV_MSG* EncodeProfileReport(const AAAAuthorProfile& profile) noexcept {
    if (profile.entry_count > DOM_AUTHOR_ENTRY_MAX) return nullptr;
    return MessageBuilder(DOM_MSG_AAA_AUTHOR_PROFILE).Build([&](Appender& append) {
        AppendFields(append, &profile, kProfileFields);
        for (uint32_t i = 0; i < profile.entry_count; ++i) {
            const WireEntry wire = ToWire(profile.entries[i]);
            append.Raw(DOM_TLV_AUTHOR_ENTRY, &wire, sizeof wire);
        }
    });
}

uint32_t DecodeProfileReport(TLV_MSG* msg, AAAAuthorProfile& profile) noexcept {
    profile = AAAAuthorProfile{};
    const TlvItem code = FindTlv(msg, DOM_TLV_MSG_CODE);
    if (!code || code.U32() != DOM_MSG_AAA_AUTHOR_PROFILE) return DOM_ERR_FAILED;
    if (!FindTlv(msg, DOM_TLV_AUTHOR_PROFILE_NAME)) return DOM_ERR_FAILED;
    uint32_t result = ReadFields(msg, &profile, kProfileFields);
    for (TlvItem item : TlvWalk(msg)) {
        if (item.Type() == DOM_TLV_AUTHOR_ENTRY) result |= AddEntry(item, profile);
    }
    return result;
}

}  // namespace aaadom
