/* Walks a list in the order of its sort keys. */
#ifndef PLATFORM_DBM_LIST_CURSOR_H
#define PLATFORM_DBM_LIST_CURSOR_H

#include <string>

#include "dbm/keys.h"

/* Holds a position, not a transaction: each step looks up its neighbour in the newest state, so an
 * open cursor never keeps old pages alive and sees what other threads wrote meanwhile. */
struct DBM_CURSOR {
    enum class Position : uint8_t { kBefore, kAt, kAfter };

    DBM_HANDLE handle = DBM_INVALID_HANDLE;
    std::string key;
    uint8_t kind = 0;
    uint32_t sort_key_length = 0;
    Position position = Position::kBefore;
    std::string element; /* sort key of the entry it stands on, as stored */

    int32_t First(uint32_t buf_size, void* buf);
    int32_t Next(uint32_t buf_size, void* buf);
    int32_t Last(uint32_t buf_size, void* buf);
    int32_t Prev(uint32_t buf_size, void* buf);
    int32_t Seek(const void* sort_key, uint32_t buf_size, void* buf);

  private:
    template <class Find>
    int32_t Move(Position when_none, uint32_t buf_size, void* buf, Find find);
};

namespace aaadom::dbm {

/* Null when the key is no list. */
DBM_CURSOR* OpenCursor(DBM_HANDLE handle, OpenTable& table, const Key& key);

}  // namespace aaadom::dbm

#endif
