/* Arrays and binary values. */
#ifndef PLATFORM_DBM_VALUES_H
#define PLATFORM_DBM_VALUES_H

#include "dbm/keys.h"

namespace aaadom::dbm {

bool SetArrayElement(OpenTable& table, const Key& key, uint32_t index, uint32_t value_len,
                     const void* value, uint32_t value_type);
bool RemoveArrayElement(OpenTable& table, const Key& key, uint32_t index);
int32_t GetArrayElement(OpenTable& table, const Key& key, uint32_t index, uint32_t buf_size,
                        void* buf);
int32_t GetNextArrayIndex(OpenTable& table, const Key& key, int32_t after);

bool SetBinary(OpenTable& table, const Key& key, uint32_t value_len, const void* value,
               uint32_t value_type);
/* length_only: the full stored length, nothing is copied. */
int32_t GetBinary(OpenTable& table, const Key& key, uint32_t buf_size, void* buf, bool length_only);

}  // namespace aaadom::dbm

#endif
