#include "policy/ita_record.h"

#include <aaadom/diagnostics.h>
#include <aaadom/method_codec.h>
#include <aaadom/results.h>
#include <arpa/inet.h>
#include <platform/syslog.h>

#include "policy/stored_message.h"

namespace aaadom {
namespace {

constexpr uint32_t kWarning = VSYSLOG2_PLATFORM_FLAG | 0xBCu;  // local use 7, warning
/// A level that does not say where it belongs is refused like one that says a wrong place.
constexpr uint32_t kNoIndex = DOM_ITA_LEVELS;
constexpr const char* kNoAnswer = "the database does not give its value";

struct LevelWord {
    uint16_t type;
    size_t offset;
};
constexpr LevelWord kLevelWords[] = {
    {DOM_DB_ITA_LEVEL_ID, offsetof(ItaAcctLevel, level_id)},
    {DOM_DB_ITA_LEVEL_VALUE, offsetof(ItaAcctLevel, level_value)},
    {DOM_DB_ITA_LEVEL_FIRST_A, offsetof(ItaAcctLevel, first_pair)},
    {DOM_DB_ITA_LEVEL_FIRST_B, offsetof(ItaAcctLevel, first_pair) + sizeof(uint32_t)},
    {DOM_DB_ITA_LEVEL_SECOND_A, offsetof(ItaAcctLevel, second_pair)},
    {DOM_DB_ITA_LEVEL_SECOND_B, offsetof(ItaAcctLevel, second_pair) + sizeof(uint32_t)},
};

uint32_t EncodeLevel(uint32_t index, const void* item, TLV_MSG* msg) noexcept {
    Appender append(msg);
    append.U32(DOM_DB_ITA_LEVEL_INDEX, htonl(index));
    for (const LevelWord& word : kLevelWords) {
        uint32_t value;
        memcpy(&value, static_cast<const char*>(item) + word.offset, sizeof value);
        append.U32(word.type, htonl(value));
    }
    return append.Failed() ? DOM_ERR_FAILED : DOM_OK;
}

uint32_t DecodeMethod(TLV_MSG* item, void* policy) noexcept {
    return DOM_DecapTLVItemToMethod(item, static_cast<ItaPolicy*>(policy)->acct_scheme);
}

/// What the item lacks is 0.
uint32_t DecodeLevel(TLV_MSG* item, void* policy) noexcept {
    uint32_t index = kNoIndex;
    ItaAcctLevel level{};
    for (const TlvItem tlv : TlvWalk(item)) {
        const uint32_t value = ntohl(tlv.U32());
        if (tlv.Type() == DOM_DB_ITA_LEVEL_INDEX) index = value;
        for (const LevelWord& word : kLevelWords) {
            if (tlv.Type() == word.type)
                memcpy(reinterpret_cast<char*>(&level) + word.offset, &value, sizeof value);
        }
    }
    if (index >= DOM_ITA_LEVELS) return DOM_ERR_FAILED;
    static_cast<ItaPolicy*>(policy)->levels[index] = level;
    return DOM_OK;
}

/// Only the last method or level decides: an item before it that is damaged is skipped, so a record
/// with one bad entry keeps the rest.
Loading Decode(TLV_MSG* msg, ItaPolicy& policy) noexcept {
    Loading result = Loading::kDone;
    for (TLV_ITER* it = TLV_GetFirst(msg); it != nullptr; it = TLV_GetNext(msg, it)) {
        const TlvItem tlv(msg, it);
        switch (tlv.Type()) {
            case DOM_DB_ITA_METHOD:
                result = LoadItem(msg, it, DecodeMethod, &policy);
                break;
            case DOM_DB_ITA_LEVEL:
                result = LoadItem(msg, it, DecodeLevel, &policy);
                break;
            case DOM_DB_ITA_LEVEL_COUNT:
                policy.level_count = ntohl(tlv.U32());
                break;
            case DOM_DB_ITA_TOGETHER_STATE:
                policy.together_state = static_cast<uint16_t>(ntohl(tlv.U32()));
                break;
            case DOM_DB_ITA_SEPARATION_STATE:
                policy.separation_state = static_cast<uint16_t>(ntohl(tlv.U32()));
                break;
            case DOM_DB_ITA_QUOTA_OUT_STATE:
                policy.quota_out_state = static_cast<uint16_t>(ntohl(tlv.U32()));
                break;
            default:
                break;
        }
        if (result == Loading::kRefused) break;
    }
    return result;
}

}  // namespace

void LogRefusedItaRecord(const char* key, const char* reason) noexcept {
    AAA_PrintLogInfo(kWarning, "POLICY", "stored accounting policy \"%s\" refused: %s", key,
                     reason);
}

bool IsItaRecordSaved(DBM_HANDLE handle, const char* name) noexcept {
    return IsKeyStored(handle, ItaRecordKey(name));
}

uint32_t StoreItaRecord(DBM_HANDLE handle, const char* name, const ItaPolicy& policy) noexcept {
    const uint32_t together = policy.together_state;
    const uint32_t separation = policy.separation_state;
    const uint32_t quota_out = policy.quota_out_state;
    const AAA_ENCAP_STEP steps[] = {
        {DOM_DB_ITA_METHOD, DOM_METHODS, policy.acct_scheme, sizeof(MethodEntry),
         EncodeStoredMethod},
        {DOM_DB_ITA_LEVEL_COUNT, 1, &policy.level_count, sizeof(uint32_t), nullptr},
        {DOM_DB_ITA_LEVEL, DOM_ITA_LEVELS, policy.levels, sizeof(ItaAcctLevel), EncodeLevel},
        {DOM_DB_ITA_TOGETHER_STATE, 1, &together, sizeof together, nullptr},
        {DOM_DB_ITA_SEPARATION_STATE, 1, &separation, sizeof separation, nullptr},
        {DOM_DB_ITA_QUOTA_OUT_STATE, 1, &quota_out, sizeof quota_out, nullptr},
    };
    return StoreMessage(handle, ItaRecordKey(name), steps, sizeof steps / sizeof *steps,
                        DOM_DB_ITA_POLICY);
}

Loading LoadItaRecord(DBM_HANDLE handle, const char* name, ItaPolicyPtr& policy) noexcept {
    const ItaRecordKey key(name);
    // The length tells a database that does not answer from a policy that is not there, which the
    // question for the key does not.
    const int32_t length = DBM_GetBinaryLen(handle, key.Text(), key.Length());
    if (length <= 0) {
        if (IsItaRecordSaved(handle, name))
            LogRefusedItaRecord(key.Text(), length == 0 ? kNoValue : kNoAnswer);
        return length < 0 ? Loading::kRefused : Loading::kUnreadable;
    }
    TlvPtr msg;
    Loading result = LoadMessage(handle, key, static_cast<uint32_t>(length), msg);
    if (result == Loading::kUnreadable)
        LogRefusedItaRecord(key.Text(), "its value cannot be read as a message");
    if (result != Loading::kDone) return result;
    policy = NewItaPolicy(ItaPolicyName(name));
    if (!policy) return Loading::kRefused;
    result = Decode(msg.get(), *policy);
    if (result == Loading::kUnreadable)
        LogRefusedItaRecord(key.Text(), "its last method or level is malformed");
    if (result != Loading::kDone) policy.reset();
    return result;
}

}  // namespace aaadom
