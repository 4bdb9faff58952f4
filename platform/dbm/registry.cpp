#include "dbm/registry.h"

#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <pthread.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include <condition_variable>
#include <map>
#include <new>
#include <utility>
#include <vector>

#include "dbm/report.h"
#include "lock.h"

namespace aaadom::dbm {

using platform::AloneLock;
using platform::Mutex;
using platform::MutexLock;
using platform::SharedLock;
using platform::SharedMutex;

namespace {

constexpr mode_t kDirectoryMode = 0750;
constexpr size_t kMaxNameLength = 64;
constexpr size_t kMaxRootLength = PATH_MAX - 128;
/* A handle is serial << 16 | (slot + 1); 46 bits of serial keep it positive. */
constexpr unsigned kSlotBits = 16;
constexpr uint64_t kSlotMask = (uint64_t{1} << kSlotBits) - 1;
constexpr size_t kMaxHandles = kSlotMask - 1;

using DirectoryId = std::pair<dev_t, ino_t>;

struct Slot {
    uint64_t serial = 0; /* 0: free */
    OpenTablePtr table;
};

/* Never reset, also not after a fork: a handle or token of the parent means nothing in the child.
 */
std::atomic<uint64_t> g_next_serial{1};
std::atomic<uint64_t> g_next_token{1};

}  // namespace

struct ProcessState {
    Mutex roots_mutex;
    std::string persistent_root PLATFORM_GUARDED_BY(roots_mutex) = "/var/lib/aaad";
    std::string runtime_root PLATFORM_GUARDED_BY(roots_mutex) = "/run/aaad";

    SharedMutex handles_mutex;
    std::vector<Slot> slots PLATFORM_GUARDED_BY(handles_mutex);
    std::map<uint64_t, std::weak_ptr<SharedEnvironment>> lent PLATFORM_GUARDED_BY(handles_mutex);

    Mutex environments_mutex;
    std::condition_variable environment_closed;
    std::map<DirectoryId, std::weak_ptr<SharedEnvironment>> environments
        PLATFORM_GUARDED_BY(environments_mutex);

