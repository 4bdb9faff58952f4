// The walk through one record list or all of them, from the newest record to the oldest.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "message.h"
#include "record_query.h"
#include "record_query_fields.h"
#include "record_store.h"

namespace aaad {

/// Stands on one record at a time. Within a list the order is that of the serial numbers; between
/// lists the newest event comes first, then the list with the smaller number. What it needs does
/// not depend on the length of the lists.
class RecordScan {
  public:
    /// Both borrowed.
    RecordScan(const RecordStore& store, const std::vector<RecordPosition>& positions);

    bool AtEnd() const { return head_ == nullptr; }
    /// A list could not be read (any more): what the walk has shown is not the answer.
    bool Failed() const { return failed_; }
    uint32_t List() const { return head_->list; }
    const RecordFields& Fields() const { return head_->fields; }
    /// The first kComparedSize bytes of the stored form, all of it when there is no detail text.
    const void* Stored() const { return head_->stored.data(); }
    uint32_t StoredLength() const { return head_->length; }
    void Advance();

    /// One TLV F010 for each list that has records left, the present one included.
    bool AppendPositions(TLV_MSG* reply) const;

  private:
    struct Head {
        Head(const RecordStore& store, const RecordPosition& position)
            : list(position.list), cursor(store, position.list, position.below) {}
        bool Read();

        const uint32_t list;
        RecordCursor cursor;
        std::array<uint8_t, kComparedSize> stored;
        uint32_t length = 0;
        RecordFields fields;
    };

    bool Read(Head& head);
    void ChooseHead();

    std::vector<std::unique_ptr<Head>> heads_;  // ascending by list; those at their end are gone
    Head* head_ = nullptr;
    bool failed_ = false;
};

}  // namespace aaad
