#include "daemon.h"

#include <aaadom/aaadom.h>
#include <platform/dbm.h>
#include <platform/lipc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>

namespace bench {
namespace {

constexpr useconds_t kPause = 50;
constexpr int kTries = 30000000 / kPause;  // half a minute

void Save(const std::string& state_dir, int domains, Size size) {
    FillTable(domains, size);
    Demand(DBM_SetRoot(state_dir.c_str(), nullptr) == 0, "DBM_SetRoot");
    const DBM_HANDLE handle = DOM_CreateDomainDBM();
    Demand(handle != DBM_INVALID_HANDLE, "DOM_CreateDomainDBM");
    DOM_SetDomainDBMHandle(handle);
    Demand(DBM_Begin(handle) == 0, "DBM_Begin");
    for (int n = 0; n < domains; ++n) {
        DomDbUpdateReq request{};
        request.object_type = DOM_DB_DOMAIN;
        request.operation = 1;
        snprintf(request.object_name, sizeof request.object_name, "%s", NameOf(n).c_str());
        Demand(DOM_SetDataToDB(&request) == DOM_OK, "DOM_SetDataToDB");
    }
    Demand(DBM_Commit(handle) == 0, "DBM_Commit");
    Demand(DBM_Close(handle) == 0, "DBM_Close");
}

}  // namespace

void SaveDomains(const std::string& state_dir, int domains, Size size) {
    InChild([&] { Save(state_dir, domains, size); });
}

void DaemonStage::Attach() const {
    Demand(LIPC_SetRuntimeDir(RunDir().c_str()) == 0, "LIPC_SetRuntimeDir");
}

void DaemonStage::Start(const std::vector<std::string>& more_arguments) {
    Attach();
    std::vector<std::string> arguments = {AAAD_PATH, "--state-dir", State(), "--run-dir", RunDir()};
    arguments.insert(arguments.end(), more_arguments.begin(), more_arguments.end());
    pid_ = bench::Start(arguments);
    uint32_t count = 0;
    for (int tries = 0; MOR_GetDomainCount(&count) != DOM_OK; ++tries) {
        Demand(tries < kTries && waitpid(pid_, nullptr, WNOHANG) == 0, "starting aaad");
        usleep(kPause);
    }
}

void DaemonStage::Stop() {
    if (pid_ > 0) bench::Stop(pid_);
    pid_ = -1;
}

}  // namespace bench
