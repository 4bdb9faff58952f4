// What access modules report: user records and command lines whose authorization failed.
#pragma once

#include <memory>
#include <vector>

#include "administrators.h"
#include "log.h"
#include "record_store.h"
#include "request.h"

namespace aaad {

struct ReportedRecord;

/// Lives on the record thread, which is its only user.
class RecordReports {
  public:
    /// Both are borrowed; `administrators` is used by no other thread.
    RecordReports(RecordStore& records, Administrators& administrators)
        : records_(records), administrators_(administrators) {}

    /// Decides every report; the records among them in order, in one transaction. Those that memory
    /// does not suffice for are refused with DOM_ERR_FAILED.
    void Serve(std::vector<Request>& reports);

  private:
    using ReportedRecords = std::vector<std::unique_ptr<ReportedRecord>>;

    void Read(Request& report, ReportedRecords& reported);
    bool MayReport(const LIPC_PEER& peer);

    RecordStore& records_;
    Administrators& administrators_;
    LogLimit denied_limit_;
};

}  // namespace aaad
