#include "dbm/damage_guard.h"

#include <signal.h>

#include "dbm/environment.h"

namespace aaadom::dbm {

namespace {

constexpr size_t kTouchStep = 4096; /* no system page is smaller */

/* Initial-exec: a handler may not come to the allocation of a lazily made thread block. */
[[gnu::tls_model("initial-exec")]] thread_local FaultPoint* t_innermost = nullptr;

struct sigaction g_former_bus;
struct sigaction g_former_segv;

void OnFault(int signal, siginfo_t* info, void* context) {
    if (FaultPoint* point = t_innermost) {
        t_innermost = point->outer;
        siglongjmp(point->place, 1);
    }
    const struct sigaction& former = signal == SIGBUS ? g_former_bus : g_former_segv;
    if ((former.sa_flags & SA_SIGINFO) != 0) {
        former.sa_sigaction(signal, info, context);
    } else if (former.sa_handler != SIG_DFL && former.sa_handler != SIG_IGN) {
        former.sa_handler(signal);
    } else {
        /* The instruction faults again and ends the process in the ordinary way; a signal that
         * somebody sent comes again by hand. */
        (void)sigaction(signal, &former, nullptr);
        if (info->si_code <= 0) (void)raise(signal);
    }
}

/* LMDB aborts when this returns. */
void OnFailedAssertion(MDB_env*, const char*) {
    if (FaultPoint* point = t_innermost) {
        t_innermost = point->outer;
        siglongjmp(point->place, 1);
    }
}

Environment* EnvironmentOf(MDB_txn* txn) {
    return static_cast<Environment*>(mdb_env_get_userctx(mdb_txn_env(txn)));
}

/* Reads a byte of each page, so that the caller's own look at the bytes does not fault. */
void Touch(const MDB_val& bytes) {
    const volatile char* at = static_cast<const char*>(bytes.mv_data);
    for (size_t i = 0; i < bytes.mv_size; i += kTouchStep) (void)at[i];
    if (bytes.mv_size != 0) (void)at[bytes.mv_size - 1];
}

/* A changed page lies in LMDB's own memory, every other one in the map. */
bool LiesInMap(const MDB_val& bytes, const MapRange& map) {
    const char* begin = static_cast<const char*>(bytes.mv_data);
    if (map.begin == nullptr || begin < map.begin || begin >= map.begin + map.size) return true;
    return bytes.mv_size <= static_cast<size_t>(map.begin + map.size - begin);
}

template <class Call>
int Change(MDB_txn* txn, Call call) {
    const int code = RunGuarded(call);
    if (code == kDamagedFile) EnvironmentOf(txn)->LoseWriter();
    return code;
}

}  // namespace

void InstallFaultHandlers() noexcept {
    static const bool installed = [] {
        struct sigaction action {};
        action.sa_sigaction = OnFault;
        /* Not deferred: the jump out of the handler restores no signal mask. */
        action.sa_flags = SA_SIGINFO | SA_NODEFER | SA_ONSTACK;
        sigemptyset(&action.sa_mask);
        (void)sigaction(SIGBUS, &action, &g_former_bus);
        (void)sigaction(SIGSEGV, &action, &g_former_segv);
        return true;
    }();
    (void)installed;
}

void GuardAssertions(MDB_env* env) noexcept {
    (void)mdb_env_set_assert(env, OnFailedAssertion);
}

void EnterGuard(FaultPoint* point) noexcept {
    point->outer = t_innermost;
    t_innermost = point;
}

void LeaveGuard(const FaultPoint& point) noexcept {
    t_innermost = point.outer;
}

int GuardedGet(MDB_txn* txn, MDB_dbi table, MDB_val* name, MDB_val* value) noexcept {
    const MapRange map = EnvironmentOf(txn)->Map();
    return RunGuarded([&] {
        if (const int code = mdb_get(txn, table, name, value)) return code;
        if (!LiesInMap(*value, map)) return kDamagedFile;
        Touch(*value);
        return 0;
    });
}

int GuardedCursorOpen(MDB_txn* txn, MDB_dbi table, MDB_cursor** cursor) noexcept {
    /* The first use of a table in a transaction reads its root: here nothing is allocated yet. */
    MDB_stat ignored;
    const int code = RunGuarded([&] { return mdb_stat(txn, table, &ignored); });
    return code != 0 ? code : RunGuarded([&] { return mdb_cursor_open(txn, table, cursor); });
}

int GuardedCursorGet(MDB_cursor* cursor, MDB_val* name, MDB_val* value, MDB_cursor_op op) noexcept {
    const MapRange map = EnvironmentOf(mdb_cursor_txn(cursor))->Map();
    return RunGuarded([&] {
        if (const int code = mdb_cursor_get(cursor, name, value, op)) return code;
        if (!LiesInMap(*name, map) || !LiesInMap(*value, map)) return kDamagedFile;
        Touch(*name);
        Touch(*value);
        return 0;
    });
}

int GuardedRenew(MDB_txn* txn) noexcept {
    return RunGuarded([&] { return mdb_txn_renew(txn); });
}

int GuardedBegin(MDB_env* env, unsigned flags, MDB_txn** txn) noexcept {
    return RunGuarded([&] { return mdb_txn_begin(env, nullptr, flags, txn); });
}

int GuardedPut(MDB_txn* txn, MDB_dbi table, MDB_val* name, MDB_val* value,
               unsigned flags) noexcept {
    return Change(txn, [&] { return mdb_put(txn, table, name, value, flags); });
}

int GuardedDelete(MDB_txn* txn, MDB_dbi table, MDB_val* name) noexcept {
    return Change(txn, [&] { return mdb_del(txn, table, name, nullptr); });
}

int GuardedCursorPut(MDB_cursor* cursor, MDB_val* name, MDB_val* value, unsigned flags) noexcept {
    return Change(mdb_cursor_txn(cursor),
                  [&] { return mdb_cursor_put(cursor, name, value, flags); });
}

int GuardedCommit(MDB_txn* txn) noexcept {
    Environment* environment = EnvironmentOf(txn);
    const int code = RunGuarded([&] { return mdb_txn_commit(txn); });
    if (code == kDamagedFile) environment->LoseWriter();
    return code;
}

void AbortWrite(MDB_txn* txn) noexcept {
    if (!EnvironmentOf(txn)->WriterIsLost()) mdb_txn_abort(txn);
}

void CloseWriteCursor(MDB_cursor* cursor) noexcept {
    if (!EnvironmentOf(mdb_cursor_txn(cursor))->WriterIsLost()) mdb_cursor_close(cursor);
}

}  // namespace aaadom::dbm
