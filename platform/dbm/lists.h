/* Sorted lists (one entry size) and AVL lists (entries of any length). */
#ifndef PLATFORM_DBM_LISTS_H
#define PLATFORM_DBM_LISTS_H

#include "dbm/keys.h"

namespace aaadom::dbm {

bool CreateList(OpenTable& table, const Key& key, uint8_t kind, const uint32_t attributes[4],
                uint32_t value_type);

bool InsertSorted(OpenTable& table, const Key& key, uint32_t entry_size, const void* entry,
                  uint32_t value_type);
/* The entry's size, or -1. */
int32_t GetSorted(OpenTable& table, const Key& key, uint32_t entry_size, void* entry);
bool InsertAvl(OpenTable& table, const Key& key, uint32_t entry_len, const void* entry);

/* Both remove the entry with the probe's sort key. An AVL probe is a buffer of any size around it;
 * a sorted one has the list's entry size. */
bool RemoveSorted(OpenTable& table, const Key& key, uint32_t entry_size, const void* probe);
bool RemoveAvl(OpenTable& table, const Key& key, uint32_t probe_size, const void* probe);
bool ClearAvl(OpenTable& table, const Key& key);

}  // namespace aaadom::dbm

#endif
