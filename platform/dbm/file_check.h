/* Tells a sound data.mdb from a damaged one before the map is used. */
#ifndef PLATFORM_DBM_FILE_CHECK_H
#define PLATFORM_DBM_FILE_CHECK_H

#include <lmdb.h>
#include <stdint.h>

#include <string>

namespace aaadom::dbm {

/**
 * Looks at the two meta pages of an existing data file, before LMDB sees it.
 * LMDB takes an empty file for a new database; here it is a damaged one, because a new file is only
 * ever renamed into place with its meta pages in it.
 * @return 0, an errno, or kDamagedFile.
 */
int CheckFileHeader(const std::string& data_file);

/**
 * Walks every page that the newest snapshot reaches, with pread and bounds checks, so that neither
 * a short file (SIGBUS through the map) nor a broken page (an assertion inside LMDB) can end the
 * process later. A read transaction keeps the snapshot's pages from being reused meanwhile.
 * @param env  borrowed, open.
 * @return 0, an errno or LMDB error, or kDamagedFile.
 */
int CheckFileStructure(MDB_env* env);

/* What tells a file that somebody changed without a commit. */
struct FileStamp {
    uint64_t size = 0;
    int64_t seconds = 0;
    long nanoseconds = 0;
    bool operator==(const FileStamp& other) const noexcept {
        return size == other.size && seconds == other.seconds && nanoseconds == other.nanoseconds;
    }
};
/**
 * Looks at the open data file without touching its map.
 * @return 0, an errno, kRemovedFile, or kDamagedFile when it is shorter than its two meta pages.
 */
int ReadFileStamp(MDB_env* env, uint32_t page_size, FileStamp* stamp);

}  // namespace aaadom::dbm

#endif
