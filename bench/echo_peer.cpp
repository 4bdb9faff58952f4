#include "echo_peer.h"

#include <aaadom/aaadom.h>
#include <platform/aaa_tlv.h>
#include <platform/lipc.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <unistd.h>

#include "workspace.h"

namespace bench {
namespace {

constexpr uint16_t kEndpoint = 0x7E00;
constexpr uint32_t kWait = 1000;

[[noreturn]] void Serve(int32_t server, TLV_MSG* reply) {
    for (;;) {
        LIPC_PEER peer;
        const int32_t fd = LIPC_ServerAccept(server, &peer);
        if (fd < 0) {
            // Nobody waits. Turning in circles would take a processor from who is measured.
            pollfd readable{server, POLLIN, 0};
            (void)poll(&readable, 1, -1);
            continue;
        }
        TLV_MSG* request =
            TLV_CreateReceiveMsg(TLV_FORM_DESCRIPTOR, static_cast<uintptr_t>(fd), kWait);
        TLV_Flush(reply, TLV_FORM_DESCRIPTOR, kWait, static_cast<uintptr_t>(fd));
        TLV_Destroy(request);
        LIPC_Close(fd);
    }
}

}  // namespace

Echo::Echo(TLV_MSG* reply) {
    const int32_t server = LIPC_ServerOpen(kEndpoint, DOM_LIPC_SUB_ENDPOINT, 0600);
    Demand(server >= 0, "LIPC_ServerOpen");
    pid_ = fork();
    if (pid_ == 0) {
        prctl(PR_SET_PDEATHSIG, SIGTERM);
        Serve(server, reply);
    }
    // A listening socket that nobody serves would keep clients waiting.
    close(server);
    Demand(pid_ > 0, "fork");
}

Echo::~Echo() {
    Stop(pid_);
}

TLV_MSG* Echo::Ask(TLV_MSG* request, uint32_t operation) {
    LIPC_ADDRESS address{};
    address.length = DOM_LIPC_ADDR_LEN;
    address.family = DOM_LIPC_FAMILY;
    address.endpoint = kEndpoint;
    address.sub_endpoint = DOM_LIPC_SUB_ENDPOINT;
    TLV_MSG* headed = AAA_AddOpHead(operation, request);
    const int32_t fd = LIPC_Socket(DOM_LIPC_FAMILY, DOM_LIPC_TYPE, DOM_LIPC_PROTOCOL);
    TLV_MSG* reply = nullptr;
    if (LIPC_Connect(fd, &address, sizeof address) == 0 &&
        TLV_Flush(headed, TLV_FORM_DESCRIPTOR, DOM_LIPC_WAIT, static_cast<uintptr_t>(fd)) != 0) {
        reply =
            TLV_CreateReceiveMsg(TLV_FORM_DESCRIPTOR, static_cast<uintptr_t>(fd), DOM_LIPC_WAIT);
    }
    LIPC_Close(fd);
    TLV_MSG* body = AAA_GetSubTlv(reply, TLV_GetFirst(reply));
    TLV_Destroy(reply);
    TLV_Destroy(headed);
    return body;
}

}  // namespace bench
