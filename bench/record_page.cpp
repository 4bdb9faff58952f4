// The 50 newest user records through the channel, from a list of a million and from one of a
// thousand: what a page costs must not grow with its list.
#include <aaadom/aaadom.h>
#include <platform/dbm.h>
#include <sys/stat.h>

#include <cstdio>
#include <memory>

#include "daemon.h"
#include "race.h"
#include "timing.h"

namespace bench {
namespace {

constexpr uint64_t kMany = 1000000;
constexpr uint64_t kManyInQuickMode = 100000;
constexpr uint64_t kFew = 1000;
constexpr uint64_t kBatch = 1000;
constexpr int kPage = 50;
constexpr int kWarmUp = 100;

void Insert(DBM_HANDLE handle, uint64_t records) {
    UserRecord record{};
    snprintf(record.first_name, sizeof record.first_name, "corp.example.net");
    snprintf(record.interface_name, sizeof record.interface_name, "GE1/0/1");
    for (uint64_t serial = 1; serial <= records; ++serial) {
        record.serial = serial;
        record.first_number = static_cast<uint32_t>(serial);
        record.second_number = static_cast<uint32_t>(serial % 90);
        snprintf(record.second_name, sizeof record.second_name, "user%07lu", serial);
        if (serial % kBatch == 1) Demand(DBM_Begin(handle) == 0, "DBM_Begin");
        Demand(DOM_SetOnlineFailedRecordInfoToRunDB(&record) == DOM_OK, "storing a record");
        if (serial % kBatch == 0 || serial == records) {
            Demand(DBM_Commit(handle) == 0, "DBM_Commit");
        }
    }
}

/// Fills a run database that no daemon has open yet. In a process of its own, because the database
/// root is one a process.
void Fill(const std::string& run_dir, uint64_t records) {
    InChild([&] {
        Demand(mkdir(run_dir.c_str(), 0755) == 0, "making a run directory");
        Demand(DBM_SetRoot(nullptr, run_dir.c_str()) == 0, "DBM_SetRoot");
        const DBM_HANDLE handle = DOM_CreateRecordRunDB();
        DOM_SetRecordRunDBHandle(handle);
        Demand(handle != DBM_INVALID_HANDLE, "DOM_CreateRecordRunDB");
        Demand(DOM_CreateAllRecordDBAvlList() == DOM_OK, "DOM_CreateAllRecordDBAvlList");
        Insert(handle, records);
        DOM_DestroyRecordRunDB();
    });
}

std::shared_ptr<DaemonStage> RecordDaemon(uint64_t records) {
    auto daemon = std::make_shared<DaemonStage>();
    Fill(daemon->RunDir(), records);
    daemon->Start({"--max-records", std::to_string(kMany)});
    return daemon;
}

/// How many records the page of the newest holds.
int ReadPage() {
    TLV_MSG* request =
        DOM_userrecord_tlv_EncodeDisplayRecordAll(DOM_MSG_RECORD_ALL, DOM_RECORD_ONLINE_FAIL);
    TLV_MSG* reply = DOM_lipc_SendCfgMsg(request, DOM_OP_GET, nullptr);
    int records = 0;
    for (TLV_ITER* it = TLV_GetFirst(reply); it != nullptr; it = TLV_GetNext(reply, it)) {
        records += TLV_GetTypeByIterator(reply, it) == DOM_TLV_USER_RECORD ? 1 : 0;
    }
    TLV_Destroy(reply);
    TLV_Destroy(request);
    return records;
}

Window Pages(std::shared_ptr<DaemonStage> daemon) {
    return [=](double seconds) {
        daemon->Attach();
        // The system still writes what filled the list; every window begins with warm pages.
        for (int i = 0; i < kWarmUp; ++i) (void)ReadPage();
        uint64_t bad = 0;
        const double ns = TimeLoop<Clock>(seconds, [&](uint64_t) { bad += ReadPage() != kPage; });
        Demand(bad == 0, "reading a page of 50 records");
        return ns;
    };
}

}  // namespace

void AddRecordPageRaces(const Extent& extent, std::vector<Race>& races) {
    const uint64_t many = extent.quick ? kManyInQuickMode : kMany;
    races.push_back({"pages-daemon",
                     "Page of the 50 newest records, through the daemon",
                     "page",
                     static_cast<int>(many),
                     "records",
                     {{"list of 1000", Goal::kCostAtMost, 5}},
                     extent.Seconds(0.25),
                     [=]() -> std::vector<Contestant> {
                         return {{"whole list", Pages(RecordDaemon(many))},
                                 {"list of 1000", Pages(RecordDaemon(kFew))}};
                     }});
}

}  // namespace bench
