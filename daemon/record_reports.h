// What access modules report: user records and command lines whose authorization failed.
#pragma once

#include <vector>

#include "administrators.h"
#include "log.h"
#include "record_store.h"
#include "request.h"

namespace aaad {

/// Lives on the record thread, which is its only user.
class RecordReports {
  public:
    /// Both are borrowed; `administrators` is used by no other thread.
    RecordReports(RecordStore& records, Administrators& administrators)
        : records_(records), administrators_(administrators) {}

    /// Decides every report; the records among them in order, in one transaction.
    void Serve(std::vector<Request>& reports);

  private:
    bool MayReport(const LIPC_PEER& peer);

    RecordStore& records_;
    Administrators& administrators_;
    LogLimit denied_limit_;
};

}  // namespace aaad
