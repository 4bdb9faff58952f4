// A store of values by number in which a Put is on the disk when it returns: what the daemon's
// durable changes are compared with.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace bench {

class Store {
  public:
    virtual ~Store() = default;
    /// `client` is below the number of clients that the store was made for; each is one thread.
    /// Throws when the value is not stored.
    virtual void Put(int client, uint32_t number, const std::string& value) = 0;
};

/// Each makes a store in an empty directory. The library calls LMDB and SQLite directly, in this
/// process; Redis is a server of its own on a Unix socket.
std::unique_ptr<Store> MakeLmdbStore(const std::string& directory);
std::unique_ptr<Store> MakeSqliteStore(const std::string& directory, int clients);
std::unique_ptr<Store> MakeRedisStore(const std::string& directory, int clients);

/// How many transactions were ever committed in the LMDB environment of a directory.
uint64_t LmdbTransactions(const std::string& directory);

}  // namespace bench
