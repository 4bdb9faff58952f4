#include "userrecord/stored_record.h"

#include <platform/stlv.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "base/text.h"
#include "userrecord/record_layout.h"

namespace aaadom {
namespace {

/// Longest value of an item; a detail text that claims to be longer is not stored.
constexpr uint32_t kMaxItemLength = UINT16_MAX;

/// One item behind the other, as far as there is room.
class ItemWriter {
  public:
    ItemWriter(void* buffer, uint32_t room) noexcept
        : buffer_(static_cast<char*>(buffer)), room_(room) {}

    void Put(uint16_t type, uint32_t length, const void* value) noexcept {
        written_ += STLV_Set(buffer_ + written_, room_ - written_, type, length, value);
    }
    void Put(const RecordField& field, const UserRecord& record) noexcept {
        Put(field.type, field.size, field.Of(record));
    }
    uint32_t Written() const noexcept { return written_; }

  private:
    char* buffer_;
    uint32_t room_;
    uint32_t written_ = 0;
};

struct Item {
    uint16_t type;
    uint32_t length;
    const void* value;
};

/// `visit(const Item&)` for every whole item.
template <typename Visit>
void ForEachItem(const void* buffer, uint32_t length, Visit&& visit) noexcept {
    const auto* at = static_cast<const char*>(buffer);
    Item item;
    while (const uint32_t taken = STLV_Get(at, length, &item.type, &item.length, &item.value)) {
        visit(item);
        at += taken;
        length -= taken;
    }
}

void LoadField(const RecordField& field, const Item& item, UserRecord& record) noexcept {
    void* const member = field.Of(record);
    if (field.kind == RecordFieldKind::kText) {
        CopyBounded(static_cast<char*>(member), field.size, static_cast<const char*>(item.value),
                    item.length);
    } else if (item.length >= field.size) {
        memcpy(member, item.value, field.size);
    }
}

/// A stored text has no terminator of its own to rely on: the copy ends in one.
char* CopyDetail(const Item& item, uint32_t size) noexcept {
    auto* const text = static_cast<char*>(calloc(size, 1));
    if (text != nullptr) memcpy(text, item.value, std::min(item.length, size - 1));
    return text;
}

}  // namespace

uint32_t StoreRecord(const UserRecord& record, void* buffer, uint32_t room) noexcept {
    ItemWriter items(buffer, room);
    // First, because the run lists sort by the 8 bytes at offset 4.
    items.Put(kSerialField, record);
    for (const RecordField& field : kRecordFields) items.Put(field, record);
    if (HasDetail(record.detail, record.detail_len)) {
        items.Put(DOM_TLV_RECORD_DETAIL_LEN, sizeof record.detail_len, &record.detail_len);
        items.Put(DOM_TLV_RECORD_DETAIL, record.detail_len, record.detail);
    }
    return items.Written();
}

uint32_t StoreSerial(uint64_t serial, void* buffer, uint32_t room) noexcept {
    return STLV_Set(buffer, room, kSerialField.type, sizeof serial, &serial);
}

void LoadRecord(const void* buffer, uint32_t length, UserRecord& record) noexcept {
    uint32_t detail_len = 0;
    Item detail{};
    ForEachItem(buffer, length, [&](const Item& item) {
        if (item.type == DOM_TLV_RECORD_DETAIL) {
            if (detail.value == nullptr) detail = item;
        } else if (item.type == DOM_TLV_RECORD_DETAIL_LEN) {
            if (item.length >= sizeof detail_len) {
                memcpy(&detail_len, item.value, sizeof detail_len);
            }
        } else if (const RecordField* field = FieldOfType(item.type)) {
            LoadField(*field, item, record);
        }
    });
    const bool wanted = detail.value != nullptr && detail_len != 0 && detail_len <= kMaxItemLength;
    record.detail = wanted ? CopyDetail(detail, detail_len) : nullptr;
    record.detail_len = record.detail == nullptr ? 0 : detail_len;
}

}  // namespace aaadom
