/* Chained hash tables whose buckets the user links himself. */
#ifndef PLATFORM_HASH_H
#define PLATFORM_HASH_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/** The two links with which every stored node begins. */
typedef struct HASH_NODE {
    struct HASH_NODE* next;
    struct HASH_NODE** prev_link; /* the pointer that points at this node */
} HASH_NODE;

/** The table; its fields are visible because users link and walk the buckets themselves. */
typedef struct HASH_TABLE {
    uint32_t bucket_count;
    uint32_t (*key_fn)(const void* key);
    HASH_NODE** buckets;
} HASH_TABLE;

HASH_TABLE* HASH_Create(uint32_t bucket_count, uint32_t (*key_fn)(const void* key));
HASH_NODE* HASH_Find(HASH_TABLE* table, const void* key,
                     int (*compare)(const void* key, const HASH_NODE* node));
void HASH_Destroy(HASH_TABLE* table, void (*node_free)(HASH_NODE* node));

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
