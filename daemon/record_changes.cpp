#include "record_changes.h"

namespace aaad {

void ClearRecords(RecordStore& records, Request& request) {
    uint32_t removed = 0;
    request.result = records.Clear(request.message.get(), request.code, removed);
    if (request.result == DOM_OK) request.removed = removed;
}

void ApplyRecords(RecordStore& records, Request& request) {
    request.result = records.Apply(request.message.get());
}

}  // namespace aaad