    /* After a fork: the parent's state. Its locks may be held and its environments must not be used
     * or closed here (closing a descriptor of the lock file would drop locks), so it only stays
     * reachable. */
    ProcessState* inherited = nullptr;
};

namespace {

std::atomic<ProcessState*> g_state{nullptr};

/* A fork takes the lock in the parent and releases it in both. */
PLATFORM_NO_TSA void BeforeFork() {
    if (ProcessState* state = g_state.load()) state->roots_mutex.lock();
}
PLATFORM_NO_TSA void InParent() {
    if (ProcessState* state = g_state.load()) state->roots_mutex.unlock();
}
PLATFORM_NO_TSA void InChild() {
    if (g_state.load() == nullptr) return;
    ProcessState* parent = g_state.load();
    ProcessState* fresh = nullptr;
    try {
        auto made = std::make_unique<ProcessState>();
        made->persistent_root = parent->persistent_root;
        made->runtime_root = parent->runtime_root;
        made->inherited = parent;
        fresh = made.release();
    } catch (...) {
        /* Without memory the child has no database: State() then throws. */
    }
    parent->roots_mutex.unlock();
    g_state = fresh;
}

ProcessState& State() {
    static const bool made = [] {
        g_state = new ProcessState;
        pthread_atfork(BeforeFork, InParent, InChild);
        return true;
    }();
    (void)made;
    ProcessState* state = g_state.load();
    if (state == nullptr) throw std::bad_alloc();
    return *state;
}

bool NameIsUsable(const char* name) {
    if (name == nullptr) return false;
    const size_t length = strnlen(name, kMaxNameLength + 1);
    if (length == 0 || length > kMaxNameLength || name[0] == '.') return false;
    /* A colon separates a table's name from the name of its index. */
    return strpbrk(name, "/:") == nullptr;
}

bool IsDirectory(const std::string& path) {
    struct stat status;
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

int MakeDirectory(const std::string& path) {
    if (IsDirectory(path)) return 0;
    if (mkdir(path.c_str(), kDirectoryMode) == 0 || errno == EEXIST) return 0;
    return errno;
}

struct Location {
    std::string directory;
    bool durable;
};

/* The environment of a directory: the one that is open, or a new one. */
int Attach(ProcessState& state, const Location& where, bool create,
           std::shared_ptr<SharedEnvironment>* out) {
    auto fresh = std::make_shared<SharedEnvironment>(); /* dies after the lock below */
    fresh->directory_fd = open(where.directory.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (fresh->directory_fd < 0) return errno;
    struct stat status;
    if (fstat(fresh->directory_fd, &status) != 0) return errno;
    const DirectoryId id{status.st_dev, status.st_ino};

    MutexLock lock(state.environments_mutex);
    for (;;) {
        const auto known = state.environments.find(id);
        if (known == state.environments.end()) break;
        *out = known->second.lock();
        if (*out != nullptr) {
            if (where.durable) (*out)->environment.MakeDurable();
            return 0;
        }
        lock.Wait(state.environment_closed); /* its last user is closing it */
    }
    auto entry = state.environments.emplace(id, std::weak_ptr<SharedEnvironment>()).first;
    int code;
    try {
        code = fresh->environment.Open(where.directory, where.durable, create, !create);
    } catch (...) {
        state.environments.erase(entry);
        throw;
    }
    if (code != 0) {
        state.environments.erase(entry);
        return code;
    }
    fresh->state = &state;
    entry->second = fresh;
    *out = std::move(fresh);
    return 0;
}

/* Where the database lies or is to lie. Only creating makes directories. */
int Locate(ProcessState& state, const std::string& database, bool create, bool durable,
           Location* where) {
    std::string persistent, runtime;
    {
        const MutexLock guard(state.roots_mutex);
        persistent = state.persistent_root;
        runtime = state.runtime_root;
    }
    if (create) {
        const std::string& root = durable ? persistent : runtime;
        *where = {root + "/" + database, durable};
        int code = MakeDirectory(root);
        if (code == 0) code = MakeDirectory(where->directory);
        if (code != 0) ReportFailure(where->directory, "open", code);
        return code;
    }
    *where = {persistent + "/" + database, true};
    const std::string second = runtime + "/" + database;
    struct stat status;
    if (stat((where->directory + "/data.mdb").c_str(), &status) == 0) return 0;
    const int first_error = errno;
    if (stat((second + "/data.mdb").c_str(), &status) == 0) {
        *where = {second, false};
        return 0;
    }
    if (first_error == ENOENT && errno == ENOENT)
        ReportAbsent(where->directory, second);
    else
        ReportFailure(first_error != ENOENT ? where->directory : second, "open",
                      first_error != ENOENT ? first_error : errno);
    return ENOENT;
}

bool AddHandle(ProcessState& state, OpenTablePtr table, DBM_HANDLE* handle) {
    const AloneLock guard(state.handles_mutex);
    size_t index = 0;
    while (index < state.slots.size() && state.slots[index].serial != 0) ++index;
    if (index == kMaxHandles) return false;
    if (index == state.slots.size()) state.slots.emplace_back();
    Slot& slot = state.slots[index];
    slot.serial = g_next_serial.fetch_add(1);
    ++table->shared->handles;
    slot.table = std::move(table);
    *handle = static_cast<DBM_HANDLE>(slot.serial << kSlotBits | (index + 1));
    return true;
}

Slot* SlotOf(ProcessState& state, DBM_HANDLE handle) PLATFORM_REQUIRES_SHARED(state.handles_mutex) {
    if (handle <= 0) return nullptr;
    const auto bits = static_cast<uint64_t>(handle);
    const uint64_t index = (bits & kSlotMask) - 1;
    if (index >= state.slots.size()) return nullptr;
    Slot& slot = state.slots[index];
    return slot.serial != 0 && slot.serial == bits >> kSlotBits ? &slot : nullptr;
}

std::shared_ptr<SharedEnvironment> FindLent(ProcessState& state, uint64_t token, bool take) {
    const AloneLock guard(state.handles_mutex);
    const auto found = state.lent.find(token);
    if (found == state.lent.end()) return nullptr;
    auto environment = found->second.lock();
    if (take) state.lent.erase(found);
    return environment;
}

}  // namespace

SharedEnvironment::~SharedEnvironment() {
    if (state != nullptr) {
        const MutexLock guard(state->environments_mutex);
        environment.Close();
        struct stat status;
        if (fstat(directory_fd, &status) == 0)
            state->environments.erase({status.st_dev, status.st_ino});
        state->environment_closed.notify_all();
    }
    if (directory_fd >= 0) close(directory_fd);
}

OpenTablePtr FindHandle(DBM_HANDLE handle) {
    ProcessState& state = State();
    const SharedLock guard(state.handles_mutex);
    const Slot* slot = SlotOf(state, handle);
    return slot != nullptr ? slot->table : nullptr;
}

bool SetRoots(const char* persistent_dir, const char* runtime_dir) {
    for (const char* root : {persistent_dir, runtime_dir})
        if (root != nullptr &&
            (root[0] == '\0' || strnlen(root, kMaxRootLength + 1) > kMaxRootLength))
            return false;
    ProcessState& state = State();
    const MutexLock guard(state.roots_mutex);
    std::string persistent = persistent_dir != nullptr ? persistent_dir : state.persistent_root;
    std::string runtime = runtime_dir != nullptr ? runtime_dir : state.runtime_root;
    state.persistent_root.swap(persistent);
    state.runtime_root.swap(runtime);
    return true;
}

bool OpenHandle(const char* database, const char* table, uint32_t mode, const DBM_OPEN_ATTR* attr,
                DBM_HANDLE* handle) {
    if (handle == nullptr || !NameIsUsable(database) || !NameIsUsable(table)) return false;
    if (mode != DBM_MODE_OPEN && mode != DBM_MODE_CREATE) return false;
    const bool create = mode == DBM_MODE_CREATE;
    const bool durable = attr != nullptr && attr->persistent == 1;
    ProcessState& state = State();

    Location where;
    if (Locate(state, database, create, durable, &where) != 0) return false;
    auto opened = std::make_shared<OpenTable>();
    int code = Attach(state, where, create, &opened->shared);
    if (code != 0) {
        ReportFailure(where.directory + "/data.mdb", "open", code);
        return false;
    }
    code = opened->environment().OpenTable(table, create, &opened->table);
    if (code != 0) {
        ReportFailure(where.directory + "/data.mdb", "open table", code);
        return false;
    }
    return AddHandle(state, std::move(opened), handle);
}

bool CloseHandle(DBM_HANDLE handle) {
    ProcessState& state = State();
    OpenTablePtr dying; /* its end takes other locks: after the guard */
    {
        const AloneLock guard(state.handles_mutex);
        Slot* slot = SlotOf(state, handle);
        if (slot == nullptr) return false;
        SharedEnvironment& shared = *slot->table->shared;
        /* The last handle takes an open scope with it; another thread's scope keeps it open. */
        if (shared.handles == 1 && shared.environment.ScopeIsOpen() &&
            !shared.environment.DropScope())
            return false;
        --shared.handles;
        dying.swap(slot->table);
        slot->serial = 0;
    }
    return true;
}

bool LendScope(DBM_HANDLE handle, uint64_t* token) {
    const OpenTablePtr table = FindHandle(handle);
    if (table == nullptr || token == nullptr) return false;
    ProcessState& state = State();
    const uint64_t number = g_next_token.fetch_add(1);
    {
        const AloneLock guard(state.handles_mutex);
        state.lent.emplace(number, table->shared);
    }
    if (!table->environment().Lend(number)) {
        (void)FindLent(state, number, true);
        return false;
    }
    *token = number;
    return true;
}

bool BorrowScope(uint64_t token) {
    const auto shared = FindLent(State(), token, false);
    return shared != nullptr && shared->environment.Borrow(token);
}

bool ReturnScope(uint64_t token) {
    const auto shared = FindLent(State(), token, false);
    if (shared == nullptr) return false;
    const bool balanced = shared->environment.Return(token);
    if (!shared->environment.IsLentAs(token)) (void)FindLent(State(), token, true);
    return balanced;
}

bool RecallScope(DBM_HANDLE handle) {
    const OpenTablePtr table = FindHandle(handle);
    uint64_t token = 0;
    if (table == nullptr || !table->environment().Recall(&token)) return false;
    if (token != 0) (void)FindLent(State(), token, true);
    return true;
}

}  // namespace aaadom::dbm
