#include "fault/refusals.h"

#include <gtest/gtest.h>

namespace fault {
namespace {

using fake::Event;

struct Kind {
    Event event;
    const char* name;
};
constexpr Kind kKinds[] = {{Event::kAllocation, "allocation"}, {Event::kMessage, "message"},
                           {Event::kAppend, "append"},         {Event::kFlush, "flush"},
                           {Event::kDbm, "database call"},     {Event::kHashCreate, "hash table"},
                           {Event::kSocket, "socket"},         {Event::kLockInit, "lock"}};

}  // namespace

Counts CountEvents(const std::function<void()>& run) {
    Counts counts;
    for (const Kind& kind : kKinds) counts[kind.event] = fake::Count(kind.event);
    run();
    for (auto& [event, count] : counts) count = fake::Count(event) - count;
    return counts;
}

uint64_t RefuseEach(const Counts& counts, const std::function<void(Event, int)>& refused) {
    uint64_t calls = 0;
    for (const Kind& kind : kKinds) {
        const uint64_t count = counts.at(kind.event);
        for (uint64_t n = 1; n <= count && !testing::Test::HasFailure(); ++n) {
            SCOPED_TRACE(std::string(kind.name) + " " + std::to_string(n) + " of " +
                         std::to_string(count));
            refused(kind.event, static_cast<int>(n));
            ++calls;
        }
    }
    return calls;
}

}  // namespace fault
