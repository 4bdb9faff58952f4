#include <platform/ifname.h>

#include <cstring>
#include <map>

#include "fakes/state.h"

namespace fake {
namespace {
std::map<uint32_t, std::string>& Names() {
    static auto* names = new std::map<uint32_t, std::string>;
    return *names;
}
}  // namespace

void SetInterfaceName(uint32_t index, const std::string& name) {
    Inside inside;
    Names()[index] = name;
}
void ResetInterfaces() {
    Names().clear();
}
}  // namespace fake

extern "C" uint32_t IF_GetDataByIfIndex(uint32_t if_index, uint32_t attribute, uint32_t size,
                                        void* buffer) noexcept {
    fake::Inside inside;
    if (buffer == nullptr || size == 0) return fake::kFailed;
    std::memset(buffer, 0, size);
    const auto found = fake::Names().find(if_index);
    if (attribute != IF_ATTRIBUTE_NAME || found == fake::Names().end()) return fake::kFailed;
    std::strncpy(static_cast<char*>(buffer), found->second.c_str(), size - 1);
    return 0;
}
