/* An AVL list that is being changed. */
#ifndef PLATFORM_DBM_AVL_LIST_H
#define PLATFORM_DBM_AVL_LIST_H

#include <lmdb.h>
#include <stdint.h>

#include "dbm/stored_form.h"

namespace aaadom::dbm {

/* True for the row of a list that holds its count; `element` is what follows the key in its name.
 */
bool IsCountRow(const void* element, size_t length, uint32_t sort_key_length) noexcept;
/* The number of entries, from the count row. A list that never had an entry has none. */
int ReadAvlCount(MDB_txn* txn, MDB_dbi table, const void* key, uint32_t key_len, const Meta& meta,
                 uint32_t* count);

/*
 * The list inside a write transaction: looked up once, with an LMDB cursor that stays where the
 * last entry went, so a run of ascending sort keys does not descend the tree each time. The count
 * is written by Settle. Must be settled or dropped before its transaction ends. What is known of a
 * settled list holds on in the transaction that follows, when nobody wrote in between.
 */
class AvlList {
  public:
    AvlList() = default;
    ~AvlList() { Drop(); }
    AvlList(const AvlList&) = delete;
    AvlList& operator=(const AvlList&) = delete;

    bool IsOpen() const noexcept { return txn_ != nullptr; }
    bool IsOpenFor(MDB_dbi table, const void* key, uint32_t key_len) const noexcept;
    /* Opens the list without reading, if it was settled in the transaction before this one. */
    bool Resume(MDB_txn* txn, MDB_dbi table, const void* key, uint32_t key_len) noexcept;
    /* Precondition: not open; meta is that of an AVL list. All answers: 0 or LMDB's code. */
    int Open(MDB_txn* txn, MDB_dbi table, const void* key, uint32_t key_len, const Meta& meta);
    /* An entry or probe of this size holds a sort key. */
    bool Takes(uint32_t size) const noexcept { return size >= SortKeyEnd(meta_); }
    int Insert(uint32_t entry_len, const void* entry); /* MDB_KEYEXIST: nothing was changed */
    int Remove(const void* probe);                     /* MDB_NOTFOUND: nothing was changed */
    int Settle();
    /* Forgets the list and a count that was not written. After Settle too when the transaction was
     * not committed. */
    void Drop() noexcept;

  private:
    int OpenCursor();
    void CloseCursor() noexcept;
    void PointAt(const void* entry) noexcept;

    MDB_txn* txn_ = nullptr;
    MDB_dbi table_ = 0;
    MDB_cursor* cursor_ = nullptr;
    StoredKey stored_;
    Meta meta_;
    uint32_t count_ = 0;
    bool count_changed_ = false;
    size_t resumes_in_ = 0; /* number of the transaction that may go on; 0: none */
};

}  // namespace aaadom::dbm

#endif
