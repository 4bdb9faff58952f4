/* One LMDB environment: transactions, the transaction scope, tables. */
#ifndef PLATFORM_DBM_ENVIRONMENT_H
#define PLATFORM_DBM_ENVIRONMENT_H

#include <lmdb.h>
#include <stddef.h>
#include <stdint.h>

#include <atomic>
#include <map>
#include <mutex>
#include <shared_mutex>
#include <string>
#include <vector>

#include "dbm/avl_list.h"
#include "dbm/damage_guard.h"
#include "dbm/file_check.h"
#include "lock.h"

namespace aaadom::dbm {

/* Upper bound of a data file; address space, not memory or disk. */
constexpr size_t kDefaultMapSize = size_t{4} << 30;
/* For tests: the map size of the environments opened from now on; 0 restores the default. */
void dbm_SetMapSize(size_t bytes) noexcept;

/* Numbers threads from 1; a number is never used twice, unlike a thread identifier. */
uint64_t ThisThread() noexcept;

struct Table {
    MDB_dbi data = 0;
    MDB_dbi types = 0;
};

enum class Scope : uint8_t { kNone, kMine, kBlocked };

class Environment {
  public:
    Environment() = default;
    ~Environment();
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

    /* Opens data.mdb of an existing directory. create: makes the file when it is absent.
     * read_only_allowed: falls back to reading when the file cannot be written. */
    int Open(const std::string& directory, bool durable, bool create, bool read_only_allowed);
    void Close() noexcept;

    const std::string& Path() const noexcept { return path_; }
    bool IsReadOnly() const noexcept { return read_only_; }
    /* Commits are synced from now on; never taken back. */
    void MakeDurable() noexcept;

    /* Finds a table, opening (and with create, making) it once for the whole process. */
    int OpenTable(const std::string& name, bool create, Table* table);

    /* The scope; each returns false when the calling thread may not do this. */
    bool Begin();
    bool Commit();
    bool Abort();
    bool Lend(uint64_t token);
    bool Borrow(uint64_t token);
    bool Return(uint64_t token);
    /* *token: the token that was still out, 0 when the thread had the scope already. */
    bool Recall(uint64_t* token);
    bool IsLentAs(uint64_t token);
    bool ScopeIsOpen() const noexcept { return scope_owner_.load() != 0; }
    /* Rolls the calling thread's scope back; false when another thread owns or uses the scope. */
    bool DropScope();

    /* Where the pages lie while nobody is alone in activity_. */
    MapRange Map() const noexcept { return map_; }
    /* A change ended in a fault: LMDB's write lock and transaction stay as they are until the
     * process ends, and every later change is refused. Reading goes on. */
    void LoseWriter() noexcept;
    bool WriterIsLost() const noexcept { return writer_lost_.load(); }

    /* One line for a run of equal failures. */
    void Report(const char* action, int code) noexcept;

  private:
    using Mutex = platform::Mutex;
    using MutexLock = platform::MutexLock;
    friend class ReadAccess;
    friend class WriteAccess;

    int OpenFile(const std::string& file, unsigned flags);
    int CreateFile();
    /* Both: write_mutex_ is held, activity_ is not. */
    int BeginWrite(MDB_txn** txn);
    int BeginUncheckedWrite(MDB_txn** txn);
    /* Precondition: nobody else writes. */
    int CheckForeignChange(const FileStamp& now, size_t last_transaction);
    void RememberFile(size_t last_transaction) noexcept;
    int BeginRead(MDB_txn** txn);
    void FindMap(MDB_txn* txn) noexcept;
    int AdoptNewMapSize();
    int OpenTableInside(MDB_txn* txn, const std::string& name, const std::string& types,
                        bool create, Table* table);
    int OpenNewTable(const std::string& name, bool create, Table* table);
    Scope ScopeOfThisThread() const noexcept;
    void EndScope() noexcept;
    /* Ends the run of changes of one list; false: the scope is spoilt. */
    bool SettleList();
    /* The same before a change that the list's owner does not see: nothing known of it holds on. */
    bool LeaveList();
    bool FinishCommit(MDB_txn* txn);

