#include <aaadom/codes.h>
#include <aaadom/domain_codec.h>
#include <aaadom/results.h>

#include "base/text.h"
#include "codec/author_attr.h"
#include "codec/author_profile_report.h"
#include "codec/domain_record.h"
#include "codec/domain_walk.h"
#include "codec/method_item.h"
#include "codec/session_limits.h"
#include "codec/table_rows.h"
#include "codec/value_messages.h"

using namespace aaadom;

extern "C" {

TLV_MSG* DOM_EncodeDomain(const char* name) noexcept {
    return name == nullptr ? nullptr : EncodeNamedDomain(name).release();
}

DomainInfo* DOM_DecodeDomain(TLV_MSG* msg) noexcept {
    return DecodeDomainRecord(msg);
}

TLV_MSG* DOM_EncodeNextDomain(const char* name, char* next_name_out) noexcept {
    return name == nullptr ? nullptr : EncodeNextDomain(name, next_name_out).release();
}

TLV_MSG* DOM_EncodeMIBNextDomain(const char* name, uint32_t name_length,
                                 uint32_t* status_out) noexcept {
    uint32_t status = DOM_WALK_NO_MESSAGE;
    TlvPtr msg;
    if (name != nullptr || name_length == 0) msg = EncodeNextRowDomain(name, name_length, status);
    if (status_out != nullptr) *status_out = status;
    return msg.release();
}

TLV_MSG* DOM_EncodeNetConfNextDomain(const char* name, uint32_t* status_out) noexcept {
    uint32_t status = DOM_WALK_NO_MESSAGE;
    TlvPtr msg;
    if (name != nullptr) msg = EncodeNextNetConfDomain(name, status);
    if (status_out != nullptr) *status_out = status;
    return msg.release();
}

TLV_MSG* DOM_EncodeMethList(const char* name, const MethodList* list,
                            const MethodEntry* extra) noexcept {
    if (name == nullptr || list == nullptr) return nullptr;
    TlvPtr msg(TLV_Create());
    if (!msg) return nullptr;
    Appender append(msg.get());
    append.U32(DOM_TLV_MSG_CODE, DOM_MSG_METHOD_LIST).Text(DOM_TLV_DOMAIN_NAME, name);
    append.Fold(EncodeMethodList(*list, extra == nullptr ? MethodEntry{} : *extra, msg.get()));
    return append.Failed() ? nullptr : msg.release();
}

uint32_t DOM_DecodeMethList(TLV_MSG* msg, uint32_t size, char* name, MethodList* list,
                            MethodEntry* extra) noexcept {
    MethodList decoded_list;
    MethodEntry decoded_extra;
    const uint32_t name_result = Decode(kDomainNameMessage, msg, {{size, name}});
    if (name_result != DOM_OK) return name_result;
    const uint32_t list_result = DecodeMethodList(msg, decoded_list, decoded_extra);
    if (list_result != DOM_OK) return list_result;
    if (!IsListPlace(decoded_list)) return DOM_ERR_FAILED;
    if (list != nullptr) *list = decoded_list;
    if (extra != nullptr) *extra = decoded_extra;
    return DOM_OK;
}

TLV_MSG* DOM_EncodeAuthorAttr(uint32_t kind, const char* name, const AuthorAttr* attr) noexcept {
    if (name == nullptr || attr == nullptr) return nullptr;
    return MessageBuilder(DOM_MSG_AUTHOR_ATTR).Build([&](Appender& append) {
        append.U32(DOM_TLV_ATTR_KIND, kind).Text(DOM_TLV_DOMAIN_NAME, name);
        AppendAttributes(append, *attr);
    });
}

uint32_t DOM_DecodeAuthorAttr(TLV_MSG* msg, uint32_t* kind, uint32_t size, char* name,
                              AuthorAttr* attr) noexcept {
    const uint32_t name_result = Decode(kDomainNameMessage, msg, {{size, name}});
    const TlvItem kind_item = FindTlv(msg, DOM_TLV_ATTR_KIND);
    const TlvItem attr_item = FindTlv(msg, DOM_TLV_AUTHOR_ATTR);
    if (kind != nullptr) *kind = kind_item ? kind_item.U32() : 0;
    if (name_result != DOM_OK) return name_result;
    // Without a kind the block would be applied as kind 0, which the sender did not ask for.
    if (!kind_item || !attr_item) return DOM_ERR_FAILED;
    const TlvPtr sub = attr_item.Sub();
    if (!sub) return DOM_ERR_FAILED;
    return attr == nullptr ? DOM_OK : DecodeAttributes(sub.get(), *attr);
}

TLV_MSG* DOM_EncodeSessionLimit(uint32_t session_class, uint32_t limit) noexcept {
    return EncodeSessionClass(DOM_MSG_SESSION_LIMIT, session_class, limit);
}

uint32_t DOM_DecodeSessionLimit(TLV_MSG* msg, uint32_t* session_class, uint32_t* limit) noexcept {
    uint32_t decoded_class;
    uint32_t decoded_value;
    const uint32_t result = DecodeSessionClass(msg, decoded_class, decoded_value);
    if (session_class != nullptr) *session_class = decoded_class;
    if (limit != nullptr) *limit = decoded_value;
    return result;
}

TLV_MSG* DOM_EncodeSessionCount(uint32_t session_class, uint32_t count) noexcept {
    return EncodeSessionClass(DOM_MSG_SESSION_COUNT, session_class, count);
}

uint32_t DOM_DecodeSessionCount(TLV_MSG* msg, uint32_t* session_class, uint32_t* count) noexcept {
    return DOM_DecodeSessionLimit(msg, session_class, count);
}

TLV_MSG* DOM_EncodeAllSessionLimit(const SessionLimits* limits) noexcept {
    return limits == nullptr ? nullptr : EncodeSessionLimits(*limits);
}

uint32_t DOM_DecodeAllSessionLimit(TLV_MSG* msg, SessionLimits* limits) noexcept {
    return limits == nullptr ? DOM_ERR_FAILED : DecodeSessionLimits(msg, *limits);
}

TLV_MSG* DOM_EncodeDomainName(const char* name) noexcept {
    return Encode(kDomainNameMessage, {name});
}

uint32_t DOM_DecodeDomainName(TLV_MSG* msg, uint32_t size, char* name) noexcept {
    return Decode(kDomainNameMessage, msg, {{size, name}});
}

TLV_MSG* DOM_EncodeDomainNameInfo(const char* name) noexcept {
    return Encode(kDomainNameInfoMessage, {name});
}

uint32_t DOM_DecodeDomainNameInfo(TLV_MSG* msg, uint32_t size, char* name) noexcept {
    return Decode(kDomainNameInfoMessage, msg, {{size, name}});
}

TLV_MSG* DOM_EncodeDomainNameAndLen(const char* name, uint32_t name_length) noexcept {
    return Encode(kDomainNameLenMessage, {name, name_length});
}

uint32_t DOM_DecodeDomainNameAndLen(TLV_MSG* msg, uint32_t size, char* name,
                                    uint32_t* name_length) noexcept {
    return Decode(kDomainNameLenMessage, msg, {{size, name}, name_length});
}

TLV_MSG* DOM_EncodeDefaultDomain(const char* name, uint32_t value_18) noexcept {
    return Encode(kDefaultDomainMessage, {name, value_18});
}

uint32_t DOM_DecodeDefaultDomain(TLV_MSG* msg, uint32_t size, char* name,
                                 uint32_t* value_18) noexcept {
    return Decode(kDefaultDomainMessage, msg, {{size, name}, value_18});
}

TLV_MSG* DOM_EncodeUnknownDomain(const char* name) noexcept {
    return Encode(kUnknownDomainMessage, {name});
}

uint32_t DOM_DecodeUnknownDomain(TLV_MSG* msg, uint32_t size, char* name) noexcept {
    return Decode(kUnknownDomainMessage, msg, {{size, name}});
}

TLV_MSG* DOM_EncodeGlobalDomain(const char* default_name, const char* unknown_name,
                                uint32_t device_id, uint32_t value_18) noexcept {
    return Encode(kGlobalDomainMessage, {default_name, unknown_name, device_id, value_18});
}

uint32_t DOM_DecodeGlobalDomain(TLV_MSG* msg, uint32_t default_size, char* default_name,
                                uint32_t unknown_size, char* unknown_name, uint32_t* device_id,
                                uint32_t* value_18) noexcept {
    return Decode(
        kGlobalDomainMessage, msg,
        {{default_size, default_name}, {unknown_size, unknown_name}, device_id, value_18});
}

TLV_MSG* DOM_EncodeDomainCount(uint32_t count) noexcept {
    return Encode(kDomainCountMessage, {count});
}

uint32_t DOM_DecodeDomainCount(TLV_MSG* msg, uint32_t* count) noexcept {
    return Decode(kDomainCountMessage, msg, {count});
}

TLV_MSG* DOM_EncodeState(const char* name, uint16_t state) noexcept {
    return Encode(kStateMessage, {name, state});
}

uint32_t DOM_DecodeState(TLV_MSG* msg, uint32_t size, char* name, uint16_t* state) noexcept {
    return Decode(kStateMessage, msg, {{size, name}, state});
}

TLV_MSG* DOM_EncodeSessionTime(const char* name, uint16_t session_time) noexcept {
    return Encode(kSessionTimeMessage, {name, session_time});
}

uint32_t DOM_DecodeSessionTime(TLV_MSG* msg, uint32_t size, char* name,
                               uint16_t* session_time) noexcept {
    return Decode(kSessionTimeMessage, msg, {{size, name}, session_time});
}

TLV_MSG* DOM_EncodeRedirectMoveTemporarily(const char* name) noexcept {
    return Encode(kRedirectMessage, {name});
}

uint32_t DOM_DecodeRedirectMoveTemporarily(TLV_MSG* msg, uint32_t size, char* name) noexcept {
    return Decode(kRedirectMessage, msg, {{size, name}});
}

TLV_MSG* DOM_EncodeAAAAuthorProfileNum(uint32_t number) noexcept {
    return Encode(kAuthorProfileNumMessage, {number});
}

TLV_MSG* DOM_EncodeAAAAuthorProfileNumRequest(void) noexcept {
    return MessageBuilder(DOM_MSG_AAA_AUTHOR_PROFILE_NUM).Build();
}

uint32_t DOM_DecodeAAAAuthorProfileNum(TLV_MSG* msg) noexcept {
    const TlvItem code = FindTlv(msg, DOM_TLV_MSG_CODE);
    if (!code || code.U32() != DOM_MSG_AAA_AUTHOR_PROFILE_NUM) return 0;
    uint32_t number;
    return Decode(kAuthorProfileNumMessage, msg, {&number}) == DOM_OK ? number : 0;
}

TLV_MSG* DOM_EncodeAAAAuthorProfileName(const char* profile_name) noexcept {
    return Encode(kAuthorProfileNameMessage, {profile_name});
}

uint32_t DOM_DecodeAAAAuthorProfileName(TLV_MSG* msg, uint32_t size, char* profile_name) noexcept {
    return Decode(kAuthorProfileNameMessage, msg, {{size, profile_name}});
}

TLV_MSG* DOM_EncodeAAAAuthorProfile(const AAAAuthorProfile* profile) noexcept {
    return profile == nullptr ? nullptr : EncodeProfileReport(*profile);
}

uint32_t DOM_DecodeAAAAuthorProfile(TLV_MSG* msg, AAAAuthorProfile* profile) noexcept {
    return profile == nullptr ? DOM_ERR_FAILED : DecodeProfileReport(msg, *profile);
}

}  // extern "C"
