#include <net/if.h>
#include <platform/ifname.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "result.h"

extern "C" uint32_t IF_GetDataByIfIndex(uint32_t if_index, uint32_t attribute, uint32_t size,
                                        void* buffer) noexcept {
    if (buffer == nullptr || size == 0) return platform::PLATFORM_FAILED;
    auto* out = static_cast<char*>(buffer);
    out[0] = '\0';
    char name[IF_NAMESIZE];
    if (attribute != IF_ATTRIBUTE_NAME || if_indextoname(if_index, name) == nullptr) {
        return platform::PLATFORM_FAILED;
    }
    const size_t length = std::min<size_t>(strnlen(name, sizeof name), size - 1);
    std::memcpy(out, name, length);
    out[length] = '\0';
    return platform::kOk;
}
