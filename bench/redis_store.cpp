// A private Redis server that syncs its log before it answers; a connection a client on a Unix
// socket, one command at a time. Redis syncs once for all commands that wait at that moment.
#include <hiredis/hiredis.h>
#include <sys/wait.h>
#include <unistd.h>

#include "store.h"
#include "workspace.h"

namespace bench {
namespace {

class RedisStore : public Store {
  public:
    RedisStore(const std::string& directory, int clients) {
        const std::string socket = directory + "/redis.socket";
        pid_ = Start({"redis-server", "--port", "0", "--unixsocket", socket, "--dir", directory,
                      "--appendonly", "yes", "--appendfsync", "always", "--save", "",
                      "--auto-aof-rewrite-percentage", "0"});
        for (int i = 0; i < clients; ++i) contexts_.push_back(Connect(socket));
    }
    ~RedisStore() override {
        for (redisContext* context : contexts_) redisFree(context);
        Stop(pid_);
    }
    void Put(int client, uint32_t number, const std::string& value) override {
        auto* reply = static_cast<redisReply*>(redisCommand(contexts_[static_cast<size_t>(client)],
                                                            "SET domain:%u %b", number,
                                                            value.data(), value.size()));
        const bool good = reply != nullptr && reply->type == REDIS_REPLY_STATUS;
        if (reply != nullptr) freeReplyObject(reply);
        Demand(good, "Redis SET");
    }

  private:
    redisContext* Connect(const std::string& socket) {
        for (int tries = 0; tries < 1000; ++tries) {
            redisContext* context = redisConnectUnix(socket.c_str());
            if (context != nullptr && context->err == 0) return context;
            redisFree(context);
            Demand(waitpid(pid_, nullptr, WNOHANG) == 0, "starting redis-server");
            usleep(10000);
        }
        Demand(false, "connecting to redis-server");
        return nullptr;
    }
    pid_t pid_ = -1;
    std::vector<redisContext*> contexts_;
};

}  // namespace

std::unique_ptr<Store> MakeRedisStore(const std::string& directory, int clients) {
    return std::make_unique<RedisStore>(directory, clients);
}

}  // namespace bench
