// Every call that the database makes, of the storage engine, of the system and for memory, may be
// refused. The linker turns them here (CMakeLists.txt has the list).
#include "unit/platform/fault_window.h"

#include <errno.h>
#include <fcntl.h>
#include <lmdb.h>
#include <stdarg.h>
#include <stdlib.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <new>

using fault_window::Error;
using fault_window::Fails;

namespace {
int SystemFails() {
    errno = Error() > 0 ? Error() : EIO;
    return -1;
}
}  // namespace

/* ENGINE(name, declared arguments, passed arguments): a call of the engine that may be refused. */
#define ENGINE(name, declared, passed)                        \
    extern "C" int __real_##name declared;                    \
    extern "C" int __wrap_##name declared {                   \
        return Fails(#name) ? Error() : __real_##name passed; \
    }
#define SYSTEM(name, declared, passed)                              \
    extern "C" int __real_##name declared;                          \
    extern "C" int __wrap_##name declared {                         \
        return Fails(#name) ? SystemFails() : __real_##name passed; \
    }

ENGINE(mdb_env_create, (MDB_env * *env), (env))
ENGINE(mdb_env_open, (MDB_env * env, const char* path, unsigned flags, mdb_mode_t mode),
       (env, path, flags, mode))
ENGINE(mdb_env_info, (MDB_env * env, MDB_envinfo* info), (env, info))
ENGINE(mdb_env_stat, (MDB_env * env, MDB_stat* stat), (env, stat))
ENGINE(mdb_env_set_mapsize, (MDB_env * env, size_t size), (env, size))
ENGINE(mdb_env_set_maxdbs, (MDB_env * env, MDB_dbi count), (env, count))
ENGINE(mdb_env_set_maxreaders, (MDB_env * env, unsigned count), (env, count))
ENGINE(mdb_env_sync, (MDB_env * env, int force), (env, force))
ENGINE(mdb_env_get_fd, (MDB_env * env, mdb_filehandle_t* fd), (env, fd))
ENGINE(mdb_reader_check, (MDB_env * env, int* dead), (env, dead))
ENGINE(mdb_txn_begin, (MDB_env * env, MDB_txn* parent, unsigned flags, MDB_txn** txn),
       (env, parent, flags, txn))
ENGINE(mdb_txn_renew, (MDB_txn * txn), (txn))
ENGINE(mdb_dbi_open, (MDB_txn * txn, const char* name, unsigned flags, MDB_dbi* dbi),
       (txn, name, flags, dbi))
ENGINE(mdb_stat, (MDB_txn * txn, MDB_dbi dbi, MDB_stat* stat), (txn, dbi, stat))
ENGINE(mdb_get, (MDB_txn * txn, MDB_dbi dbi, MDB_val* key, MDB_val* value), (txn, dbi, key, value))
ENGINE(mdb_put, (MDB_txn * txn, MDB_dbi dbi, MDB_val* key, MDB_val* value, unsigned flags),
       (txn, dbi, key, value, flags))
ENGINE(mdb_del, (MDB_txn * txn, MDB_dbi dbi, MDB_val* key, MDB_val* value), (txn, dbi, key, value))
ENGINE(mdb_cursor_open, (MDB_txn * txn, MDB_dbi dbi, MDB_cursor** cursor), (txn, dbi, cursor))
ENGINE(mdb_cursor_get, (MDB_cursor * cursor, MDB_val* key, MDB_val* value, MDB_cursor_op step),
       (cursor, key, value, step))
ENGINE(mdb_cursor_put, (MDB_cursor * cursor, MDB_val* key, MDB_val* value, unsigned flags),
       (cursor, key, value, flags))
ENGINE(mdb_cursor_del, (MDB_cursor * cursor, unsigned flags), (cursor, flags))

/* A transaction is over after its commit, whatever the result. */
extern "C" int __real_mdb_txn_commit(MDB_txn* txn);
extern "C" int __wrap_mdb_txn_commit(MDB_txn* txn) {
    if (!Fails("mdb_txn_commit")) return __real_mdb_txn_commit(txn);
    mdb_txn_abort(txn);
    return Error();
}

SYSTEM(stat, (const char* path, struct stat* status), (path, status))
SYSTEM(fstat, (int fd, struct stat* status), (fd, status))
SYSTEM(mkdir, (const char* path, mode_t mode), (path, mode))
SYSTEM(rename, (const char* from, const char* to), (from, to))
SYSTEM(fsync, (int fd), (fd))
SYSTEM(flock, (int fd, int operation), (fd, operation))

extern "C" int __real_open(const char* path, int flags, ...);
extern "C" int __wrap_open(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const unsigned mode = va_arg(arguments, unsigned);
    va_end(arguments);
    return Fails("open") ? SystemFails() : __real_open(path, flags, mode);
}
extern "C" ssize_t __real_pread(int fd, void* to, size_t size, off_t offset);
extern "C" ssize_t __wrap_pread(int fd, void* to, size_t size, off_t offset) {
    return Fails("pread") ? SystemFails() : __real_pread(fd, to, size, offset);
}

void* operator new(size_t size) {
    void* block = Fails("new") ? nullptr : malloc(size);
    if (block == nullptr) throw std::bad_alloc();
    return block;
}
void* operator new(size_t size, const std::nothrow_t&) noexcept {
    return Fails("new") ? nullptr : malloc(size);
}
void operator delete(void* block) noexcept {
    free(block);
}
void operator delete(void* block, size_t) noexcept {
    free(block);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
    free(block);
}
