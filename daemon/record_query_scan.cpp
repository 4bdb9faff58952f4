#include "record_query_scan.h"

#include <aaadom/codes.h>
#include <platform/aaa_tlv.h>

#include <algorithm>
#include <limits>

namespace aaad {

bool RecordScan::Head::Read() {
    length = cursor.Next(stored.data(), stored.size());
    if (length == 0) return false;
    fields = ReadRecordFields(stored.data(), length);
    return true;
}

RecordScan::RecordScan(const RecordStore& store, const std::vector<RecordPosition>& positions) {
    for (const RecordPosition& position : positions) {
        auto head = std::make_unique<Head>(store, position);
        if (Read(*head)) heads_.push_back(std::move(head));
    }
    ChooseHead();
}

bool RecordScan::Read(Head& head) {
    const bool has_record = head.Read();
    failed_ |= head.cursor.Failed();
    return has_record;
}

void RecordScan::Advance() {
    if (!Read(*head_)) {
        heads_.erase(std::find_if(heads_.begin(), heads_.end(),
                                  [&](const auto& head) { return head.get() == head_; }));
    }
    ChooseHead();
}

void RecordScan::ChooseHead() {
    // max_element gives the first of equals, which is the list with the smaller number.
    const auto newest = std::max_element(
        heads_.begin(), heads_.end(),
        [](const auto& left, const auto& right) { return left->fields.time < right->fields.time; });
    head_ = newest == heads_.end() ? nullptr : newest->get();
}

bool RecordScan::AppendPositions(TLV_MSG* reply) const {
    for (const auto& head : heads_) {
        const uint64_t serial = RecordCursor::SerialOf(head->stored.data());
        // No record has the greatest number of all: serial numbers count up from 1.
        const uint64_t below = serial + (serial != std::numeric_limits<uint64_t>::max() ? 1 : 0);
        const Message position(TLV_Create());
        if (!position ||
            AAA_AppendUINTTlvData(position.get(), DOM_TLV_RECORD_KIND, head->list) != 0 ||
            AAA_AppendUINT64TlvData(position.get(), DOM_TLV_RECORD_SERIAL, below) != 0 ||
            AAA_AppendSubTlv(reply, DOM_TLV_RECORD_POSITION, position.get()) != 0) {
            return false;
        }
    }
    return true;
}

}  // namespace aaad
