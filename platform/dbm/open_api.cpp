/* Opening, closing, roots, transaction scopes. */
#include <platform/dbm.h>

#include "dbm/seam.h"

using namespace aaadom::dbm;

namespace {

uint32_t Scoped(DBM_HANDLE handle, bool (Environment::*step)()) noexcept {
    return Code(Guarded(false, [&] {
        const OpenTablePtr table = FindHandle(handle);
        return table != nullptr && (table->environment().*step)();
    }));
}

}  // namespace

extern "C" {

uint32_t DBM_SetRoot(const char* persistent_dir, const char* runtime_dir) noexcept {
    return Code(Guarded(false, [&] { return SetRoots(persistent_dir, runtime_dir); }));
}

uint32_t DBM_Open(const char* database, const char* table, uint32_t mode, const DBM_OPEN_ATTR* attr,
                  DBM_HANDLE* handle) noexcept {
    return Code(Guarded(false, [&] { return OpenHandle(database, table, mode, attr, handle); }));
}

uint32_t DBM_Close(DBM_HANDLE handle) noexcept {
    return Code(Guarded(false, [&] { return CloseHandle(handle); }));
}

uint32_t DBM_Begin(DBM_HANDLE handle) noexcept {
    return Code(Guarded(false, [&] {
        const OpenTablePtr table = FindHandle(handle);
        if (table == nullptr || !table->environment().Begin()) return false;
        /* Closed while this call waited for its turn: nobody could end the scope any more. */
        if (FindHandle(handle) != nullptr) return true;
        (void)table->environment().Abort();
        return false;
    }));
}

uint32_t DBM_Commit(DBM_HANDLE handle) noexcept {
    return Scoped(handle, &Environment::Commit);
}

uint32_t DBM_Abort(DBM_HANDLE handle) noexcept {
    return Scoped(handle, &Environment::Abort);
}

uint32_t DBM_LendScope(DBM_HANDLE handle, uint64_t* token) noexcept {
    return Code(Guarded(false, [&] { return LendScope(handle, token); }));
}

uint32_t DBM_BorrowScope(uint64_t token) noexcept {
    return Code(Guarded(false, [&] { return BorrowScope(token); }));
}

uint32_t DBM_ReturnScope(uint64_t token) noexcept {
    return Code(Guarded(false, [&] { return ReturnScope(token); }));
}

uint32_t DBM_RecallScope(DBM_HANDLE handle) noexcept {
    return Code(Guarded(false, [&] { return RecallScope(handle); }));
}

}  // extern "C"
