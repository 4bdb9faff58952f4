#include "dbm/report.h"

#include <errno.h>
#include <lmdb.h>
#include <platform/syslog.h>
#include <stdarg.h>
#include <stdint.h>
#include <stdio.h>

#include <atomic>

namespace aaadom::dbm {

namespace {

constexpr uint32_t kPriorityError = 3;
constexpr uint32_t kPriorityInfo = 6;
constexpr size_t kLineSize = 1024;

std::atomic<ReportSink> g_sink{nullptr};

void ToSystemLog(uint32_t priority, const char* format, ...) {
    va_list args;
    va_start(args, format);
    vsyslog2(priority, "AAAD", "DBM", format, args);
    va_end(args);
}

void Write(uint32_t priority, const char* line) {
    if (ReportSink sink = g_sink.load()) {
        sink(line);
        return;
    }
    ToSystemLog(priority, "%s", line);
}

const char* WayOut(int code) {
    switch (code) {
        case MDB_MAP_FULL:
            return "the size limit of the database is reached: delete entries";
        case ENOSPC:
        case EDQUOT:
        case EFBIG:
            return "free space on the file system or raise the limit";
        case ENOENT:
        case ENOTDIR:
            return "create the parent directory or set another root directory";
        case EACCES:
        case EPERM:
        case EROFS:
            return "make directory, data.mdb and lock.mdb writable for this user";
        case MDB_INVALID:
        case MDB_CORRUPTED:
        case MDB_PAGE_NOTFOUND:
        case MDB_VERSION_MISMATCH:
        case MDB_CURSOR_FULL:
        case MDB_BAD_TXN:
        case kDamagedFile:
            return "stop the programs that use it, then restore data.mdb from a backup, or move it "
                   "away to start empty";
        case kRemovedFile:
            return "restart the programs that use it; what was saved in it is lost";
        case MDB_NOTFOUND:
            return "start the daemon, which creates it";
        case EDEADLK:
            return "open tables before the transaction scope begins";
        case MDB_READERS_FULL:
            return "end some of the processes that read the database";
        case EIO: /* a write that the file system took only in part, most often for lack of space */
            return "check the free space on the file system and the storage itself";
        case MDB_PANIC:
            return "check the storage, then restart the programs that use the database";
        default:
            return "restart the program; if it happens again check the storage";
    }
}

}  // namespace

void SetReportSink(ReportSink sink) noexcept {
    g_sink = sink;
}

void ReportFailure(const std::string& path, const char* action, int code) noexcept {
    char line[kLineSize];
    const char* reason = code == kDamagedFile   ? "the file is damaged"
                         : code == kRemovedFile ? "the file was removed while it was open"
                         : code == MDB_NOTFOUND ? "no such table"
                                                : mdb_strerror(code);
    snprintf(line, sizeof line, "%s: %s failed: %s; %s", path.c_str(), action, reason,
             WayOut(code));
    Write(kPriorityError, line);
}

void ReportAbsent(const std::string& first, const std::string& second) noexcept {
    char line[kLineSize];
    snprintf(line, sizeof line,
             "%s: open failed: no such database, nor at %s; the daemon creates it at its start",
             first.c_str(), second.c_str());
    Write(kPriorityInfo, line);
}

}  // namespace aaadom::dbm
