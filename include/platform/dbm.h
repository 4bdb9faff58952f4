/*
 * The key-value database.
 *
 * A database is a directory; it holds tables; a table holds keys. A key is (bytes, length): a text
 * with and without its NUL are two keys. Its length is 1 to 400 bytes. A key is of one kind, an
 * array, one binary value, a sorted list or an AVL list, and carries a value type, by which keys
 * can be listed; a call for another kind fails.
 *
 * What holds for every call:
 * - A handle that is -1, 0, closed, or from before a fork, a null or unusable key, a null buffer
 *   with a size: the call's failure result, nothing else happens.
 * - Results: 0 or 0x40010001, except where a call says that negative means failure.
 * - A call is one transaction: after a crash it is there whole or not at all. In a durable database
 *   it is on the disk when the call returns.
 * - Reads copy at most buf_size bytes and return the number copied.
 * - An error of the storage (no space, size limit of 4 GiB reached, unreadable) is a failure
 *   result, changes nothing, and writes one line to the system log (label "DBM") with path, reason
 *   and way out; a repetition of the same error on the same database writes no second line.
 * @thread any thread, any handle, at any time; the database serialises its writers, readers wait
 * for nobody. No lock is held when a call returns, except by an open scope (DBM_Begin). Other
 *   processes may read and write at the same time.
 */
#ifndef PLATFORM_DBM_H
#define PLATFORM_DBM_H

#include <platform/api.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

typedef int64_t DBM_HANDLE;
#define DBM_INVALID_HANDLE ((DBM_HANDLE)-1)

#define DBM_MODE_OPEN 1u
#define DBM_MODE_CREATE 7u

typedef struct DBM_OPEN_ATTR {
    uint64_t reserved0;  /* not looked at */
    uint32_t persistent; /* 1 = durable, synced at commit; anything else = run-time database */
    uint32_t reserved1;  /* not looked at */
    char text[16];       /* not looked at */
} DBM_OPEN_ATTR;         /* 32 bytes */

/* List attributes: four 32-bit words. Offset and length of the sort key in an entry in bytes. */
enum { DBM_ATTR_KEY_OFFSET = 0, DBM_ATTR_KEY_LENGTH = 1, DBM_ATTR_KEY_KIND = 2, DBM_ATTR_ZERO = 3 };
/* Sort keys: U16 and U64 are numbers in host order of length 2 and 8; TEXT is compared bytewise up
 * to its NUL or its length. */
enum { DBM_KEY_KIND_U16 = 2, DBM_KEY_KIND_TEXT = 5, DBM_KEY_KIND_U64 = 20 };
enum { DBM_KIND_ARRAY = 1, DBM_KIND_BINARY = 2, DBM_KIND_SORTED = 3, DBM_KIND_AVL = 4 };

typedef struct DBM_KEY_SLOT {
    const char* key;     /* owned by the library, valid until DBM_Close of the handle */
    uint32_t key_length; /* as stored; a NUL follows the bytes in any case */
    uint32_t value_type;
    uint32_t kind;         /* DBM_KIND_... */
    uint32_t value_length; /* bytes of a binary, entries of a list, elements of an array */
    uint64_t reserved;     /* 0 */
} DBM_KEY_SLOT;            /* 32 bytes */

/* ---- Opening --------------------------------------------------------------------------------- */

/**
 * Sets the directories below which databases lie: durable ones and run-time ones. The defaults are
 * /var/lib/aaad and /run/aaad. Creates nothing; holds for later opens.
 * @param persistent_dir, runtime_dir  borrowed; null keeps the present one; at most 3968 bytes.
 * @return 0; 0x40010001 when a text is empty or too long: nothing is changed then.
 */
uint32_t DBM_SetRoot(const char* persistent_dir, const char* runtime_dir) PLATFORM_NOEXCEPT;

