#include "dbm/avl_list.h"

#include <platform/dbm.h>
#include <string.h>

#include "dbm/damage_guard.h"

namespace aaadom::dbm {

namespace {

constexpr uint8_t kBehindAll = 0xFF;
constexpr size_t kCountSize = 4;

/* The count stands behind every entry: the next insert of an ascending run changes that page
 * anyway. It is longer than a sort key can be, so it is none. */
void PointAtCount(StoredKey& stored, const Meta& meta) noexcept {
    uint8_t element[kMaxStoredKeyLength];
    const uint32_t length = meta.attributes[DBM_ATTR_KEY_LENGTH] + 1;
    memset(element, kBehindAll, length);
    stored.SetElement(element, length);
}

}  // namespace

bool IsCountRow(const void* element, size_t length, uint32_t sort_key_length) noexcept {
    if (length != size_t{sort_key_length} + 1) return false;
    const auto* bytes = static_cast<const uint8_t*>(element);
    for (size_t i = 0; i < length; ++i) {
        if (bytes[i] != kBehindAll) return false;
    }
    return true;
}

int ReadAvlCount(MDB_txn* txn, MDB_dbi table, const void* key, uint32_t key_len, const Meta& meta,
                 uint32_t* count) {
    StoredKey stored(DBM_KIND_AVL, key, key_len);
    PointAtCount(stored, meta);
    MDB_val name = stored.Value();
    MDB_val value;
    const int code = GuardedGet(txn, table, &name, &value);
    *count = 0;
    if (code == MDB_NOTFOUND) return 0;
    if (code != 0) return code;
    if (value.mv_size != kCountSize) return kDamagedFile;
    *count = GetBigEndian32(static_cast<const uint8_t*>(value.mv_data));
    return 0;
}

bool AvlList::IsOpenFor(MDB_dbi table, const void* key, uint32_t key_len) const noexcept {
    return IsOpen() && table_ == table && stored_.IsOf(key, key_len);
}

bool AvlList::Resume(MDB_txn* txn, MDB_dbi table, const void* key, uint32_t key_len) noexcept {
    if (resumes_in_ == 0 || resumes_in_ != mdb_txn_id(txn) || table_ != table ||
        !stored_.IsOf(key, key_len))
        return false;
    txn_ = txn;
    count_changed_ = false;
    return true;
}

int AvlList::Open(MDB_txn* txn, MDB_dbi table, const void* key, uint32_t key_len,
                  const Meta& meta) {
    stored_ = StoredKey(DBM_KIND_AVL, key, key_len);
    meta_ = meta;
    table_ = table;
    txn_ = txn;
    count_ = 0;
    count_changed_ = false;
    int code = OpenCursor();
    if (code == 0) {
        PointAtCount(stored_, meta_);
        MDB_val name = stored_.Value();
        MDB_val value;
        code = GuardedCursorGet(cursor_, &name, &value, MDB_SET);
        if (code == MDB_NOTFOUND)
            code = 0;
        else if (code == 0 && value.mv_size != kCountSize)
            code = kDamagedFile;
        else if (code == 0)
            count_ = GetBigEndian32(static_cast<const uint8_t*>(value.mv_data));
    }
    if (code != 0) Drop();
    return code;
}

void AvlList::PointAt(const void* entry) noexcept {
    const SortKey sort_key = MakeSortKey(
        meta_, static_cast<const uint8_t*>(entry) + meta_.attributes[DBM_ATTR_KEY_OFFSET]);
    stored_.SetElement(sort_key.bytes, sort_key.length);
}

int AvlList::Insert(uint32_t entry_len, const void* entry) {
    if (const int code = OpenCursor()) return code;
    PointAt(entry);
    MDB_val name = stored_.Value();
    MDB_val data{entry_len, const_cast<void*>(entry)};
    const int code = GuardedCursorPut(cursor_, &name, &data, MDB_NOOVERWRITE);
    if (code != 0) return code;
    ++count_;
    count_changed_ = true;
    return 0;
}

int AvlList::Remove(const void* probe) {
    /* No cursor lives through a deletion, which may merge the page it stands on. */
    CloseCursor();
    PointAt(probe);
    MDB_val name = stored_.Value();
    const int code = GuardedDelete(txn_, table_, &name);
    if (code != 0) return code;
    if (count_ > 0) --count_;
    count_changed_ = true;
    return 0;
}

int AvlList::Settle() {
    if (!IsOpen()) return 0;
    const size_t transaction = mdb_txn_id(txn_);
    const bool changed = count_changed_;
    int code = 0;
    if (changed) {
        code = OpenCursor();
        if (code == 0) {
            uint8_t bytes[kCountSize];
            PutBigEndian32(bytes, count_);
            PointAtCount(stored_, meta_);
            MDB_val name = stored_.Value();
            MDB_val data{sizeof bytes, bytes};
            code = GuardedCursorPut(cursor_, &name, &data, 0);
        }
    }
    Drop();
    /* LMDB gives the number of a transaction that changed nothing to the next one, which may be
     * another process's: then the one after it knows nothing. */
    if (code == 0 && changed) resumes_in_ = transaction + 1;
    return code;
}

void AvlList::Drop() noexcept {
    CloseCursor();
    txn_ = nullptr;
    resumes_in_ = 0;
}

int AvlList::OpenCursor() {
    if (cursor_ != nullptr) return 0;
    const int code = GuardedCursorOpen(txn_, table_, &cursor_);
    if (code != 0) cursor_ = nullptr;
    return code;
}

void AvlList::CloseCursor() noexcept {
    if (cursor_ != nullptr) CloseWriteCursor(cursor_);
    cursor_ = nullptr;
}

}  // namespace aaadom::dbm
