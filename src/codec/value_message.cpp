#include "codec/value_message.h"

#include "base/message.h"

namespace aaadom {
namespace {

bool IsText(ValueKind kind) noexcept {
    return kind == ValueKind::kName || kind == ValueKind::kText;
}

bool MayBeMissing(ValueKind kind) noexcept {
    return kind != ValueKind::kName && kind != ValueKind::kMainWord;
}

void StoreNumber(const ValueField& field, const ValueOut& output, uint32_t value) noexcept {
    if (field.kind == ValueKind::kHalf) {
        *static_cast<uint16_t*>(output.target) = static_cast<uint16_t>(value);
    } else {
        *static_cast<uint32_t*>(output.target) = value;
    }
}

void Clear(const ValueField& field, const ValueOut& output) noexcept {
    if (output.target == nullptr) return;
    if (!IsText(field.kind)) {
        StoreNumber(field, output, 0);
    } else if (output.capacity != 0) {
        *static_cast<char*>(output.target) = '\0';
    }
}

uint32_t ReadValue(TLV_MSG* msg, const ValueField& field, const ValueOut& output) noexcept {
    const TlvItem tlv = FindTlv(msg, field.type);
    if (!tlv) return MayBeMissing(field.kind) ? DOM_OK : DOM_ERR_FAILED;
    if (output.target == nullptr) return DOM_OK;
    if (IsText(field.kind)) return tlv.Text(static_cast<char*>(output.target), output.capacity);
    StoreNumber(field, output, tlv.U32());
    return DOM_OK;
}

}  // namespace

TLV_MSG* EncodeValues(uint32_t code, const ValueField* fields, const ValueIn* values,
                      size_t count) noexcept {
    return MessageBuilder(code).Build([&](Appender& append) {
        for (size_t i = 0; i < count; ++i) {
            if (!IsText(fields[i].kind)) {
                append.U32(fields[i].type, values[i].number);
            } else if (values[i].text != nullptr) {
                append.Text(fields[i].type, values[i].text);
            } else {
                append.Fold(DOM_ERR_FAILED);
            }
        }
    });
}

uint32_t DecodeValues(TLV_MSG* msg, const ValueField* fields, const ValueOut* outputs,
                      size_t count) noexcept {
    for (size_t i = 0; i < count; ++i) Clear(fields[i], outputs[i]);
    if (msg == nullptr) return DOM_ERR_FAILED;
    uint32_t result = DOM_OK;
    for (size_t i = 0; i < count; ++i) result |= ReadValue(msg, fields[i], outputs[i]);
    return result;
}

}  // namespace aaadom
