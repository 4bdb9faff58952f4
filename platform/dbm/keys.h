/* A caller's key inside a table: meta record, value-type row, entries. */
#ifndef PLATFORM_DBM_KEYS_H
#define PLATFORM_DBM_KEYS_H

#include <platform/dbm.h>

#include "dbm/damage_guard.h"
#include "dbm/registry.h"
#include "dbm/stored_form.h"

namespace aaadom::dbm {

struct Key {
    const void* bytes;
    uint32_t length;
    bool IsUsable() const noexcept {
        return bytes != nullptr && length != 0 && length <= kMaxKeyLength;
    }
};

enum class Lookup : uint8_t { kFound, kAbsent, kFailed };

/* Reads a key's meta record. */
Lookup LoadMeta(Environment& environment, MDB_txn* txn, const Table& table, const Key& key,
                Meta* meta);
bool SaveMeta(WriteAccess& write, const Table& table, const Key& key, const Meta& meta);

/* Makes a new key: meta record and value-type row. */
bool CreateKey(WriteAccess& write, const Table& table, const Key& key, const Meta& meta);
/* Moves the key to another value type; *meta is changed, the caller saves it. */
bool MoveToType(WriteAccess& write, const Table& table, const Key& key, uint32_t value_type,
                Meta* meta);

/* Prepares a write of one kind: makes the key or takes over a new value type. Writes nothing when
 * the key is there with this kind and type. */
bool PrepareWrite(Environment& environment, WriteAccess& write, const Table& table, const Key& key,
                  uint8_t kind, uint32_t value_type);

/* Removes everything stored under the key's tag. */
bool RemoveEntries(WriteAccess& write, const Table& table, StoredKey& prefix);

/* The number of entries of a list or array, 1 for a binary. */
uint32_t CountEntries(MDB_txn* txn, const Table& table, const Key& key, const Meta& meta);

/* An LMDB cursor that closes itself. */
class TableCursor {
  public:
    TableCursor(MDB_txn* txn, MDB_dbi dbi) {
        if (GuardedCursorOpen(txn, dbi, &cursor_) != 0) cursor_ = nullptr;
    }
    ~TableCursor() {
        if (cursor_ != nullptr) mdb_cursor_close(cursor_);
    }
    TableCursor(const TableCursor&) = delete;
    TableCursor& operator=(const TableCursor&) = delete;
    int Get(MDB_val* key, MDB_val* data, MDB_cursor_op operation) {
        return cursor_ != nullptr ? GuardedCursorGet(cursor_, key, data, operation) : MDB_PANIC;
    }

  private:
    MDB_cursor* cursor_ = nullptr;
};

/* Copies what fits; the number of bytes copied. */
int32_t CopyOut(const MDB_val& value, uint32_t buf_size, void* buf) noexcept;

uint32_t IsKeyExist(OpenTable& table, const Key& key);
bool DeleteKey(OpenTable& table, const Key& key);
uint32_t GetEntryNum(OpenTable& table, const Key& key);

}  // namespace aaadom::dbm

#endif
