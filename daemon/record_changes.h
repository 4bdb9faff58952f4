// Changes of user records that come over the configuration's endpoint.
#pragma once

#include "record_store.h"
#include "request.h"

namespace aaad {

/// Codes 54 to 57.
void ClearRecords(RecordStore& records, Request& request);
/// Code 173.
void ApplyRecords(RecordStore& records, Request& request);

}  // namespace aaad
