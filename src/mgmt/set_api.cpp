#include <aaadom/domain_codec.h>
#include <aaadom/management.h>
#include <aaadom/nas_id_codec.h>
#include <aaadom/settings_codec.h>

#include "mgmt/request.h"

using namespace aaadom;

extern "C" {

uint32_t MOR_SetDomainName(const char* name, uint32_t op, uint32_t* result) noexcept {
    return SetJudged(TlvPtr(DOM_EncodeDomainName(name)), op, result, MOR_ERR_ENCODE);
}

uint32_t MOR_SetUnknownDomain(const char* name, uint32_t op, uint32_t* result) noexcept {
    return SetJudged(TlvPtr(DOM_EncodeUnknownDomain(name)), op, result, MOR_ERR_ENCODE);
}

uint32_t MOR_SetSchemeTable(uint64_t flags, const char* domain, uint32_t row_status,
                            uint32_t aaa_type, uint32_t scheme_index, uint32_t method_type,
                            const char* scheme_name, uint32_t op, uint32_t* result) noexcept {
    return SetReported(TlvPtr(DOM_EncodeDomainSchemeFlag(flags, domain, row_status, aaa_type,
                                                         scheme_index, method_type, scheme_name)),
                       op, result);
}

uint32_t MOR_CreateDomainInfoTable(const char* name, uint32_t state, uint32_t row_status,
                                   uint32_t* result) noexcept {
    return SetReported(TlvPtr(DOM_EncodeDomainInfo(name, state, row_status)), DOM_OP_SET, result);
}

uint32_t MOR_DestroyDomainName(const char* name, uint32_t* result) noexcept {
    return SetReported(TlvPtr(DOM_EncodeDomainName(name)), DOM_OP_DELETE, result);
}

uint32_t MOR_SetDomainInfoTable(uint64_t flags, const char* name, uint32_t state,
                                uint32_t row_status, uint32_t* result) noexcept {
    return SetReported(TlvPtr(DOM_EncodeDomainInfoFlag(flags, name, state, row_status)), DOM_OP_SET,
                       result);
}

uint32_t MOR_SetDefaultDomain(const char* name, uint32_t value_18, uint32_t op,
                              uint32_t* result) noexcept {
    return SetReportedInResultOnly(TlvPtr(DOM_EncodeDefaultDomain(name, value_18)), op, result);
}

uint32_t MOR_SetSessionLimit(uint32_t session_class, uint32_t limit, uint32_t* result) noexcept {
    return SetReportedInResultOnly(TlvPtr(DOM_EncodeSessionLimit(session_class, limit)), DOM_OP_SET,
                                   result);
}

uint32_t MOR_SetDeviceID(uint32_t device_id, uint32_t* result) noexcept {
    return SetReportedInResultOnly(TlvPtr(DOM_EncodeDeviceID(device_id)), DOM_OP_SET, result);
}

uint32_t MOR_SetAuthFailDomain(const char* name, const char* fail_domain, uint32_t value_18,
                               uint16_t kind, uint32_t* result) noexcept {
    return SetReportedInResultOnly(
        TlvPtr(DOM_EncodeAuthFailDomain(name, fail_domain, value_18, kind)), DOM_OP_SET, result);
}

uint32_t MOR_SetAuthRdFailPermitDomain(const char* name, const char* permit_domain,
                                       uint32_t value_18, uint32_t op) noexcept {
    return SetReturningResult(
        TlvPtr(DOM_EncodeAuthRdFailPermitDomain(name, permit_domain, value_18)), op,
        DOM_RESULT_MISSING);
}

uint32_t MOR_SetAuthenEscapeRecover(const char* name, uint16_t setting, const char* escape_domain,
                                    uint16_t second_setting, uint32_t value_18,
                                    uint32_t op) noexcept {
    return SetReturningResult(TlvPtr(DOM_EncodeAuthenEscapeRecover(name, setting, escape_domain,
                                                                   second_setting, value_18)),
                              op, DOM_ERR_FAILED);
}

uint32_t MOR_SetNasIdBindVlanId(const char* profile_name, const char* nas_id, uint16_t vlan_id,
                                uint32_t op) noexcept {
    return SetReturningResult(TlvPtr(DOM_EncodeNasidBindVlanId(profile_name, nas_id, vlan_id)), op,
                              DOM_ERR_FAILED);
}

// A reply with a result is an answer, whatever the result: the front end reads it itself.
uint32_t MOR_SetAaaNasIdProfile(const char* profile_name, uint32_t op, uint32_t* result,
                                char* name_out) noexcept {
    const ProfileAnswer answer = SetProfile(TlvPtr(DOM_EncodeNasIdProfile(profile_name)), op,
                                            DOM_TLV_NASID_PROFILE, name_out);
    if (!answer.has_result) return DOM_ERR_FAILED;
    if (result != nullptr) *result = answer.result;
    return DOM_OK;
}

uint32_t MOR_SetState(const char* name, uint16_t state) noexcept {
    return SetBlindly(TlvPtr(DOM_EncodeState(name, state)), DOM_OP_SET);
}

uint32_t MOR_SetSessionTime(const char* name, uint16_t session_time) noexcept {
    return SetBlindly(TlvPtr(DOM_EncodeSessionTime(name, session_time)), DOM_OP_SET);
}

uint32_t MOR_SetMethodList(const char* name, const MethodList* list, const MethodEntry* extra,
                           uint32_t op) noexcept {
    return SetBlindly(TlvPtr(DOM_EncodeMethList(name, list, extra)), op);
}

uint32_t MOR_SetAuthorAttr(uint32_t kind, const char* name, const AuthorAttr* attr,
                           uint32_t op) noexcept {
    return SetBlindly(TlvPtr(DOM_EncodeAuthorAttr(kind, name, attr)), op);
}

uint32_t MOR_SetRedirectMoveTemporarily(const char* name, uint32_t op) noexcept {
    return SetBlindly(TlvPtr(DOM_EncodeRedirectMoveTemporarily(name)), op);
}

uint32_t MOR_SetUserAddrType(const char* name, uint32_t user_addr_type) noexcept {
    return SetBlindly(TlvPtr(DOM_EncodeUserAddrType(name, user_addr_type)), DOM_OP_SET);
}

uint32_t MOR_SetAcctDualStackMode(const char* name, uint32_t mode) noexcept {
    return SetBlindly(TlvPtr(DOM_EncodeAcctDualStackMode(name, mode)), DOM_OP_SET);
}

uint32_t MOR_SetAAADebugFlag(uint32_t flag, uint32_t op) noexcept {
    return SetBlindly(TlvPtr(DOM_EncodeDebugFlag(flag)), op);
}

}  // extern "C"