/**
 * Opens a table. Any number of handles may be open on one database, in one process too.
 *
 * Mode 7 opens or creates and never empties. It makes the root's last directory, the database's
 * directory (0750) and the table when they are missing. The attribute block chooses the root: a
 * database created durable and one created as run-time are two databases.
 * Mode 1 opens what exists and creates nothing. It finds the database by its name, first below the
 * persistent root, then below the run-time root; the attribute block is not looked at. When the
 * file cannot be written it is opened for reading, and later writes fail.
 *
 * The whole file's structure is checked when the process opens it first. A file that is cut off or
 * overwritten is refused; a changed byte inside a value is not found. A file that somebody cuts off
 * while it is open ends the process (SIGBUS).
 *
 * @param database, table  borrowed; 1 to 64 bytes, no '/', no ':', no leading '.'.
 * @param mode    DBM_MODE_OPEN or DBM_MODE_CREATE, nothing else.
 * @param attr    borrowed; null is an all-zero block.
 * @param handle  receives the handle: returned, destroy with DBM_Close. Untouched on failure.
 * @return 0; 0x40010001 with a log line when the directory is missing or not accessible, the file
 * is damaged, the table is absent (mode 1), or the calling thread has a scope open and the table is
 *   not open yet; without one when an argument is unusable or 65534 handles are open.
 */
uint32_t DBM_Open(const char* database, const char* table, uint32_t mode, const DBM_OPEN_ATTR* attr,
                  DBM_HANDLE* handle) PLATFORM_NOEXCEPT;

/**
 * Closes a handle; other handles and calls that are running stay valid. The key texts given out
 * through it are freed. With the database's last handle a scope of the calling thread is rolled
 * back.
 * @param handle  consumed on success.
 * @return 0; 0x40010001 for no live handle, or for the last handle while another thread owns or
 *   uses the scope.
 */
uint32_t DBM_Close(DBM_HANDLE handle) PLATFORM_NOEXCEPT;

/* ---- Arrays: elements by number, each independent of the others -------------------------------
 */

/**
 * Stores one element; makes the key when it is missing. Length 0 removes the element, whatever
 * value is; an element or key that is not there is no failure, and nothing is made. A key whose
 * elements are all removed still exists. A new value type moves the key to that type.
 * @param index      any 32-bit number.
 * @param value_len  bytes, at most 2147483647.
 * @param value      borrowed; null with a length fails.
 * @return 0; -1 on failure.
 */
int32_t DBM_SetArray(DBM_HANDLE handle, const void* key, uint32_t key_len, uint32_t index,
                     uint32_t value_len, const void* value, uint32_t value_type) PLATFORM_NOEXCEPT;
/**
 * @param buf  borrowed, buf_size bytes.
 * @return bytes copied; 0 for an absent element or key; -1 on failure.
 */
int32_t DBM_GetArray(DBM_HANDLE handle, const void* key, uint32_t key_len, uint32_t index,
                     uint32_t buf_size, void* buf) PLATFORM_NOEXCEPT;
/**
 * The used index that follows, for walking an array in ascending order.
 * @param after  -1 (or any negative number) for the first one.
 * @return the index; -1 for none and on failure. An index above 2147483647 is never returned.
 */
int32_t DBM_GetNextArrayIndex(DBM_HANDLE handle, const void* key, uint32_t key_len,
                              int32_t after) PLATFORM_NOEXCEPT;

/* ---- Binary values ----------------------------------------------------------------------------
 */

/**
 * Replaces the whole value; makes the key when it is missing. An empty value is a value: the key
 * exists. A new value type moves the key to that type.
 * @param index  -1 and 0 mean the same, the whole value; any other number fails.
 * @param value  borrowed; may be null when value_len is 0. At most 2147483647 bytes.
 */
uint32_t DBM_SetBinary(DBM_HANDLE handle, const void* key, uint32_t key_len, int32_t index,
                       uint32_t value_len, const void* value,
                       uint32_t value_type) PLATFORM_NOEXCEPT;
