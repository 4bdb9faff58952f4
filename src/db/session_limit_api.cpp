#include <aaadom/database.h>
#include <aaadom/results.h>

#include <iterator>

namespace {

/// Access types in the order of the saved limits.
constexpr uint32_t kAccessTypes[] = {2, 5, 6, 10, 11};

}  // namespace

extern "C" uint32_t AAA_GetSessionLimit(uint32_t access_type) noexcept {
    uint32_t position = 0;
    while (position < std::size(kAccessTypes) && kAccessTypes[position] != access_type) ++position;
    if (position == std::size(kAccessTypes)) return 0;

    const DBM_HANDLE handle = DOM_OpenDomainDBM();
    if (handle == DBM_INVALID_HANDLE) return 0;
    uint32_t limits[std::size(kAccessTypes)];
    const uint32_t result = DOM_GetSessionLimitFromDB(handle, limits);
    (void)DBM_Close(handle);  // read already
    return result == DOM_OK ? limits[position] : 0;
}
