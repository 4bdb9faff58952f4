#include <aaadom/domain_codec.h>
#include <aaadom/management.h>
#include <aaadom/settings_codec.h>

#include "mgmt/request.h"
#include "mgmt/scheme_row.h"

using namespace aaadom;

namespace {

TlvPtr CodeAlone(uint32_t code) noexcept {
    return TlvPtr(MessageBuilder(code).Build());
}

/// The request for the global settings carries a second code behind its own. Readers take the
/// first, and the bytes are part of the protocol.
TlvPtr GlobalDomainRequest() noexcept {
    return TlvPtr(MessageBuilder(DOM_MSG_GLOBAL_DOMAIN).Build([](Appender& append) {
        append.U32(DOM_TLV_MSG_CODE, DOM_MSG_GLOBAL_DOMAIN_SECOND);
    }));
}

}  // namespace

extern "C" {

uint32_t MOR_GetDefaultDomain(uint32_t size, char* name, uint32_t* value_18) noexcept {
    return Get(CodeAlone(DOM_MSG_DEFAULT_DOMAIN), [=](TLV_MSG* reply) {
        return DOM_DecodeDefaultDomain(reply, size, name, value_18);
    });
}

uint32_t MOR_GetGlobalDomain(uint32_t default_size, char* default_name, uint32_t unknown_size,
                             char* unknown_name, uint32_t* device_id, uint32_t* value_18) noexcept {
    return Get(GlobalDomainRequest(), [=](TLV_MSG* reply) {
        return DOM_DecodeGlobalDomain(reply, default_size, default_name, unknown_size, unknown_name,
                                      device_id, value_18);
    });
}

DomainInfo* MOR_GetDomain(const char* name, uint32_t op, uint32_t* result) noexcept {
    return GetDomain(TlvPtr(DOM_EncodeDomainName(name)), op, result);
}

DomainInfo* MOR_GetNextDomain(const char* name, uint32_t op, uint32_t* result) noexcept {
    return GetDomain(TlvPtr(DOM_EncodeDomainNameInfo(name)), op, result);
}

uint32_t MOR_GetDomainCount(uint32_t* count) noexcept {
    return Get(CodeAlone(DOM_MSG_DOMAIN_COUNT),
               [=](TLV_MSG* reply) { return DOM_DecodeDomainCount(reply, count); });
}

uint32_t MOR_GetXmlSessionLimit(SessionLimits* limits) noexcept {
    return Get(CodeAlone(DOM_MSG_SESSION_LIMIT), [=](TLV_MSG* reply) {
        // Any class may be missing from the reply, so the code alone tells it from a refusal.
        const TlvItem code = FindTlv(reply, DOM_TLV_MSG_CODE);
        if (!code || code.U32() != DOM_MSG_ALL_SESSION_LIMIT) return DOM_ERR_FAILED;
        return DOM_DecodeAllSessionLimit(reply, limits);
    });
}

uint32_t MOR_GetAAADebugFlag(uint32_t* flag) noexcept {
    return Get(CodeAlone(DOM_MSG_DEBUG_FLAG),
               [=](TLV_MSG* reply) { return DOM_DecodeDebugFlag(reply, flag); });
}

uint32_t MOR_GetDomainInfoTable(const char* name, uint32_t name_length, uint32_t op,
                                DomainMibRow* row, uint32_t* result) noexcept {
    if (result != nullptr) *result = DOM_OK;
    TlvPtr request(op == DOM_OP_GET ? DOM_EncodeDomainName(name)
                                    : DOM_EncodeDomainNameAndLen(name, name_length));
    return GetOrRefusal(std::move(request), op, result, [=](TLV_MSG* reply) {
        uint64_t flags = 0;
        return DOM_DecodeDomainInfoTable(reply, row, &flags);
    });
}

uint32_t MOR_GetMibSchemeTable(const char* domain, uint32_t name_length, uint32_t scheme_index,
                               uint32_t op, MibSchemeRow* row, uint32_t* result) noexcept {
    return GetOrRefusal(TlvPtr(DOM_EncodeSchemeIndex(domain, name_length, scheme_index)), op,
                        result, [=](TLV_MSG* reply) {
                            if (row == nullptr) return DOM_ERR_FAILED;
                            PresetRow(*row);
                            return DOM_DecodeMibSchemeTable(reply, row);
                        });
}

}  // extern "C"
