// A change that is on the disk before it is answered, from end to end through the daemon, against
// stores that put a value of the same size on the same file system, as durable as the daemon does.
#include <aaadom/aaadom.h>

#include <memory>

#include "daemon.h"
#include "race.h"
#include "store.h"
#include "timing.h"

namespace bench {
namespace {

struct Peer {
    const char* name;
    Directory directory{"peer"};
    std::unique_ptr<Store> store;
};

struct Stage {
    Stage(int domains, Size size, int clients)
        : daemon(domains, size), names(ShuffledNames(domains)) {
        FillTable(domains, size);
        values = EncodedDomains(domains);
        daemon.Start();
        lmdb.store = MakeLmdbStore(lmdb.directory.Path());
        sqlite.store = MakeSqliteStore(sqlite.directory.Path(), clients);
        redis.store = MakeRedisStore(redis.directory.Path(), clients);
        for (Peer* peer : {&lmdb, &sqlite, &redis}) {
            for (size_t n = 0; n < values.size(); ++n) {
                peer->store->Put(0, static_cast<uint32_t>(n), values[n]);
            }
        }
    }
    /// The clients change different domains, each a different one every time.
    size_t Which(int client, int clients, uint64_t count) const {
        return (count * static_cast<size_t>(clients) + static_cast<size_t>(client)) % names.size();
    }
    DaemonStage daemon;
    std::vector<std::string> names;
    std::vector<std::string> values;
    Peer lmdb{.name = "raw LMDB", .store = nullptr};
    Peer sqlite{.name = "SQLite WAL FULL", .store = nullptr};
    Peer redis{.name = "Redis fsync always", .store = nullptr};
};

Window ThroughDaemon(std::shared_ptr<Stage> stage, int clients) {
    return [=, round = uint16_t{0}](double seconds) mutable {
        ++round;
        return TimeClients(clients, seconds, [&](int client, uint64_t count) {
            const size_t n = stage->Which(client, clients, count);
            const auto session_time = static_cast<uint16_t>(count + round);
            TLV_MSG* request = DOM_EncodeSessionTime(stage->names[n].c_str(), session_time);
            uint32_t result = 1;
            const uint32_t sent = DOM_lipc_CfgMsgProc(request, DOM_OP_SET, &result);
            TLV_Destroy(request);
            Demand(sent == DOM_OK && result == DOM_OK, "a change");
        });
    };
}

Contestant ThroughPeer(std::shared_ptr<Stage> stage, const Peer& peer, int clients) {
    return {peer.name, [=, store = peer.store.get()](double seconds) {
                return TimeClients(clients, seconds, [&](int client, uint64_t count) {
                    const size_t n = stage->Which(client, clients, count);
                    thread_local std::string value;
                    value = stage->values[n];
                    value.back() = static_cast<char>(count);
                    store->Put(client, static_cast<uint32_t>(n), value);
                });
            }};
}

std::vector<Contestant> Prepare(int domains, Size size, int clients) {
    auto stage = std::make_shared<Stage>(domains, size, clients);
    return {{"aaad", ThroughDaemon(stage, clients)},
            ThroughPeer(stage, stage->lmdb, clients),
            ThroughPeer(stage, stage->sqlite, clients),
            ThroughPeer(stage, stage->redis, clients)};
}

}  // namespace

void AddDurableRaces(const Extent& extent, std::vector<Race>& races) {
    for (Size size : {Size::kSmall, Size::kLarge}) {
        for (int clients : {1, 16}) {
            const std::string number = std::to_string(clients);
            for (int domains : extent.DaemonLoads()) {
                if (size == Size::kLarge && domains != DOM_MAX_DOMAINS) continue;
                races.push_back({std::string("set-") + SizeName(size) + "-" + number,
                                 std::string("Durable SET of a ") + SizeName(size) + " domain, " +
                                     number + (clients == 1 ? " client" : " clients"),
                                 "change",
                                 domains,
                                 "domains",
                                 {{"raw LMDB", Goal::kSpeedAtLeast, clients == 1 ? 0.7 : 2.8}},
                                 extent.Seconds(0.5),
                                 [=] { return Prepare(domains, size, clients); }});
            }
        }
    }
}

}  // namespace bench
