#include <aaadom/codes.h>
#include <aaadom/nas_id_codec.h>
#include <aaadom/results.h>

#include "base/message.h"
#include "codec/value_messages.h"

using namespace aaadom;

namespace {

/// A null output is skipped.
uint32_t ReadName(const TlvItem& item, char* name) noexcept {
    return name == nullptr ? DOM_OK : item.Text(name, DOM_NASID_NAME_SIZE);
}

}  // namespace

extern "C" {

TLV_MSG* DOM_EncodeNasIdProfile(const char* profile_name) noexcept {
    return Encode(kNasIdProfileMessage, {profile_name});
}

uint32_t DOM_DecodeNasIdProfile(TLV_MSG* msg, char* profile_name) noexcept {
    return Decode(kNasIdProfileMessage, msg, {{DOM_NASID_NAME_SIZE, profile_name}});
}

TLV_MSG* DOM_EncodeNasidBindVlanId(const char* profile_name, const char* nas_id,
                                   uint16_t vlan_id) noexcept {
    return MessageBuilder(DOM_MSG_NASID_BIND).Build([&](Appender& append) {
        append.Text(DOM_TLV_NASID_PROFILE, profile_name)
            .Text(DOM_TLV_NASID, nas_id)
            .U16(DOM_TLV_VLAN_ID, vlan_id);
    });
}

uint32_t DOM_DecodeNasIdBindVlanId(TLV_MSG* msg, char* profile_name, char* nas_id,
                                   uint16_t* vlan_id) noexcept {
    // The last read decides alone: what a message lacks shows in outputs that callers cleared.
    uint32_t result = DOM_ERR_FAILED;
    for (TlvItem item : TlvWalk(msg)) {
        switch (item.Type()) {
            case DOM_TLV_NASID_PROFILE:
                result = ReadName(item, profile_name);
                break;
            case DOM_TLV_NASID:
                result = ReadName(item, nas_id);
                break;
            case DOM_TLV_VLAN_ID: {
                uint16_t value = 0;
                result = item.U16(&value);
                if (result == DOM_OK && vlan_id != nullptr) *vlan_id = value;
                break;
            }
            default:
                break;
        }
    }
    return result;
}

}  // extern "C"
