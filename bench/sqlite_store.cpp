// SQLite with a write-ahead log that is synced at each commit; a prepared statement a value. Each
// client has a connection of its own. Clients queue on a mutex here: SQLite's own way of waiting
// for another writer sleeps for milliseconds between its tries.
#include <sqlite3.h>

#include <mutex>

#include "store.h"
#include "workspace.h"

namespace bench {
namespace {

class Connection {
  public:
    explicit Connection(const std::string& path) {
        Demand(sqlite3_open(path.c_str(), &database_) == SQLITE_OK, "opening SQLite");
        for (const char* sql :
             {"PRAGMA journal_mode=WAL", "PRAGMA synchronous=FULL",
              "CREATE TABLE IF NOT EXISTS domain (number INTEGER PRIMARY KEY, value BLOB)"}) {
            Demand(sqlite3_exec(database_, sql, nullptr, nullptr, nullptr) == SQLITE_OK, sql);
        }
        const char* put = "INSERT OR REPLACE INTO domain VALUES (?1, ?2)";
        Demand(sqlite3_prepare_v2(database_, put, -1, &put_, nullptr) == SQLITE_OK, put);
    }
    ~Connection() {
        sqlite3_finalize(put_);
        sqlite3_close(database_);
    }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    void Put(uint32_t number, const std::string& value) {
        sqlite3_bind_int64(put_, 1, number);
        sqlite3_bind_blob(put_, 2, value.data(), static_cast<int>(value.size()), SQLITE_STATIC);
        const bool done = sqlite3_step(put_) == SQLITE_DONE;
        Demand(sqlite3_reset(put_) == SQLITE_OK && done, "SQLite insert");
    }

  private:
    sqlite3* database_ = nullptr;
    sqlite3_stmt* put_ = nullptr;
};

class SqliteStore : public Store {
  public:
    SqliteStore(const std::string& directory, int clients) {
        for (int i = 0; i < clients; ++i) {
            connections_.push_back(std::make_unique<Connection>(directory + "/domains.sqlite"));
        }
    }
    void Put(int client, uint32_t number, const std::string& value) override {
        const std::lock_guard guard(mutex_);
        connections_[static_cast<size_t>(client)]->Put(number, value);
    }

  private:
    std::mutex mutex_;
    std::vector<std::unique_ptr<Connection>> connections_;
};

}  // namespace

std::unique_ptr<Store> MakeSqliteStore(const std::string& directory, int clients) {
    return std::make_unique<SqliteStore>(directory, clients);
}

}  // namespace bench
