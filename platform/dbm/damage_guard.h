/* LMDB's calls on a file that may be damaged while it is open.
 *
 * LMDB reads its pages through a map and trusts them: a file that was cut off ends the process with
 * SIGBUS, a wild offset with SIGSEGV, a page of another kind with a failed assertion. Here such a
 * call ends with kDamagedFile instead, and the process lives on. */
#ifndef PLATFORM_DBM_DAMAGE_GUARD_H
#define PLATFORM_DBM_DAMAGE_GUARD_H

#include <lmdb.h>
#include <setjmp.h>
#include <stddef.h>

#include "dbm/report.h"

namespace aaadom::dbm {

/* From now on faults and failed assertions inside a guarded call end that call. Faults elsewhere go
 * to the handlers that were there before. Done once a process; the first environment does it. */
void InstallFaultHandlers() noexcept;
void GuardAssertions(MDB_env* env) noexcept;

/* The handlers leave the signal mask alone, so that a guarded call need not ask the system for it;
 * the thread sanitizer's runtime has every signal blocked while it runs a handler. */
#ifdef __SANITIZE_THREAD__
constexpr int kSaveSignalMask = 1;
#else
constexpr int kSaveSignalMask = 0;
#endif

/* Where a fault of the calling thread goes on. */
struct FaultPoint {
    sigjmp_buf place;
    FaultPoint* outer;
};
void EnterGuard(FaultPoint* point) noexcept;
void LeaveGuard(const FaultPoint& point) noexcept;

/* Runs call(), which returns 0 or a code and owns nothing that a destructor frees. */
template <class Call>
int RunGuarded(Call&& call) noexcept {
    FaultPoint point;
    if (sigsetjmp(point.place, kSaveSignalMask) != 0) return kDamagedFile;
    EnterGuard(&point);
    const int code = call();
    LeaveGuard(point);
    return code;
}

/* The part of the address space that an environment's pages lie in; empty: not known. */
struct MapRange {
    const char* begin = nullptr;
    size_t size = 0;
};

/* Reads. What they find lies inside the map and can be read. */
int GuardedGet(MDB_txn* txn, MDB_dbi table, MDB_val* name, MDB_val* value) noexcept;
int GuardedCursorOpen(MDB_txn* txn, MDB_dbi table, MDB_cursor** cursor) noexcept;
int GuardedCursorGet(MDB_cursor* cursor, MDB_val* name, MDB_val* value, MDB_cursor_op op) noexcept;
int GuardedRenew(MDB_txn* txn) noexcept;
int GuardedBegin(MDB_env* env, unsigned flags, MDB_txn** txn) noexcept;

/* Changes. One that ends in a fault leaves LMDB's transaction in a state that nobody may touch any
 * more: the environment has lost its writer. */
int GuardedPut(MDB_txn* txn, MDB_dbi table, MDB_val* name, MDB_val* value, unsigned flags) noexcept;
int GuardedDelete(MDB_txn* txn, MDB_dbi table, MDB_val* name) noexcept;
int GuardedCursorPut(MDB_cursor* cursor, MDB_val* name, MDB_val* value, unsigned flags) noexcept;
int GuardedCommit(MDB_txn* txn) noexcept;
/* Nothing is done when the writer is lost. */
void AbortWrite(MDB_txn* txn) noexcept;
void CloseWriteCursor(MDB_cursor* cursor) noexcept;

}  // namespace aaadom::dbm

#endif
