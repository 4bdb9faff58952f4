/* What a process has open: environments by real directory, handles by number. */
#ifndef PLATFORM_DBM_REGISTRY_H
#define PLATFORM_DBM_REGISTRY_H

#include <platform/dbm.h>

#include <memory>
#include <set>
#include <string>

#include "dbm/environment.h"
#include "lock.h"

namespace aaadom::dbm {

struct ProcessState;

/* An environment as the registry shares it: its end takes it out of the registry. */
struct SharedEnvironment {
    SharedEnvironment() = default;
    ~SharedEnvironment();
    SharedEnvironment(const SharedEnvironment&) = delete;
    SharedEnvironment& operator=(const SharedEnvironment&) = delete;
    Environment environment;
    ProcessState* state = nullptr; /* set while it is registered */
    int directory_fd = -1;         /* keeps the directory's inode number from being given away */
    unsigned handles = 0;          /* guarded by the handle table's lock */
};

/* What a handle stands for. */
struct OpenTable {
    std::shared_ptr<SharedEnvironment> shared;
    Table table;

    /* Key texts given out by DBM_GetKeysByValueType; their addresses stay until the handle closes.
     */
    platform::Mutex names_mutex;
    std::set<std::string, std::less<>> names PLATFORM_GUARDED_BY(names_mutex);

    Environment& environment() const noexcept { return shared->environment; }
};
using OpenTablePtr = std::shared_ptr<OpenTable>;

/* Null for -1, 0, closed handles, and handles from before a fork. */
OpenTablePtr FindHandle(DBM_HANDLE handle);

bool SetRoots(const char* persistent_dir, const char* runtime_dir);
/* False: failed and reported; *handle is then untouched. */
bool OpenHandle(const char* database, const char* table, uint32_t mode, const DBM_OPEN_ATTR* attr,
                DBM_HANDLE* handle);
bool CloseHandle(DBM_HANDLE handle);

/* Lent scopes by token. */
bool LendScope(DBM_HANDLE handle, uint64_t* token);
bool BorrowScope(uint64_t token);
bool ReturnScope(uint64_t token);
bool RecallScope(DBM_HANDLE handle);

}  // namespace aaadom::dbm

#endif
