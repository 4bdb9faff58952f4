/* The transaction scope of an environment: counting, failing, lending to another thread. */
#include <errno.h>

#include "dbm/environment.h"

namespace aaadom::dbm {

bool Environment::Begin() {
    switch (ScopeOfThisThread()) {
        case Scope::kMine:
            ++scope_depth_;
            return true;
        case Scope::kBlocked:
            return false;
        case Scope::kNone:
            break;
    }
    if (read_only_) {
        Report("begin", EROFS);
        return false;
    }
    write_mutex_.lock();
    const int code = BeginWrite(&scope_txn_);
    if (code != 0) {
        scope_txn_ = nullptr;
        write_mutex_.unlock();
        Report("begin", code);
        return false;
    }
    scope_depth_ = 1;
    scope_failed_ = false;
    const std::lock_guard<std::mutex> guard(scope_mutex_);
    scope_token_ = 0;
    scope_borrowed_ = false;
    scope_owner_.store(ThisThread());
    scope_user_.store(ThisThread(), std::memory_order_release);
    return true;
}

bool Environment::SettleList() {
    if (!list_.IsOpen()) return true;
    const int code = list_.Settle();
    if (code == 0) return true;
    scope_failed_ = true;
    Report("write", code);
    return false;
}

bool Environment::LeaveList() {
    const bool settled = SettleList();
    list_.Drop();
    return settled;
}

/* The transaction is already committed or aborted. */
void Environment::EndScope() noexcept {
    {
        const std::lock_guard<std::mutex> guard(scope_mutex_);
        scope_user_ = 0;
        scope_owner_ = 0;
        scope_token_ = 0;
    }
    write_mutex_.unlock();
}

bool Environment::Commit() {
    if (ScopeOfThisThread() != Scope::kMine) return false;
    const bool borrower = scope_owner_.load() != ThisThread();
    /* A borrower ends only the levels that it began. */
    if (borrower && scope_depth_ == borrowed_depth_) return false;
    if (scope_depth_ > 1) {
        --scope_depth_;
        return true;
    }
    bool done = false;
    {
        const std::shared_lock<std::shared_mutex> activity(activity_);
        MDB_txn* txn = scope_txn_;
        scope_txn_ = nullptr;
        if (!scope_failed_ && SettleList()) {
            done = FinishCommit(txn);
        } else {
            list_.Drop();
            AbortWrite(txn);
        }
    }
    EndScope();
    return done;
}

bool Environment::Abort() {
    if (ScopeOfThisThread() != Scope::kMine) return false;
    const bool borrower = scope_owner_.load() != ThisThread();
    if (borrower && scope_depth_ == borrowed_depth_) return false;
    if (scope_depth_ > 1) {
        --scope_depth_;
        scope_failed_ = true;
        return true;
    }
    return DropScope();
}

bool Environment::DropScope() {
    if (ScopeOfThisThread() != Scope::kMine || scope_owner_.load() != ThisThread()) return false;
    {
        const std::shared_lock<std::shared_mutex> activity(activity_);
        list_.Drop();
        AbortWrite(scope_txn_);
        scope_txn_ = nullptr;
    }
    EndScope();
    return true;
}

/* Between lending and borrowing nobody uses the scope. Every hand-over goes through scope_mutex_,
 * so the fields of the user are seen by the next one. */
bool Environment::Lend(uint64_t token) {
    if (ScopeOfThisThread() != Scope::kMine || scope_owner_.load() != ThisThread()) return false;
    const std::lock_guard<std::mutex> guard(scope_mutex_);
    scope_token_ = token;
    scope_borrowed_ = false;
    scope_user_ = 0;
    return true;
}

bool Environment::Borrow(uint64_t token) {
    const std::lock_guard<std::mutex> guard(scope_mutex_);
    if (scope_token_ != token || scope_borrowed_ || scope_owner_ == ThisThread()) return false;
    scope_borrowed_ = true;
    borrowed_depth_ = scope_depth_;
    scope_user_ = ThisThread();
    return true;
}

bool Environment::Return(uint64_t token) {
    const std::lock_guard<std::mutex> guard(scope_mutex_);
    if (scope_token_ != token || !scope_borrowed_ || scope_user_ != ThisThread()) return false;
    const bool balanced = scope_depth_ == borrowed_depth_;
    if (!balanced) {
        scope_depth_ = borrowed_depth_;
        scope_failed_ = true;
    }
    scope_token_ = 0;
    scope_borrowed_ = false;
    scope_user_ = scope_owner_.load();
    return balanced;
}

bool Environment::Recall(uint64_t* token) {
    const std::lock_guard<std::mutex> guard(scope_mutex_);
    if (scope_owner_ != ThisThread()) return false;
    *token = 0;
    if (scope_user_ == ThisThread()) return true;
    if (scope_borrowed_) return false;
    *token = scope_token_;
    scope_token_ = 0;
    scope_user_ = ThisThread();
    return true;
}

bool Environment::IsLentAs(uint64_t token) {
    const std::lock_guard<std::mutex> guard(scope_mutex_);
    return scope_token_ == token;
}

}  // namespace aaadom::dbm
