// Reading a domain through the daemon against a bare echo on the same transport: the same requests,
// replies of the same size, one socket a request.
#include <aaadom/aaadom.h>
#include <platform/aaa_tlv.h>
#include <sched.h>

#include <memory>

#include "daemon.h"
#include "echo_peer.h"
#include "race.h"
#include "timing.h"

namespace bench {
namespace {

constexpr int kClients[] = {1, 4, 16};

TLV_MSG* AskDaemon(TLV_MSG* request, uint32_t operation) {
    return DOM_lipc_SendCfgMsg(request, operation, nullptr);
}

/// The reply that the daemon gives for a domain.
TLV_MSG* ReplyFor(const std::string& name) {
    TLV_MSG* request = DOM_EncodeDomainName(name.c_str());
    TLV_MSG* body = DOM_lipc_SendCfgMsg(request, DOM_OP_GET, nullptr);
    TLV_Destroy(request);
    DomainInfo* domain = DOM_DecodeDomain(body);
    Demand(domain != nullptr, "reading a domain");
    DOM_DestroyDomain(domain);
    TLV_MSG* reply = TLV_Create();
    Demand(AAA_AppendSubTlv(reply, DOM_REPLY_KIND_DATA, body) == 0, "AAA_AppendSubTlv");
    TLV_Destroy(body);
    return reply;
}

/// Keeps this thread, and the processes and threads that it starts, on one processor. A server and
/// its only client work in turns: where the scheduler has put them once, it leaves them, and waking
/// a processor that sleeps costs more than the request.
class OneProcessor {
  public:
    OneProcessor() {
        cpu_set_t one;
        CPU_ZERO(&one);
        Demand(sched_getaffinity(0, sizeof former_, &former_) == 0, "sched_getaffinity");
        CPU_SET(sched_getcpu(), &one);
        Demand(sched_setaffinity(0, sizeof one, &one) == 0, "sched_setaffinity");
    }
    ~OneProcessor() { (void)sched_setaffinity(0, sizeof former_, &former_); }
    OneProcessor(const OneProcessor&) = delete;
    OneProcessor& operator=(const OneProcessor&) = delete;

  private:
    cpu_set_t former_;
};

struct Stage {
    Stage(int domains, Size size, int clients)
        : processor(clients == 1 ? std::make_unique<OneProcessor>() : nullptr),
          daemon(domains, size),
          names(ShuffledNames(domains)) {
        daemon.Start();
        TLV_MSG* reply = ReplyFor(names.back());
        echo = std::make_unique<Echo>(reply);
        TLV_Destroy(reply);
    }
    const std::unique_ptr<OneProcessor> processor;
    DaemonStage daemon;
    std::vector<std::string> names;
    std::unique_ptr<Echo> echo;
};

Window Ask(std::shared_ptr<Stage> stage, int clients, TLV_MSG* (*ask)(TLV_MSG*, uint32_t)) {
    return [=](double seconds) {
        const std::vector<std::string>& names = stage->names;
        return TimeClients(clients, seconds, [&](int client, uint64_t count) {
            const size_t n = count * static_cast<size_t>(clients) + static_cast<size_t>(client);
            TLV_MSG* request = DOM_EncodeDomainName(names[n % names.size()].c_str());
            TLV_MSG* reply = ask(request, DOM_OP_GET);
            TLV_Destroy(request);
            Demand(reply != nullptr, "an answer");
            TLV_Destroy(reply);
        });
    };
}

std::vector<Contestant> Prepare(int domains, Size size, int clients) {
    auto stage = std::make_shared<Stage>(domains, size, clients);
    return {{"aaad", Ask(stage, clients, AskDaemon)}, {"echo", Ask(stage, clients, Echo::Ask)}};
}

}  // namespace

void AddGetRaces(const Extent& extent, std::vector<Race>& races) {
    for (Size size : {Size::kSmall, Size::kLarge}) {
        for (int clients : kClients) {
            // No goal is set for four clients: that of sixteen is wide enough for them, too.
            const double limit = clients == 1 ? 1.10 : 1.20;
            const std::string number = std::to_string(clients);
            for (int domains : extent.DaemonLoads()) {
                if (size == Size::kLarge && domains != DOM_MAX_DOMAINS) continue;
                races.push_back({std::string("get-") + SizeName(size) + "-" + number,
                                 std::string("GET a ") + SizeName(size) + " domain, " + number +
                                     (clients == 1 ? " client, all on one processor" : " clients"),
                                 "request",
                                 domains,
                                 "domains",
                                 {{"echo", Goal::kCostAtMost, limit}},
                                 extent.Seconds(0.25),
                                 [=] { return Prepare(domains, size, clients); }});
            }
        }
    }
}

}  // namespace bench
