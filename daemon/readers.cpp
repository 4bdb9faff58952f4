#include "readers.h"

#include <aaadom/aaad_results.h>
#include <aaadom/domain.h>
#include <aaadom/domain_codec.h>
#include <aaadom/session.h>
#include <aaadom/settings.h>
#include <aaadom/settings_codec.h>

#include "table_lock.h"

namespace aaad {
namespace {

/// An encoder of settings that always exist fails only for want of memory.
Message Data(TLV_MSG* encoded, uint32_t& refusal) {
    if (encoded == nullptr) refusal = DOM_ERR_FAILED;
    return Message(encoded);
}

/// Whether a domain row follows the key; else the refusal.
bool HasNextRow(const char* name, uint32_t name_length, uint32_t& refusal) {
    const TableLock lock;
    if (DOM_MibGetFirstDomain() == nullptr) {
        refusal = DOM_WALK_NONE;
        return false;
    }
    refusal = DOM_WALK_NO_MESSAGE;
    return name_length == 0 || DOM_MibGetNextDomain(name, name_length) != nullptr;
}

}  // namespace

Message ReadDefaultDomain(const Question&, uint32_t& refusal) {
    char name[DOM_NAME_SIZE] = {};
    DOM_GetDefaultDomainName(name);
    return Data(DOM_EncodeDefaultDomain(name, 0), refusal);
}

Message ReadDomainCount(const Question&, uint32_t& refusal) {
    uint32_t count = 0;
    (void)DOM_GetDomainCount(&count);  // 0 with an output to write to
    return Data(DOM_EncodeDomainCount(count), refusal);
}

Message ReadDomain(const Question& question, uint32_t& refusal) {
    // A name one character too long is another name, not the one that it begins with.
    char name[DOM_NAME_SIZE + 1] = {};
    if (DOM_DecodeDomainName(question.body, sizeof name, name) != DOM_OK ||
        DOM_IsDomainExist(name) == 0) {
        refusal = AAAD_ERR_NO_OBJECT;
        return nullptr;
    }
    return Data(DOM_EncodeDomain(name), refusal);
}

Message ReadSessionLimits(const Question&, uint32_t& refusal) {
    SessionLimits limits{};
    DOM_GetAllSessionLimit(&limits);
    return Data(DOM_EncodeAllSessionLimit(&limits), refusal);
}

Message ReadNextDomainRow(const Question& question, uint32_t& refusal) {
    char name[DOM_NAME_SIZE] = {};
    uint32_t name_length = 0;
    if (DOM_DecodeDomainNameAndLen(question.body, sizeof name, name, &name_length) != DOM_OK) {
        refusal = AAAD_ERR_MALFORMED;
        return nullptr;
    }
    // The library's status is the same at the end and without memory, and who takes the one for the
    // other loses domains.
    if (!HasNextRow(name, name_length, refusal)) return nullptr;
    uint32_t status = DOM_WALK_OK;
    return Data(DOM_EncodeMIBNextDomain(name, name_length, &status), refusal);
}

Message ReadGlobalDomain(const Question&, uint32_t& refusal) {
    GlobalDomain global{};
    DOM_GetGlobalDomainName(&global);
    return Data(
        DOM_EncodeGlobalDomain(global.default_domain, global.unknown_domain, global.device_id, 0),
        refusal);
}

Message ReadDebugFlag(const Question&, uint32_t& refusal) {
    return Data(DOM_EncodeDebugFlag(DOM_AAAGetDebugFlag()), refusal);
}

Message ReadNextDomain(const Question& question, uint32_t& refusal) {
    char name[DOM_NAME_SIZE] = {};
    if (DOM_DecodeDomainNameInfo(question.body, sizeof name, name) != DOM_OK) {
        refusal = AAAD_ERR_MALFORMED;
        return nullptr;
    }
    uint32_t status = DOM_WALK_OK;
    Message record(DOM_EncodeNetConfNextDomain(name, &status));
    if (!record) refusal = status == DOM_WALK_NONE ? uint32_t{DOM_WALK_NONE} : DOM_ERR_FAILED;
    return record;
}

}  // namespace aaad
