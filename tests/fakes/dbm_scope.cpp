// Transaction scopes: a copy of the tables, put back when the scope fails. A call that a switch
// makes fail counts as refused, so it does not spoil the scope it was made in.
#include <platform/dbm.h>

#include "fakes/database.h"

using fake::Database;
using fake::DbmScope;
using fake::kFailed;

namespace {

/// The outermost level is the owner's to end.
bool MayEndLevel(const Database* database) {
    return database != nullptr && database->IsUser() &&
           (database->lending == Database::kNotLent || database->depth > database->depth_when_lent);
}

}  // namespace

extern "C" uint32_t DBM_Begin(DBM_HANDLE handle) noexcept {
    DbmScope call("DBM_Begin", handle, DbmScope::kWrite, "*", 1);
    Database* database = fake::FindDatabase(handle);
    if (!call.Usable() || database == nullptr) return call.Return(kFailed);
    if (database->depth++ == 0) {
        database->owner = std::this_thread::get_id();
        database->committed = database->live;
    }
    return call.Return(0u);
}

extern "C" uint32_t DBM_Commit(DBM_HANDLE handle) noexcept {
    DbmScope call("DBM_Commit", handle, DbmScope::kControl);
    Database* database = fake::FindDatabase(handle);
    if (!MayEndLevel(database)) return call.Return(kFailed);
    if (!call.Usable()) database->failed = true;
    if (--database->depth > 0) return call.Return(call.Usable() ? 0u : kFailed);
    const bool failed = database->failed;
    if (failed) database->RollBack();
    database->EndScope();
    return call.Return(failed ? kFailed : 0u);
}

extern "C" uint32_t DBM_Abort(DBM_HANDLE handle) noexcept {
    fake::Quiet quiet;  // giving up cannot fail
    DbmScope call("DBM_Abort", handle, DbmScope::kControl);
    Database* database = fake::FindDatabase(handle);
    if (!MayEndLevel(database)) return call.Return(kFailed);
    database->failed = true;
    if (--database->depth > 0) return call.Return(0u);
    database->RollBack();
    database->EndScope();
    return call.Return(0u);
}

extern "C" uint32_t DBM_LendScope(DBM_HANDLE handle, uint64_t* token) noexcept {
    DbmScope call("DBM_LendScope", handle, DbmScope::kControl);
    Database* database = fake::FindDatabase(handle);
    if (!call.Usable() || token == nullptr || !database->IsUser() ||
        database->lending != Database::kNotLent) {
        return call.Return(kFailed);
    }
    database->lending = Database::kLent;
    database->token = *token = fake::NewToken();
    database->depth_when_lent = database->depth;
    return call.Return(0u);
}

extern "C" uint32_t DBM_BorrowScope(uint64_t token) noexcept {
    const bool told_to_fail = fake::Hit(fake::Event::kDbm);
    fake::Inside inside;
    Database* database = fake::FindLent(token);
    if (told_to_fail || database == nullptr || database->lending != Database::kLent ||
        database->owner == std::this_thread::get_id()) {
        return kFailed;
    }
    database->lending = Database::kBorrowed;
    database->borrower = std::this_thread::get_id();
    return 0;
}

extern "C" uint32_t DBM_ReturnScope(uint64_t token) noexcept {
    fake::Inside inside;
    Database* database = fake::FindLent(token);
    if (database == nullptr || database->lending != Database::kBorrowed || !database->IsUser()) {
        return kFailed;
    }
    const bool levels_left = database->depth > database->depth_when_lent;
    if (levels_left) database->failed = true;
    database->depth = database->depth_when_lent;
    database->lending = Database::kNotLent;
    return levels_left ? kFailed : 0;
}

extern "C" uint32_t DBM_RecallScope(DBM_HANDLE handle) noexcept {
    fake::Inside inside;
    Database* database = fake::FindDatabase(handle);
    if (database == nullptr || database->depth == 0 ||
        database->owner != std::this_thread::get_id() || database->lending == Database::kBorrowed) {
        return kFailed;
    }
    database->lending = Database::kNotLent;
    return 0;
}