/**
 * @param index  -1 or 0.
 * @param buf    borrowed, buf_size bytes.
 * @return bytes copied; 0 for an empty value and an absent key; -1 on failure.
 */
int32_t DBM_GetBinary(DBM_HANDLE handle, const void* key, uint32_t key_len, int32_t index,
                      uint32_t buf_size, void* buf) PLATFORM_NOEXCEPT;
/** @return the stored length in bytes; 0 for an empty value and an absent key; -1 on failure. */
int32_t DBM_GetBinaryLen(DBM_HANDLE handle, const void* key, uint32_t key_len) PLATFORM_NOEXCEPT;

/* ---- Keys -------------------------------------------------------------------------------------
 */

/** @return exactly 1 or 0, for a key of any kind; 0 on failure. */
uint32_t DBM_IsKeyExist(DBM_HANDLE handle, const void* key, uint32_t key_len) PLATFORM_NOEXCEPT;
/**
 * Removes the key with all it holds.
 * @return 0; 0x40010001 when it does not exist.
 */
uint32_t DBM_DeleteKey(DBM_HANDLE handle, const void* key, uint32_t key_len) PLATFORM_NOEXCEPT;

/* ---- Sorted lists: entries of one size, the sort key is unique --------------------------------
 */

/**
 * Makes an empty list.
 * @param attributes  borrowed, four words; key_len plus the sort key's length is at most 508.
 * @param count       1.
 * @return 0; 0x40010001 when the key exists, of whatever kind (it stays as it is), or an attribute
 *   is unusable.
 */
uint32_t DBM_CreateSortList(DBM_HANDLE handle, const void* key, uint32_t key_len,
                            const uint32_t attributes[4], uint32_t count,
                            uint32_t value_type) PLATFORM_NOEXCEPT;
/**
 * Finds the entry whose sort key equals the probe's, and copies it over the probe.
 * @param entry_size  the list's entry size, which the first insert fixed.
 * @param entry       borrowed, entry_size bytes; only its sort key is read. Untouched on failure.
 * @return the entry size; -1 when there is none, no such list, or another entry size.
 */
int32_t DBM_GetSortList(DBM_HANDLE handle, const void* key, uint32_t key_len, uint32_t entry_size,
                        void* entry) PLATFORM_NOEXCEPT;
/**
 * Stores an entry; one with the same sort key is replaced. A new value type moves the key.
 * @param entry_size  at most 65535; the same for all entries of the list, also after it was
 * emptied.
 * @return 0; 0x40010001 when the list does not exist (an insert has no attributes to make it with),
 *   for another entry size, or one that does not hold the sort key.
 */
uint32_t DBM_InsertSortList(DBM_HANDLE handle, const void* key, uint32_t key_len,
                            uint32_t entry_size, const void* entry,
                            uint32_t value_type) PLATFORM_NOEXCEPT;
/**
 * Removes the entry with the probe's sort key.
 * @return 0; 0x40010001 when there is none, no such list, or another entry size.
 */
uint32_t DBM_RemoveSortList(DBM_HANDLE handle, const void* key, uint32_t key_len,
                            uint32_t entry_size, const void* entry) PLATFORM_NOEXCEPT;

/* ---- AVL lists: entries of any length, the sort key is unique ---------------------------------
 */

/** As DBM_CreateSortList; key_len plus the sort key's length is at most 507. */
uint32_t DBM_CreateAvlList(DBM_HANDLE handle, const void* key, uint32_t key_len,
                           const uint32_t attributes[4], uint32_t count,
                           uint32_t value_type) PLATFORM_NOEXCEPT;
/**
 * Stores a new entry.
 * @param entry_len  bytes, at most 65535.
 * @return 0; 0x40010001 when an entry with its sort key is there (nothing changes), the list does
 *   not exist, or the entry does not hold the sort key.
 */
