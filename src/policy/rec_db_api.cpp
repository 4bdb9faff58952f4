// The saved recording policy: a message of network-order values under the type's mode string.
#include <aaadom/codes.h>
#include <aaadom/db_layout.h>
#include <aaadom/method_codec.h>
#include <aaadom/recording_policy.h>
#include <aaadom/results.h>
#include <arpa/inet.h>

#include <cstring>

#include "policy/rec_policy.h"
#include "policy/stored_message.h"

DBM_HANDLE g_hDomRecDBHandle = DBM_INVALID_HANDLE;

using namespace aaadom;

namespace {

/// The key of a policy type; its terminator is stored with it.
struct RecKey {
    explicit RecKey(uint32_t type) noexcept { DOM_Rec_GetPolicyMode(type, text); }
    uint32_t Length() const noexcept { return static_cast<uint32_t>(strlen(text)) + 1; }
    operator StoredKey() const noexcept { return {text, Length()}; }
    char text[DOM_REC_MODE_SIZE];
};

uint32_t DecapMethod(TLV_MSG* sub, void* methods) noexcept {
    return DOM_DecapTLVItemToMethod(sub, static_cast<MethodEntry*>(methods));
}

uint32_t WritePolicy(const RecKey& key, const RecPolicy& policy) noexcept {
    const AAA_ENCAP_STEP steps[] = {
        {DOM_DB_REC_TLV_TYPE, 1, &policy.policy_type, sizeof policy.policy_type, nullptr},
        {DOM_DB_REC_TLV_METHOD, DOM_METHODS, policy.acct_scheme, sizeof policy.acct_scheme[0],
         EncodeStoredMethod},
    };
    return StoreMessage(g_hDomRecDBHandle, key, steps, sizeof steps / sizeof steps[0],
                        DOM_DB_REC_POLICY);
}

/// The message that the key holds; null when there is none or the value cannot be one of the
/// library's.
TlvPtr ReadValue(DBM_HANDLE handle, StoredKey key) noexcept {
    if (!IsKeyStored(handle, key)) return nullptr;
    const int32_t length = DBM_GetBinaryLen(handle, key.bytes, key.length);
    if (length <= 0 || static_cast<uint32_t>(length) > DOM_DB_VALUE_MAX) return nullptr;
    TlvPtr msg;
    (void)LoadMessage(handle, key, static_cast<uint32_t>(length), msg);  // null tells it all
    return msg;
}

/// The result of the last item decides alone: an item that is damaged is passed over when a good
/// one follows, so that one damaged method does not cost the policy.
Loading ReadPolicy(TLV_MSG* msg, RecPolicy& policy) noexcept {
    Loading result = Loading::kDone;
    for (TLV_ITER* it = TLV_GetFirst(msg); it != nullptr; it = TLV_GetNext(msg, it)) {
        switch (TLV_GetTypeByIterator(msg, it)) {
            case DOM_DB_REC_TLV_TYPE:
                policy.policy_type = ntohl(AAA_GetUINTTlvValue(msg, it));
                break;
            case DOM_DB_REC_TLV_METHOD:
                result = LoadItem(msg, it, DecapMethod, policy.acct_scheme);
                if (result == Loading::kRefused) return result;
                break;
            default:
                break;
        }
    }
    return result;
}

}  // namespace

extern "C" {

void DOM_Rec_db_SetGlobalHandle(DBM_HANDLE handle) noexcept {
    g_hDomRecDBHandle = handle;
}

uint32_t DOM_Rec_db_SetPolicy(uint32_t type, uint16_t operation) noexcept {
    if (!IsRecPolicyType(type)) return DOM_ERR_FAILED;
    const RecKey key(type);
    if (operation != DOM_PRESENT) return DBM_DeleteKey(g_hDomRecDBHandle, key.text, key.Length());
    RecPolicy policy;
    return DOM_Rec_GetPolicy(type, &policy) == DOM_OK ? WritePolicy(key, policy) : DOM_ERR_FAILED;
}

RecPolicy* DOM_Rec_db_GetPolicyByDBKey(DBM_HANDLE handle, const char* key,
                                       uint32_t key_length) noexcept {
    if (key == nullptr) return nullptr;
    const TlvPtr msg = ReadValue(handle, {key, key_length});
    if (!msg) return nullptr;
    RecPolicyPtr policy = NewRecPolicy(DOM_REC_POLICY_CONNECTION);
    if (!policy || ReadPolicy(msg.get(), *policy) != Loading::kDone) return nullptr;
    return policy.release();
}

RecPolicy* DOM_Rec_db_GetPolicyFromDBByType(DBM_HANDLE handle, uint32_t type) noexcept {
    if (!IsRecPolicyType(type)) return nullptr;
    const RecKey key(type);
    return DOM_Rec_db_GetPolicyByDBKey(handle, key.text, key.Length());
}

uint32_t DOM_Rec_PolicyIsExist(DBM_HANDLE handle, uint32_t type) noexcept {
    if (!IsRecPolicyType(type)) return 0;
    return IsKeyStored(handle, RecKey(type)) ? 1 : 0;
}

void DOM_Rec_db_SetDbChangeInfo(uint32_t type, uint16_t operation,
                                DomDbUpdateReq* change) noexcept {
    if (change == nullptr) return;
    change->object_type = DOM_DB_REC_POLICY;
    change->operation = operation;
    change->rec_policy_index = type;
}

}  // extern "C"
