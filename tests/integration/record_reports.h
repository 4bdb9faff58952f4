// Reports as access modules send them, and what the daemon has stored of them.
#pragma once

#include <string>
#include <vector>

#include "daemon_process.h"

namespace daemon_test {

/// A record of which every field is set; the interface is the loopback's.
UserRecordSource SampleRecord(const std::string& user, uint32_t reason = 76,
                              uint32_t time = 1700000000);

struct ReportAnswer {
    uint32_t result = kNoReply;
    uint64_t serial = 0;
};
/// Sends a report to the record endpoint. It is consumed.
ReportAnswer SendReport(TLV_MSG* report);
ReportAnswer SendRecord(uint32_t list, const UserRecordSource& record);
TLV_MSG* CommandFailure(const std::string& command, const std::string& user,
                        const std::string& line, uint64_t time, uint32_t reason);

/// Turns all record switches on.
void KeepAllRecords();

/// What lies in a list of the run database, the oldest record first; the details are copied.
struct StoredRecord {
    UserRecord record;
    std::string detail;
};
std::vector<StoredRecord> StoredRecords(const DaemonProcess& daemon, uint32_t list);
std::vector<uint64_t> StoredSerials(const DaemonProcess& daemon, uint32_t list);

}  // namespace daemon_test
