/* The key-value database. */
#ifndef PLATFORM_DBM_H
#define PLATFORM_DBM_H

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
    uint64_t reserved0;
    uint32_t persistent; /* 1 = durable, synced at commit; 0 = run-time database */
    uint32_t reserved1;
    char text[16];
} DBM_OPEN_ATTR; /* 32 bytes */

/* list attributes: four 32-bit words */
enum { DBM_ATTR_KEY_OFFSET = 0, DBM_ATTR_KEY_LENGTH = 1, DBM_ATTR_KEY_KIND = 2, DBM_ATTR_ZERO = 3 };
enum { DBM_KEY_KIND_U16 = 2, DBM_KEY_KIND_TEXT = 5, DBM_KEY_KIND_U64 = 20 };
enum { DBM_KIND_ARRAY = 1, DBM_KIND_BINARY = 2, DBM_KIND_SORTED = 3, DBM_KIND_AVL = 4 };

typedef struct DBM_KEY_SLOT {
    const char* key;
    uint32_t key_length;
    uint32_t value_type;
    uint32_t kind;
    uint32_t value_length;
    uint64_t reserved;
} DBM_KEY_SLOT; /* 32 bytes */

uint32_t DBM_SetRoot(const char* persistent_dir, const char* runtime_dir);

uint32_t DBM_Open(const char* database, const char* table, uint32_t mode, const DBM_OPEN_ATTR* attr,
                  DBM_HANDLE* handle);
uint32_t DBM_Close(DBM_HANDLE handle);

int32_t DBM_SetArray(DBM_HANDLE handle, const void* key, uint32_t key_len, uint32_t index,
                     uint32_t value_len, const void* value, uint32_t value_type);
int32_t DBM_GetArray(DBM_HANDLE handle, const void* key, uint32_t key_len, uint32_t index,
                     uint32_t buf_size, void* buf);
int32_t DBM_GetNextArrayIndex(DBM_HANDLE handle, const void* key, uint32_t key_len, int32_t after);

uint32_t DBM_SetBinary(DBM_HANDLE handle, const void* key, uint32_t key_len, int32_t index,
                       uint32_t value_len, const void* value, uint32_t value_type);
int32_t DBM_GetBinary(DBM_HANDLE handle, const void* key, uint32_t key_len, int32_t index,
                      uint32_t buf_size, void* buf);
int32_t DBM_GetBinaryLen(DBM_HANDLE handle, const void* key, uint32_t key_len);

uint32_t DBM_IsKeyExist(DBM_HANDLE handle, const void* key, uint32_t key_len);
uint32_t DBM_DeleteKey(DBM_HANDLE handle, const void* key, uint32_t key_len);

uint32_t DBM_CreateSortList(DBM_HANDLE handle, const void* key, uint32_t key_len,
                            const uint32_t attributes[4], uint32_t count, uint32_t value_type);
int32_t DBM_GetSortList(DBM_HANDLE handle, const void* key, uint32_t key_len, uint32_t entry_size,
                        void* entry);
uint32_t DBM_InsertSortList(DBM_HANDLE handle, const void* key, uint32_t key_len,
                            uint32_t entry_size, const void* entry, uint32_t value_type);
uint32_t DBM_RemoveSortList(DBM_HANDLE handle, const void* key, uint32_t key_len,
                            uint32_t entry_size, const void* entry);

uint32_t DBM_CreateAvlList(DBM_HANDLE handle, const void* key, uint32_t key_len,
                           const uint32_t attributes[4], uint32_t count, uint32_t value_type);
uint32_t DBM_InsertAvlList(DBM_HANDLE handle, const void* key, uint32_t key_len, uint32_t entry_len,
                           const void* entry);
uint32_t DBM_RemoveAvlList(DBM_HANDLE handle, const void* key, uint32_t key_len, uint32_t entry_len,
                           const void* entry);
uint32_t DBM_ClearAvlList(DBM_HANDLE handle, const void* key, uint32_t key_len);

uint32_t DBM_GetKeyNumByValueType(DBM_HANDLE handle, uint32_t value_type);
uint32_t DBM_GetKeysByValueType(DBM_HANDLE handle, uint32_t count, uint32_t value_type,
                                void** iterator, DBM_KEY_SLOT* slots);
void DBM_FreeIterator(void* iterator);

typedef struct DBM_CURSOR DBM_CURSOR;
uint32_t DBM_CursorOpen(DBM_HANDLE handle, const void* key, uint32_t key_len, DBM_CURSOR** cursor);
int32_t DBM_CursorFirst(DBM_CURSOR* cursor, uint32_t buf_size, void* buf);
int32_t DBM_CursorNext(DBM_CURSOR* cursor, uint32_t buf_size, void* buf);
int32_t DBM_CursorLast(DBM_CURSOR* cursor, uint32_t buf_size, void* buf);
int32_t DBM_CursorPrev(DBM_CURSOR* cursor, uint32_t buf_size, void* buf);
int32_t DBM_CursorSeek(DBM_CURSOR* cursor, const void* sort_key, uint32_t buf_size, void* buf);
void DBM_CursorClose(DBM_CURSOR* cursor);
uint32_t DBM_GetEntryNum(DBM_HANDLE handle, const void* key, uint32_t key_len);

uint32_t DBM_Begin(DBM_HANDLE handle);
uint32_t DBM_Commit(DBM_HANDLE handle);
uint32_t DBM_Abort(DBM_HANDLE handle);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
