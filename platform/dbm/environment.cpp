#include "dbm/environment.h"

#include <errno.h>

#include "dbm/report.h"

namespace aaadom::dbm {

namespace {

constexpr const char* kTypesSuffix = ":value-types";

}  // namespace

uint64_t ThisThread() noexcept {
    static std::atomic<uint64_t> next{1};
    thread_local const uint64_t number = next.fetch_add(1);
    return number;
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
    map_ = {}; /* it moves */
    return RunGuarded([&] { return mdb_env_set_mapsize(env_, 0); });
}

/* LMDB's write lock comes after write_mutex_ and before activity_: a wait for another process must
 * not hold up this one's readers. */
int Environment::BeginUncheckedWrite(MDB_txn** txn) {
    int code = GuardedBegin(env_, 0, txn);
    if (code == MDB_MAP_RESIZED) {
        code = AdoptNewMapSize();
        if (code == 0) code = GuardedBegin(env_, 0, txn);
    }
    if (code == kDamagedFile) LoseWriter();
    return code;
}

int Environment::BeginWrite(MDB_txn** txn) {
    if (WriterIsLost()) return kDamagedFile;
    FileStamp now;
    if (const int code = ReadFileStamp(env_, page_size_, &now)) return code;
    if (const int code = BeginUncheckedWrite(txn)) return code;
    const int code = CheckForeignChange(now, mdb_txn_id(*txn) - 1);
    if (code == 0) return 0;
    mdb_txn_abort(*txn);
    *txn = nullptr;
    return code;
}

/* LMDB takes a place among the readers before it looks at the map: a fault then would keep it. */
int Environment::BeginRead(MDB_txn** txn) {
    FileStamp now;
    const int code = ReadFileStamp(env_, page_size_, &now);
    if (code != 0 && code != kRemovedFile) return code;
    return GuardedBegin(env_, MDB_RDONLY, txn);
}

Scope Environment::ScopeOfThisThread() const noexcept {
    const uint64_t me = ThisThread();
    if (scope_user_.load(std::memory_order_acquire) == me) return Scope::kMine;
    if (scope_owner_.load(std::memory_order_acquire) == me) return Scope::kBlocked;
    return Scope::kNone;
}

bool Environment::FinishCommit(MDB_txn* txn) {
    const size_t transaction = mdb_txn_id(txn);
    const int code = GuardedCommit(txn);
    if (code != 0) {
        list_.Drop();
        Report("commit", code);
        return false;
    }
    RememberFile(transaction);
    if (last_reported_.load(std::memory_order_relaxed) != 0) last_reported_ = 0;
    return true;
}

int Environment::OpenTableInside(MDB_txn* txn, const std::string& name, const std::string& types,
                                 bool create, Table* table) {
    const unsigned flags = create ? MDB_CREATE : 0;
    const int code = RunGuarded([&] {
        const int failed = mdb_dbi_open(txn, name.c_str(), flags, &table->data);
        return failed != 0 ? failed : mdb_dbi_open(txn, types.c_str(), flags, &table->types);
    });
    if (code == kDamagedFile && create) LoseWriter();
    return code;
}

/* LMDB lets only one transaction of a process open tables at a time, with no other one around. */
int Environment::OpenNewTable(const std::string& name, bool create, Table* table) {
    /* Before the transaction: without memory for it there would be nobody to end that. */
    const std::string types = name + kTypesSuffix;
    const std::lock_guard<std::mutex> write(write_mutex_);
    MDB_txn* txn = nullptr;
    int code = create ? BeginWrite(&txn) : 0;
    if (code != 0) return code;
    std::unique_lock<std::shared_mutex> alone(activity_);
    if (!create) {
        code = BeginRead(&txn);
        if (code == MDB_MAP_RESIZED) {
            code = RunGuarded([&] { return mdb_env_set_mapsize(env_, 0); });
            if (code == 0) code = BeginRead(&txn);
        }
        if (code != 0) return code;
    }
    code = OpenTableInside(txn, name, types, create, table);
    if (code == 0 && !create) FindMap(txn);
    if (code != 0) {
        AbortWrite(txn);
        return code;
    }
    const size_t transaction = mdb_txn_id(txn);
    code = GuardedCommit(txn);
    if (code == 0 && create) RememberFile(transaction);
    return code;
}

int Environment::OpenTable(const std::string& name, bool create, Table* table) {
    const auto find = [&] {
        const platform::MutexLock guard(tables_mutex_);
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
    if (code == MDB_NOTFOUND && create) {
        code = OpenNewTable(name, true, table);
        if (code == 0) code = OpenNewTable(name, false, table);
    }
    if (code != 0) return code;
    const platform::MutexLock guard(tables_mutex_);
    tables_[name] = *table;
    return 0;
}

ReadAccess::ReadAccess(Environment& environment)
    : environment_(environment), activity_(environment.activity_) {
    switch (environment.ScopeOfThisThread()) {
        case Scope::kMine:
            if (environment.SettleList() && !environment.WriterIsLost())
                txn_ = environment.scope_txn_;
            return;
        case Scope::kBlocked:
            return;
        case Scope::kNone:
            break;
    }
    own_ = true;
    for (int attempt = 0; attempt < 3; ++attempt) {
        {
            const platform::MutexLock guard(environment.readers_mutex_);
            if (!environment.idle_readers_.empty()) {
                txn_ = environment.idle_readers_.back();
                environment.idle_readers_.pop_back();
            }
        }
        int code;
        if (txn_ != nullptr) {
            code = GuardedRenew(txn_);
            if (code != 0) mdb_txn_abort(txn_);
        } else {
            code = environment.BeginRead(&txn_);
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
    const platform::MutexLock guard(environment_.readers_mutex_);
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
            if ((list == kGoesOn || environment.LeaveList()) && !environment.WriterIsLost())
                txn_ = environment.scope_txn_;
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
    AbortWrite(txn_);
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
