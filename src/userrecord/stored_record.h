// The stored form of a user record and its search key.
#pragma once

#include <aaadom/user_record.h>

namespace aaadom {

/// Bytes written; items that do not fit into `room` are omitted.
uint32_t StoreRecord(const UserRecord& record, void* buffer, uint32_t room) noexcept;
uint32_t StoreSerial(uint64_t serial, void* buffer, uint32_t room) noexcept;

/// Keeps the fields without an item. The detail text and its length are overwritten unread.
void LoadRecord(const void* buffer, uint32_t length, UserRecord& record) noexcept;

}  // namespace aaadom
