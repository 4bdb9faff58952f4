// What the stored forms of both kinds of policies share: one binary value that is a message.
#pragma once

#include <platform/aaa_tlv.h>
#include <platform/dbm.h>

#include <cstdint>

#include "base/message.h"

namespace aaadom {

/// Borrowed; the length counts the terminator where the key is stored with it.
struct StoredKey {
    const void* bytes;
    uint32_t length;
};

/// Whether the key exists, whatever its value is.
bool IsKeyStored(DBM_HANDLE handle, StoredKey key) noexcept;

/// Writes the message that the steps make as the whole value; DOM_OK or DOM_ERR_FAILED.
[[nodiscard]] uint32_t StoreMessage(DBM_HANDLE handle, StoredKey key, const AAA_ENCAP_STEP* steps,
                                    uint32_t step_count, uint32_t value_type) noexcept;

/// The value of `length` bytes, which the key said just before, as a message. Null when it is none,
/// when another value was written in between, and when memory is short.
TlvPtr LoadMessage(DBM_HANDLE handle, StoredKey key, uint32_t length) noexcept;

/// One method of a scheme as the step of StoreMessage that makes it.
uint32_t EncodeStoredMethod(uint32_t position, const void* method, TLV_MSG* msg) noexcept;

}  // namespace aaadom
