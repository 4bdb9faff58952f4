#include <aaadom/session.h>

#include "domain/with_domain.h"

using namespace aaadom;

namespace {

// One set for the process. Their callers serialise them, so they take no lock.
constinit SessionLimits counters{};

/// The word of a class in a block of limits or counters; a class without one of its own is
/// class 20.
uint32_t& OfClass(SessionLimits& block, uint32_t session_class) noexcept {
    switch (session_class) {
        case SESSION_CLASS_19:
            return block.class_19;
        case SESSION_CLASS_21:
            return block.class_21;
        case SESSION_CLASS_22:
            return block.class_22;
        case SESSION_CLASS_23:
            return block.class_23;
        default:
            return block.class_20;
    }
}

}  // namespace

extern "C" {

uint32_t DOM_GetSessionTime(const char* domain) noexcept {
    return ReadDomain(domain, 0u, [](const DomainInfo& d) { return d.session_time; });
}

uint32_t DOM_SetSessionTime(const char* domain, uint16_t session_time) noexcept {
    return WithDomain(domain, [&](DomainInfo& d) {
        d.session_time = session_time;
        return DOM_OK;
    });
}

void DOM_GetAllSessionLimit(SessionLimits* limits_out) noexcept {
    if (limits_out != nullptr) *limits_out = Limits(CurrentRole());
}

void DOM_SetAllSessionLimit(const SessionLimits* limits) noexcept {
    if (limits != nullptr) Limits(CurrentRole()) = *limits;
}

void DOM_SetSessionLimit(uint32_t session_class, uint32_t limit) noexcept {
    OfClass(Limits(CurrentRole()), session_class) = limit;
}

uint32_t DOM_GetSessionCount(uint32_t session_class) noexcept {
    return OfClass(counters, session_class);
}

void DOM_SetSessionCount(uint32_t session_class, uint32_t value) noexcept {
    OfClass(counters, session_class) = value;
}

uint32_t DOM_SessionIncrease(uint32_t session_class) noexcept {
    uint32_t& counter = OfClass(counters, session_class);
    // Sessions come up on working threads, so their limits decide from whatever thread this is
    // asked.
    if (counter >= OfClass(Limits(Role::kWorking), session_class)) return DOM_ERR_FAILED;
    ++counter;
    return DOM_OK;
}

uint32_t DOM_SessionDecrease(uint32_t session_class) noexcept {
    uint32_t& counter = OfClass(counters, session_class);
    if (counter == 0) return DOM_ERR_FAILED;
    --counter;
    return DOM_OK;
}

}  // extern "C"