uint32_t DBM_InsertAvlList(DBM_HANDLE handle, const void* key, uint32_t key_len, uint32_t entry_len,
                           const void* entry) PLATFORM_NOEXCEPT;
/**
 * Removes the entry with the probe's sort key. Only the sort key is read.
 * @param entry_len  size of the probe's buffer, not of the stored entry.
 * @return 0; 0x40010001 when there is none, no such list, or the buffer does not hold the sort key.
 */
uint32_t DBM_RemoveAvlList(DBM_HANDLE handle, const void* key, uint32_t key_len, uint32_t entry_len,
                           const void* entry) PLATFORM_NOEXCEPT;
/** Removes all entries; the list stays. @return 0; 0x40010001 when there is no such AVL list. */
uint32_t DBM_ClearAvlList(DBM_HANDLE handle, const void* key, uint32_t key_len) PLATFORM_NOEXCEPT;

/* ---- Keys by value type -----------------------------------------------------------------------
 */

/** @return the number of keys of the type, empty lists included; 0 on failure. */
uint32_t DBM_GetKeyNumByValueType(DBM_HANDLE handle, uint32_t value_type) PLATFORM_NOEXCEPT;
/**
 * Lists the keys of a type, ascending by their bytes.
 * @param count     capacity of slots; never exceeded, also when keys were added meanwhile.
 * @param iterator  returned, destroy with DBM_FreeIterator; null when nothing is filled. May be
 *   null. The slots do not depend on it: callers free it before they read the texts.
 * @param slots     receives the keys; their texts are owned by the library, valid until DBM_Close
 * of this handle.
 * @return the number filled; 0 on failure.
 */
uint32_t DBM_GetKeysByValueType(DBM_HANDLE handle, uint32_t count, uint32_t value_type,
                                void** iterator, DBM_KEY_SLOT* slots) PLATFORM_NOEXCEPT;
/** @param iterator  consumed always; null is ignored. */
void DBM_FreeIterator(void* iterator) PLATFORM_NOEXCEPT;

/* ---- Walking a list ---------------------------------------------------------------------------
 */

/*
 * A cursor stands on an entry, before the first or behind the last one. It holds no transaction:
 * each step starts from the sort key it stands on in the newest state, so entries may come and go
 * during a walk. After DBM_Close of its handle its steps fail; it must still be closed.
 * @thread one thread at a time uses a cursor.
 */
typedef struct DBM_CURSOR DBM_CURSOR;
/**
 * @param cursor  returned, destroy with DBM_CursorClose; stands before the first entry. Null on
 *   failure.
 * @return 0; 0x40010001 when the key is no list.
 */
uint32_t DBM_CursorOpen(DBM_HANDLE handle, const void* key, uint32_t key_len,
                        DBM_CURSOR** cursor) PLATFORM_NOEXCEPT;
/*
 * The steps, in ascending order of the sort key.
 * @param cursor  borrowed.
 * @param buf     borrowed, buf_size bytes: the entry, cut to the buffer.
 * @return bytes copied, never more than buf_size; 0 at the end: the cursor then stands behind the
 *   last entry (First, Next, Seek) or before the first one (Last, Prev); -1 on failure, the cursor
 *   stays where it is.
 */
int32_t DBM_CursorFirst(DBM_CURSOR* cursor, uint32_t buf_size, void* buf) PLATFORM_NOEXCEPT;
int32_t DBM_CursorNext(DBM_CURSOR* cursor, uint32_t buf_size, void* buf) PLATFORM_NOEXCEPT;
int32_t DBM_CursorLast(DBM_CURSOR* cursor, uint32_t buf_size, void* buf) PLATFORM_NOEXCEPT;
int32_t DBM_CursorPrev(DBM_CURSOR* cursor, uint32_t buf_size, void* buf) PLATFORM_NOEXCEPT;
/** The first entry at or behind a sort key. @param sort_key  borrowed; as an entry holds it. */
int32_t DBM_CursorSeek(DBM_CURSOR* cursor, const void* sort_key, uint32_t buf_size,
                       void* buf) PLATFORM_NOEXCEPT;
