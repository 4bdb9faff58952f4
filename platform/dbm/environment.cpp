#include "dbm/environment.h"

#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "dbm/file_check.h"
#include "dbm/report.h"

namespace aaadom::dbm {

namespace {

constexpr unsigned kMaxNamedTables = 64;
constexpr unsigned kMaxReaders = 1024;
constexpr size_t kMaxIdleReaders = 32;
constexpr mode_t kDataMode = 0640;
/* A reader enters itself in the reader table, so the group may write the lock file. */
constexpr mode_t kLockMode = 0660;
constexpr const char* kTypesSuffix = ":value-types";

std::atomic<size_t> g_map_size{kDefaultMapSize};

struct DirectoryLock {
    explicit DirectoryLock(const std::string& path)
        : fd(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
        if (fd >= 0) (void)flock(fd, LOCK_EX);
    }
    ~DirectoryLock() {
        if (fd >= 0) close(fd);
    }
    int fd;
};

bool FileExists(const std::string& path) {
    struct stat status;
    return stat(path.c_str(), &status) == 0;
}

}  // namespace

void dbm_SetMapSize(size_t bytes) noexcept {
    g_map_size = bytes == 0 ? kDefaultMapSize : bytes;
}

uint64_t ThisThread() noexcept {
    static std::atomic<uint64_t> next{1};
    thread_local const uint64_t number = next.fetch_add(1);
    return number;
}

Environment::~Environment() {
    Close();
}

int Environment::OpenFile(const std::string& file, unsigned flags) {
    int code = mdb_env_create(&env_);
    if (code != 0) {
        env_ = nullptr;
        return code;
    }
    (void)mdb_env_set_maxdbs(env_, kMaxNamedTables);
    (void)mdb_env_set_maxreaders(env_, kMaxReaders);
    (void)mdb_env_set_mapsize(env_, g_map_size.load());
    code = mdb_env_open(env_, file.c_str(), flags | MDB_NOTLS, kDataMode);
    if (code != 0) {
        mdb_env_close(env_);
        env_ = nullptr;
    }
    return code;
}

/* The new file gets its meta pages under another name and is then renamed: whoever finds data.mdb
 * finds a whole database, also after a crash here. */
int Environment::CreateFile() {
    const DirectoryLock lock(path_);
    if (lock.fd < 0) return errno;
    const std::string data = path_ + "/data.mdb";
    if (FileExists(data)) return 0;
    const std::string fresh = path_ + "/new.mdb";
    (void)unlink(fresh.c_str());
    int code = OpenFile(fresh, MDB_NOSUBDIR);
    if (code == 0) {
        code = mdb_env_sync(env_, 1);
        mdb_env_close(env_);
        env_ = nullptr;
    }
    (void)unlink((fresh + "-lock").c_str());
    if (code != 0) {
        (void)unlink(fresh.c_str());
        return code;
    }
    if (rename(fresh.c_str(), data.c_str()) != 0) return errno;
    return fsync(lock.fd) != 0 ? errno : 0;
}

int Environment::Open(const std::string& directory, bool durable, bool create,
                      bool read_only_allowed) {
    path_ = directory;
    idle_readers_.reserve(kMaxIdleReaders);
    const std::string data = path_ + "/data.mdb";
    if (create && !FileExists(data)) {
        if (int code = CreateFile()) return code;
    }
    if (int code = CheckFileHeader(data)) return code;
    const bool new_lock = !FileExists(path_ + "/lock.mdb");
    const unsigned sync = durable ? 0 : MDB_NOSYNC;
    int code = OpenFile(path_, sync);
    if ((code == EACCES || code == EROFS || code == EPERM) && read_only_allowed) {
        code = OpenFile(path_, sync | MDB_RDONLY);
        read_only_ = code == 0;
    }
    if (code != 0) return code;
    if (new_lock) (void)chmod((path_ + "/lock.mdb").c_str(), kLockMode);
    int dead;
    (void)mdb_reader_check(env_, &dead);
    code = CheckFileStructure(env_);
    if (code != 0) Close();
    return code;
}

void Environment::Close() noexcept {
    if (env_ == nullptr) return;
    for (MDB_txn* txn : idle_readers_) mdb_txn_abort(txn);
    idle_readers_.clear();
    mdb_env_close(env_);
    env_ = nullptr;
}

void Environment::MakeDurable() noexcept {
    (void)mdb_env_set_flags(env_, MDB_NOSYNC, 0);
}

void Environment::Report(const char* action, int code) noexcept {
    if (last_reported_.exchange(code) != code) ReportFailure(path_ + "/data.mdb", action, code);
}

/* Another process works with a larger map. With write_mutex_ held no transaction of this process
 * writes, alone in activity_ none reads. */
int Environment::AdoptNewMapSize() {
    const std::unique_lock<std::shared_mutex> alone(activity_);
    return mdb_env_set_mapsize(env_, 0);
}

/* LMDB's write lock comes after write_mutex_ and before activity_: a wait for another process must
 * not hold up this one's readers. */
int Environment::BeginWrite(MDB_txn** txn) {
    int code = mdb_txn_begin(env_, nullptr, 0, txn);
    if (code == MDB_MAP_RESIZED) {
        code = AdoptNewMapSize();
        if (code == 0) code = mdb_txn_begin(env_, nullptr, 0, txn);
    }
    return code;
}

Scope Environment::ScopeOfThisThread() const noexcept {
    const uint64_t me = ThisThread();
    if (scope_user_.load(std::memory_order_acquire) == me) return Scope::kMine;
    if (scope_owner_.load(std::memory_order_acquire) == me) return Scope::kBlocked;
    return Scope::kNone;
}

bool Environment::FinishCommit(MDB_txn* txn) {
    const int code = mdb_txn_commit(txn);
    if (code != 0) {
        list_.Drop();
        Report("commit", code);
        return false;
    }
    if (last_reported_.load(std::memory_order_relaxed) != 0) last_reported_ = 0;
    return true;
}

int Environment::OpenTableInside(MDB_txn* txn, const std::string& name, bool create, Table* table) {
    const unsigned flags = create ? MDB_CREATE : 0;
    int code = mdb_dbi_open(txn, name.c_str(), flags, &table->data);
    if (code == 0) code = mdb_dbi_open(txn, (name + kTypesSuffix).c_str(), flags, &table->types);
    return code;
}

/* LMDB lets only one transaction of a process open tables at a time, with no other one around. */
int Environment::OpenNewTable(const std::string& name, bool create, Table* table) {
    const std::lock_guard<std::mutex> write(write_mutex_);
    MDB_txn* txn = nullptr;
    int code = create ? BeginWrite(&txn) : 0;
    if (code != 0) return code;
    std::unique_lock<std::shared_mutex> alone(activity_);
    if (!create) {
        code = mdb_txn_begin(env_, nullptr, MDB_RDONLY, &txn);
        if (code == MDB_MAP_RESIZED) {
            code = mdb_env_set_mapsize(env_, 0);
            if (code == 0) code = mdb_txn_begin(env_, nullptr, MDB_RDONLY, &txn);
        }
        if (code != 0) return code;
    }
    code = OpenTableInside(txn, name, create, table);
    if (code != 0) {
        mdb_txn_abort(txn);
        return code;
    }
    return mdb_txn_commit(txn);
}

int Environment::OpenTable(const std::string& name, bool create, Table* table) {
    const auto find = [&] {
        const std::lock_guard<std::mutex> guard(tables_mutex_);
        const auto known = tables_.find(name);
        if (known == tables_.end()) return false;
        *table = known->second;
        return true;
    };
    if (find()) return 0;
    /* A table opened now would be unknown to the scope's transaction, and making one would wait for
     * the scope's own lock. */
    if (ScopeOfThisThread() != Scope::kNone) return EDEADLK;
    const std::lock_guard<std::mutex> opening(table_open_mutex_);
    if (find()) return 0;
    if (create && read_only_) return EROFS;
    int code = OpenNewTable(name, false, table);
    if (code == MDB_NOTFOUND && create) code = OpenNewTable(name, true, table);
    if (code != 0) return code;
    const std::lock_guard<std::mutex> guard(tables_mutex_);
    tables_[name] = *table;
    return 0;
}

ReadAccess::ReadAccess(Environment& environment)
    : environment_(environment), activity_(environment.activity_) {
    switch (environment.ScopeOfThisThread()) {
        case Scope::kMine:
            if (environment.SettleList()) txn_ = environment.scope_txn_;
            return;
        case Scope::kBlocked:
            return;
        case Scope::kNone:
            break;
    }
    own_ = true;
    for (int attempt = 0; attempt < 3; ++attempt) {
        {
            const std::lock_guard<std::mutex> guard(environment.readers_mutex_);
            if (!environment.idle_readers_.empty()) {
                txn_ = environment.idle_readers_.back();
                environment.idle_readers_.pop_back();
            }
        }
        int code;
        if (txn_ != nullptr) {
            code = mdb_txn_renew(txn_);
            if (code != 0) mdb_txn_abort(txn_);
        } else {
            code = mdb_txn_begin(environment.env_, nullptr, MDB_RDONLY, &txn_);
        }
        if (code == 0) return;
        txn_ = nullptr;
        if (code == MDB_MAP_RESIZED) {
            activity_.unlock();
            {
                /* No scope can be open: its begin would have met the larger map first. */
                const std::lock_guard<std::mutex> write(environment.write_mutex_);
                code = environment.AdoptNewMapSize();
            }
            activity_.lock();
        }
        if (code != 0) {
            environment.Report("read", code);
            return;
        }
    }
}

ReadAccess::~ReadAccess() {
    if (!own_ || txn_ == nullptr) return;
    mdb_txn_reset(txn_);
    const std::lock_guard<std::mutex> guard(environment_.readers_mutex_);
    /* The room was reserved when the environment was opened: no allocation here. */
    if (environment_.idle_readers_.size() < environment_.idle_readers_.capacity())
        environment_.idle_readers_.push_back(txn_);
    else
        mdb_txn_abort(txn_);
}

WriteAccess::WriteAccess(Environment& environment, ListOfScope list)
    : environment_(environment),
      write_(environment.write_mutex_, std::defer_lock),
      activity_(environment.activity_, std::defer_lock) {
    if (environment.read_only_) {
        environment.Report("write", EROFS);
        return;
    }
    switch (environment.ScopeOfThisThread()) {
        case Scope::kMine:
            activity_.lock();
            if (list == kGoesOn || environment.LeaveList()) txn_ = environment.scope_txn_;
            return;
        case Scope::kBlocked:
            return;
        case Scope::kNone:
            break;
    }
    own_ = true;
    write_.lock();
    const int code = environment.BeginWrite(&txn_);
    activity_.lock();
    if (list == kSettle) (void)environment.LeaveList();
    if (code != 0) {
        txn_ = nullptr;
        environment.Report("write", code);
    }
}

WriteAccess::~WriteAccess() {
    if (!own_ || txn_ == nullptr) return;
    environment_.list_.Drop();
    mdb_txn_abort(txn_);
}

bool WriteAccess::Check(int code) {
    if (code == 0) return true;
    if (!own_) environment_.scope_failed_ = true;
    environment_.Report("write", code);
    return false;
}

bool WriteAccess::Commit() {
    if (!own_) return true;
    MDB_txn* txn = txn_;
    txn_ = nullptr;
    return environment_.FinishCommit(txn);
}

}  // namespace aaadom::dbm
