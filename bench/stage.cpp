#include "stage.h"

#include <platform/lipc.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

namespace bench {
namespace {

void Demand(bool good, const char* what) {
    if (good) return;
    fprintf(stderr, "bench: %s failed\n", what);
    exit(1);
}

void SetFull(const char* name) {
    for (uint32_t type : {AAA_TYPE_0, AAA_TYPE_4, AAA_TYPE_5}) {
        MethodList list{};
        list.aaa_type = type;
        list.service = DOM_DEFAULT_SERVICE;
        const uint32_t kinds[] = {METHOD_SCHEME_2, METHOD_SCHEME_1, METHOD_LAST_5};
        for (int i = 0; i < 3; ++i) {
            list.methods[i].method_kind = kinds[i];
            if (kinds[i] != METHOD_LAST_5) strcpy(list.methods[i].scheme_name, "radius-main");
        }
        const MethodEntry extra{};
        Demand(DOM_AddMethodList(name, &list, &extra) == DOM_OK, "DOM_AddMethodList");
    }
    AuthorAttr attributes{};
    DOM_InitAuthorAttr(&attributes);
    strcpy(attributes.kind1_text, "acl-3000");
    strcpy(attributes.kind2_text, "pool-north");
    strcpy(attributes.ita_policy_name, "monthly");
    attributes.kind5_addr.family = 2;
    memcpy(attributes.kind5_addr.address, "\xC0\x00\x02\x35", 4);
    for (uint32_t& rate : attributes.kind21_rates) rate = 2048;
    for (uint32_t kind : {1u, 2u, 5u, 12u, 21u}) {
        Demand(DOM_AddAuthorAttr(name, &attributes, kind) == DOM_OK, "DOM_AddAuthorAttr");
    }
    Demand(DOM_SetSessionTime(name, 3600) == DOM_OK, "DOM_SetSessionTime");
    Demand(DOM_SetAuthRdFailPermitDomain(1, name, "guest.example") == DOM_OK, "permit domain");
}

}  // namespace

const char* const kFullDomain = "isp0500.example.net";

std::string NameOf(int n) {
    char name[32];
    snprintf(name, sizeof name, "isp%04d.example.net", n);
    return name;
}

void FillTable() {
    static const bool filled = [] {
        Demand(DOM_DomainInfoTableInit() == DOM_OK, "DOM_DomainInfoTableInit");
        for (int n = 0; n < kDomains; ++n) {
            Demand(DOM_AddDomainByName(NameOf(n).c_str()) == DOM_ADD_OK, "DOM_AddDomainByName");
        }
        SetFull(kFullDomain);
        return true;
    }();
    (void)filled;
}

Daemon& Daemon::Running() {
    static Daemon daemon;
    return daemon;
}

Daemon::Daemon() {
    char directory[] = "/var/tmp/aaadom-bench-XXXXXX";
    Demand(mkdtemp(directory) != nullptr, "mkdtemp");
    directory_ = directory;
    const std::string state = directory_ + "/state";
    const std::string run = directory_ + "/run";
    Demand(LIPC_SetRuntimeDir(run.c_str()) == 0, "LIPC_SetRuntimeDir");
    pid_ = fork();
    if (pid_ == 0) {
        execl(AAAD_PATH, "aaad", "--state-dir", state.c_str(), "--run-dir", run.c_str(), nullptr);
        _exit(127);
    }
    uint32_t count = 0;
    for (int tries = 0; MOR_GetDomainCount(&count) != DOM_OK; ++tries) {
        Demand(tries < 100 && waitpid(pid_, nullptr, WNOHANG) == 0, "aaad");
        usleep(50000);
    }
    uint32_t result = 1;
    Demand(MOR_SetDomainName(kFullDomain, DOM_OP_SET, &result) == DOM_OK, "MOR_SetDomainName");
}

Daemon::~Daemon() {
    kill(pid_, SIGTERM);
    waitpid(pid_, nullptr, 0);
    std::error_code ignored;
    std::filesystem::remove_all(directory_, ignored);
}

}  // namespace bench
