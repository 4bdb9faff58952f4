// Asks a daemon for user records, as the documents describe it.
#pragma once

#include <functional>
#include <map>
#include <optional>

#include "daemon_process.h"

namespace daemon_test {

struct RecordDestroyer {
    void operator()(UserRecord* record) const {
        free(record->detail);
        delete record;
    }
};
using RecordPtr = std::unique_ptr<UserRecord, RecordDestroyer>;

/// A record with a name and a time of its own; everything else is 0 or empty.
RecordPtr MakeRecord(const std::string& user, uint32_t time);
void SetDetail(UserRecord& record, const std::string& detail);

/// Reports a record with the name of its interface. Its number in its list; 0 when it was not
/// stored.
uint64_t Report(uint32_t list, const UserRecord& record);
/// Clears records: DOM_MSG_RESET_...
uint32_t ResetRecords(uint32_t code);

/// Writes records straight into the run database of a daemon that does not run.
void FillRecords(const DaemonProcess& daemon, uint32_t list, uint64_t first, uint64_t last,
                 const std::function<void(UserRecord&)>& fill);

/// A request that is built TLV by TLV.
class Query {
  public:
    explicit Query(uint32_t code);
    Query& Number16(uint16_t type, uint16_t value);
    Query& Number32(uint16_t type, uint32_t value);
    Query& Text(uint16_t type, const std::string& value);
    Query& Raw(uint16_t type, const std::vector<uint8_t>& value);
    Query& Position(uint32_t list, uint64_t below);
    Query& Nested(uint16_t type, TLV_MSG* sub);
    Query& Conditions(uint32_t bits) { return Number32(DOM_TLV_RECORD_CONDITIONS, bits); }
    Query& List(uint16_t list) { return Number16(DOM_TLV_RECORD_LIST, list); }
    Query& PageOf(uint32_t records) { return Number32(DOM_TLV_RECORD_COUNT, records); }
    TLV_MSG* Take() { return message_.release(); }

  private:
    Message message_;
};

struct FoundRecord {
    uint32_t list = 0;
    bool brief = false;
    uint64_t brief_serial = 0;  // in front of a brief record
    uint32_t brief_time = 0;
    UserRecord record{};  // its detail is in `detail`
    std::string detail;
};

struct RecordPage {
    uint16_t kind = 0;
    uint32_t result = kNoReply;  // TLV 16, when the reply has one
    int header = -1;             // TLV 177
    std::vector<FoundRecord> records;
    std::vector<std::pair<uint32_t, uint64_t>> positions;
    std::map<std::string, uint32_t> counts;  // code 75
    std::vector<std::string> order;          // the values of code 75 as they stand
    int64_t looked_at = -1;
    uint32_t length = 0;  // of the reply

    bool NoRecord() const {
        return kind == DOM_REPLY_KIND_DATA && result == DOM_RESULT_NO_RECORD && records.empty() &&
               positions.empty();
    }
    std::vector<std::string> Users() const;
    std::vector<uint64_t> Serials() const;
};

RecordPage ReadPage(uint16_t kind, TLV_MSG* reply);
RecordPage AskPage(Query query);
/// All pages of a query that `make` makes anew for each; `between` runs behind each page.
std::vector<RecordPage> AskAll(const std::function<Query()>& make,
                               const std::function<void()>& between = {});

}  // namespace daemon_test
