#include "domain/method_list_rules.h"

namespace aaadom {
namespace {

/// Bit k of a mask = method kind k is allowed.
template <typename... Kinds>
constexpr uint32_t Allow(Kinds... kinds) noexcept {
    return ((1u << kinds) | ... | 0u);
}

constexpr uint32_t kKindBits = 31;

constexpr uint32_t kSupportType0[DOM_SERVICES] = {
    Allow(1, 2, 3, 4, 5), Allow(1, 2),       Allow(),        Allow(2, 3, 4, 5), Allow(1, 2, 4, 5),
    Allow(1, 2, 3, 4, 5), Allow(2, 3, 4, 5), Allow(2, 4, 5), Allow(2, 4, 5),    Allow(),
    Allow(2, 4, 5),       Allow(2, 4, 5),
};
constexpr uint32_t kSupportType4[DOM_SERVICES] = {
    Allow(1, 2, 4, 5), Allow(),           Allow(1, 4, 5), Allow(2, 4, 5),
    Allow(1, 2, 4, 5), Allow(1, 2, 4, 5), Allow(2, 4, 5), Allow(2, 4, 5),
    Allow(2, 4, 5),    Allow(),           Allow(2, 4, 5), Allow(),
};
constexpr uint32_t kSupportType5[DOM_SERVICES] = {
    Allow(1, 2, 4, 5), Allow(),           Allow(1),       Allow(2, 4, 5),
    Allow(1, 2, 4, 5), Allow(1, 2, 4, 5), Allow(2, 4, 5), Allow(),
    Allow(2, 4, 5),    Allow(),           Allow(2, 4, 5), Allow(),
};

constexpr uint32_t kLongestOrder = 4;

constexpr uint8_t kAllowedOrders[][kLongestOrder] = {
    {5},          {4},          {3},          {2},       {1},       {4, 5},       {3, 5},
    {3, 4},       {2, 5},       {2, 4},       {2, 1},    {1, 5},    {1, 4},       {1, 2},
    {3, 4, 5},    {2, 4, 5},    {2, 1, 5},    {2, 1, 4}, {1, 4, 5}, {1, 2, 5},    {1, 2, 4},
    {2, 1, 4, 5}, {1, 2, 4, 5}, {4, 2},       {4, 2, 1}, {4, 2, 5}, {4, 2, 1, 5}, {4, 1},
    {4, 1, 5},    {4, 1, 2},    {4, 1, 2, 5}, {4, 3},    {4, 3, 5},
};
static_assert(sizeof kAllowedOrders / sizeof kAllowedOrders[0] == 33);

}  // namespace

bool IsMethodSupported(uint32_t service, uint32_t aaa_type, uint32_t method_kind) noexcept {
    if (service >= DOM_SERVICES) return false;
    uint32_t mask = 0;
    switch (aaa_type) {
        case AAA_TYPE_0:
            mask = kSupportType0[service];
            break;
        case AAA_TYPE_4:
            mask = kSupportType4[service];
            break;
        case AAA_TYPE_5:
            mask = kSupportType5[service];
            break;
        default:
            return false;
    }
    return (mask >> (method_kind & kKindBits) & 1u) != 0;
}

bool IsOrderAllowed(const MethodList& list) noexcept {
    uint32_t used = 0;
    while (used < kLongestOrder && list.methods[used].method_kind != METHOD_EMPTY) ++used;
    for (const auto& order : kAllowedOrders) {
        uint32_t same = 0;
        while (same < used && list.methods[same].method_kind == order[same]) ++same;
        if (same == used) return true;
    }
    return false;
}

}  // namespace aaadom
