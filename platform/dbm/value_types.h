/* Keys by value type. */
#ifndef PLATFORM_DBM_VALUE_TYPES_H
#define PLATFORM_DBM_VALUE_TYPES_H

#include "dbm/keys.h"

namespace aaadom::dbm {

uint32_t CountKeys(OpenTable& table, uint32_t value_type);
/* Fills at most count slots, ascending by key bytes; the number filled. */
uint32_t ListKeys(OpenTable& table, uint32_t value_type, uint32_t count, DBM_KEY_SLOT* slots);

}  // namespace aaadom::dbm

#endif
