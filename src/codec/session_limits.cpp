#include "codec/session_limits.h"

#include <aaadom/codes.h>

#include "codec/field_table.h"

namespace aaadom {
namespace {

constexpr Field kLimitFieldList[] = {
    {DOM_TLV_CLASS_19, FieldKind::kWord, offsetof(SessionLimits, class_19)},
    {DOM_TLV_CLASS_21, FieldKind::kWord, offsetof(SessionLimits, class_21)},
    {DOM_TLV_CLASS_20, FieldKind::kWord, offsetof(SessionLimits, class_20)},
    {DOM_TLV_CLASS_22, FieldKind::kWord, offsetof(SessionLimits, class_22)},
    {DOM_TLV_CLASS_23, FieldKind::kWord, offsetof(SessionLimits, class_23)},
};
constexpr FieldTable kLimitFields(kLimitFieldList);

}  // namespace

TLV_MSG* EncodeSessionClass(uint32_t code, uint32_t session_class, uint32_t value) noexcept {
    const auto type = static_cast<uint16_t>(session_class);
    if (type != session_class) return nullptr;
    return MessageBuilder(code).Build([&](Appender& append) { append.U32(type, value); });
}

uint32_t DecodeSessionClass(TLV_MSG* msg, uint32_t& session_class, uint32_t& value) noexcept {
    session_class = 0;
    value = 0;
    for (TlvItem item : TlvWalk(msg)) {
        if (kLimitFields.Find(item.Type()) == nullptr) continue;
        session_class = item.Type();
        value = item.U32();
        return DOM_OK;
    }
    return DOM_ERR_FAILED;
}

TLV_MSG* EncodeSessionLimits(const SessionLimits& limits) noexcept {
    return MessageBuilder(DOM_MSG_ALL_SESSION_LIMIT).Build([&](Appender& append) {
        AppendFields(append, &limits, kLimitFields);
    });
}

uint32_t DecodeSessionLimits(TLV_MSG* msg, SessionLimits& limits) noexcept {
    if (msg == nullptr) return DOM_ERR_FAILED;
    return ReadFields(msg, &limits, kLimitFields);
}

}  // namespace aaadom
