// Transaction scopes: a copy of the table, put back when the scope fails.
#include <platform/dbm.h>

#include "fakes/database.h"

using fake::Database;
using fake::DbmScope;
using fake::kFailed;

namespace {

bool IsMine(const Database* database) {
    return database != nullptr && database->depth > 0 &&
           database->owner == std::this_thread::get_id();
}

void RollBack(Database& database) {
    database.live = *database.committed;
}

void End(Database& database) {
    database.committed.reset();
    database.depth = 0;
    database.aborted = false;
    fake::ScopeEnded().notify_all();
}

}  // namespace

extern "C" uint32_t DBM_Begin(DBM_HANDLE handle) {
    DbmScope call("DBM_Begin", handle, DbmScope::kWrite, "*", 1);
    Database* database = fake::FindDatabase(handle);
    if (!call.Usable() || database == nullptr) return call.Return(kFailed);
    if (database->depth++ == 0) {
        database->owner = std::this_thread::get_id();
        database->committed = database->live;
        database->aborted = false;
    }
    return call.Return(0u);
}

extern "C" uint32_t DBM_Commit(DBM_HANDLE handle) {
    DbmScope call("DBM_Commit", handle, DbmScope::kControl);
    Database* database = fake::FindDatabase(handle);
    if (!IsMine(database)) return call.Return(kFailed);
    if (!call.Usable()) database->aborted = true;
    if (--database->depth > 0) return call.Return(call.Usable() ? 0u : kFailed);
    const bool failed = database->aborted;
    if (failed) RollBack(*database);
    End(*database);
    return call.Return(failed ? kFailed : 0u);
}

extern "C" uint32_t DBM_Abort(DBM_HANDLE handle) {
    fake::Quiet quiet;  // giving up cannot fail
    DbmScope call("DBM_Abort", handle, DbmScope::kControl);
    Database* database = fake::FindDatabase(handle);
    if (!IsMine(database)) return call.Return(kFailed);
    database->aborted = true;
    if (--database->depth > 0) return call.Return(0u);
    RollBack(*database);
    End(*database);
    return call.Return(0u);
}
