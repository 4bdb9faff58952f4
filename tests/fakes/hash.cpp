#include <platform/hash.h>

#include <cstdlib>

#include "fakes/state.h"

extern "C" HASH_TABLE* HASH_Create(uint32_t bucket_count,
                                   uint32_t (*key_fn)(const void* key)) noexcept {
    if (fake::Hit(fake::Event::kHashCreate)) return nullptr;
    if (bucket_count == 0 || key_fn == nullptr) return nullptr;
    fake::Quiet quiet;
    auto* table = new HASH_TABLE;
    table->bucket_count = bucket_count;
    table->key_fn = key_fn;
    table->buckets = new HASH_NODE*[bucket_count]();
    fake::NoteHashTable(1);
    return table;
}

extern "C" HASH_NODE* HASH_Find(HASH_TABLE* table, const void* key,
                                int (*compare)(const void* key, const HASH_NODE* node)) noexcept {
    if (table == nullptr || compare == nullptr) return nullptr;
    const uint32_t bucket = table->key_fn(key);
    if (bucket >= table->bucket_count) return nullptr;
    for (HASH_NODE* node = table->buckets[bucket]; node != nullptr; node = node->next) {
        if (compare(key, node) == 0) return node;
    }
    return nullptr;
}

extern "C" void HASH_Destroy(HASH_TABLE* table, void (*node_free)(HASH_NODE* node)) noexcept {
    if (table == nullptr) return;
    for (uint32_t bucket = 0; bucket < table->bucket_count; ++bucket) {
        while (HASH_NODE* node = table->buckets[bucket]) {
            table->buckets[bucket] = node->next;
            if (node->next != nullptr) node->next->prev_link = &table->buckets[bucket];
            if (node_free != nullptr) node_free(node);
        }
    }
    fake::Quiet quiet;
    delete[] table->buckets;
    delete table;
    fake::NoteHashTable(-1);
}
