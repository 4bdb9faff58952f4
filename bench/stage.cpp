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

void Fill(char* field, size_t capacity, const char* text) {
    snprintf(field, capacity, "%s", text);
}

/// Three methods in every list of every service, and every setting and attribute.
void SetFull(const char* name) {
    const uint32_t kinds[] = {METHOD_SCHEME_2, METHOD_SCHEME_1, METHOD_LAST_5};
    for (uint32_t type : {AAA_TYPE_0, AAA_TYPE_4, AAA_TYPE_5}) {
        for (uint32_t service = 0; service < DOM_SERVICES; ++service) {
            MethodList list{};
            list.aaa_type = type;
            list.service = service;
            for (int i = 0; i < 3; ++i) {
                list.methods[i].method_kind = kinds[i];
                if (kinds[i] == METHOD_LAST_5) continue;
                Fill(list.methods[i].scheme_name, DOM_SCHEME_NAME_SIZE, "radius-main");
            }
            MethodEntry extra{};
            extra.method_kind = METHOD_SCHEME_1;
            Fill(extra.scheme_name, DOM_SCHEME_NAME_SIZE, "tacacs-backup");
            Demand(DOM_AddMethodList(name, &list, &extra) == DOM_OK, "DOM_AddMethodList");
        }
    }
    AuthorAttr attributes{};
    DOM_InitAuthorAttr(&attributes);
    Fill(attributes.kind1_text, sizeof attributes.kind1_text, "acl-3000");
    Fill(attributes.kind2_text, sizeof attributes.kind2_text, "pool-north");
    Fill(attributes.kind4_text, sizeof attributes.kind4_text, "pool-south");
    Fill(attributes.kind7_text, sizeof attributes.kind7_text, "https://portal.example.net/welcome");
    Fill(attributes.kind8_text, sizeof attributes.kind8_text, "vpn-blue");
    Fill(attributes.ita_policy_name, sizeof attributes.ita_policy_name, "monthly");
    Fill(attributes.kind18_text, sizeof attributes.kind18_text, "qos-gold");
    Fill(attributes.kind20_text, sizeof attributes.kind20_text, "group-a");
    Fill(attributes.kind22_text, sizeof attributes.kind22_text, "service-7");
    Fill(attributes.author_profile_name, sizeof attributes.author_profile_name, "profile-3");
    Fill(attributes.kind26_text, sizeof attributes.kind26_text, "https://login.example.net");
    for (AttrAddress* address : {&attributes.kind5_addr, &attributes.kind6_addr,
                                 &attributes.kind16_addr, &attributes.kind17_addr}) {
        address->family = 2;
        memcpy(address->address, "\xC0\x00\x02\x35", 4);
    }
    for (uint32_t& word : attributes.kind3_words) word = 0x20010DB8;
    for (uint32_t& rate : attributes.kind21_rates) rate = 2048;
    for (uint32_t kind = 0; kind < DOM_ATTR_KINDS; ++kind) {
        Demand(DOM_AddAuthorAttr(name, &attributes, kind) == DOM_OK, "DOM_AddAuthorAttr");
    }
    EscapeRecoverAction action{};
    Fill(action.domain_name, DOM_NAME_SIZE, "recovered.example");
    Demand(DOM_SetEscapeRecoverAction(name, 1, &action) == DOM_OK, "escape-recover");
    Demand(DOM_SetAuthFailDomain(name, "restricted.example", 1) == DOM_OK, "auth-fail domain");
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

Daemon::Daemon(const Prepare& prepare, std::vector<std::string> more_arguments) {
    char directory[] = "/var/tmp/aaadom-bench-XXXXXX";
    Demand(mkdtemp(directory) != nullptr, "mkdtemp");
    directory_ = directory;
    const std::string state = directory_ + "/state";
    const std::string run = directory_ + "/run";
    if (prepare) prepare(state, run);
    std::vector<std::string> arguments = {"aaad", "--state-dir", state, "--run-dir", run};
    arguments.insert(arguments.end(), more_arguments.begin(), more_arguments.end());
    std::vector<char*> pointers;
    for (std::string& argument : arguments) pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    Attach();
    pid_ = fork();
    if (pid_ == 0) {
        execv(AAAD_PATH, pointers.data());
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

void Daemon::Attach() const {
    Demand(LIPC_SetRuntimeDir((directory_ + "/run").c_str()) == 0, "LIPC_SetRuntimeDir");
}

Daemon::~Daemon() {
    kill(pid_, SIGTERM);
    waitpid(pid_, nullptr, 0);
    std::error_code ignored;
    std::filesystem::remove_all(directory_, ignored);
}

}  // namespace bench
