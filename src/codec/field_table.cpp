#include "codec/field_table.h"

#include <aaadom/domain.h>

#include <cstring>

#include "base/text.h"

namespace aaadom {
namespace {

constexpr uint32_t kRateShift = 10;  // a scaled rate is 1024 times the member
constexpr size_t kLongestText = 256;

template <typename T>
T Load(const void* record, size_t offset) noexcept {
    T value;
    memcpy(&value, static_cast<const char*>(record) + offset, sizeof value);
    return value;
}

template <typename T>
void Store(char* record, size_t offset, T value) noexcept {
    memcpy(record + offset, &value, sizeof value);
}

void AppendText(Appender& append, const char* text, const Field& field) noexcept {
    if (BoundedLength(text, field.size) < field.size) {
        append.Text(field.type, text);
        return;
    }
    char terminated[kLongestText + 1];
    CopyBounded(terminated, sizeof terminated, text, field.size);
    append.Text(field.type, terminated);
}

}  // namespace

void AppendField(Appender& append, const void* record, const Field& field) noexcept {
    const char* member = static_cast<const char*>(record) + field.offset;
    switch (field.kind) {
        case FieldKind::kWord:
        case FieldKind::kWordWriteOnly:
        case FieldKind::kRate:
            append.U32(field.type, Load<uint32_t>(record, field.offset));
            return;
        case FieldKind::kHalf:
            append.U32(field.type, Load<uint16_t>(record, field.offset));
            return;
        case FieldKind::kRateScaled:
            append.U32(field.type, Load<uint32_t>(record, field.offset) << kRateShift);
            return;
        case FieldKind::kBlock:
            append.Raw(field.type, member, field.size);
            return;
        case FieldKind::kTextSelected:
        case FieldKind::kTextOther: {
            const bool selected = Load<uint16_t>(record, field.selector) == 1;
            if (*member == '\0' || selected != (field.kind == FieldKind::kTextSelected)) return;
            AppendText(append, member, field);
            return;
        }
        case FieldKind::kText:
        case FieldKind::kTextLowerCase:
            AppendText(append, member, field);
            return;
    }
}

uint32_t FieldReader::Read(const Field& field, const TlvItem& item) noexcept {
    char* member = record_ + field.offset;
    switch (field.kind) {
        case FieldKind::kWord:
            Store<uint32_t>(record_, field.offset, item.U32());
            return DOM_OK;
        case FieldKind::kWordWriteOnly:
            return DOM_OK;
        case FieldKind::kHalf:
            Store<uint16_t>(record_, field.offset, static_cast<uint16_t>(item.U32()));
            return DOM_OK;
        case FieldKind::kRate:
            for (size_t& seen : unscaled_rates_) {
                if (seen != 0 && seen != field.offset + 1) continue;
                seen = field.offset + 1;
                break;
            }
            Store<uint32_t>(record_, field.offset, item.U32());
            return DOM_OK;
        case FieldKind::kRateScaled:
            for (size_t seen : unscaled_rates_) {
                if (seen == field.offset + 1) return DOM_OK;
            }
            Store<uint32_t>(record_, field.offset, item.U32() >> kRateShift);
            return DOM_OK;
        case FieldKind::kBlock:
            return item.Raw(member, field.size);
        case FieldKind::kText:
            return item.Text(member, field.size);
        case FieldKind::kTextLowerCase: {
            const uint32_t result = item.Text(member, field.size);
            if (result == DOM_OK) DOM_ToLowerCaseStr(member);
            return result;
        }
        case FieldKind::kTextSelected:
        case FieldKind::kTextOther: {
            const uint16_t selector = field.kind == FieldKind::kTextSelected ? 1 : 0;
            Store<uint16_t>(record_, field.selector, selector);
            return item.Text(member, field.size);
        }
    }
    return DOM_OK;
}

}  // namespace aaadom