/** @param cursor  consumed always; null is ignored. */
void DBM_CursorClose(DBM_CURSOR* cursor) PLATFORM_NOEXCEPT;
/** @return entries of a list, elements of an array, 1 for a binary; 0 when absent or on failure. */
uint32_t DBM_GetEntryNum(DBM_HANDLE handle, const void* key, uint32_t key_len) PLATFORM_NOEXCEPT;

/* ---- Transaction scope ------------------------------------------------------------------------
 */

/*
 * Between DBM_Begin and the matching DBM_Commit all calls of this thread on this database, through
 * whatever handle, are one transaction: its reads see its writes, other threads and processes see
 * the state of the last commit, and their writes wait. One sync for the whole scope. Scopes nest by
 * counting. Whoever has a scope open must not wait for another thread's write, except by lending.
 */

/**
 * Opens a scope or one more level. Waits for other writers.
 * @return 0; 0x40010001 on failure, for a read-only handle, or while the scope is lent.
 */
uint32_t DBM_Begin(DBM_HANDLE handle) PLATFORM_NOEXCEPT;
/**
 * Ends a level; the outermost one writes.
 * @return 0: for the outermost level everything in the scope is stored, and durable in a durable
 *   database. 0x40010001: no scope of this thread, or the outermost level and nothing of the scope
 * is stored, because a level was aborted, a write met a storage error, or the commit failed. The
 *   scope is over then too. A call that merely refused its arguments does not spoil the scope.
 */
uint32_t DBM_Commit(DBM_HANDLE handle) PLATFORM_NOEXCEPT;
/**
 * Ends a level. The outermost one rolls back at once; an inner one marks the whole scope failed,
 * the outermost DBM_Commit then rolls back and fails.
 * @return 0; 0x40010001 when this thread uses no scope.
 */
uint32_t DBM_Abort(DBM_HANDLE handle) PLATFORM_NOEXCEPT;

/*
 * Lending a scope. A thread that waits for a second one can let it write in its scope: the owner
 * lends, hands the token over, and waits; the second thread borrows, works, and returns; the owner
 * goes on where it stood. Never do two threads use the scope at once: from lending until return or
 * recall every call of the owner on this database fails. A commit or abort of the outermost level
 * stays with the owner.
 */

/**
 * Lends this thread's scope. A borrowed scope cannot be lent on.
 * @param token  receives the number that the borrower needs; good for one borrowing.
 * @return 0; 0x40010001 when this thread owns no scope or has lent it already.
 */
uint32_t DBM_LendScope(DBM_HANDLE handle, uint64_t* token) PLATFORM_NOEXCEPT;
/**
 * Makes the calling thread the scope's user until DBM_ReturnScope.
 * @return 0; 0x40010001 for a token that is used, recalled or unknown, in the owner itself, or
 * while this thread has a scope of its own on the database.
 */
uint32_t DBM_BorrowScope(uint64_t token) PLATFORM_NOEXCEPT;
/**
 * Gives the scope back to its owner; must come before the owner is told to go on. Levels that the
 * borrower began and did not end are closed, and mark the scope failed.
 * @return 0; 0x40010001 when this thread has not borrowed with this token, or left levels open (the
 *   scope is returned in that case).
 */
uint32_t DBM_ReturnScope(uint64_t token) PLATFORM_NOEXCEPT;
/**
 * Takes a lent scope back, after a wait that ended without a borrower. Never blocks.
 * @return 0: the scope is this thread's again, also when the borrower has returned it before.
 *   0x40010001: the borrower still uses it, or this thread owns no scope.
 */
uint32_t DBM_RecallScope(DBM_HANDLE handle) PLATFORM_NOEXCEPT;

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
