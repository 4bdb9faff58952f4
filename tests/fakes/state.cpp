#include "fakes/state.h"

#include <atomic>

namespace fake {
namespace {

thread_local int quiet_depth = 0;

struct Switch {
    std::atomic<int> remaining{0};
    std::atomic<uint64_t> count{0};
};
Switch switches[kEventKinds];
std::atomic<int> any_remaining{0};
std::atomic<bool> all_dbm_calls{false};
std::atomic<bool> tripped{false};
std::atomic<int> held_locks{0};
std::atomic<int64_t> live_messages{0};
std::atomic<int64_t> live_hash_tables{0};

std::vector<std::string>& MisuseList() {
    static auto* list = new std::vector<std::string>;
    return *list;
}

/// True when this event is the one that the counter waits for.
bool CountsDownToZero(std::atomic<int>& remaining) {
    int before = remaining.load();
    while (before > 0 && !remaining.compare_exchange_weak(before, before - 1)) {
    }
    return before == 1;
}

}  // namespace

Quiet::Quiet() noexcept {
    ++quiet_depth;
}
Quiet::~Quiet() {
    --quiet_depth;
}
Outside::Outside() : depth_(quiet_depth) {
    quiet_depth = 0;
}
Outside::~Outside() {
    quiet_depth = depth_;
}
bool IsQuiet() {
    return quiet_depth > 0;
}

bool Hit(Event event) {
    if (IsQuiet()) return false;
    Switch& one = switches[static_cast<int>(event)];
    ++one.count;
    bool fails = CountsDownToZero(one.remaining);
    if (event != Event::kLock && CountsDownToZero(any_remaining)) fails = true;
    if (fails) tripped = true;
    return fails || (event == Event::kDbm && all_dbm_calls);
}

void Fail(Event event, int n) {
    tripped = false;
    switches[static_cast<int>(event)].remaining = n;
}
void FailAny(int n) {
    tripped = false;
    any_remaining = n;
}
void FailAllDbmCalls(bool on) {
    all_dbm_calls = on;
}
bool Tripped() {
    return tripped;
}
void DisarmFailures() {
    for (Switch& one : switches) one.remaining = 0;
    any_remaining = 0;
    all_dbm_calls = false;
}

uint64_t Count(Event event) {
    return switches[static_cast<int>(event)].count;
}
int64_t LiveMessages() {
    return live_messages;
}
int64_t LiveHashTables() {
    return live_hash_tables;
}
int HeldLocks() {
    return held_locks;
}
void NoteLock(int change) {
    held_locks += change;
}
void NoteMessage(int change) {
    live_messages += change;
}
void NoteHashTable(int change) {
    live_hash_tables += change;
}

std::recursive_mutex& StateMutex() {
    static auto* mutex = new std::recursive_mutex;
    return *mutex;
}

void NoteMisuse(const std::string& what) {
    Inside inside;
    MisuseList().push_back(what);
}
std::vector<std::string> Misuses() {
    Inside inside;
    return MisuseList();
}

void Reset() {
    Inside inside;
    DisarmFailures();
    tripped = false;
    for (Switch& one : switches) one.count = 0;
    MisuseList().clear();
    ResetLog();
    ResetSockets();
    ResetDatabases();
    ResetInterfaces();
}

}  // namespace fake
