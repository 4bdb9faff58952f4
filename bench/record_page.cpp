// The 50 newest user records through the channel, from a list of a million and from one of a
// thousand: what a page costs must not grow with its list.
#include <benchmark/benchmark.h>
#include <platform/dbm.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>

#include "stage.h"

namespace bench {
namespace {

constexpr uint64_t kMany = 1000000;
constexpr uint64_t kFew = 1000;
constexpr uint64_t kBatch = 1000;
constexpr int kPage = 50;
constexpr int kWarmUp = 100;

bool Insert(DBM_HANDLE handle, uint64_t records) {
    UserRecord record{};
    snprintf(record.first_name, sizeof record.first_name, "corp.example.net");
    snprintf(record.interface_name, sizeof record.interface_name, "GE1/0/1");
    for (uint64_t serial = 1; serial <= records; ++serial) {
        record.serial = serial;
        record.first_number = static_cast<uint32_t>(serial);
        record.second_number = static_cast<uint32_t>(serial % 90);
        snprintf(record.second_name, sizeof record.second_name, "user%07lu", serial);
        if (serial % kBatch == 1 && DBM_Begin(handle) != 0) return false;
        if (DOM_SetOnlineFailedRecordInfoToRunDB(&record) != DOM_OK) return false;
        if ((serial % kBatch == 0 || serial == records) && DBM_Commit(handle) != 0) return false;
    }
    return true;
}

/// Fills a run database that no daemon has open yet. In a process of its own, because the database
/// root is one a process.
void Fill(const std::string& state_dir, const std::string& run_dir, uint64_t records) {
    const pid_t child = fork();
    if (child == 0) {
        mkdir(run_dir.c_str(), 0755);
        if (DBM_SetRoot(state_dir.c_str(), run_dir.c_str()) != 0) _exit(1);
        const DBM_HANDLE handle = DOM_CreateRecordRunDB();
        DOM_SetRecordRunDBHandle(handle);
        if (handle == DBM_INVALID_HANDLE || DOM_CreateAllRecordDBAvlList() != DOM_OK) _exit(1);
        const bool good = Insert(handle, records);
        DOM_DestroyRecordRunDB();
        _exit(good ? 0 : 1);
    }
    int status = 1;
    if (waitpid(child, &status, 0) != child || status != 0) {
        fprintf(stderr, "bench: filling a record list failed\n");
        _exit(1);
    }
}

class RecordDaemon : public Daemon {
  public:
    explicit RecordDaemon(uint64_t records)
        : Daemon(
              [=](const std::string& state, const std::string& run) { Fill(state, run, records); },
              {"--max-records", std::to_string(kMany)}) {}
};

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

void ReadPages(benchmark::State& state, const RecordDaemon& daemon) {
    daemon.Attach();
    // The system still writes what filled the list; every repetition begins with warm pages.
    for (int i = 0; i < kWarmUp; ++i) (void)ReadPage();
    for (auto _ : state) {
        if (ReadPage() != kPage) state.SkipWithError("no page of 50 records");
    }
    Daemon::Running().Attach();
}

void PageOfMany(benchmark::State& state) {
    static const RecordDaemon daemon(kMany);
    ReadPages(state, daemon);
}
BENCHMARK(PageOfMany)->UseRealTime();

void PageOfFew(benchmark::State& state) {
    static const RecordDaemon daemon(kFew);
    ReadPages(state, daemon);
}
BENCHMARK(PageOfFew)->UseRealTime();

}  // namespace
}  // namespace bench
