#include "fakes/state.h"

#include <atomic>
#include <cerrno>
#include <unordered_set>

namespace fake {
namespace {

thread_local int quiet_depth = 0;
thread_local int held_locks_here = 0;

struct Switch {
    std::atomic<int> remaining{0};
    std::atomic<uint64_t> count{0};
};
Switch switches[kEventKinds];
std::atomic<int> any_remaining{0};
std::atomic<bool> all_dbm_calls{false};
std::atomic<bool> tripped{false};
std::atomic<bool> throwing_new_counted{false};
std::atomic<bool> failed_writes_spoil{true};
std::atomic<int> held_locks{0};
std::atomic<void (*)(const char*)> watcher_of_calls{nullptr};
std::atomic<const void*> lock_objects[64];
std::atomic<int64_t> live_messages{0};
std::atomic<int64_t> live_hash_tables{0};

std::atomic<bool> counts_blocks{false};
struct Blocks {
    std::mutex mutex;
    std::unordered_set<uintptr_t> live;
};
Blocks& AllBlocks() {
    static auto* blocks = new Blocks;
    return *blocks;
}

/// A block as the set knows it: not as a pointer, through which the leak sanitizer would reach it.
uintptr_t Disguised(const void* block) {
    return ~reinterpret_cast<uintptr_t>(block);
}

/// The counter at work: what it allocates, frees and locks itself is not looked at.
class CountingBlocks {
  public:
    CountingBlocks() : nested_(at_work) { at_work = true; }
    ~CountingBlocks() { at_work = nested_; }
    bool Wanted() const { return counts_blocks && !nested_; }

  private:
    static inline thread_local bool at_work = false;
    const bool nested_;
    Quiet quiet_;
};

std::vector<std::string>& MisuseList() {
    static auto* list = new std::vector<std::string>;
    return *list;
}

/// What fails on a real platform for no other reason, and leaves the allocator's errno behind.
bool IsWantOfMemory(Event event) {
    return event == Event::kAllocation || event == Event::kMessage || event == Event::kAppend ||
           event == Event::kHashCreate;
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
    if (fails && IsWantOfMemory(event)) errno = ENOMEM;
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
void FailedWritesSpoilScopes(bool on) {
    failed_writes_spoil = on;
}
bool FailedWriteSpoilsScope() {
    return failed_writes_spoil;
}

void FailThrowingNew(bool on) {
    throwing_new_counted = on;
}
bool IsThrowingNewCounted() {
    return throwing_new_counted;
}
bool Tripped() {
    return tripped;
}
void DisarmFailures() {
    for (Switch& one : switches) one.remaining = 0;
    any_remaining = 0;
    all_dbm_calls = false;
}

namespace {

/// What the process does at its end, like writing its counters, gets its memory.
struct AtExit {
    ~AtExit() { DisarmFailures(); }
} disarm_at_exit;

}  // namespace

uint64_t Count(Event event) {
    return switches[static_cast<int>(event)].count;
}
int64_t LiveMessages() {
    return live_messages;
}
int64_t LiveHashTables() {
    return live_hash_tables;
}
void CountBlocks(bool on) {
    const CountingBlocks counting;
    const std::lock_guard<std::mutex> lock(AllBlocks().mutex);
    AllBlocks().live.clear();
    counts_blocks = on;
}
int64_t LiveBlocks() {
    const CountingBlocks counting;
    const std::lock_guard<std::mutex> lock(AllBlocks().mutex);
    return static_cast<int64_t>(AllBlocks().live.size());
}
void NoteBlock(const void* block) {
    const CountingBlocks counting;
    if (!counting.Wanted() || block == nullptr) return;
    const std::lock_guard<std::mutex> lock(AllBlocks().mutex);
    AllBlocks().live.insert(Disguised(block));
}
void NoteFree(const void* block) {
    const CountingBlocks counting;
    if (!counting.Wanted() || block == nullptr) return;
    const std::lock_guard<std::mutex> lock(AllBlocks().mutex);
    AllBlocks().live.erase(Disguised(block));
}
int HeldLocks() {
    return held_locks;
}
int HeldLocksHere() {
    return held_locks_here;
}
void NoteLock(int change) {
    held_locks_here += change;
    held_locks += change;
}
void SetWatcher(void (*watcher)(const char* call)) {
    watcher_of_calls = watcher;
}
void Watch(const char* call) {
    const Quiet quiet;
    if (const auto watcher = watcher_of_calls.load()) watcher(call);
}
void NoteLockObject(const void* object) {
    for (auto& known : lock_objects) {
        const void* there = nullptr;
        if (known.compare_exchange_strong(there, object) || there == object) return;
    }
}
std::vector<const void*> LockObjects() {
    std::vector<const void*> objects;
    for (const auto& known : lock_objects) {
        if (known != nullptr) objects.push_back(known);
    }
    return objects;
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
    failed_writes_spoil = true;
    SetWatcher(nullptr);
    for (auto& known : lock_objects) known = nullptr;
    tripped = false;
    for (Switch& one : switches) one.count = 0;
    MisuseList().clear();
    ResetLog();
    ResetSockets();
    ResetDatabases();
    ResetInterfaces();
}

}  // namespace fake