    /* Constant after Open. */
    MDB_env* env_ = nullptr;
    std::string path_;
    bool read_only_ = false;
    uint32_t page_size_ = 0;

    MapRange map_; /* changed by whoever is alone in activity_ */
    std::atomic<bool> writer_lost_{false};
    /* The file as the last commit of this process left it, and as it was found damaged;
     * write_mutex_ is held. */
    FileStamp file_;
    size_t file_transaction_ = 0;
    FileStamp damaged_file_;

    /* Lock order: table_open_mutex_, write_mutex_, LMDB's write lock, activity_, then one of the
     * leaves below. */
    std::mutex table_open_mutex_;
    std::mutex write_mutex_;     /* this process's writers; held by the owner of the scope */
    std::shared_mutex activity_; /* shared: inside LMDB; alone: changes LMDB's process-wide state */

    Mutex tables_mutex_; /* leaf */
    std::map<std::string, Table> tables_ PLATFORM_GUARDED_BY(tables_mutex_);

    Mutex readers_mutex_; /* leaf */
    std::vector<MDB_txn*> idle_readers_ PLATFORM_GUARDED_BY(readers_mutex_);

    Mutex scope_mutex_; /* leaf; changes of the fields below */
    std::atomic<uint64_t> scope_owner_{0};
    std::atomic<uint64_t> scope_user_{0}; /* 0 while the scope is lent and not yet borrowed */
    uint64_t scope_token_ PLATFORM_GUARDED_BY(scope_mutex_) = 0;
    bool scope_borrowed_ PLATFORM_GUARDED_BY(scope_mutex_) = false;
    unsigned borrowed_depth_ = 0;
    /* Touched by the scope's user alone. */
    MDB_txn* scope_txn_ = nullptr;
    unsigned scope_depth_ = 0;
    bool scope_failed_ = false;
    /* The AVL list that was changed last, of whoever holds write_mutex_; in a scope it stays open,
     * and every call on something else settles it. */
    AvlList list_;

    std::atomic<int> last_reported_{0};
};

/* A short read transaction, or the scope's transaction when the thread uses the scope. */
class ReadAccess {
  public:
    explicit ReadAccess(Environment& environment);
    ~ReadAccess();
    ReadAccess(const ReadAccess&) = delete;
    ReadAccess& operator=(const ReadAccess&) = delete;
    bool Ok() const noexcept { return txn_ != nullptr; }
    MDB_txn* Txn() const noexcept { return txn_; }

  private:
    Environment& environment_;
    std::shared_lock<std::shared_mutex> activity_;
    MDB_txn* txn_ = nullptr;
    bool own_ = false;
};

/* A write transaction of one call, or the scope's. */
class WriteAccess {
  public:
    /* kGoesOn: the call changes an AVL list and may go on with the open one. */
    enum ListOfScope : uint8_t { kSettle, kGoesOn };
    explicit WriteAccess(Environment& environment, ListOfScope list = kSettle);
    ~WriteAccess();
    WriteAccess(const WriteAccess&) = delete;
    WriteAccess& operator=(const WriteAccess&) = delete;
    bool Ok() const noexcept { return txn_ != nullptr; }
    MDB_txn* Txn() const noexcept { return txn_; }
    /* Takes LMDB's answer to a change. A real error spoils the transaction, the scope's too. */
    bool Check(int code);
    AvlList& List() const noexcept { return environment_.list_; }
    bool InScope() const noexcept { return !own_; }
    /* Ends the call: commits a transaction of its own; inside a scope the scope decides later. */
    bool Commit();

  private:
    Environment& environment_;
    std::unique_lock<std::mutex> write_;
    std::shared_lock<std::shared_mutex> activity_;
    MDB_txn* txn_ = nullptr;
    bool own_ = false;
};

}  // namespace aaadom::dbm

#endif
