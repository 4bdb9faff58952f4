// A read through the daemon against a bare echo over the same transport: same requests, replies of
// the same size, one socket a request.
#include <benchmark/benchmark.h>
#include <platform/aaa_tlv.h>
#include <platform/lipc.h>
#include <poll.h>
#include <unistd.h>

#include "stage.h"

namespace bench {
namespace {

constexpr uint16_t kEchoEndpoint = 0x7E00;

TLV_MSG* DomainReply() {
    TLV_MSG* request = DOM_EncodeDomainName(kFullDomain);
    TLV_MSG* body = DOM_lipc_SendCfgMsg(request, DOM_OP_GET, nullptr);
    TLV_Destroy(request);
    TLV_MSG* reply = TLV_Create();
    AAA_AppendSubTlv(reply, DOM_REPLY_KIND_DATA, body);
    TLV_Destroy(body);
    return reply;
}

/// Answers until the other end of `lifeline` is closed, which the end of its process does.
[[noreturn]] void Echo(int32_t server, int lifeline, TLV_MSG* reply) {
    for (;;) {
        pollfd ready[] = {{server, POLLIN, 0}, {lifeline, 0, 0}};
        poll(ready, 2, -1);
        if (ready[1].revents != 0) _exit(0);
        LIPC_PEER peer;
        const int32_t fd = LIPC_ServerAccept(server, &peer);
        if (fd < 0) continue;
        TLV_MSG* request =
            TLV_CreateReceiveMsg(TLV_FORM_DESCRIPTOR, static_cast<uintptr_t>(fd), 1000);
        TLV_Flush(reply, TLV_FORM_DESCRIPTOR, 1000, static_cast<uintptr_t>(fd));
        TLV_Destroy(request);
        LIPC_Close(fd);
    }
}

void StartEcho() {
    static const bool started = [] {
        Daemon::Running();
        TLV_MSG* reply = DomainReply();
        const int32_t server = LIPC_ServerOpen(kEchoEndpoint, DOM_LIPC_SUB_ENDPOINT, 0600);
        int lifeline[2];
        if (server < 0 || pipe(lifeline) != 0) return false;
        if (fork() == 0) {
            close(lifeline[1]);
            Echo(server, lifeline[0], reply);
        }
        close(lifeline[0]);
        // A listening socket that nobody serves would keep clients waiting.
        close(server);
        TLV_Destroy(reply);
        return true;
    }();
    (void)started;
}

void GetDomain(benchmark::State& state) {
    StartEcho();
    for (auto _ : state) {
        TLV_MSG* request = DOM_EncodeDomainName(kFullDomain);
        TLV_MSG* reply = DOM_lipc_SendCfgMsg(request, DOM_OP_GET, nullptr);
        if (reply == nullptr) state.SkipWithError("no reply");
        TLV_Destroy(reply);
        TLV_Destroy(request);
    }
}
BENCHMARK(GetDomain)->Threads(1)->Threads(16)->UseRealTime();

void EchoDomain(benchmark::State& state) {
    StartEcho();
    LIPC_ADDRESS address{};
    address.length = DOM_LIPC_ADDR_LEN;
    address.family = DOM_LIPC_FAMILY;
    address.endpoint = kEchoEndpoint;
    address.sub_endpoint = DOM_LIPC_SUB_ENDPOINT;
    for (auto _ : state) {
        TLV_MSG* request = DOM_EncodeDomainName(kFullDomain);
        TLV_MSG* headed = AAA_AddOpHead(DOM_OP_GET, request);
        const int32_t fd = LIPC_Socket(DOM_LIPC_FAMILY, DOM_LIPC_TYPE, DOM_LIPC_PROTOCOL);
        TLV_MSG* reply = nullptr;
        if (LIPC_Connect(fd, &address, sizeof address) == 0 &&
            TLV_Flush(headed, TLV_FORM_DESCRIPTOR, DOM_LIPC_WAIT, static_cast<uintptr_t>(fd)) !=
                0) {
            reply = TLV_CreateReceiveMsg(TLV_FORM_DESCRIPTOR, static_cast<uintptr_t>(fd),
                                         DOM_LIPC_WAIT);
        }
        LIPC_Close(fd);
        if (reply == nullptr) state.SkipWithError("no echo");
        TLV_MSG* body = AAA_GetSubTlv(reply, TLV_GetFirst(reply));
        TLV_Destroy(body);
        TLV_Destroy(reply);
        TLV_Destroy(headed);
        TLV_Destroy(request);
    }
}
BENCHMARK(EchoDomain)->Threads(1)->Threads(16)->UseRealTime();

}  // namespace
}  // namespace bench
