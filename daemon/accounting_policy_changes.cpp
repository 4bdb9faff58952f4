#include "accounting_policy_changes.h"

#include <aaadom/aaad_results.h>
#include <aaadom/accounting_policy_codec.h>
#include <aaadom/codes.h>
#include <aaadom/database.h>
#include <aaadom/db_layout.h>
#include <aaadom/restore.h>
#include <platform/aaa_tlv.h>
#include <platform/dbm.h>

#include <string_view>

#include "request.h"
#include "short_text.h"

namespace aaad {
namespace {

static_assert(sizeof(ShortText) == DOM_ITA_NAME_SIZE);

/// What the applier is to do. The library's setters send their callers' "not 0 means add" as it is,
/// so on the endpoint, and only there, 1 sets and 0 deletes for the codes that have a sense.
uint32_t AppliedOperation(const Request& request) {
    switch (request.code) {
        case DOM_MSG_ITA_POLICY_NAME:
        case DOM_MSG_ITA_ACCT_SCHEME:
        case DOM_MSG_ITA_ACCT_TOGETHER:
        case DOM_MSG_ITA_ACCT_LEVEL:
        case DOM_MSG_ITA_TRAF_SEPRATE:
            return request.operation == DOM_OP_DELETE ? DOM_OP_SET : DOM_OP_DELETE;
        default:
            return DOM_OP_SET;
    }
}

uint32_t Apply(const Request& request, uint32_t operation, const char* name) {
    // The store answers a level of an unknown policy like a ninth level.
    if (request.code == DOM_MSG_ITA_ACCT_LEVEL && DOM_ita_IsPolicyExist(name) == 0) {
        return DOM_ERR_NOT_FOUND;
    }
    const Message headed(AAA_AddOpHead(operation, request.body.get()));
    return DOM_RestoreData(headed.get(), 0, 0, 0, nullptr, nullptr);
}

/// A record of a former release under the old key would bring the policy back at the next start.
bool DeleteFormerRecord(const char* name) {
    const std::string_view prefix = DOM_DB_PREFIX_ITA_POLICY_OLD;
    char key[DOM_DB_ITA_POLICY_OLD_KEY_SIZE] = {};
    prefix.copy(key, sizeof key);
    const size_t length = prefix.size() + std::string_view(name).copy(
                                              key + prefix.size(), sizeof key - 1 - prefix.size());
    const auto key_length = static_cast<uint32_t>(length + 1);
    return DBM_IsKeyExist(g_hDomItaDBHandle, key, key_length) == 0 ||
           DBM_DeleteKey(g_hDomItaDBHandle, key, key_length) == 0;
}

bool Save(const Request& request, uint32_t operation, const char* name) {
    const bool deletes = request.code == DOM_MSG_ITA_POLICY_NAME && operation == DOM_OP_DELETE;
    DomDbUpdateReq change{};
    DOM_ita_db_SetDbChangeInfo(name, deletes ? DOM_ABSENT : DOM_PRESENT, &change);
    const uint32_t saved = DOM_SetDataToDB(&change);
    if (!deletes) return saved == DOM_OK;
    // The library answers a deletion with a failure whether it worked or not; the key tells.
    return DOM_ita_db_IsPolicyExist(g_hDomItaDBHandle, name) == 0 && DeleteFormerRecord(name);
}

}  // namespace

uint32_t CheckAccountingPolicy(TLV_MSG* body, uint32_t) {
    return HasName(body, DOM_TLV_ITA_POLICY_NAME) ? DOM_OK : AAAD_ERR_MALFORMED;
}

void ApplyAccountingPolicy(Request& request) {
    ShortText name;
    (void)ReadShortText(request.body.get(), DOM_TLV_ITA_POLICY_NAME, name);  // checked before
    const uint32_t operation = AppliedOperation(request);
    request.result = Apply(request, operation, name);
    // What memory took and the database refused counts as applied but not saved: the transaction is
    // given up and memory is loaded again.
    request.working_result = request.result;
    if (request.result == DOM_OK && !Save(request, operation, name)) {
        request.result = AAAD_ERR_NOT_SAVED;
    }
}

}  // namespace aaad
