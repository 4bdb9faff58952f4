#include <aaadom/results.h>
#include <aaadom/settings_codec.h>

#include "base/message.h"
#include "codec/value_messages.h"

using namespace aaadom;

extern "C" {

TLV_MSG* DOM_EncodeDeviceID(uint32_t device_id) noexcept {
    return Encode(kDeviceIdMessage, {device_id});
}

uint32_t DOM_DecodeDeviceID(TLV_MSG* msg, uint32_t* device_id) noexcept {
    if (msg == nullptr) return DOM_ERR_FAILED;
    // The last value counts, and a message without any leaves the caller's.
    for (TlvItem item : TlvWalk(msg)) {
        if (item.Type() == DOM_TLV_DEVICE_ID && device_id != nullptr) *device_id = item.U32();
    }
    return DOM_OK;
}

TLV_MSG* DOM_EncodeUserAddrType(const char* name, uint32_t user_addr_type) noexcept {
    return Encode(kUserAddrTypeMessage, {name, user_addr_type});
}

uint32_t DOM_DecodeUserAddrType(TLV_MSG* msg, uint32_t size, char* name,
                                uint32_t* user_addr_type) noexcept {
    return Decode(kUserAddrTypeMessage, msg, {{size, name}, user_addr_type});
}

TLV_MSG* DOM_EncodeAcctDualStackMode(const char* name, uint32_t mode) noexcept {
    return Encode(kDualStackMessage, {name, mode});
}

uint32_t DOM_DecodeAcctDualStackMode(TLV_MSG* msg, uint32_t size, char* name,
                                     uint32_t* mode) noexcept {
    return Decode(kDualStackMessage, msg, {{size, name}, mode});
}

TLV_MSG* DOM_EncodeDebugFlag(uint32_t flag) noexcept {
    return Encode(kDebugFlagMessage, {flag});
}

uint32_t DOM_DecodeDebugFlag(TLV_MSG* msg, uint32_t* flag) noexcept {
    if (flag != nullptr) *flag = 0;
    if (msg == nullptr) return DOM_ERR_FAILED;
    for (TlvItem item : TlvWalk(msg)) {
        const uint16_t type = item.Type();
        if (type == DOM_TLV_DEBUG_FLAG) {
            if (flag != nullptr) *flag = item.U32();
        } else if (type != DOM_TLV_MSG_CODE) {
            return DOM_ERR_FAILED;  // what was stored before the stranger stays
        }
    }
    return DOM_OK;
}

TLV_MSG* DOM_EncodeAuthenEscapeRecover(const char* name, uint16_t setting,
                                       const char* escape_domain, uint16_t second_setting,
                                       uint32_t value_18) noexcept {
    return Encode(kEscapeRecoverMessage, {name, setting, escape_domain, second_setting, value_18});
}

uint32_t DOM_DecodeAuthenEscapeRecover(TLV_MSG* msg, uint32_t size, char* name, uint16_t* setting,
                                       uint32_t escape_size, char* escape_domain,
                                       uint16_t* second_setting, uint32_t* value_18) noexcept {
    return Decode(kEscapeRecoverMessage, msg,
                  {{size, name}, setting, {escape_size, escape_domain}, second_setting, value_18});
}

TLV_MSG* DOM_EncodeAuthRdFailPermitDomain(const char* name, const char* permit_domain,
                                          uint32_t value_18) noexcept {
    return Encode(kPermitDomainMessage, {name, permit_domain, value_18});
}

uint32_t DOM_DecodeAuthRdFailPermitDomain(TLV_MSG* msg, uint32_t size, char* name,
                                          uint32_t permit_size, char* permit_domain,
                                          uint32_t* value_18) noexcept {
    return Decode(kPermitDomainMessage, msg,
                  {{size, name}, {permit_size, permit_domain}, value_18});
}

TLV_MSG* DOM_EncodeAuthFailDomain(const char* name, const char* fail_domain, uint32_t value_18,
                                  uint16_t kind) noexcept {
    return Encode(kAuthFailDomainMessage, {name, fail_domain, value_18, kind});
}

uint32_t DOM_DecodeAuthFailDomain(TLV_MSG* msg, uint32_t size, char* name, uint32_t fail_size,
                                  char* fail_domain, uint32_t* value_18, uint16_t* kind) noexcept {
    return Decode(kAuthFailDomainMessage, msg,
                  {{size, name}, {fail_size, fail_domain}, value_18, kind});
}

}  // extern "C"
