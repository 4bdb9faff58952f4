#include <platform/hash.h>

#include <cstdlib>

extern "C" {

HASH_TABLE* HASH_Create(uint32_t bucket_count, uint32_t (*key_fn)(const void* key)) noexcept {
    if (bucket_count == 0 || key_fn == nullptr) return nullptr;
    auto* table = static_cast<HASH_TABLE*>(std::calloc(1, sizeof(HASH_TABLE)));
    if (table == nullptr) return nullptr;
    table->buckets = static_cast<HASH_NODE**>(std::calloc(bucket_count, sizeof(HASH_NODE*)));
    if (table->buckets == nullptr) {
        std::free(table);
        return nullptr;
    }
    table->bucket_count = bucket_count;
    table->key_fn = key_fn;
    return table;
}

HASH_NODE* HASH_Find(HASH_TABLE* table, const void* key,
                     int (*compare)(const void* key, const HASH_NODE* node)) noexcept {
    if (table == nullptr || key == nullptr || compare == nullptr) return nullptr;
    const uint32_t bucket = table->key_fn(key);
    if (bucket >= table->bucket_count) return nullptr;
    HASH_NODE* node = table->buckets[bucket];
    while (node != nullptr && compare(key, node) != 0) node = node->next;
    return node;
}

void HASH_Destroy(HASH_TABLE* table, void (*node_free)(HASH_NODE* node)) noexcept {
    if (table == nullptr) return;
    if (node_free != nullptr) {
        for (uint32_t i = 0; i < table->bucket_count; ++i) {
            // Node functions may unlink their node or not: the links are whole before each call,
            // and the bucket is set after it.
            while (HASH_NODE* node = table->buckets[i]) {
                HASH_NODE* next = node->next;
                node_free(node);
                table->buckets[i] = next;
                if (next != nullptr) next->prev_link = &table->buckets[i];
            }
        }
    }
    std::free(table->buckets);
    std::free(table);
}

}  // extern "C"
