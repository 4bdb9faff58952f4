/* Chained hash tables whose buckets the user links and walks himself. A table has no lock: its
 * user's lock guards every call on it and every link that is followed. */
#ifndef PLATFORM_HASH_H
#define PLATFORM_HASH_H

#include <platform/api.h>
#include <stddef.h>
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

/**
 * Creates an empty table.
 * @param bucket_count  number of buckets, at least 1.
 * @param key_fn        gives the bucket index of a key; it must know the bucket count.
 * @return returned, destroy with HASH_Destroy; null when `bucket_count` is 0, `key_fn` is null or
 *         memory is short.
 * @thread any; takes no lock.
 */
HASH_TABLE* HASH_Create(uint32_t bucket_count,
                        uint32_t (*key_fn)(const void* key)) PLATFORM_NOEXCEPT;

/**
 * Finds the first node, from the bucket's head on, that matches a key.
 * @param table    borrowed.
 * @param key      borrowed; given to the table's key function and to `compare` as it is.
 * @param compare  0 = the node has this key.
 * @return owned by the table, valid until it is unlinked; null when no node matches, the key
 *         function names a bucket that does not exist, or an argument is null.
 * @thread under the lock of the table's user; takes none.
 */
HASH_NODE* HASH_Find(HASH_TABLE* table, const void* key,
                     int (*compare)(const void* key, const HASH_NODE* node)) PLATFORM_NOEXCEPT;

/**
 * Destroys a table, its nodes bucket by bucket, each bucket from its head.
 * @param table      consumed always; null is ignored.
 * @param node_free  called once for each node, which it may unlink before it frees it; null leaves
 *                   the nodes to their owner.
 * @thread under the lock of the table's user, or when nobody else can reach the table.
 */
void HASH_Destroy(HASH_TABLE* table, void (*node_free)(HASH_NODE* node)) PLATFORM_NOEXCEPT;

/** Makes `node` the first of the bucket that begins at `*head` (`&table->buckets[index]`). */
static inline void HASH_LinkAtHead(HASH_NODE** head, HASH_NODE* node) PLATFORM_NOEXCEPT {
    node->next = *head;
    node->prev_link = head;
    if (node->next != NULL) node->next->prev_link = &node->next;
    *head = node;
}

/** Takes `node` out of its bucket; ignored for null and for a node that is in none. */
static inline void HASH_Unlink(HASH_NODE* node) PLATFORM_NOEXCEPT {
    if (node == NULL || node->prev_link == NULL) return;
    *node->prev_link = node->next;
    if (node->next != NULL) node->next->prev_link = node->prev_link;
    node->next = NULL;
    node->prev_link = NULL;
}

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
