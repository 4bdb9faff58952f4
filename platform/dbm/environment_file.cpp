/* The file of an environment: making, opening, checking, closing it. */
#include <errno.h>
#include <fcntl.h>
#include <string.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <utility>

#include "dbm/environment.h"
#include "dbm/report.h"

namespace aaadom::dbm {

namespace {

constexpr unsigned kMaxNamedTables = 64;
constexpr unsigned kMaxReaders = 1024;
constexpr size_t kMaxIdleReaders = 32;
constexpr mode_t kDataMode = 0640;
/* A reader enters itself in the reader table, so the group may write the lock file. */
constexpr mode_t kLockMode = 0660;

std::atomic<size_t> g_map_size{kDefaultMapSize};

struct DirectoryLock {
    explicit DirectoryLock(const std::string& path)
        : fd(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
        if (fd >= 0) (void)flock(fd, LOCK_EX);
    }
    ~DirectoryLock() {
        if (fd >= 0) close(fd);
    }
    DirectoryLock(const DirectoryLock&) = delete;
    DirectoryLock& operator=(const DirectoryLock&) = delete;
    int fd;
};

/* The lock files of environments that have lost their writer. LMDB's lock in them is held until the
 * process ends: to open one again here would wait for ever. */
struct LostLocks {
    platform::Mutex mutex;
    std::vector<std::pair<dev_t, ino_t>> files PLATFORM_GUARDED_BY(mutex);
};
LostLocks& Lost() {
    static LostLocks* const lost = new LostLocks; /* outlives every environment */
    return *lost;
}

bool LockIsLost(const std::string& lock_file) {
    struct stat status;
    if (stat(lock_file.c_str(), &status) != 0) return false;
    LostLocks& lost = Lost();
    const platform::MutexLock guard(lost.mutex);
    for (const auto& [device, inode] : lost.files)
        if (device == status.st_dev && inode == status.st_ino) return true;
    return false;
}

bool FileExists(const std::string& path) {
    struct stat status;
    return stat(path.c_str(), &status) == 0;
}

}  // namespace

void dbm_SetMapSize(size_t bytes) noexcept {
    g_map_size = bytes == 0 ? kDefaultMapSize : bytes;
}

Environment::~Environment() {
    Close();
}

int Environment::OpenFile(const std::string& file, unsigned flags) {
    int code = mdb_env_create(&env_);
    if (code != 0) {
        env_ = nullptr;
        return code;
    }
    (void)mdb_env_set_maxdbs(env_, kMaxNamedTables);
    (void)mdb_env_set_maxreaders(env_, kMaxReaders);
    (void)mdb_env_set_mapsize(env_, g_map_size.load());
    (void)mdb_env_set_userctx(env_, this);
    GuardAssertions(env_);
    code = mdb_env_open(env_, file.c_str(), flags | MDB_NOTLS, kDataMode);
    if (code != 0) {
        mdb_env_close(env_);
        env_ = nullptr;
    }
    return code;
}

/* The new file gets its meta pages under another name and is then renamed: whoever finds data.mdb
 * finds a whole database, also after a crash here. */
int Environment::CreateFile() {
    const DirectoryLock lock(path_);
    if (lock.fd < 0) return errno;
    const std::string data = path_ + "/data.mdb";
    if (FileExists(data)) return 0;
    const std::string fresh = path_ + "/new.mdb";
    (void)unlink(fresh.c_str());
    int code = OpenFile(fresh, MDB_NOSUBDIR);
    if (code == 0) {
        code = mdb_env_sync(env_, 1);
        mdb_env_close(env_);
        env_ = nullptr;
    }
    (void)unlink((fresh + "-lock").c_str());
    if (code != 0) {
        (void)unlink(fresh.c_str());
        return code;
    }
    if (rename(fresh.c_str(), data.c_str()) != 0) return errno;
    return fsync(lock.fd) != 0 ? errno : 0;
}

/* Opening and closing have the environment to themselves. */
PLATFORM_NO_TSA int Environment::Open(const std::string& directory, bool durable, bool create,
                                      bool read_only_allowed) {
    InstallFaultHandlers();
    path_ = directory;
    idle_readers_.reserve(kMaxIdleReaders);
    const std::string data = path_ + "/data.mdb";
    if (create && !FileExists(data)) {
        if (int code = CreateFile()) return code;
    }
    if (int code = CheckFileHeader(data)) return code;
    if (LockIsLost(path_ + "/lock.mdb")) return kDamagedFile;
    const bool new_lock = !FileExists(path_ + "/lock.mdb");
    const unsigned sync = durable ? 0 : MDB_NOSYNC;
    int code = OpenFile(path_, sync);
    if ((code == EACCES || code == EROFS || code == EPERM) && read_only_allowed) {
        code = OpenFile(path_, sync | MDB_RDONLY);
        read_only_ = code == 0;
    }
    if (code != 0) return code;
    if (new_lock) (void)chmod((path_ + "/lock.mdb").c_str(), kLockMode);
    int dead;
    (void)mdb_reader_check(env_, &dead);
    MDB_stat pages{};
    MDB_envinfo info{};
    code = RunGuarded([&] {
        (void)mdb_env_stat(env_, &pages);
        return mdb_env_info(env_, &info);
    });
    page_size_ = pages.ms_psize;
    /* Before the look at the pages: a change that comes during it will be noticed. */
    if (code == 0) RememberFile(info.me_last_txnid);
    if (code == 0) code = CheckFileStructure(env_);
    if (code != 0) Close();
    return code;
}

PLATFORM_NO_TSA void Environment::Close() noexcept {
    if (env_ == nullptr) return;
    for (MDB_txn* txn : idle_readers_) mdb_txn_abort(txn);
    idle_readers_.clear();
    /* The thread that holds a lost write lock has its place in the map among its locks. */
    if (!WriterIsLost()) mdb_env_close(env_);
    env_ = nullptr;
}

void Environment::LoseWriter() noexcept {
    if (writer_lost_.exchange(true)) return;
    struct stat status;
    if (stat((path_ + "/lock.mdb").c_str(), &status) != 0) return;
    LostLocks& lost = Lost();
    const platform::MutexLock guard(lost.mutex);
    lost.files.emplace_back(status.st_dev, status.st_ino);
}

void Environment::RememberFile(size_t last_transaction) noexcept {
    FileStamp now;
    if (ReadFileStamp(env_, page_size_, &now) != 0) return;
    file_ = now;
    file_transaction_ = last_transaction;
}

/* A change of the file that no commit made: somebody wrote into it, or a commit failed half-way.
 * Reading a damaged page does no harm, but LMDB changes its copies of pages without a look at their
 * offsets. */
int Environment::CheckForeignChange(const FileStamp& now, size_t last_transaction) {
    if (now == file_ || last_transaction > file_transaction_) return 0;
    if (now == damaged_file_) return kDamagedFile;
    int code = CheckFileStructure(env_);
    if (code == EAGAIN) code = kDamagedFile; /* neither meta page is that of the last commit */
    if (code == kDamagedFile) damaged_file_ = now;
    if (code == 0) file_ = now;
    return code;
}

/* Where a page lies tells where the map begins. Only a page of the system's own size lies at a
 * multiple of its size. */
void Environment::FindMap(MDB_txn* txn) noexcept {
    map_ = {};
    if (page_size_ != static_cast<uint32_t>(sysconf(_SC_PAGESIZE))) return;
    MDB_dbi directory;
    MDB_cursor* cursor = nullptr;
    MDB_val name, value;
    MDB_envinfo info;
    if (mdb_dbi_open(txn, nullptr, 0, &directory) != 0) return;
    if (GuardedCursorOpen(txn, directory, &cursor) != 0) return;
    const int code = RunGuarded([&] {
        if (const int failed = mdb_cursor_get(cursor, &name, &value, MDB_FIRST)) return failed;
        const auto address = reinterpret_cast<uintptr_t>(name.mv_data);
        const char* page = reinterpret_cast<const char*>(address - address % page_size_);
        uint64_t number;
        memcpy(&number, page, sizeof number);
        map_.begin = page - number * page_size_;
        return mdb_env_info(env_, &info);
    });
    mdb_cursor_close(cursor);
    if (code == 0)
        map_.size = info.me_mapsize;
    else
        map_ = {};
}

}  // namespace aaadom::dbm
