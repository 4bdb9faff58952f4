/* The seam between the C interface and the core: keys, handles, results, no exception out. */
#ifndef PLATFORM_DBM_SEAM_H
#define PLATFORM_DBM_SEAM_H

#include "dbm/keys.h"
#include "result.h"

namespace aaadom::dbm {

/* Runs work() and turns an exception (memory is out) into the failure result. */
template <class Result, class Work>
Result Guarded(Result failure, Work work) noexcept {
    try {
        return work();
    } catch (...) {
        return failure;
    }
}

/* Runs work(table, key) for a live handle and a usable key. */
template <class Result, class Work>
Result WithKey(DBM_HANDLE handle, const void* key, uint32_t key_len, Result failure,
               Work work) noexcept {
    return Guarded(failure, [&]() -> Result {
        const Key name{key, key_len};
        if (!name.IsUsable()) return failure;
        const OpenTablePtr table = FindHandle(handle);
        return table != nullptr ? work(*table, name) : failure;
    });
}

inline uint32_t Code(bool done) noexcept {
    return done ? platform::kOk : platform::PLATFORM_FAILED;
}

/* WithKey for the calls that answer 0 or failure. */
template <class Work>
uint32_t ChangeKey(DBM_HANDLE handle, const void* key, uint32_t key_len, Work work) noexcept {
    return Code(WithKey(handle, key, key_len, false, work));
}

}  // namespace aaadom::dbm

#endif
