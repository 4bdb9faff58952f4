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

void AppendOther(Appender& append, const void* record, const Field& field) noexcept {
    const char* member = static_cast<const char*>(record) + field.offset;
    if (field.kind == FieldKind::kRateScaled) {
        append.U32(field.type, Load<uint32_t>(record, field.offset) << kRateShift);
        return;
    }
    const bool selected = Load<uint16_t>(record, field.selector) == 1;
    if (*member == '\0' || selected != (field.kind == FieldKind::kTextSelected)) return;
    AppendText(append, member, field);
}

uint32_t FieldReader::Read(const Field& field, const TlvItem& item) noexcept {
    char* member = record_ + field.offset;
    switch (field.kind) {
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
        default:
            // Written only; the plain kinds are the platform's.
            return DOM_OK;
    }
}

}  // namespace aaadom
