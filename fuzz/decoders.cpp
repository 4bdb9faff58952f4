#include "decoders.h"

#include <aaadom/aaadom.h>
#include <platform/aaa_tlv.h>
#include <stdlib.h>

#include <memory>

#include "message.h"
#include "promise.h"

namespace fuzz {
namespace {

/// A text buffer of exactly the capacity that the decoder is told.
class Text {
  public:
    explicit Text(uint32_t size) : size_(size), bytes_(new char[size]) {
        memset(bytes_.get(), 0, size);
    }
    operator char*() { return bytes_.get(); }
    uint32_t Size() const { return size_; }

  private:
    const uint32_t size_;
    const std::unique_ptr<char[]> bytes_;
};

/// On the heap, so that what lies behind is guarded.
template <typename T>
std::unique_ptr<T> Record() {
    return std::make_unique<T>();
}

using Decoder = void (*)(TLV_MSG* msg, uint32_t capacity);

template <uint32_t (*kDecode)(TLV_MSG*, uint32_t, char*)>
void TextOnly(TLV_MSG* msg, uint32_t capacity) {
    Text text(capacity);
    (void)kDecode(msg, capacity, text);
}

template <typename Value, uint32_t (*kDecode)(TLV_MSG*, Value*)>
void ValueOnly(TLV_MSG* msg, uint32_t) {
    const auto value = Record<Value>();
    (void)kDecode(msg, value.get());
}

template <typename Value, uint32_t (*kDecode)(TLV_MSG*, uint32_t, char*, Value*)>
void TextAndValue(TLV_MSG* msg, uint32_t capacity) {
    Text text(capacity);
    const auto value = Record<Value>();
    (void)kDecode(msg, capacity, text, value.get());
}

template <typename One, typename Other, uint32_t (*kDecode)(TLV_MSG*, One*, Other*)>
void TwoValues(TLV_MSG* msg, uint32_t) {
    const auto one = Record<One>();
    const auto other = Record<Other>();
    (void)kDecode(msg, one.get(), other.get());
}

/// What has a detail text.
template <typename Value, uint32_t (*kDecode)(TLV_MSG*, Value*)>
void WithDetail(TLV_MSG* msg, uint32_t) {
    const auto value = Record<Value>();
    (void)kDecode(msg, value.get());
    for (uint32_t i = 0; i < value->detail_len; ++i) (void)*(volatile char*)(value->detail + i);
    free(value->detail);
}

void Domain(TLV_MSG* msg, uint32_t) {
    DomainInfo* domain = DOM_DecodeDomain(msg);
    if (domain == nullptr) return;
    FUZZ_PROMISE(memchr(domain->name, 0, sizeof domain->name) != nullptr);
    DOM_DestroyDomain(domain);
}

void Methods(TLV_MSG* msg, uint32_t capacity) {
    Text name(capacity);
    const auto list = Record<MethodList>();
    const auto extra = Record<MethodEntry>();
    if (DOM_DecodeMethList(msg, capacity, name, list.get(), extra.get()) != 0) return;
    const Message again(DOM_EncodeMethList("corp", list.get(), extra.get()));
}

void Attribute(TLV_MSG* msg, uint32_t capacity) {
    Text name(capacity);
    const auto attr = Record<AuthorAttr>();
    uint32_t kind = 0;
    if (DOM_DecodeAuthorAttr(msg, &kind, capacity, name, attr.get()) != 0) return;
    const Message again(DOM_EncodeAuthorAttr(kind, "corp", attr.get()));
    if (again) (void)DOM_DecodeAuthorAttr(again.get(), &kind, capacity, name, attr.get());
}

void Policy(TLV_MSG* msg, uint32_t) {
    const auto policy = Record<ItaPolicy>();
    if (DOM_ita_tlv_DecodePolicy(msg, policy.get()) != 0) return;
    // A scheme without a method is sent as such, and whoever reads it refuses the policy.
    if (policy->acct_scheme[0].method_kind == METHOD_EMPTY) return;
    const Message again(DOM_ita_tlv_EncodePolicy(policy.get()));
    const auto copy = Record<ItaPolicy>();
    FUZZ_PROMISE(again && DOM_ita_tlv_DecodePolicy(again.get(), copy.get()) == 0);
    FUZZ_PROMISE(strcmp(copy->name, policy->name) == 0);
    FUZZ_PROMISE(memcmp(copy->levels, policy->levels, sizeof copy->levels) == 0);
}

void PolicyScheme(TLV_MSG* msg, uint32_t capacity) {
    Text name(capacity);
    const std::unique_ptr<MethodEntry[]> methods(new MethodEntry[DOM_METHODS]());
    (void)DOM_ita_tlv_DecodeAcctScheme(msg, capacity, name, methods.get());
}

void PolicyLevel(TLV_MSG* msg, uint32_t capacity) {
    Text name(capacity);
    const auto level = Record<ItaAcctLevel>();
    uint32_t flags = 0;
    (void)DOM_ita_tlv_DecodeAcctLevel(msg, capacity, name, level.get(), &flags);
}

void RecordingScheme(TLV_MSG* msg, uint32_t) {
    const std::unique_ptr<MethodEntry[]> methods(new MethodEntry[DOM_METHODS]());
    (void)DOM_Rec_tlv_DecodePolicyType(msg);
    (void)DOM_Rec_tlv_DecodeAcctScheme(msg, DOM_METHODS * sizeof(MethodEntry), methods.get());
}

template <uint32_t (*kDecode)(TLV_MSG*, MethodEntry*)>
void Items(TLV_MSG* msg, uint32_t) {
    const std::unique_ptr<MethodEntry[]> items(new MethodEntry[DOM_METHODS]());
    (void)kDecode(msg, items.get());
}

void ProfileReport(TLV_MSG* msg, uint32_t) {
    const auto profile = Record<AAAAuthorProfile>();
    if (DOM_DecodeAAAAuthorProfile(msg, profile.get()) != 0) return;
    FUZZ_PROMISE(profile->entry_count <= DOM_AUTHOR_ENTRY_MAX);
    const Message again(DOM_EncodeAAAAuthorProfile(profile.get()));
}

template <uint32_t (*kDecode)(TLV_MSG*, char*, char*)>
void TwoNames(TLV_MSG* msg, uint32_t) {
    Text profile(32);
    Text vpn(32);
    (void)kDecode(msg, profile, vpn);
}

template <uint32_t (*kDecode)(TLV_MSG*, char*)>
void Name32(TLV_MSG* msg, uint32_t) {
    Text name(32);
    (void)kDecode(msg, name);
}

void Binding(TLV_MSG* msg, uint32_t) {
    Text profile(32);
    Text nas_id(32);
    uint16_t vlan = 0;
    (void)DOM_DecodeNasIdBindVlanId(msg, profile, nas_id, &vlan);
}

void Global(TLV_MSG* msg, uint32_t capacity) {
    Text one(capacity);
    Text other(256 - capacity / 2);
    uint32_t device = 0;
    uint32_t value = 0;
    (void)DOM_DecodeGlobalDomain(msg, capacity, one, other.Size(), other, &device, &value);
}

void SchemeIndex(TLV_MSG* msg, uint32_t capacity) {
    Text name(capacity);
    uint32_t length = 0;
    uint32_t index = 0;
    (void)DOM_DecodeSchemeIndex(msg, capacity, name, &length, &index);
}

void EscapeRecover(TLV_MSG* msg, uint32_t capacity) {
    Text name(capacity);
    Text escape(256 - capacity / 2);
    uint16_t setting = 0;
    uint16_t second = 0;
    uint32_t value = 0;
    (void)DOM_DecodeAuthenEscapeRecover(msg, capacity, name, &setting, escape.Size(), escape,
                                        &second, &value);
}

void PermitDomain(TLV_MSG* msg, uint32_t capacity) {
    Text name(capacity);
    Text permit(256 - capacity / 2);
    uint32_t value = 0;
    (void)DOM_DecodeAuthRdFailPermitDomain(msg, capacity, name, permit.Size(), permit, &value);
}

void FailDomain(TLV_MSG* msg, uint32_t capacity) {
    Text name(capacity);
    Text fail(256 - capacity / 2);
    uint32_t value = 0;
    uint16_t kind = 0;
    (void)DOM_DecodeAuthFailDomain(msg, capacity, name, fail.Size(), fail, &value, &kind);
}

void ReportedRecord(TLV_MSG* msg, uint32_t) {
    const auto record = Record<UserRecord>();
    uint32_t type = 0;
    uint16_t flags = 0;
    (void)PAM_DecUserRecordMsg(msg, &type, &flags, record.get());
    free(record->detail);
}

void ReplyText(TLV_MSG* msg, uint32_t) {
    uint32_t length = 0;
    char* text = DOM_userrecord_tlv_GetReplyMessage(msg, &length);
    if (text != nullptr) FUZZ_PROMISE(text[length] == '\0');
    free(text);
}

void RecordBatch(TLV_MSG* msg, uint32_t) {
    for (uint32_t kind = 0; kind < 6; ++kind) (void)DOM_DecodeUserRecordAllAndSetToRunDB(msg, kind);
    uint32_t first = 0;
    uint32_t second = 0;
    for (const uint16_t type : {DOM_TLV_RECORDS_STATE, DOM_TLV_USER_RECORD})
        (void)DOM_DecodeUserRecordsState(msg, type, &first, &second);
}

void Failures(TLV_MSG* msg, uint32_t) {
    const auto list = Record<CmdAuthorFailRec>();
    (void)DOM_Rec_tlv_DecodeCmdAuthorFailMsg(msg, list.get());
    // A list that got a node is a ring through its head.
    const auto* end = reinterpret_cast<const CmdAuthorFailNode*>(&list->head);
    for (CmdAuthorFailNode* node = list->head.next; node != nullptr && node != end;) {
        CmdAuthorFailNode* next = node->next;
        DOM_FreeCmdAuthorFailNode(node);
        node = next;
    }
    DOM_ProcCmdAuthorFail(msg);
}

void Numbers(TLV_MSG* msg, uint32_t) {
    (void)DOM_DecodeAAAAuthorProfileNum(msg);
    uint32_t result = 0;
    (void)DOM_lipc_ReplyMsgProc(msg, &result);
}

constexpr Decoder kDecoders[] = {
    Domain,
    TwoValues<DomainMibRow, uint64_t, DOM_DecodeDomainInfoTable>,
    ValueOnly<MibSchemeRow, DOM_DecodeMibSchemeTable>,
    SchemeIndex,
    TextOnly<DOM_DecodeDomainName>,
    TextOnly<DOM_DecodeDomainNameInfo>,
    TextAndValue<uint32_t, DOM_DecodeDomainNameAndLen>,
    TextAndValue<uint32_t, DOM_DecodeDefaultDomain>,
    TextOnly<DOM_DecodeUnknownDomain>,
    Global,
    ValueOnly<uint32_t, DOM_DecodeDomainCount>,
    Methods,
    TextAndValue<uint16_t, DOM_DecodeState>,
    TextAndValue<uint16_t, DOM_DecodeSessionTime>,
    TwoValues<uint32_t, uint32_t, DOM_DecodeSessionLimit>,
    TwoValues<uint32_t, uint32_t, DOM_DecodeSessionCount>,
    ValueOnly<SessionLimits, DOM_DecodeAllSessionLimit>,
    Attribute,
    TextOnly<DOM_DecodeRedirectMoveTemporarily>,
    Numbers,
    TextOnly<DOM_DecodeAAAAuthorProfileName>,
    ProfileReport,
    Policy,
    TextOnly<DOM_ita_tlv_DecodePolicyName>,
    PolicyScheme,
    TextOnly<DOM_ita_tlv_DecodeAcctTogether>,
    PolicyLevel,
    TextOnly<DOM_ita_ita_DecodeTrafSeprate>,
    TextAndValue<uint16_t, DOM_ita_tlv_DecodeTrafQuotaOut>,
    RecordingScheme,
    Items<DOM_DecodeMultiMethods>,
    Items<DOM_DecapTLVItemToMethod>,
    Name32<DOM_DecodeNasIdProfile>,
    Binding,
    ValueOnly<AuthorProfileMsg, DOM_author_tlv_DecodeDefaultAuthor>,
    ValueOnly<AuthorProfileMsg, DOM_author_tlv_DecodeAuthorVpn>,
    TwoNames<DOM_author_tlv_DecodeGetAuthorVpn>,
    TextOnly<DOM_author_tlv_DecodeProfileName>,
    ValueOnly<CriticalProfileMsg, DOM_critical_tlv_DecodeDefaultCritical>,
    ValueOnly<CriticalProfileMsg, DOM_critical_tlv_DecodeCriticalVpn>,
    TwoNames<DOM_critical_tlv_DecodeGetCriticalVpn>,
    Name32<DOM_critical_tlv_DecodeProfileName>,
    ValueOnly<uint32_t, DOM_DecodeDeviceID>,
    TextAndValue<uint32_t, DOM_DecodeUserAddrType>,
    TextAndValue<uint32_t, DOM_DecodeAcctDualStackMode>,
    ValueOnly<uint32_t, DOM_DecodeDebugFlag>,
    EscapeRecover,
    PermitDomain,
    FailDomain,
    TwoValues<uint32_t, uint64_t, DOM_DecodeDelUserRecord>,
    RecordBatch,
    ReportedRecord,
    WithDetail<UserRecord, DOM_userrecord_tlv_DecodeUserRecordStruct>,
    WithDetail<UserRecordBrief, DOM_userrecord_tlv_DecodeRecordBrief>,
    ReplyText,
    ValueOnly<RecordSwitches, DOM_userrecord_tlv_DecodeRecordEnableInfo>,
    ValueOnly<uint32_t, DOM_userrecord_tlv_DecodeBackupMethod>,
    ValueOnly<BackupMethods, DOM_userrecord_tlv_DecodeBackupMethodByStruct>,
    TwoValues<uint32_t, uint32_t, DOM_userrecord_tlv_DecodeBackupMethodWithDefault>,
    ValueOnly<uint32_t, DOM_userrecord_tlv_DecodeDisplayRecordNumber>,
    ValueOnly<uint16_t, DOM_userrecord_tlv_DecodeDisplayRecordAll>,
    ValueOnly<UserRecordTimeQuery, DOM_userrecord_tlv_DecodeDisplayRecordTime>,
    ValueOnly<UserRecordReasonQuery, DOM_userrecord_tlv_DecodeDisplayRecordReason>,
    ValueOnly<UserRecordQuery, DOM_userrecord_tlv_DecodeDisRecordMultParas>,
    ValueOnly<CmdAuthorFailItem, DOM_Rec_DecodeCmdAuthorFailItem>,
    Failures,
};

}  // namespace

size_t DecoderCount() {
    return std::size(kDecoders);
}

void Decode(size_t decoder, TLV_MSG* msg, uint32_t capacity) {
    kDecoders[decoder](msg, capacity);
}

}  // namespace fuzz
